#include "converttesting.h"

/// MIF files with objects that are wrong or incomplete.
class tst_PrepareConvertMifDamaged : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void damagedObjectIsLeftOut_data();
    void damagedObjectIsLeftOut();
    void onlyDamagedObjectsAreRefused();
    void decimalCommaBecomesPoint_data();
    void decimalCommaBecomesPoint();
};

namespace {

const QString header = QStringLiteral("Version 300\nCharset \"WindowsCyrillic\"\nDelimiter \",\"\n");
const QString columns = QStringLiteral("Columns 2\n  n Char(20)\n  k Integer\n");
const QString data = QStringLiteral("Data\n\n");
const QString records = QStringLiteral("\"A\",1\n\"B\",2");

} // namespace

void tst_PrepareConvertMifDamaged::damagedObjectIsLeftOut_data()
{
    QTest::addColumn<QString>("object");
    QTest::addColumn<QString>("leftOut");
    const auto row = [](const char *name, const char *object, const char *leftOut) {
        QTest::newRow(name) << QString::fromLatin1(object) << QString::fromLatin1(leftOut);
    };

    row("line of no vertices", "Pline 0", "short-line 1");
    row("line of one vertex", "Pline 1\n5 5", "short-line 1");
    row("line of short parts", "Pline Multiple 2\n1\n5 5\n1\n6 6", "short-line 2");
    row("area of two vertices", "Region 1\n2\n5 5\n6 6", "short-area 1");
    row("area of no rings", "Region 0", "no-geometry 1");
    row("vertices are missing", "Pline 3\n5 5\n6 6", "unreadable-object 1 in line 13");
    row("number is missing", "Line 5 5 6\n    Pen (1,2,0)", "unreadable-object 1 in line 11");
    row("number in the next line is too many", "Line 5 5 6\n7 8", "unreadable-object 1 in line 11");
    row("vertex of three numbers", "Pline 2\n5 5 5\n6 6 6", "unreadable-object 1 in line 11");
    row("negative count", "Pline -2\n5 5\n6 6", "unreadable-object 1 in line 10");
    row("huge count", "Pline 999999999\n5 5\n6 6", "unreadable-object 1 in line 13");
    row("no number", "Pline 2\n5 5\n6 x", "unreadable-object 1 in line 12");
    row("text without its place", "Text\n\"a\"", "unreadable-object 1 in line 12");
    row("unknown kind", "Foo 1 2\n5 5", "unknown-line 1 in line 10");
    row("collection without parts", "Collection 1\nPline 1\n5 5", "short-line 1");
    row("second area of a collection", "Collection 2\nRegion 1\n2\n5 5\n6 6\nPoint 5 5",
        "short-area 1, unreadable-object 1 in line 15");
}

// The other objects keep their records.
void tst_PrepareConvertMifDamaged::damagedObjectIsLeftOut()
{
    QFETCH(QString, object);
    ConvertFixture fixture;
    const QString map = QStringLiteral("Line 0 0 1 1\n%1\nLine 2 2 3 3\n").arg(object);
    fixture.files.write(QStringLiteral("a.mif"), {header + columns + data + map});
    fixture.files.write(QStringLiteral("a.mid"), {QStringLiteral("A,1\nB,2\nC,3")});

    QVERIFY(fixture.convert(QStringLiteral("a.mif")));

    QCOMPARE(fixture.imported(), QStringLiteral("A [н1 0 0, н2 1 1]; C [н3 2 2, н4 3 3]"));
    QTEST(fixture.list("leftOut"), "leftOut");
    QCOMPARE(fixture.list("notes"), QString());
}

void tst_PrepareConvertMifDamaged::onlyDamagedObjectsAreRefused()
{
    const ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.mif"), {header + columns + data + QStringLiteral("Line 0 0\nPline 2\n5")});

    const ConvertRun run = fixture.run(arguments("a.mif out.mif"));

    QCOMPARE(run.status, 3);
    QCOMPARE(run.messages, QStringLiteral("importprepare: Cannot read \"a.mif\": it has no complete object. "
                                          "The first error is in line 10."));
}

void tst_PrepareConvertMifDamaged::decimalCommaBecomesPoint_data()
{
    QTest::addColumn<QString>("object");
    QTest::addColumn<QString>("second");
    QTest::addColumn<QString>("notes");
    QTest::addColumn<QString>("leftOut");
    const auto row = [](const char *name, const char *object, const char *second, const char *notes,
                        const char *leftOut = "") {
        QTest::newRow(name) << QString::fromLatin1(object) << QString::fromUtf8(second) << QString::fromLatin1(notes)
                            << QString::fromLatin1(leftOut);
    };

    row("vertices", "Pline 2\n1,5 -2,25\n3 4", "; B [н3 1.5 -2.25, н4 3 4]", "decimal-comma 2 in line 11");
    row("behind the keyword", "Line 1,5 2 3 4", "; B [н3 1.5 2, н4 3 4]", "decimal-comma 1 in line 10");
    row("three decimals", "Line 1,500 2 3 4", "; B [н3 1.5 2, н4 3 4]", "decimal-comma 1 in line 10");
    row("comma between numbers", "Line 1.5, 2, 3, 4", "; B [н3 1.5 2, н4 3 4]", "");
    row("decimals beside a point", "Line 1,5 2.5 3 4", "; B [н3 1.5 2.5, н4 3 4]", "decimal-comma 1 in line 10");
    row("thousands beside a point", "Line 1,500 2.5 3 4", "", "", "unreadable-object 1 in line 10");
    row("two commas", "Line 1,500,000 2 3 4", "", "", "unreadable-object 1 in line 10");
}

void tst_PrepareConvertMifDamaged::decimalCommaBecomesPoint()
{
    QFETCH(QString, object);
    QFETCH(QString, second);
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.mif"),
                        {header + columns + QStringLiteral("Data\n\nLine 0 0 1 1\n") + object});
    fixture.files.write(QStringLiteral("a.mid"), {records});

    QVERIFY(fixture.convert(QStringLiteral("a.mif")));

    QCOMPARE(fixture.imported(), QStringLiteral("A [н1 0 0, н2 1 1]") + second);
    QTEST(fixture.list("notes"), "notes");
    QTEST(fixture.list("leftOut"), "leftOut");
}

QTEST_GUILESS_MAIN(tst_PrepareConvertMifDamaged)
#include "tst_prepare_convert_mif_damaged.moc"
