#include "miftesting.h"

#include <QDir>
#include <QTest>

class tst_MapImportMif : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void headerEndsWithDataLine_data();
    void headerEndsWithDataLine();
    void invalidHeaderIsRejected_data();
    void invalidHeaderIsRejected();
    void objectIsRead_data();
    void objectIsRead();
    void pointIsRead();
    void otherLinesAreIgnored_data();
    void otherLinesAreIgnored();
    void skippedObjectConsumesOneRecord_data();
    void skippedObjectConsumesOneRecord();
    void collectionEndsEachPassWithSuccess();
    void byteOrderMarksAndCarriageReturnsAreIgnored();
};

void tst_MapImportMif::headerEndsWithDataLine_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("objects");

    const QString line = QStringLiteral("\nLINE 0 0 1 1\n");
    const QString object = QStringLiteral("A [н1 0 0, н2 1 1]");
    QTest::newRow("lower case") << QStringLiteral("version 300\ncharset x\ndelimiter ;\ndata") + line << object;
    QTest::newRow("spaces and tabs")
        << QStringLiteral("  VERSION \t 3\t\n\tCHARSET\tx\n DELIMITER   \",\"  \n\tDATA ") + line << object;
    QTest::newRow("columns and objects before DATA")
        << mifHeader + QStringLiteral("COLUMNS 1\n  DATA1 Char(5)\n\nLINE 5 5 6 6\nDATA 1\nCOLLECTION 2\nDATA") + line
        << object;
    QTest::newRow("DATA is the last line") << mifHeader + QStringLiteral("DATA") << QString();
    QTest::newRow("no DATA") << mifHeader + QStringLiteral("METADATA") + line + QStringLiteral("COLLECTION 1")
                             << QString();
}

// Header lines consume no record: the only record belongs to the only object.
void tst_MapImportMif::headerEndsWithDataLine()
{
    QFETCH(QString, text);
    MifFixture f;
    f.import.searchObjectDefs = true;
    f.files.writeBytes(QStringLiteral("plan.mif"), text.toUtf8());
    f.writeMid(QStringLiteral("A"));

    QVERIFY(f.import.importMap());

    QTEST(f.objectText(), "objects");
    QVERIFY(f.host.messages().isEmpty());
}

void tst_MapImportMif::invalidHeaderIsRejected_data()
{
    QTest::addColumn<QString>("header");

    QTest::newRow("empty file") << QString();
    QTest::newRow("two lines") << QStringLiteral("VERSION 300\nCHARSET x");
    QTest::newRow("empty line first") << QLatin1Char('\n') + mifHeader;
    QTest::newRow("wrong first keyword") << QStringLiteral("VERSIONS 300\nCHARSET x\nDELIMITER ;\n");
    QTest::newRow("wrong second keyword") << QStringLiteral("VERSION 300\nDELIMITER ;\nDELIMITER ;\n");
    QTest::newRow("wrong third keyword") << QStringLiteral("VERSION 300\nCHARSET x\nCOLUMNS 0\n");
    QTest::newRow("line without value") << QStringLiteral("VERSION\nCHARSET x\nDELIMITER ;\n");
    QTest::newRow("value of two words") << QStringLiteral("VERSION 300\nCHARSET \"Windows Cyrillic\"\nDELIMITER ;\n");
    QTest::newRow("delimiter is a tab") << QStringLiteral("VERSION 300\nCHARSET x\nDELIMITER \"\t\"\n");
}

void tst_MapImportMif::invalidHeaderIsRejected()
{
    QFETCH(QString, header);
    MifFixture f;
    f.import.searchObjectDefs = true;
    const QByteArray text = header.toUtf8() + (header.isEmpty() ? "" : "DATA\nLINE 0 0 1 1\n");
    const QString path = QDir::toNativeSeparators(f.files.writeBytes(QStringLiteral("plan.mif"), text));

    QVERIFY(!f.import.importMap());

    QVERIFY(f.objects.isEmpty());
    QCOMPARE(f.host.messages(), QStringList{QStringLiteral("Ошибка. Файл %1 не соответствует формату MIF").arg(path)});
}

