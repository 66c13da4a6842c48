#include "defpolygon_index.h"

#include <QRandomGenerator>
#include <QTest>

#include <cmath>
#include <limits>

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

/// Draws coordinates for one layout: a whole number of steps from an origin, at times a hair beside it or no number.
struct Layout
{
    double originX = 0;
    double originY = 0;
    double stepX = 0.01;
    double stepY = 0.01;
    int columns = 20;
    int rows = 20;
    double hair = 0;      ///< how far every other coordinate lies beside its step
    bool oddOnes = false; ///< now and then NaN, an infinity, -0 or a huge number
    int knownPoints = 40; ///< fewer than this, of which some may be one
};

double drawCoordinate(QRandomGenerator &random, double origin, double step, int count, const Layout &layout)
{
    if (layout.oddOnes && random.bounded(8) == 0) {
        const double odd[] = {nan, infinity, -infinity, -0.0, 0.0, 1e15, 1e200, -1e308, 5e-324};
        return odd[random.bounded(9)];
    }
    const double hair = random.bounded(2) == 0 ? layout.hair * (random.bounded(3) - 1) : 0;
    return origin + random.bounded(count) * step + hair;
}

DefPoint drawPoint(QRandomGenerator &random, const Layout &layout, int number)
{
    const double x = drawCoordinate(random, layout.originX, layout.stepX, layout.columns, layout);
    const double y = drawCoordinate(random, layout.originY, layout.stepY, layout.rows, layout);
    return DefPoint{QString::number(number), x, y};
}

/// Known points of an import: in order, none equal to the one before it.
QVector<DefPoint> drawKnownPoints(QRandomGenerator &random, const Layout &layout, int count)
{
    QVector<DefPoint> points;
    for (int i = 0; i < count; ++i)
        points.append(drawPoint(random, layout, i));
    sortPoints(points);
    points.erase(std::unique(points.begin(), points.end()), points.end());
    return points;
}

/// Texts of a drawing in order; several may stand at one place.
QVector<DefPoint> drawTexts(QRandomGenerator &random, const Layout &layout, int count)
{
    QVector<DefPoint> texts;
    for (int i = 0; i < count; ++i)
        texts.append(drawPoint(random, layout, i));
    sortPoints(texts);
    return texts;
}

QString told(const DefPoint *point, double x, double y)
{
    const QString def = point != nullptr ? point->def : QStringLiteral("none");
    return QStringLiteral("%1 for %2 %3").arg(def).arg(x, 0, 'g', 17).arg(y, 0, 'g', 17); // NOLINT(*-multi-arg)
}

} // namespace

Q_DECLARE_METATYPE(Layout)

/// The searches beside findNearestPoint() are to answer as it does, ties and odd numbers included.
class tst_DefPolygonIndex : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void closePointIsTheNearest_data() { layouts(); }
    void closePointIsTheNearest();
    void textIsTheNearest_data() { layouts(); }
    void textIsTheNearest();
    void appendedPointsAreSortedIn_data() { layouts(); }
    void emptyListHasNoNearest();
    void tenThousandTextsAtOnePlace();
    void otherPointsTakeTheirPlace();

private:
    static void layouts();
};

void tst_DefPolygonIndex::layouts()
{
    QTest::addColumn<Layout>("layout");

    QTest::newRow("raster of the tolerance") << Layout{};
    QTest::newRow("raster of half the tolerance") << Layout{0, 0, 0.005, 0.005};
    QTest::newRow("a hair beside the tolerance") << Layout{451000, 6170000, 0.01, 0.01, 12, 12, 1e-9};
    QTest::newRow("one unit in the last place") << Layout{451000, 6170000, 0.01, 0.01, 12, 12, 5.8e-11};
    QTest::newRow("around zero") << Layout{-0.05, -0.05, 0.01, 0.01, 11, 11, 1e-17};
    QTest::newRow("borders of cells") << Layout{-0.5, -0.5, 0.25, 0.25, 5, 5, 0.005};
    QTest::newRow("a hair beside the borders of cells") << Layout{-0.5, -0.5, 0.25, 0.25, 5, 5, 0.015};
    QTest::newRow("ties of whole numbers") << Layout{0, 0, 1, 1, 6, 6};
    QTest::newRow("one column") << Layout{100, 0, 0, 0.01, 1, 200};
    QTest::newRow("one row") << Layout{0, 100, 0.01, 0, 200, 1};
    QTest::newRow("jittered column") << Layout{100, 0, 0.001, 0.5, 100, 200};
    QTest::newRow("far out") << Layout{1e15, -1e15, 0.125, 0.125, 20, 20};
    QTest::newRow("where cells are numbers") << Layout{9.99999999999999e14, 9.99999999999999e14, 0.25, 0.25, 20, 20};
    QTest::newRow("farther out") << Layout{1e17, 1e200, 16, 1e184, 20, 20};
    QTest::newRow("crowded cells") << Layout{37, 55, 1e-4, 0.011, 1000, 23, 1e-6, false, 400};
    QTest::newRow("ties in crowded cells") << Layout{0, 0, 0.005, 0.02, 40, 10, 0, false, 800};
    QTest::newRow("odd numbers") << Layout{0, 0, 0.01, 0.01, 10, 10, 0, true};
    QTest::newRow("odd numbers and ties") << Layout{0, 0, 1, 1, 4, 4, 0, true};
}

