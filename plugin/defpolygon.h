#pragma once

#include <QPointF>
#include <QString>
#include <QVector>

#include <cmath>

/// A point or vertex with its designation.
struct DefPoint
{
    /// Tolerance of equality on each axis, in units of the file.
    static constexpr double epsilon = 0.01;

    QString def; ///< designation (number); may be empty
    double x = 0;
    double y = 0;
};

// Lets QVector relocate the elements with memcpy().
Q_DECLARE_TYPEINFO(DefPoint, Q_MOVABLE_TYPE);

/// True if the coordinates agree within the tolerance on both axes; designations are ignored. Not transitive.
inline bool operator==(const DefPoint &a, const DefPoint &b)
{
    return std::fabs(a.x - b.x) <= DefPoint::epsilon && std::fabs(a.y - b.y) <= DefPoint::epsilon;
}

/// Exact order by x, then y; designations are ignored. Not a strict weak ordering for NaN: see lessNanLast().
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

    /// Area centroid of the first contour; the mean of its vertices if it has no area, (0, 0) if it has no vertices.
    QPointF centroid() const;
};

Q_DECLARE_TYPEINFO(DefPolygon, Q_MOVABLE_TYPE);

/// Splits \a def into a prefix and a trailing decimal number: «н12» gives «н» and 12.
///
/// \a num is -1 if there are no trailing digits, and 0 if they do not fit an int.
void splitDef(const QString &def, QString &prefix, int &num);

/// Sorts by designation: prefix ignoring case, then number. Not stable. Pointers to elements stay valid, but may then
/// refer to other objects.
void sortObjects(QVector<DefPolygon> &objects);

/// Sorts by lessNanLast(). Not stable.
void sortPoints(QVector<DefPoint> &points);

/// Same as operator<, with NaN after all numbers: a strict weak ordering of all points.
inline bool lessNanLast(const DefPoint &a, const DefPoint &b)
{
    if (a.x < b.x || b.x < a.x)
        return a.x < b.x;
    if (std::isnan(a.x) != std::isnan(b.x))
        return std::isnan(b.x);
    return a.y < b.y || (std::isnan(b.y) && !std::isnan(a.y));
}

/// Returns the index of the first point with an X of at least \a x, or the number of points if there is none.
///
/// The \a points should be sorted by x; otherwise the result is the index where the bisection ends.
int bisectByX(const QVector<DefPoint> &points, double x);

/// Returns the point of \a points nearest to \a p; null if no squared distance is below the largest double.
///
/// The result points into \a points. They should be sorted by x; otherwise the result depends on the bisection and need
/// not be the nearest. Of equally near points the one visited first is returned. The order of visits is: the first
/// point not left of \a p, the one before it, the others to the right, the others to the left.
const DefPoint *findNearestPoint(const QVector<DefPoint> &points, const QPointF &p);
