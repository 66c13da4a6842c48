#include "modeltesting.h"

#include <QLocale>
#include <QTest>

#include <limits>

namespace {

using Fields = QMap<int, QString>;

constexpr int largest = std::numeric_limits<int>::max();
constexpr int smallest = std::numeric_limits<int>::min();

QStringList rowTexts(const QAbstractItemModel &model, int row, int role = Qt::DisplayRole)
{
    QStringList texts;
    for (int column = 0; column < model.columnCount(); ++column)
        texts.append(textOf(model.index(row, column).data(role)));
    return texts;
}

} // namespace

class tst_DefPolygonTableModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void showsNothingAtFirst();
    void setPolygonResets();
    void setPolygonShowsNothingAgain();
    void rowsAreLaidOut_data();
    void rowsAreLaidOut();
    void rowsHaveNoChildren();
    void tableGrowsAndNeverShrinks();
    void columnsAreSetSilently();
    void largestColumnDoesNotOverflow();
    void headersAreNumbered_data();
    void headersAreNumbered();
    void otherHeaderRolesAreEmpty();
    void flagsOfVertex_data();
    void flagsOfVertex();
    void flagsOutsideVertices();
    void cellsAreShown_data();
    void cellsAreShown();
    void fieldIsOnEveryVertexRow();
    void missingDesignationIsNull();
    void coordinateHasTwoDecimals_data();
    void coordinateHasTwoDecimals();
    void otherRolesAreEmpty();
    void separatorIsGreyAndEmpty();
};

void tst_DefPolygonTableModel::initTestCase()
{
    QLocale::setDefault(QLocale::c());
}

void tst_DefPolygonTableModel::showsNothingAtFirst()
{
    DefPolygonTableModel model;
    const QAbstractItemModelTester tester(&model, failTest);

    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(model.columnCount(), 3);
    QVERIFY(!model.isConflictingPoint(0));
    QVERIFY(!model.isConflictingPoint(-1));
}

void tst_DefPolygonTableModel::setPolygonResets()
{
    Table table(QStringLiteral("н1 0 0, н2 1 1"));
    DefPolygon other = objectOf(QStringLiteral("н5 0 0 | н6 1 1, н7 2 2"));
    const QAbstractItemModelTester tester(&table.model, failTest);
    const ModelLog log(table.model);

    table.model.setPolygon(&other);

    QCOMPARE(log.texts(), (QStringList{QStringLiteral("about to reset 2 rows"), QStringLiteral("reset 4 rows")}));
    QCOMPARE(shownBy(table.model), QStringLiteral("н5 | н6 н7"));
}

void tst_DefPolygonTableModel::setPolygonShowsNothingAgain()
{
    Table table(QStringLiteral("н1 0 0, н2 1 1"));
    const QAbstractItemModelTester tester(&table.model, failTest);
    const ModelLog log(table.model);

    table.model.setPolygon(nullptr);

    QCOMPARE(log.texts(), (QStringList{QStringLiteral("about to reset 2 rows"), QStringLiteral("reset 0 rows")}));
    QCOMPARE(table.model.columnCount(), 3);
    QVERIFY(!table.model.isConflictingPoint(0));
}

void tst_DefPolygonTableModel::rowsAreLaidOut_data()
{
    QTest::addColumn<QString>("object");
    QTest::addColumn<int>("rows");
    QTest::addColumn<QString>("shown");

    QTest::newRow("no contours") << QString() << 0 << QString();
    QTest::newRow("one empty contour") << QStringLiteral(" ") << 0 << QString();
    QTest::newRow("one contour") << QStringLiteral("а 0 0, б 1 1") << 2 << QStringLiteral("а б");
    QTest::newRow("contours of four and three vertices")
        << QStringLiteral("а 0 0, б 1 1, в 2 2, г 3 3 | д 4 4, е 5 5, ж 6 6") << 8 << QStringLiteral("а б в г | д е ж");
    QTest::newRow("three contours") << QStringLiteral("а 0 0 | б 1 1 | в 2 2") << 5 << QStringLiteral("а | б | в");
    QTest::newRow("first contour empty") << QStringLiteral(" | а 0 0") << 2 << QStringLiteral("| а");
    QTest::newRow("last contour empty") << QStringLiteral("а 0 0 | ") << 2 << QStringLiteral("а |");
    QTest::newRow("contour between empty") << QStringLiteral("а 0 0 | | б 1 1") << 4 << QStringLiteral("а | | б");
    QTest::newRow("three empty contours") << QStringLiteral(" | | ") << 2 << QStringLiteral("| |");
}

