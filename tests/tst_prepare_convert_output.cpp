#include "convertcontent.h"
#include "converttesting.h"
#include "convertverifier.h"
#include "gdalmessage.h"

/// Output files, unusable input, and what is left after a failure.
class tst_PrepareConvertOutput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void existingFilesAreKept_data();
    void existingFilesAreKept();
    void existingFilesAreReplacedOnRequest();
    void unusableOutputIsReported_data();
    void unusableOutputIsReported();
    void inputIsNeverOverwritten_data();
    void inputIsNeverOverwritten();
    void unusableInputIsReported_data();
    void unusableInputIsReported();
    void placesInGdalAreNotShown();
    void nothingToImportIsReported();
    void pipeIsRefused();
    void folderOfFilesIsRefused_data();
    void folderOfFilesIsRefused();
    void deeplyNestedBlocksDoNotExhaustTheStack();
    void everyTruncatedDrawingIsReportedOrConverted();
    void differenceIsFound_data();
    void differenceIsFound();
};

namespace {

const QStringList source = geoJson({feature(geometry("LineString", "[[0,0],[4,0]]"), QStringLiteral("{\"n\":\"A\"}"))});

QByteArray contents(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

void tst_PrepareConvertOutput::existingFilesAreKept_data()
{
    QTest::addColumn<QString>("existing");

    QTest::newRow("MIF") << QStringLiteral("out.mif");
    QTest::newRow("MID") << QStringLiteral("out.mid");
}

void tst_PrepareConvertOutput::existingFilesAreKept()
{
    QFETCH(QString, existing);
    const ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.geojson"), source);
    fixture.files.writeBytes(existing, "old");

    const ConvertRun run = fixture.run(arguments("a.geojson out.mif"));

    QCOMPARE(run.status, 2);
    QCOMPARE(run.messages, QStringLiteral("importprepare: \"%1\" exists. Use --force to overwrite it.").arg(existing));
    QCOMPARE(contents(fixture.path(existing)), QByteArray("old"));
    QCOMPARE(entries(fixture.path(QString())), (QStringList{QStringLiteral("a.geojson"), existing}));
}

void tst_PrepareConvertOutput::existingFilesAreReplacedOnRequest()
{
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.geojson"), source);
    fixture.files.writeBytes(QStringLiteral("out.mif"), "old");
    fixture.files.writeBytes(QStringLiteral("out.mid"), "old");

    QVERIFY(fixture.convert(QStringLiteral("a.geojson"), {QStringLiteral("--force")}));

    QCOMPARE(fixture.imported(), QStringLiteral("ЗУ1 [н1 0 0, н2 4 0]"));
    QCOMPARE(entries(fixture.path(QString())), arguments("a.geojson out.mid out.mif"));
}

void tst_PrepareConvertOutput::unusableOutputIsReported_data()
{
    QTest::addColumn<QString>("output");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("message");

    QTest::newRow("missing folder") << QStringLiteral("missing/out.mif") << 1
                                    << QStringLiteral("The folder of \"missing/out.mif\" is missing.");
    QTest::newRow("folder of that name") << QStringLiteral("folder.mif") << 1
                                         << QStringLiteral("\"folder.mif\" is a folder.");
    QTest::newRow("pipe of that name") << QStringLiteral("pipe.mif") << 1
                                       << QStringLiteral("\"pipe.mif\" is not a regular file.");
}

void tst_PrepareConvertOutput::unusableOutputIsReported()
{
    QFETCH(QString, output);
    QFETCH(QString, message);
    const ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.geojson"), source);
    QVERIFY(QDir(fixture.path(QString())).mkdir(QStringLiteral("folder.mif")));
    QCOMPARE(makePipe(fixture.path(QStringLiteral("pipe.mif"))), namedPipes().isAvailable);
    const QStringList before = entries(fixture.path(QString()));

    const ConvertRun run = fixture.run({QStringLiteral("a.geojson"), output, QStringLiteral("--force")});

    QTEST(run.status, "status");
    QCOMPARE(run.output, QString());
    QCOMPARE(run.messages, QStringLiteral("importprepare: ") + message);
    QCOMPARE(entries(fixture.path(QString())), before);
}

void tst_PrepareConvertOutput::inputIsNeverOverwritten_data()
{
    QTest::addColumn<QString>("input");

    for (const char *const input : {"out.mif", "./out.mif", "out.mid", "OUT.mif", "out.MIF"})
        QTest::newRow(input) << QString::fromLatin1(input);
}

// OUT.mif is a link, and out.MIF a file that shares out.mid.
void tst_PrepareConvertOutput::inputIsNeverOverwritten()
{
    QFETCH(QString, input);
    const ConvertFixture fixture;
    fixture.files.writeBytes(QStringLiteral("out.mif"), "Version 300\nData\nLine 0 0 4 0\n");
    fixture.files.writeBytes(QStringLiteral("out.mid"), "A");
    QFile::copy(fixture.path(QStringLiteral("out.mif")), fixture.path(QStringLiteral("out.MIF")));
    QFile::link(QStringLiteral("out.mif"), fixture.path(QStringLiteral("OUT.mif")));

    const ConvertRun run = fixture.run({input, QStringLiteral("out.mif"), QStringLiteral("--force")});

    QCOMPARE(run.messages, QStringLiteral("importprepare: The output would overwrite the input \"%1\".").arg(input));
    QCOMPARE(run.status, 2);
    QCOMPARE(contents(fixture.path(QStringLiteral("out.mid"))), QByteArray("A"));
}

void tst_PrepareConvertOutput::unusableInputIsReported_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("message");
    const auto row = [](const char *test, const char *name, const QByteArray &bytes, const char *message) {
        QTest::newRow(test) << QString::fromLatin1(name) << bytes << QString::fromLatin1(message);
    };

    row("missing", "", "", "\"\" does not exist.");
    row("missing in an archive", "/vsizip/none.zip/a.dxf", "",
        "\"/vsizip/none.zip/a.dxf\" is missing or has no vector content that GDAL reads.");
    row("empty drawing", "a.dxf", "", "\"a.dxf\" is empty.");
    row("damaged drawing", "a.dxf", "0\nSECTION\n2\nHEADER\n0\nENDSEC\n0\nSECTION\n2\nBLOCKS\n0\nBLOCK\n8\n0\n2\nB\n",
        "Cannot read \"a.dxf\": ");
    row("empty MIF", "a.mif", "", "\"a.mif\" is empty.");
    row("not a MIF", "a.mif", "hello\nworld\n", "\"a.mif\" has no vector content that GDAL reads.");
    row("empty other file", "a.bin", "", "\"a.bin\" is empty.");
    row("picture", "a.pgm", "P5 1 1 255\nx", "\"a.pgm\" has no vector content that GDAL reads.");
    row("truncated binary drawing", "a.dxf", QByteArray("AutoCAD Binary DXF\r\n\x1a\0\0\0SEC", 27),
        "Cannot read \"a.dxf\": The binary DXF file is damaged or ends early at byte 22.");
    row("truncated drawing", "a.dxf", "0\nSECTION\n2\nENTITIES\n0\nLINE\n8\n0\n10\n",
        "Cannot read \"a.dxf\" to its end: ");
    row("hatch that GDAL reads in part", "a.dxf",
        "0\nSECTION\n2\nENTITIES\n0\nHATCH\n8\n0\n2\nSOLID\n70\n1\n71\n0\n91\n2\n92\n7\n72\n0\n73\n1\n93\n3\n"
        "10\n0\n20\n0\n10\n5\n20\n0\n10\n5\n20\n5\n97\n0\n75\n0\n76\n1\n0\n"
        "LINE\n8\n0\n10\n0\n20\n0\n11\n9\n21\n9\n0\nENDSEC\n0\nEOF\n",
        "Cannot read \"a.dxf\" to its end: error at line 40 of a.dxf");
    row("truncated GeoJSON", "a.geojson", "{\"type\":\"FeatureCollection\",\"features\":[{\"type\":\"Fea",
        "Cannot read \"a.geojson\": ");
    row("truncated MIF", "a.mif",
        "Version 300\nCharset \"Neutral\"\nDelimiter \",\"\nColumns 1\n  a Integer\nData\nRegion 1\n4\n0 0\n1 1\n",
        "Cannot read \"a.mif\": it has no complete object. The first error is in line 10.");
}

void tst_PrepareConvertOutput::unusableInputIsReported()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, message);
    const ConvertFixture fixture;
    if (!name.isEmpty() && !name.startsWith(QLatin1Char('/')))
        fixture.files.writeBytes(name, bytes);

    const ConvertRun run = fixture.run({name, QStringLiteral("out.mif")});

    QCOMPARE(run.status, 3);
    QCOMPARE(run.output, QString());
    QVERIFY2(run.messages.startsWith(QStringLiteral("importprepare: ") + message), qUtf8Printable(run.messages));
    QVERIFY(!entries(fixture.path(QString())).contains(QStringLiteral("out.mif")));
}

