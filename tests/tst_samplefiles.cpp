#include "samplefiles.h"
#include "testing.h"

#include <QSet>
#include <QTest>

#include <algorithm>
#include <memory>

Q_DECLARE_METATYPE(Layout)

/// The synthetic drawings of the benchmarks. Timings are meaningful only if the import finds all objects.
class tst_SampleFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void layoutIsImported_data();
    void layoutIsImported();
    void neighbouringPlotsShareVertexNumbers();
    void columnIsNarrow_data();
    void columnIsNarrow();
    void filesAreReproducible();
};

namespace {

const QString mif = QStringLiteral("a.mif");
const QString dxf = QStringLiteral("a.dxf");

struct Result
{
    bool ok = false;
    QStringList messages;
    QVector<DefPolygon> objects;
    QVector<DefPoint> points;
};

Result imported(const SampleFiles &files, const QString &name)
{
    const TextFixture folder;
    const StatusRecorder host;
    Result result;
    std::unique_ptr<MapImport> import;
    if (name == mif) {
        files.writeMif(folder.path(name));
        import = std::make_unique<MifImport>();
    } else {
        files.writeDxf(folder.path(name));
        import = std::make_unique<DxfImport>();
    }
    import->objects = &result.objects;
    import->objectFileName = folder.path(name);
    import->searchPointDefs = true;
    import->searchObjectDefs = true;
    import->pointPref = QStringLiteral("new");
    import->setEncoding("Windows-1251");
    result.ok = import->importMap();
    result.messages = host.messages();
    result.points = import->points;
    return result;
}

/// The vertex numbers of the first contour.
QString numbersOf(const DefPolygon &object)
{
    QStringList numbers;
    for (const DefPoint &vertex : object.contours.first())
        numbers.append(vertex.def);
    return numbers.join(QLatin1Char(' '));
}

QVector<QByteArray> contentsOf(const SampleFiles &files)
{
    const TextFixture folder;
    files.writeMif(folder.path(mif));
    files.writeDxf(folder.path(dxf));
    QVector<QByteArray> contents;
    for (const QString &name : {mif, QStringLiteral("a.mid"), dxf}) {
        QFile file(folder.path(name));
        contents.append(file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray());
    }
    return contents;
}

} // namespace

void tst_SampleFiles::layoutIsImported_data()
{
    QTest::addColumn<Layout>("layout");
    QTest::addColumn<int>("knownPoints");
    QTest::addColumn<int>("namedPoints");

    // A hundred plots, ten by ten, have eleven by eleven corners.
    QTest::newRow("mosaic") << Layout::Mosaic << 121 << 90;
    QTest::newRow("disjoint plots") << Layout::Disjoint << 400 << 360;
    QTest::newRow("grid") << Layout::Grid << 121 << 90;
    QTest::newRow("column") << Layout::Column << 202 << 180;
    QTest::newRow("jittered column") << Layout::JitteredColumn << 202 << 180;
    QTest::newRow("mosaic and stray point") << Layout::MosaicAndStray << 122 << 91;
}

void tst_SampleFiles::layoutIsImported()
{
    QFETCH(Layout, layout);
    QFETCH(int, knownPoints);
    QFETCH(int, namedPoints);
    const auto isNamed = [](const DefPoint &point) { return point.def.startsWith(QStringLiteral("н")); };
    for (const QString &name : {mif, dxf}) {
        const Result result = imported(SampleFiles(layout, 500), name);

        QVERIFY(result.ok);
        QCOMPARE(result.messages, QStringList());
        QCOMPARE(result.points.size(), knownPoints);
        QCOMPARE(static_cast<int>(std::count_if(result.points.begin(), result.points.end(), isNamed)), namedPoints);
        QCOMPARE(result.objects.size(), 100);
        QSet<QString> defs;
        for (const DefPolygon &object : result.objects) {
            QCOMPARE(object.contours.size(), 1);
            QCOMPARE(object.contours.first().size(), 5);
            defs.insert(object.def);
        }
        // The rings of the jittered column intersect themselves, so their centroids may be nearest to any text.
        QVERIFY(defs.size() == 100 || (layout == Layout::JitteredColumn && name == dxf));
    }
}

// The second side of a plot is the fourth side of the next one, reversed. The tenth corner has no point, so its vertex
// gets a generated number.
void tst_SampleFiles::neighbouringPlotsShareVertexNumbers()
{
    for (const QString &name : {mif, dxf}) {
        const Result result = imported(SampleFiles(Layout::Mosaic, 500), name);

        QCOMPARE(result.objects.size(), 100);
        QCOMPARE(result.objects.last().def, QStringLiteral(":ЗУ100"));
        QCOMPARE(numbersOf(result.objects[0]), QStringLiteral("н1 н2 н11 н10 н1"));
        QCOMPARE(numbersOf(result.objects[1]), QStringLiteral("н2 н3 н12 н11 н2"));
        QVERIFY(numbersOf(result.objects[10]).startsWith(QStringLiteral("н10 н11 ")));
        QVERIFY(result.objects[9].contours[0][0].def.startsWith(QStringLiteral("new")));
    }
}

void tst_SampleFiles::columnIsNarrow_data()
{
    QTest::addColumn<Layout>("layout");
    QTest::addColumn<double>("maxWidth");
    QTest::addColumn<int>("distinctX");

    QTest::newRow("column") << Layout::Column << 0.0 << 1;
    QTest::newRow("jittered column") << Layout::JitteredColumn << 0.1 << 40002;
}

void tst_SampleFiles::columnIsNarrow()
{
    QFETCH(Layout, layout);
    QFETCH(double, maxWidth);

    const Result result = imported(SampleFiles(layout, 100000), mif);

    QCOMPARE(result.points.size(), 40002);
    QSet<double> x;
    for (const DefPoint &point : result.points)
        x.insert(point.x);
    QTEST(x.size(), "distinctX");
    const auto ends = std::minmax_element(x.begin(), x.end());
    QVERIFY(*ends.second - *ends.first <= maxWidth);
}

void tst_SampleFiles::filesAreReproducible()
{
    const QVector<QByteArray> contents = contentsOf(SampleFiles(Layout::Disjoint, 500));

    QVERIFY(!contents.contains(QByteArray()));
    QCOMPARE(contentsOf(SampleFiles(Layout::Disjoint, 500)), contents);
}

QTEST_GUILESS_MAIN(tst_SampleFiles)
#include "tst_samplefiles.moc"
