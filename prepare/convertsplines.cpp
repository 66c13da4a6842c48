// Between two knots a B-spline is a Bezier curve, whose control points are the blossom of the spline at these knots. A
// Bezier curve lies in the convex hull of its control points: if these are near the chord, the curve is, too; otherwise
// the curve is halved (de Casteljau). Rational curves are curves in space that are projected; while the weights are
// positive, the hull is that of the projected control points.

#include "convertsplines.h"

#include "convertarcs.h"

#include <algorithm>
#include <cmath>

namespace {

// Drawings have degrees up to 11. The work grows with the cube of the degree.
constexpr int maxDegree = 15;

// The curve between two knots is halved this often at most.
constexpr int maxDepth = 15;

// Of all curves, whose polylines are kept as text.
constexpr qint64 maxChordsOfCurves = 10000000;

struct Weighted
{
    double x = 0; ///< times w
    double y = 0;
    double w = 1;
};

using Bezier = std::vector<Weighted>;

Weighted mixed(const Weighted &a, const Weighted &b, double t)
{
    return {(1 - t) * a.x + t * b.x, (1 - t) * a.y + t * b.y, (1 - t) * a.w + t * b.w};
}

ContentVertex projected(const Weighted &p)
{
    return {p.x / p.w, p.y / p.w};
}

std::vector<double> uniformKnots(const SplineCurve &spline)
{
    const int count = static_cast<int>(spline.points.size());
    std::vector<double> knots;
    for (int i = 0; i <= count + spline.degree; ++i)
        knots.push_back(std::min(std::max(i - spline.degree, 0), count - spline.degree));
    return knots;
}

double distanceToChord(const ContentVertex &p, const ContentVertex &a, const ContentVertex &b)
{
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    const double square = dx * dx + dy * dy;
    const double along = square > 0 ? ((p.x - a.x) * dx + (p.y - a.y) * dy) / square : 0;
    const double t = std::min(1.0, std::max(0.0, along));
    return std::hypot(p.x - a.x - t * dx, p.y - a.y - t * dy);
}

/// The Bezier curves of a spline.
class SplinePieces
{
public:
    explicit SplinePieces(const SplineCurve &spline);

    /// Number of intervals between knots, some of which may be empty.
    int count() const { return static_cast<int>(m_points.size()) - m_degree; }
    bool isEmpty(int piece) const { return !(knot(piece + m_degree) < knot(piece + m_degree + 1)); }
    Bezier piece(int piece) const;

private:
    double knot(int index) const { return m_knots[static_cast<std::size_t>(index)]; }
    Weighted blossom(int piece, int ends) const;

    int m_degree;
    std::vector<double> m_knots;
    std::vector<Weighted> m_points;
};

SplinePieces::SplinePieces(const SplineCurve &spline)
    : m_degree(spline.degree),
      m_knots(spline.knots.empty() ? uniformKnots(spline) : spline.knots)
{
    for (std::size_t i = 0; i < spline.points.size(); ++i) {
        const double w = spline.weights.empty() ? 1 : spline.weights[i];
        m_points.push_back({spline.points[i].x * w, spline.points[i].y * w, w});
    }
}

// De Boor's algorithm with an argument of its own in each step: the end of the interval in the first \a ends of them,
// its beginning in the others.
Weighted SplinePieces::blossom(int piece, int ends) const
{
    const auto first = m_points.begin() + piece;
    Bezier points(first, first + m_degree + 1);
    for (int step = 1; step <= m_degree; ++step) {
        const double t = knot(piece + m_degree + (step <= ends ? 1 : 0));
        for (int i = m_degree; i >= step; --i) {
            const double begin = knot(piece + i);
            const double end = knot(piece + i + 1 + m_degree - step);
            points[static_cast<std::size_t>(i)] =
                mixed(points[static_cast<std::size_t>(i - 1)], points[static_cast<std::size_t>(i)],
                      (t - begin) / (end - begin));
        }
    }
    return points.back();
}

Bezier SplinePieces::piece(int piece) const
{
    Bezier curve;
    for (int ends = 0; ends <= m_degree; ++ends)
        curve.push_back(blossom(piece, ends));
    return curve;
}

/// Appends the chords of one spline.
class Flattener
{
public:
    Flattener(double deviation, std::size_t maxVertices, std::vector<ContentVertex> &vertices)
        : m_deviation(deviation),
          m_maxVertices(maxVertices),
          m_vertices(vertices)
    {
    }

    /// Replaces the vertices. Returns false if there are too many.
    bool appendAll(const SplinePieces &pieces);
    /// True if all chords are within the deviation.
    bool isExact() const { return m_isExact; }

private:
    bool append(const Bezier &curve, int depth);
    bool isFlat(const Bezier &curve) const;
    void appendVertex(const Weighted &end);

