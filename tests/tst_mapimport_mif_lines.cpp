#include "miftesting.h"

#include <QDir>
#include <QTest>

#include <limits>

class tst_MapImportMifLines : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void numberIsRead_data();
    void numberIsRead();
    void otherTextIsNoNumber_data();
    void otherTextIsNoNumber();
    void countIsRead_data();
    void countIsRead();
    void otherTextIsNoCount_data();
    void otherTextIsNoCount();
    void lineEndsAreAlike_data();
    void lineEndsAreAlike();
    void strangeBytesAreSurvived_data();
    void strangeBytesAreSurvived();
    void noiseEndsInAtMostOneMessage_data();
    void noiseEndsInAtMostOneMessage();
    void longLineIsPassedOver_data();
    void longLineIsPassedOver();
    void longLineIsNoVertex();
};

void tst_MapImportMifLines::numberIsRead_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("number");

    QTest::newRow("whole") << QStringLiteral("10") << 10.0;
    QTest::newRow("fraction") << QStringLiteral("1234567.125") << 1234567.125;
    QTest::newRow("below zero") << QStringLiteral("-0.5") << -0.5;
    QTest::newRow("sign") << QStringLiteral("+5") << 5.0;
    QTest::newRow("zeros in front") << QStringLiteral("0010.50") << 10.5;
    QTest::newRow("no digit before the point") << QStringLiteral(".5") << 0.5;
    QTest::newRow("no digit after the point") << QStringLiteral("5.") << 5.0;
    QTest::newRow("exponent") << QStringLiteral("1e1") << 10.0;
    QTest::newRow("exponent with sign") << QStringLiteral("2.5E+3") << 2500.0;
    QTest::newRow("exponent below zero") << QStringLiteral("-25e-2") << -0.25;
    QTest::newRow("nan") << QStringLiteral("nan") << std::numeric_limits<double>::quiet_NaN();
    QTest::newRow("inf") << QStringLiteral("inf") << std::numeric_limits<double>::infinity();
    QTest::newRow("-inf") << QStringLiteral("-inf") << -std::numeric_limits<double>::infinity();
}

void tst_MapImportMifLines::numberIsRead()
{
    QFETCH(QString, text);
    QFETCH(double, number);
    MifRun run;
    run.import.searchPointDefs = true;
    run.writeMif(QStringLiteral("POINT %1 7\nLINE %1 7 7 %1\nPLINE 2\n%1 8\n8 %1").arg(text));
    run.writeMid(QStringLiteral("A\nB\nC"));

    QVERIFY(run.import.importMap());

    QVERIFY(run.host.messages().isEmpty());
    QCOMPARE(run.objects.size(), 2);
    for (const DefPolygon &object : qAsConst(run.objects)) {
        QCOMPARE(object.contours.first().at(0).x, number);
        QCOMPARE(object.contours.first().at(1).y, number);
    }
    bool known = false;
    for (const DefPoint &point : knownPoints(run.import))
        known = known || (point.def == QLatin1String("A") && qFuzzyCompare(point.y, 7));
    QVERIFY(known);
}

void tst_MapImportMifLines::otherTextIsNoNumber_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("word") << QStringLiteral("x");
    QTest::newRow("number and word") << QStringLiteral("12m");
    QTest::newRow("comma as decimal separator") << QStringLiteral("1,5");
    QTest::newRow("group separator") << QStringLiteral("1,000.5");
    QTest::newRow("two points") << QStringLiteral("1.2.3");
    QTest::newRow("two signs") << QStringLiteral("--1");
    QTest::newRow("exponent without digits") << QStringLiteral("1e");
    QTest::newRow("exponent alone") << QStringLiteral("e5");
    QTest::newRow("exponent of other languages") << QStringLiteral("1d3");
    QTest::newRow("hexadecimal") << QStringLiteral("0x10");
    QTest::newRow("beyond a double") << QStringLiteral("1e999");
    QTest::newRow("in quotes") << QStringLiteral("\"1\"");
}

