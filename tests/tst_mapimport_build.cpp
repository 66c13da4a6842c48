#include "imported.h"
#include "testing.h"

#include <QTest>

namespace {

/// Makes the building operations of readers public; reads nothing.
class OpenImport : public MapImport
{
public:
    using MapImport::appendEmptyContour;
    using MapImport::appendEmptyPolygon;
    using MapImport::appendVert;
    using MapImport::points;
    using MapImport::setLastPolygonDef;

protected:
    bool loadPoints() override { return true; }
    bool loadPolygons() override { return true; }
};

/// An importer that numbers points from «н1» and objects from «ЗУ5», and an object with an empty contour.
struct BuildFixture
{
    BuildFixture()
    {
        import.objects = &objects;
        import.pointPref = QStringLiteral("н");
        import.pointStartNum = 1;
        import.objectPref = QStringLiteral("ЗУ");
        import.objectStartNum = 5;
        beginObject();
    }

    void beginObject()
    {
        import.appendEmptyPolygon();
        import.appendEmptyContour();
    }

    const DefPoint &lastVertex() const { return objects.last().contours.last().last(); }
    QString objectText() const { return described(objects).join(QLatin1Char('\n')); }
    QString pointText() const { return described(import.points).join(QLatin1Char('\n')); }

    QVector<DefPolygon> objects;
    OpenImport import;
};

} // namespace

class tst_MapImportBuild : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void vertexGoesToTheLastContour();
    void sharedVerticesShareTheirNumbers();
    void toleranceIsPerAxis_data();
    void toleranceIsPerAxis();
    void knownDesignationIsCopied_data();
    void knownDesignationIsCopied();
    void closingVertexRepeatsTheFirstNumber();
    void swapAffectsVerticesAndNotPoints();
    void numberFollowsThePrefix_data();
    void numberFollowsThePrefix();
    void emptyDesignationIsGenerated();
};

void tst_MapImportBuild::vertexGoesToTheLastContour()
{
    BuildFixture f;

    f.beginObject();
    f.import.appendEmptyContour();
    f.import.appendVert(1, 2, false);

    QCOMPARE(f.objectText(), QStringLiteral("- []\n- [] [н1 1 2]"));
}

void tst_MapImportBuild::sharedVerticesShareTheirNumbers()
{
    BuildFixture f;
    f.import.appendVert(0, 0, false);
    f.import.appendVert(10, 0, false);
    f.import.appendVert(10, 10, false);

    f.beginObject();
    f.import.appendVert(10, 10, false);
    f.import.appendVert(20, 10, false);
    f.import.appendVert(10, 0, false);

    QCOMPARE(f.objectText(), QStringLiteral("- [н1 0 0, н2 10 0, н3 10 10]\n- [н3 10 10, н4 20 10, н2 10 0]"));
    QCOMPARE(f.pointText(), QStringLiteral("н1 0 0\nн2 10 0\nн3 10 10\nн4 20 10"));
    QCOMPARE(f.import.pointStartNum, 5);
}

void tst_MapImportBuild::toleranceIsPerAxis_data()
{
    QTest::addColumn<double>("dx");
    QTest::addColumn<double>("dy");
    QTest::addColumn<QString>("object");

    QTest::newRow("0.01 on both axes") << -0.01 << 0.01 << QStringLiteral("- [н1 0 0, н1 -0.01 0.01]");
    QTest::newRow("0.0101 in x") << 0.0101 << 0.0 << QStringLiteral("- [н1 0 0, н2 0.0101 0]");
    QTest::newRow("0.0101 in y") << 0.0 << -0.0101 << QStringLiteral("- [н1 0 0, н2 0 -0.0101]");
}

void tst_MapImportBuild::toleranceIsPerAxis()
{
    QFETCH(double, dx);
    QFETCH(double, dy);
    BuildFixture f;

    f.import.appendVert(0, 0, false);
    f.import.appendVert(dx, dy, false);

    QTEST(f.objectText(), "object");
}

void tst_MapImportBuild::knownDesignationIsCopied_data()
{
    QTest::addColumn<QString>("def");

    QTest::newRow("text with spaces") << QStringLiteral(" A 1 ");
    QTest::newRow("empty") << QStringLiteral("");
    QTest::newRow("null") << QString();
}

