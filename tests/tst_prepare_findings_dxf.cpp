#include "preparetesting.h"

/// The findings about the content of drawings: each row has a drawing in which exactly one is found, or a similar one
/// without it.
class tst_PrepareFindingsDxf : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void headerIsFound_data();
    void headerIsFound() { compareFindings(); }
    void stopIsFound_data();
    void stopIsFound() { compareFindings(); }
    void lostContentIsFound_data();
    void lostContentIsFound() { compareFindings(); }
    void fillingIsNoLoss_data();
    void fillingIsNoLoss();
    void blockIsFound_data();
    void blockIsFound() { compareFindings(); }
    void polylineIsFound_data();
    void polylineIsFound() { compareFindings(); }
    void deviationIsThatOfTheLargestArc_data();
    void deviationIsThatOfTheLargestArc();
    void unreadKindsAreCounted();
    void noteLeavesTheFileComplete();
    void lineIsThatOfTheFileAfterASecondPass_data();
    void lineIsThatOfTheFileAfterASecondPass();

private:
    static void addColumns();
    static void add(const char *name, const QStringList &lines, const char *findings);
    static void compareFindings();
};

namespace {

/// A number of a point at (\a x, 0).
QByteArray number(const QByteArray &x)
{
    return "0 TEXT|8 0|10 " + x + "|20 0|40 1|1 5";
}

} // namespace

void tst_PrepareFindingsDxf::addColumns()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QString>("findings");
}

void tst_PrepareFindingsDxf::add(const char *name, const QStringList &lines, const char *findings)
{
    QTest::newRow(name) << lines << QString::fromUtf8(findings);
}

void tst_PrepareFindingsDxf::compareFindings()
{
    QFETCH(QStringList, lines);
    const CheckFixture check;

    const FileReport report = check.checkDxf(lines);

    QTEST(described(report.findings), "findings");
}

void tst_PrepareFindingsDxf::headerIsFound_data()
{
    addColumns();
    add("complete", drawing(lineEntity), "");
    add("empty file", {}, "not-dxf 1 @ строка 1");
    add("another text", {QStringLiteral("Ведомость координат"), QStringLiteral("1 2 3")}, "not-dxf 1 @ строка 2");
    add("comment", pairs("999 written by hand") + drawing(lineEntity), "leading-comment 1 @ строка 1");
    add("two comments", pairs("999 a|999 b") + drawing(lineEntity), "leading-comment 1 @ строка 1");
    add("comment after the header", drawing("999 comment|" + lineEntity), "");
    add("tables first", pairs("0 SECTION|2 TABLES|0 ENDSEC") + drawing(lineEntity), "first-section 1 @ строка 4");
    add("entities only", pairs("0 SECTION|2 ENTITIES|" + lineEntity + "|0 ENDSEC|0 EOF"), "first-section 1 @ строка 4");
    add("binary", {QStringLiteral("AutoCAD Binary DXF"), QString(QChar(0x1A))}, "binary-dxf 1 @ строка 1");
}

void tst_PrepareFindingsDxf::stopIsFound_data()
{
    addColumns();
    const QByteArray two = lineEntity + '|' + lineEntity;
    QStringList blank = drawing(two);
    blank.insert(20, QString());
    add("blank line", blank, "blank-line 1 @ строка 21");
    add("blank line after the end", drawing(lineEntity) + QStringList{QString()}, "blank-line 1 @ строка 25");
    add("blank value", drawing("0 LINE|8 |10 0|20 0|11 10|21 0"), "");
    add("no end", openDrawing(lineEntity), "truncated 1 @ строка 20");
    add("end within an entity", openDrawing(lineEntity + "|0 LINE|10 0|20 0"), "truncated 1 @ строка 26");
    add("end after a group code", openDrawing(lineEntity + "|8"), "truncated 1 @ строка 21");
    add("decimal comma", drawing(lineEntity + "|0 LINE|10 0,5|20 0|11 10,5|21 0"), "decimal-comma 2 @ строка 24");
    add("decimal comma in an unread entity", drawing(lineEntity + "|0 SOLID|8 0|10 0,5|20 0"),
        "entities-not-read 1 @ строка 22, слой «0», SOLID");
    add("too few vertices", drawing(lineEntity + "|0 LWPOLYLINE|90 3|10 0|20 0|10 1|20 1"),
        "stops-early 1 @ строка 34");
    add("text without content", drawing(lineEntity + "|0 TEXT|10 0|20 0"), "stops-early 1 @ строка 28");
}

