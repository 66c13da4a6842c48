#pragma once

#include <QString>

/// True when built with GDAL.
bool hasGdal();

/// Reads all features of \a path into memory, with geometry and attributes. Returns seconds of processor time. GDAL's
/// warnings are suppressed.
double secondsOfGdal(const QString &path);
