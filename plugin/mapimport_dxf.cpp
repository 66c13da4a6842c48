// An ASCII DXF drawing is a sequence of pairs of lines, a group code and a value:
//
//     0              a pair with code 0 begins something: a section, an entity, the vertex of a polyline
//     LWPOLYLINE
//     90             the other pairs describe it: 10 and 20 are X and Y, 11 and 21 the second X and Y,
//     4              70 flags, 90 a number of vertices, 1 a text; which mean something depends on the entity
//
// A file begins with the section HEADER, and only entities of the section ENTITIES are read. There are no attributes:
// points and objects are named by the texts that lie nearest.
//
// The functions stand in the order in which the data travels: pair, text, entity, pass.

#include "mapimport.h"

#include <QRegularExpression>
#include <QTextCodec>

#include <algorithm>

namespace {

const QString codeX = QStringLiteral("10");
const QString codeY = QStringLiteral("20");
const QString codeX2 = QStringLiteral("11");
const QString codeY2 = QStringLiteral("21");
const QString codeText = QStringLiteral("1");

bool toNumber(const QString &text, double &number)
{
    bool ok = false;
    number = text.toDouble(&ok);
    return ok;
}

} // namespace

// A blank line in place of a group code ends the reading, as the end of the file does.
bool DxfImport::readCodeValue()
{
    if (pushedBack) {
        pushedBack = false;
        return true;
    }
    line = stream.readLine();
    ++lineNum;
    code = line.trimmed();
    if (code.isEmpty())
        return false;
    line = stream.readLine();
    ++lineNum;
    value = line.trimmed();
    return true;
}

bool DxfImport::checkDxfFile()
{
    const bool ok = readCodeValue() && code == QLatin1String("0") && value == QLatin1String("SECTION") &&
                    readCodeValue() && code == QLatin1String("2") && value == QLatin1String("HEADER");
    return ok || failInFile(QStringLiteral("Ошибка. Файл %1 не соответствует формату DXF"));
}

// Replaces the codes of special characters and of single bytes; all other formatting stays as it is written.
QString DxfImport::decodeText(const QString &s) const
{
    static const QRegularExpression re(QStringLiteral("%%(\\d{3})"));
    QString text = s;
    text.replace(QLatin1String("%%d"), QStringLiteral("°"));
    text.replace(QLatin1String("%%p"), QStringLiteral("±"));
    text.replace(QLatin1String("%%c"), QStringLiteral("Ø"));

    QString decoded = QStringLiteral("");
    int end = 0;
    for (QRegularExpressionMatchIterator it = re.globalMatch(text); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        const int byte = match.captured(1).toInt();
        decoded += text.midRef(end, match.capturedStart() - end);
        decoded += byte <= 255 ? codec->toUnicode(QByteArray(1, static_cast<char>(byte))) : match.captured();
        end = match.capturedEnd();
    }
    return end == 0 ? text : decoded + text.midRef(end);
}

// Reads on until every code of the table has given its coordinate, if need be into the entities that follow.
bool DxfImport::readCoordinates(const QHash<QString, double *> &coordinates)
{
    QSet<QString> missing(coordinates.keyBegin(), coordinates.keyEnd());
    while (!missing.isEmpty()) {
        if (stream.atEnd() || !readCodeValue())
            return false;
        double *const coordinate = coordinates.value(code);
        if (coordinate != nullptr && !toNumber(value, *coordinate))
            return false;
        missing.remove(code);
    }
    return true;
}

bool DxfImport::readPoint()
{
    DefPoint point;
    if (!readCoordinates({{codeX, &point.x}, {codeY, &point.y}}))
        return false;
    points.append(point);
    return true;
}

bool DxfImport::readVertex()
{
    double x = 0;
    double y = 0;
    if (!readCoordinates({{codeX, &x}, {codeY, &y}}))
        return false;
    appendVert(x, y, false);
    return true;
}

