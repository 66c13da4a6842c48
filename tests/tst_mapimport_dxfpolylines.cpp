#include "dxftesting.h"

#include <QTest>

/// The readers of POLYLINE and LWPOLYLINE.
class tst_MapImport_DxfPolylines : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void polylineIsRead_data();
    void polylineIsRead();
    void polylineIsClosed_data();
    void polylineIsClosed();
    void badPolylineIsToldOnce_data();
    void badPolylineIsToldOnce();
    void lwpolylineIsRead_data();
    void lwpolylineIsRead();
    void lwpolylineIsClosed_data();
    void lwpolylineIsClosed();
    void badLwpolylineIsToldOnce_data();
    void badLwpolylineIsToldOnce();
    void ringEndsInItsFirstVertex_data();
    void ringEndsInItsFirstVertex();
    void closingVertexIsCopiedAsStored();
    void failedPolylineKeepsItsNumbers_data();
    void failedPolylineKeepsItsNumbers();

private:
    void checkReadAndFollowed();
    void checkToldOnce();
    static void addFailureColumns();
};

// A line follows the entity: it is read, and it takes the next number, whether the entity was closed or not.
void tst_MapImport_DxfPolylines::checkReadAndFollowed()
{
    QFETCH(QByteArray, entity);
    QFETCH(QString, object);
    QFETCH(int, next);
    DxfRun dxf;

    QVERIFY(dxf.run(drawing(entity + "|0 LINE|10 1|20 2|11 90|21 90")));

    QCOMPARE(dxf.messages(), QStringList());
    const QString line = QStringLiteral("ЗУ2: н1(1 2) н%1(90 90)").arg(next);
    QCOMPARE(dxf.objects(), (QStringList{object, line}));
}

void tst_MapImport_DxfPolylines::addFailureColumns()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QString>("object");
    QTest::addColumn<int>("line");
}

void tst_MapImport_DxfPolylines::checkToldOnce()
{
    QFETCH(QStringList, lines);
    QFETCH(QString, object);
    QFETCH(int, line);
    DxfRun dxf;

    QVERIFY(!dxf.run(lines));

    QCOMPARE(dxf.messages(), QStringList{readingError(line)});
    QCOMPARE(dxf.objects(), QStringList{object});
    QCOMPARE(dxf.import.objectStartNum, 1);
}

void tst_MapImport_DxfPolylines::polylineIsRead_data()
{
    QTest::addColumn<QByteArray>("entity");
    QTest::addColumn<QString>("object");
    QTest::addColumn<int>("next");
    const QString two = QStringLiteral("ЗУ1: н1(1 2) н2(3 4)");
    const QString three = QStringLiteral("ЗУ1: н1(1 2) н2(3 4) н3(5 6)");

    QTest::newRow("two vertices") << QByteArray("0 POLYLINE|0 VERTEX|10 1|20 2|0 VERTEX|10 3|20 4|0 SEQEND") << two
                                  << 3;
    QTest::newRow("all groups") << QByteArray("0 POLYLINE|8 0|66 1|10 0|20 0|30 0|40 1|0 VERTEX|8 0|10 1|20 2|30 0|42 1"
                                              "|0 VERTEX|8 0|10 3|20 4|30 0|42 1|0 SEQEND|8 0")
                                << two << 3;
    QTest::newRow("its own point is not looked at")
        << QByteArray("0 POLYLINE|10 abc|20 abc|0 VERTEX|10 1|20 2|0 VERTEX|10 3|20 4|0 SEQEND") << two << 3;
    QTest::newRow("y before x") << QByteArray("0 POLYLINE|0 VERTEX|20 2|10 1|0 VERTEX|20 4|10 3|0 SEQEND") << two << 3;
    QTest::newRow("x repeated before y") << QByteArray(
                                                "0 POLYLINE|0 VERTEX|10 9|10 1|20 2|0 VERTEX|10 3|20 4|10 abc|0 SEQEND")
                                         << two << 3;
    QTest::newRow("vertex without y takes the next vertex")
        << QByteArray("0 POLYLINE|0 VERTEX|10 9|0 VERTEX|10 1|20 2|0 VERTEX|10 3|20 4|0 SEQEND") << two << 3;
    QTest::newRow("vertex without y passes over the end of the polyline")
        << QByteArray("0 POLYLINE|0 VERTEX|10 1|20 2|0 VERTEX|10 3|0 SEQEND|0 POINT|20 4|0 VERTEX|10 5|20 6|0 SEQEND")
        << three << 4;
    QTest::newRow("00 does not break it off")
        << QByteArray("0 POLYLINE|00 LINE|0 VERTEX|10 1|20 2|00 LINE|0 VERTEX|10 3|20 4|0 SEQEND") << two << 3;
    QTest::newRow("vertices at one place")
        << QByteArray("0 POLYLINE|70 1|0 VERTEX|10 1|20 2|0 VERTEX|10 1|20 2|0 SEQEND")
        << QStringLiteral("ЗУ1: н1(1 2) н1(1 2)") << 2;
}

