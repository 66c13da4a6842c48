#include "miftesting.h"

#include <QRegularExpression>
#include <QTest>

class tst_MapImportMifRecords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void objectsTakeTheirRecords();
    void emptyFieldMeansGeneratedDesignation();
    void objectOfAnotherPassTakesOneRecord_data();
    void objectOfAnotherPassTakesOneRecord();
    void otherLineTakesNoRecord_data();
    void otherLineTakesNoRecord();
    void moreRecordsAreIgnored();
    void missingRecordOfAnObject_data();
    void missingRecordOfAnObject();
    void missingRecordToBePassedOver_data();
    void missingRecordToBePassedOver();
    void badObjectIsToldBeforeItsRecord();
};

void tst_MapImportMifRecords::objectsTakeTheirRecords()
{
    MifRun run;
    run.import.searchObjectDefs = true;
    run.writeMif(QStringLiteral("LINE 0 0 1 1\nPLINE 2\n0 0\n1 1\nPLINE MULTIPLE 2\n2\n0 0\n1 1\n2\n0 0\n1 1\n"
                                "REGION 1\n3\n0 0\n1 1\n0 0\nREGION 0\nLINE 0 0 1 1"));
    run.writeMid(QStringLiteral("A,1\n\"B\",2\nC\nD,4\nE\nF"));

    QVERIFY(run.import.importMap());

    const QString line = QStringLiteral(" [н1 0 0, н2 1 1]");
    QCOMPARE(
        described(run.objects),
        (QStringList{QStringLiteral("A") + line, QStringLiteral("B") + line, QStringLiteral("C") + line + line,
                     QStringLiteral("D [н1 0 0, н2 1 1, н1 0 0]"), QStringLiteral("E"), QStringLiteral("F") + line}));
    QCOMPARE(run.import.objectStartNum, 1);
    QVERIFY(run.host.messages().isEmpty());
}

void tst_MapImportMifRecords::emptyFieldMeansGeneratedDesignation()
{
    MifRun run;
    run.import.searchObjectDefs = true;
    run.writeMif(QStringLiteral("REGION 0\nREGION 0\nREGION 0\nREGION 0"));
    run.writeMid(QStringLiteral(",x\nA\n\"\"\n\"  \",ЗУ9"));

    QVERIFY(run.import.importMap());

    QCOMPARE(run.objectText(), QStringLiteral("ЗУ1\nA\nЗУ2\nЗУ3"));
    QCOMPARE(run.import.objectStartNum, 4);
    QVERIFY(run.host.messages().isEmpty());
}

void tst_MapImportMifRecords::objectOfAnotherPassTakesOneRecord_data()
{
    QTest::addColumn<QString>("data");

    QTest::newRow("none") << QStringLiteral("NONE");
    QTest::newRow("point") << QStringLiteral("POINT 5 5");
    QTest::newRow("point without coordinates") << QStringLiteral("POINT");
    QTest::newRow("arc") << QStringLiteral("ARC 1 1 2 2\n0 90\n    PEN (1,2,0)");
    QTest::newRow("text") << QStringLiteral("TEXT\n\"REGION 1\"\n1 1 2 2\n    FONT (\"Arial\",0,0,0)");
    QTest::newRow("text in one line") << QStringLiteral("Text \"LINE\" 1 1 2 2");
    QTest::newRow("rectangle") << QStringLiteral("Rect 1 1 2 2");
    QTest::newRow("rounded rectangle") << QStringLiteral("roundrect 1 1 2 2\n0.5");
    QTest::newRow("ellipse") << QStringLiteral("ELLIPSE 1 1 2 2");
    QTest::newRow("points in one object") << QStringLiteral("MULTIPOINT 2\n1 1\n2 2");
}

void tst_MapImportMifRecords::objectOfAnotherPassTakesOneRecord()
{
    QFETCH(QString, data);
    for (const bool searchObjectDefs : {false, true}) {
        MifRun run;
        run.import.searchObjectDefs = searchObjectDefs;
        run.writeMif(data + QStringLiteral("\nLINE 0 0 1 1"));
        run.writeMid(QStringLiteral("not mine\nЗУ1\nnot mine"));

        QVERIFY(run.import.importMap());

        QCOMPARE(run.objectText(), QStringLiteral("ЗУ1 [н1 0 0, н2 1 1]"));
        QVERIFY(run.host.messages().isEmpty());
    }
}

