#include "facilities.h"
#include "hosttesting.h"

#include <QDir>
#include <QImage>
#include <QLibraryInfo>
#include <QTest>

/// Runs the stand-in host as a process: its options, the plug-ins that it loads and the display that it needs.
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
    void wrongPluginIsReported_data();
    void wrongPluginIsReported();

    void importNeedsNoDisplay_data();
    void importNeedsNoDisplay();
    void windowNeedsADisplay();
    void windowStaysOpen();
    void missingPluginIsShown();
};

void tst_ImportHost::initTestCase()
{
    useUtf8();
}

void tst_ImportHost::helpListsEveryOption()
{
    const QStringList options =
        arguments("-h, --help --version --plugin --list --operation --form-name --object-table "
                  "--point-table --columns --objects --points --encoding --no-search-points "
                  "--no-search-objects --point-prefix --object-prefix --point-start "
                  "--object-start --field --sort --update --output --catalogue --picture --screenshot");

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
    const QFileInfo plugin(QStringLiteral(PLUGIN_PATH));
    QVERIFY(QFile::copy(plugin.filePath(), host.files.path(plugin.fileName())));

    const HostRun run = host.run({QStringLiteral("--list"), QStringLiteral("--plugin"), plugin.fileName()});

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
    row("--operation x --objects x --catalogue=", "--catalogue needs the name of a file.");
    row("--operation x --objects x --picture a.svg.gif",
        "--picture needs a file that ends in .png, .svg or .pdf, not \"a.svg.gif\".");
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

void tst_ImportHost::wrongPluginIsReported_data()
{
    QTest::addColumn<QString>("plugin");
    QTest::addColumn<QString>("message");

    const auto row = [](const char *name, const QString &plugin, const char *reason) {
        QTest::newRow(name) << plugin
                            << QStringLiteral("importhost: Cannot load \"%1\": %2").arg(plugin, QLatin1String(reason));
    };
    row("missing file", QStringLiteral("missing.so"), "The shared library was not found.");
    row("folder", QDir::tempPath(), "it is a folder.");
    row("program", QStringLiteral(IMPORTHOST_PATH), "");

    const QDir platforms(QLibraryInfo::location(QLibraryInfo::PluginsPath) + QStringLiteral("/platforms"));
    const QStringList names = platforms.entryList({QStringLiteral("*offscreen*")}, QDir::Files);
    QVERIFY(!names.isEmpty());
    const QString foreign = platforms.filePath(names.first());
    QTest::newRow("other interface") << foreign
                                     << QStringLiteral("importhost: \"%1\" is not an import plug-in: it lacks the "
                                                       "interface \"zelmarq.Orvindal.ImportGeometryInterface/1.0\".")
                                            .arg(foreign);
}

void tst_ImportHost::wrongPluginIsReported()
{
    QFETCH(QString, plugin);
    QFETCH(QString, message);

    const HostRun run = Host().run({QStringLiteral("--list"), QStringLiteral("--plugin"), plugin});

    QCOMPARE(run.status, 2);
    QCOMPARE(run.output, QString());
    QCOMPARE(run.messages.size(), 1);
    QVERIFY2(run.messages.first().startsWith(message), qUtf8Printable(run.messages.first()));
}

void tst_ImportHost::importNeedsNoDisplay_data()
{
    QTest::addColumn<QString>("display");

    QTest::newRow("no display") << QString();
    QTest::newRow("display that cannot be reached") << QStringLiteral(":65000");
}

void tst_ImportHost::importNeedsNoDisplay()
{
    QFETCH(QString, display);
    Host host;
    host.removeDisplay();
    host.environment.insert(QStringLiteral("DISPLAY"), display);
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
    REQUIRE_FACILITY(sessionsWithoutDisplay());
    Host host;
    host.removeDisplay();

    const HostRun run = host.run({});

    QCOMPARE(run.status, 2);
    QCOMPARE(run.messages, QStringList{QStringLiteral(
                               "importhost: No display for the window. Use --objects to import without one.")});
}

void tst_ImportHost::windowStaysOpen()
{
    Host host;
    host.environment.remove(QStringLiteral("XDG_RUNTIME_DIR"));
    QProcess process;

    host.start(process, arguments("--operation mif"));

    QVERIFY(process.waitForStarted());
    QVERIFY(!process.waitForFinished(1500));
    process.kill();
    QVERIFY(process.waitForFinished());
    const QByteArray messages = process.readAllStandardError();
    QVERIFY2(!messages.contains("importhost:") && !messages.contains("XDG_RUNTIME_DIR"), messages.constData());
}

// In a box, because a program that was started from a menu has no terminal.
void tst_ImportHost::missingPluginIsShown()
{
    const Host host;
    QProcess process;

    host.start(process, arguments("--plugin missing.so"));

    QVERIFY(process.waitForStarted());
    QVERIFY(!process.waitForFinished(1500));
    process.kill();
    QVERIFY(process.waitForFinished());
    QVERIFY(process.readAllStandardError().contains("importhost: Cannot load \"missing.so\""));
}

QTEST_GUILESS_MAIN(tst_ImportHost)
#include "tst_importhost.moc"
