#include "convertcontent.h"
#include "converttesting.h"
#include "drawingcopy.h"

#include <cmath>
#include <functional>

/// Returns the place of a curve at 0 to 1.
using Path = std::function<ContentVertex(double)>;

Q_DECLARE_METATYPE(Path)

/// Drawings of which GDAL gets a corrected copy.
class tst_PrepareConvertCorrections : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void chordsKeepTheDeviation_data();
    void chordsKeepTheDeviation();
    void splinesHaveTheirEnds_data();
    void splinesHaveTheirEnds();
    void splineKeepsItsNames();
    void unusableSplinesAreLeftOut_data();
    void unusableSplinesAreLeftOut();
    void absurdSplinesTakeFewChords_data();
    void absurdSplinesTakeFewChords();
    void decimalCommasAreRead_data();
    void decimalCommasAreRead();
    void otherCommasAreRefused_data();
    void otherCommasAreRefused();
    void polylinesHaveTheVerticesThatStandThere_data();
    void polylinesHaveTheVerticesThatStandThere();
    void linesOfTheCopyAreThoseOfTheInput();
};

namespace {

QByteArray drawing(const QByteArray &entities, const QByteArray &blocks = {})
{
    QByteArray text("0|SECTION|2|HEADER|0|ENDSEC|0|SECTION|2|BLOCKS|");
    text += blocks + "0|ENDSEC|0|SECTION|2|ENTITIES|" + entities + "0|ENDSEC|0|EOF|";
    return text.replace('|', '\n');
}

QByteArray block(const QByteArray &entities)
{
    return "0|BLOCK|8|0|2|B|70|0|10|0|20|0|" + entities + "0|ENDBLK|8|0|";
}

QByteArray hatch(const QByteArray &edges, int count)
{
    return "0|HATCH|8|0|10|0|20|0|30|0|2|SOLID|70|1|71|0|91|1|92|1|93|" + QByteArray::number(count) + '|' + edges +
           "97|0|75|1|76|1|98|0|";
}

const QByteArray line("0|LINE|8|0|10|0|20|0|11|10|21|0|");

/// A SPLINE of the degree 3 over an interval.
QByteArray cubic(const QByteArray &points, const QByteArray &more = "72|8|40|0|40|0|40|0|40|0|40|1|40|1|40|1|40|1|")
{
    return "0|SPLINE|8|0|70|8|71|3|73|" + QByteArray::number(points.count("10|")) + "|74|0|" + more + points;
}

const QByteArray arch("10|0|20|0|10|0|20|1000|10|1000|20|1000|10|1000|20|0|");

ContentVertex archAt(double t)
{
    const double u = 1 - t;
    return {1000 * (3 * u * t * t + t * t * t), 1000 * (3 * u * u * t + 3 * u * t * t)};
}

Path circle(double radius)
{
    return [radius](double t) {
        const double angle = 2 * std::acos(-1) * t;
        return ContentVertex{radius * std::cos(angle), radius * std::sin(angle)};
    };
}

QVector<DefPolygon> importedObjects(const ConvertFixture &fixture)
{
    QVector<DefPolygon> objects;
    MifImport import;
    import.objectFileName = fixture.path(QStringLiteral("out.mif"));
    import.objects = &objects;
    import.importMap();
    return objects;
}

double distance(const ContentVertex &p, const DefPoint &a, const DefPoint &b)
{
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    const double square = dx * dx + dy * dy;
    const double t = square > 0 ? std::min(1.0, std::max(0.0, ((p.x - a.x) * dx + (p.y - a.y) * dy) / square)) : 0;
    return std::hypot(p.x - a.x - t * dx, p.y - a.y - t * dy);
}

/// The largest distance of places of the curve from the polyline.
double deviationOf(const QVector<DefPoint> &vertices, const Path &path)
{
    constexpr int places = 4000;
    double largest = 0;
    for (int i = 0; i <= places; ++i) {
        const ContentVertex p = path(static_cast<double>(i) / places);
        double nearest = HUGE_VAL;
        for (int k = 1; k < vertices.size(); ++k)
            nearest = std::min(nearest, distance(p, vertices.at(k - 1), vertices.at(k)));
        largest = std::max(largest, nearest);
    }
    return largest;
}

/// The lines of the file for the lines \a first to \a last of its copy.
QString linesBefore(const std::vector<DrawingEdit> &edits, int first, int last)
{
    QStringList lines;
    for (int line = first; line <= last; ++line)
        lines.append(QString::number(lineBeforeEdits(line, replacedLines(edits))));
    return lines.join(QLatin1Char(' '));
}

} // namespace

