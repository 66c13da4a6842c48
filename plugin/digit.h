#pragma once

#include <QChar>

/// True for 0 to 9, not for the digits of other scripts.
inline bool isDigit(QChar c)
{
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}
