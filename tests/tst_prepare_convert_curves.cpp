#include "convertarcs.h"
#include "converttesting.h"

#include <cpl_vsi.h>

#include <algorithm>
#include <cmath>
#include <functional>

using Curve = std::function<double(double, double)>; ///< distance of a position from the curve

Q_DECLARE_METATYPE(Curve)

/// Curves: how far chords are from their arcs, and how many there are.
class tst_PrepareConvertCurves : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void chordsOfADrawingKeepTheDeviation_data();
    void chordsOfADrawingKeepTheDeviation();
    void arcsOfAPolylineRepeatNoVertex();
    void chordsOfAGeometryKeepTheDeviation_data();
    void chordsOfAGeometryKeepTheDeviation();
    void chordsOfAMifKeepTheDeviation_data();
    void chordsOfAMifKeepTheDeviation();
    void curvesThatGdalSplitsAreCounted();
    void partsOfACompoundCurveMeet();
    void stepsKeepTheDeviationForEveryRadius();
    void narrowEllipseLimitsTheAngle();
    void absurdArcsTakeFewChords_data();
    void absurdArcsTakeFewChords();
    void flatArcCostsTheOthersNothing();
    void absurdArcCostsTheOthersLittle();
    void manyChordsLoseTheDeviation();
    void tinyDeviationIsTried();
};

namespace {

Curve circle(double x, double y, double radius)
{
    return [=](double px, double py) { return std::fabs(std::hypot(px - x, py - y) - radius); };
}

// Distance to an ellipse at the origin by its nearest of many points.
Curve ellipse(double a, double b)
{
    return [=](double x, double y) {
        double best = 1e300;
        const double around = std::atan2(y / b, x / a);
        for (int i = -20000; i <= 20000; ++i) {
            const double t = around + i * 1e-5;
            best = std::min(best, std::hypot(a * std::cos(t) - x, b * std::sin(t) - y));
        }
        return best;
    };
}

/// The vertices of the only contour in \a fileName.
QVector<DefPoint> contourOf(const ConvertFixture &fixture)
{
    QVector<DefPolygon> objects;
    MifImport import;
    import.objectFileName = fixture.path(QStringLiteral("out.mif"));
    import.objects = &objects;
    import.importMap();
    return objects.size() == 1 && objects.first().contours.size() == 1 ? objects.first().contours.first()
                                                                       : QVector<DefPoint>();
}

// The largest distance of the middle of a chord and of a vertex from the curve.
void measure(const QVector<DefPoint> &vertices, const Curve &curve, double &ofChords, double &ofVertices)
{
    ofChords = ofVertices = 0;
    for (int i = 0; i < vertices.size(); ++i) {
        const DefPoint &b = vertices.at(i);
        ofVertices = std::max(ofVertices, curve(b.x, b.y));
        if (i == 0)
            continue;
        const DefPoint &a = vertices.at(i - 1);
        ofChords = std::max(ofChords, curve((a.x + b.x) / 2, (a.y + b.y) / 2));
    }
}

QByteArray lines(const char *entities, const char *blocks = "")
{
    QByteArray text("0|SECTION|2|HEADER|0|ENDSEC|0|SECTION|2|BLOCKS|");
    text += QByteArray(blocks) + "0|ENDSEC|0|SECTION|2|ENTITIES|" + entities + "0|ENDSEC|0|EOF|";
    return text.replace('|', '\n');
}

} // namespace

