#pragma once

#include "importresult.h"

/// Whether the contours of an object are closed.
enum class Closure { None, Open, Mixed, Closed };

/// Sizes of an object in metres and square metres. NaN: there is no such size, or it cannot be computed.
struct ObjectMeasure
{
    double perimeter = 0; ///< length of all contours
    double area = 0;      ///< of the closed contours; a contour at an odd nesting depth is a hole
    Closure closure = Closure::None;
};

/// Measures the objects of one result.
///
/// The search for holes compares contours. Its total effort is limited, so that no result can take minutes: when the
/// limit is exceeded, the areas of the remaining objects with several closed contours are NaN.
class ResultMeasure
{
public:
    /// \a result must outlive this object.
    explicit ResultMeasure(const ImportResult &result) : m_result(result) {}

    ObjectMeasure measure(int object);

    /// The measures of all objects.
    QVector<ObjectMeasure> measureAll();

private:
    double length(const ResultContour &contour) const;
    double area(const QVector<ResultContour> &rings);

    const ImportResult &m_result;
    int m_effort = 0; ///< boxes and edges that were compared so far
};
