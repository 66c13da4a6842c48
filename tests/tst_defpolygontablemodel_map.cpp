#include "modeltesting.h"

#include <QTest>

namespace {

QVector<DefPolygon> objectsNamed(const QStringList &defs)
{
    QVector<DefPolygon> objects;
    for (const QString &def : defs)
        objects.append(DefPolygon{def, {}});
    return objects;
}

QStringList defsOf(const QVector<DefPolygon> &objects)
{
    QStringList defs;
    for (const DefPolygon &object : objects)
        defs.append(object.def);
    return defs;
}

/// A model that shows objects with the given designations.
struct List
{
    explicit List(const QStringList &defs) : objects(objectsNamed(defs)) { model.setMap(&objects); }

    QModelIndex row(int row) const { return model.index(row, 0); }

    QVector<DefPolygon> objects;
    OpenModel<DefMapTableModel> model;
};

} // namespace

class tst_DefMapTableModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsNothingAtFirst();
    void setMapResets();
    void setMapShowsNothingAgain();
    void sortedObjectsAreShownAfterSetMap();
    void rowsHaveNoChildren();
    void headersAreNumbered_data();
    void headersAreNumbered();
    void otherHeaderRolesAreEmpty();
    void flagsOfCell();
    void designationIsShown_data();
    void designationIsShown();
    void missingDesignationIsNull();
    void otherCellsAreEmpty();
    void duplicatesAreColoured_data();
    void duplicatesAreColoured();
    void renamingIsStoredAndTold_data();
    void renamingIsStoredAndTold();
    void renamingEndsDuplicates();
    void renamingMakesDuplicates();
    void renamingToTheSameIsRefused_data();
    void renamingToTheSameIsRefused();
    void otherEditsAreRefused();
    void objectsThatAreGoneAreEmpty();
    void droppedObjectsAreEmpty();
    void objectsAreShownAgainAfterDrop();
};

void tst_DefMapTableModel::showsNothingAtFirst()
{
    DefMapTableModel model;
    const QAbstractItemModelTester tester(&model, failTest);

    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(model.columnCount(), 1);
    QVERIFY(!model.isDuplicateDef(-1));
    QVERIFY(!model.isDuplicateDef(0));
    QVERIFY(!model.isDuplicateDef(1));
}

void tst_DefMapTableModel::setMapResets()
{
    QVector<DefPolygon> objects = objectsNamed({QStringLiteral("ЗУ1"), QStringLiteral("ЗУ2")});
    DefMapTableModel model;
    const QAbstractItemModelTester tester(&model, failTest);
    const ModelLog log(model);

    model.setMap(&objects);

    QCOMPARE(log.texts(), (QStringList{QStringLiteral("about to reset 0 rows"), QStringLiteral("reset 2 rows")}));
    QCOMPARE(model.rowCount(), 2);
    QCOMPARE(model.columnCount(), 1);
}

void tst_DefMapTableModel::setMapShowsNothingAgain()
{
    List list({QStringLiteral("ЗУ1"), QStringLiteral("ЗУ2")});
    const QAbstractItemModelTester tester(&list.model, failTest);
    const ModelLog log(list.model);

    list.model.setMap(nullptr);

    QCOMPARE(log.texts(), (QStringList{QStringLiteral("about to reset 2 rows"), QStringLiteral("reset 0 rows")}));
    QVERIFY(!list.model.isDuplicateDef(0));
    QCOMPARE(defsOf(list.objects), (QStringList{QStringLiteral("ЗУ1"), QStringLiteral("ЗУ2")}));
}

void tst_DefMapTableModel::sortedObjectsAreShownAfterSetMap()
{
    List list({QStringLiteral("н10"), QStringLiteral("н2")});
    const QAbstractItemModelTester tester(&list.model, failTest);
    const ModelLog log(list.model);

    sortObjects(list.objects);
    list.model.setMap(&list.objects);

    QCOMPARE(log.texts(), (QStringList{QStringLiteral("about to reset 2 rows"), QStringLiteral("reset 2 rows")}));
    QCOMPARE(list.row(0).data().toString(), QStringLiteral("н2"));
    QCOMPARE(list.row(1).data().toString(), QStringLiteral("н10"));
}

void tst_DefMapTableModel::rowsHaveNoChildren()
{
    const List list({QStringLiteral("ЗУ1"), QStringLiteral("ЗУ2")});

    QCOMPARE(list.model.rowCount(list.row(0)), 0);
    QCOMPARE(list.model.columnCount(list.row(0)), 1);
}

