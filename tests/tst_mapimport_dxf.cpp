#include "dxftesting.h"

#include <QDir>
#include <QTest>

/// Pairs and the header.
class tst_MapImport_Dxf : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void drawingWithHeaderIsRead_data();
    void drawingWithHeaderIsRead();
    void fileWithoutHeaderIsToldOnce_data();
    void fileWithoutHeaderIsToldOnce();
    void rejectedPointFileEndsTheImport();
    void rejectedObjectFileIsToldByItsName();
    void codesAndKeywordsAreComparedAsTheyStand_data();
    void codesAndKeywordsAreComparedAsTheyStand();
    void codeMayStandAnywhereInItsLine_data();
    void codeMayStandAnywhereInItsLine();
    void blankCodeLineIsToldOnce_data();
    void blankCodeLineIsToldOnce();
    void fileMayEndAfterAnyPair_data();
    void fileMayEndAfterAnyPair();
    void pairAfterTextIsReadAgain_data();
    void pairAfterTextIsReadAgain();
    void pairAfterTextOutlivesItsPass_data();
    void pairAfterTextOutlivesItsPass();
};

namespace {

QString formatError(const QString &fileName)
{
    return QStringLiteral("Ошибка. Файл %1 не соответствует формату DXF").arg(QDir::toNativeSeparators(fileName));
}

} // namespace

void tst_MapImport_Dxf::drawingWithHeaderIsRead_data()
{
    QTest::addColumn<QStringList>("lines");

    QStringList padded;
    for (const QString &line : drawing(lineEntity))
        padded.append(QStringLiteral("  %1\t ").arg(line));

    QTest::newRow("plain") << drawing(lineEntity);
    QTest::newRow("blanks and tabs around codes and values") << padded;
    QTest::newRow("empty value of a group") << drawing("0 LINE|8 |10 0|20 0|11 10|21 0");
    QTest::newRow("groups in the header")
        << pairs("0 SECTION|2 HEADER|9 $EXTMIN|10 0|20 0|0 ENDSEC|0 SECTION|2 ENTITIES|" + lineEntity);
    QTest::newRow("comment after the header")
        << pairs("0 SECTION|2 HEADER|999 comment|0 SECTION|2 ENTITIES|" + lineEntity);
}

void tst_MapImport_Dxf::drawingWithHeaderIsRead()
{
    QFETCH(QStringList, lines);
    DxfRun dxf;

    QVERIFY(dxf.run(lines));

    QCOMPARE(dxf.messages(), QStringList());
    QCOMPARE(dxf.objects(), QStringList{lineObject});
}

void tst_MapImport_Dxf::fileWithoutHeaderIsToldOnce_data()
{
    QTest::addColumn<QStringList>("lines");
    const QStringList rest = pairs("0 ENDSEC|0 SECTION|2 ENTITIES|" + lineEntity);

    QTest::newRow("empty file") << QStringList();
    QTest::newRow("one line") << pairs("0");
    QTest::newRow("nothing after the first pair") << pairs("0 SECTION");
    QTest::newRow("blank line first") << pairs("|0 SECTION|2 HEADER") + rest;
    QTest::newRow("blank line between the pairs") << pairs("0 SECTION||2 HEADER") + rest;
    QTest::newRow("comment first") << pairs("999 comment|0 SECTION|2 HEADER") + rest;
    QTest::newRow("comment between the pairs") << pairs("0 SECTION|999 comment|2 HEADER") + rest;
    QTest::newRow("another section first") << pairs("0 SECTION|2 TABLES|0 ENDSEC|0 SECTION|2 HEADER") + rest;
    QTest::newRow("only the section of entities") << pairs("0 SECTION|2 ENTITIES|" + lineEntity);
    QTest::newRow("lower-case section") << pairs("0 section|2 HEADER") + rest;
    QTest::newRow("lower-case header") << pairs("0 SECTION|2 header") + rest;
    QTest::newRow("first code with a zero more") << pairs("00 SECTION|2 HEADER") + rest;
    QTest::newRow("second code with a zero more") << pairs("0 SECTION|02 HEADER") + rest;
    QTest::newRow("another first code") << pairs("1 SECTION|2 HEADER") + rest;
    QTest::newRow("another second code") << pairs("0 SECTION|3 HEADER") + rest;
}

