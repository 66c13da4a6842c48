#include "preparetesting.h"

/// The findings in MIF files: each row has a file in which exactly one is found, or a similar one without it.
class tst_PrepareFindingsMif : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void headerIsFound_data();
    void headerIsFound();
    void tabInTheHeaderIsSeen();
    void midFileIsFound_data();
    void midFileIsFound();
    void recordIsFound_data();
    void recordIsFound() { compareFindings(); }
    void stopIsFound_data();
    void stopIsFound() { compareFindings(); }
    void lostContentIsFound_data();
    void lostContentIsFound() { compareFindings(); }
    void ringAndNameAreFound_data();
    void ringAndNameAreFound() { compareFindings(); }
    void systemIsFound_data();
    void systemIsFound();
    void encodingIsFound_data();
    void encodingIsFound();
    void bytesOutweighTheHeader_data();
    void bytesOutweighTheHeader();
    void byteOrderMarkOverridesTheEncoding();
    void midFileDoesNotMatterWithoutSearch();
    void midFileOfThePointsIsFound();
    void messageAboutThePointsIsExplained();

private:
    static void addColumns();
    static void add(const char *name, const QByteArray &data, const char *records, const char *findings);
    static void compareFindings();
};

namespace {

const QString line = QStringLiteral("LINE 1000 0 1010 0");

} // namespace

void tst_PrepareFindingsMif::addColumns()
{
    QTest::addColumn<QString>("data");
    QTest::addColumn<QString>("records");
    QTest::addColumn<QString>("findings");
}

void tst_PrepareFindingsMif::add(const char *name, const QByteArray &data, const char *records, const char *findings)
{
    QTest::newRow(name) << QString::fromUtf8(data) << QString::fromUtf8(records) << QString::fromUtf8(findings);
}

void tst_PrepareFindingsMif::compareFindings()
{
    QFETCH(QString, data);
    QFETCH(QString, records);
    const CheckFixture check;

    const FileReport report = check.checkMif(data, records);

    QTEST(described(report.findings), "findings");
}

void tst_PrepareFindingsMif::headerIsFound_data()
{
    QTest::addColumn<QString>("header");
    QTest::addColumn<QString>("findings");

    const auto add = [](const char *name, const char *header, const char *findings) {
        QTest::newRow(name) << QString::fromUtf8(header) << QString::fromUtf8(findings);
    };
    add("complete", "Version 300\nCharset \"WindowsCyrillic\"\nDelimiter \";\"\n", "");
    add("no charset", "VERSION 300\nDELIMITER \",\"\n", "not-mif 1 @ строка 2");
    add("no delimiter", "VERSION 300\nCHARSET \"Neutral\"\n", "not-mif 1 @ строка 3");
    add("tab as the delimiter", "VERSION 300\nCHARSET \"Neutral\"\nDELIMITER \"\t\"\n", "not-mif 1 @ строка 3");
    add("charset of two words", "VERSION 300\nCHARSET \"Windows Cyrillic\"\nDELIMITER \",\"\n", "not-mif 1 @ строка 2");
    add("blank line in front", "\nVERSION 300\nCHARSET \"Neutral\"\nDELIMITER \",\"\n", "not-mif 1 @ строка 1");
    add("another text", "Ведомость координат\n", "not-mif 1 @ строка 1");
}

void tst_PrepareFindingsMif::headerIsFound()
{
    QFETCH(QString, header);
    const CheckFixture check;

    const FileReport report = check.checkMifText(header + QStringLiteral("DATA\n") + line, QStringLiteral("1"));

    QTEST(described(report.findings), "findings");
}

void tst_PrepareFindingsMif::tabInTheHeaderIsSeen()
{
    const CheckFixture check;

    const FileReport report = check.checkMifText(
        QStringLiteral("Version 300\nCharset \"Neutral\"\nDelimiter \"\t\"\nCOLUMNS 0\nDATA\n"), QString());

    QCOMPARE(report.findings.size(), 1);
    QVERIFY2(report.findings.first().text.endsWith(QStringLiteral(" «Delimiter \"\\t\"».")),
             qPrintable(report.findings.first().text));
}

void tst_PrepareFindingsMif::midFileIsFound_data()
{
    QTest::addColumn<QString>("mif");
    QTest::addColumn<QString>("mid");
    QTest::addColumn<QString>("findings");

    const auto add = [](const char *name, const char *mif, const char *mid, const char *findings) {
        QTest::newRow(name) << QString::fromUtf8(mif) << QString::fromUtf8(mid) << QString::fromUtf8(findings);
    };
    add("same case", "a.mif", "a.mid", "");
    add("the last letter small", "A.MIF", "A.MId", "");
    add("missing", "a.mif", "b.mid", "mid-missing 1 @ файл a.mid");
    add("capitals", "a.mif", "a.MID", "mid-name-case 1 @ файл a.mid");
    add("capitals in both", "A.MIF", "A.MID", "mid-name-case 1 @ файл A.MId");
}

