#include "mifpairs.h"
#include "resultoutline.h"

#include <QLocale>
#include <QTest>

namespace {

const QColor red(255, 220, 220);
const QColor grey(240, 240, 240);

/// A point, a region, a polyline of two sections and a line.
QString writePlan(const PluginHost &host)
{
    const QStringList data{
        QStringLiteral("Point 1010.5 2010"),
        QStringLiteral("    Symbol (35,0,12)"),
        QStringLiteral("Region 1"),
        QStringLiteral("  3"),
        QStringLiteral("1000 2000"),
        QStringLiteral("1010.5 2010"),
        QStringLiteral("1000 2000"),
        QStringLiteral("    Pen (1,2,0)"),
        QStringLiteral("Pline Multiple 2"),
        QStringLiteral("  2"),
        QStringLiteral("500 600"),
        QStringLiteral("505.25 605"),
        QStringLiteral("  2"),
        QStringLiteral("1000 2000"),
        QStringLiteral("700 800"),
        QStringLiteral("Line 1 2 3 4"),
    };
    const QStringList records{QStringLiteral("\"п5\",1"), QStringLiteral("\"ЗУ10\",2"), QStringLiteral("ЗУ2,3"),
                              QStringLiteral("Лес,4")};
    return writePair(host, QStringLiteral("plan"), data, records);
}

// The plan with an extra field, after its objects and vertices were renamed and the objects sorted.
const QString editedPlan = QString::fromUtf8(R"(
<FormTable Name="Участки" Update="1">
    <Row>
        <Cell/>
        <Cell>зу3</Cell>
        <FormTable Name="Координаты">
            <Row>
                <Cell>н2</Cell>
                <Cell>500.00</Cell>
                <Cell>600.00</Cell>
                <Cell>0.1</Cell>
            </Row>
            <Row>
                <Cell>угол</Cell>
                <Cell>505.25</Cell>
                <Cell>605.00</Cell>
                <Cell>0.1</Cell>
            </Row>
            <Row/>
            <Row>
                <Cell>н1</Cell>
                <Cell>1000.00</Cell>
                <Cell>2000.00</Cell>
                <Cell>0.1</Cell>
            </Row>
            <Row>
                <Cell>н4</Cell>
                <Cell>700.00</Cell>
                <Cell>800.00</Cell>
                <Cell>0.1</Cell>
            </Row>
        </FormTable>
    </Row>
    <Row>
        <Cell/>
        <Cell>ЗУ10</Cell>
        <FormTable Name="Координаты">
            <Row>
                <Cell>н1</Cell>
                <Cell>1000.00</Cell>
                <Cell>2000.00</Cell>
                <Cell>0.1</Cell>
            </Row>
            <Row>
                <Cell>п5</Cell>
                <Cell>1010.50</Cell>
                <Cell>2010.00</Cell>
                <Cell>0.1</Cell>
            </Row>
            <Row>
                <Cell>н1</Cell>
                <Cell>1000.00</Cell>
                <Cell>2000.00</Cell>
                <Cell>0.1</Cell>
            </Row>
        </FormTable>
    </Row>
    <Row>
        <Cell/>
        <Cell>Поле</Cell>
        <FormTable Name="Координаты">
            <Row>
                <Cell>н20</Cell>
                <Cell>1.00</Cell>
                <Cell>2.00</Cell>
                <Cell>0.1</Cell>
            </Row>
            <Row>
                <Cell>н6</Cell>
                <Cell>3.00</Cell>
                <Cell>4.00</Cell>
                <Cell>0.1</Cell>
            </Row>
        </FormTable>
    </Row>
</FormTable>)");

} // namespace

class tst_ImportPluginMif : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Coordinates are shown with a decimal comma, and still go to the host with a point.
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::Russian, QLocale::Russia)); }

    void editedAndSortedObjectsGoToTheHost();
    void onlyDesignationsAreEdited_data();
    void onlyDesignationsAreEdited();
    void markupInTextsIsEscaped();
    void nextRunReplacesTheObjects();
    void tableStaysOnItsRowThroughSort();
    void conflictsAreColoured();
};

