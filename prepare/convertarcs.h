#pragma once

#include <QtGlobal>

#include <vector>

/// Most chords of one arc: more would exhaust memory. A circle of 400 km keeps a deviation of 5 mm.
constexpr double maxChordsOfArc = 20000;

/// Most chords of all arcs of a file, for the same reason.
constexpr double maxChordsOfDrawing = 2e7;

/// Returns half the angle, in radians, of the widest chord within \a deviation of its arc.
double chordHalfAngle(double radius, double deviation);

/// How finely GDAL splits the arcs of a drawing: steps of at most `angle` degrees and chords of at most `gap`.
struct ArcSteps
{
    double angle = 4;
    double gap = 0;         ///< 0: of any length
    qint64 coarseCount = 0; ///< arcs that do not keep the deviation, because that would take too many vertices
};

/// Gathers the arcs of a drawing and chooses one pair of steps for all of them.
class ArcStatistics
{
public:
    /// Adds an arc over an angle of \a degrees.
    void addArc(double radius, double degrees);
    void addCircle(double radius);
    /// Adds the arc from (\a x1, \a y1) to (\a x2, \a y2); \a bulge is the tangent of a quarter of its angle.
    void addBulge(double x1, double y1, double x2, double y2, double bulge);
    /// Adds an ellipse with a half axis \a axis; the other is \a ratio times as long.
    void addEllipse(double axis, double ratio);

    /// Returns steps with which no chord is farther than \a deviation from its arc, except those of the arcs that are
    /// counted as coarse.
    ArcSteps steps(double deviation) const;

private:
    struct Arc
    {
        double radius;
        double sweep; ///< in radians
    };

    struct Ellipse
    {
        double axis;
        double tipRadius; ///< smallest radius of curvature
    };

    void add(double radius, double sweep);
    ArcSteps stepsForRadius(double radius, double deviation) const;
    std::vector<double> candidateRadii() const;
    ArcSteps cheapestSteps(double deviation) const;
    ArcSteps stepsByAngle(double deviation) const;
    double chordCount(const ArcSteps &steps) const;
    qint64 coarseCount(const ArcSteps &steps, double deviation) const;

    std::vector<Arc> m_arcs;
    std::vector<Ellipse> m_ellipses;
};
