#include "defpolygon.h"

#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTest>

#include <cmath>
#include <limits>

namespace {

using Places = QVector<QPointF>;

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinite = std::numeric_limits<double>::infinity();

DefPoint pointAt(const QPointF &place, const QString &def = QString())
{
    return DefPoint{def, place.x(), place.y()};
}

QVector<DefPoint> pointsAt(const Places &places)
{
    QVector<DefPoint> points;
    for (const QPointF &place : places)
        points.append(pointAt(place));
    return points;
}

} // namespace

class tst_DefPolygon : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void recordsAreEmptyAtFirst();
    void equalityIsTolerant_data();
    void equalityIsTolerant();
    void equalityIsNotTransitive();
    void orderIsExact_data();
    void orderIsExact();
    void designationIsSplit_data();
    void designationIsSplit();
    void anyDesignationIsSplitByTheExpression();
    void centroidOfObject_data();
    void centroidOfObject();
    void centroidIsNotANumber();
};

void tst_DefPolygon::recordsAreEmptyAtFirst()
{
    const DefPoint point;
    QVERIFY(point.def.isEmpty());
    QCOMPARE(point.x, 0.0);
    QCOMPARE(point.y, 0.0);

    const DefPolygon object;
    QVERIFY(object.def.isEmpty());
    QVERIFY(object.contours.isEmpty());
}

void tst_DefPolygon::equalityIsTolerant_data()
{
    QTest::addColumn<QPointF>("a");
    QTest::addColumn<QPointF>("b");
    QTest::addColumn<bool>("equal");

    QTest::newRow("same place") << QPointF(5, 7) << QPointF(5, 7) << true;
    QTest::newRow("just the tolerance in x") << QPointF(0, 7) << QPointF(0.01, 7) << true;
    QTest::newRow("just the tolerance in y") << QPointF(5, 0) << QPointF(5, -0.01) << true;
    QTest::newRow("just the tolerance in both") << QPointF(0, 0) << QPointF(-0.01, 0.01) << true;
    QTest::newRow("beyond it in x") << QPointF(0, 7) << QPointF(0.0101, 7) << false;
    QTest::newRow("beyond it in y") << QPointF(5, 0) << QPointF(5, 0.0101) << false;
    QTest::newRow("y of one is x of the other") << QPointF(5, 7) << QPointF(7, 5) << false;
    QTest::newRow("x is not a number") << QPointF(notANumber, 7) << QPointF(notANumber, 7) << false;
    QTest::newRow("y is not a number") << QPointF(5, 7) << QPointF(5, notANumber) << false;
    QTest::newRow("x is infinite") << QPointF(infinite, 7) << QPointF(5, 7) << false;
}

void tst_DefPolygon::equalityIsTolerant()
{
    QFETCH(QPointF, a);
    QFETCH(QPointF, b);
    QFETCH(bool, equal);

    QCOMPARE(DefPoint::epsilon, 0.01);
    QCOMPARE(pointAt(a) == pointAt(b), equal);
    QCOMPARE(pointAt(b) == pointAt(a), equal);
    QCOMPARE(pointAt(a, QStringLiteral("н1")) == pointAt(b, QStringLiteral("н2")), equal);
}

void tst_DefPolygon::equalityIsNotTransitive()
{
    const DefPoint a{QString(), 0, 0};
    const DefPoint b{QString(), 0.008, 0};
    const DefPoint c{QString(), 0.016, 0};

    QVERIFY(a == b);
    QVERIFY(b == c);
    QVERIFY(!(a == c));
}

void tst_DefPolygon::orderIsExact_data()
{
    QTest::addColumn<QPointF>("a");
    QTest::addColumn<QPointF>("b");
    QTest::addColumn<bool>("less");
    QTest::addColumn<bool>("greater");

    QTest::newRow("same place") << QPointF(5, 7) << QPointF(5, 7) << false << false;
    QTest::newRow("x decides") << QPointF(1, 9) << QPointF(2, 0) << true << false;
    QTest::newRow("y decides when x is the same") << QPointF(1, 0) << QPointF(1, 9) << true << false;
    QTest::newRow("x within the tolerance still decides") << QPointF(1, 9) << QPointF(1.001, 0) << true << false;
    QTest::newRow("y within the tolerance still decides") << QPointF(1, 0) << QPointF(1, 0.001) << true << false;
    QTest::newRow("negative x") << QPointF(-2, 0) << QPointF(-1, 0) << true << false;
    QTest::newRow("infinite x") << QPointF(-infinite, 0) << QPointF(infinite, 0) << true << false;
    QTest::newRow("y decides when an x is not a number") << QPointF(notANumber, 1) << QPointF(2, 2) << true << false;
}

