#include "defpolygon.h"

#include <QTest>

#include <algorithm>
#include <limits>

namespace {

using Places = QVector<QPointF>;

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

QVector<DefPoint> pointsAt(const Places &places)
{
    QVector<DefPoint> points;
    for (const QPointF &place : places)
        points.append(DefPoint{QString(), place.x(), place.y()});
    return points;
}

/// Index of the point nearest to \a p; -1 if there is none.
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
    void infiniteDistanceIsNeverNearest_data();
    void infiniteDistanceIsNeverNearest();
    void unsortedPointsFollowTheProbeSequence_data();
    void unsortedPointsFollowTheProbeSequence();
    void noPointIsNearerThanTheResult();
    void unsortedSpecialPointsAreSafe();

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
    QTest::newRow("one point, from its position") << one << QPointF(5, 5) << 0;
    QTest::newRow("one point, from the left") << one << QPointF(-100, 0) << 0;
    QTest::newRow("one point, from the right") << one << QPointF(100, 0) << 0;
    QTest::newRow("one point, from very far") << one << QPointF(1e150, -1e150) << 0;
    QTest::newRow("left of all") << line << QPointF(-7, 3) << 0;
    QTest::newRow("right of all") << line << QPointF(99, 3) << 3;
    QTest::newRow("exactly at a point") << line << QPointF(20, 0) << 2;
    QTest::newRow("first that is not left") << line << QPointF(16, 0) << 2;
    QTest::newRow("last that is left") << line << QPointF(14, 0) << 1;

    const Places gate{{0, 0}, {8, 100}, {9, 100}, {11, 100}, {12, 100}, {19, 0}};
    QTest::newRow("to the left, beyond nearer columns") << gate << QPointF(9.2, 0) << 0;
    QTest::newRow("to the right, beyond nearer columns") << gate << QPointF(10, 0) << 5;
    QTest::newRow("above") << gate << QPointF(11.6, 90) << 4;

    const Places rightOfAll{{0, 0}, {1, 2}, {2, 50}, {3, 60}};
    QTest::newRow("right of all and low") << rightOfAll << QPointF(4, 0) << 1;
    const Places leftOfAll{{2, 60}, {3, 50}, {4, 2}, {5, 0}};
    QTest::newRow("left of all and low") << leftOfAll << QPointF(1, 0) << 2;
    const Places column{{5, -9}, {5, -1}, {5, 4}, {5, 8}};
    QTest::newRow("same x") << column << QPointF(5, 7) << 3;
    QTest::newRow("same x, from the right") << column << QPointF(6, 1) << 1;
}

void tst_DefPolygonNearest::nearestIsFound()
{
    searchRow();
}

void tst_DefPolygonNearest::firstExaminedWinsTie_data()
{
    addSearchColumns();
    const QPointF origin(0, 0);
    QTest::newRow("first not left wins over the one before") << Places{{-1, 0}, {1, 0}} << origin << 1;
    QTest::newRow("first not left wins over those to the right") << Places{{1, -1}, {1, 1}} << origin << 0;
    QTest::newRow("first not left wins over those to the left") << Places{{-1, 0}, {-0.5, 9}, {1, 0}} << origin << 2;
    QTest::newRow("the one before wins over those to the right") << Places{{-1, 0}, {0.5, 9}, {1, 0}} << origin << 0;
    QTest::newRow("the one before wins over those to the left") << Places{{-1, -1}, {-1, 1}, {5, 0}} << origin << 1;
    QTest::newRow("to the right wins over to the left") << Places{{-1, 0}, {-0.5, 9}, {0.5, 9}, {1, 0}} << origin << 3;
    QTest::newRow("first of those to the right") << Places{{0.5, 9}, {1, -1}, {1, 1}} << origin << 1;
    QTest::newRow("last of those to the left") << Places{{-1, -1}, {-1, 1}, {-0.5, 9}} << origin << 1;
    QTest::newRow("coincident") << Places{{0, 0}, {0, 0}, {0, 0}} << origin << 0;
}

void tst_DefPolygonNearest::firstExaminedWinsTie()
{
    searchRow();
}

