#pragma once

#include <QStringList>

/// Runs the command convert with the \a arguments behind its name. Returns the exit status.
int runConvert(const QStringList &arguments);
