#include "mapimport_lines.h"

#include "testing.h"

#include <QBuffer>
#include <QRandomGenerator>
#include <QTest>
#include <QTextStream>

namespace {

QByteArray randomBytes(QRandomGenerator &random, const QByteArray &alphabet, int count)
{
    QByteArray bytes;
    for (int i = 0; i < count; ++i)
        bytes.append(alphabet.isEmpty() ? static_cast<char>(random.bounded(256))
                                        : alphabet.at(random.bounded(alphabet.size())));
    return bytes;
}

/// What is read to the end of a text: each line, and whether the text ended with it.
struct Reading
{
    QStringList lines;
    QVector<bool> ends;
};

bool operator==(const Reading &a, const Reading &b)
{
    return a.lines == b.lines && a.ends == b.ends;
}

template <class Stream>
Reading readAll(Stream &stream)
{
    Reading reading;
    while (!stream.atEnd()) {
        reading.lines.append(stream.readLine());
        reading.ends.append(stream.atEnd());
    }
    return reading;
}

Reading readByTextStream(QIODevice &device, QTextCodec *codec)
{
    QTextStream stream(&device);
    stream.setCodec(codec);
    return readAll(stream);
}

/// Bit for bit, so that -0 is not 0.
bool isSameNumber(double a, double b)
{
    return memcmp(&a, &b, sizeof a) == 0;
}

} // namespace

/// The text layer is to give what the string functions give, only faster.
class tst_MapImportLines : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void linesAreThoseOfTextStream_data();
    void linesAreThoseOfTextStream();
    void randomLinesAreThoseOfTextStream_data();
    void randomLinesAreThoseOfTextStream();
    void textIsReadAgainAfterRewind();
    void viewOutlivesTheNextLine_data();
    void viewOutlivesTheNextLine();
    void otherTextIsReadInItsOwnCodec();
    void numberIsThatOfString_data();
    void numberIsThatOfString();
    void randomNumberIsThatOfString();
};

void tst_MapImportLines::linesAreThoseOfTextStream_data()
{
    QTest::addColumn<QByteArray>("codec");
    QTest::addColumn<QByteArray>("bytes");

    const QByteArray chunk(16384, 'x');
    QTest::newRow("nothing") << QByteArray("UTF-8") << QByteArray();
    QTest::newRow("one line without end") << QByteArray("UTF-8") << QByteArray("abc");
    QTest::newRow("empty lines") << QByteArray("UTF-8") << QByteArray("\n\na\n\n");
    QTest::newRow("carriage returns") << QByteArray("UTF-8") << QByteArray("a\r\nb\r\n\r\rc\rd\r");
    QTest::newRow("only carriage returns") << QByteArray("UTF-8") << QByteArray("\r\r\r");
    QTest::newRow("carriage returns at the end of a piece") << QByteArray("UTF-8") << chunk.left(16380) + "\r\r\r\r";
    QTest::newRow("carriage return alone in the last piece") << QByteArray("UTF-8") << chunk + '\r';
    QTest::newRow("carriage returns alone in two pieces")
        << QByteArray("UTF-8") << "a\n" + QByteArray(2 * 16384, '\r') + "\r";
    QTest::newRow("line and a carriage return in the last piece")
        << QByteArray("UTF-8") << chunk.left(16383) + "\n" + "\r";
    QTest::newRow("carriage return and line feed in two pieces")
        << QByteArray("UTF-8") << chunk.left(16383) + "\r\nb\n";
    QTest::newRow("line of three pieces") << QByteArray("UTF-8") << "a\n" + chunk.repeated(3) + "\nb";
    QTest::newRow("line that ends with the piece") << QByteArray("UTF-8") << chunk.left(16383) + "\nb";
    QTest::newRow("file that ends with the piece") << QByteArray("UTF-8") << chunk.left(16383) + "\n";
    QTest::newRow("character in two pieces") << QByteArray("UTF-8") << chunk.left(16383) + "\xD0\xBD\nb\n";
    QTest::newRow("half a character at the end") << QByteArray("UTF-8") << QByteArray("a\n\xD0");
    QTest::newRow("byte-order mark of UTF-8") << QByteArray("IBM866") << QByteArray("\xEF\xBB\xBF\xD0\xBD\n1");
    QTest::newRow("byte-order mark of UTF-16") << QByteArray("IBM866") << QByteArray("\xFF\xFE\x3D\x04\n\0001\0", 8);
    QTest::newRow("byte-order mark later on") << QByteArray("UTF-8") << chunk + "\n\xEF\xBB\xBF\xD0\xBD\n";
    QTest::newRow("byte-order mark in the second piece")
        << QByteArray("IBM866") << chunk.left(16383) + "\n\xEF\xBB\xBF\xD0\xBD\n";
    QTest::newRow("carriage return byte in UTF-16") << QByteArray("UTF-16LE") << QByteArray("\x0D\x04\n\0001\0", 6);
    QTest::newRow("NUL bytes") << QByteArray("Windows-1251") << QByteArray("\0\n\0a\n", 5);
}

