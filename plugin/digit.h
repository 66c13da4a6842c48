#pragma once

#include <QChar>

/// Whether \a c is one of 0 to 9; the digits of other scripts are not.
inline bool isDigit(QChar c)
{
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}
