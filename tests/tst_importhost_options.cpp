#include "hosttesting.h"

#include <QDir>
#include <QImage>
#include <QTest>

/// What the options and the surroundings of the program do to an import.
class tst_ImportHost_Options : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void optionsReachTheImport_data();
    void optionsReachTheImport();
    void objectsAreSorted();
    void optionsReachTheResult_data();
    void optionsReachTheResult();
    void encodingReachesTheImport_data();
    void encodingReachesTheImport();
    void drawingIsImported();
    void examplesAreImported_data();
    void examplesAreImported();

    void nothingIsRemembered();
    void settingsOfThePersonAreLeftAlone();
    void pictureIsSaved_data();
    void pictureIsSaved();
    void importNeedsNoDisplay();
    void windowNeedsADisplay();
    void windowStaysOpen_data();
    void windowStaysOpen();
};

void tst_ImportHost_Options::initTestCase()
{
    useUtf8();
}

void tst_ImportHost_Options::optionsReachTheImport_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("objects");
    const auto row = [](const char *name, const char *args, const char *region, const char *line,
                        const char *regionDef = "ЗУ10", const char *lineDef = "ЗУ2") {
        QTest::newRow(name) << arguments(args)
                            << planRegion(QString::fromUtf8(regionDef), QString::fromUtf8(region)) +
                                   planLine(QString::fromUtf8(lineDef), QString::fromUtf8(line));
    };

    row("points are not looked up", "--no-search-points", "н1 н2 н3 н1", "н3 н4");
    row("objects are not looked up", "--no-search-objects", "т1 н1 н2 т1", "н2 н3", ":ЗУ1", ":ЗУ2");
    row("nothing is looked up", "--no-search-points --no-search-objects", "н1 н2 н3 н1", "н3 н4", ":ЗУ1", ":ЗУ2");
    row("prefix of points", "--point-prefix тчк", "т1 тчк1 тчк2 т1", "тчк2 тчк3");
    row("no prefix of points", "--point-prefix=", "т1 1 2 т1", "2 3");
    row("prefix of objects", "--no-search-objects --object-prefix К", "т1 н1 н2 т1", "н2 н3", "К1", "К2");
    row("prefix of objects that have designations", "--object-prefix К", "т1 н1 н2 т1", "н2 н3");
    row("first number of points", "--point-start 99", "т1 н99 н100 т1", "н100 н101");
    row("first number of objects", "--no-search-objects --object-start 999999998", "т1 н1 н2 т1", "н2 н3",
        ":ЗУ999999998", ":ЗУ999999999");
    row("file of points", "--points points.mif", "н1 п5 н2 н1", "н2 н3");
    row("file of points that is not looked into", "--points points.mif --no-search-points", "н1 н2 н3 н1", "н3 н4");
}

void tst_ImportHost_Options::optionsReachTheImport()
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

void tst_ImportHost_Options::objectsAreSorted()
{
    const Host host;
    host.writePlan();

    const HostRun run = host.importMif(QStringLiteral("plan.mif"), arguments("--sort"));

    QCOMPARE(compact(run.output), document(planLine(QStringLiteral("ЗУ2"), QStringLiteral("н2 н3")) +
                                           planRegion(QStringLiteral("ЗУ10"), QStringLiteral("т1 н1 н2 т1"))));
    QCOMPARE(run.messages, QStringList());
    QCOMPARE(run.status, 0);
}

