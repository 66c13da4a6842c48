#include "miftesting.h"

#include <QDir>
#include <QTest>

class tst_MapImportMifMid : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { QTextCodec::setCodecForLocale(nullptr); }

    void designationIsTheFirstField_data();
    void designationIsTheFirstField();
    void delimiterComesFromTheHeader_data();
    void delimiterComesFromTheHeader();
    void delimiterComesFromEachHeader();
    void nameDiffersInTheLastCharacter_data();
    void nameDiffersInTheLastCharacter();
    void missingFileEndsTheRun_data();
    void missingFileEndsTheRun();
    void fileIsNotNeededUnlessSearched_data();
    void fileIsNotNeededUnlessSearched();
    void recordsAreDecoded_data();
    void recordsAreDecoded();
    void unknownEncodingIsThatOfTheLocale_data();
    void unknownEncodingIsThatOfTheLocale();
};

void tst_MapImportMifMid::designationIsTheFirstField_data()
{
    QTest::addColumn<QString>("record");
    QTest::addColumn<QString>("def");

    QTest::newRow("plain") << QStringLiteral("17,Pole") << QStringLiteral("17");
    QTest::newRow("one field") << QStringLiteral("Участок 5") << QStringLiteral("Участок 5");
    QTest::newRow("quoted") << QStringLiteral("\"A1\",x") << QStringLiteral("A1");
    QTest::newRow("delimiter in quotes") << QStringLiteral("  \"12 A, b\" ,x") << QStringLiteral("12 A, b");
    QTest::newRow("spaces in quotes") << QStringLiteral("   \"  Участок 5  \" , 12") << QStringLiteral("Участок 5");
    QTest::newRow("spaces around") << QStringLiteral("  17  ,x") << QStringLiteral("17");
    QTest::newRow("spaces within") << QStringLiteral("12  A,x") << QStringLiteral("12  A");
    QTest::newRow("other delimiters") << QStringLiteral("1;2|3\t4,x") << QStringLiteral("1;2|3\t4");
    QTest::newRow("second field is not looked at") << QStringLiteral("17,\"A,x") << QStringLiteral("17");

    QTest::newRow("quotes in the middle") << QStringLiteral("ab\"cd\",x") << QStringLiteral("abcd");
    QTest::newRow("quotes in the middle close the field") << QStringLiteral("ab\"c,d\"ef,x") << QStringLiteral("abc,d");
    QTest::newRow("spaces after quotes in the middle") << QStringLiteral("ab \"  cd\",x") << QStringLiteral("ab cd");
    QTest::newRow("text after closing quotes") << QStringLiteral("\"A\"B,x") << QStringLiteral("A");
    QTest::newRow("doubled quotes are no escape") << QStringLiteral("\"a\"\"b\",x") << QStringLiteral("a");
    QTest::newRow("doubled quotes after a space") << QStringLiteral("\"said \"\"b\"\"\",x") << QStringLiteral("said");
    QTest::newRow("quotes are not closed") << QStringLiteral("\"17,x") << QStringLiteral("17,x");
    QTest::newRow("apostrophes") << QStringLiteral("'17,x'") << QStringLiteral("'17");

    QTest::newRow("tabs around the record") << QStringLiteral("\t17,x\t") << QStringLiteral("17");
    QTest::newRow("tab before the delimiter") << QStringLiteral("17\t,x") << QStringLiteral("17\t");
    QTest::newRow("tabs in quotes") << QStringLiteral("\" \t17 \t \",x") << QStringLiteral("\t17 \t");
    QTest::newRow("no-break spaces in quotes")
        << QStringLiteral("\" \u00A017\u00A0 \"") << QStringLiteral("\u00A017\u00A0");

    QTest::newRow("no text between delimiters") << QStringLiteral(",,") << QString();
    QTest::newRow("no text before the delimiter") << QStringLiteral("  ,x") << QString();
    QTest::newRow("two quotes") << QStringLiteral("\"\"") << QString();
    QTest::newRow("two quotes and a field") << QStringLiteral("\"\",x") << QString();
    QTest::newRow("two quotes and text") << QStringLiteral("\"\"17,x") << QString();
    QTest::newRow("spaces between quotes") << QStringLiteral("\"   \",x") << QString();
    QTest::newRow("one quote") << QStringLiteral("\"") << QString();
}

