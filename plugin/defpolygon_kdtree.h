#pragma once

#include <cstddef>
#include <vector>

/// Places on the map in a k-d tree, for searches whose time is usually logarithmic, wherever the entries lie.
class KdTree
{
public:
    struct Entry
    {
        double x;
        double y;
        int point; ///< the number by which the owner knows it

        /// Along which a entry halves its range when it has those before and after it for children: 0 for x, 1 for y.
        int axis = 0;
    };

    KdTree() = default;
    /// Takes in \a entries, whose coordinates are finite.
    explicit KdTree(std::vector<Entry> entries);

    std::size_t size() const { return m_entries.size(); }

    /// Has \a query examine all entries that are no farther from it than its best, in no order.
    ///
    /// A query has coordinates x and y, the squared distance best, which it lowers as it finds something, and
    /// examine(), which takes a entry.
    template <class Query>
    void search(Query &query) const
    {
        search(0, size(), query);
    }

private:
    struct Box;

    /// Places that are looked through one by one rather than halved further.
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
