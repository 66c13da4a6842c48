#include "converttesting.h"
#include "interruption.h"

#include <QElapsedTimer>
#include <QThread>

#include <csignal>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif
#ifdef Q_OS_LINUX
#include <sys/mount.h>
#include <unistd.h>
#endif

/// What a conversion leaves that is interrupted or cannot write its output.
class tst_PrepareConvertInterrupted : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void fullDiskLeavesNothing();
    void limitOfFileSizeLeavesNothing();
    void interruptionLeavesNothing_data();
    void interruptionLeavesNothing();
    void repeatedSignalIsOneInterruption();
    void secondInterruptionEndsAtOnce();
    void ignoredSignalStaysIgnored();
};

namespace {

/// Waits for the temporary folder, which appears before the source is read.
void startConversion(QProcess &process, const ConvertFixture &fixture, const QStringList &args)
{
    const int count = entries(fixture.path(QString())).size();
    process.setWorkingDirectory(fixture.path(QString()));
    process.start(QStringLiteral(IMPORTPREPARE_PATH), args);
    QElapsedTimer timer;
    timer.start();
    while (entries(fixture.path(QString())).size() == count && timer.elapsed() < 30000)
        QThread::msleep(1);
    QThread::msleep(50);
}

} // namespace

// Signals may be ignored where the tests run in the background, and child processes inherit that.
void tst_PrepareConvertInterrupted::initTestCase()
{
    std::signal(SIGINT, SIG_DFL);
#ifdef SIGHUP
    std::signal(SIGHUP, SIG_DFL);
#endif
}

void tst_PrepareConvertInterrupted::fullDiskLeavesNothing()
{
#ifdef Q_OS_LINUX
    if (geteuid() != 0)
        QSKIP("only the superuser can mount a small disk");
    const ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.dxf"), longDrawing(5000));
    QVERIFY(QDir(fixture.path(QString())).mkdir(QStringLiteral("disk")));
    const QByteArray disk = fixture.path(QStringLiteral("disk")).toUtf8();
    if (mount("tmpfs", disk.constData(), "tmpfs", 0, "size=64k") != 0)
        QSKIP("this system lets nobody mount a disk");

    const ConvertRun run = fixture.run(arguments("a.dxf disk/out.mif"));
    const QStringList left = entries(fixture.path(QStringLiteral("disk")));
    umount(disk.constData());

    QCOMPARE(run.status, 1);
    QCOMPARE(run.messages, QStringLiteral("importprepare: Cannot write \"disk/out.mif\": The disk is full."));
    QCOMPARE(left, QStringList());
#else
    QSKIP("needs a disk of its own");
#endif
}

void tst_PrepareConvertInterrupted::limitOfFileSizeLeavesNothing()
{
#ifdef Q_OS_LINUX
    const ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.dxf"), longDrawing(5000));
    QProcess process;
    process.setWorkingDirectory(fixture.path(QString()));

    process.start(QStringLiteral("/bin/sh"),
                  {QStringLiteral("-c"), QStringLiteral("ulimit -f 16; exec \"$0\" convert a.dxf out.mif"),
                   QStringLiteral(IMPORTPREPARE_PATH)});
    QVERIFY(process.waitForFinished(60000));

    const QByteArray message = process.readAllStandardError();
    QVERIFY2(message.startsWith("importprepare: Cannot write \"out.mif\": "), message.constData());
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 1);
    QCOMPARE(entries(fixture.path(QString())), arguments("a.dxf"));
#else
    QSKIP("limits of Linux");
#endif
}

void tst_PrepareConvertInterrupted::interruptionLeavesNothing_data()
{
    QTest::addColumn<int>("signal");

    QTest::newRow("interrupt") << SIGINT;
    QTest::newRow("terminate") << SIGTERM;
#ifdef SIGHUP
    QTest::newRow("hang up") << SIGHUP;
#endif
}

void tst_PrepareConvertInterrupted::interruptionLeavesNothing()
{
#ifdef Q_OS_UNIX
    QFETCH(int, signal);
    const ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.dxf"), longDrawing(200000));
    QProcess process;
    startConversion(process, fixture, arguments("convert a.dxf out.mif"));

    QCOMPARE(kill(static_cast<pid_t>(process.processId()), signal), 0);
    QVERIFY(process.waitForFinished(60000));

    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 1);
    QCOMPARE(process.readAllStandardError(), QByteArray("importprepare: Interrupted. Nothing was written.\n"));
    QCOMPARE(entries(fixture.path(QString())), arguments("a.dxf"));
#else
    QSKIP("signals of Unix");
#endif
}

// Two signals, so that both arrive.
void tst_PrepareConvertInterrupted::repeatedSignalIsOneInterruption()
{
#ifdef Q_OS_UNIX
    const ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.dxf"), longDrawing(200000));
    QProcess process;
    startConversion(process, fixture, arguments("convert a.dxf out.mif"));

    const auto id = static_cast<pid_t>(process.processId());
    QVERIFY(kill(id, SIGINT) == 0 && kill(id, SIGTERM) == 0);
    QVERIFY(process.waitForFinished(60000));

    QCOMPARE(process.readAllStandardError(), QByteArray("importprepare: Interrupted. Nothing was written.\n"));
    QCOMPARE(entries(fixture.path(QString())), arguments("a.dxf"));
#else
    QSKIP("signals of Unix");
#endif
}

// GDAL waits for a writer of the pipe.
void tst_PrepareConvertInterrupted::secondInterruptionEndsAtOnce()
{
#ifdef Q_OS_UNIX
    const ConvertFixture fixture;
    QCOMPARE(mkfifo(fixture.path(QStringLiteral("pipe.csv")).toUtf8().constData(), 0600), 0);
    fixture.files.write(QStringLiteral("a.vrt"),
                        {QStringLiteral("<OGRVRTDataSource><OGRVRTLayer name=\"pipe\"><SrcDataSource>pipe.csv"
                                        "</SrcDataSource></OGRVRTLayer></OGRVRTDataSource>")});
    QProcess process;
    startConversion(process, fixture, arguments("convert a.vrt out.mif"));
    const auto id = static_cast<pid_t>(process.processId());

    QCOMPARE(kill(id, SIGTERM), 0);
    QVERIFY(!process.waitForFinished(2500));
    QCOMPARE(kill(id, SIGTERM), 0);
    QVERIFY(process.waitForFinished(60000));

    QCOMPARE(process.exitStatus(), QProcess::CrashExit);
    QCOMPARE(entries(fixture.path(QString())), arguments("a.vrt pipe.csv"));
#else
    QSKIP("signals of Unix");
#endif
}

// As under nohup.
void tst_PrepareConvertInterrupted::ignoredSignalStaysIgnored()
{
#ifdef Q_OS_UNIX
    const auto previous = std::signal(SIGHUP, SIG_IGN);
    {
        const Interruption interruption;
        std::raise(SIGHUP);
        QVERIFY(!Interruption::isRequested());
    }
    std::raise(SIGHUP);
    QVERIFY(std::signal(SIGHUP, previous) == SIG_IGN);
#else
    QSKIP("signals of Unix");
#endif
}

QTEST_GUILESS_MAIN(tst_PrepareConvertInterrupted)
#include "tst_prepare_convert_interrupted.moc"
