#include "dxftesting.h"

#include <QDir>

/// Pairs, header and sections of a drawing.
class tst_MapImportDxf : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fileWithoutHeaderIsRejected_data();
    void fileWithoutHeaderIsRejected();
    void rejectedPointFileEndsTheImport();
    void blanksAroundCodeAreIgnored_data();
    void blanksAroundCodeAreIgnored();
    void pairsAreRead_data();
    void pairsAreRead() { compareObjects(); }
    void onlyEntitiesSectionIsRead_data();
    void onlyEntitiesSectionIsRead() { compareObjects(); }
    void pairAfterTextIsPushedBack_data();
    void pairAfterTextIsPushedBack();
    void pushedBackPairOutlivesItsPass_data();
    void pushedBackPairOutlivesItsPass();

private:
    static void compareObjects();
};

namespace {

QString formatError(const QString &fileName)
{
    return QStringLiteral("Ошибка. Файл %1 не соответствует формату DXF").arg(QDir::toNativeSeparators(fileName));
}

} // namespace

void tst_MapImportDxf::fileWithoutHeaderIsRejected_data()
{
    QTest::addColumn<QByteArray>("begin");

    QTest::newRow("comment first") << QByteArray("999 comment|0 SECTION|2 HEADER");
    QTest::newRow("another first code") << QByteArray("1 SECTION|2 HEADER");
    QTest::newRow("another first value") << QByteArray("0 section|2 HEADER");
    QTest::newRow("blank line after the first pair") << QByteArray("0 SECTION||2 HEADER");
    QTest::newRow("another second code") << QByteArray("0 SECTION|3 HEADER");
    QTest::newRow("another second value") << QByteArray("0 SECTION|2 TABLES");
}

void tst_MapImportDxf::fileWithoutHeaderIsRejected()
{
    QFETCH(QByteArray, begin);
    DxfFixture dxf;

    QVERIFY(!dxf.run(pairs(begin + "|0 ENDSEC|0 SECTION|2 ENTITIES|" + lineEntity)));

    QCOMPARE(dxf.messages(), QStringList{formatError(dxf.import.objectFileName)});
    QCOMPARE(dxf.objects(), QString());
}

void tst_MapImportDxf::rejectedPointFileEndsTheImport()
{
    DxfFixture dxf;
    dxf.import.searchPointDefs = true;
    dxf.setPointFile(QStringList());

    QVERIFY(!dxf.run(drawing(lineEntity)));

    QCOMPARE(dxf.messages(), QStringList{formatError(dxf.import.pointFileName)});
    QCOMPARE(dxf.objects(), QString());
}

void tst_MapImportDxf::blanksAroundCodeAreIgnored_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("code");
    QTest::addColumn<bool>("isCode");

    const auto row = [](const QString &line, const char *code, bool isCode) {
        QTest::addRow("«%s» for %s", qPrintable(line), code) << line << QString::fromLatin1(code) << isCode;
    };
    for (const char *form : {"%1", " %1", "   %1", "\t%1", "\u00A0%1", "%1 \t"}) {
        row(QString::fromUtf8(form).arg(0), "0", true);
        row(QString::fromUtf8(form).arg(10), "10", true);
    }
    for (const char *line : {"00", "0 0", "x0", ":0", ":", "/"})
        row(QString::fromUtf8(line), "0", false);
    for (const char *line : {"010", "100", "10.0", "+10", "1 0", "1:", "0:", ":0", "/0", "-0", ";0"})
        row(QString::fromUtf8(line), "10", false);
}

// A LINE begins with code 0 and its X has code 10, so without them there is no object.
void tst_MapImportDxf::blanksAroundCodeAreIgnored()
{
    QFETCH(QString, line);
    QFETCH(QString, code);
    QFETCH(bool, isCode);
    QStringList lines = drawing(lineEntity);
    lines[lines.indexOf(code, 10)] = line;
    DxfFixture dxf;

    const bool ok = dxf.run(lines);

    QCOMPARE(dxf.objects(), isCode ? QString::fromUtf8(lineObject) : QString());
    QCOMPARE(ok, isCode || code == QStringLiteral("0"));
}

void tst_MapImportDxf::compareObjects()
{
    DxfFixture dxf;

    compareRun(dxf, &DxfFixture::objects);
}

void tst_MapImportDxf::pairsAreRead_data()
{
    addRunColumns();
    QStringList padded;
    for (const QString &line : drawing(lineEntity))
        padded.append(QStringLiteral("  %1\t ").arg(line));

    addRun("blanks and tabs around codes and values", padded, lineObject);
    addRun("empty value", drawing("0 LINE|8 |10 0|20 0|11 10|21 0"), lineObject);
    addRun("header only", pairs("0 SECTION|2 HEADER"), "");
    addRun("end of the file after a section's name", pairs("0 SECTION|2 HEADER|0 SECTION|2 ENTITIES"), "");
    addRun("end of the file in place of a section's name", pairs("0 SECTION|2 HEADER|0 SECTION"), "", 7);
    addRun("end of the file after an entity", openDrawing(lineEntity), lineObject);
    addRun("end of the file after a code", openDrawing(lineEntity + "|0"), lineObject);
    addRun("blank line in place of a section's name", pairs("0 SECTION|2 HEADER|0 SECTION||2 ENTITIES"), "", 7);
    addRun("blank line between entities", drawing(lineEntity + "|\t|" + lineEntity), lineObject, 21);
    addRun("blank line after the closing pair", drawing(lineEntity) + pairs(""), lineObject, 25);
}

