#pragma once

#include <cstddef>
#include <vector>

/// A k-d tree: finds nearby positions in O(log n) on average for any distribution.
class KdTree
{
public:
    struct Entry
    {
        double x;
        double y;
        int point; ///< the owner's index of the point

        int axis = 0; ///< set by the tree: an inner node splits its range by x (0) or y (1)
    };

    KdTree() = default;
    /// Builds a tree of \a entries, whose coordinates are finite.
    explicit KdTree(std::vector<Entry> entries);

    std::size_t size() const { return m_entries.size(); }

    /// Calls query.examine() for all entries within the squared distance query.best and for some others, in any order.
    ///
    /// A query has x, y, best (the squared search radius, which it lowers) and examine(const Entry &).
    template <class Query>
    void search(Query &query) const
    {
        search(0, size(), query);
    }

private:
    struct Box;

    /// Ranges up to this size are searched linearly; halving them further gains nothing.
    static constexpr std::size_t leafSize = 32;

    void build(std::size_t begin, std::size_t end, Box box);
    template <class Query>
    void search(std::size_t begin, std::size_t end, Query &query) const;

    std::vector<Entry> m_entries;
};

template <class Query>
void KdTree::search(std::size_t begin, std::size_t end, Query &query) const
{
    const Entry *const entries = m_entries.data();
    if (end - begin <= leafSize) {
        for (std::size_t i = begin; i < end; ++i)
            query.examine(entries[i]);
        return;
    }
    const std::size_t middle = begin + (end - begin) / 2;
    const Entry &node = entries[middle];
    const double offset = node.axis == 0 ? node.x - query.x : node.y - query.y;
    query.examine(node);
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