bool DxfImport::readLine()
{
    double x1 = 0;
    double y1 = 0;
    double x2 = 0;
    double y2 = 0;
    if (!readCoordinates({{codeX, &x1}, {codeY, &y1}, {codeX2, &x2}, {codeY2, &y2}}))
        return false;
    appendEmptyPolygon();
    appendEmptyContour();
    appendVert(x1, y1, false);
    appendVert(x2, y2, false);
    return true;
}

// The vertices of a POLYLINE up to its SEQEND. The flag closes it only when it is 1 and nothing else; the groups that
// follow the coordinates of a VERTEX are looked at alike.
bool DxfImport::readVertices(bool &closed)
{
    while (!stream.atEnd() && readCodeValue()) {
        if (code == QLatin1String("0")) {
            if (value == QLatin1String("SEQEND"))
                return true;
            if (value != QLatin1String("VERTEX") || !readVertex())
                return false;
        } else if (code == QLatin1String("70") && value == QLatin1String("1")) {
            closed = true;
        }
    }
    return false;
}

bool DxfImport::readPolyline()
{
    bool closed = false;
    appendEmptyPolygon();
    appendEmptyContour();
    return readVertices(closed) && finishContour(closed);
}

// The vertices of an LWPOLYLINE, as many as it declares before the first; its flag closes it when bit 0 is set.
bool DxfImport::readLwVertices(bool &closed)
{
    QSet<QString> missing{codeX, codeY};
    bool first = true;
    bool ok = true;
    qint64 count = 0; // wide enough to be counted down however often the file changes it
    double x = 0;
    double y = 0;
    while (ok && !stream.atEnd() && readCodeValue()) {
        if (code == QLatin1String("0"))
            return false;
        if (code == QLatin1String("70"))
            closed = (value.toInt() & 1) != 0;
        else if (code == QLatin1String("90"))
            count = value.toInt(&ok);
        else if (code == codeX)
            ok = toNumber(value, x);
        else if (code == codeY)
            ok = toNumber(value, y);
        missing.remove(code);
        if (!ok || !missing.isEmpty())
            continue;
        if (first && count <= 1)
            return false;
        first = false;
        appendVert(x, y, false);
        if (--count == 0)
            return true;
        missing = {codeX, codeY};
    }
    return false;
}

bool DxfImport::readLwpolyline()
{
    bool closed = false;
    appendEmptyPolygon();
    appendEmptyContour();
    return readLwVertices(closed) && finishContour(closed);
}

// A ring ends with a copy of its first vertex, unless it is drawn so already.
bool DxfImport::finishContour(bool closed)
{
    QVector<DefPoint> &contour = objects->last().contours.last();
    if (contour.size() < 2)
        return false;
    if (closed && !(contour.first() == contour.last()))
        contour.append(contour.first());
    return true;
}

// The groups of a TEXT up to the next pair with code 0, which is left for the caller.
bool DxfImport::readTextGroups(TextGroups &groups)
{
    while (!stream.atEnd()) {
        if (!readCodeValue())
            return false;
        if (code == QLatin1String("0")) {
            pushedBack = true;
            break;
        }
        groups.insert(code, value);
    }
    return groups.contains(codeX) && groups.contains(codeY) && groups.contains(codeText);
}

// A text with an alignment other than left on the baseline is placed by its second point, when it has one.
bool DxfImport::textPosition(const TextGroups &groups, DefPoint &text)
{
    if (!toNumber(groups.value(codeX), text.x) || !toNumber(groups.value(codeY), text.y))
        return false;
    const bool aligned =
        groups.value(QStringLiteral("72")).toInt() != 0 || groups.value(QStringLiteral("73")).toInt() != 0;
    if (!aligned || !groups.contains(codeX2) || !groups.contains(codeY2))
        return true;
    return toNumber(groups.value(codeX2), text.x) && toNumber(groups.value(codeY2), text.y);
}

