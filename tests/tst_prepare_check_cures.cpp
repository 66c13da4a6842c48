#include "converttesting.h"
#include "preparetesting.h"

#include <QSet>

/// The cures of the findings: after convert, or after the edit that a cure names, the import gives what GDAL counts.
class tst_PrepareCheckCures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyFindingIsCured();
    void conversionCures_data();
    void conversionCures();
    void editCures_data();
    void editCures();
    void textInMifNamesItsOutline();
    void binaryDrawingIsCured();
    void commandIsPrintedIfItHelps_data();
    void commandIsPrintedIfItHelps();
};

namespace {

/// A MIF file if it has records or its text begins with the version, otherwise a drawing.
struct Input
{
    QStringList lines;
    QString records; ///< null: no MID file
    QString midFile = QStringLiteral("plan.mid");
    QString encoding = QStringLiteral("UTF-8");
    bool searchPoints = true;

    bool isMif() const { return !lines.isEmpty() && lines.first().startsWith(QLatin1String("VERSION")); }
    QString fileName() const { return isMif() ? QStringLiteral("plan.mif") : QStringLiteral("plan.dxf"); }
};

/// A file with the finding \a id and the same after an edit.
struct Edit
{
    const char *id;
    Input before;
    Input after;
};

const QString mifColumns = QStringLiteral("COLUMNS 1\n  Name Char(10)\nDATA\n");
const QByteArray far = "0 LINE|8 0|10 1000|20 0|11 1010|21 0";

Input drawn(const QByteArray &entities)
{
    Input input;
    input.lines = drawing(entities);
    return input;
}

Input written(const QStringList &lines)
{
    Input input;
    input.lines = lines;
    return input;
}

/// A line, a block with another line and \a insertions of it.
Input drawnWithBlock(const QByteArray &insertions)
{
    return written(pairs("0 SECTION|2 HEADER|0 ENDSEC|0 SECTION|2 BLOCKS|0 BLOCK|8 0|2 A|70 0|10 0|20 0|" + lineEntity +
                         "|0 ENDBLK|0 ENDSEC|0 SECTION|2 ENTITIES|" + far + insertions + "|0 ENDSEC|0 EOF"));
}

Input mapped(const char *data, const char *records, const QString &header = mifHeader)
{
    Input input;
    input.lines = QStringList{header + mifColumns + QString::fromUtf8(data)};
    input.records = QString::fromUtf8(records);
    return input;
}

/// Changes one member of \a input.
template <typename Value>
Input with(Input input, Value Input::*member, const Value &value)
{
    input.*member = value;
    return input;
}

FileReport check(const Input &input, const TextFixture &files)
{
    CheckOptions options;
    options.encoding = input.encoding;
    options.searchPoints = input.searchPoints;
    if (!input.records.isNull())
        files.write(input.midFile, {input.records});
    return checkFile(files.write(input.fileName(), input.lines), options, false);
}

/// Checks a converted file.
FileReport checkOutput(const ConvertFixture &files)
{
    CheckOptions options;
    options.encoding = QStringLiteral("windows-1251");
    return checkFile(files.path(QStringLiteral("out.mif")), options, false);
}

using Conversions = QVector<QPair<const char *, Input>>;

Conversions drawingConversions()
{
    const QByteArray arc = "|0 ARC|8 0|10 2000|20 0|40 500|50 0|51 90";
    const QByteArray vertices = "|0 VERTEX|8 0|10 0|20 0|0 VERTEX|8 0|10 900|20 0|0 VERTEX|8 0|10 900|20 900|0 SEQEND";
    const auto text = [](const char *at, const char *content) {
        return QByteArray("|0 TEXT|8 0|10 ") + at + "|20 0|40 1|1 " + content;
    };
    return {
        {"leading-comment", written(pairs("999 comment") + drawing(far))},
        {"first-section", written(pairs("0 SECTION|2 ENTITIES|" + far + "|0 ENDSEC|0 EOF"))},
        {"stops-early", drawn("0 LWPOLYLINE|8 0|90 3|70 0|10 0|20 0|10 9|20 0|" + far)},
        {"blocks", drawnWithBlock("|0 INSERT|8 0|2 A|10 0|20 0|0 INSERT|8 0|2 A|10 0|20 50")},
        {"nothing-imported", drawn(arc.mid(1))},
        {"curves", drawn(far + arc)},
        {"entities-not-read", drawn(far + "|0 SOLID|8 0|10 0|20 0|11 500|21 0|12 0|22 500|13 500|23 500")},
        {"texts-not-read", drawn(far + "|0 MTEXT|8 0|10 1005|20 1|40 1|1 ЗУ1")},
        {"polyline-kind", drawn("0 POLYLINE|8 0|66 1|70 3" + vertices)},
        {"polyline-flag", drawn("0 POLYLINE|8 0|66 1|70 129" + vertices)},
        {"bulges", drawn("0 LWPOLYLINE|8 0|90 2|70 0|10 0|20 0|42 0.5|10 500|20 0")},
        {"mirrored", drawn("0 LWPOLYLINE|8 0|90 2|70 0|10 10|20 0|10 500|20 0|210 0|220 0|230 -1")},
        {"fewer-objects", drawn("0 LINE|8 0|10 0|20 0|11 10|" + far)},
        {"misplaced-names", drawn(far + text("1105", "Б") + text("1205", "В") + text("1005", "А"))},
        {"escaped-names", drawn(far + text("1005", "\\U+0416"))},
        {"decimal-comma", drawn(far + "|0 LINE|8 0|10 0,5|20 0|11 10,5|21 0")},
    };
}

Conversions mifConversions()
{
    constexpr auto line = "LINE 0 0 900 0";
    const QString tabHeader = mifHeader.section(QLatin1Char('\n'), 0, 0) + QStringLiteral("\nDELIMITER \"\t\"\n");
    return {
        {"not-mif", mapped(line, "1", tabHeader)},
        {"decimal-comma", mapped("LINE 0 0 900 0\nPLINE 2\n0,5 90\n900,5 90", "1\n2")},
        {"blank-line", mapped("LINE 0 0 900 0\nPLINE 2\n0 90\n\n900 90", "1\n2")},
        {"stops-early", mapped("LINE 0 0 900 0\nREGION\n1\n4\n0 0\n900 0\n900 900\n0 0", "1\n2")},
        {"transform", mapped(line, "1", mifHeader + QStringLiteral("Transform 2,2,0,0\n"))},
        {"mid-missing", with(mapped(line, ""), &Input::records, QString())},
        {"mid-name-case", with(mapped(line, "1"), &Input::midFile, QStringLiteral("plan.MID"))},
        {"mid-empty-line", mapped("LINE 0 0 900 0\nLINE 0 9 900 9", "1\n\n")},
        {"pline-count", mapped("PLINE\n2\n0 0\n900 0\nPLINE MULTIPLE 1\n2\n0 9\n900 9", "1\n2")},
        {"collection", mapped("COLLECTION 2\nREGION 1\n4\n0 0\n900 0\n900 900\n0 0\nPLINE 2\n0 50\n900 50", "\"\"")},
        {"open-rings", mapped("REGION 1\n4\n0 0\n900 0\n900 900\n0 900", "1")},
    };
}

QVector<Edit> drawingEdits()
{
    const QStringList complete = drawing(far);
    QStringList blank = complete;
    blank.insert(12, QString());
    const QByteArray second = "|0 LINE|8 0|10 2000|20 0|11 2010|21 0";
    const auto text = [](const char *at, const char *content) {
        return QByteArray("|0 TEXT|8 0|10 ") + at + "|20 0|40 1|1 " + content;
    };
    const QByteArray points = "|0 POINT|8 0|10 1000|20 0|0 POINT|8 0|10 1010|20 0";
    const QByteArray hatch = "|0 HATCH|8 0|2 SOLID|70 1|71 0|91 2|92 7|72 0|73 1|93 3|10 0|20 0|10 500|20 0|"
                             "10 500|20 500|97 0|75 0|76 1"; // one boundary of two
    const Input shared = drawn(far + points + text("1003", "7"));
    const Input cyrillic = drawn(far + text("1005", "Участок"));
    return {
        {"not-dxf", written({QStringLiteral("1"), QStringLiteral("2")}), written(complete)},
        {"blank-line", written(blank), written(complete)},
        {"truncated", written(openDrawing(far)), written(complete)},
        {"too-many-copies", drawnWithBlock("|0 INSERT|8 0|2 A|10 0|20 0|70 2000|71 2000"), drawnWithBlock("")},
        {"stops-early", drawn(far + "|0 LINE|10 x|20 0|11 10|21 0"), drawn(far + "|0 LINE|10 0.5|20 0|11 10|21 0")},
        {"mesh",
         drawn("0 POLYLINE|8 0|66 1|70 16|71 2|72 2|0 VERTEX|8 0|10 0|20 0|0 VERTEX|8 0|10 90|20 0|0 VERTEX|8 0|"
               "10 0|20 90|0 VERTEX|8 0|10 90|20 90|0 SEQEND"),
         drawn("0 LWPOLYLINE|8 0|90 4|70 1|10 0|20 0|10 90|20 0|10 90|20 90|10 0|20 90")},
        {"merged-numbers", shared, drawn(far + points + text("1000", "7") + text("1010", "8"))},
        {"empty-numbers", drawn(far + points), drawn(far + points + text("1000", "7") + text("1010", "8"))},
        {"escaped-names", drawn(far + text("1005", "\\U+0416")), drawn(far + text("1005", "Ж"))},
        {"heights-as-names", drawn(far + text("1005", "101.5")), drawn(far)},
        {"misplaced-names", drawn(far + text("1105", "Б") + text("1205", "В") + text("1005", "А")),
         with(drawn(far + text("1105", "Б") + text("1205", "В") + text("1005", "А")), &Input::searchPoints, false)},
        {"shared-names", drawn(far + second + text("1005", "ЗУ")),
         drawn(far + second + text("1005", "ЗУ") + text("2005", "ДОМ"))},
        {"read-error", drawn(far + hatch), drawn(far)},
        {"encoding", with(cyrillic, &Input::encoding, QStringLiteral("windows-1251")), cyrillic},
        {"paper-space", drawn(far + "|0 LINE|8 0|67 1|10 0|20 0|11 10|21 0"), drawn(far)},
    };
}

QVector<Edit> mifEdits()
{
    constexpr auto two = "LINE 0 0 900 0\nLINE 0 9 900 9";
    constexpr auto plan = "PLINE 3\n37.6 55.7\n37.605 55.7\n37.605 55.705";
    const QString degrees =
        mifHeader + QStringLiteral("CoordSys Earth Projection 8, 104, \"m\", 39, 0, 1, 500000, 0\n");
    const Input capitals = with(mapped(two, "1\n2"), &Input::midFile, QStringLiteral("plan.MID"));
    return {
        {"mid-name-case", capitals, mapped(two, "1\n2")},
        {"mid-empty-line", mapped(two, "\n2"), mapped(two, "\"\"\n2")},
        {"mid-out-of-step", mapped(two, "1"), mapped(two, "1\n2")},
        {"texts-in-mif", mapped("LINE 0 0 900 0\nTEXT\n\"a\"\n0 0 9 9", ",\n,"),
         mapped("LINE 0 0 900 0\nTEXT\n\"a\"\n0 0 9 9", "a\n,")},
        {"pline-count", mapped("PLINE\n2\n0 0\n900 0", "1"), mapped("PLINE 2\n0 0\n900 0", "1")},
        {"blank-line", mapped("PLINE 2\n0 0\n\n900 0", "1"), mapped("PLINE 2\n0 0\n900 0", "1")},
        {"truncated", mapped("REGION 1\n4\n0 0\n900 0", "1"), mapped("REGION 1\n4\n0 0\n900 0\n900 900\n0 0", "1")},
        {"stops-early", mapped("PLINE 2\n0,5, 0\n900 0", "1"), mapped("PLINE 2\n0.5 0\n900 0", "1")},
        {"decimal-comma", mapped("PLINE 2\n0,5 0\n900 0", "1"), mapped("PLINE 2\n0.5 0\n900 0", "1")},
        {"not-finite", mapped("LINE 0 0 nan 9", "1"), mapped("LINE 0 0 900 9", "1")},
        {"degrees", mapped(plan, "1"), mapped("PLINE 3\n412013 6173579\n412327 6173572\n412338 6174129", "1", degrees)},
        {"open-rings", mapped("REGION 1\n4\n0 0\n900 0\n900 900\n0 900", "1"),
         mapped("REGION 1\n5\n0 0\n900 0\n900 900\n0 900\n0 0", "1")},
    };
}

/// Findings without a row here: files that could not be read or checked at all. How they are found is tested with the
/// program.
QSet<QString> incurable()
{
    return {QStringLiteral("unreadable"), QStringLiteral("crash"), QStringLiteral("timeout")};
}

qint64 outlined(const FileReport &report)
{
    return report.found ? report.found->areas + report.found->lines : -1;
}

} // namespace

