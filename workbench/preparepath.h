#pragma once

#include <QString>

/// Returns the path of the companion program that was built or installed with the program in \a folder, or an empty
/// string if there is none.
QString findPrepareProgram(const QString &folder);