void tst_PrepareConvertCurves::chordsOfADrawingKeepTheDeviation_data()
{
    QTest::addColumn<QByteArray>("drawing");
    QTest::addColumn<Curve>("curve");
    QTest::addColumn<double>("deviation");
    QTest::addColumn<int>("mostVertices");
    const auto row = [](const char *name, const QByteArray &drawing, const Curve &curve, double deviation,
                        int mostVertices) { QTest::newRow(name) << drawing << curve << deviation << mostVertices; };

    const QByteArray circleEntity = lines("0|CIRCLE|8|0|10|5|20|6|40|100|");
    const char *const block = "0|BLOCK|8|0|2|B|70|0|10|0|20|0|30|0|3|B|0|CIRCLE|8|0|10|0|20|0|40|1|0|ENDBLK|8|0|";
    const char *const nested = "0|BLOCK|8|0|2|B|70|0|10|0|20|0|30|0|3|B|0|CIRCLE|8|0|10|0|20|0|40|1|0|ENDBLK|8|0|"
                               "0|BLOCK|8|0|2|C|70|0|10|0|20|0|30|0|3|C|0|INSERT|8|0|2|B|10|0|20|0|41|10|42|10|"
                               "0|ENDBLK|8|0|";
    row("circle", circleEntity, circle(5, 6, 100), 0.005, 320);
    row("circle, coarser", circleEntity, circle(5, 6, 100), 0.5, 34);
    row("small circle", lines("0|CIRCLE|8|0|10|5|20|6|40|0.3|"), circle(5, 6, 0.3), 0.005, 20);
    row("large circle", lines("0|CIRCLE|8|0|10|5|20|6|40|100000|"), circle(5, 6, 100000), 0.005, 10000);
    row("arc", lines("0|ARC|8|0|10|5|20|6|40|100|50|0|51|90|"), circle(5, 6, 100), 0.005, 82);
    row("bulge", lines("0|LWPOLYLINE|8|0|90|2|70|0|10|0|20|0|42|1|10|20|20|0|"), circle(10, 0, 10), 0.005, 52);
    row("bulge that closes", lines("0|LWPOLYLINE|8|0|90|2|70|1|10|0|20|0|42|1|10|20|20|0|42|1|"), circle(10, 0, 10),
        0.005, 102);
    row("bulge of a polyline",
        lines("0|POLYLINE|8|0|66|1|70|0|0|VERTEX|8|0|10|0|20|0|42|1|0|VERTEX|8|0|10|20|20|0|0|SEQEND|8|0|"),
        circle(10, 0, 10), 0.005, 52);
    row("ellipse", lines("0|ELLIPSE|8|0|10|0|20|0|11|100|21|0|40|0.5|41|0|42|6.283185307179586|"), ellipse(100, 50),
        0.005, 640);
    row("narrow ellipse", lines("0|ELLIPSE|8|0|10|0|20|0|11|100|21|0|40|0.02|41|0|42|6.283185307179586|"),
        ellipse(100, 2), 0.005, 640);
    row("enlarged block", lines("0|INSERT|8|0|2|B|10|0|20|0|41|100|42|100|", block), circle(0, 0, 100), 0.005, 320);
    row("enlarged block in an enlarged block", lines("0|INSERT|8|0|2|C|10|0|20|0|41|10|42|10|", nested),
        circle(0, 0, 100), 0.005, 320);
}

void tst_PrepareConvertCurves::chordsOfADrawingKeepTheDeviation()
{
    QFETCH(QByteArray, drawing);
    QFETCH(Curve, curve);
    QFETCH(double, deviation);
    QFETCH(int, mostVertices);
    ConvertFixture fixture;
    fixture.files.writeBytes(QStringLiteral("a.dxf"), drawing);

    QVERIFY(fixture.convert(QStringLiteral("a.dxf"), {QStringLiteral("--deviation=%1").arg(deviation)}));

    const QVector<DefPoint> vertices = contourOf(fixture);
    double ofChords = 0;
    double ofVertices = 0;
    measure(vertices, curve, ofChords, ofVertices);
    QVERIFY2(vertices.size() > 2 && vertices.size() <= mostVertices, qPrintable(QString::number(vertices.size())));
    QVERIFY2(ofChords <= deviation, qPrintable(QString::number(ofChords)));
    QVERIFY2(ofVertices < 1e-4, qPrintable(QString::number(ofVertices)));
}

void tst_PrepareConvertCurves::arcsOfAPolylineRepeatNoVertex()
{
    const auto polyline = lines("0|LWPOLYLINE|8|0|90|4|70|1|10|5000|20|5000|42|0.4|10|5100|20|5000|42|0|"
                                "10|5100|20|5080|42|0.3|10|5000|20|5080|42|0|");
    ConvertFixture fixture;
    fixture.files.writeBytes(QStringLiteral("a.dxf"), polyline);

    QVERIFY(fixture.convert(QStringLiteral("a.dxf")));

    const QVector<DefPoint> vertices = contourOf(fixture);
    for (int i = 1; i < vertices.size(); ++i)
        QVERIFY2(!(vertices.at(i) == vertices.at(i - 1)), qPrintable(QString::number(i)));
    QVERIFY(vertices.first() == vertices.last());
}

