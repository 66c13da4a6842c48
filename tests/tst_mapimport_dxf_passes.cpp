#include "dxftesting.h"

#include <QRandomGenerator>
#include <QRegularExpression>

/// The passes over a drawing and the designations that they find.
class tst_MapImportDxfPasses : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyPassReadsItsOwnEntities();
    void failedPointsPassEndsTheImport();
    void lineNumberContinuesAfterTextsPass();
    void objectsPassContinuesAfterFailedTexts_data();
    void objectsPassContinuesAfterFailedTexts();
    void failuresOfBothPassesAreReported();
    void pushedBackPairStartsTheObjectsPass();
    void searchOptionsSelectTheDesignations_data();
    void searchOptionsSelectTheDesignations();
    void pointTakesNearestText_data();
    void pointTakesNearestText();
    void objectTakesNearestText_data();
    void objectTakesNearestText();
    void pointNumberNamesNoObject();
    void unsortedTextsAreSearchedInFileOrder_data();
    void unsortedTextsAreSearchedInFileOrder();
    void swappingDoesNotAffectTheTextSearch();
    void verticesBecomePoints();
};

namespace {

/// Texts that reading leaves unchanged except for %%010: each character below U+1000 alone, before a digit and after
/// one, and random combinations of relevant characters.
QStringList textsAroundNumbers()
{
    QStringList texts{QStringLiteral("12%%010"), QStringLiteral("12%%010%%010"), QStringLiteral("%%01012"),
                      QStringLiteral("%%010")};
    for (int code = 1; code < 0x1000; ++code) {
        const QChar c(code);
        texts << c << c + QStringLiteral("1") << QStringLiteral("н1") + c;
    }
    QRandomGenerator random(1);
    for (int i = 0; i < 20000; ++i)
        texts.append(randomText(random, QStringLiteral("019АяЁёZa%:\u0661"), 1 + random.bounded(5)));
    const auto isChanged = [](const QString &text) {
        return text.trimmed() != text || text.contains(QRegularExpression(QStringLiteral("[\\r\\n]|%%(?!010)")));
    };
    texts.erase(std::remove_if(texts.begin(), texts.end(), isChanged), texts.end());
    return texts;
}

/// A drawing with an object at the position of each text.
QStringList drawingOf(const QStringList &texts)
{
    QStringList lines = pairs("0 SECTION|2 HEADER|0 ENDSEC|0 SECTION|2 ENTITIES");
    for (int i = 0; i < texts.size(); ++i) {
        const QByteArray x = QByteArray::number(10 * i);
        lines += pairs("0 LINE|10 " + x + "|20 0|11 " + x + "|21 0|0 TEXT|10 " + x + "|20 0|1");
        lines.append(texts.at(i));
    }
    return lines;
}

} // namespace

// The entities that belong to the other pass are invalid: reading them would fail.
void tst_MapImportDxfPasses::everyPassReadsItsOwnEntities()
{
    DxfFixture dxf;
    dxf.import.searchPointDefs = true;
    dxf.import.searchObjectDefs = true;
    dxf.setPointFile(drawing("0 LINE|10 abc|0 POLYLINE|0 FOO|0 LWPOLYLINE|90 0|0 POINT|10 1|20 2"));

    QVERIFY(dxf.run(drawing("0 POINT|10 abc|0 INSERT|20 abc|0 CIRCLE|0 ELLIPSE|0 MTEXT|" + lineEntity)));

    QCOMPARE(dxf.messages(), QStringList());
    QCOMPARE(dxf.points(), QStringLiteral("н1 0 0; - 1 2; н2 10 0"));
    QCOMPARE(dxf.objects(), QString::fromUtf8(lineObject));
}

void tst_MapImportDxfPasses::failedPointsPassEndsTheImport()
{
    DxfFixture dxf;
    dxf.import.searchPointDefs = true;
    dxf.import.searchObjectDefs = true;

    QVERIFY(!dxf.run(drawing(lineEntity + "|0 POINT|10 3|20 4|0 TEXT|10 3|20 4|1 т|0 POINT|10 abc")));

    QCOMPARE(dxf.messages(), QStringList{readError(10 + 2 * 14)});
    QCOMPARE(dxf.points(), QStringLiteral("- 3 4"));
    QCOMPARE(dxf.objects(), QString());
}

// Line numbers of the objects pass continue after the 26 lines of the texts pass. A points pass over the same file
// collects the texts as well, so there is no texts pass.
void tst_MapImportDxfPasses::lineNumberContinuesAfterTextsPass()
{
    for (const bool searchPointDefs : {false, true}) {
        DxfFixture dxf;
        dxf.import.searchPointDefs = searchPointDefs;
        dxf.import.searchObjectDefs = true;

        QVERIFY(!dxf.run(drawing("0 TEXT|10 0|20 0|1 Сад|0 LINE|10 abc")));

        QCOMPARE(dxf.messages(), QStringList{readError(searchPointDefs ? 22 : 26 + 22)});
    }
}