void tst_PrepareConvertCorrections::chordsKeepTheDeviation_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<Path>("path");
    QTest::addColumn<int>("mostVertices");
    const auto row = [](const char *name, const QByteArray &bytes, const Path &path, int mostVertices) {
        QTest::newRow(name) << bytes << path << mostVertices;
    };

    // The rational curve is a quarter of a circle, a line back to the centre and one to its begin.
    const QByteArray rational("71|2|72|6|73|3|74|0|40|0|40|0|40|0|40|1|40|1|40|1|"
                              "41|1|41|0.7071067811865476|41|1|10|100|20|0|10|100|20|100|10|0|20|100|");
    const Path quarter = [](double t) { return circle(100)(t / 4); };
    row("spline", drawing(cubic(arch)), archAt, 520);
    row("helix",
        drawing("0|HELIX|8|0|100|AcDbSpline|70|8|71|3|72|8|73|4|74|0|40|0|40|0|40|0|40|0|40|1|40|1|40|1|40|1|" + arch +
                "100|AcDbHelix|10|7|20|7|11|8|21|8|40|5|41|3|42|1|"),
        archAt, 520);
    row("rational spline", drawing("0|SPLINE|8|0|70|12|" + rational), quarter, 130);
    row("spline without knots", drawing(cubic(arch, "72|0|")), archAt, 520);
    row("spline in an enlarged block",
        drawing("0|INSERT|8|0|2|B|10|0|20|0|41|1000|42|1000|",
                block(cubic("10|0|20|0|10|0|20|1|10|1|20|1|10|1|20|0|"))),
        archAt, 520);
    row("edge of a hatch",
        drawing(hatch("72|4|94|3|73|0|74|0|95|8|96|4|40|0|40|0|40|0|40|0|40|1|40|1|40|1|40|1|" + arch +
                          "97|0|72|1|10|1000|20|0|11|0|21|0|",
                      2)),
        archAt, 520);
    row("edge of a hatch without number of fit points",
        drawing(hatch("72|1|10|1000|20|0|11|0|21|0|72|4|94|3|73|0|74|0|95|8|96|4|"
                      "40|0|40|0|40|0|40|0|40|1|40|1|40|1|40|1|" +
                          arch,
                      2)),
        archAt, 520);
    // With many small circles GDAL splits the others by the length of chords, except the last one of a whole turn.
    const QByteArray small = QByteArray("0|CIRCLE|8|0|10|0|20|0|40|5|").repeated(40);
    row("circle among small ones", drawing(small + "0|CIRCLE|8|0|10|0|20|0|40|5000|"), circle(5000), 2300);
    row("mirrored circle", drawing(small + "0|CIRCLE|8|0|10|0|20|0|40|5000|210|0|220|0|230|-1|"), circle(5000), 2300);
    row("whole arc among small ones", drawing(small + "0|ARC|8|0|10|0|20|0|40|5000|50|0|51|360|"), circle(5000), 2300);
    row("ellipse among small ones",
        drawing(small + "0|ELLIPSE|8|0|10|0|20|0|11|3000|21|4000|40|1|41|0|42|6.283185307179586|"), circle(5000), 2300);
    row("circle of a hatch", drawing(hatch("72|2|10|0|20|0|40|300|50|0|51|360|73|1|", 1)), circle(300), 560);
    row("ellipse of a hatch", drawing(hatch("72|3|10|0|20|0|11|0|21|300|40|1|50|0|51|360|73|1|", 1)), circle(300), 560);
}

