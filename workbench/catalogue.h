#pragma once

#include "importresult.h"

#include <QString>

/// Saves a catalogue of coordinates as CSV, in UTF-8 with a byte order mark and with semicolons: a heading line and a
/// line for each vertex with the object's designation, the contour (counted from 1 in each object), the point number, X
/// and Y. The texts are those of the result, quoted as in RFC 4180.
///
/// Returns false after a failure; \a error is then the reason, without the file name.
bool saveCatalogue(const ImportResult &result, const QString &fileName, QString &error);
