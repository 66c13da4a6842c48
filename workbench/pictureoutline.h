#pragma once

#include "picturedata.h"

#include <vector>

/// Contours as lines in pixels, reduced to their visible parts.
///
/// A vertex closer than a tolerance to the one before it is skipped, except the last. Parts beyond the clip rectangle
/// are replaced by lines along its border; for a ring this changes nothing inside.
class PictureOutline
{
public:
    /// \a data must outlive this object. \a clip must be larger than the visible area, because lines follow its border.
    PictureOutline(const PictureData &data, const PictureMap &map, const QRectF &clip);

    /// The default is 0.5 pixels; 0 keeps all vertices.
    void setTolerance(double tolerance) { m_tolerance = tolerance; }

    void clear();

    /// Appends a line for a contour. It is empty if none of the vertices can be drawn.
    void append(const ResultContour &contour);

    int lineCount() const { return m_ends.size(); }
    int pointCount() const { return static_cast<int>(m_points.size()); }
    const QPointF *begin(int line) const { return m_points.data() + (line == 0 ? 0 : m_ends.at(line - 1)); }
    const QPointF *end(int line) const { return m_points.data() + m_ends.at(line); }

private:
    enum Side { Left = 1, Right = 2, Top = 4, Bottom = 8 };

    bool isSkippable(const PictureBox &chunk) const;
    int sidesOf(const QPointF &point) const;
    void appendVertex(const QPointF &xy);
    void appendPoint(const QPointF &point);
    void clipAt(Side side);
    QPointF borderPoint(const QPointF &a, const QPointF &b, Side side) const;

    const PictureData *m_data;
    PictureMap m_map;
    QRectF m_clip;
    double m_tolerance = 0.5;
    std::vector<QPointF> m_points;
    QVector<int> m_ends;
    std::vector<QPointF> m_unclipped;

    // The line that is being appended.
    int m_start = 0;
    QPointF m_skipped; ///< the last vertex, if it was skipped
    bool m_isLastSkipped = false;
    int m_sidesOfAll = 0;  ///< sides of the clip rectangle beyond which any point lies
    int m_lastSides = 0;   ///< the last point
    int m_commonSides = 0; ///< both of the last two points
};
