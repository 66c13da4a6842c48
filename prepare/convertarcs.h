#pragma once

#include <vector>

/// Most chords of one arc: more would exhaust memory. A circle of 100 km keeps a deviation of 5 mm.
constexpr double maxChordsOfArc = 200000;

/// Returns half the angle, in radians, of the widest chord within \a deviation of its arc.
double chordHalfAngle(double radius, double deviation);

/// How finely GDAL splits the arcs of a drawing: steps of at most `angle` degrees and chords of at most `gap`.
struct ArcSteps
{
    double angle = 4;
    double gap = 0;
    bool isCoarse = false; ///< keeping the deviation would take too many vertices
};

/// Gathers the arcs of a drawing and chooses one pair of steps for all of them.
class ArcStatistics
{
public:
    void addCircle(double radius);
    /// Adds the arc from (\a x1, \a y1) to (\a x2, \a y2); \a bulge is the tangent of a quarter of its angle.
    void addBulge(double x1, double y1, double x2, double y2, double bulge);
    /// Adds an ellipse with the larger half axis \a axis; \a ratio is that of the axes.
    void addEllipse(double axis, double ratio);

    /// Returns steps with which no chord is farther than \a deviation from its arc.
    ArcSteps steps(double deviation) const;

private:
    struct Ellipse
    {
        double axis;
        double tipRadius; ///< smallest radius of curvature
    };

    void add(double radius, double length);
    double typicalRadius() const;

    std::vector<double> m_radii;
    std::vector<Ellipse> m_ellipses;
    double m_largest = 0;
    double m_longest = 0;
    double m_totalLength = 0;
};
