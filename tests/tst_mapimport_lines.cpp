#include "mapimport_lines.h"

#include "mapimport_decoder.h"
#include "testing.h"

#include <QBuffer>
#include <QTest>
#include <QTextStream>

namespace {

/// The chunk size of QTextStream, which LineReader must match.
constexpr int chunkSize = 16384;

QByteArray randomBytes(QRandomGenerator &random, const QByteArray &alphabet, int count)
{
    QByteArray bytes;
    for (int i = 0; i < count; ++i)
        bytes.append(alphabet.isEmpty() ? static_cast<char>(random.bounded(256))
                                        : alphabet.at(random.bounded(alphabet.size())));
    return bytes;
}

/// Reads all lines. "end" follows the line after which the stream is at its end.
template <class Stream>
QStringList readAll(Stream &stream)
{
    QStringList lines;
    while (!stream.atEnd()) {
        lines.append(stream.readLine());
        if (stream.atEnd())
            lines.append(QStringLiteral("end"));
    }
    return lines;
}

QStringList readByTextStream(QIODevice &device, QTextCodec *codec)
{
    QTextStream stream(&device);
    stream.setCodec(codec);
    return readAll(stream);
}

/// A buffer that is open in text mode.
struct TextBuffer : QBuffer
{
    explicit TextBuffer(const QByteArray &bytes)
    {
        setData(bytes);
        open(QIODevice::ReadOnly | QIODevice::Text);
    }
};

/// Maps each byte to one character, but adds 1 to a non-ASCII byte that follows another one.
class StatefulCodec : public QTextCodec
{
public:
    QByteArray name() const override { return "X-Stateful"; }
    int mibEnum() const override { return -1; }

protected:
    QString convertToUnicode(const char *bytes, int size, ConverterState *state) const override
    {
        QString text;
        uint previous = state != nullptr ? state->state_data[0] : 0;
        for (int i = 0; i < size; ++i) {
            const uint byte = static_cast<uchar>(bytes[i]);
            text.append(QChar(byte >= 0x80 && previous >= 0x80 ? byte + 1 : byte));
            previous = byte;
        }
        if (state != nullptr)
            state->state_data[0] = previous;
        return text;
    }
    QByteArray convertFromUnicode(const QChar * /*text*/, int /*size*/, ConverterState * /*state*/) const override
    {
        return {};
    }
};

/// Compares the bits, so that -0 differs from 0.
bool isSameNumber(double a, double b)
{
    return memcmp(&a, &b, sizeof a) == 0;
}

/// True if toDouble() and toInt() return the same numbers and flags for \a text as QString does.
bool convertsLikeQString(const QString &text)
{
    bool ok = false;
    bool expectedOk = false;
    const double expected = text.toDouble(&expectedOk);
    if (!isSameNumber(toDouble(text, ok), expected) || ok != expectedOk)
        return false;
    const int expectedInt = text.toInt(&expectedOk);
    return toInt(text, ok) == expectedInt && ok == expectedOk;
}

} // namespace

/// The text layer, compared with QTextStream and Qt's string functions.
class tst_MapImportLines : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void singleByteCodecsAreRecognised_data();
    void singleByteCodecsAreRecognised();
    void tableDecodesLikeItsCodec();
    void statefulCodecIsNotDecodedByTable();
    void linesMatchTextStream_data();
    void linesMatchTextStream();
    void randomLinesMatchTextStream_data();
    void randomLinesMatchTextStream();
    void rewindRestartsTheText();
    void viewOutlivesTheNextLine_data();
    void viewOutlivesTheNextLine();
    void setDeviceRestartsTheReader();
    void tokensMatchSimplifiedLine();
    void everyWhiteSpaceSeparatesTokens();
    void surplusTokensAreOnlyCounted();
    void numbersMatchQString_data();
    void numbersMatchQString();
    void randomNumbersMatchQString();
};

void tst_MapImportLines::singleByteCodecsAreRecognised_data()
{
    QTest::addColumn<bool>("isSingleByte");

    for (const char *const name : {"Windows-1251", "IBM866", "ISO-8859-5"})
        QTest::newRow(name) << true;
    for (const char *const name : {"UTF-8", "UTF-16", "Shift-JIS", "ISO-2022-JP"})
        QTest::newRow(name) << false;
}

void tst_MapImportLines::singleByteCodecsAreRecognised()
{
    QTEST(SingleByteDecoder(QTextCodec::codecForName(QTest::currentDataTag())).isValid(), "isSingleByte");
}

