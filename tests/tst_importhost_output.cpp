#include "facilities.h"
#include "hosttesting.h"

#include <QDir>
#include <QTest>

/// The files that the stand-in host writes, as a process.
class tst_ImportHostOutput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void sortedResultIsSaved();
    void everyOutputIsSaved();
    void namesMayContainBlanksAndCyrillic();
    void textIsPrintedUnchanged();
    void nothingIsSavedWithoutAResult();
    void failureIsReported_data();
    void failureIsReported();
    void failureDoesNotAffectOtherOutputs();
    void unreadableResultIsKept();
    void fullOutputIsReported();
};

void tst_ImportHostOutput::initTestCase()
{
    useUtf8();
}

void tst_ImportHostOutput::sortedResultIsSaved()
{
    const Host host;
    host.writePlan();
    host.files.write(QStringLiteral("result.xml"), {QString(100000, QLatin1Char('x'))});

    const HostRun run = host.importMif(QStringLiteral("plan.mif"), arguments("--sort --output result.xml"));

    QCOMPARE(run.status, 0);
    QCOMPARE(run.messages, QStringList());
    QCOMPARE(run.output, QString());
    QCOMPARE(compact(QString::fromUtf8(host.content("result.xml"))),
             document(planLine(QStringLiteral("ЗУ2"), QStringLiteral("н2 н3")) +
                      planRegion(QStringLiteral("ЗУ10"), QStringLiteral("т1 н1 н2 т1"))));
}

void tst_ImportHostOutput::everyOutputIsSaved()
{
    const Host host;
    host.writeLine();

    const HostRun run = host.importMif(QStringLiteral("line.mif"),
                                       arguments("--columns 1,0,2,1 --output result.xml --catalogue catalogue.csv "
                                                 "--picture picture.SVG --screenshot dialog.png"));

    QCOMPARE(run.messages, QStringList());
    QCOMPARE(run.status, 0);
    QCOMPARE(run.summary, QStringLiteral("1 object, 2 vertices, 0 messages"));
    QVERIFY(host.content("result.xml").contains("<FormTable"));
    QVERIFY(host.content("catalogue.csv").endsWith("\r\nЗУ1;1;н1;1000.00;2000.00\r\nЗУ1;1;н2;1010.50;2000.00\r\n"));
    QVERIFY(host.content("picture.SVG").contains("<svg"));
    QVERIFY(host.content("dialog.png").startsWith("\x89PNG"));
}

void tst_ImportHostOutput::namesMayContainBlanksAndCyrillic()
{
    const Host host;
    QVERIFY(QDir().mkdir(host.files.path(QStringLiteral("Мои планы"))));
    host.writeMif(QStringLiteral("Мои планы/план участка"), QStringLiteral("LINE 1000 2000 1010.5 2000"),
                  QStringLiteral("ЗУ1"));
    host.writeMif(QStringLiteral("Мои планы/опорные точки"), QStringLiteral("POINT 1000 2000"), QStringLiteral("т1"));

    const HostRun run = host.importMif(QStringLiteral("Мои планы/план участка.mif"),
                                       {QStringLiteral("--points=Мои планы/опорные точки.mif"),
                                        QStringLiteral("--output=Мои планы/новый результат.xml"),
                                        QStringLiteral("--catalogue=Мои планы/новый каталог.csv"),
                                        QStringLiteral("--picture=Мои планы/рисунок 1.png"),
                                        QStringLiteral("--screenshot=Мои планы/снимок окна.png")});

    QCOMPARE(run.messages, QStringList());
    QCOMPARE(run.status, 0);
    QVERIFY(host.content("Мои планы/новый результат.xml").contains("<Cell>т1</Cell>"));
    QVERIFY(host.content("Мои планы/новый каталог.csv").contains("ЗУ1;1;т1;"));
    QVERIFY(host.content("Мои планы/рисунок 1.png").startsWith("\x89PNG"));
    QVERIFY(host.content("Мои планы/снимок окна.png").startsWith("\x89PNG"));
}

