#pragma once

#include "defpolygon.h"
#include "defpolygon_kdtree.h"

#include <QRandomGenerator>
#include <QVector>

#include <set>
#include <vector>

/// Finds the known point that equals a position, in a growing list; the nearest one if several do.
///
/// A spatial hash of square cells larger than the tolerance: a query searches one to four cells. No two finite points
/// may have the same position.
class KnownPointIndex
{
public:
    /// Number of points in the index.
    int count() const { return m_count; }

    /// Replaces the content of the index by \a points.
    void reset(const QVector<DefPoint> &points);

    /// Adds the last of \a points; all others are already in the index.
    void addLast(const QVector<DefPoint> &points);

    /// Returns the point that findNearestPoint() would find if \a points were sorted; null if it does not equal (x, y).
    ///
    /// \a points is the indexed list, in any order. \a steps receives the number of entries examined, for tests.
    const DefPoint *find(const QVector<DefPoint> &points, double x, double y, int *steps = nullptr);

private:
    using Order = bool (*)(const DefPoint &, const DefPoint &);
    struct Query;
    struct Slot
    {
        bool isFree() const { return point < 0; }

        quint32 hash = 0; ///< of the point's cell
        int point = -1;   ///< index of the point; -1 in a free slot
    };

    static constexpr std::size_t smallestTable = 64;

    quint32 hashOf(qint64 column, qint64 row) const;
    std::size_t slotOf(quint32 hash) const;
    bool insert(Slot entry, int allowed);
    void grow();
    void searchCell(qint64 column, qint64 row, Query &query) const;
    bool isVisitedFirst(const Query &query, const DefPoint &a, const DefPoint &b);

    /// Open addressing; the size is a power of two, and at least half of the slots are free.
    std::vector<Slot> m_slots = std::vector<Slot>(smallestTable);
    quint64 m_columnFactor = QRandomGenerator::global()->generate64() | 1U;
    quint64 m_rowFactor = QRandomGenerator::global()->generate64() | 1U;
    int m_count = 0;
    KdTree m_overflow;                                ///< overflow of full cells
    std::set<DefPoint, Order> m_ordered{lessNanLast}; ///< all points; filled at the first tie that needs their order
};

/// A k-d tree for findNearestPoint() on a list that does not change: O(log n) on average if the list is sorted.
class NearestPointIndex
{
public:
    /// Copies \a points. Only points in the order of sortPoints() are indexed: among others the result of
    /// findNearestPoint() depends on its bisection, which no tree can reproduce.
    explicit NearestPointIndex(const QVector<DefPoint> &points = {});

    /// Same result as findNearestPoint() for the points. The pointer is valid while this object exists.
    ///
    /// \a steps receives the number of entries examined, for tests.
    const DefPoint *find(const QPointF &p, int *steps = nullptr) const;

private:
    struct Query;

    int firstVisited(const KdTree::Entry &entry, double x) const;

    QVector<DefPoint> m_points;
    bool m_isSorted;
    KdTree m_tree; ///< one entry for each distinct position, with the first point there
};