// A designation that holds nothing is null: the result tells it from one that the user has emptied.
void tst_MapImportMifMid::designationIsTheFirstField()
{
    QFETCH(QString, record);
    QFETCH(QString, def);
    MifRun run;
    run.import.searchPointDefs = true;
    run.import.searchObjectDefs = true;
    run.import.objectPref = QStringLiteral("generated");
    run.writeMif(QStringLiteral("POINT 1 2\nLINE 5 5 6 6"));
    run.writeMid(record + QLatin1Char('\n') + record);

    QVERIFY(run.import.importMap());

    QCOMPARE(knownPoints(run.import).first().def, def);
    QCOMPARE(knownPoints(run.import).first().def.isNull(), def.isEmpty());
    QCOMPARE(run.objects.size(), 1);
    QCOMPARE(run.objects.first().def, def.isEmpty() ? QStringLiteral("generated1") : def);
    QVERIFY(run.host.messages().isEmpty());
}

void tst_MapImportMifMid::delimiterComesFromTheHeader_data()
{
    QTest::addColumn<QString>("delimiter");
    QTest::addColumn<QString>("record");
    QTest::addColumn<QString>("def");

    QTest::newRow("comma") << QStringLiteral("\",\"") << QStringLiteral("1;2,x") << QStringLiteral("1;2");
    QTest::newRow("semicolon") << QStringLiteral("\";\"") << QStringLiteral("1,2;x") << QStringLiteral("1,2");
    QTest::newRow("without quotes") << QStringLiteral(";") << QStringLiteral("1,2;x") << QStringLiteral("1,2");
    QTest::newRow("half in quotes") << QStringLiteral("\"|") << QStringLiteral("1,2|x") << QStringLiteral("1,2");
    QTest::newRow("first of many") << QStringLiteral("\";,\"") << QStringLiteral("1,2;x") << QStringLiteral("1,2");
    QTest::newRow("letter") << QStringLiteral("\"x\"") << QStringLiteral("12x34,X") << QStringLiteral("12");
    QTest::newRow("letter in its own case")
        << QStringLiteral("\"x\"") << QStringLiteral("12X34") << QStringLiteral("12X34");
    QTest::newRow("Cyrillic letter") << QStringLiteral("\"Ж\"") << QStringLiteral("12Ж34") << QStringLiteral("12");
    QTest::newRow("in quotes in the record")
        << QStringLiteral("\";\"") << QStringLiteral("\"1;2\";x") << QStringLiteral("1;2");
    QTest::newRow("none") << QStringLiteral("\"\"") << QStringLiteral("1,2;3|4") << QStringLiteral("1,2;3|4");
    QTest::newRow("none, one quote") << QStringLiteral("\"") << QStringLiteral("1,2") << QStringLiteral("1,2");
    QTest::newRow("none, and a quoted field")
        << QStringLiteral("\"\"") << QStringLiteral("\"1,2\",x") << QStringLiteral("1,2");
}

void tst_MapImportMifMid::delimiterComesFromTheHeader()
{
    QFETCH(QString, delimiter);
    QFETCH(QString, record);
    QFETCH(QString, def);
    MifRun run;
    run.import.searchObjectDefs = true;
    run.files.write(QStringLiteral("plan.mif"),
                    {QStringLiteral("VERSION 300"), QStringLiteral("CHARSET \"Neutral\""),
                     QStringLiteral("Delimiter ") + delimiter, QStringLiteral("DATA"), QStringLiteral("REGION 0")});
    run.writeMid(record);

    QVERIFY(run.import.importMap());

    QCOMPARE(run.objectText(), def);
    QVERIFY(run.host.messages().isEmpty());
}