Q_DECLARE_METATYPE(Input)

// A new finding needs a cure that has been tried.
void tst_PrepareCheckCures::everyFindingIsCured()
{
    QSet<QString> cured = incurable();
    cured += {QStringLiteral("binary-dxf"), QStringLiteral("degrees"), QStringLiteral("more-objects")};
    for (const auto &row : drawingConversions() + mifConversions())
        cured.insert(QString::fromLatin1(row.first));
    for (const Edit &row : drawingEdits() + mifEdits())
        cured.insert(QString::fromLatin1(row.id));

    const QStringList ids = findingIds();
    const QSet<QString> all(ids.begin(), ids.end());
    QCOMPARE((all - cured).values(), QStringList());
    QCOMPARE((cured - all).values(), QStringList());
}

void tst_PrepareCheckCures::conversionCures_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<Input>("input");

    for (const auto &row : drawingConversions())
        QTest::addRow("%s in a drawing", row.first) << QString::fromLatin1(row.first) << row.second;
    for (const auto &row : mifConversions())
        QTest::addRow("%s in a MIF file", row.first) << QString::fromLatin1(row.first) << row.second;
}

void tst_PrepareCheckCures::conversionCures()
{
    QFETCH(QString, id);
    QFETCH(Input, input);
    ConvertFixture files;

    const FileReport before = check(input, files.files);
    QVERIFY(files.convert(input.fileName()));
    const FileReport after = checkOutput(files);

    QVERIFY2(before.has(id), qPrintable(described(before.findings)));
    QVERIFY(!convertCommand(before).isEmpty());
    QCOMPARE(described(after.findings), QString());
    QCOMPARE(after.imported.objects, outlined(before));
}

