#include "fieldtesting.h"

#include <QBoxLayout>
#include <QPointer>
#include <QSpinBox>
#include <QTest>

#include <limits>

/// The extra fields as rows on the form.
class tst_DialogFieldsRows : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void rowsMakeTheMap_data();
    void rowsMakeTheMap();
    void missingWidgetEndsTheRows_data();
    void missingWidgetEndsTheRows();
    void mapIsShownInRows_data();
    void mapIsShownInRows();
    void furtherRowsStay();
    void mapStopsAtMissingWidget();
    void plusAddsARow();
    void plusStopsAtFiveRows();
    void plusNeedsTheLastRow();
    void newNumberFollowsThePrevious_data();
    void newNumberFollowsThePrevious();
    void minusTakesTheLastRowAtOnce();
    void minusLeavesTheFirstRow();
    void minusToleratesMissingWidgets();
    void rowComesBackEmpty();

private:
    SettingsSandbox settings;
};

namespace {

const QString plus = QStringLiteral("plusToolButton");
const QString minus = QStringLiteral("minusToolButton");

QStringList layoutNames(const Dialog &dialog)
{
    QStringList names;
    const auto *const layout = dialog.findChild<QBoxLayout *>(QStringLiteral("horizontalLayout_7"));
    for (int i = 0; i < layout->count(); ++i)
        names.append(layout->itemAt(i)->widget()->objectName());
    return names;
}

} // namespace

void tst_DialogFieldsRows::init()
{
    settings.clear();
}

void tst_DialogFieldsRows::rowsMakeTheMap_data()
{
    QTest::addColumn<QStringList>("rows");
    QTest::addColumn<FieldMap>("map");

    const QString a = QStringLiteral("а");
    QTest::newRow("one empty row") << list("4 ") << FieldMap();
    QTest::newRow("one row") << list("4 а") << FieldMap{{3, a}};
    QTest::newRow("smallest and largest number") << list("1 а, 20 а") << FieldMap{{0, a}, {19, a}};
    QTest::newRow("later row of one column wins")
        << list("5 а, 7 б, 7 в") << FieldMap{{4, a}, {6, QStringLiteral("в")}};
    QTest::newRow("later empty row of one column does not")
        << QStringList{QStringLiteral("5 а"), QStringLiteral("5 ")} << FieldMap{{4, a}};
    QTest::newRow("empty row between") << QStringList{QStringLiteral("5 а"), QStringLiteral("6 "),
                                                      QStringLiteral("7 а")}
                                       << FieldMap{{4, a}, {6, a}};
    QTest::newRow("blank is a text") << QStringList{QStringLiteral("5  ")} << FieldMap{{4, QStringLiteral(" ")}};
    QTest::newRow("five rows, not in order")
        << list("9 а, 8 а, 7 а, 6 а, 5 а") << FieldMap{{4, a}, {5, a}, {6, a}, {7, a}, {8, a}};
}

void tst_DialogFieldsRows::rowsMakeTheMap()
{
    QFETCH(QStringList, rows);
    QFETCH(FieldMap, map);
    Dialog dialog;
    dialog.fieldNumValueMap = FieldMap{{15, QStringLiteral("прежнее")}};
    enterRows(dialog, rows);

    dialog.readFields();

    QCOMPARE(dialog.fieldNumValueMap, map);
}

void tst_DialogFieldsRows::missingWidgetEndsTheRows_data()
{
    QTest::addColumn<QString>("widget");
    QTest::addColumn<FieldMap>("map");

    const QString a = QStringLiteral("а");
    QTest::newRow("first number") << spinName(0) << FieldMap();
    QTest::newRow("second number") << spinName(1) << FieldMap{{4, a}};
    QTest::newRow("second text") << editName(1) << FieldMap{{4, a}};
    QTest::newRow("third text") << editName(2) << FieldMap{{4, a}, {5, a}};
}

void tst_DialogFieldsRows::missingWidgetEndsTheRows()
{
    QFETCH(QString, widget);
    QFETCH(FieldMap, map);
    Dialog dialog;
    enterRows(dialog, list("5 а, 6 а, 7 а"));
    delete child(dialog, widget);

    dialog.readFields();

    QCOMPARE(dialog.fieldNumValueMap, map);
}

void tst_DialogFieldsRows::mapIsShownInRows_data()
{
    QTest::addColumn<FieldMap>("map");
    QTest::addColumn<QStringList>("rows");

    const QString a = QStringLiteral("а");
    QTest::newRow("none") << FieldMap() << list("4 ");
    QTest::newRow("one") << FieldMap{{9, a}} << list("10 а");
    QTest::newRow("two") << FieldMap{{6, QStringLiteral("в")}, {4, a}} << list("5 а, 7 в");
    QTest::newRow("empty text") << FieldMap{{4, QString()}} << list("5 ");
    QTest::newRow("the first five of six")
        << FieldMap{{1, a}, {3, a}, {5, a}, {7, a}, {9, a}, {11, a}} << list("2 а, 4 а, 6 а, 8 а, 10 а");
    QTest::newRow("beyond the numbers of the form") << FieldMap{{-1, a}, {20, a}} << list("1 а, 20 а");
    QTest::newRow("largest and smallest column")
        << FieldMap{{std::numeric_limits<int>::max(), a}, {std::numeric_limits<int>::min(), a}} << list("1 а, 20 а");
}

void tst_DialogFieldsRows::mapIsShownInRows()
{
    QFETCH(FieldMap, map);
    QFETCH(QStringList, rows);
    Dialog dialog;
    dialog.fieldNumValueMap = map;

    dialog.writeFields();

    QCOMPARE(rowsOf(dialog), rows);
    QCOMPARE(dialog.fieldNumValueMap, map);
}

