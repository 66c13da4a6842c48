#pragma once

#include <QString>

/// A \a message of GDAL, or its last error, for the user: without the position in GDAL's sources with which some
/// drivers begin their messages, and without line ends around it.
QString gdalMessage(const char *message);
QString lastGdalMessage();
