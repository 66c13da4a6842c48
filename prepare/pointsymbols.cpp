// Functions are in data-flow order: places of candidates, vertices, numbers, symbols.

#include "pointsymbols.h"

#include "defpolygon.h"
#include "symbolcandidates.h"

#include <QPointF>

#include <cpl_conv.h>
#include <cpl_quad_tree.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <tuple>

namespace {

// A symbol is small beside the closed outline on whose vertex it stands. Of open lines the ends are nothing special: a
// circle there is as likely a thing of its own, such as a well at the end of a pipe.
constexpr double maxShareOfOutline = 1.0 / 8;

// A symbol is not much larger than its number, which stands beside it.
constexpr double maxHeights = 2;
constexpr double gapInHeights = 1;
constexpr double letterInHeights = 0.8;

// Bounds the work for texts of absurd height.
constexpr qint64 maxComparisons = 50000000;

constexpr int maxDepth = 64;

/// Where one or more candidates are.
struct Place
{
    int container = 0;
    qint64 column = 0; ///< of the grid by which the places are sorted
    double x = 0;
    double y = 0;
    double outline = -1; ///< size of the largest closed outline that has a vertex here; negative: none
};

/// Finds the places of candidates at the vertices of outlines. A spatial hash in columns, sorted by y in each.
class PlaceGrid
{
public:
    void add(const SymbolCandidate &candidate);
    void finish();

    /// Calls visit with the index of each place within the tolerance.
    template <typename Visit>
    void forEachNear(int container, double x, double y, const Visit &visit) const;

    std::vector<Place> places;

private:
    static qint64 columnOf(double x);
};

qint64 PlaceGrid::columnOf(double x)
{
    constexpr double limit = 1e15;
    return static_cast<qint64>(std::floor(std::min(std::max(x, -limit), limit) / (2 * DefPoint::epsilon)));
}

void PlaceGrid::add(const SymbolCandidate &candidate)
{
    if (std::isfinite(candidate.x) && std::isfinite(candidate.y))
        places.push_back({candidate.container, columnOf(candidate.x), candidate.x, candidate.y});
}

void PlaceGrid::finish()
{
    const auto key = [](const Place &place) { return std::tie(place.container, place.column, place.y, place.x); };
    std::sort(places.begin(), places.end(), [&key](const Place &a, const Place &b) { return key(a) < key(b); });
    const auto end = std::unique(places.begin(), places.end(),
                                 [&key](const Place &a, const Place &b) { return !(key(a) < key(b)); });
    places.erase(end, places.end());
}

template <typename Visit>
void PlaceGrid::forEachNear(int container, double x, double y, const Visit &visit) const
{
    const double near = DefPoint::epsilon;
    const qint64 last = columnOf(x + near);
    for (qint64 column = columnOf(x - near); column <= last; ++column) {
        const auto isBefore = [container, column](const Place &place, double low) {
            return std::tie(place.container, place.column, place.y) < std::tie(container, column, low);
        };
        auto it = std::lower_bound(places.begin(), places.end(), y - near, isBefore);
        for (; it != places.end() && it->container == container && it->column == column && it->y <= y + near; ++it) {
            if (std::fabs(it->x - x) <= near)
                visit(static_cast<std::size_t>(it - places.begin()));
        }
    }
}

/// Reads the vertices of closed polylines and notes their sizes at the places of candidates.
class OutlineReader
{
public:
    OutlineReader(PlaceGrid &grid, SymbolReader &symbols) : m_grid(grid), m_symbols(symbols) {}

    bool read(const QByteArray &fileName);

private:
    void begin(const QByteArray &type);
    void addVertex(double x, double y);
    void endOutline();
    void readPair(const DrawingPairs &pairs);