void tst_DefPolygonTableModel::rowsAreLaidOut()
{
    QFETCH(QString, object);
    Table table(object);
    const QAbstractItemModelTester tester(&table.model, failTest);

    QTEST(table.model.rowCount(), "rows");
    QTEST(shownBy(table.model), "shown");
}

void tst_DefPolygonTableModel::rowsHaveNoChildren()
{
    const Table table(QStringLiteral("н1 0 0 | н2 1 1"));

    QCOMPARE(table.model.rowCount(table.cell(0)), 0);
    QCOMPARE(table.model.rowCount(table.cell(1)), 0);
}

void tst_DefPolygonTableModel::tableGrowsAndNeverShrinks()
{
    DefPolygonTableModel model;

    model.setNxyColNum(0, 1, 1);
    QCOMPARE(model.columnCount(), 3);
    model.setNxyColNum(4, 0, 1);
    QCOMPARE(model.columnCount(), 5);
    model.setNxyColNum(0, 5, 1);
    QCOMPARE(model.columnCount(), 6);
    model.setNxyColNum(0, 1, 6);
    QCOMPARE(model.columnCount(), 7);
    model.setNxyColNum(0, 1, 2);
    QCOMPARE(model.columnCount(), 7);
    model.setFieldNumValueMap({{3, QStringLiteral("a")}, {8, QStringLiteral("b")}});
    QCOMPARE(model.columnCount(), 9);
    model.setFieldNumValueMap({{3, QStringLiteral("a")}});
    QCOMPARE(model.columnCount(), 9);
    model.setFieldNumValueMap({});
    QCOMPARE(model.columnCount(), 9);
}

void tst_DefPolygonTableModel::columnsAreSetSilently()
{
    Table table(QStringLiteral("н1 0 0"));
    const ModelLog log(table.model);

    table.model.setNxyColNum(3, 4, 5);
    table.model.setFieldNumValueMap({{7, QStringLiteral("ЗУ")}});

    QCOMPARE(log.texts(), QStringList());
}

void tst_DefPolygonTableModel::largestColumnDoesNotOverflow()
{
    Table table(QStringLiteral("н1 5 6"));

    table.model.setNxyColNum(0, 1, largest);
    QCOMPARE(table.model.columnCount(), largest);
    table.model.setFieldNumValueMap({{largest, QStringLiteral("ЗУ")}, {largest - 1, QStringLiteral("last")}});
    QCOMPARE(table.model.columnCount(), largest);

    QCOMPARE(textOf(table.cell(0, 1).data()), QStringLiteral("5.00"));
    QCOMPARE(textOf(table.cell(0, 2).data()), QStringLiteral("invalid"));
    QCOMPARE(textOf(table.cell(0, largest - 1).data()), QStringLiteral("last"));
    QCOMPARE(textOf(table.model.data(table.model.createIndex(0, largest))), QStringLiteral("6.00"));
}

void tst_DefPolygonTableModel::headersAreNumbered_data()
{
    QTest::addColumn<int>("section");
    QTest::addColumn<Qt::Orientation>("orientation");
    QTest::addColumn<int>("number");

    QTest::newRow("first column") << 0 << Qt::Horizontal << 1;
    QTest::newRow("third column") << 2 << Qt::Horizontal << 3;
    QTest::newRow("first row") << 0 << Qt::Vertical << 1;
    QTest::newRow("row of a separator") << 1 << Qt::Vertical << 2;
    QTest::newRow("row after it") << 2 << Qt::Vertical << 3;
}

void tst_DefPolygonTableModel::headersAreNumbered()
{
    QFETCH(int, section);
    QFETCH(Qt::Orientation, orientation);
    QFETCH(int, number);
    const Table table(QStringLiteral("н1 0 0 | н2 1 1"));

    QCOMPARE(table.model.headerData(section, orientation), QVariant(number));
}

void tst_DefPolygonTableModel::otherHeaderRolesAreEmpty()
{
    const Table table(QStringLiteral("н1 0 0"));

    for (int role : otherRoles() + QVector<int>{Qt::EditRole, Qt::BackgroundRole}) {
        QVERIFY(!table.model.headerData(0, Qt::Horizontal, role).isValid());
        QVERIFY(!table.model.headerData(0, Qt::Vertical, role).isValid());
    }
}