void tst_PrepareFindingsMif::midFileIsFound()
{
    QFETCH(QString, mif);
    QFETCH(QString, mid);
    const CheckFixture check;
    check.files.write(mid, {QStringLiteral("1")});

    const QString fileName = check.files.write(mif, {mifHeader + QStringLiteral("DATA"), line});
    const FileReport report = checkFile(fileName, check.options, false);

    QTEST(described(report.findings), "findings");
}

void tst_PrepareFindingsMif::recordIsFound_data()
{
    addColumns();
    constexpr auto three = "LINE 0 0 9 0\nPOINT 50 50\nLINE 0 20 9 20";
    add("in step", three, "1\n2\n3", "");
    add("blank lines at the end", three, "1\n2\n3\n\n\n", "");
    add("one too few", three, "1\n2", "mid-out-of-step 1 @ MID, запись 3");
    add("one too many", three, "1\n2\n3\n4", "mid-out-of-step 1 @ MID, запись 4");
    add("empty line", three, "1\n\n3", "mid-empty-line 1 @ MID, запись 2");
    add("two empty lines", three, "\n \n3", "mid-empty-line 2 @ MID, запись 1");
    add("empty field", three, "1\n2\n,x", "");
    add("text in quotes is no object", "TEXT\n\"Line 5\"\n0 0 1 1\nLINE 0 0 9 0", "1\n2", "");
    add("text beside an object without a designation", "LINE 0 0 9 0\nTEXT\n\"5\"\n0 0 1 1\nTEXT\n\"6\"\n0 0 1 1",
        ",\n2\n3", "texts-in-mif 2 @ строка 6, TEXT");
    add("text without a designation", "LINE 0 0 9 0\nTEXT\n\"5\"\n0 0 1 1", "1\n,", "");
    add("object without a designation", "LINE 0 0 9 0", ",", "");
}

void tst_PrepareFindingsMif::stopIsFound_data()
{
    addColumns();
    constexpr auto records = "1\n2";
    add("count on the same line", "PLINE 2\n0 0\n9 0\nLINE 0 20 9 20", records, "");
    add("count on the next line", "PLINE\n2\n0 0\n9 0\nLINE 0 20 9 20", records, "pline-count 1 @ строка 5, PLINE");
    add("one of several parts", "PLINE MULTIPLE 1\n2\n0 0\n9 0\nLINE 0 20 9 20", records,
        "pline-count 1 @ строка 5, PLINE");
    add("two such lines", "PLINE\n2\n0 0\n9 0\nPline multiple 1\n2\n0 0\n9 0", records,
        "pline-count 2 @ строка 5, PLINE");
    add("two parts", "PLINE MULTIPLE 2\n2\n0 0\n9 0\n2\n0 5\n9 5\nLINE 0 20 9 20", records, "");
    add("blank line in an object", "PLINE 2\n0 0\n\n9 0\nLINE 0 20 9 20", records, "blank-line 1 @ строка 7, PLINE");
    add("blank line between objects", "PLINE 2\n0 0\n9 0\n\nLINE 0 20 9 20", records, "");
    add("end within a ring", "LINE 0 20 9 20\nREGION 1\n4\n0 0\n9 0", records, "truncated 1 @ строка 9, REGION");
    add("end before a ring", "LINE 0 20 9 20\nREGION 1", records, "truncated 1 @ строка 6, REGION");
    add("decimal comma", "LINE 0 20 9 20\nPLINE 2\n0,5 0\n9,5 0", records, "decimal-comma 2 @ строка 7, PLINE");
    add("decimal comma behind the keyword", "LINE 0 20 9,5 20\nLINE 0 0 9 0", records,
        "decimal-comma 1 @ строка 5, LINE");
    add("decimal comma in a point", "POINT 0 5,5\nLINE 0 0 9 0", records, "decimal-comma 1 @ строка 5, POINT");
    add("two commas", "LINE 0 20 9 20\nPLINE 2\n0,5,5 0\n9 0", records, "stops-early 1 @ строка 7");
    add("tab behind a keyword", "LINE\t0 20 9 20\nPLINE\t2\n0\t0\n9\t0\n\tPEN\t(1,2,0)", records, "");
    add("region without rings", "REGION 0\nLINE 0 20 9 20", records, "more-objects 1");
    add("ring of two vertices", "LINE 0 20 9 20\nREGION 1\n2\n0 0\n9 0\nPEN (1,2,0)", records,
        "stops-early 1 @ строка 7");
}

