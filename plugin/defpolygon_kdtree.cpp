#include "defpolygon_kdtree.h"

#include <algorithm>
#include <limits>
#include <utility>

/// Bounds of a range of entries; not necessarily tight.
struct KdTree::Box
{
    double low[2];
    double high[2];
};

KdTree::KdTree(std::vector<Entry> entries) : m_entries(std::move(entries))
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    Box box{{infinity, infinity}, {-infinity, -infinity}};
    for (const Entry &entry : m_entries) {
        box = Box{{std::min(box.low[0], entry.x), std::min(box.low[1], entry.y)},
                  {std::max(box.high[0], entry.x), std::max(box.high[1], entry.y)}};
    }
    build(0, size(), box);
}

// Partitions the range at its median along the longer side of its box, then builds both halves.
void KdTree::build(std::size_t begin, std::size_t end, Box box)
{
    if (end - begin <= leafSize)
        return;
    const std::size_t middle = begin + (end - begin) / 2;
    Entry *const entries = m_entries.data();
    Entry &node = entries[middle];
    const int axis = box.high[0] - box.low[0] >= box.high[1] - box.low[1] ? 0 : 1;
    if (axis == 0)
        std::nth_element(entries + begin, &node, entries + end,
                         [](const Entry &a, const Entry &b) { return a.x < b.x; });
    else
        std::nth_element(entries + begin, &node, entries + end,
                         [](const Entry &a, const Entry &b) { return a.y < b.y; });
    node.axis = axis;
    Box lower = box;
    Box upper = box;
    lower.high[axis] = upper.low[axis] = axis == 0 ? node.x : node.y;
    build(begin, middle, lower);
    build(middle + 1, end, upper);
}