void tst_PrepareConvertCurves::chordsOfAGeometryKeepTheDeviation_data()
{
    QTest::addColumn<QString>("wkt");
    QTest::addColumn<Curve>("curve");
    QTest::addColumn<int>("mostVertices");
    const auto row = [](const char *name, const char *wkt, const Curve &curve, int mostVertices) {
        QTest::newRow(name) << QString::fromLatin1(wkt) << curve << mostVertices;
    };

    row("arc", "CIRCULARSTRING(-10 0,0 10,10 0)", circle(0, 0, 10), 55);
    row("circle", "CIRCULARSTRING(-10 0,10 0,-10 0)", circle(0, 0, 10), 105);
    row("small arc", "CIRCULARSTRING(-0.1 0,0 0.1,0.1 0)", circle(0, 0, 0.1), 10);
    row("large arc", "CIRCULARSTRING(-100000 0,0 100000,100000 0)", circle(0, 0, 100000), 5100);
    row("area", "CURVEPOLYGON(CIRCULARSTRING(-10 0,10 0,-10 0))", circle(0, 0, 10), 105);
    row("compound", "COMPOUNDCURVE(CIRCULARSTRING(-10 0,0 10,10 0),CIRCULARSTRING(10 0,0 -10,-10 0))", circle(0, 0, 10),
        110);
    row("several areas", "MULTISURFACE(CURVEPOLYGON(CIRCULARSTRING(-10 0,10 0,-10 0)))", circle(0, 0, 10), 105);
}

void tst_PrepareConvertCurves::chordsOfAGeometryKeepTheDeviation()
{
    QFETCH(QString, wkt);
    QFETCH(Curve, curve);
    QFETCH(int, mostVertices);
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.csv"), {QStringLiteral("id,WKT\n1,\"%1\"").arg(wkt)});

    QVERIFY(fixture.convert(QStringLiteral("a.csv")));

    const QVector<DefPoint> vertices = contourOf(fixture);
    double ofChords = 0;
    double ofVertices = 0;
    measure(vertices, curve, ofChords, ofVertices);
    QVERIFY2(vertices.size() > 2 && vertices.size() <= mostVertices, qPrintable(QString::number(vertices.size())));
    QVERIFY2(ofChords <= 0.005, qPrintable(QString::number(ofChords)));
    QVERIFY2(ofVertices < 1e-4, qPrintable(QString::number(ofVertices)));
}

void tst_PrepareConvertCurves::chordsOfAMifKeepTheDeviation_data()
{
    QTest::addColumn<QString>("object");
    QTest::addColumn<Curve>("curve");
    QTest::addColumn<int>("mostVertices");
    const auto row = [](const char *name, const char *object, const Curve &curve, int mostVertices) {
        QTest::newRow(name) << QString::fromLatin1(object) << curve << mostVertices;
    };

    row("arc", "Arc -100 -100 100 100\n  0 90", circle(0, 0, 100), 82);
    row("arc in one line", "Arc -100 -100 100 100 0 90", circle(0, 0, 100), 82);
    row("arc past zero", "ARC -100 -100 100 100\n  270 90", circle(0, 0, 100), 162);
    row("circle", "Ellipse -100 -100 100 100", circle(0, 0, 100), 320);
    row("ellipse", "Ellipse 100 50 -100 -50", ellipse(100, 50), 320);
}

void tst_PrepareConvertCurves::chordsOfAMifKeepTheDeviation()
{
    QFETCH(QString, object);
    QFETCH(Curve, curve);
    QFETCH(int, mostVertices);
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.mif"),
                        {QStringLiteral("Version 300\nDelimiter \",\"\nColumns 1\n  a Integer\nData\n%1").arg(object)});

    QVERIFY(fixture.convert(QStringLiteral("a.mif")));

    const QVector<DefPoint> vertices = contourOf(fixture);
    double ofChords = 0;
    double ofVertices = 0;
    measure(vertices, curve, ofChords, ofVertices);
    QVERIFY2(vertices.size() > 30 && vertices.size() <= mostVertices, qPrintable(QString::number(vertices.size())));
    QVERIFY2(ofChords <= 0.005, qPrintable(QString::number(ofChords)));
    QVERIFY2(ofVertices < 1e-4, qPrintable(QString::number(ofVertices)));
    QCOMPARE(fixture.list("notes"), QString());
}

