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
    void renamingToTheSameTextIsRefused();
    void otherEditsAreRefused();
    void renamingUpdatesConflicts();
    void renamingDoesNotCopyTheVertices();
    void queryingConflictsDoesNotDetach();

    void conflictsFollowTheObject_data();
    void conflictsFollowTheObject();
    void vertexWithoutRowHasNoConflicts();
    void removedVerticesAreEmpty_data();
    void removedVerticesAreEmpty();
    void detachedObjectIsEmpty();
    void detachedObjectCanBeDestroyed();
    void refreshShowsAnObjectOfAnotherShape_data();
    void refreshShowsAnObjectOfAnotherShape();
    void rowsAreRebuiltSilently();
};

void tst_DefPolygonTableModelEdit::renamingIsStoredAndSignalled_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("shown");

    QTest::newRow("case only") << QVariant(QStringLiteral("Н2")) << QStringLiteral("Н2");
    QTest::newRow("spaces are kept") << QVariant(QStringLiteral(" н2 ")) << QStringLiteral(" н2 ");
    QTest::newRow("no value") << QVariant() << QStringLiteral("null");
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

void tst_DefPolygonTableModelEdit::renamingToTheSameTextIsRefused()
{
    Table table(QStringLiteral("н1 0 0, - 1 1"));
    const ModelLog log(table.model);

    QVERIFY(!table.model.setData(table.cell(0), QStringLiteral("н1")));
    QVERIFY(!table.model.setData(table.cell(1), QStringLiteral("")));

    QCOMPARE(log.text(), QString());
    QVERIFY(table.object.contours.at(0).at(1).def.isNull());
}

void tst_DefPolygonTableModelEdit::otherEditsAreRefused()
{
    const QVariant value = QStringLiteral("new");
    Table table(QStringLiteral("н1 0 0 | н2 1 1"));
    table.model.setFieldNumValueMap({{3, QStringLiteral("ЗУ")}});
    const ModelLog log(table.model);

    for (int role : rolesExcept({Qt::EditRole}))
        QVERIFY(!table.model.setData(table.cell(0), value, role));
    for (int column : {1, 2, 3})
        QVERIFY(!table.model.setData(table.cell(0, column), value));
    QVERIFY(!table.model.setData(table.cell(1), value));
    table.model.setNxyColNum(-1, 1, 2);
    QVERIFY(!table.model.setData(QModelIndex(), value));
    QVERIFY(!table.model.setData(table.model.createIndex(0, -1), value));

    QCOMPARE(log.text(), QString());
    QCOMPARE(table.object.contours.at(0).at(0).def, QStringLiteral("н1"));
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

void tst_DefPolygonTableModelEdit::conflictsFollowTheObject_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<QString>("marks");
    const auto add = [](const char *name, const char *marks, Change change) {
        QTest::newRow(name) << change << QString::fromLatin1(marks);
    };

    add("unchanged", "x.|x", [](DefPolygon & /*object*/) {});
    add("number", "xx|x", [](DefPolygon &object) { object.contours[0][1].def = QStringLiteral("н1"); });
    add("place", "..|.", [](DefPolygon &object) { object.contours[1][0].x = 0.01; });
    add("vertex removed", "..|.", [](DefPolygon &object) { object.contours[1].removeLast(); });
    add("another object", "xx|.",
        [](DefPolygon &object) { object = objectOf(QStringLiteral("а 0 0, А 1 1 | б 0 0")); });
    add("empty object", "..|.", [](DefPolygon &object) { object = DefPolygon(); });
}

void tst_DefPolygonTableModelEdit::conflictsFollowTheObject()
{
    QFETCH(Change, change);
    Table table(QStringLiteral("н1 0 0, н2 5 5 | Н1 9 0"));
    QCOMPARE(rowMarks(table.model), QStringLiteral("x.|x"));

    change(table.object);

    QTEST(rowMarks(table.model), "marks");
}

