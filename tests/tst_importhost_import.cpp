#include "facilities.h"
#include "hosttesting.h"

#include <QDir>
#include <QTest>

/// Imports with the stand-in host as a process. It loads the built plug-in and operates its dialog.
class tst_ImportHostImport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void optionsReachTheImport_data();
    void optionsReachTheImport();
    void optionsReachTheResult_data();
    void optionsReachTheResult();
    void examplesAreImported_data();
    void examplesAreImported();
    void messagesArePrinted_data();
    void messagesArePrinted();
    void statusDependsOnObjectsAndMessages_data();
    void statusDependsOnObjectsAndMessages();
    void foreignDialogIsReported();
    void userSettingsAreNeitherReadNorWritten();
    void missingFolderForSettingsIsReported();
};

void tst_ImportHostImport::initTestCase()
{
    useUtf8();
}

void tst_ImportHostImport::optionsReachTheImport_data()
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

void tst_ImportHostImport::optionsReachTheImport()
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

void tst_ImportHostImport::optionsReachTheResult_data()
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

void tst_ImportHostImport::optionsReachTheResult()
{
    QFETCH(QStringList, args);
    const Host host;
    host.writeLine();

    const HostRun run = host.importMif(QStringLiteral("line.mif"), args);

    QCOMPARE(run.messages, QStringList());
    QTEST(compact(run.output), "xml");
}

void tst_ImportHostImport::examplesAreImported_data()
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

void tst_ImportHostImport::examplesAreImported()
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

void tst_ImportHostImport::messagesArePrinted_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("output");
    QTest::addColumn<QStringList>("messages");

    const QString mif = QStringLiteral("mif");
    const QString notOpened = QStringLiteral("Ошибка открытия файла missing.mif");
    QTest::newRow("missing file") << mif << QStringLiteral("missing.mif") << 1 << QString()
                                  << QStringList{notOpened, notOpened};
    QTest::newRow("no objects") << mif << QStringLiteral("empty.mif") << 1 << QString() << QStringList();
    QTest::newRow("unknown operation")
        << QStringLiteral("Объекты") << QStringLiteral("line.mif") << 1 << QString()
        << QStringList{QStringLiteral("Ошибка. Операция импорта \"Объекты\" планином не поддерживается.")}; // sic
    QTest::newRow("failure after the first object") << mif << QStringLiteral("line.mif") << 3 << documentOfLine
                                                    << QStringList{QStringLiteral("Ошибка чтения линии из строки: 6")};
}

void tst_ImportHostImport::messagesArePrinted()
{
    QFETCH(QString, operation);
    QFETCH(QString, fileName);
    const Host host;
    host.writeMif(QStringLiteral("empty"), QString(), QString());
    host.writeMif(QStringLiteral("line"), QStringLiteral("LINE 1000 2000 1010.5 2000\nLINE 1 2 x 4"),
                  QStringLiteral("ЗУ1\nЗУ2"));

    const HostRun run = host.run({QStringLiteral("--operation"), operation, QStringLiteral("--objects"), fileName,
                                  QStringLiteral("--encoding"), QStringLiteral("UTF-8"), QStringLiteral("--sort")});

    QTEST(run.status, "status");
    QTEST(run.messages, "messages");
    QTEST(compact(run.output), "output");
}

void tst_ImportHostImport::statusDependsOnObjectsAndMessages_data()
{
    QTest::addColumn<QString>("result");
    QTest::addColumn<QString>("message");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("summary");

    const QString one = document(object(QStringLiteral("a"), {QStringLiteral("1,2,3")}));
    const QString two = document(object(QStringLiteral("a"), {QStringLiteral("1,2,3"), QStringLiteral("1,2,3")}) +
                                 object(QStringLiteral("b"), {}));
    const QString empty = QStringLiteral("<FormTable/>");
    const QString message = QStringLiteral("Ошибка");
    QTest::newRow("one of each") << one << message << 3 << QStringLiteral("1 object, 1 vertex, 1 message");
    QTest::newRow("no message") << two << QString() << 0 << QStringLiteral("2 objects, 2 vertices, 0 messages");
    QTest::newRow("no objects") << empty << QString() << 1 << QStringLiteral("0 objects, 0 vertices, 0 messages");
    QTest::newRow("only a message") << empty << message << 1 << QStringLiteral("0 objects, 0 vertices, 1 message");
    QTest::newRow("no result") << QString() << message << 1 << QStringLiteral("0 objects, 0 vertices, 1 message");
}

void tst_ImportHostImport::statusDependsOnObjectsAndMessages()
{
    QFETCH(QString, result);
    QFETCH(QString, message);

    const HostRun run = Host().echo(result, {QStringLiteral("--form-name"), message});

    QCOMPARE(run.messages.join(QLatin1Char('\n')), message);
    QTEST(run.summary, "summary");
    QTEST(run.status, "status");
}

// The dialog must not stay open: nobody could close it.
void tst_ImportHostImport::foreignDialogIsReported()
{
    const HostRun run = Host().echo(QStringLiteral("dialog"));

    QCOMPARE(run.messages, QStringList{QStringLiteral(
                               "importhost: The dialog of the plug-in has no QComboBox with the name encodingCombo.")});
    QCOMPARE(run.output, QString());
    QCOMPARE(run.summary, QString());
    QCOMPARE(run.status, 2);
}

void tst_ImportHostImport::userSettingsAreNeitherReadNorWritten()
{
    REQUIRE_FACILITY(settingsInFiles());
    const Host host;
    host.writePlan();
    const QByteArray stored = "[ImportObjects]\npointPref=z\nupdate=true\nFieldNumValueMap\\3=z\n";
    const QString name = QStringLiteral("Import Workbench");
    QVERIFY(QDir(host.settings.path()).mkdir(name));
    QFile file(host.settings.filePath(name + QLatin1Char('/') + name + QStringLiteral(".conf")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(stored), stored.size());
    file.close();

    const HostRun run = host.importMif(QStringLiteral("plan.mif"));

    QCOMPARE(compact(run.output), documentOfPlan);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), stored);
}

void tst_ImportHostImport::missingFolderForSettingsIsReported()
{
    Host host;
    const QString file = host.files.write(QStringLiteral("file"), {});
    for (const char *const variable : {"TMPDIR", "TMP", "TEMP"})
        host.environment.insert(QLatin1String(variable), file);

    const HostRun run = host.echo(QStringLiteral("<FormTable/>"));

    QCOMPARE(run.messages,
             QStringList{QStringLiteral("importhost: Cannot make a temporary folder: %1.").arg(noFolderReason(true))});
    QCOMPARE(run.status, 2);
}

QTEST_GUILESS_MAIN(tst_ImportHostImport)
#include "tst_importhost_import.moc"
