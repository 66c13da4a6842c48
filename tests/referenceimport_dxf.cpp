#include "referenceimport.h"

#include <QRegularExpression>
#include <QTextCodec>

#include <cmath>

bool ReferenceDxf::readPair()
{
    if (m_pushedBack) {
        m_pushedBack = false;
        return true;
    }
    m_line = m_stream.readLine();
    m_code = m_line.trimmed();
    ++m_lineNum;
    if (m_code.isEmpty())
        return false;
    m_line = m_stream.readLine();
    m_value = m_line.trimmed();
    ++m_lineNum;
    return true;
}

bool ReferenceDxf::checkFile()
{
    if (readPair() && m_code == QLatin1String("0") && m_value == QLatin1String("SECTION") && readPair() &&
        m_code == QLatin1String("2") && m_value == QLatin1String("HEADER"))
        return true;
    return fail(QStringLiteral("Ошибка. Файл %1 не соответствует формату DXF").arg(fileName()));
}

QString ReferenceDxf::decodeText(const QString &text) const
{
    QString decoded = text;
    decoded.replace(QStringLiteral("%%d"), QString(QChar(0xB0)));
    decoded.replace(QStringLiteral("%%p"), QString(QChar(0xB1)));
    decoded.replace(QStringLiteral("%%c"), QString(QChar(0xD8)));
    QVector<QRegularExpressionMatch> matches;
    QRegularExpressionMatchIterator found = QRegularExpression(QStringLiteral("%%(\\d{3})")).globalMatch(decoded);
    while (found.hasNext())
        matches.prepend(found.next());
    for (const QRegularExpressionMatch &match : qAsConst(matches)) {
        const int number = match.captured(1).toInt();
        if (number <= 255)
            decoded.replace(match.capturedStart(), 5, m_codec->toUnicode(QByteArray(1, static_cast<char>(number))));
    }
    return decoded;
}

bool ReferenceDxf::readCoordinates(QSet<QString> required, QMap<QString, double> &values)
{
    const QSet<QString> wanted = required;
    bool ok = true;
    while (true) {
        if (m_stream.atEnd())
            return ok && required.isEmpty();
        if (!ok)
            return false;
        if (required.isEmpty())
            return true;
        ok = readPair();
        if (!ok)
            return false;
        if (wanted.contains(m_code))
            values[m_code] = m_value.toDouble(&ok);
        required.remove(m_code);
    }
}

bool ReferenceDxf::readPoint()
{
    QMap<QString, double> at;
    if (!readCoordinates({QStringLiteral("10"), QStringLiteral("20")}, at))
        return false;
    DefPoint point;
    point.x = at[QStringLiteral("10")];
    point.y = at[QStringLiteral("20")];
    m_out.points.append(point);
    return true;
}

bool ReferenceDxf::readVertex()
{
    QMap<QString, double> at;
    if (!readCoordinates({QStringLiteral("10"), QStringLiteral("20")}, at))
        return false;
    appendVert(at[QStringLiteral("10")], at[QStringLiteral("20")], false);
    return true;
}

bool ReferenceDxf::readLine()
{
    QMap<QString, double> at;
    const QSet<QString> required{QStringLiteral("10"), QStringLiteral("20"), QStringLiteral("11"),
                                 QStringLiteral("21")};
    if (!readCoordinates(required, at))
        return false;
    appendEmptyPolygon();
    appendEmptyContour();
    appendVert(at[QStringLiteral("10")], at[QStringLiteral("20")], false);
    appendVert(at[QStringLiteral("11")], at[QStringLiteral("21")], false);
    return true;
}

bool ReferenceDxf::readPolyline()
{
    appendEmptyPolygon();
    appendEmptyContour();
    bool closed = false;
    return readPolylineVertices(closed) && finishContour(closed);
}

bool ReferenceDxf::readPolylineVertices(bool &closed)
{
    if (m_stream.atEnd())
        return false;
    while (true) {
        if (!readPair())
            return false;
        if (m_code == QLatin1String("0")) {
            if (m_value == QLatin1String("SEQEND"))
                return true;
            if (m_value != QLatin1String("VERTEX") || !readVertex())
                return false;
        } else if (m_code == QLatin1String("70") && m_value == QLatin1String("1")) {
            closed = true;
        }
        if (m_stream.atEnd())
            return false;
    }
}

bool ReferenceDxf::readLwpolyline()
{
    appendEmptyPolygon();
    appendEmptyContour();
    bool closed = false;
    return readLwpolylineVertices(closed) && finishContour(closed);
}

bool ReferenceDxf::readLwpolylineVertices(bool &closed)
{
    const QSet<QString> both{QStringLiteral("10"), QStringLiteral("20")};
    QSet<QString> required = both;
    bool ok = true;
    bool first = true;
    int count = 0;
    double x = 0;
    double y = 0;
    while (true) {
        if (m_stream.atEnd() || !ok)
            return false;
        if (!readPair() || m_code == QLatin1String("0"))
            return false;
        if (m_code == QLatin1String("70"))
            closed = (m_value.toInt() & 1) != 0;
        if (m_code == QLatin1String("90"))
            count = m_value.toInt(&ok);
        if (m_code == QLatin1String("10"))
            x = m_value.toDouble(&ok);
        if (m_code == QLatin1String("20"))
            y = m_value.toDouble(&ok);
        required.remove(m_code);
        if (!ok || !required.isEmpty())
            continue;
        if (first && count <= 1)
            return false;
        first = false;
        appendVert(x, y, false);
        --count;
        if (count == 0)
            return true;
        required = both;
    }
}

