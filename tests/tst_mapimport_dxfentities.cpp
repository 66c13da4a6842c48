#include "dxftesting.h"

#include <QTest>

/// The readers of points and of LINE.
class tst_MapImport_DxfEntities : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pointIsRead_data();
    void pointIsRead();
    void pointReadsOnAsText_data();
    void pointReadsOnAsText();
    void badPointIsToldOnce_data();
    void badPointIsToldOnce();
    void lineIsRead_data();
    void lineIsRead();
    void badLineIsToldOnce_data();
    void badLineIsToldOnce();
};

void tst_MapImport_DxfEntities::pointIsRead_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QStringList>("points");
    const QStringList one{QStringLiteral("(1 2)")};
    const QStringList two{QStringLiteral("(1 2)"), QStringLiteral("(3 4)")};

    for (const char *entity : {"INSERT", "POINT", "CIRCLE", "ELLIPSE"})
        QTest::newRow(entity) << drawing(QByteArray("0 ") + entity + "|8 0|10 1|20 2|30 5") << one;
    for (const char *entity :
         {"ARC", "MTEXT", "SPLINE", "HATCH", "ATTRIB", "SOLID", "LINE", "VERTEX", "point", "POINTS"})
        QTest::newRow(entity) << drawing(QByteArray("0 ") + entity + "|10 1|20 2|11 3|21 4") << QStringList();

    QTest::newRow("y before x") << drawing("0 POINT|20 2|10 1") << one;
    QTest::newRow("end of the file after y") << openDrawing("0 POINT|10 1|20 2") << one;
    QTest::newRow("x repeated before y") << drawing("0 POINT|10 9|10 1|20 2") << one;
    QTest::newRow("x repeated after y stays behind") << drawing("0 POINT|10 1|20 2|10 9") << one;
    QTest::newRow("exponent and sign") << drawing("0 POINT|10 +10e-1|20 .2e1") << one;
    QTest::newRow("second point is not looked at") << drawing("0 ELLIPSE|11 abc|21 abc|10 1|20 2|40 abc") << one;
    QTest::newRow("two points, read in any order") << drawing("0 POINT|10 3|20 4|0 CIRCLE|10 1|20 2") << two;
    QTest::newRow("y of the next entity") << drawing("0 POINT|10 1|0 ARC|20 2") << one;
    QTest::newRow("x and y of the next point, which is used up")
        << drawing("0 POINT|10 9|0 POINT|10 1|20 2|0 POINT|10 3|20 4") << two;
    QTest::newRow("text that gives its place is used up") << drawing("0 POINT|0 TEXT|10 1|20 2|1 т") << one;
    QTest::newRow("a section that begins within is not noticed")
        << drawing("0 POINT|10 1|0 ENDSEC|0 SECTION|2 OBJECTS|20 2|0 POINT|10 3|20 4") << two;
}

void tst_MapImport_DxfEntities::pointIsRead()
{
    QFETCH(QStringList, lines);
    QFETCH(QStringList, points);
    DxfRun dxf;
    dxf.import.searchPointDefs = true;
    dxf.import.swapXY = true; // for vertices, not for points
    dxf.setPointFile(lines);

    QVERIFY(dxf.run(drawing("0 ARC")));

    QCOMPARE(dxf.messages(), QStringList());
    QCOMPARE(dxf.points(), points);
    QCOMPARE(dxf.import.pointStartNum, 1);
}

// The keyword TEXT in a value that breaks a point off begins a text.
void tst_MapImport_DxfEntities::pointReadsOnAsText_data()
{
    QTest::addColumn<QByteArray>("entity");

    QTest::newRow("in place of x") << QByteArray("0 POINT|10 TEXT|10 1|20 2|1 т");
    QTest::newRow("in place of y") << QByteArray("0 INSERT|10 9|20 TEXT|10 1|20 2|1 т");
    QTest::newRow("layer in front of a blank line") << QByteArray("0 CIRCLE|8 TEXT||10 1|20 2|1 т");
    QTest::newRow("layer between blanks in front of a blank line") << QByteArray("0 POINT|8  TEXT ||10 1|20 2|1 т");
    QTest::newRow("entity in front of a blank line") << QByteArray("0 ELLIPSE|0 TEXT||10 1|20 2|1 т");
}

