#include "miftesting.h"

#include <QTest>

class tst_MapImportMifEnds : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fileEndsWithinAnObject_data();
    void fileEndsWithinAnObject();
    void fileEndsAfterAnObject_data();
    void fileEndsAfterAnObject();
    void lineNumberCountsEveryLine_data();
    void lineNumberCountsEveryLine();
    void lineNumberBeginsAnewInEachPass();
    void collectionEndsThePassWell_data();
    void collectionEndsThePassWell();
    void collectionIsToldInEachPass();
    void collectionKeepsPointsForTheObjects();
};

void tst_MapImportMifEnds::fileEndsWithinAnObject_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("left");

    const QString pline = QStringLiteral("Ошибка чтения полилинии из строки: %1");
    QTest::newRow("before a vertex") << QByteArray("PLINE 2") << pline.arg(5) << QStringLiteral("- []");
    QTest::newRow("after a vertex") << QByteArray("PLINE 2\n0 0") << pline.arg(6) << QStringLiteral("- [н1 0 0]");
    QTest::newRow("before a section") << QByteArray("PLINE MULTIPLE 2") << pline.arg(5) << QStringLiteral("-");
    QTest::newRow("before a section's vertex")
        << QByteArray("PLINE MULTIPLE 2\n2") << pline.arg(6) << QStringLiteral("- []");
    QTest::newRow("after a section's vertex")
        << QByteArray("PLINE MULTIPLE 2\n2\n0 0") << pline.arg(7) << QStringLiteral("- [н1 0 0]");
    QTest::newRow("after a section") << QByteArray("PLINE MULTIPLE 2\n2\n0 0\n1 1") << pline.arg(8)
                                     << QStringLiteral("- [н1 0 0, н2 1 1]");
    QTest::newRow("before the second section's vertex")
        << QByteArray("PLINE MULTIPLE 2\n2\n0 0\n1 1\n2") << pline.arg(9) << QStringLiteral("- [н1 0 0, н2 1 1] []");

    const QString region = QStringLiteral("Ошибка чтения области из строки: %1");
    QTest::newRow("before a ring") << QByteArray("REGION 1") << region.arg(5) << QStringLiteral("-");
    QTest::newRow("before a great many rings")
        << QByteArray("REGION 2147483647") << region.arg(5) << QStringLiteral("-");
    QTest::newRow("before a ring's vertex") << QByteArray("REGION 1\n3") << region.arg(6) << QStringLiteral("- []");
    QTest::newRow("before a ring's great many vertices")
        << QByteArray("REGION 1\n2147483647") << region.arg(6) << QStringLiteral("- []");
    QTest::newRow("before a closing vertex")
        << QByteArray("REGION 1\n3\n0 0\n1 0") << region.arg(8) << QStringLiteral("- [н1 0 0, н2 1 0]");
    QTest::newRow("after a ring") << QByteArray("REGION 2\n3\n0 0\n1 0\n0 0") << region.arg(9)
                                  << QStringLiteral("- [н1 0 0, н2 1 0, н1 0 0]");
    QTest::newRow("before the second ring's vertex") << QByteArray("REGION 2\n3\n0 0\n1 0\n0 0\n3") << region.arg(10)
                                                     << QStringLiteral("- [н1 0 0, н2 1 0, н1 0 0] []");
}

// The number is that of the last line there is, with or without an end of its own.
void tst_MapImportMifEnds::fileEndsWithinAnObject()
{
    QFETCH(QByteArray, data);
    QFETCH(QString, message);
    QFETCH(QString, left);
    for (const char *const end : {"", "\n", "\r\n"}) {
        MifRun run;
        run.files.writeBytes(QStringLiteral("plan.mif"),
                             "VERSION 300\nCHARSET \"Neutral\"\nDELIMITER \",\"\nDATA\n" + data + end);

        QVERIFY(!run.import.importMap());

        QCOMPARE(run.host.messages(), QStringList{message});
        QCOMPARE(run.objectText(), left);
    }
}

void tst_MapImportMifEnds::fileEndsAfterAnObject_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QString>("objects");

    QTest::newRow("line") << QByteArray("LINE 0 0 1 1") << QStringLiteral("ЗУ1 [н1 0 0, н2 1 1]");
    QTest::newRow("polyline") << QByteArray("PLINE 2\n0 0\n1 1") << QStringLiteral("ЗУ1 [н1 0 0, н2 1 1]");
    QTest::newRow("sections") << QByteArray("PLINE MULTIPLE 2\n2\n0 0\n1 1\n2\n0 0\n1 1")
                              << QStringLiteral("ЗУ1 [н1 0 0, н2 1 1] [н1 0 0, н2 1 1]");
    QTest::newRow("region") << QByteArray("REGION 1\n3\n0 0\n1 0\n0 0")
                            << QStringLiteral("ЗУ1 [н1 0 0, н2 1 0, н1 0 0]");
    QTest::newRow("region without rings") << QByteArray("REGION 0") << QStringLiteral("ЗУ1");
    QTest::newRow("another object") << QByteArray("NONE") << QString();
}

void tst_MapImportMifEnds::fileEndsAfterAnObject()
{
    QFETCH(QByteArray, data);
    QFETCH(QString, objects);
    for (const char *const end : {"", "\n", "\r\n", "\n\n \n"}) {
        MifRun run;
        run.files.writeBytes(QStringLiteral("plan.mif"),
                             "VERSION 300\nCHARSET \"Neutral\"\nDELIMITER \",\"\nDATA\n" + data + end);

        QVERIFY(run.import.importMap());

        QVERIFY(run.host.messages().isEmpty());
        QCOMPARE(run.objectText(), objects);
    }
}

