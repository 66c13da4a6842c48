// A MIF file is a text file of geometry; the MID file of the same name holds one record of attributes an object:
//
//     VERSION 300            three compulsory lines; DELIMITER is that of the MID file
//     CHARSET "WindowsCyrillic"
//     DELIMITER ","
//     ...                    coordinate system, names of columns
//     DATA                   from here on an object a keyword: POINT x y, LINE x1 y1 x2 y2,
//     REGION 1               PLINE n, PLINE MULTIPLE k, REGION r and those that are not imported;
//     4                      a ring or section is its number of vertices
//     10.5 20.25             and a line for each vertex; other lines (PEN, BRUSH ...) are passed over
//
// The functions stand in the order in which the data travels: line, header, record, vertex, object, pass.

#include "mapimport_mif.h"

#include "mapimport_status.h"

#include <QDir>
#include <QTextCodec>
#include <QVarLengthArray>

namespace {

bool failAtLine(const QString &text, int number)
{
    showStatus(text.arg(number));
    return false;
}

} // namespace

MifImport::MifImport()
    : objectKeywords{QStringLiteral("NONE"),    QStringLiteral("POINT"),      QStringLiteral("LINE"),
                     QStringLiteral("PLINE"),   QStringLiteral("REGION"),     QStringLiteral("ARC"),
                     QStringLiteral("TEXT"),    QStringLiteral("RECT"),       QStringLiteral("ROUNDRECT"),
                     QStringLiteral("ELLIPSE"), QStringLiteral("MULTIPOINT"), QStringLiteral("COLLECTION")},
      delimiter(QLatin1Char(',')),
      tokenSeparator(QLatin1Char(' '))
{
}

bool MifImport::readTokenizeMifLine(bool tokenize)
{
    line = trimmedLine(stream.readLineView());
    ++lineNum;
    if (tokenize)
        tokens.split(line);
    return !line.isEmpty();
}

bool MifImport::checkHeaderLine(const QString &keyword)
{
    readTokenizeMifLine(true);
    return tokens.size() == 2 && tokens[0].toString().toUpper() == keyword;
}

bool MifImport::checkMifFile()
{
    if (!checkHeaderLine(QStringLiteral("VERSION")) || !checkHeaderLine(QStringLiteral("CHARSET")) ||
        !checkHeaderLine(QStringLiteral("DELIMITER")))
        return failWithFileName(QStringLiteral("Ошибка. Файл %1 не соответствует формату MIF"));
    QString quoted = tokens[1].toString();
    quoted.remove(QLatin1Char('"')).remove(QLatin1Char(' '));
    delimiter = quoted.isEmpty() ? QChar() : quoted.at(0);
    return true;
}

// Only the last character changes, so that PLAN.MIF goes with PLAN.MId.
bool MifImport::openMidFile()
{
    QString name = file.fileName();
    name.chop(1);
    midFile.setFileName(name + QLatin1Char('d'));
    if (!openText(midFile)) {
        showStatus(QStringLiteral("Ошибка открытия MID файла %1").arg(QDir::toNativeSeparators(midFile.fileName())));
        return false;
    }
    midStream.setDevice(&midFile, codec);
    midLineNo = 0;
    return true;
}

bool MifImport::readMidLine()
{
    midLine = trimmedLine(midStream.readLineView());
    ++midLineNo;
    return !midLine.isEmpty();
}

// Consumes one record; a null def skips it. Without a MID file every record is there and names nothing.
bool MifImport::readMidDef(QString *def)
{
    if (!midFile.isOpen())
        return true;
    if (!readMidLine())
        return false;
    if (def != nullptr)
        *def = extractDef(midLine);
    return true;
}

// The first field; null, not merely empty, when it holds nothing: the result writes the two differently.
QString MifImport::extractDef(QStringView record) const
{
    QVarLengthArray<QChar, 64> def;
    bool skipping = true;
    bool quoted = false;
    for (const QChar c : record) {
        skipping = skipping && c == QLatin1Char(' ');
        if (skipping)
            continue;
        if (c == QLatin1Char('"')) {
            if (quoted)
                break;
            quoted = true;
            skipping = true;
        } else if (c == delimiter && !quoted) {
            break;
        } else {
            def.append(c);
        }
    }
    while (!def.isEmpty() && def.last() == QLatin1Char(' '))
        def.removeLast();
    return def.isEmpty() ? QString() : QString(def.constData(), def.size());
}

// The word at i, if there is one and it is a number.
bool MifImport::hasToken(int i, double &number) const
{
    bool ok = false;
    number = toDouble(tokens[i], ok);
    return ok;
}

bool MifImport::hasToken(int i, int &number) const
{
    bool ok = false;
    number = toInt(tokens[i], ok);
    return ok;
}

bool MifImport::readPoint()
{
    double x = 0;
    double y = 0;
    if (!hasToken(1, x) || !hasToken(2, y))
        return false;
    points.append(DefPoint{QString(), x, y});
    return true;
}

bool MifImport::readLine()
{
    double x1 = 0;
    double y1 = 0;
    double x2 = 0;
    double y2 = 0;
    if (!hasToken(1, x1) || !hasToken(2, y1) || !hasToken(3, x2) || !hasToken(4, y2))
        return false;
    appendEmptyPolygon();
    appendEmptyContour();
    appendVert(x1, y1, false);
    appendVert(x2, y2, false);
    return true;
}

