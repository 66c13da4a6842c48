// A MIF file has a header and objects; its MID file has one record a line for each object:
//
//     VERSION 300                the import requires these three lines in this order
//     CHARSET "WindowsCyrillic"
//     DELIMITER ","
//     DATA                       ends the header
//     PLINE 2                    number of vertices; a line with x y for each follows
//     REGION 1                   number of rings; each has a line with its number of vertices, and then those
//
// Unlike the import, the scan continues after what stops the import.
// Functions are in data-flow order: line, header, ring, object, file, record.

#include "checkscan_reader.h"

#include <QHash>
#include <QRegularExpression>
#include <QVarLengthArray>

#include <cmath>

namespace {

class MifScan
{
public:
    MifScan(ScanReader &reader, const CheckOptions &options, FileFacts &facts)
        : m_reader(reader),
          m_codec(options.codec()),
          m_facts(facts)
    {
    }

    /// Returns false if the file is no MIF file at all.
    bool run();
    /// The delimiter of the MID records; null if the header has none.
    QChar delimiter() const { return m_delimiter; }

private:
    using Begin = void (MifScan::*)();

    struct Vertex
    {
        double x = 0;
        double y = 0;
    };

    bool readTokens();
    void add(Trait trait, qint64 line);
    void setHeaderFault();
    bool readHeader();
    void readHeaderLine(const QString &keyword);
    bool isLongitudeLatitude() const;
    bool transforms() const;

    void beginObject(const QString &keyword);
    void beginPlace();
    void beginPline();
    void beginRegion();
    void beginCurve() { add(Trait::Curve, m_reader.lineNumber()); }
    void beginText() { add(Trait::UnreadText, m_reader.lineNumber()); }
    void beginUnread();
    void beginCollection();
    void beginComplete() {} ///< the object has no more lines

    int numberAt(int token) const;
    double coordinateAt(int token, bool &ok);
    void readRing();
    void readVertex();
    void finishRing();
    void readObjectLine();

