#include "viewtesting.h"

#include "dialog_elidingdelegate.h"

#include <QHeaderView>
#include <QSignalSpy>

/// The number of vertices in each contour of an object.
using Shape = QVector<int>;
Q_DECLARE_METATYPE(Shape)

/// The views after a run: the current object, editing and sorting.
class tst_DialogViews : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }
    void init() { settings.clear(); }

    void currentObjectIsShown();
    void rowSelectedDuringResetIsShown();
    void fieldsAreSetAfterVertices();
    void invalidRowIsIgnored();
    void designationsAreEdited();
    void longDesignationIsFullyVisible();
    void tableViewHasLimitedColumns_data();
    void tableViewHasLimitedColumns();
    void longTextIsElided_data();
    void longTextIsElided();

    void sortingKeepsCurrentRow();
    void sortingKeepsCurrentCellIfShapeIsSame_data();
    void sortingKeepsCurrentCellIfShapeIsSame();
    void sortingWithoutObjectsIsHarmless();
    void openEditorChangesNoOtherObject_data();
    void openEditorChangesNoOtherObject();

private:
    SettingsSandbox settings;
    TextFixture files;
};

namespace {

/// An object whose designation and vertex designations are all \a def.
DefPolygon shaped(const char *def, const Shape &shape)
{
    DefPolygon polygon = object(def);
    for (const int count : shape)
        polygon.contours.append(QVector<DefPoint>(count, point(def)));
    return polygon;
}

} // namespace

void tst_DialogViews::currentObjectIsShown()
{
    Dialog dialog;
    for (int run = 0; run < 2; ++run) {
        showPlan(dialog, files);
        QCOMPARE(shown(dialog.polygonModel), tableOf(QStringLiteral("в")));
        selectRow(dialog, 2);
        QCOMPARE(shown(dialog.polygonModel), tableOf(QStringLiteral("а")));
        selectRow(dialog, 0);
        QCOMPARE(shown(dialog.polygonModel), tableOf(QStringLiteral("в")));
    }
}

void tst_DialogViews::rowSelectedDuringResetIsShown()
{
    Dialog dialog;
    showPlan(dialog, files);
    connect(&dialog.mapModel, &QAbstractItemModel::modelReset, &dialog, [&dialog] { selectRow(dialog, 1); });

    showPlan(dialog, files);

    QCOMPARE(listOf(dialog)->currentIndex().row(), 1);
    QCOMPARE(shown(dialog.polygonModel), tableOf(QStringLiteral("б")));
}

// Setting the fields signals nothing, so views see a changed number of columns only when the next object is shown.
void tst_DialogViews::fieldsAreSetAfterVertices()
{
    Dialog dialog;
    enter(dialog, "fieldEdit_0", QStringLiteral("626"));
    showPlan(dialog, files);
    const auto field = [&dialog] { return dialog.polygonModel.index(0, 3).data().toString(); };
    QStringList seen;
    connect(&dialog.polygonModel, &QAbstractItemModel::modelReset, &dialog, [&] { seen.append(field()); });

    dialog.polygonModel.setFieldNumValueMap({});
    selectRow(dialog, 2);
    QCOMPARE(field(), QStringLiteral("626"));
    dialog.polygonModel.setFieldNumValueMap({});
    process(dialog, writePlan(files));

    QCOMPARE(field(), QStringLiteral("626"));
    QCOMPARE(seen, (QStringList{QString(), QString()}));
}

void tst_DialogViews::invalidRowIsIgnored()
{
    Dialog dialog;
    showPlan(dialog, files);
    const QModelIndex last = dialog.mapModel.index(2, 0);
    selectRow(dialog, 1);
    dialog.objects.removeLast();
    const QSignalSpy reset(&dialog.polygonModel, &QAbstractItemModel::modelReset);

    listOf(dialog)->setCurrentIndex(QModelIndex());
    listOf(dialog)->selectionModel()->setCurrentIndex(last, QItemSelectionModel::NoUpdate);

    QCOMPARE(reset.count(), 0);
}