bool MifImport::readVert(bool closing)
{
    double x = 0;
    double y = 0;
    readTokenizeMifLine(true);
    if (tokens.size() != 2 || !hasToken(0, x) || !hasToken(1, y))
        return false;
    appendVert(x, y, closing);
    return true;
}

// One section or ring of known length into a contour of its own.
bool MifImport::readSub(int count, bool closeLast)
{
    appendEmptyContour();
    reserveVerts(count);
    for (; count > 0; --count) {
        if (stream.atEnd() || !readVert(closeLast && count == 1))
            return false;
    }
    return true;
}

// One section or ring that begins with a line for its length.
bool MifImport::readCountedSub(int minCount, bool closeLast)
{
    int count = 0;
    bool ok = false;
    readTokenizeMifLine(false);
    count = toInt(line, ok);
    return ok && count >= minCount && readSub(count, closeLast);
}

bool MifImport::readPline()
{
    int count = 0;
    appendEmptyPolygon();
    return hasToken(1, count) && count >= 2 && readSub(count, false);
}

bool MifImport::readPlineMultiple()
{
    int count = 0;
    appendEmptyPolygon();
    if (!hasToken(2, count) || count < 2)
        return false;
    for (; count > 0; --count) {
        if (stream.atEnd() || !readCountedSub(2, false))
            return false;
    }
    return true;
}

// A region without rings is an object all the same.
bool MifImport::readRegion()
{
    int count = 0;
    appendEmptyPolygon();
    if (!hasToken(1, count) || count < 0)
        return false;
    for (; count > 0; --count) {
        if (stream.atEnd() || !readCountedSub(3, true))
            return false;
    }
    return true;
}

bool MifImport::loadPoint()
{
    if (!readPoint())
        return failAtLine(QStringLiteral("Ошибка чтения координат точки из строки: %1"), lineNum);
    if (!readMidDef(&points.last().def))
        return failAtLine(QStringLiteral("Ошибка чтения обозначения точки из строки: %1"), midLineNo);
    return true;
}

bool MifImport::loadLine()
{
    if (!readLine())
        return failAtLine(QStringLiteral("Ошибка чтения линии из строки: %1"), lineNum);
    return loadObjectDef();
}

bool MifImport::loadPline()
{
    const bool multiple = tokens[1].toString().toUpper() == QLatin1String("MULTIPLE");
    if (!(multiple ? readPlineMultiple() : readPline()))
        return failAtLine(QStringLiteral("Ошибка чтения полилинии из строки: %1"), lineNum);
    return loadObjectDef();
}

bool MifImport::loadRegion()
{
    if (!readRegion())
        return failAtLine(QStringLiteral("Ошибка чтения области из строки: %1"), lineNum);
    return loadObjectDef();
}

bool MifImport::loadObjectDef()
{
    QString def;
    if (!readMidDef(&def))
        return failAtLine(QStringLiteral("Ошибка чтения обозначения объекта из строки: %1"), midLineNo);
    setLastPolygonDef(def);
    return true;
}

bool MifImport::skipRecord()
{
    if (!readMidDef(nullptr))
        return failAtLine(QStringLiteral("Ошибка чтения данных объекта из строки: %1"), midLineNo);
    return true;
}

void MifImport::skipHeader()
{
    while (!stream.atEnd()) {
        readTokenizeMifLine(false);
        if (line.compare(QLatin1String("DATA"), Qt::CaseInsensitive) == 0)
            return;
    }
}

// Every object takes a record, also those that this pass has no reader for; other lines take none.
bool MifImport::readData(const Readers &readers)
{
    while (!stream.atEnd()) {
        // Most lines are the vertices of objects that the pass has no reader for.
        if (!readTokenizeMifLine(false) || !line[0].isLetter())
            continue;
        tokens.split(line);
        toUpper(tokens[0], keyword);
        if (!objectKeywords.contains(keyword))
            continue;
        if (keyword == QLatin1String("COLLECTION")) {
            // What stands before a collection is worth having, so the pass ends well.
            failAtLine(QStringLiteral("Ошибка в стоке %1. Коллекции в MIF файлах не поддерживаются."), lineNum); // sic
            return true;
        }
        const Reader read = readers.value(keyword, &MifImport::skipRecord);
        if (!(this->*read)())
            return false;
    }
    return true;
}

bool MifImport::loadPass(bool searchDefs, const Readers &readers)
{
    if (!checkMifFile() || (searchDefs && !openMidFile()))
        return false;
    skipHeader();
    const bool ok = readData(readers);
    midFile.close();
    return ok;
}

bool MifImport::loadPoints()
{
    return loadPass(searchPointDefs, {{QStringLiteral("POINT"), &MifImport::loadPoint}});
}

bool MifImport::loadPolygons()
{
    return loadPass(searchObjectDefs, {{QStringLiteral("LINE"), &MifImport::loadLine},
                                       {QStringLiteral("PLINE"), &MifImport::loadPline},
                                       {QStringLiteral("REGION"), &MifImport::loadRegion}});
}
