#include "defpolygon.h"

#include "digit.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace {

/// A ring whose area is at most this counts as one without area.
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

/// A designation as objects are ordered by it, with the object's place before the sort.
struct SortKey
{
    QString prefix;
    int num;
    int place;
};

bool operator<(const SortKey &a, const SortKey &b)
{
    const int order = QString::compare(a.prefix, b.prefix, Qt::CaseInsensitive);
    return order != 0 ? order < 0 : a.num < b.num;
}

/// The nearest point so far, while the candidates are examined one by one.
class Nearest
{
public:
    explicit Nearest(const QPointF &p) : m_p(p) {}

    /// Takes \a point when it is strictly closer than the one taken before.
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

    /// True when the distance along X alone rules \a point out, and with it all that lie beyond.
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

// Splits as the expression ^(.*?)(\d+)$ does, which takes very long for many digits with something after them: a line
// feed may stand behind the digits but nowhere else, and a text with half a character is not split.
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
        keys[i].place = i;
    }
    std::sort(keys.begin(), keys.end());

    // The sorted objects move back into their own vector: others hold pointers to its elements.
    QVector<DefPolygon> sorted;
    sorted.reserve(objects.size());
    for (const SortKey &key : qAsConst(keys))
        sorted.append(std::move(objects[key.place]));
    std::move(sorted.begin(), sorted.end(), objects.begin());
}

void sortPoints(QVector<DefPoint> &points)
{
    // Not operator<: a file may say "nan", for which that is no order, and std::sort would run out of its range.
    std::sort(points.begin(), points.end(), [](const DefPoint &a, const DefPoint &b) { return lessNanLast(a, b); });
}

// Written by hand, since std::lower_bound may refuse texts that come unsorted, and their answer depends on the very
// steps.
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
