#include "plantesting.h"

/// What marks a point, hatches of outlines, and nested outlines.
class tst_PrepareConvertSymbols : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void symbolsBecomePoints_data();
    void symbolsBecomePoints();
    void symbolsCanStayObjects();
    void pointTakesTheNumberBesideIt();
    void attributesNumberThePoint();
    void textsOfSymbolsAreCounted();
    void hatchOfAnOutlineIsNoObject_data();
    void hatchOfAnOutlineIsNoObject();
    void entitiesOfABlockAreObjects();
    void textsNameTheInnermostOutline_data();
    void textsNameTheInnermostOutline();
    void largeLettersReachFarther();
};

namespace {

QByteArray hatch(const QByteArray &vertices, int count)
{
    return "|0 HATCH|8 0|10 0|20 0|30 0|2 SOLID|70 1|71 0|91 1|92 3|72 0|73 1|93 " + QByteArray::number(count) +
           vertices + "|97 0|75 0|76 1|98 0";
}

/// "objects contours points"; the number of vertices of a circle is another matter.
QString counts(const ConvertFixture &fixture)
{
    QStringList numbers = fixture.counts().split(QLatin1Char(' '));
    numbers.removeAt(2);
    return numbers.join(QLatin1Char(' '));
}

} // namespace

void tst_PrepareConvertSymbols::symbolsBecomePoints_data()
{
    QTest::addColumn<QByteArray>("entities");
    QTest::addColumn<QString>("counts"); // objects contours points
    QTest::addColumn<QString>("notes");

    const QByteArray plan = square(0, 0, 40);
    const QByteArray vertices =
        "|0 POLYLINE|8 0|66 1|70 1|0 VERTEX|8 0|10 0|20 0|0 VERTEX|8 0|10 30|20 0|0 VERTEX|8 0|10 30|"
        "20 30|0 SEQEND|8 0";
    const QByteArray closing = "|0 LWPOLYLINE|8 0|90 4|70 0|10 0|20 0|10 30|20 0|10 30|20 30|10 0|20 0";
    const QString none;
    const auto row = [](const char *name, const QByteArray &entities, const char *counts, const QString &notes) {
        QTest::newRow(name) << entities << QString::fromLatin1(counts) << notes;
    };
    const auto taken = [](int symbols, int outlines) {
        return QStringLiteral("point-symbol %1, symbol-outline %2").arg(symbols).arg(outlines);
    };
    // A number farther from a symbol than its own letters still numbers the point, but makes nothing a symbol.
    row("circle on a vertex", plan + text("1", 3, 3) + circle(0, 0, 0.5), "1 1 1", taken(1, 1));
    row("circle on a corner of a ring of vertices", vertices + text("1", 33, 3) + circle(30, 0, 0.5), "1 1 1",
        taken(1, 1));
    row("circle on a repeated vertex", closing + text("1", 3, 3) + circle(0, 0, 0.5), "1 1 1", taken(1, 1));
    row("circle beside a number", circle(9, 9, 0.5) + text("н12", 10, 10), "0 0 1", taken(1, 1));
    row("number on the left", circle(9, 9, 0.5) + text("1234", 5, 9), "0 0 1", taken(1, 1));
    row("insertion on a vertex", plan + text("1", 3, 3) + insert("M", 0, 0), "1 1 1", taken(1, 2));
    row("insertion beside a number", insert("M", 9, 9) + text("7", 10, 10), "0 0 1", taken(1, 2));
    row("ellipse beside a number", "|0 ELLIPSE|8 0|10 9|20 9|11 0.5|21 0|40 0.5|41 0|42 6.28" + text("7", 10, 10),
        "0 0 1", taken(1, 1));
    row("several", plan + text("1", 3, 3) + text("2", 43, 3) + circle(0, 0, 1) + insert("M", 40, 0), "1 1 2",
        taken(2, 3));
    row("symbol in a block", insert("S", 100, 100), "1 1 1", taken(1, 1));
    row("insertion of a missing block", insert("X", 9, 9) + text("7", 10, 10), "0 0 1",
        QStringLiteral("point-symbol 1"));

    row("circle alone", circle(9, 9, 3), "1 1 0", none);
    row("circle with a name", circle(9, 9, 0.5) + text("pit", 10, 10), "1 1 0", none);
    row("circle around a number", circle(9, 9, 3) + text("12", 9, 9), "1 1 0", none);
    row("circle far from a number", circle(9, 9, 0.5) + text("1", 12, 9), "1 1 0", none);
    row("circle on the end of a line", "|0 LINE|8 0|10 0|20 0|11 30|21 0" + text("1", 33, 3) + circle(30, 0, 0.5),
        "2 2 0", none);
    row("circle on a vertex of an open line",
        "|0 LWPOLYLINE|8 0|90 3|70 0|10 0|20 0|10 30|20 0|10 30|20 30" + circle(30, 0, 0.5), "2 2 0", none);
    row("large circle on a vertex", plan + circle(0, 0, 9), "2 2 0", none);
    row("circle beside a vertex", plan + circle(0, 0.02, 0.5), "2 2 0", none);
    row("plan on a vertex", plan + insert("P", 40, 0), "2 2 0", none);
    row("rows of insertions", plan + insert("M", 0, 0) + "|70 2|71 2|44 3|45 3", "9 9 0", none);
    row("insertion with a number in the block", plan + insert("N", 0, 0), "2 2 1", taken(1, 1));
    row("circle in another plane", plan + circle(0, 0, 0.5) + "|210 0|220 0|230 -1", "2 2 0", none);
}

