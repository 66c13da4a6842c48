#include "dialogtesting.h"

#include <QSplitter>
#include <QTest>

/// The types of the values that are stored, and what becomes of values of other types.
class tst_DialogSettingsValues : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void keyIsStoredWithItsType_data();
    void keyIsStoredWithItsType();
    void strangeValueIsConverted_data();
    void strangeValueIsConverted();
    void strangeSplitterStateIsIgnored_data();
    void strangeSplitterStateIsIgnored();
    void strangeSizeDoesNoHarm();
    void longPrefixIsCut();

private:
    SettingsSandbox settings;
};

namespace {

/// What a dialog stores, a line for each key: the key, the type of its value, the value.
QStringList &storedLines()
{
    static QStringList lines;
    return lines;
}

bool writeTypes(QIODevice & /*device*/, const QSettings::SettingsMap &map)
{
    storedLines().clear();
    for (auto entry = map.cbegin(); entry != map.cend(); ++entry)
        storedLines().append(QStringLiteral("%1 %2 %3")
                                 .arg(entry.key(), QLatin1String(entry->typeName()),
                                      entry->type() == QVariant::ByteArray ? QString() : entry->toString()));
    return true;
}

bool readNothing(QIODevice & /*device*/, QSettings::SettingsMap & /*map*/)
{
    return true;
}

QByteArray splitterState(const Dialog &dialog)
{
    return child<QSplitter>(dialog, QStringLiteral("splitter"))->saveState();
}

} // namespace

void tst_DialogSettingsValues::init()
{
    settings.clear();
}

void tst_DialogSettingsValues::keyIsStoredWithItsType_data()
{
    QTest::addColumn<QString>("line");

    QTest::newRow("size") << QStringLiteral("ImportObjects/size QSize ");
    QTest::newRow("splitter") << QStringLiteral("ImportObjects/splitterSizes QByteArray ");
    QTest::newRow("last path") << QStringLiteral("ImportObjects/lastPath QString ");
    QTest::newRow("search of points") << QStringLiteral("ImportObjects/searchPointDefs bool true");
    QTest::newRow("prefix of points") << QStringLiteral("ImportObjects/pointPref QString н");
    QTest::newRow("number of points") << QStringLiteral("ImportObjects/pointStartNum int 1");
    QTest::newRow("search of objects") << QStringLiteral("ImportObjects/searchObjectDefs bool true");
    QTest::newRow("prefix of objects") << QStringLiteral("ImportObjects/objectPref QString :ЗУ");
    QTest::newRow("number of objects") << QStringLiteral("ImportObjects/objectStartNum int 1");
    QTest::newRow("file of points") << QStringLiteral("ImportObjects/usePointFile bool false");
    QTest::newRow("update") << QStringLiteral("ImportObjects/update bool false");
    QTest::newRow("field") << QStringLiteral("ImportObjects/FieldNumValueMap/3 QString 626");
}

// A format of its own sees the values as they are handed over; the usual ones turn most of them into texts.
void tst_DialogSettingsValues::keyIsStoredWithItsType()
{
    QFETCH(QString, line);
    static const QSettings::Format format = QSettings::registerFormat(QStringLiteral("types"), readNothing, writeTypes);
    QSettings::setDefaultFormat(format);
    {
        const Dialog dialog;
        enter(dialog, QStringLiteral("fieldEdit_0"), QStringLiteral("626"));
    }
    QSettings::setDefaultFormat(QSettings::IniFormat);

    QVERIFY2(storedLines().contains(line), qPrintable(storedLines().join(QLatin1Char('\n'))));
}

