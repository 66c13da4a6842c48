#pragma once

#include <QStringList>

/// Reads the lines of \a paths, one file after the other, and drops them: the least that a reader of text has to do.
/// Gives the seconds of processor time that it takes.
double secondsOfLines(const QStringList &paths);

/// Imports the MIF or DXF file \a path with the point numbers and the designations that are in it, and gives the
/// seconds of processor time that it takes. A message ends the program: what is cut short has no time worth comparing.
double secondsOfImport(const QString &path);
