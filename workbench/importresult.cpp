#include "importresult.h"

#include <algorithm>

void ImportResult::appendVertex(const QPointF &position, const QByteArray &rowCells)
{
    m_rowStarts.append(m_cells.size());
    m_cells += rowCells;
    vertices.append(position);
    columnCount = std::max(columnCount, rowCells.count('\0'));
}

// Does not copy: the bytes are those of m_cells.
QByteArray ImportResult::rowOf(int vertex) const
{
    const int start = m_rowStarts.at(vertex);
    const int end = vertex + 1 < m_rowStarts.size() ? m_rowStarts.at(vertex + 1) : m_cells.size();
    return QByteArray::fromRawData(m_cells.constData() + start, end - start);
}

QStringList ImportResult::cells(int vertex) const
{
    QStringList texts;
    const QByteArray row = rowOf(vertex);
    for (int start = 0, end = 0; (end = row.indexOf('\0', start)) >= 0; start = end + 1)
        texts.append(QString::fromUtf8(row.constData() + start, end - start));
    return texts;
}

QString ImportResult::cell(int vertex, int column) const
{
    const QByteArray row = rowOf(vertex);
    int start = 0;
    for (int i = 0; i < column && start < row.size(); ++i)
        start = row.indexOf('\0', start) + 1;
    return start < row.size() ? QString::fromUtf8(row.constData() + start) : QString();
}

int ImportResult::objectOf(int vertex) const
{
    const auto isAfter = [](int v, const ResultObject &object) { return v < object.firstVertex; };
    const auto *const next = std::upper_bound(objects.cbegin(), objects.cend(), vertex, isAfter);
    return static_cast<int>(next - objects.begin()) - 1;
}
