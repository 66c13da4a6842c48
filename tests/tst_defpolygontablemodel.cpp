#include "modeltesting.h"

#include <QLocale>
#include <QTest>

#include <limits>

namespace {

using Columns = QVector<int>;
using Fields = QMap<int, QString>;

QString rowTexts(const QAbstractItemModel &model, int row, int role = Qt::DisplayRole)
{
    QStringList texts;
    for (int column = 0; column < model.columnCount(); ++column)
        texts.append(textOf(model.index(row, column).data(role)));
    return texts.join(QLatin1Char(','));
}

} // namespace

/// The vertex table: rows, columns, cells and conflicts.
class tst_DefPolygonTableModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void withoutAnObjectThereAreNoRows();
    void rowsAreLaidOut_data();
    void rowsAreLaidOut();
    void columnCountNeverShrinks();
    void largestColumnDoesNotOverflow();
    void columnLimitCapsTheColumnCount();
    void headersAreNumbered();
    void onlyTheDesignationColumnIsEditable();
    void cellsAreShown_data();
    void cellsAreShown();
    void fieldIsInEveryVertexRow();
    void otherRolesAndIndexesHaveNoValue();
    void conflictsAreColoured_data();
    void conflictsAreColoured();
};

void tst_DefPolygonTableModel::initTestCase()
{
    QLocale::setDefault(QLocale::c());
}

void tst_DefPolygonTableModel::withoutAnObjectThereAreNoRows()
{
    const DefPolygonTableModel fresh;
    QCOMPARE(fresh.rowCount(), 0);
    QCOMPARE(fresh.columnCount(), 3);
    QVERIFY(!fresh.isConflictingPoint(0));

    Table table(QStringLiteral("н1 0 0, н2 1 1"));
    const QAbstractItemModelTester tester(&table.model, failTest);
    const ModelLog log(table.model);
    table.model.setPolygon(nullptr);
    QCOMPARE(log.text(), QStringLiteral("reset [н1 н2] to []"));
    QVERIFY(!table.model.isConflictingPoint(0));
}

void tst_DefPolygonTableModel::rowsAreLaidOut_data()
{
    QTest::addColumn<QString>("object");
    QTest::addColumn<QString>("shown");

    QTest::newRow("no contours") << QString() << QString();
    QTest::newRow("empty contour") << QStringLiteral(" ") << QString();
    QTest::newRow("four and three vertices")
        << QStringLiteral("а 0 0, б 1 1, в 2 2, г 3 3 | д 4 4, е 5 5, ж 6 6") << QStringLiteral("а б в г | д е ж");
    QTest::newRow("empty first contour") << QStringLiteral(" | а 0 0") << QStringLiteral("| а");
    QTest::newRow("empty last contour") << QStringLiteral("а 0 0 | | ") << QStringLiteral("а | |");
}

void tst_DefPolygonTableModel::rowsAreLaidOut()
{
    QFETCH(QString, object);
    QFETCH(QString, shown);
    Table table(QStringLiteral("н1 0 0"));
    const QAbstractItemModelTester tester(&table.model, failTest);
    const ModelLog log(table.model);
    table.object = objectOf(object);

    table.model.setPolygon(&table.object);

    QVERIFY2(log.text().endsWith(QStringLiteral("to [%1]").arg(shown)), qUtf8Printable(log.text()));
    QCOMPARE(table.model.rowCount(table.cell(0)), 0);
}

void tst_DefPolygonTableModel::columnCountNeverShrinks()
{
    DefPolygonTableModel model;
    const ModelLog log(model);
    const auto countAfter = [&model](int n, int x, int y) {
        model.setNxyColNum(n, x, y);
        return model.columnCount();
    };

    QCOMPARE(countAfter(0, 1, 1), 3);
    QCOMPARE(countAfter(4, 0, 1), 5);
    QCOMPARE(countAfter(0, 5, 1), 6);
    QCOMPARE(countAfter(0, 1, 6), 7);
    QCOMPARE(countAfter(0, 1, 2), 7);
    model.setFieldNumValueMap({{3, QStringLiteral("a")}, {8, QStringLiteral("b")}});
    QCOMPARE(model.columnCount(), 9);
    model.setFieldNumValueMap({{3, QStringLiteral("a")}});
    model.setFieldNumValueMap({});
    QCOMPARE(model.columnCount(), 9);
    QCOMPARE(log.text(), QString());
}

