#include "dxftesting.h"

#include <QTest>

/// Texts: their special characters, the encoding of the file, and the reader of TEXT.
class tst_MapImport_DxfTexts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textIsDecoded_data();
    void textIsDecoded();
    void fileIsReadInItsEncoding_data();
    void fileIsReadInItsEncoding();
    void textIsPlaced_data();
    void textIsPlaced();
    void otherTextsAreNoTexts_data();
    void otherTextsAreNoTexts();
    void textAtTheEndIsRead_data();
    void textAtTheEndIsRead();
    void badTextIsToldOnce_data();
    void badTextIsToldOnce();
};

void tst_MapImport_DxfTexts::textIsDecoded_data()
{
    QTest::addColumn<QByteArray>("codec");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("def");
    const auto row = [](const char *name, const QByteArray &codec, const char *text, const QString &def) {
        QTest::newRow(name) << codec << QString::fromUtf8(text) << def;
    };
    const auto keep = [&row](const char *text) { row(text, "windows-1251", text, QString::fromUtf8(text)); };

    row("degrees", "windows-1251", "45%%d", QStringLiteral("45°"));
    row("plus-minus", "windows-1251", "%%p0,1", QStringLiteral("±0,1"));
    row("diameter", "UTF-8", "%%c20", QStringLiteral("\u00D820"));
    row("all of them, several times", "UTF-8", "%%d%%d%%p%%c%%p", QStringLiteral("°°±\u00D8±"));
    row("percent sign before degrees", "windows-1251", "%%%d", QStringLiteral("%°"));
    row("degrees before digits", "windows-1251", "%%d065", QStringLiteral("°065"));
    row("degrees after percent signs", "windows-1251", "%%%%d065", QStringLiteral("%%°065"));

    row("byte 123 and a digit more", "windows-1251", "%%1234", QStringLiteral("{4"));
    row("several bytes", "windows-1251", "а%%065б%%066в", QStringLiteral("аAбBв"));
    row("bytes around a number that is none", "windows-1251", "%%065%%300%%066", QStringLiteral("A%%300B"));
    row("percent sign before a byte", "windows-1251", "%%%065", QStringLiteral("%A"));
    row("percent signs before a byte", "windows-1251", "%%%%065", QStringLiteral("%%A"));
    row("decoded text is not decoded again", "windows-1251", "%%037%%037065", QStringLiteral("%%065"));
    row("greatest byte", "windows-1251", "%%255", QStringLiteral("я"));
    row("byte 0", "windows-1251", "a%%000b", QStringLiteral("a") + QChar(QChar::Null) + QStringLiteral("b"));
    row("line feed", "windows-1251", "а%%010б", QStringLiteral("а\nб"));
    row("decoded blanks stay", "windows-1251", "%%032а%%032", QStringLiteral(" а "));
    row("blanks around the value go", "windows-1251", "  Участок 5  ", QStringLiteral("Участок 5"));

    row("byte 177 in Windows-1251", "windows-1251", "%%177", QStringLiteral("±"));
    row("byte 177 in IBM866", "IBM866", "%%177", QStringLiteral("\u2592"));
    row("byte 177 in UTF-8", "UTF-8", "%%177", QString(QChar(QChar::ReplacementCharacter)));
    row("byte 248 in Windows-1251", "windows-1251", "%%248", QStringLiteral("ш"));
    row("byte 248 in IBM866", "IBM866", "%%248", QStringLiteral("°"));
    row("byte 128 in IBM866", "IBM866", "%%128", QStringLiteral("А"));
    row("byte 65 in UTF-8", "UTF-8", "%%065", QStringLiteral("A"));
    row("each byte stands alone", "UTF-8", "%%208%%144", QString(2, QChar(QChar::ReplacementCharacter)));

    for (const char *text : {"%%D", "%%P", "%%C", "%%256", "%%300", "%%999", "%%65", "%065", "%%06", "%%o", "%%u",
                             "%%%", "% %d", "\\P", "\\U+00B0", "{\\fArial;а}"})
        keep(text);
}

