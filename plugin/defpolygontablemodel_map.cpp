#include "defpolygontablemodel.h"

#include <QBrush>

namespace {

const QColor duplicateColor(255, 220, 220);

} // namespace

DefMapTableModel::DefMapTableModel(QObject *parent) : QAbstractTableModel(parent) {}

void DefMapTableModel::setMap(QVector<DefPolygon> *newMap)
{
    beginResetModel();
    map = newMap;
    duplicateIndex.reset();
    endResetModel();
}

void DefMapTableModel::detachMap()
{
    map = nullptr;
    duplicateIndex.reset();
}

bool DefMapTableModel::isDuplicateDef(int row) const
{
    if (!hasObject(row) || map->at(row).def.isEmpty())
        return false;
    ensureDuplicateIndex(row);
    return duplicateIndex->isDuplicate(row);
}

void DefMapTableModel::ensureDuplicateIndex(int row) const
{
    if (hasObject(row) && !isIndexed(row))
        duplicateIndex.emplace(*map);
}

int DefMapTableModel::rowCount(const QModelIndex &parent) const
{
    return map == nullptr || parent.isValid() ? 0 : map->size();
}

int DefMapTableModel::columnCount(const QModelIndex & /*parent*/) const
{
    return 1;
}

QVariant DefMapTableModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || !hasObject(index.row()))
        return QVariant();
    if (role == Qt::DisplayRole || role == Qt::EditRole)
        return map->at(index.row()).def;
    if (role == Qt::BackgroundRole && index.column() == 0 && isDuplicateDef(index.row()))
        return QBrush(duplicateColor);
    return QVariant();
}

bool DefMapTableModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || !index.isValid() || !hasObject(index.row()) || index.column() != 0)
        return false;
    QString &def = (*map)[index.row()].def;
    const QString text = value.toString();
    if (text == def)
        return false;
    if (isIndexed(index.row()))
        duplicateIndex->rename(index.row(), text);
    else
        duplicateIndex.reset();
    def = text;
    Q_EMIT dataChanged(index, index, {Qt::DisplayRole, Qt::EditRole});
    // A rename can create or remove duplicates anywhere in the list.
    Q_EMIT dataChanged(this->index(0, 0), this->index(rowCount() - 1, 0), {Qt::BackgroundRole});
    return true;
}

QVariant DefMapTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return QVariant();
    return orientation == Qt::Horizontal ? QVariant(QStringLiteral("N")) : QVariant(section + 1);
}

Qt::ItemFlags DefMapTableModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    const Qt::ItemFlags shown = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
    return index.column() == 0 ? shown | Qt::ItemIsEditable : shown;
}