void tst_MapImport_Dxf::fileWithoutHeaderIsToldOnce()
{
    QFETCH(QStringList, lines);
    DxfRun dxf;

    QVERIFY(!dxf.run(lines));

    QCOMPARE(dxf.messages(), QStringList{formatError(dxf.import.objectFileName)});
    QCOMPARE(dxf.objects(), QStringList());
}

void tst_MapImport_Dxf::rejectedPointFileEndsTheImport()
{
    DxfRun dxf;
    dxf.import.searchPointDefs = true;
    dxf.setPointFile(pairs("0 SECTION|2 ENTITIES|0 POINT|10 1|20 2"));

    QVERIFY(!dxf.run(drawing(lineEntity)));

    QCOMPARE(dxf.messages(), QStringList{formatError(dxf.import.pointFileName)});
    QCOMPARE(dxf.points(), QStringList());
    QCOMPARE(dxf.objects(), QStringList());
}

void tst_MapImport_Dxf::rejectedObjectFileIsToldByItsName()
{
    DxfRun dxf;
    dxf.import.searchPointDefs = true;
    dxf.import.searchObjectDefs = true;
    dxf.setPointFile(drawing("0 POINT|10 1|20 2"));

    QVERIFY(!dxf.run(pairs("0 SECTION|2 ENTITIES|" + lineEntity)));

    QCOMPARE(dxf.messages(), QStringList{formatError(dxf.import.objectFileName)});
    QCOMPARE(dxf.points(), QStringList{QStringLiteral("(1 2)")});
    QCOMPARE(dxf.objects(), QStringList());
}

void tst_MapImport_Dxf::codesAndKeywordsAreComparedAsTheyStand_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QStringList>("objects");
    const QStringList header = pairs("0 SECTION|2 HEADER|0 ENDSEC");

    QTest::newRow("010 is not 10") << drawing("0 LINE|010 7|10 0|010 8|20 0|11 10|21 0") << QStringList{lineObject};
    QTest::newRow("10.0 is not 10") << drawing("0 LINE|10 0|10.0 8|20 0|11 10|21 0") << QStringList{lineObject};
    QTest::newRow("+20 is not 20") << drawing("0 LINE|10 0|20 0|+20 8|11 10|21 0") << QStringList{lineObject};
    QTest::newRow("00 begins no entity") << drawing("00 LINE|10 0|20 0|11 10|21 0") << QStringList();
    for (const char *const code : {"7 0", "x 0", " x0", " 7 ", "0 0", "00 "}) {
        QStringList lines = drawing(lineEntity);
        lines[10] = QLatin1String(code);
        QTest::addRow("\"%s\" begins no entity", code) << lines << QStringList();
    }
    QTest::newRow("line is no LINE") << drawing("0 line|10 0|20 0|11 10|21 0") << QStringList();
    QTest::newRow("LINE2 is no LINE") << drawing("0 LINE2|10 0|20 0|11 10|21 0") << QStringList();
    QTest::newRow("LINE as a name begins no entity") << drawing("2 LINE|10 0|20 0|11 10|21 0") << QStringList();
    QTest::newRow("section begins no section") << header + pairs("0 section|2 ENTITIES|" + lineEntity) << QStringList();
    QTest::newRow("section ends no section")
        << header + pairs("0 SECTION|2 ENTITIES|0 section|2 OBJECTS|" + lineEntity) << QStringList{lineObject};
    QTest::newRow("entities is another section")
        << header + pairs("0 SECTION|2 entities|" + lineEntity) << QStringList();
}

void tst_MapImport_Dxf::codesAndKeywordsAreComparedAsTheyStand()
{
    QFETCH(QStringList, lines);
    QFETCH(QStringList, objects);
    DxfRun dxf;

    QVERIFY(dxf.run(lines));

    QCOMPARE(dxf.messages(), QStringList());
    QCOMPARE(dxf.objects(), objects);
}

void tst_MapImport_Dxf::codeMayStandAnywhereInItsLine_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("code");
    QTest::addColumn<bool>("isCode");

    const auto row = [](const QString &line, const QString &code, bool isCode) {
        QTest::addRow("«%s» for %s", qPrintable(line), qPrintable(code)) << line << code << isCode;
    };
    for (const QString &form : {QStringLiteral("%1"), QStringLiteral(" %1"), QStringLiteral("  %1"),
                                QStringLiteral("   %1"), QStringLiteral(" \t%1"), QStringLiteral(" \u00A0%1"),
                                QStringLiteral("\t %1"), QStringLiteral(" %1 "), QStringLiteral("%1 ")}) {
        row(form.arg(0), QStringLiteral("0"), true);
        row(form.arg(10), QStringLiteral("10"), true);
    }
    for (const QString &line : {QStringLiteral(" 00"), QStringLiteral("000"), QStringLiteral(" 0 0"),
                                QStringLiteral(" :0"), QStringLiteral(":0"), QStringLiteral(" /0")})
        row(line, QStringLiteral("0"), false);
    for (const QString &line : {QStringLiteral(" 1:"), QStringLiteral("010"), QStringLiteral("100"),
                                QStringLiteral(" 1 0"), QStringLiteral(" 0:"), QStringLiteral("0:"),
                                QStringLiteral(" -0"), QStringLiteral("10 0"), QStringLiteral(" ;0")})
        row(line, QStringLiteral("10"), false);
}