void tst_PrepareCheckCures::editCures_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<Input>("before");
    QTest::addColumn<Input>("after");

    for (const Edit &row : drawingEdits())
        QTest::addRow("%s in a drawing", row.id) << QString::fromLatin1(row.id) << row.before << row.after;
    for (const Edit &row : mifEdits())
        QTest::addRow("%s in a MIF file", row.id) << QString::fromLatin1(row.id) << row.before << row.after;
}

void tst_PrepareCheckCures::editCures()
{
    QFETCH(QString, id);
    QFETCH(Input, before);
    QFETCH(Input, after);
    const TextFixture files;
    const TextFixture editedFiles;

    const FileReport report = check(before, files);
    const FileReport edited = check(after, editedFiles);

    QVERIFY2(report.has(id), qPrintable(described(report.findings)));
    QCOMPARE(described(edited.findings), QString());
    QCOMPARE(edited.imported.objects, outlined(edited));
}

void tst_PrepareCheckCures::textInMifNamesItsOutline()
{
    ConvertFixture files;
    const Input input = mapped("REGION 1\n4\n0 0\n900 0\n900 900\n0 0\nTEXT\n\"a\"\n600 50 700 90", ",\n,");
    const FileReport report = check(input, files.files);

    QVERIFY(files.convert(input.fileName()));

    QVERIFY2(report.has(QStringLiteral("texts-in-mif")), qPrintable(described(report.findings)));
    QVERIFY(files.imported().startsWith(QLatin1String("a [")));
}

