#include "convertdrawingtesting.h"

/// Drawings: blocks, texts, encodings, and what GDAL does not read.
class tst_PrepareConvertDrawings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void contentsComeIn_data();
    void contentsComeIn();
    void binaryDrawingIsConverted();
    void idIsTheHandle();
    void largeBlocksComeIn();
    void layersAreThoseOfTheEntities();
    void ignoredEntitiesAreListed_data();
    void ignoredEntitiesAreListed();
    void controlCharactersAreNotPrinted();
    void notesAreGiven_data();
    void notesAreGiven();
    void encodingIsFound_data();
    void encodingIsFound();
};

namespace {

/// A POLYLINE of three vertices with the flag \a flag.
QString polyline(const char *flag)
{
    return QStringLiteral("|0 POLYLINE|8 0|66 1|70 %1|0 VERTEX|8 0|10 0|20 0|0 VERTEX|8 0|10 10|20 0|"
                          "0 VERTEX|8 0|10 10|20 10|0 SEQEND|8 0")
        .arg(QLatin1String(flag));
}

} // namespace

void tst_PrepareConvertDrawings::contentsComeIn_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QString>("objects");
    const auto row = [](const char *name, const QStringList &lines, const char *objects) {
        QTest::newRow(name) << lines << QString::fromUtf8(objects);
    };

    const QString block = QStringLiteral("0 BLOCK|8 0|2 B|70 0|10 0|20 0|30 0|3 B") + line +
                          QStringLiteral("|0 LINE|8 0|10 0|20 1|11 10|21 1|0 ENDBLK|8 0");
    const auto insert = [](const char *more) {
        return QStringLiteral("|0 INSERT|8 0|2 B|10 100|20 200%1").arg(QLatin1String(more));
    };
    row("line", drawing(line), "ЗУ1 [н1 0 0, н2 10 0]");
    row("comments at the start", pairs(QStringLiteral("999 a|999 b")) + drawing(line), "ЗУ1 [н1 0 0, н2 10 0]");
    row("without header", pairs(QStringLiteral("0 SECTION|2 ENTITIES|%1|0 ENDSEC|0 EOF").arg(line)),
        "ЗУ1 [н1 0 0, н2 10 0]");
    row("block", drawing(insert(""), block), "ЗУ1 [н1 100 200, н2 110 200]; ЗУ2 [н3 100 201, н4 110 201]");
    row("scaled and turned block", drawing(insert("|41 2|42 2|50 90"), block),
        "ЗУ1 [н1 100 200, н2 100 220]; ЗУ2 [н3 98 200, н4 98 220]");
    row("block twice", drawing(insert("") + insert("|41 2"), block),
        "ЗУ1 [н1 100 200, н2 110 200]; ЗУ2 [н3 100 201, н4 110 201]; "
        "ЗУ3 [н1 100 200, н5 120 200]; ЗУ4 [н3 100 201, н6 120 201]");
    row("closed polyline", drawing(polyline("1")), "ЗУ1 [н1 0 0, н2 10 0, н3 10 10, н1 0 0]");
    row("closed polyline with more flags", drawing(polyline("129")), "ЗУ1 [н1 0 0, н2 10 0, н3 10 10, н1 0 0]");
    row("closed polyline in space", drawing(polyline("9")), "ЗУ1 [н1 0 0, н2 10 0, н3 10 10, н1 0 0]");
    row("open polyline", drawing(polyline("0")), "ЗУ1 [н1 0 0, н2 10 0, н3 10 10]");
    row("face", drawing(QStringLiteral("|0 3DFACE|8 0|10 0|20 0|30 5|11 9|21 0|31 5|12 9|22 9|32 5|13 9|23 9|33 5")),
        "ЗУ1 [н1 0 0, н2 9 0, н3 9 9, н1 0 0]");
}

void tst_PrepareConvertDrawings::contentsComeIn()
{
    QFETCH(QStringList, lines);
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.dxf"), lines);

    QVERIFY(fixture.convert(QStringLiteral("a.dxf")));

    QTEST(fixture.imported(), "objects");
    QCOMPARE(fixture.list("leftOut"), QString());
}

