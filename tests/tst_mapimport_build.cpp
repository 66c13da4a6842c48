#include "imported.h"
#include "testing.h"

#include <QTest>

#include <limits>

namespace {

/// Opens to the test what a reader of a format builds with; reads nothing itself.
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

/// An importer with points from «н1» and objects from «ЗУ5», and the objects it builds.
struct ImportFixture
{
    ImportFixture()
    {
        import.objects = &objects;
        import.pointPref = QStringLiteral("н");
        import.pointStartNum = 1;
        import.objectPref = QStringLiteral("ЗУ");
        import.objectStartNum = 5;
    }

    void beginObject()
    {
        import.appendEmptyPolygon();
        import.appendEmptyContour();
    }

    QStringList objectTexts() const { return described(objects); }
    QStringList pointTexts() const { return described(knownPoints(import)); }

    QVector<DefPolygon> objects;
    OpenImport import;
};

DefPoint pointAt(const QString &def, double x, double y)
{
    return DefPoint{def, x, y};
}

} // namespace

class tst_MapImportBuild : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void objectAndContourAreAppended();
    void ringIsNumbered();
    void nextObjectSharesNumbers();
    void tolerance_data();
    void tolerance();
    void onlyTheNearestPointIsTested();
    void knownDesignationIsCopied_data();
    void knownDesignationIsCopied();
    void closingVertexRepeatsTheFirst_data();
    void closingVertexRepeatsTheFirst();
    void newPointsAreKeptSorted();
    void vertexThatIsNoNumberIsNumbered_data();
    void vertexThatIsNoNumberIsNumbered();
    void vertexIsSwappedAndPointIsNot_data();
    void vertexIsSwappedAndPointIsNot();
    void numberFollowsThePrefix_data();
    void numberFollowsThePrefix();
    void objectIsNamed_data();
    void objectIsNamed();
    void onlyTheLastObjectIsNamed();
};

void tst_MapImportBuild::objectAndContourAreAppended()
{
    ImportFixture b;
    b.objects = {DefPolygon{QStringLiteral("before"), {}}};

    b.import.appendEmptyPolygon();
    QCOMPARE(b.objectTexts(), (QStringList{QStringLiteral("before"), QStringLiteral("-")}));
    b.import.appendEmptyContour();
    b.import.appendEmptyContour();
    b.import.appendVert(1, 2, false);

    QCOMPARE(b.objectTexts(), (QStringList{QStringLiteral("before"), QStringLiteral("- [] [н1 1 2]")}));
}

void tst_MapImportBuild::ringIsNumbered()
{
    ImportFixture b;
    b.beginObject();

    b.import.appendVert(0, 0, false);
    b.import.appendVert(10, 0, false);
    b.import.appendVert(10, 10, false);
    b.import.appendVert(0, 0, true);

    QCOMPARE(b.objectTexts(), QStringList{QStringLiteral("- [н1 0 0, н2 10 0, н3 10 10, н1 0 0]")});
    QCOMPARE(b.import.pointStartNum, 4);
    QCOMPARE(b.pointTexts(),
             (QStringList{QStringLiteral("н1 0 0"), QStringLiteral("н2 10 0"), QStringLiteral("н3 10 10")}));
}

void tst_MapImportBuild::nextObjectSharesNumbers()
{
    ImportFixture b;
    b.beginObject();
    b.import.appendVert(0, 0, false);
    b.import.appendVert(10, 0, false);
    b.import.appendVert(10, 10, false);

    b.beginObject();
    b.import.appendVert(10, 10, false);
    b.import.appendVert(20, 10, false);
    b.import.appendVert(10, 0, false);

    QCOMPARE(b.objectTexts(), (QStringList{QStringLiteral("- [н1 0 0, н2 10 0, н3 10 10]"),
                                           QStringLiteral("- [н3 10 10, н4 20 10, н2 10 0]")}));
    QCOMPARE(b.import.pointStartNum, 5);
}

