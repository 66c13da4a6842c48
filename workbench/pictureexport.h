#pragma once

#include "importresult.h"

/// Saves a picture of all contours as PNG, SVG or PDF, depending on the suffix of \a fileName.
///
/// Returns false after a failure; \a error then says why, for the user, and no file has been changed.
bool savePicture(const ImportResult &result, bool hasSurveyAxes, const QString &fileName, QString &error);