void tst_MapImportMif::objectIsRead_data()
{
    QTest::addColumn<QString>("data");
    QTest::addColumn<QString>("objects");

    const auto row = [](const char *name, const char *data, const char *objects) {
        QTest::newRow(name) << QString::fromUtf8(data) << QString::fromUtf8(objects);
    };
    row("line", " \tline  0 \t2   1 3 ", "ЗУ1 [н1 0 2, н2 1 3]");
    row("keyword with a dotless i", "lıne 0 0 1 1", "ЗУ1 [н1 0 0, н2 1 1]");
    row("words after the numbers", "LINE 0 0 1 1 2 x\nPLINE 2 MULTIPLE 2\n0 0\n1 1\nREGION 0 1",
        "ЗУ1 [н1 0 0, н2 1 1]\nЗУ2 [н1 0 0, н2 1 1]\nЗУ3");
    row("polyline", "pline 2\n 0\t0\n\t1  0 ", "ЗУ1 [н1 0 0, н2 1 0]");
    row("sections", "Pline Multiple 2 9\n 2 \n0 0\n1 0\n\t3\n2 0\n3 0\n2 1",
        "ЗУ1 [н1 0 0, н2 1 0] [н3 2 0, н4 3 0, н5 2 1]");
    row("region of two rings", "Region 2\n3\n0 0\n9 0\n0 0\n4\n2 1\n3 1\n3 2\n2 1",
        "ЗУ1 [н1 0 0, н2 9 0, н1 0 0] [н3 2 1, н4 3 1, н5 3 2, н3 2 1]");
    row("ring that is not closed", "REGION 1\n3\n0 0\n1 0\n1 1", "ЗУ1 [н1 0 0, н2 1 0, н1 1 1]");
    row("region without rings", "REGION 0\nLINE 0 0 1 1", "ЗУ1\nЗУ2 [н1 0 0, н2 1 1]");
}

void tst_MapImportMif::objectIsRead()
{
    QFETCH(QString, data);
    MifFixture f;
    f.writeMif(data);

    QVERIFY(f.import.importMap());

    QTEST(f.objectText(), "objects");
    QVERIFY(f.host.messages().isEmpty());
}

// Swapping X and Y does not affect points.
void tst_MapImportMif::pointIsRead()
{
    MifFixture f;
    f.import.searchPointDefs = true;
    f.import.swapXY = true;
    f.writeMif(QStringLiteral("\t Point \t1   2 3 x\nPOINT 10.5 20.25"));
    f.writeMid(QStringLiteral(",x\nA"));

    QVERIFY(f.import.importMap());

    QCOMPARE(f.pointText(), QStringLiteral("- 1 2\nA 10.5 20.25"));
    QVERIFY(f.objects.isEmpty());
    QVERIFY(f.host.messages().isEmpty());
}

void tst_MapImportMif::otherLinesAreIgnored_data()
{
    QTest::addColumn<QString>("lines");

    QTest::newRow("empty") << QStringLiteral("\n  \n\t");
    QTest::newRow("attributes") << QStringLiteral("    PEN (1,2,0)\nSMOOTH\n  Center 1 1\nFONT (\"Arial\",0,0,0)");
    QTest::newRow("quoted text") << QStringLiteral("\"LINE 5 5 6 6\"\n\"LINE\" 5 5 6 6\n\"NONE\"");
    QTest::newRow("coordinates") << QStringLiteral("1 2\n3 4 5 6\n7");
    QTest::newRow("words like keywords") << QStringLiteral("LINES 5 5 6 6\nPOLYLINE 2\nREGION: 1\nPOINTS 1 2");
    QTest::newRow("keyword is not the first word") << QStringLiteral("1 LINE 5 5 6 6\nA REGION 1\nTO COLLECTION 1");
    QTest::newRow("second DATA") << QStringLiteral("DATA");
}

