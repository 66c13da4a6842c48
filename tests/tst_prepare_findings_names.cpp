#include "preparetesting.h"

/// The findings about names, numbers and encodings in drawings.
class tst_PrepareFindingsNames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void numberAndNameAreFound_data();
    void numberAndNameAreFound();
    void encodingIsFound_data();
    void encodingIsFound();
    void fewLettersAllowNoFirmEncoding_data();
    void fewLettersAllowNoFirmEncoding();
    void layerIsReadable_data();
    void layerIsReadable();
    void textsDoNotMatterWithoutSearch();
};

void tst_PrepareFindingsNames::numberAndNameAreFound_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QString>("findings");

    const auto add = [](const char *name, const QStringList &lines, const char *findings) {
        QTest::newRow(name) << lines << QString::fromUtf8(findings);
    };
    const auto text = [](const QByteArray &at, const QByteArray &content) {
        return "|0 TEXT|8 0|10 " + at + "|20 0|40 1|1 " + content;
    };
    const auto point = [](const QByteArray &at) { return "|0 POINT|8 0|10 " + at + "|20 0"; };
    const QByteArray second = "|0 LINE|10 100|20 0|11 110|21 0";
    add("two positions with one number", drawing("0 LINE|10 1000|20 0|11 1000.009|21 0" + text("5", "ЗУ")),
        "merged-numbers 2 @ объект «ЗУ», номер «н1»");
    add("two positions far enough", drawing("0 LINE|10 1000|20 0|11 1000.011|21 0" + text("5", "ЗУ")), "");
    add("two positions but for rounding", drawing("0 LINE|10 1000|20 0|11 1000.000000001|21 0" + text("5", "ЗУ")), "");
    add("one text at two points", drawing(lineEntity + point("0") + point("10") + text("4", "т")),
        "merged-numbers 2 @ объект «т», номер «т»");
    add("point without a number", drawing(lineEntity + point("0")), "empty-numbers 1 @ объект «:ЗУ1»");
    add("point beside", drawing(lineEntity + point("5")), "");
    add("height", drawing(lineEntity + text("5", "26.685")), "heights-as-names 1 @ объект «26.685»");
    add("height with a comma", drawing(lineEntity + text("5", "-26,6")), "heights-as-names 1 @ объект «-26,6»");
    add("code of a letter", drawing(lineEntity + text("5", "5\\U+0416")), "escaped-names 1 @ объект «5\\U+0416»");
    add("code of no letter", drawing(lineEntity + text("5", "\\U+041")), "");
    add("code of a letter in a number", drawing(lineEntity + point("0") + text("0", "\\U+0416") + text("5", "ЗУ")),
        "escaped-names 1 @ объект «ЗУ», номер «\\U+0416»");
    add("number with two points", drawing(lineEntity + text("5", "1.2.3")), "");
    add("height as a point number", drawing(lineEntity + point("0") + text("0", "101.5") + text("5", "ЗУ")),
        "heights-as-names 1 @ объект «ЗУ», номер «101.5»");
    add("height of a point beside", drawing(lineEntity + point("50") + text("50", "101.5") + text("5", "ЗУ")), "");
    add("two objects with one text", drawing(lineEntity + second + text("50", "ЗУ")), "shared-names 2 @ объект «ЗУ»");
    add("two objects with two texts", drawing(lineEntity + second + text("5", "А") + text("105", "Б")), "");
    const auto triangle = [](const QByteArray &x) {
        return drawing("0 LWPOLYLINE|8 0|90 3|70 0|10 " + x + "7.6|20 55.7|10 " + x + "7.6|20 55.715|10 " + x +
                       "7.615|20 55.72");
    };
    const QByteArray unordered = text("105", "Б") + text("205", "В") + text("5", "А");
    add("texts not in order", drawing(lineEntity + unordered), "misplaced-names 1 @ объект «Б»");
    add("texts not in order, with a point", drawing(lineEntity + unordered + point("50")), "");
    add("aligned texts not in order",
        drawing(lineEntity + text("105", "Б") + text("205", "В") + text("500", "А") + "|72 1|11 5|21 0"),
        "misplaced-names 1 @ объект «Б»");
    add("two texts equally near", drawing(lineEntity + "|0 TEXT|8 0|10 5|20 1|40 1|1 А|0 TEXT|8 0|10 5|20 -1|40 1|1 Б"),
        "");
    add("texts in order", drawing(lineEntity + text("5", "А") + text("105", "Б") + text("205", "В")), "");
    add("degrees", triangle("3"), "degrees 3 @ объект «:ЗУ1»");
    add("too many degrees", triangle("18"), "");
    add("sides too long for degrees", drawing("0 LINE|10 37|20 55|11 37|21 55.021"), "");
}

void tst_PrepareFindingsNames::numberAndNameAreFound()
{
    QFETCH(QStringList, lines);
    const CheckFixture check;

    const FileReport report = check.checkDxf(lines);

    QTEST(described(report.findings), "findings");
}

