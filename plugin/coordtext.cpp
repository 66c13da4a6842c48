#include "coordtext.h"

#include <QLocale>

#include <array>
#include <cmath>

namespace {

constexpr std::array<double, 10> powersOfTen{1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9};

/// 2^52; doubles below it can represent halves, so rounding to an integer can be decided exactly.
constexpr double largestWithHalves = 4503599627370496.0;

/// Writes the decimal digits of \a n backwards from \a end, at least \a count; returns the first.
QChar *writeDigits(QChar *end, quint64 n, int count)
{
    for (; n > 0 || count > 0; n /= 10, --count)
        *--end = QLatin1Char(static_cast<char>('0' + n % 10));
    return end;
}

} // namespace

QString coordText(double v, int decimals)
{
    const auto place = static_cast<std::size_t>(decimals);
    const double scaled = place < powersOfTen.size() ? std::fabs(v) * powersOfTen[place] : largestWithHalves;
    const double whole = std::floor(scaled);
    const double rest = scaled - whole;
    // Slow path. Rounding of the product matters only at an exact half. The negated test also catches NaN.
    if (!(scaled < largestWithHalves) || rest == 0.5)
        return QLocale::c().toString(v, 'f', decimals);

    const auto digits = static_cast<quint64>(rest > 0.5 ? whole + 1 : whole);
    const auto unit = static_cast<quint64>(powersOfTen[place]);
    std::array<QChar, 32> text;
    QChar *const end = text.data() + text.size();
    QChar *begin = end;
    if (decimals > 0) {
        begin = writeDigits(begin, digits % unit, decimals);
        *--begin = QLatin1Char('.');
    }
    begin = writeDigits(begin, digits / unit, 1);
    if (v < 0)
        *--begin = QLatin1Char('-');
    return QString(begin, static_cast<int>(end - begin));
}