void tst_DefPolygon::orderIsExact()
{
    QFETCH(QPointF, a);
    QFETCH(QPointF, b);
    QFETCH(bool, less);
    QFETCH(bool, greater);

    QCOMPARE(pointAt(a) < pointAt(b), less);
    QCOMPARE(pointAt(b) < pointAt(a), greater);
    QCOMPARE(pointAt(a, QStringLiteral("н2")) < pointAt(b, QStringLiteral("н1")), less);
    QCOMPARE(pointAt(b, QStringLiteral("н1")) < pointAt(a, QStringLiteral("н2")), greater);
}

void tst_DefPolygon::designationIsSplit_data()
{
    QTest::addColumn<QString>("def");
    QTest::addColumn<QString>("prefix");
    QTest::addColumn<int>("num");

    QTest::newRow("text and number") << QStringLiteral("н12") << QStringLiteral("н") << 12;
    QTest::newRow("number only") << QStringLiteral("12") << QString() << 12;
    QTest::newRow("all of the last digits") << QStringLiteral("1.2") << QStringLiteral("1.") << 2;
    QTest::newRow("digits inside the text") << QStringLiteral("7н10к15") << QStringLiteral("7н10к") << 15;
    QTest::newRow("no number") << QStringLiteral("ЗУ") << QStringLiteral("ЗУ") << -1;
    QTest::newRow("number in front only") << QStringLiteral("12н") << QStringLiteral("12н") << -1;
    QTest::newRow("empty") << QStringLiteral("") << QStringLiteral("") << -1;
    QTest::newRow("null") << QString() << QString() << -1;
    QTest::newRow("leading zeros") << QStringLiteral("н007") << QStringLiteral("н") << 7;
    QTest::newRow("zero") << QStringLiteral("н0") << QStringLiteral("н") << 0;
    QTest::newRow("minus belongs to the text") << QStringLiteral("н-5") << QStringLiteral("н-") << 5;
    QTest::newRow("space at the end") << QStringLiteral("н5 ") << QStringLiteral("н5 ") << -1;
    QTest::newRow("largest number") << QStringLiteral("н2147483647") << QStringLiteral("н") << 2147483647;
    QTest::newRow("one more than the largest") << QStringLiteral("н2147483648") << QStringLiteral("н") << 0;
    QTest::newRow("too large") << QStringLiteral("н3000000000") << QStringLiteral("н") << 0;
    QTest::newRow("far too large") << QStringLiteral("A99999999999") << QStringLiteral("A") << 0;
    QTest::newRow("digits of another script")
        << QStringLiteral("н\u0661\u0662") << QStringLiteral("н\u0661\u0662") << -1;
    QTest::newRow("line break at the end") << QStringLiteral("н12\n") << QStringLiteral("н") << 12;
    QTest::newRow("two line breaks at the end") << QStringLiteral("н12\n\n") << QStringLiteral("н12\n\n") << -1;
    QTest::newRow("half a character") << QString(QChar(0xD800)) + QStringLiteral("12")
                                      << QString(QChar(0xD800)) + QStringLiteral("12") << -1;
    QTest::newRow("line break inside") << QStringLiteral("н\n12") << QStringLiteral("н\n12") << -1;
}

void tst_DefPolygon::designationIsSplit()
{
    QFETCH(QString, def);
    QString prefix = QStringLiteral("left over");
    int num = 77;

    splitDef(def, prefix, num);

    QTEST(prefix, "prefix");
    QTEST(num, "num");
}

void tst_DefPolygon::anyDesignationIsSplitByTheExpression()
{
    const QRegularExpression re(QStringLiteral("^(.*?)(\\d+)$"));
    const QString alphabet = QStringLiteral("0189/:aн.\n\r\u2028\u0661") + QChar(0xD83D) + QChar(0xDE00);
    QRandomGenerator random(4);
    for (int i = 0; i < 100000; ++i) {
        QString def;
        for (int size = random.bounded(9); size > 0; --size)
            def += alphabet.at(random.bounded(alphabet.size()));
        QString prefix;
        int num = 77;
        const QRegularExpressionMatch match = re.match(def);

        splitDef(def, prefix, num);

        QCOMPARE(prefix, match.hasMatch() ? match.captured(1) : def);
        QCOMPARE(num, match.hasMatch() ? match.captured(2).toInt() : -1);
    }
}

