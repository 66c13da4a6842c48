#include "converttesting.h"
#include "preparetesting.h"

/// Coordinate systems: their names, and transforming degrees.
class tst_PrepareConvertSystems : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void degreesAreTransformed();
    void coordinateSystemMustBeKnown_data();
    void coordinateSystemMustBeKnown();
    void unnamedSystemIsTakenForDegrees_data();
    void unnamedSystemIsTakenForDegrees();
    void sourceSystemOverridesTheNamedOne();
    void sourceSystemReplacesAWrongOne();
    void targetInDegreesIsNoted();
    void unnamedDegreesAreNoted_data();
    void unnamedDegreesAreNoted();
    void deviationOfDegreesIsInMetres();
    void placesOutsideTheSystemAreLeftOut();
    void curvesInDegreesKeepTheDeviation_data();
    void curvesInDegreesKeepTheDeviation();
    void degreesAreCured_data();
    void degreesAreCured();
};

namespace {

const QString line = geometry("LineString", "[[0,0],[4,0]]");
const QString header = QStringLiteral("Version 300\nCharset \"Neutral\"\nDelimiter \",\"\n");
const QString nonEarth = QStringLiteral("CoordSys NonEarth Units \"m\" Bounds (0,0) (900,900)\n");

} // namespace

void tst_PrepareConvertSystems::degreesAreTransformed()
{
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.geojson"), geoJson({feature(geometry("LineString", "[[39,0],[39,1]]"))}));

    QVERIFY(fixture.convert(QStringLiteral("a.geojson"), arguments("--crs EPSG:32637")));

    QVERIFY2(fixture.imported().startsWith(QStringLiteral("ЗУ1 [н1 500000 0, н2 500000 110")),
             qUtf8Printable(fixture.imported()));
    QCOMPARE(fixture.list("notes"), QString());
}

void tst_PrepareConvertSystems::coordinateSystemMustBeKnown_data()
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("message");
    const auto row = [](const char *name, const char *input, const char *args, const char *message) {
        QTest::newRow(name) << QString::fromLatin1(input) << arguments(args)
                            << QStringLiteral("importprepare: ") + QString::fromLatin1(message);
    };

    row("unknown target", "a.geojson", "--crs EPSG:999999", "--crs does not know \"EPSG:999999\".");
    row("number only", "a.geojson", "--crs 28407", "--crs does not know \"28407\". Write EPSG:28407.");
    row("unknown source", "a.geojson", "--source-crs EPSG:999999", "--source-crs does not know \"EPSG:999999\".");
    row("none named", "a.csv", "--crs EPSG:32637",
        "--crs: the layer \"a\" names no coordinate system. Name it with --source-crs.");
    row("not of the earth", "a.mif", "--crs EPSG:32637",
        "--crs: the layer \"source\" names no coordinate system. Name it with --source-crs.");
    row("no transformation", "a.geojson", "--crs LOCAL_CS[\"plan\",UNIT[\"m\",1]]",
        "--crs: there is no transformation from \"WGS 84\" to \"LOCAL_CS[\"plan\",UNIT[\"m\",1]]\".");
}

void tst_PrepareConvertSystems::coordinateSystemMustBeKnown()
{
    QFETCH(QString, input);
    QFETCH(QStringList, args);
    QFETCH(QString, message);
    const ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.geojson"), geoJson({feature(line)}));
    fixture.files.write(QStringLiteral("a.csv"), {QStringLiteral("id,WKT\n1,\"LINESTRING(0 0,400 0)\"")});
    fixture.files.write(QStringLiteral("a.mif"),
                        {QStringLiteral("Version 300\nCharset \"Neutral\"\nDelimiter \",\"\n"
                                        "CoordSys NonEarth Units \"m\" Bounds (0,0) (900,900)\n"
                                        "Columns 1\n  n Char(9)\nData\nLine 0 0 400 0")});

    const ConvertRun run = fixture.run(QStringList{input, QStringLiteral("out.mif")} + args);

    QCOMPARE(run.status, 2);
    QCOMPARE(run.messages, message);
}