void tst_DefPolygonTableModel::flagsOfVertex_data()
{
    QTest::addColumn<int>("nColumn");
    QTest::addColumn<QString>("editable");

    QTest::newRow("first column") << 0 << QStringLiteral("1000");
    QTest::newRow("last column") << 3 << QStringLiteral("0001");
    QTest::newRow("column of X too") << 1 << QStringLiteral("0100");
    QTest::newRow("none") << -1 << QStringLiteral("0000");
    QTest::newRow("far left") << smallest << QStringLiteral("0000");
}

void tst_DefPolygonTableModel::flagsOfVertex()
{
    QFETCH(int, nColumn);
    QFETCH(QString, editable);
    Table table(QStringLiteral("- 0 0"));
    table.model.setFieldNumValueMap({{3, QStringLiteral("ЗУ")}});
    table.model.setNxyColNum(nColumn, 1, 2);

    const Qt::ItemFlags shown = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
    for (int column = 0; column < 4; ++column) {
        const bool isEditable = editable.at(column) == QLatin1Char('1');
        QCOMPARE(table.cell(0, column).flags(), isEditable ? shown | Qt::ItemIsEditable : shown);
    }
}

void tst_DefPolygonTableModel::flagsOutsideVertices()
{
    Table table(QStringLiteral("н1 0 0 | н2 1 1"));

    for (int column = 0; column < 3; ++column)
        QCOMPARE(table.cell(1, column).flags(), Qt::NoItemFlags);
    QCOMPARE(table.model.flags(QModelIndex()), Qt::NoItemFlags);
    table.model.setNxyColNum(-1, 1, 2);
    QCOMPARE(table.model.flags(QModelIndex()), Qt::NoItemFlags);
    QCOMPARE(table.model.flags(table.model.createIndex(0, -1)), Qt::NoItemFlags);
}

void tst_DefPolygonTableModel::cellsAreShown_data()
{
    QTest::addColumn<QVector<int>>("columns");
    QTest::addColumn<Fields>("fields");
    QTest::addColumn<QString>("shown");

    const QString plain = QStringLiteral("н1,1234.50,-0.25");
    const auto field = [](int column) { return Fields{{column, QStringLiteral("ЗУ")}}; };
    using Columns = QVector<int>;
    QTest::newRow("first columns") << Columns{0, 1, 2} << Fields() << plain;
    QTest::newRow("other order") << Columns{2, 0, 1} << Fields() << QStringLiteral("1234.50,-0.25,н1");
    QTest::newRow("with gaps") << Columns{1, 3, 5} << Fields()
                               << QStringLiteral("invalid,н1,invalid,1234.50,invalid,-0.25");
    QTest::newRow("field") << Columns{0, 1, 2} << field(5) << plain + QStringLiteral(",invalid,invalid,ЗУ");
    QTest::newRow("field in a gap") << Columns{0, 1, 3} << field(2) << QStringLiteral("н1,1234.50,ЗУ,-0.25");
    QTest::newRow("empty field") << Columns{0, 1, 2} << Fields{{3, QStringLiteral("")}} << plain + QStringLiteral(",");
    QTest::newRow("field at the number") << Columns{0, 1, 2} << field(0) << plain;
    QTest::newRow("field at X") << Columns{0, 1, 2} << field(1) << plain;
    QTest::newRow("field at Y") << Columns{0, 1, 2} << field(2) << plain;
    QTest::newRow("field left of the table") << Columns{0, 1, 2} << field(-1) << plain;
    QTest::newRow("number and X") << Columns{1, 1, 2} << Fields() << QStringLiteral("invalid,н1,-0.25");
    QTest::newRow("number and Y") << Columns{2, 1, 2} << Fields() << QStringLiteral("invalid,1234.50,н1");
    QTest::newRow("X and Y") << Columns{0, 1, 1} << Fields() << QStringLiteral("н1,1234.50,invalid");
    QTest::newRow("all in one") << Columns{0, 0, 0} << Fields() << QStringLiteral("н1,invalid,invalid");
    QTest::newRow("no number") << Columns{-1, 1, 2} << Fields() << QStringLiteral("invalid,1234.50,-0.25");
    QTest::newRow("nothing") << Columns{-1, -2, smallest} << Fields() << QStringLiteral("invalid,invalid,invalid");
}