void tst_MapImport_DxfPolylines::polylineIsRead()
{
    checkReadAndFollowed();
}

void tst_MapImport_DxfPolylines::polylineIsClosed_data()
{
    QTest::addColumn<QByteArray>("entity");
    QTest::addColumn<QString>("object");
    QTest::addColumn<int>("next");
    const QByteArray vertices = "|0 VERTEX|10 1|20 2|0 VERTEX|10 9|20 2|0 VERTEX|10 9|20 8|0 VERTEX|10 1|20 8|0 SEQEND";
    const QString open = QStringLiteral("ЗУ1: н1(1 2) н2(9 2) н3(9 8) н4(1 8)");
    const QString closed = open + QStringLiteral(" н1(1 2)");
    const auto row = [](const char *name, const QByteArray &entity, const QString &object) {
        QTest::newRow(name) << entity << object << 5;
    };

    row("no flag", "0 POLYLINE" + vertices, open);
    row("flag 1", "0 POLYLINE|70 1" + vertices, closed);
    row("blanks around the flag", "0 POLYLINE|70  1 " + vertices, closed);
    row("flag 0", "0 POLYLINE|70 0" + vertices, open);
    for (const char *flag : {"9", "129", "01", "+1", "1.0", "-1", "11"})
        row(flag, QByteArray("0 POLYLINE|70 ") + flag + vertices, open);
    row("flag 1 after another", "0 POLYLINE|70 9|70 1" + vertices, closed);
    row("flag 1 before another", "0 POLYLINE|70 1|70 0" + vertices, closed);
    row("070 is no flag", "0 POLYLINE|070 1" + vertices, open);
    row("71 is no flag", "0 POLYLINE|71 1" + vertices, open);
    const QByteArray rest = vertices.mid(vertices.indexOf("|0 VERTEX", 1));
    row("vertex with flag 1 after its coordinates", "0 POLYLINE|70 0|0 VERTEX|10 1|20 2|70 1" + rest, closed);
    row("vertex with flag 1 between its coordinates", "0 POLYLINE|0 VERTEX|10 1|70 1|20 2" + rest, open);
    row("vertex with flag 1 before its coordinates", "0 POLYLINE|0 VERTEX|70 1|10 1|20 2" + rest, open);
    row("vertex with flag 32", "0 POLYLINE|70 1|0 VERTEX|10 1|20 2|70 32" + rest, closed);
    const QByteArray unended = vertices.left(vertices.lastIndexOf('|'));
    row("last vertex with flag 1", "0 POLYLINE" + unended + "|70 1|0 SEQEND", closed);
    row("flag 1 after the end", "0 POLYLINE" + vertices + "|70 1", open);
}

void tst_MapImport_DxfPolylines::polylineIsClosed()
{
    checkReadAndFollowed();
}

