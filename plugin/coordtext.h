#pragma once

#include <QString>

/// Same as \a text += QLocale::c().toString(\a v, 'f', \a decimals), several times faster. \a decimals must not be
/// negative.
void appendCoord(QString &text, double v, int decimals);

/// Returns the text that appendCoord() appends.
QString coordText(double v, int decimals);
