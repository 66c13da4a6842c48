// Functions are in data-flow order: number, vertex, object, section.

#include "convertmifdata.h"

#include <QHash>
#include <QSet>

#include <algorithm>

namespace {

const QSet<QByteArray> &objectKeywords()
{
    static const QSet<QByteArray> keywords{"NONE", "POINT", "LINE",      "PLINE",   "REGION",     "ARC",
                                           "TEXT", "RECT",  "ROUNDRECT", "ELLIPSE", "MULTIPOINT", "COLLECTION"};
    return keywords;
}

} // namespace

MifData::MifData(const QByteArray &mif, int begin, int firstLine) : m_lines(mif, begin, firstLine)
{
    m_text.reserve(mif.size() - begin);
}

void MifData::count(MifTally &tally) const
{
    if (tally.count++ == 0)
        tally.line = m_lines.number();
}

// A comma at the end separates coordinates.
bool MifData::appendNumberWithComma(const MifToken &token)
{
    const MifToken separated{token.begin, token.end - 1};
    if (*separated.end == ',' && separated.isNumber()) {
        m_object += separated.bytes();
        return true;
    }
    if (!token.hasDecimalComma() || (token.hasThousands() && m_lines.hasPoints()))
        return false;
    m_object += token.bytes().replace(',', '.');
    count(m_counts.commas);
    return true;
}

bool MifData::appendNumber(const MifToken &token)
{
    if (!token.isNumber())
        return appendNumberWithComma(token);
    m_object.append(token.begin, static_cast<int>(token.end - token.begin));
    return true;
}

// Appends a line of the tokens from the one at \a first.
bool MifData::appendNumbers(std::size_t first, int count)
{
    for (int i = 0; i < count; ++i) {
        if (!appendNumber(m_lines.tokens()[first + static_cast<std::size_t>(i)]))
            return false;
        m_object += i + 1 < count ? ' ' : '\n';
    }
    return true;
}

bool MifData::toCount(std::size_t token, int &number) const
{
    if (token >= m_lines.tokens().size())
        return false;
    const MifToken &text = m_lines.tokens()[token];
    bool ok = false;
    number = text.bytes().toInt(&ok);
    return ok && number >= 0;
}

// Coordinates behind the keyword, or in the lines below it. Like the import, ignores what follows them in its line.
bool MifData::readCoordinates(int count)
{
    const auto available = [this](std::size_t first) { return static_cast<int>(m_lines.tokens().size() - first); };
    int missing = count - std::min(count, available(1));
    if (!appendNumbers(1, count - missing))
        return false;
    while (missing > 0) {
        if (!m_lines.read() || m_lines.isKeyword() || available(0) > missing || !appendNumbers(0, available(0)))
            return false;
        missing -= available(0);
    }
    return true;
}

bool MifData::readVertices(int count)
{
    constexpr int coordinates = 2;
    for (; count > 0; --count) {
        if (!m_lines.read() || m_lines.tokens().size() != coordinates || !appendNumbers(0, coordinates))
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
        if (!m_lines.read() || m_lines.tokens().size() != 1 || !toCount(0, vertices))
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
    const bool isMultiple = m_lines.tokens().size() > 1 && m_lines.tokens()[1].upper() == "MULTIPLE";
    if (isMultiple || m_lines.tokens().size() == 1) {
        if ((isMultiple && !toCount(2, number)) || !readSections(number, minVertices, tooShort, kept))
            return false;
    } else {
        if (!toCount(1, number))
            return false;
        m_object += QByteArray::number(number) + '\n';
        const bool isInLine = number > 0 && static_cast<qint64>(m_lines.tokens().size()) == 2 + 2LL * number;
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
    if (m_lines.tokens().size() > 1)
        return toCount(1, number);
    const MifLines::Position position = m_lines.position();
    if (!m_lines.read() || m_lines.tokens().size() != 1 || !toCount(0, number) || !m_lines.read())
        return false;
    const bool isOfRings = m_lines.tokens().size() == 1;
    if (isOfRings) {
        m_lines.unread();
        return true;
    }
    m_lines.setPosition(position);
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
    MifToken string;
    if (m_lines.tokens().size() > 1)
        string = {m_lines.tokens()[1].begin, m_lines.line().end};
    else if (m_lines.read())
        string = m_lines.line();
    if (string.end - string.begin < 2 || *string.begin != '"' || string.end[-1] != '"')
        return false;
    m_object += "Text\n" + string.bytes() + '\n';
    constexpr int coordinates = 4;
    return m_lines.read() && m_lines.tokens().size() == coordinates && appendNumbers(0, coordinates);
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
    const int firstLine = m_lines.number();
    if (keyword == "COLLECTION" ? readCollection() : readObject(keyword))
        return !m_object.isEmpty();
    count(m_counts.unreadable);
    if (m_lines.number() != firstLine && m_lines.isKeyword())
        m_lines.unread();
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
        if (!m_lines.read())
            return false;
        const QByteArray keyword = m_lines.isKeyword() ? m_lines.tokens()[0].upper() : QByteArray();
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
    const MifToken &token = m_lines.tokens()[0];
    const QByteArray keyword = MifToken{token.begin, std::find(token.begin, token.end, '(')}.upper();
    if (ignored.contains(keyword))
        return;
    if (ofTexts.contains(keyword)) {
        QByteArray line = m_lines.line().bytes();
        text += m_isKept ? line.replace('\t', ' ') + '\n' : QByteArray();
    } else if (m_lines.isKeyword()) {
        count(m_counts.unknown);
        m_counts.unknownObjects.append(m_counts.objects);
        m_isKept = false;
    } else if (m_isKept) {
        count(m_counts.unknown);
    }
}

void MifData::rewrite()
{
    while (m_lines.read()) {
        const QByteArray keyword = m_lines.isKeyword() ? m_lines.tokens()[0].upper() : QByteArray();
        if (objectKeywords().contains(keyword))
            addObject(keyword);
        else
            addOtherLine(m_text);
    }
}
