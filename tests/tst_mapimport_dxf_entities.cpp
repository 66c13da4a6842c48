#include "dxftesting.h"

/// The readers of points, lines and polylines.
class tst_MapImportDxfEntities : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pointIsRead_data();
    void pointIsRead();
    void lineIsRead_data();
    void lineIsRead() { compareObjects(); }
    void polylineIsRead_data();
    void polylineIsRead() { compareObjects(); }
    void polylineIsClosedByFlagOne_data();
    void polylineIsClosedByFlagOne() { compareObjects(); }
    void lwpolylineIsRead_data();
    void lwpolylineIsRead() { compareObjects(); }
    void lwpolylineNeedsItsVertexCount_data();
    void lwpolylineNeedsItsVertexCount() { compareObjects(); }
    void lwpolylineIsClosedByLowestBit_data();
    void lwpolylineIsClosedByLowestBit() { compareObjects(); }
    void closingVertexIsCopiedAsStored();

private:
    static void compareObjects();
};

void tst_MapImportDxfEntities::compareObjects()
{
    DxfFixture dxf;

    compareRun(dxf, &DxfFixture::objects);
}

void tst_MapImportDxfEntities::pointIsRead_data()
{
    addRunColumns();
    for (const char *entity : {"INSERT", "POINT", "CIRCLE", "ELLIPSE"})
        addRun(entity, drawing(QByteArray("0 ") + entity + "|8 0|10 1|20 2|30 5"), "- 1 2");

    addRun("y before x", drawing("0 POINT|20 2|10 1"), "- 1 2");
    addRun("end of the file after y", openDrawing("0 POINT|10 1|20 2"), "- 1 2");
    addRun("x repeated before y", drawing("0 POINT|10 9|10 1|20 2"), "- 1 2");
    addRun("x repeated after y", drawing("0 POINT|10 1|20 2|10 9"), "- 1 2");
    addRun("exponent and sign", drawing("0 POINT|10 +10e-1|20 .2e1"), "- 1 2");
    addRun("second point is ignored", drawing("0 ELLIPSE|11 abc|21 abc|10 1|20 2|40 abc"), "- 1 2");
    addRun("y from the next entity", drawing("0 POINT|10 1|0 FOO|20 2"), "- 1 2");
    addRun("points in another order", drawing("0 POINT|10 3|20 4|0 CIRCLE|10 1|20 2"), "- 1 2; - 3 4");

    addRun("decimal comma", drawing("0 POINT|10 3|20 4|0 POINT|10 1,5|20 2"), "- 3 4", 20);
    addRun("repeated x is not a number", drawing("0 POINT|10 1|10 abc|20 2"), "", 16);
    addRun("end of the file before y", openDrawing("0 POINT|10 1"), "", 14);
    addRun("blank line before y", drawing("0 POINT|10 1||20 2"), "", 15);

    // If reading a point stops at a pair with the value TEXT, a text begins there.
    const QByteArray point = "|0 POINT|10 1|20 2";
    addRun("TEXT in place of x", drawing("0 POINT|10 TEXT|10 1|20 2|1 т" + point), "т 1 2");
    // The objects pass fails at the blank line.
    addRun("TEXT before a blank line", drawing("0 CIRCLE|8  TEXT ||10 1|20 2|1 т" + point), "т 1 2", 15);
    addRun("incomplete TEXT", drawing("0 POINT|10 TEXT|20 2|1 т"), "", 20);
}

void tst_MapImportDxfEntities::pointIsRead()
{
    DxfFixture dxf;
    dxf.import.searchPointDefs = true;
    dxf.import.swapXY = true; // affects vertices only

    compareRun(dxf, &DxfFixture::points);
    QCOMPARE(dxf.import.pointStartNum, 1);
}

void tst_MapImportDxfEntities::lineIsRead_data()
{
    addRunColumns();
    const auto one = "ЗУ1 [н1 1 2, н2 3 4]";

    addRun("all groups", drawing("0 LINE|8 0|10 1|20 2|30 9|11 3|21 4|31 9"), one);
    addRun("second point first", drawing("0 LINE|21 4|11 3|20 2|10 1|10 9|21 abc"), one);
    addRun("coordinates from the next LINE",
           drawing("0 LINE|10 9|20 9|11 9|0 LINE|10 1|20 2|11 3|21 4|0 LINE|10 3|20 4|11 5|21 6"),
           "ЗУ1 [н1 1 2, н2 3 4]; ЗУ2 [н2 3 4, н3 5 6]");
    addRun("same place twice", drawing("0 LINE|10 1|20 2|11 1|21 2"), "ЗУ1 [н1 1 2, н1 1 2]");
    addRun("second y is not a number", drawing(lineEntity + "|0 LINE|10 1|20 2|11 3|21 4 5"), lineObject, 30);
    addRun("no second y", drawing("0 LINE|10 1|20 2|11 3"), "", 22);
}