void tst_MapImportMifRecords::otherLineTakesNoRecord_data()
{
    QTest::addColumn<QString>("data");

    QTest::newRow("pen") << QStringLiteral("    PEN (1,2,0)");
    QTest::newRow("brush") << QStringLiteral("Brush (2,16777215)");
    QTest::newRow("symbol") << QStringLiteral("SYMBOL (35,0,12)");
    QTest::newRow("font") << QStringLiteral("FONT (\"Arial\",0,0,0)");
    QTest::newRow("smooth") << QStringLiteral("SMOOTH");
    QTest::newRow("center") << QStringLiteral("CENTER 1 1");
    QTest::newRow("quoted keyword") << QStringLiteral("\"NONE\"");
    QTest::newRow("coordinates") << QStringLiteral("1 1 2 2");
    QTest::newRow("empty lines") << QStringLiteral("\n \n\t");
    QTest::newRow("second beginning") << QStringLiteral("DATA");
}

void tst_MapImportMifRecords::otherLineTakesNoRecord()
{
    QFETCH(QString, data);
    MifRun run;
    run.import.searchPointDefs = true;
    run.import.searchObjectDefs = true;
    run.writeMif(data + QStringLiteral("\nPOINT 0 0\n") + data + QStringLiteral("\nLINE 0 0 1 1\n") + data);
    run.writeMid(QStringLiteral("A\nB"));

    QVERIFY(run.import.importMap());

    QCOMPARE(run.objectText(), QStringLiteral("B [A 0 0, н1 1 1]"));
    QVERIFY(run.host.messages().isEmpty());
}

void tst_MapImportMifRecords::moreRecordsAreIgnored()
{
    MifRun run;
    run.import.searchPointDefs = true;
    run.import.searchObjectDefs = true;
    run.writeMif(QStringLiteral("POINT 0 0\nLINE 0 0 1 1"));
    run.writeMid(QStringLiteral("A\nB\nC\n\nD"));

    QVERIFY(run.import.importMap());

    QCOMPARE(run.objectText(), QStringLiteral("B [A 0 0, н1 1 1]"));
    QVERIFY(run.host.messages().isEmpty());
}

void tst_MapImportMifRecords::missingRecordOfAnObject_data()
{
    QTest::addColumn<QString>("data");
    QTest::addColumn<QByteArray>("records");
    QTest::addColumn<int>("line");
    QTest::addColumn<QString>("left");

    const QString line = QStringLiteral("LINE 0 0 1 1");
    const QString lines = QStringLiteral("LINE 0 0 1 1\nLINE 0 0 1 1\nLINE 5 5 6 6");
    const QString two = QStringLiteral("A [н1 0 0, н2 1 1]\n- [н1 0 0, н2 1 1]");
    QTest::newRow("line") << line << QByteArray() << 1 << QStringLiteral("- [н1 0 0, н2 1 1]");
    QTest::newRow("polyline") << QStringLiteral("PLINE 2\n0 0\n1 1") << QByteArray() << 1
                              << QStringLiteral("- [н1 0 0, н2 1 1]");
    QTest::newRow("sections") << QStringLiteral("PLINE MULTIPLE 2\n2\n0 0\n1 1\n2\n2 2\n3 3") << QByteArray() << 1
                              << QStringLiteral("- [н1 0 0, н2 1 1] [н3 2 2, н4 3 3]");
    QTest::newRow("region") << QStringLiteral("REGION 1\n3\n0 0\n1 0\n0 0") << QByteArray() << 1
                            << QStringLiteral("- [н1 0 0, н2 1 0, н1 0 0]");
    QTest::newRow("region without rings") << QStringLiteral("REGION 0") << QByteArray() << 1 << QStringLiteral("-");
    QTest::newRow("second object") << lines << QByteArray("A\n") << 2 << two;
    QTest::newRow("second object, no last line feed") << lines << QByteArray("A") << 2 << two;
    QTest::newRow("empty record") << lines << QByteArray("A\n\nB\nC\n") << 2 << two;
    QTest::newRow("empty record with carriage return") << lines << QByteArray("A\r\n\r\nB\r\nC\r\n") << 2 << two;
    QTest::newRow("record of spaces and tabs") << lines << QByteArray("A\n \t \nB\nC\n") << 2 << two;
    QTest::newRow("empty record first") << line << QByteArray("\nA\n") << 1 << QStringLiteral("- [н1 0 0, н2 1 1]");
    QTest::newRow("after records that are passed over")
        << QStringLiteral("NONE\nPOINT 1 1\nREGION 0") << QByteArray("a\nb\n") << 3 << QStringLiteral("-");
}

