#include "dialogtesting.h"

#include <QRegularExpression>
#include <QScopeGuard>
#include <QSplitter>
#include <QTest>

class tst_DialogSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { settings.clear(); }

    void valueIsKept_data();
    void valueIsKept();
    void sizeIsKept();
    void splitterStateIsKept();
    void everyKeyIsStoredWithItsType();
    void nativeStoreKeepsEveryType();
    void storedValueIsConverted_data();
    void storedValueIsConverted();

private:
    SettingsSandbox settings;
};

namespace {

/// The stored settings, each as "key type value"; byte arrays without their value.
QStringList &storedLines()
{
    static QStringList lines;
    return lines;
}

bool writeTypes(QIODevice & /*device*/, const QSettings::SettingsMap &map)
{
    storedLines().clear();
    for (auto entry = map.cbegin(); entry != map.cend(); ++entry) {
        const QString value = entry->type() == QVariant::ByteArray ? QString() : entry->toString();
        storedLines().append(QStringLiteral("%1 %2 %3").arg(entry.key(), QLatin1String(entry->typeName()), value));
    }
    return true;
}

bool readNothing(QIODevice & /*device*/, QSettings::SettingsMap & /*map*/)
{
    return true;
}

QByteArray splitterState(const Dialog &dialog)
{
    return child<QSplitter>(dialog, "splitter")->saveState();
}

} // namespace

void tst_DialogSettings::valueIsKept_data()
{
    QTest::addColumn<QVariant>("initial");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("isKept");

    const auto row = [](const char *widget, const QVariant &initial, const QVariant &value, bool isKept = true) {
        QTest::newRow(widget) << initial << value << isKept;
    };
    row("searchPointDefsCheck", true, false);
    row("pointPrefEdit", QStringLiteral("н"), QStringLiteral("т. \"1\", ё"));
    row("pointStartNumSpin", 1, 999999999);
    row("searchObjectDefsCheck", true, false);
    row("objectPrefEdit", QStringLiteral(":ЗУ"), QStringLiteral("50:01:0000000:ЗУ"));
    row("objectStartNumSpin", 1, 17);
    row("usePointFileCheck", false, true);
    row("updateCheck", false, true);
    row("objectFileNameEdit", QString(), QStringLiteral("план.mif"), false);
    row("pointFileNameEdit", QString(), QStringLiteral("точки.mif"), false);
    row("encodingCombo", QStringLiteral("Default"), QStringLiteral("UTF-8"), false);
    row("swapXYCheck", false, true, false);
}

void tst_DialogSettings::valueIsKept()
{
    QFETCH(QVariant, initial);
    QFETCH(QVariant, value);
    QFETCH(bool, isKept);
    const char *const widget = QTest::currentDataTag();
    {
        const Dialog dialog;
        QCOMPARE(entered(dialog, widget), initial);
        enter(dialog, widget, value);
    }
    const Dialog later;

    QCOMPARE(entered(later, widget), isKept ? value : initial);
}

void tst_DialogSettings::sizeIsKept()
{
    {
        Dialog dialog;
        QCOMPARE(dialog.size(), QSize(400, 600));
        dialog.resize(1010, 707);
    }
    const Dialog later;

    QCOMPARE(later.size(), QSize(1010, 707));
}

void tst_DialogSettings::splitterStateIsKept()
{
    QByteArray state;
    {
        const Dialog dialog;
        auto *const splitter = child<QSplitter>(dialog, "splitter");
        splitter->setSizes({123, 77});
        splitter->setChildrenCollapsible(false);
        state = splitter->saveState();
        QVERIFY(state != splitterState(Dialog()));
    }
    const Dialog later;

    QCOMPARE(splitterState(later), state);
}