void tst_MapImportLines::tableDecodesLikeItsCodec()
{
    QByteArray bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes.append(static_cast<char>(byte));
    const QList<int> mibs = QTextCodec::availableMibs();
    for (const int mib : mibs) {
        QTextCodec *const codec = QTextCodec::codecForMib(mib);
        const SingleByteDecoder decoder(codec);
        if (!decoder.isValid())
            continue;
        QTextCodec::ConverterState state;
        QString expected = QStringLiteral("н") + codec->toUnicode(bytes.constData(), bytes.size(), &state);
        QString text = QStringLiteral("н");
        decoder.appendTo(text, bytes.constData(), bytes.size());

        QVERIFY2(text == expected.remove(QLatin1Char('\r')), codec->name().constData());
    }
}

void tst_MapImportLines::statefulCodecIsNotDecodedByTable()
{
    auto *const codec = new StatefulCodec; // owned by Qt
    TextBuffer device("a\xC0\xC0\n");
    LineReader lines;
    lines.setDevice(&device, codec);

    QCOMPARE(lines.readLine(), QStringLiteral("a\u00C0\u00C1"));
    QVERIFY(!SingleByteDecoder(codec).isValid());
}

void tst_MapImportLines::linesMatchTextStream_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("codec");

    const auto row = [](const char *name, const QByteArray &bytes, const char *codec = "UTF-8") {
        QTest::newRow(name) << bytes << QByteArray(codec);
    };
    const QByteArray chunk(chunkSize, 'x');
    row("empty file", QByteArray());
    row("empty lines and no final line feed", "\n\na\n\nabc");
    row("carriage returns", "a\r\nb\r\n\r\rc\rd\r");
    row("only carriage returns", "\r\r\r");
    row("carriage return alone in the last chunk", chunk.left(chunkSize - 1) + "\n\r");
    row("truncated character at half a chunk", chunk.left(chunkSize / 2 - 1) + "\n\xD0");
    row("chunks of carriage returns", "a\n" + QByteArray(2 * chunkSize, '\r') + "\r");
    row("line feed in the next chunk", chunk.left(chunkSize - 1) + "\r\nb\n");
    row("line that spans chunks", "a\n" + chunk.repeated(3) + "\nb");
    row("file that ends with the chunk", chunk.left(chunkSize - 1) + "\n");
    row("character that spans two chunks", chunk.left(chunkSize - 1) + "\xD0\xBD\nb\n");
    row("byte-order mark of UTF-8", "\xEF\xBB\xBF\xD0\xBD\n1", "IBM866");
    row("byte-order mark of UTF-16", QByteArray("\xFF\xFE\x3D\x04\n\0001\0", 8), "IBM866");
    row("byte-order mark in the second chunk", chunk.left(chunkSize - 1) + "\n\xEF\xBB\xBF\xD0\xBD\n", "IBM866");
    row("UTF-16 character with the byte of a CR", QByteArray("\x0D\x04\n\0001\0", 6), "UTF-16LE");
}

void tst_MapImportLines::linesMatchTextStream()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, codec);
    QTextCodec *const textCodec = QTextCodec::codecForName(codec);
    TextBuffer device(bytes);
    const QStringList expected = readByTextStream(device, textCodec);
    device.seek(0);
    LineReader lines;
    lines.setDevice(&device, textCodec);

    QCOMPARE(readAll(lines), expected);
    QVERIFY(lines.readLine().isNull());
    QVERIFY(device.isTextModeEnabled());
}

void tst_MapImportLines::randomLinesMatchTextStream_data()
{
    QTest::addColumn<QByteArray>("codec");
    QTest::addColumn<QByteArray>("alphabet");

    for (const char *const codec : {"UTF-8", "Windows-1251", "UTF-16", "Shift-JIS"}) {
        QTest::addRow("any bytes in %s", codec) << QByteArray(codec) << QByteArray();
        QTest::addRow("many line ends in %s", codec) << QByteArray(codec) << QByteArray("\r\n\r\nab\0\xD0\xBD", 9);
    }
}

void tst_MapImportLines::randomLinesMatchTextStream()
{
    QFETCH(QByteArray, codec);
    QFETCH(QByteArray, alphabet);
    QTextCodec *const textCodec = QTextCodec::codecForName(codec);
    QRandomGenerator random(1);
    for (int i = 0; i < 60; ++i) {
        TextBuffer device(randomBytes(random, alphabet, random.bounded(i % 2 == 0 ? 100 : 50000)));
        const QStringList expected = readByTextStream(device, textCodec);
        device.seek(0);
        LineReader lines;
        lines.setDevice(&device, textCodec);

        QVERIFY2(readAll(lines) == expected, qPrintable(QString::number(i)));
    }
}

