#include "convertpoints.h"

#include "defpolygon.h"

#include <algorithm>
#include <cmath>

namespace {

bool lessByPosition(const ContentVertex &a, const ContentVertex &b)
{
    if (a.x < b.x || b.x < a.x)
        return a.x < b.x;
    return a.y < b.y;
}

bool isNear(const ContentVertex &a, const ContentVertex &b)
{
    return std::fabs(a.x - b.x) <= DefPoint::epsilon && std::fabs(a.y - b.y) <= DefPoint::epsilon;
}

bool lessPoint(const ContentPoint &a, const ContentPoint &b)
{
    return lessByPosition(a.at, b.at);
}

// Finds which of the sorted points are within the tolerance of other positions.
class NearPoints
{
public:
    explicit NearPoints(const std::vector<ContentPoint> &points) : m_points(points), m_isNear(points.size(), false) {}

    void mark(const ContentVertex &at)
    {
        // A margin for the rounding of the sum; isNear() decides.
        const double begin = at.x - 2 * DefPoint::epsilon;
        auto it = std::lower_bound(m_points.begin(), m_points.end(), begin,
                                   [](const ContentPoint &point, double x) { return point.at.x < x; });
        for (; it != m_points.end() && it->at.x <= at.x + 2 * DefPoint::epsilon; ++it) {
            if (isNear(it->at, at))
                m_isNear[static_cast<std::size_t>(it - m_points.begin())] = true;
        }
    }

    bool isMarked(std::size_t i) const { return m_isNear[i]; }

private:
    const std::vector<ContentPoint> &m_points;
    std::vector<bool> m_isNear;
};

void mergePoints(std::vector<ContentPoint> &points, ContentCounts &leftOut)
{
    std::stable_sort(points.begin(), points.end(), lessPoint);
    const auto end = std::unique(points.begin(), points.end(),
                                 [](const ContentPoint &a, const ContentPoint &b) { return isNear(a.at, b.at); });
    if (end == points.end())
        return;
    leftOut[QStringLiteral("merged-point")] += points.end() - end;
    points.erase(end, points.end());
}

} // namespace

void removeUnusablePoints(ConvertContent &content)
{
    std::vector<ContentPoint> blank;
    std::vector<ContentPoint> numbered;
    for (ContentPoint &point : content.points)
        (point.def.isEmpty() ? blank : numbered).push_back(std::move(point));
    mergePoints(numbered, content.leftOut);
    mergePoints(blank, content.leftOut);
    NearPoints near(blank);
    for (const ContentPoint &point : numbered)
        near.mark(point.at);
    for (const ContentVertex &vertex : content.vertices)
        near.mark(vertex);
    for (std::size_t i = 0; i < blank.size(); ++i) {
        if (near.isMarked(i))
            ++content.leftOut[QStringLiteral("point-without-number")];
        else
            numbered.push_back(std::move(blank[i]));
    }
    content.points = std::move(numbered);
}