bool DxfImport::readText()
{
    TextGroups groups;
    DefPoint text;
    if (!readTextGroups(groups) || !textPosition(groups, text))
        return false;
    text.def = decodeText(groups.value(codeText));
    texts.append(text);
    return true;
}

// A point that breaks off with TEXT for its value is read on as a text.
bool DxfImport::loadPoint()
{
    const bool ok = readPoint();
    return value == QLatin1String("TEXT") ? readText() : ok;
}

bool DxfImport::loadLine()
{
    if (!readLine())
        return false;
    updateLastPolygonDef();
    return true;
}

bool DxfImport::loadPolyline()
{
    if (!readPolyline())
        return false;
    updateLastPolygonDef();
    return true;
}

bool DxfImport::loadLwpolyline()
{
    if (!readLwpolyline())
        return false;
    updateLastPolygonDef();
    return true;
}

bool DxfImport::scanSections(const Readers &readers)
{
    bool inEntities = false;
    while (!stream.atEnd()) {
        if (!readCodeValue())
            return false;
        if (code != QLatin1String("0"))
            continue;
        if (value == QLatin1String("SECTION")) {
            if (!readCodeValue())
                return false;
            inEntities = value == QLatin1String("ENTITIES");
        } else if (inEntities && readers.contains(value) && !(this->*readers.value(value))()) {
            return false;
        }
    }
    return true;
}

bool DxfImport::loadEntities(const Readers &readers)
{
    if (scanSections(readers))
        return true;
    showStatus(QStringLiteral("Ошибка чтения DXF файла в строке: %1").arg(lineNum));
    return false;
}

bool DxfImport::loadPoints()
{
    if (!checkDxfFile())
        return false;
    texts.clear();
    return loadEntities({{QStringLiteral("INSERT"), &DxfImport::loadPoint},
                         {QStringLiteral("POINT"), &DxfImport::loadPoint},
                         {QStringLiteral("CIRCLE"), &DxfImport::loadPoint},
                         {QStringLiteral("ELLIPSE"), &DxfImport::loadPoint},
                         {QStringLiteral("TEXT"), &DxfImport::readText}});
}

// After a failure the objects pass goes on from where this one stopped.
bool DxfImport::loadTextsOnly()
{
    if (!loadEntities({{QStringLiteral("TEXT"), &DxfImport::readText}}))
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
    }
    return loadEntities({{QStringLiteral("LINE"), &DxfImport::loadLine},
                         {QStringLiteral("POLYLINE"), &DxfImport::loadPolyline},
                         {QStringLiteral("LWPOLYLINE"), &DxfImport::loadLwpolyline}});
}

// Every point takes the nearest text, however far; a text may serve several points.
void DxfImport::updatePointsDefs()
{
    if (points.isEmpty() || texts.isEmpty())
        return;
    sortPoints(texts);
    for (DefPoint &point : points) {
        const DefPoint *const text = findNearestPoint(texts, QPointF(point.x, point.y));
        if (text != nullptr)
            point.def = text->def;
    }
}

// Drops the texts that look like point numbers, unless all of them do: then they are what there is.
void DxfImport::filterObjectDefs()
{
    static const QRegularExpression pointDefRegExp(QStringLiteral("^[A-Za-zА-Яа-яЁё]?\\d+$"));
    QVector<DefPoint> candidates;
    for (const DefPoint &text : qAsConst(texts)) {
        if (!pointDefRegExp.match(text.def).hasMatch())
            candidates.append(text);
    }
    if (!candidates.isEmpty())
        texts = candidates;
}

void DxfImport::updateLastPolygonDef()
{
    QString def;
    if (searchObjectDefs) {
        // Stored vertices may have been exchanged, texts never are.
        const QPointF m = objects->last().centroid();
        const DefPoint *const text = findNearestPoint(texts, swapXY ? QPointF(m.y(), m.x()) : m);
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
