#include "dialog_elidingdelegate.h"

QString ElidingDelegate::displayText(const QVariant &value, const QLocale &locale) const
{
    constexpr int maxShown = 500;
    const QString text = value.toString();
    if (text.size() <= maxShown)
        return QStyledItemDelegate::displayText(value, locale);
    // Never split a surrogate pair.
    const int shown = text.at(maxShown - 1).isHighSurrogate() ? maxShown - 1 : maxShown;
    return QStyledItemDelegate::displayText(text.left(shown) + QStringLiteral("…"), locale);
}
