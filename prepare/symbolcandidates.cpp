// Functions are in data-flow order: pair, entity, block, drawing.

#include "symbolcandidates.h"

#include <QSet>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <limits>

namespace {

// Of the rows or columns of one insertion.
constexpr int maxCopies = 10000;

// Blocks that are nested more deeply are no symbols.
constexpr int maxDepth = 64;

// Blocks that insert others twice hold any number of entities.
constexpr qint64 maxCount = 1LL << 50;

// Adds the copies of a part.
qint64 sum(qint64 count, qint64 copies, qint64 part)
{
    const double all = static_cast<double>(count) + static_cast<double>(copies) * static_cast<double>(part);
    return all < static_cast<double>(maxCount) ? count + copies * part : maxCount;
}

bool isText(const QByteArray &type)
{
    return type == "TEXT" || type == "MTEXT" || type == "ATTRIB";
}

bool isSymbol(const QByteArray &type)
{
    return type == "INSERT" || type == "CIRCLE" || type == "ELLIPSE";
}

bool isOutline(const QByteArray &type)
{
    static const QSet<QByteArray> types{"LINE",   "POLYLINE", "LWPOLYLINE", "CIRCLE", "ELLIPSE", "ARC",
                                        "SPLINE", "HELIX",    "3DFACE",     "SOLID",  "TRACE",   "HATCH"};
    return types.contains(type);
}

// At most one letter and digits. The letter may have one byte or two, or be written as "\U+0000".
bool isNumber(const QByteArray &text)
{
    const auto isDigit = [](char c) { return std::isdigit(static_cast<unsigned char>(c)) != 0; };
    const auto isLetter = [](char c) {
        return static_cast<unsigned char>(c) >= 0x80 || std::isalpha(static_cast<unsigned char>(c)) != 0;
    };
    int letter = text.size();
    while (letter > 0 && isDigit(text.at(letter - 1)))
        --letter;
    if (text.startsWith("\\U+"))
        return text.size() > 7 && letter <= 7;
    return letter < text.size() && (letter == 0 || (letter == 1 && isLetter(text.at(0))) ||
                                    (letter == 2 && static_cast<unsigned char>(text.at(0)) >= 0xC0));
}

} // namespace

int SymbolReader::containerOf(const QByteArray &name)
{
    const auto known = m_containers.constFind(name);
    if (known != m_containers.constEnd())
        return *known;
    blocks.append(SymbolBlock());
    return m_containers[name] = blocks.size() - 1;
}

void SymbolReader::begin(const DrawingPairs &pairs)
{
    m_entity = {};
    if (pairs.isContent())
        m_entity.type = pairs.value();
    m_entity.isWanted =
        m_container != 0 || m_entity.type == "BLOCK" || isText(m_entity.type) || isSymbol(m_entity.type);
    m_entity.keyword = {pairs.line(), pairs.position(), pairs.length(), "POINT"};
}

double SymbolReader::distanceToBase(int place) const
{
    const SymbolBlock &block = blocks.at(m_container);
    return std::hypot(m_entity.x[place] - block.baseX, m_entity.y[place] - block.baseY);
}

// What a place says about the size of a block. Texts are not drawn, and the first place of some entities is no part.
void SymbolReader::extend()
{
    const QByteArray &type = m_entity.type;
    const bool isFirst = !m_entity.hasPlace;
    m_entity.hasPlace = true;
    if (isText(type) || type == "ATTDEF" || type == "POLYLINE" || (type == "HATCH" && isFirst))
        return;
    m_entity.reach = std::max(m_entity.reach, distanceToBase(0));
}

void SymbolReader::readPlace(int code, double value)
{
    const int place = code % 10;
    if (code < 20) {
        m_entity.x[place == 1 ? 1 : 0] = value;
        return;
    }
    m_entity.y[place == 1 ? 1 : 0] = value;
    if (place == 1 && (m_entity.type == "LINE" || m_entity.type == "SOLID" || m_entity.type == "3DFACE"))
        m_entity.reach = std::max(m_entity.reach, distanceToBase(1));
    else if (place != 1)
        extend();
}

void SymbolReader::readPair(const DrawingPairs &pairs)
{
    const int code = pairs.code();
    if (code == 1)
        m_entity.text = pairs.value();
    else if (code == 2)
        m_entity.name = pairs.value();
    else if ((code >= 10 && code <= 13) || (code >= 20 && code <= 23))
        readPlace(code, pairs.number());
    else if (code == 40)
        m_entity.size = std::fabs(pairs.number());
    else if (code == 41 || code == 42)
        m_entity.scale = std::max(m_entity.scale, std::fabs(pairs.number()));
    else if (code == 70 || code == 71)
        m_entity.copies *= std::min(std::max(1, pairs.value().toInt()), maxCopies);
    else if (code >= 72 && code <= 74)
        m_entity.isAligned = m_entity.isAligned || (pairs.value().toInt() != 0 && m_entity.type == "TEXT");
    else if (code == 210 || code == 220 || code == 230)
        m_entity.isInOtherPlane = m_entity.isInOtherPlane || std::fabs(pairs.number() - (code == 230 ? 1 : 0)) > 1e-9;
}

