#include "mifpairs.h"
#include "resultoutline.h"

#include <QDir>
#include <QLocale>
#include <QTest>
#include <QXmlStreamReader>

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

/// Open files and other handles of this process; 0 where the system does not list them.
int openHandles()
{
    return QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::AllEntries | QDir::System).size();
}

/// Bytes that this process has taken from its heap and not given back; 0 where the library does not tell.
qint64 bytesTaken()
{
#ifdef HAVE_MALLINFO2
    const struct mallinfo2 heap = mallinfo2();
    return static_cast<qint64>(heap.uordblks + heap.hblkhd);
#else
    return 0;
#endif
}

/// False also where a sanitizer keeps the heap instead of the library.
bool isTakingTold()
{
    const qint64 before = bytesTaken();
    const QByteArray block(100000, 'x');
    return bytesTaken() - before >= block.size();
}

/// One of each kind of call: refused, cancelled, accepted with objects, and with points but no objects.
void callInEveryWay(PluginHost &host, const QString &objects, const QString &points)
{
    host.call(QStringLiteral("?"), [](DialogDriver &) {});
    host.call(fromDxf, [](DialogDriver &driver) { driver.cancel(); });
    const QString result = host.call(fromMif, [&objects](DialogDriver &driver) {
        searchNothing(driver);
        driver.process(objects);
        driver.accept();
    });
    QCOMPARE(ResultOutline::lines(result).size(), 6);
    host.call(fromMif, [&points](DialogDriver &driver) {
        driver.setChecked("searchPointDefsCheck", true);
        driver.process(points);
        driver.accept();
    });
}

/// The names of all tables of a result, from the outermost.
QStringList tableNames(const QString &result)
{
    QStringList names;
    QXmlStreamReader reader(result);
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement && reader.name() == QLatin1String("FormTable"))
            names.append(reader.attributes().value(QLatin1String("Name")).toString());
    }
    return reader.hasError() ? QStringList{reader.errorString()} : names;
}

/// The first three cells of each row, with bars between them.
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

} // namespace

class tst_HostAbuse : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }

    void thousandCallsLeaveNothing();
    void listenerMayAskForTheOperations_data();
    void listenerMayAskForTheOperations();
    void tableNamesReachTheHost_data();
    void tableNamesReachTheHost();
    void strangeColumnsGiveAResult_data();
    void strangeColumnsGiveAResult();
    void hugeColumnsAreShown_data();
    void hugeColumnsAreShown();
    void hugeTableIsEdited();
    void hugeTableFollowsTheList();
};

void tst_HostAbuse::thousandCallsLeaveNothing()
{
    PluginHost host;
    const QString objects = writeLines(host);
    QStringList data;
    for (int i = 0; i < 10000; ++i)
        data.append(QStringLiteral("POINT %1 5").arg(i));
    const QString points = writePair(host, QStringLiteral("points"), data,
                                     QVector<QString>(data.size(), QString(50, QLatin1Char('t'))).toList());
    for (int i = 0; i < 50; ++i)
        callInEveryWay(host, objects, points);
    const int handles = openHandles();
    const int widgets = QApplication::allWidgets().size();
    const qint64 before = bytesTaken();

    for (int i = 0; i < 200; ++i)
        callInEveryWay(host, objects, points);

    QCOMPARE(host.messages().size(), 250);
    QCOMPARE(host.dialogs(), 750);
    QCOMPARE(openHandles(), handles);
    QCOMPARE(QApplication::allWidgets().size(), widgets);
    if (!isTakingTold())
        QSKIP("nothing tells how much memory is in use");
    // A sixth of this are the messages, which the host keeps; the rest would be some two hundred bytes a call.
    const qint64 more = bytesTaken() - before;
    QVERIFY2(more < 200000, qPrintable(QString::number(more)));
}

void tst_HostAbuse::listenerMayAskForTheOperations_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("result");

    const QString empty = QStringLiteral("\n<FormTable Name=\"Участки\"/>");
    QTest::newRow("operation refused") << QStringLiteral("?")
                                       << QStringLiteral("Ошибка. Операция импорта \"?\" планином не поддерживается.")
                                       << QString();
    QTest::newRow("MIF file missing") << fromMif << QStringLiteral("Ошибка открытия файла %1") << empty;
    QTest::newRow("DXF file missing") << fromDxf << QStringLiteral("Ошибка открытия файла %1") << empty;
}