// The known points grow as in an import: a vertex that is equal to none becomes one.
void tst_DefPolygonIndex::closePointIsTheNearest()
{
    QFETCH(Layout, layout);
    QRandomGenerator random(1);
    for (int run = 0; run < 1100; ++run) {
        QVector<DefPoint> sorted = drawKnownPoints(random, layout, random.bounded(layout.knownPoints));
        QVector<DefPoint> points = sorted;
        KnownPointIndex search;
        search.reset(points);
        for (int query = 0; query < 60; ++query) {
            const DefPoint p = drawPoint(random, layout, 1000 + query);
            const DefPoint *expected = findNearestPoint(sorted, QPointF(p.x, p.y));
            if (expected != nullptr && !(*expected == p))
                expected = nullptr;
            const DefPoint *const found = search.find(points, p.x, p.y);
            QCOMPARE(told(found, p.x, p.y), told(expected, p.x, p.y));
            if (found != nullptr)
                continue;
            points.append(p);
            search.addLast(points);
            sorted.insert(std::lower_bound(sorted.begin(), sorted.end(), p, lessNanLast), p);
        }
        QCOMPARE(search.count(), points.size());
    }
}

void tst_DefPolygonIndex::textIsTheNearest()
{
    QFETCH(Layout, layout);
    QRandomGenerator random(2);
    for (int run = 0; run < 500; ++run) {
        const QVector<DefPoint> texts = drawTexts(random, layout, random.bounded(run % 10 == 0 ? 1000 : 60));
        const NearestPointIndex search(texts);
        for (int query = 0; query < 100; ++query) {
            const DefPoint p = drawPoint(random, layout, 0);
            const QPointF place =
                query % 3 == 0 ? QPointF(p.x + layout.stepX / 2, p.y + layout.stepY / 2) : QPointF(p.x, p.y);
            const QString expected = told(findNearestPoint(texts, place), place.x(), place.y());
            QCOMPARE(told(search.find(place), place.x(), place.y()), expected);
        }
    }
}

void tst_DefPolygonIndex::emptyListHasNoNearest()
{
    KnownPointIndex closeSearch;
    QVERIFY(closeSearch.find({}, 0, 0) == nullptr);
    closeSearch.reset({});
    QVERIFY(closeSearch.find({}, 0, 0) == nullptr);
    QCOMPARE(closeSearch.count(), 0);
    QVERIFY(NearestPointIndex({}).find(QPointF(0, 0)) == nullptr);
}

// From the left the last of them is examined first, from the right the first.
void tst_DefPolygonIndex::tenThousandTextsAtOnePlace()
{
    QVector<DefPoint> texts;
    for (int i = 0; i < 10000; ++i)
        texts.append(DefPoint{QString::number(i), 5, 5});
    const NearestPointIndex search(texts);

    QCOMPARE(search.find(QPointF(4, 5))->def, QStringLiteral("0"));
    QCOMPARE(search.find(QPointF(5, 5))->def, QStringLiteral("0"));
    QCOMPARE(search.find(QPointF(6, 5))->def, QStringLiteral("9999"));
}

// A crowd, and a tie in it, leave nothing behind.
void tst_DefPolygonIndex::otherPointsTakeTheirPlace()
{
    QVector<DefPoint> crowd;
    for (int i = 0; i < 400; ++i)
        crowd.append(DefPoint{QString::number(i), i / 20 * 0.0102, i % 20 * 0.0102});
    const QVector<DefPoint> others{DefPoint{QStringLiteral("far"), 100, 100}};
    KnownPointIndex search;
    search.reset(crowd);
    QVERIFY(search.find(crowd, 0.0051, 0.0051) != nullptr);

    search.reset(others);

    QCOMPARE(search.count(), 1);
    for (const DefPoint &point : qAsConst(crowd))
        QVERIFY(search.find(others, point.x, point.y) == nullptr);
    QVERIFY(search.find(others, 100, 100) == &others.first());
}

QTEST_GUILESS_MAIN(tst_DefPolygonIndex)
#include "tst_defpolygon_index.moc"
