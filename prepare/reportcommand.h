#pragma once

#include <QStringList>

/// Runs the sub-command report with the \a arguments behind its name: prints the totals of files with lines of JSON.
/// Returns the exit status.
int runReport(const QStringList &arguments);
