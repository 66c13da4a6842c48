#pragma once

#include "convertcontent.h"

#include <QtGlobal>

#include <vector>

/// A B-spline curve as drawings define it: knots with their multiplicities, control points and, if it is rational, a
/// weight for each.
struct SplineCurve
{
    /// False if the numbers of knots, points and weights do not fit each other or the knots decrease.
    bool isValid() const;

    int degree = 3;
    std::vector<double> knots; ///< may be empty: uniform, and the curve begins and ends in control points
    std::vector<double> weights;
    std::vector<ContentVertex> points;
};

/// A whole ellipse or circle.
struct EllipseCurve
{
    ContentVertex centre;
    ContentVertex axis; ///< half of the first one
    double ratio = 1;   ///< of the second one to the first
    /// Half of the longer axis.
    double radius() const;
};

/// Replaces curves by polylines.
class CurveFlattener
{
public:
    /// Replaces \a vertices by a polyline from which the valid curve \a spline is nowhere farther than \a deviation.
    /// Returns false if that would take too many vertices, of this curve or of all; then the polyline is coarser.
    bool flatten(const SplineCurve &spline, double deviation, std::vector<ContentVertex> &vertices);
    /// Same for an ellipse, whose polyline ends exactly where it begins.
    bool flatten(const EllipseCurve &ellipse, double deviation, std::vector<ContentVertex> &vertices);

private:
    qint64 m_chordCount = 0; ///< of all curves, also of attempts
};