void tst_MapImportMifRecords::missingRecordOfAnObject()
{
    QFETCH(QString, data);
    QFETCH(QByteArray, records);
    QFETCH(int, line);
    QFETCH(QString, left);
    MifRun run;
    run.import.searchObjectDefs = true;
    run.writeMif(data);
    run.files.writeBytes(QStringLiteral("plan.mid"), records);

    QVERIFY(!run.import.importMap());

    QCOMPARE(run.host.messages(),
             QStringList{QStringLiteral("Ошибка чтения обозначения объекта из строки: %1").arg(line)});
    QCOMPARE(run.objectText(), left);
    QCOMPARE(run.import.objectStartNum, 1);
}

void tst_MapImportMifRecords::missingRecordToBePassedOver_data()
{
    QTest::addColumn<bool>("pointsPass");
    QTest::addColumn<QString>("data");

    const QStringList others{QStringLiteral("NONE"),
                             QStringLiteral("ARC 1 1 2 2\n0 90"),
                             QStringLiteral("TEXT\n\"x\""),
                             QStringLiteral("RECT 1 1 2 2"),
                             QStringLiteral("ROUNDRECT 1 1 2 2\n1"),
                             QStringLiteral("ELLIPSE 1 1 2 2"),
                             QStringLiteral("MULTIPOINT 1\n1 1")};
    for (const QString &data : others) {
        const QString word = data.split(QRegularExpression(QStringLiteral("\\s"))).first();
        QTest::newRow(qPrintable(word + QStringLiteral(" among points"))) << true << data;
        QTest::newRow(qPrintable(word + QStringLiteral(" among objects"))) << false << data;
    }
    QTest::newRow("POINT among objects") << false << QStringLiteral("POINT 1 1");
    QTest::newRow("LINE among points") << true << QStringLiteral("LINE 0 0 1 1");
    QTest::newRow("PLINE among points") << true << QStringLiteral("PLINE 2\n0 0\n1 1");
    QTest::newRow("REGION among points") << true << QStringLiteral("REGION 0");
}

// The number is that of the record, not of the object's line.
void tst_MapImportMifRecords::missingRecordToBePassedOver()
{
    QFETCH(bool, pointsPass);
    QFETCH(QString, data);
    const QString passed = pointsPass ? QStringLiteral("POINT 7 7") : QStringLiteral("REGION 0");
    for (const char *const records : {"A\n", "A\n\nB\nC\n"}) {
        MifRun run;
        run.import.searchPointDefs = pointsPass;
        run.import.searchObjectDefs = !pointsPass;
        run.writeMif(passed + QLatin1Char('\n') + data + QLatin1Char('\n') + passed);
        run.files.writeBytes(QStringLiteral("plan.mid"), records);

        QVERIFY(!run.import.importMap());

        QCOMPARE(run.host.messages(), QStringList{QStringLiteral("Ошибка чтения данных объекта из строки: 2")});
        QCOMPARE(run.pointText(), pointsPass ? QStringLiteral("A 7 7") : QString());
        QCOMPARE(run.objectText(), pointsPass ? QString() : QStringLiteral("A"));
    }
}

void tst_MapImportMifRecords::badObjectIsToldBeforeItsRecord()
{
    MifRun run;
    run.import.searchObjectDefs = true;
    run.writeMif(QStringLiteral("PLINE 1"));
    run.files.writeBytes(QStringLiteral("plan.mid"), {});

    QVERIFY(!run.import.importMap());

    QCOMPARE(run.host.messages(), QStringList{QStringLiteral("Ошибка чтения полилинии из строки: 5")});
}

QTEST_GUILESS_MAIN(tst_MapImportMifRecords)

#include "tst_mapimport_mif_records.moc"