void tst_MapImport_DxfPolylines::badPolylineIsToldOnce_data()
{
    addFailureColumns();
    const QString none = QStringLiteral(":");
    const QString one = QStringLiteral(": н1(1 2)");
    const QString two = QStringLiteral(": н1(1 2) н2(3 4)");
    const QByteArray vertex = "0 POLYLINE|0 VERTEX|10 1|20 2|";
    const QByteArray vertices = vertex + "0 VERTEX|10 3|20 4|";

    QTest::newRow("no vertex") << drawing("0 POLYLINE|70 1|0 SEQEND") << none << 16;
    QTest::newRow("one vertex") << drawing(vertex + "0 SEQEND") << one << 20;
    QTest::newRow("one vertex, closed") << drawing(vertex + "70 1|0 SEQEND") << one << 22;
    QTest::newRow("broken off by a line") << drawing(vertices + lineEntity) << two << 26;
    QTest::newRow("broken off by a polyline") << drawing(vertices + "0 POLYLINE|0 SEQEND") << two << 26;
    QTest::newRow("broken off before a vertex") << drawing("0 POLYLINE|" + lineEntity) << none << 14;
    QTest::newRow("broken off by the section's end") << drawing("0 POLYLINE|70 1") << none << 16;
    QTest::newRow("lower-case vertex") << drawing(vertex + "0 vertex|10 3|20 4|0 SEQEND") << one << 20;
    QTest::newRow("lower-case end") << drawing(vertices + "0 seqend") << two << 26;
    QTest::newRow("x is no number") << drawing("0 POLYLINE|0 VERTEX|10 abc|20 2") << none << 16;
    QTest::newRow("x has a comma") << drawing(vertex + "0 VERTEX|10 1,5|20 2") << one << 22;
    QTest::newRow("y is no number") << drawing(vertex + "0 VERTEX|10 3|20 ") << one << 24;
    QTest::newRow("blank line before the vertices") << drawing("0 POLYLINE|70 1||0 VERTEX|10 1|20 2") << none << 15;
    QTest::newRow("blank line in a vertex") << drawing(vertex + "0 VERTEX|10 3||20 4|0 SEQEND") << one << 23;
    QTest::newRow("blank line after a vertex") << drawing(vertices + "|0 SEQEND") << two << 25;
    QTest::newRow("end of the file after the keyword") << openDrawing("0 POLYLINE") << none << 12;
    QTest::newRow("end of the file after another group") << openDrawing("0 POLYLINE|8 0") << none << 14;
    QTest::newRow("end of the file after the flag") << openDrawing("0 POLYLINE|70 1") << none << 14;
    QTest::newRow("end of the file after a vertex's keyword") << openDrawing(vertex + "0 VERTEX") << one << 20;
    QTest::newRow("end of the file in a vertex") << openDrawing(vertex + "0 VERTEX|10 3") << one << 22;
    QTest::newRow("end of the file after a vertex")
        << openDrawing("0 POLYLINE|0 VERTEX|10 1|20 2|0 VERTEX|10 3|20 4") << two << 24;
    QTest::newRow("end of the file after a vertex's flag") << openDrawing(vertices + "70 1") << two << 26;
}

void tst_MapImport_DxfPolylines::badPolylineIsToldOnce()
{
    checkToldOnce();
}