// A group with an odd code is passed over, and so is what follows when it should begin the line.
void tst_MapImport_Dxf::codeMayStandAnywhereInItsLine()
{
    QFETCH(QString, line);
    QFETCH(QString, code);
    QFETCH(bool, isCode);
    QStringList lines = drawing(lineEntity);
    lines[lines.indexOf(code, 10)] = line;
    DxfRun dxf;

    const bool ok = dxf.run(lines);

    QCOMPARE(dxf.objects(), isCode ? QStringList{lineObject} : QStringList());
    QCOMPARE(ok, isCode || code == QStringLiteral("0"));
}

void tst_MapImport_Dxf::blankCodeLineIsToldOnce_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QStringList>("objects");
    QTest::addColumn<int>("line");
    const QStringList none;
    const QStringList one{lineObject};

    QTest::newRow("after the header's pairs") << pairs("0 SECTION|2 HEADER||0 ENDSEC") << none << 5;
    QTest::newRow("in a section that is not read") << pairs("0 SECTION|2 HEADER|9 $EXTMIN|10 0||20 0") << none << 9;
    QTest::newRow("in place of a section's name") << pairs("0 SECTION|2 HEADER|0 SECTION||2 ENTITIES") << none << 7;
    QTest::newRow("end of the file in place of a section's name") << pairs("0 SECTION|2 HEADER|0 SECTION") << none << 7;
    QTest::newRow("between entities") << drawing(lineEntity + "||" + lineEntity) << one << 21;
    QTest::newRow("tab only") << drawing(lineEntity + "|\t|" + lineEntity) << one << 21;
    QTest::newRow("inside an entity") << drawing("0 LINE|10 0||20 0|11 10|21 0") << none << 15;
    QTest::newRow("after the closing pair") << drawing(lineEntity) + pairs("") << one << 25;
    QTest::newRow("two after the closing pair") << drawing(lineEntity) + pairs("|") << one << 25;
}

void tst_MapImport_Dxf::blankCodeLineIsToldOnce()
{
    QFETCH(QStringList, lines);
    QFETCH(QStringList, objects);
    QFETCH(int, line);
    DxfRun dxf;

    QVERIFY(!dxf.run(lines));

    QCOMPARE(dxf.messages(), QStringList{readingError(line)});
    QCOMPARE(dxf.objects(), objects);
}

void tst_MapImport_Dxf::fileMayEndAfterAnyPair_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("objects");
    const QStringList none;
    const QStringList one{lineObject};
    const QString end = QStringLiteral("\n");

    QTest::newRow("closing pair with a line break") << drawing(lineEntity).join(end) + end << one;
    QTest::newRow("closing pair without a line break") << drawing(lineEntity).join(end) << one;
    QTest::newRow("line breaks of two characters")
        << drawing(lineEntity).join(QStringLiteral("\r\n")) + QStringLiteral("\r\n") << one;
    QTest::newRow("entity complete") << openDrawing(lineEntity).join(end) + end << one;
    QTest::newRow("entity complete, without a line break") << openDrawing(lineEntity).join(end) << one;
    QTest::newRow("code without a value") << openDrawing(lineEntity + "|0").join(end) << one;
    QTest::newRow("another group") << openDrawing(lineEntity + "|62 7").join(end) << one;
    QTest::newRow("header's pairs") << pairs("0 SECTION|2 HEADER").join(end) << none;
    QTest::newRow("section's name") << pairs("0 SECTION|2 HEADER|0 SECTION|2 ENTITIES").join(end) << none;
}