void tst_HostAbuse::listenerMayAskForTheOperations()
{
    QFETCH(QString, operation);
    QFETCH(QString, message);
    QFETCH(QString, result);
    static ImportGeometryInterface *plugin = nullptr;
    static QStringList heard;
    heard.clear();
    PluginHost host;
    plugin = host.plugin();
    host.statusFunc = [](const QString &text) { heard += QStringList{text} + plugin->operations(); };
    const QString nowhere = host.path(QStringLiteral("nowhere"));

    const QString given = host.call(operation, [&nowhere](DialogDriver &driver) {
        driver.setChecked("searchPointDefsCheck", false);
        driver.process(nowhere);
        driver.accept();
    });

    QCOMPARE(given, result);
    QCOMPARE(heard, (QStringList{message.replace(QStringLiteral("%1"), nowhere), QStringLiteral("Объекты из MIF"),
                                 QStringLiteral("Объекты из DXF")}));
}

void tst_HostAbuse::tableNamesReachTheHost_data()
{
    QTest::addColumn<QString>("objectTable");
    QTest::addColumn<QString>("pointTable");

    QTest::newRow("very long") << QString(1000000, QLatin1Char('x')) << QString(1000000, QChar(0x42F));
    QTest::newRow("very long, all to be escaped")
        << QString(200000, QLatin1Char('<')) << QString(200000, QLatin1Char('"'));
    QTest::newRow("markup") << QStringLiteral("</FormTable><Row/>") << QStringLiteral("<!-- ]]> &amp; &#0; -->");
    QTest::newRow("both quotes") << QStringLiteral("\"'\"") << QStringLiteral("' Update=\"1\"");
    QTest::newRow("white space") << QStringLiteral(" \tа\nб\r\nв ") << QStringLiteral("\n");
    QTest::newRow("place markers") << QStringLiteral("%1%2") << QStringLiteral("%%");
    QTest::newRow("outside the first plane") << QStringLiteral("\U0001F5FA") << QStringLiteral("\U00020000");
}

void tst_HostAbuse::tableNamesReachTheHost()
{
    QFETCH(QString, objectTable);
    QFETCH(QString, pointTable);
    PluginHost host;
    host.objectTable = objectTable;
    host.pointTable = pointTable;

    const QString result = host.call(fromMif, [&host](DialogDriver &driver) {
        searchNothing(driver);
        driver.process(writeLines(host));
        driver.accept();
    });

    const QStringList names = tableNames(result);
    QCOMPARE(names.size(), 3);
    QVERIFY(names == (QStringList{objectTable, pointTable, pointTable}));
}

void tst_HostAbuse::strangeColumnsGiveAResult_data()
{
    QTest::addColumn<QList<int>>("columns"); // of designation, X and Y, and of the object's designation
    QTest::addColumn<QString>("vertex");

    QTest::newRow("all equal") << QList<int>{1, 1, 1, 0} << QStringLiteral("  |н1|");
    QTest::newRow("all equal, beyond the usual") << QList<int>{4, 4, 4, 0} << QStringLiteral("  ||||н1");
    QTest::newRow("as far below zero as can be")
        << QList<int>{smallest, smallest, smallest, smallest} << QStringLiteral("  -");
    QTest::newRow("designation far below zero") << QList<int>{-huge, 1, 2, -huge} << QStringLiteral("  |1.00|2.00");
    QTest::newRow("more than are shown") << QList<int>{20000, 1, 2, 0}
                                         << QStringLiteral("  |1.00|2.00") + QString(19998, QLatin1Char('|')) +
                                                QStringLiteral("н1");
}

void tst_HostAbuse::strangeColumnsGiveAResult()
{
    QFETCH(QList<int>, columns);
    QFETCH(QString, vertex);
    PluginHost host;
    host.columns = {columns.at(0), columns.at(1), columns.at(2), columns.at(3)};

    const QString result = host.call(fromMif, [&host](DialogDriver &driver) {
        searchNothing(driver);
        driver.process(writeLines(host));
        driver.accept();
    });

    QCOMPARE(ResultOutline::lines(result).mid(0, 2), (QStringList{QStringLiteral(":ЗУ1"), vertex}));
}

