#pragma once

#include <QString>

/// Appends what QLocale::c().toString(\a v, 'f', \a decimals) returns to \a text, several times faster. \a decimals is
/// 0 or more.
void appendCoord(QString &text, double v, int decimals);

/// Returns the text that appendCoord() appends.
QString coordText(double v, int decimals);
