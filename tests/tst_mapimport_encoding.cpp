#include "testing.h"

#include <QTest>

namespace {

/// Takes every line of the file, twice in the objects pass.
class TextImport : public MapImport
{
public:
    using MapImport::codec;
    using MapImport::encoding;

    QStringList lines;
    int count = 0; ///< of the lines, as the importer has it at the end

protected:
    bool loadPoints() override { return takeLines(); }

    bool loadPolygons() override
    {
        takeLines();
        resetInFileStream();
        takeLines();
        count = lineNum;
        return true;
    }

private:
    bool takeLines()
    {
        for (; !stream.atEnd(); ++lineNum)
            lines.append(stream.readLine());
        return true;
    }
};

} // namespace

class tst_MapImportEncoding : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { QTextCodec::setCodecForLocale(nullptr); }

    void textIsDecoded_data();
    void textIsDecoded();
    void unknownEncodingIsPassedOver_data();
    void unknownEncodingIsPassedOver();
    void passReadsTheFileAgain_data();
    void passReadsTheFileAgain();
};

void tst_MapImportEncoding::textIsDecoded_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("Windows-1251") << QByteArray("Windows-1251") << QByteArray("\xCF\xEB\xE0\xED");
    QTest::newRow("in other letters") << QByteArray("windows-1251") << QByteArray("\xCF\xEB\xE0\xED");
    QTest::newRow("IBM866") << QByteArray("IBM866") << QByteArray("\x8F\xAB\xA0\xAD");
    QTest::newRow("UTF-8") << QByteArray("UTF-8") << QByteArray("\xD0\x9F\xD0\xBB\xD0\xB0\xD0\xBD");
}

void tst_MapImportEncoding::textIsDecoded()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, bytes);
    const TextFixture files;
    TextImport import;
    import.searchPointDefs = true;
    import.objectFileName = files.writeBytes(QStringLiteral("plan.txt"), bytes);
    import.setEncoding(name);

    QVERIFY(import.importMap());

    QCOMPARE(import.lines, (QStringList{QStringLiteral("План"), QStringLiteral("План"), QStringLiteral("План")}));
}

void tst_MapImportEncoding::unknownEncodingIsPassedOver_data()
{
    QTest::addColumn<QList<QByteArray>>("names");
    QTest::addColumn<QByteArray>("codec");

    const QByteArray locale("ISO-8859-5");
    QTest::newRow("none") << QList<QByteArray>{} << locale;
    QTest::newRow("unknown") << QList<QByteArray>{"no-such-encoding"} << locale;
    QTest::newRow("Default") << QList<QByteArray>{"Default"} << locale;
    QTest::newRow("empty") << QList<QByteArray>{""} << locale;
    QTest::newRow("known") << QList<QByteArray>{"IBM866"} << QByteArray("IBM866");
    QTest::newRow("known, then unknown") << QList<QByteArray>{"IBM866", "no-such-encoding"} << QByteArray("IBM866");
    QTest::newRow("known, then empty") << QList<QByteArray>{"IBM866", QByteArray()} << QByteArray("IBM866");
    QTest::newRow("two known") << QList<QByteArray>{"IBM866", "KOI8-R"} << QByteArray("KOI8-R");
}

void tst_MapImportEncoding::unknownEncodingIsPassedOver()
{
    QFETCH(QList<QByteArray>, names);
    QFETCH(QByteArray, codec);
    const StatusRecorder host;
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("ISO-8859-5"));
    TextImport import;

    for (const QByteArray &name : qAsConst(names))
        import.setEncoding(name);

    QCOMPARE(import.codec->name(), codec);
    QCOMPARE(import.encoding, names.isEmpty() ? QByteArray() : names.last());
    QVERIFY(host.messages().isEmpty());
}

void tst_MapImportEncoding::passReadsTheFileAgain_data()
{
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("plain") << QByteArray("first\nsecond\n");
    QTest::newRow("with carriage returns") << QByteArray("first\r\nsecond\r\n");
    QTest::newRow("without a last line end") << QByteArray("first\nsecond");
    QTest::newRow("with a byte order mark") << QByteArray("\xEF\xBB\xBF"
                                                          "first\nsecond\n");
}

void tst_MapImportEncoding::passReadsTheFileAgain()
{
    QFETCH(QByteArray, bytes);
    const TextFixture files;
    TextImport import;
    import.setEncoding("UTF-8");
    import.objectFileName = files.writeBytes(QStringLiteral("plan.txt"), bytes);

    QVERIFY(import.importMap());

    QCOMPARE(import.lines.join(QLatin1Char(' ')), QStringLiteral("first second first second"));
    QCOMPARE(import.count, 4);
}

QTEST_GUILESS_MAIN(tst_MapImportEncoding)

#include "tst_mapimport_encoding.moc"
