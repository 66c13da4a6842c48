#include "filegenerator.h"

namespace {

/// Splits \a texts at slashes.
QStringList lineList(const char *texts)
{
    return QString::fromUtf8(texts).split(QLatin1Char('/'));
}

void insertPair(QStringList &lines, int at, const QString &code, const QString &value)
{
    lines.insert(at, value);
    lines.insert(at, code);
}

} // namespace

void FileGenerator::addDxf(GeneratedRun &run, const QString &name)
{
    m_usedPlaces.clear();
    QStringList lines = dxf();
    if (chance(m_errorPercent + m_errorPercent / 3))
        corruptPairs(lines);
    if (chance(10) && lines.size() > 6) {
        insertPair(lines, 4, QStringLiteral("999"), QStringLiteral("x"));
        const int blank = lines.lastIndexOf(QString());
        stretch(lines, 5, blank > 6 && chance(80) ? blank : 6 + below(lines.size() - 6));
        if (chance(70))
            lines << QStringLiteral("999") << padding() << QStringLiteral("999") << padding();
    }
    run.files.append({name, encoded(lines)});
}

QStringList FileGenerator::dxf()
{
    QStringList lines = lineList("0/SECTION/2/HEADER");
    if (chance(50))
        lines += lineList("9/$ACADVER/1/AC1015");
    for (int pads = chance(8) ? 1 + below(3) : 0; pads > 0; --pads)
        lines << QStringLiteral("999") << padding();
    lines += lineList("0/ENDSEC");
    if (chance(40))
        dxfSection(lines, oneOf("BLOCKS/TABLES"), 1 + below(3));
    dxfSection(lines, QStringLiteral("ENTITIES"), m_size);
    if (chance(8))
        dxfSection(lines, oneOf("ENTITIES/OBJECTS"), 1 + below(3));
    if (!chance(8))
        lines += lineList("0/EOF");
    if (chance(4))
        lines << QString();
    return lines;
}

void FileGenerator::dxfSection(QStringList &lines, const QString &name, int size)
{
    lines += lineList("0/SECTION/2");
    lines << name;
    for (int i = 0; i < size; ++i) {
        dxfEntity(lines);
        if (chance(15))
            dxfExtraPairs(lines);
    }
    if (!chance(4))
        lines += lineList("0/ENDSEC");
}

void FileGenerator::dxfEntity(QStringList &lines)
{
    if (chance(m_pointPercent)) {
        lines << QStringLiteral("0") << oneOf("INSERT/POINT/CIRCLE/ELLIPSE");
        dxfExtraPairs(lines);
        dxfPlace(lines, place());
        return;
    }
    if (chance(m_textPercent)) {
        dxfText(lines);
        return;
    }
    const int kind = below(100);
    if (kind < 30) {
        lines += lineList("0/LINE");
        const int first = below(2);
        dxfPlace(lines, place(), first);
        dxfPlace(lines, place(), 1 - first);
    } else if (kind < 58) {
        dxfPolyline(lines);
    } else if (kind < 88) {
        dxfLwpolyline(lines);
    } else {
        lines << QStringLiteral("0") << oneOf("ARC/MTEXT/SPLINE/HATCH/ATTRIB/SOLID/text/VERTEX");
        lines << QStringLiteral("1") << def();
        dxfPlace(lines, place());
    }
}

// Adds pairs that the import ignores.
void FileGenerator::dxfExtraPairs(QStringList &lines)
{
    if (chance(50))
        lines << QStringLiteral("8") << oneOf("Слой//TEXT");
    if (chance(20))
        lines += lineList("  62/     7");
}

void FileGenerator::dxfPlace(QStringList &lines, const Place &at, int code)
{
    const QString blank = chance(80) ? QString() : QStringLiteral(" ");
    lines << blank + QString::number(10 + code) << number(at.first) + blank;
    lines << blank + QString::number(20 + code) << blank + number(at.second);
    if (chance(40))
        lines << QString::number(30 + code) << QStringLiteral("0.0");
}

