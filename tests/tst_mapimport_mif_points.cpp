#include "miftesting.h"

#include <QTest>

class tst_MapImportMifPoints : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pointsTakeTheirRecords();
    void pointIsRead_data();
    void pointIsRead();
    void pointsPassPassesObjectsOver_data();
    void pointsPassPassesObjectsOver();
    void missingRecordOfAPoint_data();
    void missingRecordOfAPoint();
    void recordNumberBeginsAnewInEachPass();
    void recordsOfPointsAreNotThoseOfObjects();
    void verticesTakeNumbersOfKnownPoints_data();
    void verticesTakeNumbersOfKnownPoints();
    void knownPointsAreThinned();
    void knownPointWithoutDesignationGivesNone();
    void neighboursShareNumbers();
    void verticesAreSwappedAndPointsAreNot();
};

void tst_MapImportMifPoints::pointsTakeTheirRecords()
{
    MifRun run;
    run.import.searchPointDefs = true;
    run.writeMif(QStringLiteral("Point 10.5 20.25\n    SYMBOL (35,0,12)\nPOINT 1 2\npoint 3 4"));
    run.writeMid(QStringLiteral("\"A1\",x\n,x\nн7"));

    QVERIFY(run.import.importMap());

    QCOMPARE(run.pointText(), QStringLiteral("- 1 2\nн7 3 4\nA1 10.5 20.25"));
    QVERIFY(run.objects.isEmpty());
    QVERIFY(run.host.messages().isEmpty());
}

void tst_MapImportMifPoints::pointIsRead_data()
{
    QTest::addColumn<QString>("data");

    QTest::newRow("capitals") << QStringLiteral("POINT 10.5 20.25");
    QTest::newRow("small letters") << QStringLiteral("point 10.5 20.25");
    QTest::newRow("spaces and tabs") << QStringLiteral("\t Point \t10.5   20.25 ");
    QTest::newRow("more words") << QStringLiteral("POINT 10.5 20.25 30 x");
}

void tst_MapImportMifPoints::pointIsRead()
{
    QFETCH(QString, data);
    MifRun run;
    run.import.searchPointDefs = true;
    run.writeMif(data);
    run.writeMid(QStringLiteral("A1"));

    QVERIFY(run.import.importMap());

    QCOMPARE(run.pointText(), QStringLiteral("A1 10.5 20.25"));
    QVERIFY(run.host.messages().isEmpty());
}

void tst_MapImportMifPoints::pointsPassPassesObjectsOver_data()
{
    QTest::addColumn<QString>("data");

    QTest::newRow("line") << QStringLiteral("LINE 5 5 6 6");
    QTest::newRow("line that objects passes would refuse") << QStringLiteral("line 5");
    QTest::newRow("polyline") << QStringLiteral("PLINE 2\n5 5\n6 6");
    QTest::newRow("sections") << QStringLiteral("Pline Multiple 2\n2\n5 5\n6 6\n2\n7 7\n8 8");
    QTest::newRow("region") << QStringLiteral("region 1\n3\n5 5\n6 6\n5 5\n    CENTER 5 5");
    QTest::newRow("region without vertices") << QStringLiteral("REGION 7");
    QTest::newRow("none") << QStringLiteral("None");
    QTest::newRow("arc") << QStringLiteral("ARC 1 1 2 2\n0 90");
    QTest::newRow("text") << QStringLiteral("TEXT\n\"POINT 1 1\"\n1 1 2 2");
    QTest::newRow("rectangle") << QStringLiteral("RECT 1 1 2 2");
    QTest::newRow("rounded rectangle") << QStringLiteral("ROUNDRECT 1 1 2 2\n0.5");
    QTest::newRow("ellipse") << QStringLiteral("ellipse 1 1 2 2");
    QTest::newRow("points in one object") << QStringLiteral("MULTIPOINT 2\n1 1\n2 2");
}

