#include "modeltesting.h"

#include <QLocale>
#include <QTest>

// The locale of coordinates is fixed by the first of them, so this process has no other than the Russian one.
class tst_CoordLocale : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void coordinateIsShownInRussian_data();
    void coordinateIsShownInRussian();
    void laterLocaleHasNoEffect();
};

void tst_CoordLocale::initTestCase()
{
    QLocale::setDefault(QLocale(QLocale::Russian, QLocale::Russia));
}

void tst_CoordLocale::coordinateIsShownInRussian_data()
{
    QTest::addColumn<double>("coordinate");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("edited");

    QTest::newRow("below a thousand") << 999.25 << QStringLiteral("999,25") << QStringLiteral("999.25");
    QTest::newRow("thousands") << 1234.5 << QStringLiteral("1\u00a0234,50") << QStringLiteral("1234.50");
    QTest::newRow("millions") << 1234567.5 << QStringLiteral("1\u00a0234\u00a0567,50") << QStringLiteral("1234567.50");
    QTest::newRow("negative") << -1234567.5 << QStringLiteral("-1\u00a0234\u00a0567,50")
                              << QStringLiteral("-1234567.50");
    QTest::newRow("zero") << 0.0 << QStringLiteral("0,00") << QStringLiteral("0.00");
}

void tst_CoordLocale::coordinateIsShownInRussian()
{
    QFETCH(double, coordinate);
    QFETCH(QString, shown);
    QFETCH(QString, edited);
    Table table(QStringLiteral("н1 0 0"));
    table.object.contours[0][0].x = coordinate;
    table.object.contours[0][0].y = coordinate;

    for (int column : {1, 2}) {
        QCOMPARE(table.cell(0, column).data(Qt::DisplayRole), QVariant(shown));
        QCOMPARE(table.cell(0, column).data(Qt::EditRole), QVariant(edited));
    }
    QCOMPARE(table.model.formatCoord(coordinate, true), shown);
    QCOMPARE(table.model.formatCoord(coordinate, false), edited);
}

void tst_CoordLocale::laterLocaleHasNoEffect()
{
    const DefPolygonTableModel model;
    QCOMPARE(model.formatCoord(1234.5, true), QStringLiteral("1\u00a0234,50"));

    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));

    QCOMPARE(model.formatCoord(1234.5, true), QStringLiteral("1\u00a0234,50"));
    QCOMPARE(model.formatCoord(1234.5, false), QStringLiteral("1234.50"));
    QCOMPARE(DefPolygonTableModel().formatCoord(1234.5, true), QStringLiteral("1\u00a0234,50"));
    QLocale::setDefault(QLocale(QLocale::Russian, QLocale::Russia));
}

QTEST_GUILESS_MAIN(tst_CoordLocale)
#include "tst_coordlocale.moc"