void tst_MapImportDxfPasses::objectsPassContinuesAfterFailedTexts_data()
{
    QTest::addColumn<QByteArray>("entities");
    QTest::addColumn<QString>("objects");
    QTest::addColumn<int>("errorLine");
    const QByteArray section = "|0 SECTION|2 ENTITIES|" + lineEntity;
    const QString named = QStringLiteral("Сад [н1 0 0, н2 10 0]");

    QTest::newRow("rest of the section is ignored")
        << lineEntity + "|0 TEXT|10 0|20 0|0 FOO|" + lineEntity << QString() << 28;
    QTest::newRow("next section is read")
        << lineEntity + "|0 TEXT|10 0|20 0|0 ENDSEC" + section << QString::fromUtf8(lineObject) << 28;
    QTest::newRow("earlier texts name objects")
        << "0 TEXT|10 0|20 0|1 Сад|0 TEXT|10 5|20 0|0 FOO|0 TEXT|10 5|20 0|1 Лес" + section << named << 26;
    QTest::newRow("earlier point numbers name no objects")
        << "0 TEXT|10 5|20 0|1 12|0 TEXT|10 50|20 0|1 Сад|0 TEXT" + section << named << 30;
}

void tst_MapImportDxfPasses::objectsPassContinuesAfterFailedTexts()
{
    QFETCH(QByteArray, entities);
    QFETCH(int, errorLine);
    DxfFixture dxf;
    dxf.import.searchObjectDefs = true;

    QVERIFY(dxf.run(drawing(entities)));

    QCOMPARE(dxf.messages(), QStringList{readError(errorLine)});
    QTEST(dxf.objects(), "objects");
}

void tst_MapImportDxfPasses::failuresOfBothPassesAreReported()
{
    DxfFixture dxf;
    dxf.import.searchObjectDefs = true;

    QVERIFY(!dxf.run(drawing("0 TEXT|10 0|20 0||0 SECTION|2 ENTITIES|0 LINE|10 abc")));

    QCOMPARE(dxf.messages(), (QStringList{readError(17), readError(25)}));
}

// The objects pass begins with the pushed-back "0 LINE" and ignores it, as it is outside of any section. When the pass
// reads the LINE again, the file ends in it, at line 60 after two readings of 30 lines.
void tst_MapImportDxfPasses::pushedBackPairStartsTheObjectsPass()
{
    DxfFixture dxf;
    dxf.import.searchObjectDefs = true;

    QVERIFY(!dxf.run(openDrawing(lineEntity + "|0 TEXT|10 0|20 0|1 Сад|0 LINE")));

    QCOMPARE(dxf.messages(), QStringList{readError(60)});
    QCOMPARE(dxf.objects(), QStringLiteral("Сад [н1 0 0, н2 10 0]"));
}

void tst_MapImportDxfPasses::searchOptionsSelectTheDesignations_data()
{
    QTest::addColumn<bool>("searchPointDefs");
    QTest::addColumn<QByteArray>("pointEntities");
    QTest::addColumn<bool>("searchObjectDefs");
    QTest::addColumn<QByteArray>("objectEntities");
    QTest::addColumn<QString>("object");
    const bool on = true;
    const bool off = false;
    const QByteArray noFile;
    const QByteArray noTexts = "0 POINT|10 0|20 0|" + lineEntity;
    const QByteArray noPoints = "0 TEXT|10 0|20 0|1 11|0 TEXT|10 5|20 0|1 Лес|" + lineEntity;
    const QByteArray all = "0 POINT|10 0|20 0|" + noPoints;
    const QByteArray file = "0 POINT|10 10|20 0|0 TEXT|10 10|20 0|1 22|0 TEXT|10 5|20 0|1 Сад";
    const auto row = [](const char *name, bool points, const QByteArray &pointEntities, bool objects,
                        const QByteArray &objectEntities, const char *object) {
        QTest::newRow(name) << points << pointEntities << objects << objectEntities << QString::fromUtf8(object);
    };

    row("no search", off, file, off, all, "ЗУ1 [н1 0 0, н2 10 0]");
    row("objects", off, noFile, on, all, "Лес [н1 0 0, н2 10 0]");
    row("objects, unused file of points", off, file, on, all, "Лес [н1 0 0, н2 10 0]");
    row("points", on, noFile, off, all, "ЗУ1 [11 0 0, н1 10 0]");
    row("points and objects", on, noFile, on, all, "Лес [11 0 0, н1 10 0]");
    row("points and objects, no texts", on, noFile, on, noTexts, "ЗУ1 [- 0 0, н1 10 0]");
    row("points and objects, no points", on, noFile, on, noPoints, "Лес [н1 0 0, н2 10 0]");
    row("file of points", on, file, off, all, "ЗУ1 [н1 0 0, 22 10 0]");
    row("file of points, objects", on, file, on, all, "Лес [н1 0 0, 22 10 0]");
    row("file of points, objects, no texts", on, file, on, noTexts, "ЗУ1 [н1 0 0, 22 10 0]");
}