void tst_PrepareFindingsMif::lostContentIsFound_data()
{
    addColumns();
    add("arc", "LINE 0 0 9 0\nARC 0 0 9 9\n0 90\nArc 0 0 5 5\n0 90", "1\n2\n3", "curves 2 @ строка 6, ARC");
    add("ellipse", "LINE 0 0 9 0\nELLIPSE 0 0 9 9", "1\n2", "curves 1 @ строка 6, ELLIPSE");
    add("rectangle", "LINE 0 0 9 0\nRECT 0 0 9 9\nROUNDRECT 0 0 9 9\n1", "1\n2\n3",
        "entities-not-read 2 @ строка 6, RECT");
    add("several points", "LINE 0 0 9 0\nMULTIPOINT 2\n0 0\n50 50", "1\n2",
        "entities-not-read 1 @ строка 6, MULTIPOINT");
    add("collection", "LINE 0 0 9 0\nCOLLECTION 2\nREGION 1\n4\n0 0\n9 0\n9 9\n0 0\nPLINE 2\n0 0\n9 9\nLINE 0 20 9 20",
        "1\n2\n3", "collection 1 @ строка 6, COLLECTION");
    add("points only", "POINT 0 0", "1", "nothing-imported 1");
    add("empty objects", "NONE", "1", "nothing-imported 1");
}

void tst_PrepareFindingsMif::ringAndNameAreFound_data()
{
    addColumns();
    constexpr auto square = "REGION 1\n5\n1000 0\n1009 0\n1009 9\n1000 9\n";
    const auto closedBy = [square](const char *last) { return QByteArray(square) + last; };
    add("closed", closedBy("1000 0"), "1", "");
    add("closed within the tolerance", closedBy("1000.009 0"), "1", "");
    add("open", closedBy("1000.02 0"), "1", "open-rings 1 @ строка 6, REGION");
    add("open line", "PLINE 3\n1000 0\n1009 0\n1009 9", "1", "");
    add("coordinate that is no number", "LINE 1000 0 nan 0\nLINE 1000 inf 1009 -inf", "1\n2",
        "not-finite 3 @ объект «1»");
    add("large coordinate", "LINE 1000 0 1e300 0", "1", "");
    add("decimal name", "LINE 1000 0 1009 0", "12.5", "heights-as-names 1 @ объект «12.5»");
    add("one name twice", "LINE 1000 0 1009 0\nLINE 1000 9 1009 9\nLINE 1000 20 1009 20", "а\nА\nб",
        "shared-names 2 @ объект «а»");
    add("one number twice", "POINT 1000 0\nPOINT 1009 0\nLINE 1000 0 1009 0", "7\n7\nа",
        "merged-numbers 2 @ объект «а», номер «7»");
    add("point without a number", "POINT 1000 0\nLINE 1000 0 1009 0", ",\nа", "empty-numbers 1 @ объект «а»");
}

void tst_PrepareFindingsMif::systemIsFound_data()
{
    QTest::addColumn<QString>("system");
    QTest::addColumn<QString>("data");
    QTest::addColumn<QString>("findings");

    const QString degrees = QStringLiteral("CoordSys Earth Projection 1, 104");
    const QString plan = QStringLiteral("LINE 37.6 55.7 37.9 55.9");
    const QString found = QStringLiteral("degrees 2 @ строка 4");
    QTest::newRow("longitude and latitude") << degrees << plan << found;
    QTest::newRow("in capitals") << degrees.toUpper() << plan << found;
    QTest::newRow("transverse Mercator") << QStringLiteral("CoordSys Earth Projection 8, 1001, \"m\", 39") << plan
                                         << QString();
    const QString large = QStringLiteral("LINE 1000 1000 2000 1000");
    QTest::newRow("scaled") << QStringLiteral("Transform 2,2,0,0") << large << QStringLiteral("transform 1 @ строка 4");
    QTest::newRow("shifted") << QStringLiteral("TRANSFORM 0, 0, 0, 1") << large
                             << QStringLiteral("transform 1 @ строка 4");
    QTest::newRow("not transformed") << QStringLiteral("Transform 1,0,0,0") << large << QString();
    QTest::newRow("metres in spite of the header") << degrees << line << QString();
}

void tst_PrepareFindingsMif::systemIsFound()
{
    QFETCH(QString, system);
    QFETCH(QString, data);
    const CheckFixture check;

    const FileReport report =
        check.checkMifText(mifHeader + system + QStringLiteral("\nDATA\n") + data, QStringLiteral("1"));

    QTEST(described(report.findings), "findings");
}