void tst_MapImport_DxfEntities::pointReadsOnAsText()
{
    QFETCH(QByteArray, entity);
    DxfRun dxf;
    dxf.import.searchPointDefs = true;
    dxf.setPointFile(drawing(entity + "|0 POINT|10 1|20 2"));

    QVERIFY(dxf.run(drawing("0 ARC")));

    QCOMPARE(dxf.messages(), QStringList());
    QCOMPARE(dxf.points(), QStringList{QStringLiteral("т(1 2)")});
}

void tst_MapImport_DxfEntities::badPointIsToldOnce_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<int>("line");

    QTest::newRow("x is no number") << drawing("0 POINT|10 abc|20 2") << 14;
    QTest::newRow("x has a comma") << drawing("0 POINT|10 1,5|20 2") << 14;
    QTest::newRow("x is empty") << drawing("0 INSERT|10 |20 2") << 14;
    QTest::newRow("y is no number") << drawing("0 CIRCLE|10 1|20 2.5m") << 16;
    QTest::newRow("x repeated is no number") << drawing("0 POINT|10 1|10 abc|20 2") << 16;
    QTest::newRow("no y to the end") << drawing("0 POINT|10 1") << 18;
    QTest::newRow("end of the file after the keyword") << openDrawing("0 POINT") << 12;
    QTest::newRow("end of the file after x") << openDrawing("0 ELLIPSE|10 1") << 14;
    QTest::newRow("end of the file after a y that is no number") << openDrawing("0 POINT|10 1|20 abc") << 16;
    QTest::newRow("blank line before y") << drawing("0 POINT|10 1||20 2") << 15;
    QTest::newRow("blank line after y") << drawing("0 POINT|10 1|20 2||0 POINT|10 3|20 4") << 17;
    QTest::newRow("second point") << drawing("0 POINT|10 1|20 2|0 POINT|10 abc") << 20;
    QTest::newRow("reads on as an incomplete text") << drawing("0 POINT|10 TEXT|20 2|1 т") << 20;
    QTest::newRow("would read on as a text, but the file ends") << openDrawing("0 POINT|10 TEXT") << 14;
    QTest::newRow("lower-case text in place of x") << drawing("0 POINT|10 text|10 1|20 2|1 т") << 14;
}

void tst_MapImport_DxfEntities::badPointIsToldOnce()
{
    QFETCH(QStringList, lines);
    QFETCH(int, line);
    DxfRun dxf;
    dxf.import.searchPointDefs = true;
    dxf.setPointFile(lines.mid(0, 10) + pairs("0 POINT|10 7|20 8") + lines.mid(10));

    QVERIFY(!dxf.run(drawing(lineEntity)));

    QCOMPARE(dxf.messages(), QStringList{readingError(line + 6)});
    QCOMPARE(described(dxf.import.points.first()), QStringLiteral("(7 8)"));
    QCOMPARE(dxf.objects(), QStringList());
}

