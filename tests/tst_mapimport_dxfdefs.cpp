#include "dxftesting.h"

#include <QTest>

/// Designations of points and objects.
class tst_MapImport_DxfDefs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void designationsComeFromTheirFiles_data();
    void designationsComeFromTheirFiles();
    void pointTakesNearestText_data();
    void pointTakesNearestText();
    void pointNumberNamesNoObject_data();
    void pointNumberNamesNoObject();
    void objectTakesNearestText_data();
    void objectTakesNearestText();
    void objectsAreNumberedInFileOrder();
    void textsAreSearchedInTheOrderTheyHave_data();
    void textsAreSearchedInTheOrderTheyHave();
    void exchangeOfXAndYLeavesTextsAlone_data();
    void exchangeOfXAndYLeavesTextsAlone();
    void verticesBecomePoints();
};

void tst_MapImport_DxfDefs::designationsComeFromTheirFiles_data()
{
    QTest::addColumn<bool>("searchPointDefs");
    QTest::addColumn<QByteArray>("pointEntities");
    QTest::addColumn<bool>("searchObjectDefs");
    QTest::addColumn<QByteArray>("objectEntities");
    QTest::addColumn<QString>("object");
    const bool on = true;
    const bool off = false;
    const QByteArray none;
    const QByteArray noTexts = "0 POINT|10 0|20 0|" + lineEntity;
    const QByteArray noPoints = "0 TEXT|10 0|20 0|1 11|0 TEXT|10 5|20 0|1 Лес|" + lineEntity;
    const QByteArray all = "0 POINT|10 0|20 0|" + noPoints;
    const QByteArray pointNoTexts = "0 POINT|10 10|20 0";
    const QByteArray pointNoPoints = "0 TEXT|10 10|20 0|1 22|0 TEXT|10 5|20 0|1 Сад";
    const QByteArray point = pointNoTexts + "|" + pointNoPoints;
    const auto row = [](const char *name, bool points, const QByteArray &pointEntities, bool objects,
                        const QByteArray &objectEntities, const char *object) {
        QTest::newRow(name) << points << pointEntities << objects << objectEntities << QString::fromUtf8(object);
    };

    row("nothing", off, none, off, all, "ЗУ1: н1(0 0) н2(10 0)");
    row("nothing, with a file of points", off, point, off, all, "ЗУ1: н1(0 0) н2(10 0)");
    row("objects", off, none, on, all, "Лес: н1(0 0) н2(10 0)");
    row("objects, with a file of points", off, point, on, all, "Лес: н1(0 0) н2(10 0)");
    row("objects, no texts", off, none, on, noTexts, "ЗУ1: н1(0 0) н2(10 0)");

    row("points", on, none, off, all, "ЗУ1: 11(0 0) н1(10 0)");
    row("points, no texts", on, none, off, noTexts, "ЗУ1: (0 0) н1(10 0)");
    row("points, no points", on, none, off, noPoints, "ЗУ1: н1(0 0) н2(10 0)");
    row("points and objects", on, none, on, all, "Лес: 11(0 0) н1(10 0)");
    row("points and objects, no texts", on, none, on, noTexts, "ЗУ1: (0 0) н1(10 0)");
    row("points and objects, no points", on, none, on, noPoints, "Лес: н1(0 0) н2(10 0)");

    row("points of their file", on, point, off, all, "ЗУ1: н1(0 0) 22(10 0)");
    row("points of their file, no texts there", on, pointNoTexts, off, all, "ЗУ1: н1(0 0) (10 0)");
    row("points of their file, no points there", on, pointNoPoints, off, all, "ЗУ1: н1(0 0) н2(10 0)");
    row("points of their file and objects", on, point, on, all, "Лес: н1(0 0) 22(10 0)");
    row("points of their file and objects, no texts there", on, pointNoTexts, on, all, "Лес: н1(0 0) (10 0)");
    row("points of their file and objects, no points there", on, pointNoPoints, on, all, "Лес: н1(0 0) н2(10 0)");
    row("points of their file and objects, no texts here", on, point, on, noTexts, "ЗУ1: н1(0 0) 22(10 0)");
    row("points of their file and objects, no points here", on, point, on, noPoints, "Лес: н1(0 0) 22(10 0)");
}

void tst_MapImport_DxfDefs::designationsComeFromTheirFiles()
{
    QFETCH(bool, searchPointDefs);
    QFETCH(QByteArray, pointEntities);
    QFETCH(bool, searchObjectDefs);
    QFETCH(QByteArray, objectEntities);
    QFETCH(QString, object);
    DxfRun dxf;
    dxf.import.searchPointDefs = searchPointDefs;
    dxf.import.searchObjectDefs = searchObjectDefs;
    if (!pointEntities.isEmpty())
        dxf.setPointFile(drawing(pointEntities));

    QVERIFY(dxf.run(drawing(objectEntities)));

    QCOMPARE(dxf.messages(), QStringList());
    QCOMPARE(dxf.objects(), QStringList{object});
}

