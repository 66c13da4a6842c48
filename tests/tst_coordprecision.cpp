#include "defpolygontablemodel.h"

#include <QLocale>
#include <QTest>

#include <limits>

// The first precision below 1 fixes the decimals for the whole process, so the steps stand in one slot and in order.
class tst_CoordPrecision : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void firstFractionFixesDecimals();
};

void tst_CoordPrecision::initTestCase()
{
    QLocale::setDefault(QLocale::c());
}

void tst_CoordPrecision::firstFractionFixesDecimals()
{
    const DefPolygonTableModel model;
    QCOMPARE(DefPolygonTableModel::coordPrecision(), 0.01);

    for (double refused : {0.0, -0.5, std::numeric_limits<double>::quiet_NaN()}) {
        DefPolygonTableModel::setCoordPrecision(refused);
        QCOMPARE(DefPolygonTableModel::coordPrecision(), 0.01);
    }

    for (double whole : {1.0, 25.0}) {
        DefPolygonTableModel::setCoordPrecision(whole);
        QCOMPARE(DefPolygonTableModel::coordPrecision(), whole);
        QCOMPARE(model.formatCoord(1234.75, false), QStringLiteral("1235"));
        QCOMPARE(model.formatCoord(1234.75, true), QStringLiteral("1235"));
    }

    DefPolygonTableModel::setCoordPrecision(0.0095); // which is below 1 when it is multiplied by 100
    QCOMPARE(model.formatCoord(1234.75, false), QStringLiteral("1234.750"));
    QCOMPARE(model.formatCoord(1234.75, true), QStringLiteral("1234.750"));

    for (double later : {0.1, 1.0, 0.00001}) {
        DefPolygonTableModel::setCoordPrecision(later);
        QCOMPARE(DefPolygonTableModel::coordPrecision(), later);
        QCOMPARE(model.formatCoord(1234.75, false), QStringLiteral("1234.750"));
        QCOMPARE(DefPolygonTableModel().formatCoord(1234.75, true), QStringLiteral("1234.750"));
    }
}

QTEST_GUILESS_MAIN(tst_CoordPrecision)
#include "tst_coordprecision.moc"
