#include "imported.h"

#include <QTest>

#include <cmath>
#include <limits>

namespace {

using Places = QVector<QPointF>;

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

DefPoint pointAt(const QPointF &place, const QString &def = QString())
{
    return DefPoint{def, place.x(), place.y()};
}

QVector<DefPoint> pointsAt(const Places &places)
{
    QVector<DefPoint> points;
    for (const QPointF &place : places)
        points.append(pointAt(place, QString::number(points.size())));
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

/// The designations of \a points, which are their indexes before the sort.
QString orderOf(const QVector<DefPoint> &points)
{
    QStringList defs;
    for (const DefPoint &point : points)
        defs.append(point.def);
    return defs.join(QLatin1Char(' '));
}

} // namespace

class tst_DefPolygonSort : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void objectsAreSorted_data();
    void objectsAreSorted();
    void emptyListIsSorted();
    void sortNeedNotBeStable();
    void manyEqualObjectsAreSorted();
    void contoursMoveWithTheirObject();
    void pointersToObjectsStayValid();
    void copyStaysUnsorted();
    void manyObjectsAreSorted();
    void pointsAreSorted_data();
    void pointsAreSorted();
    void manySpecialPointsAreSorted();
};

void tst_DefPolygonSort::objectsAreSorted_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");

    QTest::newRow("one") << QStringLiteral("н1") << QStringLiteral("н1");
    QTest::newRow("numbers after a prefix") << QStringLiteral("н10,н2,Н1,ЗУ") << QStringLiteral("ЗУ,Н1,н2,н10");
    QTest::newRow("numbers only") << QStringLiteral("10,9,100") << QStringLiteral("9,10,100");
    QTest::newRow("prefix ignores case") << QStringLiteral("О1,н1") << QStringLiteral("н1,О1");
    QTest::newRow("numbers of prefixes that differ in case")
        << QStringLiteral("н3,Н4,н1,Н2") << QStringLiteral("н1,Н2,н3,Н4");
    QTest::newRow("without a number before all numbers") << QStringLiteral("н1,н0,н") << QStringLiteral("н,н0,н1");
    QTest::newRow("empty before everything") << QStringLiteral("0,А,,1") << QStringLiteral(",0,1,А");
    QTest::newRow("prefix before number") << QStringLiteral("ЗУ2,к1,ЗУ10") << QStringLiteral("ЗУ2,ЗУ10,к1");
    QTest::newRow("prefix before number, adjacent letters") << QStringLiteral("б1,а2") << QStringLiteral("а2,б1");
    QTest::newRow("shorter prefix first") << QStringLiteral("нн1,н2") << QStringLiteral("н2,нн1");
    QTest::newRow("number beyond an int counts as 0")
        << QStringLiteral("А1,А99999999999,А") << QStringLiteral("А,А99999999999,А1");
    QTest::newRow("number after a dot") << QStringLiteral("1.10,1.9,12") << QStringLiteral("12,1.9,1.10");
    QTest::newRow("already sorted") << QStringLiteral("а1,а2,а3") << QStringLiteral("а1,а2,а3");
}

void tst_DefPolygonSort::objectsAreSorted()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    const QLatin1Char comma(',');
    QVector<DefPolygon> objects = objectsNamed(before.split(comma));

    sortObjects(objects);

    QCOMPARE(defsOf(objects), after.split(comma));
}

void tst_DefPolygonSort::emptyListIsSorted()
{
    QVector<DefPolygon> objects;

    sortObjects(objects);

    QVERIFY(objects.isEmpty());
}

void tst_DefPolygonSort::sortNeedNotBeStable()
{
    const QStringList equal{QStringLiteral("н01"), QStringLiteral("Н1"), QStringLiteral("н1")};
    QVector<DefPolygon> objects = objectsNamed({QStringLiteral("н2"), QStringLiteral("Н1"), QStringLiteral("н01"),
                                                QStringLiteral("н0"), QStringLiteral("н1")});

    sortObjects(objects);

    QStringList defs = defsOf(objects);
    QCOMPARE(defs.takeFirst(), QStringLiteral("н0"));
    QCOMPARE(defs.takeLast(), QStringLiteral("н2"));
    for (const QString &def : equal)
        QCOMPARE(defs.count(def), 1);
}

// std::sort reads out of bounds if the order is not a strict weak ordering.
void tst_DefPolygonSort::manyEqualObjectsAreSorted()
{
    QStringList equal;
    for (int i = 0; i < 1000; ++i)
        equal.append(QStringLiteral("н1"));
    QVector<DefPolygon> objects = objectsNamed(equal);

    sortObjects(objects);

    QCOMPARE(defsOf(objects), equal);
}

