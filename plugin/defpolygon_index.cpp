#include "defpolygon_index.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <limits>
#include <utility>

namespace {

// Two points that are equal lie no further apart than this, and neither does one that is nearer than an equal one.
constexpr double reach = 1.5 * DefPoint::epsilon;

/// Cells a unit of length: a cell is longer than the reach to both sides, so that a query touches two at most.
constexpr double cellsPerUnit = 4;
static_assert(2 * reach * cellsPerUnit < 1);

/// How far a point may be put off from the slot of its cell.
constexpr std::size_t maxProbes = 64;

constexpr double nowhere = std::numeric_limits<double>::quiet_NaN();

/// The cell of a coordinate. Far out, where neighbouring numbers lie further apart than the reach, each has its own.
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

double squaredDistance(double x, double y, double px, double py)
{
    const double dx = x - px;
    const double dy = y - py;
    return dx * dx + dy * dy;
}

bool isSamePlace(const DefPoint &a, const DefPoint &b)
{
    return a.x == b.x && a.y == b.y;
}

} // namespace

std::size_t KnownPointIndex::slotOf(qint64 column, qint64 row) const
{
    const quint64 hash =
        (static_cast<quint64>(column) * 0x9E3779B97F4A7C15U) ^ (static_cast<quint64>(row) * 0xC2B2AE3D27D4EB4FU);
    return static_cast<std::size_t>(hash >> 32U) & (m_slots.size() - 1);
}

void KnownPointIndex::insert(const DefPoint &point)
{
    const Entry place{point.x, point.y, m_count++};
    if (!isFinite(point.x, point.y)) // is equal to no query
        return;
    const std::size_t own = slotOf(cellOf(point.x), cellOf(point.y));
    for (std::size_t probe = 0; probe < maxProbes; ++probe) {
        Entry &slot = m_slots[(own + probe) & (m_slots.size() - 1)];
        if (std::isnan(slot.x)) {
            slot = place;
            return;
        }
    }
    m_overflow.push_back(place);
}

void KnownPointIndex::reset(const QVector<DefPoint> &points)
{
    std::size_t size = maxProbes;
    while (size < 2 * static_cast<std::size_t>(points.size()))
        size *= 2;
    m_slots.assign(size, Entry{nowhere, nowhere, -1});
    m_count = 0;
    m_overflow.clear();
    m_overflowTrees.clear();
    m_treeCount = 0;
    m_ordered.clear();
    for (const DefPoint &point : points)
        insert(point);
}

void KnownPointIndex::addLast(const QVector<DefPoint> &points)
{
    if (2 * static_cast<std::size_t>(points.size()) > m_slots.size()) {
        reset(points);
        return;
    }
    if (!m_ordered.empty())
        m_ordered.insert(points.last());
    insert(points.last());
}

// Puts those of the crowd that are in no tree yet into a tree, together with smaller trees: so a point changes trees
// seldom, and the trees stay few.
void KnownPointIndex::rebuildOverflowTrees()
{
    std::size_t first = m_treeCount;
    while (!m_overflowTrees.empty() && m_overflowTrees.back().size() <= 2 * (m_overflow.size() - first)) {
        first -= m_overflowTrees.back().size();
        m_overflowTrees.pop_back();
    }
    m_overflowTrees.emplace_back(std::vector<Entry>(m_overflow.data() + first, m_overflow.data() + m_overflow.size()));
    m_treeCount = m_overflow.size();
}

/// A query on its way.
struct KnownPointIndex::Query
{
    KnownPointIndex &search;
    const QVector<DefPoint> &points;
    double x;
    double y;
    double best = reach * reach; ///< squared; what lies farther away is not equal, whoever is nearer
    int found = -1;

    void examine(const Entry &place)
    {
        const double distance = squaredDistance(place.x, place.y, x, y);
        if (!(distance <= best) || place.point == found)
            return;
        if (found < 0 || distance < best || search.isExaminedFirst(*this, points.at(place.point), points.at(found))) {
            best = distance;
            found = place.point;
        }
    }
};