void tst_PrepareFindingsDxf::lostContentIsFound_data()
{
    addColumns();
    const QByteArray arc = "0 ARC|8 Дуги|10 0|20 0|40 5|50 0|51 90";
    const QByteArray solid = "0 SOLID|8 0|10 0|20 0|11 5|21 0|12 0|22 5|13 5|23 5";
    add("arc", drawing(lineEntity + '|' + arc + '|' + arc), "curves 2 @ строка 22, слой «Дуги», ARC");
    add("circle", drawing(lineEntity + "|0 CIRCLE|8 0|10 50|20 0|40 5"), "curves 1 @ строка 22, слой «0», CIRCLE");
    add("circle that marks a vertex",
        drawing("0 LWPOLYLINE|90 3|70 1|10 0|20 0|10 10|20 0|10 10|20 10|0 CIRCLE|8 0|10 10|20 0|40 0.5|" +
                number("14")),
        "");
    add("circle on the end of a line", drawing(lineEntity + "|0 CIRCLE|8 0|10 10|20 0|40 0.5|" + number("14")),
        "curves 1 @ строка 22, слой «0», CIRCLE");
    add("ellipse", drawing(lineEntity + "|0 ELLIPSE|8 0|10 50|20 0|11 5|21 0|40 0.5|41 0|42 6.2"),
        "curves 1 @ строка 22, слой «0», ELLIPSE");
    add("spline",
        drawing(lineEntity + "|0 SPLINE|8 0|70 8|71 1|72 4|73 2|40 0|40 0|40 1|40 1|10 0|20 0|30 0|10 5|20 5|30 0"),
        "curves 1 @ строка 22, слой «0», SPLINE");
    add("solid", drawing(lineEntity + '|' + solid), "entities-not-read 1 @ строка 22, слой «0», SOLID");
    add("keyword in small letters", drawing(lineEntity + "|0 line|8 0|10 0|20 0|11 10|21 0"),
        "entities-not-read 1 @ строка 22, слой «0», line");
    add("text of several lines", drawing(lineEntity + "|0 MTEXT|8 Н|10 0|20 0|40 1|1 ЗУ1"),
        "texts-not-read 1 @ строка 22, слой «Н», MTEXT");
    add("attribute",
        drawing(lineEntity + "|0 INSERT|8 0|2 SIGN|66 1|10 50|20 0|0 ATTRIB|8 0|10 0|20 0|40 1|1 7|2 N|"
                             "0 SEQEND|8 0"),
        "texts-not-read 1 @ строка 34, слой «0», ATTRIB");
    add("text", drawing(lineEntity + "|0 TEXT|8 0|10 0|20 0|40 1|1 ЗУ1"), "");
    add("point", drawing(lineEntity + "|0 POINT|8 0|10 50|20 0"), "");
    add("line that swallows the next one", drawing("0 LINE|8 0|10 0|20 0|11 10|" + lineEntity), "fewer-objects 1");
    add("points only", drawing("0 POINT|8 0|10 50|20 0"), "nothing-imported 1");
    add("no entities", drawing("999 empty"), "nothing-imported 1");
}

void tst_PrepareFindingsDxf::fillingIsNoLoss_data()
{
    QTest::addColumn<QByteArray>("entities");
    QTest::addColumn<QString>("findings");
    QTest::addColumn<int>("areas");

    const QByteArray triangle = "|10 0|20 0|10 10|20 0|10 10|20 10";
    const QByteArray other = "|10 0|20 0|10 10|20 0|10 9|20 9";
    const QByteArray outline = "0 LWPOLYLINE|90 3|70 1" + triangle;
    const auto hatch = [](const QByteArray &handle, const QByteArray &vertices) {
        return "|0 HATCH" + handle + "|8 0|10 0|20 0|30 0|2 SOLID|70 1|71 0|91 1|92 3|72 0|73 1|93 3" + vertices +
               "|97 0|75 0|76 1|98 0";
    };
    const QString lost = QStringLiteral("entities-not-read 1 @ строка 30, слой «0», HATCH");
    QTest::newRow("hatch of an outline") << outline + hatch("|5 2F", triangle) << QString() << 0;
    QTest::newRow("hatch that GDAL reads in part") << outline + hatch("|5 2F", triangle).replace("91 1", "91 2")
                                                   << QStringLiteral("read-error 1 @ строка 72") << 0;
    QTest::newRow("two of them") << outline + hatch("|5 2F", triangle) + hatch("|5 30", triangle) << QString() << 0;
    QTest::newRow("other hatch") << outline + hatch("|5 2F", other) << lost << 1;
    QTest::newRow("hatch without an outline")
        << lineEntity + hatch("|5 2F", triangle) << QStringLiteral("entities-not-read 1 @ строка 22, слой «0», HATCH")
        << 1;
    QTest::newRow("hatch without a handle") << outline + hatch({}, triangle) << lost << 0;
    QTest::newRow("only one of two") << outline + hatch("|5 2F", other) + hatch("|5 30", triangle) << lost << 1;
}

