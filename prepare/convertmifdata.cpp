// Functions are in data-flow order: line, number, vertex, object, section.

#include "convertmifdata.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <cstring>

namespace {

bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\r';
}

bool isLetter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

const char *behindDigits(const char *begin, const char *end)
{
    return std::find_if(begin, end, [](char c) { return c < '0' || c > '9'; });
}

const char *behindSign(const char *begin, const char *end)
{
    return begin != end && (*begin == '-' || *begin == '+') ? begin + 1 : begin;
}

// Fast path: nearly all numbers are plain, and conversion would take most of the time.
bool isPlainNumber(const char *begin, const char *end)
{
    const char *const digits = behindSign(begin, end);
    const char *next = behindDigits(digits, end);
    qint64 count = next - digits;
    if (next != end && *next == '.') {
        const char *const decimals = next + 1;
        next = behindDigits(decimals, end);
        count += next - decimals;
    }
    return count > 0 && next == end;
}

bool isNumber(const char *begin, const char *end)
{
    bool ok = isPlainNumber(begin, end);
    if (!ok)
        QByteArray(begin, static_cast<int>(end - begin)).toDouble(&ok);
    return ok;
}

const QSet<QByteArray> &objectKeywords()
{
    static const QSet<QByteArray> keywords{"NONE", "POINT", "LINE",      "PLINE",   "REGION",     "ARC",
                                           "TEXT", "RECT",  "ROUNDRECT", "ELLIPSE", "MULTIPOINT", "COLLECTION"};
    return keywords;
}

} // namespace

MifData::MifData(const QByteArray &mif, int begin, int firstLine)
    : m_next(mif.constData() + begin),
      m_end(mif.constData() + mif.size()),
      m_lineNumber(firstLine - 1),
      m_dataBegin(m_next)
{
}

// Blank lines mean nothing, not even in an object.
bool MifData::readLine()
{
    while (m_next < m_end) {
        m_lineStart = m_next;
        const auto *end =
            static_cast<const char *>(std::memchr(m_next, '\n', static_cast<std::size_t>(m_end - m_next)));
        end = end == nullptr ? m_end : end;
        ++m_lineNumber;
        m_next = end == m_end ? m_end : end + 1;
        m_line = {std::find_if_not(m_lineStart, end, isBlank), end};
        while (m_line.end > m_line.begin && isBlank(m_line.end[-1]))
            --m_line.end;
        if (m_line.begin != m_line.end)
            return split();
    }
    return false;
}

void MifData::unreadLine()
{
    m_next = m_lineStart;
    --m_lineNumber;
}

bool MifData::split()
{
    m_tokens.clear();
    for (const char *c = m_line.begin; c != m_line.end; c = std::find_if_not(c, m_line.end, isBlank)) {
        const char *const end = std::find_if(c, m_line.end, isBlank);
        m_tokens.push_back({c, end});
        c = end;
    }
    return true;
}

// A vertex may be "nan", too.
bool MifData::isKeyword() const
{
    return isLetter(*m_line.begin) && !isNumber(m_tokens[0].begin, m_tokens[0].end);
}

void MifData::count(MifTally &tally) const
{
    if (tally.count++ == 0)
        tally.line = m_lineNumber;
}

// True if the section has numbers with a decimal point. Then a comma may separate thousands.
bool MifData::hasPoints()
{
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    for (const char *c = m_dataBegin; m_hasPoints < 0 && c != nullptr && c < m_end; ++c) {
        c = static_cast<const char *>(std::memchr(c, '.', static_cast<std::size_t>(m_end - c)));
        if (c == nullptr)
            break;
        if (c > m_dataBegin && c + 1 < m_end && isDigit(c[-1]) && isDigit(c[1]))
            m_hasPoints = 1;
    }
    m_hasPoints = std::max(m_hasPoints, 0);
    return m_hasPoints == 1;
}

// A comma at the end separates coordinates.
bool MifData::appendNumberWithComma(const Token &token)
{
    const char *const last = token.end - 1;
    if (*last == ',' && isNumber(token.begin, last)) {
        m_object.append(token.begin, static_cast<int>(last - token.begin));
        return true;
    }
    constexpr int group = 3;
    const char *const comma = std::find(token.begin, token.end, ',');
    const char *const integer = behindSign(token.begin, token.end);
    if (comma >= last || comma == integer || behindDigits(integer, comma) != comma ||
        behindDigits(comma + 1, token.end) != token.end)
        return false;
    if (last - comma == group && comma - integer <= group && *integer != '0' && hasPoints())
        return false;
    m_object.append(token.begin, static_cast<int>(comma - token.begin));
    m_object += '.';
    m_object.append(comma + 1, static_cast<int>(last - comma));
    count(m_counts.commas);
    return true;
}

bool MifData::appendNumber(const Token &token)
{
    if (!isNumber(token.begin, token.end))
        return appendNumberWithComma(token);
    m_object.append(token.begin, static_cast<int>(token.end - token.begin));
    return true;
}

