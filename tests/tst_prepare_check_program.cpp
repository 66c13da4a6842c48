#include "checkcommand.h"
#include "checkprogramtesting.h"

#include <QDir>
#include <QJsonArray>

/// The program's sub-commands check and report: output and exit status.
class tst_PrepareCheckProgram : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void exitStatusReportsTheOutcome_data();
    void exitStatusReportsTheOutcome();
    void wrongUsageIsExplained_data();
    void wrongUsageIsExplained();
    void helpAndVersionArePrinted_data();
    void helpAndVersionArePrinted();
    void jsonHasExactlyTheseKeys();
    void foundIsNullIfGdalCannotOpenTheFile();
    void optionsReachTheImport();
    void reportPutsTheImportantFirst();
    void commandIsQuotedForTheShell();
    void suffixesInFoldersMatchInAnyCase();
    void childProcessesGiveTheSameReports();
    void onlyATimeoutNeedsAProcessForOneFile();
    void totalsAreThoseOfTheJsonLines();
    void badJsonLinesAreReported();
    void onlyThreeBadLinesAreNamed();
    void missingJsonFileIsReported();
    void pageShowsTheLosses();
};

namespace {

const QString oneCompleteFile = QStringLiteral("Файлов: 1, принято 1, дают объекты 1, загрузятся полностью 1.");

} // namespace

void tst_PrepareCheckProgram::exitStatusReportsTheOutcome_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<int>("status");

    const QString good = QStringLiteral("good.dxf");
    const QString lossy = QStringLiteral("lossy.dxf");
    const QString missing = QStringLiteral("missing.dxf");
    QTest::newRow("complete") << QStringList{good} << 0;
    QTest::newRow("lossy") << QStringList{lossy} << 1;
    QTest::newRow("complete and lossy") << QStringList{good, lossy} << 1;
    QTest::newRow("missing") << QStringList{missing} << 3;
    QTest::newRow("folder with a suffix") << QStringList{QStringLiteral("folder.dxf/none.dxf")} << 3;
    QTest::newRow("lossy and missing") << QStringList{lossy, missing} << 3;
}

void tst_PrepareCheckProgram::exitStatusReportsTheOutcome()
{
    QFETCH(QStringList, names);
    const ProgramFixture program;
    program.writeComplete();
    program.writeLossy();

    QTEST(run(QStringList{QStringLiteral("check")} + names, program.folder()).status, "status");
}

void tst_PrepareCheckProgram::wrongUsageIsExplained_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("error");

    const auto add = [](const char *arguments, const char *error) {
        QTest::newRow(arguments) << QString::fromLatin1(arguments) << QString::fromLatin1(error);
    };
    add("", "A command is missing.");
    add("repair a.dxf", "Unknown command \"repair\".");
    add("check", "No files to check.");
    add("check a.txt", "\"a.txt\" has neither the suffix .mif nor .dxf. The command convert reads other formats.");
    add("check empty", "No MIF or DXF files in \"empty\".");
    add("check --fast a.dxf", "Unknown option 'fast'.");
    add("check --encoding KOI-9 a.dxf", "Unknown encoding \"KOI-9\".");
    add("check --points none.dxf a.dxf", "Cannot read the file of points \"none.dxf\".");
    add("check --jobs 0 a.dxf", "--jobs takes a number from 1 to 1000.");
    add("check --timeout x a.dxf", "--timeout takes a number from 1 to 1000000.");
    add("report", "No files to report.");
}

void tst_PrepareCheckProgram::wrongUsageIsExplained()
{
    QFETCH(QString, arguments);
    QFETCH(QString, error);
    const ProgramFixture program;
    QVERIFY(QDir(program.folder()).mkdir(QStringLiteral("empty")));

    const Run result = run(arguments.split(QLatin1Char(' '), Qt::SkipEmptyParts), program.folder());

    QCOMPARE(result.status, 2);
    QVERIFY2(result.errors.startsWith(QStringLiteral("importprepare: ") + error), qPrintable(result.errors));
    QCOMPARE(result.output, QString());
}

