#include "dxftesting.h"

#include <QDir>
#include <QTest>

/// The passes over a drawing: what they look at, what they tell, and where the next one goes on.
class tst_MapImport_DxfPasses : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void onlySectionOfEntitiesIsRead_data();
    void onlySectionOfEntitiesIsRead();
    void blockGivesItsInsertionPoint();
    void otherEntitiesArePassedOver_data();
    void otherEntitiesArePassedOver();
    void everyPassReadsItsOwnEntities();
    void failedPointsPassEndsTheImport();
    void missingPointFileIsToldOnly();
    void lineIsCountedOverTheTextsPass_data();
    void lineIsCountedOverTheTextsPass();
    void objectsPassGoesOnAfterFailedTexts_data();
    void objectsPassGoesOnAfterFailedTexts();
    void pairAfterLastTextIsReadAsAnOrdinaryPair_data();
    void pairAfterLastTextIsReadAsAnOrdinaryPair();
};

void tst_MapImport_DxfPasses::onlySectionOfEntitiesIsRead_data()
{
    QTest::addColumn<QByteArray>("pairsAfterHeader");
    QTest::addColumn<QStringList>("objects");
    const QByteArray otherLine = "0 LINE|10 10|20 0|11 20|21 0";
    const QStringList none;
    const QStringList first{lineObject};
    const QStringList both{lineObject, QStringLiteral("ЗУ2: н2(10 0) н3(20 0)")};

    QTest::newRow("header") << lineEntity << none;
    QTest::newRow("blocks") << "0 SECTION|2 BLOCKS|0 BLOCK|" + lineEntity + "|0 ENDBLK|0 ENDSEC" << none;
    QTest::newRow("blocks, then entities")
        << "0 SECTION|2 BLOCKS|0 BLOCK|" + otherLine + "|0 ENDBLK|0 ENDSEC|0 SECTION|2 ENTITIES|" + lineEntity << first;
    QTest::newRow("entities, then objects")
        << "0 SECTION|2 ENTITIES|" + lineEntity + "|0 ENDSEC|0 SECTION|2 OBJECTS|" + otherLine << first;
    QTest::newRow("another section without the end of the first")
        << "0 SECTION|2 ENTITIES|" + lineEntity + "|0 SECTION|2 OBJECTS|" + otherLine << first;
    QTest::newRow("two sections of entities")
        << "0 SECTION|2 ENTITIES|" + lineEntity + "|0 SECTION|2 TABLES|0 SECTION|2 ENTITIES|" + otherLine << both;
    QTest::newRow("end of the section does not end it")
        << "0 SECTION|2 ENTITIES|" + lineEntity + "|0 ENDSEC|" + otherLine << both;
    QTest::newRow("end of the file is no end before it is reached")
        << "0 SECTION|2 ENTITIES|" + lineEntity + "|0 EOF|" + otherLine << both;
    QTest::newRow("name under another code") << "0 SECTION|999 ENTITIES|" + lineEntity << first;
    QTest::newRow("name between blanks under another code") << "0 SECTION|999  ENTITIES |" + lineEntity << first;
    QTest::newRow("name under code 0") << "0 SECTION|0 ENTITIES|" + lineEntity << first;
    QTest::newRow("name that looks like a section") << "0 SECTION|0 SECTION|2 ENTITIES|" + lineEntity << none;
    QTest::newRow("name that looks like an entity")
        << "0 SECTION|2 ENTITIES|0 SECTION|" + otherLine + "|0 SECTION|2 ENTITIES|" + lineEntity << first;
    QTest::newRow("comment in place of the name") << "0 SECTION|999 comment|2 ENTITIES|" + lineEntity << none;
    QTest::newRow("empty name") << "0 SECTION|2 |" + lineEntity << none;
    QTest::newRow("SECTION under another code begins none")
        << "0 SECTION|2 ENTITIES|8 SECTION|2 OBJECTS|" + lineEntity << first;
}

void tst_MapImport_DxfPasses::onlySectionOfEntitiesIsRead()
{
    QFETCH(QByteArray, pairsAfterHeader);
    QFETCH(QStringList, objects);
    DxfRun dxf;

    QVERIFY(dxf.run(pairs("0 SECTION|2 HEADER|" + pairsAfterHeader)));

    QCOMPARE(dxf.messages(), QStringList());
    QCOMPARE(dxf.objects(), objects);
}