void tst_PrepareConvertSystems::unnamedSystemIsTakenForDegrees_data()
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<QStringList>("lines");

    const QString data = QStringLiteral("Columns 1\n  n Char(9)\nData\nLine 39 0 39 1");
    QTest::newRow("drawing") << QStringLiteral("a.dxf") << drawing("0 LINE|8 0|10 39|20 0|11 39|21 1");
    QTest::newRow("MIF") << QStringLiteral("a.mif") << QStringList{header + data};
    QTest::newRow("MIF not of the earth") << QStringLiteral("a.mif") << QStringList{header + nonEarth + data};
}

void tst_PrepareConvertSystems::unnamedSystemIsTakenForDegrees()
{
    QFETCH(QString, input);
    QFETCH(QStringList, lines);
    ConvertFixture fixture;
    fixture.files.write(input, lines);

    QVERIFY(fixture.convert(input, arguments("--crs EPSG:32637")));

    QVERIFY2(fixture.imported().startsWith(QStringLiteral("ЗУ1 [н1 500000 0, н2 500000 110")),
             qUtf8Printable(fixture.imported()));
    QVERIFY(fixture.list("notes").contains(QStringLiteral("assumed-degrees 1")));
}

void tst_PrepareConvertSystems::sourceSystemOverridesTheNamedOne()
{
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.geojson"),
                        geoJson({feature(geometry("LineString", "[[500000,0],[500000,100]]"))}));

    QVERIFY(fixture.convert(QStringLiteral("a.geojson"), arguments("--source-crs EPSG:32637 --crs EPSG:32737")));

    QCOMPARE(fixture.imported(), QStringLiteral("ЗУ1 [н1 500000 10000000, н2 500000 10000100]"));
    QCOMPARE(fixture.list("notes"), QString());
}

void tst_PrepareConvertSystems::sourceSystemReplacesAWrongOne()
{
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.mif"),
                        {header + QStringLiteral("CoordSys Earth Projection 8, 1001, \"m\", 39\n"
                                                 "Data\nLine 500000 0 500100 0\n")});

    QVERIFY(fixture.convert(QStringLiteral("a.mif"), arguments("--source-crs EPSG:32637")));

    QCOMPARE(fixture.imported(), QStringLiteral("ЗУ1 [н1 500000 0, н2 500100 0]"));
}

void tst_PrepareConvertSystems::targetInDegreesIsNoted()
{
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.geojson"), geoJson({feature(line)}));

    QVERIFY(fixture.convert(QStringLiteral("a.geojson"), arguments("--crs EPSG:4326")));

    QCOMPARE(fixture.list("notes"), QStringLiteral("degrees 1"));
}

void tst_PrepareConvertSystems::unnamedDegreesAreNoted_data()
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QString>("notes");

    const QString map = header + QStringLiteral("Columns 1\n  n Char(9)\nData\n");
    QTest::newRow("drawing") << QStringLiteral("a.dxf") << drawing("0 LINE|8 0|10 37.6|20 55.7|11 37.6|21 55.705")
                             << QStringLiteral("degrees 1");
    QTest::newRow("MIF") << QStringLiteral("a.mif") << QStringList{map + QStringLiteral("Line 37.6 55.7 37.6 55.705")}
                         << QStringLiteral("degrees 1");
    QTest::newRow("sides in metres") << QStringLiteral("a.mif")
                                     << QStringList{map + QStringLiteral("Line 37.6 55.7 37.6 56.7")} << QString();
    QTest::newRow("outside the degrees") << QStringLiteral("a.mif")
                                         << QStringList{map + QStringLiteral("Line 37.6 155.7 37.6 155.705")}
                                         << QString();
}

void tst_PrepareConvertSystems::unnamedDegreesAreNoted()
{
    QFETCH(QString, input);
    QFETCH(QStringList, lines);
    ConvertFixture fixture;
    fixture.files.write(input, lines);
    fixture.files.write(QStringLiteral("a.mid"), {QStringLiteral("A")});

    QVERIFY(fixture.convert(input));

    QTEST(fixture.list("notes"), "notes");
}

// The radius is about 111 m, so a quarter has nine chords or a few more.
void tst_PrepareConvertSystems::deviationOfDegreesIsInMetres()
{
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.dxf"), drawing("0 ARC|8 0|10 39|20 0|40 0.001|50 0|51 90"));

    QVERIFY(fixture.convert(QStringLiteral("a.dxf"), arguments("--crs EPSG:32637 --deviation 0.5")));

    const int vertices = fixture.report.value(QStringLiteral("vertices")).toInt();
    QVERIFY2(vertices >= 9 && vertices <= 20, qPrintable(QString::number(vertices)));
}

