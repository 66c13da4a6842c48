#pragma once

#include <QStringList>

/// Runs the sub-command convert with the \a arguments after its name. Returns the exit status.
int runConvert(const QStringList &arguments);
