#pragma once

#include "defpolygon.h"
#include "defpolygon_kdtree.h"

#include <QRandomGenerator>
#include <QVector>

#include <set>
#include <vector>

/// Answers findNearestPoint() for a growing list, as far as an answer equal to the query matters.
///
/// A spatial hash: the points are hashed by square cells larger than the tolerance, so a query looks into one to four
/// cells. Finite points must be distinct, as the known points of an import are.
class KnownPointIndex
{
public:
    /// Number of points in the index.
    int count() const { return m_count; }

    /// Replaces the content of the index by \a points.
    void reset(const QVector<DefPoint> &points);

    /// Adds the last of \a points, whose others are in the index.
    void addLast(const QVector<DefPoint> &points);

    /// Returns what findNearestPoint() returns for the sorted \a points if that equals (x, y), else null.
    ///
    /// \a points is the indexed list; it need not be sorted. \a steps receives the number of entries examined, for
    /// tests.
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

    /// Open addressing; the size is a power of two, at least half of the slots are free.
    std::vector<Slot> m_slots = std::vector<Slot>(smallestTable);
    quint64 m_columnFactor = QRandomGenerator::global()->generate64() | 1U;
    quint64 m_rowFactor = QRandomGenerator::global()->generate64() | 1U;
    int m_count = 0;
    KdTree m_overflow;                                ///< points of crowded cells
    std::set<DefPoint, Order> m_ordered{lessNanLast}; ///< all points; filled when a tie first asks for their order
};

/// Answers findNearestPoint() for a sorted list that does not change, on average in O(log n).
class NearestPointIndex
{
public:
    /// Copies \a points, which are in the order of sortPoints().
    explicit NearestPointIndex(const QVector<DefPoint> &points);

    /// Returns what findNearestPoint() returns for the points and \a p. The pointer is valid as long as this object.
    ///
    /// \a steps receives the number of entries examined, for tests.
    const DefPoint *find(const QPointF &p, int *steps = nullptr) const;

private:
    struct Query;

    int firstVisited(const KdTree::Entry &entry, double x) const;

    QVector<DefPoint> m_points;
    KdTree m_tree; ///< one entry for each distinct position, with the first point there
};
