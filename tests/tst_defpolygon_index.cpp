#include "defpolygon_index.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

using Places = QVector<QPointF>;

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

/// Distribution of random coordinates: on a grid, optionally with some of them off the grid or not finite.
struct Layout
{
    double originX = 0;
    double originY = 0;
    double stepX = 0.01;
    double stepY = 0.01;
    int columns = 20;
    int rows = 20;
    double offset = 0;        ///< moves a third of the coordinates off the grid, in either direction
    bool hasSpecials = false; ///< one in eight coordinates is NaN, infinite, -0 or huge
    int maxKnownPoints = 40;  ///< before duplicates are removed
};

double randomCoordinate(QRandomGenerator &random, double origin, double step, int count, const Layout &layout)
{
    if (layout.hasSpecials && random.bounded(8) == 0) {
        const double specials[] = {notANumber, infinity, -infinity, -0.0, 0.0, 1e15, 1e200, -1e308, 5e-324};
        return specials[random.bounded(9)];
    }
    const double offset = random.bounded(2) == 0 ? layout.offset * (random.bounded(3) - 1) : 0;
    return origin + random.bounded(count) * step + offset;
}

DefPoint randomPoint(QRandomGenerator &random, const Layout &layout, int number)
{
    const double x = randomCoordinate(random, layout.originX, layout.stepX, layout.columns, layout);
    const double y = randomCoordinate(random, layout.originY, layout.stepY, layout.rows, layout);
    return DefPoint{QString::number(number), x, y};
}

QVector<DefPoint> sortedRandomPoints(QRandomGenerator &random, const Layout &layout, int count)
{
    QVector<DefPoint> points;
    for (int i = 0; i < count; ++i)
        points.append(randomPoint(random, layout, i));
    sortPoints(points);
    return points;
}

/// Points at distinct random places in a square, sorted.
QVector<DefPoint> pointsInSquare(QRandomGenerator &random, double size, int count)
{
    QVector<DefPoint> points;
    for (int i = 0; i < count; ++i)
        points.append(
            DefPoint{QString(), 5000.02 + size * random.generateDouble(), 40.02 + size * random.generateDouble()});
    sortPoints(points);
    return points;
}

/// Reference implementation of findNearestPoint() for sorted points: examines all of them in the documented order.
const DefPoint *nearestOfAll(const QVector<DefPoint> &points, const QPointF &p)
{
    const auto isLeft = [&p](const DefPoint &point) { return point.x < p.x(); };
    const auto bound = static_cast<int>(std::count_if(points.begin(), points.end(), isLeft));
    const DefPoint *nearest = nullptr;
    double best = std::numeric_limits<double>::max();
    const auto examine = [&](int i) {
        if (i < 0 || i >= points.size())
            return;
        const double distance =
            (points.at(i).x - p.x()) * (points.at(i).x - p.x()) + (points.at(i).y - p.y()) * (points.at(i).y - p.y());
        if (distance < best) {
            best = distance;
            nearest = &points.at(i);
        }
    };
    examine(bound);
    for (int i = bound - 1; i < points.size(); ++i)
        examine(i);
    for (int i = bound - 2; i >= 0; --i)
        examine(i);
    return nearest;
}

/// Describes the difference between two answers to a query at \a p; empty if there is none.
QString difference(const DefPoint *found, const DefPoint *expected, const QPointF &p)
{
    const QString defs[] = {found != nullptr ? found->def : QStringLiteral("none"),
                            expected != nullptr ? expected->def : QStringLiteral("none")};
    if (defs[0] == defs[1])
        return QString();
    const QString place = QString::number(p.x(), 'g', 17) + QLatin1Char(' ') + QString::number(p.y(), 'g', 17);
    return QStringLiteral("%1 instead of %2 for %3").arg(defs[0], defs[1], place);
}

} // namespace

Q_DECLARE_METATYPE(Layout)

/// findNearestPoint() and both indexes, which must give the same answers, even for ties and special numbers.
class tst_DefPolygonIndex : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nearestPointIsFound_data() { addLayouts(); }
    void nearestPointIsFound();
    void unsortedPointsAreSearchedAsTheyAre();
    void knownPointIsFound_data() { addLayouts(); }
    void knownPointIsFound();
    void unsortedPointsFollowTheProbeSequence_data();
    void unsortedPointsFollowTheProbeSequence();
    void knownPointQueryExaminesFewEntries_data();
    void knownPointQueryExaminesFewEntries();
    void nonFiniteQueryExaminesNothing();
    void coordinatesWithFewBitsDoNotCollide();
    void nearestPointQueryExaminesFewEntries_data();
    void nearestPointQueryExaminesFewEntries();

private:
    static void addLayouts();
};