    ScanReader &m_reader;
    QTextCodec *m_codec;
    FileFacts &m_facts;
    Tokens m_tokens;
    QString m_keyword; ///< of the current object, in upper case
    QChar m_delimiter;
    bool m_isRegion = false;
    qint64 m_ringsLeft = 0;
    qint64 m_verticesLeft = 0;
    qint64 m_ringLine = 0;
    bool m_isFirstVertex = false;
    Vertex m_first;
    qint64 m_partsLeft = 0; ///< of a collection, which share its MID record
};

bool MifScan::readTokens()
{
    if (!m_reader.readLine())
        return false;
    m_tokens.split(m_reader.line());
    return true;
}

void MifScan::add(Trait trait, qint64 line)
{
    Tally &tally = m_facts.tally(trait);
    if (tally.count++ > 0)
        return;
    tally.line = line;
    tally.place = QStringLiteral("строка %1, %2").arg(line).arg(m_keyword);
}

void MifScan::setHeaderFault()
{
    if (m_facts.headerFault != HeaderFault::None)
        return;
    m_facts.headerFault = HeaderFault::Foreign;
    m_facts.headerLine = m_reader.lineNumber();
    m_facts.headerText = m_reader.shown(m_reader.line(), m_codec, nullptr);
    // A tab as delimiter is a common fault of a header, and must be seen to be one.
    m_facts.headerText.replace(QLatin1Char('\t'), QLatin1String("\\t"));
}

// Returns false if the file does not begin with the version. The other keywords may be in any order.
bool MifScan::readHeader()
{
    const QStringList compulsory{QStringLiteral("VERSION"), QStringLiteral("CHARSET"), QStringLiteral("DELIMITER")};
    while (readTokens()) {
        const qint64 line = m_reader.lineNumber();
        const QString keyword = m_tokens[0].toString().toUpper();
        if (line <= compulsory.size() && (m_tokens.size() != 2 || keyword != compulsory.at(static_cast<int>(line) - 1)))
            setHeaderFault();
        if (line == 1 && keyword != compulsory.first())
            return false;
        if (keyword == QLatin1String("DATA") && m_tokens.size() == 1)
            break;
        readHeaderLine(keyword);
    }
    if (m_reader.lineNumber() < compulsory.size())
        setHeaderFault();
    return true;
}

void MifScan::readHeaderLine(const QString &keyword)
{
    const QString value = m_tokens[1].toString().remove(QLatin1Char('"'));
    if (keyword == QLatin1String("CHARSET"))
        m_facts.declaredEncoding = value;
    else if (keyword == QLatin1String("DELIMITER"))
        m_delimiter = value.isEmpty() ? QChar() : value.at(0);
    else if (keyword == QLatin1String("COORDSYS") && isLongitudeLatitude())
        m_facts.geographicPlace = QStringLiteral("строка %1").arg(m_reader.lineNumber());
    else if (keyword == QLatin1String("TRANSFORM") && transforms())
        m_facts.transformPlace = QStringLiteral("строка %1").arg(m_reader.lineNumber());
}

// Two factors and two offsets. A factor of 0 leaves the coordinate as it is.
bool MifScan::transforms() const
{
    static const QRegularExpression separator(QStringLiteral("[\\s,]+"));
    const QStringList numbers = m_reader.line().toString().split(separator, Qt::SkipEmptyParts).mid(1, 4);
    for (int i = 0; i < numbers.size(); ++i) {
        const double number = numbers.at(i).toDouble();
        const bool isIdentity = number == 0 || (i < 2 && number == 1);
        if (!isIdentity)
            return true;
    }
    return false;
}

// Projection 1 is longitude and latitude.
bool MifScan::isLongitudeLatitude() const
{
    return m_tokens[1].compare(QLatin1String("EARTH"), Qt::CaseInsensitive) == 0 &&
           m_tokens[2].compare(QLatin1String("PROJECTION"), Qt::CaseInsensitive) == 0 &&
           (m_tokens[3] == QLatin1String("1,") || m_tokens[3] == QLatin1String("1"));
}

// Returns 0 if the token is missing or not a number.
int MifScan::numberAt(int token) const
{
    bool ok = false;
    const int number = m_tokens.size() > token ? toInt(m_tokens[token], ok) : 0;
    return ok ? number : 0;
}

// A number with a decimal comma, which stops the import, is counted and read.
double MifScan::coordinateAt(int token, bool &ok)
{
    const double number = toDouble(m_tokens[token], ok);
    if (ok || !hasDecimalComma(m_tokens[token]))
        return number;
    add(Trait::DecimalComma, m_reader.lineNumber());
    return m_tokens[token].toString().replace(QLatin1Char(','), QLatin1Char('.')).toDouble(&ok);
}

void MifScan::beginPlace()
{
    constexpr int maxTokens = 5;
    bool ok = false;
    for (int i = 1; i < std::min(static_cast<int>(m_tokens.size()), maxTokens); ++i)
        coordinateAt(i, ok);
}

void MifScan::beginPline()
{
    m_isRegion = false;
    const bool isMultiple = m_tokens[1].compare(QLatin1String("MULTIPLE"), Qt::CaseInsensitive) == 0;
    if (isMultiple ? numberAt(2) < 2 : m_tokens.size() == 1)
        add(Trait::PlineCount, m_reader.lineNumber());
    m_ringsLeft = isMultiple ? numberAt(2) : 1;
    if (!isMultiple && m_tokens.size() > 1) {
        m_verticesLeft = numberAt(1);
        m_ringsLeft = 0;
    }
}

void MifScan::beginRegion()
{
    m_isRegion = true;
    m_ringsLeft = numberAt(1);
}

void MifScan::beginUnread()
{
    add(Trait::UnreadEntity, m_reader.lineNumber());
    ++m_facts.unreadKinds[m_keyword];
}

void MifScan::beginCollection()
{
    add(Trait::Collection, m_reader.lineNumber());
    m_partsLeft = numberAt(1);
}

void MifScan::beginObject(const QString &keyword)
{
    static const QHash<QString, Begin> rows{
        {QStringLiteral("NONE"), &MifScan::beginComplete},
        {QStringLiteral("POINT"), &MifScan::beginPlace},
        {QStringLiteral("LINE"), &MifScan::beginPlace},
        {QStringLiteral("PLINE"), &MifScan::beginPline},
        {QStringLiteral("REGION"), &MifScan::beginRegion},
        {QStringLiteral("ARC"), &MifScan::beginCurve},
        {QStringLiteral("ELLIPSE"), &MifScan::beginCurve},
        {QStringLiteral("TEXT"), &MifScan::beginText},
        {QStringLiteral("RECT"), &MifScan::beginUnread},
        {QStringLiteral("ROUNDRECT"), &MifScan::beginUnread},
        {QStringLiteral("MULTIPOINT"), &MifScan::beginUnread},
        {QStringLiteral("COLLECTION"), &MifScan::beginCollection},
    };
    const Begin begin = rows.value(keyword);
    if (begin == nullptr)
        return;
    m_keyword = keyword;
    m_ringsLeft = 0;
    m_verticesLeft = 0;
    m_isFirstVertex = true;
    if (m_partsLeft > 0)
        --m_partsLeft;
    else
        ++m_facts.recordsNeeded;
    (this->*begin)();
}

// The import stops at a ring or part with too few vertices, so the rest of its object does not matter.
void MifScan::readRing()
{
    const int count = m_tokens.size() == 1 ? numberAt(0) : 0;
    const bool isEnough = count >= (m_isRegion ? 3 : 2);
    m_verticesLeft = isEnough ? count : 0;
    m_ringsLeft = isEnough ? m_ringsLeft - 1 : 0;
    m_isFirstVertex = true;
    m_ringLine = m_reader.lineNumber();
}

void MifScan::readVertex()
{
    bool okX = false;
    bool okY = false;
    const Vertex vertex{coordinateAt(0, okX), coordinateAt(1, okY)};
    if (m_tokens.size() != 2 || !okX || !okY) {
        m_verticesLeft = 0;
        m_ringsLeft = 0;
        return;
    }
    if (m_isFirstVertex)
        m_first = vertex;
    m_isFirstVertex = false;
    const bool isLast = --m_verticesLeft == 0;
    const bool isClosed =
        std::fabs(vertex.x - m_first.x) <= DefPoint::epsilon && std::fabs(vertex.y - m_first.y) <= DefPoint::epsilon;
    if (isLast && m_isRegion && !isClosed)
        add(Trait::OpenRing, m_ringLine);
}

// A line of the current object or, even if that is incomplete, the first line of the next one.
void MifScan::readObjectLine()
{
    const QStringView line = m_reader.line();
    const bool isExpecting = m_ringsLeft > 0 || m_verticesLeft > 0;
    if (line.isEmpty()) {
        if (isExpecting)
            add(Trait::BlankLine, m_reader.lineNumber());
        return;
    }
    m_tokens.split(line);
    if (line[0].isLetter())
        beginObject(m_tokens[0].toString().toUpper());
    else if (m_verticesLeft > 0)
        readVertex();
    else if (m_ringsLeft > 0)
        readRing();
}

bool MifScan::run()
{
    if (!readHeader())
        return false;
    while (m_reader.readLine())
        readObjectLine();
    m_facts.isTruncated = m_ringsLeft > 0 || m_verticesLeft > 0;
    m_facts.truncatedPlace = QStringLiteral("строка %1, %2").arg(m_reader.lineNumber()).arg(m_keyword);
    return true;
}

/// Returns the first field of \a record, without its quotes if it has any.
QStringView firstField(QStringView record, QChar delimiter)
{
    const bool isQuoted = record.startsWith(QLatin1Char('"'));
    const QChar end = isQuoted ? QChar(QLatin1Char('"')) : delimiter;
    const QStringView field = record.mid(isQuoted ? 1 : 0);
    for (qsizetype i = 0; i < field.size(); ++i) {
        if (field[i] == end)
            return field.left(i);
    }
    return field;
}

void addRecord(Trait trait, FileFacts &facts, qint64 line)
{
    Tally &tally = facts.tally(trait);
    if (tally.count++ == 0) {
        tally.line = line;
        tally.place = QStringLiteral("MID, запись %1").arg(line);
    }
}

// An empty line is a record only as long as objects still need one; the others are the end of the file.
void scanRecords(const QString &fileName, QChar delimiter, FileFacts &facts)
{
    ScanReader reader;
    if (!reader.open(fileName))
        return;
    qint64 lastFilled = 0;
    while (reader.readLine()) {
        const qint64 line = reader.lineNumber();
        if (reader.line().isEmpty() && line <= facts.recordsNeeded)
            addRecord(Trait::MidEmptyLine, facts, line);
        if (reader.line().isEmpty())
            continue;
        lastFilled = line;
        const QStringView name = firstField(reader.line(), delimiter);
        if (reader.isUnicode() || !isNonAscii(name))
            continue;
        addRecord(Trait::NonAsciiName, facts, line);
        addNonAsciiName(name, facts);
    }
    facts.recordCount = std::max(lastFilled, std::min(reader.lineNumber(), facts.recordsNeeded));
}

} // namespace

void scanMif(ScanReader &reader, const QString &fileName, const CheckOptions &options, FileFacts &facts)
{
    MifScan scan(reader, options, facts);
    const bool isMif = scan.run();
    facts.recordCount = -1;
    const bool usesRecords = options.searchObjects || (options.searchPoints && !options.hasOwnPointFile());
    if (isMif && usesRecords)
        scanRecords(midFileName(fileName), scan.delimiter(), facts);
}
