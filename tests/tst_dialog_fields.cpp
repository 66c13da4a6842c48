#include "fieldtesting.h"

#include <QTest>

/// The extra fields in the settings.
class tst_DialogFields : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void storedKeysAreColumns_data();
    void storedKeysAreColumns();
    void loadingForgetsTheFormerMap();
    void mapIsStoredByColumn_data();
    void mapIsStoredByColumn();
    void savingRemovesFormerKeys();
    void groupIsLeftAsItWas();
    void storedFieldsAreShown_data();
    void storedFieldsAreShown();
    void fieldsAreKept();
    void emptiedFieldIsForgotten();

private:
    SettingsSandbox settings;
};

void tst_DialogFields::init()
{
    settings.clear();
}

void tst_DialogFields::storedKeysAreColumns_data()
{
    QTest::addColumn<QVariantMap>("stored");
    QTest::addColumn<FieldMap>("map");

    const QString a = QStringLiteral("а");
    const QString b = QStringLiteral("б");
    QTest::newRow("none") << QVariantMap() << FieldMap();
    QTest::newRow("one") << QVariantMap{{QStringLiteral("3"), a}} << FieldMap{{3, a}};
    QTest::newRow("by number, not by text")
        << QVariantMap{{QStringLiteral("10"), a}, {QStringLiteral("9"), b}} << FieldMap{{9, b}, {10, a}};
    QTest::newRow("word") << QVariantMap{{QStringLiteral("третий"), a}} << FieldMap{{0, a}};
    QTest::newRow("fraction") << QVariantMap{{QStringLiteral("1.5"), a}} << FieldMap{{0, a}};
    QTest::newRow("hexadecimal") << QVariantMap{{QStringLiteral("0x10"), a}} << FieldMap{{0, a}};
    QTest::newRow("leading zero") << QVariantMap{{QStringLiteral("010"), a}} << FieldMap{{10, a}};
    QTest::newRow("negative") << QVariantMap{{QStringLiteral("-3"), a}} << FieldMap{{-3, a}};
    QTest::newRow("largest") << QVariantMap{{QStringLiteral("2147483647"), a}} << FieldMap{{2147483647, a}};
    QTest::newRow("too large") << QVariantMap{{QStringLiteral("2147483648"), a}} << FieldMap{{0, a}};
    QTest::newRow("later key of one column wins")
        << QVariantMap{{QStringLiteral("0"), a}, {QStringLiteral("x"), b}} << FieldMap{{0, b}};
    QTest::newRow("empty text") << QVariantMap{{QStringLiteral("3"), QStringLiteral("")}}
                                << FieldMap{{3, QStringLiteral("")}};
    QTest::newRow("number as text") << QVariantMap{{QStringLiteral("3"), 626}} << FieldMap{{3, QStringLiteral("626")}};
    QTest::newRow("list") << QVariantMap{{QStringLiteral("3"), QStringList{a, b}}} << FieldMap{{3, QString()}};
    QTest::newRow("group inside") << QVariantMap{{QStringLiteral("3/4"), a}} << FieldMap();
}

void tst_DialogFields::storedKeysAreColumns()
{
    QFETCH(QVariantMap, stored);
    QFETCH(FieldMap, map);
    for (auto field = stored.cbegin(); field != stored.cend(); ++field)
        settings.store(QStringLiteral("FieldNumValueMap/") + field.key(), *field);
    QSettings store;
    store.beginGroup(QStringLiteral("ImportObjects"));

    FieldMap loaded;
    loadFieldMap(store, loaded);

    QCOMPARE(loaded, map);
}

void tst_DialogFields::loadingForgetsTheFormerMap()
{
    QSettings store;
    store.beginGroup(QStringLiteral("ImportObjects"));
    FieldMap map{{7, QStringLiteral("прежнее")}};

    loadFieldMap(store, map);

    QVERIFY(map.isEmpty());
}

void tst_DialogFields::mapIsStoredByColumn_data()
{
    QTest::addColumn<FieldMap>("map");
    QTest::addColumn<QStringList>("keys");

    const QString a = QStringLiteral("а");
    QTest::newRow("none") << FieldMap() << QStringList();
    QTest::newRow("two") << FieldMap{{4, a}, {6, QStringLiteral("в")}} << list("4 а, 6 в");
    QTest::newRow("empty text") << FieldMap{{4, QStringLiteral("")}, {5, QString()}, {6, a}} << list("6 а");
    QTest::newRow("blank text") << FieldMap{{4, QStringLiteral(" ")}} << QStringList{QStringLiteral("4  ")};
    QTest::newRow("negative and largest") << FieldMap{{-1, a}, {2147483647, a}} << list("-1 а, 2147483647 а");
    QTest::newRow("more than five") << FieldMap{{1, a}, {2, a}, {3, a}, {4, a}, {5, a}, {6, a}}
                                    << list("1 а, 2 а, 3 а, 4 а, 5 а, 6 а");
}