void tst_DefPolygon::centroidOfObject_data()
{
    QTest::addColumn<QVector<Places>>("contours");
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");

    const Places square{{0, 0}, {1, 0}, {1, 1}, {0, 1}, {0, 0}};
    const Places reversed{{0, 0}, {0, 1}, {1, 1}, {1, 0}, {0, 0}};
    const Places hole{{10, 10}, {30, 10}, {30, 30}};

    QTest::newRow("no contour") << QVector<Places>{} << 0.0 << 0.0;
    QTest::newRow("first contour empty") << QVector<Places>{{}, square} << 0.0 << 0.0;
    QTest::newRow("one vertex") << QVector<Places>{{{3, 4}}} << 3.0 << 4.0;
    QTest::newRow("one vertex very far off") << QVector<Places>{{{1e200, -1e200}}} << 1e200 << -1e200;
    QTest::newRow("two vertices") << QVector<Places>{{{1, 2}, {5, 10}}} << 3.0 << 6.0;
    QTest::newRow("closed square") << QVector<Places>{square} << 0.5 << 0.5;
    QTest::newRow("open square") << QVector<Places>{square.mid(0, 4)} << 0.5 << 0.5;
    QTest::newRow("open square off the origin")
        << QVector<Places>{{{10, 10}, {12, 10}, {12, 12}, {10, 12}}} << 11.0 << 11.0;
    QTest::newRow("square the other way round") << QVector<Places>{reversed} << 0.5 << 0.5;
    QTest::newRow("triangle") << QVector<Places>{{{0, 0}, {3, 0}, {0, 6}, {0, 0}}} << 1.0 << 2.0;
    QTest::newRow("area counts, not vertices")
        << QVector<Places>{{{0, 0}, {1, 0}, {2, 0}, {3, 0}, {4, 0}, {4, 4}, {0, 4}}} << 2.0 << 2.0;
    // The bar 6 by 2 and on it the block 2 by 4, their middles at (3, 1) and (1, 4): (3 * 12 + 1 * 8) / 20 is 2.2.
    QTest::newRow("angle") << QVector<Places>{{{0, 0}, {6, 0}, {6, 2}, {2, 2}, {2, 6}, {0, 6}}} << 2.2 << 2.2;
    QTest::newRow("further contours are ignored") << QVector<Places>{square, hole} << 0.5 << 0.5;
    QTest::newRow("on one line") << QVector<Places>{{{0, 0}, {1, 1}, {5, 5}}} << 2.0 << 2.0;
    QTest::newRow("on one line and closed") << QVector<Places>{{{0, 0}, {2, 0}, {6, 0}, {0, 0}}} << 2.0 << 0.0;
    QTest::newRow("all at one place") << QVector<Places>{{{7, 8}, {7, 8}, {7, 8}}} << 7.0 << 8.0;
    QTest::newRow("crossed halves cancel out") << QVector<Places>{{{0, 0}, {2, 2}, {2, 0}, {0, 2}}} << 1.0 << 1.0;
    QTest::newRow("area below the limit")
        << QVector<Places>{{{0, 0}, {1.4e-6, 0}, {0, 1.4e-6}, {0, 0}}} << 3.5e-7 << 3.5e-7;
    QTest::newRow("area at the limit") << QVector<Places>{{{0, 0}, {2e-12, 0}, {0, 1}, {0, 0.5}}} << 5e-13 << 0.375;
    QTest::newRow("area above the limit")
        << QVector<Places>{{{0, 0}, {1.5e-6, 0}, {0, 1.5e-6}, {0, 0}}} << 5e-7 << 5e-7;
}

void tst_DefPolygon::centroidOfObject()
{
    QFETCH(QVector<Places>, contours);
    DefPolygon object;
    for (const Places &places : contours)
        object.contours.append(pointsAt(places));

    const QPointF centroid = object.centroid();

    QTEST(centroid.x(), "x");
    QTEST(centroid.y(), "y");
}

void tst_DefPolygon::centroidIsNotANumber()
{
    const DefPolygon object{QString(), {pointsAt({{0, 0}, {notANumber, 0}, {1, 1}})}};

    QVERIFY(std::isnan(object.centroid().x()));
}

QTEST_GUILESS_MAIN(tst_DefPolygon)
#include "tst_defpolygon.moc"
