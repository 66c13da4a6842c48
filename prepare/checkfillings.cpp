// Functions are in data-flow order: contour, geometry, feature, drawing.

#include "checkfillings.h"

#include "convertfillings.h"

#include <ogrsf_frmts.h>

void CheckFillings::addContour(const OGRSimpleCurve &line)
{
    for (int i = 0; i < line.getNumPoints(); ++i)
        m_drawn.vertices.push_back({line.getX(i), line.getY(i)});
    m_drawn.contourEnds.push_back(m_drawn.vertices.size());
}

void CheckFillings::addParts(const OGRGeometry &geometry, bool isArea)
{
    const OGRwkbGeometryType type = wkbFlatten(geometry.getGeometryType());
    if (OGR_GT_IsSubClassOf(type, wkbGeometryCollection) != 0) {
        for (const OGRGeometry *const part : *geometry.toGeometryCollection())
            addParts(*part, isArea);
    } else if (isArea && type == wkbPolygon) {
        for (const OGRLinearRing *const ring : *geometry.toPolygon())
            addContour(*ring);
    } else if (!isArea && type == wkbLineString && geometry.toLineString()->get_IsClosed() != 0) {
        addContour(*geometry.toLineString());
    }
}

void CheckFillings::add(const OGRFeature &feature)
{
    const OGRGeometry &geometry = *feature.GetGeometryRef();
    for (const bool isArea : {false, true}) {
        const std::size_t contourBegin = m_drawn.contourEnds.size();
        addParts(geometry, isArea);
        if (m_drawn.contourEnds.size() == contourBegin)
            continue;
        const int field = isArea ? feature.GetFieldIndex("EntityHandle") : -1;
        const QString handle = field < 0 ? QString() : QString::fromUtf8(feature.GetFieldAsString(field));
        m_drawn.objects.push_back({isArea, m_drawn.contourEnds.size(), handle, QString()});
    }
}

QVector<QString> CheckFillings::handles() const
{
    const std::vector<bool> fills = findFillings(m_drawn);
    QVector<QString> handles;
    for (std::size_t i = 0; i < fills.size(); ++i) {
        if (fills[i])
            handles.append(m_drawn.objects[i].id);
    }
    return handles;
}
