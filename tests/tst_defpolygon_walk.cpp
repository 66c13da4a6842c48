#include "defpolygon_walk.h"

#include <QRandomGenerator>
#include <QTest>

#include <cmath>
#include <limits>

namespace {

constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

/// Draws texts in no order: a coordinate is a whole number of steps, at times no number.
struct Layout
{
    double stepX = 1;
    double stepY = 1;
    int columns = 100;
    int rows = 100;
    int oddColumns = 0; ///< of how many x one is NaN, an infinity or a huge number; 0 for none
    int oddRows = 0;    ///< of how many y
};

double drawCoordinate(QRandomGenerator &random, double step, int count, int oddOnes)
{
    if (oddOnes > 0 && random.bounded(oddOnes) == 0) {
        const double odd[] = {noNumber, infinity, -infinity, 1e200, -1e308};
        return odd[random.bounded(5)];
    }
    return random.bounded(count) * step;
}

QVector<DefPoint> drawTexts(QRandomGenerator &random, const Layout &layout, int count)
{
    QVector<DefPoint> texts;
    for (int i = 0; i < count; ++i) {
        const double x = drawCoordinate(random, layout.stepX, layout.columns, layout.oddColumns);
        texts.append(DefPoint{QString(), x, drawCoordinate(random, layout.stepY, layout.rows, layout.oddRows)});
    }
    return texts;
}

/// Holds the answer for \a p against the one that comes of walking through all texts; empty when they are the same.
QString difference(const WalkSearch &search, const QVector<DefPoint> &texts, const QPointF &p)
{
    const DefPoint *const expected = findNearestPoint(texts, p);
    const DefPoint *const found = search.find(p);
    if (found == expected) // both are in the same list, as the texts are shared
        return QString();
    const auto place = [&](const DefPoint *text) {
        return QString::number(text == nullptr ? -1 : text - texts.constData());
    };
    return QStringLiteral("%1 in place of %2").arg(place(found), place(expected));
}

} // namespace

Q_DECLARE_METATYPE(Layout)

/// A walk that leaps is to come to where the plain one does, whatever the order of the texts.
class tst_DefPolygonWalk : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void walkLeapsToTheSameText_data();
    void walkLeapsToTheSameText();
    void everyTextOfAColumnIsFound();
    void firstOnTheWayIsTaken_data();
    void firstOnTheWayIsTaken();
    void firstOfTwoIsTaken();
    void walkStopsBehindABlock();
    void nothingIsNearest();
};

void tst_DefPolygonWalk::walkLeapsToTheSameText_data()
{
    QTest::addColumn<Layout>("layout");

    QTest::newRow("scattered") << Layout{0.37, 0.73, 3000, 3000};
    QTest::newRow("one column") << Layout{0, 0.5, 1, 100000};
    QTest::newRow("jittered column") << Layout{0.001, 7, 100, 20000};
    QTest::newRow("narrow strip") << Layout{0.1, 1, 100, 100000};
    QTest::newRow("strip as wide as far") << Layout{1, 30, 60, 1000};
    QTest::newRow("one row") << Layout{0.5, 0, 100000, 1};
    QTest::newRow("ties on a raster") << Layout{1, 1, 30, 30};
    QTest::newRow("ties in a column") << Layout{0, 1, 1, 40};
    QTest::newRow("ties in two columns") << Layout{1, 1, 2, 40};
    QTest::newRow("all at one place") << Layout{0, 0, 1, 1};
    QTest::newRow("odd numbers") << Layout{0.01, 5, 10, 5000, 2000, 2000};
    QTest::newRow("many odd numbers") << Layout{0.01, 5, 10, 5000, 3, 3};
    QTest::newRow("odd heights") << Layout{0.01, 5, 10, 5000, 0, 9};
    QTest::newRow("nothing but odd numbers") << Layout{1, 1, 2, 2, 1, 1};
}

