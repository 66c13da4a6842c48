#include "miftesting.h"

#include <QDir>
#include <QTest>

class tst_MapImportMifMid : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void designationIsTheFirstField_data();
    void designationIsTheFirstField();
    void delimiterComesFromTheHeader_data();
    void delimiterComesFromTheHeader();
    void everyKindOfObjectConsumesItsRecord();
    void eachPassReadsItsOwnMidFile();
    void midNameReplacesTheLastCharacter_data();
    void midNameReplacesTheLastCharacter();
    void missingMidFileEndsTheRun_data();
    void missingMidFileEndsTheRun();
    void midFileIsNotNeededWithoutSearch();
    void recordsAreDecoded();
};

void tst_MapImportMifMid::designationIsTheFirstField_data()
{
    QTest::addColumn<QString>("record");
    QTest::addColumn<QString>("def");

    const auto row = [](const char *name, const char *record, const char *def) {
        QTest::newRow(name) << QString::fromUtf8(record) << QString::fromUtf8(def);
    };
    row("plain", "17,\"A,x", "17");
    row("one field", "Участок 5", "Участок 5");
    row("delimiter in quotes", "  \"12 A, b\" ,x", "12 A, b");
    row("spaces in quotes", "   \"  Участок 5  \" , 12", "Участок 5");
    row("spaces around", "  12  A  ,x", "12  A");
    row("quotes in the middle", "ab\"cd\",x", "abcd");
    row("quoted part in the middle ends the field", "ab \"  c,d\"ef,x", "ab c,d");
    row("doubled quotes are no escape", "\"a\"\"b\",x", "a");
    row("doubled quotes after a space", "\"said \"\"b\"\"\",x", "said");
    row("unclosed quote", "\"17,x", "17,x");
    row("tabs around the record", "\t17,x\t", "17");
    row("tabs in the field", "17\t,x", "17\t");
    row("tabs in quotes", "\" \t17 \t \",x", "\t17 \t");
    row("empty field", ",,", "");
    row("empty quotes", "\"\"17,x", "");
    row("spaces in quotes only", "\"   \",x", "");
    row("one quote", "\"", "");
}

// An empty field gives a null designation. One that the user has emptied is not null, and the result document differs.
void tst_MapImportMifMid::designationIsTheFirstField()
{
    QFETCH(QString, record);
    QFETCH(QString, def);
    MifFixture f;
    f.searchDefs();
    f.writeMif(QStringLiteral("POINT 1 2\nREGION 0"));
    f.writeMid(record + QLatin1Char('\n') + record);

    QVERIFY(f.import.importMap());

    QCOMPARE(f.import.points.first().def, def);
    QCOMPARE(f.import.points.first().def.isNull(), def.isEmpty());
    QCOMPARE(f.objectText(), def.isEmpty() ? QStringLiteral("ЗУ1") : def);
}

void tst_MapImportMifMid::delimiterComesFromTheHeader_data()
{
    QTest::addColumn<QString>("delimiter");
    QTest::addColumn<QString>("record");
    QTest::addColumn<QString>("def");

    const auto row = [](const char *name, const char *delimiter, const char *record, const char *def) {
        QTest::newRow(name) << QString::fromUtf8(delimiter) << QString::fromUtf8(record) << QString::fromUtf8(def);
    };
    row("in quotes", "\";\"", "\"1;2\",3;x", "1;2");
    row("without quotes", ";", "1,2;x", "1,2");
    row("first of several characters", "\";,\"", "1,2;x", "1,2");
    row("letter, case-sensitive", "\"x\"", "12X3x4", "12X3");
    row("none", "\"\"", "1,2;3|4\"5", "1,2;3|45");
}

void tst_MapImportMifMid::delimiterComesFromTheHeader()
{
    QFETCH(QString, delimiter);
    QFETCH(QString, record);
    MifFixture f;
    f.import.searchObjectDefs = true;
    f.files.write(QStringLiteral("plan.mif"), {QStringLiteral("VERSION 300\nCHARSET \"Neutral\""),
                                               QStringLiteral("Delimiter %1\nDATA\nREGION 0").arg(delimiter)});
    f.writeMid(record);

    QVERIFY(f.import.importMap());

    QTEST(f.objectText(), "def");
}

