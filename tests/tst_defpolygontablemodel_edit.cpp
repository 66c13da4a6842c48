#include "modeltesting.h"

#include <QTest>

#include <optional>

using Change = void (*)(DefPolygon &object);
Q_DECLARE_METATYPE(Change)

/// The vertex table: renaming, and changes of the object outside the model.
class tst_DefPolygonTableModelEdit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void renamingIsStoredAndSignalled_data();
    void renamingIsStoredAndSignalled();
    void otherEditsAreRefused();
    void renamingUpdatesConflicts();
    void renamingDoesNotCopyTheVertices();
    void queryingConflictsDoesNotDetach();

    void cellsFollowTheObject_data();
    void cellsFollowTheObject();
    void vertexWithoutRowHasNoConflicts();
    void detachedTableHasEmptyRows();
    void refreshWithSameShapeDoesNotReset();
    void refreshWithoutRowsSignalsNoCells();
    void refreshWithAnotherShapeResets_data();
    void refreshWithAnotherShapeResets();
    void rebuildingRowsSignalsNothing();
};

void tst_DefPolygonTableModelEdit::renamingIsStoredAndSignalled_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("shown");

    QTest::newRow("case only") << QVariant(QStringLiteral("Н2")) << QStringLiteral("Н2");
    QTest::newRow("spaces are kept") << QVariant(QStringLiteral(" н2 ")) << QStringLiteral(" н2 ");
    QTest::newRow("invalid value") << QVariant() << QStringLiteral("null");
}

void tst_DefPolygonTableModelEdit::renamingIsStoredAndSignalled()
{
    QFETCH(QVariant, value);
    QFETCH(QString, shown);
    Table table(QStringLiteral("н1 0 0 | н2 1 1, н3 2 2"));
    table.model.setFieldNumValueMap({{6, QStringLiteral("ЗУ")}});
    const DefPolygon copy = table.object;
    const QAbstractItemModelTester tester(&table.model, failTest);
    const ModelLog log(table.model);

    QVERIFY(table.model.setData(table.cell(2), value));

    QCOMPARE(log.text(), QStringLiteral("changed 2,0 to 2,0 roles 0 2 [н1 | %1 н3] "
                                        "changed 0,0 to 3,6 roles 8 [н1 | %1 н3]")
                             .arg(shown));
    QCOMPARE(table.object.contours.at(1).at(0).def, value.toString());
    QCOMPARE(copy.contours.at(1).at(0).def, QStringLiteral("н2"));
}

void tst_DefPolygonTableModelEdit::otherEditsAreRefused()
{
    const QVariant value = QStringLiteral("new");
    Table table(QStringLiteral("н1 0 0 | - 1 1"));
    table.model.setFieldNumValueMap({{3, QStringLiteral("ЗУ")}});
    const ModelLog log(table.model);

    for (int role : rolesExcept({Qt::EditRole}))
        QVERIFY(!table.model.setData(table.cell(0), value, role));
    for (int column : {1, 2, 3})
        QVERIFY(!table.model.setData(table.cell(0, column), value));
    QVERIFY(!table.model.setData(table.cell(1), value));
    QVERIFY(!table.model.setData(table.cell(0), QStringLiteral("н1")));
    QVERIFY(!table.model.setData(table.cell(2), QStringLiteral("")));
    table.model.setNxyColNum(-1, 1, 2);
    QVERIFY(!table.model.setData(QModelIndex(), value));
    QVERIFY(!table.model.setData(table.model.createIndex(0, -1), value));

    QCOMPARE(log.text(), QString());
    QCOMPARE(table.object.contours.at(0).at(0).def, QStringLiteral("н1"));
    QVERIFY(table.object.contours.at(1).at(0).def.isNull());
}