void tst_MapImport_Dxf::fileMayEndAfterAnyPair()
{
    QFETCH(QString, text);
    QFETCH(QStringList, objects);
    DxfRun dxf;
    dxf.import.objectFileName = dxf.files.writeBytes(QStringLiteral("objects.dxf"), text.toUtf8());

    QVERIFY(dxf.import.importMap());

    QCOMPARE(dxf.messages(), QStringList());
    QCOMPARE(dxf.objects(), objects);
}

void tst_MapImport_Dxf::pairAfterTextIsReadAgain_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QStringList>("points");
    QTest::addColumn<QStringList>("messages");
    const QStringList none;

    QTest::newRow("point") << drawing("0 TEXT|10 0|20 0|1 а|0 POINT|10 5|20 5") << QStringList{QStringLiteral("а(5 5)")}
                           << none;
    QTest::newRow("text") << drawing("0 TEXT|10 0|20 0|1 а|0 TEXT|10 9|20 9|1 б|0 POINT|10 8|20 8")
                          << QStringList{QStringLiteral("б(8 8)")} << none;
    QTest::newRow("section") << drawing("0 TEXT|10 0|20 0|1 а|0 SECTION|2 OBJECTS|0 POINT|10 5|20 5") << none << none;
    QTest::newRow("its lines are counted once")
        << openDrawing("0 TEXT|10 0|20 0|1 а|0 POINT|10 5|20 5|") << QStringList{QStringLiteral("(5 5)")}
        << QStringList{readingError(25)};
}

void tst_MapImport_Dxf::pairAfterTextIsReadAgain()
{
    QFETCH(QStringList, lines);
    QFETCH(QStringList, points);
    QFETCH(QStringList, messages);
    DxfRun dxf;
    dxf.import.searchPointDefs = true;

    QCOMPARE(dxf.run(lines), messages.isEmpty());

    QCOMPARE(dxf.messages(), messages);
    QCOMPARE(dxf.points(), points);
}

void tst_MapImport_Dxf::pairAfterTextOutlivesItsPass_data()
{
    QTest::addColumn<QStringList>("pointLines");
    QTest::addColumn<QStringList>("objectLines");
    QTest::addColumn<QStringList>("objects");
    QTest::addColumn<QString>("message");
    const QStringList none;
    const QStringList one{lineObject};
    const QString rejected = QStringLiteral("Ошибка. Файл %1 не соответствует формату DXF");
    const QStringList textThenSection = openDrawing("0 TEXT|10 0|20 0|1 а|0 SECTION");

    QTest::newRow("closing pair of the only file")
        << none << openDrawing(lineEntity + "|0 TEXT|10 0|20 0|1 а|0 EOF") << none << rejected;
    QTest::newRow("section at the end of the only file")
        << none << openDrawing(lineEntity + "|0 TEXT|10 0|20 0|1 а|0 SECTION") << none << rejected;
    QTest::newRow("closing pair of the file of points")
        << openDrawing("0 TEXT|10 0|20 0|1 а|0 EOF") << drawing(lineEntity) << none << rejected;
    QTest::newRow("section in front of another") << textThenSection << drawing(lineEntity) << none << rejected;
    QTest::newRow("section in front of the header's name")
        << textThenSection << pairs("2 HEADER|0 SECTION|2 ENTITIES|" + lineEntity) << one << QString();
    QTest::newRow("counted in its own file only")
        << textThenSection << pairs("2 HEADER||0 SECTION|2 ENTITIES|" + lineEntity) << none << readingError(3);
    QTest::newRow("not when another pair follows")
        << none << drawing(lineEntity + "|0 TEXT|10 0|20 0|1 а") << one << QString();
    QTest::newRow("not when none follows")
        << none << openDrawing(lineEntity + "|0 TEXT|10 0|20 0|1 а") << one << QString();
}

void tst_MapImport_Dxf::pairAfterTextOutlivesItsPass()
{
    QFETCH(QStringList, pointLines);
    QFETCH(QStringList, objectLines);
    QFETCH(QStringList, objects);
    QFETCH(QString, message);
    DxfRun dxf;
    dxf.import.searchPointDefs = true;
    if (!pointLines.isEmpty())
        dxf.setPointFile(pointLines);

    QCOMPARE(dxf.run(objectLines), message.isEmpty());

    message.replace(QStringLiteral("%1"), QDir::toNativeSeparators(dxf.import.objectFileName));
    QCOMPARE(dxf.messages(), message.isEmpty() ? QStringList() : QStringList{message});
    QCOMPARE(dxf.objects(), objects);
}

QTEST_GUILESS_MAIN(tst_MapImport_Dxf)
#include "tst_mapimport_dxf.moc"
