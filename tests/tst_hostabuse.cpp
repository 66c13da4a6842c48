#include "facilities.h"
#include "pluginhost.h"
#include "resultoutline.h"

#include <QLocale>
#include <QTest>

#include <limits>

#if defined(__GLIBC__) && defined(__GLIBC_PREREQ)
#if __GLIBC_PREREQ(2, 33)
#define HAVE_MALLINFO2
#include <malloc.h>
#endif
#endif

namespace {

constexpr int huge = 2000000000;
constexpr int largest = std::numeric_limits<int>::max();
constexpr int smallest = std::numeric_limits<int>::min();

/// Number of open file descriptors of this process; 0 where the system does not list them.
int openHandles()
{
    return QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::AllEntries | QDir::System).size();
}

/// Bytes allocated on the heap; 0 where the C library does not count them.
qint64 usedBytes()
{
#ifdef HAVE_MALLINFO2
    const struct mallinfo2 heap = mallinfo2();
    return static_cast<qint64>(heap.uordblks) + static_cast<qint64>(heap.hblkhd);
#else
    return 0;
#endif
}

/// Missing if the C library does not count heap usage or a sanitizer replaces malloc().
Facility countedHeap()
{
    const qint64 before = usedBytes();
    const QByteArray block(100000, 'x');
    return {usedBytes() - before >= block.size(), "a count of the bytes on the heap"};
}

/// One call of each kind: unknown operation, cancelled, accepted with objects, accepted with points only.
void callInEveryWay(PluginHost &host, const QString &points)
{
    host.call(QStringLiteral("?"), doNothing);
    host.call(fromDxf, doNothing);
    QCOMPARE(ResultOutline::lines(importLines(host)).size(), 6);
    host.call(fromMif, [&points](DialogDriver &driver) {
        driver.setChecked("searchPointDefsCheck", true);
        driver.process(points);
        driver.accept();
    });
}

/// The first three cells of each row, separated by bars.
QStringList firstCells(const QAbstractItemView *table)
{
    QStringList rows;
    const QAbstractItemModel *const model = table->model();
    for (int row = 0; row < model->rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < 3; ++column)
            cells.append(model->index(row, column).data().toString());
        rows.append(cells.join(QLatin1Char('|')));
    }
    return rows;
}

void store(const QString &key, const QVariant &value)
{
    QSettings().setValue(QStringLiteral("ImportObjects/") + key, value);
}

using Corruption = std::function<void(const PluginHost &)>;

} // namespace

Q_DECLARE_METATYPE(GeometryInfo)
Q_DECLARE_METATYPE(Corruption)

/// Hosts that call often, pass extreme column numbers or have corrupt settings.
class tst_HostAbuse : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }

    void thousandCallsLeakNothing();
    void extremeColumnsGiveAResult_data();
    void extremeColumnsGiveAResult();
    void hugeColumnsAreShown_data();
    void hugeColumnsAreShown();
    void hugeTableIsEditedAndSorted();
    void corruptSettingsAreHarmless_data();
    void corruptSettingsAreHarmless();
};

void tst_HostAbuse::thousandCallsLeakNothing()
{
    PluginHost host;
    QByteArray data;
    for (int i = 0; i < 10000; ++i)
        data += "POINT " + QByteArray::number(i) + " 5\n";
    const QString points = host.writeMif(QStringLiteral("points"), data, (QByteArray(50, 't') + '\n').repeated(10000));
    for (int i = 0; i < 50; ++i)
        callInEveryWay(host, points);
    const int handles = openHandles();
    const int widgets = QApplication::allWidgets().size();
    const qint64 before = usedBytes();

    constexpr int rounds = 200;
    for (int i = 0; i < rounds; ++i)
        callInEveryWay(host, points);

    QCOMPARE(host.messages().size(), 250);
    // On Windows the system's own threads open and close handles meanwhile.
    QVERIFY2(openHandles() - handles < rounds / 2, qPrintable(QString::number(openHandles() - handles)));
    QCOMPARE(QApplication::allWidgets().size(), widgets);
    REQUIRE_FACILITY(countedHeap());
    // The limit is 250 bytes per call. A sixth of that is taken by the messages that the host keeps.
    const qint64 growth = usedBytes() - before;
    QVERIFY2(growth < 200000, qPrintable(QString::number(growth)));
}

void tst_HostAbuse::extremeColumnsGiveAResult_data()
{
    QTest::addColumn<GeometryInfo>("columns");
    QTest::addColumn<QString>("vertex");

    QTest::newRow("smallest") << GeometryInfo{smallest, smallest, smallest, smallest} << QStringLiteral("  -");
    QTest::newRow("more than the view shows")
        << GeometryInfo{20000, 1, 2, 0}
        << QStringLiteral("  |1.00|2.00") + QString(19998, QLatin1Char('|')) + QStringLiteral("н1");
}

void tst_HostAbuse::extremeColumnsGiveAResult()
{
    QFETCH(GeometryInfo, columns);
    QFETCH(QString, vertex);
    PluginHost host;
    host.columns = columns;

    QCOMPARE(ResultOutline::lines(importLines(host)).mid(0, 2), (QStringList{QStringLiteral(":ЗУ1"), vertex}));
}