void tst_MapImportBuild::tolerance_data()
{
    QTest::addColumn<QPointF>("first");
    QTest::addColumn<QPointF>("second");
    QTest::addColumn<bool>("shared");

    QTest::newRow("same place") << QPointF(3, 4) << QPointF(3, 4) << true;
    QTest::newRow("0.005 and 0.01 apart") << QPointF(0, 0) << QPointF(0.005, 0.01) << true;
    QTest::newRow("0.01 apart on both axes") << QPointF(0, 0) << QPointF(0.01, 0.01) << true;
    QTest::newRow("0.01 apart to the other side") << QPointF(0, 0) << QPointF(-0.01, -0.01) << true;
    QTest::newRow("0.0101 apart in x") << QPointF(0, 0) << QPointF(0.0101, 0) << false;
    QTest::newRow("0.0101 apart in y") << QPointF(0, 0) << QPointF(0, 0.0101) << false;
    QTest::newRow("-0.0101 apart in x") << QPointF(0, 0) << QPointF(-0.0101, 0) << false;
    QTest::newRow("-0.0101 apart in y") << QPointF(0, 0) << QPointF(0, -0.0101) << false;
    // The difference is that of the binary numbers: 1.01 - 1 is a little more than 0.01, 5.01 - 5 a little less.
    QTest::newRow("1 and 1.01") << QPointF(1, 0) << QPointF(1.01, 0) << false;
    QTest::newRow("1 and 0.99") << QPointF(0, 1) << QPointF(0, 0.99) << false;
    QTest::newRow("5 and 5.01") << QPointF(5, 0) << QPointF(5.01, 0) << true;
    QTest::newRow("5 and 4.99") << QPointF(0, 5) << QPointF(0, 4.99) << true;
}

void tst_MapImportBuild::tolerance()
{
    QFETCH(QPointF, first);
    QFETCH(QPointF, second);
    QFETCH(bool, shared);
    ImportFixture b;
    b.beginObject();

    b.import.appendVert(first.x(), first.y(), false);
    b.import.appendVert(second.x(), second.y(), false);

    const QVector<DefPoint> &contour = b.objects.last().contours.last();
    QCOMPARE(contour.at(1).def, shared ? QStringLiteral("н1") : QStringLiteral("н2"));
    QCOMPARE(QPointF(contour.at(1).x, contour.at(1).y), second);
    QCOMPARE(b.import.pointStartNum, shared ? 2 : 3);
    QCOMPARE(knownPoints(b.import).size(), shared ? 1 : 2);
}

// A lies within the tolerance on both axes, but B is nearer and outside of it.
void tst_MapImportBuild::onlyTheNearestPointIsTested()
{
    ImportFixture b;
    b.import.points = {pointAt(QStringLiteral("B"), 0, 0.011), pointAt(QStringLiteral("A"), 0.0095, -0.0095)};
    b.beginObject();

    b.import.appendVert(0, 0, false);

    QCOMPARE(b.objectTexts(), QStringList{QStringLiteral("- [н1 0 0]")});
    QCOMPARE(knownPoints(b.import).size(), 3);
}

void tst_MapImportBuild::knownDesignationIsCopied_data()
{
    QTest::addColumn<QString>("def");

    QTest::newRow("text") << QStringLiteral("A1");
    QTest::newRow("with spaces") << QStringLiteral(" A 1 ");
    QTest::newRow("of the look of a generated one") << QStringLiteral("н1");
    QTest::newRow("empty") << QStringLiteral("");
    QTest::newRow("null") << QString();
}

void tst_MapImportBuild::knownDesignationIsCopied()
{
    QFETCH(QString, def);
    ImportFixture b;
    b.import.points = {pointAt(def, 1, 2)};
    b.beginObject();

    b.import.appendVert(1.005, 2, false);

    const DefPoint vertex = b.objects.last().contours.last().last();
    QCOMPARE(vertex.def, def);
    QCOMPARE(vertex.def.isNull(), def.isNull());
    QCOMPARE(vertex.x, 1.005);
    QCOMPARE(b.import.pointStartNum, 1);
    QCOMPARE(knownPoints(b.import).size(), 1);
}

