#include "imported.h"
#include "testing.h"

#include <QRegularExpression>
#include <QTest>

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

QVector<DefPolygon> objectsNamed(const QStringList &defs)
{
    QVector<DefPolygon> objects;
    for (const QString &def : defs)
        objects.append(DefPolygon{def, {{DefPoint{def, 0, 0}}}});
    return objects;
}

QStringList defsOf(const QVector<DefPolygon> &objects)
{
    QStringList defs;
    for (const DefPolygon &object : objects)
        defs.append(object.def);
    return defs;
}

} // namespace

/// Points, objects and their order.
class tst_DefPolygon : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void equalityIsTolerantAndOrderIsExact_data();
    void equalityIsTolerantAndOrderIsExact();
    void splitDefMatchesRegularExpression();
    void centroidIsThatOfFirstContour_data();
    void centroidIsThatOfFirstContour();
    void objectsAreSorted_data();
    void objectsAreSorted();
    void manyObjectsAreSorted();
    void objectsAreSortedInPlace();
    void pointsAreSortedWithNanLast();
};

void tst_DefPolygon::equalityIsTolerantAndOrderIsExact_data()
{
    QTest::addColumn<QPointF>("a");
    QTest::addColumn<QPointF>("b");
    QTest::addColumn<bool>("isEqual");
    QTest::addColumn<bool>("isLess");

    QTest::newRow("same place") << QPointF(5, 7) << QPointF(5, 7) << true << false;
    QTest::newRow("exactly the tolerance") << QPointF(-0.01, 0.01) << QPointF(0, 0) << true << true;
    QTest::newRow("beyond the tolerance in x") << QPointF(0, 7) << QPointF(0.0101, 7) << false << true;
    QTest::newRow("beyond the tolerance in y") << QPointF(5, 0) << QPointF(5, 0.0101) << false << true;
    QTest::newRow("x before y") << QPointF(1, 9) << QPointF(1.001, 0) << false << true;
    QTest::newRow("x is NaN") << QPointF(notANumber, 1) << QPointF(2, 2) << false << true;
    QTest::newRow("y is NaN") << QPointF(5, 7) << QPointF(5, notANumber) << false << false;
}

void tst_DefPolygon::equalityIsTolerantAndOrderIsExact()
{
    QFETCH(QPointF, a);
    QFETCH(QPointF, b);
    QFETCH(bool, isEqual);
    QFETCH(bool, isLess);
    const DefPoint first{QStringLiteral("н2"), a.x(), a.y()};
    const DefPoint second{QStringLiteral("н1"), b.x(), b.y()};

    QCOMPARE(first == second, isEqual);
    QCOMPARE(second == first, isEqual);
    QCOMPARE(first < second, isLess);
    QVERIFY(!(second < first));
}

void tst_DefPolygon::splitDefMatchesRegularExpression()
{
    const QRegularExpression re(QStringLiteral("^(.*?)(\\d+)$"));
    const QString alphabet = QStringLiteral("0189/:aн.\n\r\u2028\u0661") + QChar(0xD83D) + QChar(0xDE00);
    QStringList defs{QString(), QStringLiteral("н2147483647"), QStringLiteral("н2147483648")};
    QRandomGenerator random(4);
    for (int i = 0; i < 100000; ++i)
        defs.append(randomText(random, alphabet, random.bounded(9)));

    for (const QString &def : qAsConst(defs)) {
        QString prefix;
        int num = 77;
        const QRegularExpressionMatch match = re.match(def);

        splitDef(def, prefix, num);

        QCOMPARE(prefix, match.hasMatch() ? match.captured(1) : def);
        QCOMPARE(num, match.hasMatch() ? match.captured(2).toInt() : -1);
    }
}

void tst_DefPolygon::centroidIsThatOfFirstContour_data()
{
    QTest::addColumn<QVector<Places>>("contours");
    QTest::addColumn<QPointF>("centroid");

    const Places square{{10, 10}, {10, 12}, {12, 12}, {12, 10}, {10, 10}};

    QTest::newRow("no contour") << QVector<Places>{} << QPointF(0, 0);
    QTest::newRow("first contour empty") << QVector<Places>{{}, square} << QPointF(0, 0);
    QTest::newRow("one vertex, far away") << QVector<Places>{{{1e200, -1e200}}} << QPointF(1e200, -1e200);
    QTest::newRow("two vertices") << QVector<Places>{{{1, 2}, {5, 10}}} << QPointF(3, 6);
    QTest::newRow("closed, with a second contour") << QVector<Places>{square, {{9, 0}, {7, 7}}} << QPointF(11, 11);
    QTest::newRow("open and counter-clockwise") << QVector<Places>{{{0, 0}, {3, 0}, {0, 6}}} << QPointF(1, 2);
    // A bar of 6 by 2 below a block of 2 by 4, with centroids (3, 1) and (1, 4): (3 * 12 + 1 * 8) / 20 is 2.2.
    QTest::newRow("L-shape") << QVector<Places>{{{0, 0}, {6, 0}, {6, 2}, {2, 2}, {2, 6}, {0, 6}}} << QPointF(2.2, 2.2);
    QTest::newRow("collinear and closed") << QVector<Places>{{{0, 0}, {2, 0}, {6, 0}, {0, 0}}} << QPointF(2, 0);
    QTest::newRow("self-intersecting, with zero area")
        << QVector<Places>{{{0, 0}, {2, 2}, {2, 0}, {0, 2}}} << QPointF(1, 1);
    QTest::newRow("area at the limit") << QVector<Places>{{{0, 0}, {2e-12, 0}, {0, 1}, {0, 0.5}}}
                                       << QPointF(5e-13, 0.375);
    QTest::newRow("area above the limit")
        << QVector<Places>{{{0, 0}, {1.5e-6, 0}, {0, 1.5e-6}, {0, 0}}} << QPointF(5e-7, 5e-7);
}

