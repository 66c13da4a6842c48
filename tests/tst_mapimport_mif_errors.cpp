#include "miftesting.h"

#include <QTest>

class tst_MapImportMifErrors : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void badObjectEndsThePass_data();
    void badObjectEndsThePass();
    void badPointEndsTheRun_data();
    void badPointEndsTheRun();
    void everyLineIsCounted();
    void missingRecordEndsThePass_data();
    void missingRecordEndsThePass();

private:
    static void addLines();
    static void addPolylines();
    static void addSections();
    static void addRegions();
};

namespace {

/// Adds a row: reading \a data, which begins in line 5, fails with a \a message about \a line and leaves the objects
/// \a left.
void addRow(const char *name, const char *data, const QString &message, int line, const char *left)
{
    QTest::newRow(name) << QString::fromUtf8(data) << message.arg(line) << QString::fromUtf8(left);
}

} // namespace

void tst_MapImportMifErrors::addLines()
{
    const auto row = [](const char *name, const char *data, int line, const char *left = "") {
        addRow(name, data, QStringLiteral("Ошибка чтения линии из строки: %1"), line, left);
    };
    row("line: bad x1", "LINE x 2 3 4", 5);
    row("line: bad y1", "LINE 1 x 3 4", 5);
    row("line: bad x2", "LINE 1 2 x 4", 5);
    row("line: three numbers", "LINE 1 2 3\n4", 5);
    row("line: second LINE bad", "LINE 0 0 1 1\n    PEN (1,2,0)\nLINE 1 1\nLINE 5 5 6 6", 7, "ЗУ1 [н1 0 0, н2 1 1]");
}

void tst_MapImportMifErrors::addPolylines()
{
    const auto row = [](const char *name, const char *data, int line, const char *left) {
        addRow(name, data, QStringLiteral("Ошибка чтения полилинии из строки: %1"), line, left);
    };
    row("polyline: count in the next line", "PLINE\n2\n0 0\n1 1", 5, "-");
    row("polyline: one vertex", "PLINE 1\n0 0", 5, "-");
    row("polyline: count beyond 32 bits", "PLINE 4294967298\n0 0\n1 1", 5, "-");
    row("polyline: huge count", "PLINE 2147483647\n0 0\nPEN", 7, "- [н1 0 0]");
    row("polyline: empty line", "PLINE 2\n0 0\n\n1 1", 7, "- [н1 0 0]");
    row("polyline: three numbers", "PLINE 2\n0 0 0\n1 1 1", 6, "- []");
    row("polyline: one number", "PLINE 2\n0 0\n1\n1", 7, "- [н1 0 0]");
    row("polyline: decimal commas", "PLINE 2\n1,5 2,5\n1 1", 6, "- []");
    row("polyline: bad y", "PLINE 2\n1.5 2,5\n1 1", 6, "- []");
    row("polyline: keyword in place of a vertex", "PLINE 3\n0 0\n1 1\nLINE 5 5 6 6", 8, "- [н1 0 0, н2 1 1]");
    row("polyline: file ends before a vertex", "PLINE 2\n0 0", 6, "- [н1 0 0]");
    row("polyline: second polyline bad", "PLINE 2\n0 0\n1 1\n2 2\nPLINE", 9, "ЗУ1 [н1 0 0, н2 1 1]\n-");
}

void tst_MapImportMifErrors::addSections()
{
    const auto row = [](const char *name, const char *data, int line, const char *left) {
        addRow(name, data, QStringLiteral("Ошибка чтения полилинии из строки: %1"), line, left);
    };
    row("sections: count in the next line", "PLINE MULTIPLE\n2\n2\n0 0\n1 1", 5, "-");
    row("sections: only one", "PLINE MULTIPLE 1\n2\n0 0\n1 1", 5, "-");
    row("sections: one vertex", "PLINE MULTIPLE 2\n1\n0 0\n2\n1 1\n2 2", 6, "-");
    row("sections: two numbers in place of a count", "PLINE MULTIPLE 2\n2 2\n0 0\n1 1", 6, "-");
    row("sections: surplus vertex", "PLINE MULTIPLE 2\n2\n0 0\n1 1\n2 2\n2\n3 3\n4 4", 9, "- [н1 0 0, н2 1 1]");
    row("sections: missing vertex", "PLINE MULTIPLE 2\n3\n0 0\n1 1\n2\n3 3\n4 4", 9, "- [н1 0 0, н2 1 1]");
    row("sections: file ends before a section", "PLINE MULTIPLE 2\n2\n0 0\n1 1", 8, "- [н1 0 0, н2 1 1]");
}

void tst_MapImportMifErrors::addRegions()
{
    const auto row = [](const char *name, const char *data, int line, const char *left) {
        addRow(name, data, QStringLiteral("Ошибка чтения области из строки: %1"), line, left);
    };
    row("region: no count", "REGION\n1\n3\n0 0\n1 0\n0 0", 5, "-");
    row("region: negative count", "REGION -1\n3\n0 0\n1 0\n0 0", 5, "-");
    row("region: ring of two vertices", "Region 1\n2\n0 0\n1 1", 6, "-");
    row("region: bad closing vertex", "REGION 1\n3\n0 0\n1 0\n0 0 0", 9, "- [н1 0 0, н2 1 0]");
    row("region: attribute in place of a ring", "REGION 2\n3\n0 0\n1 0\n0 0\nPEN (1,2,0)", 10,
        "- [н1 0 0, н2 1 0, н1 0 0]");
    row("region: bad vertex in the second ring", "LINE 0 0 1 1\nREGION 2\n3\n0 0\n1 0\n0 0\n3\n5 5\nx y", 13,
        "ЗУ1 [н1 0 0, н2 1 1]\n- [н1 0 0, н3 1 0, н1 0 0] [н4 5 5]");
    row("region: file ends before a ring", "REGION 2147483647", 5, "-");
    row("region: file ends before a vertex", "REGION 1\n2147483647", 6, "- []");
}