void tst_MapImportBuild::closingVertexRepeatsTheFirst_data()
{
    QTest::addColumn<QPointF>("closing");
    QTest::addColumn<QString>("contour");

    QTest::newRow("same place") << QPointF(1, 1) << QStringLiteral("[н3 1 1, н4 2 2, н3 1 1]");
    QTest::newRow("another place") << QPointF(7, 8) << QStringLiteral("[н3 1 1, н4 2 2, н3 7 8]");
    QTest::newRow("place of another vertex") << QPointF(2, 2) << QStringLiteral("[н3 1 1, н4 2 2, н3 2 2]");
    QTest::newRow("place in another contour") << QPointF(5, 5) << QStringLiteral("[н3 1 1, н4 2 2, н3 5 5]");
}

void tst_MapImportBuild::closingVertexRepeatsTheFirst()
{
    QFETCH(QPointF, closing);
    QFETCH(QString, contour);
    ImportFixture b;
    b.beginObject();
    b.import.appendVert(5, 5, false);
    b.import.appendVert(6, 6, false);
    b.import.appendEmptyContour();
    b.import.appendVert(1, 1, false);
    b.import.appendVert(2, 2, false);
    const QStringList known = b.pointTexts();

    b.import.appendVert(closing.x(), closing.y(), true);

    QCOMPARE(b.objectTexts(), QStringList{QStringLiteral("- [н1 5 5, н2 6 6] ") + contour});
    QCOMPARE(b.pointTexts(), known);
    QCOMPARE(b.import.pointStartNum, 5);
}

void tst_MapImportBuild::newPointsAreKeptSorted()
{
    ImportFixture b;
    b.beginObject();

    b.import.appendVert(5, 5, false);
    b.import.appendVert(9, 1, false);
    b.import.appendVert(1, 9, false);
    b.import.appendVert(5, 1, false);
    b.import.appendVert(5, 9, false);

    QCOMPARE(b.pointTexts(), (QStringList{QStringLiteral("н3 1 9"), QStringLiteral("н4 5 1"), QStringLiteral("н1 5 5"),
                                          QStringLiteral("н5 5 9"), QStringLiteral("н2 9 1")}));
}

void tst_MapImportBuild::vertexThatIsNoNumberIsNumbered_data()
{
    QTest::addColumn<double>("value");

    QTest::newRow("not a number") << std::numeric_limits<double>::quiet_NaN();
    QTest::newRow("infinite") << std::numeric_limits<double>::infinity();
    QTest::newRow("infinite to the other side") << -std::numeric_limits<double>::infinity();
    QTest::newRow("too far to be measured") << std::numeric_limits<double>::max();
}

// Such a point is never the nearest one, and the points around it are found as before.
void tst_MapImportBuild::vertexThatIsNoNumberIsNumbered()
{
    QFETCH(double, value);
    ImportFixture b;
    b.beginObject();
    b.import.appendVert(1, 1, false);
    b.import.appendVert(3, 3, false);
    b.import.appendVert(value, 2, false);
    b.import.appendVert(2, value, false);
    b.import.appendVert(1, 1, false);
    b.import.appendVert(3, 3, false);

    QStringList defs;
    for (const DefPoint &vertex : b.objects.last().contours.last())
        defs.append(vertex.def);
    QCOMPARE(defs.join(QLatin1Char(' ')), QStringLiteral("н1 н2 н3 н4 н1 н2"));
}

void tst_MapImportBuild::vertexIsSwappedAndPointIsNot_data()
{
    QTest::addColumn<bool>("swapXY");
    QTest::addColumn<QString>("object");

    QTest::newRow("as read") << false << QStringLiteral("- [A 1 2, н1 3 4, A 5 6]");
    QTest::newRow("swapped") << true << QStringLiteral("- [A 2 1, н1 4 3, A 6 5]");
}

void tst_MapImportBuild::vertexIsSwappedAndPointIsNot()
{
    QFETCH(bool, swapXY);
    QFETCH(QString, object);
    ImportFixture b;
    b.import.swapXY = swapXY;
    b.import.points = {pointAt(QStringLiteral("A"), 1, 2), pointAt(QStringLiteral("B"), 2, 1)};
    b.beginObject();

    b.import.appendVert(1, 2, false);
    b.import.appendVert(3, 4, false);
    b.import.appendVert(5, 6, true);

    QCOMPARE(b.objectTexts(), QStringList{object});
    QCOMPARE(b.pointTexts(), (QStringList{QStringLiteral("A 1 2"), QStringLiteral("B 2 1"), QStringLiteral("н1 3 4")}));
}