void tst_MapImport_DxfPasses::blockGivesItsInsertionPoint()
{
    DxfRun dxf;
    dxf.import.searchPointDefs = true;
    dxf.import.searchObjectDefs = true;

    QVERIFY(dxf.run(pairs("0 SECTION|2 HEADER|0 ENDSEC|0 SECTION|2 BLOCKS|0 BLOCK|2 STONE|0 POINT|10 1|20 1"
                          "|0 TEXT|10 5|20 6|1 т|0 LINE|10 0|20 0|11 1|21 1|0 ENDBLK|0 ENDSEC"
                          "|0 SECTION|2 ENTITIES|0 INSERT|2 STONE|10 5|20 6|0 ENDSEC|0 EOF")));

    QCOMPARE(dxf.messages(), QStringList());
    QCOMPARE(dxf.points(), QStringList{QStringLiteral("(5 6)")});
    QCOMPARE(dxf.objects(), QStringList());
}

void tst_MapImport_DxfPasses::otherEntitiesArePassedOver_data()
{
    QTest::addColumn<QByteArray>("entity");
    for (const char *entity : {"ARC", "MTEXT", "SPLINE", "HATCH", "ATTRIB", "SOLID", "VERTEX", "SEQEND", "3DFACE"})
        QTest::newRow(entity) << QByteArray(entity);
}

void tst_MapImport_DxfPasses::otherEntitiesArePassedOver()
{
    QFETCH(QByteArray, entity);
    DxfRun dxf;
    dxf.import.searchPointDefs = true;
    dxf.import.searchObjectDefs = true;

    QVERIFY(dxf.run(drawing("0 " + entity + "|90 abc|70 1|10 abc|20 |1 т|" + lineEntity)));

    QCOMPARE(dxf.messages(), QStringList());
    QCOMPARE(dxf.objects(), QStringList{lineObject});
}

// What another pass would read, and fail at, does not trouble this one.
void tst_MapImport_DxfPasses::everyPassReadsItsOwnEntities()
{
    DxfRun points;
    points.import.searchPointDefs = true;
    points.setPointFile(drawing("0 LINE|10 abc|0 POLYLINE|0 ARC|0 LWPOLYLINE|90 0|0 POINT|10 1|20 2"));
    QVERIFY(points.run(drawing("0 POINT|10 abc|0 TEXT|10 abc|0 INSERT|20 abc|0 CIRCLE|0 ELLIPSE|" + lineEntity)));
    QCOMPARE(points.messages(), QStringList());
    QCOMPARE(points.points(),
             (QStringList{QStringLiteral("н1(0 0)"), QStringLiteral("(1 2)"), QStringLiteral("н2(10 0)")}));
    QCOMPARE(points.objects(), QStringList{lineObject});
}

void tst_MapImport_DxfPasses::failedPointsPassEndsTheImport()
{
    DxfRun dxf;
    dxf.import.searchPointDefs = true;
    dxf.import.searchObjectDefs = true;

    QVERIFY(!dxf.run(drawing(lineEntity + "|0 POINT|10 3|20 4|0 TEXT|10 3|20 4|1 т|0 POINT|10 abc")));

    QCOMPARE(dxf.messages(), QStringList{readingError(10 + 2 * 14)});
    QCOMPARE(dxf.points(), QStringList{QStringLiteral("(3 4)")});
    QCOMPARE(dxf.objects(), QStringList());
    QCOMPARE(dxf.import.pointStartNum, 1);
}

void tst_MapImport_DxfPasses::missingPointFileIsToldOnly()
{
    DxfRun dxf;
    dxf.import.searchPointDefs = true;
    dxf.import.searchObjectDefs = true;
    dxf.import.pointFileName = dxf.files.path(QStringLiteral("none.dxf"));

    QVERIFY(dxf.run(drawing("0 POINT|10 0|20 0|0 TEXT|10 0|20 0|1 Сад|" + lineEntity)));

    const QString name = QDir::toNativeSeparators(dxf.import.pointFileName);
    QCOMPARE(dxf.messages(), QStringList{QStringLiteral("Ошибка открытия файла %1").arg(name)});
    QCOMPARE(dxf.objects(), QStringList{QStringLiteral("Сад: н1(0 0) н2(10 0)")});
}

// A texts pass reads the 26 lines of the file before the objects pass begins anew; no other pass adds to the count.
void tst_MapImport_DxfPasses::lineIsCountedOverTheTextsPass_data()
{
    QTest::addColumn<bool>("searchPointDefs");
    QTest::addColumn<bool>("pointFile");
    QTest::addColumn<bool>("searchObjectDefs");
    QTest::addColumn<int>("line");

    QTest::newRow("objects") << false << false << false << 22;
    QTest::newRow("texts, objects") << false << false << true << 26 + 22;
    QTest::newRow("points, objects") << true << false << false << 22;
    QTest::newRow("points with texts, objects") << true << false << true << 22;
    QTest::newRow("points of another file, objects") << true << true << false << 22;
    QTest::newRow("points of another file, texts, objects") << true << true << true << 26 + 22;
}

