#include "converttesting.h"

#include <QtEndian>

/// Drawings: blocks, texts, encodings, and what GDAL does not read.
class tst_PrepareConvertDrawings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void contentsComeIn_data();
    void contentsComeIn();
    void textsNameObjects_data();
    void textsNameObjects();
    void reachIsAnOption();
    void nameOfAnotherFieldReplacesTexts();
    void textsNumberPoints_data();
    void textsNumberPoints();
    void numberBesideAPointNamesNoObject_data();
    void numberBesideAPointNamesNoObject();
    void manyTextsAtOnePlace();
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

/// Expands "code value|code value" to the lines of a drawing.
QStringList pairs(const QString &text)
{
    QStringList lines;
    const QStringList parts = text.split(QLatin1Char('|'), Qt::SkipEmptyParts);
    for (const QString &part : parts) {
        lines.append(part.section(QLatin1Char(' '), 0, 0));
        lines.append(part.section(QLatin1Char(' '), 1));
    }
    return lines;
}

QStringList drawing(const QString &entities, const QString &blocks = QString())
{
    const QString sections = QStringLiteral("0 SECTION|2 HEADER|0 ENDSEC|0 SECTION|2 BLOCKS|%1|0 ENDSEC|"
                                            "0 SECTION|2 ENTITIES|%2|0 ENDSEC|0 EOF");
    return pairs(sections.arg(blocks, entities));
}

/// A TEXT entity at x y.
QString text(const char *value, const char *x, const char *y)
{
    return QStringLiteral("|0 TEXT|8 0|10 %2|20 %3|40 1|1 %1")
        .arg(QString::fromUtf8(value), QLatin1String(x), QLatin1String(y));
}

const QString line = QStringLiteral("|0 LINE|5 2A|8 0|10 0|20 0|11 10|21 0");
const QString square = QStringLiteral("|0 LWPOLYLINE|5 2B|8 0|90 4|70 1|10 0|20 0|10 10|20 0|10 10|20 10|10 0|20 10");
constexpr auto squareVertices = " [н1 0 0, н2 10 0, н3 10 10, н4 0 10, н1 0 0]";

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

void tst_PrepareConvertDrawings::textsNameObjects_data()
{
    QTest::addColumn<QString>("texts");
    QTest::addColumn<QString>("def");
    QTest::addColumn<int>("unused");
    const auto row = [](const char *name, const QString &texts, const char *def, int unused = 0) {
        QTest::newRow(name) << texts << QString::fromUtf8(def) << unused;
    };

    row("inside", text("Поле", "5", "5"), "Поле");
    row("inside, nearest to the centre", text("A1a", "2", "2") + text("A2a", "6", "6"), "A2a", 1);
    row("inside before a nearer one outside", text("inner", "5", "5") + text("outer", "10.1", "5"), "inner", 1);
    row("outside within reach", text("outer", "15", "5"), "outer");
    row("nearest outside", text("far", "14", "5") + text("near", "12", "5") + text("farther", "14.5", "5"), "near", 2);
    row("outside beyond reach", text("outer", "15.01", "5"), "ЗУ1", 1);
    row("beyond a corner", text("outer", "14", "14"), "ЗУ1", 1);
    row("number beside a name", text("н12", "5", "5") + text("Поле", "2", "2"), "Поле", 1);
    row("only numbers", text("12", "5", "5"), "12");
    row("height", text("26.685", "5", "5") + text("-1,5", "6", "6"), "ЗУ1", 2);
    row("paragraph text", QStringLiteral("|0 MTEXT|8 0|10 5|20 5|40 1|1 Участок 7"), "Участок 7");
    row("letters as codes", text("\\U+041f\\U+043E\\U+043bе \\U+04", "5", "5"), "Поле \\U+04");
    row("paragraph text with letters as codes", QStringLiteral("|0 MTEXT|8 0|10 5|20 5|40 1|1 \\U+041f 7"), "П 7");
    row("empty text", text("", "5", "5"), "ЗУ1", 1);
    row("level with a corner", text("inner", "5", "10") + text("outer", "-1", "10"), "inner", 1);
}

void tst_PrepareConvertDrawings::textsNameObjects()
{
    QFETCH(QString, texts);
    QFETCH(QString, def);
    QFETCH(int, unused);
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.dxf"), drawing(square + texts));

    QVERIFY(fixture.convert(QStringLiteral("a.dxf")));

    QCOMPARE(fixture.imported(), def + QString::fromUtf8(squareVertices));
    QCOMPARE(fixture.list("leftOut"), unused == 0 ? QString() : QStringLiteral("unused-text %1").arg(unused));
}