void tst_MapImportBuild::knownDesignationIsCopied()
{
    QFETCH(QString, def);
    BuildFixture f;
    f.import.points = {DefPoint{def, 1, 2}};

    f.import.appendVert(1.005, 2, false);

    QCOMPARE(f.lastVertex().def, def);
    QCOMPARE(f.lastVertex().def.isNull(), def.isNull());
    QCOMPARE(f.lastVertex().x, 1.005);
    QCOMPARE(f.import.pointStartNum, 1);
    QCOMPARE(f.import.points.size(), 1);
}

void tst_MapImportBuild::closingVertexRepeatsTheFirstNumber()
{
    BuildFixture f;
    f.import.appendVert(5, 5, false);
    f.import.appendEmptyContour();
    f.import.appendVert(1, 1, false);
    f.import.appendVert(2, 2, false);

    f.import.appendVert(5, 5, true);
    f.import.appendVert(7, 8, true);

    QCOMPARE(f.objectText(), QStringLiteral("- [н1 5 5] [н2 1 1, н3 2 2, н2 5 5, н2 7 8]"));
    QCOMPARE(f.pointText(), QStringLiteral("н1 5 5\nн2 1 1\nн3 2 2"));
    QCOMPARE(f.import.pointStartNum, 4);
}

void tst_MapImportBuild::swapAffectsVerticesAndNotPoints()
{
    BuildFixture f;
    f.import.swapXY = true;
    f.import.points = {DefPoint{QStringLiteral("A"), 1, 2}, DefPoint{QStringLiteral("B"), 2, 1}};

    f.import.appendVert(1, 2, false);
    f.import.appendVert(3, 4, false);
    f.import.appendVert(5, 6, true);

    QCOMPARE(f.objectText(), QStringLiteral("- [A 2 1, н1 4 3, A 6 5]"));
    QCOMPARE(f.pointText(), QStringLiteral("A 1 2\nB 2 1\nн1 3 4"));
}

void tst_MapImportBuild::numberFollowsThePrefix_data()
{
    QTest::addColumn<QString>("prefix");
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("def");

    QTest::newRow("letter") << QStringLiteral("н") << 1234567 << QStringLiteral("н1234567");
    QTest::newRow("no prefix") << QString() << 0 << QStringLiteral("0");
    // The prefix is inserted first; the number then replaces the lowest place marker.
    QTest::newRow("place marker 1") << QStringLiteral("н%1-") << 5 << QStringLiteral("н5-%2");
    QTest::newRow("place marker 2") << QStringLiteral("%2") << 5 << QStringLiteral("55");
    QTest::newRow("place marker 3") << QStringLiteral("%3") << 5 << QStringLiteral("%35");
    QTest::newRow("percent sign") << QStringLiteral("%") << 5 << QStringLiteral("%5");
}

void tst_MapImportBuild::numberFollowsThePrefix()
{
    QFETCH(QString, prefix);
    QFETCH(int, number);
    QFETCH(QString, def);
    BuildFixture f;
    f.import.pointPref = f.import.objectPref = prefix;
    f.import.pointStartNum = f.import.objectStartNum = number;

    f.import.appendVert(1, 2, false);
    f.import.setLastPolygonDef(QString());

    QCOMPARE(f.lastVertex().def, def);
    QCOMPARE(f.import.points.last().def, def);
    QCOMPARE(f.objects.last().def, def);
    QCOMPARE(f.import.pointStartNum, number + 1);
    QCOMPARE(f.import.objectStartNum, number + 1);
}

void tst_MapImportBuild::emptyDesignationIsGenerated()
{
    BuildFixture f;
    for (const QString &def : {QStringLiteral("A"), QString(), QStringLiteral(" "), QStringLiteral("")}) {
        f.import.appendEmptyPolygon();
        f.import.setLastPolygonDef(def);
    }

    QCOMPARE(f.objectText(), QStringLiteral("- []\nA\nЗУ5\n \nЗУ6"));
    QCOMPARE(f.import.pointStartNum, 1);
}

QTEST_GUILESS_MAIN(tst_MapImportBuild)

#include "tst_mapimport_build.moc"