void tst_MapImportDxfPasses::searchOptionsSelectTheDesignations()
{
    QFETCH(bool, searchPointDefs);
    QFETCH(QByteArray, pointEntities);
    QFETCH(bool, searchObjectDefs);
    QFETCH(QByteArray, objectEntities);
    DxfFixture dxf;
    dxf.import.searchPointDefs = searchPointDefs;
    dxf.import.searchObjectDefs = searchObjectDefs;
    if (!pointEntities.isEmpty())
        dxf.setPointFile(drawing(pointEntities));

    QVERIFY(dxf.run(drawing(objectEntities)));

    QCOMPARE(dxf.messages(), QStringList());
    QTEST(dxf.objects(), "object");
}

void tst_MapImportDxfPasses::pointTakesNearestText_data()
{
    addRunColumns();
    const QByteArray point = "0 POINT|10 0|20 0|";

    addRun("one distant text for all points", drawing(point + "0 POINT|10 1|20 0|0 TEXT|10 1000000|20 1|1 т"),
           "т 0 0; т 1 0");
    addRun("one text each, from right to left",
           drawing("0 TEXT|10 9|20 0|1 б|0 TEXT|10 -1|20 0|1 12|0 POINT|10 10|20 0|0 POINT|10 0|20 0"),
           "12 0 0; б 10 0");
    addRun("no text at a finite distance", drawing(point + "0 TEXT|10 inf|20 0|1 т|0 TEXT|10 0|20 nan|1 т"), "- 0 0");
    addRun("point that is not a number", drawing("0 POINT|10 nan|20 0|0 TEXT|10 0|20 0|1 т"), "- nan 0");
}

void tst_MapImportDxfPasses::pointTakesNearestText()
{
    DxfFixture dxf;
    dxf.import.searchPointDefs = true;

    compareRun(dxf, &DxfFixture::points);
}

void tst_MapImportDxfPasses::objectTakesNearestText_data()
{
    QTest::addColumn<QByteArray>("texts");
    QTest::addColumn<QString>("defs");

    // The centroids are (5, 0), (5, 5) and (100, 0).
    QTest::newRow("one text each, from right to left")
        << QByteArray("0 TEXT|10 99|20 0|1 в:|0 TEXT|10 5|20 6|1 б:|0 TEXT|10 5|20 1|1 а:")
        << QStringLiteral("а: б: в:");
    QTest::newRow("nearest to the centroid, not to a vertex")
        << QByteArray("0 TEXT|10 0|20 11|1 а:|0 TEXT|10 8|20 5|1 Сад") << QStringLiteral("Сад Сад Сад");
    QTest::newRow("other texts take precedence over point numbers")
        << QByteArray("0 TEXT|10 5|20 0|1 15|0 TEXT|10 100|20 0|1 н16|0 TEXT|10 -90|20 0|1 Сад")
        << QStringLiteral("Сад Сад Сад");
    QTest::newRow("only point numbers") << QByteArray("0 TEXT|10 190|20 0|1 16|0 TEXT|10 5|20 2|1 15")
                                        << QStringLiteral("15 15 16");
    QTest::newRow("nearest text is empty")
        << QByteArray("0 TEXT|10 5|20 2|1 Сад|0 TEXT|10 100|20 2|1 ") << QStringLiteral("Сад Сад ЗУ1");
    QTest::newRow("no text at a finite distance")
        << QByteArray("0 TEXT|10 inf|20 0|1 Сад|0 TEXT|10 0|20 nan|1 Лес") << QStringLiteral("ЗУ1 ЗУ2 ЗУ3");
}

void tst_MapImportDxfPasses::objectTakesNearestText()
{
    QFETCH(QByteArray, texts);
    DxfFixture dxf;
    dxf.import.searchObjectDefs = true;
    const QByteArray square = "0 LWPOLYLINE|90 4|70 1|10 0|20 0|10 10|20 0|10 10|20 10|10 0|20 10";
    const QByteArray polyline = "0 POLYLINE|0 VERTEX|10 90|20 0|0 VERTEX|10 110|20 0|0 SEQEND";

    QVERIFY(dxf.run(drawing(lineEntity + "|" + square + "|" + polyline + "|" + texts)));

    QStringList defs;
    for (const DefPolygon &object : qAsConst(dxf.polygons))
        defs.append(object.def);
    QTEST(defs.join(QLatin1Char(' ')), "defs");
}