void tst_MapImport_DxfTexts::textIsDecoded()
{
    QFETCH(QByteArray, codec);
    QFETCH(QString, text);
    QFETCH(QString, def);
    DxfRun dxf;
    dxf.import.searchObjectDefs = true;
    const QByteArray entities = lineEntity + "|0 TEXT|10 0|20 0|1 " + text.toUtf8();

    QVERIFY(dxf.run(drawing(entities), codec));

    QCOMPARE(dxf.messages(), QStringList());
    QCOMPARE(dxf.polygons.value(0).def, def);
}

void tst_MapImport_DxfTexts::fileIsReadInItsEncoding_data()
{
    QTest::addColumn<QByteArray>("writtenIn");
    QTest::addColumn<QByteArray>("mark");
    QTest::addColumn<QByteArrayList>("names");
    QTest::addColumn<QString>("def");
    const QByteArray none;
    const QByteArray mark("\xEF\xBB\xBF");
    const QString def = QStringLiteral("Ёлка±");
    const QByteArray win("windows-1251");

    QTest::newRow("Windows-1251") << win << none << QByteArrayList{"Windows-1251"} << def;
    QTest::newRow("name in lower case") << win << none << QByteArrayList{"windows-1251"} << def;
    QTest::newRow("IBM866") << QByteArray("IBM866") << none << QByteArrayList{"IBM866"} << QStringLiteral("Ёлка\u2592");
    QTest::newRow("UTF-8") << QByteArray("UTF-8") << none << QByteArrayList{"UTF-8"} << QStringLiteral("Ёлка\uFFFD");
    QTest::newRow("UTF-8 with a mark") << QByteArray("UTF-8") << mark << QByteArrayList{"UTF-8"}
                                       << QStringLiteral("Ёлка\uFFFD");
    QTest::newRow("a mark prevails for the file, not for single bytes")
        << QByteArray("UTF-8") << mark << QByteArrayList{win} << def;
    QTest::newRow("none named is the locale's") << win << none << QByteArrayList{} << def;
    QTest::newRow("Default is the locale's") << win << none << QByteArrayList{"Default"} << def;
    QTest::newRow("unknown name is the locale's") << win << none << QByteArrayList{"no such encoding"} << def;
    QTest::newRow("unknown name leaves the one before")
        << QByteArray("IBM866") << none << QByteArrayList{"IBM866", "no such encoding"} << QStringLiteral("Ёлка\u2592");
    QTest::newRow("last known name counts") << win << none << QByteArrayList{"IBM866", "Windows-1251"} << def;
}

void tst_MapImport_DxfTexts::fileIsReadInItsEncoding()
{
    QFETCH(QByteArray, writtenIn);
    QFETCH(QByteArray, mark);
    QFETCH(QByteArrayList, names);
    QFETCH(QString, def);
    const QString text = drawing(lineEntity + "|0 TEXT|10 0|20 0|1 Ёлка%%177").join(QLatin1Char('\n'));
    QTextCodec::ConverterState noMark(QTextCodec::IgnoreHeader);
    const QByteArray bytes = QTextCodec::codecForName(writtenIn)->fromUnicode(text.constData(), text.size(), &noMark);

    QTextCodec::setCodecForLocale(QTextCodec::codecForName("windows-1251"));
    DxfRun dxf;
    QTextCodec::setCodecForLocale(nullptr);
    for (const QByteArray &name : qAsConst(names))
        dxf.import.setEncoding(name);
    dxf.import.searchObjectDefs = true;
    dxf.import.objectFileName = dxf.files.writeBytes(QStringLiteral("objects.dxf"), mark + bytes);

    QVERIFY(dxf.import.importMap());

    QCOMPARE(dxf.messages(), QStringList());
    QCOMPARE(dxf.polygons.value(0).def, def);
}

