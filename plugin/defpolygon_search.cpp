#include "defpolygon_search.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace {

// Two points that are equal lie no further apart than this, and neither does one that is nearer than an equal one.
constexpr double reach = 1.5 * DefPoint::epsilon;

/// Cells a unit of length: a cell is longer than the reach to both sides, so that a query touches two at most.
constexpr double cellsPerUnit = 4;
static_assert(2 * reach * cellsPerUnit < 1);

/// Places that are looked through one by one rather than halved further.
constexpr int leafSize = 16;

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

int CloseSearch::slotOf(qint64 column, qint64 row) const
{
    const quint64 hash =
        (static_cast<quint64>(column) * 0x9E3779B97F4A7C15U) ^ (static_cast<quint64>(row) * 0xC2B2AE3D27D4EB4FU);
    return static_cast<int>((hash >> 32U) & static_cast<quint64>(m_slots.size() - 1));
}

void CloseSearch::insert(const DefPoint &point)
{
    ++m_count;
    if (!isFinite(point.x, point.y)) // is equal to no query
        return;
    int slot = slotOf(cellOf(point.x), cellOf(point.y));
    while (!std::isnan(m_slots.at(slot).x))
        slot = (slot + 1) & (m_slots.size() - 1);
    m_slots[slot] = point;
}

void CloseSearch::reset(const QVector<DefPoint> &points)
{
    int size = 64;
    while (size < 2 * points.size())
        size *= 2;
    m_slots.fill(DefPoint{QString(), nowhere, nowhere}, size);
    m_count = 0;
    for (const DefPoint &point : points)
        insert(point);
}

void CloseSearch::addLast(const QVector<DefPoint> &points)
{
    if (!m_ordered.empty())
        m_ordered.insert(points.last());
    if (2 * points.size() > m_slots.size())
        reset(points);
    else
        insert(points.last());
}

/// A query on its way.
struct CloseSearch::Query
{
    const QVector<DefPoint> &points;
    double x;
    double y;
    double best = reach * reach; ///< squared; what lies farther away is not equal, whoever is nearer
    const DefPoint *found = nullptr;
};

// Of two points at one distance from the query. The sorted points are examined from the first that is not left of it:
// that one, the one before it, then on to the right, then on to the left.
bool CloseSearch::isExaminedFirst(const Query &query, const DefPoint &a, const DefPoint &b)
{
    const bool aLeft = a.x < query.x;
    const bool bLeft = b.x < query.x;
    if (aLeft == bLeft)
        return aLeft ? sortsBefore(b, a) : sortsBefore(a, b);
    if (m_ordered.empty())
        m_ordered.insert(query.points.begin(), query.points.end());
    const DefPoint lowest{QString(), query.x, -std::numeric_limits<double>::infinity()};
    const auto bound = m_ordered.lower_bound(lowest);
    const DefPoint &left = aLeft ? a : b;
    const DefPoint &right = aLeft ? b : a;
    const bool leftFirst = !isSamePlace(*bound, right) && isSamePlace(*std::prev(bound), left);
    return leftFirst == aLeft;
}

void CloseSearch::searchCell(qint64 column, qint64 row, Query &query)
{
    const int last = m_slots.size() - 1;
    for (int slot = slotOf(column, row); !std::isnan(m_slots.at(slot).x); slot = (slot + 1) & last) {
        const DefPoint &point = m_slots.at(slot);
        const double distance = squaredDistance(point.x, point.y, query.x, query.y);
        if (!(distance <= query.best) || &point == query.found)
            continue;
        if (query.found == nullptr || distance < query.best || isExaminedFirst(query, point, *query.found)) {
            query.best = distance;
            query.found = &point;
        }
    }
}

const DefPoint *CloseSearch::find(const QVector<DefPoint> &points, double x, double y)
{
    if (m_count == 0 || !isFinite(x, y))
        return nullptr;
    const qint64 left = cellOf(x - reach);
    const qint64 right = cellOf(x + reach);
    const qint64 bottom = cellOf(y - reach);
    const qint64 top = cellOf(y + reach);
    Query query{points, x, y};
    searchCell(left, bottom, query);
    if (right != left)
        searchCell(right, bottom, query);
    if (top != bottom)
        searchCell(left, top, query);
    if (right != left && top != bottom)
        searchCell(right, top, query);
    const bool found = query.found != nullptr && *query.found == DefPoint{QString(), x, y};
    return found ? query.found : nullptr;
}