void tst_DialogViews::designationsAreEdited()
{
    Dialog dialog;
    showPlan(dialog, files);
    selectRow(dialog, 2);

    openEditor(tableViewOf(dialog), QString());
    commit(tableViewOf(dialog), QStringLiteral("77"));
    openEditor(listOf(dialog), QString());
    commit(listOf(dialog), QStringLiteral("г"));

    QCOMPARE(dialog.objects.at(2).contours.first().first().def, QStringLiteral("77"));
    QCOMPARE(shown(dialog.mapModel), list("г, б, а"));
}

void tst_DialogViews::longDesignationIsFullyVisible()
{
    Dialog dialog;
    showPlan(dialog, files);
    const QModelIndex index = dialog.mapModel.index(1, 0);
    dialog.mapModel.setData(index, QStringLiteral("Участок 7 ").repeated(20));
    dialog.grab();

    const QListView *const view = listOf(dialog);
    QVERIFY(view->visualRect(index).width() > view->viewport()->width());
    QVERIFY(view->sizeHintForIndex(index).width() <= view->visualRect(index).width());
}

void tst_DialogViews::tableViewHasLimitedColumns_data()
{
    QTest::addColumn<int>("lastColumn");
    QTest::addColumn<int>("sections");

    QTest::newRow("at the limit") << 9999 << 10000;
    QTest::newRow("beyond the limit") << 10000 << 10000;
}

// The result is not limited.
void tst_DialogViews::tableViewHasLimitedColumns()
{
    QFETCH(int, lastColumn);
    QFETCH(int, sections);
    Dialog dialog;
    setColumns(dialog, 0, 1, lastColumn);
    dialog.polygonModel.setNxyColNum(0, 1, lastColumn);

    for (int run = 0; run < 2; ++run) {
        showPlan(dialog, files);
        selectRow(dialog, 2);
        QCOMPARE(tableViewOf(dialog)->horizontalHeader()->count(), sections);
        QCOMPARE(tableViewOf(dialog)->model()->index(1, 1).data().toString(), QStringLiteral("6.00"));
    }
    dialog.objects = {object("а", {{point("н1")}})};
    QCOMPARE(dialog.stringResult().count(QStringLiteral("<Cell")), 1 + lastColumn + 1);
}

void tst_DialogViews::longTextIsElided_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("displayed");

    const QString longest = QStringLiteral("Участок 7 ").repeated(50);
    QTest::newRow("500 characters") << longest << longest;
    QTest::newRow("501 characters") << longest + QLatin1Char('x') << longest + QStringLiteral("…");
    QTest::newRow("line break") << QStringLiteral("a\nb") << QStringLiteral("a\u2028b");
    QTest::newRow("line break in a long text")
        << QStringLiteral("a\nb") + longest << QStringLiteral("a\u2028b") + longest.left(497) + QStringLiteral("…");
    const QString pair = QStringLiteral("𐐀");
    QTest::newRow("surrogate pair at the cut") << longest.left(499) + pair << longest.left(499) + QStringLiteral("…");
    QTest::newRow("surrogate pair before the cut")
        << longest.left(498) + pair + pair << longest.left(498) + pair + QStringLiteral("…");
}

void tst_DialogViews::longTextIsElided()
{
    QFETCH(QString, text);
    QFETCH(QString, displayed);
    const Dialog dialog;

    for (const QAbstractItemView *view : viewsOf(dialog)) {
        const auto *const delegate = qobject_cast<const ElidingDelegate *>(view->itemDelegate());
        QVERIFY(delegate != nullptr);
        QCOMPARE(delegate->displayText(text, QLocale::c()), displayed);
    }
}