void tst_MapImportMifEnds::lineNumberCountsEveryLine_data()
{
    QTest::addColumn<QByteArray>("before");

    QTest::newRow("names of columns") << QByteArray("COORDSYS NonEarth\nCOLUMNS 1\n  Name Char(20)\nDATA\n");
    QTest::newRow("empty lines") << QByteArray("\n\nDATA\n\n");
    QTest::newRow("carriage returns") << QByteArray("\r\n \r\nDATA\r\n\r\n");
    QTest::newRow("objects") << QByteArray("DATA\nPLINE 2\n0 0\n1 1\n");
    QTest::newRow("regions without rings") << QByteArray("DATA\nREGION 0\nREGION 0\nREGION 0\n");
}

void tst_MapImportMifEnds::lineNumberCountsEveryLine()
{
    QFETCH(QByteArray, before);
    MifRun run;
    run.files.writeBytes(QStringLiteral("plan.mif"),
                         "VERSION 300\nCHARSET \"Neutral\"\nDELIMITER \",\"\n" + before + "LINE\n");

    QVERIFY(!run.import.importMap());

    QCOMPARE(run.host.messages(), QStringList{QStringLiteral("Ошибка чтения линии из строки: 8")});
}

void tst_MapImportMifEnds::lineNumberBeginsAnewInEachPass()
{
    MifRun run;
    run.import.searchPointDefs = true;
    run.writeMif(QStringLiteral("POINT 1 1\nPLINE 1"));
    run.writeMid(QStringLiteral("A\nB"));

    QVERIFY(!run.import.importMap());

    QCOMPARE(run.host.messages(), QStringList{QStringLiteral("Ошибка чтения полилинии из строки: 6")});
}

void tst_MapImportMifEnds::collectionEndsThePassWell_data()
{
    QTest::addColumn<QString>("data");
    QTest::addColumn<int>("line");
    QTest::addColumn<QStringList>("left");

    const QStringList line{QStringLiteral(" [н1 0 0, н2 1 1]")};
    QTest::newRow("first") << QStringLiteral("COLLECTION 3\nREGION 0\nLINE 0 0 1 1") << 5 << QStringList{};
    QTest::newRow("alone") << QStringLiteral("COLLECTION") << 5 << QStringList{};
    QTest::newRow("small letters") << QStringLiteral("LINE 0 0 1 1\n  collection 2\nLINE 5 5 6 6") << 6 << line;
    QTest::newRow("with empty lines before it")
        << QStringLiteral("LINE 0 0 1 1\n\n\nCollection 2\nLINE\nCOLLECTION") << 8 << line;
}

// There is no record for it, and it needs none.
void tst_MapImportMifEnds::collectionEndsThePassWell()
{
    QFETCH(QString, data);
    QFETCH(int, line);
    QFETCH(QStringList, left);
    for (const bool searchObjectDefs : {true, false}) {
        MifRun run;
        run.import.searchObjectDefs = searchObjectDefs;
        run.writeMif(data);
        run.files.writeBytes(QStringLiteral("plan.mid"), left.isEmpty() ? QByteArray() : QByteArray("A\n"));

        QVERIFY(run.import.importMap());

        QCOMPARE(run.host.messages(),
                 QStringList{QStringLiteral("Ошибка в стоке %1. Коллекции в MIF файлах не поддерживаются.").arg(line)});
        const QString def = searchObjectDefs ? QStringLiteral("A") : QStringLiteral("ЗУ1");
        QCOMPARE(described(run.objects), left.isEmpty() ? left : QStringList{def + left.first()});
    }
}

void tst_MapImportMifEnds::collectionIsToldInEachPass()
{
    MifRun run;
    run.import.searchPointDefs = true;
    run.import.searchObjectDefs = true;
    run.writeMif(QStringLiteral("POINT 1 1\nLINE 0 0 1 1\nCOLLECTION 1\nPOINT 0 0"));
    run.writeMid(QStringLiteral("A\nB"));

    QVERIFY(run.import.importMap());

    const QString message = QStringLiteral("Ошибка в стоке 7. Коллекции в MIF файлах не поддерживаются.");
    QCOMPARE(run.host.messages(), (QStringList{message, message}));
    QCOMPARE(run.objectText(), QStringLiteral("B [н1 0 0, A 1 1]"));
}

void tst_MapImportMifEnds::collectionKeepsPointsForTheObjects()
{
    MifRun run;
    run.import.searchPointDefs = true;
    run.import.pointFileName = run.files.path(QStringLiteral("points.mif"));
    run.writeMif(QStringLiteral("POINT 1 1\nCOLLECTION 1\nPOINT 0 0"), QStringLiteral("points.mif"));
    run.writeMid(QStringLiteral("A\nB\nC"), QStringLiteral("points.mid"));
    run.writeMif(QStringLiteral("LINE 0 0 1 1"));

    QVERIFY(run.import.importMap());

    QCOMPARE(run.host.messages(),
             QStringList{QStringLiteral("Ошибка в стоке 6. Коллекции в MIF файлах не поддерживаются.")});
    QCOMPARE(run.objectText(), QStringLiteral("ЗУ1 [н1 0 0, A 1 1]"));
}

QTEST_GUILESS_MAIN(tst_MapImportMifEnds)

#include "tst_mapimport_mif_ends.moc"
