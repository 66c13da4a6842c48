#include "blockcopies.h"

#include "drawingpairs.h"

#include <algorithm>

namespace {

// GDAL and other programs descend into blocks by recursion.
constexpr int maxDepth = 100;

bool isInsertion(const QByteArray &type)
{
    return type == "INSERT" || type == "DIMENSION";
}

} // namespace

void BlockCopies::begin(const QByteArray &type, bool isContent, qint64 line)
{
    m_type = isContent ? type : QByteArray();
    m_insertion = {{}, 1, line};
    m_rows = m_columns = 1;
    if (!isContent || type == "BLOCK" || type == "ENDBLK")
        m_block.clear();
    else
        ++m_blocks[m_block].entityCount;
}

void BlockCopies::readPair(int code, const QByteArray &value)
{
    if (code == 2 && m_type == "BLOCK") {
        m_block = value;
        m_blocks[value]; // also if it stays empty
    } else if (code == 2 && isInsertion(m_type)) {
        m_insertion.block = value;
    } else if (code == 70 && m_type == "INSERT") {
        m_columns = std::max(1.0, value.toDouble());
    } else if (code == 71 && m_type == "INSERT") {
        m_rows = std::max(1.0, value.toDouble());
    }
}

void BlockCopies::end()
{
    if (!isInsertion(m_type) || m_insertion.block.isEmpty())
        return;
    m_insertion.copies = m_rows * m_columns;
    m_blocks[m_block].insertions.append(m_insertion);
}

// Descends as GDAL does, which leaves out a block within itself. Each step counts at least one copy, so the number of
// steps is limited. Returns false if there are too many copies.
bool BlockCopies::count(const Insertion &insertion, double times, int depth)
{
    const auto found = m_blocks.find(insertion.block);
    if (found == m_blocks.end() || found->isOpen)
        return true;
    Block &block = *found;
    const double copies = times * insertion.copies;
    m_count += copies * static_cast<double>(std::max(block.entityCount, qint64{1}));
    if (m_count > static_cast<double>(maxCount) || depth > maxDepth)
        return false;
    block.isOpen = true;
    bool ok = true;
    for (const Insertion &inner : qAsConst(block.insertions))
        ok = ok && count(inner, copies, depth + 1);
    block.isOpen = false;
    return ok;
}

bool BlockCopies::read(const QByteArray &fileName)
{
    DrawingPairs pairs;
    if (!pairs.open(fileName))
        return false;
    while (pairs.next()) {
        if (pairs.code() == 0) {
            end();
            begin(pairs.value(), pairs.isContent(), pairs.line());
        } else if (pairs.isContent()) {
            readPair(pairs.code(), pairs.value());
        }
    }
    end();
    const QVector<Insertion> insertions = m_blocks.value(QByteArray()).insertions;
    for (const Insertion &insertion : insertions) {
        if (m_excessLine == 0 && !count(insertion, 1, 0))
            m_excessLine = insertion.line;
    }
    return true;
}