void tst_PrepareConvertDrawings::binaryDrawingIsConverted()
{
    const QStringList lines = drawing(QStringLiteral("|0 LINE|8 0|10 0|20 0|11 10.25|21 -7"));
    ConvertFixture fixture;
    fixture.files.writeBytes(QStringLiteral("a.dxf"), binaryDrawing(lines));

    QVERIFY(fixture.convert(QStringLiteral("a.dxf")));

    QCOMPARE(fixture.imported(), QStringLiteral("ЗУ1 [н1 0 0, н2 10.25 -7]"));
}

void tst_PrepareConvertDrawings::idIsTheHandle()
{
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.dxf"), drawing(line));

    QVERIFY(fixture.convert(QStringLiteral("a.dxf")));

    QFile mid(fixture.path(QStringLiteral("out.mid")));
    QVERIFY(mid.open(QIODevice::ReadOnly));
    QCOMPARE(mid.readAll(), QByteArray("\"\",\"2A\"\n"));
}

// By default GDAL stops at 10,000.
void tst_PrepareConvertDrawings::largeBlocksComeIn()
{
    QString block = QStringLiteral("0 BLOCK|8 0|2 B|70 0|10 0|20 0|30 0|3 B");
    for (int i = 0; i < 10001; ++i)
        block += line;
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.dxf"), drawing(QStringLiteral("|0 INSERT|8 0|2 B|10 0|20 0"),
                                                         block + QStringLiteral("|0 ENDBLK|8 0")));

    QVERIFY(fixture.convert(QStringLiteral("a.dxf")));

    QCOMPARE(fixture.counts(), QStringLiteral("10001 10001 20002 0"));
}

void tst_PrepareConvertDrawings::layersAreThoseOfTheEntities()
{
    const auto lineOn = [](const char *layer, const char *x) {
        return QStringLiteral("|0 LINE|8 %1|10 0|20 0|11 %2|21 0").arg(QLatin1String(layer), QLatin1String(x));
    };
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.dxf"), drawing(lineOn("A", "1") + lineOn("B", "2") + lineOn("C", "3")));

    QVERIFY(fixture.convert(QStringLiteral("a.dxf"), arguments("--layer C --layer A")));
    QCOMPARE(fixture.imported(), QStringLiteral("ЗУ1 [н1 0 0, н2 1 0]; ЗУ2 [н1 0 0, н3 3 0]"));

    const ConvertRun run = fixture.run(arguments("a.dxf b.mif --layer A --layer D"));
    QCOMPARE(run.status, 2);
    QCOMPARE(run.messages, QStringLiteral("importprepare: --layer: the input has no layer \"D\"."));
}

void tst_PrepareConvertDrawings::ignoredEntitiesAreListed_data()
{
    QTest::addColumn<QString>("entities");
    QTest::addColumn<QString>("leftOut");

    QTest::newRow("types that GDAL does not know")
        << QStringLiteral("|0 3DSOLID|8 0|0 3DSOLID|8 0|0 WIPEOUT|8 0")
        << QStringLiteral("entity 3DSOLID 2, entity IMAGE 1, entity WIPEOUT 1");
    QTest::newRow("insertion of a missing block")
        << QStringLiteral("|0 INSERT|8 0|2 X|10 50|20 0") << QStringLiteral("empty-insert 1, entity IMAGE 1");
    QTest::newRow("insertion of an empty block")
        << QStringLiteral("|0 INSERT|8 0|2 E|10 50|20 0|0 INSERT|8 0|2 E|10 50|20 0")
        << QStringLiteral("empty-insert 2, entity IMAGE 1");
    QTest::newRow("mesh") << polyline("16") << QStringLiteral("entity IMAGE 1, mesh 1");
}

void tst_PrepareConvertDrawings::ignoredEntitiesAreListed()
{
    QFETCH(QString, entities);
    const QString block = QStringLiteral("0 BLOCK|8 0|2 B|70 0|10 0|20 0|30 0|3 B|0 IMAGE|8 0|0 ENDBLK|8 0|"
                                         "0 BLOCK|8 0|2 E|70 0|10 0|20 0|30 0|3 E|0 ENDBLK|8 0");
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.dxf"), drawing(line + entities, block));

    QVERIFY(fixture.convert(QStringLiteral("a.dxf")));

    QCOMPARE(fixture.imported(), QStringLiteral("ЗУ1 [н1 0 0, н2 10 0]"));
    QTEST(fixture.list("leftOut"), "leftOut");
}