void tst_DialogViews::sortingKeepsCurrentRow()
{
    Dialog dialog;
    enter(dialog, "fieldEdit_0", QStringLiteral("626"));
    showPlan(dialog, files);
    selectRow(dialog, 2);
    const QSignalSpy listReset(&dialog.mapModel, &QAbstractItemModel::modelReset);

    press(dialog, "sortButton");

    QCOMPARE(listReset.count(), 1);
    QCOMPARE(shown(dialog.mapModel), list("а, б, в"));
    QCOMPARE(shown(dialog.polygonModel).size(), 6);
    QCOMPARE(shown(dialog.polygonModel).first(), QStringLiteral("н1|7.00|7.00|626"));
    selectRow(dialog, 0);
    QCOMPARE(shown(dialog.polygonModel), list("н10|5.00|5.00|626, н11|6.00|6.00|626"));
}

void tst_DialogViews::sortingKeepsCurrentCellIfShapeIsSame_data()
{
    QTest::addColumn<Shape>("first");
    QTest::addColumn<Shape>("second");
    QTest::addColumn<bool>("isKept");

    QTest::newRow("same shape") << Shape{2, 3} << Shape{2, 3} << true;
    QTest::newRow("other contours, same number of rows") << Shape{2, 3} << Shape{3, 2} << false;
    QTest::newRow("one contour, same number of rows") << Shape{2, 3} << Shape{6} << false;
    QTest::newRow("one contour fewer") << Shape{2, 3} << Shape{2} << false;
    QTest::newRow("one contour more") << Shape{2} << Shape{2, 3} << false;
    QTest::newRow("one vertex more") << Shape{2} << Shape{3} << false;
}

// The editor stays open and must not write the text of the old object into the new one.
void tst_DialogViews::sortingKeepsCurrentCellIfShapeIsSame()
{
    QFETCH(Shape, first);
    QFETCH(Shape, second);
    QFETCH(bool, isKept);
    Dialog dialog;
    showPlan(dialog, files);
    dialog.objects = {shaped("б", first), shaped("а", second)};
    dialog.mapModel.setMap(&dialog.objects);
    dialog.polygonModel.setPolygon(&dialog.objects.first());
    QTableView *const table = tableViewOf(dialog);
    QVERIFY(openEditor(table, QStringLiteral("чужой")) != nullptr);
    const QSignalSpy reset(&dialog.polygonModel, &QAbstractItemModel::modelReset);

    press(dialog, "sortButton");
    auto *const editor = table->viewport()->findChild<QLineEdit *>();
    if (isKept && editor != nullptr)
        QTest::keyClick(editor, Qt::Key_Enter);
    QCoreApplication::processEvents();

    QCOMPARE(reset.count(), isKept ? 0 : 1);
    QCOMPARE(table->currentIndex().isValid(), isKept);
    QCOMPARE(shown(dialog.polygonModel).first(), QStringLiteral("а|1000.00|2000.00"));
}

void tst_DialogViews::sortingWithoutObjectsIsHarmless()
{
    Dialog dialog;
    dialog.show();

    press(dialog, "sortButton");

    QVERIFY(listOf(dialog)->model() == nullptr);
    QCOMPARE(dialog.mapModel.rowCount() + dialog.polygonModel.rowCount(), 0);
}

void tst_DialogViews::openEditorChangesNoOtherObject_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QStringList>("defs");

    QTest::newRow("sorted") << QStringLiteral("sortButton") << list("а, б, в");
    QTest::newRow("processed again") << QStringLiteral("startButton") << list("в, б, а");
}

void tst_DialogViews::openEditorChangesNoOtherObject()
{
    QFETCH(QString, button);
    QFETCH(QStringList, defs);
    Dialog dialog;
    showPlan(dialog, files);
    for (QAbstractItemView *view : viewsOf(dialog))
        QVERIFY(openEditor(view, QStringLiteral("чужой")) != nullptr);

    press(dialog, button);
    for (const QAbstractItemView *view : viewsOf(dialog))
        commit(view, QStringLiteral("чужой"));

    QCOMPARE(shown(dialog.mapModel), defs);
    QCOMPARE(shown(dialog.polygonModel), tableOf(defs.first()));
}

QTEST_MAIN(tst_DialogViews)
#include "tst_dialog_views.moc"
