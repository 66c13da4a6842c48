#include "modeltesting.h"

#include <QTest>

#include <optional>

/// The list of objects.
class tst_DefMapTableModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void setMapResets();
    void headersAreNumbered();
    void onlyTheFirstColumnIsEditable();
    void designationIsShown();
    void otherRolesAndIndexesHaveNoValue();
    void duplicatesAreColoured_data();
    void duplicatesAreColoured();
    void renamingIsStoredAndSignalled_data();
    void renamingIsStoredAndSignalled();
    void renamingUpdatesDuplicates();
    void otherEditsAreRefused();
    void detachedListIsEmpty();
};

void tst_DefMapTableModel::setMapResets()
{
    QVector<DefPolygon> objects = objectsOf(QStringLiteral("ЗУ1 ЗУ2"));
    DefMapTableModel model;
    const QAbstractItemModelTester tester(&model, failTest);
    const ModelLog log(model);
    QVERIFY(!model.isDuplicateDef(0));

    model.setMap(&objects);
    model.setMap(nullptr);

    QCOMPARE(log.text(), QStringLiteral("reset [] to [ЗУ1 ЗУ2] reset [ЗУ1 ЗУ2] to []"));
    QCOMPARE(model.columnCount(), 1);
}

void tst_DefMapTableModel::headersAreNumbered()
{
    const List list(QStringLiteral("ЗУ1 ЗУ2"));

    QCOMPARE(list.model.headerData(0, Qt::Horizontal), QVariant(QStringLiteral("N")));
    QCOMPARE(list.model.headerData(1, Qt::Vertical), QVariant(2));
    QVERIFY(headersAreTextOnly(list.model));
}

void tst_DefMapTableModel::onlyTheFirstColumnIsEditable()
{
    const List list(QStringLiteral("ЗУ1"));

    QCOMPARE(list.model.flags(QModelIndex()), Qt::NoItemFlags);
    QCOMPARE(list.model.flags(list.row(0)), Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsEditable);
    QCOMPARE(list.model.flags(list.model.createIndex(0, 1)), Qt::ItemIsSelectable | Qt::ItemIsEnabled);
}

void tst_DefMapTableModel::designationIsShown()
{
    const List list(QStringLiteral("007 -"));

    for (int role : {Qt::DisplayRole, Qt::EditRole}) {
        QCOMPARE(list.row(0).data(role), QVariant(QStringLiteral("007")));
        QCOMPARE(list.row(1).data(role), QVariant(QString()));
    }
    QCOMPARE(list.model.rowCount(list.row(0)), 0);
}

void tst_DefMapTableModel::otherRolesAndIndexesHaveNoValue()
{
    List list(QStringLiteral("н1 н1"));

    QVERIFY(isEmptyCell(list.model, QModelIndex()));
    QVERIFY(isEmptyCell(list.model, list.model.createIndex(2, 0)));
    QVERIFY(!list.model.data(list.model.createIndex(0, 1), Qt::BackgroundRole).isValid());
    QVERIFY(!list.model.data(list.model.createIndex(0, -1), Qt::DisplayRole).isValid());
    for (int role : rolesExcept({Qt::DisplayRole, Qt::EditRole, Qt::BackgroundRole}))
        QVERIFY(!list.row(0).data(role).isValid());
}

void tst_DefMapTableModel::duplicatesAreColoured_data()
{
    QTest::addColumn<QString>("defs");
    QTest::addColumn<QString>("marks");

    QTest::newRow("pair") << QStringLiteral("н1 н2 н1") << QStringLiteral("x.x");
    QTest::newRow("case is ignored") << QStringLiteral("ЗУ1 зу1") << QStringLiteral("xx");
    QTest::newRow("leading zeros differ") << QStringLiteral("н1 н01") << QStringLiteral("..");
    QTest::newRow("null") << QStringLiteral("- -") << QStringLiteral("..");
}