void tst_MapImport_DxfDefs::pointTakesNearestText_data()
{
    QTest::addColumn<QByteArray>("entities");
    QTest::addColumn<QStringList>("points");
    const QByteArray point = "0 POINT|10 0|20 0|";
    const auto row = [&point](const char *name, const QByteArray &texts, const QString &described) {
        QTest::newRow(name) << point + texts << QStringList{described};
    };
    const QString unnamed = QStringLiteral("(0 0)");

    QTest::newRow("one text for all, however far") << point + "0 POINT|10 1|20 0|0 TEXT|10 1000000|20 1|1 т"
                                                   << QStringList{QStringLiteral("т(0 0)"), QStringLiteral("т(1 0)")};
    QTest::newRow("each its own, from right to left")
        << QByteArray("0 TEXT|10 9|20 0|1 б|0 TEXT|10 -1|20 0|1 а|0 POINT|10 10|20 0|0 POINT|10 0|20 0")
        << QStringList{QStringLiteral("а(0 0)"), QStringLiteral("б(10 0)")};
    row("by the distance, not by x", "0 TEXT|10 1|20 100|1 а|0 TEXT|10 5|20 0|1 б", QStringLiteral("б(0 0)"));
    row("point numbers and other texts alike", "0 TEXT|10 1|20 0|1 Сад|0 TEXT|10 2|20 0|1 12",
        QStringLiteral("Сад(0 0)"));
    row("empty text", "0 TEXT|10 1|20 0|1 |0 TEXT|10 2|20 0|1 12", unnamed);
    row("no text", "0 ARC", unnamed);

    row("text at infinite x", "0 TEXT|10 inf|20 0|1 т", unnamed);
    row("text at negative infinite x", "0 TEXT|10 -inf|20 0|1 т", unnamed);
    row("text at infinite y", "0 TEXT|10 0|20 inf|1 т", unnamed);
    row("text whose x is not a number", "0 TEXT|10 nan|20 0|1 т", unnamed);
    row("text whose y is not a number", "0 TEXT|10 0|20 nan|1 т", unnamed);
    row("text whose distance overflows", "0 TEXT|10 1e200|20 0|1 т", unnamed);
    row("text among such",
        "0 TEXT|10 nan|20 0|1 а|0 TEXT|10 1000|20 0|1 т|0 TEXT|10 -inf|20 0|1 б|0 TEXT|10 0|20 nan|1 в",
        QStringLiteral("т(0 0)"));
    QTest::newRow("point whose x is not a number")
        << QByteArray("0 POINT|10 nan|20 0|0 TEXT|10 0|20 0|1 т") << QStringList{QStringLiteral("(nan 0)")};
}

void tst_MapImport_DxfDefs::pointTakesNearestText()
{
    QFETCH(QByteArray, entities);
    QFETCH(QStringList, points);
    DxfRun dxf;
    dxf.import.searchPointDefs = true;

    QVERIFY(dxf.run(drawing(entities)));

    QCOMPARE(dxf.messages(), QStringList());
    QCOMPARE(dxf.points(), points);
}

void tst_MapImport_DxfDefs::pointNumberNamesNoObject_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("def");
    const QString other = QStringLiteral("Сад");

    for (const char *text :
         {"12", "0", "00000000000000000012", "н12", "N5", "A1", "Z1", "a1", "z1", "А1", "Я1", "а1", "я1", "Ё7", "ё7"})
        QTest::newRow(text) << QString::fromUtf8(text) << other;
    for (const char *text : {"ЗУ1",     "12а",     "1.5",     ":ЗУ1",    "н 12",  "50:01:0000000:12",
                             "н",       "-1",      "_1",      "1 2",     "н1н",   "нн1",
                             "@1",      "[1",      "`1",      "{1",      "/1",    ":1",
                             "\u040F1", "\u00E91", "\u04041", "\u04501", "\u0663"})
        QTest::newRow(text) << QString::fromUtf8(text) << QString::fromUtf8(text);
    QTest::newRow("empty text") << QString() << QStringLiteral("ЗУ1");
    QTest::newRow("number and a line feed") << QStringLiteral("12%%010") << other;
    QTest::newRow("number and two line feeds") << QStringLiteral("12%%010%%010") << QStringLiteral("12\n\n");
    QTest::newRow("line feed and a number") << QStringLiteral("%%01012") << QStringLiteral("\n12");
    QTest::newRow("number and a blank") << QStringLiteral("12%%032") << QStringLiteral("12 ");
    QTest::newRow("number of decoded digits") << QStringLiteral("%%049%%050") << other;
}