void tst_MapImportMif::otherLinesAreIgnored()
{
    QFETCH(QString, lines);
    MifFixture f;
    f.searchDefs();
    f.writeMif(QStringLiteral("%1\nPOINT 0 0\n%1\nLINE 0 0 1 1\n%1").arg(lines));
    f.writeMid(QStringLiteral("A\nB\nsurplus"));

    QVERIFY(f.import.importMap());

    QCOMPARE(f.objectText(), QStringLiteral("B [A 0 0, н1 1 1]"));
    QVERIFY(f.host.messages().isEmpty());
}

void tst_MapImportMif::skippedObjectConsumesOneRecord_data()
{
    QTest::addColumn<QString>("data");

    QTest::newRow("none") << QStringLiteral("None");
    QTest::newRow("arc") << QStringLiteral("arc 1 1 2 2\n0 90\n    PEN (1,2,0)");
    QTest::newRow("text") << QStringLiteral("TEXT\n\"REGION 1\"\n1 1 2 2");
    QTest::newRow("rectangle") << QStringLiteral("RECT 1 1 2 2");
    QTest::newRow("rounded rectangle") << QStringLiteral("RoundRect 1 1 2 2\n0.5");
    QTest::newRow("ellipse") << QStringLiteral("ELLIPSE 1 1 2 2");
    QTest::newRow("multipoint") << QStringLiteral("MULTIPOINT 2\n1 1\n2 2");
}

// An object that only the other pass reads consumes its record as well.
void tst_MapImportMif::skippedObjectConsumesOneRecord()
{
    QFETCH(QString, data);
    MifFixture f;
    f.searchDefs();
    f.writeMif(data + QStringLiteral("\nLINE 0 0 1 1\nPOINT 1 1\nREGION 0"));
    f.writeMid(QStringLiteral("unread\nB\nA\nC"));

    QVERIFY(f.import.importMap());

    QCOMPARE(f.objectText(), QStringLiteral("B [н1 0 0, A 1 1]\nC"));
    QVERIFY(f.host.messages().isEmpty());
}

// The collection consumes no record: there are only two.
void tst_MapImportMif::collectionEndsEachPassWithSuccess()
{
    MifFixture f;
    f.searchDefs();
    f.writeMif(QStringLiteral("POINT 1 1\nLINE 0 0 1 1\n\n  Collection 2\nPOINT 0 0\nLINE"));
    f.writeMid(QStringLiteral("A\nB"));

    QVERIFY(f.import.importMap());

    const QString message = QStringLiteral("Ошибка в стоке 8. Коллекции в MIF файлах не поддерживаются."); // sic
    QCOMPARE(f.host.messages(), (QStringList{message, message}));
    QCOMPARE(f.objectText(), QStringLiteral("B [н1 0 0, A 1 1]"));
}

void tst_MapImportMif::byteOrderMarksAndCarriageReturnsAreIgnored()
{
    MifFixture f;
    f.import.searchObjectDefs = true;
    const auto written = [](const QByteArray &text) { return "\xEF\xBB\xBF" + QByteArray(text).replace("\n", "\r\n"); };
    f.files.writeBytes(QStringLiteral("plan.mif"), written(mifHeader.toUtf8() + "DATA\nPLINE 2\n2 2\n3 3\n\n  \n"));
    f.files.writeBytes(QStringLiteral("plan.mid"), written("Участок 2\n"));

    QVERIFY(f.import.importMap());

    QCOMPARE(f.objectText(), QStringLiteral("Участок 2 [н1 2 2, н2 3 3]"));
    QVERIFY(f.host.messages().isEmpty());
}

QTEST_GUILESS_MAIN(tst_MapImportMif)

#include "tst_mapimport_mif.moc"