void tst_PrepareConvertSystems::placesOutsideTheSystemAreLeftOut()
{
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.geojson"), geoJson({feature(geometry("LineString", "[[39,0],[39,95]]")),
                                                              feature(geometry("LineString", "[[39,0],[39,1]]"))}));

    QVERIFY(fixture.convert(QStringLiteral("a.geojson"), arguments("--crs EPSG:32637")));

    QCOMPARE(fixture.counts(), QStringLiteral("1 1 2 0"));
    QCOMPARE(fixture.list("leftOut"), QStringLiteral("not-transformed 1"));
}

void tst_PrepareConvertSystems::curvesInDegreesKeepTheDeviation_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("ellipse");

    QTest::newRow("named") << QStringLiteral("CoordSys Earth Projection 1, 104\n")
                           << QStringLiteral("Ellipse 39 0 39.002 0.002\n");
    QTest::newRow("unnamed") << QString() << QStringLiteral("Ellipse 39 0 39.002 0.002\n");
    QTest::newRow("transformed") << QStringLiteral("Transform 0.001,0.001,39,0\n")
                                 << QStringLiteral("Ellipse 0 0 2 2\n");
}

// The radius is about 111 m, so a chord of this deviation spans eleven degrees, and a circle has some 33.
void tst_PrepareConvertSystems::curvesInDegreesKeepTheDeviation()
{
    QFETCH(QString, line);
    QFETCH(QString, ellipse);
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.mif"),
                        {header + line + QStringLiteral("Columns 1\n  n Char(9)\nData\n") + ellipse});

    QVERIFY(fixture.convert(QStringLiteral("a.mif"), arguments("--crs EPSG:32637 --deviation 0.5")));

    const int vertices = fixture.report.value(QStringLiteral("vertices")).toInt();
    QVERIFY2(vertices >= 33 && vertices <= 50, qPrintable(QString::number(vertices)));
}

void tst_PrepareConvertSystems::degreesAreCured_data()
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QString>("findings");

    const QString map = QStringLiteral("Columns 1\n  n Char(9)\nData\nPline 3\n37.6 55.7\n37.6 55.705\n37.605 55.7");
    const QString shared = QStringLiteral("; merged-numbers 2 @ объект «%1», номер «н1»");
    const auto row = [&](const char *name, const QString &system, const char *place) {
        QTest::newRow(name) << QStringLiteral("plan.mif") << QStringList{header + system + map}
                            << QStringLiteral("degrees 3 @ ") + QString::fromUtf8(place) +
                                   shared.arg(QStringLiteral("1"));
    };

    row("named", QStringLiteral("CoordSys Earth Projection 1, 104\n"), "строка 4");
    row("unnamed", QString(), "объект «1»");
    row("not of the earth", nonEarth, "объект «1»");
    QTest::newRow("drawing") << QStringLiteral("plan.dxf")
                             << drawing(
                                    "0 LWPOLYLINE|8 0|90 3|70 0|10 37.6|20 55.7|10 37.6|20 55.705|10 37.605|20 55.7")
                             << QStringLiteral("degrees 3 @ объект «:ЗУ1»") + shared.arg(QStringLiteral(":ЗУ1"));
}

// The printed command with a real number.
void tst_PrepareConvertSystems::degreesAreCured()
{
    QFETCH(QString, input);
    QFETCH(QStringList, lines);
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("plan.mid"), {QStringLiteral("1")});
    CheckOptions options;
    options.encoding = QStringLiteral("windows-1251");

    const FileReport before = checkFile(fixture.files.write(input, lines), options, false);
    QVERIFY2(convertCommand(before).endsWith(QStringLiteral("plan-import.mif --crs EPSG:номер")),
             qPrintable(convertCommand(before)));
    QVERIFY(fixture.convert(input, arguments("--crs EPSG:32637")));
    const FileReport after = checkFile(fixture.path(QStringLiteral("out.mif")), options, false);

    QTEST(described(before.findings), "findings");
    QCOMPARE(described(after.findings), QString());
    QCOMPARE(after.imported.objects, 1);
    QCOMPARE(after.imported.numbers, 3);
}

QTEST_GUILESS_MAIN(tst_PrepareConvertSystems)
#include "tst_prepare_convert_systems.moc"