void tst_PrepareConvertDrawings::reachIsAnOption()
{
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.dxf"), drawing(line + text("road", "5", "7")));

    QVERIFY(fixture.convert(QStringLiteral("a.dxf")));
    QCOMPARE(fixture.imported(), QStringLiteral("ЗУ1 [н1 0 0, н2 10 0]"));
    QVERIFY(fixture.convert(QStringLiteral("a.dxf"), {QStringLiteral("--force"), QStringLiteral("--reach=7")}));
    QCOMPARE(fixture.imported(), QStringLiteral("road [н1 0 0, н2 10 0]"));
    QVERIFY(fixture.convert(QStringLiteral("a.dxf"), {QStringLiteral("--force"), QStringLiteral("--reach=6.9")}));
    QCOMPARE(fixture.imported(), QStringLiteral("ЗУ1 [н1 0 0, н2 10 0]"));
}

void tst_PrepareConvertDrawings::nameOfAnotherFieldReplacesTexts()
{
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.dxf"), drawing(square + text("Поле", "5", "5")));

    QVERIFY(
        fixture.convert(QStringLiteral("a.dxf"), {QStringLiteral("--designation"), QStringLiteral("EntityHandle")}));

    QCOMPARE(fixture.imported(), QStringLiteral("2B") + QString::fromUtf8(squareVertices));
    QCOMPARE(fixture.list("leftOut"), QStringLiteral("unused-text 1"));
}

void tst_PrepareConvertDrawings::textsNumberPoints_data()
{
    QTest::addColumn<QString>("texts");
    QTest::addColumn<QString>("number");

    QTest::newRow("nearest") << text("14", "3", "0") + text("15", "1", "1") + text("16", "0", "3")
                             << QStringLiteral("15");
    QTest::newRow("numbers before names") << text("Поле", "0", "0") + text("т15", "2", "0") << QStringLiteral("т15");
    QTest::newRow("only names") << text("Rp. 5", "0", "1") << QStringLiteral("Rp. 5");
    QTest::newRow("height") << text("26.685", "0", "0") + text("7", "2", "0") << QStringLiteral("7");
    QTest::newRow("beyond reach") << text("15", "0", "5.1") << QString();
}

void tst_PrepareConvertDrawings::textsNumberPoints()
{
    QFETCH(QString, texts);
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.dxf"), drawing(QStringLiteral("|0 POINT|8 0|10 0|20 0") + texts));

    QVERIFY(fixture.convert(QStringLiteral("a.dxf")));

    QCOMPARE(fixture.counts(), QStringLiteral("0 0 0 1"));
    QFile mid(fixture.path(QStringLiteral("out.mid")));
    QVERIFY(mid.open(QIODevice::ReadOnly));
    const QString record = QTextCodec::codecForName("windows-1251")->toUnicode(mid.readAll());
    QTEST(record.section(QLatin1Char('"'), 1, 1), "number");
}

void tst_PrepareConvertDrawings::numberBesideAPointNamesNoObject_data()
{
    QTest::addColumn<QString>("texts");
    QTest::addColumn<QString>("def");

    QTest::newRow("beside") << text("12", "1", "1") << QStringLiteral("ЗУ1");
    QTest::newRow("beside, and another inside") << text("12", "1", "1") + text("7", "2", "2") << QStringLiteral("7");
    QTest::newRow("farther than two letters") << text("12", "2", "1") << QStringLiteral("12");
    QTest::newRow("name") << text("Поле", "1", "1") << QStringLiteral("Поле");
}

void tst_PrepareConvertDrawings::numberBesideAPointNamesNoObject()
{
    QFETCH(QString, texts);
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.dxf"), drawing(square + QStringLiteral("|0 POINT|8 0|10 0|20 0") + texts));

    QVERIFY(fixture.convert(QStringLiteral("a.dxf")));

    QCOMPARE(fixture.counts(), QStringLiteral("1 1 5 1"));
    const QString object = fixture.imported().section(QLatin1String(" ["), 0, 0);
    QTEST(object, "def");
}

// The index of the texts must not become ever deeper.
void tst_PrepareConvertDrawings::manyTextsAtOnePlace()
{
    QString texts;
    for (int i = 0; i < 2000; ++i)
        texts += text("Поле", "5", "5");
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.dxf"), drawing(square + texts));

    QVERIFY(fixture.convert(QStringLiteral("a.dxf")));

    QCOMPARE(fixture.imported(), QStringLiteral("Поле") + QString::fromUtf8(squareVertices));
}

void tst_PrepareConvertDrawings::binaryDrawingIsConverted()
{
    QByteArray bytes("AutoCAD Binary DXF\r\n\x1a\0", 22);
    const QStringList lines = drawing(QStringLiteral("|0 LINE|8 0|10 0|20 0|11 10.25|21 -7"));
    for (int i = 0; i < lines.size(); i += 2) {
        const qint16 code = lines.at(i).toShort();
        QByteArray start(2, '\0');
        qToLittleEndian(code, start.data());
        QByteArray number(8, '\0');
        qToLittleEndian(lines.at(i + 1).toDouble(), number.data());
        bytes += start + (code >= 10 ? number : lines.at(i + 1).toLatin1() + '\0');
    }
    ConvertFixture fixture;
    fixture.files.writeBytes(QStringLiteral("a.dxf"), bytes);

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
