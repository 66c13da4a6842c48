#include "converttesting.h"

/// MIF files that the import or GDAL would not read completely.
class tst_PrepareConvertMif : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void oddHeadersComeIn_data();
    void oddHeadersComeIn() { compareImported(); }
    void oddObjectsComeIn_data();
    void oddObjectsComeIn() { compareImported(); }
    void midFileIsFoundInAnyCase_data();
    void midFileIsFoundInAnyCase();
    void firstFieldNamesObjectsAndPoints();
    void coordinatesAreTransformedByTheHeader();
    void midFileStandsForItsPair();
    void missingRecordsAreAdded_data();
    void missingRecordsAreAdded();
    void collectionsComeIn();
    void roundedRectangleIsClosed();
    void textsNameObjectsWithoutField();
    void encodingIsFound_data();
    void encodingIsFound();
    void fewLettersAreReadAsNamed_data();
    void fewLettersAreReadAsNamed();
    void outputIsConvertedToTheSame();

private:
    static void compareImported();
};

namespace {

const QString header = QStringLiteral("Version 300\nCharset \"WindowsCyrillic\"\nDelimiter \",\"\n");
const QString columns = QStringLiteral("Columns 2\n  n Char(20)\n  k Integer\n");
const QString data = QStringLiteral("Data\n\n");
const QString pline = QStringLiteral("Pline 3\n0 0\n1 1\n2 0\n    Pen (1,2,0)\n");
const QString region = QStringLiteral("Region 1\n4\n0 0\n1 1\n2 0\n0 0\n    Center 1 0.5\n");
const QString records = QStringLiteral("\"A\",1\n\"B\",2");
constexpr auto bothObjects = "A [н1 0 0, н2 1 1, н3 2 0]; B [н1 0 0, н2 1 1, н3 2 0, н1 0 0]";

void addColumns()
{
    QTest::addColumn<QString>("mif");
    QTest::addColumn<QString>("mid");
    QTest::addColumn<QString>("objects");
}

void addFile(const char *name, const QString &mif, const QString &mid = records, const char *objects = bothObjects)
{
    QTest::newRow(name) << mif << mid << QString::fromUtf8(objects);
}

} // namespace

void tst_PrepareConvertMif::oddHeadersComeIn_data()
{
    addColumns();
    addFile("usual", header + columns + data + pline + region);
    addFile("no character set", QStringLiteral("Version 300\nDelimiter \",\"\n") + columns + data + pline + region);
    addFile("character set with a blank",
            QStringLiteral("Version 300\nCharset \"Windows Cyrillic\"\nDelimiter \",\"\n") + columns + data + pline +
                region);
    addFile("tab between fields",
            QStringLiteral("Version 300\nCharset \"WindowsCyrillic\"\nDelimiter \"\t\"\n") + columns + data + pline +
                region,
            QStringLiteral("A\t1\nB\t2"));
    addFile("empty first field after a tab",
            QStringLiteral("Version 300\nCharset \"WindowsCyrillic\"\nDelimiter \"\t\"\n") + columns + data + pline +
                region,
            QStringLiteral("\t1\nB\t2"), "ЗУ1 [н1 0 0, н2 1 1, н3 2 0]; B [н1 0 0, н2 1 1, н3 2 0, н1 0 0]");
    addFile("no delimiter",
            QStringLiteral("Version 300\nCharset \"WindowsCyrillic\"\n") + columns + data + pline + region,
            QStringLiteral("A\t1\nB\t2"));
    addFile("empty lines at the start", QStringLiteral("\n\n") + header + columns + data + pline + region);
    addFile("byte order mark", QStringLiteral("\uFEFF") + header + columns + data + pline + region);
    addFile("columns with the names of keywords",
            header + QStringLiteral("Columns 3\n  Charset Char(20)\n  Columns Char(5)\n  Data Integer\n") + data +
                pline + region,
            QStringLiteral("A,x,1\nB,x,2"));
    addFile("Windows line ends",
            QString(header + columns + data + pline + region).replace(QLatin1Char('\n'), QLatin1String("\r\n")));
    addFile("bare carriage returns",
            QString(header + columns + data + pline + region).replace(QLatin1Char('\n'), QLatin1Char('\r')),
            QStringLiteral("\"A\",1\r\"B\",2\r"));
    addFile("record of too few fields", header + columns + data + pline + region, QStringLiteral("A\nB,2"));
    addFile("line end in a record",
            header + QStringLiteral("Columns 2\n  n Char(20)\n  k Char(9)\n") + data + pline + region,
            QStringLiteral("A,\"x\ny\"\nB,2"));
    addFile("no columns", header + QStringLiteral("Columns 0\n") + data + pline + region, QString(),
            "ЗУ1 [н1 0 0, н2 1 1, н3 2 0]; ЗУ2 [н1 0 0, н2 1 1, н3 2 0, н1 0 0]");
    addFile("no columns, but records", header + data + pline + region, QStringLiteral("A,1\nB,2"));
    addFile("no column, but records", header + QStringLiteral("Columns 0\n") + data + pline + region,
            QStringLiteral("A,1\nB,2"));
    addFile("no columns and no records", header + data + pline + region, QString(),
            "ЗУ1 [н1 0 0, н2 1 1, н3 2 0]; ЗУ2 [н1 0 0, н2 1 1, н3 2 0, н1 0 0]");
}