void tst_ImportPluginMif::editedAndSortedObjectsGoToTheHost()
{
    PluginHost host;
    host.columns = {0, 1, 2, 1};

    const QString result = host.call(fromMif, [&host](DialogDriver &driver) {
        driver.type("fieldEdit_0", QStringLiteral("0.1"));
        driver.setChecked("updateCheck", true);
        driver.process(writePlan(host));
        QCOMPARE(DialogDriver::shown(driver.list()),
                 (QStringList{QStringLiteral("ЗУ10"), QStringLiteral("ЗУ2"), QStringLiteral("Лес")}));
        QCOMPARE(DialogDriver::shown(driver.table()),
                 (QStringList{QStringLiteral("н1|1\u00a0000,00|2\u00a0000,00|0.1"),
                              QStringLiteral("п5|1\u00a0010,50|2\u00a0010,00|0.1"),
                              QStringLiteral("н1|1\u00a0000,00|2\u00a0000,00|0.1")}));

        QVERIFY(driver.edit(driver.list(), 1, 0, QStringLiteral("зу3")));
        QCOMPARE(DialogDriver::shown(driver.table()),
                 (QStringList{QStringLiteral("н2|500,00|600,00|0.1"), QStringLiteral("н3|505,25|605,00|0.1"),
                              QStringLiteral("|||"), QStringLiteral("н1|1\u00a0000,00|2\u00a0000,00|0.1"),
                              QStringLiteral("н4|700,00|800,00|0.1")}));
        QVERIFY(driver.edit(driver.table(), 1, 0, QStringLiteral("угол"), DialogDriver::Open::WithDoubleClick));

        driver.press("sortButton");
        QCOMPARE(DialogDriver::shown(driver.list()),
                 (QStringList{QStringLiteral("зу3"), QStringLiteral("ЗУ10"), QStringLiteral("Лес")}));
        QVERIFY(driver.edit(driver.list(), 2, 0, QStringLiteral("Поле"), DialogDriver::Open::WithDoubleClick));
        QVERIFY(driver.edit(driver.table(), 0, 0, QStringLiteral("н20")));
        driver.accept();
    });

    QCOMPARE(result, editedPlan);
    QCOMPARE(host.messages(), QStringList());
}

void tst_ImportPluginMif::onlyDesignationsAreEdited_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");

    QTest::newRow("X") << 0 << 1;
    QTest::newRow("Y") << 0 << 2;
    QTest::newRow("extra field") << 0 << 3;
    QTest::newRow("between two contours") << 2 << 0;
}

void tst_ImportPluginMif::onlyDesignationsAreEdited()
{
    QFETCH(int, row);
    QFETCH(int, column);
    PluginHost host;

    host.call(fromMif, [&](DialogDriver &driver) {
        driver.type("fieldEdit_0", QStringLiteral("1"));
        driver.process(writePlan(host));
        driver.click(driver.list(), 1);
        const QStringList before = DialogDriver::shown(driver.table());
        QCOMPARE(before.size(), 5);

        QVERIFY(!driver.edit(driver.table(), row, column, QStringLiteral("7")));
        QVERIFY(!driver.edit(driver.table(), row, column, QStringLiteral("7"), DialogDriver::Open::WithDoubleClick));

        QCOMPARE(DialogDriver::shown(driver.table()), before);
    });
}

