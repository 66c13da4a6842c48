// Which object a click means.

#include "picturedata.h"

#include <QMap>

#include <limits>

namespace {

constexpr double far = std::numeric_limits<double>::infinity();

/// What a walk along a contour shows, seen from the position that is its origin.
struct Walk
{
    bool isInside = false; ///< odd-even rule
    double area = 0;       ///< twice the signed area
    double distance = far; ///< squared

    void step(const QPointF &a, const QPointF &b);
};

double squaredDistance(const QPointF &a, const QPointF &b)
{
    const QPointF along = b - a;
    const double length = QPointF::dotProduct(along, along);
    const double part = length > 0 ? std::clamp(-QPointF::dotProduct(a, along) / length, 0.0, 1.0) : 0;
    const QPointF nearest = a + along * part;
    return QPointF::dotProduct(nearest, nearest);
}

void Walk::step(const QPointF &a, const QPointF &b)
{
    const double cross = a.x() * b.y() - b.x() * a.y();
    if ((a.y() > 0) != (b.y() > 0) && (cross > 0) == (b.y() > a.y()))
        isInside = !isInside;
    area += cross;
    distance = std::min(distance, squaredDistance(a, b));
}

Walk walk(const QPointF *begin, const QPointF *end, const QPointF &origin)
{
    Walk walk;
    const QPointF *last = nullptr;
    for (const QPointF *xy = begin; xy != end; ++xy) {
        if (!isDrawable(*xy))
            continue;
        walk.step((last != nullptr ? *last : *xy) - origin, *xy - origin);
        last = xy;
    }
    return walk;
}

} // namespace

/// How an object lies to the position.
struct PictureData::Hit
{
    bool isInside = false;
    double area = 0;             ///< of its largest ring, doubled
    double lineDistance = far;   ///< of the nearest line or point, squared
    double borderDistance = far; ///< of the nearest ring, squared
};

PictureData::Hit PictureData::hitOf(const QVector<int> &contours, const QPointF &xy) const
{
    Hit hit;
    for (const int i : contours) {
        const ResultContour &contour = m_result.contours.at(i);
        const Walk w = walk(begin(contour), end(contour), xy);
        if (contour.isClosed) {
            hit.isInside = hit.isInside != w.isInside;
            hit.area = std::max(hit.area, std::abs(w.area));
            hit.borderDistance = std::min(hit.borderDistance, w.distance);
        } else {
            hit.lineDistance = std::min(hit.lineDistance, w.distance);
        }
    }
    return hit;
}

int PictureData::objectAt(const QPointF &xy, double tolerance) const
{
    const PictureBox around{xy.x() - tolerance, xy.y() - tolerance, xy.x() + tolerance, xy.y() + tolerance};
    QMap<int, QVector<int>> contoursOf;
    for (const int contour : contoursIn(around))
        contoursOf[objectOfContour(contour)].append(contour);

    int inside = -1;
    int onLine = -1;
    int onBorder = -1;
    double smallestArea = far;
    double lineDistance = tolerance * tolerance;
    double borderDistance = lineDistance;
    for (auto object = contoursOf.constBegin(); object != contoursOf.constEnd(); ++object) {
        const Hit hit = hitOf(*object, xy);
        const auto takeIfLess = [&](double value, double &least, int &found) {
            found = value <= least ? object.key() : found;
            least = std::min(least, value);
        };
        if (hit.isInside)
            takeIfLess(hit.area, smallestArea, inside);
        takeIfLess(hit.lineDistance, lineDistance, onLine);
        takeIfLess(hit.borderDistance, borderDistance, onBorder);
    }
    if (onLine >= 0)
        return onLine;
    return inside >= 0 ? inside : onBorder;
}