void tst_PrepareCheckProgram::helpAndVersionArePrinted_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("text");

    const QString help = QStringLiteral("--help");
    QTest::newRow("program") << QStringList{help} << QStringLiteral("Usage: importprepare command [arguments]");
    QTest::newRow("version") << QStringList{QStringLiteral("--version")} << QStringLiteral("importprepare 1.");
    QTest::newRow("check") << QStringList{QStringLiteral("check"), help} << QStringLiteral("check [options] file...");
    QTest::newRow("report") << QStringList{QStringLiteral("report"), help}
                            << QStringLiteral("report [options] file...");
}

void tst_PrepareCheckProgram::helpAndVersionArePrinted()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, text);

    const Run result = run(arguments);

    QCOMPARE(result.status, 0);
    QVERIFY2(result.output.contains(text), qPrintable(result.output));
}

void tst_PrepareCheckProgram::jsonHasExactlyTheseKeys()
{
    const ProgramFixture program;
    const QString fileName = program.writeLossy();

    const Run result = run({QStringLiteral("check"), QStringLiteral("--json"), QStringLiteral("--encoding"),
                            QStringLiteral("windows-1251"), fileName});

    QCOMPARE(linesOf(result.output).size(), 1);
    QJsonObject object = objectOf(result.output);
    const QJsonArray findings = object.take(QStringLiteral("findings")).toArray();
    QCOMPARE(QJsonDocument(object).toJson(QJsonDocument::Compact),
             "{\"accepted\":true,\"file\":\"" + fileName.toUtf8() +
                 "\",\"format\":\"DXF\","
                 "\"found\":{\"areas\":0,\"lines\":3,\"points\":0,\"texts\":0},"
                 "\"import\":{\"contours\":2,\"knownPoints\":0,\"numbers\":4,\"objects\":2,\"vertices\":4},"
                 "\"messages\":[],\"options\":{\"encoding\":\"windows-1251\",\"searchObjects\":true,"
                 "\"searchPoints\":true}}");
    QCOMPARE(findings.size(), 2);
    const QJsonObject first = findings.first().toObject();
    QCOMPARE(first.keys().join(QLatin1Char(' ')), QStringLiteral("count cure id place severity text"));
    QCOMPARE(first.value(QStringLiteral("id")).toString(), QStringLiteral("curves"));
    QCOMPARE(first.value(QStringLiteral("severity")).toString(), QStringLiteral("warning"));
    QCOMPARE(first.value(QStringLiteral("count")).toInt(), 1);
}

void tst_PrepareCheckProgram::foundIsNullIfGdalCannotOpenTheFile()
{
    const ProgramFixture program;
    const QString fileName = program.files.write(QStringLiteral("a.dxf"), {QStringLiteral("no drawing")});

    const QJsonObject object = objectOf(run({QStringLiteral("check"), QStringLiteral("--json"), fileName}).output);

    QVERIFY(object.value(QStringLiteral("found")).isNull());
    QCOMPARE(object.value(QStringLiteral("accepted")).toBool(true), false);
    QCOMPARE(object.value(QStringLiteral("messages")).toArray().size(), 1);
}

void tst_PrepareCheckProgram::optionsReachTheImport()
{
    const ProgramFixture program;
    const QString fileName =
        program.files.write(QStringLiteral("a.mif"), {mifHeader + QStringLiteral("DATA\nLINE 0 0 9 0")});
    const QString points =
        program.files.write(QStringLiteral("p.mif"), {mifHeader + QStringLiteral("DATA\nPOINT 0 0")});
    program.files.write(QStringLiteral("p.mid"), {QStringLiteral("7")});

    const QJsonObject object =
        objectOf(run({QStringLiteral("check"), QStringLiteral("--json"), QStringLiteral("--no-search-objects"),
                      QStringLiteral("--points"), points, fileName})
                     .output);
    const Run renumbered = run({QStringLiteral("check"), QStringLiteral("--json"),
                                QStringLiteral("--no-search-objects"), QStringLiteral("--no-search-points"), fileName});

    QCOMPARE(object.value(QStringLiteral("import")).toObject().value(QStringLiteral("knownPoints")).toInt(), 1);
    QCOMPARE(object.value(QStringLiteral("options")).toObject().value(QStringLiteral("searchObjects")).toBool(true),
             false);
    QCOMPARE(renumbered.status, 0);
}