void tst_DefPolygonTableModel::largestColumnDoesNotOverflow()
{
    const int largest = std::numeric_limits<int>::max();
    Table table(QStringLiteral("н1 5 6"));
    table.model.setNxyColNum(0, 1, largest);
    const ModelLog log(table.model);

    QVERIFY(table.model.setData(table.cell(0), QStringLiteral("н9")));

    QCOMPARE(table.model.columnCount(), largest);
    QCOMPARE(log.text(), QStringLiteral("changed 0,0 to 0,0 roles 0 2 [н9] changed 0,0 to 0,2147483646 roles 8 [н9]"));
}

void tst_DefPolygonTableModel::columnLimitCapsTheColumnCount()
{
    Table table(QStringLiteral("н1 5 6"));
    table.model.setNxyColNum(0, 1, 9);
    table.model.setColumnLimit(10);
    QCOMPARE(table.model.columnCount(), 10);
    table.model.setColumnLimit(9);
    const ModelLog log(table.model);

    QVERIFY(table.model.setData(table.cell(0), QStringLiteral("н9")));

    QCOMPARE(table.model.columnCount(), 9);
    QCOMPARE(log.text(), QStringLiteral("changed 0,0 to 0,0 roles 0 2 [н9] changed 0,0 to 0,8 roles 8 [н9]"));
    table.model.setNxyColNum(0, 1, std::numeric_limits<int>::max());
    QCOMPARE(table.model.columnCount(), 9);
}

void tst_DefPolygonTableModel::headersAreNumbered()
{
    const Table table(QStringLiteral("н1 0 0 | н2 1 1"));

    QCOMPARE(table.model.headerData(2, Qt::Horizontal), QVariant(3));
    QCOMPARE(table.model.headerData(1, Qt::Vertical), QVariant(2));
    QVERIFY(headersAreTextOnly(table.model));
}

void tst_DefPolygonTableModel::onlyTheDesignationColumnIsEditable()
{
    const Qt::ItemFlags shown = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
    Table table(QStringLiteral("- 0 0 | н2 1 1"));

    for (int number : {0, 3, -1}) {
        table.model.setNxyColNum(number, 1, 2);
        for (int column = 0; column < table.model.columnCount(); ++column) {
            QCOMPARE(table.cell(0, column).flags(), column == number ? shown | Qt::ItemIsEditable : shown);
            QCOMPARE(table.cell(1, column).flags(), Qt::NoItemFlags);
        }
    }
    QCOMPARE(table.model.flags(QModelIndex()), Qt::NoItemFlags);
    QCOMPARE(table.model.flags(table.model.createIndex(0, -1)), Qt::NoItemFlags);
    QCOMPARE(table.model.flags(table.model.createIndex(3, 0)), Qt::NoItemFlags);
}

void tst_DefPolygonTableModel::cellsAreShown_data()
{
    QTest::addColumn<Columns>("columns");
    QTest::addColumn<Fields>("fields");
    QTest::addColumn<QString>("shown");

    const QString text = QStringLiteral("ЗУ");
    const QString plain = QStringLiteral("н1,1234.50,-0.25");
    QTest::newRow("default columns") << Columns{0, 1, 2} << Fields() << plain;
    QTest::newRow("gaps") << Columns{1, 5, 3} << Fields() << QStringLiteral("invalid,н1,invalid,-0.25,invalid,1234.50");
    QTest::newRow("fields") << Columns{0, 1, 3} << Fields{{2, text}, {5, QStringLiteral("")}}
                            << QStringLiteral("н1,1234.50,ЗУ,-0.25,invalid,");
    QTest::newRow("fields in used columns") << Columns{0, 1, 2} << Fields{{0, text}, {1, text}, {2, text}} << plain;
    QTest::newRow("designation and X in one column")
        << Columns{1, 1, 2} << Fields() << QStringLiteral("invalid,н1,-0.25");
    QTest::newRow("designation and Y in one column")
        << Columns{2, 1, 2} << Fields() << QStringLiteral("invalid,1234.50,н1");
    QTest::newRow("X and Y in one column") << Columns{0, 1, 1} << Fields() << QStringLiteral("н1,1234.50,invalid");
    QTest::newRow("no designation column") << Columns{-1, 1, 2} << Fields() << QStringLiteral("invalid,1234.50,-0.25");
}

