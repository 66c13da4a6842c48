#include "defpolygon.h"

#include <QTest>

#include <algorithm>
#include <limits>

namespace {

using Places = QVector<QPointF>;

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinite = std::numeric_limits<double>::infinity();

QVector<DefPoint> pointsAt(const Places &places)
{
    QVector<DefPoint> points;
    for (const QPointF &place : places)
        points.append(DefPoint{QString(), place.x(), place.y()});
    return points;
}

/// Where the point nearest to \a p stands in \a points; -1 when there is none.
int nearestAmong(const QVector<DefPoint> &points, const QPointF &p)
{
    const DefPoint *const nearest = findNearestPoint(points, p);
    return nearest == nullptr ? -1 : static_cast<int>(nearest - points.constData());
}

double squaredDistance(const DefPoint &point, const QPointF &p)
{
    const double dx = point.x - p.x();
    const double dy = point.y - p.y();
    return dx * dx + dy * dy;
}

double smallestSquaredDistance(const QVector<DefPoint> &points, const QPointF &p)
{
    double smallest = std::numeric_limits<double>::max();
    for (const DefPoint &point : points)
        smallest = std::min(smallest, squaredDistance(point, p));
    return smallest;
}

void addSearchColumns()
{
    QTest::addColumn<Places>("places");
    QTest::addColumn<QPointF>("p");
    QTest::addColumn<int>("found");
}

} // namespace

class tst_DefPolygonNearest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nearestIsFound_data();
    void nearestIsFound();
    void firstExaminedWinsTie_data();
    void firstExaminedWinsTie();
    void farOffIsNeverTaken_data();
    void farOffIsNeverTaken();
    void unsortedPointsFollowTheSteps_data();
    void unsortedPointsFollowTheSteps();
    void nothingIsNearerThanTheNearest();
    void anyOrderOfAnyPointsIsSafe();

private:
    static void searchRow();
};

void tst_DefPolygonNearest::searchRow()
{
    QFETCH(Places, places);
    QFETCH(QPointF, p);

    QTEST(nearestAmong(pointsAt(places), p), "found");
}

void tst_DefPolygonNearest::nearestIsFound_data()
{
    addSearchColumns();
    const Places one{{5, 5}};
    const Places line{{0, 0}, {10, 0}, {20, 0}, {30, 0}};
    QTest::newRow("no points") << Places{} << QPointF(1, 1) << -1;
    QTest::newRow("one point, from its place") << one << QPointF(5, 5) << 0;
    QTest::newRow("one point, from the left") << one << QPointF(-100, 0) << 0;
    QTest::newRow("one point, from the right") << one << QPointF(100, 0) << 0;
    QTest::newRow("one point, from very far") << one << QPointF(1e150, -1e150) << 0;
    QTest::newRow("left of all") << line << QPointF(-7, 3) << 0;
    QTest::newRow("right of all") << line << QPointF(99, 3) << 3;
    QTest::newRow("just at a point") << line << QPointF(20, 0) << 2;
    QTest::newRow("first that is not left") << line << QPointF(16, 0) << 2;
    QTest::newRow("last that is left") << line << QPointF(14, 0) << 1;

    const Places gate{{0, 0}, {8, 100}, {9, 100}, {11, 100}, {12, 100}, {19, 0}};
    QTest::newRow("to the left, beyond those above") << gate << QPointF(9.2, 0) << 0;
    QTest::newRow("to the right, beyond those above") << gate << QPointF(10, 0) << 5;
    QTest::newRow("above") << gate << QPointF(11.6, 90) << 4;

    const Places rightOfAll{{0, 0}, {1, 2}, {2, 50}, {3, 60}};
    QTest::newRow("right of all and low") << rightOfAll << QPointF(4, 0) << 1;
    const Places leftOfAll{{2, 60}, {3, 50}, {4, 2}, {5, 0}};
    QTest::newRow("left of all and low") << leftOfAll << QPointF(1, 0) << 2;
    const Places column{{5, -9}, {5, -1}, {5, 4}, {5, 8}};
    QTest::newRow("one x for all") << column << QPointF(5, 7) << 3;
    QTest::newRow("one x for all, from the right") << column << QPointF(6, 1) << 1;
}

void tst_DefPolygonNearest::nearestIsFound()
{
    searchRow();
}

void tst_DefPolygonNearest::firstExaminedWinsTie_data()
{
    addSearchColumns();
    const QPointF origin(0, 0);
    QTest::newRow("not left of it, then the one before") << Places{{-1, 0}, {1, 0}} << origin << 1;
    QTest::newRow("not left of it, then to the right") << Places{{1, -1}, {1, 1}} << origin << 0;
    QTest::newRow("not left of it, then to the left") << Places{{-1, 0}, {-0.5, 9}, {1, 0}} << origin << 2;
    QTest::newRow("the one before, then to the right") << Places{{-1, 0}, {0.5, 9}, {1, 0}} << origin << 0;
    QTest::newRow("the one before, then to the left") << Places{{-1, -1}, {-1, 1}, {5, 0}} << origin << 1;
    QTest::newRow("to the right, then to the left") << Places{{-1, 0}, {-0.5, 9}, {0.5, 9}, {1, 0}} << origin << 3;
    QTest::newRow("to the right, the first") << Places{{0.5, 9}, {1, -1}, {1, 1}} << origin << 1;
    QTest::newRow("to the left, the last") << Places{{-1, -1}, {-1, 1}, {-0.5, 9}} << origin << 1;
    QTest::newRow("at one place") << Places{{0, 0}, {0, 0}, {0, 0}} << origin << 0;
}