void tst_DefPolygonIndex::addLayouts()
{
    QTest::addColumn<Layout>("layout");

    QTest::newRow("grid of the tolerance") << Layout{};
    QTest::newRow("grid of half the tolerance") << Layout{0, 0, 0.005, 0.005};
    QTest::newRow("slightly off the tolerance") << Layout{451000, 6170000, 0.01, 0.01, 12, 12, 1e-9};
    QTest::newRow("one ulp off the tolerance") << Layout{451000, 6170000, 0.01, 0.01, 12, 12, 5.8e-11};
    QTest::newRow("around zero") << Layout{-0.05, -0.05, 0.01, 0.01, 11, 11, 1e-17};
    QTest::newRow("cell borders") << Layout{-0.5, -0.5, 0.25, 0.25, 5, 5, 0.005};
    QTest::newRow("slightly off the cell borders") << Layout{-0.5, -0.5, 0.25, 0.25, 5, 5, 0.015};
    QTest::newRow("scattered") << Layout{0, 0, 0.37, 0.41, 1000, 1000, 0.1, false, 400};
    QTest::newRow("ties of whole numbers") << Layout{0, 0, 1, 1, 6, 6};
    QTest::newRow("one column") << Layout{100, 0, 0, 0.01, 1, 200};
    QTest::newRow("one row") << Layout{0, 100, 0.01, 0, 200, 1};
    QTest::newRow("jittered column") << Layout{100, 0, 0.001, 0.5, 100, 200};
    QTest::newRow("beyond 1e15") << Layout{1e15, -1e15, 0.125, 0.125, 20, 20};
    QTest::newRow("on both sides of 1e15") << Layout{9.99999999999999e14, 9.99999999999999e14, 0.25, 0.25, 20, 20};
    QTest::newRow("far beyond 1e15") << Layout{1e17, 1e200, 16, 1e184, 20, 20};
    QTest::newRow("crowded cells") << Layout{37, 55, 1e-4, 0.011, 1000, 23, 1e-6, false, 400};
    QTest::newRow("ties in crowded cells") << Layout{0, 0, 0.005, 0.02, 40, 10, 0, false, 800};
    QTest::newRow("one cell") << Layout{37.02, 55.02, 0.0011, 0.0013, 180, 150, 0, false, 400};
    QTest::newRow("special numbers") << Layout{0, 0, 0.01, 0.01, 10, 10, 0, true};
    QTest::newRow("special numbers and ties") << Layout{0, 0, 1, 1, 4, 4, 0, true};
}

void tst_DefPolygonIndex::nearestPointIsFound()
{
    QFETCH(Layout, layout);
    QRandomGenerator random(2);
    for (int run = 0; run < 150; ++run) {
        const QVector<DefPoint> points = sortedRandomPoints(random, layout, random.bounded(run % 10 == 0 ? 1000 : 60));
        const NearestPointIndex index(points);
        for (int query = 0; query < 100; ++query) {
            const DefPoint at = randomPoint(random, layout, 0);
            const QPointF p =
                query % 3 == 0 ? QPointF(at.x + layout.stepX / 2, at.y + layout.stepY / 2) : QPointF(at.x, at.y);
            const DefPoint *const expected = nearestOfAll(points, p);
            QCOMPARE(difference(findNearestPoint(points, p), expected, p), QString());
            QCOMPARE(difference(index.find(p), expected, p), QString());
        }
    }
}

void tst_DefPolygonIndex::unsortedPointsAreSearchedAsTheyAre()
{
    QVector<DefPoint> points;
    for (int i = 0; i < 100; ++i)
        points.append(DefPoint{QString::number(i), i * 37 % 100 * 1.0, 0});
    const NearestPointIndex index(points);

    for (int x = 0; x < 100; ++x) {
        const QPointF p(x, 0);
        int steps = 0;
        QCOMPARE(difference(index.find(p, &steps), findNearestPoint(points, p), p), QString());
        QCOMPARE(steps, points.size());
    }
}

// As in an import, a vertex that equals no known point becomes one. Each run resets the index.
void tst_DefPolygonIndex::knownPointIsFound()
{
    QFETCH(Layout, layout);
    QRandomGenerator random(1);
    KnownPointIndex index;
    QVERIFY(index.find({}, 0, 0) == nullptr);
    for (int run = 0; run < 500; ++run) {
        QVector<DefPoint> sorted = sortedRandomPoints(random, layout, random.bounded(layout.maxKnownPoints));
        sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
        QVector<DefPoint> points = sorted;
        index.reset(points);
        for (int query = 0; query < 60; ++query) {
            const DefPoint vertex = randomPoint(random, layout, 1000 + query);
            const QPointF p(vertex.x, vertex.y);
            const DefPoint *nearest = findNearestPoint(sorted, p);
            if (nearest != nullptr && !(*nearest == vertex))
                nearest = nullptr;
            const DefPoint *const found = index.find(points, vertex.x, vertex.y);
            QCOMPARE(difference(found, nearest, p), QString());
            if (found != nullptr)
                continue;
            points.append(vertex);
            index.addLast(points);
            sorted.insert(std::lower_bound(sorted.begin(), sorted.end(), vertex, lessNanLast), vertex);
        }
        QCOMPARE(index.count(), points.size());
    }
}