void tst_ImportHost_Options::optionsReachTheResult_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("xml");
    const QString def = QStringLiteral("ЗУ1");
    const QStringList vertices{QStringLiteral("н1,1000.00,2000.00"), QStringLiteral("н2,1010.50,2000.00")};
    const auto fieldRow = [&](const char *name, const char *args, const char *texts) {
        const QString more = QString::fromUtf8(texts);
        QTest::newRow(name) << arguments(args)
                            << document(object(def, {vertices.first() + more, vertices.last() + more}));
    };

    fieldRow("field", "--field 4=да", ",да");
    fieldRow("five fields", "--field 4=а --field 5=б --field 6=в --field 8=г --field 20=д", ",а,б,в,,г,,,,,,,,,,,,д");
    fieldRow("fields in falling order", "--field 6=б --field 4=а", ",а,,б");
    fieldRow("two fields of one column", "--field 4=а --field 4=б", ",б");
    fieldRow("text with a sign of equality", "--field 4=а=б", ",а=б");
    fieldRow("field of the column of X", "--field 2=да", "");
    QTest::newRow("other columns") << arguments("--columns 3,1,0,2")
                                   << document(
                                          object(QStringLiteral(",,ЗУ1"), {QStringLiteral("2000.00,1000.00,,н1"),
                                                                           QStringLiteral("2000.00,1010.50,,н2")}));
    QTest::newRow("update") << arguments("--update")
                            << document(object(def, vertices), QStringLiteral(" Name=\"Участки\" Update=\"1\""));
    QTest::newRow("names of the tables") << arguments("--object-table А --point-table Б --form-name В")
                                         << document(object(def, vertices, QStringLiteral("Б")),
                                                     QStringLiteral(" Name=\"А\""));
    QTest::newRow("tables without names")
        << arguments("--object-table= --point-table=") << document(object(def, vertices, QString()), QString());
}

void tst_ImportHost_Options::optionsReachTheResult()
{
    QFETCH(QStringList, args);
    QFETCH(QString, xml);
    const Host host;
    host.writeLine();

    const HostRun run = host.importMif(QStringLiteral("line.mif"), args);

    QCOMPARE(run.messages, QStringList());
    QCOMPARE(compact(run.output), xml);
    QCOMPARE(run.status, 0);
}

void tst_ImportHost_Options::encodingReachesTheImport_data()
{
    QTest::addColumn<QByteArray>("codec");
    QTest::addColumn<QStringList>("args");

    const QByteArray utf8 = "UTF-8";
    QTest::newRow("that of the locale") << utf8 << QStringList();
    QTest::newRow("that of the locale by its name in the list") << utf8 << arguments("--encoding Default");
    for (const QByteArray &codec : {utf8, QByteArray("Windows-1251"), QByteArray("IBM866")})
        QTest::newRow(codec) << codec << arguments("--encoding " + codec);
    QTest::newRow("one that is not in the list") << QByteArray("KOI8-R") << arguments("--encoding KOI8-R");
    QTest::newRow("unknown one, instead of which that of the locale serves")
        << utf8 << arguments("--encoding nonsense");
}

void tst_ImportHost_Options::encodingReachesTheImport()
{
    QFETCH(QByteArray, codec);
    QFETCH(QStringList, args);
    const Host host;
    host.writeMif(QStringLiteral("line"), QStringLiteral("LINE 1000 2000 1010.5 2000"), QStringLiteral("Ёж"), codec);

    const HostRun run = host.importMif(QStringLiteral("line.mif"), args);

    QCOMPARE(run.messages, QStringList());
    QVERIFY2(run.output.contains(QStringLiteral("<Cell>Ёж</Cell>")), qUtf8Printable(run.output));
}

void tst_ImportHost_Options::drawingIsImported()
{
    const Host host;
    host.files.write(QStringLiteral("line.dxf"), arguments("0 SECTION 2 HEADER 0 ENDSEC 0 SECTION 2 ENTITIES "
                                                           "0 LINE 10 1000 20 2000 11 1010.5 21 2000 0 ENDSEC 0 EOF"));

    const HostRun run =
        host.run({QStringLiteral("--operation"), QStringLiteral("Объекты из DXF"), QStringLiteral("--objects"),
                  QStringLiteral("line.dxf"), QStringLiteral("--object-prefix"), QStringLiteral("ЗУ")});

    QCOMPARE(run.messages, QStringList());
    QCOMPARE(compact(run.output), documentOfLine);
    QCOMPARE(run.status, 0);
}

void tst_ImportHost_Options::examplesAreImported_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QStringList>("files");

    const QString dxf = QStringLiteral("Объекты из DXF");
    QTest::newRow("MIF") << strMif << arguments("--objects plan.mif");
    QTest::newRow("DXF") << dxf << arguments("--objects plan.dxf");
    QTest::newRow("DXF with its points apart") << dxf << arguments("--objects plan.dxf --points points.dxf");
}

