#include "convertdrawingtesting.h"

/// Names and numbers that conversion takes from the texts of drawings.
class tst_PrepareConvertTexts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textsNameObjects_data();
    void textsNameObjects();
    void reachIsAnOption();
    void nameOfAnotherFieldReplacesTexts();
    void textsNumberPoints_data();
    void textsNumberPoints();
    void numberBesideAPointNamesNoObject_data();
    void numberBesideAPointNamesNoObject();
    void manyTextsAtOnePlace();
};

void tst_PrepareConvertTexts::textsNameObjects_data()
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

void tst_PrepareConvertTexts::textsNameObjects()
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

void tst_PrepareConvertTexts::reachIsAnOption()
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

void tst_PrepareConvertTexts::nameOfAnotherFieldReplacesTexts()
{
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.dxf"), drawing(square + text("Поле", "5", "5")));

    QVERIFY(
        fixture.convert(QStringLiteral("a.dxf"), {QStringLiteral("--designation"), QStringLiteral("EntityHandle")}));

    QCOMPARE(fixture.imported(), QStringLiteral("2B") + QString::fromUtf8(squareVertices));
    QCOMPARE(fixture.list("leftOut"), QStringLiteral("unused-text 1"));
}

void tst_PrepareConvertTexts::textsNumberPoints_data()
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

void tst_PrepareConvertTexts::textsNumberPoints()
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

void tst_PrepareConvertTexts::numberBesideAPointNamesNoObject_data()
{
    QTest::addColumn<QString>("texts");
    QTest::addColumn<QString>("def");

    QTest::newRow("beside") << text("12", "1", "1") << QStringLiteral("ЗУ1");
    QTest::newRow("beside, and another inside") << text("12", "1", "1") + text("7", "2", "2") << QStringLiteral("7");
    QTest::newRow("farther than two letters") << text("12", "2", "1") << QStringLiteral("12");
    QTest::newRow("name") << text("Поле", "1", "1") << QStringLiteral("Поле");
}

void tst_PrepareConvertTexts::numberBesideAPointNamesNoObject()
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
void tst_PrepareConvertTexts::manyTextsAtOnePlace()
{
    QString texts;
    for (int i = 0; i < 2000; ++i)
        texts += text("Поле", "5", "5");
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.dxf"), drawing(square + texts));

    QVERIFY(fixture.convert(QStringLiteral("a.dxf")));

    QCOMPARE(fixture.imported(), QStringLiteral("Поле") + QString::fromUtf8(squareVertices));
}

QTEST_GUILESS_MAIN(tst_PrepareConvertTexts)
#include "tst_prepare_convert_texts.moc"
