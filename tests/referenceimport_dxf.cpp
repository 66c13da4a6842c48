#include "referenceimport.h"

#include <QRegularExpression>
#include <QTextCodec>

namespace {

const QString codeText = QStringLiteral("1");
const QString codeX = QStringLiteral("10");
const QString codeY = QStringLiteral("20");
const QString codeX2 = QStringLiteral("11");
const QString codeY2 = QStringLiteral("21");

// Area centroid of the first contour, or the mean of its vertices.
QPointF centroid(const QVector<DefPoint> &ring)
{
    double area = 0;
    double momentX = 0;
    double momentY = 0;
    double sumX = 0;
    double sumY = 0;
    for (int i = 0; i < ring.size(); ++i) {
        const DefPoint &a = ring[i];
        const DefPoint &b = ring[(i + 1) % ring.size()];
        const double cross = a.x * b.y - b.x * a.y;
        area += cross;
        momentX += (a.x + b.x) * cross;
        momentY += (a.y + b.y) * cross;
        sumX += a.x;
        sumY += a.y;
    }
    area *= 0.5;
    if (qAbs(area) <= 1e-12)
        return {sumX / ring.size(), sumY / ring.size()};
    return {momentX / (6 * area), momentY / (6 * area)};
}

} // namespace

bool ReferenceDxf::readPair()
{
    if (m_pushedBack) {
        m_pushedBack = false;
        return true;
    }
    m_code = m_stream.readLine().trimmed();
    ++m_lineNum;
    if (m_code.isEmpty())
        return false;
    m_value = m_stream.readLine().trimmed();
    ++m_lineNum;
    return true;
}

bool ReferenceDxf::isPair(const char *code, const char *value) const
{
    return m_code == QLatin1String(code) && m_value == QLatin1String(value);
}

bool ReferenceDxf::readHeader()
{
    return (readPair() && isPair("0", "SECTION") && readPair() && isPair("2", "HEADER")) ||
           failWithFileName(QStringLiteral("Ошибка. Файл %1 не соответствует формату DXF"), m_file);
}

QString ReferenceDxf::decoded(QString text) const
{
    text.replace(QStringLiteral("%%d"), QStringLiteral("°"));
    text.replace(QStringLiteral("%%p"), QStringLiteral("±"));
    text.replace(QStringLiteral("%%c"), QStringLiteral("Ø"));
    QVector<QRegularExpressionMatch> matches;
    QRegularExpressionMatchIterator found = QRegularExpression(QStringLiteral("%%(\\d{3})")).globalMatch(text);
    while (found.hasNext())
        matches.prepend(found.next());
    for (const QRegularExpressionMatch &match : qAsConst(matches)) {
        const int number = match.captured(1).toInt();
        if (number <= 255)
            text.replace(match.capturedStart(), 5, m_codec->toUnicode(QByteArray(1, static_cast<char>(number))));
    }
    return text;
}

bool ReferenceDxf::readCoordinates(const QStringList &codes, Coordinates &values)
{
    while (values.size() < codes.size()) {
        if (m_stream.atEnd() || !readPair())
            return false;
        bool ok = true;
        if (codes.contains(m_code))
            values[m_code] = m_value.toDouble(&ok);
        if (!ok)
            return false;
    }
    return true;
}

bool ReferenceDxf::readPoint()
{
    Coordinates at;
    if (!readCoordinates({codeX, codeY}, at))
        return false;
    m_out.points.append(DefPoint{QString(), at[codeX], at[codeY]});
    return true;
}

bool ReferenceDxf::readVertex()
{
    Coordinates at;
    if (!readCoordinates({codeX, codeY}, at))
        return false;
    appendVert(at[codeX], at[codeY]);
    return true;
}

bool ReferenceDxf::readLine()
{
    Coordinates at;
    if (!readCoordinates({codeX, codeY, codeX2, codeY2}, at))
        return false;
    beginObject();
    beginContour();
    appendVert(at[codeX], at[codeY]);
    appendVert(at[codeX2], at[codeY2]);
    return true;
}

bool ReferenceDxf::readPolyline()
{
    bool closed = false;
    beginObject();
    beginContour();
    while (!m_stream.atEnd() && readPair()) {
        if (isPair("0", "SEQEND"))
            return finishContour(closed);
        if (isPair("70", "1"))
            closed = true;
        if (m_code == QLatin1String("0") && (m_value != QLatin1String("VERTEX") || !readVertex()))
            return false;
    }
    return false;
}