void tst_ImportHostOutput::textIsPrintedUnchanged()
{
    const QString text = QStringLiteral("\n  <FormTable >\n\n</FormTable>  <!-- ж -->");

    QCOMPARE(Host().echo(text).output, text + QLatin1Char('\n'));
}

void tst_ImportHostOutput::nothingIsSavedWithoutAResult()
{
    const Host host;

    const HostRun run = host.echo(QString(), arguments("--output result.xml --catalogue catalogue.csv"));

    QCOMPARE(run.status, 1);
    QVERIFY(QDir(host.folder).isEmpty());
}

void tst_ImportHostOutput::failureIsReported_data()
{
    QTest::addColumn<QString>("args");
    QTest::addColumn<QString>("message");
    const auto row = [](const char *args, const char *message) {
        const QString reason = QString::fromLatin1(message).replace(QStringLiteral("%1"), noFolderReason());
        QTest::newRow(args) << QString::fromLatin1(args) << QStringLiteral("importhost: ") + reason;
    };

    row("--output missing/result.xml", "Cannot save the result \"missing/result.xml\": %1.");
    row("--catalogue missing/catalogue.csv", "Cannot save the catalogue \"missing/catalogue.csv\": %1.");
    row("--picture missing/picture.pdf", "Cannot save the picture \"missing/picture.pdf\": %1.");
    row("--screenshot missing/dialog.png", "Cannot save the screenshot \"missing/dialog.png\": %1.");
    row("--screenshot dialog.x", "Cannot save the screenshot \"dialog.x\": unknown picture format \"x\".");
}

void tst_ImportHostOutput::failureIsReported()
{
    QFETCH(QString, args);
    QFETCH(QString, message);
    const Host host;
    host.writeLine();

    const HostRun run = host.importMif(QStringLiteral("line.mif"), arguments(args.toUtf8().constData()));

    QCOMPARE(run.messages, QStringList{message});
    QCOMPARE(run.status, 2);
}

void tst_ImportHostOutput::failureDoesNotAffectOtherOutputs()
{
    const Host host;

    const HostRun run = host.echo(QStringLiteral("<FormTable/>"),
                                  arguments("--screenshot dialog.png --output . --catalogue catalogue.csv"));

    QCOMPARE(
        run.messages,
        (QStringList{QStringLiteral("importhost: Cannot save the screenshot \"dialog.png\": "
                                    "the plug-in opened no dialog."),
                     QStringLiteral("importhost: Cannot save the result \".\": Filename refers to a directory.")}));
    QCOMPARE(run.status, 2);
    QCOMPARE(run.summary, QStringLiteral("0 objects, 0 vertices, 0 messages"));
    QVERIFY(host.content("catalogue.csv").endsWith("X;Y\r\n"));
    QCOMPARE(QDir(host.folder).entryList(QDir::Files), QStringList{QStringLiteral("catalogue.csv")});
}

void tst_ImportHostOutput::unreadableResultIsKept()
{
    const Host host;

    const HostRun run =
        host.echo(QStringLiteral("<Table/>"), arguments("--output result.xml --catalogue catalogue.csv"));

    QCOMPARE(run.messages, QStringList{QStringLiteral("importhost: Cannot read the result of the plug-in. Результат не "
                                                      "прочитан, строка 1: это не таблица объектов")});
    QCOMPARE(run.status, 2);
    QCOMPARE(run.summary, QString());
    QCOMPARE(host.content("result.xml"), QByteArray("<Table/>"));
    QCOMPARE(QDir(host.folder).entryList(QDir::Files), QStringList{QStringLiteral("result.xml")});
}

void tst_ImportHostOutput::fullOutputIsReported()
{
    REQUIRE_FACILITY(fullDevice());
    const Host host;
    host.writeLine();
    QProcess process;
    process.setStandardOutputFile(fullDevicePath);

    const HostRun run = host.run(arguments("--operation mif --objects line.mif"), process);

    QCOMPARE(run.messages, QStringList{QStringLiteral("importhost: Cannot print the result.")});
    QCOMPARE(run.status, 2);
}

QTEST_GUILESS_MAIN(tst_ImportHostOutput)
#include "tst_importhost_output.moc"
