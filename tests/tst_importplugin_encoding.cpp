#include "pluginhost.h"

#include <QTest>
#include <QTextCodec>

namespace {

const QByteArray utf8Mark("\xEF\xBB\xBF");

QByteArray mifText()
{
    return QByteArray("VERSION 300\nCHARSET \"Neutral\"\nDELIMITER \",\"\nDATA\nLINE 1 2 3 4\n");
}

QByteArray dxfText(const QByteArray &name)
{
    return QByteArray("0\nSECTION\n2\nHEADER\n0\nENDSEC\n0\nSECTION\n2\nENTITIES\n0\nTEXT\n10\n1\n20\n1\n1\n") + name +
           QByteArray("\n0\nLINE\n10\n1\n20\n2\n11\n3\n21\n4\n0\nENDSEC\n0\nEOF\n");
}

void addChoices()
{
    QTest::addColumn<QString>("choice");
    QTest::addColumn<bool>("isTyped");
    QTest::addColumn<QByteArray>("mark");
    QTest::addColumn<QByteArray>("name"); // of the object, as bytes of the file
    QTest::addColumn<QString>("object");

    const QString meadow = QStringLiteral("Луг №7");
    const QString windows = QStringLiteral("Windows-1251");
    const QString utf8 = QStringLiteral("UTF-8");
    const QString fallback = QStringLiteral("Default");
    QTest::newRow("Windows-1251") << windows << false << QByteArray() << QByteArray("\xCB\xF3\xE3 \xB9\x37") << meadow;
    QTest::newRow("IBM866") << QStringLiteral("IBM866") << false << QByteArray() << QByteArray("\x8B\xE3\xA3 \xFC\x37")
                            << meadow;
    QTest::newRow("UTF-8") << utf8 << false << QByteArray() << meadow.toUtf8() << meadow;
    QTest::newRow("UTF-8 with a mark") << utf8 << false << utf8Mark << meadow.toUtf8() << meadow;
    QTest::newRow("Default, which is IBM866 here")
        << fallback << false << QByteArray() << QByteArray("\x8B\xE3\xA3 \xFC\x37") << meadow;
    QTest::newRow("other than the file's")
        << windows << false << QByteArray() << QByteArray("\x8B\xE3\xA3") << QStringLiteral("‹гЈ");
    QTest::newRow("KOI8-R, typed") << QStringLiteral("KOI8-R") << true << QByteArray() << QByteArray("\xEC\xD5\xC7 7")
                                   << QStringLiteral("Луг 7");
    QTest::newRow("windows-1251, typed") << QStringLiteral("windows-1251") << true << QByteArray()
                                         << QByteArray("\xCB\xF3\xE3") << QStringLiteral("Луг");
    QTest::newRow("unknown name, so Default")
        << QStringLiteral("KOI9") << true << QByteArray() << QByteArray("\x8B\xE3\xA3") << QStringLiteral("Луг");
    QTest::newRow("no name, so Default") << QString() << true << QByteArray() << QByteArray("\x8B\xE3\xA3")
                                         << QStringLiteral("Луг");
}

void choose(const DialogDriver &driver, const QString &choice, bool isTyped)
{
    if (isTyped)
        driver.typeEncoding(choice);
    else
        driver.chooseEncoding(choice);
}

} // namespace

class tst_ImportPluginEncoding : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QTextCodec::setCodecForLocale(QTextCodec::codecForName("IBM866")); }

    void defaultStandsFirst();
    void mifIsReadAsChosen_data() { addChoices(); }
    void mifIsReadAsChosen();
    void dxfIsReadAsChosen_data() { addChoices(); }
    void dxfIsReadAsChosen();
    void choiceIsNotRemembered();
};

void tst_ImportPluginEncoding::defaultStandsFirst()
{
    PluginHost host;

    host.call(fromMif, [](DialogDriver &driver) {
        const auto *const combo = driver.find<QComboBox>("encodingCombo");
        QStringList names;
        for (int i = 0; i < combo->count(); ++i)
            names.append(combo->itemText(i));
        QCOMPARE(names, (QStringList{QStringLiteral("Default"), QStringLiteral("Windows-1251"),
                                     QStringLiteral("IBM866"), QStringLiteral("UTF-8")}));
        QCOMPARE(combo->currentText(), QStringLiteral("Default"));
    });
}

void tst_ImportPluginEncoding::mifIsReadAsChosen()
{
    QFETCH(QString, choice);
    QFETCH(bool, isTyped);
    QFETCH(QByteArray, mark);
    QFETCH(QByteArray, name);
    QFETCH(QString, object);
    PluginHost host;
    host.writeBytes(QStringLiteral("a.mid"), mark + '"' + name + "\",1\n");

    host.call(fromMif, [&](DialogDriver &driver) {
        choose(driver, choice, isTyped);
        driver.process(host.writeBytes(QStringLiteral("a.mif"), mark + mifText()));
        QCOMPARE(DialogDriver::shown(driver.list()), QStringList{object});
    });

    QCOMPARE(host.messages(), QStringList());
}

void tst_ImportPluginEncoding::dxfIsReadAsChosen()
{
    QFETCH(QString, choice);
    QFETCH(bool, isTyped);
    QFETCH(QByteArray, mark);
    QFETCH(QByteArray, name);
    QFETCH(QString, object);
    PluginHost host;

    host.call(fromDxf, [&](DialogDriver &driver) {
        choose(driver, choice, isTyped);
        driver.process(host.writeBytes(QStringLiteral("a.dxf"), mark + dxfText(name)));
        QCOMPARE(DialogDriver::shown(driver.list()), QStringList{object});
    });

    QCOMPARE(host.messages(), QStringList());
}

void tst_ImportPluginEncoding::choiceIsNotRemembered()
{
    PluginHost host;
    host.call(fromMif, [](DialogDriver &driver) {
        driver.chooseEncoding(QStringLiteral("UTF-8"));
        driver.accept();
    });

    host.call(fromMif, [](DialogDriver &driver) {
        QCOMPARE(driver.find<QComboBox>("encodingCombo")->currentText(), QStringLiteral("Default"));
    });
}

QTEST_MAIN(tst_ImportPluginEncoding)
#include "tst_importplugin_encoding.moc"
