#pragma once

#include <QString>

/// \a value in Russian notation.
QString russianNumber(double value, int decimals);

/// \a value with its bound, "1,20 (≤ 1,5)"; bold when out of bounds, a dash unless it is finite and above 0.
QString atMost(double value, double bound);
QString atLeast(double value, double bound);