void tst_DefMapTableModel::headersAreNumbered_data()
{
    QTest::addColumn<int>("section");
    QTest::addColumn<Qt::Orientation>("orientation");
    QTest::addColumn<QVariant>("text");

    QTest::newRow("column") << 0 << Qt::Horizontal << QVariant(QStringLiteral("N"));
    QTest::newRow("first row") << 0 << Qt::Vertical << QVariant(1);
    QTest::newRow("second row") << 1 << Qt::Vertical << QVariant(2);
    QTest::newRow("row beyond the last") << 99 << Qt::Vertical << QVariant(100);
}

void tst_DefMapTableModel::headersAreNumbered()
{
    QFETCH(int, section);
    QFETCH(Qt::Orientation, orientation);
    const List list({QStringLiteral("ЗУ1"), QStringLiteral("ЗУ2")});

    QTEST(list.model.headerData(section, orientation), "text");
}

void tst_DefMapTableModel::otherHeaderRolesAreEmpty()
{
    const List list({QStringLiteral("ЗУ1")});

    for (int role : otherRoles() + QVector<int>{Qt::EditRole, Qt::BackgroundRole}) {
        QVERIFY(!list.model.headerData(0, Qt::Horizontal, role).isValid());
        QVERIFY(!list.model.headerData(0, Qt::Vertical, role).isValid());
    }
}

void tst_DefMapTableModel::flagsOfCell()
{
    const List list({QStringLiteral("ЗУ1"), QString()});

    QCOMPARE(list.model.flags(QModelIndex()), Qt::ItemFlags());
    QCOMPARE(list.model.flags(list.row(0)), Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsEditable);
    QCOMPARE(list.model.flags(list.row(1)), Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsEditable);
    QCOMPARE(list.model.flags(list.model.createIndex(0, 1)), Qt::ItemIsSelectable | Qt::ItemIsEnabled);
}

void tst_DefMapTableModel::designationIsShown_data()
{
    QTest::addColumn<QString>("def");

    QTest::newRow("text") << QStringLiteral("ЗУ1");
    QTest::newRow("spaces are kept") << QStringLiteral(" ЗУ 1 ");
    QTest::newRow("number stays a text") << QStringLiteral("007");
    QTest::newRow("empty") << QStringLiteral("");
}

void tst_DefMapTableModel::designationIsShown()
{
    QFETCH(QString, def);
    const List list({QStringLiteral("other"), def});

    for (int role : {Qt::DisplayRole, Qt::EditRole}) {
        const QVariant value = list.row(1).data(role);
        QCOMPARE(value.userType(), static_cast<int>(QMetaType::QString));
        QCOMPARE(value.toString(), def);
        QVERIFY(!value.isNull());
    }
}

void tst_DefMapTableModel::missingDesignationIsNull()
{
    const List list({QString()});

    for (int role : {Qt::DisplayRole, Qt::EditRole}) {
        const QVariant value = list.row(0).data(role);
        QCOMPARE(value.userType(), static_cast<int>(QMetaType::QString));
        QVERIFY(value.isNull());
    }
}

void tst_DefMapTableModel::otherCellsAreEmpty()
{
    const List list({QStringLiteral("н1"), QStringLiteral("н1")});

    QVERIFY(!list.model.data(QModelIndex(), Qt::DisplayRole).isValid());
    QVERIFY(!list.model.data(QModelIndex(), Qt::BackgroundRole).isValid());
    QVERIFY(!list.model.data(list.model.createIndex(0, 1), Qt::BackgroundRole).isValid());
    QVERIFY(!list.model.data(list.model.createIndex(0, -1), Qt::DisplayRole).isValid());
    for (int role : otherRoles())
        QVERIFY(!list.row(0).data(role).isValid());
}

