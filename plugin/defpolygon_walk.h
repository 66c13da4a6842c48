#pragma once

#include "defpolygon.h"
#include "defpolygon_tree.h"

#include <QVector>

#include <vector>

/// Answers findNearestPoint() for a list in any order that stays as it is.
///
/// Where the points do not stand in order, the walk stops at the first one that is too far off along x, whatever lies
/// behind it; and it may come to very many before. So it leaps over blocks of points in which it would not stop, with
/// what is nearest in each from a tree.
class WalkSearch
{
public:
    /// Takes in \a points, in whose order the walk goes.
    explicit WalkSearch(const QVector<DefPoint> &points);

    /// What findNearestPoint() gives for the points and \a p; the pointer is good for the life of this object.
    const DefPoint *find(const QPointF &p) const;

private:
    struct Query;

    /// Points that stand one after the other.
    struct Block
    {
        double left;    ///< the least x
        double right;   ///< the greatest x
        PlaceTree tree; ///< of those whose coordinates are finite
    };

    Block blockFrom(int begin) const;
    void walk(int i, Query &query) const;
    bool leap(int i, Query &query) const;

    QVector<DefPoint> m_points;
    std::vector<Block> m_blocks; ///< of all points but the last few
};
