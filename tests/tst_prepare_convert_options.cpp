#include "converttesting.h"

#include <gdal_priv.h>
#include <ogrsf_frmts.h>

#include <memory>

/// The options of convert, and sources of other formats.
class tst_PrepareConvertOptions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void helpListsEveryOption();
    void wrongUsageIsReported_data();
    void wrongUsageIsReported();
    void coordinatesAreExchanged();
    void layersAreChosen();
    void rastersAreListed();
    void featuresAreChosen();
    void outputHasTheEncoding_data();
    void outputHasTheEncoding();
    void otherFormatsComeIn_data();
    void otherFormatsComeIn();
    void encodingOfAShapefileIsFound_data();
    void encodingOfAShapefileIsFound();
    void everyFeatureOfGdalComesIn();
};

namespace {

const QString line = geometry("LineString", "[[0,0],[4,0]]");

/// Writes a file with GDAL: a layer for each of \a layers, in each a polygon with a hole and a field.
void writeWithGdal(const QString &fileName, const char *format, const QStringList &layers,
                   const char *encoding = nullptr)
{
    GDALDriver *const driver = GetGDALDriverManager()->GetDriverByName(format);
    const GDALDatasetUniquePtr dataset(driver->Create(fileName.toUtf8().constData(), 0, 0, 0, GDT_Unknown, nullptr));
    QByteArray option("ENCODING=");
    option += encoding;
    char *const options[] = {option.data(), nullptr};
    for (const QString &name : layers) {
        OGRLayer *const layer = dataset->CreateLayer(name.toUtf8().constData(), nullptr, wkbPolygon,
                                                     encoding == nullptr ? nullptr : const_cast<char **>(options));
        OGRFieldDefn field("name", OFTString);
        layer->CreateField(&field);
        const std::unique_ptr<OGRFeature> feature(OGRFeature::CreateFeature(layer->GetLayerDefn()));
        OGRGeometry *shape = nullptr;
        OGRGeometryFactory::createFromWkt("POLYGON((0 0,9 9,9 0,0 0),(5 1,6 1,6 2,5 1))", nullptr, &shape);
        feature->SetGeometryDirectly(shape);
        feature->SetField("name", name.toUtf8().constData());
        if (layer->CreateFeature(feature.get()) != OGRERR_NONE)
            qFatal("cannot write %s", qUtf8Printable(fileName));
    }
}

} // namespace

void tst_PrepareConvertOptions::initTestCase()
{
    GDALAllRegister();
}

void tst_PrepareConvertOptions::helpListsEveryOption()
{
    const QStringList options =
        arguments("-h, --help --designation --number --reach --deviation --encoding "
                  "--source-encoding --crs --source-crs --swap-xy --symbols --layer --where --force --json");

    const ConvertRun run = ConvertFixture().run({QStringLiteral("--help")});

    QCOMPARE(run.status, 0);
    QCOMPARE(run.messages, QString());
    QVERIFY(run.output.startsWith(QStringLiteral("Usage: importprepare convert [options] input output\n")));
    for (const QString &option : options)
        QVERIFY2(run.output.contains(QLatin1Char(' ') + option), qUtf8Printable(option));
}

void tst_PrepareConvertOptions::wrongUsageIsReported_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("message");
    const auto row = [](const char *args, const char *message) {
        QTest::newRow(args) << arguments(args) << QString::fromLatin1(message);
    };

    row("", "An input and an output are needed.");
    row("a.geojson", "An input and an output are needed.");
    row("a.geojson b.mif c.mif", "An input and an output are needed.");
    row("a.geojson b.MIF", "The name of the output must end in .mif, not \"b.MIF\".");
    row("a.geojson b.tab", "The name of the output must end in .mif, not \"b.tab\".");
    row("a.geojson b.mif --nonsense", "Unknown option 'nonsense'.");
    row("a.geojson b.mif --reach x", "--reach takes a positive number, not \"x\".");
    row("a.geojson b.mif --reach=-1", "--reach takes a positive number, not \"-1\".");
    row("a.geojson b.mif --deviation 0", "--deviation takes a positive number, not \"0\".");
    row("a.geojson b.mif --deviation 0,05", "--deviation takes a number with a decimal point, not \"0,05\".");
    row("a.geojson b.mif --deviation inf", "--deviation takes a positive number, not \"inf\".");
    row("a.geojson b.mif --encoding nonsense", "--encoding does not know the encoding \"nonsense\".");
    row("a.geojson b.mif --encoding UTF-16", "--encoding takes an encoding that contains ASCII, not \"UTF-16\".");
    row("a.geojson b.mif --symbols circles", "--symbols takes points or objects, not \"circles\".");
    row("a.geojson b.mif --source-encoding x", "--source-encoding does not know the encoding \"x\".");
}

