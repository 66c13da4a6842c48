#pragma once

#include "importresult.h"

#include <QHash>
#include <QRectF>

/// Finds how deep each closed contour of an object lies inside others: 0 outside, 1 a hole, 2 an island in a hole.
///
/// The parent of a contour is the smallest larger one that contains it. Candidates come from a quadtree of bounding
/// boxes: comparing all pairs would take minutes for an object of 100,000 contours.
class ContourNesting
{
public:
    /// \a vertices must outlive this object. The search gives up after comparing \a maxEffort boxes and edges.
    ContourNesting(const QVector<QPointF> &vertices, int maxEffort) : m_vertices(vertices), m_maxEffort(maxEffort) {}

    /// The depths of \a rings, which must be finite and in descending order of area; empty after giving up.
    QVector<int> depths(const QVector<ResultContour> &rings);

    /// The boxes and edges that were compared.
    int effort() const { return m_effort; }

private:
    enum class Side { Inside, Outside, Border };
    using Cell = QPair<int, QPair<int, int>>; ///< level, column and row

    static QRectF boundsOf(const QVector<QRectF> &boxes);
    QRectF boxOf(const ResultContour &ring) const;
    Cell cellAt(const QPointF &point, int level) const;
    Cell cellOf(const QRectF &box) const;
    int parentOf(int ring);
    int smallestAround(int ring, const QVector<int> &candidates);
    bool contains(int outer, int inner);
    Side sideOf(const QPointF &point, const ResultContour &ring);

    const QVector<QPointF> &m_vertices;
    const int m_maxEffort;
    int m_effort = 0;
    QVector<ResultContour> m_rings;
    QVector<QRectF> m_boxes;
    QRectF m_bounds;
    QHash<Cell, QVector<int>> m_tree; ///< the rings whose boxes fit a cell, in descending order of area
};
