#include "numbertext.h"
#include "resultmeasure.h"
#include "workbenchtesting.h"

#include <QTest>

#include <cmath>

Q_DECLARE_METATYPE(Closure)

/// Measures of objects, and the texts of numbers.
class tst_WorkbenchMeasure : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void objectIsMeasured_data();
    void objectIsMeasured();
    void areaOfFarObjectKeepsItsDecimals();
    void nonFiniteSizeIsNotShown_data();
    void nonFiniteSizeIsNotShown();
    void areaOfManyRingsIsFound_data();
    void areaOfManyRingsIsFound();
    void expensiveNestingIsGivenUp();

    void nounAgreesWithItsNumber_data();
    void nounAgreesWithItsNumber();
    void numberIsGrouped();
};

namespace {

ObjectMeasure measureOf(const QStringList &contours)
{
    const ImportResult result = resultOf({{QString(), contours}});
    return ResultMeasure(result).measure(0);
}

QStringList concentricSquares(int count)
{
    QStringList rings;
    for (int i = 0; i < count; ++i)
        rings.append(square(i, i, 2 * (count - i)));
    return rings;
}

QStringList separateSquares(int count)
{
    QStringList rings;
    const int columns = static_cast<int>(std::sqrt(count));
    for (int i = 0; i < count; ++i) {
        const int row = i / columns;
        rings.append(square(3 * (i % columns), 3 * row, 1));
    }
    return rings;
}

} // namespace

void tst_WorkbenchMeasure::objectIsMeasured_data()
{
    QTest::addColumn<QStringList>("contours");
    QTest::addColumn<Closure>("closure");
    QTest::addColumn<double>("perimeter");
    QTest::addColumn<double>("area");

    const double none = qQNaN();
    const QString outer = square(0, 0, 10);
    QTest::newRow("no contours") << QStringList() << Closure::None << 0.0 << none;
    QTest::newRow("contour without vertices") << QStringList{QString()} << Closure::Open << 0.0 << none;
    QTest::newRow("line") << QStringList{QStringLiteral("0 0, 3 4, 6 0")} << Closure::Open << 10.0 << none;
    QTest::newRow("ring") << QStringList{outer} << Closure::Closed << 40.0 << 100.0;
    QTest::newRow("clockwise ring") << QStringList{QStringLiteral("0 0, 0 2, 2 2, 2 0, 0 0")} << Closure::Closed << 8.0
                                    << 4.0;
    QTest::newRow("ring and line") << QStringList{outer, QStringLiteral("2 2, 5 2")} << Closure::Mixed << 43.0 << 100.0;
    QTest::newRow("two rings side by side") << QStringList{outer, square(20, 0, 5)} << Closure::Closed << 60.0 << 125.0;
    QTest::newRow("hole") << QStringList{outer, square(2, 2, 3)} << Closure::Closed << 52.0 << 91.0;
    QTest::newRow("hole before its ring") << QStringList{square(2, 2, 3), outer} << Closure::Closed << 52.0 << 91.0;
    QTest::newRow("island in a hole") << QStringList{outer, square(2, 2, 6), square(4, 4, 2)} << Closure::Closed << 72.0
                                      << 68.0;
    QTest::newRow("hole in the smaller ring")
        << QStringList{outer, square(20, 0, 5), square(21, 1, 2)} << Closure::Closed << 68.0 << 121.0;
    QTest::newRow("ring in the box, but not in the ring")
        << QStringList{QStringLiteral("0 0, 10 0, 10 10, 9 1, 0 0"), square(1, 6, 2)} << Closure::Closed
        << 10 + 10 + std::sqrt(82) + std::sqrt(82) + 8 << 10.0 + 4.0;
    QTest::newRow("hole that touches a side") << QStringList{outer, square(0, 2, 3)} << Closure::Closed << 52.0 << 91.0;
    QTest::newRow("hole in a corner, rounded outwards")
        << QStringList{outer, QStringLiteral("0 0, 2 -0.004, 2 2, -0.004 2, 0 0")} << Closure::Closed << 48.0 << 96.0;
    QTest::newRow("hole with all vertices on the ring")
        << QStringList{outer, QStringLiteral("0 5, 5 0, 10 5, 5 10, 0 5")} << Closure::Closed
        << 40.0 + 20 * std::sqrt(2) << 50.0;
    QTest::newRow("neighbour that touches a side")
        << QStringList{outer, square(10, 2, 3)} << Closure::Closed << 52.0 << 109.0;
}

