// A MIF file is a text file of geometry; the MID file of the same name holds one record of attributes per object:
//
//     VERSION 300            three compulsory lines; DELIMITER separates the fields of the MID file
//     CHARSET "WindowsCyrillic"
//     DELIMITER ","
//     ...                    coordinate system, column definitions
//     DATA                   then objects, each with a keyword line: POINT x y, LINE x1 y1 x2 y2,
//     REGION 1               PLINE n, PLINE MULTIPLE k, REGION r, and others that are not imported;
//     4                      a ring or section begins with its number of vertices,
//     10.5 20.25             then a line for each vertex; other lines (PEN, BRUSH ...) are ignored
//
// Functions are in data-flow order: line, header, record, vertex, object, pass.

#include "mapimport_mif.h"

#include <QDir>
#include <QTextCodec>
#include <QVarLengthArray>

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

// Only the last character of the name is replaced: PLAN.MIF needs PLAN.MId.
bool MifImport::openMidFile()
{
    QString name = file.fileName();
    name.chop(1);
    midFile.setFileName(name + QLatin1Char('d'));
    if (!openText(midFile))
        return fail(QStringLiteral("Ошибка открытия MID файла %1").arg(QDir::toNativeSeparators(midFile.fileName())));
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

// Consumes one record; a null def skips it. Without a MID file it succeeds and leaves def unchanged.
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

// Returns the first field. An empty field gives a null string: the result writes null and empty differently.
QString MifImport::extractDef(QStringView record) const
{
    QVarLengthArray<QChar, 64> def; // on the stack: an array on the heap makes the import 15 % slower
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

// False if token i is missing or not a number.
bool MifImport::toNumber(int i, double &number) const
{
    bool ok = false;
    number = toDouble(tokens[i], ok);
    return ok;
}

bool MifImport::toNumber(int i, int &number) const
{
    bool ok = false;
    number = toInt(tokens[i], ok);
    return ok;
}

bool MifImport::readPoint()
{
    double x = 0;
    double y = 0;
    if (!toNumber(1, x) || !toNumber(2, y))
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
    if (!toNumber(1, x1) || !toNumber(2, y1) || !toNumber(3, x2) || !toNumber(4, y2))
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
    if (tokens.size() != 2 || !toNumber(0, x) || !toNumber(1, y))
        return false;
    appendVert(x, y, closing);
    return true;
}

// Reads a section or ring of count vertices into a new contour.
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

// Reads a section or ring that begins with a line holding its number of vertices.
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
    return toNumber(1, count) && count >= 2 && readSub(count, false);
}

bool MifImport::readPlineMultiple()
{
    int count = 0;
    appendEmptyPolygon();
    if (!toNumber(2, count) || count < 2)
        return false;
    for (; count > 0; --count) {
        if (stream.atEnd() || !readCountedSub(2, false))
            return false;
    }
    return true;
}

// A region without rings is an object, too.
bool MifImport::readRegion()
{
    int count = 0;
    appendEmptyPolygon();
    if (!toNumber(1, count) || count < 0)
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
        return fail(QStringLiteral("Ошибка чтения координат точки из строки: %1").arg(lineNum));
    if (!readMidDef(&points.last().def))
        return fail(QStringLiteral("Ошибка чтения обозначения точки из строки: %1").arg(midLineNo));
    return true;
}

bool MifImport::loadLine()
{
    if (!readLine())
        return fail(QStringLiteral("Ошибка чтения линии из строки: %1").arg(lineNum));
    return loadObjectDef();
}

bool MifImport::loadPline()
{
    const bool multiple = tokens[1].toString().toUpper() == QLatin1String("MULTIPLE");
    if (!(multiple ? readPlineMultiple() : readPline()))
        return fail(QStringLiteral("Ошибка чтения полилинии из строки: %1").arg(lineNum));
    return loadObjectDef();
}

bool MifImport::loadRegion()
{
    if (!readRegion())
        return fail(QStringLiteral("Ошибка чтения области из строки: %1").arg(lineNum));
    return loadObjectDef();
}

bool MifImport::loadObjectDef()
{
    QString def;
    if (!readMidDef(&def))
        return fail(QStringLiteral("Ошибка чтения обозначения объекта из строки: %1").arg(midLineNo));
    setLastPolygonDef(def);
    return true;
}

bool MifImport::skipRecord()
{
    if (!readMidDef(nullptr))
        return fail(QStringLiteral("Ошибка чтения данных объекта из строки: %1").arg(midLineNo));
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

// Every object consumes a MID record, even if this pass does not read it; other lines consume none.
bool MifImport::readData(const Readers &readers)
{
    while (!stream.atEnd()) {
        // Fast path, which saves 10 % of the import: most lines are vertices of objects that this pass skips.
        if (!readTokenizeMifLine(false) || !line[0].isLetter())
            continue;
        tokens.split(line);
        toUpper(tokens[0], keyword);
        if (!objectKeywords.contains(keyword))
            continue;
        if (keyword == QLatin1String("COLLECTION")) {
            // The objects before a collection are kept, so the pass succeeds.
            fail(QStringLiteral("Ошибка в стоке %1. Коллекции в MIF файлах не поддерживаются.").arg(lineNum)); // sic
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
