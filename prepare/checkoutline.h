#pragma once

#include <QtGlobal>

/// A vertex of a polyline of a drawing. The bulge belongs to the segment that it begins: it is the tangent of a quarter
/// of the arc's angle, 0 for a straight segment.
struct BulgedVertex
{
    double x = 0;
    double y = 0;
    double bulge = 0;
};

/// Counts the arcs among the segments of one polyline.
class BulgeCounter
{
public:
    void addVertex(const BulgedVertex &vertex);
    /// Adds the segment from the last vertex to the first.
    void close();

    qint64 count() const { return m_count; }
    /// The largest distance of a chord from its arc.
    double largestDeviation() const { return m_largestDeviation; }

private:
    void addSegment(const BulgedVertex &begin, const BulgedVertex &end);

    qint64 m_vertexCount = 0;
    BulgedVertex m_first;
    BulgedVertex m_last;
    qint64 m_count = 0;
    double m_largestDeviation = 0;
};