void tst_MapImportMifPoints::pointsPassPassesObjectsOver()
{
    QFETCH(QString, data);
    MifRun run;
    run.import.searchPointDefs = true;
    run.import.pointFileName = run.files.path(QStringLiteral("points.mif"));
    run.writeMif(QStringLiteral("POINT 1 2\n%1\nPOINT 3 4").arg(data), QStringLiteral("points.mif"));
    run.writeMid(QStringLiteral("A\nnot mine\nB"), QStringLiteral("points.mid"));
    run.writeMif(QString());

    QVERIFY(run.import.importMap());

    QCOMPARE(run.pointText(), QStringLiteral("A 1 2\nB 3 4"));
    QVERIFY(run.objects.isEmpty());
    QVERIFY(run.host.messages().isEmpty());
}

void tst_MapImportMifPoints::missingRecordOfAPoint_data()
{
    QTest::addColumn<QByteArray>("records");
    QTest::addColumn<int>("line");
    QTest::addColumn<QString>("left");

    QTest::newRow("first") << QByteArray() << 1 << QStringLiteral("- 9 9");
    QTest::newRow("first is empty") << QByteArray("\nA\nB\n") << 1 << QStringLiteral("- 9 9");
    QTest::newRow("second") << QByteArray("A\n") << 2 << QStringLiteral("- 1 1\nA 9 9");
    QTest::newRow("second is empty") << QByteArray("A\n\nB\n") << 2 << QStringLiteral("- 1 1\nA 9 9");
    QTest::newRow("second holds spaces") << QByteArray("A\n  \t\nB\n") << 2 << QStringLiteral("- 1 1\nA 9 9");
}

void tst_MapImportMifPoints::missingRecordOfAPoint()
{
    QFETCH(QByteArray, records);
    QFETCH(int, line);
    QFETCH(QString, left);
    MifRun run;
    run.import.searchPointDefs = true;
    run.writeMif(QStringLiteral("POINT 9 9\nPOINT 1 1\nLINE 0 0 1 1"));
    run.files.writeBytes(QStringLiteral("plan.mid"), records);

    QVERIFY(!run.import.importMap());

    QCOMPARE(run.host.messages(),
             QStringList{QStringLiteral("Ошибка чтения обозначения точки из строки: %1").arg(line)});
    QCOMPARE(run.pointText(), left);
    QVERIFY(run.objects.isEmpty());
}

void tst_MapImportMifPoints::recordNumberBeginsAnewInEachPass()
{
    MifRun run;
    run.import.searchPointDefs = true;
    run.import.searchObjectDefs = true;
    run.import.pointFileName = run.files.path(QStringLiteral("points.mif"));
    run.writeMif(QStringLiteral("POINT 0 0\nPOINT 1 1\nNONE"), QStringLiteral("points.mif"));
    run.writeMid(QStringLiteral("A\nB\nC\nD"), QStringLiteral("points.mid"));
    run.writeMif(QStringLiteral("LINE 0 0 1 1\nLINE 2 2 0 0"));
    run.writeMid(QStringLiteral("E"));

    QVERIFY(!run.import.importMap());

    QCOMPARE(run.host.messages(), QStringList{QStringLiteral("Ошибка чтения обозначения объекта из строки: 2")});
    QCOMPARE(run.objectText(), QStringLiteral("E [A 0 0, B 1 1]\n- [н1 2 2, A 0 0]"));
}

// Designations of objects are not looked for, so the records left after the points are nobody's.
void tst_MapImportMifPoints::recordsOfPointsAreNotThoseOfObjects()
{
    MifRun run;
    run.import.searchPointDefs = true;
    run.writeMif(QStringLiteral("POINT 0 0\nLINE 0 0 1 1"));
    run.writeMid(QStringLiteral("A\nB\nC\nD"));

    QVERIFY(run.import.importMap());

    QCOMPARE(run.objectText(), QStringLiteral("ЗУ1 [A 0 0, н1 1 1]"));
    QVERIFY(run.host.messages().isEmpty());
}

void tst_MapImportMifPoints::verticesTakeNumbersOfKnownPoints_data()
{
    QTest::addColumn<bool>("searchPointDefs");
    QTest::addColumn<QString>("pointFile");
    QTest::addColumn<QString>("objects");

    QTest::newRow("not looked up") << false << QStringLiteral("points.mif")
                                   << QStringLiteral("ЗУ1 [н1 0 0, н2 5 5, н3 9 9.005, н1 0 0]");
    QTest::newRow("from the file of objects")
        << true << QString() << QStringLiteral("ЗУ1 [A 0 0, н1 5 5, B 9 9.005, A 0 0]");
    QTest::newRow("from a file of their own")
        << true << QStringLiteral("points.mif") << QStringLiteral("ЗУ1 [н1 0 0, P 5 5, н2 9 9.005, н1 0 0]");
    QTest::newRow("from a file that is missing")
        << true << QStringLiteral("missing.mif") << QStringLiteral("ЗУ1 [н1 0 0, н2 5 5, н3 9 9.005, н1 0 0]");
}

