#include "contournesting.h"

#include "segmentdistance.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int maxLevel = 16;

// Half a centimetre, the rounding error of a coordinate: rounding can move a vertex of a hole off the edge it touches.
constexpr double tolerance = 0.005;

bool crossesRay(const QPointF &point, const QPointF &a, const QPointF &b)
{
    return (a.y() > point.y()) != (b.y() > point.y()) &&
           point.x() < a.x() + (b.x() - a.x()) * (point.y() - a.y()) / (b.y() - a.y());
}

bool encloses(const QRectF &outer, const QRectF &inner)
{
    return outer.left() <= inner.left() + tolerance && outer.right() >= inner.right() - tolerance &&
           outer.top() <= inner.top() + tolerance && outer.bottom() >= inner.bottom() - tolerance;
}

} // namespace

QVector<int> ContourNesting::depths(const QVector<ResultContour> &rings)
{
    m_rings = rings;
    m_boxes.clear();
    for (const ResultContour &ring : rings)
        m_boxes.append(boxOf(ring));
    m_bounds = boundsOf(m_boxes);
    m_tree.clear();

    QVector<int> depths;
    for (int ring = 0; ring < rings.size(); ++ring) {
        const int parent = parentOf(ring);
        if (m_effort > m_maxEffort)
            return {};
        depths.append(parent < 0 ? 0 : depths.at(parent) + 1);
        m_tree[cellOf(m_boxes.at(ring))].append(ring);
    }
    return depths;
}

QRectF ContourNesting::boundsOf(const QVector<QRectF> &boxes)
{
    QRectF bounds = boxes.value(0);
    for (const QRectF &box : boxes) {
        bounds.setLeft(std::min(bounds.left(), box.left()));
        bounds.setTop(std::min(bounds.top(), box.top()));
        bounds.setRight(std::max(bounds.right(), box.right()));
        bounds.setBottom(std::max(bounds.bottom(), box.bottom()));
    }
    return bounds;
}

QRectF ContourNesting::boxOf(const ResultContour &ring) const
{
    const auto *const begin = m_vertices.constData() + ring.firstVertex;
    const auto isLeft = [](const QPointF &a, const QPointF &b) { return a.x() < b.x(); };
    const auto isBelow = [](const QPointF &a, const QPointF &b) { return a.y() < b.y(); };
    const auto x = std::minmax_element(begin, begin + ring.vertexCount, isLeft);
    const auto y = std::minmax_element(begin, begin + ring.vertexCount, isBelow);
    return QRectF(QPointF(x.first->x(), y.first->y()), QPointF(x.second->x(), y.second->y()));
}

ContourNesting::Cell ContourNesting::cellAt(const QPointF &point, int level) const
{
    const double count = 1 << level;
    const auto position = [count](double offset, double size) {
        return size > 0 ? static_cast<int>(std::min(offset / size * count, count - 1)) : 0;
    };
    return {level,
            {position(point.x() - m_bounds.left(), m_bounds.width()),
             position(point.y() - m_bounds.top(), m_bounds.height())}};
}

/// The smallest cell that holds both ends of \a box.
ContourNesting::Cell ContourNesting::cellOf(const QRectF &box) const
{
    for (int level = maxLevel; level > 0; --level) {
        const Cell cell = cellAt(box.topLeft(), level);
        if (cell == cellAt(box.bottomRight(), level))
            return cell;
    }
    return {};
}

/// The smallest ring so far that contains \a ring, or -1. Cells are searched from small to large: of two rings around
/// \a ring, the inner one is in the smaller cell or in the same.
int ContourNesting::parentOf(int ring)
{
    int parent = -1;
    for (int level = maxLevel; level >= 0 && parent < 0; --level) {
        const auto candidates = m_tree.constFind(cellAt(m_boxes.at(ring).center(), level));
        if (candidates != m_tree.constEnd())
            parent = smallestAround(ring, *candidates);
    }
    return parent;
}

/// The last of \a candidates that contains \a ring, or -1.
int ContourNesting::smallestAround(int ring, const QVector<int> &candidates)
{
    for (int i = candidates.size() - 1; i >= 0 && m_effort <= m_maxEffort; --i) {
        ++m_effort;
        if (encloses(m_boxes.at(candidates.at(i)), m_boxes.at(ring)) && contains(candidates.at(i), ring))
            return candidates.at(i);
    }
    return -1;
}

// The first vertex that does not touch the outer ring decides: contours of an object do not cross.
bool ContourNesting::contains(int outer, int inner)
{
    const ResultContour &ring = m_rings.at(inner);
    for (int i = 0; i < ring.vertexCount && m_effort <= m_maxEffort; ++i) {
        const Side side = sideOf(m_vertices.at(ring.firstVertex + i), m_rings.at(outer));
        if (side != Side::Border)
            return side == Side::Inside;
    }
    return true;
}

ContourNesting::Side ContourNesting::sideOf(const QPointF &point, const ResultContour &ring)
{
    m_effort += ring.vertexCount;
    bool isInside = false;
    for (int i = ring.firstVertex + 1; i < ring.firstVertex + ring.vertexCount; ++i) {
        const QPointF &a = m_vertices.at(i - 1);
        const QPointF &b = m_vertices.at(i);
        if (squaredDistance(point, a, b) <= tolerance * tolerance)
            return Side::Border;
        if (crossesRay(point, a, b))
            isInside = !isInside;
    }
    return isInside ? Side::Inside : Side::Outside;
}