    double m_deviation;
    std::size_t m_maxVertices;
    std::vector<ContentVertex> &m_vertices;
    bool m_isExact = true;
};

// Not a number is flat, too: halving does not help.
bool Flattener::isFlat(const Bezier &curve) const
{
    if (std::isinf(m_deviation))
        return true;
    const ContentVertex first = projected(curve.front());
    const ContentVertex last = projected(curve.back());
    return std::all_of(curve.begin(), curve.end(), [&](const Weighted &p) {
        return !(p.w <= 0) && !(distanceToChord(projected(p), first, last) > m_deviation);
    });
}

// A curve with weights of both signs may pass through infinity.
void Flattener::appendVertex(const Weighted &end)
{
    if (std::fabs(end.w) <= 0) {
        m_isExact = false;
        return;
    }
    const ContentVertex vertex = projected(end);
    const ContentVertex &before = m_vertices.back();
    const bool isSame =
        !(vertex.x < before.x) && !(before.x < vertex.x) && !(vertex.y < before.y) && !(before.y < vertex.y);
    if (!isSame)
        m_vertices.push_back(vertex);
}

bool Flattener::append(const Bezier &curve, int depth)
{
    const bool flat = isFlat(curve);
    m_isExact = m_isExact && (flat || depth < maxDepth);
    if (flat || depth == maxDepth) {
        appendVertex(curve.back());
        return m_vertices.size() <= m_maxVertices;
    }
    Bezier right = curve;
    Bezier left;
    for (std::size_t size = right.size(); size > 0; --size) {
        left.push_back(right.front());
        for (std::size_t i = 0; i + 1 < size; ++i)
            right[i] = mixed(right[i], right[i + 1], 0.5);
    }
    return append(left, depth + 1) && append(right, depth + 1);
}

bool Flattener::appendAll(const SplinePieces &pieces)
{
    m_vertices.clear();
    for (int i = 0; i < pieces.count(); ++i) {
        if (pieces.isEmpty(i))
            continue;
        const Bezier curve = pieces.piece(i);
        if (m_vertices.empty())
            m_vertices.push_back(projected(curve.front()));
        if (!append(curve, 0))
            return false;
    }
    return true;
}

} // namespace

bool SplineCurve::isValid() const
{
    const int count = static_cast<int>(points.size());
    if (degree < 1 || degree > maxDegree || count <= degree)
        return false;
    if (!weights.empty() && weights.size() != points.size())
        return false;
    if (knots.empty())
        return true;
    return static_cast<int>(knots.size()) == count + degree + 1 && std::is_sorted(knots.begin(), knots.end()) &&
           knots[static_cast<std::size_t>(degree)] < knots[static_cast<std::size_t>(count)];
}

// Sixteen times the deviation takes a quarter of the chords.
bool CurveFlattener::flatten(const SplineCurve &spline, double deviation, std::vector<ContentVertex> &vertices)
{
    constexpr double roundingShare = 0.999;
    constexpr int maxAttempts = 8;
    const SplinePieces pieces(spline);
    const std::size_t maxVertices =
        std::max(static_cast<std::size_t>(maxChordsOfArc), static_cast<std::size_t>(pieces.count())) + 1;
    double allowed = roundingShare * deviation;
    for (int attempt = 0;; ++attempt) {
        const bool isLast = attempt == maxAttempts || m_chordCount > maxChordsOfCurves;
        Flattener flattener(isLast ? HUGE_VAL : allowed, maxVertices, vertices);
        const bool fits = flattener.appendAll(pieces);
        m_chordCount += static_cast<qint64>(vertices.size());
        if (fits || isLast)
            return flattener.isExact() && attempt == 0 && !isLast;
        allowed *= 16;
    }
}

double EllipseCurve::radius() const
{
    return std::hypot(axis.x, axis.y) * std::max(1.0, std::fabs(ratio));
}

// An ellipse is a stretched circle, of which no chord is farther from its arc than of the circle around it. With a
// multiple of four chords the ends of the axes are vertices.
bool CurveFlattener::flatten(const EllipseCurve &ellipse, double deviation, std::vector<ContentVertex> &vertices)
{
    constexpr double turn = 2 * 3.14159265358979323846;
    constexpr double fewChords = 64;
    const double wanted = 4 * std::ceil(turn / 8 / chordHalfAngle(ellipse.radius(), deviation));
    const double allowed = m_chordCount > maxChordsOfCurves ? fewChords : maxChordsOfArc;
    const bool isExact = wanted <= allowed;
    const int count = static_cast<int>(isExact ? wanted : allowed);
    vertices.clear();
    for (int i = 0; i < count; ++i) {
        const double along = std::cos(turn * i / count);
        const double across = std::sin(turn * i / count) * ellipse.ratio;
        vertices.push_back({ellipse.centre.x + along * ellipse.axis.x - across * ellipse.axis.y,
                            ellipse.centre.y + along * ellipse.axis.y + across * ellipse.axis.x});
    }
    vertices.push_back(vertices.front());
    m_chordCount += count;
    return isExact;
}
