#include "dxftesting.h"

/// The reader of TEXT and the special characters in its text.
class tst_MapImportDxfTexts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textIsDecoded_data();
    void textIsDecoded();
    void alignmentSelectsThePosition_data();
    void alignmentSelectsThePosition();
    void textNeedsStringAndPosition_data();
    void textNeedsStringAndPosition();
};

void tst_MapImportDxfTexts::textIsDecoded_data()
{
    QTest::addColumn<QByteArray>("codec");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("def");
    const auto row = [](const char *name, const char *text, const QString &def, const char *codec = "windows-1251") {
        QTest::newRow(name) << QByteArray(codec) << QString::fromUtf8(text) << def;
    };

    row("degrees", "45%%d", QStringLiteral("45°"));
    row("all symbols, repeated", "%%d%%d%%p%%c%%p", QStringLiteral("°°±\u00D8±"), "UTF-8");
    row("percent sign before degrees", "%%%d", QStringLiteral("%°"));
    row("degrees after percent signs", "%%%%d065", QStringLiteral("%%°065"));

    row("byte and another digit", "%%1234", QStringLiteral("{4"));
    row("several bytes", "а%%065б%%066в", QStringLiteral("аAбBв"));
    row("number beyond a byte", "%%065%%256%%066", QStringLiteral("A%%256B"));
    row("percent sign before a byte", "%%%065", QStringLiteral("%A"));
    row("decoded text is not decoded again", "%%037%%037065", QStringLiteral("%%065"));
    row("byte 0", "a%%000b", QStringLiteral("a") + QChar(QChar::Null) + QStringLiteral("b"));
    row("decoded blanks stay", " %%032а%%032  ", QStringLiteral(" а "));
    row("byte 255 in Windows-1251", "%%255", QStringLiteral("я"));
    row("byte 177 in IBM866", "%%177", QStringLiteral("\u2592"), "IBM866");
    row("bytes are decoded one by one in UTF-8", "%%208%%144", QString(2, QChar(QChar::ReplacementCharacter)), "UTF-8");

    for (const char *text : {"%%D", "%%P", "%%C", "%%999", "%%65", "%065", "%%o", "%%%", "% %d", "\\P"})
        row(text, text, QString::fromUtf8(text));
}

void tst_MapImportDxfTexts::textIsDecoded()
{
    QFETCH(QByteArray, codec);
    QFETCH(QString, text);
    DxfFixture dxf;
    dxf.import.searchObjectDefs = true;

    QVERIFY(dxf.run(drawing(lineEntity + "|0 TEXT|10 0|20 0|1 " + text.toUtf8()), codec));

    QCOMPARE(dxf.messages(), QStringList());
    QTEST(dxf.polygons.value(0).def, "def");
}

void tst_MapImportDxfTexts::alignmentSelectsThePosition_data()
{
    QTest::addColumn<QByteArray>("groups");
    QTest::addColumn<bool>("bySecondPoint");
    const auto row = [](const char *name, const QByteArray &groups, bool bySecondPoint) {
        QTest::newRow(name) << groups << bySecondPoint;
    };

    row("all groups", "8 0|10 10|20 20|30 5|40 2.5|1 т|50 45|7 Foo|210 0", false);
    row("repeated groups", "10 50|20 60|1 я|1 т|20 20|10 10", false);
    row("no alignment", "10 10|20 20|1 т|11 50|21 60", false);
    row("alignment 0", "10 10|20 20|1 т|72 0|73 0|11 50|21 60", false);
    row("horizontal alignment", "10 10|20 20|1 т|72 1|11 50|21 60", true);
    row("vertical alignment", "73 -1|21 60|11 50|1 т|20 20|10 10", true);
    row("last alignment is 0", "10 10|20 20|1 т|72 1|11 50|21 60|72 0", false);
    row("alignment is not a number", "10 10|20 20|1 т|72 1|72 abc|11 50|21 60", false);
    row("aligned with a second x only", "10 10|20 20|1 т|72 1|11 abc", false);
    row("aligned with a second y only", "10 10|20 20|1 т|72 1|21 60", false);
    row("second point is not used", "10 10|20 20|1 т|72 0|11 abc|21 abc", false);
    row("another text before it", "10 90|20 90|1 я|72 1|11 50|21 90|0 TEXT|10 10|20 20|1 т|21 60", false);
}

// «т» lies exactly at (10, 20), its first point, or at (50, 60), its second, and names the POINT there. The other POINT
// takes «а» or «б», which lie 0.1 away.
void tst_MapImportDxfTexts::alignmentSelectsThePosition()
{
    QFETCH(QByteArray, groups);
    QFETCH(bool, bySecondPoint);
    DxfFixture dxf;
    dxf.import.searchPointDefs = true;

    QVERIFY(dxf.run(drawing("0 POINT|10 10|20 20|0 POINT|10 50|20 60|0 TEXT|10 10|20 20.1|1 а"
                            "|0 TEXT|10 50|20 60.1|1 б|0 TEXT|" +
                            groups)));

    QCOMPARE(dxf.messages(), QStringList());
    QCOMPARE(dxf.points(), bySecondPoint ? QStringLiteral("а 10 20; т 50 60") : QStringLiteral("т 10 20; б 50 60"));
}

void tst_MapImportDxfTexts::textNeedsStringAndPosition_data()
{
    addRunColumns();

    addRun("complete at the end of the file", openDrawing("0 POINT|10 1|20 2|0 TEXT|10 1|20 2|1 т"), "т 1 2");
    addRun("no text", drawing("0 TEXT|10 1|20 2|0 POINT|10 1|20 2"), "", 18);
    addRun("no x", drawing("0 TEXT|20 2|1 т"), "", 18);
    addRun("no y", drawing("0 TEXT|10 1|1 т|21 2"), "", 20);
    addRun("x is not a number", drawing("0 TEXT|10 abc|20 2|1 т|72 1|11 1|21 2"), "", 26);
    addRun("last y is not a number", drawing("0 TEXT|10 1|20 2|1 т|20 2,5"), "", 22);
    addRun("second x is not a number", drawing("0 TEXT|10 1|20 2|1 т|72 1|11 abc|21 2"), "", 26);
    addRun("second y is not a number", drawing("0 TEXT|10 1|20 2|1 т|73 1|11 1|21 abc"), "", 26);
    addRun("blank line after a complete text", drawing("0 TEXT|10 1|20 2|1 т||0 POINT"), "", 19);
    addRun("incomplete at the end of the file", openDrawing("0 TEXT|10 1|20 2"), "", 16);
}

void tst_MapImportDxfTexts::textNeedsStringAndPosition()
{
    DxfFixture dxf;
    dxf.import.searchPointDefs = true;

    compareRun(dxf, &DxfFixture::points);
}

QTEST_GUILESS_MAIN(tst_MapImportDxfTexts)
#include "tst_mapimport_dxf_texts.moc"
