#include "convertreport.h"
#include "converttesting.h"

/// Geometries, names and numbers of features.
class tst_PrepareConvert : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void geometriesBecomeObjects_data();
    void geometriesBecomeObjects();
    void unusableGeometriesAreLeftOut_data();
    void unusableGeometriesAreLeftOut();
    void coordinatesKeepFifteenDigits();
    void fieldsNameObjectsAndPoints();
    void idIsTheSecondField();
    void missingDesignationIsLeftToTheImport();
    void namesAreAdaptedToAField_data();
    void namesAreAdaptedToAField();
    void vertexTakesTheNumberOfAPoint();
    void unusablePointsAreLeftOut_data();
    void unusablePointsAreLeftOut();
    void reportIsReadable();
    void nounsHaveTheRightNumber();
};

namespace {

const char *const triangle = "[[[0,0],[4,0],[4,3],[0,0]]]";
constexpr auto triangleObject = "ЗУ1 [н1 0 0, н2 4 0, н3 4 3, н1 0 0]";

} // namespace

void tst_PrepareConvert::geometriesBecomeObjects_data()
{
    QTest::addColumn<QString>("shape");
    QTest::addColumn<QString>("objects");
    QTest::addColumn<QString>("leftOut");
    const auto row = [](const char *name, const QString &shape, const char *objects, const char *leftOut = "") {
        QTest::newRow(name) << shape << QString::fromUtf8(objects) << QString::fromLatin1(leftOut);
    };

    row("polygon", geometry("Polygon", triangle), triangleObject);
    row("ring that is not closed", geometry("Polygon", "[[[0,0],[4,0],[4,3]]]"), triangleObject);
    row("hole", geometry("Polygon", "[[[0,0],[9,0],[9,9],[0,0]],[[2,1],[3,1],[3,2],[2,1]]]"),
        "ЗУ1 [н1 0 0, н2 9 0, н3 9 9, н1 0 0] [н4 2 1, н5 3 1, н6 3 2, н4 2 1]");
    row("several polygons", geometry("MultiPolygon", "[[[[0,0],[4,0],[4,3],[0,0]]],[[[9,9],[8,9],[8,8],[9,9]]]]"),
        "ЗУ1 [н1 0 0, н2 4 0, н3 4 3, н1 0 0] [н4 9 9, н5 8 9, н6 8 8, н4 9 9]");
    row("line of two vertices", geometry("LineString", "[[0,0],[4,0]]"), "ЗУ1 [н1 0 0, н2 4 0]");
    row("line of three vertices", geometry("LineString", "[[0,0],[4,0],[4,3]]"), "ЗУ1 [н1 0 0, н2 4 0, н3 4 3]");
    row("several lines", geometry("MultiLineString", "[[[0,0],[4,0]],[[4,3],[5,5],[6,6]]]"),
        "ЗУ1 [н1 0 0, н2 4 0] [н3 4 3, н4 5 5, н5 6 6]");
    row("one of several lines", geometry("MultiLineString", "[[[0,0],[4,0]]]"), "ЗУ1 [н1 0 0, н2 4 0]");
    row("collection",
        QStringLiteral("{\"type\":\"GeometryCollection\",\"geometries\":[%1,%2,%3]}")
            .arg(geometry("LineString", "[[7,7],[8,8]]"), geometry("Polygon", triangle), geometry("Point", "[9,9]")),
        "ЗУ1 [н1 0 0, н2 4 0, н3 4 3, н1 0 0]; ЗУ2 [н4 7 7, н5 8 8]");
    row("heights", geometry("LineString", "[[0,0,5],[4,0,5]]"), "ЗУ1 [н1 0 0, н2 4 0]");
    row("hole of two corners", geometry("Polygon", "[[[0,0],[4,0],[4,3],[0,0]],[[1,1],[1,1],[2,1],[1,1]]]"),
        triangleObject, "short-area 1");
}

void tst_PrepareConvert::geometriesBecomeObjects()
{
    QFETCH(QString, shape);
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.geojson"), geoJson({feature(shape)}));

    QVERIFY(fixture.convert(QStringLiteral("a.geojson")));

    QTEST(fixture.imported(), "objects");
    QTEST(fixture.list("leftOut"), "leftOut");
}

void tst_PrepareConvert::unusableGeometriesAreLeftOut_data()
{
    QTest::addColumn<QString>("shape");
    QTest::addColumn<QString>("leftOut");
    const auto row = [](const char *name, const QString &shape, const char *leftOut) {
        QTest::newRow(name) << shape << QString::fromLatin1(leftOut);
    };

    row("area of two corners", geometry("Polygon", "[[[0,0],[4,0],[0,0]]]"), "short-area 1");
    row("line of one vertex", geometry("LineString", "[[4,0]]"), "short-line 1");
    row("no geometry", QStringLiteral("null"), "no-geometry 1");
    row("empty geometry", geometry("Polygon", "[]"), "no-geometry 1");
    row("empty line", geometry("LineString", "[]"), "no-geometry 1");
    row("infinite coordinate", geometry("LineString", "[[0,0],[1e999,0]]"), "not-finite 1");
}