    PlaceGrid &m_grid;
    SymbolReader &m_symbols;
    QByteArray m_type;
    int m_container = 0;
    double m_x = 0;
    bool m_isFlagged = false; ///< the flags of the polyline close it
    bool m_isEmpty = true;
    QPointF m_first;
    QPointF m_last;
    CPLRectObj m_box{0, 0, 0, 0};
    std::vector<std::size_t> m_touched;
};

void OutlineReader::endOutline()
{
    const double size = std::hypot(m_box.maxx - m_box.minx, m_box.maxy - m_box.miny);
    const QPointF gap = m_last - m_first;
    const bool isClosed =
        m_isFlagged || (std::fabs(gap.x()) <= DefPoint::epsilon && std::fabs(gap.y()) <= DefPoint::epsilon);
    for (const std::size_t place : m_touched) {
        if (isClosed)
            m_grid.places[place].outline = std::max(m_grid.places[place].outline, size);
    }
    m_touched.clear();
    m_isFlagged = false;
    m_isEmpty = true;
}

// The vertices of a POLYLINE are entities of their own.
void OutlineReader::begin(const QByteArray &type)
{
    if (type != "VERTEX")
        endOutline();
    if (type == "BLOCK" || type == "ENDBLK" || type == "SECTION")
        m_container = 0;
    m_type = type;
}

void OutlineReader::addVertex(double x, double y)
{
    if (!std::isfinite(x) || !std::isfinite(y))
        return;
    if (m_isEmpty) {
        m_box = {x, y, x, y};
        m_first = {x, y};
    }
    m_isEmpty = false;
    m_last = {x, y};
    m_box = {std::min(m_box.minx, x), std::min(m_box.miny, y), std::max(m_box.maxx, x), std::max(m_box.maxy, y)};
    m_grid.forEachNear(m_container, x, y, [this](std::size_t place) { m_touched.push_back(place); });
}

void OutlineReader::readPair(const DrawingPairs &pairs)
{
    const int code = pairs.code();
    if (code == 2 && m_type == "BLOCK")
        m_container = m_symbols.containerOf(pairs.value());
    else if (code == 70 && (m_type == "LWPOLYLINE" || m_type == "POLYLINE"))
        m_isFlagged = (pairs.value().toInt() & 1) != 0;
    else if (m_type != "LWPOLYLINE" && m_type != "VERTEX")
        return;
    else if (code == 10)
        m_x = pairs.number();
    else if (code == 20)
        addVertex(m_x, pairs.number());
}

bool OutlineReader::read(const QByteArray &fileName)
{
    DrawingPairs pairs;
    if (!pairs.open(fileName))
        return false;
    while (pairs.next()) {
        if (pairs.code() == 0)
            begin(pairs.value());
        else if (pairs.isContent())
            readPair(pairs);
    }
    endOutline();
    return true;
}

/// Decides which candidates are symbols.
class SymbolJudge
{
public:
    explicit SymbolJudge(SymbolReader &symbols) : m_symbols(symbols) {}

    bool judgeVertices(const QByteArray &fileName);
    void judgeNumbers();
    /// How often what a block holds is drawn.
    double timesOf(int block, int depth = 0);

private:
    void judgeNumber(const SymbolNumber &number, const CPLQuadTree &tree);

