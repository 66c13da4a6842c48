#include "mifpairs.h"
#include "resultoutline.h"

#include <QLocale>
#include <QTest>

namespace {

// Extra fields as on the form, where columns count from 1.
using Fields = QList<QPair<int, QString>>;

void enterFields(const DialogDriver &driver, const Fields &fields)
{
    for (int row = 0; row < fields.size(); ++row) {
        if (row > 0)
            driver.press("plusToolButton");
        driver.setNumber(qPrintable(QStringLiteral("fieldSpin_%1").arg(row)), fields.at(row).first);
        driver.type(qPrintable(QStringLiteral("fieldEdit_%1").arg(row)), fields.at(row).second);
    }
}

} // namespace

class tst_ImportPluginColumns : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }

    void hostDecidesOnTheColumns_data();
    void hostDecidesOnTheColumns();
    void tableShowsTheColumnsOfTheHost();
    void extraFieldsFillTheirColumns_data();
    void extraFieldsFillTheirColumns();
    void extraFieldsCountAsOfTheRun();
    void numberingBeginsAsEntered();
};

void tst_ImportPluginColumns::hostDecidesOnTheColumns_data()
{
    QTest::addColumn<QList<int>>("columns"); // of designation, X and Y, and of the object's designation
    QTest::addColumn<QString>("object");
    QTest::addColumn<QString>("vertex");

    QTest::newRow("Y before X") << QList<int>{0, 2, 1, 0} << QStringLiteral(":ЗУ1") << QStringLiteral("  н1|2.00|1.00");
    QTest::newRow("designation last") << QList<int>{2, 0, 1, 1} << QStringLiteral("|:ЗУ1")
                                      << QStringLiteral("  1.00|2.00|н1");
    QTest::newRow("gaps") << QList<int>{1, 3, 6, 3} << QStringLiteral("|||:ЗУ1")
                          << QStringLiteral("  |н1||1.00|||2.00");
    QTest::newRow("designation and X in one")
        << QList<int>{1, 1, 2, 0} << QStringLiteral(":ЗУ1") << QStringLiteral("  |н1|2.00");
    QTest::newRow("X and Y in one") << QList<int>{0, 2, 2, 0} << QStringLiteral(":ЗУ1") << QStringLiteral("  н1||1.00");
    QTest::newRow("Y below zero") << QList<int>{0, 1, -1, 0} << QStringLiteral(":ЗУ1") << QStringLiteral("  н1|1.00|");
    QTest::newRow("all below zero") << QList<int>{-1, -1, -1, -1} << QStringLiteral(":ЗУ1") << QStringLiteral("  -");
}

void tst_ImportPluginColumns::hostDecidesOnTheColumns()
{
    QFETCH(QList<int>, columns);
    QFETCH(QString, object);
    QFETCH(QString, vertex);
    PluginHost host;
    host.columns = {columns.at(0), columns.at(1), columns.at(2), columns.at(3)};

    const QString result = host.call(fromMif, [&host](DialogDriver &driver) {
        searchNothing(driver);
        driver.process(writeLines(host));
        driver.accept();
    });

    QCOMPARE(ResultOutline::lines(result).mid(0, 2), (QStringList{object, vertex}));
}

void tst_ImportPluginColumns::tableShowsTheColumnsOfTheHost()
{
    PluginHost host;
    host.columns = {3, 1, 4, 0};

    host.call(fromMif, [&host](DialogDriver &driver) {
        searchNothing(driver);
        driver.process(writeLines(host));
        QCOMPARE(DialogDriver::shown(driver.table()),
                 (QStringList{QStringLiteral("|1.00||н1|2.00"), QStringLiteral("|3.00||н2|4.00")}));
        QCOMPARE(driver.table()->model()->headerData(4, Qt::Horizontal).toString(), QStringLiteral("5"));
        QVERIFY(driver.edit(driver.table(), 0, 3, QStringLiteral("угол")));
        QCOMPARE(DialogDriver::shown(driver.table()).first(), QStringLiteral("|1.00||угол|2.00"));
    });
}