void tst_PrepareConvertOutput::placesInGdalAreNotShown()
{
    QCOMPARE(gdalMessage("./ogr/dxf/ogrdxfdatasource.cpp, 827: error at line 6\n"), QStringLiteral("error at line 6"));
}

void tst_PrepareConvertOutput::nothingToImportIsReported()
{
    const ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.geojson"), geoJson({feature(QStringLiteral("null"))}));

    const ConvertRun run = fixture.run(arguments("a.geojson out.mif"));

    QCOMPARE(run.messages,
             QStringLiteral("importprepare: There is nothing to import in \"a.geojson\". Nothing was written.\n"
                            "Left out: features without a geometry: 1."));
    QCOMPARE(run.status, 1);
    QCOMPARE(run.output, QString());
    QCOMPARE(entries(fixture.path(QString())), arguments("a.geojson"));
}

void tst_PrepareConvertOutput::pipeIsRefused()
{
    REQUIRE_FACILITY(namedPipes());
    const ConvertFixture fixture;
    QVERIFY(makePipe(fixture.path(QStringLiteral("pipe.dxf"))));

    const ConvertRun run = fixture.run(arguments("pipe.dxf out.mif"));

    QCOMPARE(run.status, 3);
    QCOMPARE(run.messages, QStringLiteral("importprepare: \"pipe.dxf\" is not a file."));
}