void tst_DefPolygonNearest::infiniteDistanceIsNeverNearest_data()
{
    addSearchColumns();
    const Places three{{-1, 0}, {0, 0}, {1, 0}};
    QTest::newRow("only NaN in x") << Places{{notANumber, 0}} << QPointF(0, 0) << -1;
    QTest::newRow("only NaN in y") << Places{{0, notANumber}} << QPointF(0, 0) << -1;
    QTest::newRow("only infinite") << Places{{-infinity, 0}, {0, infinity}, {infinity, 0}} << QPointF(0, 0) << -1;
    QTest::newRow("distance too large to square") << Places{{1e200, 0}} << QPointF(0, 0) << -1;
    QTest::newRow("from infinity") << three << QPointF(infinity, 0) << -1;
    QTest::newRow("from infinity to infinity") << Places{{infinity, 0}} << QPointF(infinity, 0) << -1;
    QTest::newRow("from NaN in x") << three << QPointF(notANumber, 0) << -1;
    QTest::newRow("from NaN in y") << three << QPointF(0, notANumber) << -1;
    QTest::newRow("NaN in y at the same x") << Places{{-1, 0}, {0, notANumber}, {3, 0}} << QPointF(0, 0) << 0;
    QTest::newRow("infinite y to the right") << Places{{0, infinity}, {1, infinity}, {2, 0}} << QPointF(0, 0) << 2;
    QTest::newRow("NaN in y to the left") << Places{{-3, 0}, {-2, notANumber}, {-1, notANumber}} << QPointF(0, 0) << 0;
    QTest::newRow("infinite x at both ends") << Places{{-infinity, 0}, {4, 0}, {infinity, 0}} << QPointF(9, 0) << 1;
    QTest::newRow("NaN in x behind all others")
        << Places{{-9, 0}, {4, 0}, {notANumber, 0}, {notANumber, 1}} << QPointF(9, 0) << 1;
}

void tst_DefPolygonNearest::infiniteDistanceIsNeverNearest()
{
    searchRow();
}

// The result for unsorted points depends on the probe sequence of the bisection and on where the walks stop.
void tst_DefPolygonNearest::unsortedPointsFollowTheProbeSequence_data()
{
    addSearchColumns();
    const QPointF p(10, 0);
    QTest::newRow("descending") << Places{{20, 0}, {10, 0}, {0, 0}} << p << 1;
    QTest::newRow("bisection misses the first point not left") << Places{{20, 0}, {0, 0}, {30, 0}} << p << 1;
    QTest::newRow("walk to the right stops") << Places{{0, 0}, {30, 0}, {50, 0}, {11, 0}} << p << 0;
    QTest::newRow("walk to the right continues") << Places{{0, 0}, {30, 0}, {11, 0}, {40, 0}} << p << 2;
    QTest::newRow("walk to the right passes an equal distance") << Places{{0, 0}, {30, 0}, {20, 0}, {11, 0}} << p << 3;
    QTest::newRow("walk to the left passes an equal distance") << Places{{9, 0}, {0, 0}, {0, 0}, {30, 0}} << p << 0;
    QTest::newRow("walk stops at infinity without a result")
        << Places{{infinity, 0}, {infinity, 0}, {11, 0}} << p << -1;
    QTest::newRow("walk to the left stops") << Places{{9, 0}, {-50, 0}, {0, 0}, {30, 0}} << p << 2;
    QTest::newRow("walk to the left continues") << Places{{-50, 0}, {9, 0}, {0, 0}, {30, 0}} << p << 1;
    QTest::newRow("walk to the right stops at infinity") << Places{{0, 0}, {30, 0}, {infinity, 0}, {11, 0}} << p << 0;
    QTest::newRow("walk to the right passes NaN") << Places{{0, 0}, {30, 0}, {notANumber, 0}, {11, 0}} << p << 3;
}

void tst_DefPolygonNearest::unsortedPointsFollowTheProbeSequence()
{
    searchRow();
}

void tst_DefPolygonNearest::noPointIsNearerThanTheResult()
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

void tst_DefPolygonNearest::unsortedSpecialPointsAreSafe()
{
    const QVector<double> specials{notANumber, 3, -infinity, 7, infinity, 0, -2, notANumber, 1e200, 5, infinity};
    QVector<DefPoint> points;
    for (int size = 0; size < 40; ++size) {
        for (double x : specials) {
            const int found = nearestAmong(points, QPointF(x, 0));
            QVERIFY(found >= -1 && found < size);
        }
        points.append(DefPoint{QString(), specials.at(size * 7 % 11), specials.at(size * 5 % 11)});
    }
}

QTEST_GUILESS_MAIN(tst_DefPolygonNearest)
#include "tst_defpolygon_nearest.moc"