void tst_DefMapTableModel::duplicatesAreColoured()
{
    QFETCH(QString, defs);
    QFETCH(QString, marks);
    const List list(defs);

    QCOMPARE(rowMarks(list.model), marks);
    for (int row = -1; row <= marks.size(); ++row)
        QCOMPARE(list.model.isDuplicateDef(row), marks.mid(row, row < 0 ? 0 : 1) == QLatin1String("x"));
}

void tst_DefMapTableModel::renamingIsStoredAndSignalled_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("shown");

    QTest::newRow("case only") << QVariant(QStringLiteral("Б")) << QStringLiteral("Б");
    QTest::newRow("spaces are kept") << QVariant(QStringLiteral(" б ")) << QStringLiteral(" б ");
    QTest::newRow("invalid value") << QVariant() << QStringLiteral("null");
}

void tst_DefMapTableModel::renamingIsStoredAndSignalled()
{
    QFETCH(QVariant, value);
    QFETCH(QString, shown);
    List list(QStringLiteral("а б в"));
    const QAbstractItemModelTester tester(&list.model, failTest);
    const ModelLog log(list.model);

    QVERIFY(list.model.setData(list.row(1), value));

    QCOMPARE(list.objects.at(1).def, value.toString());
    QCOMPARE(log.text(),
             QStringLiteral("changed 1,0 to 1,0 roles 0 2 [а %1 в] changed 0,0 to 2,0 roles 8 [а %1 в]").arg(shown));
}

void tst_DefMapTableModel::renamingUpdatesDuplicates()
{
    List list(QStringLiteral("н1 Н1 -"));
    QCOMPARE(rowMarks(list.model), QStringLiteral("xx."));

    QVERIFY(list.model.setData(list.row(1), QStringLiteral("н2")));
    QCOMPARE(rowMarks(list.model), QStringLiteral("..."));
    QVERIFY(list.model.setData(list.row(1), QStringLiteral("")));
    QCOMPARE(rowMarks(list.model), QStringLiteral("..."));
    QVERIFY(list.model.setData(list.row(2), QStringLiteral("Н1")));
    QCOMPARE(rowMarks(list.model), QStringLiteral("x.x"));
}

void tst_DefMapTableModel::otherEditsAreRefused()
{
    const QVariant value = QStringLiteral("new");
    List list(QStringLiteral("ЗУ1 -"));
    const ModelLog log(list.model);

    for (int role : rolesExcept({Qt::EditRole}))
        QVERIFY(!list.model.setData(list.row(0), value, role));
    QVERIFY(!list.model.setData(list.model.createIndex(0, 1), value));
    QVERIFY(!list.model.setData(list.row(0), QStringLiteral("ЗУ1")));
    QVERIFY(!list.model.setData(list.row(1), QStringLiteral("")));

    QCOMPARE(log.text(), QString());
    QCOMPARE(shownBy(list.model), QStringLiteral("ЗУ1 null"));
}

void tst_DefMapTableModel::detachedListIsEmpty()
{
    std::optional<QVector<DefPolygon>> objects = objectsOf(QStringLiteral("н1 Н1"));
    DefMapTableModel model;
    model.setMap(&*objects);
    QCOMPARE(rowMarks(model), QStringLiteral("xx"));
    const QModelIndex stale = model.index(0, 0);
    const ModelLog log(model);

    model.detachMap();
    objects.reset();

    QCOMPARE(model.rowCount(), 0);
    QVERIFY(isEmptyCell(model, stale));
    QVERIFY(!model.isDuplicateDef(0));
    QCOMPARE(log.text(), QString());
    objects = objectsOf(QStringLiteral("а б Б"));
    model.setMap(&*objects);
    QCOMPARE(rowMarks(model), QStringLiteral(".xx"));
}

QTEST_GUILESS_MAIN(tst_DefMapTableModel)
#include "tst_defpolygontablemodel_map.moc"
