#include "converttesting.h"
#include "preparetesting.h"

/// The cures of the findings: after convert the import gives what GDAL counts in the original file.
class tst_PrepareCheckCures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void drawingIsCured_data();
    void drawingIsCured() { cure(QStringLiteral("plan.dxf")); }
    void mifFileIsCured_data();
    void mifFileIsCured() { cure(QStringLiteral("plan.mif")); }
    void degreesAreCured();

private:
    static void addColumns();
    static void addDrawing(const char *id, const QStringList &lines);
    static void addMif(const char *id, const char *data, const char *records);
    static void cure(const QString &input);
};

namespace {

const QString mifColumns = QStringLiteral("COLUMNS 1\n  Name Char(10)\nDATA\n");

/// Checks a converted file.
FileReport checkOutput(const ConvertFixture &files)
{
    CheckOptions options;
    options.encoding = QStringLiteral("windows-1251");
    return checkFile(files.path(QStringLiteral("out.mif")), options, false);
}

} // namespace

void tst_PrepareCheckCures::addColumns()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QString>("mid");
    QTest::addColumn<QString>("records");
}

void tst_PrepareCheckCures::addDrawing(const char *id, const QStringList &lines)
{
    QTest::newRow(id) << lines << QString() << QString();
}

void tst_PrepareCheckCures::addMif(const char *id, const char *data, const char *records)
{
    QTest::newRow(id) << QStringList{mifHeader + mifColumns + QString::fromUtf8(data)} << QStringLiteral("plan.mid")
                      << QString::fromUtf8(records);
}

// The row has the name of the finding.
void tst_PrepareCheckCures::cure(const QString &input)
{
    QFETCH(QStringList, lines);
    QFETCH(QString, mid);
    QFETCH(QString, records);
    ConvertFixture files;
    const QString fileName = files.files.write(input, lines);
    if (!mid.isEmpty())
        files.files.write(mid, {records});
    CheckOptions options;
    options.encoding = QStringLiteral("UTF-8");

    const FileReport before = checkFile(fileName, options, false);
    QVERIFY(files.convert(input));
    const FileReport after = checkOutput(files);

    const QString id = QString::fromLatin1(QTest::currentDataTag());
    QVERIFY2(before.has(id), qPrintable(described(before.findings)));
    QVERIFY(conversionCures(id));
    QCOMPARE(described(after.findings), QString());
    QVERIFY(before.found.has_value());
    QCOMPARE(after.imported.objects, before.found->areas + before.found->lines);
}

void tst_PrepareCheckCures::drawingIsCured_data()
{
    addColumns();
    const QByteArray far = "0 LINE|8 0|10 1000|20 0|11 1010|21 0";
    const QByteArray arc = "|0 ARC|8 0|10 2000|20 0|40 500|50 0|51 90";
    const QByteArray polyline = "|0 VERTEX|8 0|10 0|20 0|0 VERTEX|8 0|10 900|20 0|0 VERTEX|8 0|10 900|20 900|0 SEQEND";
    addDrawing("leading-comment", pairs("999 comment") + drawing(far));
    addDrawing("first-section", pairs("0 SECTION|2 ENTITIES|" + far + "|0 ENDSEC|0 EOF"));
    addDrawing("blocks", pairs("0 SECTION|2 HEADER|0 ENDSEC|0 SECTION|2 BLOCKS|0 BLOCK|8 0|2 A|70 0|10 0|20 0|" + far +
                               "|0 ENDBLK|0 ENDSEC|0 SECTION|2 ENTITIES|0 INSERT|8 0|2 A|10 0|20 0|0 INSERT|8 0|2 A|" +
                               "10 0|20 50|0 ENDSEC|0 EOF"));
    addDrawing("nothing-imported", drawing(arc.mid(1)));
    addDrawing("curves", drawing(far + arc));
    addDrawing("entities-not-read", drawing(far + "|0 SOLID|8 0|10 0|20 0|11 500|21 0|12 0|22 500|13 500|23 500"));
    addDrawing("texts-not-read", drawing(far + "|0 MTEXT|8 0|10 1005|20 1|40 1|1 ЗУ1"));
    addDrawing("polyline-flag", drawing("0 POLYLINE|8 0|66 1|70 129" + polyline));
    addDrawing("bulges", drawing("0 LWPOLYLINE|8 0|90 2|70 0|10 0|20 0|42 0.5|10 500|20 0"));
    addDrawing("mirrored", drawing("0 LWPOLYLINE|8 0|90 2|70 0|10 10|20 0|10 500|20 0|210 0|220 0|230 -1"));
    addDrawing("fewer-objects", drawing("0 LINE|8 0|10 0|20 0|11 10|" + far));
    addDrawing("misplaced-names", drawing(far + "|0 TEXT|8 0|10 1105|20 0|40 1|1 Б|0 TEXT|8 0|10 1205|20 0|40 1|1 В|" +
                                          "0 TEXT|8 0|10 1005|20 0|40 1|1 А"));
}