void tst_HostAbuse::hugeColumnsAreShown_data()
{
    QTest::addColumn<GeometryInfo>("columns");
    QTest::addColumn<QStringList>("rows");

    QTest::newRow("designation of the vertex")
        << GeometryInfo{huge, 1, 2, 0} << QStringList{QStringLiteral("|1.00|2.00"), QStringLiteral("|3.00|4.00")};
    QTest::newRow("designation of the object")
        << GeometryInfo{0, 1, 2, huge} << QStringList{QStringLiteral("н1|1.00|2.00"), QStringLiteral("н2|3.00|4.00")};
    QTest::newRow("largest") << GeometryInfo{largest, largest, largest, largest}
                             << QStringList{QStringLiteral("||"), QStringLiteral("||")};
}

// The dialog is cancelled, because the result would have as many cells as there are columns.
void tst_HostAbuse::hugeColumnsAreShown()
{
    QFETCH(GeometryInfo, columns);
    QFETCH(QStringList, rows);
    PluginHost host;
    host.columns = columns;

    const QString result = host.call(fromMif, [&](DialogDriver &driver) {
        processLines(host, driver);
        QCOMPARE(firstCells(driver.table()), rows);
        driver.table()->selectAll();
        QCoreApplication::processEvents();
    });

    QVERIFY(result.isNull());
    QCOMPARE(host.dialogs(), 1);
}

void tst_HostAbuse::hugeTableIsEditedAndSorted()
{
    PluginHost host;
    host.columns = {0, 1, huge, 0};

    host.call(fromMif, [&host](DialogDriver &driver) {
        for (int run = 0; run < 2; ++run)
            processLines(host, driver);
        QCOMPARE(driver.table()->model()->columnCount(), 10000);
        driver.click(driver.list(), 1);
        QCOMPARE(firstCells(driver.table()), (QStringList{QStringLiteral("н2|3.00|"), QStringLiteral("н3|5.00|")}));
        QVERIFY(driver.edit(driver.table(), 1, 0, QStringLiteral("н2")));
        QCOMPARE(DialogDriver::coloured(driver.table(), QColor(255, 220, 220), 2), (QList<int>{0, 1}));
        QVERIFY(!driver.edit(driver.table(), 1, 1, QStringLiteral("7")));
        QVERIFY(driver.edit(driver.list(), 1, 0, QStringLiteral(":ЗУ0")));
        driver.press("sortButton");
        QCOMPARE(firstCells(driver.table()), (QStringList{QStringLiteral("н1|1.00|"), QStringLiteral("н2|3.00|")}));
        driver.process(host.path(QStringLiteral("missing.mif")));
        QCOMPARE(firstCells(driver.table()), (QStringList{QStringLiteral("||"), QStringLiteral("||")}));
    });
}

void tst_HostAbuse::corruptSettingsAreHarmless_data()
{
    QTest::addColumn<Corruption>("corrupt");

    const auto row = [](const char *name, const Corruption &corrupt) { QTest::newRow(name) << corrupt; };
    row("file in place of the folder", [](const PluginHost &host) { host.write(QStringLiteral("settings"), "x"); });
    row("binary contents", [](const PluginHost &host) {
        const QString name = QSettings().fileName();
        QDir().mkpath(QFileInfo(name).path());
        const QByteArray bytes = QByteArray("\0\xFF[[\n=%\x01", 8).repeated(99);
        QVERIFY(QFile::copy(host.write(QStringLiteral("other"), bytes), name));
    });
    row("lists in place of values", [](const PluginHost & /*host*/) {
        for (const char *const key :
             {"size", "splitterSizes", "lastPath", "searchPointDefs", "pointPref", "pointStartNum", "searchObjectDefs",
              "objectPref", "objectStartNum", "usePointFile", "update", "FieldNumValueMap"})
            store(QLatin1String(key), QStringList{QStringLiteral("а"), QStringLiteral("б")});
    });
    row("huge size", [](const PluginHost & /*host*/) { store(QStringLiteral("size"), QSize(huge, huge)); });
    row("negative size", [](const PluginHost & /*host*/) { store(QStringLiteral("size"), QSize(-100, -100)); });
}

void tst_HostAbuse::corruptSettingsAreHarmless()
{
    QFETCH(Corruption, corrupt);
    PluginHost host;
    corrupt(host);

    for (int call = 0; call < 2; ++call) {
        const QString result = host.call(fromMif, [&host](DialogDriver &driver) {
            driver.type("pointPrefEdit", QStringLiteral("т"));
            driver.setNumber("pointStartNumSpin", 1);
            processLines(host, driver);
            driver.accept();
        });
        QCOMPARE(ResultOutline::lines(result).mid(1, 2),
                 (QStringList{QStringLiteral("  т1|1.00|2.00"), QStringLiteral("  т2|3.00|4.00")}));
    }

    QCOMPARE(host.messages(), QStringList());
}

QTEST_MAIN(tst_HostAbuse)
#include "tst_hostabuse.moc"