void tst_MapImportMifErrors::badObjectEndsThePass_data()
{
    QTest::addColumn<QString>("data");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("left");

    addLines();
    addPolylines();
    addSections();
    addRegions();
}

void tst_MapImportMifErrors::badObjectEndsThePass()
{
    QFETCH(QString, data);
    QFETCH(QString, message);
    QFETCH(QString, left);
    MifFixture f;
    f.writeMif(data);

    QVERIFY(!f.import.importMap());

    QCOMPARE(f.host.messages(), QStringList{message});
    QCOMPARE(f.objectText(), left);
    QCOMPARE(f.import.objectStartNum, 1 + left.count(QStringLiteral("ЗУ")));
}

void tst_MapImportMifErrors::badPointEndsTheRun_data()
{
    QTest::addColumn<QString>("line");

    QTest::newRow("one coordinate") << QStringLiteral("POINT 5\n6");
    QTest::newRow("bad x") << QStringLiteral("POINT x 1");
}

void tst_MapImportMifErrors::badPointEndsTheRun()
{
    QFETCH(QString, line);
    MifFixture f;
    f.import.searchPointDefs = true;
    f.writeMif(QStringLiteral("POINT 9 9\n\nPOINT 1 1\nLINE 0 0 1 1\n%1").arg(line));
    f.writeMid(QStringLiteral("A\nB\nC\nD"));

    QVERIFY(!f.import.importMap());

    QCOMPARE(f.host.messages(), QStringList{QStringLiteral("Ошибка чтения координат точки из строки: 9")});
    QCOMPARE(f.pointText(), QStringLiteral("B 1 1\nA 9 9"));
    QVERIFY(f.objects.isEmpty());
}

void tst_MapImportMifErrors::everyLineIsCounted()
{
    MifFixture f;
    f.files.writeBytes(QStringLiteral("plan.mif"), mifHeader.toUtf8() + "COLUMNS 0\r\n\n \r\nDATA\n\nREGION 0\nLINE\n");

    QVERIFY(!f.import.importMap());

    QCOMPARE(f.host.messages(), QStringList{QStringLiteral("Ошибка чтения линии из строки: 10")});
}

void tst_MapImportMifErrors::missingRecordEndsThePass_data()
{
    QTest::addColumn<bool>("searchPointDefs");
    QTest::addColumn<QString>("data");
    QTest::addColumn<QByteArray>("records");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("left");

    const auto row = [](const char *name, bool searchPointDefs, const char *data, const char *records,
                        const char *message, const char *left) {
        QTest::newRow(name) << searchPointDefs << QString::fromUtf8(data) << QByteArray(records)
                            << QString::fromUtf8(message) << QString::fromUtf8(left);
    };
    const char *const object = "Ошибка чтения обозначения объекта из строки: 2";
    row("object", false, "REGION 0\nLINE 0 0 1 1\nREGION 0", "A\n", object, "A\n- [н1 0 0, н2 1 1]");
    row("object, no final line feed", false, "REGION 0\nREGION 0\nREGION 0", "A", object, "A\n-");
    row("object, blank record", false, "REGION 0\nREGION 0\nREGION 0", "A\n \t\r\nB\n", object, "A\n-");
    row("first object", false, "REGION 0", "", "Ошибка чтения обозначения объекта из строки: 1", "-");
    row("skipped object", false, "REGION 0\nNONE\nREGION 0", "A\n\nB\n", "Ошибка чтения данных объекта из строки: 2",
        "A");
    row("point", true, "POINT 9 9\nPOINT 1 1\nPOINT 5 5", "A\n\nB\n", "Ошибка чтения обозначения точки из строки: 2",
        "- 1 1\nA 9 9");
    row("object among points", true, "POINT 9 9\nREGION 0\nPOINT 1 1", "A\n",
        "Ошибка чтения данных объекта из строки: 2", "A 9 9");
}

void tst_MapImportMifErrors::missingRecordEndsThePass()
{
    QFETCH(bool, searchPointDefs);
    QFETCH(QString, data);
    QFETCH(QByteArray, records);
    QFETCH(QString, message);
    QFETCH(QString, left);
    MifFixture f;
    f.import.searchPointDefs = searchPointDefs;
    f.import.searchObjectDefs = !searchPointDefs;
    f.writeMif(data);
    f.files.writeBytes(QStringLiteral("plan.mid"), records);

    QVERIFY(!f.import.importMap());

    QCOMPARE(f.host.messages(), QStringList{message});
    QCOMPARE(searchPointDefs ? f.pointText() : f.objectText(), left);
    QCOMPARE(f.import.objectStartNum, 1);
}

QTEST_GUILESS_MAIN(tst_MapImportMifErrors)

#include "tst_mapimport_mif_errors.moc"
