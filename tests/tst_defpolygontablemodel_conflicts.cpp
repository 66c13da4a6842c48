#include "modeltesting.h"

#include <QTest>

#include <limits>

class tst_DefPolygonTableModelConflicts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void conflictsAreColoured_data();
    void conflictsAreColoured();
    void rowOutsideIsNoConflict();
};

void tst_DefPolygonTableModelConflicts::conflictsAreColoured_data()
{
    QTest::addColumn<QString>("object");
    QTest::addColumn<QString>("rows");

    QTest::newRow("one vertex") << QStringLiteral("н1 0 0") << QStringLiteral(".");
    QTest::newRow("different numbers") << QStringLiteral("н1 0 0, н2 5 5") << QStringLiteral("..");
    QTest::newRow("one number, two places") << QStringLiteral("н1 0 0, н2 5 5, н1 9 9") << QStringLiteral("x.x");
    QTest::newRow("ring closed") << QStringLiteral("н1 0 0, н2 5 5, н3 5 0, н1 0 0") << QStringLiteral("....");
    QTest::newRow("two numbers, one place") << QStringLiteral("н1 0 0, н2 0 0") << QStringLiteral("..");
    QTest::newRow("case does not count") << QStringLiteral("н1 0 0, Н1 0.02 0") << QStringLiteral("xx");
    QTest::newRow("apart in y") << QStringLiteral("н1 0 0, Н1 0 -0.02") << QStringLiteral("xx");
    QTest::newRow("near") << QStringLiteral("н1 0 0, Н1 0.005 0.005") << QStringLiteral("..");
    QTest::newRow("just the tolerance apart") << QStringLiteral("н1 0 0, н1 0.01 0.01") << QStringLiteral("..");
    QTest::newRow("near and far from each other")
        << QStringLiteral("н1 0 0, н1 0.008 0, н1 0.016 0") << QStringLiteral("x.x");
    QTest::newRow("two near, one far") << QStringLiteral("н1 0 0, н1 0 0, н1 9 9") << QStringLiteral("xxx");
    QTest::newRow("no designations") << QStringLiteral("- 0 0, - 9 9, - 5 5") << QStringLiteral("...");
    QTest::newRow("leading zeros count") << QStringLiteral("н1 0 0, н01 9 9") << QStringLiteral("..");
    QTest::newRow("in another contour") << QStringLiteral("н1 0 0, н2 1 1 | н1 9 9") << QStringLiteral("x.|x");
    QTest::newRow("same place in another contour") << QStringLiteral("н1 0 0 | н1 0 0") << QStringLiteral(".|.");
    QTest::newRow("x not a number") << QStringLiteral("н1 nan 0, н1 0 0") << QStringLiteral("xx");
    QTest::newRow("y not a number in both") << QStringLiteral("н1 0 nan, н1 0 nan") << QStringLiteral("xx");
    QTest::newRow("infinite in both") << QStringLiteral("н1 inf 0, н1 inf 0") << QStringLiteral("xx");
    QTest::newRow("one vertex that is not a number") << QStringLiteral("н1 nan 0, н2 0 0") << QStringLiteral("..");
}

void tst_DefPolygonTableModelConflicts::conflictsAreColoured()
{
    QFETCH(QString, object);
    QFETCH(QString, rows);
    const Table table(object);
    const QMap<QChar, QString> colours{{QLatin1Char('.'), QStringLiteral("none")},
                                       {QLatin1Char('x'), QStringLiteral("#ffdcdc")},
                                       {QLatin1Char('|'), QStringLiteral("#f0f0f0")}};

    QCOMPARE(table.model.rowCount(), rows.size());
    for (int row = 0; row < rows.size(); ++row) {
        QCOMPARE(table.model.isConflictingPoint(row), rows.at(row) == QLatin1Char('x'));
        for (int column = 0; column < 3; ++column)
            QCOMPARE(backgroundOf(table.cell(row, column)), colours.value(rows.at(row)));
    }
}

void tst_DefPolygonTableModelConflicts::rowOutsideIsNoConflict()
{
    const Table table(QStringLiteral("н1 0 0, н1 9 9"));

    QVERIFY(!table.model.isConflictingPoint(-1));
    QVERIFY(!table.model.isConflictingPoint(2));
    QVERIFY(!table.model.isConflictingPoint(std::numeric_limits<int>::max()));
    QVERIFY(!table.model.isConflictingPoint(std::numeric_limits<int>::min()));
}

QTEST_GUILESS_MAIN(tst_DefPolygonTableModelConflicts)
#include "tst_defpolygontablemodel_conflicts.moc"
