#include "hosttesting.h"

#include <QDir>
#include <QImage>
#include <QLibraryInfo>
#include <QTest>

/// Runs the stand-in host as a process. It loads the built plug-in and operates its dialog.
class tst_ImportHost : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void helpListsEveryOption();
    void versionIsPrinted();
    void operationsOfAnotherPluginAreListed();
    void wrongUsageIsReported_data();
    void wrongUsageIsReported();
    void failureIsReported_data();
    void failureIsReported();

    void sortedResultIsSaved();
    void messagesArePrinted_data();
    void messagesArePrinted();

    void optionsReachTheImport_data();
    void optionsReachTheImport();
    void optionsReachTheResult_data();
    void optionsReachTheResult();
    void examplesAreImported_data();
    void examplesAreImported();

    void userSettingsAreNeitherReadNorWritten();
    void importNeedsNoDisplay();
    void windowNeedsADisplay();
    void windowStaysOpen();
};

void tst_ImportHost::initTestCase()
{
    useUtf8();
}

void tst_ImportHost::helpListsEveryOption()
{
    const QStringList options = arguments("-h, --help --version --plugin --list --operation --form-name --object-table "
                                          "--point-table --columns --objects --points --encoding --no-search-points "
                                          "--no-search-objects --point-prefix --object-prefix --point-start "
                                          "--object-start --field --sort --update --output --screenshot");

    const HostRun run = Host().run(arguments("--help --field no"));

    QCOMPARE(run.status, 0);
    QCOMPARE(run.messages, QStringList());
    for (const QString &option : options)
        QVERIFY2(run.output.contains(QLatin1Char(' ') + option), qUtf8Printable(option));
    QVERIFY(run.output.contains(QStringLiteral("Default: 0,1,2,0\n")));
}

void tst_ImportHost::versionIsPrinted()
{
    const HostRun run = Host().run(arguments("--version"));

    QCOMPARE(run.status, 0);
    QVERIFY2(QRegularExpression(QStringLiteral("^importhost \\d+\\.\\d+\\.\\d+\n$")).match(run.output).hasMatch(),
             qUtf8Printable(run.output));
}

// A path without a folder is a file in the working directory.
void tst_ImportHost::operationsOfAnotherPluginAreListed()
{
    const Host host;
    const QDir built(QFileInfo(QStringLiteral(IMPORTHOST_PATH)).dir().filePath(QStringLiteral("../plugin")));
    const QStringList names = built.entryList({QStringLiteral("*importplugin*")}, QDir::Files);
    QCOMPARE(names.size(), 1);
    QVERIFY(QFile::copy(built.filePath(names.first()), host.files.path(names.first())));

    const HostRun run = host.run({QStringLiteral("--list"), QStringLiteral("--plugin"), names.first()});

    QCOMPARE(run.status, 0);
    QCOMPARE(run.messages, QStringList());
    QCOMPARE(run.output, QStringLiteral("Объекты из MIF\nОбъекты из DXF\n"));
}

