#pragma once

#include "picturemap.h"

#include <QVector>

/// Finds the boxes that touch a rectangle.
///
/// A bounding volume hierarchy, split at medians, so that a stray point far away costs nothing. Its nodes are stored in
/// depth-first order.
class PictureIndex
{
public:
    PictureIndex() = default;
    explicit PictureIndex(const QVector<PictureBox> &boxes);

    /// The touching boxes as indexes in ascending order. Empty boxes touch nothing.
    QVector<int> find(const PictureBox &box) const;

private:
    struct Node
    {
        PictureBox box;
        int next = 0;  ///< the node after this one's descendants
        int first = 0; ///< of a leaf, in m_order
        int last = 0;  ///< one past the leaf's last; equal to first for an inner node
    };

    void build(int first, int last);
    void split(int first, int middle, int last, bool alongX);

    QVector<PictureBox> m_boxes;
    QVector<int> m_order; ///< the boxes that are not empty; those of a node are contiguous
    QVector<Node> m_nodes;
};