void tst_MapImport_DxfDefs::pointNumberNamesNoObject()
{
    QFETCH(QString, text);
    QFETCH(QString, def);
    DxfRun dxf;
    dxf.import.searchObjectDefs = true;

    QVERIFY(dxf.run(drawing("0 TEXT|10 5|20 0|1 " + text.toUtf8() + "|0 TEXT|10 500|20 0|1 Сад|" + lineEntity)));

    QCOMPARE(dxf.messages(), QStringList());
    QCOMPARE(dxf.polygons.value(0).def, def);
}

void tst_MapImport_DxfDefs::objectTakesNearestText_data()
{
    QTest::addColumn<QByteArray>("texts");
    QTest::addColumn<QStringList>("defs");
    const QStringList numbered{QStringLiteral("ЗУ1"), QStringLiteral("ЗУ2"), QStringLiteral("ЗУ3")};
    const QString name = QStringLiteral("Сад");
    const QStringList named{name, name, name};

    // The centres are (5, 0), (5, 5) and (100, 0).
    QTest::newRow("none") << QByteArray("0 ARC") << numbered;
    QTest::newRow("one for all") << QByteArray("0 TEXT|10 -1000|20 0|1 Сад") << named;
    QTest::newRow("each its own, from right to left")
        << QByteArray("0 TEXT|10 99|20 0|1 в:|0 TEXT|10 5|20 6|1 б:|0 TEXT|10 5|20 1|1 а:")
        << QStringList{QStringLiteral("а:"), QStringLiteral("б:"), QStringLiteral("в:")};
    QTest::newRow("nearest to the centre, not to a vertex")
        << QByteArray("0 TEXT|10 0|20 11|1 а:|0 TEXT|10 8|20 5|1 Сад") << named;
    QTest::newRow("point numbers in between")
        << QByteArray("0 TEXT|10 5|20 0|1 15|0 TEXT|10 100|20 0|1 16|0 TEXT|10 -90|20 0|1 Сад") << named;
    QTest::newRow("only point numbers") << QByteArray("0 TEXT|10 5|20 2|1 15|0 TEXT|10 200|20 0|1 16")
                                        << QStringList{QStringLiteral("15"), QStringLiteral("15"),
                                                       QStringLiteral("15")};
    QTest::newRow("only point numbers, each its own")
        << QByteArray("0 TEXT|10 190|20 0|1 16|0 TEXT|10 5|20 2|1 15")
        << QStringList{QStringLiteral("15"), QStringLiteral("15"), QStringLiteral("16")};
    QTest::newRow("nearest is empty for one of them")
        << QByteArray("0 TEXT|10 5|20 2|1 Сад|0 TEXT|10 100|20 2|1 ") << QStringList{name, name, QStringLiteral("ЗУ1")};
    QTest::newRow("infinitely far") << QByteArray("0 TEXT|10 inf|20 0|1 Сад|0 TEXT|10 0|20 nan|1 Лес") << numbered;
}

void tst_MapImport_DxfDefs::objectTakesNearestText()
{
    QFETCH(QByteArray, texts);
    QFETCH(QStringList, defs);
    DxfRun dxf;
    dxf.import.searchObjectDefs = true;
    const QByteArray square = "0 LWPOLYLINE|90 4|70 1|10 0|20 0|10 10|20 0|10 10|20 10|10 0|20 10";
    const QByteArray polyline = "0 POLYLINE|0 VERTEX|10 90|20 0|0 VERTEX|10 110|20 0|0 SEQEND";

    QVERIFY(dxf.run(drawing(lineEntity + "|" + square + "|" + polyline + "|" + texts)));

    QCOMPARE(dxf.messages(), QStringList());
    QStringList found;
    for (const DefPolygon &object : qAsConst(dxf.polygons))
        found.append(object.def);
    QCOMPARE(found, defs);
}

void tst_MapImport_DxfDefs::objectsAreNumberedInFileOrder()
{
    DxfRun dxf;
    dxf.import.objectStartNum = 5;

    QVERIFY(dxf.run(drawing("0 LWPOLYLINE|90 2|10 9|20 0|10 8|20 0|0 TEXT|10 9|20 0|1 Сад|" + lineEntity +
                            "|0 POLYLINE|0 VERTEX|10 7|20 0|0 VERTEX|10 6|20 0|0 SEQEND")));

    QCOMPARE(dxf.messages(), QStringList());
    QCOMPARE(dxf.objects(),
             (QStringList{QStringLiteral("ЗУ5: н1(9 0) н2(8 0)"), QStringLiteral("ЗУ6: н3(0 0) н4(10 0)"),
                          QStringLiteral("ЗУ7: н5(7 0) н6(6 0)")}));
    QCOMPARE(dxf.import.objectStartNum, 8);
}

