#include "miftesting.h"

#include <QDir>
#include <QTest>

class tst_MapImportMif : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void headerIsAccepted_data();
    void headerIsAccepted();
    void otherHeaderIsRejected_data();
    void otherHeaderIsRejected();
    void headerIsCheckedInEachPass_data();
    void headerIsCheckedInEachPass();
    void objectsBeginAfterDataLine_data();
    void objectsBeginAfterDataLine();
    void withoutDataLineNothingIsRead_data();
    void withoutDataLineNothingIsRead();

    void objectIsRead_data();
    void objectIsRead();
    void otherLinesArePassedOver_data();
    void otherLinesArePassedOver();
    void numbersGoOnInAnotherRun();
};

void tst_MapImportMif::headerIsAccepted_data()
{
    QTest::addColumn<QString>("header");

    QTest::newRow("usual") << QStringLiteral("VERSION 300\nCHARSET \"WindowsCyrillic\"\nDELIMITER \",\"");
    QTest::newRow("small letters") << QStringLiteral("version 300\ncharset \"Neutral\"\ndelimiter \";\"");
    QTest::newRow("mixed letters") << QStringLiteral("Version 300\nCharSet \"Neutral\"\nDelimiter \";\"");
    QTest::newRow("spaces and tabs") << QStringLiteral("  VERSION \t 300\t\n\tCHARSET\tx\n DELIMITER   \",\"  ");
    QTest::newRow("values are not examined") << QStringLiteral("VERSION next\nCHARSET 0\nDELIMITER many");
    QTest::newRow("empty values in quotes") << QStringLiteral("VERSION \"\"\nCHARSET \"\"\nDELIMITER \"\"");
}

void tst_MapImportMif::headerIsAccepted()
{
    QFETCH(QString, header);
    MifRun run;
    run.files.writeBytes(QStringLiteral("plan.mif"), (header + QStringLiteral("\nDATA\nLINE 0 0 1 1\n")).toUtf8());

    QVERIFY(run.import.importMap());

    QCOMPARE(run.objectText(), QStringLiteral("ЗУ1 [н1 0 0, н2 1 1]"));
    QVERIFY(run.host.messages().isEmpty());
}

void tst_MapImportMif::otherHeaderIsRejected_data()
{
    QTest::addColumn<QString>("header");

    QTest::newRow("empty file") << QString();
    QTest::newRow("one line") << QStringLiteral("VERSION 300");
    QTest::newRow("two lines") << QStringLiteral("VERSION 300\nCHARSET \"Neutral\"");
    QTest::newRow("empty line first") << QStringLiteral("\nVERSION 300\nCHARSET \"Neutral\"\nDELIMITER \",\"");
    QTest::newRow("empty line second") << QStringLiteral("VERSION 300\n\nCHARSET \"Neutral\"\nDELIMITER \",\"");
    QTest::newRow("other line first") << QStringLiteral("FORMAT 1\nVERSION 300\nCHARSET x\nDELIMITER \",\"");
    QTest::newRow("version without value") << QStringLiteral("VERSION\nCHARSET \"Neutral\"\nDELIMITER \",\"");
    QTest::newRow("version of two words") << QStringLiteral("VERSION 300 1\nCHARSET \"Neutral\"\nDELIMITER \",\"");
    QTest::newRow("longer word than version") << QStringLiteral("VERSIONS 300\nCHARSET x\nDELIMITER \",\"");
    QTest::newRow("version in quotes") << QStringLiteral("\"VERSION\" 300\nCHARSET x\nDELIMITER \",\"");
    QTest::newRow("no charset") << QStringLiteral("VERSION 300\nDELIMITER \",\"\nCOLUMNS 0");
    QTest::newRow("charset without value") << QStringLiteral("VERSION 300\nCHARSET\nDELIMITER \",\"");
    QTest::newRow("charset of two words") << QStringLiteral("VERSION 300\nCHARSET \"Windows Cyrillic\"\nDELIMITER ;");
    QTest::newRow("no delimiter") << QStringLiteral("VERSION 300\nCHARSET \"Neutral\"\nCOLUMNS 0\nDELIMITER \",\"");
    QTest::newRow("delimiter without value") << QStringLiteral("VERSION 300\nCHARSET \"Neutral\"\nDELIMITER");
    QTest::newRow("delimiter is a tab") << QStringLiteral("VERSION 300\nCHARSET \"Neutral\"\nDELIMITER \"\t\"");
    QTest::newRow("delimiter is a space") << QStringLiteral("VERSION 300\nCHARSET \"Neutral\"\nDELIMITER \" \"");
    QTest::newRow("other order") << QStringLiteral("CHARSET \"Neutral\"\nVERSION 300\nDELIMITER \",\"");
    QTest::newRow("delimiter before charset") << QStringLiteral("VERSION 300\nDELIMITER \",\"\nCHARSET \"Neutral\"");
}