void tst_DialogFieldsRows::furtherRowsStay()
{
    Dialog dialog;
    enterRows(dialog, list("5 а, 6 б, 7 в"));
    dialog.fieldNumValueMap = FieldMap{{10, QStringLiteral("г")}};

    dialog.writeFields();

    QCOMPARE(rowsOf(dialog), list("11 г, 6 б, 7 в"));
}

void tst_DialogFieldsRows::mapStopsAtMissingWidget()
{
    Dialog dialog;
    enterRows(dialog, list("5 а, 6 б, 7 в"));
    delete child(dialog, editName(1));
    const QString x = QStringLiteral("х");
    dialog.fieldNumValueMap = FieldMap{{10, x}, {11, x}, {12, x}};

    dialog.writeFields();

    QCOMPARE(entered(dialog, editName(0)).toString(), x);
    QCOMPARE(entered(dialog, spinName(1)).toInt(), 6);
    QCOMPARE(entered(dialog, editName(2)).toString(), QStringLiteral("в"));
}

void tst_DialogFieldsRows::plusAddsARow()
{
    const Dialog dialog;
    enterRows(dialog, list("6 а"));

    press(dialog, plus);

    QCOMPARE(dialog.fieldCount, 2);
    QCOMPARE(rowsOf(dialog), list("6 а, 7 "));
    QCOMPARE(layoutNames(dialog), list("fieldSpin_0, fieldEdit_0, fieldSpin_1, fieldEdit_1"));
    const auto *const spin = child<QSpinBox>(dialog, spinName(1));
    QCOMPARE(spin->parent(), &dialog);
    QCOMPARE(child<QLineEdit>(dialog, editName(1))->parent(), &dialog);
    QCOMPARE(spin->minimum(), 1);
    QCOMPARE(spin->maximum(), 20);
}

void tst_DialogFieldsRows::plusStopsAtFiveRows()
{
    const Dialog dialog;
    for (int i = 0; i < 7; ++i)
        press(dialog, plus);

    QCOMPARE(dialog.fieldCount, 5);
    QCOMPARE(rowsOf(dialog), list("4 , 5 , 6 , 7 , 8 "));
    QCOMPARE(layoutNames(dialog).size(), 10);
    QVERIFY(dialog.findChild<QSpinBox *>(spinName(5)) == nullptr);
    QVERIFY(dialog.findChild<QLineEdit *>(editName(5)) == nullptr);
}

void tst_DialogFieldsRows::plusNeedsTheLastRow()
{
    const Dialog dialog;
    press(dialog, plus);
    delete child(dialog, spinName(1));

    press(dialog, plus);

    QCOMPARE(dialog.fieldCount, 2);
    QVERIFY(dialog.findChild<QSpinBox *>(spinName(2)) == nullptr);
}

void tst_DialogFieldsRows::newNumberFollowsThePrevious_data()
{
    QTest::addColumn<int>("previous");
    QTest::addColumn<int>("next");

    QTest::newRow("smallest") << 1 << 2;
    QTest::newRow("last but one") << 19 << 20;
    QTest::newRow("largest is kept") << 20 << 20;
}

void tst_DialogFieldsRows::newNumberFollowsThePrevious()
{
    QFETCH(int, previous);
    QFETCH(int, next);
    const Dialog dialog;
    press(dialog, plus);
    enter(dialog, spinName(1), previous);

    press(dialog, plus);

    QCOMPARE(entered(dialog, spinName(2)).toInt(), next);
    QCOMPARE(entered(dialog, spinName(0)).toInt(), 4);
}

void tst_DialogFieldsRows::minusTakesTheLastRowAtOnce()
{
    Dialog dialog;
    enterRows(dialog, list("5 а, 6 б, 7 в"));
    const QPointer<QWidget> spin = child(dialog, spinName(2));
    const QPointer<QWidget> edit = child(dialog, editName(2));

    press(dialog, minus);

    QVERIFY(spin.isNull() && edit.isNull());
    QCOMPARE(dialog.fieldCount, 2);
    QCOMPARE(rowsOf(dialog), list("5 а, 6 б"));
    QCOMPARE(layoutNames(dialog), list("fieldSpin_0, fieldEdit_0, fieldSpin_1, fieldEdit_1"));
    dialog.readFields();
    QCOMPARE(dialog.fieldNumValueMap, (FieldMap{{4, QStringLiteral("а")}, {5, QStringLiteral("б")}}));
}

void tst_DialogFieldsRows::minusLeavesTheFirstRow()
{
    const Dialog dialog;
    enterRows(dialog, list("5 а, 6 б"));
    for (int i = 0; i < 3; ++i)
        press(dialog, minus);

    QCOMPARE(dialog.fieldCount, 1);
    QCOMPARE(rowsOf(dialog), list("5 а"));
}

void tst_DialogFieldsRows::minusToleratesMissingWidgets()
{
    const Dialog dialog;
    enterRows(dialog, list("5 а, 6 б"));
    delete child(dialog, spinName(1));

    press(dialog, minus);

    QCOMPARE(dialog.fieldCount, 1);
    QVERIFY(dialog.findChild<QLineEdit *>(editName(1)) == nullptr);
}

void tst_DialogFieldsRows::rowComesBackEmpty()
{
    const Dialog dialog;
    enterRows(dialog, list("5 а, 17 б"));
    press(dialog, minus);

    press(dialog, plus);

    QCOMPARE(rowsOf(dialog), list("5 а, 6 "));
}

QTEST_MAIN(tst_DialogFieldsRows)
#include "tst_dialog_fields_rows.moc"
