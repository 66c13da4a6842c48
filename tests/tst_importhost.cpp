// Runs the built stand-in host as a process; it uses the dialog of the built
// plug-in by itself.

#include "hosttesting.h"

#include <QDir>
#include <QLibraryInfo>
#include <QTest>

/// The calls of the program: help, usage, plug-in, result and messages.
class tst_ImportHost : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void helpIsPrinted_data();
    void helpIsPrinted();
    void operationsAreListed();
    void wrongUsageIsTold_data();
    void wrongUsageIsTold();
    void unusablePluginIsTold_data();
    void unusablePluginIsTold();
    void otherPluginIsUsed();

    void resultIsPrinted();
    void resultIsSaved();
    void unwritableFileIsTold_data();
    void unwritableFileIsTold();
    void unprintableResultIsTold();
    void nothingImportedIsTold_data();
    void nothingImportedIsTold();
    void unknownOperationIsToldByThePlugin();
    void partIsKeptAfterAFailure();
};

void tst_ImportHost::initTestCase()
{
    useUtf8();
}

void tst_ImportHost::helpIsPrinted_data()
{
    QTest::addColumn<QStringList>("args");

    QTest::newRow("long") << arguments("--help");
    QTest::newRow("short") << arguments("-h");
    QTest::newRow("with other options, right or not") << arguments("--help --field no");
}

void tst_ImportHost::helpIsPrinted()
{
    QFETCH(QStringList, args);

    const HostRun run = Host().run(args);

    QCOMPARE(run.status, 0);
    QCOMPARE(run.messages, QStringList());
    QVERIFY(run.output.startsWith(QLatin1String("Usage: ")));
    const QStringList options = arguments("--help --plugin --list --operation --form-name --object-table "
                                          "--point-table --columns --objects --points "
                                          "--encoding --no-search-points --no-search-objects "
                                          "--point-prefix --object-prefix --point-start --object-start "
                                          "--field --sort --update --output --screenshot");
    for (const QString &option : options)
        QVERIFY2(run.output.contains(QLatin1Char(' ') + option), qUtf8Printable(option));
}

void tst_ImportHost::operationsAreListed()
{
    const HostRun run = Host().run(arguments("--list"));

    QCOMPARE(run.status, 0);
    QCOMPARE(run.output, QStringLiteral("Объекты из MIF\nОбъекты из DXF\n"));
    QCOMPARE(run.messages, QStringList());
}

void tst_ImportHost::wrongUsageIsTold_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("message");

    const QStringList import = arguments("--operation x --objects x.mif");
    QTest::newRow("unknown option") << arguments("--nonsense") << QStringLiteral("Unknown option 'nonsense'.");
    QTest::newRow("option without its value")
        << arguments("--objects") << QStringLiteral("Missing value after '--objects'.");
    QTest::newRow("argument without an option")
        << import + arguments("plan.mif") << QStringLiteral("Unexpected argument \"plan.mif\".");
    QTest::newRow("objects without an operation")
        << arguments("--objects x.mif") << QStringLiteral("--objects needs --operation.");
    QTest::newRow("objects with an empty name")
        << arguments("--operation x --objects=") << QStringLiteral("--objects needs the name of a file.");
    QTest::newRow("choice of the dialog without objects")
        << arguments("--operation x --sort") << QStringLiteral("--sort needs --objects.");
    QTest::newRow("output without objects")
        << arguments("--output x.xml") << QStringLiteral("--output needs --objects.");

    const QString field = QStringLiteral("--field takes a column from 1 to 20 "
                                         "and a text, as in 4=text, not \"%1\".");
    const QStringList fields{QStringLiteral("4"),   QStringLiteral("=a"), QStringLiteral("0=a"), QStringLiteral("21=a"),
                             QStringLiteral("x=a"), QStringLiteral("4="), QStringLiteral("-1=a")};
    for (const QString &value : fields)
        QTest::newRow(qUtf8Printable(QStringLiteral("field ") + value))
            << import + QStringList{QStringLiteral("--field"), value} << field.arg(value);
    QTest::newRow("second of two fields")
        << import + arguments("--field 4=a --field b") << field.arg(QStringLiteral("b"));
    QTest::newRow("six fields") << import + arguments("--field 1=a --field 2=a --field 3=a --field 4=a --field 5=a "
                                                      "--field 6=a")
                                << QStringLiteral("--field may be given 5 times at most.");

    const QString columns = QStringLiteral("--columns takes four numbers from 0 to 999, not \"%1\".");
    const QStringList wrongColumns = arguments("0,1,2 0,1,2,3,4 0,1,2,x 0,1,,2 -1,0,1,2 0,1,2,1000 0;1;2;3");
    for (const QString &value : wrongColumns)
        QTest::newRow(qUtf8Printable(QStringLiteral("columns ") + value))
            << import + QStringList{QStringLiteral("--columns"), value} << columns.arg(value);
    QTest::newRow("columns for the window") << arguments("--columns 1,2") << columns.arg(QStringLiteral("1,2"));

    const QString start = QStringLiteral("--%1 takes a number from 1 to 999999999, not \"%2\".");
    QTest::newRow("start of the points at zero")
        << import + arguments("--point-start 0") << start.arg(QStringLiteral("point-start"), QStringLiteral("0"));
    QTest::newRow("start of the objects beyond the last number")
        << import + arguments("--object-start 1000000000")
        << start.arg(QStringLiteral("object-start"), QStringLiteral("1000000000"));
    QTest::newRow("start that is no number")
        << import + arguments("--object-start 1x") << start.arg(QStringLiteral("object-start"), QStringLiteral("1x"));
}