void tst_MapImportMifMid::everyKindOfObjectConsumesItsRecord()
{
    MifFixture f;
    f.import.searchObjectDefs = true;
    f.writeMif(QStringLiteral("LINE 0 0 1 1\nPLINE 2\n0 0\n1 1\nPLINE MULTIPLE 2\n2\n0 0\n1 1\n2\n0 0\n1 1\n"
                              "REGION 1\n3\n0 0\n1 1\n0 0\nLINE 0 0 1 1"));
    f.writeMid(QStringLiteral("A\nB\nC\n,empty\nE"));

    QVERIFY(f.import.importMap());

    QCOMPARE(f.objectText(), QStringLiteral("A [н1 0 0, н2 1 1]\nB [н1 0 0, н2 1 1]\nC [н1 0 0, н2 1 1] "
                                            "[н1 0 0, н2 1 1]\nЗУ1 [н1 0 0, н2 1 1, н1 0 0]\nE [н1 0 0, н2 1 1]"));
    QCOMPARE(f.import.objectStartNum, 2);
}

// The message of the second pass shows that record numbers restart at 1.
void tst_MapImportMifMid::eachPassReadsItsOwnMidFile()
{
    MifFixture f;
    f.searchDefs();
    f.import.pointFileName = f.files.writeBytes(QStringLiteral("points.mif"),
                                                "VERSION 300\nCHARSET x\nDELIMITER ;\nDATA\nPOINT 0 0\nPOINT 1 1\n");
    f.writeMid(QStringLiteral("1,2;3\nA"), QStringLiteral("points.mid"));
    f.writeMif(QStringLiteral("LINE 0 0 2 2\nREGION 0"));
    f.writeMid(QStringLiteral("1;2,3"));

    QVERIFY(!f.import.importMap());

    QCOMPARE(f.objectText(), QStringLiteral("1;2 [1,2 0 0, н1 2 2]\n-"));
    QCOMPARE(f.host.messages(), QStringList{QStringLiteral("Ошибка чтения обозначения объекта из строки: 2")});
}

void tst_MapImportMifMid::midNameReplacesTheLastCharacter_data()
{
    QTest::addColumn<QString>("mid");

    QTest::newRow("plan.mif") << QStringLiteral("plan.mid");
    QTest::newRow("PLAN.MIF") << QStringLiteral("PLAN.MId");
    QTest::newRow("plan") << QStringLiteral("plad");
}

void tst_MapImportMifMid::midNameReplacesTheLastCharacter()
{
    QFETCH(QString, mid);
    const QString mif = QString::fromLatin1(QTest::currentDataTag());
    MifFixture f;
    f.import.searchObjectDefs = true;
    f.import.objectFileName = f.files.path(mif);
    f.writeMif(QStringLiteral("REGION 0"), mif);
    f.writeMid(QStringLiteral("A"), mid);

    QVERIFY(f.import.importMap());

    QCOMPARE(f.objectText(), QStringLiteral("A"));
}

void tst_MapImportMifMid::missingMidFileEndsTheRun_data()
{
    QTest::addColumn<bool>("searchPointDefs");

    QTest::newRow("points") << true;
    QTest::newRow("objects") << false;
}

void tst_MapImportMifMid::missingMidFileEndsTheRun()
{
    QFETCH(bool, searchPointDefs);
    MifFixture f;
    f.import.searchPointDefs = searchPointDefs;
    f.import.searchObjectDefs = !searchPointDefs;
    f.import.objectFileName = f.files.path(QStringLiteral("%1.mif"));
    f.writeMif(QStringLiteral("POINT 1 1\nREGION 0"), QStringLiteral("%1.mif"));

    QVERIFY(!f.import.importMap());

    const QString mid = QDir::toNativeSeparators(f.files.path(QStringLiteral("%1.mid")));
    QCOMPARE(f.host.messages(), QStringList{QStringLiteral("Ошибка открытия MID файла ") + mid});
    QVERIFY(f.objects.isEmpty());
    QVERIFY(f.import.points.isEmpty());
}

void tst_MapImportMifMid::midFileIsNotNeededWithoutSearch()
{
    MifFixture f;
    f.writeMif(QStringLiteral("POINT 0 0\nLINE 0 0 1 1\nNONE\nREGION 0"));

    QVERIFY(f.import.importMap());

    QCOMPARE(f.objectText(), QStringLiteral("ЗУ1 [н1 0 0, н2 1 1]\nЗУ2"));
    QVERIFY(f.host.messages().isEmpty());
}

// The header names another encoding.
void tst_MapImportMifMid::recordsAreDecoded()
{
    MifFixture f;
    f.import.setEncoding("IBM866");
    f.import.searchObjectDefs = true;
    f.writeMif(QStringLiteral("REGION 0"));
    f.files.writeBytes(QStringLiteral("plan.mid"), "\x8F\xAB\xA0\xAD,x\n");

    QVERIFY(f.import.importMap());

    QCOMPARE(f.objectText(), QStringLiteral("План"));
}

QTEST_GUILESS_MAIN(tst_MapImportMifMid)

#include "tst_mapimport_mif_mid.moc"
