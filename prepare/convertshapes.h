#pragma once

#include "convertcontent.h"

class OGRCircularString;
class OGRCurve;
class OGRGeometry;
class OGRLineString;

/// Names of one feature.
struct ShapeNames
{
    QString id;
    QString def;    ///< designation of its objects
    QString number; ///< of its points
};

/// Turns the geometries of features into objects and points.
class ShapeCollector
{
public:
    /// Appends to \a content, which must outlive the collector. Chords of curves stay within \a deviation of their
    /// arcs; \a swapXY exchanges the coordinates.
    ShapeCollector(ConvertContent &content, double deviation, bool swapXY);

    /// Adds the areas of \a geometry as one object, its lines as another, and its points.
    void add(const OGRGeometry &geometry, const ShapeNames &names);

    /// Returns the position in the output.
    ContentVertex vertex(double x, double y) const;

private:
    void addPart(const OGRGeometry &part, bool isArea);
    void addRings(const OGRGeometry &surface);
    void addRing(const OGRCurve &ring);
    void addLine(const OGRCurve &line);
    void addObject(const OGRGeometry &geometry, bool isArea, const ShapeNames &names);
    void addPoints(const OGRGeometry &geometry, const ShapeNames &names);
    void appendCurve(const OGRCurve &curve);
    void appendArcs(const OGRCircularString &arcs);
    int chordCount(double radius, double angle);
    void appendVertices(const OGRLineString &line);
    bool isFinite() const;
    int cornerCount() const;
    void leaveOutContour(const QString &kind);

    ConvertContent &m_content;
    double m_deviation;
    bool m_swapXY;
    std::size_t m_contourBegin = 0; ///< of the contour that is being added
};