void tst_PrepareConvertSymbols::symbolsBecomePoints()
{
    QFETCH(QByteArray, entities);
    const QByteArray blocks = mark + block("P", square(0, 0, 20)) +
                              block("S", square(0, 0, 40) + circle(40, 40, 0.5) + text("3", 41, 41)) +
                              block("N", circle(0, 0, 0.5) + text("5", 1, 1) + "|0 LINE|8 0|10 -1|20 0|11 1|21 0");
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.dxf"), drawingOf(entities, blocks));

    QVERIFY(fixture.convert(QStringLiteral("a.dxf")));

    QTEST(counts(fixture), "counts");
    QTEST(fixture.list("notes"), "notes");
}

void tst_PrepareConvertSymbols::symbolsCanStayObjects()
{
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.dxf"),
                        drawingOf(square(0, 0, 40) + circle(40, 0, 1) + text("15", 41, 1) + insert("M", 0, 40), mark));

    QVERIFY(fixture.convert(QStringLiteral("a.dxf"), arguments("--symbols objects")));

    QCOMPARE(counts(fixture), QStringLiteral("4 4 0"));
    QCOMPARE(fixture.list("notes"), QString());
}

void tst_PrepareConvertSymbols::pointTakesTheNumberBesideIt()
{
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.dxf"), drawingOf(square(0, 0, 40) + circle(40, 0, 1) + text("15", 41, 1) +
                                                               insert("M", 0, 40) + text("16", 1, 41),
                                                           mark));

    QVERIFY(fixture.convert(QStringLiteral("a.dxf")));

    QCOMPARE(fixture.imported(), QStringLiteral("ЗУ1 [н1 0 0, 15 40 0, н2 40 40, 16 0 40, н1 0 0]"));
}

void tst_PrepareConvertSymbols::attributesNumberThePoint()
{
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.dxf"), drawingOf(square(0, 0, 40) + insert("M", 40, 0) +
                                                               "|66 1|0 ATTRIB|8 0|10 41|20 1|40 1|1 "
                                                               "15|2 NUMBER|70 0|0 SEQEND|8 0" +
                                                               text("Поле", 20, 20),
                                                           mark));

    QVERIFY(fixture.convert(QStringLiteral("a.dxf")));

    QCOMPARE(fixture.imported(), QStringLiteral("Поле [н1 0 0, 15 40 0, н2 40 40, н3 0 40, н1 0 0]"));
}

void tst_PrepareConvertSymbols::textsOfSymbolsAreCounted()
{
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.dxf"),
                        drawingOf(insert("M", 0, 0) + text("1", 1, 1) + insert("M", 9, 9) + text("2", 10, 10),
                                  block("M", circle(0, 0, 0.5) + text("mark", 0, 0))));

    QVERIFY(fixture.convert(QStringLiteral("a.dxf")));

    QCOMPARE(fixture.list("leftOut"), QStringLiteral("unused-text 2"));
}

void tst_PrepareConvertSymbols::hatchOfAnOutlineIsNoObject_data()
{
    QTest::addColumn<QByteArray>("entities");
    QTest::addColumn<QString>("counts");
    QTest::addColumn<QString>("leftOut");

    const QByteArray triangle = ring({{0, 0}, {10, 0}, {10, 10}});
    const auto row = [&triangle](const char *name, const QByteArray &entities, const char *counts, int fillings) {
        QTest::newRow(name) << triangle + entities << QString::fromLatin1(counts)
                            << (fillings == 0 ? QString() : QStringLiteral("filling %1").arg(fillings));
    };
    row("same vertices", hatch("|10 0|20 0|10 10|20 0|10 10|20 10", 3), "1 1 0", 1);
    row("other start", hatch("|10 10|20 0|10 10|20 10|10 0|20 0", 3), "1 1 0", 1);
    row("other direction", hatch("|10 10|20 10|10 10|20 0|10 0|20 0", 3), "1 1 0", 1);
    row("within the tolerance", hatch("|10 0.009|20 0|10 10|20 0|10 10|20 10", 3), "1 1 0", 1);
    row("other vertex", hatch("|10 0.02|20 0|10 10|20 0|10 10|20 10", 3), "2 2 0", 0);
    row("more vertices", hatch("|10 0|20 0|10 10|20 0|10 10|20 10|10 5|20 5", 4), "2 2 0", 0);
    row("outline twice", triangle, "2 2 0", 0);
    row("hatch before other objects", hatch("|10 0|20 0|10 10|20 0|10 10|20 10", 3) + square(50, 50, 9), "2 2 0", 1);
    row("circle",
        circle(30, 30, 5) +
            "|0 HATCH|8 0|10 0|20 0|30 0|2 SOLID|70 1|71 0|91 1|92 1|93 1|72 2|10 30|20 30|40 5|50 0|51 360|"
            "73 1|97 0|75 0|76 1|98 0",
        "2 2 0", 1);
}

