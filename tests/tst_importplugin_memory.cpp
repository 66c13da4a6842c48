#include "allocationfailure.h"
#include "facilities.h"
#include "pluginhost.h"

#include <QScrollBar>
#include <QTest>

#include <new>
#include <optional>

namespace {

// Enough for large allocations in the readers, the known points, the objects and the vertex table.
constexpr int pointCount = 4000;
constexpr int vertexCount = 20000;
constexpr int lineCount = 5000;

/// Joins the texts that \a textOf returns for 0, 1 and so on.
template <typename TextOf>
QByteArray joined(int count, TextOf textOf)
{
    QByteArray bytes;
    for (int i = 0; i < count; ++i)
        bytes += textOf(QByteArray::number(i));
    return bytes;
}

/// Known points, a polyline through them, and lines.
QByteArray largeMif()
{
    return mifHeader + joined(pointCount, [](const QByteArray &i) { return "POINT " + i + " 0\n"; }) + "PLINE " +
           QByteArray::number(vertexCount) + '\n' +
           joined(vertexCount, [](const QByteArray &i) { return i + " 0\n"; }) +
           joined(lineCount, [](const QByteArray &i) { return "LINE " + i + " 0 " + i + " 1\n"; });
}

/// The same as a drawing, with a text beside each point.
QByteArray largeDxf()
{
    QByteArray words = "0 SECTION 2 HEADER 0 ENDSEC 0 SECTION 2 ENTITIES ";
    words += joined(pointCount, [](const QByteArray &i) { return "0 POINT 10 " + i + " 20 0 "; });
    words += joined(pointCount, [](const QByteArray &i) { return "0 TEXT 10 " + i + " 20 0.1 1 " + i + ' '; });
    words += "0 LWPOLYLINE 90 " + QByteArray::number(vertexCount) + " 70 0 ";
    words += joined(vertexCount, [](const QByteArray &i) { return "10 " + i + " 20 0 "; });
    words += joined(lineCount, [](const QByteArray &i) { return "0 LINE 10 " + i + " 20 0 11 " + i + " 21 1 "; });
    return words.replace(' ', '\n');
}

/// Presses the process button. Returns false if an exception escapes from the dialog.
bool process(const DialogDriver &driver)
{
    try {
        driver.press("startButton");
    } catch (const std::bad_alloc &) {
        return false;
    }
    return true;
}

int rowCount(const QAbstractItemView *view)
{
    return view->model() == nullptr ? 0 : view->model()->rowCount();
}

/// True if both views have no rows.
bool isEmpty(const DialogDriver &driver)
{
    return rowCount(driver.list()) == 0 && rowCount(driver.table()) == 0;
}

/// True if the list shows no rows of an earlier run.
bool isListCurrent(const DialogDriver &driver)
{
    QCoreApplication::processEvents(); // the list lays out its rows later
    return rowCount(driver.list()) > 0 || driver.list()->verticalScrollBar()->maximum() == 0;
}

} // namespace

/// Imports that run out of memory.
class tst_ImportPluginMemory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void outOfMemoryRunIsReportedOnce_data();
    void outOfMemoryRunIsReportedOnce();
    void resultHoldsTheListAfterAFailure_data();
    void resultHoldsTheListAfterAFailure();
    void outOfMemoryResultIsReported();
};

void tst_ImportPluginMemory::initTestCase()
{
    REQUIRE_FACILITY((Facility{AllocationFailure::isAvailable, "allocations that can be made to fail"}));
}

void tst_ImportPluginMemory::outOfMemoryRunIsReportedOnce_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("isLasting");

    QTest::newRow("MIF, one allocation fails") << fromMif << largeMif() << false;
    QTest::newRow("DXF, all later allocations fail too") << fromDxf << largeDxf() << true;
}