void tst_PrepareConvertCorrections::chordsKeepTheDeviation()
{
    QFETCH(QByteArray, bytes);
    QFETCH(Path, path);
    QFETCH(int, mostVertices);
    ConvertFixture fixture;
    fixture.files.writeBytes(QStringLiteral("a.dxf"), bytes);

    QVERIFY(fixture.convert(QStringLiteral("a.dxf")));

    const QVector<DefPolygon> objects = importedObjects(fixture);
    QVERIFY(!objects.isEmpty());
    const QVector<DefPoint> vertices = objects.last().contours.first();
    QVERIFY2(vertices.size() <= mostVertices, qPrintable(QString::number(vertices.size())));
    const double deviation = deviationOf(vertices, path);
    QVERIFY2(deviation <= 0.005, qPrintable(QString::number(deviation)));
    QCOMPARE(fixture.list("notes"), QString());
}

void tst_PrepareConvertCorrections::splinesHaveTheirEnds_data()
{
    QTest::addColumn<QByteArray>("entity");
    QTest::addColumn<QString>("objects");

    QTest::newRow("degree 1") << QByteArray("0|SPLINE|8|0|70|8|71|1|72|5|73|3|74|0|40|0|40|0|40|1|40|2|40|2|"
                                            "10|1|20|2|10|5|20|2|10|5|20|9|")
                              << QStringLiteral("ЗУ1 [н1 1 2, н2 5 2, н3 5 9]");
    // Within the outer knots the curve is defined between the inner ones only.
    QTest::newRow("uniform") << QByteArray("0|SPLINE|8|0|70|8|71|2|72|6|73|3|74|0|40|0|40|1|40|2|40|3|40|4|40|5|"
                                           "10|0|20|0|10|10|20|0|10|20|20|0|")
                             << QStringLiteral("ЗУ1 [н1 5 0, н2 15 0]");
    QTest::newRow("closed") << QByteArray("0|SPLINE|8|0|70|11|71|1|72|6|73|4|74|0|40|0|40|0|40|1|40|2|40|3|40|3|"
                                          "10|0|20|0|10|9|20|0|10|9|20|9|10|0.004|20|0|")
                            << QStringLiteral("ЗУ1 [н1 0 0, н2 9 0, н3 9 9, н1 0 0]");
    QTest::newRow("plane of its own") << QByteArray("0|SPLINE|8|0|210|0|220|0|230|-1|70|8|71|1|72|4|73|2|74|0|40|0|"
                                                    "40|0|40|1|40|1|10|1|20|2|10|5|20|2|")
                                      << QStringLiteral("ЗУ1 [н1 1 2, н2 5 2]");
}

void tst_PrepareConvertCorrections::splinesHaveTheirEnds()
{
    QFETCH(QByteArray, entity);
    ConvertFixture fixture;
    fixture.files.writeBytes(QStringLiteral("a.dxf"), drawing(entity));

    QVERIFY(fixture.convert(QStringLiteral("a.dxf")));

    QTEST(fixture.imported(), "objects");
}

void tst_PrepareConvertCorrections::splineKeepsItsNames()
{
    QByteArray bytes = drawing(cubic(arch).replace("8|0|70", "5|2F|8|Дом|70"));
    ConvertFixture fixture;
    fixture.files.writeBytes(QStringLiteral("a.dxf"), bytes);

    QVERIFY(fixture.convert(QStringLiteral("a.dxf"),
                            {QStringLiteral("--source-encoding=UTF-8"), QStringLiteral("--layer=Дом"),
                             QStringLiteral("--designation=EntityHandle")}));

    QVERIFY2(fixture.imported().startsWith(QStringLiteral("2F [")), qUtf8Printable(fixture.imported()));
}

