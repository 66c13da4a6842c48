// The passes over a DXF drawing (points and texts, texts only, objects) and how texts name points and objects.

#include "digit.h"
#include "mapimport_dxf.h"

#include <algorithm>

namespace {

bool isLetter(QChar c)
{
    const ushort u = c.unicode();
    return (u >= 'A' && u <= 'Z') || (u >= 'a' && u <= 'z') || (u >= 0x410 && u <= 0x44F) || u == 0x401 || u == 0x451;
}

// Equivalent to ^[A-Za-zА-Яа-яЁё]?\d+$, whose $ also matches before a final line feed.
bool isPointNumber(const QString &def)
{
    const QChar *c = def.begin();
    const QChar *end = def.end();
    if (c != end && isLetter(*c))
        ++c;
    if (c != end && end[-1] == QLatin1Char('\n'))
        --end;
    return c != end && std::all_of(c, end, isDigit);
}

} // namespace

// If a point fails at a pair with the value TEXT, a text is read from there. The value is that of the last pair that
// readPoint() has read.
bool DxfImport::loadPoint()
{
    const bool ok = readPoint();
    return value == QLatin1String("TEXT") ? readText() : ok;
}

template <DxfImport::Reader read>
bool DxfImport::loadObject()
{
    if (!(this->*read)())
        return false;
    updateLastPolygonDef();
    return true;
}

bool DxfImport::readEntity(const Entities &entities)
{
    for (const Entity &entity : entities) {
        if (value == entity.name)
            return (this->*entity.read)();
    }
    return true;
}

bool DxfImport::scanSections(const Entities &entities)
{
    bool inEntities = false;
    while (!stream.atEnd()) {
        if (!readCodeValue())
            return false;
        if (code != Begin)
            continue;
        if (value == QLatin1String("SECTION")) {
            if (!readCodeValue())
                return false;
            // The group code of the name is not checked.
            inEntities = value == QLatin1String("ENTITIES");
        } else if (inEntities && !readEntity(entities)) {
            return false;
        }
    }
    return true;
}

bool DxfImport::loadEntities(const Entities &entities)
{
    return scanSections(entities) || fail(QStringLiteral("Ошибка чтения DXF файла в строке: %1").arg(lineNum));
}

bool DxfImport::loadPoints()
{
    if (!checkDxfFile())
        return false;
    texts.clear();
    return loadEntities({{QLatin1String("INSERT"), &DxfImport::loadPoint},
                         {QLatin1String("POINT"), &DxfImport::loadPoint},
                         {QLatin1String("CIRCLE"), &DxfImport::loadPoint},
                         {QLatin1String("ELLIPSE"), &DxfImport::loadPoint},
                         {QLatin1String("TEXT"), &DxfImport::readText}});
}

// After a failure, which is reported but ignored, the stream is not rewound: the objects pass continues from there.
bool DxfImport::loadTextsOnly()
{
    if (!loadEntities({{QLatin1String("TEXT"), &DxfImport::readText}}))
        return false;
    sortPoints(texts);
    resetInFileStream();
    return true;
}

bool DxfImport::loadPolygons()
{
    if (!checkDxfFile())
        return false;
    updatePointsDefs();
    if (searchObjectDefs) {
        const bool haveTexts = searchPointDefs && pointFileName.isEmpty();
        if (!haveTexts) {
            texts.clear();
            loadTextsOnly();
        }
        filterObjectDefs();
        textIndex = NearestPointIndex(texts); // without known points the texts are in file order
    }
    return loadEntities({{QLatin1String("LINE"), &DxfImport::loadObject<&DxfImport::readLine>},
                         {QLatin1String("POLYLINE"), &DxfImport::loadObject<&DxfImport::readPolyline>},
                         {QLatin1String("LWPOLYLINE"), &DxfImport::loadObject<&DxfImport::readLwpolyline>}});
}

// Every point takes the nearest text at any distance; a text may name several points.
void DxfImport::updatePointsDefs()
{
    if (points.isEmpty() || texts.isEmpty())
        return;
    sortPoints(texts);
    const NearestPointIndex index(texts);
    for (DefPoint &point : points) {
        const DefPoint *const text = index.find(QPointF(point.x, point.y));
        if (text != nullptr)
            point.def = text->def;
    }
}

// Drops the texts that look like point numbers, unless all of them do.
void DxfImport::filterObjectDefs()
{
    const auto isNumber = [](const DefPoint &text) { return isPointNumber(text.def); };
    if (!std::all_of(texts.begin(), texts.end(), isNumber))
        texts.erase(std::remove_if(texts.begin(), texts.end(), isNumber), texts.end());
}

void DxfImport::updateLastPolygonDef()
{
    QString def;
    if (searchObjectDefs) {
        const QPointF m = objects->last().centroid();
        // swapXY applies to stored vertices, never to texts.
        const DefPoint *const text = textIndex.find(swapXY ? QPointF(m.y(), m.x()) : m);
        if (text != nullptr)
            def = text->def;
    }
    setLastPolygonDef(def);
}

void DxfImport::pointsFromPolygons()
{
    for (const DefPolygon &object : qAsConst(*objects)) {
        for (const QVector<DefPoint> &contour : object.contours)
            points += contour;
    }
    sortPoints(points);
    points.erase(std::unique(points.begin(), points.end()), points.end());
}
