#include "binarydxf.h"

#include <QTest>
#include <QtEndian>

#include <cstring>

class tst_BinaryDxf : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sentinelIsRecognised_data();
    void sentinelIsRecognised();
    void valuesBecomeLines_data();
    void valuesBecomeLines();
    void oldFilesHaveCodesOfOneByte();
    void firstCodeMayBeAComment_data();
    void firstCodeMayBeAComment();
    void nothingIsReadAfterTheEnd();
    void damageIsReported_data();
    void damageIsReported();
    void everyTruncationIsReported();
};

namespace {

const QByteArray sentinel("AutoCAD Binary DXF\r\n\x1a\0", 22);

template <typename Number>
QByteArray bytes(Number number)
{
    QByteArray text(static_cast<int>(sizeof number), '\0');
    qToLittleEndian<Number>(number, text.data());
    return text;
}

QByteArray text(const char *value)
{
    return {value, static_cast<int>(std::strlen(value)) + 1};
}

QByteArray code(int number)
{
    return bytes(static_cast<qint16>(number));
}

const QByteArray start = code(0) + text("SECTION");
const QByteArray end = code(0) + text("EOF");

} // namespace

void tst_BinaryDxf::sentinelIsRecognised_data()
{
    QTest::addColumn<QByteArray>("start");
    QTest::addColumn<bool>("isBinary");

    QTest::newRow("binary") << sentinel + start << true;
    QTest::newRow("ASCII") << QByteArray("  0\nSECTION\n") << false;
    QTest::newRow("truncated sentinel") << sentinel.left(21) << false;
    QTest::newRow("empty") << QByteArray() << false;
}

void tst_BinaryDxf::sentinelIsRecognised()
{
    QFETCH(QByteArray, start);

    QTEST(isBinaryDxf(start), "isBinary");
}

void tst_BinaryDxf::valuesBecomeLines_data()
{
    QTest::addColumn<QByteArray>("pair");
    QTest::addColumn<QByteArray>("lines");

    QTest::newRow("text") << code(8) + text("Layer 1") << QByteArray("  8\nLayer 1\n");
    QTest::newRow("empty text") << code(1) + text("") << QByteArray("  1\n\n");
    QTest::newRow("text with line ends") << code(1) + text("a\r\nb") << QByteArray("  1\na  b\n");
    QTest::newRow("double") << code(10) + bytes(6123456.789) << QByteArray(" 10\n6123456.7889999999\n");
    QTest::newRow("double of an extrusion") << code(210) + bytes(-1.0) << QByteArray("210\n-1\n");
    QTest::newRow("16 bits") << code(70) + bytes<qint16>(-2) << QByteArray(" 70\n-2\n");
    QTest::newRow("32 bits") << code(90) + bytes<qint32>(70000) << QByteArray(" 90\n70000\n");
    QTest::newRow("64 bits") << code(160) + bytes<qint64>(5000000000) << QByteArray("160\n5000000000\n");
    QTest::newRow("8 bits") << code(290) + bytes<qint8>(1) << QByteArray("290\n1\n");
    QTest::newRow("handle") << code(330) + text("1F") << QByteArray("330\n1F\n");
    QTest::newRow("bytes") << code(310) + bytes<quint8>(2) + QByteArray("\x01\xFE") << QByteArray("310\n01FE\n");
    QTest::newRow("extended text") << code(1000) + text("x") << QByteArray("1000\nx\n");
    QTest::newRow("extended double") << code(1040) + bytes(0.5) << QByteArray("1040\n0.5\n");
    QTest::newRow("extended 16 bits") << code(1070) + bytes<qint16>(3) << QByteArray("1070\n3\n");
    QTest::newRow("extended 32 bits") << code(1071) + bytes<qint32>(4) << QByteArray("1071\n4\n");
    QTest::newRow("comment") << code(999) + text("c") << QByteArray("999\nc\n");
}

