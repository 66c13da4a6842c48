// The geometry of a feature is a tree: collections of parts, surfaces of rings, rings and lines of arcs and chords.
// Functions are in data-flow order: curve, contour, part, object, feature.

#include "convertshapes.h"

#include "convertarcs.h"

#include <ogr_geometry.h>

#include <algorithm>
#include <cmath>

namespace {

// Calls visit with each part that is not a collection.
template <typename Visit>
void forEachPart(const OGRGeometry &geometry, const Visit &visit)
{
    const OGRwkbGeometryType type = wkbFlatten(geometry.getGeometryType());
    if (OGR_GT_IsSubClassOf(type, wkbGeometryCollection) != 0) {
        for (const OGRGeometry *part : *geometry.toGeometryCollection())
            forEachPart(*part, visit);
    } else if (OGR_GT_IsSubClassOf(type, wkbPolyhedralSurface) != 0) {
        const OGRPolyhedralSurface &surface = *geometry.toPolyhedralSurface();
        for (int i = 0; i < surface.getNumGeometries(); ++i)
            forEachPart(*surface.getGeometryRef(i), visit);
    } else {
        visit(geometry);
    }
}

struct Arc
{
    double radius = 0;
    double x = 0; ///< centre
    double y = 0;
    double from = 0; ///< angles in radians
    double middle = 0;
    double to = 0;
};

// Returns false if the three points are on a line.
bool toArc(const OGRCircularString &arcs, int first, Arc &arc)
{
    return OGRGeometryFactory::GetCurveParameters(arcs.getX(first), arcs.getY(first), arcs.getX(first + 1),
                                                  arcs.getY(first + 1), arcs.getX(first + 2), arcs.getY(first + 2),
                                                  arc.radius, arc.x, arc.y, arc.from, arc.middle, arc.to) != 0;
}

bool isSame(const ContentVertex &a, const ContentVertex &b)
{
    return !(a.x < b.x) && !(b.x < a.x) && !(a.y < b.y) && !(b.y < a.y);
}

bool isSameButForRounding(const ContentVertex &a, const ContentVertex &b)
{
    constexpr double rounding = 1e-8;
    return std::fabs(a.x - b.x) <= rounding && std::fabs(a.y - b.y) <= rounding;
}

} // namespace

ShapeCollector::ShapeCollector(ConvertContent &content, double deviation, bool swapXY)
    : m_content(content),
      m_deviation(deviation),
      m_swapXY(swapXY)
{
}

ContentVertex ShapeCollector::vertex(double x, double y) const
{
    return m_swapXY ? ContentVertex{y, x} : ContentVertex{x, y};
}

// Where an arc of a polyline ends, GDAL gives two vertices.
void ShapeCollector::appendVertices(const OGRLineString &line)
{
    std::vector<ContentVertex> &vertices = m_content.vertices;
    const std::size_t begin = vertices.size();
    const int count = line.getNumPoints();
    for (int i = 0; i < count; ++i) {
        const ContentVertex next = vertex(line.getX(i), line.getY(i));
        const bool repeats =
            m_content.hasPolylineArcs && vertices.size() > begin && isSameButForRounding(vertices.back(), next);
        // An object whose vertices are all in one place stays.
        if (!repeats || (i == count - 1 && vertices.size() == begin + 1))
            vertices.push_back(next);
    }
}

// GDAL's own subdivision takes one angle for the whole geometry, which does not bound the deviation.
void ShapeCollector::appendArcs(const OGRCircularString &arcs)
{
    std::vector<ContentVertex> &vertices = m_content.vertices;
    if (arcs.IsEmpty() == 0)
        vertices.push_back(vertex(arcs.getX(0), arcs.getY(0)));
    for (int i = 0; i + 2 < arcs.getNumPoints(); i += 2) {
        Arc arc;
        const bool isArc = toArc(arcs, i, arc);
        const int count = isArc ? chordCount(arc.radius, arc.to - arc.from) : 2;
        for (int k = 1; k < count && isArc; ++k) {
            const double angle = arc.from + (arc.to - arc.from) * k / count;
            vertices.push_back(vertex(arc.x + arc.radius * std::cos(angle), arc.y + arc.radius * std::sin(angle)));
        }
        if (!isArc)
            vertices.push_back(vertex(arcs.getX(i + 1), arcs.getY(i + 1)));
        vertices.push_back(vertex(arcs.getX(i + 2), arcs.getY(i + 2)));
    }
}

int ShapeCollector::chordCount(double radius, double angle)
{
    const double count = std::ceil(std::fabs(angle) / (2 * chordHalfAngle(radius, m_deviation)));
    if (count <= maxChordsOfArc)
        return static_cast<int>(count);
    ++m_content.notes[QStringLiteral("coarse-curve")];
    return static_cast<int>(maxChordsOfArc);
}