void tst_PrepareConvertOptions::wrongUsageIsReported()
{
    QFETCH(QStringList, args);
    QFETCH(QString, message);

    const ConvertRun run = ConvertFixture().run(args);

    QCOMPARE(run.status, 2);
    QCOMPARE(run.output, QString());
    QCOMPARE(run.messages, QStringLiteral("importprepare: %1 See importprepare convert --help.").arg(message));
}

void tst_PrepareConvertOptions::coordinatesAreExchanged()
{
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.geojson"),
                        geoJson({feature(geometry("LineString", "[[1,2],[3,4]]")),
                                 feature(geometry("Point", "[3,4]"), QStringLiteral("{\"n\":\"7\"}"))}));

    QVERIFY(fixture.convert(QStringLiteral("a.geojson"), arguments("--swap-xy --number n")));

    QCOMPARE(fixture.imported(), QStringLiteral("ЗУ1 [н1 2 1, 7 4 3]"));
    QFile mif(fixture.path(QStringLiteral("out.mif")));
    QVERIFY(mif.open(QIODevice::ReadOnly));
    QVERIFY(!mif.readAll().contains("CoordSys Earth"));

    QVERIFY(fixture.convert(QStringLiteral("a.geojson"), arguments("--swap-xy --crs EPSG:32637 --force")));
    QFile transformed(fixture.path(QStringLiteral("out.mif")));
    QVERIFY(transformed.open(QIODevice::ReadOnly));
    QVERIFY(!transformed.readAll().contains("CoordSys Earth"));
}

void tst_PrepareConvertOptions::layersAreChosen()
{
    ConvertFixture fixture;
    writeWithGdal(fixture.path(QStringLiteral("a.gpkg")), "GPKG", arguments("one two три"));

    QVERIFY(fixture.convert(QStringLiteral("a.gpkg"), arguments("--designation name")));
    QCOMPARE(fixture.imported().count(QStringLiteral("н1 0 0, н2 9 9")), 3);
    QVERIFY(fixture.convert(QStringLiteral("a.gpkg"), arguments("--designation name --force --layer три --layer one")));
    QCOMPARE(fixture.counts(), QStringLiteral("2 4 16 0"));
    QVERIFY(fixture.imported().startsWith(QLatin1String("one [")));
    QVERIFY(fixture.imported().contains(QStringLiteral("; три [")));

    const ConvertRun run = fixture.run(arguments("a.gpkg b.mif --layer four"));
    QCOMPARE(run.status, 2);
    QCOMPARE(run.messages, QStringLiteral("importprepare: --layer: the input has no layer \"four\"."));
}

void tst_PrepareConvertOptions::rastersAreListed()
{
    ConvertFixture fixture;
    const QByteArray name = fixture.path(QStringLiteral("a.gpkg")).toUtf8();
    GDALDatasetUniquePtr dataset(
        GetGDALDriverManager()->GetDriverByName("GPKG")->Create(name.constData(), 4, 4, 1, GDT_Byte, nullptr));
    double corners[] = {0, 1, 0, 4, 0, -1};
    QCOMPARE(dataset->SetGeoTransform(corners), CE_None);
    dataset.reset(GDALDataset::Open(name.constData(), GDAL_OF_VECTOR | GDAL_OF_UPDATE));
    OGRLayer *const layer = dataset->CreateLayer("lines", nullptr, wkbLineString, nullptr);
    QVERIFY(layer != nullptr);
    OGRFeature lineFeature(layer->GetLayerDefn());
    OGRLineString geometry;
    geometry.addPoint(0, 0);
    geometry.addPoint(4, 0);
    lineFeature.SetGeometry(&geometry);
    QCOMPARE(layer->CreateFeature(&lineFeature), OGRERR_NONE);
    dataset.reset();

    QVERIFY(fixture.convert(QStringLiteral("a.gpkg")));

    QCOMPARE(fixture.list("leftOut"), QStringLiteral("raster 1"));
}