void tst_MapImportMif::otherHeaderIsRejected()
{
    QFETCH(QString, header);
    MifRun run;
    run.import.searchObjectDefs = true;
    if (!header.isEmpty())
        header += QStringLiteral("\nDATA\nLINE 0 0 1 1\n");
    const QString file = run.files.writeBytes(QStringLiteral("plan.mif"), header.toUtf8());

    QVERIFY(!run.import.importMap());

    QVERIFY(run.objects.isEmpty());
    QCOMPARE(run.host.messages(),
             QStringList{
                 QStringLiteral("Ошибка. Файл %1 не соответствует формату MIF").arg(QDir::toNativeSeparators(file))});
}

void tst_MapImportMif::headerIsCheckedInEachPass_data()
{
    QTest::addColumn<QString>("points");
    QTest::addColumn<QString>("objects");
    QTest::addColumn<QString>("told");
    QTest::addColumn<QString>("known");

    const QString good = QStringLiteral("VERSION 300\nCHARSET \"Neutral\"\nDELIMITER \",\"\nDATA\nPOINT 1 2\n");
    const QString bad = QStringLiteral("VERSION 300\n");
    QTest::newRow("file of points") << bad << good << QStringLiteral("points.mif") << QString();
    QTest::newRow("file of objects") << good << bad << QStringLiteral("plan.mif") << QStringLiteral("A 1 2");
    QTest::newRow("both, the objects are not tried") << bad << bad << QStringLiteral("points.mif") << QString();
}

void tst_MapImportMif::headerIsCheckedInEachPass()
{
    QFETCH(QString, points);
    QFETCH(QString, objects);
    QFETCH(QString, told);
    QFETCH(QString, known);
    MifRun run;
    run.files.writeBytes(QStringLiteral("plan.mif"), objects.toUtf8());
    run.import.searchPointDefs = true;
    run.import.pointFileName = run.files.writeBytes(QStringLiteral("points.mif"), points.toUtf8());
    run.writeMid(QStringLiteral("A"), QStringLiteral("points.mid"));

    QVERIFY(!run.import.importMap());

    QCOMPARE(run.host.messages(), QStringList{QStringLiteral("Ошибка. Файл %1 не соответствует формату MIF")
                                                  .arg(QDir::toNativeSeparators(run.files.path(told)))});
    QCOMPARE(run.pointText(), known);
}

void tst_MapImportMif::objectsBeginAfterDataLine_data()
{
    QTest::addColumn<QString>("before");

    QTest::newRow("capitals") << QStringLiteral("DATA");
    QTest::newRow("mixed letters") << QStringLiteral("Data");
    QTest::newRow("spaces around") << QStringLiteral("  data ");
    QTest::newRow("tabs around") << QStringLiteral("\tdata\t");
    QTest::newRow("after the names of columns") << QStringLiteral(
        "UNIQUE 1\nINDEX 1\nCOORDSYS NonEarth Units \"m\"\nCOLUMNS 2\n  Name Char(20)\n  DATA1 Char(5)\n"
        "\nDATA");
    QTest::newRow("after lines that look like objects")
        << QStringLiteral("LINE 5 5 6 6\nREGION 1\nPLINE\nPOINT 5 5\nCOLLECTION 2\nNONE\nDATA");
    QTest::newRow("after lines that look like it")
        << QStringLiteral("DATA 1\nLINE 5 5 6 6\nDATA:\n\"DATA\"\nD ATA\nDATA");
    QTest::newRow("twice") << QStringLiteral("DATA\n\nDATA");
}

// The only record goes to the only object: lines of the header take none.
void tst_MapImportMif::objectsBeginAfterDataLine()
{
    QFETCH(QString, before);
    MifRun run;
    run.import.searchObjectDefs = true;
    run.files.writeBytes(QStringLiteral("plan.mif"),
                         (QStringLiteral("VERSION 300\nCHARSET \"Neutral\"\nDELIMITER \",\"\n") + before +
                          QStringLiteral("\nLINE 0 0 1 1\n"))
                             .toUtf8());
    run.writeMid(QStringLiteral("A"));

    QVERIFY(run.import.importMap());

    QCOMPARE(run.objectText(), QStringLiteral("A [н1 0 0, н2 1 1]"));
    QVERIFY(run.host.messages().isEmpty());
}

