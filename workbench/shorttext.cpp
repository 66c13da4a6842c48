#include "shorttext.h"

QString shortText(const QString &text, int maxLength)
{
    return text.size() > maxLength ? text.left(maxLength) + QChar(0x2026) : text;
}

QString ShortTextDelegate::displayText(const QVariant &value, const QLocale &locale) const
{
    return shortText(QStyledItemDelegate::displayText(value, locale), maxLength);
}