void tst_PrepareConvertOptions::featuresAreChosen()
{
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.geojson"), geoJson({feature(line, QStringLiteral("{\"n\":\"Поле\"}")),
                                                              feature(line, QStringLiteral("{\"n\":\"Лес\"}"))}));

    QVERIFY(fixture.convert(QStringLiteral("a.geojson"), {QStringLiteral("--where"), QStringLiteral("n = 'Лес'"),
                                                          QStringLiteral("--designation=n")}));
    QCOMPARE(fixture.imported(), QStringLiteral("Лес [н1 0 0, н2 4 0]"));

    const ConvertRun run =
        fixture.run({QStringLiteral("a.geojson"), QStringLiteral("b.mif"), QStringLiteral("--where=nonsense = 1")});
    QCOMPARE(run.status, 2);
    QVERIFY(run.messages.startsWith(QStringLiteral("importprepare: --where: ")));
    QVERIFY(run.messages.contains(QStringLiteral("nonsense")));

    const ConvertRun noField = fixture.run(arguments("a.geojson b.mif --designation nonsense"));
    QCOMPARE(noField.status, 2);
    QCOMPARE(noField.messages, QStringLiteral("importprepare: The input has no field \"nonsense\"."));
}

void tst_PrepareConvertOptions::outputHasTheEncoding_data()
{
    QTest::addColumn<QByteArray>("codec");
    QTest::addColumn<QByteArray>("charset");

    QTest::newRow("windows-1251") << QByteArray("windows-1251") << QByteArray("WindowsCyrillic");
    QTest::newRow("ISO-8859-5") << QByteArray("ISO-8859-5") << QByteArray("ISO8859_5");
    QTest::newRow("IBM866") << QByteArray("IBM866") << QByteArray("Neutral");
    QTest::newRow("KOI8-R") << QByteArray("KOI8-R") << QByteArray("Neutral");
    QTest::newRow("UTF-8") << QByteArray("UTF-8") << QByteArray("Neutral");
}

void tst_PrepareConvertOptions::outputHasTheEncoding()
{
    QFETCH(QByteArray, codec);
    QFETCH(QByteArray, charset);
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.geojson"), geoJson({feature(line, QStringLiteral("{\"n\":\"Ёж\"}"))}));

    QVERIFY(fixture.convert(QStringLiteral("a.geojson"), {QStringLiteral("--designation=n"),
                                                          QStringLiteral("--encoding"), QString::fromLatin1(codec)}));

    QCOMPARE(fixture.imported(codec.constData()), QStringLiteral("Ёж [н1 0 0, н2 4 0]"));
    QFile mif(fixture.path(QStringLiteral("out.mif")));
    QVERIFY(mif.open(QIODevice::ReadOnly));
    QCOMPARE(mif.readAll().split('\n').value(1), "Charset \"" + charset + "\"");
}

void tst_PrepareConvertOptions::otherFormatsComeIn_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QByteArray>("format");

    QTest::newRow("Shapefile") << QStringLiteral("parcels.shp") << QByteArray("ESRI Shapefile");
    QTest::newRow("GeoPackage") << QStringLiteral("parcels.gpkg") << QByteArray("GPKG");
    QTest::newRow("GeoJSON") << QStringLiteral("parcels.geojson") << QByteArray("GeoJSON");
    QTest::newRow("KML") << QStringLiteral("parcels.kml") << QByteArray("KML");
    QTest::newRow("TAB") << QStringLiteral("parcels.tab") << QByteArray("MapInfo File");
    QTest::newRow("folder that is a dataset") << QStringLiteral("parcels.gdb") << QByteArray("OpenFileGDB");
    QTest::newRow("GML") << QStringLiteral("parcels.gml") << QByteArray("GML");
}

void tst_PrepareConvertOptions::otherFormatsComeIn()
{
    QFETCH(QString, fileName);
    QFETCH(QByteArray, format);
    const bool isBuilt = GetGDALDriverManager()->GetDriverByName(format.constData()) != nullptr;
    REQUIRE_FACILITY((Facility{isBuilt, "a GDAL that is built with this format"}));
    ConvertFixture fixture;
    writeWithGdal(fixture.path(fileName), format.constData(), {QStringLiteral("parcels")});

    QVERIFY(fixture.convert(fileName));

    QCOMPARE(fixture.counts(), QStringLiteral("1 2 8 0"));
    QCOMPARE(fixture.list("leftOut"), QString());
}