void tst_DefPolygonWalk::walkLeapsToTheSameText()
{
    QFETCH(Layout, layout);
    QRandomGenerator random(1);
    for (const int count : {0, 1, 2, 1023, 1024, 1025, 2048, 3000, 4096, 5121}) {
        const QVector<DefPoint> texts = drawTexts(random, layout, count);
        const WalkSearch search(texts);
        for (int query = 0; query < 150; ++query) {
            const double x = drawCoordinate(random, layout.stepX, layout.columns, layout.oddColumns);
            const double y = drawCoordinate(random, layout.stepY, layout.rows, layout.oddRows);
            const double aside = query % 3 - 1;
            QCOMPARE(difference(search, texts, QPointF(x + aside * layout.stepX / 2, y)), QString());
            QCOMPARE(difference(search, texts, QPointF(x + aside * 0.6, y + aside * layout.stepY / 2)), QString());
        }
    }
}

// Also the first and the last of each block, from the right and from the left.
void tst_DefPolygonWalk::everyTextOfAColumnIsFound()
{
    constexpr int count = 4500;
    QVector<DefPoint> texts;
    for (int i = 0; i < count; ++i)
        texts.append(DefPoint{QString(), 5, static_cast<double>(i)});
    const WalkSearch search(texts);

    for (int i = 0; i < count; ++i) {
        for (const double x : {4, 5, 6})
            QCOMPARE(static_cast<int>(search.find(QPointF(x, i)) - texts.constData()), i);
    }
}

void tst_DefPolygonWalk::firstOnTheWayIsTaken_data()
{
    QTest::addColumn<double>("x");
    QTest::addColumn<int>("taken");

    QTest::newRow("to the right") << 4.0 << 0;
    QTest::newRow("to the left") << 6.0 << 4999;
}

void tst_DefPolygonWalk::firstOnTheWayIsTaken()
{
    QFETCH(double, x);
    QVector<DefPoint> texts;
    for (int i = 0; i < 5000; ++i)
        texts.append(DefPoint{QString::number(i), 5, i % 2 == 0 ? 1.0 : -1.0});

    const DefPoint *const found = WalkSearch(texts).find(QPointF(x, 0));

    QVERIFY(found != nullptr);
    QTEST(found->def.toInt(), "taken");
}

// Whichever of the two the tree comes to first.
void tst_DefPolygonWalk::firstOfTwoIsTaken()
{
    for (int i = 1; i < 1024; ++i) {
        QVector<DefPoint> texts(2048, DefPoint{QString(), 5, 1000});
        texts[0].y = texts[i].y = 1;
        texts[1024].y = texts[1024 + i].y = -1;
        const WalkSearch search(texts);
        QCOMPARE(static_cast<int>(search.find(QPointF(4, 0)) - texts.constData()), 0);
        QCOMPARE(static_cast<int>(search.find(QPointF(4, -1)) - texts.constData()), 1024);
        QCOMPARE(static_cast<int>(search.find(QPointF(6, 1)) - texts.constData()), i);
        QCOMPARE(static_cast<int>(search.find(QPointF(6, 0)) - texts.constData()), 1024 + i);
    }
}

// What lies behind the stop is not found, however near it is.
void tst_DefPolygonWalk::walkStopsBehindABlock()
{
    QVector<DefPoint> texts(5000, DefPoint{QString(), 0, 30});
    texts[2100].x = 40;
    texts[2200].y = 1;

    const DefPoint *const found = WalkSearch(texts).find(QPointF(0, 0));

    QVERIFY(found == texts.constData());
}

void tst_DefPolygonWalk::nothingIsNearest()
{
    QVERIFY(WalkSearch(QVector<DefPoint>()).find(QPointF(0, 0)) == nullptr);
    const QVector<DefPoint> texts(2000, DefPoint{QString(), 1, 2});
    const WalkSearch search(texts);
    QVERIFY(search.find(QPointF(noNumber, 0)) == nullptr);
    QVERIFY(search.find(QPointF(0, infinity)) == nullptr);
    const QVector<DefPoint> nowhere(2000, DefPoint{QString(), noNumber, 2});
    QVERIFY(WalkSearch(nowhere).find(QPointF(0, 0)) == nullptr);
}

QTEST_GUILESS_MAIN(tst_DefPolygonWalk)
#include "tst_defpolygon_walk.moc"