void tst_DefPolygon::centroidIsThatOfFirstContour()
{
    QFETCH(QVector<Places>, contours);
    QFETCH(QPointF, centroid);
    DefPolygon object;
    for (const Places &places : contours)
        object.contours.append(pointsAt(places));

    QCOMPARE(object.centroid().x(), centroid.x());
    QCOMPARE(object.centroid().y(), centroid.y());
}

void tst_DefPolygon::objectsAreSorted_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");

    QTest::newRow("by number, ignoring case") << QStringLiteral("н10,н2,Н1,ЗУ,О0") << QStringLiteral("ЗУ,Н1,н2,н10,О0");
    QTest::newRow("without a number first") << QStringLiteral("н1,н0,н") << QStringLiteral("н,н0,н1");
    QTest::newRow("empty first") << QStringLiteral("0,А,,1") << QStringLiteral(",0,1,А");
    QTest::newRow("prefix before number") << QStringLiteral("б1,а2,аа1") << QStringLiteral("а2,аа1,б1");
    QTest::newRow("number beyond an int counts as 0")
        << QStringLiteral("А1,А99999999999,А") << QStringLiteral("А,А99999999999,А1");
}

void tst_DefPolygon::objectsAreSorted()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    QVector<DefPolygon> objects = objectsNamed(before.split(QLatin1Char(',')));

    sortObjects(objects);

    QCOMPARE(defsOf(objects).join(QLatin1Char(',')), after);
}

// If all designations are equal, std::sort reads out of bounds if the order is not a strict weak ordering.
void tst_DefPolygon::manyObjectsAreSorted()
{
    for (int distinct : {1, 1009}) {
        QStringList before;
        QVector<int> numbers;
        for (int i = 0; i < 1009; ++i) {
            numbers.append(i * 619 % 1009 % distinct);
            before.append(QStringLiteral("н%1").arg(numbers.last()));
        }
        QVector<DefPolygon> objects = objectsNamed(before);

        sortObjects(objects);

        std::sort(numbers.begin(), numbers.end());
        for (int i = 0; i < 1009; ++i)
            QCOMPARE(objects.at(i).def, QStringLiteral("н%1").arg(numbers.at(i)));
    }
}

void tst_DefPolygon::objectsAreSortedInPlace()
{
    QVector<DefPolygon> objects = objectsNamed({QStringLiteral("в"), QStringLiteral("б"), QStringLiteral("а")});
    objects.first().contours.append(pointsAt({{5, 6}, {7, 8}}));
    const QVector<DefPolygon> copy = objects;
    const DefPolygon *const first = objects.data();

    sortObjects(objects);

    QCOMPARE(objects.constData(), first);
    QCOMPARE(described(objects), (QStringList{QStringLiteral("а [а 0 0]"), QStringLiteral("б [б 0 0]"),
                                              QStringLiteral("в [в 0 0] [- 5 6, - 7 8]")}));
    QCOMPARE(described(copy.first()), QStringLiteral("в [в 0 0] [- 5 6, - 7 8]"));

    QVector<DefPolygon> none;
    sortObjects(none);
    QVERIFY(none.isEmpty());
}

// Enough points for std::sort to read out of bounds if the order is not a strict weak ordering.
void tst_DefPolygon::pointsAreSortedWithNanLast()
{
    const QVector<double> values{-infinity, -1, 0, 0.001, infinity, notANumber};
    const int copies = 37;
    Places sorted;
    for (double x : values) {
        for (double y : values)
            sorted += Places(copies, QPointF(x, y));
    }
    Places shuffled;
    for (int i = 0; i < sorted.size(); ++i)
        shuffled.append(sorted.at(i * 619 % sorted.size()));
    QVector<DefPoint> points = pointsAt(shuffled);

    sortPoints(points);

    QCOMPARE(described(points), described(pointsAt(sorted)));
}

QTEST_GUILESS_MAIN(tst_DefPolygon)
#include "tst_defpolygon.moc"
