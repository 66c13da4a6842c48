#include "converttesting.h"
#include "interruption.h"

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
    waitForMoreEntries(fixture.path(QString()), count);
    QThread::msleep(50);
}

} // namespace

void tst_PrepareConvertInterrupted::initTestCase()
{
    stopIgnoringSignals();
}

void tst_PrepareConvertInterrupted::fullDiskLeavesNothing()
{
    const ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.dxf"), longDrawing(5000));
    const SmallDisk disk(fixture.path(QStringLiteral("disk")));
    REQUIRE_FACILITY(disk.mounted());

    const ConvertRun run = fixture.run(arguments("a.dxf disk/out.mif"));

    QCOMPARE(run.status, 1);
    QCOMPARE(run.messages, QStringLiteral("importprepare: Cannot write \"disk/out.mif\": The disk is full."));
    QCOMPARE(entries(fixture.path(QStringLiteral("disk"))), QStringList());
}

void tst_PrepareConvertInterrupted::limitOfFileSizeLeavesNothing()
{
    REQUIRE_FACILITY(fileSizeLimit());
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
}

void tst_PrepareConvertInterrupted::interruptionLeavesNothing_data()
{
    addSignals();
}

void tst_PrepareConvertInterrupted::interruptionLeavesNothing()
{
    REQUIRE_FACILITY(terminationSignal());
    QFETCH(int, signal);
    const ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.dxf"), longDrawing(200000));
    QProcess process;
    startConversion(process, fixture, arguments("convert a.dxf out.mif"));

    QVERIFY(sendSignal(process, signal));
    QVERIFY(process.waitForFinished(60000));

    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 1);
    QCOMPARE(process.readAllStandardError(), QByteArray("importprepare: Interrupted. Nothing was written.\n"));
    QCOMPARE(entries(fixture.path(QString())), arguments("a.dxf"));
}

// Two signals, so that both arrive.
void tst_PrepareConvertInterrupted::repeatedSignalIsOneInterruption()
{
    REQUIRE_FACILITY(terminationSignal());
    const ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.dxf"), longDrawing(200000));
    QProcess process;
    startConversion(process, fixture, arguments("convert a.dxf out.mif"));

    QVERIFY(sendSignal(process, SIGINT) && sendSignal(process, SIGTERM));
    QVERIFY(process.waitForFinished(60000));

    QCOMPARE(process.readAllStandardError(), QByteArray("importprepare: Interrupted. Nothing was written.\n"));
    QCOMPARE(entries(fixture.path(QString())), arguments("a.dxf"));
}

// GDAL waits for a writer of the pipe.
void tst_PrepareConvertInterrupted::secondInterruptionEndsAtOnce()
{
    REQUIRE_FACILITY(terminationSignal());
    REQUIRE_FACILITY(namedPipes());
    const ConvertFixture fixture;
    QVERIFY(makePipe(fixture.path(QStringLiteral("pipe.csv"))));
    fixture.files.write(QStringLiteral("a.vrt"),
                        {QStringLiteral("<OGRVRTDataSource><OGRVRTLayer name=\"pipe\"><SrcDataSource>pipe.csv"
                                        "</SrcDataSource></OGRVRTLayer></OGRVRTDataSource>")});
    QProcess process;
    startConversion(process, fixture, arguments("convert a.vrt out.mif"));

    QVERIFY(sendSignal(process, SIGTERM));
    QVERIFY(!process.waitForFinished(2500));
    QVERIFY(sendSignal(process, SIGTERM));
    QVERIFY(process.waitForFinished(60000));

    QCOMPARE(process.exitStatus(), QProcess::CrashExit);
    QCOMPARE(entries(fixture.path(QString())), arguments("a.vrt pipe.csv"));
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
    REQUIRE_FACILITY(terminationSignal());
#endif
}

QTEST_GUILESS_MAIN(tst_PrepareConvertInterrupted)
#include "tst_prepare_convert_interrupted.moc"
