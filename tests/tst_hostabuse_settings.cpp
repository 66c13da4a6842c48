#include "mifpairs.h"
#include "resultoutline.h"

#include <QDir>
#include <QSize>
#include <QTest>

namespace {

/// What the settings of the test hold when they can be read but not written.
QVariantMap &fixedSettings()
{
    static QVariantMap settings;
    return settings;
}

bool readFixed(QIODevice & /*device*/, QSettings::SettingsMap &map)
{
    map = fixedSettings();
    return true;
}

bool writeNothing(QIODevice & /*device*/, const QSettings::SettingsMap & /*map*/)
{
    return false;
}

void store(const QString &key, const QVariant &value)
{
    QSettings().setValue(QStringLiteral("ImportObjects/") + key, value);
}

/// Loads and accepts two lines, as any user can.
QString useDialog(PluginHost &host)
{
    return host.call(fromMif, [&host](DialogDriver &driver) {
        searchNothing(driver);
        driver.type("pointPrefEdit", QStringLiteral("т"));
        driver.setNumber("pointStartNumSpin", 1);
        driver.type("objectPrefEdit", QStringLiteral("Лес"));
        driver.setNumber("objectStartNumSpin", 1);
        driver.process(writeLines(host));
        driver.accept();
    });
}

const QStringList lines{QStringLiteral("Лес1"), QStringLiteral("  т1|1.00|2.00"), QStringLiteral("  т2|3.00|4.00"),
                        QStringLiteral("Лес2"), QStringLiteral("  т2|3.00|4.00"), QStringLiteral("  т3|5.00|6.00")};

using Spoil = std::function<void(const PluginHost &)>;

} // namespace

Q_DECLARE_METATYPE(Spoil)

/// Settings that cannot be written, or hold what no dialog has stored.
class tst_HostAbuseSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lockedStoreKeepsNobodyFromWork_data();
    void lockedStoreKeepsNobodyFromWork();
    void readOnlyStoreIsRead();
    void strangeValuesKeepNobodyFromWork_data();
    void strangeValuesKeepNobodyFromWork();
    void strangeFieldsStayOnTheForm_data();
    void strangeFieldsStayOnTheForm();
};

void tst_HostAbuseSettings::lockedStoreKeepsNobodyFromWork_data()
{
    QTest::addColumn<Spoil>("spoil");

    QTest::newRow("file in place of the folder")
        << Spoil([](const PluginHost &host) { host.writeBytes(QStringLiteral("settings"), "x"); });
    QTest::newRow("folder in place of the file")
        << Spoil([](const PluginHost & /*host*/) { QDir().mkpath(QSettings().fileName()); });
    QTest::newRow("file without the right to write") << Spoil([](const PluginHost & /*host*/) {
        store(QStringLiteral("update"), false);
        QFile::setPermissions(QSettings().fileName(), QFile::ReadOwner);
    });
    QTest::newRow("file of other contents") << Spoil([](const PluginHost &host) {
        QDir().mkpath(QFileInfo(QSettings().fileName()).path());
        const QString other = host.writeBytes(QStringLiteral("other"), QByteArray("\0\xFF[[\n=%\x01", 8).repeated(99));
        QVERIFY(QFile::copy(other, QSettings().fileName()));
    });
}

void tst_HostAbuseSettings::lockedStoreKeepsNobodyFromWork()
{
    QFETCH(Spoil, spoil);
    PluginHost host;
    spoil(host);

    for (int call = 0; call < 2; ++call)
        QCOMPARE(ResultOutline::lines(useDialog(host)), lines);

    QCOMPARE(host.messages(), QStringList());
}

void tst_HostAbuseSettings::readOnlyStoreIsRead()
{
    static const QSettings::Format format = QSettings::registerFormat(QStringLiteral("fixed"), readFixed, writeNothing);
    PluginHost host;
    fixedSettings() = {{QStringLiteral("ImportObjects/objectPref"), QStringLiteral("Поле")},
                       {QStringLiteral("ImportObjects/FieldNumValueMap/3"), QStringLiteral("626")}};
    QSettings::setPath(format, QSettings::UserScope, host.path(QStringLiteral("settings")));
    QSettings::setDefaultFormat(format);
    const QString store = QSettings().fileName();
    QDir().mkpath(QFileInfo(store).path());
    QVERIFY(QFile::copy(host.writeBytes(QStringLiteral("any"), "any"), store));

    host.call(fromMif, [](DialogDriver &driver) {
        QCOMPARE(driver.find<QLineEdit>("objectPrefEdit")->text(), QStringLiteral("Поле"));
        QCOMPARE(driver.find<QLineEdit>("fieldEdit_0")->text(), QStringLiteral("626"));
        driver.type("fieldEdit_0", QString());
    });

    QCOMPARE(ResultOutline::lines(useDialog(host)), lines);
    QCOMPARE(host.messages(), QStringList());
    QFile file(store);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("any"));
}