void tst_DefMapTableModel::duplicatesAreColoured_data()
{
    QTest::addColumn<QString>("defs");
    QTest::addColumn<QString>("colours");

    QTest::newRow("one object") << QStringLiteral("н1") << QStringLiteral("none");
    QTest::newRow("all different") << QStringLiteral("н1,н2,ЗУ1") << QStringLiteral("none,none,none");
    QTest::newRow("same") << QStringLiteral("н1,н2,н1") << QStringLiteral("#ffdcdc,none,#ffdcdc");
    QTest::newRow("case does not count") << QStringLiteral("ЗУ1,зу1") << QStringLiteral("#ffdcdc,#ffdcdc");
    QTest::newRow("three") << QStringLiteral("н1,Н1,н1") << QStringLiteral("#ffdcdc,#ffdcdc,#ffdcdc");
    QTest::newRow("two pairs") << QStringLiteral("а,б,Б,А") << QStringLiteral("#ffdcdc,#ffdcdc,#ffdcdc,#ffdcdc");
    QTest::newRow("leading zeros count") << QStringLiteral("н1,н01") << QStringLiteral("none,none");
    QTest::newRow("spaces count") << QStringLiteral("н1,н1 ") << QStringLiteral("none,none");
    QTest::newRow("empty ones") << QStringLiteral(",,н1") << QStringLiteral("none,none,none");
}

void tst_DefMapTableModel::duplicatesAreColoured()
{
    QFETCH(QString, defs);
    QFETCH(QString, colours);
    const QLatin1Char comma(',');
    const List list(defs.split(comma));

    QCOMPARE(backgroundsOf(list.model), colours.split(comma));
    for (int row = 0; row < list.model.rowCount(); ++row)
        QCOMPARE(list.model.isDuplicateDef(row), colours.split(comma).at(row) != QStringLiteral("none"));
    QVERIFY(!list.model.isDuplicateDef(-1));
    QVERIFY(!list.model.isDuplicateDef(list.model.rowCount()));
}

void tst_DefMapTableModel::renamingIsStoredAndTold_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("def");

    QTest::newRow("text") << QVariant(QStringLiteral("ЗУ5")) << QStringLiteral("ЗУ5");
    QTest::newRow("text of another object") << QVariant(QStringLiteral("а")) << QStringLiteral("а");
    QTest::newRow("case only") << QVariant(QStringLiteral("Б")) << QStringLiteral("Б");
    QTest::newRow("spaces are kept") << QVariant(QStringLiteral(" б ")) << QStringLiteral(" б ");
    QTest::newRow("empty") << QVariant(QStringLiteral("")) << QStringLiteral("");
    QTest::newRow("no value") << QVariant() << QString();
    QTest::newRow("number") << QVariant(12) << QStringLiteral("12");
}

void tst_DefMapTableModel::renamingIsStoredAndTold()
{
    QFETCH(QVariant, value);
    QFETCH(QString, def);
    List list({QStringLiteral("а"), QStringLiteral("б"), QStringLiteral("в")});
    const QAbstractItemModelTester tester(&list.model, failTest);
    const ModelLog log(list.model);

    QVERIFY(list.model.setData(list.row(1), value));

    QCOMPARE(defsOf(list.objects), (QStringList{QStringLiteral("а"), def, QStringLiteral("в")}));
    QCOMPARE(log.texts(), (QStringList{QStringLiteral("changed 1,0 to 1,0 roles 0 2"),
                                       QStringLiteral("changed 0,0 to 2,0 roles 8")}));
    QCOMPARE(list.row(1).data().toString(), def);
}

void tst_DefMapTableModel::renamingEndsDuplicates()
{
    List list({QStringLiteral("н1"), QStringLiteral("Н1"), QString()});
    QCOMPARE(backgroundsOf(list.model),
             (QStringList{QStringLiteral("#ffdcdc"), QStringLiteral("#ffdcdc"), QStringLiteral("none")}));

    QVERIFY(list.model.setData(list.row(1), QStringLiteral("н2")));
    QCOMPARE(backgroundsOf(list.model),
             (QStringList{QStringLiteral("none"), QStringLiteral("none"), QStringLiteral("none")}));

    QVERIFY(list.model.setData(list.row(1), QStringLiteral("")));
    QCOMPARE(backgroundsOf(list.model),
             (QStringList{QStringLiteral("none"), QStringLiteral("none"), QStringLiteral("none")}));
}

void tst_DefMapTableModel::renamingMakesDuplicates()
{
    List list({QStringLiteral("н1"), QStringLiteral("н2")});

    QVERIFY(list.model.setData(list.row(1), QStringLiteral("Н1")));

    QCOMPARE(backgroundsOf(list.model), (QStringList{QStringLiteral("#ffdcdc"), QStringLiteral("#ffdcdc")}));
}

