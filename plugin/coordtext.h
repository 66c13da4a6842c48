#pragma once

#include <QString>

/// \a v with \a decimals, 0 or more, and a point: what QLocale::c() makes of it in the format 'f', in a fraction of the
/// time.
QString coordText(double v, int decimals);