void FileGenerator::dxfText(QStringList &lines)
{
    QString text = def();
    if (chance(15))
        text.insert(text.size() / 2, oneOf("%%c/%%d/%%p/%%D/%%123/%%1234/%%300/%%177/%%010/%%000/%%255/%%037%%037c/%%u/"
                                           "%%%c/%%12"));
    if (chance(4))
        text += QStringLiteral("%%010");
    const bool aligned = chance(30);
    const bool textFirst = chance(50);
    const Place at = unusedPlace();
    lines += lineList("0/TEXT");
    if (textFirst)
        lines << QStringLiteral("1") << text;
    dxfPlace(lines, aligned ? freshPlace() : at);
    if (aligned || chance(10)) {
        lines << oneOf("72/73") << (aligned ? oneOf("1/2/3") : oneOf("0/abc"));
        dxfPlace(lines, at, 1);
    }
    if (!textFirst)
        lines << QStringLiteral("1") << text;
    if (chance(4))
        lines << QStringLiteral("1") << def();
}

// Two to seven vertices. Some outlines end with a copy of the first vertex or with a vertex near it.
QVector<FileGenerator::Place> FileGenerator::outline()
{
    QVector<Place> places;
    for (int size = 2 + below(6); size > 0; --size)
        places.append(place());
    if (chance(30))
        places.append(Place(places.first()));
    if (chance(10))
        places.append(Place(places.first().first + 0.01, places.first().second));
    return places;
}

void FileGenerator::dxfPolyline(QStringList &lines)
{
    const char *const flags = "1/1/0/129/9/ 1 /01";
    lines += lineList("0/POLYLINE");
    dxfExtraPairs(lines);
    if (chance(60))
        dxfPlace(lines, {0, 0});
    if (chance(70))
        lines << QStringLiteral("70") << oneOf(flags);
    for (const Place &at : outline()) {
        lines += lineList("0/VERTEX");
        dxfExtraPairs(lines);
        dxfPlace(lines, at);
        if (chance(5))
            lines << QStringLiteral("70") << oneOf(flags);
        if (chance(10))
            lines += lineList("42/0.5");
    }
    if (m_size > 20 || !chance(1))
        lines += lineList("0/SEQEND");
    dxfExtraPairs(lines);
}

void FileGenerator::dxfLwpolyline(QStringList &lines)
{
    const QVector<Place> places = outline();
    lines += lineList("0/LWPOLYLINE");
    dxfExtraPairs(lines);
    QStringList head{QStringLiteral("90"), count(places.size())};
    const int flagsAt = chance(30) ? 0 : 2;
    if (chance(85))
        insertPair(head, flagsAt, QStringLiteral("70"), oneOf("1/0/129/128/-1/abc/1.0"));
    lines += head;
    for (const Place &at : places) {
        dxfPlace(lines, at);
        if (chance(5))
            lines += lineList("42/0.5");
        if (chance(1))
            lines += lineList("70/1");
    }
}

void FileGenerator::corruptPairs(QStringList &lines)
{
    for (int errors = 1 + below(2); errors > 0 && lines.size() > 8; --errors) {
        // Mostly spares the first two pairs, because nothing is read after a wrong header.
        const int from = chance(95) ? 2 : 0;
        const int at = 2 * (from + below(lines.size() / 2 - from));
        const QString code = oneOf("0/10/20/70/90/1/72/010/11/21//2");
        const QString value = oneOf("TEXT/1/VERTEX/SECTION/SEQEND/ENDSEC/POINT/LINE/LWPOLYLINE/3/EOF//ENTITIES");
        switch (below(11)) {
        case 0:
            lines.erase(lines.begin() + at, lines.begin() + at + 2);
            break;
        case 1:
            lines.removeAt(at + below(2));
            break;
        case 2:
            insertPair(lines, at, QString(lines[at]), QString(lines[at + 1]));
            break;
        case 3:
            lines[at] = code;
            break;
        case 4:
            lines[at + 1] = value;
            break;
        case 5:
            insertPair(lines, at, code, value);
            break;
        case 6:
            lines.insert(at, QString());
            break;
        case 7:
            lines = lines.mid(0, at + below(2));
            break;
        case 8:
            lines[at + 1] = unusualNumber();
            break;
        case 9:
            lines[at + 1].append(QStringLiteral("\u00a0"));
            break;
        default:
            // An incomplete text, or a point whose search for coordinates stops at the value TEXT.
            insertPair(lines, at, oneOf("0/"), QStringLiteral("TEXT"));
            if (chance(50))
                insertPair(lines, at, QStringLiteral("0"), QStringLiteral("POINT"));
        }
    }
}