void tst_ImportHost::wrongUsageIsTold()
{
    QFETCH(QStringList, args);
    QFETCH(QString, message);

    const HostRun run = Host().run(args);

    QCOMPARE(run.status, 2);
    QCOMPARE(run.output, QString());
    QCOMPARE(run.messages, QStringList{QStringLiteral("importhost: %1 See importhost --help.").arg(message)});
}

void tst_ImportHost::unusablePluginIsTold_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("message");

    const QDir platforms(QLibraryInfo::location(QLibraryInfo::PluginsPath) + QStringLiteral("/platforms"));
    const QStringList names = platforms.entryList({QStringLiteral("*offscreen*")}, QDir::Files);
    QVERIFY(!names.isEmpty());
    const QString foreign = platforms.filePath(names.first());
    const QString unreadable = QStringLiteral("importhost: Cannot load \"%1\": ");
    QTest::newRow("no such file") << QStringLiteral("missing.so") << unreadable.arg(QStringLiteral("missing.so"));
    QTest::newRow("text") << QStringLiteral("text.so") << unreadable.arg(QStringLiteral("text.so"));
    QTest::newRow("plug-in of Qt") << foreign
                                   << QStringLiteral("importhost: \"%1\" is no import plug-in.").arg(foreign);
}

void tst_ImportHost::unusablePluginIsTold()
{
    QFETCH(QString, path);
    QFETCH(QString, message);
    const Host host;
    host.writePlan();
    host.files.write(QStringLiteral("text.so"), {QStringLiteral("no library")});

    const HostRun run = host.importMif(QStringLiteral("plan.mif"), {QStringLiteral("--plugin"), path});

    QCOMPARE(run.status, 2);
    QCOMPARE(run.output, QString());
    QCOMPARE(run.messages.size(), 1);
    QVERIFY2(run.messages.first().startsWith(message), qUtf8Printable(run.messages.first()));
}

void tst_ImportHost::otherPluginIsUsed()
{
    const Host host;
    const QDir built(QFileInfo(QStringLiteral(IMPORTHOST_PATH)).dir().filePath(QStringLiteral("../../plugin")));
    const QStringList names = built.entryList({QStringLiteral("*importplugin*")}, QDir::Files);
    QCOMPARE(names.size(), 1);
    QVERIFY(QFile::copy(built.filePath(names.first()), host.files.path(names.first())));

    const HostRun run = host.run({QStringLiteral("--list"), QStringLiteral("--plugin"), names.first()});

    QCOMPARE(run.messages, QStringList());
    QCOMPARE(run.output, QStringLiteral("Объекты из MIF\nОбъекты из DXF\n"));
}

void tst_ImportHost::resultIsPrinted()
{
    const Host host;
    host.writePlan();

    const HostRun run = host.importMif(QStringLiteral("plan.mif"));

    QCOMPARE(run.status, 0);
    QCOMPARE(run.messages, QStringList());
    QCOMPARE(compact(run.output), documentOfPlan);
}

void tst_ImportHost::resultIsSaved()
{
    const Host host;
    host.writePlan();
    const HostRun printed = host.importMif(QStringLiteral("plan.mif"));
    host.files.write(QStringLiteral("result.xml"), {QString(100000, QLatin1Char('x'))});

    const HostRun run = host.importMif(QStringLiteral("plan.mif"), arguments("--output result.xml"));

    QCOMPARE(run.status, 0);
    QCOMPARE(run.messages, QStringList());
    QCOMPARE(run.output, QString());
    QFile file(host.files.path(QStringLiteral("result.xml")));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(QString::fromUtf8(file.readAll()) + QLatin1Char('\n'), printed.output);
}