void tst_DefPolygonTableModelEdit::vertexWithoutRowHasNoConflicts()
{
    Table table(QStringLiteral("н1 0 0, н2 5 5"));

    table.object.contours[0].append(DefPoint{QStringLiteral("н1"), 9, 9});
    QCOMPARE(rowMarks(table.model), QStringLiteral(".."));
    table.model.rebuildRows();

    QCOMPARE(rowMarks(table.model), QStringLiteral("x.x"));
}

void tst_DefPolygonTableModelEdit::removedVerticesAreEmpty_data()
{
    QTest::addColumn<QString>("left");
    QTest::addColumn<QString>("shown");

    QTest::newRow("last vertex") << QStringLiteral("н1 0 0, н2 1 1 | н3 2 2") << QStringLiteral("н1 н2 | н3 invalid");
    QTest::newRow("last contour") << QStringLiteral("н1 0 0, н2 1 1") << QStringLiteral("н1 н2 | invalid invalid");
}

void tst_DefPolygonTableModelEdit::removedVerticesAreEmpty()
{
    QFETCH(QString, left);
    QFETCH(QString, shown);
    Table table(QStringLiteral("н1 0 0, н2 1 1 | н3 2 2, н3 3 3"));
    QVERIFY(table.model.isConflictingPoint(4));
    table.object = objectOf(left);
    const ModelLog log(table.model);

    QCOMPARE(shownBy(table.model), shown);
    QCOMPARE(rowMarks(table.model), QStringLiteral("..|.."));
    QVERIFY(isEmptyCell(table.model, table.cell(4)));
    QVERIFY(!table.model.isConflictingPoint(4));
    QCOMPARE(log.text(), QString());
}

void tst_DefPolygonTableModelEdit::detachedObjectIsEmpty()
{
    Table table(QStringLiteral("н1 0 0 | н1 9 9"));
    const ModelLog log(table.model);

    table.model.detachPolygon();
    table.model.refresh();

    QCOMPARE(table.model.rowCount(), 3);
    for (int row = 0; row < 3; ++row) {
        QVERIFY(isEmptyCell(table.model, table.cell(row)));
        QCOMPARE(table.cell(row).flags(), row == 1 ? Qt::NoItemFlags : Qt::ItemIsSelectable | Qt::ItemIsEnabled);
        QVERIFY(!table.model.isConflictingPoint(row));
    }
    QCOMPARE(log.text(), QString());
    QCOMPARE(table.object.contours.at(0).at(0).def, QStringLiteral("н1"));
}

void tst_DefPolygonTableModelEdit::detachedObjectCanBeDestroyed()
{
    std::optional<DefPolygon> object = objectOf(QStringLiteral("н1 0 0, н1 5 5"));
    DefPolygonTableModel model;
    model.setPolygon(&*object);
    QCOMPARE(rowMarks(model), QStringLiteral("xx"));
    model.detachPolygon();
    object.reset();
    const ModelLog log(model);

    object = objectOf(QStringLiteral("н5 0 0"));
    model.setPolygon(&*object);

    QCOMPARE(log.text(), QStringLiteral("reset [invalid invalid] to [н5]"));
    QCOMPARE(rowMarks(model), QStringLiteral("."));
}

void tst_DefPolygonTableModelEdit::refreshShowsAnObjectOfAnotherShape_data()
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

void tst_DefPolygonTableModelEdit::refreshShowsAnObjectOfAnotherShape()
{
    QFETCH(QString, object);
    Table table(QStringLiteral("н1 0 0, н2 1 1 | н3 2 2"));
    const QAbstractItemModelTester tester(&table.model, failTest);
    const ModelLog log(table.model);
    table.object = objectOf(object);

    table.model.refresh();

    QTEST(log.text(), "change");
}

void tst_DefPolygonTableModelEdit::rowsAreRebuiltSilently()
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
