#include "fieldtesting.h"

#include <QBoxLayout>
#include <QSpinBox>
#include <QTest>

/// The extra fields in the settings and as rows on the form.
class tst_DialogFields : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { settings.clear(); }

    void keysAreLoadedAsColumns_data();
    void keysAreLoadedAsColumns();
    void savingReplacesStoredFields();
    void fieldsAreKept();
    void mapIsReadFromRows_data();
    void mapIsReadFromRows();
    void missingWidgetEndsReading();
    void mapIsWrittenToRows_data();
    void mapIsWrittenToRows();
    void rowsBeyondMapAreKept();
    void missingWidgetEndsWriting();
    void plusAddsNextColumn();
    void plusStopsAtFiveRows();
    void plusNeedsPreviousRow();
    void minusDeletesLastRow();

private:
    SettingsSandbox settings;
};

namespace {

QStringList layoutNames(const Dialog &dialog)
{
    QStringList names;
    const auto *const layout = dialog.findChild<QBoxLayout *>(QStringLiteral("horizontalLayout_7"));
    for (int i = 0; i < layout->count(); ++i)
        names.append(layout->itemAt(i)->widget()->objectName());
    return names;
}

/// A map of fields from texts such as "4 текст".
FieldMap mapOf(const char *fields)
{
    FieldMap map;
    for (const QString &field : list(fields))
        map.insert(field.section(QLatin1Char(' '), 0, 0).toInt(), field.section(QLatin1Char(' '), 1));
    return map;
}

} // namespace

void tst_DialogFields::keysAreLoadedAsColumns_data()
{
    QTest::addColumn<QStringList>("stored"); // "key value"
    QTest::addColumn<FieldMap>("map");

    QTest::newRow("none") << QStringList() << FieldMap();
    QTest::newRow("two") << list("10 а, 9 б") << mapOf("9 б, 10 а");
    QTest::newRow("negative column") << list("-3 а") << mapOf("-3 а");
    QTest::newRow("non-numeric key is column 0, last key wins") << list("0 а, x б") << mapOf("0 б");
}

void tst_DialogFields::keysAreLoadedAsColumns()
{
    QFETCH(QStringList, stored);
    QFETCH(FieldMap, map);
    for (const QString &field : stored)
        settings.store(QStringLiteral("FieldNumValueMap/") + field.section(QLatin1Char(' '), 0, 0),
                       field.section(QLatin1Char(' '), 1));
    QSettings store;
    store.beginGroup(QStringLiteral("ImportObjects"));
    FieldMap loaded = mapOf("7 а");

    loadFieldMap(store, loaded);

    QCOMPARE(loaded, map);
    QCOMPARE(store.group(), QStringLiteral("ImportObjects"));
}

void tst_DialogFields::savingReplacesStoredFields()
{
    settings.store(QStringLiteral("FieldNumValueMap/9"), QStringLiteral("прежнее"));
    settings.store(QStringLiteral("FieldNumValueMap/слово"), QStringLiteral("прежнее"));
    settings.store(QStringLiteral("pointPref"), QStringLiteral("т"));
    QSettings store;
    store.beginGroup(QStringLiteral("ImportObjects"));

    saveFieldMap(store, {{-1, QStringLiteral("а")}, {4, QString()}, {6, QStringLiteral(" ")}});

    QCOMPARE(store.group(), QStringLiteral("ImportObjects"));
    QCOMPARE(store.allKeys(), list("FieldNumValueMap/-1, FieldNumValueMap/6, pointPref"));
    QCOMPARE(settings.stored(QStringLiteral("FieldNumValueMap/-1")).toString(), QStringLiteral("а"));
    QCOMPARE(settings.stored(QStringLiteral("FieldNumValueMap/6")).toString(), QStringLiteral(" "));
}

void tst_DialogFields::fieldsAreKept()
{
    {
        const Dialog dialog;
        enterRows(dialog, list("7 в, 5 а, 9 "));
    }
    {
        const Dialog later;
        QCOMPARE(rowsOf(later), list("5 а, 7 в"));
        enter(later, editName(0), QString());
    }
    QCOMPARE(rowsOf(Dialog()), list("7 в"));
}

void tst_DialogFields::mapIsReadFromRows_data()
{
    QTest::addColumn<QStringList>("rows");
    QTest::addColumn<FieldMap>("map");

    QTest::newRow("empty row") << list("4 ") << FieldMap();
    QTest::newRow("smallest and largest column") << list("1 а, 20 а") << mapOf("0 а, 19 а");
    QTest::newRow("last row of a column wins") << list("7 б, 7 а") << mapOf("6 а");
    QTest::newRow("empty row is skipped") << list("5 а, 5 , 7 а") << mapOf("4 а, 6 а");
    QTest::newRow("five rows in any order") << list("9 а, 8 а, 7 а, 6 а, 5 а") << mapOf("4 а, 5 а, 6 а, 7 а, 8 а");
}

