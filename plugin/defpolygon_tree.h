#pragma once

#include <cstddef>
#include <vector>

/// Places on the map in a k-d tree, for searches whose time is usually logarithmic, wherever the places lie.
class PlaceTree
{
public:
    struct Place
    {
        double x;
        double y;
        int point; ///< the number by which the owner knows it

        /// Along which a place halves its range when it has those before and after it for children: 0 for x, 1 for y.
        int axis = 0;
    };

    PlaceTree() = default;
    /// Takes in \a places, whose coordinates are finite.
    explicit PlaceTree(std::vector<Place> places);

    std::size_t size() const { return m_places.size(); }

    /// Has \a query examine all places that are no farther from it than its best, in no order.
    ///
    /// A query has coordinates x and y, the squared distance best, which it lowers as it finds something, and
    /// examine(), which takes a place.
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

    std::vector<Place> m_places;
};

template <class Query>
void PlaceTree::search(std::size_t begin, std::size_t end, Query &query) const
{
    const Place *const places = m_places.data();
    if (end - begin <= leafSize) {
        for (std::size_t i = begin; i < end; ++i)
            query.examine(places[i]);
        return;
    }
    const std::size_t middle = begin + (end - begin) / 2;
    const Place &node = places[middle];
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