void tst_PrepareCheckCures::binaryDrawingIsCured()
{
    const QStringList lines =
        pairs("0 SECTION|2 HEADER|0 ENDSEC|0 SECTION|2 ENTITIES|" + far + '|' + lineEntity + "|0 ENDSEC|0 EOF");
    ConvertFixture files;
    files.files.writeBytes(QStringLiteral("plan.dxf"), binaryDrawing(lines));

    const FileReport before = checkFile(files.path(QStringLiteral("plan.dxf")), {}, false);
    QVERIFY(files.convert(QStringLiteral("plan.dxf")));
    const FileReport after = checkOutput(files);

    QCOMPARE(described(before.findings), QStringLiteral("binary-dxf 1 @ строка 1"));
    QVERIFY(!convertCommand(before).isEmpty());
    QCOMPARE(described(after.findings), QString());
    QCOMPARE(after.imported.objects, 2);
}

void tst_PrepareCheckCures::commandIsPrintedIfItHelps_data()
{
    QTest::addColumn<Input>("input");
    QTest::addColumn<bool>("helps");

    const QByteArray degrees = "0 LWPOLYLINE|8 0|90 3|70 0|10 37.6|20 55.7|10 37.6|20 55.705|10 37.605|20 55.7";
    const char *const mifDegrees = "PLINE 3\n37.6 55.7\n37.6 55.705\n37.605 55.7";
    const QByteArray arc = "|0 ARC|8 0|10 2000|20 0|40 500|50 0|51 90";
    QStringList blank = drawing(arc.mid(1) + '|' + far);
    blank.insert(26, QString());
    QTest::newRow("arc") << drawn(far + arc) << true;
    QTest::newRow("arc in front of a blank line") << written(blank) << false;
    QTest::newRow("degrees of a drawing") << drawn(degrees) << true;
    QTest::newRow("degrees without a system") << mapped(mifDegrees, "1") << true;
    QTest::newRow("degrees beside a sheet") << drawn(degrees + "|0 TEXT|8 0|10 420|20 297|40 1|1 a") << false;
    QTest::newRow("solid") << drawn(far + "|0 SOLID|8 0|10 0|20 0|11 5|21 0|12 0|22 5|13 5|23 5") << true;
    QTest::newRow("body") << drawn(far + "|0 3DSOLID|8 0|70 1") << false;
    QTest::newRow("points only") << drawn("0 POINT|8 0|10 1|20 0") << false;
    QTest::newRow("decimal comma") << drawn(far + "|0 LINE|10 0,5|20 0|11 10|21 0|" + far) << true;
    QTest::newRow("no complete object") << mapped("LINE 0 20 900\nPLINE 2\n0 0", "1\n2") << false;
    QTest::newRow("line in a MIF file cut short") << mapped("LINE 0 20 900\nLINE 0 20 900 20", "1\n2") << true;
    QTest::newRow("line of one vertex at the end") << mapped("LINE 0 0 9 0\nPLINE 1\n0 90", "1\n2") << false;
    QTest::newRow("curve and cut ring") << mapped("ELLIPSE 0 50 900 500\nREGION 1\n4\n0 0", "1\n2") << true;
    QTest::newRow("curve and missing record") << mapped("LINE 0 0 9 0\nELLIPSE 0 50 900 500", "1") << true;
    QTest::newRow("no MIF file") << written({QStringLiteral("VERSION of a text")}) << false;
}

void tst_PrepareCheckCures::commandIsPrintedIfItHelps()
{
    QFETCH(Input, input);
    QFETCH(bool, helps);
    const ConvertFixture files;

    const FileReport report = check(input, files.files);
    const QStringList options = convertCommand(report).contains(QLatin1String("--crs"))
                                    ? QStringList{QStringLiteral("--crs"), QStringLiteral("EPSG:32637")}
                                    : QStringList();
    const ConvertRun run = files.run(QStringList{input.fileName(), QStringLiteral("out.mif")} + options);

    QVERIFY(!report.isComplete());
    QCOMPARE(!convertCommand(report).isEmpty(), helps);
    QVERIFY2(!helps || run.status == 0, qPrintable(run.messages));
}

QTEST_GUILESS_MAIN(tst_PrepareCheckCures)
#include "tst_prepare_check_cures.moc"