void tst_PrepareFindingsNames::encodingIsFound_data()
{
    QTest::addColumn<QByteArray>("page");
    QTest::addColumn<QByteArray>("written");
    QTest::addColumn<QString>("chosen");
    QTest::addColumn<QString>("findings");

    const QString found = QStringLiteral("encoding 1 @ строка 32, слой «0», TEXT");
    const auto add = [](const char *name, const char *page, const char *written, const char *chosen,
                        const QString &findings) {
        QTest::newRow(name) << QByteArray(page) << QByteArray(written) << QString::fromLatin1(chosen) << findings;
    };
    add("right", "ANSI_1251", "windows-1251", "windows-1251", QString());
    add("UTF-8 chosen", "ANSI_1251", "windows-1251", "UTF-8", found);
    add("another code page chosen", "ANSI_1251", "windows-1251", "IBM866", found);
    add("another code page, none named", "", "windows-1251", "IBM866", QString());
    add("UTF-8 in spite of the header", "ANSI_1251", "UTF-8", "UTF-8", QString());
    add("UTF-8 not chosen", "ANSI_1251", "UTF-8", "windows-1251", found);
    add("old code page", "DOS866", "IBM866", "windows-1251", found);
}

void tst_PrepareFindingsNames::encodingIsFound()
{
    QFETCH(QByteArray, page);
    QFETCH(QByteArray, written);
    QFETCH(QString, chosen);
    CheckFixture check;
    check.options.encoding = chosen;
    const QStringList lines = pairs("0 SECTION|2 HEADER|9 $DWGCODEPAGE|3 " + page + "|0 ENDSEC|0 SECTION|2 ENTITIES|" +
                                    lineEntity + "|9 x|9 x|9 x|0 TEXT|8 0|10 5|20 0|40 1|1 Участок|0 ENDSEC|0 EOF");

    const QString fileName = check.files.write(QStringLiteral("plan.dxf"), lines, written.constData());
    const FileReport report = checkFile(fileName, check.options, false);

    QTEST(described(report.findings), "findings");
}

void tst_PrepareFindingsNames::fewLettersAllowNoFirmEncoding_data()
{
    QTest::addColumn<QByteArray>("page");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("cure");

    const QString text = QStringLiteral("Обозначения и номера прочтутся неверно: кодировка в заголовке — %1, по "
                                        "байтам — %2, а выбрана UTF-8.");
    const QString cure = QStringLiteral("Выберите при импорте кодировку windows-1251 (--encoding)%1.");
    QTest::newRow("header decides") << QByteArray("ANSI_1251")
                                    << text.arg(QStringLiteral("ANSI_1251"),
                                                QStringLiteral("похоже, она же (букв мало)"))
                                    << cure.arg(QString());
    QTest::newRow("nothing decides") << QByteArray()
                                     << text.arg(QStringLiteral("не названа"),
                                                 QStringLiteral("не UTF-8, а какая — не определить (мало букв)"))
                                     << cure.arg(QStringLiteral("; если буквы неверны, другую"));
}

void tst_PrepareFindingsNames::fewLettersAllowNoFirmEncoding()
{
    QFETCH(QByteArray, page);
    const CheckFixture check;
    const QStringList lines = pairs("0 SECTION|2 HEADER|9 $DWGCODEPAGE|3 " + page + "|0 ENDSEC|0 SECTION|2 ENTITIES|" +
                                    lineEntity + "|0 TEXT|8 0|10 5|20 0|40 1|1 Участок|0 ENDSEC|0 EOF");

    const QString fileName = check.files.write(QStringLiteral("plan.dxf"), lines, "windows-1251");
    const QVector<Finding> findings = checkFile(fileName, check.options, false).findings;

    QCOMPARE(findings.size(), 1);
    QTEST(findings.first().text, "text");
    QTEST(findings.first().cure, "cure");
}

void tst_PrepareFindingsNames::layerIsReadable_data()
{
    QTest::addColumn<QByteArray>("page");
    QTest::addColumn<QByteArray>("written");
    QTest::addColumn<QString>("chosen");

    const auto add = [](const char *name, const char *page, const char *written, const char *chosen) {
        QTest::newRow(name) << QByteArray(page) << QByteArray(written) << QString::fromLatin1(chosen);
    };
    add("as chosen", "", "IBM866", "IBM866");
    add("as in the header", "ANSI_1251", "windows-1251", "IBM866");
    add("UTF-8 in spite of the header", "ANSI_1251", "UTF-8", "windows-1251");
    add("nothing fits", "", "windows-1251", "UTF-8");
}

// A person looks for the layer in the drawing, so its name counts, not what the import makes of it.
void tst_PrepareFindingsNames::layerIsReadable()
{
    QFETCH(QByteArray, page);
    QFETCH(QByteArray, written);
    CheckFixture check;
    QFETCH(QString, chosen);
    check.options.encoding = chosen;
    const QStringList lines = pairs("0 SECTION|2 HEADER|9 $DWGCODEPAGE|3 " + page + "|0 ENDSEC|0 SECTION|2 ENTITIES|" +
                                    lineEntity + "|0 ARC|8 Дуги|10 0|20 0|40 5|50 0|51 90|0 ENDSEC|0 EOF");

    const QString fileName = check.files.write(QStringLiteral("plan.dxf"), lines, written.constData());
    const FileReport report = checkFile(fileName, check.options, false);

    QCOMPARE(described(report.findings), QStringLiteral("curves 1 @ строка 26, слой «Дуги», ARC"));
}

void tst_PrepareFindingsNames::textsDoNotMatterWithoutSearch()
{
    CheckFixture check;
    check.options.searchPoints = false;
    check.options.searchObjects = false;

    const FileReport report = check.checkDxf(drawing(lineEntity + "|0 MTEXT|8 Н|10 0|20 0|40 1|1 ЗУ1"));

    QCOMPARE(described(report.findings), QString());
}

QTEST_GUILESS_MAIN(tst_PrepareFindingsNames)
#include "tst_prepare_findings_names.moc"