void tst_HostAbuseSettings::strangeValuesKeepNobodyFromWork_data()
{
    QTest::addColumn<QVariantMap>("values");

    const QVariant word = QStringLiteral("много");
    const QVariant list = QStringList{QStringLiteral("а"), QStringLiteral("б")};
    const QVariant bytes = QByteArray("\0\xFF\x7F\x80", 4);
    for (const QVariant &value : {word, list, bytes, QVariant(), QVariant(-5), QVariant(1e300)}) {
        QVariantMap values;
        for (const char *const key :
             {"size", "splitterSizes", "lastPath", "searchPointDefs", "pointPref", "pointStartNum", "searchObjectDefs",
              "objectPref", "objectStartNum", "usePointFile", "update", "FieldNumValueMap", "FieldNumValueMap/3"})
            values.insert(QLatin1String(key), value);
        QTest::addRow("all are %s", value.isValid() ? value.typeName() : "nothing") << values;
    }
    const QString size = QStringLiteral("size");
    QTest::newRow("size below zero") << QVariantMap{{size, QSize(-100, -100)}};
    QTest::newRow("no size") << QVariantMap{{size, QSize(0, 0)}};
    QTest::newRow("huge size") << QVariantMap{{size, QSize(2000000000, 2000000000)}};
    QTest::newRow("very long prefixes") << QVariantMap{
        {QStringLiteral("pointPref"), QString(1000000, QLatin1Char('x'))},
        {QStringLiteral("objectPref"), QString(1000000, QLatin1Char('x'))}};
}

void tst_HostAbuseSettings::strangeValuesKeepNobodyFromWork()
{
    QFETCH(QVariantMap, values);
    PluginHost host;
    for (auto value = values.cbegin(); value != values.cend(); ++value)
        store(value.key(), *value);
    store(QStringLiteral("FieldNumValueMap/3"), QString());

    for (int call = 0; call < 2; ++call)
        QCOMPARE(ResultOutline::lines(useDialog(host)), lines);

    QCOMPARE(host.messages(), QStringList());
}

void tst_HostAbuseSettings::strangeFieldsStayOnTheForm_data()
{
    QTest::addColumn<QStringList>("keys");
    QTest::addColumn<QList<int>>("columns"); // as shown on the form
    QTest::addColumn<QString>("vertex");

    const auto filled = [](int count) {
        return QStringLiteral("  т1|1.00|2.00") + QStringLiteral("|").repeated(count) + QStringLiteral("а");
    };
    QTest::newRow("below zero") << QStringList{QStringLiteral("-2147483648"), QStringLiteral("-1")} << QList<int>{1, 1}
                                << QStringLiteral("  т1|1.00|2.00");
    QTest::newRow("largest") << QStringList{QStringLiteral("2147483647")} << QList<int>{20} << filled(17);
    QTest::newRow("beyond the largest") << QStringList{QStringLiteral("2147483648")} << QList<int>{1}
                                        << QStringLiteral("  т1|1.00|2.00");
    QTest::newRow("words") << QStringList{QStringLiteral("икс"), QStringLiteral("x/y")} << QList<int>{1}
                           << QStringLiteral("  т1|1.00|2.00");
    QStringList thousand;
    for (int column = 1000; column < 2000; ++column)
        thousand.append(QString::number(column));
    QTest::newRow("a thousand") << thousand << QList<int>{20, 20, 20, 20, 20} << filled(17);
}

void tst_HostAbuseSettings::strangeFieldsStayOnTheForm()
{
    QFETCH(QStringList, keys);
    QFETCH(QList<int>, columns);
    QFETCH(QString, vertex);
    PluginHost host;
    for (const QString &key : qAsConst(keys))
        store(QStringLiteral("FieldNumValueMap/") + key, QStringLiteral("а"));
    QList<int> shown;

    host.call(fromMif, [&shown](DialogDriver &driver) {
        for (int row = 0; row < 6; ++row) {
            const auto *const spin = driver.dialog()->findChild<QSpinBox *>(QStringLiteral("fieldSpin_%1").arg(row));
            if (spin != nullptr)
                shown.append(spin->value());
        }
    });

    QCOMPARE(shown, columns);
    QCOMPARE(ResultOutline::lines(useDialog(host)).at(1), vertex);
}

QTEST_MAIN(tst_HostAbuseSettings)
#include "tst_hostabuse_settings.moc"
