#pragma once

#include <QStyledItemDelegate>

/// Returns \a text, or its first \a maxLength characters and an ellipsis.
QString shortText(const QString &text, int maxLength);

/// Shows only the beginning of a long text: painting a cell with a million characters takes a quarter of a second.
class ShortTextDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QString displayText(const QVariant &value, const QLocale &locale) const override;

    static constexpr int maxLength = 500; ///< characters of a cell
};