// A custom settings format receives the values unconverted; an INI file stores most of them as text.
void tst_DialogSettings::everyKeyIsStoredWithItsType()
{
    QSettings::setDefaultFormat(QSettings::registerFormat(QStringLiteral("types"), readNothing, writeTypes));
    {
        const Dialog dialog;
        enter(dialog, "fieldEdit_0", QStringLiteral("626"));
    }
    QSettings::setDefaultFormat(QSettings::IniFormat);

    QStringList expected = list("FieldNumValueMap/3 QString 626, lastPath QString , objectPref QString :ЗУ, "
                                "objectStartNum int 1, pointPref QString н, pointStartNum int 1, "
                                "searchObjectDefs bool true, searchPointDefs bool true, size QSize , "
                                "splitterSizes QByteArray , update bool false, usePointFile bool false");
    expected.replaceInStrings(QRegularExpression(QStringLiteral("^")), QStringLiteral("ImportObjects/"));
    QCOMPARE(storedLines(), expected);
}

// The registry of Windows has fewer types than QVariant.
void tst_DialogSettings::nativeStoreKeepsEveryType()
{
    const auto restoreFormat = qScopeGuard([] { QSettings::setDefaultFormat(QSettings::IniFormat); });
    QSettings::setDefaultFormat(QSettings::NativeFormat);
    settings.clear();
    const QString prefix = QStringLiteral("т. \"1\", ё\\");
    QByteArray state;
    {
        Dialog dialog;
        dialog.resize(1010, 707);
        child<QSplitter>(dialog, "splitter")->setSizes({123, 77});
        state = splitterState(dialog);
        enter(dialog, "pointPrefEdit", prefix);
        enter(dialog, "objectPrefEdit", QString());
        enter(dialog, "objectStartNumSpin", 999999999);
        enter(dialog, "updateCheck", true);
        enter(dialog, "fieldEdit_0", QStringLiteral("626 м²"));
    }
    const Dialog later;

    QCOMPARE(QSettings().format(), QSettings::NativeFormat);
    QCOMPARE(later.size(), QSize(1010, 707));
    QCOMPARE(splitterState(later), state);
    QCOMPARE(entered(later, "pointPrefEdit").toString(), prefix);
    QCOMPARE(entered(later, "objectPrefEdit").toString(), QString());
    QCOMPARE(entered(later, "objectStartNumSpin").toInt(), 999999999);
    QCOMPARE(entered(later, "updateCheck").toBool(), true);
    QCOMPARE(entered(later, "fieldEdit_0").toString(), QStringLiteral("626 м²"));
    QCOMPARE(QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("surveyor"), QStringLiteral("plots"))
                 .allKeys(),
             QStringList());
}

void tst_DialogSettings::storedValueIsConverted_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<QString>("widget");
    QTest::addColumn<QVariant>("value");

    const auto row = [](const char *name, const char *key, const QVariant &stored, const char *widget,
                        const QVariant &value) {
        QTest::newRow(name) << QString::fromLatin1(key) << stored << QString::fromLatin1(widget) << value;
    };
    const QString word = QStringLiteral("много");
    row("word as number", "pointStartNum", word, "pointStartNumSpin", 1);
    row("number above the limit", "objectStartNum", 1000000000, "objectStartNumSpin", 999999999);
    row("word as check state", "update", word, "updateCheck", true);
    row("zero as check state", "searchPointDefs", 0, "searchPointDefsCheck", false);
    row("list as text", "objectPref", list("а, б"), "objectPrefEdit", QString());
    row("long text", "pointPref", QString(30, QLatin1Char('a')), "pointPrefEdit", QString(20, QLatin1Char('a')));
}

void tst_DialogSettings::storedValueIsConverted()
{
    QFETCH(QString, key);
    QFETCH(QVariant, stored);
    QFETCH(QString, widget);
    QFETCH(QVariant, value);
    settings.store(key, stored);
    const Dialog dialog;

    QCOMPARE(entered(dialog, widget), value);
}

QTEST_MAIN(tst_DialogSettings)
#include "tst_dialog_settings.moc"