void tst_MapImportMif::withoutDataLineNothingIsRead_data()
{
    QTest::addColumn<QString>("rest");

    QTest::newRow("header only") << QString();
    QTest::newRow("objects") << QStringLiteral("LINE 0 0 1 1\nPOINT 1 2\nCOLLECTION 1\n");
    QTest::newRow("word after it") << QStringLiteral("DATA 1\nLINE 0 0 1 1\n");
    QTest::newRow("longer word") << QStringLiteral("METADATA\nLINE 0 0 1 1\n");
    QTest::newRow("it is last") << QStringLiteral("DATA");
}

void tst_MapImportMif::withoutDataLineNothingIsRead()
{
    QFETCH(QString, rest);
    MifRun run;
    run.import.searchPointDefs = true;
    run.import.searchObjectDefs = true;
    run.files.writeBytes(QStringLiteral("plan.mif"),
                         (QStringLiteral("VERSION 300\nCHARSET \"Neutral\"\nDELIMITER \",\"\n") + rest).toUtf8());
    run.files.writeBytes(QStringLiteral("plan.mid"), {});

    QVERIFY(run.import.importMap());

    QVERIFY(run.objects.isEmpty());
    QVERIFY(knownPoints(run.import).isEmpty());
    QVERIFY(run.host.messages().isEmpty());
}

void tst_MapImportMif::objectIsRead_data()
{
    QTest::addColumn<QString>("data");
    QTest::addColumn<QString>("objects");

    const QString line = QStringLiteral("ЗУ1 [н1 0 0, н2 1 1]");
    QTest::newRow("line") << QStringLiteral("LINE 0 0 1 1") << line;
    QTest::newRow("line in small letters") << QStringLiteral("line 0 0 1 1") << line;
    QTest::newRow("line with spaces and tabs") << QStringLiteral(" \tLine  0 \t0   1 1 ") << line;
    QTest::newRow("line with more words") << QStringLiteral("LINE 0 0 1 1 2 x") << line;

    const QString pline = QStringLiteral("ЗУ1 [н1 0 0, н2 1 0, н3 1 1]");
    QTest::newRow("polyline") << QStringLiteral("pline 3\n0 0\n1 0\n1 1") << pline;
    QTest::newRow("polyline with more words") << QStringLiteral("PLINE 3 MULTIPLE 2\n0 0\n1 0\n1 1") << pline;
    QTest::newRow("polyline with spaces around vertices") << QStringLiteral("PLINE 3\n 0\t0\n\t1  0 \n1 1  ") << pline;
    QTest::newRow("polyline of two vertices") << QStringLiteral("PLINE 2\n0 0\n1 1") << line;
    QTest::newRow("closed polyline") << QStringLiteral("PLINE 3\n0 0\n1 0\n0 0")
                                     << QStringLiteral("ЗУ1 [н1 0 0, н2 1 0, н1 0 0]");
    QTest::newRow("polyline whose ends are near each other")
        << QStringLiteral("PLINE 3\n0 0\n1 0\n0.5 0") << QStringLiteral("ЗУ1 [н1 0 0, н2 1 0, н3 0.5 0]");

    const QString multiple = QStringLiteral("ЗУ1 [н1 0 0, н2 1 0] [н3 2 0, н4 3 0, н5 4 0]");
    QTest::newRow("two sections") << QStringLiteral("Pline Multiple 2\n2\n0 0\n1 0\n3\n2 0\n3 0\n4 0") << multiple;
    QTest::newRow("two sections with more words")
        << QStringLiteral("PLINE MULTIPLE 2 9\n 2 \n0 0\n1 0\n\t3\n2 0\n3 0\n4 0") << multiple;
    QTest::newRow("three sections") << QStringLiteral("PLINE MULTIPLE 3\n2\n0 0\n1 0\n2\n2 0\n3 0\n2\n4 0\n5 0")
                                    << QStringLiteral("ЗУ1 [н1 0 0, н2 1 0] [н3 2 0, н4 3 0] [н5 4 0, н6 5 0]");
    QTest::newRow("last vertex of a section is no closing one")
        << QStringLiteral("PLINE MULTIPLE 2\n2\n0 0\n1 0\n3\n2 0\n3 0\n2 1")
        << QStringLiteral("ЗУ1 [н1 0 0, н2 1 0] [н3 2 0, н4 3 0, н5 2 1]");

    QTest::newRow("region") << QStringLiteral("Region 1\n4\n0 0\n1 0\n1 1\n0 0")
                            << QStringLiteral("ЗУ1 [н1 0 0, н2 1 0, н3 1 1, н1 0 0]");
    QTest::newRow("region with more words") << QStringLiteral("REGION 1 2\n3\n0 0\n1 0\n0 0\n    PEN (1,2,0)")
                                            << QStringLiteral("ЗУ1 [н1 0 0, н2 1 0, н1 0 0]");
    QTest::newRow("ring that is not closed")
        << QStringLiteral("REGION 1\n3\n0 0\n1 0\n1 1") << QStringLiteral("ЗУ1 [н1 0 0, н2 1 0, н1 1 1]");
    QTest::newRow("region of two rings")
        << QStringLiteral("REGION 2\n4\n0 0\n9 0\n9 9\n0 0\n4\n2 1\n3 1\n3 2\n2 1")
        << QStringLiteral("ЗУ1 [н1 0 0, н2 9 0, н3 9 9, н1 0 0] [н4 2 1, н5 3 1, н6 3 2, н4 2 1]");
    QTest::newRow("region without rings") << QStringLiteral("REGION 0") << QStringLiteral("ЗУ1");
    QTest::newRow("object after a region without rings")
        << QStringLiteral("REGION 0\nLINE 0 0 1 1") << QStringLiteral("ЗУ1\nЗУ2 [н1 0 0, н2 1 1]");
}