// GDAL makes one dataset of all files in a folder, whatever they are.
void tst_PrepareConvertOutput::folderOfFilesIsRefused_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("lines");

    const QString mif = QStringLiteral("Version 300\nDelimiter \",\"\nColumns 1\n  a Integer\nData\nLine 0 0 5 5");
    QTest::newRow("MIF") << QStringLiteral("a.mif") << QStringList{mif};
    QTest::newRow("DXF") << QStringLiteral("a.dxf") << longDrawing(1);
    QTest::newRow("CSV") << QStringLiteral("a.csv") << QStringList{QStringLiteral("id,WKT\n1,\"LINESTRING(0 0,4 0)\"")};
    QTest::newRow("others") << QStringLiteral("a.txt") << QStringList{QStringLiteral("hello")};
}

void tst_PrepareConvertOutput::folderOfFilesIsRefused()
{
    QFETCH(QString, name);
    QFETCH(QStringList, lines);
    const ConvertFixture fixture;
    QVERIFY(QDir(fixture.path(QString())).mkdir(QStringLiteral("plans")));
    fixture.files.write(QStringLiteral("plans/") + name, lines);

    const ConvertRun run = fixture.run(arguments("plans out.mif"));

    QCOMPARE(run.status, 3);
    QCOMPARE(run.messages,
             QStringLiteral("importprepare: \"plans\" is a folder but not a dataset. Convert its files one by one."));
}

void tst_PrepareConvertOutput::deeplyNestedBlocksDoNotExhaustTheStack()
{
    constexpr int count = 200000;
    QStringList lines{QStringLiteral("0\nSECTION\n2\nHEADER\n0\nENDSEC\n0\nSECTION\n2\nBLOCKS\n"
                                     "0\nBLOCK\n8\n0\n2\nB0\n70\n0\n10\n0\n20\n0\n"
                                     "0\nCIRCLE\n8\n0\n10\n0\n20\n0\n40\n5\n0\nENDBLK\n8\n0")};
    for (int i = 1; i < count; ++i)
        lines += QStringLiteral("0\nBLOCK\n8\n0\n2\nB%1\n70\n0\n10\n0\n20\n0\n"
                                "0\nINSERT\n8\n0\n2\nB%2\n10\n0\n20\n0\n0\nENDBLK\n8\n0")
                     .arg(QString::number(i), QString::number(i - 1));
    lines += QStringLiteral("0\nENDSEC\n0\nSECTION\n2\nENTITIES\n"
                            "0\nINSERT\n8\n0\n2\nB%1\n10\n0\n20\n0\n0\nENDSEC\n0\nEOF")
                 .arg(count - 1);
    const ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.dxf"), lines);

    const ConvertRun run = fixture.run(arguments("a.dxf out.mif"));

    QVERIFY2(run.status >= 0, qUtf8Printable(run.messages));
}