void tst_MapImport_DxfPolylines::lwpolylineIsRead_data()
{
    QTest::addColumn<QByteArray>("entity");
    QTest::addColumn<QString>("object");
    QTest::addColumn<int>("next");
    const QString two = QStringLiteral("ЗУ1: н1(1 2) н2(3 4)");
    const QString three = QStringLiteral("ЗУ1: н1(1 2) н2(3 4) н3(5 6)");

    QTest::newRow("two vertices") << QByteArray("0 LWPOLYLINE|90 2|10 1|20 2|10 3|20 4") << two << 3;
    QTest::newRow("all groups")
        << QByteArray("0 LWPOLYLINE|8 0|90 2|70 0|43 1|38 9|10 1|20 2|40 1|41 1|42 1|10 3|20 4|42 1|210 0") << two << 3;
    QTest::newRow("y before x") << QByteArray("0 LWPOLYLINE|90 2|20 2|10 1|20 4|10 3") << two << 3;
    QTest::newRow("x repeated before y") << QByteArray("0 LWPOLYLINE|90 2|10 9|10 1|20 2|10 3|20 4") << two << 3;
    QTest::newRow("vertices beyond the number stay behind")
        << QByteArray("0 LWPOLYLINE|90 2|10 1|20 2|10 3|20 4|10 5|20 6|10 abc") << two << 3;
    QTest::newRow("00 does not break it off")
        << QByteArray("0 LWPOLYLINE|90 2|00 LINE|10 1|20 2|00 LINE|10 3|20 4") << two << 3;
    QTest::newRow("number between the first x and y")
        << QByteArray("0 LWPOLYLINE|10 1|90 2|20 2|10 3|20 4") << two << 3;
    QTest::newRow("number repeated before the first vertex")
        << QByteArray("0 LWPOLYLINE|90 1|90 2|10 1|20 2|10 3|20 4") << two << 3;
    QTest::newRow("number cut to 1 after the first vertex")
        << QByteArray("0 LWPOLYLINE|90 9|10 1|20 2|90 1|10 3|20 4|10 5|20 6") << two << 3;
    QTest::newRow("number raised after the first vertex")
        << QByteArray("0 LWPOLYLINE|90 2|10 1|20 2|90 2|10 3|20 4|10 5|20 6") << three << 4;
    QTest::newRow("number back from 0 in time")
        << QByteArray("0 LWPOLYLINE|90 2|10 1|20 2|90 0|10 3|20 4|90 1|10 5|20 6") << three << 4;
}

void tst_MapImport_DxfPolylines::lwpolylineIsRead()
{
    checkReadAndFollowed();
}

void tst_MapImport_DxfPolylines::lwpolylineIsClosed_data()
{
    QTest::addColumn<QByteArray>("entity");
    QTest::addColumn<QString>("object");
    QTest::addColumn<int>("next");
    const QString open = QStringLiteral("ЗУ1: н1(1 2) н2(9 2) н3(9 8)");
    const QString closed = open + QStringLiteral(" н1(1 2)");
    const auto row = [](const char *name, const QByteArray &entity, const QString &object) {
        QTest::newRow(name) << entity << object << 4;
    };

    row("no flag", "0 LWPOLYLINE|90 3|10 1|20 2|10 9|20 2|10 9|20 8", open);
    for (const char *flag : {"1", "129", "3", "-1", "01"})
        row(flag, QByteArray("0 LWPOLYLINE|90 3|70 ") + flag + "|10 1|20 2|10 9|20 2|10 9|20 8", closed);
    for (const char *flag : {"0", "128", "2", "abc", "1.0", "99999999999"})
        row(flag, QByteArray("0 LWPOLYLINE|90 3|70 ") + flag + "|10 1|20 2|10 9|20 2|10 9|20 8", open);
    row("last flag is 1", "0 LWPOLYLINE|90 3|70 0|70 1|10 1|20 2|10 9|20 2|10 9|20 8", closed);
    row("last flag is 0", "0 LWPOLYLINE|90 3|70 1|70 0|10 1|20 2|10 9|20 2|10 9|20 8", open);
    row("last flag is no number", "0 LWPOLYLINE|90 3|70 1|70 abc|10 1|20 2|10 9|20 2|10 9|20 8", open);
    row("flag before the number", "0 LWPOLYLINE|70 1|90 3|10 1|20 2|10 9|20 2|10 9|20 8", closed);
    row("flag between vertices", "0 LWPOLYLINE|90 3|10 1|20 2|70 1|10 9|20 2|10 9|20 8", closed);
    row("flag in the last vertex", "0 LWPOLYLINE|90 3|70 1|10 1|20 2|10 9|20 2|10 9|70 0|20 8", open);
    row("flag after the last vertex", "0 LWPOLYLINE|90 3|10 1|20 2|10 9|20 2|10 9|20 8|70 1", open);
}

void tst_MapImport_DxfPolylines::lwpolylineIsClosed()
{
    checkReadAndFollowed();
}