void tst_MapImportMifLines::otherTextIsNoNumber()
{
    QFETCH(QString, text);
    const QString line = QStringLiteral("Ошибка чтения линии из строки: 5");
    const QString pline = QStringLiteral("Ошибка чтения полилинии из строки: 6");
    const QString point = QStringLiteral("Ошибка чтения координат точки из строки: 5");
    const QVector<QPair<QString, QString>> cases{
        {QStringLiteral("LINE %1 2 3 4"), line},     {QStringLiteral("LINE 1 %1 3 4"), line},
        {QStringLiteral("LINE 1 2 %1 4"), line},     {QStringLiteral("LINE 1 2 3 %1"), line},
        {QStringLiteral("PLINE 2\n%1 2"), pline},    {QStringLiteral("PLINE 2\n1 %1"), pline},
        {QStringLiteral("POINT %1 2\nNONE"), point}, {QStringLiteral("POINT 1 %1\nNONE"), point},
    };
    for (const QPair<QString, QString> &c : cases) {
        MifRun run;
        run.import.searchPointDefs = c.second == point;
        run.writeMif(c.first.arg(text));
        run.writeMid(QStringLiteral("A\nB"));

        QVERIFY2(!run.import.importMap(), qPrintable(c.first));

        QCOMPARE(run.host.messages(), QStringList{c.second});
        QVERIFY(knownPoints(run.import).isEmpty());
    }
}

void tst_MapImportMifLines::countIsRead_data()
{
    QTest::addColumn<QString>("count");

    QTest::newRow("digit") << QStringLiteral("3");
    QTest::newRow("zeros in front are not octal") << QStringLiteral("003");
    QTest::newRow("sign") << QStringLiteral("+3");
}

void tst_MapImportMifLines::countIsRead()
{
    QFETCH(QString, count);
    MifRun run;
    run.writeMif(QStringLiteral("PLINE %1\n0 0\n1 0\n2 0\n"
                                "PLINE MULTIPLE %1\n%1\n0 0\n1 0\n2 0\n2\n0 0\n1 0\n2\n0 0\n1 0\n"
                                "REGION %1\n%1\n0 0\n1 0\n2 0\n3\n0 0\n1 0\n2 0\n3\n0 0\n1 0\n2 0")
                     .arg(count));

    QVERIFY(run.import.importMap());

    const QString line = QStringLiteral(" [н1 0 0, н2 1 0]");
    const QString three = QStringLiteral(" [н1 0 0, н2 1 0, н3 2 0]");
    const QString ring = QStringLiteral(" [н1 0 0, н2 1 0, н1 2 0]");
    QCOMPARE(described(run.objects),
             (QStringList{QStringLiteral("ЗУ1") + three, QStringLiteral("ЗУ2") + three + line + line,
                          QStringLiteral("ЗУ3") + ring + ring + ring}));
}

void tst_MapImportMifLines::otherTextIsNoCount_data()
{
    QTest::addColumn<QString>("count");

    QTest::newRow("word") << QStringLiteral("x");
    QTest::newRow("fraction") << QStringLiteral("3.0");
    QTest::newRow("exponent") << QStringLiteral("3e0");
    QTest::newRow("hexadecimal") << QStringLiteral("0x3");
    QTest::newRow("number and word") << QStringLiteral("3x");
    QTest::newRow("beyond 32 bits") << QStringLiteral("4294967299");
    QTest::newRow("below zero") << QStringLiteral("-3");
    QTest::newRow("in quotes") << QStringLiteral("\"3\"");
}