    SymbolReader &m_symbols;
    PlaceGrid m_grid;
    qint64 m_comparisons = 0;
    QVector<double> m_times;
    QVector<QVector<int>> m_insertions; ///< by the inserted block: candidates that are no symbols
};

bool SymbolJudge::judgeVertices(const QByteArray &fileName)
{
    for (const SymbolCandidate &candidate : m_symbols.candidates)
        m_grid.add(candidate);
    m_grid.finish();
    if (!OutlineReader(m_grid, m_symbols).read(fileName))
        return false;
    for (SymbolCandidate &candidate : m_symbols.candidates) {
        m_grid.forEachNear(candidate.container, candidate.x, candidate.y, [&](std::size_t place) {
            if (candidate.reach <= m_grid.places[place].outline * maxShareOfOutline)
                candidate.isSymbol = true;
        });
    }
    return true;
}

void candidateBounds(const void *item, CPLRectObj *box)
{
    const auto &candidate = *static_cast<const SymbolCandidate *>(item);
    *box = {candidate.x, candidate.y, candidate.x, candidate.y};
}

// A number belongs to the nearest candidate of its size.
void SymbolJudge::judgeNumber(const SymbolNumber &number, const CPLQuadTree &tree)
{
    const double width = number.height * (gapInHeights + letterInHeights * number.length);
    const double farthest = width + number.height * maxHeights;
    const CPLRectObj box{number.x - farthest, number.y - farthest, number.x + farthest, number.y + farthest};
    int count = 0;
    void **const found = CPLQuadTreeSearch(&tree, &box, &count);
    SymbolCandidate *best = nullptr;
    double nearest = 0;
    for (int i = 0; i < count; ++i) {
        auto &candidate = *static_cast<SymbolCandidate *>(found[i]);
        const double distance = std::hypot(candidate.x - number.x, candidate.y - number.y);
        if (candidate.container == number.container && candidate.reach <= number.height * maxHeights &&
            distance <= candidate.reach + width && (best == nullptr || distance < nearest)) {
            best = &candidate;
            nearest = distance;
        }
    }
    CPLFree(found);
    m_comparisons += count;
    if (best != nullptr)
        best->isSymbol = true;
}

void SymbolJudge::judgeNumbers()
{
    if (m_grid.places.empty())
        return;
    const Place &first = m_grid.places.front();
    CPLRectObj box{first.x, first.y, first.x, first.y};
    for (const Place &place : m_grid.places)
        box = {std::min(box.minx, place.x), std::min(box.miny, place.y), std::max(box.maxx, place.x),
               std::max(box.maxy, place.y)};
    const std::unique_ptr<CPLQuadTree, decltype(&CPLQuadTreeDestroy)> tree(CPLQuadTreeCreate(&box, candidateBounds),
                                                                           &CPLQuadTreeDestroy);
    // Candidates at one place would make the tree ever deeper.
    constexpr int maxTreeDepth = 12;
    CPLQuadTreeSetMaxDepth(tree.get(), maxTreeDepth);
    for (SymbolCandidate &candidate : m_symbols.candidates) {
        if (std::isfinite(candidate.x) && std::isfinite(candidate.y) && std::isfinite(candidate.reach))
            CPLQuadTreeInsert(tree.get(), &candidate);
    }
    for (const SymbolNumber &number : m_symbols.numbers) {
        if (m_comparisons < maxComparisons)
            judgeNumber(number, *tree);
    }
}

double SymbolJudge::timesOf(int block, int depth)
{
    if (m_times.isEmpty()) {
        m_times.fill(-1, m_symbols.blocks.size());
        m_times[0] = 1;
        m_insertions.resize(m_symbols.blocks.size());
        for (std::size_t i = 0; i < m_symbols.candidates.size(); ++i) {
            const SymbolCandidate &candidate = m_symbols.candidates[i];
            if (candidate.block >= 0 && !candidate.isSymbol)
                m_insertions[candidate.block].append(static_cast<int>(i));
        }
    }
    if (m_times.at(block) >= 0 || depth > maxDepth)
        return std::max(0.0, m_times.at(block));
    m_times[block] = 0;
    double times = 0;
    for (const int i : qAsConst(m_insertions[block])) {
        const SymbolCandidate &insertion = m_symbols.candidates[static_cast<std::size_t>(i)];
        times += static_cast<double>(insertion.copies) * timesOf(insertion.container, depth + 1);
    }
    return m_times[block] = times;
}

qint64 toCount(double count)
{
    return static_cast<qint64>(std::min(count, 1e15));
}

} // namespace

bool PointSymbols::find(const QByteArray &fileName)
{
    if (!mayHaveKeyword(fileName, {"INSERT", "CIRCLE", "ELLIPSE"}))
        return true;
    SymbolReader symbols;
    if (!symbols.read(fileName))
        return false;
    if (symbols.candidates.empty())
        return true;
    SymbolJudge judge(symbols);
    if (!judge.judgeVertices(fileName))
        return false;
    judge.judgeNumbers();
    double count = 0;
    double outlines = 0;
    double texts = 0;
    for (const SymbolCandidate &symbol : symbols.candidates) {
        if (!symbol.isSymbol)
            continue;
        const double times = judge.timesOf(symbol.container);
        const bool isBlock = symbol.block >= 0;
        count += times;
        outlines += times * static_cast<double>(isBlock ? symbols.blocks.at(symbol.block).outlineCount : 1);
        texts += times * static_cast<double>(isBlock ? symbols.blocks.at(symbol.block).textCount : 0);
        m_edits.insert(m_edits.end(), symbol.edits.begin(), symbol.edits.end());
    }
    m_count = toCount(count);
    m_outlineCount = toCount(outlines);
    m_textCount = toCount(texts);
    return true;
}

bool PointSymbols::contains(qint64 line) const
{
    const auto it = std::lower_bound(m_edits.begin(), m_edits.end(), line,
                                     [](const Edit &edit, qint64 wanted) { return edit.line < wanted; });
    return it != m_edits.end() && it->line == line;
}
