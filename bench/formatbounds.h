#pragma once

#include <QString>

/// \a value as a Russian text has it.
QString russianNumber(double value, int decimals);

/// \a value and the bound that it may reach, "1,20 (≤ 1,5)"; bold when it is out of bounds, a dash when it is not a
/// number above 0.
QString atMost(double value, double bound);
QString atLeast(double value, double bound);
