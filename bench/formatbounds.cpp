#include "formatbounds.h"

#include <QLocale>

#include <cmath>

namespace {

QString bounded(double value, bool isWithinBound, const QString &sign, double bound)
{
    if (!std::isfinite(value) || value <= 0)
        return QStringLiteral("—");
    const QString text =
        isWithinBound ? russianNumber(value, 2) : QStringLiteral("**%1**").arg(russianNumber(value, 2));
    return QStringLiteral("%1 (%2 %3)").arg(text, sign, QLocale(QLocale::Russian).toString(bound));
}

} // namespace

QString russianNumber(double value, int decimals)
{
    return QLocale(QLocale::Russian).toString(value, 'f', decimals);
}

QString atMost(double value, double bound)
{
    return bounded(value, value <= bound, QStringLiteral("≤"), bound);
}

QString atLeast(double value, double bound)
{
    return bounded(value, value >= bound, QStringLiteral("≥"), bound);
}
