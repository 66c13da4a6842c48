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

QString ImportResult::cell(int vertex, int column) const
{
    const QByteArray row = rowOf(vertex);
    int start = 0;
    for (int i = 0; i < column && start < row.size(); ++i)
        start = row.indexOf('\0', start) + 1;
    return start < row.size() ? QString::fromUtf8(row.constData() + start) : QString();
}
