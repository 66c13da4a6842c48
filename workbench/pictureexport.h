#pragma once

#include "importresult.h"

/// True if savePicture() knows the format that the suffix of \a fileName names.
bool hasPictureSuffix(const QString &fileName);

/// Saves a picture of all contours as PNG, SVG or PDF, depending on the suffix of \a fileName. In SVG and PDF each
/// contour that has a position is one polyline with all its vertices, and nothing else is a polyline.
///
/// Returns false after a failure; \a error is then the reason, for the user and without the file name.
bool savePicture(const ImportResult &result, bool hasSurveyAxes, const QString &fileName, QString &error);
