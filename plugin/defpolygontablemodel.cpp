#include "defpolygontablemodel.h"

#include "coordtext.h"

#include <QBrush>
#include <QLocale>

#include <algorithm>

namespace {

const QColor conflictColor(255, 220, 220);
const QColor separatorColor(240, 240, 240);

constexpr RowInfo separatorRow{-1, -1};

const QLocale &userLocale()
{
    static const QLocale locale;
    return locale;
}

} // namespace

double DefPolygonTableModel::s_coordPrecision = 0.01;

DefPolygonTableModel::DefPolygonTableModel(QObject *parent) : QAbstractTableModel(parent) {}

void DefPolygonTableModel::setCoordPrecision(double p)
{
    if (p > 0)
        s_coordPrecision = p;
}

void DefPolygonTableModel::setNxyColNum(int n, int x, int y)
{
    nColNum = n;
    xColNum = x;
    yColNum = y;
    maxColNum = std::max({n, x, y, maxColNum});
}

void DefPolygonTableModel::setFieldNumValueMap(const QMap<int, QString> &values)
{
    fieldNumValueMap = values;
    if (!values.isEmpty())
        maxColNum = std::max(maxColNum, values.lastKey());
}

void DefPolygonTableModel::setPolygon(DefPolygon *p)
{
    beginResetModel();
    polygon = p;
    rebuildRows();
    endResetModel();
}

void DefPolygonTableModel::detachPolygon()
{
    polygon = nullptr;
    invalidateConflictIndex();
}

void DefPolygonTableModel::refresh()
{
    if (polygon == nullptr)
        return;
    QVector<RowInfo> layout;
    appendRows(layout);
    if (layout != rows) {
        setPolygon(polygon);
        return;
    }
    if (!rows.isEmpty())
        Q_EMIT dataChanged(index(0, 0), index(rows.size() - 1, columnCount() - 1));
}

void DefPolygonTableModel::appendRows(QVector<RowInfo> &layout) const
{
    for (int c = 0; polygon != nullptr && c < polygon->contours.size(); ++c) {
        if (c > 0)
            layout.append(separatorRow);
        for (int v = 0; v < polygon->contours.at(c).size(); ++v)
            layout.append(RowInfo{c, v});
    }
}

void DefPolygonTableModel::rebuildRows()
{
    invalidateConflictIndex();
    rows.clear();
    appendRows(rows);
}

bool DefPolygonTableModel::isSeparator(int row) const
{
    return rows.at(row).contourIndex < 0;
}

// The object may have lost vertices since the rows were laid out.
bool DefPolygonTableModel::hasVertex(int row) const
{
    if (polygon == nullptr || row < 0 || row >= rows.size() || isSeparator(row))
        return false;
    const RowInfo info = rows.at(row);
    return info.contourIndex < polygon->contours.size() &&
           info.vertexIndex < polygon->contours.at(info.contourIndex).size();
}

const DefPoint &DefPolygonTableModel::vertex(int row) const
{
    const RowInfo info = rows.at(row);
    return polygon->contours.at(info.contourIndex).at(info.vertexIndex);
}

// Holding a copy makes every outside edit detach, so isSharedWith() detects edits.
void DefPolygonTableModel::ensureConflictIndex() const
{
    if (polygon == nullptr || indexedContours.isSharedWith(polygon->contours))
        return;
    conflictIndex.emplace();
    for (int row = 0; row < rows.size(); ++row) {
        if (hasVertex(row))
            (*conflictIndex)[vertex(row).def].add(vertex(row));
    }
    indexedContours = polygon->contours;
}

void DefPolygonTableModel::invalidateConflictIndex()
{
    conflictIndex.reset();
    indexedContours.clear();
}

bool DefPolygonTableModel::isConflictingPoint(int row) const
{
    if (!hasVertex(row) || vertex(row).def.isEmpty())
        return false;
    ensureConflictIndex();
    return conflictIndex->at(vertex(row).def).isConflict(vertex(row));
}