void tst_PrepareFindingsDxf::fillingIsNoLoss()
{
    QFETCH(QByteArray, entities);
    const CheckFixture check;

    const FileReport report = check.checkDxf(drawing(entities));

    QTEST(described(report.findings), "findings");
    QVERIFY(report.found.has_value());
    QTEST(static_cast<int>(report.found->areas), "areas");
}

void tst_PrepareFindingsDxf::blockIsFound_data()
{
    addColumns();
    const auto withBlocks = [](const QByteArray &blocks, const QByteArray &entities) {
        return pairs("0 SECTION|2 HEADER|0 ENDSEC|0 SECTION|2 BLOCKS|" + blocks + "|0 ENDSEC|0 SECTION|2 ENTITIES|" +
                     entities + '|' + lineEntity + "|0 ENDSEC|0 EOF");
    };
    const auto block = [](const QByteArray &name, const QByteArray &content) {
        return "0 BLOCK|8 0|2 " + name + "|70 0|10 0|20 0|3 " + name + content + "|0 ENDBLK|8 0";
    };
    const auto insert = [](const QByteArray &name) { return "0 INSERT|8 L|2 " + name + "|10 50|20 0"; };
    const QByteArray line = "|0 LINE|8 0|10 0|20 0|11 1|21 1";
    add("line in a block", withBlocks(block("A", line), insert("A") + '|' + insert("A")),
        "blocks 2 @ строка 48, слой «L», INSERT");
    add("name in another case", withBlocks(block("a", line), insert("A")), "blocks 1 @ строка 48, слой «L», INSERT");
    add("point in a block", withBlocks(block("A", "|0 POINT|8 0|10 0|20 0"), insert("A")), "");
    add("block without insertion", withBlocks(block("A", line) + '|' + block("B", {}), insert("B")), "");
    add("block in a block", withBlocks(block("A", line) + '|' + block("B", '|' + insert("A")), insert("B")),
        "blocks 1 @ строка 76, слой «L», INSERT");
    const QByteArray mark = block("M", "|0 CIRCLE|8 0|10 0|20 0|40 0.5|0 LINE|8 0|10 -0.5|20 0|11 0.5|21 0");
    add("block that marks a vertex", withBlocks(mark, "0 INSERT|8 L|2 M|10 10|20 0|" + number("10")), "");
    add("block that marks nothing", withBlocks(mark, insert("M")), "blocks 1 @ строка 58, слой «L», INSERT");
    add("copies without end", withBlocks(block("A", line), insert("A") + "|70 3000|71 3000"),
        "too-many-copies 1 @ строка 48; blocks 1 @ строка 48, слой «L», INSERT");
    add("block in itself", withBlocks(block("A", '|' + insert("A")), insert("A")), "");
}

void tst_PrepareFindingsDxf::polylineIsFound_data()
{
    addColumns();
    const auto polyline = [](const QByteArray &flags) {
        return drawing("0 POLYLINE|8 Г|66 1|70 " + flags +
                       "|0 VERTEX|8 0|10 0|20 0|0 VERTEX|8 0|10 9|20 0|0 VERTEX|8 0|10 9|20 9|0 SEQEND");
    };
    const auto lwPolyline = [](const QByteArray &flags, const QByteArray &bulge) {
        return drawing("0 LWPOLYLINE|8 Г|90 3|70 " + flags + "|10 0|20 0" + bulge + "|10 10|20 0|10 10|20 10|42 0.5");
    };
    add("open", polyline("0"), "");
    add("closed", polyline("1"), "");
    add("closed in space", polyline("9"), "polyline-flag 1 @ строка 12, слой «Г», POLYLINE");
    add("closed with pattern", polyline("129"), "polyline-flag 1 @ строка 12, слой «Г», POLYLINE");
    add("open in space", polyline("8"), "");
    add("polygon mesh", polyline("16|71 3|72 1"), "mesh 1 @ строка 12, слой «Г», POLYLINE");
    add("polyhedral mesh", polyline("64|71 3|72 0"), "polyline-kind 1 @ строка 12, слой «Г», POLYLINE");
    add("smoothed", polyline("4"), "polyline-kind 1 @ строка 12, слой «Г», POLYLINE");
    add("chords only", lwPolyline("0", {}), "");
    add("arc", lwPolyline("0", "|42 1"), "bulges 1 @ строка 12, слой «Г», LWPOLYLINE");
    add("closing arc", lwPolyline("1", "|42 -1"), "bulges 2 @ строка 12, слой «Г», LWPOLYLINE");
    add("mirrored", lwPolyline("0", "|210 0|220 0|230 -1"), "mirrored 1 @ строка 12, слой «Г», LWPOLYLINE");
    add("on a sheet", lwPolyline("0", "|67 1"), "paper-space 1 @ строка 12, слой «Г», LWPOLYLINE");
    add("in the model", lwPolyline("0", "|67 0"), "");
    add("not mirrored", lwPolyline("0", "|210 0|220 0|230 1"), "");
    add("polylines in space have no plane of their own", polyline("8|230 -1"), "");
    add("mirrored text", drawing(lineEntity + "|0 TEXT|8 0|10 0|20 0|40 1|1 ЗУ1|230 -1"),
        "mirrored 1 @ строка 22, слой «0», TEXT");
    add("lines have no plane of their own", drawing(lineEntity + "|230 -1"), "");
    add("arc of an old polyline",
        drawing("0 POLYLINE|8 Г|66 1|0 VERTEX|8 0|10 0|20 0|42 0.1|0 VERTEX|8 0|10 9|20 0|0 SEQEND"),
        "bulges 1 @ строка 12, слой «Г», POLYLINE");
}