void tst_MapImport_DxfPasses::lineIsCountedOverTheTextsPass()
{
    QFETCH(bool, searchPointDefs);
    QFETCH(bool, pointFile);
    QFETCH(bool, searchObjectDefs);
    QFETCH(int, line);
    DxfRun dxf;
    dxf.import.searchPointDefs = searchPointDefs;
    dxf.import.searchObjectDefs = searchObjectDefs;
    if (pointFile)
        dxf.setPointFile(drawing("0 POINT|10 1|20 2"));

    QVERIFY(!dxf.run(drawing("0 TEXT|10 0|20 0|1 Сад|0 LINE|10 abc")));

    QCOMPARE(dxf.messages(), QStringList{readingError(line)});
}

void tst_MapImport_DxfPasses::objectsPassGoesOnAfterFailedTexts_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QStringList>("objects");
    QTest::addColumn<QStringList>("messages");
    QTest::addColumn<bool>("read");
    const QStringList none;
    const QStringList one{lineObject};
    const QStringList named{QStringLiteral("Сад: н1(0 0) н2(10 0)")};
    const auto row = [](const char *name, const QStringList &lines, const QStringList &objects, int line) {
        QTest::newRow(name) << lines << objects << QStringList{readingError(line)} << true;
    };

    row("line of the same section", drawing("0 TEXT|10 0|20 0|" + lineEntity), none, 18);
    row("second line of the same section", drawing("0 TEXT|10 0|20 0|0 ARC|" + lineEntity), none, 18);
    row("line before it", drawing(lineEntity + "|0 TEXT|10 0|20 0"), none, 28);
    row("another section of entities",
        drawing(lineEntity + "|0 TEXT|10 0|20 0|0 ENDSEC|0 SECTION|2 ENTITIES|" + lineEntity), one, 28);
    row("another section at once", drawing("0 TEXT|10 0|20 0|0 SECTION|2 ENTITIES|" + lineEntity), one, 18);
    row("blank line, then another section", drawing(lineEntity + "||0 SECTION|2 ENTITIES|" + lineEntity), one, 21);
    row("texts before it name, later ones do not",
        drawing("0 TEXT|10 0|20 0|1 Сад|0 TEXT|10 5|20 0|0 SECTION|2 ENTITIES|0 TEXT|10 5|20 0|1 Лес|" + lineEntity),
        named, 26);
    row("point numbers before it are dropped",
        drawing("0 TEXT|10 5|20 0|1 12|0 TEXT|10 50|20 0|1 Сад|0 TEXT|0 SECTION|2 ENTITIES|" + lineEntity), named, 30);
    row("end of the file in a text", openDrawing(lineEntity + "|0 TEXT|10 0|20 0"), none, 26);
    row("blank line at the end", drawing(lineEntity) + pairs(""), none, 25);

    QTest::newRow("both passes fail") << drawing("0 TEXT|10 0|20 0||0 SECTION|2 ENTITIES|0 LINE|10 abc") << none
                                      << QStringList{readingError(17), readingError(25)} << false;
}

void tst_MapImport_DxfPasses::objectsPassGoesOnAfterFailedTexts()
{
    QFETCH(QStringList, lines);
    QFETCH(QStringList, objects);
    QFETCH(QStringList, messages);
    QFETCH(bool, read);
    DxfRun dxf;
    dxf.import.searchObjectDefs = true;

    QCOMPARE(dxf.run(lines), read);

    QCOMPARE(dxf.messages(), messages);
    QCOMPARE(dxf.objects(), objects);
}

// The pair stands before the first line of the objects pass, outside the section, and again at the end of the 30 lines.
void tst_MapImport_DxfPasses::pairAfterLastTextIsReadAsAnOrdinaryPair_data()
{
    QTest::addColumn<QByteArray>("lastPair");
    QTest::addColumn<QStringList>("messages");

    QTest::newRow("closing pair") << QByteArray("0 EOF") << QStringList();
    QTest::newRow("text") << QByteArray("0 TEXT") << QStringList();
    QTest::newRow("line, which is incomplete at the end") << QByteArray("0 LINE") << QStringList{readingError(60)};
    QTest::newRow("section, which has no name at the end") << QByteArray("0 SECTION") << QStringList{readingError(61)};
}

void tst_MapImport_DxfPasses::pairAfterLastTextIsReadAsAnOrdinaryPair()
{
    QFETCH(QByteArray, lastPair);
    QFETCH(QStringList, messages);
    DxfRun dxf;
    dxf.import.searchObjectDefs = true;

    QCOMPARE(dxf.run(openDrawing(lineEntity + "|0 TEXT|10 0|20 0|1 Сад|" + lastPair)), messages.isEmpty());

    QCOMPARE(dxf.messages(), messages);
    QCOMPARE(dxf.objects(), QStringList{QStringLiteral("Сад: н1(0 0) н2(10 0)")});
}

QTEST_GUILESS_MAIN(tst_MapImport_DxfPasses)
#include "tst_mapimport_dxfpasses.moc"