void tst_MapImportDxfEntities::polylineIsRead_data()
{
    addRunColumns();
    const QByteArray vertex = "0 POLYLINE|0 VERTEX|10 1|20 2|";
    const QByteArray vertices = vertex + "0 VERTEX|10 3|20 4|";

    addRun("all groups",
           drawing("0 POLYLINE|8 0|66 1|10 abc|20 abc|30 0|0 VERTEX|8 0|10 1|20 2|30 0|42 1"
                   "|0 VERTEX|10 3|20 4|10 abc|0 SEQEND|8 0"),
           "ЗУ1 [н1 1 2, н2 3 4]");
    addRun("y from beyond the end of the polyline",
           drawing(vertex + "0 VERTEX|10 3|0 SEQEND|0 FOO|20 4|0 VERTEX|10 5|20 6|0 SEQEND"),
           "ЗУ1 [н1 1 2, н2 3 4, н3 5 6]");

    addRun("no vertex", drawing("0 POLYLINE|70 1|0 SEQEND"), "- []", 16);
    addRun("one vertex", drawing(vertex + "0 SEQEND"), "- [н1 1 2]", 20);
    addRun("interrupted by another entity", drawing(vertices + lineEntity), "- [н1 1 2, н2 3 4]", 26);
    addRun("x is not a number", drawing(vertex + "0 VERTEX|10 abc|20 4|0 SEQEND"), "- [н1 1 2]", 22);
    addRun("blank line after a vertex", drawing(vertices + "|0 SEQEND"), "- [н1 1 2, н2 3 4]", 25);
    addRun("end of the file after a vertex", openDrawing(vertices + "8 0"), "- [н1 1 2, н2 3 4]", 26);
}

void tst_MapImportDxfEntities::polylineIsClosedByFlagOne_data()
{
    addRunColumns();
    const auto row = [](const char *name, const QByteArray &groups, const QByteArray &vertex, bool isClosed) {
        const QByteArray vertices = "|0 VERTEX|10 9|20 2|0 VERTEX|10 9|20 8|0 SEQEND|0 LINE|10 9|20 8|11 0|21 0";
        const auto closed = "ЗУ1 [н1 1 2, н2 9 2, н3 9 8, н1 1 2]; ЗУ2 [н3 9 8, н4 0 0]";
        const auto open = "ЗУ1 [н1 1 2, н2 9 2, н3 9 8]; ЗУ2 [н3 9 8, н4 0 0]";
        addRun(name, drawing("0 POLYLINE" + groups + "|0 VERTEX|" + vertex + vertices), isClosed ? closed : open);
    };

    for (const char *flag : {"0", "9", "129", "01", "11"})
        row(flag, QByteArray("|70 ") + flag, "10 1|20 2", false);
    row("no flag", "|71 1|7 1|070 1", "10 1|20 2", false);
    row("flag 1 between blanks", "|70  1 ", "10 1|20 2", true);
    row("flag 1 before another", "|70 1|70 0", "10 1|20 2", true);
    row("flag of a vertex after its coordinates", "|70 0", "10 1|20 2|70 1", true);
    row("flag of a vertex between its coordinates", "|70 0", "10 1|70 1|20 2", false);
}