void tst_MapImport_DxfPolylines::badLwpolylineIsToldOnce_data()
{
    addFailureColumns();
    const QString none = QStringLiteral(":");
    const QString one = QStringLiteral(": н1(1 2)");
    const QString two = QStringLiteral(": н1(1 2) н2(3 4)");
    const QByteArray vertices = "10 1|20 2|10 3|20 4";
    const auto row = [](const char *name, const QStringList &lines, const QString &object, int line) {
        QTest::newRow(name) << lines << object << line;
    };

    row("no number", drawing("0 LWPOLYLINE|" + vertices), none, 16);
    row("number after the first vertex", drawing("0 LWPOLYLINE|10 1|20 2|90 2|10 3|20 4"), none, 16);
    for (const char *number : {"1", "0", "-1", "-2147483648"})
        row(number, drawing(QByteArray("0 LWPOLYLINE|90 ") + number + "|" + vertices), none, 18);
    for (const char *number : {"abc", "", "2.0", "2 2", "2147483648"})
        row(qPrintable(QStringLiteral("number '%1'").arg(QLatin1String(number))),
            drawing(QByteArray("0 LWPOLYLINE|90 ") + number + "|" + vertices), none, 14);
    row("fewer than declared", drawing("0 LWPOLYLINE|90 4|" + vertices + "|10 5|20 6|" + lineEntity),
        QStringLiteral(": н1(1 2) н2(3 4) н3(5 6)"), 28);
    row("far fewer than declared", drawing("0 LWPOLYLINE|90 2147483647|" + vertices), two, 24);
    row("no vertices", drawing("0 LWPOLYLINE|90 2|70 1"), none, 18);
    row("number becomes 0", drawing("0 LWPOLYLINE|90 2|10 1|20 2|90 0|10 3|20 4"), two, 26);
    row("number becomes negative", drawing("0 LWPOLYLINE|90 2|10 1|20 2|90 -1|10 3|20 4"), two, 26);
    row("number becomes the least", drawing("0 LWPOLYLINE|90 2|10 1|20 2|90 -2147483648|10 3|20 4"), two, 26);
    row("number becomes no number", drawing("0 LWPOLYLINE|90 2|10 1|20 2|90 abc|10 3|20 4"), one, 20);
    row("x is no number", drawing("0 LWPOLYLINE|90 2|10 abc|20 2|10 3|20 4"), none, 16);
    row("x has a comma", drawing("0 LWPOLYLINE|90 2|10 1|20 2|10 1,5|20 4"), one, 20);
    row("last y is no number", drawing("0 LWPOLYLINE|90 2|10 1|20 2|10 3|20 abc"), one, 22);
    row("blank line before the vertices", drawing("0 LWPOLYLINE|90 2||10 1|20 2"), none, 15);
    row("blank line in a vertex", drawing("0 LWPOLYLINE|90 2|10 1|20 2|10 3||20 4"), one, 21);
    row("end of the file after the keyword", openDrawing("0 LWPOLYLINE"), none, 12);
    row("end of the file after the number", openDrawing("0 LWPOLYLINE|90 2"), none, 14);
    row("end of the file in a vertex", openDrawing("0 LWPOLYLINE|90 2|10 1"), none, 16);
    row("end of the file between vertices", openDrawing("0 LWPOLYLINE|90 2|10 1|20 2"), one, 18);
    row("end of the file before the last y", openDrawing("0 LWPOLYLINE|90 2|10 1|20 2|10 3"), one, 20);
}

void tst_MapImport_DxfPolylines::badLwpolylineIsToldOnce()
{
    checkToldOnce();
}

