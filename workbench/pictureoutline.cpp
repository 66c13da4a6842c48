#include "pictureoutline.h"

PictureOutline::PictureOutline(const PictureData &data, const PictureMap &map, const QRectF &clip)
    : m_data(&data),
      m_map(map),
      m_clip(clip)
{
}

void PictureOutline::clear()
{
    m_points.clear();
    m_ends.clear();
}

void PictureOutline::append(const ResultContour &contour)
{
    m_start = pointCount();
    m_isLastSkipped = false;
    m_sidesOfAll = m_lastSides = m_commonSides = 0;
    const QPointF *const vertices = m_data->result().vertices.constData();
    const int end = contour.firstVertex + contour.vertexCount;
    for (int i = contour.firstVertex; i < end; ++i) {
        appendVertex(vertices[i]);
        const bool beginsChunk = i % PictureData::chunkSize == 0 && i + PictureData::chunkSize <= end;
        if (beginsChunk && isSkippable(m_data->chunkBox(i)))
            i += PictureData::chunkSize - 2;
    }
    if (m_isLastSkipped)
        appendPoint(m_skipped);
    for (const Side side : {Left, Right, Top, Bottom}) {
        if ((m_sidesOfAll & side) != 0)
            clipAt(side);
    }
    m_ends.append(pointCount());
}

/// True if the first and last vertices of \a chunk suffice to draw it.
bool PictureOutline::isSkippable(const PictureBox &chunk) const
{
    const QPointF a = m_map.toPixels(QPointF(chunk.minX, chunk.minY));
    const QPointF b = m_map.toPixels(QPointF(chunk.maxX, chunk.maxY));
    const bool isSmall = std::abs(b.x() - a.x()) < m_tolerance && std::abs(b.y() - a.y()) < m_tolerance;
    return chunk.isEmpty() || isSmall || (sidesOf(a) & sidesOf(b)) != 0;
}

void PictureOutline::appendVertex(const QPointF &xy)
{
    if (!isDrawable(xy))
        return;
    const QPointF point = m_map.toPixels(xy);
    const QPointF last = pointCount() > m_start ? m_points.back() : QPointF(qInf(), qInf());
    m_isLastSkipped = std::abs(point.x() - last.x()) < m_tolerance && std::abs(point.y() - last.y()) < m_tolerance;
    m_skipped = point;
    if (!m_isLastSkipped)
        appendPoint(point);
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
    if (pointCount() == m_start || m_unclipped.front() != m_unclipped.back())
        return;
    const QPointF first = m_points[static_cast<size_t>(m_start)];
    if (m_points.back() != first)
        m_points.push_back(first);
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