void tst_MapImportLines::linesAreThoseOfTextStream()
{
    QFETCH(QByteArray, codec);
    QFETCH(QByteArray, bytes);
    const TextFixture files;
    QFile file(files.writeBytes(QStringLiteral("a.txt"), bytes));
    QTextCodec *const textCodec = QTextCodec::codecForName(codec);

    QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
    const Reading expected = readByTextStream(file, textCodec);
    file.close();
    QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
    LineReader lines;
    lines.setDevice(&file, textCodec);

    QCOMPARE(readAll(lines), expected);
    QVERIFY(lines.readLine().isNull());
    QVERIFY(file.isTextModeEnabled());
}

void tst_MapImportLines::randomLinesAreThoseOfTextStream_data()
{
    QTest::addColumn<QByteArray>("codec");
    QTest::addColumn<QByteArray>("alphabet");

    for (const char *const codec : {"UTF-8", "Windows-1251", "IBM866", "UTF-16", "UTF-16LE", "UTF-32", "Shift-JIS"}) {
        QTest::addRow("any bytes in %s", codec) << QByteArray(codec) << QByteArray();
        QTest::addRow("many line ends in %s", codec) << QByteArray(codec) << QByteArray("\r\n\r\nab\0\xD0\xBD", 9);
    }
}

void tst_MapImportLines::randomLinesAreThoseOfTextStream()
{
    QFETCH(QByteArray, codec);
    QFETCH(QByteArray, alphabet);
    QTextCodec *const textCodec = QTextCodec::codecForName(codec);
    QRandomGenerator random(1);
    for (int i = 0; i < 60; ++i) {
        QBuffer device;
        device.setData(randomBytes(random, alphabet, random.bounded(i % 2 == 0 ? 100 : 50000)));
        QVERIFY(device.open(QIODevice::ReadOnly | QIODevice::Text));
        const Reading expected = readByTextStream(device, textCodec);
        QVERIFY(device.seek(0));
        LineReader lines;
        lines.setDevice(&device, textCodec);

        QVERIFY2(readAll(lines) == expected, qPrintable(QString::number(i)));
    }
}

void tst_MapImportLines::textIsReadAgainAfterRewind()
{
    const QByteArray bytes = "\xEF\xBB\xBF\xD0\xBD\n" + QByteArray(40000, 'x') + "\nb\n\xD0";
    QBuffer device;
    device.setData(bytes);
    QVERIFY(device.open(QIODevice::ReadOnly | QIODevice::Text));
    QTextStream stream(&device);
    stream.setCodec("IBM866");
    stream.readLine();
    stream.readLine();
    QVERIFY(stream.seek(0));
    const Reading expected = readAll(stream);
    QVERIFY(device.seek(0));
    LineReader lines;
    lines.setDevice(&device, QTextCodec::codecForName("IBM866"));
    lines.readLine();
    lines.readLine();

    lines.rewind();

    QCOMPARE(readAll(lines), expected);
}

void tst_MapImportLines::viewOutlivesTheNextLine_data()
{
    QTest::addColumn<QByteArray>("codec");
    QTest::addColumn<int>("first");

    for (const QByteArray &codec : {QByteArray("UTF-8"), QByteArray("Windows-1251")}) {
        QTest::addRow("long line and the next, %s", codec.constData()) << codec << 0;
        QTest::addRow("line and the next, a long one, %s", codec.constData()) << codec << 1;
    }
}

void tst_MapImportLines::viewOutlivesTheNextLine()
{
    QFETCH(QByteArray, codec);
    QFETCH(int, first);
    const auto repeats = [](int line) { return line % 50 == 0 ? 10000 : 1; };
    QByteArray bytes;
    for (int i = 0; i < 20000; ++i)
        bytes += QByteArray::number(i).repeated(repeats(i)) + '\n';
    QBuffer device(&bytes);
    QVERIFY(device.open(QIODevice::ReadOnly | QIODevice::Text));
    LineReader lines;
    lines.setDevice(&device, QTextCodec::codecForName(codec));
    for (int i = 0; i < first; ++i)
        lines.readLineView();
    for (int i = first; i < 20000; i += 2) {
        const QStringView line = lines.readLineView();
        lines.readLineView();

        QVERIFY(line == QString::number(i).repeated(repeats(i)));
    }
}