void tst_BinaryDxf::valuesBecomeLines()
{
    QFETCH(QByteArray, pair);
    QFETCH(QByteArray, lines);
    QByteArray ascii;
    QString error;

    QVERIFY(binaryDxfToAscii(sentinel + start + pair + end, ascii, error));

    QCOMPARE(ascii, "  0\nSECTION\n" + lines + "  0\nEOF\n");
    QCOMPARE(error, QString());
}

void tst_BinaryDxf::oldFilesHaveCodesOfOneByte()
{
    const QByteArray wide = bytes<quint8>(255) + code(1000) + text("x");
    const QByteArray narrow =
        bytes<quint8>(0) + text("SECTION") + bytes<quint8>(10) + bytes(1.5) + wide + bytes<quint8>(0) + text("EOF");
    QByteArray ascii;
    QString error;

    QVERIFY(binaryDxfToAscii(sentinel + narrow, ascii, error));

    QCOMPARE(ascii, QByteArray("  0\nSECTION\n 10\n1.5\n1000\nx\n  0\nEOF\n"));
}

void tst_BinaryDxf::firstCodeMayBeAComment_data()
{
    QTest::addColumn<QByteArray>("comment");
    QTest::addColumn<QByteArray>("zero");

    QTest::newRow("codes of two bytes") << code(999) + text("x") << code(0);
    QTest::newRow("codes of one byte") << bytes<quint8>(255) + code(999) + text("x") << bytes<quint8>(0);
}

void tst_BinaryDxf::firstCodeMayBeAComment()
{
    QFETCH(QByteArray, comment);
    QFETCH(QByteArray, zero);
    QByteArray ascii;
    QString error;

    QVERIFY2(binaryDxfToAscii(sentinel + comment + zero + text("EOF"), ascii, error), qPrintable(error));

    QCOMPARE(ascii, QByteArray("999\nx\n  0\nEOF\n"));
}

void tst_BinaryDxf::nothingIsReadAfterTheEnd()
{
    QByteArray ascii;
    QString error;

    QVERIFY(binaryDxfToAscii(sentinel + start + end + "\xFF\xFF", ascii, error));

    QCOMPARE(ascii, QByteArray("  0\nSECTION\n  0\nEOF\n"));
}

void tst_BinaryDxf::damageIsReported_data()
{
    QTest::addColumn<QByteArray>("damaged");

    QTest::newRow("no end") << QByteArray();
    QTest::newRow("unknown code") << code(85) + text("x") + end;
    QTest::newRow("negative code") << code(-5) + text("x") + end;
    QTest::newRow("code above all") << code(1072) + text("x") + end;
    QTest::newRow("text without end") << code(1) + QByteArray("abc");
    QTest::newRow("truncated number") << code(10) + QByteArray("\0\0\0", 3);
    QTest::newRow("fewer bytes than announced") << code(310) + bytes<quint8>(200) + QByteArray("abc");
}

void tst_BinaryDxf::damageIsReported()
{
    QFETCH(QByteArray, damaged);
    QByteArray ascii;
    QString error;

    QVERIFY(!binaryDxfToAscii(sentinel + start + damaged, ascii, error));

    QCOMPARE(ascii, QByteArray("  0\nSECTION\n"));
    QCOMPARE(error, QStringLiteral("The binary DXF file is damaged or ends early at byte 32."));
}

void tst_BinaryDxf::everyTruncationIsReported()
{
    const QByteArray whole = sentinel + start + code(10) + bytes(1.5) + code(310) + bytes<quint8>(2) + "ab" + end;

    for (int size = 0; size < whole.size(); ++size) {
        QByteArray ascii;
        QString error;
        // An allocation of its own, so that a sanitizer sees any access past the end.
        const QByteArray part(whole.constData(), size);
        QVERIFY(!binaryDxfToAscii(part, ascii, error));
        QVERIFY(!error.isEmpty());
    }
}

QTEST_APPLESS_MAIN(tst_BinaryDxf)
#include "tst_prepare_binarydxf.moc"