void tst_ImportHost::unwritableFileIsTold_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("message");

    QTest::newRow("result") << arguments("--output missing/result.xml")
                            << QStringLiteral("importhost: Cannot save the result \"missing/result.xml\".");
    QTest::newRow("picture") << arguments("--screenshot missing/picture.png")
                             << QStringLiteral("importhost: Cannot save the picture \"missing/picture.png\".");
    QTest::newRow("picture of an unknown kind")
        << arguments("--screenshot picture.nonsense")
        << QStringLiteral("importhost: Cannot save the picture \"picture.nonsense\".");
}

void tst_ImportHost::unwritableFileIsTold()
{
    QFETCH(QStringList, args);
    QFETCH(QString, message);
    const Host host;
    host.writePlan();

    const HostRun run = host.importMif(QStringLiteral("plan.mif"), args);

    QCOMPARE(run.status, 2);
    QCOMPARE(run.output, QString());
    QCOMPARE(run.messages, QStringList{message});
}

void tst_ImportHost::unprintableResultIsTold()
{
    const Host host;
    host.writePlan();
    QProcess process;
    process.setStandardOutputFile(QStringLiteral("/dev/full"));

    host.start(process,
               {QStringLiteral("--operation"), strMif, QStringLiteral("--objects"), QStringLiteral("plan.mif")});

    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 2);
    QCOMPARE(process.readAllStandardError(), QByteArray("importhost: Cannot print the result.\n"));
}

void tst_ImportHost::nothingImportedIsTold_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QStringList>("messages");

    const QString notOpened = QStringLiteral("Ошибка открытия файла missing.mif");
    QTest::newRow("no such file, neither for points nor for objects")
        << QStringLiteral("missing.mif") << QStringList{notOpened, notOpened};
    QTest::newRow("another format") << QStringLiteral("text.mif")
                                    << QStringList{
                                           QStringLiteral("Ошибка. Файл text.mif не соответствует формату MIF")};
    QTest::newRow("no file of records") << QStringLiteral("alone.mif")
                                        << QStringList{QStringLiteral("Ошибка открытия MID файла alone.mid")};
    QTest::newRow("no objects") << QStringLiteral("empty.mif") << QStringList();
}

void tst_ImportHost::nothingImportedIsTold()
{
    QFETCH(QString, fileName);
    QFETCH(QStringList, messages);
    const Host host;
    host.files.write(QStringLiteral("text.mif"), {QStringLiteral("a text")});
    host.writeMif(QStringLiteral("alone"), QStringLiteral("LINE 0 0 1 1"), QString());
    QVERIFY(QFile::remove(host.files.path(QStringLiteral("alone.mid"))));
    host.writeMif(QStringLiteral("empty"), QString(), QString());

    const HostRun run = host.importMif(fileName, arguments("--output result.xml --sort"));

    QCOMPARE(run.status, 1);
    QCOMPARE(run.output, QString());
    QCOMPARE(run.messages, messages);
    QVERIFY(!QFile::exists(host.files.path(QStringLiteral("result.xml"))));
}

void tst_ImportHost::unknownOperationIsToldByThePlugin()
{
    const Host host;
    host.writePlan();

    const HostRun run = host.run(arguments("--operation Объекты --objects plan.mif"));

    QCOMPARE(run.status, 1);
    QCOMPARE(run.output, QString());
    QCOMPARE(run.messages,
             QStringList{QStringLiteral("Ошибка. Операция импорта \"Объекты\" планином не поддерживается.")});
}

void tst_ImportHost::partIsKeptAfterAFailure()
{
    const Host host;
    host.writeMif(QStringLiteral("line"), QStringLiteral("LINE 1000 2000 1010.5 2000\nLINE 1 2 x 4"),
                  QStringLiteral("ЗУ1\nЗУ2"));

    const HostRun run = host.importMif(QStringLiteral("line.mif"));

    QCOMPARE(run.status, 0);
    QCOMPARE(run.messages, QStringList{QStringLiteral("Ошибка чтения линии из строки: 6")});
    QCOMPARE(compact(run.output), documentOfLine);
}

QTEST_GUILESS_MAIN(tst_ImportHost)
#include "tst_importhost.moc"