void tst_PrepareFindingsMif::encodingIsFound_data()
{
    QTest::addColumn<QString>("charset");
    QTest::addColumn<QString>("chosen");
    QTest::addColumn<QString>("record");
    QTest::addColumn<QString>("findings");

    const QString record = QStringLiteral("\"Участок\",5");
    const QString found = QStringLiteral("encoding 1 @ MID, запись 1");
    const QString cyrillic = QStringLiteral("WindowsCyrillic");
    const QString windows = QStringLiteral("windows-1251");
    const QString utf8 = QStringLiteral("UTF-8");
    QTest::newRow("right") << cyrillic << windows << record << QString();
    QTest::newRow("UTF-8 chosen") << cyrillic << utf8 << record << found;
    QTest::newRow("UTF-8 chosen, none named") << QStringLiteral("Neutral") << utf8 << record << found;
    QTest::newRow("another code page named in vain") << QStringLiteral("CodePage866") << windows << record << QString();
    QTest::newRow("Latin letters") << cyrillic << utf8 << QStringLiteral("\"Plot\",5") << QString();
    QTest::newRow("another field") << cyrillic << utf8 << QStringLiteral("\"5\",Участок") << QString();
}

void tst_PrepareFindingsMif::encodingIsFound()
{
    QFETCH(QString, charset);
    QFETCH(QString, chosen);
    QFETCH(QString, record);
    CheckFixture check;
    check.options.encoding = chosen;
    check.files.write(QStringLiteral("plan.mid"), {record}, "windows-1251");

    const QString header = QStringLiteral("VERSION 300\nCHARSET \"%1\"\nDELIMITER \",\"\nDATA\n").arg(charset);
    const FileReport report = check.checkMifText(header + line, {});

    QTEST(described(report.findings), "findings");
}

void tst_PrepareFindingsMif::bytesOutweighTheHeader_data()
{
    QTest::addColumn<QByteArray>("written");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("findings");

    const QString many = QStringLiteral("Земельный участок для ведения садоводства расположенный за деревней у реки");
    const QString few = QStringLiteral("Земельный участок");
    const QString found = QStringLiteral("encoding 1 @ MID, запись 1");
    QTest::newRow("as the header says") << QByteArray("windows-1251") << many << QString();
    QTest::newRow("in another code page") << QByteArray("IBM866") << many << found;
    QTest::newRow("few letters as the header says") << QByteArray("windows-1251") << few << QString();
    QTest::newRow("few letters in another code page") << QByteArray("IBM866") << few << found;
}

void tst_PrepareFindingsMif::bytesOutweighTheHeader()
{
    QFETCH(QByteArray, written);
    QFETCH(QString, text);
    CheckFixture check;
    check.options.encoding = QStringLiteral("windows-1251");
    check.files.write(QStringLiteral("plan.mid"), {text}, written.constData());

    const FileReport report = check.checkMif(line, {});

    QTEST(described(report.findings), "findings");
}

void tst_PrepareFindingsMif::byteOrderMarkOverridesTheEncoding()
{
    CheckFixture check;
    check.options.encoding = QStringLiteral("windows-1251");

    const FileReport report = check.checkMif(line, QString(QChar(QChar::ByteOrderMark)) + QStringLiteral("Участок"));

    QCOMPARE(described(report.findings), QString());
}

void tst_PrepareFindingsMif::midFileDoesNotMatterWithoutSearch()
{
    CheckFixture check;
    check.options.searchPoints = false;
    check.options.searchObjects = false;

    QCOMPARE(described(check.checkMif(line, {}).findings), QString());
}

void tst_PrepareFindingsMif::midFileOfThePointsIsFound()
{
    CheckFixture check;
    check.options.pointFile =
        check.files.write(QStringLiteral("points.mif"), {mifHeader + QStringLiteral("DATA\nPOINT 0 0")});

    const FileReport report = check.checkMif(line, QStringLiteral("1"));

    QCOMPARE(described(report.findings), QStringLiteral("mid-missing 1 @ файл points.mid"));
}

void tst_PrepareFindingsMif::messageAboutThePointsIsExplained()
{
    CheckFixture check;
    check.options.pointFile =
        check.files.write(QStringLiteral("points.mif"), {mifHeader + QStringLiteral("DATA\nPOINT 0")});
    check.files.write(QStringLiteral("points.mid"), {QStringLiteral("1")});

    const FileReport report = check.checkMif(line, QStringLiteral("1"));

    QCOMPARE(described(report.findings), QStringLiteral("stops-early 1 @ строка 5 файла точек"));
    QCOMPARE(report.findings.first().cure, QStringLiteral("Исправьте файл точек."));
}

QTEST_GUILESS_MAIN(tst_PrepareFindingsMif)
#include "tst_prepare_findings_mif.moc"
