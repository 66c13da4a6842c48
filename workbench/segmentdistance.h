#pragma once

#include <QPointF>

#include <algorithm>

/// The squared distance from \a point to the segment between \a a and \a b.
inline double squaredDistance(const QPointF &point, const QPointF &a, const QPointF &b)
{
    const QPointF segment = b - a;
    const QPointF offset = point - a;
    const double square = QPointF::dotProduct(segment, segment);
    const double along = square > 0 ? QPointF::dotProduct(offset, segment) / square : 0;
    const QPointF distance = offset - segment * std::clamp(along, 0.0, 1.0);
    return QPointF::dotProduct(distance, distance);
}
