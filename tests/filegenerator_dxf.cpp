#include "filegenerator.h"

void FileGenerator::addDxf(GeneratedRun &run, const QString &name)
{
    m_taken.clear();
    QStringList lines = dxf();
    if (chance(m_slipPercent + m_slipPercent / 3))
        spoilPairs(lines);
    if (chance(10) && lines.size() > 6) {
        lines.insert(4, QStringLiteral("x"));
        lines.insert(4, QStringLiteral("999"));
        const int blank = lines.lastIndexOf(QString());
        stretch(lines, 5, blank > 6 && chance(80) ? blank : 6 + below(lines.size() - 6));
        if (chance(70))
            lines << QStringLiteral("999") << padding() << QStringLiteral("999") << padding();
    }
    run.files.append({name, encoded(lines)});
}

void FileGenerator::add(QStringList &lines, const QString &code, const QString &value)
{
    lines << code << value;
}

QStringList FileGenerator::dxf()
{
    const QString zero = QStringLiteral("0");
    const QString section = QStringLiteral("SECTION");
    const QString end = QStringLiteral("ENDSEC");
    const QString two = QStringLiteral("2");
    QStringList lines{zero, section, two, QStringLiteral("HEADER")};
    if (chance(50))
        lines << QStringLiteral("9") << QStringLiteral("$ACADVER") << QStringLiteral("1") << QStringLiteral("AC1015");
    for (int pads = chance(8) ? 1 + below(3) : 0; pads > 0; --pads)
        lines << QStringLiteral("999") << padding();
    lines << zero << end;
    if (chance(40)) {
        lines << zero << section << two << oneOf({QStringLiteral("BLOCKS"), QStringLiteral("TABLES")});
        dxfEntities(lines, 1 + below(3));
        lines << zero << end;
    }
    lines << zero << section << two << QStringLiteral("ENTITIES");
    dxfEntities(lines, m_size);
    if (!chance(5))
        lines << zero << end;
    if (chance(8)) {
        lines << zero << section << two << oneOf({QStringLiteral("ENTITIES"), QStringLiteral("OBJECTS")});
        dxfEntities(lines, 1 + below(3));
        lines << zero << end;
    }
    if (!chance(8))
        lines << zero << QStringLiteral("EOF");
    if (chance(4))
        lines << QString();
    return lines;
}

void FileGenerator::dxfEntities(QStringList &lines, int size)
{
    for (int i = 0; i < size; ++i) {
        dxfEntity(lines);
        if (chance(15))
            dxfNoise(lines);
    }
}

void FileGenerator::dxfEntity(QStringList &lines)
{
    if (chance(m_pointPercent)) {
        add(lines, QStringLiteral("0"),
            oneOf({QStringLiteral("INSERT"), QStringLiteral("POINT"), QStringLiteral("CIRCLE"),
                   QStringLiteral("ELLIPSE")}));
        dxfNoise(lines);
        dxfPlace(lines, place(), 0);
        return;
    }
    if (chance(m_textPercent)) {
        dxfText(lines);
        return;
    }
    const int kind = below(100);
    if (kind < 30) {
        add(lines, QStringLiteral("0"), QStringLiteral("LINE"));
        const int first = below(2);
        dxfPlace(lines, place(), first);
        dxfPlace(lines, place(), 1 - first);
    } else if (kind < 58) {
        dxfPolyline(lines);
    } else if (kind < 88) {
        dxfLwpolyline(lines);
    } else {
        dxfOther(lines);
    }
}

void FileGenerator::dxfOther(QStringList &lines)
{
    add(lines, QStringLiteral("0"),
        oneOf({QStringLiteral("ARC"), QStringLiteral("MTEXT"), QStringLiteral("SPLINE"), QStringLiteral("HATCH"),
               QStringLiteral("ATTRIB"), QStringLiteral("SOLID"), QStringLiteral("text"), QStringLiteral("VERTEX")}));
    add(lines, QStringLiteral("1"), def());
    dxfPlace(lines, place(), 0);
}

void FileGenerator::dxfNoise(QStringList &lines)
{
    if (chance(50))
        add(lines, QStringLiteral("8"), oneOf({QStringLiteral("Слой"), QString(), QStringLiteral("TEXT")}));
    if (chance(20))
        add(lines, QStringLiteral("  62"), QStringLiteral("     7"));
}

void FileGenerator::dxfPlace(QStringList &lines, const Place &at, int code)
{
    const QString before = chance(80) ? QString() : QStringLiteral(" ");
    add(lines, before + QString::number(10 + code), number(at.first) + before);
    add(lines, before + QString::number(20 + code), before + number(at.second));
    if (chance(40))
        add(lines, QString::number(30 + code), QStringLiteral("0.0"));
}

void FileGenerator::dxfText(QStringList &lines)
{
    const QStringList escapes{QStringLiteral("%%c"),   QStringLiteral("%%d"),   QStringLiteral("%%p"),
                              QStringLiteral("%%D"),   QStringLiteral("%%123"), QStringLiteral("%%1234"),
                              QStringLiteral("%%300"), QStringLiteral("%%177"), QStringLiteral("%%010"),
                              QStringLiteral("%%000"), QStringLiteral("%%255"), QStringLiteral("%%037%%037c"),
                              QStringLiteral("%%u"),   QStringLiteral("%%%c"),  QStringLiteral("%%12")};
    QString text = def();
    if (chance(15))
        text.insert(text.size() / 2, oneOf(escapes));
    if (chance(4))
        text += QStringLiteral("%%010");
    add(lines, QStringLiteral("0"), QStringLiteral("TEXT"));
    const Place at = placeOfItsOwn();
    const bool aligned = chance(30);
    if (chance(50))
        add(lines, QStringLiteral("1"), text);
    dxfPlace(lines, aligned ? freshPlace() : at, 0);
    if (aligned || chance(10)) {
        const QString code = oneOf({QStringLiteral("72"), QStringLiteral("73")});
        const QString none = oneOf({QStringLiteral("0"), QStringLiteral("abc")});
        add(lines, code, aligned ? QString::number(1 + below(3)) : none);
        dxfPlace(lines, at, 1);
    }
    if (lines[lines.lastIndexOf(QStringLiteral("TEXT")) + 1] != QLatin1String("1"))
        add(lines, QStringLiteral("1"), text);
    if (chance(4))
        add(lines, QStringLiteral("1"), def());
}

