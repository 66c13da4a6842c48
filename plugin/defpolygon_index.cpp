#include "defpolygon_index.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <limits>
#include <utility>

namespace {

// Search radius. Equal points are at most sqrt(2) * epsilon apart, so if any point equals the query, the nearest
// point is within this radius.
constexpr double reach = 1.5 * DefPoint::epsilon;

// A power of two, so that scaling a coordinate is exact. With the smallest cells possible, 32 per unit, nearly every
// query would search four of them instead of one.
constexpr double cellsPerUnit = 4;
static_assert(2 * reach * cellsPerUnit < 1, "the box searched for a query must span at most two cells on each axis");

// Maximum number of points per cell when the index is filled; the others go to the k-d tree. Coordinates in degrees put
// all points of a town into a few cells, and 200,000 of them would be searched linearly for each vertex. Points added
// later are not limited: they lie more than the tolerance apart, so a cell holds at most a few hundred of them.
constexpr int maxInCell = 32;

/// Returns the number of the cell of a coordinate. Beyond the limit each double is a cell of its own, numbered by its
/// bit pattern: neighbouring doubles are farther apart there than the search radius.
qint64 cellOf(double coordinate)
{
    constexpr double limit = 1e15;
    if (!(std::fabs(coordinate) < limit)) {
        qint64 bits = 0;
        std::memcpy(&bits, &coordinate, sizeof bits);
        return bits;
    }
    const double scaled = coordinate * cellsPerUnit;
    const auto cell = static_cast<qint64>(scaled);
    return static_cast<double>(cell) > scaled ? cell - 1 : cell;
}

bool isFinite(double x, double y)
{
    return std::isfinite(x) && std::isfinite(y);
}

double squaredDistance(double x1, double y1, double x2, double y2)
{
    const double dx = x1 - x2;
    const double dy = y1 - y2;
    return dx * dx + dy * dy;
}

bool isSamePlace(const DefPoint &a, const DefPoint &b)
{
    return a.x == b.x && a.y == b.y;
}

} // namespace

// Multiplicative hashing by odd factors. They are random, so that a crafted file cannot force collisions; the top bits
// of the sum depend on all bits of both coordinates.
quint32 KnownPointIndex::hashOf(qint64 column, qint64 row) const
{
    const quint64 hash = static_cast<quint64>(column) * m_columnFactor + static_cast<quint64>(row) * m_rowFactor;
    return static_cast<quint32>(hash >> 32U);
}

// The top bits of a hash choose the slot.
std::size_t KnownPointIndex::slotOf(quint32 hash) const
{
    return static_cast<std::size_t>((static_cast<quint64>(hash) * m_slots.size()) >> 32U);
}

// Inserts by linear probing. Returns false if the allowed number of points already have this hash.
bool KnownPointIndex::insert(Slot entry, int allowed)
{
    const std::size_t last = m_slots.size() - 1;
    int inCell = 0;
    std::size_t i = slotOf(entry.hash);
    for (; !m_slots[i].isFree(); i = (i + 1) & last) {
        if (m_slots[i].hash == entry.hash && ++inCell == allowed)
            return false;
    }
    m_slots[i] = entry;
    return true;
}

void KnownPointIndex::reset(const QVector<DefPoint> &points)
{
    std::size_t size = smallestTable;
    while (size < 2 * static_cast<std::size_t>(points.size()))
        size *= 2;
    m_slots.assign(size, Slot());
    m_ordered.clear();
    m_count = points.size();
    std::vector<KdTree::Entry> overflow;
    for (int i = 0; i < points.size(); ++i) {
        const DefPoint &point = points.at(i);
        if (!isFinite(point.x, point.y)) // never equals a query
            continue;
        if (!insert(Slot{hashOf(cellOf(point.x), cellOf(point.y)), i}, maxInCell))
            overflow.push_back(KdTree::Entry{point.x, point.y, i});
    }
    m_overflow = KdTree(std::move(overflow));
}

void KnownPointIndex::grow()
{
    const std::vector<Slot> old = std::exchange(m_slots, std::vector<Slot>(2 * m_slots.size()));
    for (const Slot &slot : old) {
        if (!slot.isFree())
            insert(slot, std::numeric_limits<int>::max());
    }
}

void KnownPointIndex::addLast(const QVector<DefPoint> &points)
{
    const DefPoint &point = points.last();
    ++m_count;
    if (!m_ordered.empty())
        m_ordered.insert(point);
    if (!isFinite(point.x, point.y))
        return;
    if (2 * static_cast<std::size_t>(m_count) > m_slots.size())
        grow();
    insert(Slot{hashOf(cellOf(point.x), cellOf(point.y)), m_count - 1}, std::numeric_limits<int>::max());
}

/// State of one search.
struct KnownPointIndex::Query
{
    KnownPointIndex &index;
    const QVector<DefPoint> &points;
    double x;
    double y;
    double best = reach * reach; ///< squared distance of the nearest point so far; initially the squared search radius
    int found = -1;
    int steps = 0;

    void examine(int i)
    {
        const DefPoint &point = points.at(i);
        const double distance = squaredDistance(point.x, point.y, x, y);
        // Two cells can have the same hash, so a point may be examined twice.
        if (!(distance <= best) || i == found)
            return;
        if (found < 0 || distance < best || index.isVisitedFirst(*this, point, points.at(found))) {
            best = distance;
            found = i;
        }
    }

    void examine(const KdTree::Entry &entry)
    {
        ++steps;
        examine(entry.point);
    }
};