void ShapeCollector::appendCurve(const OGRCurve &curve)
{
    const OGRwkbGeometryType type = wkbFlatten(curve.getGeometryType());
    if (type == wkbCompoundCurve) {
        for (const OGRCurve *part : *curve.toCompoundCurve()) {
            // The parts share their ends.
            if (m_content.vertices.size() > m_contourBegin)
                m_content.vertices.pop_back();
            appendCurve(*part);
        }
    } else if (type == wkbCircularString) {
        appendArcs(*curve.toCircularString());
    } else {
        appendVertices(*curve.toLineString());
    }
}

bool ShapeCollector::isFinite() const
{
    const std::vector<ContentVertex> &vertices = m_content.vertices;
    return std::all_of(vertices.begin() + static_cast<std::ptrdiff_t>(m_contourBegin), vertices.end(),
                       [](const ContentVertex &v) { return std::isfinite(v.x) && std::isfinite(v.y); });
}

// Number of steps between different positions: a ring of three corners has three.
int ShapeCollector::cornerCount() const
{
    int count = 0;
    for (std::size_t i = m_contourBegin + 1; i < m_content.vertices.size(); ++i)
        count += isSame(m_content.vertices[i - 1], m_content.vertices[i]) ? 0 : 1;
    return count;
}

void ShapeCollector::leaveOutContour(const QString &kind)
{
    m_content.vertices.resize(m_contourBegin);
    ++m_content.leftOut[kind];
}

void ShapeCollector::addRing(const OGRCurve &ring)
{
    std::vector<ContentVertex> &vertices = m_content.vertices;
    m_contourBegin = vertices.size();
    appendCurve(ring);
    if (!isFinite())
        return leaveOutContour(QStringLiteral("not-finite"));
    if (vertices.size() > m_contourBegin && !isSame(vertices[m_contourBegin], vertices.back()))
        vertices.emplace_back(vertices[m_contourBegin]);
    if (cornerCount() < 3)
        return leaveOutContour(QStringLiteral("short-area"));
    m_content.contourEnds.push_back(vertices.size());
}

void ShapeCollector::addLine(const OGRCurve &line)
{
    m_contourBegin = m_content.vertices.size();
    appendCurve(line);
    if (!isFinite())
        return leaveOutContour(QStringLiteral("not-finite"));
    if (m_content.vertices.size() - m_contourBegin < 2)
        return leaveOutContour(QStringLiteral("short-line"));
    m_content.contourEnds.push_back(m_content.vertices.size());
}

void ShapeCollector::addRings(const OGRGeometry &surface)
{
    const OGRCurvePolygon &polygon = *surface.toCurvePolygon();
    if (polygon.getExteriorRingCurve() == nullptr)
        return;
    addRing(*polygon.getExteriorRingCurve());
    for (int i = 0; i < polygon.getNumInteriorRings(); ++i)
        addRing(*polygon.getInteriorRingCurve(i));
}

void ShapeCollector::addPart(const OGRGeometry &part, bool isArea)
{
    const OGRwkbGeometryType type = wkbFlatten(part.getGeometryType());
    if (isArea && OGR_GT_IsSubClassOf(type, wkbCurvePolygon) != 0)
        addRings(part);
    else if (!isArea && OGR_GT_IsCurve(type) != 0)
        addLine(*part.toCurve());
}

void ShapeCollector::addObject(const OGRGeometry &geometry, bool isArea, const ShapeNames &names)
{
    const std::size_t before = m_content.contourEnds.size();
    forEachPart(geometry, [this, isArea](const OGRGeometry &part) { addPart(part, isArea); });
    if (m_content.contourEnds.size() > before)
        m_content.objects.push_back({isArea, m_content.contourEnds.size(), names.id, names.def});
}

void ShapeCollector::addPoints(const OGRGeometry &geometry, const ShapeNames &names)
{
    forEachPart(geometry, [this, &names](const OGRGeometry &part) {
        if (wkbFlatten(part.getGeometryType()) != wkbPoint || part.IsEmpty() != 0)
            return;
        const OGRPoint &point = *part.toPoint();
        if (std::isfinite(point.getX()) && std::isfinite(point.getY()))
            m_content.points.push_back(
                {vertex(asWritten(point.getX()), asWritten(point.getY())), names.id, names.number});
        else
            ++m_content.leftOut[QStringLiteral("not-finite")];
    });
}

void ShapeCollector::add(const OGRGeometry &geometry, const ShapeNames &names)
{
    if (geometry.IsEmpty() != 0) {
        ++m_content.leftOut[QStringLiteral("no-geometry")];
        return;
    }
    addObject(geometry, true, names);
    addObject(geometry, false, names);
    addPoints(geometry, names);
}