void tst_PrepareConvert::unusableGeometriesAreLeftOut()
{
    QFETCH(QString, shape);
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.geojson"), geoJson({feature(shape), feature(geometry("Polygon", triangle))}));

    QVERIFY(fixture.convert(QStringLiteral("a.geojson")));

    QCOMPARE(fixture.imported(), QString::fromUtf8(triangleObject));
    QTEST(fixture.list("leftOut"), "leftOut");
}

void tst_PrepareConvert::coordinatesKeepFifteenDigits()
{
    ConvertFixture fixture;
    fixture.files.write(
        QStringLiteral("a.geojson"),
        geoJson({feature(geometry("LineString", "[[12345678.123456789,-0.000001],[0.1,12345678.1234561]]"))}));

    QVERIFY(fixture.convert(QStringLiteral("a.geojson")));

    QFile mif(fixture.path(QStringLiteral("out.mif")));
    QVERIFY(mif.open(QIODevice::ReadOnly));
    QVERIFY(mif.readAll().contains("Line 12345678.1234568 -1e-06 0.1 12345678.1234561\n"));
}

void tst_PrepareConvert::fieldsNameObjectsAndPoints()
{
    const QString properties = QStringLiteral("{\"a\":\"Поле 1\",\"b\":17,\"c\":\"x\"}");
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.geojson"), geoJson({feature(geometry("Polygon", triangle), properties),
                                                              feature(geometry("Point", "[4,0]"), properties)}));

    QVERIFY(fixture.convert(QStringLiteral("a.geojson"), {QStringLiteral("--designation"), QStringLiteral("a"),
                                                          QStringLiteral("--number"), QStringLiteral("b")}));

    QCOMPARE(fixture.imported(), QStringLiteral("Поле 1 [н1 0 0, 17 4 0, н2 4 3, н1 0 0]"));
    QCOMPARE(fixture.counts(), QStringLiteral("1 1 4 1"));
}

void tst_PrepareConvert::idIsTheSecondField()
{
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.geojson"),
                        geoJson({QStringLiteral("{\"type\":\"Feature\",\"id\":815,\"properties\":{},\"geometry\":%1}")
                                     .arg(geometry("Polygon", triangle))}));

    QVERIFY(fixture.convert(QStringLiteral("a.geojson")));

    QFile mid(fixture.path(QStringLiteral("out.mid")));
    QVERIFY(mid.open(QIODevice::ReadOnly));
    QCOMPARE(mid.readAll(), QByteArray("\"\",\"815\"\n"));
}

void tst_PrepareConvert::missingDesignationIsLeftToTheImport()
{
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.geojson"),
                        geoJson({feature(geometry("LineString", "[[0,0],[4,0]]"), QStringLiteral("{\"a\":\"  \"}")),
                                 feature(geometry("LineString", "[[0,0],[4,0]]"), QStringLiteral("{\"a\":null}")),
                                 feature(geometry("LineString", "[[0,0],[4,0]]"), QStringLiteral("{\"a\":\"Б\"}"))}));

    QVERIFY(fixture.convert(QStringLiteral("a.geojson"), {QStringLiteral("--designation"), QStringLiteral("a")}));

    QCOMPARE(fixture.imported(), QStringLiteral("ЗУ1 [н1 0 0, н2 4 0]; ЗУ2 [н1 0 0, н2 4 0]; Б [н1 0 0, н2 4 0]"));
}

void tst_PrepareConvert::namesAreAdaptedToAField_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("def");
    QTest::addColumn<QString>("notes");
    const auto row = [](const char *test, const QString &name, const QString &def, const char *notes = "") {
        QTest::newRow(test) << name << def << QString::fromLatin1(notes);
    };

    row("Cyrillic", QStringLiteral("Участок №5"), QStringLiteral("Участок №5"));
    row("delimiter", QStringLiteral("a,b;c"), QStringLiteral("a,b;c"));
    row("blanks around", QStringLiteral("  a b  "), QStringLiteral("a b"));
    row("blanks inside", QStringLiteral("a  b"), QStringLiteral("a  b"));
    row("line end and tab", QStringLiteral("a\\nb\\tc"), QStringLiteral("a b c"));
    row("backslash", QStringLiteral("a\\\\nb"), QStringLiteral("a\\nb"));
    row("quotes", QStringLiteral("a \\\"b\\\""), QStringLiteral("a 'b'"), "replaced-character 2");
    row("characters that the encoding lacks", QStringLiteral("łé"), QStringLiteral("??"), "replaced-character 2");
    row("character beyond 16 bits", QStringLiteral("a\\ud83d\\ude00"), QStringLiteral("a??"), "replaced-character 1");
    row("254 bytes", QString(254, QLatin1Char('x')), QString(254, QLatin1Char('x')));
    row("255 bytes", QString(255, QLatin1Char('x')), QString(254, QLatin1Char('x')), "long-text 1");
}

