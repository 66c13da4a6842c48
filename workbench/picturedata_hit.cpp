// Finds the object at a position.

#include "picturedata.h"
#include "segmentdistance.h"

#include <QMap>

#include <limits>

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

/// A contour and its relation to the origin, computed edge by edge.
struct ContourHit
{
    bool isInside = false;      ///< the origin, by the odd-even rule
    double area = 0;            ///< signed, doubled
    double distance = infinity; ///< squared

    void addEdge(const QPointF &a, const QPointF &b);
};

void ContourHit::addEdge(const QPointF &a, const QPointF &b)
{
    const double cross = a.x() * b.y() - b.x() * a.y();
    if ((a.y() > 0) != (b.y() > 0) && (cross > 0) == (b.y() > a.y()))
        isInside = !isInside;
    area += cross;
    distance = std::min(distance, squaredDistance(QPointF(), a, b));
}

ContourHit contourHit(const QPointF *begin, const QPointF *end, const QPointF &origin)
{
    ContourHit hit;
    const QPointF *last = nullptr;
    for (const QPointF *xy = begin; xy != end; ++xy) {
        if (!isDrawable(*xy))
            continue;
        hit.addEdge((last != nullptr ? *last : *xy) - origin, *xy - origin);
        last = xy;
    }
    return hit;
}

} // namespace

/// The relation of an object to a position.
struct PictureData::Hit
{
    bool isInside = false;            ///< the position, by the odd-even rule
    double area = 0;                  ///< of the object's largest ring, doubled
    double lineDistance = infinity;   ///< to the nearest line or point, squared
    double borderDistance = infinity; ///< to the nearest ring, squared
};

PictureData::Hit PictureData::hitOf(const QVector<int> &contours, const QPointF &xy) const
{
    Hit hit;
    for (const int i : contours) {
        const ResultContour &contour = m_result.contours.at(i);
        const ContourHit found = contourHit(begin(contour), end(contour), xy);
        if (contour.isClosed) {
            hit.isInside = hit.isInside != found.isInside;
            hit.area = std::max(hit.area, std::abs(found.area));
            hit.borderDistance = std::min(hit.borderDistance, found.distance);
        } else {
            hit.lineDistance = std::min(hit.lineDistance, found.distance);
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
    double smallestArea = infinity;
    double lineDistance = tolerance * tolerance;
    double borderDistance = lineDistance;
    for (auto object = contoursOf.constBegin(); object != contoursOf.constEnd(); ++object) {
        const Hit hit = hitOf(*object, xy);
        const auto takeIfNotGreater = [&](double value, double &least, int &found) {
            found = value <= least ? object.key() : found;
            least = std::min(least, value);
        };
        if (hit.isInside)
            takeIfNotGreater(hit.area, smallestArea, inside);
        takeIfNotGreater(hit.lineDistance, lineDistance, onLine);
        takeIfNotGreater(hit.borderDistance, borderDistance, onBorder);
    }
    if (onLine >= 0)
        return onLine;
    return inside >= 0 ? inside : onBorder;
}