void tst_DefMapTableModel::renamingToTheSameIsRefused_data()
{
    QTest::addColumn<QString>("def");
    QTest::addColumn<QVariant>("value");

    QTest::newRow("same text") << QStringLiteral("ЗУ1") << QVariant(QStringLiteral("ЗУ1"));
    QTest::newRow("same number") << QStringLiteral("12") << QVariant(12);
    QTest::newRow("empty") << QStringLiteral("") << QVariant(QStringLiteral(""));
    QTest::newRow("empty for a missing one") << QString() << QVariant(QStringLiteral(""));
    QTest::newRow("missing for an empty one") << QStringLiteral("") << QVariant();
}

void tst_DefMapTableModel::renamingToTheSameIsRefused()
{
    QFETCH(QString, def);
    QFETCH(QVariant, value);
    List list({QStringLiteral("other"), def});
    const ModelLog log(list.model);

    QVERIFY(!list.model.setData(list.row(1), value));

    QCOMPARE(log.texts(), QStringList());
    QCOMPARE(list.objects.at(1).def, def);
    QCOMPARE(list.objects.at(1).def.isNull(), def.isNull());
}

void tst_DefMapTableModel::otherEditsAreRefused()
{
    const QStringList defs{QStringLiteral("ЗУ1"), QStringLiteral("ЗУ2")};
    const QVariant value = QStringLiteral("new");
    List list(defs);
    const ModelLog log(list.model);

    for (int role : otherRoles() + QVector<int>{Qt::DisplayRole, Qt::BackgroundRole})
        QVERIFY(!list.model.setData(list.row(0), value, role));
    QVERIFY(!list.model.setData(QModelIndex(), value));
    QVERIFY(!list.model.setData(list.model.createIndex(0, 1), value));
    QVERIFY(!list.model.setData(list.model.createIndex(2, 0), value));

    QCOMPARE(log.texts(), QStringList());
    QCOMPARE(defsOf(list.objects), defs);
}

void tst_DefMapTableModel::objectsThatAreGoneAreEmpty()
{
    List list({QStringLiteral("н1"), QStringLiteral("н2"), QStringLiteral("н1")});
    const QModelIndex gone = list.row(2);
    list.objects.removeLast();
    const ModelLog log(list.model);

    for (int role : {Qt::DisplayRole, Qt::EditRole, Qt::BackgroundRole})
        QVERIFY(!list.model.data(gone, role).isValid());
    QVERIFY(!list.model.setData(gone, QStringLiteral("new")));
    QVERIFY(!list.model.isDuplicateDef(2));

    QCOMPARE(backgroundsOf(list.model), (QStringList{QStringLiteral("none"), QStringLiteral("none")}));
    QCOMPARE(log.texts(), QStringList());
    QCOMPARE(defsOf(list.objects), (QStringList{QStringLiteral("н1"), QStringLiteral("н2")}));
}

void tst_DefMapTableModel::droppedObjectsAreEmpty()
{
    const QStringList defs{QStringLiteral("н1"), QStringLiteral("н1")};
    List list(defs);
    const QModelIndex kept = list.row(0);
    const ModelLog log(list.model);

    list.model.detachMap();

    QCOMPARE(list.model.rowCount(), 0);
    QCOMPARE(list.model.columnCount(), 1);
    for (int role : {Qt::DisplayRole, Qt::EditRole, Qt::BackgroundRole})
        QVERIFY(!list.model.data(kept, role).isValid());
    QVERIFY(!list.model.setData(kept, QStringLiteral("new")));
    QVERIFY(!list.model.isDuplicateDef(0));
    QCOMPARE(log.texts(), QStringList());
    QCOMPARE(defsOf(list.objects), defs);
}

void tst_DefMapTableModel::objectsAreShownAgainAfterDrop()
{
    List list({QStringLiteral("н1"), QStringLiteral("н1"), QStringLiteral("н3")});
    list.model.detachMap();
    list.objects = objectsNamed({QStringLiteral("ЗУ1")});
    const ModelLog log(list.model);

    list.model.setMap(&list.objects);

    QCOMPARE(log.texts(), (QStringList{QStringLiteral("about to reset 0 rows"), QStringLiteral("reset 1 rows")}));
    QCOMPARE(list.row(0).data().toString(), QStringLiteral("ЗУ1"));
}

QTEST_GUILESS_MAIN(tst_DefMapTableModel)
#include "tst_defpolygontablemodel_map.moc"