void tst_WorkbenchMeasure::objectIsMeasured()
{
    QFETCH(QStringList, contours);
    QFETCH(Closure, closure);
    QFETCH(double, perimeter);
    QFETCH(double, area);

    const ObjectMeasure measure = measureOf(contours);

    QCOMPARE(measure.closure, closure);
    QVERIFY2(std::fabs(measure.perimeter - perimeter) < 0.01, qPrintable(QString::number(measure.perimeter)));
    QCOMPARE(std::isnan(measure.area), std::isnan(area));
    QVERIFY2(std::isnan(area) || std::fabs(measure.area - area) < 0.03, qPrintable(QString::number(measure.area)));
}

void tst_WorkbenchMeasure::areaOfFarObjectKeepsItsDecimals()
{
    QCOMPARE(metresText(measureOf({square(50000000, 60000000, 0.5)}).area), QStringLiteral("0.25"));
}

void tst_WorkbenchMeasure::nonFiniteSizeIsNotShown_data()
{
    QTest::addColumn<QStringList>("contours");

    const QString huge = QStringLiteral("0 0, 1e300 0, 1e300 1e300, 0 0");
    QTest::newRow("vertex without coordinates") << QStringList{QStringLiteral("0 0, nan nan, 1 1, 0 0")};
    QTest::newRow("huge ring") << QStringList{huge};
    QTest::newRow("huge rings") << QStringList{huge, huge};
}

void tst_WorkbenchMeasure::nonFiniteSizeIsNotShown()
{
    QFETCH(QStringList, contours);

    QCOMPARE(metresText(measureOf(contours).area), QString());
}

void tst_WorkbenchMeasure::areaOfManyRingsIsFound_data()
{
    QTest::addColumn<QStringList>("contours");
    QTest::addColumn<double>("area");

    // Squares with the sides 2n, 2n - 2 ... 2. For b = a - 2, a² - b² is 2 (a + b): the area is twice the sum of sides.
    QTest::newRow("one in another") << concentricSquares(2000) << 2000.0 * 2001 * 2;
    QTest::newRow("side by side") << separateSquares(40000) << 40000.0;
    QTest::newRow("side by side in one") << QStringList{square(-1, -1, 700)} + separateSquares(40000)
                                         << 700.0 * 700 - 40000;
}

void tst_WorkbenchMeasure::areaOfManyRingsIsFound()
{
    QFETCH(QStringList, contours);
    QFETCH(double, area);

    QCOMPARE(measureOf(contours).area, area);
}

// Bars that cross the middle of the quadtree share its root cell, so all pairs have to be compared.
void tst_WorkbenchMeasure::expensiveNestingIsGivenUp()
{
    QStringList rings;
    for (int i = 0; i < 15000; ++i)
        rings.append(QStringLiteral("%1 0, %2 0, %2 1000, %1 1000, %1 0").arg(2 * i).arg(2 * i + 1));
    const ImportResult result = resultOf({{QString(), {square(0, 0, 1)}}, {QString(), rings}});

    const QVector<ObjectMeasure> measures = ResultMeasure(result).measureAll();

    QCOMPARE(measures.at(0).area, 1.0);
    QVERIFY(measures.at(1).perimeter > 0);
    QVERIFY(std::isnan(measures.at(1).area));
}

void tst_WorkbenchMeasure::nounAgreesWithItsNumber_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("text");

    QTest::newRow("0") << 0 << QStringLiteral("0 строк");
    QTest::newRow("1") << 1 << QStringLiteral("1 строка");
    QTest::newRow("2") << 2 << QStringLiteral("2 строки");
    QTest::newRow("4") << 4 << QStringLiteral("4 строки");
    QTest::newRow("5") << 5 << QStringLiteral("5 строк");
    QTest::newRow("11") << 11 << QStringLiteral("11 строк");
    QTest::newRow("14") << 14 << QStringLiteral("14 строк");
    QTest::newRow("21") << 21 << QStringLiteral("21 строка");
    QTest::newRow("112") << 112 << QStringLiteral("112 строк");
    QTest::newRow("122") << 122 << QStringLiteral("122 строки");
    QTest::newRow("a million") << 1000001 << QStringLiteral("1\u00A0000\u00A0001 строка");
}

void tst_WorkbenchMeasure::nounAgreesWithItsNumber()
{
    QFETCH(int, count);
    QFETCH(QString, text);

    const NounForms forms{QStringLiteral("строка"), QStringLiteral("строки"), QStringLiteral("строк")};

    QCOMPARE(countText(count, forms), text);
}

void tst_WorkbenchMeasure::numberIsGrouped()
{
    QCOMPARE(groupedText(999), QStringLiteral("999"));
    QCOMPARE(metresText(1234567.891), QStringLiteral("1\u00A0234\u00A0567.89"));
    QCOMPARE(metresText(0), QStringLiteral("0.00"));
    QCOMPARE(metresText(qInf()), QString());
}

QTEST_GUILESS_MAIN(tst_WorkbenchMeasure)
#include "tst_workbench_measure.moc"