void tst_PrepareFindingsDxf::deviationIsThatOfTheLargestArc_data()
{
    QTest::addColumn<QByteArray>("bulges");
    QTest::addColumn<QString>("deviation");

    QTest::newRow("half circle") << QByteArray("|42 1") << QStringLiteral("5 ");
    QTest::newRow("to the other side") << QByteArray("|42 -0.5") << QStringLiteral("2.5 ");
}

void tst_PrepareFindingsDxf::deviationIsThatOfTheLargestArc()
{
    QFETCH(QByteArray, bulges);
    QFETCH(QString, deviation);
    const CheckFixture check;

    const FileReport report =
        check.checkDxf(drawing("0 LWPOLYLINE|8 0|90 3|70 0|10 0|20 0|42 0.01|10 10|20 0" + bulges + "|10 10|20 10"));

    QCOMPARE(report.findings.size(), 1);
    QVERIFY2(report.findings.first().text.contains(QStringLiteral("отклонение — ") + deviation),
             qPrintable(report.findings.first().text));
}

void tst_PrepareFindingsDxf::unreadKindsAreCounted()
{
    const CheckFixture check;

    const FileReport report = check.checkDxf(drawing(lineEntity + "|0 WIPEOUT|0 HATCH|0 WIPEOUT"));

    QCOMPARE(report.findings.size(), 1);
    QCOMPARE(report.findings.first().text, QStringLiteral("Импорт не читает: HATCH 1, WIPEOUT 2."));
    QCOMPARE(report.findings.first().cure,
             QStringLiteral("Разбейте их на линии и полилинии в чертеже (WIPEOUT — только так) или преобразуйте файл "
                            "командой convert."));
}

void tst_PrepareFindingsDxf::noteLeavesTheFileComplete()
{
    const CheckFixture check;

    const FileReport report = check.checkDxf(drawing("0 LINE|8 0|67 1|10 0|20 0|11 10|21 0"));

    QCOMPARE(described(report.findings), QStringLiteral("paper-space 1 @ строка 12, слой «0», LINE"));
    QVERIFY(report.isComplete());
}

void tst_PrepareFindingsDxf::lineIsThatOfTheFileAfterASecondPass_data()
{
    QTest::addColumn<QStringList>("end");

    QTest::newRow("even number of lines") << QStringList();
    QTest::newRow("odd number of lines") << QStringList{QStringLiteral("999")};
}

// Without a search for points the import reads the texts in a separate pass and continues its line count.
void tst_PrepareFindingsDxf::lineIsThatOfTheFileAfterASecondPass()
{
    QFETCH(QStringList, end);
    CheckFixture check;
    check.options.searchPoints = false;

    const FileReport report = check.checkDxf(drawing(lineEntity + "|0 LINE|10 x|20 0|11 10|21 0") + end);

    QCOMPARE(report.messages.size(), 1);
    QVERIFY(!report.messages.first().endsWith(QStringLiteral(": 24")));
    QCOMPARE(described(report.findings), QStringLiteral("stops-early 1 @ строка 24"));
}

QTEST_GUILESS_MAIN(tst_PrepareFindingsDxf)
#include "tst_prepare_findings_dxf.moc"