void tst_ImportHost::wrongUsageIsReported_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("message");
    const auto row = [](const char *args, const char *message) {
        QTest::newRow(args) << arguments(args) << QString::fromLatin1(message);
    };

    row("--nonsense", "Unknown option 'nonsense'.");
    row("plan.mif", "Unexpected argument \"plan.mif\".");
    row("--objects x", "--objects needs --operation.");
    row("--operation x --objects=", "--objects needs the name of a file.");
    row("--operation x --objects x --output=", "--output needs the name of a file.");
    row("--operation x --objects x --encoding x", "--encoding: unknown encoding \"x\".");
    row("--operation x --sort", "--sort needs --objects.");
    row("--columns 0,1,2,3,4", "--columns takes four numbers from 0 to 999, not \"0,1,2,3,4\".");
    row("--columns 0,1,2,x", "--columns takes four numbers from 0 to 999, not \"0,1,2,x\".");
    row("--columns -1,0,1,2", "--columns takes four numbers from 0 to 999, not \"-1,0,1,2\".");
    row("--columns 0,1,2,1000", "--columns takes four numbers from 0 to 999, not \"0,1,2,1000\".");
    row("--operation x --objects x --field =a",
        "--field takes a column from 1 to 20 and a text, as in 4=text, not \"=a\".");
    row("--operation x --objects x --field 0=a",
        "--field takes a column from 1 to 20 and a text, as in 4=text, not \"0=a\".");
    row("--operation x --objects x --field 21=a",
        "--field takes a column from 1 to 20 and a text, as in 4=text, not \"21=a\".");
    row("--operation x --objects x --field 4=",
        "--field takes a column from 1 to 20 and a text, as in 4=text, not \"4=\".");
    row("--operation x --objects x --field 1=a --field 2=a --field 3=a --field 4=a --field 5=a --field 6=a",
        "--field can be given at most 5 times.");
    row("--operation x --objects x --point-start 0", "--point-start takes a number from 1 to 999999999, not \"0\".");
    row("--operation x --objects x --object-start 1000000000",
        "--object-start takes a number from 1 to 999999999, not \"1000000000\".");
}

void tst_ImportHost::wrongUsageIsReported()
{
    QFETCH(QStringList, args);
    QFETCH(QString, message);

    const HostRun run = Host().run(args);

    QCOMPARE(run.status, 2);
    QCOMPARE(run.output, QString());
    QCOMPARE(run.messages, QStringList{QStringLiteral("importhost: %1 See importhost --help.").arg(message)});
}

void tst_ImportHost::failureIsReported_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("message");

    const QDir platforms(QLibraryInfo::location(QLibraryInfo::PluginsPath) + QStringLiteral("/platforms"));
    const QStringList names = platforms.entryList({QStringLiteral("*offscreen*")}, QDir::Files);
    QVERIFY(!names.isEmpty());
    const QString foreign = platforms.filePath(names.first());
    QTest::newRow("missing plug-in") << arguments("--plugin missing.so")
                                     << QStringLiteral("importhost: Cannot load \"missing.so\": ");
    QTest::newRow("Qt platform plug-in") << QStringList{QStringLiteral("--plugin"), foreign}
                                         << QStringLiteral("importhost: \"%1\" is not an import plug-in.").arg(foreign);
    QTest::newRow("result in a missing folder")
        << arguments("--output missing/result.xml")
        << QStringLiteral("importhost: Cannot save the result \"missing/result.xml\".");
    QTest::newRow("picture in a missing folder")
        << arguments("--screenshot missing/picture.png")
        << QStringLiteral("importhost: Cannot save the picture \"missing/picture.png\".");
}

void tst_ImportHost::failureIsReported()
{
    QFETCH(QStringList, args);
    QFETCH(QString, message);
    const Host host;
    host.writePlan();

    const HostRun run = host.importMif(QStringLiteral("plan.mif"), args);

    QCOMPARE(run.status, 2);
    QCOMPARE(run.output, QString());
    QCOMPARE(run.messages.size(), 1);
    QVERIFY2(run.messages.first().startsWith(message), qUtf8Printable(run.messages.first()));
}

void tst_ImportHost::sortedResultIsSaved()
{
    const Host host;
    host.writePlan();
    host.files.write(QStringLiteral("result.xml"), {QString(100000, QLatin1Char('x'))});

    const HostRun run = host.importMif(QStringLiteral("plan.mif"), arguments("--sort --output result.xml"));

    QCOMPARE(run.status, 0);
    QCOMPARE(run.messages, QStringList());
    QCOMPARE(run.output, QString());
    QFile file(host.files.path(QStringLiteral("result.xml")));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(compact(QString::fromUtf8(file.readAll())),
             document(planLine(QStringLiteral("ЗУ2"), QStringLiteral("н2 н3")) +
                      planRegion(QStringLiteral("ЗУ10"), QStringLiteral("т1 н1 н2 т1"))));
}

