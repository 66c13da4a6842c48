#include "dialog_elidingdelegate.h"

#include "digit.h"

#include <QApplication>

#include <algorithm>

namespace {

/// Longer texts are measured as they are: differences between digits add up.
constexpr int longText = 24;

/// How much of a text is shown.
constexpr int mostShown = 500;

/// How many sizes are kept: those of one large import, not of all.
constexpr int mostSizes = 200000;

QChar widestDigit(const QFontMetricsF &metrics)
{
    const QString digits = QStringLiteral("0123456789");
    return *std::max_element(digits.begin(), digits.end(), [&](QChar a, QChar b) {
        return metrics.horizontalAdvance(a) < metrics.horizontalAdvance(b);
    });
}

/// True when \a def takes as much place as others with as many digits at the same places.
bool isLikeOthers(const QString &def)
{
    return def.size() <= longText && !def.contains(QLatin1Char('\n')) && std::any_of(def.begin(), def.end(), isDigit);
}

} // namespace

QString ElidingDelegate::displayText(const QVariant &value, const QLocale &locale) const
{
    const QString text = value.toString();
    if (text.size() <= mostShown)
        return QStyledItemDelegate::displayText(value, locale);
    return QStyledItemDelegate::displayText(text.left(mostShown) + QStringLiteral("…"), locale);
}

QSize DefDelegate::measure(QStyleOptionViewItem option, const QModelIndex &index, const QString &text) const
{
    initStyleOption(&option, index);
    option.text = displayText(text, option.locale);
    const QStyle *const style = option.widget != nullptr ? option.widget->style() : QApplication::style();
    return style->sizeFromContents(QStyle::CT_ItemViewItem, &option, QSize(), option.widget);
}

// A list asks for the size of its first row whenever it lays out all of them, as it does after a change of the style.
bool DefDelegate::isLookOf(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    return m_metrics == option.fontMetrics && (index.row() > 0 || measure(option, index, m_digit) == m_digitSize);
}

QSize DefDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    if (!isLookOf(option, index) || m_sizes.size() >= mostSizes) {
        m_metrics = option.fontMetrics;
        m_digit = widestDigit(QFontMetricsF(*m_metrics));
        m_digitSize = measure(option, index, m_digit);
        m_sizes.clear();
    }
    QString def = index.data().toString();
    const bool isAlike = isLikeOthers(def);
    if (isAlike)
        std::replace_if(def.begin(), def.end(), isDigit, m_digit);
    const auto known = m_sizes.constFind(def);
    if (known != m_sizes.constEnd())
        return *known;
    // Some digits stand closer to a letter than others; in a short text that adds up to less than a digit.
    const QSize size = measure(option, index, isAlike ? def + m_digit : def);
    m_sizes.insert(def, size);
    return size;
}
