#include "miftesting.h"

#include <QTest>

class tst_MapImportMifErrors : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void badPointEndsTheRun_data();
    void badPointEndsTheRun();
    void badLineEndsThePass_data();
    void badLineEndsThePass();
    void badPolylineEndsThePass_data();
    void badPolylineEndsThePass();
    void badPolylineOfSectionsEndsThePass_data();
    void badPolylineOfSectionsEndsThePass();
    void badRegionEndsThePass_data();
    void badRegionEndsThePass();
    void hugeCountReservesNothing_data();
    void hugeCountReservesNothing();
    void whatWasReadBeforeStays();

private:
    static void addColumns();
    static void checkFailure(const QString &message);
};

void tst_MapImportMifErrors::addColumns()
{
    QTest::addColumn<QString>("data");
    QTest::addColumn<int>("line");
    QTest::addColumn<QString>("left");
}

/// The pass fails with one \a message, of the row's line, and leaves the row's objects.
void tst_MapImportMifErrors::checkFailure(const QString &message)
{
    QFETCH(QString, data);
    QFETCH(int, line);
    QFETCH(QString, left);
    MifRun run;
    run.writeMif(data);

    QVERIFY(!run.import.importMap());

    QCOMPARE(run.host.messages(), QStringList{message.arg(line)});
    QCOMPARE(run.objectText(), left);
    QCOMPARE(run.import.objectStartNum, 1 + left.count(QStringLiteral("ЗУ")));
}

void tst_MapImportMifErrors::badPointEndsTheRun_data()
{
    addColumns();

    QTest::newRow("no coordinates") << QStringLiteral("POINT") << 5 << QString();
    QTest::newRow("one coordinate") << QStringLiteral("POINT 5") << 5 << QString();
    QTest::newRow("coordinates in the next line") << QStringLiteral("POINT\n5 6") << 5 << QString();
    QTest::newRow("word for x") << QStringLiteral("Point x 1") << 5 << QString();
    QTest::newRow("word for y") << QStringLiteral("point 1 y") << 5 << QString();
    QTest::newRow("one word with comma") << QStringLiteral("POINT 1.5,2.5") << 5 << QString();
    QTest::newRow("after others, which stay") << QStringLiteral("POINT 9 9\n\nPOINT 1 1\n    SYMBOL (35,0,12)\nPOINT 2")
                                              << 9 << QStringLiteral("B 1 1\nA 9 9");
}

// The objects are not tried though there is one.
void tst_MapImportMifErrors::badPointEndsTheRun()
{
    QFETCH(QString, data);
    QFETCH(int, line);
    QFETCH(QString, left);
    MifRun run;
    run.import.searchPointDefs = true;
    run.import.pointFileName = run.files.path(QStringLiteral("points.mif"));
    run.writeMif(data, QStringLiteral("points.mif"));
    run.writeMid(QStringLiteral("A\nB\nC\nD"), QStringLiteral("points.mid"));
    run.writeMif(QStringLiteral("LINE 0 0 1 1"));

    QVERIFY(!run.import.importMap());

    QCOMPARE(run.host.messages(), QStringList{QStringLiteral("Ошибка чтения координат точки из строки: %1").arg(line)});
    QCOMPARE(run.pointText(), left);
    QVERIFY(run.objects.isEmpty());
}

void tst_MapImportMifErrors::badLineEndsThePass_data()
{
    addColumns();

    QTest::newRow("alone") << QStringLiteral("LINE") << 5 << QString();
    QTest::newRow("three numbers") << QStringLiteral("LINE 1 2 3") << 5 << QString();
    QTest::newRow("second vertex in the next line") << QStringLiteral("Line 1 2\n3 4") << 5 << QString();
    QTest::newRow("word") << QStringLiteral("line 1 2 3 y") << 5 << QString();
    QTest::newRow("commas between the numbers") << QStringLiteral("LINE 1,2 3,4") << 5 << QString();
    QTest::newRow("after another") << QStringLiteral("LINE 0 0 1 1\n    PEN (1,2,0)\nLINE 1 1\nLINE 5 5 6 6") << 7
                                   << QStringLiteral("ЗУ1 [н1 0 0, н2 1 1]");
}

void tst_MapImportMifErrors::badLineEndsThePass()
{
    checkFailure(QStringLiteral("Ошибка чтения линии из строки: %1"));
}

