#include "filegenerator.h"

void FileGenerator::addMif(GeneratedRun &run, const QString &name)
{
    m_delimiter = oneOf({QStringLiteral(","), QStringLiteral(","), QStringLiteral(";"), QStringLiteral("|")});
    m_taken.clear();
    QStringList records;
    QStringList lines = mif(records);
    if (chance(m_slipPercent))
        spoilLines(lines, chance(15) ? 0 : 4);
    else if (chance(m_slipPercent))
        spoilLines(lines, lines.size() / 2);
    if (chance(m_slipPercent) && chance(30))
        spoilLines(records, 0);
    if (chance(m_slipPercent) && chance(15) && !records.isEmpty())
        records.removeLast();
    if (chance(10))
        records.append(record());
    if (chance(15))
        records.append(QString());

    if (chance(5) && lines.size() > 4) {
        lines.insert(3, QStringLiteral("x"));
        stretch(lines, 3, 4 + below(lines.size() - 4));
    }
    run.files.append({name, encoded(lines)});
    if (!chance(2))
        run.files.append({name.left(name.size() - 1) + QLatin1Char('d'), encoded(records)});
}

QStringList FileGenerator::mifHeader()
{
    const QStringList versions{QStringLiteral("Version 300"), QStringLiteral("VERSION  650"),
                               QStringLiteral("\tversion 1")};
    const QStringList charsets{QStringLiteral("Charset \"WindowsCyrillic\""), QStringLiteral("CHARSET Neutral")};
    QString delimiter = QStringLiteral("Delimiter \"%1\"").arg(m_delimiter);
    if (chance(5))
        delimiter = oneOf({QStringLiteral("Delimiter ;"), QStringLiteral("DELIMITER \"\""),
                           QStringLiteral("delimiter \";,\""), QStringLiteral("Delimiter \"\t\""),
                           QStringLiteral("Delimiter \"\"\",\""), QStringLiteral("Delimiter а")});
    QStringList lines{oneOf(versions), oneOf(charsets), delimiter};
    if (chance(70))
        lines.append(QStringLiteral("CoordSys NonEarth Units \"m\" Bounds (0, 0) (1000, 1000)"));
    if (chance(70))
        lines += QStringList{QStringLiteral("Columns 2"), QStringLiteral("  Number Char(20)"),
                             QStringLiteral("  Data Char(5)")};
    if (chance(5))
        lines.append(QStringLiteral("Line 1 2 3 4"));
    for (int pads = chance(8) ? 1 + below(3) : 0; pads > 0; --pads)
        lines.append(padding());
    lines.append(oneOf({QStringLiteral("Data"), QStringLiteral("DATA"), QStringLiteral("  data ")}));
    if (chance(30))
        lines.append(QString());
    return lines;
}

QStringList FileGenerator::mif(QStringList &records)
{
    QStringList lines = mifHeader();
    for (int i = 0; i < m_size; ++i) {
        mifObject(lines, records);
        records.append(record());
        if (chance(30))
            lines.append(oneOf({QStringLiteral("    Pen (1,2,0)"), QStringLiteral("    Brush (1,0,16777215)"),
                                QStringLiteral("    Symbol (35,0,12)"), QStringLiteral("    Smooth"),
                                QStringLiteral("    Center 1 2"), QString(), QStringLiteral("Unknown 1 2")}));
    }
    return lines;
}

QString FileGenerator::mifVertex(const Place &at, const QString &before)
{
    const QString gap = chance(95) ? QStringLiteral(" ") : QStringLiteral(" \t ");
    const QString x = number(at.first);
    return before + x + gap + number(at.second);
}

void FileGenerator::mifRing(QStringList &lines, int size, bool closed)
{
    const QString before = oneOf({QString(), QStringLiteral("  ")});
    lines.append(before + count(size));
    const Place first = place();
    lines.append(mifVertex(first, QString()));
    for (int i = 1; i < size - 1; ++i)
        lines.append(mifVertex(place(), QString()));
    lines.append(mifVertex(closed ? first : place(), QString()));
}

void FileGenerator::mifObject(QStringList &lines, QStringList &records)
{
    const int kind = below(100);
    if (kind < 35) {
        const QString keyword = oneOf({QStringLiteral("Point "), QStringLiteral("POINT ")});
        lines.append(mifVertex(placeOfItsOwn(), keyword));
    } else if (kind < 45) {
        lines.append(mifVertex(place(), QStringLiteral("Line ")));
        lines.last() += mifVertex(place(), QStringLiteral(" "));
    } else if (kind < 56) {
        const int at = lines.size();
        mifRing(lines, 2 + below(6), chance(30));
        lines[at] = oneOf({QStringLiteral("Pline "), QStringLiteral("pline  ")}) + lines[at];
    } else if (kind < 64) {
        const int sections = chance(6) ? 1 : 2 + below(3);
        lines.append(QStringLiteral("Pline Multiple ") + count(sections));
        for (int i = 0; i < sections; ++i)
            mifRing(lines, 2 + below(4), false);
    } else if (kind < 88) {
        const int rings = chance(5) ? 0 : 1 + below(3);
        const QString keyword = oneOf({QStringLiteral("Region "), QStringLiteral("REGION  ")});
        lines.append(keyword + count(rings));
        for (int i = 0; i < rings; ++i)
            mifRing(lines, 3 + below(5), chance(90));
    } else if (below(m_size > 20 ? 2000 : 60) == 0) {
        lines.append(QStringLiteral("Collection 2"));
    } else {
        mifSkipped(lines);
    }
    if (below(300) == 0)
        records.append(record());
}

