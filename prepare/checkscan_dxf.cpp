// A drawing is a list of pairs of lines, a group code and a value:
//
//     0 SECTION, 2 HEADER        begins a section; the import requires HEADER as the first one
//     9 $DWGCODEPAGE, 3 ...      a variable of the header
//     0 LINE                     begins an entity, which the next code 0 ends
//     8 Lots                     its layer
//     0 EOF                      ends the file
//
// Functions are in data-flow order: pair, header, entity, group, file. checkscan_dxf_entities.cpp evaluates each
// entity.

#include "checkscan_dxf.h"

#include "checkcharset.h"

#include <QVector>

#include <cmath>

namespace {

constexpr auto binarySentinel = "AutoCAD Binary DXF";

/// Returns a group code, or -1 for anything else. Like the import, does not read 010 as 10.
int codeOf(QStringView line)
{
    if (line.isEmpty() || line.size() > 4 || (line.size() > 1 && line[0] == QLatin1Char('0')))
        return -1;
    int code = 0;
    for (const QChar c : line) {
        if (c < QLatin1Char('0') || c > QLatin1Char('9'))
            return -1;
        code = 10 * code + (c.unicode() - u'0');
    }
    return code;
}

/// Copies \a from into the memory that \a to already has.
void assign(QString &to, QStringView from)
{
    to.setUnicode(from.data(), static_cast<int>(from.size()));
}

} // namespace

// Returns false at the end of the file and at a blank line in place of a group code.
bool DrawingScan::readPair()
{
    if (!m_reader.readLine())
        return false;
    m_isBlank = m_reader.line().isEmpty();
    m_isBinary = m_reader.line().startsWith(QLatin1String(binarySentinel));
    m_code = codeOf(m_reader.line());
    if (m_isBlank || m_isBinary || !m_reader.readLine())
        return false;
    m_value = m_reader.line();
    return true;
}

void DrawingScan::setHeaderFault(HeaderFault fault)
{
    m_facts.headerFault = fault;
    m_facts.headerLine = m_reader.lineNumber();
    m_facts.headerText = shown(m_reader.line());
}

// Returns false if the pairs do not begin with a section, after comments.
bool DrawingScan::checkHeader()
{
    bool ok = readPair();
    if (ok && m_code == 999) {
        setHeaderFault(HeaderFault::Comment);
        m_facts.headerLine = 1;
    }
    while (ok && m_code == 999)
        ok = readPair();
    if (!ok || m_code != 0 || m_value != QLatin1String("SECTION") || !readPair() || m_code != 2) {
        setHeaderFault(m_isBinary ? HeaderFault::Binary : HeaderFault::Foreign);
        return false;
    }
    if (m_facts.headerFault == HeaderFault::None && m_value != QLatin1String("HEADER"))
        setHeaderFault(HeaderFault::OtherSection);
    assign(m_section, m_value);
    return true;
}

// Clears the strings in place, which keeps their memory.
void DrawingScan::beginEntity()
{
    finishEntity();
    m_entity.kind = kindOf(m_value);
    if (m_entity.kind != Kind::Vertex)
        finishOutline();
    if (m_entity.kind == Kind::LwPolyline)
        m_outline.emplace();
    m_entity.line = m_reader.lineNumber();
    assign(m_entity.keyword, m_value);
    assign(m_entity.layer, {});
    assign(m_entity.name, {});
    assign(m_entity.handle, {});
    assign(m_entity.flags, {});
    assign(m_entity.text, {});
    m_texts.begin();
    m_entity.hasNonAsciiText = false;
    m_entity.isOnSheet = false;
    m_entity.isInOtherPlane = false;
    m_hasEnd = m_value == QLatin1String("EOF");
    if (m_entity.kind == Kind::Section)
        beginSection();
}

// Like the import, takes the next value for the name whatever its group code.
void DrawingScan::beginSection()
{
    m_entity.kind = Kind::Nothing;
    if (readPair())
        assign(m_section, m_value);
}

void DrawingScan::readVertexGroup()
{
    bool ok = false;
    if (m_code == 10) {
        addVertex();
        m_hasVertex = true;
        m_vertex.x = toDouble(m_value, ok);
    } else if (m_code == 20) {
        m_vertex.y = toDouble(m_value, ok);
    } else if (m_code == 42) {
        m_vertex.bulge = toDouble(m_value, ok);
    }
}

