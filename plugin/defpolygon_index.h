#pragma once

#include "defpolygon.h"
#include "defpolygon_kdtree.h"

#include <QVector>

#include <cstddef>
#include <set>
#include <vector>

/// Answers findNearestPoint() for a list that grows, as long as only answers equal to the query count.
///
/// The points lie in a hash of square cells larger than the tolerance, so that a query looks into one to four of them.
/// What is too much for a cell, as in a map in degrees, lies in trees through which every query goes. Finite points
/// must be distinct, as the known points of an import are.
class KnownPointIndex
{
public:
    /// How many points have been taken in.
    int count() const { return m_count; }

    /// Takes in \a points, in place of all that was taken in before.
    void reset(const QVector<DefPoint> &points);

    /// Takes in the last of \a points, which is new.
    void addLast(const QVector<DefPoint> &points);

    /// Among \a points, which have been taken in: the one that findNearestPoint() gives for them in order, if it is
    /// equal to (x, y); else null.
    const DefPoint *find(const QVector<DefPoint> &points, double x, double y);

private:
    using Entry = KdTree::Entry;
    using Order = bool (*)(const DefPoint &, const DefPoint &);
    struct Query;

    std::size_t slotOf(qint64 column, qint64 row) const;
    void insert(const DefPoint &point);
    void searchCell(qint64 column, qint64 row, Query &query);
    void rebuildOverflowTrees();
    bool isExaminedFirst(const Query &query, const DefPoint &a, const DefPoint &b);

    /// A power of two of them, at most half filled; the points of a cell follow its slot. An empty one has no x.
    std::vector<Entry> m_slots;
    int m_count = 0;
    std::vector<Entry> m_overflow;       ///< of points that found no empty slot near their own
    std::vector<KdTree> m_overflowTrees; ///< of the crowd, each of fewer than half as many as the one before
    std::size_t m_treeCount = 0;         ///< how many of the crowd are in the trees
    std::set<DefPoint, Order> m_ordered{lessNanLast}; ///< all points, once a tie has asked for their order
};

/// Answers findNearestPoint() for a sorted list that stays as it is, in a time that is usually logarithmic, wherever
/// the points lie.
class NearestPointIndex
{
public:
    /// Takes in \a points, sorted as sortPoints() does.
    explicit NearestPointIndex(const QVector<DefPoint> &points);

    /// What findNearestPoint() gives for the points and \a p; the pointer is good for the life of this object.
    const DefPoint *find(const QPointF &p) const;

private:
    struct Query;

    int firstExamined(const KdTree::Entry &place, double x) const;

    QVector<DefPoint> m_points;
    KdTree m_tree; ///< of the places where they lie, each with the first point there
};