void tst_DefPolygonSort::contoursMoveWithTheirObject()
{
    QVector<DefPolygon> objects{
        DefPolygon{QStringLiteral("b"), {{{QStringLiteral("н1"), 1, 2}}, {{QStringLiteral("н2"), 3, 4}}}},
        DefPolygon{QStringLiteral("a"), {{{QStringLiteral("н3"), 5, 6}, {QStringLiteral("н4"), 7, 8}}}},
    };

    sortObjects(objects);

    QCOMPARE(described(objects),
             (QStringList{QStringLiteral("a [н3 5 6, н4 7 8]"), QStringLiteral("b [н1 1 2] [н2 3 4]")}));
}

void tst_DefPolygonSort::pointersToObjectsStayValid()
{
    QVector<DefPolygon> objects = objectsNamed({QStringLiteral("н3"), QStringLiteral("н1"), QStringLiteral("н2")});
    const DefPolygon *const first = &objects[0];
    const DefPolygon *const last = &objects[2];

    sortObjects(objects);

    QCOMPARE(objects.constData(), first);
    QCOMPARE(described(*first), QStringLiteral("н1 [н1 0 0]"));
    QCOMPARE(described(*last), QStringLiteral("н3 [н3 0 0]"));
}

void tst_DefPolygonSort::copyStaysUnsorted()
{
    QVector<DefPolygon> objects = objectsNamed({QStringLiteral("н2"), QStringLiteral("н1")});
    const QVector<DefPolygon> copy = objects;

    sortObjects(objects);

    QCOMPARE(defsOf(objects), (QStringList{QStringLiteral("н1"), QStringLiteral("н2")}));
    QCOMPARE(described(copy), (QStringList{QStringLiteral("н2 [н2 0 0]"), QStringLiteral("н1 [н1 0 0]")}));
}

void tst_DefPolygonSort::manyObjectsAreSorted()
{
    QStringList before;
    QStringList after;
    for (int i = 0; i < 1009; ++i) {
        before.append(QStringLiteral("н%1").arg(i * 619 % 1009));
        after.append(QStringLiteral("н%1").arg(i));
    }
    QVector<DefPolygon> objects = objectsNamed(before);

    sortObjects(objects);

    QCOMPARE(defsOf(objects), after);
}

void tst_DefPolygonSort::pointsAreSorted_data()
{
    QTest::addColumn<Places>("places");
    QTest::addColumn<QString>("order");

    QTest::newRow("none") << Places{} << QString();
    QTest::newRow("one") << Places{{1, 2}} << QStringLiteral("0");
    QTest::newRow("by x") << Places{{3, 0}, {-1, 5}, {2, 9}} << QStringLiteral("1 2 0");
    QTest::newRow("by y if x is equal") << Places{{1, 3}, {1, -3}, {1, 0}} << QStringLiteral("1 2 0");
    QTest::newRow("differences within the tolerance count") << Places{{1.001, 0}, {1, 5}} << QStringLiteral("1 0");
    QTest::newRow("infinities") << Places{{infinity, 0}, {0, 0}, {-infinity, 0}} << QStringLiteral("2 1 0");
    QTest::newRow("x is NaN") << Places{{notANumber, 0}, {infinity, 0}, {-1, 0}} << QStringLiteral("2 1 0");
    QTest::newRow("y is NaN") << Places{{1, notANumber}, {2, 0}, {1, infinity}} << QStringLiteral("2 0 1");
    QTest::newRow("by y if every x is NaN")
        << Places{{notANumber, 5}, {notANumber, notANumber}, {notANumber, 1}} << QStringLiteral("2 0 1");
}

void tst_DefPolygonSort::pointsAreSorted()
{
    QFETCH(Places, places);
    QVector<DefPoint> points = pointsAt(places);

    sortPoints(points);

    QTEST(orderOf(points), "order");
}

void tst_DefPolygonSort::manySpecialPointsAreSorted()
{
    const QVector<double> specials{notANumber, 1, infinity, notANumber, -infinity, 0, notANumber};
    Places places;
    for (int i = 0; i < 1001; ++i)
        places.append({specials.at(i % 7), specials.at(i / 7 % 7)});
    QVector<DefPoint> points = pointsAt(places);

    sortPoints(points);

    QVector<double> xs;
    for (const DefPoint &point : qAsConst(points))
        xs.append(point.x);
    QCOMPARE(xs.size(), 1001);
    QCOMPARE(xs.mid(0, 143), QVector<double>(143, -infinity));
    QCOMPARE(xs.mid(143, 143), QVector<double>(143, 0));
    QCOMPARE(xs.mid(286, 143), QVector<double>(143, 1));
    QCOMPARE(xs.mid(429, 143), QVector<double>(143, infinity));
    for (int i = 572; i < 1001; ++i)
        QVERIFY(std::isnan(xs.at(i)));
}

QTEST_GUILESS_MAIN(tst_DefPolygonSort)
#include "tst_defpolygon_sort.moc"
