#include "modeltesting.h"

#include <QTest>

#include <limits>

class tst_DefPolygonTableModelEdit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void renamingIsStoredAndTold_data();
    void renamingIsStoredAndTold();
    void wholeTableIsToldOfRenaming();
    void renamingIsToldWithTheLargestColumn();
    void renamingReachesOnlyTheObject();
    void renamingEndsConflicts();
    void renamingMakesConflicts();
    void renamingToTheSameIsRefused_data();
    void renamingToTheSameIsRefused();
    void otherEditsAreRefused();
    void numberColumnThatIsNotShownIsRefused_data();
    void numberColumnThatIsNotShownIsRefused();
    void verticesThatAreGoneAreEmpty_data();
    void verticesThatAreGoneAreEmpty();
    void verticesThatAreGoneConflictWithNone();
    void rowsThatAreGoneAreEmpty();
    void droppedObjectIsEmpty();
    void anotherObjectIsShownAfterDrop();
    void refreshShowsWhatStandsThereNow();
    void refreshAfterDropDoesNothing();
    void rowsAreRebuiltSilently();
};

void tst_DefPolygonTableModelEdit::renamingIsStoredAndTold_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("def");

    QTest::newRow("text") << QVariant(QStringLiteral("н9")) << QStringLiteral("н9");
    QTest::newRow("number of another vertex") << QVariant(QStringLiteral("н1")) << QStringLiteral("н1");
    QTest::newRow("case only") << QVariant(QStringLiteral("Н2")) << QStringLiteral("Н2");
    QTest::newRow("spaces are kept") << QVariant(QStringLiteral(" н2 ")) << QStringLiteral(" н2 ");
    QTest::newRow("empty") << QVariant(QStringLiteral("")) << QStringLiteral("");
    QTest::newRow("no value") << QVariant() << QString();
    QTest::newRow("number") << QVariant(12) << QStringLiteral("12");
}

void tst_DefPolygonTableModelEdit::renamingIsStoredAndTold()
{
    QFETCH(QVariant, value);
    QFETCH(QString, def);
    Table table(QStringLiteral("н1 0 0, н2 1 1"));
    const QAbstractItemModelTester tester(&table.model, failTest);
    const ModelLog log(table.model);

    QVERIFY(table.model.setData(table.cell(1), value));

    QCOMPARE(table.object.contours.at(0).at(1).def, def);
    QCOMPARE(table.object.contours.at(0).at(0).def, QStringLiteral("н1"));
    QCOMPARE(log.texts(), (QStringList{QStringLiteral("changed 1,0 to 1,0 roles 0 2"),
                                       QStringLiteral("changed 0,0 to 1,2 roles 8")}));
    QCOMPARE(table.cell(1).data(Qt::EditRole).toString(), def);
}

void tst_DefPolygonTableModelEdit::wholeTableIsToldOfRenaming()
{
    Table table(QStringLiteral("н1 0 0 | н2 1 1, н3 2 2"));
    const QAbstractItemModelTester tester(&table.model, failTest);
    table.model.setNxyColNum(4, 1, 2);
    table.model.setFieldNumValueMap({{6, QStringLiteral("ЗУ")}});
    table.model.setPolygon(&table.object);
    const ModelLog log(table.model);

    QVERIFY(table.model.setData(table.cell(2, 4), QStringLiteral("н9")));

    QCOMPARE(log.texts(), (QStringList{QStringLiteral("changed 2,4 to 2,4 roles 0 2"),
                                       QStringLiteral("changed 0,0 to 3,6 roles 8")}));
    QCOMPARE(table.object.contours.at(1).at(0).def, QStringLiteral("н9"));
}