void tst_DialogSettingsValues::strangeValueIsConverted_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<QString>("widget");
    QTest::addColumn<QVariant>("value");

    const QVariant word = QStringLiteral("много");
    for (const QString &what : {QStringLiteral("point"), QStringLiteral("object")}) {
        const auto row = [&what](const char *name, const QVariant &stored, int value) {
            QTest::newRow((what.toLatin1() + " number: " + name).constData())
                << what + QStringLiteral("StartNum") << stored << what + QStringLiteral("StartNumSpin")
                << QVariant(value);
        };
        row("word", word, 1);
        row("nothing", QString(), 1);
        row("zero", 0, 1);
        row("negative", -5, 1);
        row("above the limit", 1000000000, 999999999);
        row("text of digits", QStringLiteral("12"), 12);
        QTest::newRow((what.toLatin1() + " prefix: number").constData())
            << what + QStringLiteral("Pref") << QVariant(5) << what + QStringLiteral("PrefEdit")
            << QVariant(QStringLiteral("5"));
        QTest::newRow((what.toLatin1() + " prefix: list").constData())
            << what + QStringLiteral("Pref") << QVariant(QStringList{QStringLiteral("а"), QStringLiteral("б")})
            << what + QStringLiteral("PrefEdit") << QVariant(QString());
        QTest::newRow((what.toLatin1() + " prefix: empty").constData())
            << what + QStringLiteral("Pref") << QVariant(QStringLiteral("")) << what + QStringLiteral("PrefEdit")
            << QVariant(QString());
    }
    for (const QString &key : {QStringLiteral("searchPointDefs"), QStringLiteral("searchObjectDefs"),
                               QStringLiteral("usePointFile"), QStringLiteral("update")}) {
        const auto row = [&key](const char *name, const QVariant &stored, bool value) {
            QTest::newRow((key.toLatin1() + ": " + name).constData())
                << key << stored << key + QStringLiteral("Check") << QVariant(value);
        };
        row("word", word, true);
        row("nothing", QStringLiteral(""), false);
        row("zero", 0, false);
        row("number", 2, true);
        row("FALSE", QStringLiteral("FALSE"), false);
        row("list", QStringList{QStringLiteral("true"), QStringLiteral("true")}, false);
    }
}

void tst_DialogSettingsValues::strangeValueIsConverted()
{
    QFETCH(QString, key);
    QFETCH(QVariant, stored);
    QFETCH(QString, widget);
    QFETCH(QVariant, value);
    const StatusRecorder host;
    settings.store(key, stored);

    const Dialog dialog;

    QCOMPARE(entered(dialog, widget), value);
    QVERIFY(host.messages().isEmpty());
}

void tst_DialogSettingsValues::strangeSplitterStateIsIgnored_data()
{
    QTest::addColumn<QVariant>("state");

    QTest::newRow("text") << QVariant(QStringLiteral("половина"));
    QTest::newRow("other bytes") << QVariant(QByteArray("\x01\x02\x03", 3));
    QTest::newRow("broken off") << QVariant(splitterState(Dialog()).left(3));
    QTest::newRow("number") << QVariant(50);
    QTest::newRow("empty") << QVariant(QByteArray(""));
}

void tst_DialogSettingsValues::strangeSplitterStateIsIgnored()
{
    QFETCH(QVariant, state);
    const QByteArray usual = splitterState(Dialog());
    settings.store(QStringLiteral("splitterSizes"), state);

    const Dialog dialog;

    QCOMPARE(splitterState(dialog), usual);
}

void tst_DialogSettingsValues::strangeSizeDoesNoHarm()
{
    settings.store(QStringLiteral("size"), QStringLiteral("большой"));
    Dialog dialog;

    dialog.show();

    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QVERIFY(dialog.height() >= dialog.minimumSizeHint().height());
    QCOMPARE(entered(dialog, QStringLiteral("pointPrefEdit")).toString(), QStringLiteral("н"));
}

void tst_DialogSettingsValues::longPrefixIsCut()
{
    settings.store(QStringLiteral("pointPref"), QString(30, QLatin1Char('a')));
    settings.store(QStringLiteral("objectPref"), QString(30, QLatin1Char('b')));
    const Dialog dialog;

    QCOMPARE(entered(dialog, QStringLiteral("pointPrefEdit")).toString(), QString(20, QLatin1Char('a')));
    QCOMPARE(entered(dialog, QStringLiteral("objectPrefEdit")).toString(), QString(30, QLatin1Char('b')));
}

QTEST_MAIN(tst_DialogSettingsValues)
#include "tst_dialog_settings_values.moc"
