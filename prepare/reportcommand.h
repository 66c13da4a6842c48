#pragma once

#include <QStringList>

/// Runs the sub-command report with the \a arguments after its name: merges JSON reports into a table of totals.
/// Returns the exit status.
int runReport(const QStringList &arguments);
