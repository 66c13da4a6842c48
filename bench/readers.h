#pragma once

#include <QStringList>

/// Reads and discards the lines of all \a paths, a lower bound for any text reader. Returns seconds of processor time.
double secondsOfLines(const QStringList &paths);

/// Imports the MIF or DXF file \a path with its point numbers and designations. Returns seconds of processor time. A
/// status message ends the program, because an incomplete import must not be compared.
double secondsOfImport(const QString &path);