void tst_PrepareConvertMif::oddObjectsComeIn_data()
{
    addColumns();
    addFile("count in the next line", header + columns + data + QStringLiteral("Pline\n3\n0 0\n1 1\n2 0\n") + region);
    addFile("one of several sections",
            header + columns + data + QStringLiteral("Pline Multiple 1\n3\n0 0\n1 1\n2 0\n") + region);
    addFile("several sections",
            header + columns + data + QStringLiteral("Pline Multiple 2\n2\n0 0\n1 1\n2\n2 0\n3 0\n") + region, records,
            "A [н1 0 0, н2 1 1] [н3 2 0, н4 3 0]; B [н1 0 0, н2 1 1, н3 2 0, н1 0 0]");
    addFile("tabs behind keywords", header + columns + data +
                                        QStringLiteral("Pline\t3\n0\t0\n1\t1\n2\t0\n\tPen\t(1,2,0)\n") +
                                        QString(region).replace(QLatin1String("Region "), QLatin1String("Region\t")));
    addFile("blank line in an object", header + columns + data + QStringLiteral("Pline 3\n0 0\n\n1 1\n2 0\n") + region);
    addFile("vertices behind the count", header + columns + data + QStringLiteral("Pline 3 0 0 1 1 2 0\n") + region);
    addFile("coordinates in the next line", header + columns + data + pline + QStringLiteral("Line\n0 0 1 1\n"),
            records, "A [н1 0 0, н2 1 1, н3 2 0]; B [н1 0 0, н2 1 1]");
    addFile("rings counted in the next line",
            header + columns + data + pline + QStringLiteral("Region\n1\n4\n0 0\n1 1\n2 0\n0 0\n"));
    addFile("ring without a count of rings",
            header + columns + data + pline + QStringLiteral("Region\n4\n0 0\n1 1\n2 0\n0 0\n"));
    addFile("wrong attribute", header + columns + data + pline + region + QStringLiteral("Point 9 9\n    Symbol (3\n"),
            QStringLiteral("A,1\nB,2\nC,3"));
    addFile("collection in a collection",
            header + columns + data + pline + QStringLiteral("Collection 1\nCollection 1\n") + region);
    addFile("ring that is not closed",
            header + columns + data + pline + QStringLiteral("Region 1\n3\n0 0\n1 1\n2 0\n"));
    addFile("region with a hole",
            header + columns + data + QStringLiteral("Region 2\n4\n0 0\n9 0\n9 9\n0 0\n4\n2 1\n3 1\n3 2\n2 1\n"),
            records, "A [н1 0 0, н2 9 0, н3 9 9, н1 0 0] [н4 2 1, н5 3 1, н6 3 2, н4 2 1]");
    addFile("rectangle", header + columns + data + QStringLiteral("Rect 0 0 4 3\n"), records,
            "A [н1 0 0, н2 4 0, н3 4 3, н4 0 3, н1 0 0]");
}