void tst_MapImportBuild::numberFollowsThePrefix_data()
{
    QTest::addColumn<QString>("prefix");
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("def");

    QTest::newRow("letter") << QStringLiteral("н") << 12 << QStringLiteral("н12");
    QTest::newRow("no prefix") << QString() << 7 << QStringLiteral("7");
    QTest::newRow("nothing") << QString() << 0 << QStringLiteral("0");
    QTest::newRow("digits") << QStringLiteral("10") << 1 << QStringLiteral("101");
    QTest::newRow("spaces") << QStringLiteral(" н ") << 1 << QStringLiteral(" н 1");
    QTest::newRow("below zero") << QStringLiteral("н") << -2 << QStringLiteral("н-2");
    QTest::newRow("no group separators") << QStringLiteral("н") << 1234567 << QStringLiteral("н1234567");
    // The prefix is put in first and the number second, at the lowest place marker that is then there.
    QTest::newRow("first place marker") << QStringLiteral("%1") << 5 << QStringLiteral("5%2");
    QTest::newRow("first place marker in a text") << QStringLiteral("н%1-") << 5 << QStringLiteral("н5-%2");
    QTest::newRow("second place marker") << QStringLiteral("%2") << 5 << QStringLiteral("55");
    QTest::newRow("third place marker") << QStringLiteral("%3") << 5 << QStringLiteral("%35");
    QTest::newRow("per cent") << QStringLiteral("%") << 5 << QStringLiteral("%5");
}

void tst_MapImportBuild::numberFollowsThePrefix()
{
    QFETCH(QString, prefix);
    QFETCH(int, number);
    QFETCH(QString, def);
    ImportFixture b;
    b.import.pointPref = b.import.objectPref = prefix;
    b.import.pointStartNum = b.import.objectStartNum = number;
    b.beginObject();

    b.import.appendVert(1, 2, false);
    b.import.setLastPolygonDef(QString());

    QCOMPARE(b.objects.last().contours.last().last().def, def);
    QCOMPARE(knownPoints(b.import).last().def, def);
    QCOMPARE(b.objects.last().def, def);
    QCOMPARE(b.import.pointStartNum, number + 1);
    QCOMPARE(b.import.objectStartNum, number + 1);
}

void tst_MapImportBuild::objectIsNamed_data()
{
    QTest::addColumn<QString>("def");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("next");

    QTest::newRow("null") << QString() << QStringLiteral("ЗУ5") << 6;
    QTest::newRow("empty") << QStringLiteral("") << QStringLiteral("ЗУ5") << 6;
    QTest::newRow("given") << QStringLiteral("Участок 7") << QStringLiteral("Участок 7") << 5;
    QTest::newRow("given with spaces around") << QStringLiteral(" 7 ") << QStringLiteral(" 7 ") << 5;
    QTest::newRow("a space") << QStringLiteral(" ") << QStringLiteral(" ") << 5;
    QTest::newRow("of the look of a generated one") << QStringLiteral("ЗУ5") << QStringLiteral("ЗУ5") << 5;
}

void tst_MapImportBuild::objectIsNamed()
{
    QFETCH(QString, def);
    QFETCH(QString, name);
    QFETCH(int, next);
    ImportFixture b;
    b.import.appendEmptyPolygon();

    b.import.setLastPolygonDef(def);

    QCOMPARE(b.objects.last().def, name);
    QCOMPARE(b.import.objectStartNum, next);
    QCOMPARE(b.import.pointStartNum, 1);
}

void tst_MapImportBuild::onlyTheLastObjectIsNamed()
{
    ImportFixture b;
    b.import.appendEmptyPolygon();
    b.import.setLastPolygonDef(QStringLiteral("A"));
    b.import.appendEmptyPolygon();
    b.import.setLastPolygonDef(QString());
    b.import.appendEmptyPolygon();
    b.import.setLastPolygonDef(QString());

    QCOMPARE(b.objectTexts(), (QStringList{QStringLiteral("A"), QStringLiteral("ЗУ5"), QStringLiteral("ЗУ6")}));
}

QTEST_GUILESS_MAIN(tst_MapImportBuild)

#include "tst_mapimport_build.moc"
