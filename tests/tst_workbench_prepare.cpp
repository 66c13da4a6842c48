#include "conversion.h"
#include "facilities.h"
#include "fakeprepare.h"
#include "preparepath.h"
#include "prepareprocess.h"

#include <QDir>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTemporaryDir>

/// The companion program: where it is, how it is called, and its report of a conversion.
class tst_WorkbenchPrepare : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { FakePrepare::reset(); }

    void programIsFound_data();
    void programIsFound();

    void conversionIsReported_data();
    void conversionIsReported();
    void unreadableReportIsRejected_data();
    void unreadableReportIsRejected();
    void lossesAreListed();
    void longListIsShortened();

    void callEnds_data();
    void callEnds();
    void outputIsLimited();
    void cancelledProgramEnds();
    void stubbornProgramIsKilled();
    void programThatWasDoneIsNotCancelled();
    void stoppedProgramEndsWithoutSignal();
};

namespace {

using End = PrepareProcess::End;

QString self()
{
    return QCoreApplication::applicationFilePath();
}

const QStringList check{QStringLiteral("check"), QStringLiteral("a.dxf")};

/// A program that runs for \a milliseconds and logs when it has set up itself.
class RunningProgram
{
public:
    RunningProgram(PrepareProcess &process, int milliseconds)
    {
        const QString log = m_dir.filePath(QStringLiteral("log"));
        qputenv("FAKE_LOG", log.toUtf8());
        qputenv("FAKE_SLEEP", QByteArray::number(milliseconds));
        process.start(self(), check);
        m_hasStarted = QTest::qWaitFor([&log] { return QFile::exists(log); });
    }

    bool hasStarted() const { return m_hasStarted; }

private:
    const QTemporaryDir m_dir;
    bool m_hasStarted = false;
};

// Programs have a suffix on some systems.
QString suffixed(const QString &name)
{
    const QString suffix = QFileInfo(self()).suffix();
    return suffix.isEmpty() ? name : name + QLatin1Char('.') + suffix;
}

} // namespace

void tst_WorkbenchPrepare::programIsFound_data()
{
    QTest::addColumn<QStringList>("programs");
    QTest::addColumn<QStringList>("otherFiles");
    QTest::addColumn<QString>("found");

    const QString installed = QStringLiteral("bin/importprepare");
    const QString built = QStringLiteral("prepare/importprepare");
    QTest::newRow("none") << QStringList() << QStringList() << QString();
    QTest::newRow("installed") << QStringList{installed} << QStringList() << installed;
    QTest::newRow("built") << QStringList{built} << QStringList() << built;
    QTest::newRow("both") << QStringList{installed, built} << QStringList() << built;
    QTest::newRow("not executable") << QStringList{installed} << QStringList{built} << installed;
    QTest::newRow("elsewhere") << QStringList{QStringLiteral("importprepare")} << QStringList() << QString();
}

void tst_WorkbenchPrepare::programIsFound()
{
    QFETCH(QStringList, programs);
    QFETCH(QStringList, otherFiles);
    QFETCH(QString, found);
    if (!otherFiles.isEmpty())
        REQUIRE_FACILITY(executePermission());
    const QTemporaryDir dir;
    QDir(dir.path()).mkpath(QStringLiteral("bin"));
    QDir(dir.path()).mkpath(QStringLiteral("prepare"));
    for (const QString &name : programs)
        QVERIFY(QFile::copy(self(), dir.filePath(suffixed(name))));
    for (const QString &name : otherFiles)
        FakePrepare::append(dir.filePath(suffixed(name)), "x");

    const QString program = findPrepareProgram(dir.filePath(QStringLiteral("bin")));

    QCOMPARE(program, found.isEmpty() ? QString() : dir.filePath(suffixed(found)));
}

