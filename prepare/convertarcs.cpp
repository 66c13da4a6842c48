// GDAL splits all arcs of a drawing with the same two settings: a step in degrees and a longest chord. Let both belong
// to one radius R. Of an arc of radius R the chords then have exactly the deviation; smaller arcs deviate less because
// of the angle, larger arcs because of the chord. So every R keeps the deviation, and a typical R costs few vertices.

#include "convertarcs.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double pi = 3.14159265358979323846;

// Of a whole drawing, for the same reason.
constexpr double maxChords = 2e7;

} // namespace

// Rounding must not exceed the deviation. A wider chord would no longer look like an arc.
double chordHalfAngle(double radius, double deviation)
{
    constexpr double widest = 22.5 * pi / 180;
    return radius <= deviation ? widest : std::min(widest, std::acos(1 - 0.999 * deviation / radius));
}

void ArcStatistics::add(double radius, double length)
{
    if (!std::isfinite(radius) || !std::isfinite(length) || radius <= 0)
        return;
    m_radii.push_back(radius);
    m_largest = std::max(m_largest, radius);
    m_longest = std::max(m_longest, length);
    m_totalLength += length;
}

void ArcStatistics::addCircle(double radius)
{
    add(radius, 2 * pi * radius);
}

void ArcStatistics::addBulge(double x1, double y1, double x2, double y2, double bulge)
{
    const double b = std::fabs(bulge);
    const double radius = std::hypot(x2 - x1, y2 - y1) * (1 + b * b) / (4 * b);
    add(radius, 4 * std::atan(b) * radius);
}

void ArcStatistics::addEllipse(double axis, double ratio)
{
    addCircle(axis);
    m_ellipses.push_back({axis, axis * ratio * ratio});
}

// The median, but not so small that the largest arc gets ten times the vertices that it needs.
double ArcStatistics::typicalRadius() const
{
    constexpr double unknown = 10;
    if (m_radii.empty())
        return unknown;
    std::vector<double> radii = m_radii;
    const auto middle = radii.begin() + static_cast<std::ptrdiff_t>(radii.size() / 2);
    std::nth_element(radii.begin(), middle, radii.end());
    return std::max(*middle, m_largest / 100);
}

ArcSteps ArcStatistics::steps(double deviation) const
{
    const double radius = typicalRadius();
    double half = chordHalfAngle(radius, deviation);
    const double gap = 2 * radius * std::sin(half);
    // At the narrow tip of an ellipse a short chord does not help; there the angle must suit its axis.
    for (const Ellipse &ellipse : m_ellipses) {
        if (ellipse.axis > radius && ellipse.tipRadius < 4 * radius)
            half = std::min(half, chordHalfAngle(ellipse.axis, deviation));
    }
    const double smallestHalf = pi / maxChordsOfArc;
    const double smallestGap = std::max(m_longest / maxChordsOfArc, m_totalLength / maxChords);
    ArcSteps steps;
    steps.angle = 2 * std::max(half, smallestHalf) * 180 / pi;
    steps.gap = std::max(gap, smallestGap);
    steps.isCoarse = half < smallestHalf || gap < smallestGap;
    return steps;
}
