#pragma once

#include "convertcontent.h"

#include <QVector>

class OGRFeature;
class OGRGeometry;
class OGRSimpleCurve;

/// Finds the areas of a drawing that fill outlines which are also drawn as lines, by the rule of the command convert.
class CheckFillings
{
public:
    /// Keeps the areas and closed lines of \a feature.
    void add(const OGRFeature &feature);

    /// Returns the handle of each filling; empty if it has none.
    QVector<QString> handles() const;

private:
    void addParts(const OGRGeometry &geometry, bool isArea);
    void addContour(const OGRSimpleCurve &line);

    ConvertContent m_drawn;
};