// An extrusion other than the Z axis gives the entity a coordinate system of its own, which the import ignores. Mostly
// it is the opposite axis, which mirrors X.
void DrawingScan::readExtrusion()
{
    constexpr double tolerance = 1e-6;
    bool ok = false;
    const double expected = m_code == 230 ? 1 : 0;
    const double component = toDouble(m_value, ok);
    if (ok && std::fabs(component - expected) > tolerance)
        m_entity.isInOtherPlane = true;
}

void DrawingScan::readText()
{
    assign(m_entity.text, m_value);
    m_entity.hasNonAsciiText = isNonAscii(m_value);
    if (m_entity.hasNonAsciiText && m_section == QLatin1String("ENTITIES"))
        addNonAsciiName(m_value, m_facts);
}

void DrawingScan::setDeclaredEncoding()
{
    m_facts.declaredEncoding = m_value.toString();
    m_declaredCodec = codecOfCharset(m_facts.declaredEncoding);
}

void DrawingScan::readVariable()
{
    if (m_code == 9)
        assign(m_variable, m_value);
    else if (m_code == 3 && m_variable == QLatin1String("$DWGCODEPAGE"))
        setDeclaredEncoding();
    else if (m_code == 1 && m_variable == QLatin1String("$ACADVER"))
        m_facts.drawingVersion = m_value.toString();
}

// The import stops at a coordinate with a decimal comma only if it reads that coordinate.
void DrawingScan::checkPlace()
{
    static const QVector<Kind> kinds{Kind::Line,  Kind::LwPolyline,   Kind::Vertex, Kind::Text,
                                     Kind::Point, Kind::CentredCurve, Kind::Insert};
    if (!hasDecimalComma(m_value) || m_section != QLatin1String("ENTITIES") || !kinds.contains(m_entity.kind))
        return;
    Tally &tally = m_facts.tally(Trait::DecimalComma);
    if (tally.count++ > 0)
        return;
    tally.line = m_reader.lineNumber();
    tally.place = QStringLiteral("строка %1").arg(tally.line);
}

void DrawingScan::readGroup()
{
    if (m_section == QLatin1String("HEADER"))
        return readVariable();
    if (m_code == 10 || m_code == 11 || m_code == 20 || m_code == 21)
        checkPlace();
    if (m_code == 8)
        assign(m_entity.layer, m_value);
    else if (m_code == 2)
        assign(m_entity.name, m_value);
    else if (m_code == 5 && m_entity.kind == Kind::Unread)
        assign(m_entity.handle, m_value);
    else if (m_code == 70)
        assign(m_entity.flags, m_value);
    else if (m_code == 67)
        m_entity.isOnSheet = m_value == QLatin1String("1");
    else if (m_code == 210 || m_code == 220 || m_code == 230)
        readExtrusion();
    else if (m_code == 1 && m_entity.kind == Kind::Text)
        readText();
    else if (m_entity.kind == Kind::Text)
        m_texts.readGroup(m_code, m_value);
    else if (m_entity.kind == Kind::LwPolyline || m_entity.kind == Kind::Vertex)
        readVertexGroup();
}

void DrawingScan::finish()
{
    finishEntity();
    finishOutline();
    m_facts.unsortedTexts = m_texts.texts();
    m_facts.tally(Trait::BlockReference) = m_blocks.drawingInsertions();
    const qint64 line = m_reader.lineNumber();
    if (m_isBlank)
        m_facts.tally(Trait::BlankLine) = {1, line, QStringLiteral("строка %1").arg(line)};
    m_facts.isTruncated = !m_isBlank && !m_hasEnd;
    m_facts.truncatedPlace = QStringLiteral("строка %1").arg(line);
}

void DrawingScan::run()
{
    if (!checkHeader())
        return;
    while (readPair()) {
        if (m_code == 0)
            beginEntity();
        else
            readGroup();
    }
    finish();
}

void scanDxf(ScanReader &reader, const CheckOptions &options, const PointSymbols &symbols,
             const QSet<QString> &fillings, FileFacts &facts)
{
    DrawingScan(reader, options, symbols, fillings, facts).run();
}
