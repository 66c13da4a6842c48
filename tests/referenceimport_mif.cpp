#include "referenceimport.h"

bool ReferenceMif::load(bool useMid, bool points)
{
    m_midFile.close();
    if (!readHeader() || (useMid && !openMid()))
        return false;
    while (!m_stream.atEnd()) {
        if (readMifLine() && m_line.compare(QLatin1String("DATA"), Qt::CaseInsensitive) == 0)
            break;
    }
    return scan(points);
}

bool ReferenceMif::readHeader()
{
    for (const char *const word : {"VERSION", "CHARSET", "DELIMITER"}) {
        readMifLine();
        if (m_tokens.size() != 2 || m_tokens[0].toUpper() != QLatin1String(word))
            return failWithFileName(QStringLiteral("Ошибка. Файл %1 не соответствует формату MIF"), m_file);
    }
    const QString value = m_tokens[1].remove(QLatin1Char('"'));
    m_delimiter = value.isEmpty() ? QChar() : value[0];
    return true;
}

bool ReferenceMif::openMid()
{
    m_midFile.setFileName(m_file.fileName().chopped(1) + QLatin1Char('d'));
    if (!m_midFile.open(QIODevice::ReadOnly | QIODevice::Text))
        return failWithFileName(QStringLiteral("Ошибка открытия MID файла %1"), m_midFile);
    m_midStream.setDevice(&m_midFile);
    m_midStream.setCodec(m_codec);
    m_midLineNum = 0;
    return true;
}

bool ReferenceMif::scan(bool points)
{
    static const QStringList objects{QStringLiteral("LINE"), QStringLiteral("PLINE"), QStringLiteral("REGION")};
    static const QStringList others =
        QStringLiteral("NONE ARC TEXT RECT ROUNDRECT ELLIPSE MULTIPOINT").split(QLatin1Char(' '));
    while (!m_stream.atEnd()) {
        readMifLine();
        const QString keyword = m_tokens[0].toUpper();
        const bool isPoint = keyword == QLatin1String("POINT");
        bool ok = true;
        QString unused;
        if (keyword == QLatin1String("COLLECTION")) {
            fail(QStringLiteral("Ошибка в стоке %1. Коллекции в MIF файлах не поддерживаются.").arg(m_lineNum)); // sic
            return true;
        }
        if (points && isPoint)
            ok = readPoint();
        else if (!points && objects.contains(keyword))
            ok = readObject(keyword);
        else if ((isPoint || objects.contains(keyword) || others.contains(keyword)) && !readMidDef(unused))
            ok = fail(QStringLiteral("Ошибка чтения данных объекта из строки: %1").arg(m_midLineNum));
        if (!ok)
            return false;
    }
    return true;
}

bool ReferenceMif::readMifLine()
{
    m_line = m_stream.readLine().simplified();
    m_tokens = m_line.split(QLatin1Char(' '));
    ++m_lineNum;
    return !m_line.isEmpty();
}

bool ReferenceMif::readMidDef(QString &def)
{
    if (!m_midFile.isOpen())
        return true;
    const QString record = m_midStream.readLine().trimmed();
    ++m_midLineNum;
    def = firstField(record);
    return !record.isEmpty();
}

QString ReferenceMif::firstField(const QString &record) const
{
    QString field;
    bool skipping = true;
    bool quoted = false;
    for (const QChar c : record) {
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
        field.append(c);
    }
    while (field.endsWith(QLatin1Char(' ')))
        field.chop(1);
    return field;
}

// Empty unless all of the tokens are numbers.
QVector<double> ReferenceMif::numbers(int first, int count) const
{
    QVector<double> values;
    for (int i = first; i < first + count; ++i) {
        bool ok = false;
        values.append(m_tokens.value(i).toDouble(&ok));
        if (!ok)
            return {};
    }
    return values;
}

bool ReferenceMif::readPoint()
{
    const QVector<double> at = numbers(1, 2);
    if (at.isEmpty())
        return fail(QStringLiteral("Ошибка чтения координат точки из строки: %1").arg(m_lineNum));
    m_out.points.append(DefPoint{QString(), at[0], at[1]});
    return readMidDef(m_out.points.last().def) ||
           fail(QStringLiteral("Ошибка чтения обозначения точки из строки: %1").arg(m_midLineNum));
}

bool ReferenceMif::readObject(const QString &keyword)
{
    if (keyword == QLatin1String("LINE") && !readLine())
        return fail(QStringLiteral("Ошибка чтения линии из строки: %1").arg(m_lineNum));
    if (keyword == QLatin1String("PLINE") && !readPline())
        return fail(QStringLiteral("Ошибка чтения полилинии из строки: %1").arg(m_lineNum));
    if (keyword == QLatin1String("REGION") && !readRegion())
        return fail(QStringLiteral("Ошибка чтения области из строки: %1").arg(m_lineNum));
    QString def;
    if (!readMidDef(def))
        return fail(QStringLiteral("Ошибка чтения обозначения объекта из строки: %1").arg(m_midLineNum));
    setLastPolygonDef(def);
    return true;
}

bool ReferenceMif::readLine()
{
    const QVector<double> ends = numbers(1, 4);
    if (ends.isEmpty())
        return false;
    beginObject();
    beginContour();
    appendVert(ends[0], ends[1]);
    appendVert(ends[2], ends[3]);
    return true;
}

bool ReferenceMif::readPline()
{
    const bool multiple = m_tokens.value(1).toUpper() == QLatin1String("MULTIPLE");
    const int count = m_tokens.value(multiple ? 2 : 1).toInt();
    beginObject();
    return count >= 2 && (multiple ? readSubs(count, 2, false) : readSub(count, false));
}

bool ReferenceMif::readRegion()
{
    bool ok = false;
    const int count = m_tokens.value(1).toInt(&ok);
    beginObject();
    return ok && count >= 0 && readSubs(count, 3, true);
}

bool ReferenceMif::readSubs(int count, int minVertices, bool closeLast)
{
    for (int i = 0; i < count; ++i) {
        if (m_stream.atEnd())
            return false;
        readMifLine();
        const int size = m_line.toInt();
        if (size < minVertices || !readSub(size, closeLast))
            return false;
    }
    return true;
}

bool ReferenceMif::readSub(int count, bool closeLast)
{
    beginContour();
    for (int i = 1; i <= count; ++i) {
        if (m_stream.atEnd())
            return false;
        readMifLine();
        const QVector<double> at = numbers(0, 2);
        if (m_tokens.size() != 2 || at.isEmpty())
            return false;
        appendVert(at[0], at[1], closeLast && i == count);
    }
    return true;
}
