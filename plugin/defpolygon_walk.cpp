#include "defpolygon_walk.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace {

/// The points of a block; to walk through as many takes little time.
constexpr int blockSize = 1024;

} // namespace

/// A query on its way.
struct WalkSearch::Query
{
    double x;
    double y;
    int step = -1; ///< the way it goes: -1 to the front, 1 to the end
    double best = std::numeric_limits<double>::max();
    int found = -1;

    /// Of points at one distance the first on the way counts.
    void examine(const PlaceTree::Place &place)
    {
        const double dx = place.x - x;
        const double dy = place.y - y;
        const double distance = dx * dx + dy * dy;
        if (distance < best || (distance == best && found >= 0 && (place.point - found) * step < 0)) {
            best = distance;
            found = place.point;
        }
    }

    bool isOutOfReach(double otherX) const
    {
        const double dx = otherX - x;
        return dx * dx > best;
    }
};

WalkSearch::WalkSearch(const QVector<DefPoint> &points) : m_points(points)
{
    for (int begin = 0; points.size() - begin >= blockSize; begin += blockSize)
        m_blocks.push_back(blockFrom(begin));
}

WalkSearch::Block WalkSearch::blockFrom(int begin) const
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    Block block{infinity, -infinity, PlaceTree()};
    std::vector<PlaceTree::Place> places;
    for (int i = begin; i < begin + blockSize; ++i) {
        const DefPoint &point = m_points.at(i);
        block.left = std::min(block.left, point.x); // which NaN leaves as it is
        block.right = std::max(block.right, point.x);
        if (std::isfinite(point.x) && std::isfinite(point.y))
            places.push_back(PlaceTree::Place{point.x, point.y, i});
    }
    block.tree = PlaceTree(std::move(places));
    return block;
}

// Goes over the block that begins at \a i, unless there is none or the walk may stop in it.
bool WalkSearch::leap(int i, Query &query) const
{
    const int first = query.step > 0 ? 0 : blockSize - 1;
    const auto number = static_cast<std::size_t>(i / blockSize);
    if (i % blockSize != first || number >= m_blocks.size())
        return false;
    const Block &block = m_blocks[number];
    Query behind = query;
    block.tree.search(behind);
    if (behind.isOutOfReach(block.left) || behind.isOutOfReach(block.right))
        return false;
    query = behind;
    return true;
}

void WalkSearch::walk(int i, Query &query) const
{
    while (i >= 0 && i < m_points.size()) {
        if (leap(i, query)) {
            i += query.step * blockSize;
            continue;
        }
        const DefPoint &point = m_points.at(i);
        if (query.isOutOfReach(point.x))
            return;
        query.examine(PlaceTree::Place{point.x, point.y, i});
        i += query.step;
    }
}

const DefPoint *WalkSearch::find(const QPointF &p) const
{
    if (!std::isfinite(p.x()) || !std::isfinite(p.y()))
        return nullptr;
    Query query{p.x(), p.y()};
    const int bound = lowerBound(m_points, p.x());
    for (int i = bound; i >= qMax(0, bound - 1); --i) {
        if (i < m_points.size())
            query.examine(PlaceTree::Place{m_points.at(i).x, m_points.at(i).y, i});
    }
    query.step = 1;
    walk(bound + 1, query);
    query.step = -1;
    walk(bound - 2, query);
    return query.found < 0 ? nullptr : &m_points.at(query.found);
}
