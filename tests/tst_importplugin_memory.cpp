#include "mifpairs.h"
#include "resultoutline.h"

#include <QTest>

#include <optional>

#if defined(Q_OS_LINUX) && !defined(__SANITIZE_ADDRESS__)
#include <sys/resource.h>
#include <unistd.h>
#endif

namespace {

constexpr int megabyte = 1 << 20;

/// Leaves this process \a room bytes more memory than it has, while it lives.
class MemoryLimit
{
#if defined(Q_OS_LINUX) && !defined(__SANITIZE_ADDRESS__)
public:
    static constexpr bool isAvailable = true;

    explicit MemoryLimit(int room)
    {
        getrlimit(RLIMIT_AS, &m_before);
        QFile status(QStringLiteral("/proc/self/statm"));
        if (!status.open(QIODevice::ReadOnly))
            qFatal("the system does not tell the size of this process");
        const rlim_t pages = status.readAll().split(' ').first().toULongLong();
        const auto pageSize = static_cast<rlim_t>(sysconf(_SC_PAGESIZE));
        const rlimit limit{pages * pageSize + static_cast<rlim_t>(room), m_before.rlim_max};
        setrlimit(RLIMIT_AS, &limit);
    }
    ~MemoryLimit()
    {
        setrlimit(RLIMIT_AS, &m_before);
    }

private:
    rlimit m_before{};
#else
public:
    static constexpr bool isAvailable = false;
    explicit MemoryLimit(int /*room*/) {}
    ~MemoryLimit() {}

private:
#endif
    Q_DISABLE_COPY(MemoryLimit)
};

/// A ring of 500 vertices at one point, whose designation is as long as \a def. Gives the path of the MIF file.
QString writeNamedRing(const PluginHost &host, const QString &def)
{
    QStringList data{QStringLiteral("POINT 0 0"), QStringLiteral("REGION 1"), QStringLiteral("500")};
    for (int i = 0; i < 500; ++i)
        data.append(QStringLiteral("0 0"));
    return writePair(host, QStringLiteral("ring"), data, {def, QStringLiteral("ЗУ1")});
}

} // namespace

/// What needs more memory than there is ends in a message.
class tst_ImportPluginMemory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void resultThatFindsNoRoomIsTold();
    void lineThatFindsNoRoomIsTold_data();
    void lineThatFindsNoRoomIsTold();
};

void tst_ImportPluginMemory::initTestCase()
{
    if (!MemoryLimit::isAvailable)
        QSKIP("here memory cannot be limited");
}

void tst_ImportPluginMemory::resultThatFindsNoRoomIsTold()
{
    PluginHost host;
    std::optional<MemoryLimit> limit;
    const auto importRing = [&](const QString &def, int room) {
        const QString path = writeNamedRing(host, def);
        const QString result = host.call(fromMif, [&](DialogDriver &driver) {
            driver.setChecked("searchPointDefsCheck", true);
            driver.process(path);
            limit.emplace(room);
            driver.accept();
        });
        limit.reset();
        return result;
    };

    const QString result = importRing(QString(megabyte, QLatin1Char('a')), 500 * megabyte);

    QVERIFY(result.isNull());
    QCOMPARE(host.messages(), QStringList{QStringLiteral("Недостаточно памяти для результата импорта")});
    QVERIFY(importRing(QStringLiteral("a"), 500 * megabyte).contains(QLatin1String("<Cell>a</Cell>")));
    QCOMPARE(host.messages().size(), 1);
}

void tst_ImportPluginMemory::lineThatFindsNoRoomIsTold_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QStringList>("lines");

    QTest::newRow("MIF") << fromMif << mifHeader + QStringList{QStringLiteral("LINE 1 2 3 4"), QString()};
    QTest::newRow("DXF") << fromDxf
                         << QStringLiteral("0 SECTION 2 HEADER 0 ENDSEC 0 SECTION 2 ENTITIES "
                                           "0 LINE 10 1 20 2 11 3 21 4 0 LINE 10")
                                .split(QLatin1Char(' '));
}

// What was read before stays.
void tst_ImportPluginMemory::lineThatFindsNoRoomIsTold()
{
    QFETCH(QString, operation);
    QFETCH(QStringList, lines);
    PluginHost host;
    const QString path = host.write(QStringLiteral("long line"), lines);
    QVERIFY(QFile::resize(path, 400 * megabyte));

    const QString result = host.call(operation, [&](DialogDriver &driver) {
        searchNothing(driver);
        {
            const MemoryLimit limit(300 * megabyte);
            driver.process(path);
        }
        driver.accept();
    });

    const QString native = QDir::toNativeSeparators(path);
    QCOMPARE(host.messages(), QStringList{QStringLiteral("Недостаточно памяти для чтения файла ") + native});
    QVERIFY(result.contains(QLatin1String("<Cell>4.00</Cell>")));
}

QTEST_MAIN(tst_ImportPluginMemory)
#include "tst_importplugin_memory.moc"
