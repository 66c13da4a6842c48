#pragma once

#include <QStyledItemDelegate>

/// Elides texts of more than 500 characters: laying out megabytes takes seconds, and no screen shows more.
class ElidingDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QString displayText(const QVariant &value, const QLocale &locale) const override;
};
