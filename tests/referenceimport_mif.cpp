#include "referenceimport.h"

#include <QDir>

bool ReferenceMif::loadPoints()
{
    const bool ok = beginPass(m_options.searchPointDefs) && scan(true);
    m_midFile.close();
    return ok;
}

bool ReferenceMif::loadPolygons()
{
    const bool ok = beginPass(m_options.searchObjectDefs) && scan(false);
    m_midFile.close();
    return ok;
}

bool ReferenceMif::readMifLine(bool tokenize)
{
    m_line = m_stream.readLine().simplified();
    ++m_lineNum;
    if (tokenize)
        m_tokens = m_line.split(QLatin1Char(' '));
    return !m_line.isEmpty();
}

bool ReferenceMif::checkFile()
{
    for (const char *const word : {"VERSION", "CHARSET", "DELIMITER"}) {
        readMifLine(true);
        if (m_tokens.size() != 2 || m_tokens[0].toUpper() != QLatin1String(word))
            return fail(QStringLiteral("Ошибка. Файл %1 не соответствует формату MIF").arg(fileName()));
    }
    QString value = m_tokens[1];
    value.remove(QLatin1Char('"'));
    m_delimiter = value.isEmpty() ? QChar() : value[0];
    return true;
}

bool ReferenceMif::openMid()
{
    QString name = m_file.fileName();
    name.chop(1);
    m_midFile.setFileName(name + QLatin1Char('d'));
    if (!m_midFile.open(QIODevice::ReadOnly | QIODevice::Text)) {
        const QString native = QDir::toNativeSeparators(m_midFile.fileName());
        return fail(QStringLiteral("Ошибка открытия MID файла %1").arg(native));
    }
    m_midStream.setDevice(&m_midFile);
    m_midStream.setCodec(m_codec);
    m_midLineNum = 0;
    return true;
}

bool ReferenceMif::readMidLine()
{
    m_midLine = m_midStream.readLine().trimmed();
    ++m_midLineNum;
    return !m_midLine.isEmpty();
}

bool ReferenceMif::readMidDef(QString *def)
{
    if (!m_midFile.isOpen())
        return true;
    if (!readMidLine())
        return false;
    if (def != nullptr)
        *def = extractDef(m_midLine);
    return true;
}

QString ReferenceMif::extractDef(const QString &line) const
{
    QString def;
    bool skipping = true;
    bool quoted = false;
    for (const QChar c : line) {
        if (c != QLatin1Char(' '))
            skipping = false;
        if (skipping)
            continue;
        if (c == QLatin1Char('"')) {
            if (quoted)
                break;
            quoted = true;
            skipping = true;
            continue;
        }
        if (c == m_delimiter && !quoted)
            break;
        def.append(c);
    }
    while (def.endsWith(QLatin1Char(' ')))
        def.chop(1);
    return def;
}

bool ReferenceMif::beginPass(bool useMid)
{
    if (!checkFile() || (useMid && !openMid()))
        return false;
    while (!m_stream.atEnd()) {
        if (readMifLine(false) && m_line.compare(QLatin1String("DATA"), Qt::CaseInsensitive) == 0)
            break;
    }
    return true;
}

bool ReferenceMif::scan(bool points)
{
    static const QSet<QString> skipped{
        QStringLiteral("NONE"),      QStringLiteral("POINT"),   QStringLiteral("LINE"),       QStringLiteral("PLINE"),
        QStringLiteral("REGION"),    QStringLiteral("ARC"),     QStringLiteral("TEXT"),       QStringLiteral("RECT"),
        QStringLiteral("ROUNDRECT"), QStringLiteral("ELLIPSE"), QStringLiteral("MULTIPOINT"),
    };
    while (!m_stream.atEnd()) {
        if (!readMifLine(true))
            continue;
        const QString keyword = m_tokens[0].toUpper();
        bool ok = true;
        if (keyword == QLatin1String("COLLECTION")) {
            fail(QStringLiteral("Ошибка в стоке %1. Коллекции в MIF файлах не поддерживаются.").arg(m_lineNum)); // sic
            return true;
        }
        if (points && keyword == QLatin1String("POINT"))
            ok = readPointObject();
        else if (!points && (keyword == QLatin1String("LINE") || keyword == QLatin1String("PLINE") ||
                             keyword == QLatin1String("REGION")))
            ok = readPolygonObject(keyword);
        else if (skipped.contains(keyword))
            ok = skipRecord();
        if (!ok)
            return false;
    }
    return true;
}