// Of two points at one distance from the query. The sorted points are examined from the first that is not left of it:
// that one, the one before it, then on to the right, then on to the left.
bool KnownPointIndex::isExaminedFirst(const Query &query, const DefPoint &a, const DefPoint &b)
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

void KnownPointIndex::searchCell(qint64 column, qint64 row, Query &query)
{
    const std::size_t own = slotOf(column, row);
    for (std::size_t probe = 0; probe < maxProbes; ++probe) {
        const Entry &place = m_slots[(own + probe) & (m_slots.size() - 1)];
        if (std::isnan(place.x))
            return;
        query.examine(place);
    }
}

const DefPoint *KnownPointIndex::find(const QVector<DefPoint> &points, double x, double y)
{
    if (m_count == 0 || !isFinite(x, y))
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
    if (m_treeCount < m_overflow.size())
        rebuildOverflowTrees();
    for (const KdTree &tree : m_overflowTrees)
        tree.search(query);
    if (query.found < 0)
        return nullptr;
    const DefPoint &nearest = points.at(query.found);
    return nearest == DefPoint{QString(), x, y} ? &nearest : nullptr;
}

NearestPointIndex::NearestPointIndex(const QVector<DefPoint> &points) : m_points(points)
{
    std::vector<KdTree::Entry> places;
    places.reserve(static_cast<std::size_t>(points.size()));
    for (int i = 0; i < points.size(); ++i) {
        const DefPoint &point = points.at(i);
        if (isFinite(point.x, point.y) && (i == 0 || !isSamePlace(points.at(i - 1), point)))
            places.push_back(KdTree::Entry{point.x, point.y, i});
    }
    m_tree = KdTree(std::move(places));
}

// Of the points at one place the first that findNearestPoint() examines; from the left it comes to the last of them.
int NearestPointIndex::firstExamined(const KdTree::Entry &place, double x) const
{
    const auto first = m_points.begin() + place.point;
    if (!(place.x < x) || first + 1 == m_points.end() || !isSamePlace(*(first + 1), *first))
        return place.point;
    return static_cast<int>(std::upper_bound(first, m_points.end(), *first, lessNanLast) - m_points.begin()) - 1;
}

/// A query on its way.
struct NearestPointIndex::Query
{
    const NearestPointIndex &search;
    double x;
    double y;
    double best = std::numeric_limits<double>::max();
    const KdTree::Entry *found = nullptr;
    int turn = unknown;  ///< in which findNearestPoint() comes to what is found, once a tie has asked
    int bound = unknown; ///< the first point that is not left of the query, once a tie has asked

    static constexpr int unknown = -1;

    void examine(const KdTree::Entry &place)
    {
        // A distance that is not finite is never less, and the largest finite one is not less than itself.
        const double distance = squaredDistance(place.x, place.y, x, y);
        if (distance < best) {
            best = distance;
            found = &place;
            turn = unknown;
        } else if (distance == best && found != nullptr) {
            examineTie(place);
        }
    }

    void examineTie(const KdTree::Entry &place)
    {
        if (bound == unknown)
            bound = bisectByX(search.m_points, x);
        if (turn == unknown)
            turn = visitRank(*found);
        const int otherTurn = visitRank(place);
        if (otherTurn < turn) {
            found = &place;
            turn = otherTurn;
        }
    }

    int visitRank(const KdTree::Entry &place) const
    {
        const int index = search.firstExamined(place, x);
        if (index >= bound)
            return index == bound ? 0 : index - bound + 1;
        return index == bound - 1 ? 1 : search.m_points.size() - index;
    }
};

const DefPoint *NearestPointIndex::find(const QPointF &p) const
{
    Query query{*this, p.x(), p.y()};
    if (isFinite(p.x(), p.y()))
        m_tree.search(query);
    return query.found == nullptr ? nullptr : &m_points.at(firstExamined(*query.found, p.x()));
}