// Appends a line of the tokens from the one at \a first.
bool MifData::appendNumbers(std::size_t first, int count)
{
    for (int i = 0; i < count; ++i) {
        if (!appendNumber(m_tokens[first + static_cast<std::size_t>(i)]))
            return false;
        m_object += i + 1 < count ? ' ' : '\n';
    }
    return true;
}

bool MifData::toCount(std::size_t token, int &number) const
{
    if (token >= m_tokens.size())
        return false;
    const Token &text = m_tokens[token];
    bool ok = false;
    number = QByteArray(text.begin, static_cast<int>(text.end - text.begin)).toInt(&ok);
    return ok && number >= 0;
}

// Coordinates behind the keyword, or in the lines below it. Like the import, ignores what follows them in its line.
bool MifData::readCoordinates(int count)
{
    const auto available = [this](std::size_t first) { return static_cast<int>(m_tokens.size() - first); };
    int missing = count - std::min(count, available(1));
    if (!appendNumbers(1, count - missing))
        return false;
    while (missing > 0) {
        if (!readLine() || isKeyword() || available(0) > missing || !appendNumbers(0, available(0)))
            return false;
        missing -= available(0);
    }
    return true;
}

bool MifData::readVertices(int count)
{
    constexpr int coordinates = 2;
    for (; count > 0; --count) {
        if (!readLine() || m_tokens.size() != coordinates || !appendNumbers(0, coordinates))
            return false;
    }
    return true;
}

// Sections of lines or rings of areas, each behind a line with its number of vertices.
bool MifData::readSections(int count, int minVertices, qint64 &tooShort, int &kept)
{
    for (; count > 0; --count) {
        int vertices = 0;
        const int begin = m_object.size();
        if (!readLine() || m_tokens.size() != 1 || !toCount(0, vertices))
            return false;
        m_object += QByteArray::number(vertices) + '\n';
        if (!readVertices(vertices))
            return false;
        if (vertices < minVertices) {
            m_object.truncate(begin);
            ++tooShort;
        } else {
            ++kept;
        }
    }
    return true;
}

bool MifData::readLines()
{
    constexpr int minVertices = 2;
    qint64 tooShort = 0;
    int kept = 0;
    int number = 1;
    const bool isMultiple = m_tokens.size() > 1 && m_tokens[1].upper() == "MULTIPLE";
    if (isMultiple || m_tokens.size() == 1) {
        if ((isMultiple && !toCount(2, number)) || !readSections(number, minVertices, tooShort, kept))
            return false;
    } else {
        if (!toCount(1, number))
            return false;
        m_object += QByteArray::number(number) + '\n';
        const bool isInLine = number > 0 && static_cast<qint64>(m_tokens.size()) == 2 + 2LL * number;
        for (std::size_t i = 0; isInLine && i < static_cast<std::size_t>(number); ++i) {
            if (!appendNumbers(2 + 2 * i, 2))
                return false;
        }
        if (!isInLine && !readVertices(number))
            return false;
        kept = number >= minVertices ? 1 : 0;
        tooShort = 1 - kept;
    }
    m_counts.shortLines += tooShort;
    m_object.prepend(kept > 1 ? "Pline Multiple " + QByteArray::number(kept) + '\n' : QByteArray("Pline\n"));
    if (kept == 0)
        m_object.clear();
    return true;
}

// The number of rings may stand in the next line, or be missing if there is one.
bool MifData::readRingCount(int &number)
{
    if (m_tokens.size() > 1)
        return toCount(1, number);
    const char *const next = m_next;
    const int line = m_lineNumber;
    if (!readLine() || m_tokens.size() != 1 || !toCount(0, number) || !readLine())
        return false;
    const bool isOfRings = m_tokens.size() == 1;
    if (isOfRings) {
        unreadLine();
        return true;
    }
    m_next = next;
    m_lineNumber = line;
    number = 1;
    return true;
}

bool MifData::readRegion()
{
    constexpr int minVertices = 3;
    qint64 tooShort = 0;
    int kept = 0;
    int number = 0;
    if (!readRingCount(number) || !readSections(number, minVertices, tooShort, kept))
        return false;
    m_counts.shortAreas += tooShort;
    m_object.prepend("Region " + QByteArray::number(kept) + '\n');
    if (kept == 0)
        m_object.clear();
    return true;
}

bool MifData::readPoints()
{
    int number = 0;
    if (!toCount(1, number))
        return false;
    m_object += "Multipoint " + QByteArray::number(number) + '\n';
    if (!readVertices(number))
        return false;
    if (number == 0)
        m_object.clear();
    return true;
}

// The string may stand behind the keyword or in the next line.
bool MifData::readText()
{
    const Token &keyword = m_tokens[0];
    Token string{std::find_if_not(keyword.end, m_line.end, isBlank), m_line.end};
    if (string.begin == string.end && readLine())
        string = m_line;
    if (string.end - string.begin < 2 || *string.begin != '"' || string.end[-1] != '"')
        return false;
    m_object += "Text\n" + QByteArray(string.begin, static_cast<int>(string.end - string.begin)) + '\n';
    constexpr int coordinates = 4;
    return readLine() && m_tokens.size() == coordinates && appendNumbers(0, coordinates);
}