void SymbolReader::addCandidate()
{
    SymbolCandidate candidate;
    candidate.container = m_container;
    candidate.x = m_entity.x[0];
    candidate.y = m_entity.y[0];
    candidate.edits = {m_entity.keyword};
    const bool isInsertion = m_entity.type == "INSERT";
    if (isInsertion) {
        candidate.block = containerOf(m_entity.name);
        candidate.scale = m_entity.scale;
        candidate.copies = m_entity.copies;
        blocks[m_container].insertions.append(static_cast<int>(candidates.size()));
    } else {
        candidate.reach = m_entity.type == "CIRCLE" ? m_entity.size : std::hypot(m_entity.x[1], m_entity.y[1]);
    }
    if (m_entity.isInOtherPlane || candidate.copies != 1)
        candidate.reach = std::numeric_limits<double>::infinity();
    candidates.push_back(candidate);
    m_takesAttributes = isInsertion;
}

void SymbolReader::addText()
{
    const int place = m_entity.isAligned ? 1 : 0;
    ++blocks[m_container].textCount;
    const bool isFinite = std::isfinite(m_entity.x[place] + m_entity.y[place] + m_entity.size);
    if (isFinite && isNumber(m_entity.text)) {
        blocks[m_container].hasNumber = true;
        numbers.push_back({m_container, m_entity.x[place], m_entity.y[place], m_entity.size, m_entity.text.size()});
    }
    if (m_entity.type != "ATTRIB" || !m_takesAttributes)
        return;
    m_entity.keyword.keyword = "TEXT";
    candidates.back().edits.append(m_entity.keyword);
}

void SymbolReader::endBlockPart()
{
    SymbolBlock &block = blocks[m_container];
    if (isOutline(m_entity.type))
        ++block.outlineCount;
    const bool hasRadius = m_entity.type == "CIRCLE" || m_entity.type == "ARC";
    const double axis = m_entity.type == "ELLIPSE" ? std::hypot(m_entity.x[1], m_entity.y[1]) : 0;
    if (m_entity.type != "INSERT")
        block.reach = std::max(block.reach, m_entity.reach + (hasRadius ? m_entity.size : axis));
}

void SymbolReader::endBlock(bool isBegun)
{
    m_container = isBegun ? containerOf(m_entity.name) : 0;
    if (!isBegun)
        return;
    blocks[m_container].baseX = m_entity.x[0];
    blocks[m_container].baseY = m_entity.y[0];
}

void SymbolReader::end()
{
    const QByteArray &type = m_entity.type;
    if (type != "ATTRIB")
        m_takesAttributes = m_takesAttributes && type == "INSERT";
    if (type == "BLOCK" || type == "ENDBLK" || type.isEmpty())
        return endBlock(type == "BLOCK");
    endBlockPart();
    if (isText(type))
        addText();
    else if (isSymbol(type))
        addCandidate();
}

// A block that is met again while it is being looked at contains itself: its reach is infinite meanwhile. A number in
// the block belongs to the parts of the block, which are looked at by themselves.
double SymbolReader::reachOf(int block, int depth)
{
    if (m_isReached.at(block))
        return blocks.at(block).reach;
    const double infinite = std::numeric_limits<double>::infinity();
    double reach = blocks.at(block).hasNumber ? infinite : blocks.at(block).reach;
    const QVector<int> insertions = blocks.at(block).insertions;
    m_isReached[block] = true;
    blocks[block].reach = infinite;
    if (depth > maxDepth) {
        blocks[block].outlineCount = maxCount;
        return infinite;
    }
    for (const int insertion : insertions) {
        const SymbolCandidate &part = candidates[static_cast<std::size_t>(insertion)];
        const double distance = std::hypot(part.x - blocks.at(block).baseX, part.y - blocks.at(block).baseY);
        reach = std::max({reach, part.reach, distance + part.scale * reachOf(part.block, depth + 1)});
        blocks[block].outlineCount =
            sum(blocks.at(block).outlineCount, part.copies, blocks.at(part.block).outlineCount);
        blocks[block].textCount = sum(blocks.at(block).textCount, part.copies, blocks.at(part.block).textCount);
    }
    return blocks[block].reach = reach;
}

void SymbolReader::finishReaches()
{
    m_isReached.fill(false, blocks.size());
    for (SymbolCandidate &candidate : candidates) {
        if (candidate.block >= 0)
            candidate.reach = std::max(candidate.reach, candidate.scale * reachOf(candidate.block, 0));
    }
}

bool SymbolReader::read(const QByteArray &fileName)
{
    DrawingPairs pairs;
    if (!pairs.open(fileName))
        return false;
    blocks = {SymbolBlock()};
    while (pairs.next()) {
        if (pairs.code() == 0) {
            end();
            begin(pairs);
        } else if (m_entity.isWanted) {
            readPair(pairs);
        }
    }
    end();
    finishReaches();
    return true;
}