void tst_MapImport_DxfEntities::lineIsRead_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QStringList>("objects");
    const QStringList one{QStringLiteral("ЗУ1: н1(1 2) н2(3 4)")};
    const QStringList two{one.first(), QStringLiteral("ЗУ2: н2(3 4) н3(5 6)")};

    QTest::newRow("all groups") << drawing("0 LINE|8 0|10 1|20 2|30 9|11 3|21 4|31 9") << one;
    QTest::newRow("second point first") << drawing("0 LINE|11 3|21 4|10 1|20 2") << one;
    QTest::newRow("y before x") << drawing("0 LINE|21 4|20 2|11 3|10 1") << one;
    QTest::newRow("end of the file after the last coordinate") << openDrawing("0 LINE|10 1|20 2|11 3|21 4") << one;
    QTest::newRow("repeated before the last") << drawing("0 LINE|10 9|11 9|10 1|20 2|11 3|21 4") << one;
    QTest::newRow("repeated after the last stays behind") << drawing("0 LINE|10 1|20 2|11 3|21 4|10 9|21 abc") << one;
    QTest::newRow("other groups are no numbers") << drawing("0 LINE|8 abc|10 1|20 2|30 abc|11 3|21 4") << one;
    QTest::newRow("second line follows") << drawing("0 LINE|10 1|20 2|11 3|21 4|0 LINE|10 3|20 4|11 5|21 6") << two;
    QTest::newRow("last coordinate of the next entity") << drawing("0 LINE|10 1|20 2|11 3|0 ARC|21 4") << one;
    QTest::newRow("coordinates of the next line, which is used up")
        << drawing("0 LINE|10 9|20 9|11 9|0 LINE|10 1|20 2|11 3|21 4|0 LINE|10 3|20 4|11 5|21 6") << two;
    QTest::newRow("last coordinate of another section, which is not noticed")
        << drawing("0 LINE|10 1|20 2|11 3|0 ENDSEC|0 SECTION|2 OBJECTS|21 4|0 LINE|10 3|20 4|11 5|21 6") << two;
    QTest::newRow("no length") << drawing("0 LINE|10 1|20 2|11 1|21 2")
                               << QStringList{QStringLiteral("ЗУ1: н1(1 2) н1(1 2)")};
}

void tst_MapImport_DxfEntities::lineIsRead()
{
    QFETCH(QStringList, lines);
    QFETCH(QStringList, objects);
    DxfRun dxf;

    QVERIFY(dxf.run(lines));

    QCOMPARE(dxf.messages(), QStringList());
    QCOMPARE(dxf.objects(), objects);
}

void tst_MapImport_DxfEntities::badLineIsToldOnce_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<int>("line");

    QTest::newRow("x is no number") << drawing("0 LINE|10 abc|20 2|11 3|21 4") << 14;
    QTest::newRow("y has a comma") << drawing("0 LINE|10 1|20 1,5|11 3|21 4") << 16;
    QTest::newRow("second x is empty") << drawing("0 LINE|10 1|20 2|11 |21 4") << 18;
    QTest::newRow("second y is no number") << drawing("0 LINE|10 1|20 2|11 3|21 4 5") << 20;
    QTest::newRow("no second y to the end") << drawing("0 LINE|10 1|20 2|11 3") << 22;
    QTest::newRow("end of the file after the keyword") << openDrawing("0 LINE") << 12;
    QTest::newRow("end of the file after x") << openDrawing("0 LINE|10 1") << 14;
    QTest::newRow("end of the file before the second y") << openDrawing("0 LINE|10 1|20 2|11 3") << 18;
    QTest::newRow("end of the file after a second y that is no number")
        << openDrawing("0 LINE|10 1|20 2|11 3|21 abc") << 20;
    QTest::newRow("blank line before the second y") << drawing("0 LINE|10 1|20 2|11 3||21 4") << 19;
    QTest::newRow("TEXT in place of x") << drawing("0 LINE|10 TEXT|10 1|20 2|1 т") << 14;
}

void tst_MapImport_DxfEntities::badLineIsToldOnce()
{
    QFETCH(QStringList, lines);
    QFETCH(int, line);
    DxfRun dxf;

    // A good line comes first; it takes ten lines of the file.
    QVERIFY(!dxf.run(lines.mid(0, 10) + pairs(lineEntity) + lines.mid(10)));

    QCOMPARE(dxf.messages(), QStringList{readingError(line + 10)});
    QCOMPARE(dxf.objects(), QStringList{lineObject});
    QCOMPARE(dxf.import.pointStartNum, 3);
    QCOMPARE(dxf.import.objectStartNum, 2);
}

QTEST_GUILESS_MAIN(tst_MapImport_DxfEntities)
#include "tst_mapimport_dxfentities.moc"
