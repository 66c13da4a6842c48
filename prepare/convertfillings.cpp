#include "convertfillings.h"

#include "defpolygon.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

bool isNear(const ContentVertex &a, const ContentVertex &b)
{
    return std::fabs(a.x - b.x) <= DefPoint::epsilon && std::fabs(a.y - b.y) <= DefPoint::epsilon;
}

/// A closed contour without the repeated vertex.
struct Ring
{
    const ContentVertex *vertices = nullptr;
    std::size_t count = 0;
    double left = 0;
};

// Returns a ring of no vertices for an open contour.
Ring toRing(const ConvertContent &content, std::size_t contour)
{
    const ContentVertex *const first = &content.vertices[content.vertexBegin(contour)];
    const std::size_t count = content.vertexCount(contour) - 1;
    if (count < 3 || !isNear(first[0], first[count]))
        return {};
    const auto *const left = std::min_element(first, first + count,
                                              [](const ContentVertex &a, const ContentVertex &b) { return a.x < b.x; });
    return {first, count, left->x};
}

// Compares from one vertex of b on, in both directions.
bool isSame(const Ring &a, const Ring &b, std::size_t start)
{
    bool forwards = true;
    bool backwards = true;
    for (std::size_t i = 0; i < a.count && (forwards || backwards); ++i) {
        forwards = forwards && isNear(a.vertices[i], b.vertices[(start + i) % b.count]);
        backwards = backwards && isNear(a.vertices[i], b.vertices[(start + b.count - i) % b.count]);
    }
    return forwards || backwards;
}

bool isSame(const Ring &a, const Ring &b)
{
    // A ring may pass a place several times, but comparing from each of very many would take long.
    constexpr int maxStarts = 8;
    int starts = 0;
    for (std::size_t start = 0; start < b.count && a.count == b.count && starts < maxStarts; ++start) {
        if (!isNear(a.vertices[0], b.vertices[start]))
            continue;
        if (isSame(a, b, start))
            return true;
        ++starts;
    }
    return false;
}

/// The closed lines, sorted by their leftmost vertex.
class DrawnRings
{
public:
    explicit DrawnRings(const ConvertContent &content);

    bool contain(const Ring &ring) const;

private:
    std::vector<Ring> m_rings;
};

DrawnRings::DrawnRings(const ConvertContent &content)
{
    for (std::size_t i = 0; i < content.objects.size(); ++i) {
        for (std::size_t c = content.contourBegin(i); c < content.objects[i].contourEnd; ++c) {
            const Ring ring = content.objects[i].isArea ? Ring() : toRing(content, c);
            if (ring.count > 0)
                m_rings.push_back(ring);
        }
    }
    std::sort(m_rings.begin(), m_rings.end(), [](const Ring &a, const Ring &b) { return a.left < b.left; });
}

bool DrawnRings::contain(const Ring &ring) const
{
    const double margin = 2 * DefPoint::epsilon;
    auto it = std::lower_bound(m_rings.begin(), m_rings.end(), ring.left - margin,
                               [](const Ring &drawn, double x) { return drawn.left < x; });
    for (; it != m_rings.end() && it->left <= ring.left + margin; ++it) {
        if (isSame(ring, *it))
            return true;
    }
    return false;
}

bool isFilling(const ConvertContent &content, std::size_t object, const DrawnRings &drawn)
{
    for (std::size_t c = content.contourBegin(object); c < content.objects[object].contourEnd; ++c) {
        const Ring ring = toRing(content, c);
        if (ring.count == 0 || !drawn.contain(ring))
            return false;
    }
    return true;
}

/// Moves the objects that stay to the front.
class Compaction
{
public:
    explicit Compaction(ConvertContent &content) : m_content(content) {}

    void keep(std::size_t object, std::size_t contourBegin, std::size_t vertexBegin);
    void finish();

private:
    ConvertContent &m_content;
    std::size_t m_objectEnd = 0;
    std::size_t m_contourEnd = 0;
    std::size_t m_vertexEnd = 0;
};

void Compaction::keep(std::size_t object, std::size_t contourBegin, std::size_t vertexBegin)
{
    const std::size_t contourEnd = m_content.objects[object].contourEnd;
    for (std::size_t c = contourBegin; c < contourEnd; ++c) {
        const std::size_t vertexEnd = m_content.contourEnds[c];
        for (; vertexBegin < vertexEnd; ++vertexBegin)
            m_content.vertices[m_vertexEnd++] = m_content.vertices[vertexBegin];
        m_content.contourEnds[m_contourEnd++] = m_vertexEnd;
    }
    if (m_objectEnd != object)
        m_content.objects[m_objectEnd] = std::move(m_content.objects[object]);
    m_content.objects[m_objectEnd++].contourEnd = m_contourEnd;
}

void Compaction::finish()
{
    m_content.objects.resize(m_objectEnd);
    m_content.contourEnds.resize(m_contourEnd);
    m_content.vertices.resize(m_vertexEnd);
}

} // namespace

std::vector<bool> findFillings(const ConvertContent &content)
{
    std::vector<bool> fills(content.objects.size(), false);
    const auto isArea = [](const ContentObject &object) { return object.isArea; };
    if (std::none_of(content.objects.begin(), content.objects.end(), isArea))
        return fills;
    const DrawnRings drawn(content);
    for (std::size_t i = 0; i < content.objects.size(); ++i)
        fills[i] = content.objects[i].isArea && isFilling(content, i, drawn);
    return fills;
}

void removeFillings(ConvertContent &content)
{
    const std::vector<bool> fills = findFillings(content);
    const auto count = std::count(fills.begin(), fills.end(), true);
    if (count == 0)
        return;
    content.leftOut[QStringLiteral("filling")] += count;
    Compaction kept(content);
    std::size_t contour = 0;
    std::size_t vertex = 0;
    for (std::size_t i = 0; i < fills.size(); ++i) {
        const std::size_t contourEnd = content.objects[i].contourEnd;
        const std::size_t vertexEnd = content.contourEnds[contourEnd - 1];
        if (!fills[i])
            kept.keep(i, contour, vertex);
        contour = contourEnd;
        vertex = vertexEnd;
    }
    kept.finish();
}