void tst_PrepareConvertSymbols::hatchOfAnOutlineIsNoObject()
{
    QFETCH(QByteArray, entities);
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.dxf"), drawingOf(entities));

    QVERIFY(fixture.convert(QStringLiteral("a.dxf")));

    QTEST(counts(fixture), "counts");
    QTEST(fixture.list("leftOut"), "leftOut");
}

void tst_PrepareConvertSymbols::entitiesOfABlockAreObjects()
{
    const QByteArray plan = block("P", square(0, 0, 10) + square(10, 0, 10) + text(":A", 5, 5) + text(":B", 15, 5));
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.dxf"), drawingOf(insert("P", 0, 0), plan));

    QVERIFY(fixture.convert(QStringLiteral("a.dxf")));

    QCOMPARE(fixture.imported(), QStringLiteral(":A [н1 0 0, н2 10 0, н3 10 10, н4 0 10, н1 0 0]; "
                                                ":B [н2 10 0, н5 20 0, н6 20 10, н3 10 10, н2 10 0]"));
    QCOMPARE(fixture.list("leftOut"), QString());
}

void tst_PrepareConvertSymbols::textsNameTheInnermostOutline_data()
{
    QTest::addColumn<QByteArray>("entities");
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QString>("leftOut");
    const auto row = [](const char *name, const QByteArray &entities, const QStringList &names, int unused = 0) {
        QTest::newRow(name) << entities << names
                            << (unused == 0 ? QString() : QStringLiteral("unused-text %1").arg(unused));
    };
    const QString house = QStringLiteral("Дом");
    const QString field = QStringLiteral("Поле");

    const QByteArray parcel = square(0, 0, 40);
    const QByteArray building = square(15, 15, 10);
    const QByteArray inner = text("Дом", 20, 20);
    row("outer first", parcel + building + inner + text("Поле", 5, 5), {field, house});
    row("inner first", building + parcel + inner + text("Поле", 5, 5), {house, field});
    row("three levels", parcel + square(10, 10, 20) + building + text("Поле", 5, 5) + text("Двор", 12, 12) + inner,
        {field, QStringLiteral("Двор"), house});
    row("outer has only the text beside it", parcel + building + inner + text("Поле", 5, 43), {field, house});
    row("outer takes what the inner one leaves", parcel + building + inner + text("Поле", 17, 17), {field, house});
    row("nothing else is there", parcel + building + inner, {house, house});
    row("outline twice", building + building + inner, {house, house});
    row("neighbour's text", building + square(25, 15, 10) + inner + text("Поле", 23, 16), {house, field});
    row("unused text", building + inner + text("Поле", 17, 17), {house}, 1);
}

void tst_PrepareConvertSymbols::textsNameTheInnermostOutline()
{
    QFETCH(QByteArray, entities);
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.dxf"), drawingOf(entities), "windows-1251");

    QVERIFY(fixture.convert(QStringLiteral("a.dxf")));

    QStringList names;
    const QStringList objects = imported(fixture.path(QStringLiteral("out.mif")));
    for (const QString &object : objects)
        names.append(object.section(QLatin1Char(' '), 0, 0));
    QTEST(names, "names");
    QTEST(fixture.list("leftOut"), "leftOut");
}

void tst_PrepareConvertSymbols::largeLettersReachFarther()
{
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a.dxf"), drawingOf("|0 POINT|8 0|10 0|20 0" + text("7", 0, 19, 10)));

    QVERIFY(fixture.convert(QStringLiteral("a.dxf")));

    QFile mid(fixture.path(QStringLiteral("out.mid")));
    QVERIFY(mid.open(QIODevice::ReadOnly));
    QCOMPARE(mid.readAll(), QByteArray("\"7\",\"0\"\n"));
}

QTEST_GUILESS_MAIN(tst_PrepareConvertSymbols)
#include "tst_prepare_convert_symbols.moc"