void tst_ImportPluginColumns::extraFieldsFillTheirColumns_data()
{
    QTest::addColumn<Fields>("fields");
    QTest::addColumn<QString>("vertex");

    QTest::newRow("none") << Fields{{4, QString()}} << QStringLiteral("  н1|1.00|2.00");
    QTest::newRow("next column") << Fields{{4, QStringLiteral("ЗУ")}} << QStringLiteral("  н1|1.00|2.00|ЗУ");
    QTest::newRow("gaps") << Fields{{5, QStringLiteral("a")}, {7, QStringLiteral("b")}}
                          << QStringLiteral("  н1|1.00|2.00||a||b");
    QTest::newRow("one column twice") << Fields{{5, QStringLiteral("a")},
                                                {7, QStringLiteral("b")},
                                                {7, QStringLiteral("c")}}
                                      << QStringLiteral("  н1|1.00|2.00||a||c");
    QTest::newRow("row without a text") << Fields{{9, QString()}, {4, QStringLiteral("a")}}
                                        << QStringLiteral("  н1|1.00|2.00|a");
    QTest::newRow("column of X") << Fields{{2, QStringLiteral("a")}} << QStringLiteral("  н1|1.00|2.00");
    QTest::newRow("column of the designation") << Fields{{1, QStringLiteral("a")}} << QStringLiteral("  н1|1.00|2.00");
    QTest::newRow("five, from the last") << Fields{{8, QStringLiteral("e")},
                                                   {7, QStringLiteral("d")},
                                                   {6, QStringLiteral("c")},
                                                   {5, QStringLiteral("b")},
                                                   {4, QStringLiteral("a")}}
                                         << QStringLiteral("  н1|1.00|2.00|a|b|c|d|e");
}

void tst_ImportPluginColumns::extraFieldsFillTheirColumns()
{
    QFETCH(Fields, fields);
    QFETCH(QString, vertex);
    PluginHost host;

    const QString result = host.call(fromMif, [&](DialogDriver &driver) {
        searchNothing(driver);
        enterFields(driver, fields);
        driver.process(writeLines(host));
        driver.accept();
    });

    QCOMPARE(ResultOutline::lines(result).value(1), vertex);
}

void tst_ImportPluginColumns::extraFieldsCountAsOfTheRun()
{
    PluginHost host;

    const QString result = host.call(fromMif, [&host](DialogDriver &driver) {
        searchNothing(driver);
        driver.type("fieldEdit_0", QStringLiteral("до"));
        driver.process(writeLines(host));
        driver.type("fieldEdit_0", QStringLiteral("после"));
        driver.click(driver.list(), 1);
        QCOMPARE(DialogDriver::shown(driver.table()),
                 (QStringList{QStringLiteral("н2|3.00|4.00|до"), QStringLiteral("н3|5.00|6.00|до")}));
        driver.accept();
    });

    QCOMPARE(ResultOutline::lines(result),
             (QStringList{QStringLiteral(":ЗУ1"), QStringLiteral("  н1|1.00|2.00|до"),
                          QStringLiteral("  н2|3.00|4.00|до"), QStringLiteral(":ЗУ2"),
                          QStringLiteral("  н2|3.00|4.00|до"), QStringLiteral("  н3|5.00|6.00|до")}));
    QCOMPARE(QSettings().value(QStringLiteral("ImportObjects/FieldNumValueMap/3")).toString(), QStringLiteral("после"));
}

void tst_ImportPluginColumns::numberingBeginsAsEntered()
{
    PluginHost host;

    const QString result = host.call(fromMif, [&host](DialogDriver &driver) {
        searchNothing(driver);
        driver.type("pointPrefEdit", QString());
        driver.setNumber("pointStartNumSpin", 99);
        driver.type("objectPrefEdit", QStringLiteral("Контур "));
        driver.setNumber("objectStartNumSpin", 7);
        driver.process(writeLines(host));
        driver.accept();
    });

    QCOMPARE(ResultOutline::lines(result),
             (QStringList{QStringLiteral("Контур 7"), QStringLiteral("  99|1.00|2.00"),
                          QStringLiteral("  100|3.00|4.00"), QStringLiteral("Контур 8"),
                          QStringLiteral("  100|3.00|4.00"), QStringLiteral("  101|5.00|6.00")}));
}

QTEST_MAIN(tst_ImportPluginColumns)
#include "tst_importplugin_columns.moc"
