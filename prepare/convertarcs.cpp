// GDAL splits all arcs of a drawing with the same two settings: a step in degrees and a longest chord. Let both belong
// to one radius R. Of an arc of radius R the chords then have exactly the deviation; smaller arcs deviate less because
// of the angle, larger arcs because of the chord. So every R keeps the deviation, and the best R costs fewest vertices.
//
// A damaged or absurd arc may be of any size, and with a longest chord GDAL would split it into any number of chords.
// If there is one, all arcs are split by the angle alone, of which a turn has a limited number.

#include "convertarcs.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double pi = 3.14159265358979323846;
constexpr double widestHalf = 22.5 * pi / 180;

double degrees(double half)
{
    return 2 * half * 180 / pi;
}

double halfAngle(const ArcSteps &steps)
{
    return steps.angle * pi / 360;
}

double chordsOfArc(double sweep, double half)
{
    return std::max(1.0, sweep / (2 * half));
}

// Also true of an arc that is not finite.
bool isOversized(double radius, double sweep, double deviation)
{
    return !std::isfinite(2 * pi * radius) || chordsOfArc(sweep, chordHalfAngle(radius, deviation)) > maxChordsOfArc;
}

} // namespace

// Rounding must not exceed the deviation. A wider chord would no longer look like an arc.
double chordHalfAngle(double radius, double deviation)
{
    return radius <= deviation ? widestHalf
                               : std::min(widestHalf, 2 * std::asin(std::sqrt(0.999 * deviation / 2 / radius)));
}

void ArcStatistics::add(double radius, double sweep)
{
    if (!(radius <= 0) && !(sweep <= 0))
        m_arcs.push_back({std::isnan(radius) ? HUGE_VAL : radius, std::min(sweep, 2 * pi)});
}

void ArcStatistics::addArc(double radius, double degrees)
{
    add(radius, degrees * pi / 180);
}

void ArcStatistics::addCircle(double radius)
{
    add(radius, 2 * pi);
}

void ArcStatistics::addBulge(double x1, double y1, double x2, double y2, double bulge)
{
    const double b = std::fabs(bulge);
    const double radius = std::hypot(x2 - x1, y2 - y1) * (b / 4 + 0.25 / b);
    add(radius, 4 * std::atan(b));
}

void ArcStatistics::addEllipse(double axis, double ratio)
{
    const double larger = std::max(axis, axis * std::fabs(ratio));
    const double smaller = std::min(axis, axis * std::fabs(ratio));
    addCircle(larger);
    m_ellipses.push_back({larger, smaller * smaller / larger});
}

// GDAL first makes equal steps, and then splits each that is longer than the gap.
double ArcStatistics::chordCount(const ArcSteps &steps) const
{
    const double half = halfAngle(steps);
    double total = 0;
    for (const Arc &arc : m_arcs) {
        const double count = std::ceil(chordsOfArc(arc.sweep, half));
        const double chord = 2 * arc.radius * std::sin(arc.sweep / 2 / count);
        total += count * (steps.gap > 0 ? 1 + std::floor(chord / steps.gap) : 1);
    }
    return total;
}

ArcSteps ArcStatistics::stepsForRadius(double radius, double deviation) const
{
    double half = chordHalfAngle(radius, deviation);
    ArcSteps steps;
    steps.gap = 2 * radius * std::sin(half);
    // At the narrow tip of an ellipse a short chord does not help; there the angle must suit its axis.
    for (const Ellipse &ellipse : m_ellipses) {
        if (ellipse.axis > radius && ellipse.tipRadius < 4 * radius)
            half = std::min(half, chordHalfAngle(ellipse.axis, deviation));
    }
    steps.angle = degrees(half);
    return steps;
}

// The radii of the drawing, or some of them, and a choice between them.
std::vector<double> ArcStatistics::candidateRadii() const
{
    constexpr std::size_t count = 16;
    constexpr double smallest = 0.01;
    constexpr int doublings = 33; // to 8.6e7
    std::vector<double> radii(m_arcs.size());
    std::transform(m_arcs.begin(), m_arcs.end(), radii.begin(), [](const Arc &arc) { return arc.radius; });
    std::sort(radii.begin(), radii.end());
    std::vector<double> candidates;
    for (std::size_t i = 0; i < count && !radii.empty(); ++i)
        candidates.push_back(radii[i * (radii.size() - 1) / (count - 1)]);
    for (int i = 0; i <= doublings; ++i)
        candidates.push_back(std::ldexp(smallest, i));
    return candidates;
}

ArcSteps ArcStatistics::cheapestSteps(double deviation) const
{
    ArcSteps best;
    if (m_arcs.empty())
        return best;
    double bestCount = HUGE_VAL;
    for (const double radius : candidateRadii()) {
        const ArcSteps steps = stepsForRadius(radius, deviation);
        const double count = chordCount(steps);
        if (count < bestCount) {
            best = steps;
            bestCount = count;
        }
    }
    return best;
}

// The oversized arcs get as many chords as they may have, unless the others would get too many by that.
ArcSteps ArcStatistics::stepsByAngle(double deviation) const
{
    constexpr double maxWasted = maxChordsOfArc;
    double half = widestHalf;
    for (const Arc &arc : m_arcs) {
        const double needed = chordHalfAngle(arc.radius, deviation);
        if (arc.sweep > 2 * needed && !isOversized(arc.radius, arc.sweep, deviation))
            half = std::min(half, std::max(needed, pi / maxChordsOfArc));
    }
    ArcSteps steps;
    steps.angle = degrees(pi / maxChordsOfArc);
    while (steps.angle < degrees(half) && chordCount(steps) > maxWasted)
        steps.angle = std::min(2 * steps.angle, degrees(half));
    return steps;
}

qint64 ArcStatistics::coarseCount(const ArcSteps &steps, double deviation) const
{
    return std::count_if(m_arcs.begin(), m_arcs.end(), [&steps, deviation](const Arc &arc) {
        const double byAngle = std::min(halfAngle(steps), arc.sweep / 2);
        const double byGap = steps.gap > 0 ? std::asin(std::min(1.0, steps.gap / 2 / arc.radius)) : pi;
        const double sine = std::sin(std::min(byAngle, byGap) / 2);
        return !(arc.radius * 2 * sine * sine <= deviation);
    });
}

ArcSteps ArcStatistics::steps(double deviation) const
{
    const bool hasOversized = std::any_of(m_arcs.begin(), m_arcs.end(), [deviation](const Arc &arc) {
        return isOversized(arc.radius, arc.sweep, deviation);
    });
    ArcSteps steps = hasOversized ? stepsByAngle(deviation) : cheapestSteps(deviation);
    while (steps.angle < degrees(widestHalf) && chordCount(steps) > maxChordsOfDrawing) {
        steps.angle = std::min(2 * steps.angle, degrees(widestHalf));
        steps.gap *= 2;
    }
    steps.coarseCount = coarseCount(steps, deviation);
    return steps;
}