void tst_PrepareCheckCures::mifFileIsCured_data()
{
    addColumns();
    constexpr auto line = "LINE 0 0 900 0\n";
    const QString header = mifHeader.section(QLatin1Char('\n'), 0, 0) + QStringLiteral("\nDELIMITER \"\t\"\n");
    QTest::newRow("not-mif") << QStringList{header + mifColumns + QString::fromLatin1(line)}
                             << QStringLiteral("plan.mid") << QStringLiteral("1");
    QTest::newRow("mid-missing") << QStringList{mifHeader + mifColumns + QString::fromLatin1(line)} << QString()
                                 << QString();
    QTest::newRow("mid-name-case") << QStringList{mifHeader + mifColumns + QString::fromLatin1(line)}
                                   << QStringLiteral("plan.MID") << QStringLiteral("1");
    addMif("mid-empty-line", "LINE 0 0 900 0\nLINE 0 9 900 9", "1\n\n");
    addMif("pline-count", "PLINE\n2\n0 0\n900 0\nPLINE MULTIPLE 1\n2\n0 9\n900 9", "1\n2");
    addMif("collection", "COLLECTION 2\nREGION 1\n4\n0 0\n900 0\n900 900\n0 0\nPLINE 2\n0 50\n900 50", "\"\"");
    addMif("open-rings", "REGION 1\n4\n0 0\n900 0\n900 900\n0 900", "1");
    addMif("nothing-imported", "RECT 0 0 900 900", "1");
    addMif("curves", "LINE 0 0 900 0\nELLIPSE 0 50 900 500", "1\n2");
    addMif("entities-not-read", "LINE 0 0 900 0\nROUNDRECT 0 50 900 500 10", "1\n2");
    addMif("texts-not-read", "LINE 0 0 900 0\nTEXT\n\"a\"\n0 50 900 500", "1\n2");
}

void tst_PrepareCheckCures::degreesAreCured()
{
    ConvertFixture files;
    files.files.write(QStringLiteral("plan.mid"), {QStringLiteral("1")});
    const QString fileName = files.files.write(QStringLiteral("plan.mif"),
                                               {mifHeader + QStringLiteral("CoordSys Earth Projection 1, 104\n") +
                                                mifColumns + QStringLiteral("LINE 37.6 55.7 37.9 55.9")});

    const FileReport before = checkFile(fileName, {}, false);
    QVERIFY(files.convert(QStringLiteral("plan.mif"), {QStringLiteral("--crs"), QStringLiteral("EPSG:32637")}));

    QCOMPARE(described(before.findings), QStringLiteral("degrees 2 @ строка 4"));
    QCOMPARE(described(checkOutput(files).findings), QString());
}

QTEST_GUILESS_MAIN(tst_PrepareCheckCures)
#include "tst_prepare_check_cures.moc"
