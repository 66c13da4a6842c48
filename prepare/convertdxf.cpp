#include "convertdxf.h"

#include "convertprogress.h"
#include "drawingpairs.h"
#include "encodingguess.h"
#include "vsilines.h"

#include <QSet>

#include <cmath>
#include <cstdlib>

namespace {

constexpr int maxSample = 1 << 20;
constexpr int polygonMesh = 16; // flag of a POLYLINE

// Entities that GDAL turns into features, and the parts of such entities (VERTEX, SEQEND, ATTRIB).
bool isRead(const QByteArray &type)
{
    static const QSet<QByteArray> types{"POINT",   "LINE",   "POLYLINE", "LWPOLYLINE", "CIRCLE", "ELLIPSE", "ARC",
                                        "SPLINE",  "HELIX",  "3DFACE",   "SOLID",      "TRACE",  "INSERT",  "TEXT",
                                        "MTEXT",   "ATTRIB", "ATTDEF",   "DIMENSION",  "HATCH",  "LEADER",  "MLINE",
                                        "MLEADER", "VERTEX", "SEQEND",   "MULTILEADER"};
    return types.contains(type);
}

// The name of the codec of a code page such as ANSI_1251 or DOS866.
QByteArray codecOfCodePage(QByteArray name)
{
    name = name.toUpper();
    if (name.startsWith("ANSI_"))
        return "windows-" + name.mid(5);
    if (name.startsWith("DOS"))
        return "IBM" + name.mid(3);
    return {};
}

} // namespace

bool DxfInspection::scan(const QByteArray &fileName)
{
    VsiLines lines;
    if (!lines.open(fileName))
        return false;
    QByteArray code;
    DrawingPair pair;
    for (pair.line = 1; !m_hasEnd && !ConvertProgress::isInterrupted() && lines.read(code); pair.line += 2) {
        pair.code = static_cast<int>(std::strtol(code.constData(), nullptr, 10));
        pair.codePosition = lines.lineBegin();
        if (!lines.read(pair.value))
            break;
        pair.valuePosition = lines.lineBegin();
        if (m_sample.size() < maxSample && !isAscii(pair.value))
            m_sample += pair.value + '\n';
        readPair(pair.code, pair.value.trimmed());
        if (m_section == "ENTITIES" || m_section == "BLOCKS")
            m_corrections.readPair(pair, m_block, pair.code == 0 && (isRead(m_entity) || m_entity == "BLOCK"));
    }
    endEntity();
    return true;
}

void DxfInspection::readPair(int code, const QByteArray &value)
{
    if (code == 0) {
        endEntity();
        m_hasEnd = value == "EOF";
        m_isSectionName = value == "SECTION";
        beginEntity(value);
    } else if (code == 2 && m_isSectionName) {
        m_beginsWithHeader = m_section.isNull() ? value == "HEADER" : m_beginsWithHeader;
        m_section = value;
        m_block.clear();
        m_isSectionName = false;
    } else if (m_section == "HEADER") {
        readHeaderPair(code, value);
    } else if (m_section == "ENTITIES" || m_section == "BLOCKS") {
        readEntityPair(code, value);
    }
}

void DxfInspection::readHeaderPair(int code, const QByteArray &value)
{
    if (code == 9)
        m_variable = value;
    else if (code == 3 && m_variable == "$DWGCODEPAGE")
        m_codePage = codecOfCodePage(value);
}

void DxfInspection::beginEntity(const QByteArray &type)
{
    static const QSet<QByteArray> structure{"SECTION", "ENDSEC", "EOF", "BLOCK", "ENDBLK"};
    m_entity = type;
    m_inserted.clear();
    m_scale = 1;
    m_radius = m_axisX = m_axisY = m_axisZ = m_from = m_to = 0;
    m_edge = 0;
    m_flags = 0;
    if (type == "ENDBLK" || type == "BLOCK")
        m_block.clear();
    if ((m_section != "ENTITIES" && m_section != "BLOCKS") || structure.contains(type))
        return;
    m_filledBlocks.insert(m_block);
    if (!isRead(type))
        ++m_ignored[QStringLiteral("entity ") + QString::fromLatin1(type)];
}

// The vertices of a POLYLINE are entities that follow it.
void DxfInspection::endEntity()
{
    if (m_entity != "VERTEX" && m_entity != "POLYLINE")
        endPolyline();
    if (m_entity == "CIRCLE")
        arcs().addCircle(m_radius);
    else if (m_entity == "ARC")
        arcs().addArc(m_radius, m_to - m_from + (m_from > m_to ? 360 : 0));
    else if (m_entity == "ELLIPSE")
        arcs().addEllipse(std::hypot(m_axisX, m_axisY, m_axisZ), m_radius);
    else if (m_entity == "INSERT")
        m_insertions[m_inserted].append({m_block, m_scale});
    else if (m_entity == "POLYLINE" && (m_flags & polygonMesh) != 0)
        ++m_ignored[QStringLiteral("mesh")];
}