// GDAL reads a map in an archive as it reads a TAB file, whose curves cannot be replaced.
void tst_PrepareConvertCurves::curvesThatGdalSplitsAreCounted()
{
    const char map[] = "Version 300\nDelimiter \",\"\nColumns 1\n  a Integer\nData\nEllipse 0 0 9 9\nLine 0 0 1 1\n"
                       "Arc 0 0 9 9\n0 90\nRoundrect 0 0 9 9 2\nRect 0 0 9 9\n";
    ConvertFixture fixture;
    const QString name = QStringLiteral("/vsizip/%1/a.mif").arg(fixture.path(QStringLiteral("a.zip")));
    VSILFILE *const file = VSIFOpenL(name.toUtf8().constData(), "wb");
    QVERIFY(file != nullptr);
    QCOMPARE(VSIFWriteL(map, 1, sizeof map - 1, file), sizeof map - 1);
    QCOMPARE(VSIFCloseL(file), 0);

    QVERIFY(fixture.convert(name));

    QCOMPARE(fixture.report.value(QStringLiteral("objects")).toInt(), 5);
    QCOMPARE(fixture.list("notes"), QStringLiteral("uncontrolled-curve 3"));
}

void tst_PrepareConvertCurves::partsOfACompoundCurveMeet()
{
    ConvertFixture fixture;
    fixture.files.write(
        QStringLiteral("a.csv"),
        {QStringLiteral(
            "id,WKT\n1,\"COMPOUNDCURVE((0 0,4 0,4 3),CIRCULARSTRING(4 3,4.001 3.001,4.002 3),(4.002 3,9 3))\"")});

    QVERIFY(fixture.convert(QStringLiteral("a.csv"), {QStringLiteral("--deviation=1")}));

    const QVector<DefPoint> vertices = contourOf(fixture);
    QCOMPARE(described(vertices.mid(0, 3)).join(QLatin1Char(',')), QStringLiteral("0 0 0,1 4 0,2 4 3"));
    QCOMPARE(vertices.last().x, 9.0);
    QVERIFY(std::adjacent_find(vertices.begin(), vertices.end(), [](const DefPoint &a, const DefPoint &b) {
                return !(a.x < b.x) && !(b.x < a.x) && !(a.y < b.y) && !(b.y < a.y);
            }) == vertices.end());
}

void tst_PrepareConvertCurves::stepsKeepTheDeviationForEveryRadius()
{
    constexpr double deviation = 0.005;
    for (const double typical : {0.01, 1.0, 50.0, 3000.0}) {
        ArcStatistics arcs;
        arcs.addCircle(typical);
        const ArcSteps steps = arcs.steps(deviation);
        QCOMPARE(steps.coarseCount, 0);
        for (double radius = 0.001; radius < 1e5; radius *= 1.3) {
            const double byAngle = std::min(steps.angle * std::acos(-1) / 360, std::acos(-1.0));
            const double half = std::min(byAngle, std::asin(std::min(1.0, steps.gap / 2 / radius)));
            QVERIFY(radius * (1 - std::cos(half)) <= deviation);
        }
    }
}

// A chord across the tip of a narrow ellipse is short but far from the curve.
void tst_PrepareConvertCurves::narrowEllipseLimitsTheAngle()
{
    constexpr double deviation = 0.005;
    ArcStatistics arcs;
    for (int i = 0; i < 5; ++i)
        arcs.addCircle(1);
    QVERIFY(arcs.steps(deviation).angle > 10);

    arcs.addEllipse(90, 0.01);

    const double half = arcs.steps(deviation).angle * std::acos(-1) / 360;
    QVERIFY(90 * (1 - std::cos(half)) <= deviation);
}