// The outline of a parcel: mostly a few vertices, now and then closed by its own first vertex.
QVector<FileGenerator::Place> FileGenerator::outline()
{
    QVector<Place> places;
    for (int size = 2 + below(6); size > 0; --size)
        places.append(place());
    if (chance(30))
        places.append(places.first());
    if (chance(10)) {
        places.append(places.first());
        places.last().first += 0.01;
    }
    return places;
}

void FileGenerator::dxfPolyline(QStringList &lines)
{
    add(lines, QStringLiteral("0"), QStringLiteral("POLYLINE"));
    dxfNoise(lines);
    if (chance(60))
        dxfPlace(lines, {0, 0}, 0);
    const QStringList flags{QStringLiteral("1"), QStringLiteral("1"),   QStringLiteral("0"), QStringLiteral("129"),
                            QStringLiteral("9"), QStringLiteral(" 1 "), QStringLiteral("01")};
    if (chance(70))
        add(lines, QStringLiteral("70"), oneOf(flags));
    for (const Place &at : outline()) {
        add(lines, QStringLiteral("0"), QStringLiteral("VERTEX"));
        dxfNoise(lines);
        dxfPlace(lines, at, 0);
        if (chance(5))
            add(lines, QStringLiteral("70"), oneOf(flags));
        if (chance(10))
            add(lines, QStringLiteral("42"), QStringLiteral("0.5"));
    }
    if (m_size > 20 || !chance(1))
        add(lines, QStringLiteral("0"), QStringLiteral("SEQEND"));
    dxfNoise(lines);
}

void FileGenerator::dxfLwpolyline(QStringList &lines)
{
    const QVector<Place> places = outline();
    add(lines, QStringLiteral("0"), QStringLiteral("LWPOLYLINE"));
    dxfNoise(lines);
    const bool flagFirst = chance(30);
    const QString flag = oneOf({QStringLiteral("1"), QStringLiteral("0"), QStringLiteral("129"), QStringLiteral("128"),
                                QStringLiteral("-1"), QStringLiteral("abc"), QStringLiteral("1.0")});
    if (flagFirst)
        add(lines, QStringLiteral("70"), flag);
    add(lines, QStringLiteral("90"), count(places.size()));
    if (!flagFirst && chance(80))
        add(lines, QStringLiteral("70"), flag);
    for (const Place &at : places) {
        dxfPlace(lines, at, 0);
        if (chance(5))
            add(lines, QStringLiteral("42"), QStringLiteral("0.5"));
        if (chance(1))
            add(lines, QStringLiteral("70"), QStringLiteral("1"));
    }
}

void FileGenerator::spoilPairs(QStringList &lines)
{
    const QStringList codes{
        QStringLiteral("0"), QStringLiteral("10"), QStringLiteral("20"),  QStringLiteral("70"), QStringLiteral("90"),
        QStringLiteral("1"), QStringLiteral("72"), QStringLiteral("010"), QStringLiteral("11"), QStringLiteral("21"),
        QString(),           QStringLiteral("2")};
    const QStringList values{QStringLiteral("TEXT"),    QStringLiteral("1"),      QStringLiteral("VERTEX"),
                             QStringLiteral("SECTION"), QStringLiteral("SEQEND"), QStringLiteral("ENDSEC"),
                             QStringLiteral("POINT"),   QStringLiteral("LINE"),   QStringLiteral("LWPOLYLINE"),
                             QStringLiteral("3"),       QStringLiteral("EOF"),    QString(),
                             QStringLiteral("ENTITIES")};
    for (int slips = 1 + below(2); slips > 0 && lines.size() > 8; --slips) {
        // The head is spared more often than not: behind a wrong head nothing is read.
        const int from = chance(95) ? 2 : 0;
        const int at = 2 * (from + below(lines.size() / 2 - from));
        switch (below(12)) {
        case 0:
            lines.erase(lines.begin() + at, lines.begin() + at + 2);
            break;
        case 1:
            lines.insert(at, lines[at + 1]);
            lines.insert(at, lines[at + 1]);
            break;
        case 2:
            lines[at] = oneOf(codes);
            break;
        case 3:
            lines[at + 1] = oneOf(values);
            break;
        case 4:
            lines.insert(at, oneOf(values));
            lines.insert(at, oneOf(codes));
            break;
        case 5:
            lines.insert(at, QString());
            break;
        case 6:
            lines.removeAt(at + below(2));
            break;
        case 7:
            lines = lines.mid(0, at + below(2));
            break;
        case 8:
            lines[at + 1] = oddNumber();
            break;
        case 9:
            lines[at + 1].append(QStringLiteral("\u00a0"));
            break;
        case 10:
            // A point without a place that breaks off at the name of a text.
            for (const QString &text :
                 {QString(), QStringLiteral("TEXT"), QStringLiteral("0"), QStringLiteral("POINT"), QStringLiteral("0")})
                lines.insert(at, text);
            break;
        default:
            lines.insert(at, QStringLiteral("TEXT"));
            lines.insert(at, QStringLiteral("0"));
        }
    }
}
