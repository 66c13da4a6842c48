#include "dialog_defdelegate.h"

#include <QApplication>

#include <algorithm>

namespace {

/// Longer texts are measured as they are, with all that digits lose and gain beside letters.
constexpr int longText = 60;

/// How many sizes are kept: those of one large import, not of all.
constexpr int mostSizes = 200000;

bool isDigit(QChar c)
{
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}

QChar widestDigit(const QFontMetrics &metrics)
{
    const QString digits = QStringLiteral("0123456789");
    return *std::max_element(digits.begin(), digits.end(), [&](QChar a, QChar b) {
        return metrics.horizontalAdvance(a) < metrics.horizontalAdvance(b);
    });
}

} // namespace

QSize DefDelegate::measure(QStyleOptionViewItem option, const QModelIndex &index, const QString &text) const
{
    initStyleOption(&option, index);
    option.text = displayText(text, option.locale);
    const QStyle *const style = option.widget != nullptr ? option.widget->style() : QApplication::style();
    return style->sizeFromContents(QStyle::CT_ItemViewItem, &option, QSize(), option.widget);
}

QSize DefDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    if (metrics != option.fontMetrics || sizes.size() >= mostSizes) {
        metrics = option.fontMetrics;
        digit = widestDigit(*metrics);
        sizes.clear();
    }
    QString def = index.data().toString();
    const bool isAlike = def.size() <= longText && std::any_of(def.cbegin(), def.cend(), isDigit);
    if (isAlike)
        std::replace_if(def.begin(), def.end(), isDigit, digit);
    const auto known = sizes.constFind(def);
    if (known != sizes.constEnd())
        return *known;
    // Some digits stand closer to a letter than others; what that adds up to is less than a digit.
    const QSize size = measure(option, index, isAlike ? def + digit : def);
    sizes.insert(def, size);
    return size;
}