void tst_WorkbenchPrepare::conversionIsReported_data()
{
    QTest::addColumn<QByteArray>("counts");
    QTest::addColumn<QString>("text");

    const QString complete = QStringLiteral("\n\nПеренесено всё.");
    QTest::newRow("complete") << QByteArray(R"("leftOut":[],"notes":[])") << complete;
    QTest::newRow("left out") << QByteArray(
                                     R"("leftOut":[{"kind":"raster","count":2},{"kind":"entity 3DSOLID","count":3},)"
                                     R"({"kind":"newer","count":4}])")
                              << QStringLiteral("\n\nНе перенесено:\n  растры: 2\n  примитивы 3DSOLID: 3\n  newer: 4");
    QTest::newRow("notes") << QByteArray(R"("notes":[{"kind":"replaced-character","count":5}])")
                           << complete +
                                  QStringLiteral("\n\nК сведению:\n  знаки, которых нет в кодировке результата и "
                                                 "которые заменены: 5");
    QTest::newRow("warning") << QByteArray(R"("warning":"odd header")")
                             << complete + QStringLiteral("\n\nПервое предупреждение: odd header");
    QTest::newRow("encoding of the source")
        << QByteArray(R"("sourceEncoding":"UTF-8")") << QStringLiteral("; исходного файла: UTF-8.") + complete;
}

void tst_WorkbenchPrepare::conversionIsReported()
{
    QFETCH(QByteArray, counts);
    QFETCH(QString, text);
    Conversion conversion;

    QVERIFY(readConversion(R"({"output":"/tmp/a.mif","encoding":"windows-1251","objects":7,"contours":8,"vertices":90,)"
                           R"("points":4,)" +
                               counts + "}",
                           conversion));

    const QString start = QDir::toNativeSeparators(QStringLiteral("/tmp/a.mif")) +
                          QStringLiteral("\nЗаписано: объектов 7, контуров 8, вершин 90, точек 4.\n"
                                         "Кодировка результата: windows-1251");
    const bool hasSource = !conversion.sourceEncoding.isEmpty();
    QCOMPARE(conversionText(conversion), start + (hasSource ? text : QLatin1Char('.') + text));
    QCOMPARE(conversion.isComplete(), !text.contains(QStringLiteral("Не перенесено")));
}

void tst_WorkbenchPrepare::unreadableReportIsRejected_data()
{
    QTest::addColumn<QByteArray>("json");

    QTest::newRow("empty") << QByteArray();
    QTest::newRow("truncated") << QByteArray(R"({"output":"a.mif","encoding":"UTF-8")");
    QTest::newRow("text") << QByteArray("a.mif: 7 objects.");
    QTest::newRow("no output") << QByteArray(R"({"encoding":"UTF-8"})");
    QTest::newRow("no encoding") << QByteArray(R"({"output":"a.mif"})");
}

void tst_WorkbenchPrepare::unreadableReportIsRejected()
{
    QFETCH(QByteArray, json);
    Conversion conversion;

    QVERIFY(!readConversion(json, conversion));
}

void tst_WorkbenchPrepare::lossesAreListed()
{
    Conversion conversion;
    conversion.notes = {{QStringLiteral("height"), 3}, {QStringLiteral("gdal-warning"), 4}};
    QCOMPARE(lossText(conversion, 9), QString());

    conversion.leftOut = {{QStringLiteral("raster"), 1}};
    conversion.notes += {{QStringLiteral("degrees"), 1},
                         {QStringLiteral("long-text"), 2},
                         {QStringLiteral("no-end"), 1},
                         {QStringLiteral("replaced-character"), 5}};

    QCOMPARE(lossText(conversion, 9),
             QStringLiteral("  растры: 1\n"
                            "  координаты в градусах, а импорту нужны метры\n"
                            "  тексты, обрезанные до 254 байт: 2\n"
                            "  в чертеже нет отметки конца: возможно, файл обрезан\n"
                            "  знаки, которых нет в кодировке результата и которые заменены: 5"));
}

void tst_WorkbenchPrepare::longListIsShortened()
{
    Conversion conversion;
    for (int i = 1; i <= 5; ++i)
        conversion.leftOut.append({QStringLiteral("entity E%1").arg(i), i});

    QCOMPARE(lossText(conversion, 3),
             QStringLiteral("  примитивы E1: 1\n  примитивы E2: 2\n  примитивы E3: 3\n  и другое (видов: 2)"));
}