void tst_ImportHost::messagesArePrinted_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("output");
    QTest::addColumn<QStringList>("messages");

    const QString notOpened = QStringLiteral("Ошибка открытия файла missing.mif");
    QTest::newRow("missing file") << fromMif << QStringLiteral("missing.mif") << 1 << QString()
                                  << QStringList{notOpened, notOpened};
    QTest::newRow("no objects") << fromMif << QStringLiteral("empty.mif") << 1 << QString() << QStringList();
    QTest::newRow("unknown operation")
        << QStringLiteral("Объекты") << QStringLiteral("line.mif") << 1 << QString()
        << QStringList{QStringLiteral("Ошибка. Операция импорта \"Объекты\" планином не поддерживается.")}; // sic
    QTest::newRow("failure after the first object") << fromMif << QStringLiteral("line.mif") << 0 << documentOfLine
                                                    << QStringList{QStringLiteral("Ошибка чтения линии из строки: 6")};
}

void tst_ImportHost::messagesArePrinted()
{
    QFETCH(QString, operation);
    QFETCH(QString, fileName);
    const Host host;
    host.writeMif(QStringLiteral("empty"), QString(), QString());
    host.writeMif(QStringLiteral("line"), QStringLiteral("LINE 1000 2000 1010.5 2000\nLINE 1 2 x 4"),
                  QStringLiteral("ЗУ1\nЗУ2"));

    const HostRun run = host.run(
        {QStringLiteral("--operation"), operation, QStringLiteral("--objects"), fileName, QStringLiteral("--sort")});

    QTEST(run.status, "status");
    QTEST(run.messages, "messages");
    QTEST(compact(run.output), "output");
}

void tst_ImportHost::optionsReachTheImport_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("objects");
    const auto row = [](const char *name, const char *args, const char *region, const char *line) {
        const auto objectOf = [](auto build, const char *text) {
            const QString words = QString::fromUtf8(text);
            return build(words.section(QLatin1Char(' '), 0, 0), words.section(QLatin1Char(' '), 1));
        };
        QTest::newRow(name) << arguments(args) << objectOf(planRegion, region) + objectOf(planLine, line);
    };

    row("numbering of points", "--no-search-points --point-prefix тчк --point-start 99",
        "ЗУ10 тчк99 тчк100 тчк101 тчк99", "ЗУ2 тчк101 тчк102");
    row("numbering of objects", "--no-search-objects --object-prefix К --object-start 999999998",
        "К999999998 т1 н1 н2 т1", "К999999999 н2 н3");
    row("point file", "--points points.mif", "ЗУ10 н1 п5 н2 н1", "ЗУ2 н2 н3");
}

void tst_ImportHost::optionsReachTheImport()
{
    QFETCH(QStringList, args);
    QFETCH(QString, objects);
    const Host host;
    host.writePlan();
    host.writeMif(QStringLiteral("points"), QStringLiteral("POINT 1010.5 2000"), QStringLiteral("п5"));

    const HostRun run = host.importMif(QStringLiteral("plan.mif"), args);

    QCOMPARE(run.messages, QStringList());
    QCOMPARE(compact(run.output), document(objects));
    QCOMPARE(run.status, 0);
}

void tst_ImportHost::optionsReachTheResult_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("xml");
    const QString def = QStringLiteral("ЗУ1");
    const QString first = QStringLiteral("н1,1000.00,2000.00");
    const QString last = QStringLiteral("н2,1010.50,2000.00");
    const QString fields = QStringLiteral(",а,б=2,в,,г,,,,,,,,,,,,д");

    QTest::newRow("five fields") << arguments("--field 20=д --field 4=а --field 5=б=2 --field 6=в --field 8=г")
                                 << document(object(def, {first + fields, last + fields}));
    QTest::newRow("columns") << arguments("--columns 3,1,0,2")
                             << document(object(QStringLiteral(",,ЗУ1"), {QStringLiteral("2000.00,1000.00,,н1"),
                                                                          QStringLiteral("2000.00,1010.50,,н2")}));
    QTest::newRow("update and tables") << arguments("--update --object-table А --point-table Б --form-name В")
                                       << document(object(def, {first, last}, QStringLiteral("Б")),
                                                   QStringLiteral(" Name=\"А\" Update=\"1\""));
}