void tst_PrepareConvertCorrections::unusableSplinesAreLeftOut_data()
{
    QTest::addColumn<QByteArray>("entity");

    QTest::newRow("fit points only") << QByteArray("0|SPLINE|8|0|70|8|71|3|72|0|73|0|74|2|11|0|21|0|11|9|21|9|");
    QTest::newRow("too few points") << cubic("10|0|20|0|10|9|20|9|", "72|6|40|0|40|0|40|0|40|1|40|1|40|1|");
    QTest::newRow("too few knots") << cubic(arch, "72|7|40|0|40|0|40|0|40|1|40|1|40|1|40|1|");
    QTest::newRow("decreasing knots") << cubic(arch, "72|8|40|0|40|0|40|0|40|0|40|1|40|1|40|1|40|0.5|");
    QTest::newRow("equal knots") << cubic(arch, "72|8|40|0|40|0|40|0|40|0|40|0|40|0|40|0|40|0|");
    QTest::newRow("too few weights") << cubic(arch, "72|0|41|1|41|1|");
    QTest::newRow("degree 0") << cubic(arch, "72|0|71|0|");
    QTest::newRow("degree 16") << cubic(QByteArray("10|1|20|2|10|3|20|4|").repeated(9), "72|0|71|16|");
    QTest::newRow("degree of a billion") << cubic(arch, "72|0|71|1000000000|");
}

void tst_PrepareConvertCorrections::unusableSplinesAreLeftOut()
{
    QFETCH(QByteArray, entity);
    ConvertFixture fixture;
    fixture.files.writeBytes(QStringLiteral("a.dxf"), drawing(line + entity));

    QVERIFY(fixture.convert(QStringLiteral("a.dxf")));

    QCOMPARE(fixture.counts(), QStringLiteral("1 1 2 0"));
    QCOMPARE(fixture.list("leftOut"), QStringLiteral("broken-spline 1"));
}

// Numbers of absurd size must not make a small file take minutes.
void tst_PrepareConvertCorrections::absurdSplinesTakeFewChords_data()
{
    QTest::addColumn<QByteArray>("entity");

    QTest::newRow("size") << cubic("10|0|20|0|10|0|20|1e14|10|1e14|20|1e14|10|1e14|20|0|");
    QTest::newRow("negative weight") << cubic(arch, "72|0|41|1|41|-2|41|2|41|-1|");
}

void tst_PrepareConvertCorrections::absurdSplinesTakeFewChords()
{
    QFETCH(QByteArray, entity);
    ConvertFixture fixture;
    fixture.files.writeBytes(QStringLiteral("a.dxf"), drawing(entity));

    QVERIFY(fixture.convert(QStringLiteral("a.dxf")));

    QVERIFY2(fixture.report.value(QStringLiteral("vertices")).toInt() <= 20001, qUtf8Printable(fixture.counts()));
    QCOMPARE(fixture.list("notes"), QStringLiteral("coarse-curve 1"));
}

void tst_PrepareConvertCorrections::decimalCommasAreRead_data()
{
    QTest::addColumn<QByteArray>("entity");
    QTest::addColumn<QString>("objects");
    QTest::addColumn<int>("commas");

    QTest::newRow("line") << QByteArray("0|LINE|8|0|10|1,5|20|-2,25|11|3|21|  4,5|")
                          << QStringLiteral("ЗУ1 [н1 1.5 -2.25, н2 3 4.5]") << 3;
    QTest::newRow("exponent") << QByteArray("0|LINE|8|0|10|1,5E1|20|0|11|3|21|4|")
                              << QStringLiteral("ЗУ1 [н1 15 0, н2 3 4]") << 1;
    QTest::newRow("insertion") << QByteArray("0|INSERT|8|0|2|B|10|100,5|20|0|41|0,5|42|0,5|")
                               << QStringLiteral("ЗУ1 [н1 100.5 0, н2 105.5 0]") << 3;
    QTest::newRow("spline") << QByteArray("0|SPLINE|8|0|70|8|71|1|72|4|73|2|74|0|40|0|40|0|40|0,5|40|0,5|"
                                          "10|1,5|20|2|10|5|20|2|")
                            << QStringLiteral("ЗУ1 [н1 1.5 2, н2 5 2]") << 3;
    QTest::newRow("in a text") << QByteArray("0|TEXT|8|0|10|0|20|0|40|1|1|1,5|" + line)
                               << QStringLiteral("ЗУ1 [н1 0 0, н2 10 0]") << 0;
}