void tst_DefPolygonTableModelEdit::renamingIsToldWithTheLargestColumn()
{
    Table table(QStringLiteral("н1 0 0"));
    table.model.setNxyColNum(0, 1, std::numeric_limits<int>::max());
    const ModelLog log(table.model);

    QVERIFY(table.model.setData(table.cell(0), QStringLiteral("н9")));

    QCOMPARE(log.texts(), (QStringList{QStringLiteral("changed 0,0 to 0,0 roles 0 2"),
                                       QStringLiteral("changed 0,0 to 0,2147483646 roles 8")}));
}

void tst_DefPolygonTableModelEdit::renamingReachesOnlyTheObject()
{
    Table table(QStringLiteral("н1 0 0, н1 0 0"));
    const DefPolygon copy = table.object;

    QVERIFY(table.model.setData(table.cell(0), QStringLiteral("н9")));

    QCOMPARE(shownBy(table.model), QStringLiteral("н9 н1"));
    QCOMPARE(copy.contours.at(0).at(0).def, QStringLiteral("н1"));
}

void tst_DefPolygonTableModelEdit::renamingEndsConflicts()
{
    Table table(QStringLiteral("н1 0 0 | Н1 9 9"));
    QCOMPARE(backgroundsOf(table.model),
             (QStringList{QStringLiteral("#ffdcdc"), QStringLiteral("#f0f0f0"), QStringLiteral("#ffdcdc")}));

    QVERIFY(table.model.setData(table.cell(2), QStringLiteral("н2")));

    QCOMPARE(backgroundsOf(table.model),
             (QStringList{QStringLiteral("none"), QStringLiteral("#f0f0f0"), QStringLiteral("none")}));
}

void tst_DefPolygonTableModelEdit::renamingMakesConflicts()
{
    Table table(QStringLiteral("н1 0 0, н2 9 9"));

    QVERIFY(table.model.setData(table.cell(1), QStringLiteral("н1")));

    QCOMPARE(backgroundsOf(table.model), (QStringList{QStringLiteral("#ffdcdc"), QStringLiteral("#ffdcdc")}));
}

void tst_DefPolygonTableModelEdit::renamingToTheSameIsRefused_data()
{
    QTest::addColumn<QString>("def");
    QTest::addColumn<QVariant>("value");

    QTest::newRow("same text") << QStringLiteral("н1") << QVariant(QStringLiteral("н1"));
    QTest::newRow("same number") << QStringLiteral("12") << QVariant(12);
    QTest::newRow("empty") << QStringLiteral("") << QVariant(QStringLiteral(""));
    QTest::newRow("empty for a missing one") << QString() << QVariant(QStringLiteral(""));
    QTest::newRow("missing for an empty one") << QStringLiteral("") << QVariant();
}

void tst_DefPolygonTableModelEdit::renamingToTheSameIsRefused()
{
    QFETCH(QString, def);
    QFETCH(QVariant, value);
    Table table(QStringLiteral("- 0 0"));
    table.object.contours[0][0].def = def;
    const ModelLog log(table.model);

    QVERIFY(!table.model.setData(table.cell(0), value));

    QCOMPARE(log.texts(), QStringList());
    QCOMPARE(table.object.contours.at(0).at(0).def, def);
    QCOMPARE(table.object.contours.at(0).at(0).def.isNull(), def.isNull());
}

void tst_DefPolygonTableModelEdit::otherEditsAreRefused()
{
    const QVariant value = QStringLiteral("new");
    Table table(QStringLiteral("н1 0 0 | н2 1 1"));
    table.model.setFieldNumValueMap({{3, QStringLiteral("ЗУ")}});
    const ModelLog log(table.model);

    for (int role : otherRoles() + QVector<int>{Qt::DisplayRole, Qt::BackgroundRole})
        QVERIFY(!table.model.setData(table.cell(0), value, role));
    for (int column : {1, 2, 3})
        QVERIFY(!table.model.setData(table.cell(0, column), value));
    for (int column : {0, 1, 2, 3})
        QVERIFY(!table.model.setData(table.cell(1, column), value));
    QVERIFY(!table.model.setData(QModelIndex(), value));
    QVERIFY(!table.model.setData(table.model.createIndex(3, 0), value));

    QCOMPARE(log.texts(), QStringList());
    QCOMPARE(shownBy(table.model), QStringLiteral("н1 | н2"));
    QCOMPARE(table.object.contours.at(0).at(0).x, 0.0);
}