void tst_DialogFields::mapIsReadFromRows()
{
    QFETCH(QStringList, rows);
    QFETCH(FieldMap, map);
    Dialog dialog;
    dialog.fieldNumValueMap = mapOf("15 а");
    enterRows(dialog, rows);

    dialog.readFields();

    QCOMPARE(dialog.fieldNumValueMap, map);
}

void tst_DialogFields::missingWidgetEndsReading()
{
    for (const QString &widget : {spinName(1), editName(1)}) {
        Dialog dialog;
        enterRows(dialog, list("5 а, 6 а, 7 а"));
        delete child(dialog, widget);

        dialog.readFields();

        QCOMPARE(dialog.fieldNumValueMap, mapOf("4 а"));
        settings.clear();
    }
}

void tst_DialogFields::mapIsWrittenToRows_data()
{
    QTest::addColumn<FieldMap>("map");
    QTest::addColumn<QStringList>("rows");

    QTest::newRow("none") << FieldMap() << list("4 ");
    QTest::newRow("two") << mapOf("6 а, 4 а") << list("5 а, 7 а");
    QTest::newRow("first five of six") << mapOf("1 а, 3 а, 5 а, 7 а, 9 а, 11 а") << list("2 а, 4 а, 6 а, 8 а, 10 а");
    QTest::newRow("smallest and largest integer") << mapOf("-2147483648 а, 2147483647 а") << list("1 а, 20 а");
}

void tst_DialogFields::mapIsWrittenToRows()
{
    QFETCH(FieldMap, map);
    QFETCH(QStringList, rows);
    Dialog dialog;
    dialog.fieldNumValueMap = map;

    dialog.writeFields();

    QCOMPARE(rowsOf(dialog), rows);
    QCOMPARE(dialog.fieldNumValueMap, map);
}

void tst_DialogFields::rowsBeyondMapAreKept()
{
    Dialog dialog;
    enterRows(dialog, list("5 а, 6 б, 7 в"));
    dialog.fieldNumValueMap = mapOf("10 а");

    dialog.writeFields();

    QCOMPARE(rowsOf(dialog), list("11 а, 6 б, 7 в"));
}

void tst_DialogFields::missingWidgetEndsWriting()
{
    Dialog dialog;
    enterRows(dialog, list("5 х, 6 б, 7 в"));
    delete child(dialog, editName(1));
    dialog.fieldNumValueMap = mapOf("10 а, 11 а, 12 а");

    dialog.writeFields();

    QCOMPARE(entered(dialog, editName(0)).toString(), QStringLiteral("а"));
    QCOMPARE(entered(dialog, spinName(1)).toInt(), 6);
    QCOMPARE(entered(dialog, editName(2)).toString(), QStringLiteral("в"));
}

void tst_DialogFields::plusAddsNextColumn()
{
    const Dialog dialog;
    enterRows(dialog, list("6 а, 19 б"));
    for (int i = 0; i < 2; ++i)
        press(dialog, "plusToolButton");

    QCOMPARE(rowsOf(dialog), list("6 а, 19 б, 20 , 20 "));
    QCOMPARE(layoutNames(dialog), list("fieldSpin_0, fieldEdit_0, fieldSpin_1, fieldEdit_1, "
                                       "fieldSpin_2, fieldEdit_2, fieldSpin_3, fieldEdit_3"));
    QCOMPARE(child<QSpinBox>(dialog, spinName(1))->minimum(), 1);
}

void tst_DialogFields::plusStopsAtFiveRows()
{
    const Dialog dialog;
    for (int i = 0; i < 6; ++i)
        press(dialog, "plusToolButton");

    QCOMPARE(rowsOf(dialog), list("4 , 5 , 6 , 7 , 8 "));
    QCOMPARE(layoutNames(dialog).size(), 10);
}

void tst_DialogFields::plusNeedsPreviousRow()
{
    const Dialog dialog;
    enterRows(dialog, list("5 а, 6 б"));
    delete child(dialog, spinName(1));

    press(dialog, "plusToolButton");

    QCOMPARE(dialog.fieldCount, 2);
}

// The widgets are deleted at once: after deleteLater(), readFields() would still find them.
void tst_DialogFields::minusDeletesLastRow()
{
    const Dialog dialog;
    enterRows(dialog, list("5 а, 6 б, 7 в"));

    press(dialog, "minusToolButton");
    QCOMPARE(rowsOf(dialog), list("5 а, 6 б"));
    QVERIFY(dialog.findChild<QWidget *>(spinName(2)) == nullptr);
    QVERIFY(dialog.findChild<QWidget *>(editName(2)) == nullptr);

    delete child(dialog, spinName(1));
    for (int i = 0; i < 2; ++i)
        press(dialog, "minusToolButton");
    QCOMPARE(rowsOf(dialog), list("5 а"));
    QVERIFY(dialog.findChild<QWidget *>(editName(1)) == nullptr);
}

QTEST_MAIN(tst_DialogFields)
#include "tst_dialog_fields.moc"
