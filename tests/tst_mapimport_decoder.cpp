#include "mapimport_decoder.h"

#include <QRandomGenerator>
#include <QTest>
#include <QTextCodec>

namespace {

/// Bytes of which most are ASCII, in runs, with carriage returns and others among them.
QByteArray randomBytes(QRandomGenerator &random)
{
    QByteArray bytes;
    for (int i = random.bounded(60); i > 0; --i) {
        const int kind = random.bounded(8);
        if (kind == 0)
            bytes.append('\r');
        else if (kind == 1)
            bytes.append(static_cast<char>(random.bounded(256)));
        else
            bytes.append(QByteArray(random.bounded(9), static_cast<char>(random.bounded(128))));
    }
    return bytes;
}

QString decoded(QTextCodec *codec, const QByteArray &bytes)
{
    QTextCodec::ConverterState state;
    return codec->toUnicode(bytes.constData(), bytes.size(), &state).remove(QLatin1Char('\r'));
}

} // namespace

class tst_MapImportDecoder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void codecsAreToldApart_data();
    void codecsAreToldApart();
    void textIsThatOfTheCodec_data();
    void textIsThatOfTheCodec();
};

void tst_MapImportDecoder::codecsAreToldApart_data()
{
    QTest::addColumn<bool>("isCodePage");

    for (const char *const name : {"Windows-1251", "IBM866", "KOI8-R", "ISO-8859-1", "ISO-8859-5", "Windows-1252"})
        QTest::newRow(name) << true;
    for (const char *const name :
         {"UTF-8", "UTF-16", "UTF-16LE", "UTF-32", "Shift-JIS", "Big5", "GB18030", "ISO-2022-JP"})
        QTest::newRow(name) << false;
}

void tst_MapImportDecoder::codecsAreToldApart()
{
    QFETCH(bool, isCodePage);
    const QTextCodec *const codec = QTextCodec::codecForName(QTest::currentDataTag());
    QVERIFY(codec != nullptr);

    QCOMPARE(SingleByteDecoder(codec).isValid(), isCodePage);
}

void tst_MapImportDecoder::textIsThatOfTheCodec_data()
{
    QTest::addColumn<int>("mib");

    const QList<int> mibs = QTextCodec::availableMibs();
    for (const int mib : mibs) {
        QTextCodec *const codec = QTextCodec::codecForMib(mib);
        if (codec != nullptr && SingleByteDecoder(codec).isValid())
            QTest::addRow("%s, %d", codec->name().constData(), mib) << mib;
    }
}

void tst_MapImportDecoder::textIsThatOfTheCodec()
{
    QFETCH(int, mib);
    QTextCodec *const codec = QTextCodec::codecForMib(mib);
    const SingleByteDecoder codePage(codec);
    QRandomGenerator random(1);
    for (int i = 0; i < 2000; ++i) {
        const QByteArray bytes = randomBytes(random);
        QString text = QStringLiteral("н");
        codePage.appendTo(text, bytes.constData(), bytes.size());

        QCOMPARE(text, QStringLiteral("н") + decoded(codec, bytes));
    }
}

QTEST_GUILESS_MAIN(tst_MapImportDecoder)
#include "tst_mapimport_decoder.moc"
