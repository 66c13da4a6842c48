#pragma once

#include <QString>

/// True when the program is built with GDAL.
bool hasGdal();

/// Reads all features of the map file \a path into memory, with their geometry and attributes, and gives the seconds of
/// processor time that it takes. GDAL's warnings are not heard.
double secondsOfGdal(const QString &path);
