#include "verticesmodel.h"

#include <algorithm>

VerticesModel::VerticesModel(const GeometryInfo &columns, QObject *parent)
    : QAbstractTableModel(parent),
      m_columns(columns)
{
}

void VerticesModel::setResult(const ImportResult &result)
{
    beginResetModel();
    m_result = result;
    m_object = -1;
    endResetModel();
}

void VerticesModel::setObject(int object)
{
    if (object == m_object)
        return;
    beginResetModel();
    m_object = object;
    endResetModel();
}

int VerticesModel::rowCount(const QModelIndex &parent) const
{
    if (parent.isValid() || m_object < 0)
        return 0;
    const ResultObject &shown = m_result.objects.at(m_object);
    return shown.vertexCount + std::max(shown.contourCount - 1, 0);
}

int VerticesModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_result.columnCount;
}

QVariant VerticesModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return QVariant();
    if (role == Qt::TextAlignmentRole && (index.column() == m_columns.xColNum || index.column() == m_columns.yColNum))
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    if (role != Qt::DisplayRole)
        return QVariant();
    const int vertex = vertexAt(index.row());
    return vertex < 0 ? QVariant() : m_result.cell(vertex, index.column());
}

// Where columns coincide, the number takes precedence over X, and X over Y, as in the result.
QVariant VerticesModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Vertical || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    if (section == m_columns.nColNum)
        return QStringLiteral("Номер");
    if (section == m_columns.xColNum)
        return QStringLiteral("X, м");
    if (section == m_columns.yColNum)
        return QStringLiteral("Y, м");
    return QStringLiteral("Поле %1").arg(section + 1);
}

/// The vertex in \a row, or -1 for the row between two contours.
int VerticesModel::vertexAt(int row) const
{
    const ResultObject &shown = m_result.objects.at(m_object);
    const auto *const first = m_result.contours.constData() + shown.firstContour;
    // Each contour before this one has added one empty row.
    const auto startRow = [&shown, first](const ResultContour &contour) {
        return contour.firstVertex - shown.firstVertex + static_cast<int>(&contour - first);
    };
    const auto isAfter = [&startRow](int r, const ResultContour &contour) { return r < startRow(contour); };
    const ResultContour *const contour = std::upper_bound(first, first + shown.contourCount, row, isAfter) - 1;
    const int vertex = contour->firstVertex + row - startRow(*contour);
    return vertex < contour->firstVertex + contour->vertexCount ? vertex : -1;
}