void tst_MapImportMifLines::otherTextIsNoCount()
{
    QFETCH(QString, count);
    const QString vertices = QStringLiteral("\n0 0\n1 0\n2 0\n3 0");
    const QString pline = QStringLiteral("Ошибка чтения полилинии из строки: %1");
    const QString region = QStringLiteral("Ошибка чтения области из строки: %1");
    const QVector<QPair<QString, QString>> cases{
        {QStringLiteral("PLINE ") + count + vertices, pline.arg(5)},
        {QStringLiteral("PLINE MULTIPLE ") + count + QStringLiteral("\n3") + vertices, pline.arg(5)},
        {QStringLiteral("PLINE MULTIPLE 2\n") + count + vertices, pline.arg(6)},
        {QStringLiteral("REGION ") + count + QStringLiteral("\n3") + vertices, region.arg(5)},
        {QStringLiteral("REGION 1\n") + count + vertices, region.arg(6)},
    };
    for (const QPair<QString, QString> &c : cases) {
        MifRun run;
        run.writeMif(c.first);

        QVERIFY2(!run.import.importMap(), qPrintable(c.first));

        QCOMPARE(run.host.messages(), QStringList{c.second});
        QCOMPARE(run.objectText(), QStringLiteral("-"));
    }
}

void tst_MapImportMifLines::lineEndsAreAlike_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("between");
    QTest::addColumn<QByteArray>("after");

    QTest::newRow("line feed") << QByteArray() << QByteArray("\n") << QByteArray("\n");
    QTest::newRow("carriage return and line feed") << QByteArray() << QByteArray("\r\n") << QByteArray("\r\n");
    QTest::newRow("no last line feed") << QByteArray() << QByteArray("\n") << QByteArray();
    QTest::newRow("no last carriage return and line feed") << QByteArray() << QByteArray("\r\n") << QByteArray();
    QTest::newRow("empty lines at the end") << QByteArray() << QByteArray("\n") << QByteArray("\n\n  \n\n");
    QTest::newRow("spaces at the ends of lines") << QByteArray() << QByteArray(" \t\n") << QByteArray(" ");
    QTest::newRow("byte order mark") << QByteArray("\xEF\xBB\xBF") << QByteArray("\n") << QByteArray("\n");
}

void tst_MapImportMifLines::lineEndsAreAlike()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, between);
    QFETCH(QByteArray, after);
    QByteArray mif(
        "VERSION 300\nCHARSET \"Neutral\"\nDELIMITER \",\"\nDATA\nREGION 1\n3\n0 0\n1 0\n0 0\nPLINE 2\n2 2\n3 3");
    QByteArray mid("\"Участок 1\",a\nУчасток 2");
    MifRun run;
    run.import.searchObjectDefs = true;
    run.files.writeBytes(QStringLiteral("plan.mif"), before + mif.replace("\n", between) + after);
    run.files.writeBytes(QStringLiteral("plan.mid"), before + mid.replace("\n", between) + after);

    QVERIFY(run.import.importMap());

    QCOMPARE(run.objectText(), QStringLiteral("Участок 1 [н1 0 0, н2 1 0, н1 0 0]\nУчасток 2 [н3 2 2, н4 3 3]"));
    QVERIFY(run.host.messages().isEmpty());
}

void tst_MapImportMifLines::strangeBytesAreSurvived_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("objects");

    const QByteArray data("VERSION 300\nCHARSET \"Neutral\"\nDELIMITER \",\"\nDATA\n");
    const QByteArray zero(1, '\0');
    const QString noMif = QStringLiteral("Ошибка. Файл %1 не соответствует формату MIF");
    const QString line = QStringLiteral("ЗУ1 [н1 0 0, н2 1 1]");
    QTest::newRow("zeros only") << QByteArray(1000, '\0') << noMif << QString();
    QTest::newRow("zero in the first word") << "VER" + zero + "SION 300\nCHARSET x\nDELIMITER ;\n"
                                            << noMif << QString();
    QTest::newRow("two bytes a character") << QByteArray("V\0E\0R\0S\0I\0O\0N\0 \0003\0\n\0", 20) << noMif << QString();
    QTest::newRow("carriage returns only") << QByteArray(data).replace('\n', '\r') << noMif << QString();
    QTest::newRow("zero in a keyword") << data + "LI" + zero + "NE 5 5 6 6\nLINE 0 0 1 1\n" << QString() << line;
    QTest::newRow("zero in a vertex") << data + "PLINE 2\n0 0\n1" + zero + " 1\n"
                                      << QStringLiteral("Ошибка чтения полилинии из строки: 7")
                                      << QStringLiteral("- [н1 0 0]");
    QTest::newRow("zero in a count") << data + "REGION 1\n3" + zero + "\n0 0\n"
                                     << QStringLiteral("Ошибка чтения области из строки: 6") << QStringLiteral("-");
    QTest::newRow("bytes of no character") << data + "\xFF\xFE\x80 \xC3\n\xD0\nLINE 0 0 1 1\n" << QString() << line;
}