void tst_PrepareConvertMif::compareImported()
{
    QFETCH(QString, mif);
    QFETCH(QString, mid);
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.mif"), {mif});
    fixture.files.write(QStringLiteral("a.mid"), {mid});

    QVERIFY(fixture.convert(QStringLiteral("a.mif")));

    QTEST(fixture.imported(), "objects");
    QCOMPARE(fixture.list("leftOut"), QString());
}

void tst_PrepareConvertMif::midFileIsFoundInAnyCase_data()
{
    QTest::addColumn<QString>("mif");
    QTest::addColumn<QString>("mid");
    QTest::addColumn<QString>("objects");

    const QString unnamed = QStringLiteral("ЗУ1 [н1 0 0, н2 1 1, н3 2 0]; ЗУ2 [н1 0 0, н2 1 1, н3 2 0, н1 0 0]");
    QTest::newRow("capitals") << QStringLiteral("A.MIF") << QStringLiteral("A.MID") << QString::fromUtf8(bothObjects);
    QTest::newRow("mixed") << QStringLiteral("a.mif") << QStringLiteral("a.MID") << QString::fromUtf8(bothObjects);
    QTest::newRow("none") << QStringLiteral("a.mif") << QStringLiteral("b.mid") << unnamed;
}

void tst_PrepareConvertMif::midFileIsFoundInAnyCase()
{
    QFETCH(QString, mif);
    QFETCH(QString, mid);
    ConvertFixture fixture;
    fixture.files.write(mif, {header + columns + data + pline + region});
    fixture.files.write(mid, {records});

    QVERIFY(fixture.convert(mif));

    QTEST(fixture.imported(), "objects");
}

void tst_PrepareConvertMif::firstFieldNamesObjectsAndPoints()
{
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.mif"), {header + columns + data + QStringLiteral("Point 1 1\n") + pline});
    fixture.files.write(QStringLiteral("a.mid"), {QStringLiteral("\"т7\",1\n\"Б\",2")}, "windows-1251");

    QVERIFY(fixture.convert(QStringLiteral("a.mif")));
    QCOMPARE(fixture.imported(), QStringLiteral("Б [н1 0 0, т7 1 1, н2 2 0]"));

    QVERIFY(fixture.convert(QStringLiteral("a.mif"), arguments("--force --designation k --number k")));
    QCOMPARE(fixture.imported(), QStringLiteral("2 [н1 0 0, 1 1 1, н2 2 0]"));
}

void tst_PrepareConvertMif::coordinatesAreTransformedByTheHeader()
{
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.mif"),
                        {header + QStringLiteral("Transform 2,0,10,0\n") + columns + data + pline + region});
    fixture.files.write(QStringLiteral("a.mid"), {records});

    QVERIFY(fixture.convert(QStringLiteral("a.mif")));

    QVERIFY2(fixture.imported().startsWith(QStringLiteral("A [н1 10 0, н2 12 1, н3 14 0]")),
             qUtf8Printable(fixture.imported()));
    QCOMPARE(fixture.list("notes"), QStringLiteral("transform 1"));
}

void tst_PrepareConvertMif::midFileStandsForItsPair()
{
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.MIF"), {header + columns + data + pline + region});
    fixture.files.write(QStringLiteral("a.mid"), {records});
    fixture.files.write(QStringLiteral("b.mid"), {records});

    QVERIFY(fixture.convert(QStringLiteral("a.mid")));
    const ConvertRun alone = fixture.run(arguments("b.mid --force out.mif"));

    QCOMPARE(fixture.imported(), QString::fromUtf8(bothObjects));
    QCOMPARE(alone.status, 3);
    QCOMPARE(alone.messages, QStringLiteral("importprepare: There is no MIF file beside \"b.mid\"."));
}