// Fixes the locale together with the decimals, so that a process does not mix two formats. A precision of 1 or more
// gives 0 decimals, which are not fixed but computed at each call.
int DefPolygonTableModel::coordDecimals()
{
    static int decimals = 0;
    userLocale();
    if (decimals == 0) {
        double p = s_coordPrecision;
        for (int k = 1; p > 0 && p < 1; ++k) {
            p *= 10;
            decimals = k;
        }
    }
    return decimals;
}

// NOLINTNEXTLINE(readability-convert-member-functions-to-static): published as a member
QString DefPolygonTableModel::formatCoord(double v, bool localized) const
{
    return localized ? userLocale().toString(v, 'f', coordDecimals()) : coordText(v, coordDecimals());
}

int DefPolygonTableModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : rows.size();
}

int DefPolygonTableModel::columnCount(const QModelIndex & /*parent*/) const
{
    return std::min(maxColNum < std::numeric_limits<int>::max() ? maxColNum + 1 : maxColNum, columnLimit);
}

QVariant DefPolygonTableModel::vertexBackground(int row) const
{
    return isConflictingPoint(row) ? QVariant(QBrush(conflictColor)) : QVariant();
}

// Where columns coincide, the first in this order wins.
ValueColumn::Content DefPolygonTableModel::contentOf(int column) const
{
    if (column == nColNum)
        return ValueColumn::Def;
    if (column == xColNum)
        return ValueColumn::X;
    if (column == yColNum)
        return ValueColumn::Y;
    return fieldNumValueMap.contains(column) ? ValueColumn::Field : ValueColumn::Nothing;
}

QVector<ValueColumn> DefPolygonTableModel::valueColumns() const
{
    QMap<int, ValueColumn> columns;
    for (int number : QList<int>{nColNum, xColNum, yColNum} + fieldNumValueMap.keys()) {
        if (number >= 0 && number < columnCount())
            columns.insert(number, {number, contentOf(number), fieldNumValueMap.value(number)});
    }
    return columns.values().toVector();
}

QString DefPolygonTableModel::vertexText(const DefPoint &vertex, int column, bool localized) const
{
    switch (contentOf(column)) {
    case ValueColumn::Def:
        return vertex.def;
    case ValueColumn::X:
        return formatCoord(vertex.x, localized);
    case ValueColumn::Y:
        return formatCoord(vertex.y, localized);
    default:
        return fieldNumValueMap.value(column);
    }
}

QVariant DefPolygonTableModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || polygon == nullptr || index.row() >= rows.size())
        return QVariant();
    if (isSeparator(index.row()))
        return role == Qt::BackgroundRole ? QVariant(QBrush(separatorColor)) : QVariant();
    if (!hasVertex(index.row()))
        return QVariant();
    if (role == Qt::BackgroundRole)
        return vertexBackground(index.row());
    if ((role == Qt::DisplayRole || role == Qt::EditRole) && contentOf(index.column()) != ValueColumn::Nothing)
        return vertexText(vertex(index.row()), index.column(), role == Qt::DisplayRole);
    return QVariant();
}

bool DefPolygonTableModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || !index.isValid() || !hasVertex(index.row()) || index.column() != nColNum)
        return false;
    const QString text = value.toString();
    if (text == vertex(index.row()).def)
        return false;
    invalidateConflictIndex();
    const RowInfo info = rows.at(index.row());
    polygon->contours[info.contourIndex][info.vertexIndex].def = text;
    Q_EMIT dataChanged(index, index, {Qt::DisplayRole, Qt::EditRole});
    // A rename can create or remove conflicts anywhere in the object.
    Q_EMIT dataChanged(this->index(0, 0), this->index(rows.size() - 1, columnCount() - 1), {Qt::BackgroundRole});
    return true;
}

QVariant DefPolygonTableModel::headerData(int section, Qt::Orientation /*orientation*/, int role) const
{
    return role == Qt::DisplayRole ? QVariant(section + 1) : QVariant();
}

Qt::ItemFlags DefPolygonTableModel::flags(const QModelIndex &index) const
{
    if (!index.isValid() || index.row() >= rows.size() || isSeparator(index.row()))
        return Qt::NoItemFlags;
    const Qt::ItemFlags shown = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
    const bool isEditable = polygon != nullptr && index.column() == nColNum;
    return isEditable ? shown | Qt::ItemIsEditable : shown;
}
