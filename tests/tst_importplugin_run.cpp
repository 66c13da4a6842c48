#include "pluginhost.h"
#include "resultoutline.h"

#include <QLocale>
#include <QTest>

namespace {

/// A drawing with the words of \a entities as group codes and values; the first of them is in line 11.
QByteArray drawing(const QByteArray &entities)
{
    const QByteArray words = "0 SECTION 2 HEADER 0 ENDSEC 0 SECTION 2 ENTITIES " + entities + " 0 ENDSEC 0 EOF ";
    return QByteArray(words).replace(' ', '\n');
}

QByteArray toWindows1251(const QByteArray &text)
{
    return QTextCodec::codecForName("Windows-1251")->fromUnicode(QString::fromUtf8(text));
}

} // namespace

/// Whole imports: options and edits in the dialog, messages, result.
class tst_ImportPluginRun : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The dialog shows coordinates with a decimal comma; the result has a decimal point in any locale.
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::Russian, QLocale::Russia)); }

    void editedMifObjectsReachTheHost();
    void dxfObjectsAndPointsReachTheHost();
    void numberingStartsAsEntered();
    void failureIsReported_data();
    void failureIsReported();
};

// Imports a region with a known point, a polyline of two sections and a line, then edits and sorts them.
void tst_ImportPluginRun::editedMifObjectsReachTheHost()
{
    PluginHost host;
    host.columns = {0, 1, 2, 1};
    const QString path = host.writeMif(QStringLiteral("plan"),
                                       "Point 1010.5 2010\n    Symbol (35,0,12)\n"
                                       "Region 1\n  3\n1000 2000\n1010.5 2010\n1000 2000\n    Pen (1,2,0)\n"
                                       "Pline Multiple 2\n  2\n500 600\n505.25 605\n  2\n1000 2000\n700 800\n"
                                       "Line 1 2 3 4\n",
                                       "\"п5\",1\n\"ЗУ10\",2\nЗУ2,3\nЛес,4\n");

    const QString result = host.call(fromMif, [&path](DialogDriver &driver) {
        driver.type("fieldEdit_0", QStringLiteral("0.1"));
        driver.setChecked("updateCheck", true);
        driver.process(path);
        QCOMPARE(DialogDriver::shown(driver.list()),
                 (QStringList{QStringLiteral("ЗУ10"), QStringLiteral("ЗУ2"), QStringLiteral("Лес")}));
        QCOMPARE(DialogDriver::shown(driver.table()).value(1), QStringLiteral("п5|1\u00a0010,50|2\u00a0010,00|0.1"));

        QVERIFY(driver.edit(driver.list(), 1, 0, QStringLiteral("лес")));
        QCOMPARE(DialogDriver::coloured(driver.list(), QColor(255, 220, 220)), (QList<int>{1, 2}));
        QVERIFY(driver.edit(driver.list(), 1, 0, QStringLiteral("зу3")));
        QVERIFY(driver.edit(driver.table(), 1, 0, QStringLiteral("угол"), DialogDriver::Open::WithDoubleClick));
        driver.press("sortButton");
        QCOMPARE(DialogDriver::shown(driver.list()),
                 (QStringList{QStringLiteral("зу3"), QStringLiteral("ЗУ10"), QStringLiteral("Лес")}));
        driver.accept();
    });

    QVERIFY(result.startsWith(QLatin1String("\n<FormTable Name=\"") + host.objectTable +
                              QLatin1String("\" Update=\"1\">\n    <Row>\n        <Cell/>\n")));
    QCOMPARE(result.count(QLatin1String("<FormTable Name=\"") + host.pointTable + QLatin1String("\">")), 3);
    QCOMPARE(ResultOutline::lines(result).join(QLatin1Char('\n')),
             QStringLiteral("|зу3\n  н2|500.00|600.00|0.1\n  угол|505.25|605.00|0.1\n  -\n  н1|1000.00|2000.00|0.1\n"
                            "  н4|700.00|800.00|0.1\n"
                            "|ЗУ10\n  н1|1000.00|2000.00|0.1\n  п5|1010.50|2010.00|0.1\n  н1|1000.00|2000.00|0.1\n"
                            "|Лес\n  н5|1.00|2.00|0.1\n  н6|3.00|4.00|0.1"));
    QCOMPARE(host.messages(), QStringList());
}

void tst_ImportPluginRun::dxfObjectsAndPointsReachTheHost()
{
    PluginHost host;
    host.columns = {3, 1, 4, 2};
    const QString points = host.write(QStringLiteral("points.dxf"), drawing("0 POINT 10 0 20 0 0 TEXT 10 0 20 1 1 51"));
    const QString objects =
        host.write(QStringLiteral("objects.dxf"),
                   toWindows1251(drawing("0 LINE 10 0 20 0 11 10 21 0 0 TEXT 10 5 20 1 1 ЗУ7 "
                                         "0 LWPOLYLINE 90 2 70 1 10 0 20 20 10 0.5 20 30 0 TEXT 10 1 20 25 1 Луг%%d")));

    const QString result = host.call(fromDxf, [&](DialogDriver &driver) {
        driver.chooseEncoding(QStringLiteral("Windows-1251"));
        driver.setChecked("usePointFileCheck", true);
        driver.type("pointFileNameEdit", points);
        driver.process(objects);
        QCOMPARE(DialogDriver::shown(driver.table()),
                 (QStringList{QStringLiteral("|0,00||51|0,00"), QStringLiteral("|10,00||н1|0,00")}));
        driver.accept();
    });

    QCOMPARE(ResultOutline::lines(result).join(QLatin1Char('\n')),
             QStringLiteral("||ЗУ7\n  |0.00||51|0.00\n  |10.00||н1|0.00\n"
                            "||Луг°\n  |0.00||н2|20.00\n  |0.50||н3|30.00\n  |0.00||н2|20.00"));
    QCOMPARE(host.messages(), QStringList());
}