void tst_PrepareConvertMif::missingRecordsAreAdded_data()
{
    QTest::addColumn<QString>("mid");
    QTest::addColumn<QString>("objects");
    QTest::addColumn<QString>("notes");
    const auto row = [](const char *name, const char *mid, const char *first, const char *second, const char *third,
                        const char *notes) {
        const QString objects = QStringLiteral("%1 [н1 0 0, н2 1 1, н3 2 0]; %2 [н1 0 0, н2 1 1, н3 2 0, н1 0 0]; "
                                               "%3 [н1 0 0, н2 1 1, н3 2 0]");
        QTest::newRow(name) << QString::fromLatin1(mid)
                            << objects.arg(QString::fromUtf8(first), QString::fromUtf8(second),
                                           QString::fromUtf8(third))
                            << QString::fromLatin1(notes);
    };

    row("all there", "A,1\nB,2\nC,3", "A", "B", "C", "");
    row("empty line", "A,1\n\nC,3", "A", "ЗУ1", "C", "missing-record 1");
    row("too few", "A,1", "A", "ЗУ1", "ЗУ2", "missing-record 2");
    row("none", "", "ЗУ1", "ЗУ2", "ЗУ3", "missing-record 3");
    row("empty lines behind", "A,1\nB,2\nC,3\n\n\n", "A", "B", "C", "");
    row("too many", "A,1\nB,2\nC,3\nE,5\n\n", "A", "B", "C", "surplus-record 1");
}

void tst_PrepareConvertMif::missingRecordsAreAdded()
{
    QFETCH(QString, mid);
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.mif"), {header + columns + data + pline + region + pline});
    fixture.files.write(QStringLiteral("a.mid"), {mid});

    QVERIFY(fixture.convert(QStringLiteral("a.mif")));

    QTEST(fixture.imported(), "objects");
    QTEST(fixture.list("notes"), "notes");
}

// The records stay in step: a collection has one.
void tst_PrepareConvertMif::collectionsComeIn()
{
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.mif"),
                        {header + columns + data + QStringLiteral("Collection 2\n") + region + pline + pline});
    fixture.files.write(QStringLiteral("a.mid"), {records});

    QVERIFY(fixture.convert(QStringLiteral("a.mif")));

    QCOMPARE(fixture.imported(), QStringLiteral("A [н1 0 0, н2 1 1, н3 2 0, н1 0 0]; A [н1 0 0, н2 1 1, н3 2 0]; "
                                                "B [н1 0 0, н2 1 1, н3 2 0]"));
    QCOMPARE(fixture.list("notes"), QString());
}

void tst_PrepareConvertMif::roundedRectangleIsClosed()
{
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.mif"),
                        {header + columns + data + QStringLiteral("Roundrect 0 0 8 6\n  2\n") + pline});
    fixture.files.write(QStringLiteral("a.mid"), {records});

    QVERIFY(fixture.convert(QStringLiteral("a.mif"), {QStringLiteral("--deviation=9")}));

    // With such a deviation a corner has two chords.
    QCOMPARE(fixture.imported(),
             QStringLiteral("A [н1 8 5, н2 7.70710678119 5.70710678119, н3 7 6, н4 1 6, "
                            "н5 0.292893218813 5.70710678119, н6 0 5, н7 0 1, н8 0.292893218813 0.292893218813, "
                            "н9 1 0, н10 7 0, н11 7.70710678119 0.292893218813, н12 8 1, н1 8 5]; "
                            "B [н13 0 0, н14 1 1, н15 2 0]"));
}

void tst_PrepareConvertMif::textsNameObjectsWithoutField()
{
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.mif"),
                        {header + columns + data + region + QStringLiteral("Text\n    \"Поле\"\n    1 0.5 2 1\n")});
    fixture.files.write(QStringLiteral("a.mid"), {QStringLiteral(",1\n,2")});

    QVERIFY(fixture.convert(QStringLiteral("a.mif")));

    QCOMPARE(fixture.imported(), QStringLiteral("Поле [н1 0 0, н2 1 1, н3 2 0, н1 0 0]"));
    QCOMPARE(fixture.list("leftOut"), QString());
}