void tst_PrepareConvertCorrections::decimalCommasAreRead()
{
    QFETCH(QByteArray, entity);
    QFETCH(int, commas);
    ConvertFixture fixture;
    fixture.files.writeBytes(QStringLiteral("a.dxf"), drawing(entity, block(line)));

    QVERIFY(fixture.convert(QStringLiteral("a.dxf")));

    QTEST(fixture.imported(), "objects");
    QCOMPARE(fixture.list("notes"), commas == 0 ? QString() : QStringLiteral("decimal-comma %1").arg(commas));
}

void tst_PrepareConvertCorrections::otherCommasAreRefused_data()
{
    QTest::addColumn<QByteArray>("number");

    QTest::newRow("thousands and decimals") << QByteArray("1,234.5");
    QTest::newRow("two commas") << QByteArray("1,234,5");
    QTest::newRow("two numbers") << QByteArray("1, 2");
}

void tst_PrepareConvertCorrections::otherCommasAreRefused()
{
    QFETCH(QByteArray, number);
    ConvertFixture fixture;
    fixture.files.writeBytes(QStringLiteral("a.dxf"), drawing("0|LINE|8|0|10|" + number + "|20|0|11|3|21|4|"));

    const ConvertRun run = fixture.run(arguments("a.dxf out.mif"));

    QCOMPARE(run.status, 3);
    QCOMPARE(run.messages, QStringLiteral("importprepare: Cannot read \"a.dxf\": \"%1\" in line 22 is no number.")
                               .arg(QString::fromLatin1(number)));
    QVERIFY(!QFile::exists(fixture.path(QStringLiteral("out.mif"))));
}

void tst_PrepareConvertCorrections::polylinesHaveTheVerticesThatStandThere_data()
{
    QTest::addColumn<QByteArray>("polyline");
    QTest::addColumn<QString>("objects");
    QTest::addColumn<QString>("leftOut");
    const QString both = QStringLiteral("ЗУ1 [н1 1 2, н2 3 4]; ЗУ2 [н3 0 0, н4 10 0]");
    const QString other = QStringLiteral("ЗУ1 [н1 0 0, н2 10 0]");
    const QString empty = QStringLiteral("no-geometry 1");

    const QByteArray vertices("10|1|20|2|10|3|20|4|");
    QTest::newRow("none") << QByteArray("90|0|70|0|") << other << empty;
    QTest::newRow("none, without their number") << QByteArray("70|0|") << other << empty;
    QTest::newRow("more than their number") << "90|1|70|0|" + vertices << both << QString();
    QTest::newRow("negative number") << "90|-1|70|0|" + vertices << both << QString();
    QTest::newRow("without their number") << "70|0|" + vertices << both << QString();
    QTest::newRow("fewer than their number") << "90|9|70|0|" + vertices << both << QString();
}

void tst_PrepareConvertCorrections::polylinesHaveTheVerticesThatStandThere()
{
    QFETCH(QByteArray, polyline);
    ConvertFixture fixture;
    fixture.files.writeBytes(QStringLiteral("a.dxf"), drawing("0|LWPOLYLINE|8|0|" + polyline + line));

    QVERIFY(fixture.convert(QStringLiteral("a.dxf")));

    QTEST(fixture.imported(), "objects");
    QTEST(fixture.list("leftOut"), "leftOut");
}

void tst_PrepareConvertCorrections::linesOfTheCopyAreThoseOfTheInput()
{
    const std::vector<DrawingEdit> edits{
        {0, 0, "x", 3, 0}, {0, 0, {}, 5, 4}, {0, 0, "a\nb\nc\n", 20, 2}, {0, 0, "d\ne\n", 30, 0}};

    QCOMPARE(linesBefore(edits, 4, 5), QStringLiteral("4 9"));
    QCOMPARE(linesBefore(edits, 15, 20), QStringLiteral("19 20 20 20 22 23"));
    QCOMPARE(linesBefore(edits, 26, 30), QStringLiteral("29 30 30 30 31"));
}

QTEST_GUILESS_MAIN(tst_PrepareConvertCorrections)

#include "tst_prepare_convert_corrections.moc"