bool ReferenceDxf::finishContour(bool closed)
{
    QVector<DefPoint> &contour = lastContour();
    if (contour.size() < 2)
        return false;
    const DefPoint first = contour.first();
    const DefPoint last = contour.last();
    const bool meets = std::fabs(first.x - last.x) <= 0.01 && std::fabs(first.y - last.y) <= 0.01;
    if (closed && !meets)
        contour.append(first);
    return true;
}

bool ReferenceDxf::collectText(QMap<QString, QString> &groups)
{
    while (!m_stream.atEnd()) {
        if (!readPair())
            return false;
        if (m_code == QLatin1String("0")) {
            m_pushedBack = true;
            return true;
        }
        groups[m_code] = m_value;
    }
    return true;
}

bool ReferenceDxf::readText()
{
    QMap<QString, QString> groups;
    if (!collectText(groups))
        return false;
    const QString codeX = QStringLiteral("10");
    const QString codeY = QStringLiteral("20");
    const QString alignedX = QStringLiteral("11");
    const QString alignedY = QStringLiteral("21");
    const QString codeText = QStringLiteral("1");
    if (!groups.contains(codeX) || !groups.contains(codeY) || !groups.contains(codeText))
        return false;

    DefPoint text;
    bool okX = false;
    bool okY = false;
    text.x = groups[codeX].toDouble(&okX);
    text.y = groups[codeY].toDouble(&okY);
    if (!okX || !okY)
        return false;
    text.def = decodeText(groups[codeText]);
    const int horizontal = groups.value(QStringLiteral("72"), QStringLiteral("0")).toInt();
    const int vertical = groups.value(QStringLiteral("73"), QStringLiteral("0")).toInt();
    if ((horizontal != 0 || vertical != 0) && groups.contains(alignedX) && groups.contains(alignedY)) {
        text.x = groups[alignedX].toDouble(&okX);
        text.y = groups[alignedY].toDouble(&okY);
        if (!okX || !okY)
            return false;
    }
    m_texts.append(text);
    return true;
}

bool ReferenceDxf::readError()
{
    return fail(QStringLiteral("Ошибка чтения DXF файла в строке: %1").arg(m_lineNum));
}

bool ReferenceDxf::scan(Pass pass)
{
    bool entities = false;
    bool ok = true;
    while (!m_stream.atEnd()) {
        if (!ok || !readPair())
            return readError();
        if (m_code != QLatin1String("0"))
            continue;
        if (m_value == QLatin1String("SECTION")) {
            if (!readPair())
                return readError();
            entities = m_value == QLatin1String("ENTITIES");
        } else if (entities) {
            ok = readEntity(pass);
        }
    }
    return ok || readError();
}

bool ReferenceDxf::readEntity(Pass pass)
{
    if (pass == Pass::Polygons)
        return readPolygon();

    static const QSet<QString> places{QStringLiteral("INSERT"), QStringLiteral("POINT"), QStringLiteral("CIRCLE"),
                                      QStringLiteral("ELLIPSE")};
    bool ok = true;
    if (pass == Pass::Points && places.contains(m_value))
        ok = readPoint();
    // The value is looked at again: a place that broke off at the name of a text is read on as that text.
    if (m_value == QLatin1String("TEXT"))
        ok = readText();
    return ok;
}

bool ReferenceDxf::readPolygon()
{
    bool ok = false;
    if (m_value == QLatin1String("LINE"))
        ok = readLine();
    else if (m_value == QLatin1String("POLYLINE"))
        ok = readPolyline();
    else if (m_value == QLatin1String("LWPOLYLINE"))
        ok = readLwpolyline();
    else
        return true;
    if (ok)
        updateLastPolygonDef();
    return ok;
}

bool ReferenceDxf::loadPoints()
{
    if (!checkFile())
        return false;
    m_texts.clear();
    return scan(Pass::Points);
}

bool ReferenceDxf::loadPolygons()
{
    if (!checkFile())
        return false;
    updatePointsDefs();
    if (m_options.searchObjectDefs) {
        if (!m_options.searchPointDefs || !m_options.pointFileName.isEmpty()) {
            m_texts.clear();
            loadTextsOnly();
        }
        filterObjectDefs();
    }
    return scan(Pass::Polygons);
}

bool ReferenceDxf::loadTextsOnly()
{
    if (!scan(Pass::Texts))
        return false;
    sort(m_texts);
    rewind();
    return true;
}

void ReferenceDxf::filterObjectDefs()
{
    static const QRegularExpression pointDef(QStringLiteral("^[A-Za-zА-Яа-яЁё]?\\d+$"));
    QVector<DefPoint> kept;
    for (const DefPoint &text : qAsConst(m_texts)) {
        if (!pointDef.match(text.def).hasMatch())
            kept.append(text);
    }
    if (!kept.isEmpty())
        m_texts = kept;
}

void ReferenceDxf::updatePointsDefs()
{
    if (m_out.points.isEmpty() || m_texts.isEmpty())
        return;
    sort(m_texts);
    for (DefPoint &point : m_out.points) {
        const int nearest = referenceNearest(m_texts, point.x, point.y);
        if (nearest >= 0)
            point.def = m_texts[nearest].def;
    }
}

void ReferenceDxf::updateLastPolygonDef()
{
    QString def;
    if (m_options.searchObjectDefs) {
        const QPointF centre = referenceCentroid(m_out.objects.last());
        const bool swapped = m_options.swapXY;
        const int nearest =
            referenceNearest(m_texts, swapped ? centre.y() : centre.x(), swapped ? centre.x() : centre.y());
        if (nearest >= 0)
            def = m_texts[nearest].def;
    }
    setLastPolygonDef(def);
}
