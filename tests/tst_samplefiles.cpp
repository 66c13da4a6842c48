#include "imported.h"
#include "samplefiles.h"
#include "testing.h"

#include <QTest>

#include <algorithm>

Q_DECLARE_METATYPE(Layout)

/// The made-up drawings that are measured: figures mean something only when the import finds in them what it should.
class tst_SampleFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void mosaicIsImported_data();
    void mosaicIsImported();
    void mosaicSharesItsNumbers_data();
    void mosaicSharesItsNumbers();
    void layoutIsImported_data();
    void layoutIsImported();
    void plotsHaveTheirOwnDesignations_data();
    void plotsHaveTheirOwnDesignations();
    void columnIsNarrow_data();
    void columnIsNarrow();
    void filesAreTheSameEachTime();
};

namespace {

struct Result
{
    bool ok = false;
    QStringList messages;
    QVector<DefPolygon> objects;
    QVector<DefPoint> points;
};

template <typename Import>
Result imported(const QString &path)
{
    const StatusRecorder host;
    Result result;
    Import import;
    import.objects = &result.objects;
    import.objectFileName = path;
    import.searchPointDefs = true;
    import.searchObjectDefs = true;
    import.pointPref = QStringLiteral("new");
    import.pointStartNum = 1;
    import.setEncoding("Windows-1251");
    result.ok = import.importMap();
    result.messages = host.messages();
    result.points = knownPoints(import);
    return result;
}

Result imported(const SampleFiles &files, const QString &extension)
{
    const TextFixture folder;
    const QString path = folder.path(QStringLiteral("a.") + extension);
    if (extension == QLatin1String("mif")) {
        files.writeMif(path);
        return imported<MifImport>(path);
    }
    files.writeDxf(path);
    return imported<DxfImport>(path);
}

void addFormats()
{
    QTest::addColumn<QString>("extension");

    QTest::newRow("MIF and MID") << QStringLiteral("mif");
    QTest::newRow("DXF") << QStringLiteral("dxf");
}

int countOf(const QVector<DefPoint> &points, const QString &prefix)
{
    return static_cast<int>(std::count_if(points.begin(), points.end(),
                                          [&prefix](const DefPoint &point) { return point.def.startsWith(prefix); }));
}

double widthOf(const QVector<DefPoint> &points)
{
    const auto byX = [](const DefPoint &a, const DefPoint &b) { return a.x < b.x; };
    const auto ends = std::minmax_element(points.begin(), points.end(), byX);
    return ends.second->x - ends.first->x;
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

void tst_SampleFiles::mosaicIsImported_data()
{
    addFormats();
}

// A hundred plots, ten by ten, have eleven by eleven corners; ninety of these are points in the file.
void tst_SampleFiles::mosaicIsImported()
{
    QFETCH(QString, extension);

    const Result result = imported(SampleFiles(Layout::Mosaic, 500), extension);

    QVERIFY(result.ok);
    QCOMPARE(result.messages, QStringList());
    QCOMPARE(result.objects.size(), 100);
    QCOMPARE(result.points.size(), 121);
    QCOMPARE(countOf(result.points, QStringLiteral("н")), 90);
    QCOMPARE(countOf(result.points, QStringLiteral("new")), 31);
    for (int i = 0; i < result.objects.size(); ++i) {
        QCOMPARE(result.objects[i].def, QStringLiteral(":ЗУ%1").arg(i + 1));
        QCOMPARE(result.objects[i].contours.size(), 1);
        QCOMPARE(result.objects[i].contours[0].size(), 5);
    }
}

void tst_SampleFiles::mosaicSharesItsNumbers_data()
{
    addFormats();
}

// The tenth node has no point. The second side of a plot is the fourth of the next one, from the other end.
void tst_SampleFiles::mosaicSharesItsNumbers()
{
    QFETCH(QString, extension);

    const Result result = imported(SampleFiles(Layout::Mosaic, 500), extension);

    QCOMPARE(result.objects.size(), 100);
    const QVector<DefPoint> first = result.objects[0].contours[0];
    const QVector<DefPoint> second = result.objects[1].contours[0];
    const QVector<DefPoint> above = result.objects[10].contours[0];
    QCOMPARE(first[0].def, QStringLiteral("н1"));
    QCOMPARE(first[1].def, QStringLiteral("н2"));
    QCOMPARE(first[2].def, QStringLiteral("н11"));
    QCOMPARE(first[3].def, QStringLiteral("н10"));
    QCOMPARE(first[4].def, QStringLiteral("н1"));
    QCOMPARE(second[0].def, QStringLiteral("н2"));
    QCOMPARE(second[3].def, QStringLiteral("н11"));
    QCOMPARE(above[0].def, QStringLiteral("н10"));
    QCOMPARE(above[1].def, QStringLiteral("н11"));
    QCOMPARE(result.objects[9].contours[0][0].def, QStringLiteral("new1"));
}

void tst_SampleFiles::layoutIsImported_data()
{
    QTest::addColumn<Layout>("layout");
    QTest::addColumn<QString>("extension");
    QTest::addColumn<int>("knownPoints");
    QTest::addColumn<int>("namedPoints");

    for (const QString &extension : {QStringLiteral("mif"), QStringLiteral("dxf")}) {
        const auto row = [&extension](const char *layout) -> QTestData & {
            return QTest::addRow("%s, %s", layout, qPrintable(extension));
        };
        row("plots apart") << Layout::Disjoint << extension << 400 << 360;
        row("grid") << Layout::Grid << extension << 121 << 90;
        row("column") << Layout::Column << extension << 202 << 180;
        row("jittered column") << Layout::JitteredColumn << extension << 202 << 180;
        row("mosaic and stray point") << Layout::MosaicAndStray << extension << 122 << 91;
    }
}

void tst_SampleFiles::layoutIsImported()
{
    QFETCH(Layout, layout);
    QFETCH(QString, extension);
    QFETCH(int, knownPoints);
    QFETCH(int, namedPoints);

    const Result result = imported(SampleFiles(layout, 500), extension);

    QVERIFY(result.ok);
    QCOMPARE(result.messages, QStringList());
    QCOMPARE(result.objects.size(), 100);
    QCOMPARE(result.points.size(), knownPoints);
    QCOMPARE(countOf(result.points, QStringLiteral("н")), namedPoints);
}

void tst_SampleFiles::plotsHaveTheirOwnDesignations_data()
{
    QTest::addColumn<Layout>("layout");

    QTest::newRow("mosaic") << Layout::Mosaic;
    QTest::newRow("plots apart") << Layout::Disjoint;
    QTest::newRow("grid") << Layout::Grid;
    QTest::newRow("column") << Layout::Column;
    QTest::newRow("mosaic and stray point") << Layout::MosaicAndStray;
}

// In the jittered column rings cross themselves, so that their centroids may lie anywhere.
void tst_SampleFiles::plotsHaveTheirOwnDesignations()
{
    QFETCH(Layout, layout);

    const Result result = imported(SampleFiles(layout, 500), QStringLiteral("dxf"));

    QStringList designations;
    for (const DefPolygon &object : result.objects)
        designations << object.def;
    QCOMPARE(designations.size(), 100);
    QCOMPARE(designations.removeDuplicates(), 0);
}

void tst_SampleFiles::columnIsNarrow_data()
{
    QTest::addColumn<Layout>("layout");
    QTest::addColumn<double>("maxWidth");
    QTest::addColumn<int>("differentX");

    QTest::newRow("column") << Layout::Column << 0.0 << 1;
    QTest::newRow("jittered column") << Layout::JitteredColumn << 0.1 << 40002;
}

void tst_SampleFiles::columnIsNarrow()
{
    QFETCH(Layout, layout);
    QFETCH(double, maxWidth);
    QFETCH(int, differentX);

    const Result result = imported(SampleFiles(layout, 100000), QStringLiteral("mif"));

    QCOMPARE(result.points.size(), 40002);
    QVERIFY(widthOf(result.points) <= maxWidth);
    QSet<double> x;
    for (const DefPoint &point : result.points)
        x.insert(point.x);
    QCOMPARE(x.size(), differentX);
}

void tst_SampleFiles::filesAreTheSameEachTime()
{
    const TextFixture folder;
    QVector<QByteArray> written;
    for (const QString &name : {QStringLiteral("a"), QStringLiteral("b")}) {
        const SampleFiles files(Layout::Disjoint, 500);
        files.writeMif(folder.path(name + QStringLiteral(".mif")));
        files.writeDxf(folder.path(name + QStringLiteral(".dxf")));
        for (const QString &extension : {QStringLiteral(".mif"), QStringLiteral(".mid"), QStringLiteral(".dxf")})
            written << contentOf(folder.path(name + extension));
    }

    QVERIFY(!written[0].isEmpty() && !written[1].isEmpty() && !written[2].isEmpty());
    QCOMPARE(written[3], written[0]);
    QCOMPARE(written[4], written[1]);
    QCOMPARE(written[5], written[2]);
}

QTEST_GUILESS_MAIN(tst_SampleFiles)
#include "tst_samplefiles.moc"