void tst_MapImportDxfEntities::lwpolylineIsRead_data()
{
    addRunColumns();
    const auto two = "ЗУ1 [н1 1 2, н2 3 4]";
    const auto three = "ЗУ1 [н1 1 2, н2 3 4, н3 5 6]";
    const auto row = [](const char *name, const QByteArray &groups, const char *objects, int errorLine = 0) {
        addRun(name, drawing("0 LWPOLYLINE|" + groups), objects, errorLine);
    };

    row("all groups", "8 0|90 2|70 0|43 1|10 1|20 2|11 abc|42 1|10 3|20 4|42 1|210 0", two);
    row("coordinates in any order", "90 2|20 9|20 2|10 1|20 4|10 3", two);
    row("groups after the last vertex", "90 2|10 1|20 2|10 3|20 4|10 5|20 abc", two);
    row("count between the first x and y", "10 1|90 2|20 2|10 3|20 4", two);
    row("count raised after the first vertex", "90 2|10 1|20 2|90 2|10 3|20 4|10 5|20 6", three);
    row("count reduced after the first vertex", "90 9|10 1|20 2|90 1|10 3|20 4|10 5|20 6", two);

    row("no count before the first vertex", "10 1|20 2|90 2|10 3|20 4", "- []", 16);
    row("fewer vertices than the count", "90 4|10 1|20 2|10 3|20 4|" + lineEntity, "- [н1 1 2, н2 3 4]", 24);
    row("count is not a number", "90 2|10 1|20 2|90 abc|10 3|20 4", "- [н1 1 2]", 20);
    row("count becomes the smallest int", "90 2|10 1|20 2|90 -2147483648|10 3|20 4", "- [н1 1 2, н2 3 4]", 26);
    row("x is not a number", "90 2|10 abc|20 2|10 3|20 4", "- []", 16);
    row("blank line in a vertex", "90 2|10 1|20 2|10 3||20 4", "- [н1 1 2]", 21);
    addRun("end of the file", openDrawing("0 LWPOLYLINE|90 2|10 1|20 2|10 3"), "- [н1 1 2]", 20);
}

void tst_MapImportDxfEntities::lwpolylineNeedsItsVertexCount_data()
{
    addRunColumns();

    for (const char *count : {"1", "0", "-1"})
        addRun(count, drawing(QByteArray("0 LWPOLYLINE|90 ") + count + "|10 1|20 2|10 3|20 4"), "- []", 18);
    for (const char *count : {"abc", "2.0", ""})
        addRun(count, drawing(QByteArray("0 LWPOLYLINE|90 ") + count + "|10 1|20 2|10 3|20 4"), "- []", 14);
}

void tst_MapImportDxfEntities::lwpolylineIsClosedByLowestBit_data()
{
    addRunColumns();
    const auto row = [](const char *name, const QByteArray &groups, const QByteArray &last, const char *lastVertices) {
        const QByteArray vertices = "|10 1|20 2|10 9|20 2|10 9|20 8|";
        const QByteArray objects = QByteArray("ЗУ1 [н1 1 2, н2 9 2, н3 9 8, ") + lastVertices + "]";
        addRun(name, drawing("0 LWPOLYLINE|90 4|" + groups + vertices + last), objects);
    };
    const auto open = "н4 1 8";
    const auto closed = "н4 1 8, н1 1 2";

    for (const char *flag : {"1", "129", "-1"})
        row(flag, QByteArray("70 ") + flag, "10 1|20 8", closed);
    for (const char *flag : {"0", "2", "abc"})
        row(flag, QByteArray("70 ") + flag, "10 1|20 8", open);
    row("last flag is not a number", "70 1|70 abc", "10 1|20 8", open);
    row("flag of the last vertex", "70 0", "10 1|70 1|20 8", closed);
    row("flag after the last vertex", "70 0", "10 1|20 8|70 1", open);
    row("last vertex within the tolerance of the first", "70 1", "10 1.005|20 1.995", "н1 1.005 1.995");
    row("last vertex beyond the tolerance", "70 1", "10 1|20 2.0101", "н4 1 2.0101, н1 1 2");
}

// The first vertex has swapped coordinates and the empty designation of a known point. Its copy has the same.
void tst_MapImportDxfEntities::closingVertexIsCopiedAsStored()
{
    DxfFixture dxf;
    dxf.import.searchPointDefs = true;
    dxf.import.swapXY = true;

    QVERIFY(dxf.run(drawing("0 POINT|10 0|20 5|0 LWPOLYLINE|90 3|70 1|10 0.005|20 5|10 9|20 5|10 9|20 8")));

    QCOMPARE(dxf.objects(), QStringLiteral("ЗУ1 [- 5 0.005, н1 5 9, н2 8 9, - 5 0.005]"));
    QCOMPARE(dxf.points(), QStringLiteral("- 0 5; н1 9 5; н2 9 8"));
}

QTEST_GUILESS_MAIN(tst_MapImportDxfEntities)
#include "tst_mapimport_dxf_entities.moc"