void tst_MapImportMif::objectIsRead()
{
    QFETCH(QString, data);
    QFETCH(QString, objects);
    MifRun run;
    run.writeMif(data);

    QVERIFY(run.import.importMap());

    QCOMPARE(run.objectText(), objects);
    QVERIFY(run.host.messages().isEmpty());
}

void tst_MapImportMif::otherLinesArePassedOver_data()
{
    QTest::addColumn<QString>("between");

    QTest::newRow("nothing") << QString();
    QTest::newRow("empty lines") << QStringLiteral("\n  \n\t");
    QTest::newRow("attributes") << QStringLiteral(
        "    PEN (1,2,0)\n    BRUSH (2,16777215)\n    SMOOTH\n    CENTER 1 1\n"
        "    SYMBOL (35,0,12)\n    FONT (\"Arial\",0,0,0)");
    QTest::newRow("quoted text") << QStringLiteral("\"LINE 5 5 6 6\"\n\"LINE\" 5 5 6 6");
    QTest::newRow("coordinates") << QStringLiteral("1 2\n3 4 5 6\n7");
    QTest::newRow("words like keywords") << QStringLiteral(
        "LINES 5 5 6 6\nPOLYLINE 2\nREGION: 1\nPOINTS 1 2\nCOLLECTIONS");
    QTest::newRow("keyword is not first") << QStringLiteral("1 LINE 5 5 6 6\nA REGION 1\nSEE COLLECTION 1");
}

void tst_MapImportMif::otherLinesArePassedOver()
{
    QFETCH(QString, between);
    MifRun run;
    run.import.searchObjectDefs = true;
    run.writeMif(QStringLiteral("LINE 0 0 1 1\n%1\nLINE 2 2 3 3\n%1").arg(between));
    run.writeMid(QStringLiteral("A\nB"));

    QVERIFY(run.import.importMap());

    QCOMPARE(run.objectText(), QStringLiteral("A [н1 0 0, н2 1 1]\nB [н3 2 2, н4 3 3]"));
    QVERIFY(run.host.messages().isEmpty());
}

void tst_MapImportMif::numbersGoOnInAnotherRun()
{
    MifRun mif;
    mif.writeMif(QStringLiteral("LINE 0 0 5 5\nLINE 5 5 9 9"));

    QVERIFY(mif.import.importMap());
    QCOMPARE(mif.pointText(), QStringLiteral("н1 0 0\nн2 5 5\nн3 9 9"));
    QVERIFY(mif.import.importMap());

    QCOMPARE(mif.pointText(), QStringLiteral("н4 0 0\nн5 5 5\nн6 9 9"));
    QCOMPARE(mif.objects.size(), 4);
}

QTEST_GUILESS_MAIN(tst_MapImportMif)

#include "tst_mapimport_mif.moc"
