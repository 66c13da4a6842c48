#include "pictureindex.h"

#include <QBitArray>

#include <algorithm>

PictureIndex::PictureIndex(const QVector<PictureBox> &boxes) : m_boxes(boxes)
{
    for (int i = 0; i < boxes.size(); ++i) {
        if (!boxes.at(i).isEmpty())
            m_order.append(i);
    }
    if (!m_order.isEmpty())
        build(0, m_order.size());
}

// NOLINTNEXTLINE(misc-no-recursion): as deep as the logarithm of the number of boxes
void PictureIndex::build(int first, int last)
{
    constexpr int leafSize = 8;
    PictureBox box;
    for (int i = first; i < last; ++i)
        box.add(m_boxes.at(m_order.at(i)));
    const int node = m_nodes.size();
    m_nodes.append({box, 0, first, last});
    if (last - first > leafSize) {
        const int middle = first + (last - first) / 2;
        split(first, middle, last, box.width() > box.height());
        m_nodes[node].last = first;
        build(first, middle);
        build(middle, last);
    }
    m_nodes[node].next = m_nodes.size();
}

void PictureIndex::split(int first, int middle, int last, bool alongX)
{
    const auto isLess = [this, alongX](int a, int b) {
        const PictureBox &left = m_boxes.at(a);
        const PictureBox &right = m_boxes.at(b);
        return alongX ? left.minX + left.maxX < right.minX + right.maxX
                      : left.minY + left.maxY < right.minY + right.maxY;
    };
    std::nth_element(m_order.begin() + first, m_order.begin() + middle, m_order.begin() + last, isLess);
}

QVector<int> PictureIndex::find(const PictureBox &box) const
{
    // Marking and counting puts the found boxes in order; sorting 100,000 of them would take 6 ms.
    QBitArray isFound(m_boxes.size());
    int count = 0;
    for (int i = 0; i < m_nodes.size();) {
        const Node &node = m_nodes.at(i);
        const bool touches = node.box.touches(box);
        for (int item = node.first; touches && item < node.last; ++item) {
            const int found = m_order.at(item);
            const bool isTouched = m_boxes.at(found).touches(box);
            isFound.setBit(found, isTouched);
            count += isTouched ? 1 : 0;
        }
        i = touches ? i + 1 : node.next;
    }
    QVector<int> result;
    result.reserve(count);
    for (int i = 0; result.size() < count; ++i) {
        if (isFound.testBit(i))
            result.append(i);
    }
    return result;
}
