#include "checkprogramtesting.h"
#include "outputtesting.h"

#include <cstdio>

/// What the sub-command check finds in folders, how it shows names, and what it leaves where its output cannot be
/// written or its work is interrupted.
class tst_PrepareCheckOutput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void pageNeverReplacesOtherFiles_data();
    void pageNeverReplacesOtherFiles();
    void pageOnAFullDiskKeepsTheOldOne_data();
    void pageOnAFullDiskKeepsTheOldOne();
    void unwritableOutputIsReported_data();
    void unwritableOutputIsReported();
    void everyNameInAFolderIsReported();
    void unreadableFolderIsReported();
    void foldersBehindLinksAreNotSearched();
    void namesAreShownWithoutControlCharacters();
    void filesOfOneNameGetDifferentOutputs();
    void pageShowsOptionsAndNamesTheCommand();
    void timeoutMayBeDamage();
    void unfinishedCheckClaimsNothing_data();
    void unfinishedCheckClaimsNothing();
    void interruptionLeavesNothing_data();
    void interruptionLeavesNothing();
};

namespace {

QByteArray contents(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// "file: findings" of each line of JSON.
QStringList described(const QString &json)
{
    QStringList texts;
    const QStringList lines = linesOf(json);
    for (const QString &line : lines) {
        const std::optional<FileReport> report = reportFromJson(line.toUtf8());
        texts.append(report ? report->fileName + QStringLiteral(": ") + ::described(report->findings) : line);
    }
    return texts;
}

FileReport reportOf(const QString &fileName)
{
    FileReport report;
    report.fileName = fileName;
    report.isAccepted = true;
    report.messages = QStringList{fileName};
    Finding finding = findingWithoutEvidence(QStringLiteral("binary-dxf"));
    finding.cure = QStringLiteral("Исправьте файл или преобразуйте файл командой convert.");
    report.findings = {finding};
    return report;
}

} // namespace

void tst_PrepareCheckOutput::initTestCase()
{
    stopIgnoringSignals();
}

void tst_PrepareCheckOutput::pageNeverReplacesOtherFiles_data()
{
    QTest::addColumn<QString>("page");
    QTest::addColumn<QString>("error");
    const auto add = [](const char *page, const char *error) {
        QTest::newRow(page) << QString::fromLatin1(page) << QString::fromLatin1(error);
    };

    add("a.dxf", "--html names the page to write, and \"a.dxf\" is a name of a MIF or DXF file.");
    add("new.MIF", "--html names the page to write, and \"new.MIF\" is a name of a MIF or DXF file.");
    add("new.mid", "--html names the page to write, and \"new.mid\" is a name of a MIF or DXF file.");
    add("link.html", "--html names the page to write, and \"link.html\" is a name of a MIF or DXF file.");
    add("points.txt", "\"points.txt\" is the file of points, so --html would overwrite it.");
    add("pipe", "\"pipe\" is not a regular file, so --html would destroy it.");
    add("folder", "\"folder\" is not a regular file, so --html would destroy it.");
    add("none/page.html", "The folder of \"none/page.html\" is missing.");
}

void tst_PrepareCheckOutput::pageNeverReplacesOtherFiles()
{
    REQUIRE_FACILITY(symbolicLinks());
    REQUIRE_FACILITY(namedPipes());
    QFETCH(QString, page);
    QFETCH(QString, error);
    const ProgramFixture program;
    program.writeComplete(QStringLiteral("a.dxf"));
    program.files.writeBytes(QStringLiteral("points.txt"), "points");
    QVERIFY(QFile::link(QStringLiteral("a.dxf"), program.path(QStringLiteral("link.html"))));
    QVERIFY(QDir(program.folder()).mkdir(QStringLiteral("folder")));
    QVERIFY(makePipe(program.path(QStringLiteral("pipe"))));
    const QByteArray before = contents(program.path(QStringLiteral("a.dxf")));
    const QStringList entriesBefore = entries(program.folder());

    const Run result = run({QStringLiteral("check"), QStringLiteral("--html"), page, QStringLiteral("--points"),
                            QStringLiteral("points.txt"), QStringLiteral("a.dxf")},
                           program.folder());

    QCOMPARE(result.errors, QStringLiteral("importprepare: %1 See importprepare check --help.\n").arg(error));
    QCOMPARE(result.status, 2);
    QCOMPARE(result.output, QString());
    QCOMPARE(contents(program.path(QStringLiteral("a.dxf"))), before);
    QCOMPARE(entries(program.folder()), entriesBefore);
}

void tst_PrepareCheckOutput::pageOnAFullDiskKeepsTheOldOne_data()
{
    QTest::addColumn<int>("rest"); // free bytes of the disk

    QTest::newRow("no space") << 0;
    QTest::newRow("space for the beginning") << 4096;
}

void tst_PrepareCheckOutput::pageOnAFullDiskKeepsTheOldOne()
{
    QFETCH(int, rest);
    const ProgramFixture program;
    QByteArray entities = lineEntity;
    for (int i = 0; i < 200; ++i)
        entities += "|0 CIRCLE|8 0|10 " + QByteArray::number(20 * i) + "|20 0|40 5";
    program.files.write(QStringLiteral("a.dxf"), drawing(entities));
    const SmallDisk disk(program.path(QStringLiteral("disk")));
    REQUIRE_FACILITY(disk.mounted());
    program.files.writeBytes(QStringLiteral("disk/page.html"), "old");
    program.files.writeBytes(QStringLiteral("disk/rest"), QByteArray(SmallDisk::size - 4096 - rest, 'x'));

    const Run result = run(
        {QStringLiteral("check"), QStringLiteral("--html"), QStringLiteral("disk/page.html"), QStringLiteral("a.dxf")},
        program.folder());

    QCOMPARE(result.errors, QStringLiteral("importprepare: Cannot save \"disk/page.html\": No space left on device\n"));
    QCOMPARE(result.status, 2);
    QCOMPARE(contents(program.path(QStringLiteral("disk/page.html"))), QByteArray("old"));
    QCOMPARE(entries(program.path(QStringLiteral("disk"))),
             (QStringList{QStringLiteral("page.html"), QStringLiteral("rest")}));
}

void tst_PrepareCheckOutput::unwritableOutputIsReported_data()
{
    QTest::addColumn<QString>("arguments");

    for (const char *const arguments :
         {"check a.dxf", "check a.dxf a.dxf", "report a.jsonl", "convert a.dxf out.mif", "--help", "convert --help"})
        QTest::newRow(arguments) << QString::fromLatin1(arguments);
}

void tst_PrepareCheckOutput::unwritableOutputIsReported()
{
    REQUIRE_FACILITY(fullDevice());
    QFETCH(QString, arguments);
    const ProgramFixture program;
    program.writeComplete(QStringLiteral("a.dxf"));
    program.files.writeBytes(QStringLiteral("a.jsonl"), "");
    QProcess process;
    process.setWorkingDirectory(program.folder());
    process.setStandardOutputFile(fullDevicePath);

    process.start(QStringLiteral(IMPORTPREPARE_PATH), arguments.split(QLatin1Char(' ')));
    QVERIFY(process.waitForFinished(60000));

    QCOMPARE(process.readAllStandardError(), QByteArray("importprepare: Cannot write to the standard output.\n"));
    QCOMPARE(process.exitCode(), 2);
}

void tst_PrepareCheckOutput::everyNameInAFolderIsReported()
{
    REQUIRE_FACILITY(undecodableNames());
    const ProgramFixture program;
    QVERIFY(QDir(program.folder()).mkdir(QStringLiteral("a")));
    program.writeComplete(QStringLiteral("a/good.dxf"));
    QVERIFY(QFile::link(QStringLiteral("none"), program.path(QStringLiteral("a/link.dxf"))));
    QVERIFY(makePipe(program.path(QStringLiteral("a/pipe.mif"))));
    const QByteArray undecodable = program.path(QStringLiteral("a/")).toUtf8() + "\xEF\xEB.dxf";
    QVERIFY(std::rename(program.writeComplete(QStringLiteral("x")).toUtf8().constData(), undecodable.constData()) == 0);

    const Run result = run({QStringLiteral("check"), QStringLiteral("--json"), QStringLiteral("a")}, program.folder());
    QCOMPARE(std::remove(undecodable.constData()), 0); // QTemporaryDir cannot name it

    QCOMPARE(
        described(result.output),
        (QStringList{QStringLiteral("a/good.dxf: "), QStringLiteral("a/link.dxf: unreadable 1"),
                     QStringLiteral("a/pipe.mif: unreadable 1"), QStringLiteral("a/\uFFFD\uFFFD.dxf: unreadable 1")}));
    QCOMPARE(result.status, 3);
}

void tst_PrepareCheckOutput::unreadableFolderIsReported()
{
    REQUIRE_FACILITY(unreadableFolders());
    const ProgramFixture program;
    QVERIFY(QDir(program.folder()).mkpath(QStringLiteral("a/closed")));
    program.writeComplete(QStringLiteral("a/good.dxf"));
    QVERIFY(QFile::setPermissions(program.path(QStringLiteral("a/closed")), {}));

    const Run result = run({QStringLiteral("check"), QStringLiteral("--json"), QStringLiteral("a")}, program.folder());

    QCOMPARE(described(result.output),
             (QStringList{QStringLiteral("a/closed: unreadable 1"), QStringLiteral("a/good.dxf: ")}));
    QCOMPARE(result.status, 3);
}

void tst_PrepareCheckOutput::foldersBehindLinksAreNotSearched()
{
    REQUIRE_FACILITY(symbolicLinks());
    const ProgramFixture program;
    QVERIFY(QDir(program.folder()).mkpath(QStringLiteral("a/b")));
    program.writeComplete(QStringLiteral("a/b/good.dxf"));
    QVERIFY(QFile::link(QStringLiteral("b"), program.path(QStringLiteral("a/link"))));

    const Run result = run({QStringLiteral("check"), QStringLiteral("--json"), QStringLiteral("a")}, program.folder());

    QCOMPARE(described(result.output), QStringList{QStringLiteral("a/b/good.dxf: ")});
    QCOMPARE(result.status, 0);
}

void tst_PrepareCheckOutput::namesAreShownWithoutControlCharacters()
{
    QVERIFY(reportText(reportOf(QStringLiteral("a.dxf"))).contains(QStringLiteral("importprepare convert")));
    const FileReport report = reportOf(QStringLiteral("a\x1b[31m\n\u009bb.dxf"));
    const QString shown = QStringLiteral("a\uFFFD[31m\uFFFD\uFFFDb.dxf");

    QVERIFY(reportText(report).startsWith(shown + QLatin1Char('\n')));
    for (const QString &text :
         {reportText(report), totalsText({report}), QString::fromUtf8(reportPage({report, report}))}) {
        QVERIFY2(text.contains(shown), qPrintable(text));
        for (const QChar c : text)
            QVERIFY2(c.category() != QChar::Other_Control || c == QLatin1Char('\n'), qPrintable(text));
        QVERIFY(!text.contains(QStringLiteral("importprepare convert")));
    }
}

void tst_PrepareCheckOutput::filesOfOneNameGetDifferentOutputs()
{
    const TextFixture files;
    const QString drawing = files.write(QStringLiteral("plan.dxf"), {});
    const QString alone = convertCommand(reportOf(drawing));
    const QString map = files.write(QStringLiteral("plan.MIF"), {});

    QVERIFY2(alone.endsWith(QStringLiteral("/plan-import.mif")), qPrintable(alone));
    QVERIFY(convertCommand(reportOf(drawing)).endsWith(QStringLiteral("/plan-dxf-import.mif")));
    QVERIFY(convertCommand(reportOf(map)).endsWith(QStringLiteral("/plan-mif-import.mif")));
}

void tst_PrepareCheckOutput::pageShowsOptionsAndNamesTheCommand()
{
    FileReport report = reportOf(QStringLiteral("a.dxf"));
    report.encoding = QStringLiteral("KOI8-R");

    const QString page = QString::fromUtf8(reportPage({report}));

    QVERIFY2(page.contains(QStringLiteral("<p>Кодировка KOI8-R, искать номера точек: ")), qPrintable(page));
    QVERIFY2(page.contains(QStringLiteral("<p>Подготовить файл к импорту:</p>\n<pre class=\"command\">importprepare")),
             qPrintable(page));
}

void tst_PrepareCheckOutput::timeoutMayBeDamage()
{
    const QString cure = findingWithoutEvidence(QStringLiteral("timeout")).cure;

    QVERIFY2(cure.contains(QStringLiteral("--timeout")) && cure.contains(QStringLiteral("повреждён")),
             qPrintable(cure));
}

void tst_PrepareCheckOutput::unfinishedCheckClaimsNothing_data()
{
    QTest::addColumn<QString>("id");

    QTest::newRow("crash") << QStringLiteral("crash");
    QTest::newRow("timeout") << QStringLiteral("timeout");
}

void tst_PrepareCheckOutput::unfinishedCheckClaimsNothing()
{
    QFETCH(QString, id);
    const FileReport report = reportWithFinding(QStringLiteral("a.dxf"), CheckOptions(), id);
    const QString verdict = QStringLiteral("Проверка не закончена, что загрузится — неизвестно.");

    const QString text = reportText(report);
    const QJsonObject json = objectOf(QString::fromUtf8(toJson(report)));
    const std::optional<FileReport> read = reportFromJson(toJson(report));

    QVERIFY2(text.startsWith(QStringLiteral("a.dxf\n%1\nКодировка ").arg(verdict)), qPrintable(text));
    QVERIFY(json.value(QStringLiteral("accepted")).isNull());
    QVERIFY(json.value(QStringLiteral("import")).isNull());
    QVERIFY(read && read->isUnfinished());
    QCOMPARE(linesOf(totalsText({*read})).value(2).simplified(), QStringLiteral("? ? ? 1 0 a.dxf"));
    QCOMPARE(exitStatus({*read}), 1);
}

void tst_PrepareCheckOutput::interruptionLeavesNothing_data()
{
    addSignals();
}

// The pool has a temporary folder for the pictures.
void tst_PrepareCheckOutput::interruptionLeavesNothing()
{
    REQUIRE_FACILITY(terminationSignal());
    QFETCH(int, signal);
    const ProgramFixture program;
    program.files.write(QStringLiteral("a.dxf"), drawing(lineEntity) << QString(30000000, QLatin1Char('\n')));
    const QString temporary = program.path(QStringLiteral("temporary"));
    QVERIFY(QDir().mkdir(temporary));
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("TMPDIR"), temporary);
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(IMPORTPREPARE_PATH),
                  {QStringLiteral("check"), QStringLiteral("--jobs"), QStringLiteral("1"), QStringLiteral("--html"),
                   program.path(QStringLiteral("page.html")), program.path(QStringLiteral("a.dxf"))});
    waitForMoreEntries(temporary, 0);

    QVERIFY(sendSignal(process, signal));
    QVERIFY(process.waitForFinished(60000));

    QCOMPARE(process.readAllStandardError(), QByteArray("importprepare: Interrupted.\n"));
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 1);
    QCOMPARE(process.readAllStandardOutput(), QByteArray());
    QCOMPARE(entries(temporary), QStringList());
    QVERIFY(!QFile::exists(program.path(QStringLiteral("page.html"))));
}

QTEST_GUILESS_MAIN(tst_PrepareCheckOutput)
#include "tst_prepare_check_output.moc"
