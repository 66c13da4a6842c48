#pragma once

#include <QString>

/// Same as QLocale::c().toString(\a v, 'f', \a decimals), several times faster. \a decimals is 0 or more.
QString coordText(double v, int decimals);