// Breaks a tie by the visiting order of findNearestPoint(). Between points on opposite sides of the query it depends on
// the sorted list: the first such tie builds a std::set, because on a grid spaced at half the tolerance every query has
// such a tie.
bool KnownPointIndex::isVisitedFirst(const Query &query, const DefPoint &a, const DefPoint &b)
{
    const bool aLeft = a.x < query.x;
    const bool bLeft = b.x < query.x;
    if (aLeft == bLeft)
        return aLeft ? lessNanLast(b, a) : lessNanLast(a, b);
    if (m_ordered.empty())
        m_ordered.insert(query.points.begin(), query.points.end());
    const DefPoint lowest{QString(), query.x, -std::numeric_limits<double>::infinity()};
    const auto bound = m_ordered.lower_bound(lowest);
    const DefPoint &left = aLeft ? a : b;
    const DefPoint &right = aLeft ? b : a;
    const bool leftFirst = !isSamePlace(*bound, right) && isSamePlace(*std::prev(bound), left);
    return leftFirst == aLeft;
}

void KnownPointIndex::searchCell(qint64 column, qint64 row, Query &query) const
{
    const quint32 hash = hashOf(column, row);
    const std::size_t last = m_slots.size() - 1;
    for (std::size_t i = slotOf(hash); !m_slots[i].isFree(); i = (i + 1) & last) {
        ++query.steps;
        if (m_slots[i].hash == hash)
            query.examine(m_slots[i].point);
    }
}

const DefPoint *KnownPointIndex::find(const QVector<DefPoint> &points, double x, double y, int *steps)
{
    if (steps != nullptr)
        *steps = 0;
    if (!isFinite(x, y))
        return nullptr;
    const qint64 left = cellOf(x - reach);
    const qint64 right = cellOf(x + reach);
    const qint64 bottom = cellOf(y - reach);
    const qint64 top = cellOf(y + reach);
    Query query{*this, points, x, y};
    searchCell(left, bottom, query);
    if (right != left)
        searchCell(right, bottom, query);
    if (top != bottom)
        searchCell(left, top, query);
    if (right != left && top != bottom)
        searchCell(right, top, query);
    m_overflow.search(query);
    if (steps != nullptr)
        *steps = query.steps;
    if (query.found < 0)
        return nullptr;
    const DefPoint &nearest = points.at(query.found);
    return nearest == DefPoint{QString(), x, y} ? &nearest : nullptr;
}

NearestPointIndex::NearestPointIndex(const QVector<DefPoint> &points)
    : m_points(points),
      m_isSorted(std::is_sorted(points.begin(), points.end(), lessNanLast))
{
    if (!m_isSorted)
        return;
    std::vector<KdTree::Entry> entries;
    entries.reserve(static_cast<std::size_t>(points.size()));
    for (int i = 0; i < points.size(); ++i) {
        const DefPoint &point = points.at(i);
        if (isFinite(point.x, point.y) && (i == 0 || !isSamePlace(points.at(i - 1), point)))
            entries.push_back(KdTree::Entry{point.x, point.y, i});
    }
    m_tree = KdTree(std::move(entries));
}

// Returns which of the points at the entry's position findNearestPoint() visits first: the last of them if they lie
// left of the query, otherwise the first.
int NearestPointIndex::firstVisited(const KdTree::Entry &entry, double x) const
{
    const DefPoint *const first = m_points.constData() + entry.point;
    if (!(entry.x < x) || first + 1 == m_points.end() || !isSamePlace(*(first + 1), *first))
        return entry.point;
    return static_cast<int>(std::upper_bound(first, m_points.end(), *first, lessNanLast) - m_points.begin()) - 1;
}

/// State of one search.
struct NearestPointIndex::Query
{
    const NearestPointIndex &index;
    double x;
    double y;
    double best = std::numeric_limits<double>::max();
    const KdTree::Entry *found = nullptr;
    int foundRank = unknown; ///< visitRank(*found); computed at a tie
    int bound = unknown;     ///< the first point not left of the query; computed at the first tie
    int steps = 0;

    static constexpr int unknown = -1;

    void examine(const KdTree::Entry &entry)
    {
        ++steps;
        // As in findNearestPoint(), only distances below the largest double are found; this excludes infinity and NaN.
        const double distance = squaredDistance(entry.x, entry.y, x, y);
        if (distance < best) {
            best = distance;
            found = &entry;
            foundRank = unknown;
        } else if (distance == best && found != nullptr) {
            examineTie(entry);
        }
    }

    void examineTie(const KdTree::Entry &entry)
    {
        if (bound == unknown)
            bound = bisectByX(index.m_points, x);
        if (foundRank == unknown)
            foundRank = visitRank(*found);
        const int rank = visitRank(entry);
        if (rank < foundRank) {
            found = &entry;
            foundRank = rank;
        }
    }

    /// Rank of an entry in the visiting order of findNearestPoint(), with gaps.
    int visitRank(const KdTree::Entry &entry) const
    {
        const int i = index.firstVisited(entry, x);
        if (i >= bound)
            return i == bound ? 0 : i - bound + 1;
        return i == bound - 1 ? 1 : index.m_points.size() - i;
    }
};

const DefPoint *NearestPointIndex::find(const QPointF &p, int *steps) const
{
    if (steps != nullptr)
        *steps = m_points.size();
    if (!m_isSorted)
        return findNearestPoint(m_points, p);
    Query query{*this, p.x(), p.y()};
    if (isFinite(p.x(), p.y()))
        m_tree.search(query);
    if (steps != nullptr)
        *steps = query.steps;
    return query.found == nullptr ? nullptr : &m_points.at(firstVisited(*query.found, p.x()));
}
