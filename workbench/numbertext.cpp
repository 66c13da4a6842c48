#include "numbertext.h"

#include <QLocale>

#include <cmath>

namespace {

// The C locale groups with commas and separates the decimals with a point, as the result does.
QString withSpaces(QString text)
{
    return text.replace(QLatin1Char(','), QChar(QChar::Nbsp));
}

QLocale groupingLocale()
{
    QLocale locale = QLocale::c();
    locale.setNumberOptions(QLocale::DefaultNumberOptions);
    return locale;
}

} // namespace

const QString &nounForm(int count, const NounForms &forms)
{
    const int tens = count % 100;
    const int ones = count % 10;
    if ((tens >= 11 && tens <= 14) || ones == 0 || ones >= 5)
        return forms.many;
    return ones == 1 ? forms.one : forms.few;
}

QString groupedText(int count)
{
    return withSpaces(groupingLocale().toString(count));
}

QString countText(int count, const NounForms &forms)
{
    return groupedText(count) + QLatin1Char(' ') + nounForm(count, forms);
}

QString metresText(double value)
{
    return std::isfinite(value) ? withSpaces(groupingLocale().toString(value, 'f', 2)) : QString();
}
