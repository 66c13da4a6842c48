#include "allocationfailure.h"
#include "pluginhost.h"

#include <QTest>

#include <optional>

/// Imports that run out of memory.
class tst_ImportPluginMemory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void resultWithoutMemoryIsReported();
};

void tst_ImportPluginMemory::initTestCase()
{
    if (!AllocationFailure::isAvailable)
        QSKIP("allocations cannot be made to fail here");
}

void tst_ImportPluginMemory::resultWithoutMemoryIsReported()
{
    PluginHost host;
    const QString path = host.writeMif(QStringLiteral("plan"), QByteArray("LINE 1 2 3 4\n").repeated(1000));
    const auto importWithout = [&host, &path](int nth) {
        std::optional<AllocationFailure> failure;
        return host.call(fromMif, [&](DialogDriver &driver) {
            searchNothing(driver);
            driver.process(path);
            failure.emplace(nth);
            driver.accept();
        });
    };

    QVERIFY(importWithout(1).isNull());
    QCOMPARE(host.takeMessages(), QStringList{QStringLiteral("Недостаточно памяти для результата импорта")});

    QVERIFY(importWithout(0).contains(QLatin1String("<Cell>4.00</Cell>")));
    QCOMPARE(host.messages(), QStringList());
}

QTEST_MAIN(tst_ImportPluginMemory)
#include "tst_importplugin_memory.moc"