void tst_DefPolygonTableModel::cellsAreShown()
{
    QFETCH(QVector<int>, columns);
    QFETCH(Fields, fields);
    QFETCH(QString, shown);
    Table table(QStringLiteral("н1 1234.5 -0.25"));
    const QAbstractItemModelTester tester(&table.model, failTest);
    table.model.setNxyColNum(columns.at(0), columns.at(1), columns.at(2));
    table.model.setFieldNumValueMap(fields);
    table.model.setPolygon(&table.object);

    const QStringList texts = shown.split(QLatin1Char(','));
    QCOMPARE(rowTexts(table.model, 0), texts);
    QCOMPARE(rowTexts(table.model, 0, Qt::EditRole), texts);
}

void tst_DefPolygonTableModel::fieldIsOnEveryVertexRow()
{
    Table table(QStringLiteral("н1 0 0, - 1 1 | н3 2 2"));
    table.model.setFieldNumValueMap({{3, QStringLiteral("ЗУ")}});

    for (int row : {0, 1, 3})
        QCOMPARE(textOf(table.cell(row, 3).data()), QStringLiteral("ЗУ"));
    QCOMPARE(textOf(table.cell(2, 3).data()), QStringLiteral("invalid"));
}

void tst_DefPolygonTableModel::missingDesignationIsNull()
{
    Table table(QStringLiteral("- 1 2, - 3 4"));
    table.object.contours[0][1].def = QStringLiteral("");

    for (int role : {Qt::DisplayRole, Qt::EditRole}) {
        const QVariant missing = table.cell(0).data(role);
        QCOMPARE(missing.userType(), static_cast<int>(QMetaType::QString));
        QVERIFY(missing.isNull());
        QVERIFY(!table.cell(1).data(role).isNull());
        QCOMPARE(table.cell(1).data(role).toString(), QString());
    }
}

void tst_DefPolygonTableModel::coordinateHasTwoDecimals_data()
{
    QTest::addColumn<double>("coordinate");
    QTest::addColumn<QString>("text");

    QTest::newRow("whole") << 5.0 << QStringLiteral("5.00");
    QTest::newRow("zero") << 0.0 << QStringLiteral("0.00");
    QTest::newRow("one decimal") << 1234.5 << QStringLiteral("1234.50");
    QTest::newRow("negative") << -1234.5 << QStringLiteral("-1234.50");
    QTest::newRow("rounded up") << 1.006 << QStringLiteral("1.01");
    QTest::newRow("rounded down") << 1.004 << QStringLiteral("1.00");
    QTest::newRow("large") << 123456789012.25 << QStringLiteral("123456789012.25");
    QTest::newRow("not a number") << std::numeric_limits<double>::quiet_NaN() << QStringLiteral("nan");
    QTest::newRow("infinite") << std::numeric_limits<double>::infinity() << QStringLiteral("inf");
}

void tst_DefPolygonTableModel::coordinateHasTwoDecimals()
{
    QFETCH(double, coordinate);
    QFETCH(QString, text);
    Table table(QStringLiteral("н1 0 0"));
    table.object.contours[0][0].y = coordinate;

    QCOMPARE(table.model.formatCoord(coordinate, true), text);
    QCOMPARE(table.model.formatCoord(coordinate, false), text);
    QCOMPARE(textOf(table.cell(0, 2).data()), text);
}

void tst_DefPolygonTableModel::otherRolesAreEmpty()
{
    const Table table(QStringLiteral("н1 0 0 | н1 1 1"));

    for (int role : otherRoles()) {
        for (int row = 0; row < 3; ++row) {
            for (int column = 0; column < 3; ++column)
                QVERIFY(!table.cell(row, column).data(role).isValid());
        }
    }
    for (int role : {Qt::DisplayRole, Qt::EditRole, Qt::BackgroundRole})
        QVERIFY(!table.model.data(QModelIndex(), role).isValid());
}

void tst_DefPolygonTableModel::separatorIsGreyAndEmpty()
{
    Table table(QStringLiteral("н1 0 0 | н2 1 1"));
    table.model.setFieldNumValueMap({{3, QStringLiteral("ЗУ")}});

    for (int column = 0; column < 4; ++column) {
        QCOMPARE(backgroundOf(table.cell(1, column)), QStringLiteral("#f0f0f0"));
        QVERIFY(!table.cell(1, column).data(Qt::DisplayRole).isValid());
        QVERIFY(!table.cell(1, column).data(Qt::EditRole).isValid());
    }
    QVERIFY(!table.model.isConflictingPoint(1));
}

QTEST_GUILESS_MAIN(tst_DefPolygonTableModel)
#include "tst_defpolygontablemodel.moc"
