#include "objectsmodel.h"

#include "duplicates.h"
#include "numbertext.h"
#include "shorttext.h"

#include <QCollator>
#include <QTextDocument>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

QString closureText(Closure closure)
{
    switch (closure) {
    case Closure::Open:
        return QStringLiteral("нет");
    case Closure::Mixed:
        return QStringLiteral("частью");
    case Closure::Closed:
        return QStringLiteral("да");
    case Closure::None:
        break;
    }
    return QString();
}

QString headerText(int column)
{
    switch (column) {
    case ObjectsModel::Def:
        return QStringLiteral("Обозначение");
    case ObjectsModel::Contours:
        return QStringLiteral("Контуров");
    case ObjectsModel::Vertices:
        return QStringLiteral("Вершин");
    case ObjectsModel::Closed:
        return QStringLiteral("Замкнут");
    case ObjectsModel::Perimeter:
        return QStringLiteral("Периметр, м");
    default:
        return QStringLiteral("Площадь, м²");
    }
}

QString headerToolTip(int column)
{
    switch (column) {
    case ObjectsModel::Def:
        return QStringLiteral("Цветом выделены обозначения, которые встречаются больше одного раза");
    case ObjectsModel::Vertices:
        return QStringLiteral("Строк с координатами; у замкнутого контура первая вершина повторяется в конце");
    case ObjectsModel::Closed:
        return QStringLiteral("Кончаются ли контуры там, где начались");
    case ObjectsModel::Perimeter:
        return QStringLiteral("Длина всех контуров");
    case ObjectsModel::Area:
        return QStringLiteral("Площадь замкнутых контуров без отверстий");
    default:
        return QString();
    }
}

// Replaces NaN, which has no order. It precedes all sizes.
double orderable(double value)
{
    return std::isnan(value) ? -1 : value;
}

// Sorts by the key of each object; equal objects keep the order of the result.
template <typename Key>
void sortBy(QVector<int> &objects, Qt::SortOrder order, Key key)
{
    const auto isLess = [&key](int a, int b) { return key(a) < key(b); };
    const auto isGreater = [&key](int a, int b) { return key(b) < key(a); };
    if (order == Qt::AscendingOrder)
        std::stable_sort(objects.begin(), objects.end(), isLess);
    else
        std::stable_sort(objects.begin(), objects.end(), isGreater);
}

#ifdef Q_OS_WIN
// There, half of a QCollatorSortKey is uninitialised memory.
class TextKey
{
public:
    TextKey(const QCollator &collator, const QString &text) : m_collator(&collator), m_text(&text) {}

    bool operator<(const TextKey &other) const { return m_collator->compare(*m_text, *other.m_text) < 0; }

private:
    const QCollator *m_collator;
    const QString *m_text;
};
#else
// Comparing sort keys is 10 times faster than comparing texts.
class TextKey
{
public:
    TextKey(const QCollator &collator, const QString &text) : m_key(collator.sortKey(text)) {}

    bool operator<(const TextKey &other) const { return m_key < other.m_key; }

private:
    QCollatorSortKey m_key;
};
#endif

} // namespace

void ObjectsModel::setResult(const ImportResult &result)
{
    beginResetModel();
    m_result = result;
    m_measures = ResultMeasure(m_result).measureAll();
    m_isDuplicate = duplicateDefs(m_result);
    m_objects = shownObjects();
    endResetModel();
}

void ObjectsModel::setFilter(const QString &text)
{
    if (text == m_filter)
        return;
    beginResetModel();
    m_filter = text;
    m_objects = shownObjects();
    endResetModel();
}

void ObjectsModel::sort(int column, Qt::SortOrder order)
{
    Q_EMIT layoutAboutToBeChanged({}, VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    QVector<int> rows(m_result.objects.size(), -1);
    const QVector<int> former = m_objects;
    m_sortColumn = column;
    m_sortOrder = order;
    m_objects = shownObjects();
    for (int row = 0; row < m_objects.size(); ++row)
        rows[m_objects.at(row)] = row;
    QModelIndexList after;
    for (const QModelIndex &cell : before)
        after.append(index(rows.at(former.at(cell.row())), cell.column()));
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged({}, VerticalSortHint);
}

void ObjectsModel::setDuplicateBrush(const QBrush &brush)
{
    m_duplicateBrush = brush;
    if (!m_objects.isEmpty())
        Q_EMIT dataChanged(index(0, Def), index(m_objects.size() - 1, Def), {Qt::BackgroundRole});
}

int ObjectsModel::rowOf(int object) const
{
    return m_objects.indexOf(object);
}

int ObjectsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_objects.size();
}

int ObjectsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant ObjectsModel::data(const QModelIndex &index, int role) const
{
    const int object = index.isValid() ? objectAt(index.row()) : -1;
    if (object < 0)
        return QVariant();
    if (role == Qt::DisplayRole)
        return text(object, index.column());
    if (role == Qt::ToolTipRole && index.column() == Def)
        return toolTip(object);
    if (role == Qt::TextAlignmentRole && index.column() != Def)
        return QVariant((index.column() == Closed ? Qt::AlignHCenter : Qt::AlignRight) | Qt::AlignVCenter);
    if (role == Qt::BackgroundRole && index.column() == Def && m_isDuplicate.at(object))
        return m_duplicateBrush;
    return QVariant();
}

QVariant ObjectsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Vertical)
        return QAbstractTableModel::headerData(section, orientation, role);
    if (role == Qt::DisplayRole)
        return headerText(section);
    return role == Qt::ToolTipRole ? headerToolTip(section) : QVariant();
}

QString ObjectsModel::text(int object, int column) const
{
    const ResultObject &shown = m_result.objects.at(object);
    const ObjectMeasure &measure = m_measures.at(object);
    switch (column) {
    case Def:
        return shown.def;
    case Contours:
        return groupedText(shown.contourCount);
    case Vertices:
        return groupedText(shown.vertexCount);
    case Closed:
        return closureText(measure.closure);
    case Perimeter:
        return metresText(measure.perimeter);
    default:
        return metresText(measure.area);
    }
}

// Escaped, because a designation can contain markup. Duplicates are named because the selection hides their colour.
QString ObjectsModel::toolTip(int object) const
{
    QString text = shortText(m_result.objects.at(object).def, ShortTextDelegate::maxLength);
    if (m_isDuplicate.at(object))
        text += QStringLiteral("\nВстречается больше одного раза");
    return Qt::convertFromPlainText(text, Qt::WhiteSpaceNormal);
}

QVector<int> ObjectsModel::shownObjects() const
{
    QVector<int> objects(m_result.objects.size());
    std::iota(objects.begin(), objects.end(), 0);
    if (!m_filter.isEmpty()) {
        const auto isHidden = [this](int object) {
            return !m_result.objects.at(object).def.contains(m_filter, Qt::CaseInsensitive);
        };
        objects.erase(std::remove_if(objects.begin(), objects.end(), isHidden), objects.end());
    }
    sortObjects(objects);
    return objects;
}

void ObjectsModel::sortObjects(QVector<int> &objects) const
{
    if (m_sortColumn == Def)
        sortByDef(objects);
    else if (m_sortColumn >= 0)
        sortBy(objects, m_sortOrder, [this](int object) { return sortKey(object); });
}

// Natural order: digits by their value, letters as in the Russian alphabet.
void ObjectsModel::sortByDef(QVector<int> &objects) const
{
    QCollator collator{QLocale(QLocale::Russian)};
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::vector<TextKey> keys;
    keys.reserve(static_cast<size_t>(m_result.objects.size()));
    for (const ResultObject &object : m_result.objects)
        keys.emplace_back(collator, object.def);
    sortBy(objects, m_sortOrder, [&keys](int object) { return keys[static_cast<size_t>(object)]; });
}

/// The sort key of \a object in the sorted column, which is not the designation.
double ObjectsModel::sortKey(int object) const
{
    const ResultObject &sorted = m_result.objects.at(object);
    const ObjectMeasure &measure = m_measures.at(object);
    switch (m_sortColumn) {
    case Contours:
        return sorted.contourCount;
    case Vertices:
        return sorted.vertexCount;
    case Closed:
        return static_cast<double>(measure.closure);
    case Perimeter:
        return orderable(measure.perimeter);
    default:
        return orderable(measure.area);
    }
}