void tst_PrepareConvertDrawings::controlCharactersAreNotPrinted()
{
    const ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.dxf"), drawing(line + QStringLiteral("|0 A\x1b[31mB|8 0")));

    const ConvertRun run = fixture.run(arguments("a.dxf out.mif"));

    QCOMPARE(run.status, 0);
    QVERIFY2(run.output.contains(QStringLiteral("Left out: entities A�[31mB, which GDAL does not read: 1.\n")),
             qUtf8Printable(run.output));
}

void tst_PrepareConvertDrawings::notesAreGiven_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QString>("notes");

    QTest::newRow("nothing to note") << drawing(line) << QString();
    QTest::newRow("height") << drawing(QStringLiteral("|0 LINE|8 0|10 0|20 0|30 7|11 10|21 0|31 0"))
                            << QStringLiteral("height 1");
    QTest::newRow("no end") << QStringList(drawing(line).mid(0, drawing(line).size() - 2))
                            << QStringLiteral("no-end 1");
    const QString recursive = QStringLiteral("0 BLOCK|8 0|2 B|70 0|10 0|20 0|30 0|3 B|0 INSERT|8 0|2 B|10 1|20 0") +
                              line + QStringLiteral("|0 ENDBLK|8 0");
    QTest::newRow("block in itself") << drawing(QStringLiteral("|0 INSERT|8 0|2 B|10 0|20 0"), recursive)
                                     << QStringLiteral("gdal-warning 1");
    QTest::newRow("arc as large as a planet")
        << drawing(QStringLiteral("|0 CIRCLE|8 0|10 0|20 0|40 1E9")) << QStringLiteral("coarse-curve 1");
}

void tst_PrepareConvertDrawings::notesAreGiven()
{
    QFETCH(QStringList, lines);
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.dxf"), lines);

    QVERIFY(fixture.convert(QStringLiteral("a.dxf")));

    QTEST(fixture.list("notes"), "notes");
    QCOMPARE(fixture.report.value(QStringLiteral("objects")).toInt(), 1);
}

void tst_PrepareConvertDrawings::encodingIsFound_data()
{
    QTest::addColumn<QByteArray>("codec");
    QTest::addColumn<QString>("header");
    QTest::addColumn<QStringList>("args");

    const QByteArray ansi("windows-1251");
    QTest::newRow("named") << ansi << QStringLiteral("ANSI_1251") << QStringList();
    QTest::newRow("another is named") << ansi << QStringLiteral("ANSI_1252") << QStringList();
    QTest::newRow("none is named") << ansi << QString() << QStringList();
    QTest::newRow("UTF-8 although another is named")
        << QByteArray("UTF-8") << QStringLiteral("ANSI_1251") << QStringList();
    QTest::newRow("DOS") << QByteArray("IBM866") << QStringLiteral("DOS866") << QStringList();
    QTest::newRow("given") << QByteArray("KOI8-R") << QStringLiteral("ANSI_1251")
                           << arguments("--source-encoding KOI8-R");
}

void tst_PrepareConvertDrawings::encodingIsFound()
{
    QFETCH(QByteArray, codec);
    QFETCH(QString, header);
    QFETCH(QStringList, args);
    const QString name = QStringLiteral("Земельный участок, улица Полевая");
    const QStringList head = pairs(QStringLiteral("0 SECTION|2 HEADER|9 $ACADVER|1 AC1015|9 $DWGCODEPAGE|3 ") + header);
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.dxf"),
                        head + drawing(square + text(name.toUtf8().constData(), "5", "5")).mid(4), codec);

    QVERIFY(fixture.convert(QStringLiteral("a.dxf"), args));

    QCOMPARE(fixture.imported(), name + QString::fromUtf8(squareVertices));
    QCOMPARE(fixture.report.value(QStringLiteral("sourceEncoding")).toString().toLatin1(), codec);
}

QTEST_GUILESS_MAIN(tst_PrepareConvertDrawings)
#include "tst_prepare_convert_drawings.moc"