void tst_MapImport_DxfPolylines::ringEndsInItsFirstVertex_data()
{
    QTest::addColumn<QByteArray>("entity");
    QTest::addColumn<QString>("lastVertices");
    const auto row = [](const char *name, const QByteArray &last, const QString &lastVertices) {
        const QByteArray vertices = "0 VERTEX|10 0|20 0|0 VERTEX|10 9|20 0|0 VERTEX|10 9|20 9|0 VERTEX|" + last;
        QTest::addRow("POLYLINE, %s", name) << "0 POLYLINE|70 1|" + vertices + "|0 SEQEND" << lastVertices;
        const QByteArray lwVertices = "10 0|20 0|10 9|20 0|10 9|20 9|" + last;
        QTest::addRow("LWPOLYLINE, %s", name) << "0 LWPOLYLINE|90 4|70 1|" + lwVertices << lastVertices;
    };

    row("same place", "10 0|20 0", QStringLiteral("н1(0 0)"));
    row("at the tolerance", "10 0.01|20 0.01", QStringLiteral("н1(0.01 0.01)"));
    row("at the tolerance on the other side", "10 -0.01|20 -0.01", QStringLiteral("н1(-0.01 -0.01)"));
    row("beyond it in x", "10 0.0101|20 0", QStringLiteral("н4(0.0101 0) н1(0 0)"));
    row("beyond it in y", "10 0|20 -0.0101", QStringLiteral("н4(0 -0.0101) н1(0 0)"));
    row("far in x only", "10 5|20 0", QStringLiteral("н4(5 0) н1(0 0)"));
    row("not a number", "10 nan|20 0", QStringLiteral("н4(nan 0) н1(0 0)"));
}

void tst_MapImport_DxfPolylines::ringEndsInItsFirstVertex()
{
    QFETCH(QByteArray, entity);
    QFETCH(QString, lastVertices);
    DxfRun dxf;

    QVERIFY(dxf.run(drawing(entity)));

    QCOMPARE(dxf.messages(), QStringList());
    QCOMPARE(dxf.objects(), QStringList{QStringLiteral("ЗУ1: н1(0 0) н2(9 0) н3(9 9) ") + lastVertices});
}

// The first vertex has the empty designation of a known point and exchanged coordinates, and so has its copy.
void tst_MapImport_DxfPolylines::closingVertexIsCopiedAsStored()
{
    DxfRun dxf;
    dxf.import.searchPointDefs = true;
    dxf.import.swapXY = true;

    QVERIFY(dxf.run(drawing("0 POINT|10 0|20 5|0 LWPOLYLINE|90 3|70 1|10 0.005|20 5|10 9|20 5|10 9|20 8")));

    QCOMPARE(dxf.messages(), QStringList());
    QCOMPARE(dxf.objects(), QStringList{QStringLiteral("ЗУ1: (5 0.005) н1(5 9) н2(8 9) (5 0.005)")});
    QCOMPARE(dxf.points(),
             (QStringList{QStringLiteral("(0 5)"), QStringLiteral("н1(9 5)"), QStringLiteral("н2(9 8)")}));
    QCOMPARE(dxf.import.pointStartNum, 3);
}

void tst_MapImport_DxfPolylines::failedPolylineKeepsItsNumbers_data()
{
    QTest::addColumn<QByteArray>("entity");
    QTest::addColumn<int>("line");

    // The file was read once for its texts, in 46 and 44 lines.
    QTest::newRow("POLYLINE") << QByteArray("0 POLYLINE|0 VERTEX|10 10|20 0|0 VERTEX|10 20|20 0") << 46 + 44;
    QTest::newRow("LWPOLYLINE") << QByteArray("0 LWPOLYLINE|90 3|10 10|20 0|10 20|20 0") << 44 + 42;
}

void tst_MapImport_DxfPolylines::failedPolylineKeepsItsNumbers()
{
    QFETCH(QByteArray, entity);
    QFETCH(int, line);
    DxfRun dxf;
    dxf.import.searchObjectDefs = true;

    QVERIFY(!dxf.run(drawing("0 TEXT|10 0|20 0|1 Сад|" + lineEntity + "|" + entity)));

    QCOMPARE(dxf.messages(), QStringList{readingError(line)});
    QCOMPARE(dxf.objects(),
             (QStringList{QStringLiteral("Сад: н1(0 0) н2(10 0)"), QStringLiteral(": н2(10 0) н3(20 0)")}));
    QCOMPARE(dxf.points(),
             (QStringList{QStringLiteral("н1(0 0)"), QStringLiteral("н2(10 0)"), QStringLiteral("н3(20 0)")}));
    QCOMPARE(dxf.import.pointStartNum, 4);
    QCOMPARE(dxf.import.objectStartNum, 1);
}

QTEST_GUILESS_MAIN(tst_MapImport_DxfPolylines)
#include "tst_mapimport_dxfpolylines.moc"