void tst_ImportHost_Options::examplesAreImported()
{
    QFETCH(QString, operation);
    QFETCH(QStringList, files);
    Host host;
    host.folder = QFINDTESTDATA("../examples");
    QVERIFY(!host.folder.isEmpty());

    const HostRun run =
        host.run(QStringList{QStringLiteral("--operation"), operation} + files + arguments("--encoding Windows-1251"));

    QCOMPARE(run.status, 0);
    QCOMPARE(run.messages, QStringList());
    QVERIFY(run.output.contains(QStringLiteral(">:ЗУ2<")));
}

void tst_ImportHost_Options::nothingIsRemembered()
{
    const Host host;
    host.writePlan();
    const HostRun first = host.importMif(QStringLiteral("plan.mif"),
                                         arguments("--no-search-points --no-search-objects --point-prefix п "
                                                   "--object-prefix о --point-start 5 --object-start 6 --field 4=а "
                                                   "--field 5=б --update --points plan.mif --encoding UTF-8"));
    QCOMPARE(first.status, 0);

    const HostRun run = host.importMif(QStringLiteral("plan.mif"));

    QCOMPARE(compact(run.output), documentOfPlan);
    QCOMPARE(QDir(host.settings.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList());
}

void tst_ImportHost_Options::settingsOfThePersonAreLeftAlone()
{
    const Host host;
    host.writePlan();
    const QByteArray remembered = "[ImportObjects]\npointPref=z\nupdate=true\nFieldNumValueMap\\3=z\n";
    QVERIFY(QDir(host.settings.path()).mkdir(QStringLiteral("importhost")));
    QFile file(host.settings.filePath(QStringLiteral("importhost/importhost.conf")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(remembered), remembered.size());
    file.close();

    const HostRun run = host.importMif(QStringLiteral("plan.mif"));

    QCOMPARE(compact(run.output), documentOfPlan);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), remembered);
}

void tst_ImportHost_Options::pictureIsSaved_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<int>("status");

    QTest::newRow("with objects") << QStringLiteral("plan.mif") << 0;
    QTest::newRow("without objects") << QStringLiteral("missing.mif") << 1;
}

void tst_ImportHost_Options::pictureIsSaved()
{
    QFETCH(QString, fileName);
    QFETCH(int, status);
    const Host host;
    host.writePlan();

    const HostRun run = host.importMif(fileName, arguments("--screenshot picture.png"));

    QCOMPARE(run.status, status);
    const QImage picture(host.files.path(QStringLiteral("picture.png")));
    QVERIFY(picture.width() >= 1000);
    QVERIFY(picture.height() >= 650);
}

void tst_ImportHost_Options::importNeedsNoDisplay()
{
    Host host;
    host.removeDisplay();
    host.writePlan();

    const HostRun run = host.importMif(QStringLiteral("plan.mif"));

    QCOMPARE(run.messages, QStringList());
    QCOMPARE(compact(run.output), documentOfPlan);
    QCOMPARE(run.status, 0);
}

void tst_ImportHost_Options::windowNeedsADisplay()
{
    Host host;
    host.removeDisplay();

    const HostRun run = host.run({});

    QCOMPARE(run.status, 2);
    QCOMPARE(run.messages, QStringList{QStringLiteral("importhost: There is no display for the "
                                                      "window; --objects does without.")});
}

void tst_ImportHost_Options::windowStaysOpen_data()
{
    QTest::addColumn<QStringList>("args");

    QTest::newRow("for the choice of an operation") << QStringList();
    QTest::newRow("with the dialog of an operation") << QStringList{QStringLiteral("--operation"), strMif};
    QTest::newRow("after an operation that is not on offer") << arguments("--operation nonsense --columns 0,2,1,3");
}

void tst_ImportHost_Options::windowStaysOpen()
{
    QFETCH(QStringList, args);
    const Host host;
    QProcess process;

    host.start(process, args);

    QVERIFY(process.waitForStarted());
    QVERIFY(!process.waitForFinished(1500));
    process.kill();
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.readAllStandardOutput(), QByteArray());
    QCOMPARE(process.readAllStandardError(), QByteArray());
}

QTEST_GUILESS_MAIN(tst_ImportHost_Options)
#include "tst_importhost_options.moc"