void tst_MapImportDxf::onlyEntitiesSectionIsRead_data()
{
    addRunColumns();
    const QByteArray otherLine = "0 LINE|10 10|20 0|11 20|21 0";
    const auto row = [](const char *name, const QByteArray &sections, const char *objects) {
        addRun(name, pairs("0 SECTION|2 HEADER|" + sections), objects);
    };

    row("header", lineEntity, "");
    row("blocks, then entities", "0 SECTION|2 BLOCKS|" + otherLine + "|0 ENDSEC|0 SECTION|2 ENTITIES|" + lineEntity,
        lineObject);
    row("next section without ENDSEC before it",
        "0 SECTION|2 ENTITIES|" + lineEntity + "|0 SECTION|2 OBJECTS|" + otherLine, lineObject);
    row("ENDSEC and EOF do not end the section", "0 SECTION|2 ENTITIES|" + lineEntity + "|0 ENDSEC|0 EOF|" + otherLine,
        "ЗУ1 [н1 0 0, н2 10 0]; ЗУ2 [н2 10 0, н3 20 0]");
    row("section name under another code", "0 SECTION|999  ENTITIES |" + lineEntity, lineObject);
    row("section named SECTION", "0 SECTION|0 SECTION|2 ENTITIES|" + lineEntity, "");
    row("section name in lower case", "0 SECTION|2 entities|" + lineEntity, "");
    row("SECTION under another code", "0 SECTION|2 ENTITIES|8 SECTION|2 OBJECTS|" + lineEntity, lineObject);
    row("entity under another code", "0 SECTION|2 ENTITIES|2 LINE|10 0|20 0|11 10|21 0", "");
    row("unknown entity", "0 SECTION|2 ENTITIES|0 FOO|90 abc|10 abc|20 |" + lineEntity, lineObject);
}

void tst_MapImportDxf::pairAfterTextIsPushedBack_data()
{
    addRunColumns();

    addRun("text, then point", drawing("0 TEXT|10 0|20 0|1 а|0 TEXT|10 9|20 9|1 б|0 POINT|10 8|20 8"), "б 8 8");
    addRun("lines are counted once", openDrawing("0 TEXT|10 0|20 0|1 а|0 POINT|10 5|20 5|"), "- 5 5", 25);
}

void tst_MapImportDxf::pairAfterTextIsPushedBack()
{
    DxfFixture dxf;
    dxf.import.searchPointDefs = true;

    compareRun(dxf, &DxfFixture::points);
}

void tst_MapImportDxf::pushedBackPairOutlivesItsPass_data()
{
    QTest::addColumn<QByteArray>("lastPair");
    QTest::addColumn<QByteArray>("objectPairs");
    QTest::addColumn<QString>("message");
    QTest::addColumn<bool>("isRead");

    QTest::newRow("in place of the header")
        << QByteArray("|0 EOF") << "0 SECTION|2 HEADER|0 SECTION|2 ENTITIES|" + lineEntity << formatError(QString())
        << false;
    QTest::newRow("as the first pair of the header")
        << QByteArray("|0 SECTION") << "2 HEADER|0 SECTION|2 ENTITIES|" + lineEntity << QString() << true;
    QTest::newRow("not counted in the next file")
        << QByteArray("|0 SECTION") << "2 HEADER||0 SECTION|2 ENTITIES|" + lineEntity << readError(3) << false;
    QTest::newRow("no pair pushed back at the end of the file")
        << QByteArray() << "0 SECTION|2 HEADER|0 SECTION|2 ENTITIES|" + lineEntity << QString() << true;
}

void tst_MapImportDxf::pushedBackPairOutlivesItsPass()
{
    QFETCH(QByteArray, lastPair);
    QFETCH(QByteArray, objectPairs);
    QFETCH(QString, message);
    QFETCH(bool, isRead);
    DxfFixture dxf;
    dxf.import.searchPointDefs = true;
    dxf.setPointFile(openDrawing("0 TEXT|10 0|20 0|1 а" + lastPair));

    QCOMPARE(dxf.run(pairs(objectPairs)), isRead);

    QStringList messages = dxf.messages();
    messages.replaceInStrings(QDir::toNativeSeparators(dxf.import.objectFileName), QString());
    QCOMPARE(messages.join(QString()), message);
    QCOMPARE(dxf.objects(), isRead ? QString::fromUtf8(lineObject) : QString());
}

QTEST_GUILESS_MAIN(tst_MapImportDxf)
#include "tst_mapimport_dxf.moc"