ContentCounts DxfInspection::ignoredEntities() const
{
    ContentCounts counts = m_ignored;
    for (auto it = m_insertions.begin(); it != m_insertions.end(); ++it) {
        if (!m_filledBlocks.contains(it.key()))
            counts[QStringLiteral("empty-insert")] += it.value().size();
    }
    return counts;
}

ArcStatistics &DxfInspection::arcs()
{
    if (m_block.isEmpty())
        return m_arcs;
    m_curvedBlocks.insert(m_block);
    return m_blockArcs;
}

void DxfInspection::endPolyline()
{
    const int count = m_polyline.size();
    for (int i = 0; i < count; ++i) {
        const BulgedVertex &from = m_polyline.at(i);
        const BulgedVertex &to = m_polyline.at((i + 1) % count);
        if (!(std::fabs(from.bulge) > 0))
            continue;
        m_hasPolylineArcs = true;
        arcs().addBulge(from.x, from.y, to.x, to.y, from.bulge);
    }
    m_polyline.clear();
}

// A boundary is a polyline or a sequence of edges.
void DxfInspection::readHatchPair(int code, const QByteArray &value)
{
    constexpr int arc = 2;
    constexpr int ellipse = 3;
    if (code == 92)
        endPolyline();
    else if (code == 72)
        m_edge = value.toInt();
    else if (code == 40 && m_edge == arc)
        arcs().addCircle(drawingNumber(value));
    else if (code == 40 && m_edge == ellipse)
        arcs().addEllipse(std::hypot(m_axisX, m_axisY), drawingNumber(value));
}

void DxfInspection::readName(const QByteArray &name)
{
    if (m_entity == "BLOCK")
        m_block = name;
    else
        m_inserted = name;
}

void DxfInspection::readVertexPair(int code, const QByteArray &value)
{
    if (code == 10)
        m_polyline.append({drawingNumber(value), 0, 0});
    else if (code == 20 && !m_polyline.isEmpty())
        m_polyline.last().y = drawingNumber(value);
    else if (code == 42 && !m_polyline.isEmpty())
        m_polyline.last().bulge = drawingNumber(value);
}

void DxfInspection::readEntityPair(int code, const QByteArray &value)
{
    const bool hasBulges = m_entity == "LWPOLYLINE" || m_entity == "VERTEX" || m_entity == "HATCH";
    if (m_entity == "HATCH")
        readHatchPair(code, value);
    if (hasBulges)
        readVertexPair(code, value);
    if ((code == 41 || code == 42) && m_entity == "INSERT")
        m_scale = std::max(m_scale, std::fabs(drawingNumber(value)));
    switch (code) {
    case 2:
        return readName(value);
    case 11:
        m_axisX = drawingNumber(value);
        break;
    case 21:
        m_axisY = drawingNumber(value);
        break;
    case 31:
        m_axisZ = drawingNumber(value);
        break;
    case 40:
        m_radius = drawingNumber(value);
        break;
    case 50:
        m_from = drawingNumber(value);
        break;
    case 51:
        m_to = drawingNumber(value);
        break;
    case 70:
        m_flags = value.toInt();
        break;
    default:
        break;
    }
}

// Returns the largest product of scales from the drawing down to the block. A block that contains itself, which GDAL
// refuses, counts once. Blocks nested without end would exhaust the stack.
double DxfInspection::scaleOf(const QByteArray &block, QHash<QByteArray, double> &known, int depth) const
{
    constexpr int maxDepth = 1000;
    if (known.contains(block) || depth > maxDepth)
        return known.value(block, 1);
    double largest = known[block] = 1;
    const QVector<Insertion> insertions = m_insertions.value(block);
    for (const Insertion &insertion : insertions)
        largest = std::max(largest, insertion.scale * scaleOf(insertion.parent, known, depth + 1));
    return known[block] = largest;
}

ArcSteps DxfInspection::arcSteps(double deviation) const
{
    return m_arcs.steps(deviation);
}

ArcSteps DxfInspection::blockArcSteps(double deviation) const
{
    QHash<QByteArray, double> known;
    double largest = 1;
    for (const QByteArray &block : m_curvedBlocks)
        largest = std::max(largest, scaleOf(block, known, 0));
    return m_blockArcs.steps(deviation / largest);
}

std::vector<DrawingEdit> DxfInspection::takeEdits(double deviation)
{
    QHash<QByteArray, double> known;
    const CurvePrecision own{deviation, arcSteps(deviation).angle};
    const double blockStep = blockArcSteps(deviation).angle;
    return m_corrections.takeEdits([&](const QByteArray &block) {
        return block.isEmpty() ? own : CurvePrecision{deviation / scaleOf(block, known, 0), blockStep};
    });
}