void tst_PrepareConvertMif::encodingIsFound_data()
{
    QTest::addColumn<QByteArray>("codec");
    QTest::addColumn<QString>("charset");
    QTest::addColumn<QStringList>("args");

    QTest::newRow("named") << QByteArray("windows-1251") << QStringLiteral("WindowsCyrillic") << QStringList();
    QTest::newRow("none is named") << QByteArray("windows-1251") << QStringLiteral("Neutral") << QStringList();
    QTest::newRow("no line") << QByteArray("windows-1251") << QString() << QStringList();
    QTest::newRow("no line, given") << QByteArray("KOI8-R") << QString() << arguments("--source-encoding KOI8-R");
    QTest::newRow("western is named") << QByteArray("windows-1251") << QStringLiteral("WindowsLatin1") << QStringList();
    QTest::newRow("another is named") << QByteArray("UTF-8") << QStringLiteral("WindowsCyrillic") << QStringList();
    QTest::newRow("DOS") << QByteArray("IBM866") << QStringLiteral("CodePage866") << QStringList();
    QTest::newRow("given") << QByteArray("IBM866") << QStringLiteral("WindowsLatin1")
                           << arguments("--source-encoding CP866");
}

void tst_PrepareConvertMif::encodingIsFound()
{
    QFETCH(QByteArray, codec);
    QFETCH(QString, charset);
    QFETCH(QStringList, args);
    const QString name = QStringLiteral(":ЗУ1");
    const QString line = charset.isEmpty() ? QString() : QStringLiteral("Charset \"%1\"\n").arg(charset);
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.mif"),
                        {QStringLiteral("Version 300\n%1Delimiter \",\"\n").arg(line) + columns + data + pline});
    fixture.files.write(QStringLiteral("a.mid"), {QStringLiteral("\"%1\",1").arg(name)}, codec.constData());

    QVERIFY(fixture.convert(QStringLiteral("a.mif"), args));

    QCOMPARE(fixture.imported(), name + QStringLiteral(" [н1 0 0, н2 1 1, н3 2 0]"));
    QCOMPARE(fixture.report.value(QStringLiteral("sourceEncoding")).toString().toLatin1(), codec);
}

// Of so few bytes a guess alone is often wrong.
void tst_PrepareConvertMif::fewLettersAreReadAsNamed_data()
{
    QTest::addColumn<QByteArray>("codec");
    QTest::addColumn<QString>("name");

    QTest::newRow("one word") << QByteArray("windows-1251") << QStringLiteral("кв");
    QTest::newRow("letter outside the alphabet's range") << QByteArray("windows-1251") << QStringLiteral("Ёж");
    QTest::newRow("no letters in the encoding named") << QByteArray("IBM866") << QStringLiteral("Земельный участок");
    QTest::newRow("capital letters in words") << QByteArray("KOI8-R") << QStringLiteral("Земельный участок у реки");
}

void tst_PrepareConvertMif::fewLettersAreReadAsNamed()
{
    QFETCH(QByteArray, codec);
    QFETCH(QString, name);
    ConvertFixture fixture;
    fixture.files.write(
        QStringLiteral("a.mif"),
        {QStringLiteral("Version 300\nCharset \"WindowsCyrillic\"\nDelimiter \",\"\n") + columns + data + pline});
    fixture.files.write(QStringLiteral("a.mid"), {QStringLiteral("\"%1\",1").arg(name)}, codec.constData());

    QVERIFY(fixture.convert(QStringLiteral("a.mif")));

    QCOMPARE(fixture.imported(), name + QStringLiteral(" [н1 0 0, н2 1 1, н3 2 0]"));
    QCOMPARE(fixture.report.value(QStringLiteral("sourceEncoding")).toString().toLatin1(), codec);
}

void tst_PrepareConvertMif::outputIsConvertedToTheSame()
{
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.mif"),
                        {header + columns + data + pline + QStringLiteral("Line 0 0 5 5\n") + region});
    fixture.files.write(QStringLiteral("a.mid"), {QStringLiteral("\"А\",1\n\"Б\",2\n\"В\",3")}, "windows-1251");

    QVERIFY(fixture.convert(QStringLiteral("a.mif")));
    const QString first = fixture.imported();
    for (const QString &suffix : {QStringLiteral(".mif"), QStringLiteral(".mid")})
        QVERIFY(
            QFile::rename(fixture.path(QStringLiteral("out") + suffix), fixture.path(QStringLiteral("b") + suffix)));
    QVERIFY(fixture.convert(QStringLiteral("b.mif")));

    QCOMPARE(fixture.imported(), first);
}

QTEST_GUILESS_MAIN(tst_PrepareConvertMif)
#include "tst_prepare_convert_mif.moc"