void tst_PrepareCheckProgram::reportPutsTheImportantFirst()
{
    const ProgramFixture program;
    program.files.write(QStringLiteral("a.dxf"),
                        pairs("999 c") + drawing(lineEntity + "|0 ARC|8 0|10 0|20 0|40 5|50 0|51 90"));

    const Run result = run({QStringLiteral("check"), QStringLiteral("a.dxf")}, program.folder());

    const QStringList expected{
        QStringLiteral("a.dxf\nФайл не будет принят, не загрузится ничего.\n"),
        QStringLiteral("Загрузится: объектов 0, контуров 0, вершин 0, номеров 0, известных точек 0.\n"),
        QStringLiteral("В файле (по чтению GDAL): площадей 0, линий 2, точек 0, надписей 0.\n"),
        QStringLiteral("ОШИБКА: Файл начинается с примечания"),
        QStringLiteral("Случаев: 1, первый: строка 1.\n  Что делать: "),
        QStringLiteral("ВНИМАНИЕ: Дуги, окружности"),
        QStringLiteral("Случаев: 1, первый: строка 24, слой «0», ARC.\n"),
        QStringLiteral("Сообщения импорта:\n  Ошибка. Файл a.dxf не соответствует формату DXF\n"),
        QStringLiteral("Подготовить файл к импорту:\n  importprepare convert a.dxf a-import.mif\n")};
    int at = 0;
    for (const QString &text : expected) {
        at = result.output.indexOf(text, at);
        QVERIFY2(at >= 0, qPrintable(text + result.output));
    }
    QCOMPARE(result.status, 1);
}

void tst_PrepareCheckProgram::commandIsQuotedForTheShell()
{
    const ProgramFixture program;
    program.writeLossy(QStringLiteral("мой план's.dxf"));

    const Run result = run({QStringLiteral("check"), QStringLiteral("мой план's.dxf")}, program.folder());

    QVERIFY2(result.output.contains(
                 QStringLiteral("importprepare convert 'мой план'\\''s.dxf' 'мой план'\\''s-import.mif'\n")),
             qPrintable(result.output));
}

void tst_PrepareCheckProgram::suffixesInFoldersMatchInAnyCase()
{
    const ProgramFixture program;
    QVERIFY(QDir(program.folder()).mkpath(QStringLiteral("a/b")));
    program.writeComplete(QStringLiteral("a/b/PLAN.DXF"));
    program.writeComplete(QStringLiteral("a/plan.Dxf"));
    program.writeComplete(QStringLiteral("a/plan.txt"));

    const Run result = run({QStringLiteral("check"), QStringLiteral("--json"), QStringLiteral("a")}, program.folder());

    QStringList names;
    const QStringList lines = linesOf(result.output);
    for (const QString &line : lines)
        names.append(objectOf(line).value(QStringLiteral("file")).toString());
    QCOMPARE(names, (QStringList{QStringLiteral("a/b/PLAN.DXF"), QStringLiteral("a/plan.Dxf")}));
    QCOMPARE(result.status, 0);
}

void tst_PrepareCheckProgram::childProcessesGiveTheSameReports()
{
    const ProgramFixture program;
    QStringList arguments{QStringLiteral("check"), QStringLiteral("--json")};
    QString expected;
    for (int i = 0; i < 7; ++i) {
        const QString name = QString::number(i) + QStringLiteral(".dxf");
        arguments.append(i % 2 == 0 ? program.writeLossy(name) : program.writeComplete(name));
        expected += run({QStringLiteral("check"), QStringLiteral("--json"), arguments.last()}).output;
    }

    const Run result = run(arguments + QStringList{QStringLiteral("--jobs"), QStringLiteral("3")});

    QCOMPARE(result.output, expected);
    QCOMPARE(result.status, 1);
}

void tst_PrepareCheckProgram::onlyATimeoutNeedsAProcessForOneFile()
{
    CheckCommandLine plain;
    CheckCommandLine limited;

    QVERIFY(plain.read({QStringLiteral("a.dxf")}));
    QVERIFY(limited.read({QStringLiteral("--timeout"), QStringLiteral("5"), QStringLiteral("a.dxf")}));

    QCOMPARE(plain.command().jobs, 0);
    QVERIFY(limited.command().jobs > 0);
}