void tst_MapImportDxfPasses::pointNumberNamesNoObject()
{
    const QRegularExpression pointNumber(QStringLiteral("^[A-Za-zА-Яа-яЁё]?\\d+$"));
    QStringList texts = textsAroundNumbers();
    DxfFixture dxf;
    dxf.import.searchObjectDefs = true;

    QVERIFY(dxf.run(drawingOf(texts)));

    QCOMPARE(dxf.polygons.size(), texts.size());
    texts.replaceInStrings(QStringLiteral("%%010"), QStringLiteral("\n"));
    QStringList wrong;
    for (int i = 0; i < texts.size(); ++i) {
        const bool isNamed = dxf.polygons.at(i).def == texts.at(i);
        if (isNamed == pointNumber.match(texts.at(i)).hasMatch())
            wrong.append(texts.at(i));
    }
    QCOMPARE(wrong, QStringList());
}

// The centroid is (4.5, 0). In file order, with texts at x = 4, 100, 0, 50, the bisection ends at 50. The text before
// it, at 0, is nearer, and the walk to the left stops at 100. If the texts are sorted, the one at 4 is found.
void tst_MapImportDxfPasses::unsortedTextsAreSearchedInFileOrder_data()
{
    QTest::addColumn<bool>("searchPointDefs");
    QTest::addColumn<QByteArray>("entities");
    QTest::addColumn<QString>("def");
    const QString sorted = QStringLiteral("четыре");
    const QString unsorted = QStringLiteral("нуль");

    QTest::newRow("texts pass sorts") << false << QByteArray() << sorted;
    QTest::newRow("points pass sorts") << true << QByteArray("0 POINT|10 70|20 70|") << sorted;
    QTest::newRow("points pass without points") << true << QByteArray("0 TEXT|10 4.5|20 0|1 н1|") << unsorted;
    QTest::newRow("failed texts pass") << false << QByteArray("0 TEXT|0 SECTION|2 ENTITIES|") << unsorted;
}

void tst_MapImportDxfPasses::unsortedTextsAreSearchedInFileOrder()
{
    QFETCH(bool, searchPointDefs);
    QFETCH(QByteArray, entities);
    DxfFixture dxf;
    dxf.import.searchPointDefs = searchPointDefs;
    dxf.import.searchObjectDefs = true;

    QVERIFY(dxf.run(drawing("0 TEXT|10 4|20 0|1 четыре|0 TEXT|10 100|20 0|1 сто|0 TEXT|10 0|20 0|1 нуль"
                            "|0 TEXT|10 50|20 0|1 полсотни|" +
                            entities + "0 LINE|10 4|20 0|11 5|21 0")));

    QTEST(dxf.polygons.value(0).def, "def");
}

void tst_MapImportDxfPasses::swappingDoesNotAffectTheTextSearch()
{
    DxfFixture dxf;
    dxf.import.swapXY = true;
    dxf.import.searchPointDefs = true;
    dxf.import.searchObjectDefs = true;

    QVERIFY(dxf.run(drawing("0 TEXT|10 5|20 100|1 Сад|0 TEXT|10 100|20 5|1 Лес|0 TEXT|10 0|20 100|1 12"
                            "|0 POINT|10 0|20 100|0 LINE|10 0|20 100|11 10|21 100")));

    QCOMPARE(dxf.objects(), QStringLiteral("Сад [12 100 0, н1 100 10]"));
    QCOMPARE(dxf.points(), QStringLiteral("12 0 100; н1 10 100"));
}

void tst_MapImportDxfPasses::verticesBecomePoints()
{
    DxfFixture dxf;
    QVERIFY(dxf.run(drawing(lineEntity)));
    dxf.polygons.first().contours.append({{QStringLiteral("б"), 10.005, 0.01}, {QStringLiteral("а"), 3, 3}});
    dxf.polygons.append(DefPolygon{QStringLiteral("Сад"), {{{QStringLiteral("в"), -1, 0}}}});

    dxf.import.pointsFromPolygons();

    QCOMPARE(dxf.points(), QStringLiteral("в -1 0; н1 0 0; а 3 3; н2 10 0"));
}

QTEST_GUILESS_MAIN(tst_MapImportDxfPasses)
#include "tst_mapimport_dxf_passes.moc"