// In each call a later allocation fails, until none does. Each run is repeated with enough memory in the same dialog.
void tst_ImportPluginMemory::outOfMemoryRunIsReportedOnce()
{
    QFETCH(QString, operation);
    QFETCH(QByteArray, bytes);
    QFETCH(bool, isLasting);
    PluginHost host;
    const QString path = host.write(QStringLiteral("plan.mif"), bytes);
    host.write(QStringLiteral("plan.mid"), QByteArray("a\n").repeated(pointCount + 1 + lineCount));
    const QStringList message{QStringLiteral("Недостаточно памяти для чтения файла ") + QDir::toNativeSeparators(path)};
    bool hasFailed = true;
    for (int nth = 1; hasFailed; ++nth) {
        const QByteArray allocation = "allocation " + QByteArray::number(nth);

        const QString result = host.call(operation, [&](DialogDriver &driver) {
            driver.type("objectFileNameEdit", path);
            std::optional<AllocationFailure> failure(std::in_place, nth, isLasting);
            PluginHost::onMessage = [&driver] { driver.press("startButton"); }; // must be ignored
            const bool isCaught = process(driver);
            PluginHost::onMessage = nullptr;
            hasFailed = failure->hasHappened();
            failure.reset();
            QVERIFY2(isCaught, allocation.constData());
            const bool isComplete = rowCount(driver.list()) == lineCount + 1 && rowCount(driver.table()) == vertexCount;
            QVERIFY2(host.messages() == message || (host.messages().isEmpty() && isComplete), allocation.constData());

            host.takeMessages();
            QVERIFY2(process(driver), allocation.constData());
            QCOMPARE(host.takeMessages(), QStringList());
            driver.accept();
        });

        if (QTest::currentTestFailed())
            return;
        QVERIFY2(result.count(QLatin1String("<FormTable ")) == lineCount + 2, allocation.constData());
    }
}

void tst_ImportPluginMemory::resultHoldsTheListAfterAFailure_data()
{
    QTest::addColumn<bool>("isLaterRun");

    QTest::newRow("first run") << false;
    QTest::newRow("later run") << true;
}

// A pass that fails keeps the objects it has read; a failure while they are being shown drops them. Only a later run
// without any object leaves the rows of the run before in the views.
void tst_ImportPluginMemory::resultHoldsTheListAfterAFailure()
{
    QFETCH(bool, isLaterRun);
    PluginHost host;
    const QString path = host.write(QStringLiteral("plan.mif"), largeMif());
    bool hasFailed = true;
    bool hasDropped = false;
    for (int nth = 1; hasFailed; ++nth) {
        int shown = 0;

        const QString result = host.call(fromMif, [&](DialogDriver &driver) {
            searchNothing(driver);
            if (isLaterRun)
                driver.process(host.writeMif(QStringLiteral("lines"), QByteArray("LINE 1 2 3 4\n").repeated(100)));
            driver.type("objectFileNameEdit", path);
            {
                const AllocationFailure failure(nth);
                process(driver);
                hasFailed = failure.hasHappened();
            }
            shown = rowCount(driver.list());
            hasDropped = hasDropped || (isEmpty(driver) && driver.list()->model() != nullptr);
            if (isEmpty(driver))
                QVERIFY2(isListCurrent(driver), QByteArray::number(nth).constData());
            else if (!isLaterRun)
                QVERIFY2(shown > 0 && rowCount(driver.table()) > 0, QByteArray::number(nth).constData());
            driver.accept();
        });

        if (QTest::currentTestFailed())
            return;
        const int objectTable = 1;
        QCOMPARE(result.count(QLatin1String("<FormTable ")), objectTable + shown);
    }
    QVERIFY(hasDropped);
}

void tst_ImportPluginMemory::outOfMemoryResultIsReported()
{
    PluginHost host;
    const QString path = host.writeMif(QStringLiteral("plan"), QByteArray("LINE 1 2 3 4\n").repeated(1000));
    const auto importWithFailure = [&host, &path](int nth) {
        std::optional<AllocationFailure> failure;
        return host.call(fromMif, [&](DialogDriver &driver) {
            searchNothing(driver);
            driver.process(path);
            failure.emplace(nth);
            driver.accept();
        });
    };

    QVERIFY(importWithFailure(1).isNull());
    QCOMPARE(host.takeMessages(), QStringList{QStringLiteral("Недостаточно памяти для результата импорта")});

    QVERIFY(importWithFailure(0).contains(QLatin1String("<Cell>4.00</Cell>")));
    QCOMPARE(host.messages(), QStringList());
}

QTEST_MAIN(tst_ImportPluginMemory)
#include "tst_importplugin_memory.moc"