void tst_MapImportMifLines::strangeBytesAreSurvived()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, message);
    QFETCH(QString, objects);
    MifRun run;
    const QString file = run.files.writeBytes(QStringLiteral("plan.mif"), bytes);
    QStringList messages;
    if (!message.isEmpty())
        messages.append(message.replace(QStringLiteral("%1"), QDir::toNativeSeparators(file)));

    QCOMPARE(run.import.importMap(), messages.isEmpty());

    QCOMPARE(run.host.messages(), messages);
    QCOMPARE(run.objectText(), objects);
}

void tst_MapImportMifLines::noiseEndsInAtMostOneMessage_data()
{
    QTest::addColumn<QByteArray>("before");

    const QByteArray data("VERSION 300\nCHARSET \"Neutral\"\nDELIMITER \",\"\nDATA\n");
    QTest::newRow("alone") << QByteArray();
    QTest::newRow("among objects") << data;
    QTest::newRow("after a keyword") << data + "PLINE ";
    QTest::newRow("among vertices") << data + "REGION 1\n4\n0 0\n";
}

void tst_MapImportMifLines::noiseEndsInAtMostOneMessage()
{
    QFETCH(QByteArray, before);
    quint32 state = 1;
    for (int i = 0; i < 20; ++i) {
        QByteArray noise;
        for (int n = 0; n < 5000; ++n) {
            state = state * 1664525 + 1013904223;
            noise.append(static_cast<char>(state >> 24));
        }
        MifRun run;
        run.import.searchObjectDefs = true;
        run.files.writeBytes(QStringLiteral("plan.mif"), before + noise);
        run.files.writeBytes(QStringLiteral("plan.mid"), noise);

        const bool ok = run.import.importMap();

        QCOMPARE(run.host.messages().size(), ok ? 0 : 1);
    }
}

void tst_MapImportMifLines::longLineIsPassedOver_data()
{
    QTest::addColumn<QString>("data");

    QTest::newRow("long word") << QString(1000000, QLatin1Char('x')) + QStringLiteral("\nLINE 0 0 1 1");
    QTest::newRow("many words") << QStringLiteral("PEN ").repeated(200000) + QStringLiteral("\nLINE 0 0 1 1");
    QTest::newRow("many spaces") << QString(1000000, QLatin1Char(' ')) + QStringLiteral("LINE 0 0 1 1");
    QTest::newRow("many words after the numbers")
        << QStringLiteral("LINE 0 0 1 1") + QStringLiteral(" x").repeated(200000);
}

void tst_MapImportMifLines::longLineIsPassedOver()
{
    QFETCH(QString, data);
    MifRun run;
    run.import.searchObjectDefs = true;
    run.writeMif(data);
    run.writeMid(QString(1000000, QLatin1Char('A')));

    QVERIFY(run.import.importMap());

    QCOMPARE(run.objects.size(), 1);
    QCOMPARE(described(run.objects.first().contours.first()),
             (QStringList{QStringLiteral("н1 0 0"), QStringLiteral("н2 1 1")}));
    QCOMPARE(run.objects.first().def.size(), 1000000);
}

void tst_MapImportMifLines::longLineIsNoVertex()
{
    MifRun run;
    run.writeMif(QStringLiteral("PLINE 2\n0 0\n1 ") + QString(100000, QLatin1Char('9')));

    QVERIFY(!run.import.importMap());

    QCOMPARE(run.host.messages(), QStringList{QStringLiteral("Ошибка чтения полилинии из строки: 7")});
    QCOMPARE(run.objectText(), QStringLiteral("- [н1 0 0]"));
}

QTEST_GUILESS_MAIN(tst_MapImportMifLines)

#include "tst_mapimport_mif_lines.moc"
