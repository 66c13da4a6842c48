#include "defpolygon.h"

#include "digit.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace {

/// A ring with an absolute area up to this is degenerate.
constexpr double degenerateArea = 1e-12;

QPointF meanOf(const QVector<DefPoint> &ring)
{
    double x = 0;
    double y = 0;
    for (const DefPoint &vertex : ring) {
        x += vertex.x;
        y += vertex.y;
    }
    return {x / ring.size(), y / ring.size()};
}

/// Sort key of an object, with its index before the sort.
struct SortKey
{
    QString prefix;
    int num;
    int index;
};

bool operator<(const SortKey &a, const SortKey &b)
{
    const int order = QString::compare(a.prefix, b.prefix, Qt::CaseInsensitive);
    return order != 0 ? order < 0 : a.num < b.num;
}

/// The nearest of the points examined so far.
class Nearest
{
public:
    explicit Nearest(const QPointF &p) : m_p(p) {}

    /// Keeps \a point if it is strictly closer than the one kept before.
    void examine(const DefPoint &point)
    {
        const double dx = point.x - m_p.x();
        const double dy = point.y - m_p.y();
        const double distance = dx * dx + dy * dy;
        if (distance < m_best) {
            m_best = distance;
            m_point = &point;
        }
    }

    /// True if the distance along X alone rules out \a point and all points beyond it.
    bool isOutOfReach(const DefPoint &point) const
    {
        const double dx = point.x - m_p.x();
        return dx * dx > m_best;
    }

    const DefPoint *point() const { return m_point; }

private:
    QPointF m_p;
    double m_best = std::numeric_limits<double>::max();
    const DefPoint *m_point = nullptr;
};

} // namespace

QPointF DefPolygon::centroid() const
{
    if (contours.isEmpty() || contours.first().isEmpty())
        return {0, 0};
    const QVector<DefPoint> &ring = contours.first();
    if (ring.size() == 1)
        return {ring.first().x, ring.first().y};

    double sum = 0;
    double sx = 0;
    double sy = 0;
    for (int i = 0; i < ring.size(); ++i) {
        const DefPoint &a = ring.at(i);
        const DefPoint &b = ring.at((i + 1) % ring.size());
        const double cross = a.x * b.y - b.x * a.y;
        sum += cross;
        sx += (a.x + b.x) * cross;
        sy += (a.y + b.y) * cross;
    }
    const double area = 0.5 * sum;
    if (std::fabs(area) <= degenerateArea)
        return meanOf(ring);
    return {sx / (6 * area), sy / (6 * area)};
}

// Equivalent to ^(.*?)(\d+)$ without its quadratic backtracking. As in the expression, the digits may be followed by a
// final line feed, the prefix contains none, and a text with a lone surrogate does not match.
void splitDef(const QString &def, QString &prefix, int &num)
{
    const int end = def.endsWith(QLatin1Char('\n')) ? def.size() - 1 : def.size();
    int begin = end;
    while (begin > 0 && isDigit(def.at(begin - 1)))
        --begin;
    const QStringRef text = def.leftRef(begin);
    const bool hasNumber = begin < end && !text.contains(QLatin1Char('\n')) && def.isValidUtf16();
    prefix = hasNumber ? text.toString() : def;
    num = hasNumber ? def.midRef(begin, end - begin).toInt() : -1;
}

void sortObjects(QVector<DefPolygon> &objects)
{
    QVector<SortKey> keys(objects.size());
    for (int i = 0; i < keys.size(); ++i) {
        splitDef(objects.at(i).def, keys[i].prefix, keys[i].num);
        keys[i].index = i;
    }
    std::sort(keys.begin(), keys.end());

    // The models hold pointers to the elements, so the sorted objects move back into the same vector.
    QVector<DefPolygon> sorted;
    sorted.reserve(objects.size());
    for (const SortKey &key : qAsConst(keys))
        sorted.append(std::move(objects[key.index]));
    std::move(sorted.begin(), sorted.end(), objects.begin());
}

void sortPoints(QVector<DefPoint> &points)
{
    // A file may contain "nan". operator< is not a strict weak ordering for NaN; std::sort would read out of bounds.
    std::sort(points.begin(), points.end(), [](const DefPoint &a, const DefPoint &b) { return lessNanLast(a, b); });
}

// Hand-written: the input may be unsorted, which std::lower_bound forbids, and the result depends on the probe
// sequence.
int bisectByX(const QVector<DefPoint> &points, double x)
{
    int first = 0;
    int count = points.size();
    while (count > 0) {
        const int half = count / 2;
        if (points.at(first + half).x < x) {
            first += half + 1;
            count -= half + 1;
        } else {
            count = half;
        }
    }
    return first;
}

const DefPoint *findNearestPoint(const QVector<DefPoint> &points, const QPointF &p)
{
    if (!std::isfinite(p.x()) || !std::isfinite(p.y())) // no distance is finite
        return nullptr;
    const int bound = bisectByX(points, p.x());
    Nearest nearest(p);
    if (bound < points.size())
        nearest.examine(points.at(bound));
    if (bound > 0)
        nearest.examine(points.at(bound - 1));
    for (int i = bound + 1; i < points.size() && !nearest.isOutOfReach(points.at(i)); ++i)
        nearest.examine(points.at(i));
    for (int i = bound - 2; i >= 0 && !nearest.isOutOfReach(points.at(i)); --i)
        nearest.examine(points.at(i));
    return nearest.point();
}