void tst_DefPolygonTableModel::cellsAreShown()
{
    QFETCH(Columns, columns);
    QFETCH(Fields, fields);
    QFETCH(QString, shown);
    Table table(QStringLiteral("н1 1234.5 -0.25"));
    table.model.setNxyColNum(columns.at(0), columns.at(1), columns.at(2));
    table.model.setFieldNumValueMap(fields);
    const QAbstractItemModelTester tester(&table.model, failTest);

    QCOMPARE(rowTexts(table.model, 0), shown);
    QCOMPARE(rowTexts(table.model, 0, Qt::EditRole), shown);
}

void tst_DefPolygonTableModel::fieldIsInEveryVertexRow()
{
    Table table(QStringLiteral("н1 0 0, - 1 1 | н3 2 2"));
    table.model.setFieldNumValueMap({{3, QStringLiteral("ЗУ")}});

    QCOMPARE(table.cell(1).data().userType(), static_cast<int>(QMetaType::QString));
    for (int role : {Qt::DisplayRole, Qt::EditRole}) {
        QCOMPARE(rowTexts(table.model, 1, role), QStringLiteral("null,1.00,1.00,ЗУ"));
        QCOMPARE(rowTexts(table.model, 2, role), QStringLiteral("invalid,invalid,invalid,invalid"));
        QCOMPARE(rowTexts(table.model, 3, role), QStringLiteral("н3,2.00,2.00,ЗУ"));
    }
    QCOMPARE(rowMarks(table.model, 3), QStringLiteral("..|."));
}

void tst_DefPolygonTableModel::otherRolesAndIndexesHaveNoValue()
{
    Table table(QStringLiteral("н1 0 0 | н1 1 1"));

    for (int role : rolesExcept({Qt::DisplayRole, Qt::EditRole, Qt::BackgroundRole})) {
        QVERIFY(!table.cell(0).data(role).isValid());
        QVERIFY(!table.cell(1).data(role).isValid());
    }
    QVERIFY(isEmptyCell(table.model, QModelIndex()));
    QVERIFY(isEmptyCell(table.model, table.model.createIndex(3, 0)));
}

void tst_DefPolygonTableModel::conflictsAreColoured_data()
{
    QTest::addColumn<QString>("object");
    QTest::addColumn<QString>("marks");

    QTest::newRow("different designations, same place") << QStringLiteral("н1 0 0, н2 0 0") << QStringLiteral("..");
    QTest::newRow("same designation, two places") << QStringLiteral("н1 0 0, н2 5 5, н1 9 9") << QStringLiteral("x.x");
    QTest::newRow("closed ring") << QStringLiteral("н1 0 0, н2 5 5, н3 5 0, н1 0 0") << QStringLiteral("....");
    QTest::newRow("case is ignored") << QStringLiteral("н1 0 0, Н1 0.02 0") << QStringLiteral("xx");
    QTest::newRow("within the tolerance") << QStringLiteral("н1 0 0, Н1 0.005 0.005") << QStringLiteral("..");
    QTest::newRow("no designations") << QStringLiteral("- 0 0, - 9 9") << QStringLiteral("..");
    QTest::newRow("two contours") << QStringLiteral("н1 0 0, н2 1 1 | н1 9 9") << QStringLiteral("x.|x");
    QTest::newRow("NaN") << QStringLiteral("н1 nan 0, н1 nan 0") << QStringLiteral("xx");
}

void tst_DefPolygonTableModel::conflictsAreColoured()
{
    QFETCH(QString, object);
    QFETCH(QString, marks);
    const Table table(object);

    for (int column = 0; column < 3; ++column)
        QCOMPARE(rowMarks(table.model, column), marks);
    for (int row = -1; row <= marks.size(); ++row)
        QCOMPARE(table.model.isConflictingPoint(row), marks.mid(row, row < 0 ? 0 : 1) == QLatin1String("x"));
}

QTEST_GUILESS_MAIN(tst_DefPolygonTableModel)
#include "tst_defpolygontablemodel.moc"
