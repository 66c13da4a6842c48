#pragma once

#include <QFontMetrics>
#include <QHash>
#include <QSize>
#include <QStyledItemDelegate>

#include <optional>

/// Shows the beginning of a text that is longer than any screen is wide: to lay out all of it takes very long.
class ElidingDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QString displayText(const QVariant &value, const QLocale &locale) const override;
};

/// Shows designations. A view that asks for the size of each row gets it soon.
///
/// Designations that differ in their digits only are measured once, with a digit more than they have; long ones and
/// those without digits each as it is.
class DefDelegate : public ElidingDelegate
{
    Q_OBJECT

public:
    using ElidingDelegate::ElidingDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    bool isLookOf(const QStyleOptionViewItem &option, const QModelIndex &index) const;
    QSize measure(QStyleOptionViewItem option, const QModelIndex &index, const QString &text) const;

    mutable std::optional<QFontMetrics> m_metrics; ///< with which the sizes were measured
    mutable QSize m_digitSize;                     ///< of m_digit alone, which tells of the style
    mutable QChar m_digit;                         ///< that stands for all in a designation
    mutable QHash<QString, QSize> m_sizes;         ///< by designation with all digits alike
};