// Leaves the text of the object in m_object, empty if nothing is left of it.
bool MifData::readObject(const QByteArray &keyword)
{
    static const QHash<QByteArray, int> coordinates{{"POINT", 2},   {"LINE", 4},      {"RECT", 4},
                                                    {"ELLIPSE", 4}, {"ROUNDRECT", 5}, {"ARC", 6}};
    m_object.clear();
    const auto count = coordinates.constFind(keyword);
    if (count != coordinates.constEnd()) {
        if (!readCoordinates(*count))
            return false;
        m_object.chop(1);
        m_object = keyword + ' ' + m_object.replace('\n', ' ') + '\n';
        m_counts.hasCurves = m_counts.hasCurves || keyword == "ELLIPSE" || keyword == "ROUNDRECT" || keyword == "ARC";
        return true;
    }
    if (keyword == "PLINE")
        return readLines();
    if (keyword == "REGION")
        return readRegion();
    if (keyword == "MULTIPOINT")
        return readPoints();
    return keyword == "TEXT" ? readText() : true;
}

// Returns false if the object or part is left out.
bool MifData::readPart(const QByteArray &keyword)
{
    const int firstLine = m_lineNumber;
    if (keyword == "COLLECTION" ? readCollection() : readObject(keyword))
        return !m_object.isEmpty();
    count(m_counts.unreadable);
    const bool isInLine = m_line.begin != m_line.end;
    if (m_lineNumber != firstLine && isInLine && isKeyword())
        unreadLine();
    return false;
}

// The parts have no records. GDAL takes one area, one line and one set of points.
bool MifData::readCollection()
{
    QSet<QByteArray> kinds{"PLINE", "REGION", "MULTIPOINT"};
    QByteArray text;
    int kept = 0;
    int number = 0;
    if (!toCount(1, number))
        return false;
    for (qint64 missing = number; missing > 0;) {
        if (!readLine())
            return false;
        const QByteArray keyword = isKeyword() ? m_tokens[0].upper() : QByteArray();
        if (!objectKeywords().contains(keyword)) {
            addOtherLine(text);
            continue;
        }
        --missing;
        if (keyword == "COLLECTION") {
            if (!toCount(1, number))
                return false;
            missing += number;
            continue;
        }
        m_isKept = readPart(keyword);
        if (m_isKept && !kinds.remove(keyword == "LINE" ? "PLINE" : keyword)) {
            m_isKept = false;
            count(m_counts.unreadable);
        }
        kept += m_isKept ? 1 : 0;
        text += m_isKept ? m_object : QByteArray();
    }
    m_object = kept > 0 ? "Collection " + QByteArray::number(kept) + '\n' + text : QByteArray();
    return true;
}

void MifData::addObject(const QByteArray &keyword)
{
    const auto leftOut = [this] { return m_counts.shortLines + m_counts.shortAreas + m_counts.unreadable.count; };
    const qint64 before = leftOut();
    m_isKept = readPart(keyword);
    m_text += m_isKept ? m_object : QByteArray("None\n");
    ++m_counts.objects;
    if (!m_isKept && leftOut() > before)
        m_counts.placeholders.insert(m_counts.objects);
}

// An attribute of the last object, or a line that belongs to none. The lines of an object that is left out go with it.
// GDAL gives up at a wrong attribute, and needs only those that place a text.
void MifData::addOtherLine(QByteArray &text)
{
    static const QSet<QByteArray> ignored{"PEN", "BRUSH", "SMOOTH", "CENTER", "SYMBOL", "FONT", "LABEL"};
    static const QSet<QByteArray> ofTexts{"ANGLE", "JUSTIFY", "SPACING"};
    // "Pen(1,2,0)" is an attribute, too.
    const Token &token = m_tokens[0];
    const QByteArray keyword = Token{token.begin, std::find(token.begin, token.end, '(')}.upper();
    if (ignored.contains(keyword))
        return;
    if (ofTexts.contains(keyword)) {
        QByteArray line(m_line.begin, static_cast<int>(m_line.end - m_line.begin));
        text += m_isKept ? line.replace('\t', ' ') + '\n' : QByteArray();
    } else if (isKeyword()) {
        count(m_counts.unknown);
        m_counts.unknownObjects.append(m_counts.objects);
        m_isKept = false;
    } else if (m_isKept) {
        count(m_counts.unknown);
    }
}

void MifData::rewrite()
{
    m_text.reserve(static_cast<int>(m_end - m_next));
    while (readLine()) {
        const QByteArray keyword = isKeyword() ? m_tokens[0].upper() : QByteArray();
        if (objectKeywords().contains(keyword))
            addObject(keyword);
        else
            addOtherLine(m_text);
    }
}