// A damaged number must not make a file of a kilobyte take minutes.
void tst_PrepareConvertCurves::absurdArcsTakeFewChords_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");
    const auto row = [](const char *test, const QByteArray &entities) {
        QTest::newRow(test) << QStringLiteral("a.dxf") << lines(entities.constData());
    };
    const auto hatch = [&row](const char *test, const char *edges) {
        row(test, QByteArray("0|HATCH|8|0|10|0|20|0|30|0|2|SOLID|70|1|71|0|91|1|") + edges + "97|0|75|1|76|1|98|0|");
    };

    row("circle", "0|CIRCLE|8|0|10|5|20|6|40|1e20|");
    row("circle, number with a letter", "0|CIRCLE|8|0|10|5|20|6|40|1e20x|");
    // Its coordinates are not finite, so only the line is written.
    row("circle beyond all numbers", "0|CIRCLE|8|0|10|5|20|6|40|1e999|0|LINE|8|0|10|0|20|0|11|9|21|0|");
    row("arc", "0|ARC|8|0|10|5|20|6|40|1e9|50|0|51|90|");
    row("ellipse", "0|ELLIPSE|8|0|10|0|20|0|11|1e9|21|0|40|0.5|41|0|42|6.283185307179586|");
    row("ellipse with an absurd height", "0|ELLIPSE|8|0|10|0|20|0|11|1|21|0|31|1e9|40|0.5|41|0|42|6.283185307179586|");
    row("ellipse with an absurd ratio", "0|ELLIPSE|8|0|10|0|20|0|11|1|21|0|40|1e9|41|0|42|6.283185307179586|");
    row("bulge", "0|LWPOLYLINE|8|0|90|2|70|0|10|0|20|0|42|-2147483648|10|9|20|9|");
    row("bulge between absurd positions", "0|LWPOLYLINE|8|0|90|2|70|0|10|0|20|0|42|1|10|1e9|20|0|");
    QTest::newRow("line ends of a carriage return")
        << QStringLiteral("a.dxf") << lines("0|CIRCLE|8|0|10|5|20|6|40|1e9|").replace('\n', '\r');
    hatch("bulge of a hatch", "92|2|72|1|73|1|93|3|10|0|20|0|42|-2147483648|10|9|20|0|10|9|20|9|");
    hatch("arc of a hatch", "92|1|93|1|72|2|10|0|20|0|40|1e9|50|0|51|360|73|1|");
    hatch("ellipse of a hatch", "92|1|93|1|72|3|10|0|20|0|11|1e9|21|0|40|0.5|50|0|51|360|73|1|");
    QTest::newRow("ellipse of a MIF") << QStringLiteral("a.mif")
                                      << QByteArray("Version 300\nDelimiter \",\"\nColumns 1\n  a Integer\nData\n"
                                                    "Ellipse -1e9 -1e9 1e9 1e9\n");
}

void tst_PrepareConvertCurves::absurdArcsTakeFewChords()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    ConvertFixture fixture;
    fixture.files.writeBytes(name, bytes);

    QVERIFY(fixture.convert(name));
    QVERIFY2(fixture.report.value(QStringLiteral("vertices")).toInt() <= 20010, qUtf8Printable(fixture.counts()));
    QCOMPARE(fixture.list("notes").section(QLatin1String(", "), 0, 0), QStringLiteral("coarse-curve 1"));
    QCOMPARE(fixture.report.value(QStringLiteral("objects")).toInt(), 1);
}

// A nearly straight arc is part of a huge circle.
void tst_PrepareConvertCurves::flatArcCostsTheOthersNothing()
{
    ArcStatistics arcs;
    for (int i = 0; i < 50; ++i)
        arcs.addCircle(1);
    arcs.addBulge(0, 0, 20, 0, 1e-14);

    const ArcSteps steps = arcs.steps(0.005);

    QCOMPARE(steps.coarseCount, 0);
    QVERIFY2(steps.angle > 6, qPrintable(QString::number(steps.angle)));
}

void tst_PrepareConvertCurves::absurdArcCostsTheOthersLittle()
{
    ArcStatistics arcs;
    for (int i = 0; i < 1000; ++i)
        arcs.addCircle(10);
    arcs.addCircle(1e20);

    const ArcSteps steps = arcs.steps(0.005);

    QCOMPARE(steps.coarseCount, 1);
    QVERIFY(!(steps.gap > 0));
    QVERIFY2(steps.angle > 3, qPrintable(QString::number(steps.angle)));
}

void tst_PrepareConvertCurves::manyChordsLoseTheDeviation()
{
    ArcStatistics arcs;
    for (int i = 0; i < 10000; ++i)
        arcs.addCircle(100000);

    const ArcSteps steps = arcs.steps(0.005);

    QCOMPARE(steps.coarseCount, 10000);
    QVERIFY2(steps.angle > 0.1, qPrintable(QString::number(steps.angle)));
}

void tst_PrepareConvertCurves::tinyDeviationIsTried()
{
    ArcStatistics arcs;
    arcs.addBulge(85, 20, 85, 35, 0.35);
    arcs.addCircle(9);
    QVERIFY(arcs.steps(1e-7).coarseCount > 0);
}

QTEST_GUILESS_MAIN(tst_PrepareConvertCurves)
#include "tst_prepare_convert_curves.moc"