void tst_ImportHost::optionsReachTheResult()
{
    QFETCH(QStringList, args);
    const Host host;
    host.writeLine();

    const HostRun run = host.importMif(QStringLiteral("line.mif"), args);

    QCOMPARE(run.messages, QStringList());
    QTEST(compact(run.output), "xml");
}

void tst_ImportHost::examplesAreImported_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QStringList>("files");

    const QStringList mif = arguments("--objects plan.mif");
    const QStringList dxf = arguments("--objects plan.dxf --points points.dxf");
    QTest::newRow("mif") << QStringLiteral("mif") << mif;
    QTest::newRow("dxf") << QStringLiteral("dxf") << dxf;
    QTest::newRow("full name of mif") << QStringLiteral("Объекты из MIF") << mif;
    QTest::newRow("full name of dxf") << QStringLiteral("Объекты из DXF") << dxf;
}

void tst_ImportHost::examplesAreImported()
{
    QFETCH(QString, operation);
    QFETCH(QStringList, files);
    Host host;
    host.folder = QFINDTESTDATA("../examples");
    QVERIFY(!host.folder.isEmpty());

    const HostRun run =
        host.run(QStringList{QStringLiteral("--operation"), operation} + files + arguments("--encoding Windows-1251"));

    QCOMPARE(run.messages, QStringList());
    QVERIFY(run.output.contains(QStringLiteral(">:ЗУ2<")));
    QCOMPARE(run.status, 0);
}

void tst_ImportHost::userSettingsAreNeitherReadNorWritten()
{
    const Host host;
    host.writePlan();
    const QByteArray stored = "[ImportObjects]\npointPref=z\nupdate=true\nFieldNumValueMap\\3=z\n";
    QVERIFY(QDir(host.settings.path()).mkdir(QStringLiteral("importhost")));
    QFile file(host.settings.filePath(QStringLiteral("importhost/importhost.conf")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(stored), stored.size());
    file.close();

    const HostRun run = host.importMif(QStringLiteral("plan.mif"));

    QCOMPARE(compact(run.output), documentOfPlan);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), stored);
}

void tst_ImportHost::importNeedsNoDisplay()
{
    Host host;
    host.removeDisplay();
    host.environment.remove(QStringLiteral("XDG_RUNTIME_DIR")); // Qt warns when it is missing
    host.writePlan();

    const HostRun run = host.importMif(QStringLiteral("plan.mif"), arguments("--screenshot picture.png"));

    QCOMPARE(run.messages, QStringList());
    QCOMPARE(compact(run.output), documentOfPlan);
    const QImage picture(host.files.path(QStringLiteral("picture.png")));
    QVERIFY(picture.width() >= 1000);
    QVERIFY(picture.height() >= 650);
}

void tst_ImportHost::windowNeedsADisplay()
{
    Host host;
    host.removeDisplay();

    const HostRun run = host.run({});

    QCOMPARE(run.status, 2);
    QCOMPARE(run.messages, QStringList{QStringLiteral(
                               "importhost: No display for the window. Use --objects to import without one.")});
}

void tst_ImportHost::windowStaysOpen()
{
    const Host host;
    QProcess process;

    host.start(process, {QStringLiteral("--operation"), fromMif});

    QVERIFY(process.waitForStarted());
    QVERIFY(!process.waitForFinished(1500));
    process.kill();
    QVERIFY(process.waitForFinished());
    QVERIFY(!process.readAllStandardError().contains("importhost:"));
}

QTEST_GUILESS_MAIN(tst_ImportHost)
#include "tst_importhost.moc"