void tst_WorkbenchPrepare::callEnds_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QByteArray>("variable");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<int>("end");
    QTest::addColumn<int>("status");

    QTest::newRow("finished") << self() << QByteArray("FAKE_STATUS") << QByteArray("3")
                              << static_cast<int>(End::Finished) << 3;
    QTest::newRow("crashed") << self() << QByteArray("FAKE_CRASH") << QByteArray("1") << static_cast<int>(End::Crashed)
                             << -1;
    QTest::newRow("not started") << self() + QStringLiteral("-absent") << QByteArray("FAKE_STATUS") << QByteArray("0")
                                 << static_cast<int>(End::NotStarted) << -1;
}

void tst_WorkbenchPrepare::callEnds()
{
    QFETCH(QString, program);
    QFETCH(QByteArray, variable);
    QFETCH(QByteArray, value);
    QFETCH(int, end);
    QFETCH(int, status);
    qputenv(variable, value);
    qputenv("FAKE_OUTPUT", "отчёт");
    qputenv("FAKE_ERRORS", "error");
    PrepareProcess process;
    QSignalSpy finished(&process, &PrepareProcess::finished);

    process.start(program, check);

    QTRY_COMPARE(finished.count(), 1);
    QCOMPARE(static_cast<int>(process.end()), end);
    QVERIFY(!process.isRunning());
    if (process.end() != End::Finished)
        return;
    QCOMPARE(process.exitCode(), status);
    QCOMPARE(process.output(), QByteArray("отчёт"));
    QCOMPARE(process.errors(), QByteArray("error"));
}

void tst_WorkbenchPrepare::outputIsLimited()
{
    qputenv("FAKE_LONG_OUTPUT", QByteArray::number(PrepareProcess::maxOutput + 100000));
    PrepareProcess process;
    QSignalSpy finished(&process, &PrepareProcess::finished);

    process.start(self(), check);

    QTRY_COMPARE(finished.count(), 1);
    QCOMPARE(process.exitCode(), 0);
    QCOMPARE(process.output().size(), PrepareProcess::maxOutput);
}

void tst_WorkbenchPrepare::cancelledProgramEnds()
{
    PrepareProcess process;
    QSignalSpy finished(&process, &PrepareProcess::finished);
    const RunningProgram program(process, 60000);
    QVERIFY(program.hasStarted());

    process.cancel();

    QTRY_COMPARE(finished.count(), 1);
    QCOMPARE(process.end(), End::Cancelled);
}

void tst_WorkbenchPrepare::stubbornProgramIsKilled()
{
    qputenv("FAKE_STUBBORN", "1");
    PrepareProcess process;
    QSignalSpy finished(&process, &PrepareProcess::finished);
    const RunningProgram program(process, 60000);
    QVERIFY(program.hasStarted());

    process.cancel();

    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 20000);
    QCOMPARE(process.end(), End::Cancelled);
}

void tst_WorkbenchPrepare::programThatWasDoneIsNotCancelled()
{
    qputenv("FAKE_STUBBORN", "1");
    PrepareProcess process;
    QSignalSpy finished(&process, &PrepareProcess::finished);
    const RunningProgram program(process, 300);
    QVERIFY(program.hasStarted());

    process.cancel();

    QTRY_COMPARE(finished.count(), 1);
    QCOMPARE(process.end(), End::Finished);
}

void tst_WorkbenchPrepare::stoppedProgramEndsWithoutSignal()
{
    PrepareProcess process;
    QSignalSpy finished(&process, &PrepareProcess::finished);
    const RunningProgram program(process, 60000);
    QVERIFY(program.hasStarted());

    process.stop();

    QVERIFY(!process.isRunning());
    QCOMPARE(finished.count(), 0);
    qputenv("FAKE_SLEEP", "0");
    process.start(self(), check);
    QTRY_COMPARE(finished.count(), 1);
    QCOMPARE(process.end(), End::Finished);
}

int main(int argc, char **argv)
{
    return FakePrepare::testMain<tst_WorkbenchPrepare>(argc, argv);
}

#include "tst_workbench_prepare.moc"