void tst_MapImportMifMid::delimiterComesFromEachHeader()
{
    MifRun run;
    run.import.searchPointDefs = true;
    run.import.searchObjectDefs = true;
    run.import.pointFileName = run.files.writeBytes(
        QStringLiteral("points.mif"), "VERSION 300\nCHARSET \"Neutral\"\nDELIMITER \";\"\nDATA\nPOINT 0 0\n");
    run.writeMid(QStringLiteral("1,2;3"), QStringLiteral("points.mid"));
    run.writeMif(QStringLiteral("LINE 0 0 1 1"));
    run.writeMid(QStringLiteral("1;2,3"));

    QVERIFY(run.import.importMap());

    QCOMPARE(run.objectText(), QStringLiteral("1;2 [1,2 0 0, н1 1 1]"));
}

void tst_MapImportMifMid::nameDiffersInTheLastCharacter_data()
{
    QTest::addColumn<QString>("mif");
    QTest::addColumn<QString>("mid");

    QTest::newRow("small letters") << QStringLiteral("plan.mif") << QStringLiteral("plan.mid");
    QTest::newRow("capitals") << QStringLiteral("PLAN.MIF") << QStringLiteral("PLAN.MId");
    QTest::newRow("one capital") << QStringLiteral("plan.miF") << QStringLiteral("plan.mid");
    QTest::newRow("another ending") << QStringLiteral("plan.txt") << QStringLiteral("plan.txd");
    QTest::newRow("no ending") << QStringLiteral("план") << QStringLiteral("плаd");
    QTest::newRow("dots and spaces") << QStringLiteral("plan 1.mif.mif") << QStringLiteral("plan 1.mif.mid");
}

void tst_MapImportMifMid::nameDiffersInTheLastCharacter()
{
    QFETCH(QString, mif);
    QFETCH(QString, mid);
    MifRun run;
    run.import.searchObjectDefs = true;
    run.import.objectFileName = run.files.path(mif);
    run.writeMif(QStringLiteral("REGION 0"), mif);
    run.writeMid(QStringLiteral("A"), mid);

    QVERIFY(run.import.importMap());

    QCOMPARE(run.objectText(), QStringLiteral("A"));
    QVERIFY(run.host.messages().isEmpty());
}

void tst_MapImportMifMid::missingFileEndsTheRun_data()
{
    QTest::addColumn<bool>("searchPointDefs");
    QTest::addColumn<QString>("mif");
    QTest::addColumn<QString>("there");
    QTest::addColumn<QString>("told");

    QTest::newRow("objects") << false << QStringLiteral("plan.mif") << QString() << QStringLiteral("plan.mid");
    QTest::newRow("points") << true << QStringLiteral("plan.mif") << QString() << QStringLiteral("plan.mid");
#ifndef Q_OS_WIN
    QTest::newRow("name in capitals") << false << QStringLiteral("PLAN.MIF") << QStringLiteral("PLAN.MID")
                                      << QStringLiteral("PLAN.MId");
#endif
    QTest::newRow("place marker in the name")
        << false << QStringLiteral("%1.mif") << QString() << QStringLiteral("%1.mid");
}

// One message, and nothing is read, though the MIF file holds a point and an object.
void tst_MapImportMifMid::missingFileEndsTheRun()
{
    QFETCH(bool, searchPointDefs);
    QFETCH(QString, mif);
    QFETCH(QString, there);
    QFETCH(QString, told);
    MifRun run;
    run.import.searchPointDefs = searchPointDefs;
    run.import.searchObjectDefs = !searchPointDefs;
    run.import.objectFileName = run.files.path(mif);
    run.writeMif(QStringLiteral("POINT 1 1\nLINE 0 0 1 1"), mif);
    if (!there.isEmpty())
        run.writeMid(QStringLiteral("A\nB"), there);

    QVERIFY(!run.import.importMap());

    const QString name = QDir::toNativeSeparators(run.files.path(told));
    QCOMPARE(run.host.messages(), QStringList{QStringLiteral("Ошибка открытия MID файла ") + name});
    QVERIFY(run.objects.isEmpty());
    QVERIFY(knownPoints(run.import).isEmpty());
}