void tst_DefPolygonTableModelEdit::numberColumnThatIsNotShownIsRefused_data()
{
    QTest::addColumn<int>("nColumn");

    QTest::newRow("left of the table") << -1;
    QTest::newRow("far left") << std::numeric_limits<int>::min();
    QTest::newRow("another column") << 2;
}

void tst_DefPolygonTableModelEdit::numberColumnThatIsNotShownIsRefused()
{
    QFETCH(int, nColumn);
    Table table(QStringLiteral("н1 0 0"));
    table.model.setNxyColNum(nColumn, 0, 1);
    const ModelLog log(table.model);

    QVERIFY(!table.model.setData(table.cell(0, 0), QStringLiteral("new")));
    QVERIFY(!table.model.setData(table.cell(0, 1), QStringLiteral("new")));
    QVERIFY(!table.model.setData(QModelIndex(), QStringLiteral("new")));
    QVERIFY(!table.model.setData(table.model.createIndex(0, -1), QStringLiteral("new")));

    QCOMPARE(log.texts(), QStringList());
    QCOMPARE(table.object.contours.at(0).at(0).def, QStringLiteral("н1"));
}

void tst_DefPolygonTableModelEdit::verticesThatAreGoneAreEmpty_data()
{
    QTest::addColumn<QString>("left");
    QTest::addColumn<QString>("shown");

    QTest::newRow("last vertex") << QStringLiteral("н1 0 0, н2 1 1 | н3 2 2") << QStringLiteral("н1 н2 | н3 invalid");
    QTest::newRow("first contour emptied")
        << QStringLiteral(" | н3 2 2, н4 3 3") << QStringLiteral("invalid invalid | н3 н4");
    QTest::newRow("last contour") << QStringLiteral("н1 0 0, н2 1 1") << QStringLiteral("н1 н2 | invalid invalid");
    QTest::newRow("all contours") << QString() << QStringLiteral("invalid invalid | invalid invalid");
}

void tst_DefPolygonTableModelEdit::verticesThatAreGoneAreEmpty()
{
    QFETCH(QString, left);
    QFETCH(QString, shown);
    Table table(QStringLiteral("н1 0 0, н2 1 1 | н3 2 2, н4 3 3"));
    table.object = objectOf(left);
    const ModelLog log(table.model);

    QCOMPARE(shownBy(table.model), shown);
    const QStringList texts = shown.split(QLatin1Char(' '));
    for (int row = 0; row < texts.size(); ++row) {
        if (texts.at(row) != QStringLiteral("invalid"))
            continue;
        for (int role : {Qt::DisplayRole, Qt::EditRole, Qt::BackgroundRole})
            QVERIFY(!table.cell(row).data(role).isValid());
        QVERIFY(!table.model.setData(table.cell(row), QStringLiteral("new")));
        QVERIFY(!table.model.isConflictingPoint(row));
    }
    QCOMPARE(log.texts(), QStringList());
}

void tst_DefPolygonTableModelEdit::verticesThatAreGoneConflictWithNone()
{
    Table table(QStringLiteral("н1 0 0 | н1 9 9"));
    QVERIFY(table.model.isConflictingPoint(0));

    table.object.contours.removeLast();

    QVERIFY(!table.model.isConflictingPoint(0));
    QCOMPARE(backgroundOf(table.cell(0)), QStringLiteral("none"));
}