void tst_MapImportMifErrors::badPolylineEndsThePass_data()
{
    addColumns();

    QTest::newRow("count in the next line") << QStringLiteral("PLINE\n2\n0 0\n1 1") << 5 << QStringLiteral("-");
    QTest::newRow("one vertex") << QStringLiteral("PLINE 1\n0 0") << 5 << QStringLiteral("-");
    QTest::newRow("no vertices") << QStringLiteral("PLINE 0") << 5 << QStringLiteral("-");
    QTest::newRow("count below zero") << QStringLiteral("PLINE -2\n0 0\n1 1") << 5 << QStringLiteral("-");
    QTest::newRow("word for a count") << QStringLiteral("Pline two\n0 0\n1 1") << 5 << QStringLiteral("-");
    QTest::newRow("sections without a space")
        << QStringLiteral("PLINE MULTIPLE2\n2\n0 0\n1 1") << 5 << QStringLiteral("-");
    QTest::newRow("empty line for a vertex")
        << QStringLiteral("PLINE 2\n0 0\n\n1 1") << 7 << QStringLiteral("- [н1 0 0]");
    QTest::newRow("empty line for the first vertex")
        << QStringLiteral("PLINE 2\n \t\n0 0\n1 1") << 6 << QStringLiteral("- []");
    QTest::newRow("three numbers") << QStringLiteral("PLINE 2\n0 0 0\n1 1 1") << 6 << QStringLiteral("- []");
    QTest::newRow("one number") << QStringLiteral("PLINE 2\n0 0\n1\n1") << 7 << QStringLiteral("- [н1 0 0]");
    QTest::newRow("one word with comma") << QStringLiteral("PLINE 2\n1.5,2.5\n1 1") << 6 << QStringLiteral("- []");
    QTest::newRow("decimal commas") << QStringLiteral("PLINE 2\n1,5 2,5\n1 1") << 6 << QStringLiteral("- []");
    QTest::newRow("attribute for a vertex")
        << QStringLiteral("PLINE 3\n0 0\n1 1\n    PEN (1,2,0)") << 8 << QStringLiteral("- [н1 0 0, н2 1 1]");
    QTest::newRow("keyword for a vertex")
        << QStringLiteral("PLINE 3\n0 0\n1 1\nLINE 5 5 6 6") << 8 << QStringLiteral("- [н1 0 0, н2 1 1]");
    QTest::newRow("after another") << QStringLiteral("PLINE 2\n0 0\n1 1\nPLINE 2\n0 0\nx") << 10
                                   << QStringLiteral("ЗУ1 [н1 0 0, н2 1 1]\n- [н1 0 0]");
    QTest::newRow("after another with a vertex too many")
        << QStringLiteral("PLINE 2\n0 0\n1 1\n2 2\nPLINE") << 9 << QStringLiteral("ЗУ1 [н1 0 0, н2 1 1]\n-");
}

void tst_MapImportMifErrors::badPolylineEndsThePass()
{
    checkFailure(QStringLiteral("Ошибка чтения полилинии из строки: %1"));
}

void tst_MapImportMifErrors::badPolylineOfSectionsEndsThePass_data()
{
    addColumns();

    QTest::newRow("count in the next line")
        << QStringLiteral("PLINE MULTIPLE\n2\n2\n0 0\n1 1") << 5 << QStringLiteral("-");
    QTest::newRow("one section") << QStringLiteral("PLINE MULTIPLE 1\n2\n0 0\n1 1") << 5 << QStringLiteral("-");
    QTest::newRow("no sections") << QStringLiteral("Pline Multiple 0") << 5 << QStringLiteral("-");
    QTest::newRow("count below zero") << QStringLiteral("pline multiple -2") << 5 << QStringLiteral("-");
    QTest::newRow("word for a count") << QStringLiteral("PLINE MULTIPLE x\n2\n0 0\n1 1") << 5 << QStringLiteral("-");
    QTest::newRow("section of one vertex")
        << QStringLiteral("PLINE MULTIPLE 2\n1\n0 0\n2\n1 1\n2 2") << 6 << QStringLiteral("-");
    QTest::newRow("empty line for a section")
        << QStringLiteral("PLINE MULTIPLE 2\n\n2\n0 0\n1 1") << 6 << QStringLiteral("-");
    QTest::newRow("two numbers for a section")
        << QStringLiteral("PLINE MULTIPLE 2\n2 2\n0 0\n1 1") << 6 << QStringLiteral("-");
    QTest::newRow("vertex too many") << QStringLiteral("PLINE MULTIPLE 2\n2\n0 0\n1 1\n2 2\n2\n3 3\n4 4") << 9
                                     << QStringLiteral("- [н1 0 0, н2 1 1]");
    QTest::newRow("vertex too few") << QStringLiteral("PLINE MULTIPLE 2\n3\n0 0\n1 1\n2\n3 3\n4 4") << 9
                                    << QStringLiteral("- [н1 0 0, н2 1 1]");
    QTest::newRow("second section of one vertex")
        << QStringLiteral("PLINE MULTIPLE 2\n2\n0 0\n1 1\n1\n2 2") << 9 << QStringLiteral("- [н1 0 0, н2 1 1]");
    QTest::newRow("keyword for the second section")
        << QStringLiteral("PLINE MULTIPLE 2\n2\n0 0\n1 1\nLINE 5 5 6 6") << 9 << QStringLiteral("- [н1 0 0, н2 1 1]");
    QTest::newRow("bad vertex in the second section") << QStringLiteral("PLINE MULTIPLE 2\n2\n0 0\n1 1\n2\n2 2\n3 3 3")
                                                      << 11 << QStringLiteral("- [н1 0 0, н2 1 1] [н3 2 2]");
}

void tst_MapImportMifErrors::badPolylineOfSectionsEndsThePass()
{
    checkFailure(QStringLiteral("Ошибка чтения полилинии из строки: %1"));
}