void tst_MapImportMifPoints::verticesTakeNumbersOfKnownPoints()
{
    QFETCH(bool, searchPointDefs);
    QFETCH(QString, pointFile);
    QFETCH(QString, objects);
    MifRun run;
    run.import.searchPointDefs = searchPointDefs;
    run.import.pointFileName = pointFile.isEmpty() ? QString() : run.files.path(pointFile);
    run.writeMif(QStringLiteral("POINT 5.005 5"), QStringLiteral("points.mif"));
    run.writeMid(QStringLiteral("P"), QStringLiteral("points.mid"));
    run.writeMif(QStringLiteral("POINT 9 9\nREGION 1\n4\n0 0\n5 5\n9 9.005\n0 0\nPOINT 0 0"));
    run.writeMid(QStringLiteral("B\nplot\nA"));

    QVERIFY(run.import.importMap());

    QCOMPARE(run.objectText(), objects);
    QCOMPARE(run.host.messages().size(), pointFile == QLatin1String("missing.mif") ? 1 : 0);
}

void tst_MapImportMifPoints::knownPointsAreThinned()
{
    MifRun run;
    run.import.searchPointDefs = true;
    run.writeMif(QStringLiteral("POINT 0.016 0\nPOINT 9 9\nPOINT 0.008 0\nPOINT 0 0"));
    run.writeMid(QStringLiteral("C\nD\nB\nA"));

    QVERIFY(run.import.importMap());

    QCOMPARE(run.pointText(), QStringLiteral("A 0 0\nC 0.016 0\nD 9 9"));
}

void tst_MapImportMifPoints::knownPointWithoutDesignationGivesNone()
{
    MifRun run;
    run.import.searchPointDefs = true;
    run.writeMif(QStringLiteral("POINT 0 0\nLINE 0 0 1 1"));
    run.writeMid(QStringLiteral(",x\n,x"));

    QVERIFY(run.import.importMap());

    QCOMPARE(run.objectText(), QStringLiteral("ЗУ1 [- 0 0, н1 1 1]"));
    QVERIFY(run.objects.first().contours.first().first().def.isNull());
}

void tst_MapImportMifPoints::neighboursShareNumbers()
{
    MifRun run;
    run.writeMif(QStringLiteral("REGION 1\n4\n0 0\n5 0\n5 5\n0 0\nREGION 1\n4\n5 5\n5 0\n9 0\n5 5"));

    QVERIFY(run.import.importMap());

    QCOMPARE(run.objectText(),
             QStringLiteral("ЗУ1 [н1 0 0, н2 5 0, н3 5 5, н1 0 0]\nЗУ2 [н3 5 5, н2 5 0, н4 9 0, н3 5 5]"));
    QCOMPARE(run.import.pointStartNum, 5);
    QCOMPARE(run.import.objectStartNum, 3);
}

void tst_MapImportMifPoints::verticesAreSwappedAndPointsAreNot()
{
    MifRun run;
    run.import.swapXY = true;
    run.import.searchPointDefs = true;
    run.writeMif(QStringLiteral("POINT 1 2\nLINE 1 2 3 4\nREGION 1\n3\n1 2\n2 1\n5 6"));
    run.writeMid(QStringLiteral("A\nx\nx"));

    QVERIFY(run.import.importMap());

    QCOMPARE(run.objectText(), QStringLiteral("ЗУ1 [A 2 1, н1 4 3]\nЗУ2 [A 2 1, н2 1 2, A 6 5]"));
    QCOMPARE(run.pointText(), QStringLiteral("A 1 2\nн2 2 1\nн1 3 4"));
}

QTEST_GUILESS_MAIN(tst_MapImportMifPoints)

#include "tst_mapimport_mif_points.moc"