void tst_DefPolygonTableModelEdit::rowsThatAreGoneAreEmpty()
{
    Table table(QStringLiteral("н1 0 0, н2 1 1, н3 2 2"));
    const QModelIndex gone = table.cell(2);
    DefPolygon shorter = objectOf(QStringLiteral("н5 0 0"));
    table.model.setPolygon(&shorter);
    const ModelLog log(table.model);

    for (int role : {Qt::DisplayRole, Qt::EditRole, Qt::BackgroundRole})
        QVERIFY(!table.model.data(gone, role).isValid());
    QVERIFY(!table.model.setData(gone, QStringLiteral("new")));
    QCOMPARE(table.model.flags(gone), Qt::NoItemFlags);
    QCOMPARE(log.texts(), QStringList());
    QCOMPARE(table.object.contours.at(0).at(2).def, QStringLiteral("н3"));
}

void tst_DefPolygonTableModelEdit::droppedObjectIsEmpty()
{
    Table table(QStringLiteral("н1 0 0 | н1 9 9"));
    const ModelLog log(table.model);

    table.model.detachPolygon();

    QCOMPARE(table.model.rowCount(), 3);
    QCOMPARE(table.model.columnCount(), 3);
    for (int row = 0; row < 3; ++row) {
        for (int role : {Qt::DisplayRole, Qt::EditRole, Qt::BackgroundRole})
            QVERIFY(!table.cell(row).data(role).isValid());
        QVERIFY(!table.model.setData(table.cell(row), QStringLiteral("new")));
        QVERIFY((table.cell(row).flags() & Qt::ItemIsEditable) == 0);
        QVERIFY(!table.model.isConflictingPoint(row));
    }
    QCOMPARE(table.cell(1).flags(), Qt::NoItemFlags);
    QCOMPARE(log.texts(), QStringList());
    QCOMPARE(table.object.contours.at(0).at(0).def, QStringLiteral("н1"));
}

void tst_DefPolygonTableModelEdit::anotherObjectIsShownAfterDrop()
{
    Table table(QStringLiteral("н1 0 0, н2 1 1"));
    table.model.detachPolygon();
    table.object = objectOf(QStringLiteral("н5 0 0"));
    const ModelLog log(table.model);

    table.model.setPolygon(&table.object);

    QCOMPARE(log.texts(), (QStringList{QStringLiteral("about to reset 2 rows"), QStringLiteral("reset 1 rows")}));
    QCOMPARE(shownBy(table.model), QStringLiteral("н5"));
}

void tst_DefPolygonTableModelEdit::refreshShowsWhatStandsThereNow()
{
    Table table(QStringLiteral("н1 0 0"));
    const QAbstractItemModelTester tester(&table.model, failTest);
    const ModelLog log(table.model);

    table.object = objectOf(QStringLiteral("н5 0 0 | н6 1 1"));
    table.model.refresh();

    QCOMPARE(log.texts(), (QStringList{QStringLiteral("about to reset 1 rows"), QStringLiteral("reset 3 rows")}));
    QCOMPARE(shownBy(table.model), QStringLiteral("н5 | н6"));
}

void tst_DefPolygonTableModelEdit::refreshAfterDropDoesNothing()
{
    Table table(QStringLiteral("н1 0 0"));
    table.model.detachPolygon();
    const ModelLog log(table.model);

    table.model.refresh();

    QCOMPARE(log.texts(), QStringList());
    QCOMPARE(shownBy(table.model), QStringLiteral("invalid"));
}

void tst_DefPolygonTableModelEdit::rowsAreRebuiltSilently()
{
    Table table(QStringLiteral("н1 0 0, н2 1 1 | н3 2 2"));
    const ModelLog log(table.model);
    table.object = objectOf(QStringLiteral("н5 0 0 | н6 1 1 | н7 2 2"));

    table.model.rebuildRows();
    QCOMPARE(shownBy(table.model), QStringLiteral("н5 | н6 | н7"));
    table.object.contours.clear();
    table.model.rebuildRows();
    QCOMPARE(table.model.rowCount(), 0);

    QCOMPARE(log.texts(), QStringList());
}

QTEST_GUILESS_MAIN(tst_DefPolygonTableModelEdit)
#include "tst_defpolygontablemodel_edit.moc"
