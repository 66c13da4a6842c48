#include "viewtesting.h"

#include "dialog_elidingdelegate.h"

#include <QSignalSpy>

/// The views after a run: the current object, editing and sorting.
class tst_DialogViews : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void currentRowIsShown_data();
    void currentRowIsShown();
    void currentRowIsShownAfterALaterRun();
    void currentRowBringsTheFields();
    void fieldsComeAfterTheVertices();
    void noCurrentRowChangesNothing();
    void rowOfALostObjectChangesNothing();
    void designationIsEditedInTheList();
    void numberIsEditedInTheTable();
    void longDesignationIsShownInPart();

    void sortingKeepsTheRow_data();
    void sortingKeepsTheRow();
    void sortingRefreshesTheList();
    void sortingKeepsTheFields();
    void sortingNothingIsHarmless();
    void rowsFollowTheSorting();
    void openEditorReachesNoOtherObject_data();
    void openEditorReachesNoOtherObject();

private:
    SettingsSandbox settings;
    TextFixture files;
};

namespace {

const QString sortButton = QStringLiteral("sortButton");

QString defsOf(const Dialog &dialog)
{
    QStringList defs;
    for (const DefPolygon &object : dialog.objects)
        defs.append(object.def);
    return defs.join(QLatin1Char(' '));
}

} // namespace

void tst_DialogViews::initTestCase()
{
    QLocale::setDefault(QLocale::c());
}

void tst_DialogViews::init()
{
    settings.clear();
}

void tst_DialogViews::currentRowIsShown_data()
{
    QTest::addColumn<QVector<int>>("rows");
    QTest::addColumn<QString>("def");

    QTest::newRow("none yet") << QVector<int>() << QStringLiteral("в");
    QTest::newRow("first") << QVector<int>{0} << QStringLiteral("в");
    QTest::newRow("second") << QVector<int>{1} << QStringLiteral("б");
    QTest::newRow("third") << QVector<int>{2} << QStringLiteral("а");
    QTest::newRow("back to the first") << QVector<int>{2, 1, 0} << QStringLiteral("в");
}

void tst_DialogViews::currentRowIsShown()
{
    QFETCH(QVector<int>, rows);
    QFETCH(QString, def);
    Dialog dialog;
    showPlan(dialog, files);

    for (const int row : rows)
        selectRow(dialog, row);

    QCOMPARE(shown(dialog.polygonModel), tableOf(def));
}

void tst_DialogViews::currentRowIsShownAfterALaterRun()
{
    Dialog dialog;
    showPlan(dialog, files);
    selectRow(dialog, 2);
    showPlan(dialog, files);
    QCOMPARE(shown(dialog.polygonModel), tableOf(QStringLiteral("в")));

    selectRow(dialog, 1);

    QCOMPARE(shown(dialog.polygonModel), tableOf(QStringLiteral("б")));
}

void tst_DialogViews::currentRowBringsTheFields()
{
    Dialog dialog;
    enter(dialog, QStringLiteral("fieldEdit_0"), QStringLiteral("626"));
    showPlan(dialog, files);
    dialog.polygonModel.setFieldNumValueMap({});

    selectRow(dialog, 2);

    QCOMPARE(shown(dialog.polygonModel),
             (QStringList{QStringLiteral("н10|5.00|5.00|626"), QStringLiteral("н11|6.00|6.00|626")}));
}

// Nobody is told of the columns that they add until the next object is shown.
void tst_DialogViews::fieldsComeAfterTheVertices()
{
    Dialog dialog;
    enter(dialog, QStringLiteral("fieldEdit_0"), QStringLiteral("626"));
    showPlan(dialog, files);
    QStringList seen;
    connect(&dialog.polygonModel, &QAbstractItemModel::modelReset, this,
            [&] { seen.append(dialog.polygonModel.index(0, 3).data().toString()); });

    dialog.polygonModel.setFieldNumValueMap({});
    selectRow(dialog, 2);
    dialog.polygonModel.setFieldNumValueMap({});
    process(dialog, writePlan(files));

    QCOMPARE(seen, (QStringList{QString(), QString()}));
    QCOMPARE(dialog.polygonModel.index(0, 3).data().toString(), QStringLiteral("626"));
}

void tst_DialogViews::noCurrentRowChangesNothing()
{
    Dialog dialog;
    showPlan(dialog, files);
    selectRow(dialog, 1);
    const QSignalSpy reset(&dialog.polygonModel, &QAbstractItemModel::modelReset);

    listOf(dialog)->setCurrentIndex(QModelIndex());

    QCOMPARE(reset.count(), 0);
    QCOMPARE(shown(dialog.polygonModel), tableOf(QStringLiteral("б")));
}

void tst_DialogViews::rowOfALostObjectChangesNothing()
{
    Dialog dialog;
    showPlan(dialog, files);
    const QModelIndex last = listOf(dialog)->model()->index(2, 0);
    dialog.objects.removeLast();

    listOf(dialog)->selectionModel()->setCurrentIndex(last, QItemSelectionModel::NoUpdate);

    QCOMPARE(shown(dialog.polygonModel), tableOf(QStringLiteral("в")));
}

