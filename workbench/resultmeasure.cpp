#include "resultmeasure.h"

#include "contournesting.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int maxEffort = 100000000; // takes about a second

// Coordinates are relative to the first vertex: products of large coordinates would lose the decimals of the area.
double ringArea(const QVector<QPointF> &vertices, const ResultContour &ring)
{
    const QPointF origin = vertices.at(ring.firstVertex);
    double doubled = 0;
    for (int i = ring.firstVertex + 1; i < ring.firstVertex + ring.vertexCount; ++i) {
        const QPointF a = vertices.at(i - 1) - origin;
        const QPointF b = vertices.at(i) - origin;
        doubled += a.x() * b.y() - b.x() * a.y();
    }
    return std::fabs(doubled) / 2;
}

Closure closureOf(int contourCount, int closedCount)
{
    if (contourCount == 0)
        return Closure::None;
    if (closedCount == 0)
        return Closure::Open;
    return closedCount == contourCount ? Closure::Closed : Closure::Mixed;
}

} // namespace

QVector<ObjectMeasure> ResultMeasure::measureAll()
{
    QVector<ObjectMeasure> measures;
    measures.reserve(m_result.objects.size());
    for (int object = 0; object < m_result.objects.size(); ++object)
        measures.append(measure(object));
    return measures;
}

ObjectMeasure ResultMeasure::measure(int object)
{
    const ResultObject &found = m_result.objects.at(object);
    ObjectMeasure measure;
    QVector<ResultContour> rings;
    for (int i = found.firstContour; i < found.firstContour + found.contourCount; ++i) {
        const ResultContour &contour = m_result.contours.at(i);
        measure.perimeter += length(contour);
        if (contour.isClosed)
            rings.append(contour);
    }
    measure.closure = closureOf(found.contourCount, rings.size());
    measure.area = rings.isEmpty() ? qQNaN() : area(rings);
    return measure;
}

double ResultMeasure::length(const ResultContour &contour) const
{
    double sum = 0;
    for (int i = contour.firstVertex + 1; i < contour.firstVertex + contour.vertexCount; ++i) {
        const QPointF edge = m_result.vertices.at(i) - m_result.vertices.at(i - 1);
        sum += std::hypot(edge.x(), edge.y());
    }
    return sum;
}

double ResultMeasure::area(const QVector<ResultContour> &rings)
{
    if (rings.size() == 1)
        return ringArea(m_result.vertices, rings.first());
    QVector<QPair<double, ResultContour>> sorted;
    for (const ResultContour &ring : rings)
        sorted.append({ringArea(m_result.vertices, ring), ring});
    const auto isFinite = [](const auto &ring) { return std::isfinite(ring.first); };
    if (!std::all_of(sorted.begin(), sorted.end(), isFinite))
        return qQNaN();
    std::stable_sort(sorted.begin(), sorted.end(), [](const auto &a, const auto &b) { return a.first > b.first; });

    QVector<ResultContour> descending;
    for (const auto &ring : sorted)
        descending.append(ring.second);
    ContourNesting nesting(m_result.vertices, maxEffort - m_effort);
    const QVector<int> depths = nesting.depths(descending);
    m_effort += nesting.effort();
    double sum = depths.isEmpty() ? qQNaN() : 0;
    for (int i = 0; i < depths.size(); ++i)
        sum += depths.at(i) % 2 == 0 ? sorted.at(i).first : -sorted.at(i).first;
    return sum;
}
