#include "converttesting.h"

/// Drawings whose texts GDAL does not decode by itself.
class tst_PrepareConvertEncoding : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shortTextIsDecoded_data();
    void shortTextIsDecoded();
    void placeOfAnErrorIsThatInTheInput();
};

namespace {

/// Expands "code value|code value" to the lines of a drawing.
QStringList pairs(const QString &text)
{
    return QString(text).replace(QLatin1Char(' '), QLatin1Char('|')).split(QLatin1Char('|'), Qt::SkipEmptyParts);
}

/// A square with \a text in it.
QString entities(const QString &text)
{
    return QStringLiteral("0 SECTION|2 ENTITIES|0 LWPOLYLINE|8 0|90 4|70 1|10 0|20 0|10 9|20 0|10 9|20 9|10 0|20 9|"
                          "0 TEXT|8 0|10 5|20 5|40 1|1 %1|0 ENDSEC|0 EOF")
        .arg(text);
}

} // namespace

// GDAL decodes by itself only what a header names, and nothing without a header.
void tst_PrepareConvertEncoding::shortTextIsDecoded_data()
{
    QTest::addColumn<QString>("header");
    QTest::addColumn<QByteArray>("codec");
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<bool>("isGuessed");
    const auto row = [](const char *name, const char *header, const QByteArray &codec, const char *args,
                        bool isGuessed) {
        QTest::newRow(name) << QString::fromLatin1(header) << codec << arguments(args) << isGuessed;
    };

    const QByteArray ansi("windows-1251");
    const char *const western = "0 SECTION|2 HEADER|9 $ACADVER|1 AC1021|9 $DWGCODEPAGE|3 ANSI_1252|0 ENDSEC|";
    row("no header", "", ansi, "", true);
    row("no header but a comment", "999 a|", ansi, "", true);
    row("no header but tables", "0 SECTION|2 TABLES|0 ENDSEC|", ansi, "", true);
    row("none is named", "0 SECTION|2 HEADER|0 ENDSEC|", ansi, "", true);
    row("named", "0 SECTION|2 HEADER|9 $DWGCODEPAGE|3 ANSI_1251|0 ENDSEC|", ansi, "", false);
    row("DOS is named", "0 SECTION|2 HEADER|9 $DWGCODEPAGE|3 DOS866|0 ENDSEC|", "IBM866", "", false);
    row("western is named", western, ansi, "", true);
    row("unknown", "0 SECTION|2 HEADER|9 $DWGCODEPAGE|3 nonsense|0 ENDSEC|", ansi, "", true);
    row("given, no header", "", "KOI8-R", "--source-encoding KOI8-R", false);
    row("given, another is named", western, "IBM866", "--source-encoding IBM866", false);
}

void tst_PrepareConvertEncoding::shortTextIsDecoded()
{
    QFETCH(QString, header);
    QFETCH(QByteArray, codec);
    QFETCH(QStringList, args);
    QFETCH(bool, isGuessed);
    ConvertFixture fixture;
    fixture.files.write(QStringLiteral("a & b.dxf"), pairs(header + entities(QStringLiteral(":ЗУ1"))), codec);

    const ConvertRun run = fixture.run(QStringList{QStringLiteral("a & b.dxf"), QStringLiteral("out.mif")} + args);

    QCOMPARE(run.status, 0);
    QCOMPARE(fixture.imported(), QStringLiteral(":ЗУ1 [н1 0 0, н2 9 0, н3 9 9, н4 0 9, н1 0 0]"));
    QCOMPARE(run.output.section(QLatin1Char('\n'), 1, 1),
             QStringLiteral("Encoding of the input: %1%2.")
                 .arg(QString::fromLatin1(codec), isGuessed ? QStringLiteral(" (guessed)") : QString()));
}

// A header in front of the Cyrillic text must not show in the number of the line.
void tst_PrepareConvertEncoding::placeOfAnErrorIsThatInTheInput()
{
    for (const QString &layer : {QStringLiteral("Layer"), QStringLiteral("Слой")}) {
        const ConvertFixture fixture;
        fixture.files.write(QStringLiteral("a.dxf"),
                            pairs(QStringLiteral("0 SECTION|2 ENTITIES|0 TEXT|8 %1|10 x|20 y").arg(layer)),
                            "windows-1251");

        const ConvertRun run = fixture.run(arguments("a.dxf out.mif"));

        QCOMPARE(run.status, 3);
        QCOMPARE(run.messages,
                 QStringLiteral("importprepare: Cannot read \"a.dxf\" to its end: error at line 13 of a.dxf"));
    }
}

QTEST_GUILESS_MAIN(tst_PrepareConvertEncoding)
#include "tst_prepare_convert_encoding.moc"