void tst_MapImport_DxfTexts::textIsPlaced_data()
{
    QTest::addColumn<QByteArray>("groups");
    QTest::addColumn<bool>("bySecondPoint");

    // The texts «а» and «б» lie near the insertion point (10, 20) and the second point (50, 60) of «т».
    QTest::newRow("one point") << QByteArray("10 10|20 20|1 т") << false;
    QTest::newRow("groups in another order") << QByteArray("1 т|20 20|10 10") << false;
    QTest::newRow("other groups are passed over")
        << QByteArray("8 0|10 10|20 20|30 5|40 2.5|1 т|50 45|7 Standard|210 0") << false;
    QTest::newRow("00 does not end it") << QByteArray("10 10|00 TEXT|20 20|1 т") << false;
    QTest::newRow("last of repeated groups") << QByteArray("10 50|20 60|1 я|10 10|20 20|1 т") << false;
    QTest::newRow("alignment absent") << QByteArray("10 10|20 20|1 т|11 50|21 60") << false;
    QTest::newRow("alignment 0") << QByteArray("10 10|20 20|1 т|72 0|73 0|11 50|21 60") << false;
    QTest::newRow("horizontal") << QByteArray("10 10|20 20|1 т|72 1|11 50|21 60") << true;
    QTest::newRow("vertical") << QByteArray("10 10|20 20|1 т|73 2|11 50|21 60") << true;
    QTest::newRow("both") << QByteArray("10 10|20 20|1 т|72 4|73 3|11 50|21 60") << true;
    QTest::newRow("second point before the first") << QByteArray("73 1|21 60|11 50|1 т|20 20|10 10") << true;
    QTest::newRow("negative alignment") << QByteArray("10 10|20 20|1 т|72 -1|11 50|21 60") << true;
    QTest::newRow("last alignment is 0") << QByteArray("10 10|20 20|1 т|72 1|11 50|21 60|72 0") << false;
    QTest::newRow("last alignment is not 0") << QByteArray("10 10|20 20|1 т|72 0|11 50|21 60|72 2") << true;
    QTest::newRow("alignment is no number") << QByteArray("10 10|20 20|1 т|72 abc|11 50|21 60") << false;
    QTest::newRow("alignment is no integer") << QByteArray("10 10|20 20|1 т|72 1.0|11 50|21 60") << false;
    QTest::newRow("one alignment is no number") << QByteArray("10 10|20 20|1 т|72 abc|73 1|11 50|21 60") << true;
    QTest::newRow("aligned without a second point") << QByteArray("10 10|20 20|1 т|72 1") << false;
    QTest::newRow("aligned with a second x only") << QByteArray("10 10|20 20|1 т|72 1|11 50") << false;
    QTest::newRow("aligned with a second y only") << QByteArray("10 10|20 20|1 т|72 1|21 60") << false;
    QTest::newRow("second x alone is not looked at") << QByteArray("10 10|20 20|1 т|72 1|11 abc") << false;
    QTest::newRow("unused second point is not looked at") << QByteArray("10 10|20 20|1 т|72 0|11 abc|21 abc") << false;
    QTest::newRow("first of two texts leaves nothing behind")
        << QByteArray("10 90|20 90|1 я|72 1|11 50|21 90|0 TEXT|10 10|20 20|1 т|21 60") << false;
}

void tst_MapImport_DxfTexts::textIsPlaced()
{
    QFETCH(QByteArray, groups);
    QFETCH(bool, bySecondPoint);
    DxfRun dxf;
    dxf.import.searchPointDefs = true;

    QVERIFY(dxf.run(drawing("0 TEXT|" + groups +
                            "|0 TEXT|10 10|20 20.1|1 а|0 TEXT|10 50|20 60.1|1 б"
                            "|0 POINT|10 10|20 20|0 POINT|10 50|20 60")));

    QCOMPARE(dxf.messages(), QStringList());
    const QStringList byFirst{QStringLiteral("т(10 20)"), QStringLiteral("б(50 60)")};
    const QStringList bySecond{QStringLiteral("а(10 20)"), QStringLiteral("т(50 60)")};
    QCOMPARE(dxf.points(), bySecondPoint ? bySecond : byFirst);
}

void tst_MapImport_DxfTexts::otherTextsAreNoTexts_data()
{
    QTest::addColumn<QByteArray>("entity");
    for (const char *entity : {"MTEXT", "ATTRIB", "ATTDEF", "text", "TEXTS"})
        QTest::newRow(entity) << QByteArray(entity);
}

void tst_MapImport_DxfTexts::otherTextsAreNoTexts()
{
    QFETCH(QByteArray, entity);
    DxfRun dxf;
    dxf.import.searchPointDefs = true;
    dxf.import.searchObjectDefs = true;

    QVERIFY(dxf.run(drawing("0 POINT|10 0|20 0|0 " + entity + "|10 0|20 0|1 т|" + lineEntity)));

    QCOMPARE(dxf.messages(), QStringList());
    QCOMPARE(dxf.objects(), QStringList{QStringLiteral("ЗУ1: (0 0) н1(10 0)")});
}