// The object's centre is (4.5, 0). Among texts with x = 4, 100, 0, 50 the bisection stops at 50, the one before it is
// taken, and the walk on to the left ends at 100; in their order by x the text at 4 is found.
void tst_MapImport_DxfDefs::textsAreSearchedInTheOrderTheyHave_data()
{
    QTest::addColumn<bool>("searchPointDefs");
    QTest::addColumn<QByteArray>("entities");
    QTest::addColumn<QString>("def");
    QTest::addColumn<QStringList>("messages");
    const QByteArray texts = "0 TEXT|10 4|20 0|1 четыре|0 TEXT|10 100|20 0|1 сто|0 TEXT|10 0|20 0|1 нуль"
                             "|0 TEXT|10 50|20 0|1 полсотни|";
    const QByteArray line = "0 LINE|10 4|20 0|11 5|21 0";
    const QStringList none;

    QTest::newRow("texts pass sorts") << false << texts + line << QStringLiteral("четыре") << none;
    QTest::newRow("points sort") << true << texts + "0 POINT|10 70|20 70|" + line << QStringLiteral("четыре") << none;
    QTest::newRow("no points, unsorted") << true << texts + line << QStringLiteral("нуль") << none;
    QTest::newRow("point numbers are dropped without sorting")
        << true << "0 TEXT|10 4.5|20 0|1 12|" + texts + "0 TEXT|10 4.5|20 0|1 н1|" + line << QStringLiteral("нуль")
        << none;
    QTest::newRow("failed texts pass, unsorted") << false << texts + "0 TEXT|0 SECTION|2 ENTITIES|" + line
                                                 << QStringLiteral("нуль") << QStringList{readingError(10 + 2 * 18)};
}

void tst_MapImport_DxfDefs::textsAreSearchedInTheOrderTheyHave()
{
    QFETCH(bool, searchPointDefs);
    QFETCH(QByteArray, entities);
    QFETCH(QString, def);
    QFETCH(QStringList, messages);
    DxfRun dxf;
    dxf.import.searchPointDefs = searchPointDefs;
    dxf.import.searchObjectDefs = true;

    QVERIFY(dxf.run(drawing(entities)));

    QCOMPARE(dxf.messages(), messages);
    QCOMPARE(dxf.objects(), QStringList{def + QStringLiteral(": н1(4 0) н2(5 0)")});
}

void tst_MapImport_DxfDefs::exchangeOfXAndYLeavesTextsAlone_data()
{
    QTest::addColumn<bool>("swapXY");
    QTest::addColumn<QString>("object");
    QTest::newRow("as read") << false << QStringLiteral("Сад: 12(0 100) н1(10 100)");
    QTest::newRow("exchanged") << true << QStringLiteral("Сад: 12(100 0) н1(100 10)");
}

void tst_MapImport_DxfDefs::exchangeOfXAndYLeavesTextsAlone()
{
    QFETCH(bool, swapXY);
    QFETCH(QString, object);
    DxfRun dxf;
    dxf.import.swapXY = swapXY;
    dxf.import.searchPointDefs = true;
    dxf.import.searchObjectDefs = true;

    QVERIFY(dxf.run(drawing("0 TEXT|10 5|20 100|1 Сад|0 TEXT|10 100|20 5|1 Лес|0 TEXT|10 0|20 100|1 12"
                            "|0 POINT|10 0|20 100|0 LINE|10 0|20 100|11 10|21 100")));

    QCOMPARE(dxf.messages(), QStringList());
    QCOMPARE(dxf.objects(), QStringList{object});
    QCOMPARE(dxf.points(), (QStringList{QStringLiteral("12(0 100)"), QStringLiteral("н1(10 100)")}));
}

void tst_MapImport_DxfDefs::verticesBecomePoints()
{
    DxfRun dxf;
    QVERIFY(dxf.run(drawing(lineEntity)));
    QCOMPARE(dxf.points(), (QStringList{QStringLiteral("н1(0 0)"), QStringLiteral("н2(10 0)")}));

    dxf.polygons.first().contours.append({{QStringLiteral("б"), 10.005, 0.01}, {QStringLiteral("а"), 3, 3}});
    dxf.polygons.append(DefPolygon{QStringLiteral("Сад"), {{{QStringLiteral("в"), -1, 0}}}});
    dxf.import.pointsFromPolygons();

    QCOMPARE(dxf.points(), (QStringList{QStringLiteral("в(-1 0)"), QStringLiteral("н1(0 0)"), QStringLiteral("а(3 3)"),
                                        QStringLiteral("н2(10 0)")}));
    QCOMPARE(dxf.import.pointStartNum, 3);
    QCOMPARE(dxf.polygons.size(), 2);
}

QTEST_GUILESS_MAIN(tst_MapImport_DxfDefs)
#include "tst_mapimport_dxfdefs.moc"