void tst_DialogViews::designationIsEditedInTheList()
{
    Dialog dialog;
    showPlan(dialog, files);

    openEditor(listOf(dialog), QStringLiteral("д"));
    type(listOf(dialog), QStringLiteral("г"));

    QCOMPARE(defsOf(dialog), QStringLiteral("г б а"));
    QVERIFY(dialog.stringResult().contains(QStringLiteral("<Cell>г</Cell>")));
}

void tst_DialogViews::numberIsEditedInTheTable()
{
    Dialog dialog;
    showPlan(dialog, files);
    selectRow(dialog, 2);

    openEditor(tableViewOf(dialog), QStringLiteral("1"));
    type(tableViewOf(dialog), QStringLiteral("77"));

    QCOMPARE(dialog.objects.at(2).contours.first().first().def, QStringLiteral("77"));
    QVERIFY(dialog.stringResult().contains(QStringLiteral("<Cell>77</Cell>")));
}

// Sorted are «а», «б», «в», whose tables differ in their shapes.
void tst_DialogViews::longDesignationIsShownInPart()
{
    const QString longDef(100000, QLatin1Char('W'));
    Dialog dialog;
    showPlan(dialog, files);
    const int width = listOf(dialog)->sizeHintForColumn(0);

    for (const QAbstractItemView *const view : viewsOf(dialog)) {
        const auto *const delegate = qobject_cast<const ElidingDelegate *>(view->itemDelegate());
        QVERIFY(delegate != nullptr);
        QVERIFY(delegate->displayText(longDef, QLocale::c()).size() < 1000);
    }
    listOf(dialog)->model()->setData(listOf(dialog)->model()->index(0, 0), longDef);

    QVERIFY(listOf(dialog)->sizeHintForColumn(0) > width);
    QCOMPARE(dialog.objects.first().def, longDef);
}

void tst_DialogViews::sortingKeepsTheRow_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("def");

    QTest::newRow("first") << 0 << QStringLiteral("а");
    QTest::newRow("second") << 1 << QStringLiteral("б");
    QTest::newRow("third") << 2 << QStringLiteral("в");
}

void tst_DialogViews::sortingKeepsTheRow()
{
    QFETCH(int, row);
    QFETCH(QString, def);
    Dialog dialog;
    showPlan(dialog, files);
    selectRow(dialog, row);
    dialog.grab();

    press(dialog, sortButton);

    QCOMPARE(shown(dialog.polygonModel), tableOf(def));
    dialog.grab();
    press(dialog, sortButton);
    QCOMPARE(shown(dialog.polygonModel), tableOf(def));
}

void tst_DialogViews::sortingRefreshesTheList()
{
    Dialog dialog;
    showPlan(dialog, files);
    const QSignalSpy reset(&dialog.mapModel, &QAbstractItemModel::modelReset);

    press(dialog, sortButton);

    QCOMPARE(reset.count(), 1);
    QCOMPARE(shown(dialog.mapModel).join(QLatin1Char(' ')), QStringLiteral("а б в"));
    QCOMPARE(view(dialog, QStringLiteral("listView"))->model(), &dialog.mapModel);
}

void tst_DialogViews::sortingKeepsTheFields()
{
    Dialog dialog;
    enter(dialog, QStringLiteral("fieldEdit_0"), QStringLiteral("626"));
    showPlan(dialog, files);

    press(dialog, sortButton);

    QCOMPARE(shown(dialog.polygonModel).first(), QStringLiteral("н10|5.00|5.00|626"));
}

void tst_DialogViews::sortingNothingIsHarmless()
{
    Dialog dialog;
    dialog.show();

    press(dialog, sortButton);

    QVERIFY(listOf(dialog)->model() == nullptr);
    QCOMPARE(dialog.mapModel.rowCount() + dialog.polygonModel.rowCount(), 0);
    dialog.grab();
}

void tst_DialogViews::rowsFollowTheSorting()
{
    Dialog dialog;
    showPlan(dialog, files);
    press(dialog, sortButton);

    selectRow(dialog, 2);
    QCOMPARE(shown(dialog.polygonModel), tableOf(QStringLiteral("в")));
    openEditor(tableViewOf(dialog), QString());
    type(tableViewOf(dialog), QStringLiteral("77"));

    QCOMPARE(dialog.objects.at(2).contours.first().first().def, QStringLiteral("77"));
}

void tst_DialogViews::openEditorReachesNoOtherObject_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("defs");

    QTest::newRow("sorted") << sortButton << QStringLiteral("а б в");
    QTest::newRow("processed again") << QStringLiteral("startButton") << QStringLiteral("в б а");
}

void tst_DialogViews::openEditorReachesNoOtherObject()
{
    QFETCH(QString, button);
    QFETCH(QString, defs);
    Dialog dialog;
    showPlan(dialog, files);
    QVERIFY(openEditor(tableViewOf(dialog), QStringLiteral("чужой")) != nullptr);
    QVERIFY(openEditor(listOf(dialog), QStringLiteral("чужой")) != nullptr);

    press(dialog, button);
    endEditing(dialog);

    QCOMPARE(defsOf(dialog), defs);
    QCOMPARE(shown(dialog.polygonModel), tableOf(defs.left(1)));
}

QTEST_MAIN(tst_DialogViews)
#include "tst_dialog_views.moc"