void tst_ImportPluginRun::numberingStartsAsEntered()
{
    PluginHost host;

    const QString result = host.call(fromMif, [&host](DialogDriver &driver) {
        driver.type("pointPrefEdit", QString());
        driver.setNumber("pointStartNumSpin", 99);
        driver.type("objectPrefEdit", QStringLiteral("Контур "));
        driver.setNumber("objectStartNumSpin", 7);
        processLines(host, driver);
        driver.accept();
    });

    QCOMPARE(ResultOutline::lines(result).join(QLatin1Char('\n')),
             QStringLiteral("Контур 7\n  99|1.00|2.00\n  100|3.00|4.00\nКонтур 8\n  100|3.00|4.00\n  101|5.00|6.00"));
}

void tst_ImportPluginRun::failureIsReported_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QByteArray>("bytes"); // of the file of objects; null for no file
    QTest::addColumn<QByteArray>("records");
    QTest::addColumn<bool>("searchPoints");
    QTest::addColumn<QStringList>("messages"); // %1 is the path without the suffix

    const auto mif = [](const char *name, const char *data, const char *records, const QStringList &messages,
                        bool searchPoints = true) {
        QTest::newRow(name) << fromMif << mifHeader + data << QByteArray(records) << searchPoints << messages;
    };
    const auto dxf = [](const char *name, const QByteArray &bytes, const QString &message) {
        QTest::newRow(name) << fromDxf << bytes << QByteArray() << true << QStringList{message};
    };
    const QString noFile = QStringLiteral("Ошибка открытия файла %1.mif");
    QTest::newRow("no file, in both passes")
        << fromMif << QByteArray() << QByteArray() << true << QStringList{noFile, noFile};
    QTest::newRow("drawing as MIF") << fromMif << drawing("0 LINE") << QByteArray() << true
                                    << QStringList{QStringLiteral("Ошибка. Файл %1.mif не соответствует формату MIF")};
    mif("no MID file", "", nullptr, {QStringLiteral("Ошибка открытия MID файла %1.mid")});
    mif("point without Y", "POINT 5\n", "1\n", {QStringLiteral("Ошибка чтения координат точки из строки: 5")});
    mif("point without a record", "POINT 1 2\n", "", {QStringLiteral("Ошибка чтения обозначения точки из строки: 1")});
    mif("line without an end", "LINE 1 2\n", "1\n", {QStringLiteral("Ошибка чтения линии из строки: 5")});
    mif("polyline of one vertex", "PLINE 1\n", "1\n", {QStringLiteral("Ошибка чтения полилинии из строки: 5")});
    mif("truncated region", "REGION 1\n3\n1 2\n", "1\n", {QStringLiteral("Ошибка чтения области из строки: 7")});
    mif("skipped object without a record", "RECT 1 2 3 4\n", "",
        {QStringLiteral("Ошибка чтения данных объекта из строки: 1")});
    mif("object without a record", "POINT 1 2\nLINE 1 2 3 4\n", "1\n",
        {QStringLiteral("Ошибка чтения обозначения объекта из строки: 2")}, false);
    const QString collection = QStringLiteral("Ошибка в стоке 5. Коллекции в MIF файлах не поддерживаются."); // sic
    mif("collection, in both passes", "COLLECTION 1\n", "1\n", {collection, collection});
    dxf("MIF as drawing", mifHeader, QStringLiteral("Ошибка. Файл %1.dxf не соответствует формату DXF"));
    dxf("comma as decimal separator", drawing("0 LINE 10 1,5"), QStringLiteral("Ошибка чтения DXF файла в строке: 14"));
}

void tst_ImportPluginRun::failureIsReported()
{
    QFETCH(QString, operation);
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, records);
    QFETCH(bool, searchPoints);
    QFETCH(QStringList, messages);
    PluginHost host;
    const QString path = host.path(operation == fromDxf ? QStringLiteral("plan.dxf") : QStringLiteral("plan.mif"));
    if (!bytes.isNull())
        host.write(QFileInfo(path).fileName(), bytes);
    if (!records.isNull())
        host.write(QStringLiteral("plan.mid"), records);

    const QString result = host.call(operation, [&](DialogDriver &driver) {
        driver.setChecked("searchPointDefsCheck", searchPoints);
        driver.process(path);
        driver.accept();
    });

    QVERIFY(!result.isNull());
    messages.replaceInStrings(QStringLiteral("%1"), QDir::toNativeSeparators(host.path(QStringLiteral("plan"))));
    QCOMPARE(host.messages(), messages);
}

QTEST_MAIN(tst_ImportPluginRun)
#include "tst_importplugin_run.moc"