void tst_DefPolygonIndex::unsortedPointsFollowTheProbeSequence_data()
{
    QTest::addColumn<QVector<double>>("xs");
    QTest::addColumn<int>("found");
    using Xs = QVector<double>;

    QTest::newRow("descending") << Xs{20, 10, 0} << 1;
    QTest::newRow("bisection misses the first point that is not to the left") << Xs{20, 0, 30} << 1;
    QTest::newRow("bisection passes the nearest") << Xs{9, 100, 0, 50} << 2;
    QTest::newRow("walk to the right stops") << Xs{0, 30, 50, 11} << 0;
    QTest::newRow("walk to the right continues") << Xs{0, 30, 11, 40} << 2;
    QTest::newRow("walk to the right passes an equal distance") << Xs{0, 30, 20, 11} << 3;
    QTest::newRow("walk to the right passes NaN") << Xs{0, 30, notANumber, 11} << 3;
    QTest::newRow("walk to the right stops at infinity") << Xs{infinity, infinity, 11} << -1;
    QTest::newRow("walk to the left stops") << Xs{9, -50, 0, 30} << 2;
    QTest::newRow("walk to the left continues") << Xs{-50, 9, 0, 30} << 1;
    QTest::newRow("walk to the left passes an equal distance") << Xs{9, 0, 0, 30} << 0;
}

// The result for unsorted points depends on the probe sequence of the bisection and on where the walks stop.
void tst_DefPolygonIndex::unsortedPointsFollowTheProbeSequence()
{
    QFETCH(QVector<double>, xs);
    QFETCH(int, found);
    QVector<DefPoint> points;
    for (double x : xs)
        points.append(DefPoint{QString(), x, 0});

    const DefPoint *const nearest = findNearestPoint(points, QPointF(10, 0));

    QCOMPARE(nearest == nullptr ? -1 : static_cast<int>(nearest - points.constData()), found);
}

void tst_DefPolygonIndex::knownPointQueryExaminesFewEntries_data()
{
    QTest::addColumn<double>("size");
    QTest::addColumn<bool>("isAppended");
    QTest::addColumn<int>("meanLimit"); // of scattered points, a k-d tree alone would exceed it
    QTest::addColumn<int>("limit");

    QTest::newRow("scattered") << 1000.0 << false << 10 << 100;
    QTest::newRow("scattered and added one by one") << 1000.0 << true << 10 << 100;
    QTest::newRow("one cell") << 0.2 << false << 200 << 500;
}

void tst_DefPolygonIndex::knownPointQueryExaminesFewEntries()
{
    QFETCH(double, size);
    QFETCH(bool, isAppended);
    QFETCH(int, meanLimit);
    QFETCH(int, limit);
    QRandomGenerator random(3);
    const QVector<DefPoint> points = pointsInSquare(random, size, 20000);
    KnownPointIndex index;
    index.reset(isAppended ? points.mid(0, 1) : points);
    for (QVector<DefPoint> known = points.mid(0, index.count()); known.size() < points.size();) {
        known.append(points.at(known.size()));
        index.addLast(known);
    }

    int total = 0;
    for (const DefPoint &point : points) {
        int steps = 0;
        QVERIFY(index.find(points, point.x + 0.0001, point.y, &steps) != nullptr);
        QVERIFY2(steps > 0 && steps < limit, qPrintable(QString::number(steps)));
        total += steps;
    }
    QVERIFY2(total < meanLimit * points.size(), qPrintable(QString::number(total)));
}

void tst_DefPolygonIndex::nonFiniteQueryExaminesNothing()
{
    const QVector<DefPoint> points{DefPoint{QString(), 1, 1}};
    KnownPointIndex index;
    index.reset(points);
    int steps = 1;

    QVERIFY(index.find(points, qQNaN(), 1, &steps) == nullptr);

    QCOMPARE(steps, 0);
}

// The cells of powers of two differ only in their high bits.
void tst_DefPolygonIndex::coordinatesWithFewBitsDoNotCollide()
{
    QVector<DefPoint> points;
    for (int i = 50; i < 190; ++i) {
        for (int j = 50; j < 190; ++j)
            points.append(DefPoint{QString(), std::ldexp(1.0, i), std::ldexp(1.0, j)});
    }
    KnownPointIndex index;
    index.reset(points);

    for (const DefPoint &point : qAsConst(points)) {
        int steps = 0;
        QVERIFY(index.find(points, point.x, point.y, &steps) != nullptr);
        QVERIFY2(steps > 0 && steps < 100, qPrintable(QString::number(steps)));
    }
}

void tst_DefPolygonIndex::nearestPointQueryExaminesFewEntries_data()
{
    QTest::addColumn<double>("size");

    QTest::newRow("scattered") << 1000.0;
    QTest::newRow("one place") << 0.0;
}

void tst_DefPolygonIndex::nearestPointQueryExaminesFewEntries()
{
    QFETCH(double, size);
    QRandomGenerator random(3);
    const NearestPointIndex index(pointsInSquare(random, size, 20000));

    for (const DefPoint &p : pointsInSquare(random, 1000, 20000)) {
        int steps = 0;
        QVERIFY(index.find(QPointF(p.x, p.y), &steps) != nullptr);
        QVERIFY2(steps > 0 && steps < 300, qPrintable(QString::number(steps)));
    }
}

QTEST_GUILESS_MAIN(tst_DefPolygonIndex)
#include "tst_defpolygon_index.moc"