void tst_PrepareConvert::namesAreAdaptedToAField()
{
    QFETCH(QString, name);
    QFETCH(QString, def);
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.geojson"), geoJson({feature(geometry("LineString", "[[0,0],[4,0]]"),
                                                                      QStringLiteral("{\"name\":\"%1\"}").arg(name))}));

    QVERIFY(fixture.convert(QStringLiteral("a.geojson"), {QStringLiteral("--designation"), QStringLiteral("name")}));

    QCOMPARE(fixture.imported(), def + QStringLiteral(" [н1 0 0, н2 4 0]"));
    QString notes = fixture.list("notes");
    QTEST(notes.remove(QStringLiteral("degrees 1")).remove(QStringLiteral(", ")), "notes");
}

void tst_PrepareConvert::vertexTakesTheNumberOfAPoint()
{
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.geojson"),
                        geoJson({feature(geometry("Point", "[4.005,0]"), QStringLiteral("{\"n\":\"т5\"}")),
                                 feature(geometry("LineString", "[[0,0],[4,0]]")),
                                 feature(geometry("MultiPoint", "[[7,7],[8,8]]"), QStringLiteral("{\"n\":\"т6\"}"))}));

    QVERIFY(fixture.convert(QStringLiteral("a.geojson"), {QStringLiteral("--number"), QStringLiteral("n")}));

    QCOMPARE(fixture.imported(), QStringLiteral("ЗУ1 [н1 0 0, т5 4 0]"));
    QCOMPARE(fixture.counts(), QStringLiteral("1 1 2 3"));
}

// The import keeps one of several points at a place, and gives a vertex even the empty number of a point.
void tst_PrepareConvert::unusablePointsAreLeftOut_data()
{
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");
    QTest::addColumn<QString>("numbers");
    QTest::addColumn<QString>("leftOut");
    QTest::addColumn<int>("points");
    const auto row = [](const char *name, const char *first, const char *firstNumber, const char *second,
                        const char *secondNumber, const char *leftOut, int points) {
        QTest::newRow(name) << QString::fromLatin1(first) << QString::fromLatin1(second)
                            << QStringLiteral("%1 %2").arg(QLatin1String(firstNumber), QLatin1String(secondNumber))
                            << QString::fromLatin1(leftOut) << points;
    };

    row("apart", "[1,1]", "5", "[1.0101,1]", "6", "", 2);
    row("numbers at a place", "[1,1]", "5", "[1.0099,1.0099]", "6", "merged-point 1", 1);
    row("without numbers at a place", "[1,1]", "", "[1,1]", "", "merged-point 1", 1);
    row("without number beside a vertex", "[0.009,0]", "", "[7,7]", "6", "point-without-number 1", 1);
    row("without number near no vertex", "[0.011,0]", "", "[7,7]", "6", "", 2);
    row("without number beside a number", "[7,7]", "", "[7.005,7]", "6", "point-without-number 1", 1);
}

void tst_PrepareConvert::unusablePointsAreLeftOut()
{
    QFETCH(QString, first);
    QFETCH(QString, second);
    QFETCH(QString, numbers);
    const QStringList number = numbers.split(QLatin1Char(' '));
    const auto point = [](const QString &at, const QString &n) {
        return feature(geometry("Point", at.toLatin1().constData()), QStringLiteral("{\"n\":\"%1\"}").arg(n));
    };
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.geojson"), geoJson({point(first, number.at(0)), point(second, number.at(1)),
                                                              feature(geometry("LineString", "[[0,0],[4,0]]"))}));

    QVERIFY(fixture.convert(QStringLiteral("a.geojson"), {QStringLiteral("--number"), QStringLiteral("n")}));

    QCOMPARE(fixture.imported(), QStringLiteral("ЗУ1 [н1 0 0, н2 4 0]"));
    QTEST(fixture.list("leftOut"), "leftOut");
    QTEST(fixture.report.value(QStringLiteral("points")).toInt(), "points");
}

void tst_PrepareConvert::reportIsReadable()
{
    const ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.geojson"),
                        geoJson({feature(geometry("Polygon", triangle)), feature(QStringLiteral("null"))}));

    const ConvertRun run = fixture.run({QStringLiteral("a.geojson"), QStringLiteral("out.mif")});

    QCOMPARE(run.status, 0);
    QCOMPARE(run.messages, QString());
    QCOMPARE(run.output, QStringLiteral("\"out.mif\": 1 object, 1 contour, 4 vertices, 0 points.\n"
                                        "Encoding of the output: windows-1251.\n"
                                        "Left out: features without a geometry: 1.\n"
                                        "Note: coordinates are in degrees; use --crs with a system in metres.\n"));
}

void tst_PrepareConvert::nounsHaveTheRightNumber()
{
    QCOMPARE(counted(0, QStringLiteral("point")), QStringLiteral("0 points"));
    QCOMPARE(counted(1, QStringLiteral("vertex")), QStringLiteral("1 vertex"));
    QCOMPARE(counted(2, QStringLiteral("vertex")), QStringLiteral("2 vertices"));
    QCOMPARE(counted(21, QStringLiteral("contour")), QStringLiteral("21 contours"));
}

QTEST_GUILESS_MAIN(tst_PrepareConvert)
#include "tst_prepare_convert.moc"