void tst_DefPolygonTableModelEdit::renamingUpdatesConflicts()
{
    Table table(QStringLiteral("н1 0 0, н2 5 5 | Н1 9 0"));
    QCOMPARE(rowMarks(table.model), QStringLiteral("x.|x"));

    QVERIFY(table.model.setData(table.cell(1), QStringLiteral("н1")));
    QCOMPARE(rowMarks(table.model), QStringLiteral("xx|x"));
    QVERIFY(table.model.setData(table.cell(0), QStringLiteral("н3")));
    QCOMPARE(rowMarks(table.model), QStringLiteral(".x|x"));
    QVERIFY(table.model.setData(table.cell(3), QString()));
    QCOMPARE(rowMarks(table.model), QStringLiteral("..|."));
}

// The model shares the contours, but its own edit must not copy them.
void tst_DefPolygonTableModelEdit::renamingDoesNotCopyTheVertices()
{
    Table table(QStringLiteral("н1 0 0, н2 5 5 | Н1 9 0"));
    QVERIFY(table.model.isConflictingPoint(0));
    const DefPoint *const vertices = table.object.contours.at(0).constData();

    QVERIFY(table.model.setData(table.cell(0), QStringLiteral("н3")));

    QCOMPARE(table.object.contours.at(0).constData(), vertices);
}

void tst_DefPolygonTableModelEdit::queryingConflictsDoesNotDetach()
{
    Table table(QStringLiteral("н1 0 0, Н1 5 5"));
    const DefPolygon copy = table.object;

    QVERIFY(table.model.isConflictingPoint(0));

    QVERIFY(table.object.contours.isSharedWith(copy.contours));
}

void tst_DefPolygonTableModelEdit::cellsFollowTheObject_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<QString>("marks");
    QTest::addColumn<QString>("shown");
    const auto add = [](const char *name, const char *marks, const char *shown, Change change) {
        QTest::newRow(name) << change << QString::fromLatin1(marks) << QString::fromUtf8(shown);
    };

    add("unchanged", "x.|xx", "н1 н2 | Н1 н1", [](DefPolygon & /*object*/) {});
    add("designation changed", "xx|xx", "н1 н1 | Н1 н1",
        [](DefPolygon &object) { object.contours[0][1].def = QStringLiteral("н1"); });
    add("coordinate changed", "..|..", "н1 н2 | Н1 н1", [](DefPolygon &object) { object.contours[0][0].x = 9.01; });
    add("vertex removed", "x.|x.", "н1 н2 | Н1 invalid", [](DefPolygon &object) { object.contours[1].removeLast(); });
    add("contour removed", "..|..", "н1 н2 | invalid invalid",
        [](DefPolygon &object) { object.contours.removeLast(); });
    add("another object", "xx|..", "а А | б invalid",
        [](DefPolygon &object) { object = objectOf(QStringLiteral("а 0 0, А 1 1 | б 0 0")); });
}

void tst_DefPolygonTableModelEdit::cellsFollowTheObject()
{
    QFETCH(Change, change);
    QFETCH(QString, shown);
    Table table(QStringLiteral("н1 0 0, н2 5 5 | Н1 9 0, н1 9 0"));
    QCOMPARE(rowMarks(table.model), QStringLiteral("x.|xx"));
    const ModelLog log(table.model);

    change(table.object);

    QTEST(rowMarks(table.model), "marks");
    QCOMPARE(shownBy(table.model), shown);
    QVERIFY(!shown.endsWith(QStringLiteral("invalid")) || isEmptyCell(table.model, table.cell(4)));
    QCOMPARE(log.text(), QString());
}

void tst_DefPolygonTableModelEdit::vertexWithoutRowHasNoConflicts()
{
    Table table(QStringLiteral("н1 0 0, н2 5 5"));

    table.object.contours[0].append(DefPoint{QStringLiteral("н1"), 9, 9});
    QCOMPARE(rowMarks(table.model), QStringLiteral(".."));
    table.model.rebuildRows();

    QCOMPARE(rowMarks(table.model), QStringLiteral("x.x"));
}

