#include "pictureoutline.h"

PictureOutline::PictureOutline(const PictureMap &map, const QRectF &clip) : m_map(map), m_clip(clip) {}

void PictureOutline::clear()
{
    m_points.clear();
    m_ends.clear();
}

void PictureOutline::append(const QPointF *begin, const QPointF *end)
{
    m_start = pointCount();
    m_sidesOfAll = m_lastSides = m_commonSides = 0;
    QPointF last;
    QPointF leftOut;
    bool hasLeftOut = false;
    for (const QPointF *xy = begin; xy != end; ++xy) {
        if (!isDrawable(*xy))
            continue;
        const QPointF point = m_map.toPixels(*xy);
        hasLeftOut = pointCount() > m_start && std::abs(point.x() - last.x()) < m_tolerance &&
                     std::abs(point.y() - last.y()) < m_tolerance;
        if (hasLeftOut) {
            leftOut = point;
            continue;
        }
        appendPoint(point);
        last = point;
    }
    if (hasLeftOut)
        appendPoint(leftOut);
    for (const Side side : {Left, Right, Top, Bottom}) {
        if ((m_sidesOfAll & side) != 0)
            clipAt(side);
    }
    m_ends.push_back(pointCount());
}

int PictureOutline::sidesOf(const QPointF &point) const
{
    return (point.x() < m_clip.left() ? Left : 0) | (point.x() > m_clip.right() ? Right : 0) |
           (point.y() < m_clip.top() ? Top : 0) | (point.y() > m_clip.bottom() ? Bottom : 0);
}

// Fast path for large contours: of a run of points beyond one side, only the ends are kept.
void PictureOutline::appendPoint(const QPointF &point)
{
    const int sides = sidesOf(point);
    if ((m_commonSides & sides) != 0) {
        m_points.back() = point;
        m_commonSides &= sides;
    } else {
        m_commonSides = pointCount() > m_start ? m_lastSides & sides : 0;
        m_points.push_back(point);
    }
    m_lastSides = sides;
    m_sidesOfAll |= sides;
}

// Sutherland-Hodgman, for rings and lines alike: a line whose ends meet is closed again along the border.
void PictureOutline::clipAt(Side side)
{
    m_unclipped.assign(m_points.begin() + m_start, m_points.end());
    m_points.resize(static_cast<size_t>(m_start));
    for (size_t i = 0; i < m_unclipped.size(); ++i) {
        const bool isBeyond = (sidesOf(m_unclipped[i]) & side) != 0;
        if (i > 0 && isBeyond != ((sidesOf(m_unclipped[i - 1]) & side) != 0))
            m_points.push_back(borderPoint(m_unclipped[i - 1], m_unclipped[i], side));
        if (!isBeyond)
            m_points.push_back(m_unclipped[i]);
    }
    if (pointCount() > m_start && m_unclipped.front() == m_unclipped.back() && m_points.back() != m_points[m_start])
        m_points.push_back(m_points[m_start]);
}

QPointF PictureOutline::borderPoint(const QPointF &a, const QPointF &b, Side side) const
{
    if (side == Left || side == Right) {
        const double x = side == Left ? m_clip.left() : m_clip.right();
        return {x, a.y() + (b.y() - a.y()) * ((x - a.x()) / (b.x() - a.x()))};
    }
    const double y = side == Top ? m_clip.top() : m_clip.bottom();
    return {a.x() + (b.x() - a.x()) * ((y - a.y()) / (b.y() - a.y())), y};
}
