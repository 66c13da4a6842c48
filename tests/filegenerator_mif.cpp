#include "filegenerator.h"

void FileGenerator::addMif(GeneratedRun &run, const QString &name)
{
    m_delimiter = oneOf(",/,/;/|");
    m_usedPlaces.clear();
    QStringList records;
    QStringList lines = mif(records);
    if (chance(m_errorPercent))
        corruptLines(lines, chance(15) ? 0 : 4);
    else if (chance(m_errorPercent))
        corruptLines(lines, lines.size() / 2);
    if (chance(m_errorPercent) && chance(30))
        corruptLines(records, 0);
    if (chance(m_errorPercent) && chance(15) && !records.isEmpty())
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
        run.files.append({name.chopped(1) + QLatin1Char('d'), encoded(records)});
}

QStringList FileGenerator::mif(QStringList &records)
{
    QStringList lines = mifHeader();
    for (int i = 0; i < m_size; ++i) {
        mifObject(lines, records);
        records.append(record());
        if (chance(30))
            lines.append(
                oneOf("    Pen (1,2,0)/    Brush (1,0,16777215)/    Symbol (35,0,12)/    Smooth/    Center 1 2/"
                      "/Unknown 1 2"));
    }
    return lines;
}

QStringList FileGenerator::mifHeader()
{
    QString delimiter = QStringLiteral("Delimiter \"%1\"").arg(m_delimiter);
    if (chance(5))
        delimiter =
            oneOf("Delimiter ;/DELIMITER \"\"/delimiter \";,\"/Delimiter \"\t\"/Delimiter \"\"\",\"/Delimiter а");
    QStringList lines{oneOf("Version 300/VERSION  650/\tversion 1"),
                      oneOf("Charset \"WindowsCyrillic\"/CHARSET Neutral"), delimiter};
    if (chance(70))
        lines.append(QStringLiteral("CoordSys NonEarth Units \"m\" Bounds (0, 0) (1000, 1000)"));
    if (chance(70))
        lines += QStringList{QStringLiteral("Columns 1"), QStringLiteral("  Number Char(20)")};
    if (chance(5))
        lines.append(QStringLiteral("Line 1 2 3 4"));
    for (int pads = chance(8) ? 1 + below(3) : 0; pads > 0; --pads)
        lines.append(padding());
    lines.append(oneOf("Data/DATA/  data "));
    if (chance(30))
        lines.append(QString());
    return lines;
}

void FileGenerator::mifObject(QStringList &lines, QStringList &records)
{
    const int kind = below(100);
    if (kind < 35) {
        lines.append(oneOf("Point /POINT "));
        lines.last() += mifVertex(unusedPlace());
    } else if (kind < 45) {
        lines.append(QStringLiteral("Line ") + mifVertex(place()));
        lines.last() += QLatin1Char(' ') + mifVertex(place());
    } else if (kind < 56) {
        const int at = lines.size();
        mifRings(lines, 1, 2, 30);
        lines[at].prepend(oneOf("Pline /pline  "));
    } else if (kind < 64) {
        const int sections = chance(6) ? 1 : 2 + below(3);
        lines.append(QStringLiteral("Pline Multiple ") + count(sections));
        mifRings(lines, sections, 2, 0);
    } else if (kind < 88) {
        const int rings = chance(5) ? 0 : 1 + below(3);
        lines.append(oneOf("Region /REGION  "));
        lines.last() += count(rings);
        mifRings(lines, rings, 3, 90);
    } else if (below(m_size > 20 ? 2000 : 60) == 0) {
        lines.append(QStringLiteral("Collection 2"));
    } else {
        mifSkipped(lines);
    }
    if (below(300) == 0)
        records.append(record());
}

void FileGenerator::mifRings(QStringList &lines, int count, int minSize, int closedPercent)
{
    for (; count > 0; --count) {
        const int size = minSize + below(5);
        lines.append(oneOf("/  "));
        lines.last() += this->count(size);
        const Place first = place();
        lines.append(mifVertex(first));
        for (int i = 2; i < size; ++i)
            lines.append(mifVertex(place()));
        lines.append(mifVertex(chance(closedPercent) ? first : place()));
    }
}

QString FileGenerator::mifVertex(const Place &at)
{
    QString text = number(at.first);
    text += chance(95) ? QStringLiteral(" ") : QStringLiteral(" \t ");
    text += number(at.second);
    return text;
}

void FileGenerator::mifSkipped(QStringList &lines)
{
    QString text = oneOf("None/Arc @ 3 4\n  0 90/Text\n    \"#\"\n    @ 3 4/Rect 1 2 3 4/RoundRect 1 2 3 4\n  0.5/"
                         "ELLIPSE 1 2 3 4/MultiPoint 2\n@\n@");
    text.replace(QLatin1Char('#'), def());
    while (text.contains(QLatin1Char('@')))
        text.replace(text.indexOf(QLatin1Char('@')), 1, mifVertex(place()));
    lines += text.split(QLatin1Char('\n'));
}

QString FileGenerator::record()
{
    QString text =
        oneOf("\"#\",R/\"#\",R/\"#\",R/\"#\",R/#,R/#,R/  \"  #  \" ,R/\"#,2b\",R/#\"cd\",R/\"#,R/\"\",R/# \t,R/,,/"
              "\t\"#\"\"x\",R");
    text.replace(QLatin1Char('R'), QStringLiteral("\"pole\",12"));
    return text.replace(QLatin1Char(','), m_delimiter).replace(QLatin1Char('#'), def());
}

void FileGenerator::corruptLines(QStringList &lines, int from)
{
    for (int errors = 1 + below(2); errors > 0 && lines.size() > from; --errors) {
        const int at = from + below(lines.size() - from);
        QStringList words = lines[at].split(QLatin1Char(' '));
        const int word = below(words.size());
        switch (below(12)) {
        case 0:
            lines.removeAt(at);
            break;
        case 1:
            lines.insert(at, lines[at]);
            break;
        case 2:
            lines.swapItemsAt(at, from + below(lines.size() - from));
            break;
        case 3:
            lines.insert(at, QString());
            break;
        case 4:
            lines = lines.mid(0, at);
            break;
        case 5:
            words[word] = unusualNumber();
            lines[at] = words.join(QLatin1Char(' '));
            break;
        case 6:
            lines[at] += oneOf(" 1/ x/ \t/ \"");
            break;
        case 7:
            lines[at] = lines[at].toLower();
            break;
        case 8:
            words.removeAt(word);
            lines[at] = words.join(QLatin1Char(' '));
            break;
        case 9:
            lines[at].replace(QLatin1Char(' '), oneOf("\t/\u00a0/\u2003/\v/\r"));
            break;
        case 10:
            lines[at] = lines[at].toUpper();
            break;
        default:
            lines[at] = oneOf("COLLECTION 1/POINT 5/LINE 1 2 3/PLINE/REGION/DATA/PLINE MULTIPLE/REGION -1/point 1 2 3/"
                              "lıne 1 2 3 4/poınt 1 2/ellipſe/rect/REGION 0");
        }
    }
}