void tst_DefPolygonTableModelEdit::detachedTableHasEmptyRows()
{
    std::optional<DefPolygon> object = objectOf(QStringLiteral("н1 0 0 | н1 9 9"));
    DefPolygonTableModel model;
    model.setPolygon(&*object);
    QCOMPARE(rowMarks(model), QStringLiteral("x|x"));
    const ModelLog log(model);

    model.detachPolygon();
    model.refresh();
    object.reset();

    QCOMPARE(model.rowCount(), 3);
    for (int row = 0; row < 3; ++row) {
        const QModelIndex cell = model.index(row, 0);
        QVERIFY(isEmptyCell(model, cell));
        QCOMPARE(cell.flags(), row == 1 ? Qt::NoItemFlags : Qt::ItemIsSelectable | Qt::ItemIsEnabled);
        QVERIFY(!model.isConflictingPoint(row));
    }
    QCOMPARE(log.text(), QString());
    object = objectOf(QStringLiteral("н5 0 0"));
    model.setPolygon(&*object);
    QCOMPARE(shownBy(model), QStringLiteral("н5"));
    QCOMPARE(rowMarks(model), QStringLiteral("."));
}

// A reset would lose the scroll position and the selection of the view.
void tst_DefPolygonTableModelEdit::refreshWithSameShapeDoesNotReset()
{
    Table table(QStringLiteral("н1 0 0, н2 1 1 | н3 2 2"));
    const QAbstractItemModelTester tester(&table.model, failTest);
    QCOMPARE(rowMarks(table.model), QStringLiteral("..|."));
    const ModelLog log(table.model);
    table.object = objectOf(QStringLiteral("н5 0 0, Н5 1 1 | н6 2 2"));

    table.model.refresh();

    QVERIFY2(log.text().startsWith(QStringLiteral("changed 0,0 to 3,2 roles")), qUtf8Printable(log.text()));
    QVERIFY(log.text().endsWith(QStringLiteral(" [н5 Н5 | н6]")));
    QCOMPARE(log.text().count(QLatin1Char('[')), 1);
    QCOMPARE(rowMarks(table.model), QStringLiteral("xx|."));
}

void tst_DefPolygonTableModelEdit::refreshWithoutRowsSignalsNoCells()
{
    Table table(QStringLiteral(" "));
    const ModelLog log(table.model);

    table.model.refresh();

    QVERIFY2(!log.text().contains(QStringLiteral("changed")), qUtf8Printable(log.text()));
}

void tst_DefPolygonTableModelEdit::refreshWithAnotherShapeResets_data()
{
    QTest::addColumn<QString>("object");
    QTest::addColumn<QString>("change");

    QTest::newRow("more contours") << QStringLiteral("н5 0 0 | н6 1 1 | н7 2 2")
                                   << QStringLiteral("reset [н5 invalid | н6] to [н5 | н6 | н7]");
    QTest::newRow("same number of rows") << QStringLiteral("н5 0 0 | н6 1 1, н7 2 2")
                                         << QStringLiteral("reset [н5 invalid | н6] to [н5 | н6 н7]");
    QTest::newRow("longer last contour") << QStringLiteral("н4 0 0, н5 0 0 | н6 1 1, н7 2 2")
                                         << QStringLiteral("reset [н4 н5 | н6] to [н4 н5 | н6 н7]");
    QTest::newRow("no contours") << QString() << QStringLiteral("reset [invalid invalid | invalid] to []");
}

void tst_DefPolygonTableModelEdit::refreshWithAnotherShapeResets()
{
    QFETCH(QString, object);
    Table table(QStringLiteral("н1 0 0, н2 1 1 | н3 2 2"));
    const QAbstractItemModelTester tester(&table.model, failTest);
    const ModelLog log(table.model);
    table.object = objectOf(object);

    table.model.refresh();

    QTEST(log.text(), "change");
}

void tst_DefPolygonTableModelEdit::rebuildingRowsSignalsNothing()
{
    Table table(QStringLiteral("н1 0 0, н2 1 1 | н3 2 2"));
    const ModelLog log(table.model);
    table.object = objectOf(QStringLiteral("н5 0 0 | н6 1 1 | н7 2 2"));

    table.model.rebuildRows();

    QCOMPARE(shownBy(table.model), QStringLiteral("н5 | н6 | н7"));
    QCOMPARE(log.text(), QString());
}

QTEST_GUILESS_MAIN(tst_DefPolygonTableModelEdit)
#include "tst_defpolygontablemodel_edit.moc"