void tst_MapImportMifErrors::badRegionEndsThePass_data()
{
    addColumns();

    QTest::newRow("alone") << QStringLiteral("REGION\n1\n3\n0 0\n1 0\n0 0") << 5 << QStringLiteral("-");
    QTest::newRow("count below zero") << QStringLiteral("REGION -1\n3\n0 0\n1 0\n0 0") << 5 << QStringLiteral("-");
    QTest::newRow("word for a count") << QStringLiteral("Region one\n3\n0 0\n1 0\n0 0") << 5 << QStringLiteral("-");
    QTest::newRow("ring of two vertices") << QStringLiteral("Region 1\n2\n0 0\n1 1") << 6 << QStringLiteral("-");
    QTest::newRow("ring of no vertices") << QStringLiteral("REGION 1\n0\n") << 6 << QStringLiteral("-");
    QTest::newRow("empty line for a ring")
        << QStringLiteral("REGION 1\n\n3\n0 0\n1 0\n0 0") << 6 << QStringLiteral("-");
    QTest::newRow("two numbers for a ring")
        << QStringLiteral("REGION 1\n3 3\n0 0\n1 0\n0 0") << 6 << QStringLiteral("-");
    QTest::newRow("empty line for a vertex")
        << QStringLiteral("REGION 1\n3\n0 0\n\n1 0\n0 0") << 8 << QStringLiteral("- [н1 0 0]");
    QTest::newRow("one word with comma") << QStringLiteral("REGION 1\n3\n1.5,2.5\n1 0\n0 0") << 7
                                         << QStringLiteral("- []");
    QTest::newRow("decimal commas") << QStringLiteral("REGION 1\n3\n0 0\n1,5 2,5\n0 0") << 8
                                    << QStringLiteral("- [н1 0 0]");
    QTest::newRow("bad closing vertex") << QStringLiteral("REGION 1\n3\n0 0\n1 0\n0 0 0") << 9
                                        << QStringLiteral("- [н1 0 0, н2 1 0]");
    QTest::newRow("attribute for the second ring")
        << QStringLiteral("REGION 2\n3\n0 0\n1 0\n0 0\n    PEN (1,2,0)\nLINE 5 5 6 6") << 10
        << QStringLiteral("- [н1 0 0, н2 1 0, н1 0 0]");
    QTest::newRow("second ring of two vertices") << QStringLiteral("REGION 2\n3\n0 0\n1 0\n0 0\n2\n5 5\n6 6") << 10
                                                 << QStringLiteral("- [н1 0 0, н2 1 0, н1 0 0]");
    QTest::newRow("bad vertex in the second ring") << QStringLiteral("REGION 2\n3\n0 0\n1 0\n0 0\n3\n5 5\nx y") << 12
                                                   << QStringLiteral("- [н1 0 0, н2 1 0, н1 0 0] [н3 5 5]");
    QTest::newRow("after another") << QStringLiteral("LINE 0 0 1 1\nREGION x") << 6
                                   << QStringLiteral("ЗУ1 [н1 0 0, н2 1 1]\n-");
}

void tst_MapImportMifErrors::badRegionEndsThePass()
{
    checkFailure(QStringLiteral("Ошибка чтения области из строки: %1"));
}

void tst_MapImportMifErrors::hugeCountReservesNothing_data()
{
    addColumns();

    QTest::newRow("polyline") << QStringLiteral("PLINE 2147483647\n0 0\nPEN") << 7 << QStringLiteral("- [н1 0 0]");
    QTest::newRow("sections") << QStringLiteral("PLINE MULTIPLE 2147483647\n2\n0 0\n1 1\nPEN") << 9
                              << QStringLiteral("- [н1 0 0, н2 1 1]");
    QTest::newRow("section") << QStringLiteral("PLINE MULTIPLE 2\n2147483647\n0 0\nPEN") << 8
                             << QStringLiteral("- [н1 0 0]");
}

void tst_MapImportMifErrors::hugeCountReservesNothing()
{
    checkFailure(QStringLiteral("Ошибка чтения полилинии из строки: %1"));
}

void tst_MapImportMifErrors::whatWasReadBeforeStays()
{
    MifRun run;
    run.objects = {DefPolygon{QStringLiteral("before"), {}}};
    run.writeMif(QStringLiteral("LINE 0 0 1 1\nREGION 2\n3\n2 2\n3 2\n2 2\n3\n4 4\n1 1\n9"));

    QVERIFY(!run.import.importMap());

    QCOMPARE(run.objectText(),
             QStringLiteral("before\nЗУ1 [н1 0 0, н2 1 1]\n- [н3 2 2, н4 3 2, н3 2 2] [н5 4 4, н2 1 1]"));
    QCOMPARE(run.pointText(), QStringLiteral("н1 0 0\nн2 1 1\nн3 2 2\nн4 3 2\nн5 4 4"));
    QCOMPARE(run.import.pointStartNum, 6);
    QCOMPARE(run.import.objectStartNum, 2);
}

QTEST_GUILESS_MAIN(tst_MapImportMifErrors)

#include "tst_mapimport_mif_errors.moc"