void tst_DefPolygonNearest::firstExaminedWinsTie()
{
    searchRow();
}

void tst_DefPolygonNearest::farOffIsNeverTaken_data()
{
    addSearchColumns();
    const Places three{{-1, 0}, {0, 0}, {1, 0}};
    QTest::newRow("only x not a number") << Places{{notANumber, 0}} << QPointF(0, 0) << -1;
    QTest::newRow("only y not a number") << Places{{0, notANumber}} << QPointF(0, 0) << -1;
    QTest::newRow("only infinite") << Places{{-infinite, 0}, {0, infinite}, {infinite, 0}} << QPointF(0, 0) << -1;
    QTest::newRow("distance too large to square") << Places{{1e200, 0}} << QPointF(0, 0) << -1;
    QTest::newRow("from infinity") << three << QPointF(infinite, 0) << -1;
    QTest::newRow("from infinity to infinity") << Places{{infinite, 0}} << QPointF(infinite, 0) << -1;
    QTest::newRow("from x not a number") << three << QPointF(notANumber, 0) << -1;
    QTest::newRow("from y not a number") << three << QPointF(0, notANumber) << -1;
    QTest::newRow("y not a number at the very x") << Places{{-1, 0}, {0, notANumber}, {3, 0}} << QPointF(0, 0) << 0;
    QTest::newRow("infinite y on the way right") << Places{{0, infinite}, {1, infinite}, {2, 0}} << QPointF(0, 0) << 2;
    QTest::newRow("y not a number on the way left")
        << Places{{-3, 0}, {-2, notANumber}, {-1, notANumber}} << QPointF(0, 0) << 0;
    QTest::newRow("infinite x at both ends") << Places{{-infinite, 0}, {4, 0}, {infinite, 0}} << QPointF(9, 0) << 1;
    QTest::newRow("x not a number after all")
        << Places{{-9, 0}, {4, 0}, {notANumber, 0}, {notANumber, 1}} << QPointF(9, 0) << 1;
}

void tst_DefPolygonNearest::farOffIsNeverTaken()
{
    searchRow();
}

// Points that come unsorted are bisected and walked all the same, so that one file has one answer.
void tst_DefPolygonNearest::unsortedPointsFollowTheSteps_data()
{
    addSearchColumns();
    const QPointF p(10, 0);
    QTest::newRow("falling") << Places{{20, 0}, {10, 0}, {0, 0}} << p << 1;
    QTest::newRow("bisection misses the first that is not left") << Places{{20, 0}, {0, 0}, {30, 0}} << p << 1;
    QTest::newRow("walk to the right stops early") << Places{{0, 0}, {30, 0}, {50, 0}, {11, 0}} << p << 0;
    QTest::newRow("walk to the right goes on") << Places{{0, 0}, {30, 0}, {11, 0}, {40, 0}} << p << 2;
    QTest::newRow("walk to the right passes one as far off") << Places{{0, 0}, {30, 0}, {20, 0}, {11, 0}} << p << 3;
    QTest::newRow("walk to the left passes one as far off") << Places{{9, 0}, {0, 0}, {0, 0}, {30, 0}} << p << 0;
    QTest::newRow("walk ends at infinity with nothing taken")
        << Places{{infinite, 0}, {infinite, 0}, {11, 0}} << p << -1;
    QTest::newRow("walk to the left stops early") << Places{{9, 0}, {-50, 0}, {0, 0}, {30, 0}} << p << 2;
    QTest::newRow("walk to the left goes on") << Places{{-50, 0}, {9, 0}, {0, 0}, {30, 0}} << p << 1;
    QTest::newRow("walk to the right is ended by infinity")
        << Places{{0, 0}, {30, 0}, {infinite, 0}, {11, 0}} << p << 0;
    QTest::newRow("walk to the right passes what is no number")
        << Places{{0, 0}, {30, 0}, {notANumber, 0}, {11, 0}} << p << 3;
}

void tst_DefPolygonNearest::unsortedPointsFollowTheSteps()
{
    searchRow();
}

void tst_DefPolygonNearest::nothingIsNearerThanTheNearest()
{
    QVector<DefPoint> points;
    for (int i = 0; i < 300; ++i)
        points.append(DefPoint{QString(), i * 37 % 101 / 4.0, i * 53 % 89 / 4.0});
    sortPoints(points);

    for (int i = 0; i < 1000; ++i) {
        const QPointF p(i * 17 % 137 / 4.0 - 5, i * 29 % 127 / 4.0 - 5);
        const DefPoint *const nearest = findNearestPoint(points, p);
        QVERIFY(nearest != nullptr);
        QCOMPARE(squaredDistance(*nearest, p), smallestSquaredDistance(points, p));
    }
}

void tst_DefPolygonNearest::anyOrderOfAnyPointsIsSafe()
{
    const QVector<double> odd{notANumber, 3, -infinite, 7, infinite, 0, -2, notANumber, 1e200, 5, infinite};
    QVector<DefPoint> points;
    for (int size = 0; size < 40; ++size) {
        for (double x : odd) {
            const int found = nearestAmong(points, QPointF(x, 0));
            QVERIFY(found >= -1 && found < size);
        }
        points.append(DefPoint{QString(), odd.at(size * 7 % 11), odd.at(size * 5 % 11)});
    }
}

QTEST_GUILESS_MAIN(tst_DefPolygonNearest)
#include "tst_defpolygon_nearest.moc"