bool ReferenceMif::skipRecord()
{
    if (readMidDef(nullptr))
        return true;
    return fail(QStringLiteral("Ошибка чтения данных объекта из строки: %1").arg(m_midLineNum));
}

bool ReferenceMif::readPointObject()
{
    if (!readPoint())
        return fail(QStringLiteral("Ошибка чтения координат точки из строки: %1").arg(m_lineNum));
    QString def;
    if (!readMidDef(&def))
        return fail(QStringLiteral("Ошибка чтения обозначения точки из строки: %1").arg(m_midLineNum));
    m_out.points.last().def = def;
    return true;
}

bool ReferenceMif::readPolygonObject(const QString &keyword)
{
    if (keyword == QLatin1String("LINE")) {
        if (!readLine())
            return fail(QStringLiteral("Ошибка чтения линии из строки: %1").arg(m_lineNum));
    } else if (keyword == QLatin1String("PLINE")) {
        const bool multiple = m_tokens.value(1).toUpper() == QLatin1String("MULTIPLE");
        if (!(multiple ? readPlineMultiple() : readPline()))
            return fail(QStringLiteral("Ошибка чтения полилинии из строки: %1").arg(m_lineNum));
    } else if (!readRegion()) {
        return fail(QStringLiteral("Ошибка чтения области из строки: %1").arg(m_lineNum));
    }
    QString def;
    if (!readMidDef(&def))
        return fail(QStringLiteral("Ошибка чтения обозначения объекта из строки: %1").arg(m_midLineNum));
    setLastPolygonDef(def);
    return true;
}

bool ReferenceMif::readPoint()
{
    bool okX = false;
    bool okY = false;
    DefPoint point;
    point.x = m_tokens.value(1).toDouble(&okX);
    point.y = m_tokens.value(2).toDouble(&okY);
    if (!okX || !okY)
        return false;
    m_out.points.append(point);
    return true;
}

bool ReferenceMif::readLine()
{
    double numbers[4] = {};
    for (int i = 0; i < 4; ++i) {
        bool ok = false;
        numbers[i] = m_tokens.value(i + 1).toDouble(&ok);
        if (!ok)
            return false;
    }
    appendEmptyPolygon();
    appendEmptyContour();
    appendVert(numbers[0], numbers[1], false);
    appendVert(numbers[2], numbers[3], false);
    return true;
}

bool ReferenceMif::readVert(bool closing)
{
    readMifLine(true);
    if (m_tokens.size() != 2)
        return false;
    bool okX = false;
    bool okY = false;
    const double x = m_tokens[0].toDouble(&okX);
    const double y = m_tokens[1].toDouble(&okY);
    if (!okX || !okY)
        return false;
    appendVert(x, y, closing);
    return true;
}

bool ReferenceMif::readSub(int count, bool closeLast)
{
    appendEmptyContour();
    bool ok = true;
    while (!m_stream.atEnd() && count > 0 && ok) {
        ok = readVert(closeLast && count == 1);
        if (ok)
            --count;
    }
    return ok && count == 0;
}

bool ReferenceMif::readPline()
{
    appendEmptyPolygon();
    bool ok = false;
    const int count = m_tokens.value(1).toInt(&ok);
    return ok && count >= 2 && readSub(count, false);
}

bool ReferenceMif::readPlineMultiple()
{
    appendEmptyPolygon();
    bool ok = false;
    int sections = m_tokens.value(2).toInt(&ok);
    if (!ok || sections < 2)
        return false;
    while (!m_stream.atEnd() && sections > 0) {
        readMifLine(false);
        const int count = m_line.toInt(&ok);
        if (!ok || count < 2 || !readSub(count, false))
            return false;
        --sections;
    }
    return sections == 0;
}

bool ReferenceMif::readRegion()
{
    appendEmptyPolygon();
    bool ok = false;
    int rings = m_tokens.value(1).toInt(&ok);
    while (rings > 0 && !m_stream.atEnd()) {
        if (!ok)
            return false;
        readMifLine(false);
        const int count = m_line.toInt(&ok);
        if (!ok || count < 3)
            return false;
        ok = readSub(count, true);
        --rings;
    }
    return ok && rings == 0;
}