void tst_PrepareCheckProgram::totalsAreThoseOfTheJsonLines()
{
    const ProgramFixture program;
    program.writeComplete();
    program.writeLossy();
    const QStringList names{QStringLiteral("good.dxf"), QStringLiteral("lossy.dxf")};
    const Run json = run(QStringList{QStringLiteral("check"), QStringLiteral("--json")} + names, program.folder());
    program.files.writeBytes(QStringLiteral("a.jsonl"), json.output.toUtf8());

    const Run text = run(QStringList{QStringLiteral("check")} + names, program.folder());
    const Run report = run({QStringLiteral("report"), QStringLiteral("a.jsonl")}, program.folder());

    QVERIFY2(text.output.endsWith(report.output), qPrintable(report.output));
    QCOMPARE(report.status, 1);
    const QStringList lines = linesOf(report.output);
    QCOMPARE(lines.value(2).simplified(), QStringLiteral("да 1 1 0 0 good.dxf"));
    QCOMPARE(lines.value(3).simplified(), QStringLiteral("да 2 3 0 2 lossy.dxf"));
    QCOMPARE(lines.value(5).simplified(), QStringLiteral("1 1 bulges"));
    QCOMPARE(lines.last(), QStringLiteral("Файлов: 2, принято 2, дают объекты 2, загрузятся полностью 1."));
}

void tst_PrepareCheckProgram::badJsonLinesAreReported()
{
    const ProgramFixture program;
    const QByteArray good = toJson(checkFile(program.writeComplete(), {}, false)) + '\n';
    program.files.writeBytes(QStringLiteral("a.jsonl"), "\n{\"file\":1}\n" + good + '{');

    const Run result = run({QStringLiteral("report"), QStringLiteral("a.jsonl")}, program.folder());

    QCOMPARE(result.errors, QStringLiteral("importprepare: \"a.jsonl\": line 2 is not a report.\n"
                                           "importprepare: \"a.jsonl\": line 4 is not a report.\n"));
    QCOMPARE(linesOf(result.output).last(), oneCompleteFile);
    QCOMPARE(result.status, 3);
}

void tst_PrepareCheckProgram::onlyThreeBadLinesAreNamed()
{
    const ProgramFixture program;
    program.files.writeBytes(QStringLiteral("plan.dxf"), "0\nSECTION\n2\nHEADER\n0\n");

    const Run result = run({QStringLiteral("report"), QStringLiteral("plan.dxf")}, program.folder());

    QCOMPARE(result.errors, QStringLiteral("importprepare: \"plan.dxf\": line 1 is not a report.\n"
                                           "importprepare: \"plan.dxf\": line 2 is not a report.\n"
                                           "importprepare: \"plan.dxf\": line 3 is not a report.\n"
                                           "importprepare: \"plan.dxf\": and 2 more lines are not reports.\n"));
    QCOMPARE(result.status, 3);
}

void tst_PrepareCheckProgram::missingJsonFileIsReported()
{
    const ProgramFixture program;
    program.files.writeBytes(QStringLiteral("a.jsonl"), toJson(checkFile(program.writeComplete(), {}, false)));

    const Run result =
        run({QStringLiteral("report"), QStringLiteral("none.jsonl"), QStringLiteral("a.jsonl")}, program.folder());

    QCOMPARE(result.errors, QStringLiteral("importprepare: Cannot read \"none.jsonl\".\n"));
    QCOMPARE(linesOf(result.output).last(), oneCompleteFile);
    QCOMPARE(result.status, 3);
}

void tst_PrepareCheckProgram::pageShowsTheLosses()
{
    const ProgramFixture program;
    program.writeLossy();
    program.writeComplete(QStringLiteral("<good>.dxf"));

    const Run result = run({QStringLiteral("check"), QStringLiteral("--html"), QStringLiteral("page.html"),
                            QStringLiteral("lossy.dxf"), QStringLiteral("<good>.dxf")},
                           program.folder());

    QFile file(program.path(QStringLiteral("page.html")));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString page = QString::fromUtf8(file.readAll());
    QCOMPARE(result.status, 1);
    QCOMPARE(page.count(QStringLiteral("<svg ")), 2);
    QVERIFY(page.contains(QStringLiteral("stroke=\"#d81e05\"")));
    QVERIFY(page.contains(QStringLiteral("stroke=\"#1b2a41\"")));
    QVERIFY(page.contains(QStringLiteral("Дуги полилиний станут хордами")));
    QVERIFY(page.contains(QStringLiteral("<h2>&lt;good&gt;.dxf</h2>")));
}

QTEST_GUILESS_MAIN(tst_PrepareCheckProgram)
#include "tst_prepare_check_program.moc"