void tst_DialogFields::mapIsStoredByColumn()
{
    QFETCH(FieldMap, map);
    QFETCH(QStringList, keys);
    QSettings store;
    store.beginGroup(QStringLiteral("ImportObjects"));

    saveFieldMap(store, map);

    store.beginGroup(QStringLiteral("FieldNumValueMap"));
    QStringList stored;
    for (const QString &key : store.childKeys())
        stored.append(key + QLatin1Char(' ') + store.value(key).toString());
    QCOMPARE(stored, keys);
}

void tst_DialogFields::savingRemovesFormerKeys()
{
    settings.store(QStringLiteral("FieldNumValueMap/9"), QStringLiteral("прежнее"));
    settings.store(QStringLiteral("FieldNumValueMap/слово"), QStringLiteral("прежнее"));
    settings.store(QStringLiteral("pointPref"), QStringLiteral("т"));
    {
        QSettings store;
        store.beginGroup(QStringLiteral("ImportObjects"));
        saveFieldMap(store, FieldMap{{2, QStringLiteral("новое")}});
    }
    QStringList keys = QSettings().allKeys();
    keys.sort();
    QCOMPARE(keys, list("ImportObjects/FieldNumValueMap/2, ImportObjects/pointPref"));
}

void tst_DialogFields::groupIsLeftAsItWas()
{
    QSettings store;
    store.beginGroup(QStringLiteral("ImportObjects"));
    FieldMap map{{2, QStringLiteral("а")}};

    saveFieldMap(store, map);
    QCOMPARE(store.group(), QStringLiteral("ImportObjects"));
    loadFieldMap(store, map);
    QCOMPARE(store.group(), QStringLiteral("ImportObjects"));
}

void tst_DialogFields::storedFieldsAreShown_data()
{
    QTest::addColumn<QStringList>("keys");
    QTest::addColumn<QStringList>("rows");

    QTest::newRow("two") << list("4, 6") << list("5 а, 7 а");
    QTest::newRow("the first five of six") << list("2, 4, 6, 8, 10, 12") << list("3 а, 5 а, 7 а, 9 а, 11 а");
    QTest::newRow("five of six by number") << list("10, 11, 12, 13, 14, 9") << list("10 а, 11 а, 12 а, 13 а, 14 а");
    QTest::newRow("word") << list("слово") << list("1 а");
    QTest::newRow("largest column") << list("2147483647") << list("20 а");
    QTest::newRow("negative column") << list("-2147483648, -7") << list("1 а, 1 а");
}

void tst_DialogFields::storedFieldsAreShown()
{
    QFETCH(QStringList, keys);
    QFETCH(QStringList, rows);
    for (const QString &key : keys)
        settings.store(QStringLiteral("FieldNumValueMap/") + key, QStringLiteral("а"));

    const Dialog dialog;

    QCOMPARE(rowsOf(dialog), rows);
    QCOMPARE(dialog.fieldNumValueMap.size(), keys.size());
}

void tst_DialogFields::fieldsAreKept()
{
    {
        const Dialog dialog;
        enterRows(dialog, list("7 в, 5 а"));
    }
    QCOMPARE(settings.stored(QStringLiteral("FieldNumValueMap/4")).toString(), QStringLiteral("а"));
    QCOMPARE(settings.stored(QStringLiteral("FieldNumValueMap/6")).toString(), QStringLiteral("в"));

    const Dialog later;

    QCOMPARE(rowsOf(later), list("5 а, 7 в"));
}

void tst_DialogFields::emptiedFieldIsForgotten()
{
    settings.store(QStringLiteral("FieldNumValueMap/4"), QStringLiteral("а"));
    settings.store(QStringLiteral("FieldNumValueMap/6"), QStringLiteral("в"));
    {
        const Dialog dialog;
        enter(dialog, editName(0), QString());
    }
    QVERIFY(!settings.stored(QStringLiteral("FieldNumValueMap/4")).isValid());
    const Dialog later;

    QCOMPARE(rowsOf(later), list("7 в"));
}

QTEST_MAIN(tst_DialogFields)
#include "tst_dialog_fields.moc"
