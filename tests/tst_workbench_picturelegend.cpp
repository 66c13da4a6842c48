#include "picturelegend.h"

#include <QTest>

class tst_WorkbenchPictureLegend : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lengthIsRound_data();
    void lengthIsRound();
    void invalidLengthIsZero();
};

void tst_WorkbenchPictureLegend::lengthIsRound_data()
{
    QTest::addColumn<double>("maxLength");
    QTest::addColumn<double>("length");
    QTest::addColumn<QString>("text");

    const auto addRow = [](double maxLength, double length, const QString &text) {
        QTest::addRow("%g", maxLength) << maxLength << length << text;
    };
    addRow(0.0011, 0.001, QStringLiteral("1 мм"));
    addRow(0.0099, 0.005, QStringLiteral("5 мм"));
    addRow(0.01, 0.01, QStringLiteral("1 см"));
    addRow(0.0299, 0.02, QStringLiteral("2 см"));
    addRow(0.99, 0.5, QStringLiteral("50 см"));
    addRow(1, 1, QStringLiteral("1 м"));
    addRow(1.99, 1, QStringLiteral("1 м"));
    addRow(2, 2, QStringLiteral("2 м"));
    addRow(4.99, 2, QStringLiteral("2 м"));
    addRow(5, 5, QStringLiteral("5 м"));
    addRow(9.99, 5, QStringLiteral("5 м"));
    addRow(10, 10, QStringLiteral("10 м"));
    addRow(150, 100, QStringLiteral("100 м"));
    addRow(999, 500, QStringLiteral("500 м"));
    addRow(1000, 1000, QStringLiteral("1 км"));
    addRow(2100, 2000, QStringLiteral("2 км"));
    addRow(499999, 200000, QStringLiteral("200 км"));
    addRow(2.2e7, 2e7, QStringLiteral("20\u00a0000 км"));
    addRow(1.7e15, 1e15, QStringLiteral("1\u00a0000\u00a0000\u00a0000\u00a0000 км"));
}

void tst_WorkbenchPictureLegend::lengthIsRound()
{
    QFETCH(double, maxLength);

    const double length = roundLength(maxLength);

    QTEST(length, "length");
    QTEST(lengthText(length), "text");
}

void tst_WorkbenchPictureLegend::invalidLengthIsZero()
{
    for (const double maxLength : {0.0, -1.0, qQNaN(), qInf()})
        QCOMPARE(roundLength(maxLength), 0.0);
}

QTEST_GUILESS_MAIN(tst_WorkbenchPictureLegend)
#include "tst_workbench_picturelegend.moc"