// Nobody asks for the result here: it would have as many cells as there are columns.
void tst_HostAbuse::hugeColumnsAreShown_data()
{
    QTest::addColumn<QList<int>>("columns"); // of designation, X and Y, and of the object's designation
    QTest::addColumn<QStringList>("rows");

    QTest::newRow("designation") << QList<int>{huge, 1, 2, 0}
                                 << QStringList{QStringLiteral("|1.00|2.00"), QStringLiteral("|3.00|4.00")};
    QTest::newRow("X") << QList<int>{0, huge, 2, 0}
                       << QStringList{QStringLiteral("н1||2.00"), QStringLiteral("н2||4.00")};
    QTest::newRow("Y") << QList<int>{0, 1, huge, 0}
                       << QStringList{QStringLiteral("н1|1.00|"), QStringLiteral("н2|3.00|")};
    QTest::newRow("designation of the object")
        << QList<int>{0, 1, 2, huge} << QStringList{QStringLiteral("н1|1.00|2.00"), QStringLiteral("н2|3.00|4.00")};
    QTest::newRow("all") << QList<int>{huge, huge, huge, huge}
                         << QStringList{QStringLiteral("||"), QStringLiteral("||")};
    QTest::newRow("all, as large as can be")
        << QList<int>{largest, largest, largest, largest} << QStringList{QStringLiteral("||"), QStringLiteral("||")};
    QTest::newRow("one far above and one far below")
        << QList<int>{0, largest, smallest, 0} << QStringList{QStringLiteral("н1||"), QStringLiteral("н2||")};
}

void tst_HostAbuse::hugeColumnsAreShown()
{
    QFETCH(QList<int>, columns);
    QFETCH(QStringList, rows);
    PluginHost host;
    host.columns = {columns.at(0), columns.at(1), columns.at(2), columns.at(3)};

    const QString result = host.call(fromMif, [&](DialogDriver &driver) {
        searchNothing(driver);
        driver.process(writeLines(host));
        QCOMPARE(DialogDriver::shown(driver.list()), (QStringList{QStringLiteral(":ЗУ1"), QStringLiteral(":ЗУ2")}));
        QCOMPARE(firstCells(driver.table()), rows);
        driver.table()->selectAll();
        QCoreApplication::processEvents();
        driver.cancel();
    });

    QVERIFY(result.isNull());
    QCOMPARE(host.messages(), QStringList());
}

void tst_HostAbuse::hugeTableIsEdited()
{
    PluginHost host;
    host.columns = {0, 1, huge, 0};

    host.call(fromMif, [&host](DialogDriver &driver) {
        searchNothing(driver);
        driver.process(writeLines(host));
        QVERIFY(driver.edit(driver.table(), 1, 0, QStringLiteral("н1")));
        QCOMPARE(firstCells(driver.table()), (QStringList{QStringLiteral("н1|1.00|"), QStringLiteral("н1|3.00|")}));
        QCOMPARE(DialogDriver::coloured(driver.table(), QColor(255, 220, 220), 2), (QList<int>{0, 1}));
        QVERIFY(!driver.edit(driver.table(), 1, 1, QStringLiteral("7")));
        QCOMPARE(driver.table()->model()->headerData(2, Qt::Horizontal).toString(), QStringLiteral("3"));
    });
}

void tst_HostAbuse::hugeTableFollowsTheList()
{
    PluginHost host;
    host.columns = {0, 1, huge, 0};

    host.call(fromMif, [&host](DialogDriver &driver) {
        searchNothing(driver);
        for (int run = 0; run < 2; ++run)
            driver.process(writeLines(host));
        driver.click(driver.list(), 1);
        QCOMPARE(firstCells(driver.table()), (QStringList{QStringLiteral("н2|3.00|"), QStringLiteral("н3|5.00|")}));
        QVERIFY(driver.edit(driver.list(), 1, 0, QStringLiteral(":ЗУ0")));
        driver.press("sortButton");
        QCOMPARE(DialogDriver::shown(driver.list()), (QStringList{QStringLiteral(":ЗУ0"), QStringLiteral(":ЗУ1")}));
        QCOMPARE(firstCells(driver.table()), (QStringList{QStringLiteral("н1|1.00|"), QStringLiteral("н2|3.00|")}));
        driver.process(host.path(QStringLiteral("nowhere.mif")));
        QCOMPARE(firstCells(driver.table()), (QStringList{QStringLiteral("||"), QStringLiteral("||")}));
    });
}

QTEST_MAIN(tst_HostAbuse)
#include "tst_hostabuse.moc"