void tst_MapImport_DxfTexts::textAtTheEndIsRead_data()
{
    QTest::addColumn<QByteArray>("texts");
    QTest::addColumn<QString>("def");

    QTest::newRow("complete") << QByteArray("0 TEXT|10 5|20 0|1 Сад") << QStringLiteral("Сад");
    QTest::newRow("empty text, nearer than another")
        << QByteArray("0 TEXT|10 99|20 99|1 Сад|0 TEXT|10 5|20 0|1 ") << QStringLiteral("ЗУ1");
    QTest::newRow("keyword alone after another text is not looked at")
        << QByteArray("0 TEXT|10 5|20 0|1 Сад|0 TEXT") << QStringLiteral("Сад");
}

void tst_MapImport_DxfTexts::textAtTheEndIsRead()
{
    QFETCH(QByteArray, texts);
    QFETCH(QString, def);
    DxfRun dxf;
    dxf.import.searchObjectDefs = true;

    QVERIFY(dxf.run(openDrawing(lineEntity + "|" + texts)));

    QCOMPARE(dxf.messages(), QStringList());
    QCOMPARE(dxf.objects(), QStringList{def + QStringLiteral(": н1(0 0) н2(10 0)")});
}

void tst_MapImport_DxfTexts::badTextIsToldOnce_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<int>("line");

    QTest::newRow("no text") << drawing("0 TEXT|10 1|20 2|0 POINT|10 1|20 2") << 18;
    QTest::newRow("no x") << drawing("0 TEXT|20 2|1 т") << 18;
    QTest::newRow("no y") << drawing("0 TEXT|10 1|1 т|11 1|21 2") << 22;
    QTest::newRow("nothing at all") << drawing("0 TEXT") << 14;
    QTest::newRow("x is no number") << drawing("0 TEXT|10 abc|20 2|1 т") << 20;
    QTest::newRow("y has a comma") << drawing("0 TEXT|10 1|20 2,5|1 т") << 20;
    QTest::newRow("x is empty") << drawing("0 TEXT|10 |20 2|1 т") << 20;
    QTest::newRow("x is no number, aligned") << drawing("0 TEXT|10 abc|20 2|1 т|72 1|11 1|21 2") << 26;
    QTest::newRow("second x is no number") << drawing("0 TEXT|10 1|20 2|1 т|72 1|11 abc|21 2") << 26;
    QTest::newRow("second y is no number") << drawing("0 TEXT|10 1|20 2|1 т|73 1|11 1|21 abc") << 26;
    QTest::newRow("last x is no number") << drawing("0 TEXT|10 1|20 2|1 т|10 abc") << 22;
    QTest::newRow("blank line in mid-text") << drawing("0 TEXT|10 1||20 2|1 т") << 15;
    QTest::newRow("blank line after a complete text") << drawing("0 TEXT|10 1|20 2|1 т||0 POINT") << 19;
    QTest::newRow("end of the file after the keyword") << openDrawing("0 TEXT") << 12;
    QTest::newRow("end of the file without the text") << openDrawing("0 TEXT|10 1|20 2") << 16;
    QTest::newRow("end of the file, x is no number") << openDrawing("0 TEXT|10 abc|20 2|1 т") << 18;
    QTest::newRow("end of the file in a blank line") << openDrawing("0 TEXT|10 1|20 2|1 т|") << 19;
}

void tst_MapImport_DxfTexts::badTextIsToldOnce()
{
    QFETCH(QStringList, lines);
    QFETCH(int, line);
    DxfRun dxf;
    dxf.import.searchPointDefs = true;
    dxf.setPointFile(lines);

    QVERIFY(!dxf.run(drawing(lineEntity)));

    QCOMPARE(dxf.messages(), QStringList{readingError(line)});
    QCOMPARE(dxf.objects(), QStringList());
}

QTEST_GUILESS_MAIN(tst_MapImport_DxfTexts)
#include "tst_mapimport_dxftexts.moc"