bool ReferenceDxf::readLwpolyline()
{
    bool closed = false;
    int count = 0;
    Coordinates at;
    beginObject();
    beginContour();
    while (!m_stream.atEnd() && readPair() && m_code != QLatin1String("0")) {
        bool ok = true;
        if (m_code == QLatin1String("70"))
            closed = (m_value.toInt() & 1) != 0;
        if (m_code == QLatin1String("90"))
            count = m_value.toInt(&ok);
        if (m_code == codeX || m_code == codeY)
            at[m_code] = m_value.toDouble(&ok);
        if (!ok || (at.size() == 2 && lastContour().isEmpty() && count <= 1))
            return false;
        if (at.size() < 2)
            continue;
        appendVert(at[codeX], at[codeY]);
        at.clear();
        if (--count == 0)
            return finishContour(closed);
    }
    return false;
}

bool ReferenceDxf::finishContour(bool closed)
{
    QVector<DefPoint> &contour = lastContour();
    if (contour.size() < 2)
        return false;
    if (closed && !isWithinTolerance(contour.first(), contour.last()))
        contour.append(DefPoint(contour.first()));
    return true;
}

bool ReferenceDxf::readTextGroups(QMap<QString, QString> &groups)
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
    if (!readTextGroups(groups) || !groups.contains(codeX) || !groups.contains(codeY) || !groups.contains(codeText))
        return false;

    DefPoint text{decoded(groups[codeText]), 0, 0};
    const auto readPlace = [&](const QString &x, const QString &y) {
        bool okX = false;
        bool okY = false;
        text.x = groups[x].toDouble(&okX);
        text.y = groups[y].toDouble(&okY);
        return okX && okY;
    };
    const bool isAligned = groups[QStringLiteral("72")].toInt() != 0 || groups[QStringLiteral("73")].toInt() != 0;
    if (!readPlace(codeX, codeY) ||
        (isAligned && groups.contains(codeX2) && groups.contains(codeY2) && !readPlace(codeX2, codeY2)))
        return false;
    m_texts.append(text);
    return true;
}

bool ReferenceDxf::load(Pass pass)
{
    return scan(pass) || fail(QStringLiteral("Ошибка чтения DXF файла в строке: %1").arg(m_lineNum));
}

bool ReferenceDxf::scan(Pass pass)
{
    bool inEntities = false;
    while (!m_stream.atEnd()) {
        if (!readPair())
            return false;
        if (isPair("0", "SECTION")) {
            if (!readPair())
                return false;
            inEntities = m_value == QLatin1String("ENTITIES");
        } else if (m_code == QLatin1String("0") && inEntities && !readEntity(pass)) {
            return false;
        }
    }
    return true;
}

bool ReferenceDxf::readEntity(Pass pass)
{
    if (pass == Pass::Polygons)
        return readPolygon();

    static const QStringList points = QStringLiteral("INSERT POINT CIRCLE ELLIPSE").split(QLatin1Char(' '));
    const bool ok = pass == Pass::Texts || !points.contains(m_value) || readPoint();
    // If reading a point stops at a pair with the value TEXT, a text begins there, even after a failure.
    return m_value == QLatin1String("TEXT") ? readText() : ok;
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
        setLastPolygonDef(m_options.searchObjectDefs ? nearestText() : QString());
    return ok;
}

bool ReferenceDxf::loadPoints()
{
    return readHeader() && load(Pass::Points);
}

bool ReferenceDxf::loadPolygons()
{
    if (!readHeader())
        return false;
    namePoints();
    if (m_options.searchObjectDefs) {
        if (!m_options.searchPointDefs || !m_options.pointFileName.isEmpty())
            loadTexts();
        removePointNumbers();
    }
    return load(Pass::Polygons);
}

// After a failure the objects pass continues where this one stopped.
void ReferenceDxf::loadTexts()
{
    m_texts.clear();
    if (!load(Pass::Texts))
        return;
    sort(m_texts);
    m_file.seek(0);
    m_stream.seek(0);
}

void ReferenceDxf::removePointNumbers()
{
    static const QRegularExpression pointNumber(QStringLiteral("^[A-Za-zА-Яа-яЁё]?\\d+$"));
    QVector<DefPoint> kept;
    for (const DefPoint &text : qAsConst(m_texts)) {
        if (!pointNumber.match(text.def).hasMatch())
            kept.append(text);
    }
    if (!kept.isEmpty())
        m_texts = kept;
}

void ReferenceDxf::namePoints()
{
    if (m_out.points.isEmpty() || m_texts.isEmpty())
        return;
    sort(m_texts);
    for (DefPoint &point : m_out.points) {
        const int text = nearest(m_texts, point.x, point.y);
        if (text >= 0)
            point.def = m_texts[text].def;
    }
}

QString ReferenceDxf::nearestText() const
{
    const QPointF centre = centroid(m_out.objects.last().contours.first());
    const int text =
        m_options.swapXY ? nearest(m_texts, centre.y(), centre.x()) : nearest(m_texts, centre.x(), centre.y());
    return text < 0 ? QString() : m_texts[text].def;
}