/// What a range of places lies in; it may be larger than they need.
struct NearestSearch::Box
{
    double low[2];
    double high[2];
};

/// A query on its way.
struct NearestSearch::Query
{
    QPointF p;
    double best = std::numeric_limits<double>::max();
    const Place *found = nullptr;
};

NearestSearch::NearestSearch(const QVector<DefPoint> &points) : m_points(points)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    Box box{{infinity, infinity}, {-infinity, -infinity}};
    m_places.reserve(points.size());
    for (int i = 0; i < points.size(); ++i) {
        const DefPoint &point = points.at(i);
        if (!isFinite(point.x, point.y) || (i > 0 && isSamePlace(points.at(i - 1), point)))
            continue;
        m_places.append(Place{point.x, point.y, i, 0});
        box = Box{{std::min(box.low[0], point.x), std::min(box.low[1], point.y)},
                  {std::max(box.high[0], point.x), std::max(box.high[1], point.y)}};
    }
    build(0, m_places.size(), box);
}

// Halves the places between begin and end along the longer side of their box, and goes on with both halves.
void NearestSearch::build(int begin, int end, Box box)
{
    if (end - begin <= leafSize)
        return;
    const int middle = begin + (end - begin) / 2;
    Place *const places = m_places.data();
    Place &node = places[middle];
    const int axis = box.high[0] - box.low[0] >= box.high[1] - box.low[1] ? 0 : 1;
    if (axis == 0)
        std::nth_element(places + begin, &node, places + end, [](const Place &a, const Place &b) { return a.x < b.x; });
    else
        std::nth_element(places + begin, &node, places + end, [](const Place &a, const Place &b) { return a.y < b.y; });
    node.axis = axis;
    Box lower = box;
    Box upper = box;
    lower.high[axis] = upper.low[axis] = axis == 0 ? node.x : node.y;
    build(begin, middle, lower);
    build(middle + 1, end, upper);
}

/// The turn in which findNearestPoint() examines the point at \a index for a query at \a x.
int NearestSearch::rank(int index, double x) const
{
    const auto isLeft = [](const DefPoint &point, double bound) { return point.x < bound; };
    const auto begin = m_points.begin();
    const int bound = static_cast<int>(std::lower_bound(begin, m_points.end(), x, isLeft) - begin);
    if (index >= bound)
        return index == bound ? 0 : index - bound + 1;
    return index == bound - 1 ? 1 : m_points.size() - index;
}

// Of the points at one place the first that findNearestPoint() examines; from the left it comes to the last of them.
int NearestSearch::firstExamined(const Place &place, double x) const
{
    const auto first = m_points.begin() + place.first;
    if (!(place.x < x) || first + 1 == m_points.end() || !isSamePlace(*(first + 1), *first))
        return place.first;
    return static_cast<int>(std::upper_bound(first, m_points.end(), *first, sortsBefore) - m_points.begin()) - 1;
}

/// Whether findNearestPoint() would come to \a place before the one found so far, which is as far away.
bool NearestSearch::isExaminedFirst(const Place &place, const Query &query) const
{
    const double x = query.p.x();
    return query.found != nullptr && rank(firstExamined(place, x), x) < rank(firstExamined(*query.found, x), x);
}

void NearestSearch::examine(const Place &place, Query &query) const
{
    const double distance = squaredDistance(place.x, place.y, query.p.x(), query.p.y());
    if (distance > query.best || (distance == query.best && !isExaminedFirst(place, query)))
        return;
    query.best = distance;
    query.found = &place;
}

void NearestSearch::search(int begin, int end, Query &query) const
{
    if (end - begin <= leafSize) {
        for (int i = begin; i < end; ++i)
            examine(m_places.at(i), query);
        return;
    }
    const int middle = begin + (end - begin) / 2;
    const Place &node = m_places.at(middle);
    const double offset = node.axis == 0 ? node.x - query.p.x() : node.y - query.p.y();
    examine(node, query);
    if (offset > 0)
        search(begin, middle, query);
    else
        search(middle + 1, end, query);
    if (offset * offset > query.best)
        return;
    if (offset > 0)
        search(middle + 1, end, query);
    else
        search(begin, middle, query);
}

const DefPoint *NearestSearch::find(const QPointF &p) const
{
    Query query{p};
    if (isFinite(p.x(), p.y()))
        search(0, m_places.size(), query);
    return query.found == nullptr ? nullptr : &m_points.at(firstExamined(*query.found, p.x()));
}