void tst_PrepareConvertOptions::encodingOfAShapefileIsFound_data()
{
    QTest::addColumn<QByteArray>("encoding");
    QTest::addColumn<bool>("isNamed");
    QTest::addColumn<QStringList>("args");

    QTest::newRow("named") << QByteArray("UTF-8") << true << QStringList();
    QTest::newRow("windows-1251, named") << QByteArray("CP1251") << true << QStringList();
    QTest::newRow("windows-1251, not named") << QByteArray("CP1251") << false << QStringList();
    QTest::newRow("given") << QByteArray("KOI8-R") << false << arguments("--source-encoding KOI8-R");
}

void tst_PrepareConvertOptions::encodingOfAShapefileIsFound()
{
    QFETCH(QByteArray, encoding);
    QFETCH(bool, isNamed);
    QFETCH(QStringList, args);
    ConvertFixture fixture;
    const QString name = QStringLiteral("участок");
    writeWithGdal(fixture.path(QStringLiteral("участок.shp")), "ESRI Shapefile", {name}, encoding.constData());
    if (!isNamed) {
        QFile::remove(fixture.path(QStringLiteral("участок.cpg")));
        QFile dbf(fixture.path(QStringLiteral("участок.dbf")));
        QVERIFY(dbf.open(QIODevice::ReadWrite) && dbf.seek(29) && dbf.write("\0", 1) == 1);
    }

    QVERIFY(fixture.convert(QStringLiteral("участок.shp"), QStringList{QStringLiteral("--designation=name")} + args));

    QVERIFY2(fixture.imported().startsWith(name + QStringLiteral(" [н1 0 0, н2 9 9")),
             qUtf8Printable(fixture.imported()));
}

// Compares with what GDAL counts in a file of many kinds of features.
void tst_PrepareConvertOptions::everyFeatureOfGdalComesIn()
{
    QStringList features;
    for (int i = 0; i < 50; ++i) {
        const QByteArray x = QByteArray::number(10 * i);
        const QByteArray ring =
            "[[" + x + ",0],[" + x + ",7],[" + QByteArray::number(10 * i + 4) + ",3],[" + x + ",0]]";
        features += feature(geometry("Polygon", ("[" + ring + "]").constData()));
        features += feature(geometry("LineString", ring.constData()));
        features += feature(geometry("MultiPolygon", ("[[" + ring + "],[" + ring + "]]").constData()));
        features += feature(geometry("MultiLineString", ("[" + ring + "," + ring + "]").constData()));
        features += feature(geometry("Point", ("[" + x + ",-5]").constData()));
    }
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.geojson"), geoJson(features));
    int objects = 0;
    int contours = 0;
    int points = 0;
    const GDALDatasetUniquePtr dataset(
        GDALDataset::Open(fixture.path(QStringLiteral("a.geojson")).toUtf8().constData(), GDAL_OF_VECTOR));
    for (const OGRFeatureUniquePtr &feature : dataset->GetLayer(0)) {
        const OGRGeometry *const shape = feature->GetGeometryRef();
        const bool isMulti = OGR_GT_IsSubClassOf(shape->getGeometryType(), wkbGeometryCollection) != 0;
        const bool isPoint = shape->getDimension() == 0;
        points += isPoint ? 1 : 0;
        objects += isPoint ? 0 : 1;
        contours += isPoint ? 0 : isMulti ? shape->toGeometryCollection()->getNumGeometries() : 1;
    }

    QVERIFY(fixture.convert(QStringLiteral("a.geojson")));

    QCOMPARE(fixture.counts().section(QLatin1Char(' '), 0, 1), QStringLiteral("%1 %2").arg(objects).arg(contours));
    QCOMPARE(fixture.report.value(QStringLiteral("points")).toInt(), points);
    QCOMPARE(fixture.list("leftOut"), QString());
}

QTEST_GUILESS_MAIN(tst_PrepareConvertOptions)
#include "tst_prepare_convert_options.moc"