// The first is left before its end.
void tst_MapImportLines::otherTextIsReadInItsOwnCodec()
{
    QByteArray first("\xED\xEE\nb\n");
    QByteArray second("\xEF\xBB\xBF\xD0\xBD\nd\n");
    QBuffer firstDevice(&first);
    QBuffer secondDevice(&second);
    QVERIFY(firstDevice.open(QIODevice::ReadOnly | QIODevice::Text));
    QVERIFY(secondDevice.open(QIODevice::ReadOnly | QIODevice::Text));
    QTextCodec *const codec = QTextCodec::codecForName("Windows-1251");
    LineReader lines;

    lines.setDevice(&firstDevice, codec);
    QCOMPARE(lines.readLine(), QStringLiteral("но"));
    lines.setDevice(&secondDevice, codec);

    QCOMPARE(lines.readLine(), QStringLiteral("н"));
    QCOMPARE(lines.readLine(), QStringLiteral("d"));
    QVERIFY(lines.atEnd());
}

void tst_MapImportLines::numberIsThatOfString_data()
{
    QTest::addColumn<QString>("text");

    const QStringList texts{QString(),
                            QStringLiteral("-"),
                            QStringLiteral("+"),
                            QStringLiteral("."),
                            QStringLiteral("-."),
                            QStringLiteral(".5"),
                            QStringLiteral("5."),
                            QStringLiteral("-5."),
                            QStringLiteral("+5"),
                            QStringLiteral("--5"),
                            QStringLiteral("5-"),
                            QStringLiteral("1.2.3"),
                            QStringLiteral("1,5"),
                            QStringLiteral("1,000"),
                            QStringLiteral("1 000"),
                            QStringLiteral(" 5"),
                            QStringLiteral("5 "),
                            QStringLiteral("-0"),
                            QStringLiteral("-0.0"),
                            QStringLiteral("0"),
                            QStringLiteral("00012"),
                            QStringLiteral("1e3"),
                            QStringLiteral("1E-3"),
                            QStringLiteral("1e"),
                            QStringLiteral("1e400"),
                            QStringLiteral("1e-400"),
                            QStringLiteral("4.9e-324"),
                            QStringLiteral("nan"),
                            QStringLiteral("-nan"),
                            QStringLiteral("NaN"),
                            QStringLiteral("inf"),
                            QStringLiteral("-inf"),
                            QStringLiteral("+inf"),
                            QStringLiteral("Inf"),
                            QStringLiteral("infinity"),
                            QStringLiteral("0x10"),
                            QStringLiteral("010"),
                            QStringLiteral("1_000"),
                            QStringLiteral("abc"),
                            QStringLiteral("5abc"),
                            QStringLiteral("x5"),
                            QStringLiteral("x5.5"),
                            QStringLiteral("\u0661"),
                            QStringLiteral("\uFF15"),
                            QStringLiteral("\u22125"),
                            QStringLiteral("5\u00A0"),
                            QStringLiteral("0.1"),
                            QStringLiteral("0.30000000000000004"),
                            QStringLiteral("123456789012345"),
                            QStringLiteral("1234567890123456"),
                            QStringLiteral("9007199254740993"),
                            QStringLiteral("99999999999999.9"),
                            QStringLiteral("9.99999999999999"),
                            QStringLiteral("9.999999999999999"),
                            QStringLiteral("0.000000000000001"),
                            QStringLiteral("0.00000000000000000000001"),
                            QStringLiteral("2147483647"),
                            QStringLiteral("2147483648"),
                            QStringLiteral("-2147483648"),
                            QStringLiteral("-2147483649"),
                            QStringLiteral("179769313486231580793728971405301e276"),
                            QStringLiteral("5") + QChar(0),
                            QChar(0) + QStringLiteral("5")};
    for (const QString &text : texts)
        QTest::addRow("«%s»", qPrintable(text)) << text;
}

void tst_MapImportLines::numberIsThatOfString()
{
    QFETCH(QString, text);
    bool ok = false;
    bool expectedOk = false;

    const double expected = text.toDouble(&expectedOk);
    QVERIFY(isSameNumber(toDouble(text, ok), expected));
    QCOMPARE(ok, expectedOk);

    const int expectedInt = text.toInt(&expectedOk);
    QCOMPARE(toInt(text, ok), expectedInt);
    QCOMPARE(ok, expectedOk);
}

void tst_MapImportLines::randomNumberIsThatOfString()
{
    const QString digits = QStringLiteral("0123456789");
    const QString odd = QStringLiteral("0123456789..--+e, ");
    QRandomGenerator random(3);
    for (int i = 0; i < 400000; ++i) {
        QString text = randomText(random, i % 4 == 0 ? odd : digits, 1 + random.bounded(20));
        if (i % 4 != 0 && text.size() > 1)
            text[random.bounded(text.size())] = QLatin1Char(i % 4 == 1 ? '-' : '.');
        bool ok = false;
        bool expectedOk = false;

        const double expected = text.toDouble(&expectedOk);
        QVERIFY2(isSameNumber(toDouble(text, ok), expected) && ok == expectedOk, qPrintable(text));
        const int expectedInt = text.toInt(&expectedOk);
        QVERIFY2(toInt(text, ok) == expectedInt && ok == expectedOk, qPrintable(text));
    }
}

QTEST_GUILESS_MAIN(tst_MapImportLines)
#include "tst_mapimport_lines.moc"