void tst_MapImportMifMid::fileIsNotNeededUnlessSearched_data()
{
    QTest::addColumn<QString>("records");

    QTest::newRow("missing") << QString();
    QTest::newRow("there") << QStringLiteral("A\nB\nC");
    QTest::newRow("too short") << QStringLiteral("A");
}

void tst_MapImportMifMid::fileIsNotNeededUnlessSearched()
{
    QFETCH(QString, records);
    MifRun run;
    run.writeMif(QStringLiteral("POINT 0 0\nLINE 0 0 1 1\nPLINE 2\n0 0\n1 1\nREGION 0\nNONE"));
    if (!records.isEmpty())
        run.writeMid(records);

    QVERIFY(run.import.importMap());

    QCOMPARE(run.objectText(), QStringLiteral("ЗУ1 [н1 0 0, н2 1 1]\nЗУ2 [н1 0 0, н2 1 1]\nЗУ3"));
    QVERIFY(run.host.messages().isEmpty());
}

void tst_MapImportMifMid::recordsAreDecoded_data()
{
    QTest::addColumn<QByteArray>("encoding");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("def");

    const QString def = QStringLiteral("План");
    QTest::newRow("Windows-1251") << QByteArray("Windows-1251") << QByteArray("\xCF\xEB\xE0\xED") << def;
    QTest::newRow("IBM866") << QByteArray("IBM866") << QByteArray("\x8F\xAB\xA0\xAD") << def;
    QTest::newRow("UTF-8") << QByteArray("UTF-8") << QByteArray("\xD0\x9F\xD0\xBB\xD0\xB0\xD0\xBD") << def;
    QTest::newRow("another one than the header says")
        << QByteArray("IBM866") << QByteArray("\xCF\xEB\xE0\xED") << QStringLiteral("╧ырэ");
}

void tst_MapImportMifMid::recordsAreDecoded()
{
    QFETCH(QByteArray, encoding);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, def);
    MifRun run;
    run.import.setEncoding(encoding);
    run.import.searchPointDefs = true;
    run.import.searchObjectDefs = true;
    run.writeMif(QStringLiteral("POINT 0 0\nLINE 0 0 1 1"));
    run.files.writeBytes(QStringLiteral("plan.mid"), bytes + ",x\n\"" + bytes + "\",x\n");

    QVERIFY(run.import.importMap());

    QCOMPARE(run.objectText(), QStringLiteral("%1 [%1 0 0, н1 1 1]").arg(def));
}

void tst_MapImportMifMid::unknownEncodingIsThatOfTheLocale_data()
{
    QTest::addColumn<QByteArray>("encoding");

    QTest::newRow("Default") << QByteArray("Default");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("unknown") << QByteArray("no-such-encoding");
}

void tst_MapImportMifMid::unknownEncodingIsThatOfTheLocale()
{
    QFETCH(QByteArray, encoding);
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("Windows-1251"));
    const StatusRecorder host;
    const TextFixture files;
    QVector<DefPolygon> objects;
    MifImport import;
    import.objects = &objects;
    import.searchObjectDefs = true;
    import.setEncoding(encoding);
    import.objectFileName = files.writeBytes(QStringLiteral("plan.mif"),
                                             "VERSION 300\nCHARSET \"Neutral\"\nDELIMITER \",\"\nDATA\nREGION 0\n");
    files.writeBytes(QStringLiteral("plan.mid"), "\xCF\xEB\xE0\xED\n");

    QVERIFY(import.importMap());

    QCOMPARE(described(objects), QStringList{QStringLiteral("План")});
    QVERIFY(host.messages().isEmpty());
}

QTEST_GUILESS_MAIN(tst_MapImportMifMid)

#include "tst_mapimport_mif_mid.moc"