void tst_ImportPluginMif::markupInTextsIsEscaped()
{
    PluginHost host;
    host.objectTable = QStringLiteral("\"A\" & <B>");
    host.pointTable = QStringLiteral("x > y");

    const QString result = host.call(fromMif, [&host](DialogDriver &driver) {
        driver.setChecked("searchPointDefsCheck", false);
        driver.type("pointPrefEdit", QStringLiteral("&lt;"));
        driver.type("fieldEdit_0", QStringLiteral("</Cell>"));
        driver.process(
            writePair(host, QStringLiteral("a"), {QStringLiteral("LINE 1 2 3 4")}, {QStringLiteral("<ЗУ & 'Лес'>,1")}));
        QVERIFY(driver.edit(driver.table(), 1, 0, QStringLiteral("\"2\"")));
        driver.accept();
    });

    QCOMPARE(result, QString::fromUtf8(R"(
<FormTable Name="&quot;A&quot; &amp; &lt;B&gt;">
    <Row>
        <Cell>&lt;ЗУ &amp; 'Лес'&gt;</Cell>
        <FormTable Name="x &gt; y">
            <Row>
                <Cell>&amp;lt;1</Cell>
                <Cell>1.00</Cell>
                <Cell>2.00</Cell>
                <Cell>&lt;/Cell&gt;</Cell>
            </Row>
            <Row>
                <Cell>&quot;2&quot;</Cell>
                <Cell>3.00</Cell>
                <Cell>4.00</Cell>
                <Cell>&lt;/Cell&gt;</Cell>
            </Row>
        </FormTable>
    </Row>
</FormTable>)"));
}

void tst_ImportPluginMif::nextRunReplacesTheObjects()
{
    PluginHost host;

    const QString result = host.call(fromMif, [&host](DialogDriver &driver) {
        driver.process(writePlan(host));
        QVERIFY(driver.edit(driver.list(), 0, 0, QStringLiteral("Сад")));
        searchNothing(driver);
        driver.process(writeLines(host));
        QCOMPARE(DialogDriver::shown(driver.list()), (QStringList{QStringLiteral(":ЗУ1"), QStringLiteral(":ЗУ2")}));
        driver.click(driver.list(), 1);
        QCOMPARE(DialogDriver::shown(driver.table()),
                 (QStringList{QStringLiteral("н2|3,00|4,00"), QStringLiteral("н3|5,00|6,00")}));
        driver.accept();
    });

    QCOMPARE(ResultOutline::lines(result),
             (QStringList{QStringLiteral(":ЗУ1"), QStringLiteral("  н1|1.00|2.00"), QStringLiteral("  н2|3.00|4.00"),
                          QStringLiteral(":ЗУ2"), QStringLiteral("  н2|3.00|4.00"), QStringLiteral("  н3|5.00|6.00")}));
}

void tst_ImportPluginMif::tableStaysOnItsRowThroughSort()
{
    PluginHost host;

    host.call(fromMif, [&host](DialogDriver &driver) {
        driver.setChecked("searchPointDefsCheck", false);
        driver.process(
            writePair(host, QStringLiteral("four"),
                      {QStringLiteral("LINE 1 1 2 2"), QStringLiteral("LINE 3 3 4 4"), QStringLiteral("LINE 5 5 6 6"),
                       QStringLiteral("LINE 7 7 8 8")},
                      {QStringLiteral("ЗУ10"), QStringLiteral("ЗУ9"), QStringLiteral("ЗУ1"), QStringLiteral("ЗУ2")}));
        driver.click(driver.list(), 2);
        QCOMPARE(DialogDriver::shown(driver.table()),
                 (QStringList{QStringLiteral("н5|5,00|5,00"), QStringLiteral("н6|6,00|6,00")}));

        driver.press("sortButton");

        QCOMPARE(DialogDriver::shown(driver.list()), (QStringList{QStringLiteral("ЗУ1"), QStringLiteral("ЗУ2"),
                                                                  QStringLiteral("ЗУ9"), QStringLiteral("ЗУ10")}));
        QCOMPARE(DialogDriver::shown(driver.table()),
                 (QStringList{QStringLiteral("н3|3,00|3,00"), QStringLiteral("н4|4,00|4,00")}));
    });
}

void tst_ImportPluginMif::conflictsAreColoured()
{
    PluginHost host;

    host.call(fromMif, [&host](DialogDriver &driver) {
        driver.process(writePlan(host));
        driver.click(driver.list(), 1);
        QCOMPARE(DialogDriver::coloured(driver.table(), red), QList<int>());
        QCOMPARE(DialogDriver::coloured(driver.table(), grey), QList<int>{2});

        QVERIFY(driver.edit(driver.table(), 4, 0, QStringLiteral("Н2")));
        QCOMPARE(DialogDriver::coloured(driver.table(), red), (QList<int>{0, 4}));
        QCOMPARE(DialogDriver::coloured(driver.table(), red, 2), (QList<int>{0, 4}));

        QVERIFY(driver.edit(driver.list(), 2, 0, QStringLiteral("зу2")));
        QCOMPARE(DialogDriver::coloured(driver.list(), red), (QList<int>{1, 2}));
        QVERIFY(driver.edit(driver.list(), 1, 0, QString()));
        QCOMPARE(DialogDriver::coloured(driver.list(), red), QList<int>());
    });
}

QTEST_MAIN(tst_ImportPluginMif)
#include "tst_importplugin_mif.moc"