// The codec that the byte-order mark selects stays in use after a rewind.
void tst_MapImportLines::rewindRestartsTheText()
{
    TextBuffer device("\xEF\xBB\xBF\xD0\xBD\n" + QByteArray(40000, 'x') + "\nb\n\xD0");
    QTextStream stream(&device);
    stream.setCodec("IBM866");
    stream.readLine();
    stream.readLine();
    QVERIFY(stream.seek(0));
    const QStringList expected = readAll(stream);
    device.seek(0);
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

    for (const char *const codec : {"UTF-8", "Windows-1251"}) {
        QTest::addRow("long line, then a short one, %s", codec) << QByteArray(codec) << 0;
        QTest::addRow("short line, then a long one, %s", codec) << QByteArray(codec) << 1;
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
    TextBuffer device(bytes);
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

void tst_MapImportLines::setDeviceRestartsTheReader()
{
    TextBuffer first("\xED\xEE\nnever read\n");
    TextBuffer second("\xEF\xBB\xBF\xD0\xBD\nd\n");
    QTextCodec *const codec = QTextCodec::codecForName("Windows-1251");
    LineReader lines;
    lines.setDevice(&first, codec);
    QCOMPARE(lines.readLine(), QStringLiteral("но"));

    lines.setDevice(&second, codec);

    QCOMPARE(readAll(lines), (QStringList{QStringLiteral("н"), QStringLiteral("d"), QStringLiteral("end")}));
}

void tst_MapImportLines::tokensMatchSimplifiedLine()
{
    QRandomGenerator random(2);
    for (int i = 0; i < 100000; ++i) {
        const QString line = randomText(random, QStringLiteral("ab \t\r\u00A0\u3000\u200B"), random.bounded(12));
        const QStringList expected = line.simplified().split(QLatin1Char(' '));
        const QString trimmed = line.trimmed();
        Tokens tokens;
        tokens.split(trimmed);

        QCOMPARE(tokens.size(), expected.size());
        for (int token = 0; token < qMin(5, expected.size()); ++token)
            QVERIFY2(tokens[token] == expected.at(token), qPrintable(line));
    }
}

void tst_MapImportLines::everyWhiteSpaceSeparatesTokens()
{
    for (int code = 0; code <= 0xFFFF; ++code) {
        const QString line = QLatin1Char('a') + QString(2, QChar(code)) + QLatin1Char('b');
        Tokens tokens;
        tokens.split(line);

        QVERIFY2(tokens.size() == (QChar(code).isSpace() ? 2 : 1), qPrintable(QString::number(code, 16)));
    }
}

void tst_MapImportLines::surplusTokensAreOnlyCounted()
{
    const QString line = QStringLiteral("1 2 3 4 5 6 7");
    Tokens tokens;
    tokens.split(line);

    QCOMPARE(tokens.size(), 7);
    QVERIFY(tokens[4] == QLatin1String("5"));
    QVERIFY(tokens[5].isNull());
    QVERIFY(tokens[7].isNull());
}

void tst_MapImportLines::numbersMatchQString_data()
{
    QTest::addColumn<QStringList>("texts");

    const auto row = [](const char *name, const QString &texts) {
        QTest::newRow(name) << texts.split(QLatin1Char('|'));
    };
    row("signs and points", QStringLiteral("|-|+|.|-.|.5|5.|-5.|+5|--5|5-|1.2.3|-0|-0.0|0|00012|0.1|\u22125"));
    row("separators", QStringLiteral("1,5|1,000|1 000| 5|5 |5\u00A0|1_000"));
    row("exponents", QStringLiteral("1e3|1E-3|1e|1e400|1e-400|4.9e-324|179769313486231580793728971405301e276"));
    row("not finite", QStringLiteral("nan|-nan|NaN|inf|-inf|+inf|Inf|infinity"));
    row("other digits", QStringLiteral("0x10|010|\u0661|\uFF15"));
    row("letters", QStringLiteral("abc|5abc|x5|x5.5"));
    row("limit of the fast path", QStringLiteral("123456789012345|1234567890123456|9007199254740993|99999999999999.9|"
                                                 "9.99999999999999|9.999999999999999|0.000000000000001"));
    row("limits of an int", QStringLiteral("2147483647|2147483648|-2147483648|-2147483649"));
    QTest::newRow("NUL") << QStringList{QStringLiteral("5") + QChar(0), QChar(0) + QStringLiteral("5")};
}

void tst_MapImportLines::numbersMatchQString()
{
    QFETCH(QStringList, texts);
    for (const QString &text : qAsConst(texts))
        QVERIFY2(convertsLikeQString(text), qPrintable(text));
}

void tst_MapImportLines::randomNumbersMatchQString()
{
    const QString digits = QStringLiteral("0123456789");
    QRandomGenerator random(3);
    for (int i = 0; i < 400000; ++i) {
        QString text =
            randomText(random, i % 4 == 0 ? digits + QStringLiteral("..--+e, ") : digits, 1 + random.bounded(20));
        if (i % 4 != 0 && text.size() > 1)
            text[random.bounded(text.size())] = QLatin1Char(i % 4 == 1 ? '-' : '.');

        QVERIFY2(convertsLikeQString(text), qPrintable(text));
    }
}

QTEST_GUILESS_MAIN(tst_MapImportLines)
#include "tst_mapimport_lines.moc"
