#pragma once

#include <QString>

/// Returns the path of the plug-in that was built or installed together with this program. Requires an application
/// object. The file need not exist.
QString defaultPlugin();
