#include "defpolygon_tree.h"

#include <algorithm>
#include <limits>
#include <utility>

/// What a range of places lies in; it may be larger than they need.
struct PlaceTree::Box
{
    double low[2];
    double high[2];
};

PlaceTree::PlaceTree(std::vector<Place> places) : m_places(std::move(places))
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    Box box{{infinity, infinity}, {-infinity, -infinity}};
    for (const Place &place : m_places) {
        box = Box{{std::min(box.low[0], place.x), std::min(box.low[1], place.y)},
                  {std::max(box.high[0], place.x), std::max(box.high[1], place.y)}};
    }
    build(0, size(), box);
}

// Halves the places between begin and end along the longer side of their box, and goes on with both halves.
void PlaceTree::build(std::size_t begin, std::size_t end, Box box)
{
    if (end - begin <= leafSize)
        return;
    const std::size_t middle = begin + (end - begin) / 2;
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