void FileGenerator::mifSkipped(QStringList &lines)
{
    switch (below(7)) {
    case 0:
        lines.append(QStringLiteral("None"));
        return;
    case 1:
        lines +=
            QStringList{mifVertex(place(), QStringLiteral("Arc ")) + QStringLiteral(" 3 4"), QStringLiteral("  0 90")};
        return;
    case 2:
        lines += QStringList{QStringLiteral("Text"), QStringLiteral("    \"%1\"").arg(def()),
                             mifVertex(place(), QStringLiteral("    ")) + QStringLiteral(" 3 4")};
        return;
    case 3:
        lines.append(QStringLiteral("Rect 1 2 3 4"));
        return;
    case 4:
        lines += QStringList{QStringLiteral("RoundRect 1 2 3 4"), QStringLiteral("  0.5")};
        return;
    case 5:
        lines.append(QStringLiteral("ELLIPSE 1 2 3 4"));
        return;
    default:
        lines +=
            QStringList{QStringLiteral("MultiPoint 2"), mifVertex(place(), QString()), mifVertex(place(), QString())};
    }
}

QString FileGenerator::record()
{
    const QString name = def();
    const QString rest = m_delimiter + QStringLiteral("\"pole\"") + m_delimiter + QStringLiteral("12");
    switch (below(14)) {
    case 0:
        return QStringLiteral("  \"  %1  \" ").arg(name) + rest;
    case 1:
        return QStringLiteral("\"%1%2b\"").arg(name, m_delimiter) + rest;
    case 2:
        return name + QStringLiteral("\"cd\"") + rest;
    case 3:
        return QStringLiteral("\"%1").arg(name) + rest;
    case 4:
        return QStringLiteral("\"\"") + rest;
    case 5:
        return name + QStringLiteral(" \t") + rest;
    case 6:
        return m_delimiter + m_delimiter;
    case 7:
        return QStringLiteral("\t\"") + name + QStringLiteral("\"\"x\"") + rest;
    case 8:
    case 9:
        return name + rest;
    default:
        return QLatin1Char('"') + name + QLatin1Char('"') + rest;
    }
}

void FileGenerator::spoilLines(QStringList &lines, int from)
{
    for (int slips = 1 + below(2); slips > 0 && lines.size() > from; --slips) {
        const int at = from + below(lines.size() - from);
        const int other = from + below(lines.size() - from);
        QStringList words = lines[at].split(QLatin1Char(' '));
        switch (below(12)) {
        case 0:
            lines.removeAt(at);
            break;
        case 1:
            lines.insert(at, lines[at]);
            break;
        case 2:
            lines.swapItemsAt(at, other);
            break;
        case 3:
            lines.insert(at, QString());
            break;
        case 4:
            lines = lines.mid(0, at);
            break;
        case 5:
            words[below(words.size())] = oddNumber();
            lines[at] = words.join(QLatin1Char(' '));
            break;
        case 6:
            lines[at] +=
                oneOf({QStringLiteral(" 1"), QStringLiteral(" x"), QStringLiteral(" \t"), QStringLiteral(" \"")});
            break;
        case 7:
            lines[at] = lines[at].toLower();
            break;
        case 8:
            words.removeAt(below(words.size()));
            lines[at] = words.join(QLatin1Char(' '));
            break;
        case 9:
            lines[at].replace(QLatin1Char(' '),
                              QChar(oneOf({QStringLiteral("\t"), QStringLiteral("\u00a0"), QStringLiteral("\u2003"),
                                           QStringLiteral("\v"), QStringLiteral("\r")})[0]));
            break;
        case 10:
            lines[at] = lines[at].toUpper();
            break;
        default:
            lines[at] =
                oneOf({QStringLiteral("COLLECTION 1"), QStringLiteral("POINT 5"), QStringLiteral("LINE 1 2 3"),
                       QStringLiteral("PLINE"), QStringLiteral("REGION"), QStringLiteral("DATA"),
                       QStringLiteral("PLINE MULTIPLE"), QStringLiteral("REGION -1"), QStringLiteral("point 1 2 3"),
                       QStringLiteral("lıne 1 2 3 4"), QStringLiteral("poınt 1 2"), QStringLiteral("ellipſe"),
                       QStringLiteral("rect"), QStringLiteral("REGION 0")});
        }
    }
}
