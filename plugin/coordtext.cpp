#include "coordtext.h"

#include <QLocale>

#include <array>
#include <cmath>

namespace {

constexpr std::array<double, 10> powersOfTen{1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9};

/// 2^52: doubles of this size or more have no fractional part. Below it, splitting off the integer part is exact.
constexpr double halvesLimit = 4503599627370496.0;

/// Writes the last digit of \a n before \a end and removes it from \a n. Returns the new start of the text.
QChar *writeDigit(QChar *end, quint64 &n)
{
    *--end = QLatin1Char(static_cast<char>('0' + n % 10));
    n /= 10;
    return end;
}

/// Writes \a n divided by 10^\a decimals so that it ends before \a end. Returns the start of the text.
QChar *writeFixed(QChar *end, quint64 n, int decimals)
{
    for (int i = 0; i < decimals; ++i)
        end = writeDigit(end, n);
    if (decimals > 0)
        *--end = QLatin1Char('.');
    do {
        end = writeDigit(end, n);
    } while (n > 0);
    return end;
}

} // namespace

void appendCoord(QString &text, double v, int decimals)
{
    const auto power = static_cast<std::size_t>(decimals);
    const double scaled = power < powersOfTen.size() ? std::fabs(v) * powersOfTen[power] : halvesLimit;
    const bool hasHalves = scaled < halvesLimit; // false for NaN
    const quint64 whole = hasHalves ? static_cast<quint64>(scaled) : 0;
    const double rest = scaled - static_cast<double>(whole);
    // Slow path: too large, NaN, or an exact half, the only case in which the rounding of the product matters.
    if (!hasHalves || rest == 0.5) {
        text += QLocale::c().toString(v, 'f', decimals);
        return;
    }
    std::array<QChar, 32> buffer;
    QChar *const end = buffer.data() + buffer.size();
    QChar *begin = writeFixed(end, rest > 0.5 ? whole + 1 : whole, decimals);
    if (v < 0)
        *--begin = QLatin1Char('-');
    text.append(begin, static_cast<int>(end - begin));
}

QString coordText(double v, int decimals)
{
    QString text;
    appendCoord(text, v, decimals);
    return text;
}