void tst_PrepareConvertOutput::everyTruncatedDrawingIsReportedOrConverted()
{
    const QByteArray whole = longDrawing(2).join(QLatin1Char('\n')).toLatin1();
    const ConvertFixture fixture;

    for (int size = 1; size < whole.size(); size += 5) {
        fixture.files.writeBytes(QStringLiteral("a.dxf"), whole.left(size));
        const ConvertRun run = fixture.run(arguments("a.dxf out.mif --force --json"));
        QVERIFY2(run.status == 3 || run.status == 0, qPrintable(QString::number(size)));
        QCOMPARE(run.status == 0, run.output.contains(QStringLiteral("\"no-end\"")));
    }
}

void tst_PrepareConvertOutput::differenceIsFound_data()
{
    QTest::addColumn<QString>("mif");
    QTest::addColumn<QString>("mid");
    QTest::addColumn<QString>("error");
    const auto row = [](const char *name, const char *mif, const char *mid, const char *error) {
        const QString text =
            error[0] == '\0'
                ? QString()
                : QStringLiteral("The import does not read what was written: %1.").arg(QString::fromUtf8(error));
        QTest::newRow(name) << QString::fromLatin1(mif) << QString::fromUtf8(mid) << text;
    };

    const char *const lines = "Line 0 0 4 0\nRegion 1\n4\n0 0\n1 1\n2 0\n0 0\nPoint 7 8\n";
    row("none", lines, "\"\",1\nБ,2\n5,3", "");
    row("object missing", "Line 0 0 4 0\nNone\nPoint 7 8\n", "\"\",1\nБ,2\n5,3", "1 object instead of 2");
    row("contour added", "Line 0 0 4 0\nRegion 2\n4\n0 0\n1 1\n2 0\n0 0\n3\n0 0\n1 1\n2 0\nPoint 7 8\n",
        "\"\",1\nБ,2\n5,3", "object 2 (source id i2): 2 contours instead of 1");
    row("vertex missing", "Line 0 0 4 0\nRegion 1\n3\n0 0\n1 1\n2 0\nPoint 7 8\n", "\"\",1\nБ,2\n5,3",
        "object 2 (source id i2): contour 1: 3 vertices instead of 4");
    row("vertex moved", "Line 0 0 4 0\nRegion 1\n4\n0 0\n1 1.5\n2 0\n0 0\nPoint 7 8\n", "\"\",1\nБ,2\n5,3",
        "object 2 (source id i2): contour 1: vertex 2 at 1 1.5 instead of 1 1");
    row("designation changed", lines, "\"\",1\nВ,2\n5,3",
        "object 2 (source id i2): designation \"В\" instead of \"Б\"");
    row("number changed", lines, "\"\",1\nБ,2\n6,3", "point \"6\" at 7 8 instead of \"5\" at 7 8");
    row("point moved", "Line 0 0 4 0\nRegion 1\n4\n0 0\n1 1\n2 0\n0 0\nPoint 7.5 8\n", "\"\",1\nБ,2\n5,3",
        "point \"5\" at 7.5 8 instead of \"5\" at 7 8");
}

void tst_PrepareConvertOutput::differenceIsFound()
{
    QFETCH(QString, mif);
    QFETCH(QString, mid);
    const TextFixture files;
    files.write(QStringLiteral("a.mid"), {mid});
    const QString name = files.write(
        QStringLiteral("a.mif"), {QStringLiteral("Version 300\nCharset \"Neutral\"\nDelimiter \",\"\nData\n") + mif});
    ConvertContent content;
    content.vertices = {{0, 0}, {4, 0}, {0, 0}, {1, 1}, {2, 0}, {0, 0}};
    content.contourEnds = {2, 6};
    content.objects = {{false, 1, QStringLiteral("i1"), QString()},
                       {true, 2, QStringLiteral("i2"), QStringLiteral("Б")}};
    content.points = {{{7, 8}, QStringLiteral("i3"), QStringLiteral("5")}};
    ConvertVerifier verifier;

    const bool isSame = verifier.verify(content, name, QStringLiteral("UTF-8"));

    QCOMPARE(isSame, verifier.error().isEmpty());
    QTEST(verifier.error(), "error");
}

QTEST_GUILESS_MAIN(tst_PrepareConvertOutput)
#include "tst_prepare_convert_output.moc"
