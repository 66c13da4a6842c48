#pragma once

#include <QPointF>
#include <QString>
#include <QVector>

#include <cmath>
#include <utility>

/// A point or vertex with its designation.
struct DefPoint
{
    /// How far apart two points may lie on each axis, in units of the file, and still be one place.
    static constexpr double epsilon = 0.01;

    QString def; ///< designation (number); may be empty
    double x = 0;
    double y = 0;
};

// Containers may move these bytewise.
Q_DECLARE_TYPEINFO(DefPoint, Q_MOVABLE_TYPE);

/// Without the detour of moving each way, for sorting.
inline void swap(DefPoint &a, DefPoint &b) noexcept
{
    a.def.swap(b.def);
    std::swap(a.x, b.x);
    std::swap(a.y, b.y);
}

/// True within the tolerance on both axes, whatever the designations; not transitive.
inline bool operator==(const DefPoint &a, const DefPoint &b)
{
    return std::fabs(a.x - b.x) <= DefPoint::epsilon && std::fabs(a.y - b.y) <= DefPoint::epsilon;
}

/// Exact order by x, then y, whatever the designations. It orders numbers only: see sortPoints() for NaN.
inline bool operator<(const DefPoint &a, const DefPoint &b)
{
    if (a.x < b.x || b.x < a.x)
        return a.x < b.x;
    return a.y < b.y;
}

/// One imported object.
struct DefPolygon
{
    QString def; ///< designation; empty until one is found or generated

    /// Rings and polyline parts in file order; a ring's closing vertex is an explicit last vertex.
    QVector<QVector<DefPoint>> contours;

    /// Area centroid of the first contour, or the mean of its vertices when it has no area; (0, 0) without vertices.
    QPointF centroid() const;
};

Q_DECLARE_TYPEINFO(DefPolygon, Q_MOVABLE_TYPE);

/// Splits \a def into a text and its trailing decimal number: «н12» gives «н» and 12.
///
/// \a num is -1 without trailing digits and 0 when they do not fit an int.
void splitDef(const QString &def, QString &prefix, int &num);

/// Sorts by designation: text ignoring case, then number. Objects alike in both may change places.
void sortObjects(QVector<DefPolygon> &objects);

/// Sorts by operator<, with coordinates that are not a number after all numbers. Equal points may change places.
void sortPoints(QVector<DefPoint> &points);

/// The order of sortPoints().
inline bool lessNanLast(const DefPoint &a, const DefPoint &b)
{
    if (a.x < b.x || b.x < a.x)
        return a.x < b.x;
    if (std::isnan(a.x) != std::isnan(b.x))
        return std::isnan(b.x);
    return a.y < b.y || (std::isnan(b.y) && !std::isnan(a.y));
}

/// The place of the first of \a points, sorted by x, whose x is not less than \a x; their number when there is none.
/// In another order it is where the same bisection ends.
int bisectByX(const QVector<DefPoint> &points, double x);

/// The point nearest to \a p among \a points, which are sorted by x; null when none has a finite distance.
///
/// The pointer is into \a points. Of points at one distance the first examined wins: the first not left of \a p, the
/// one before it, then on to the right, then on to the left.
const DefPoint *findNearestPoint(const QVector<DefPoint> &points, const QPointF &p);
