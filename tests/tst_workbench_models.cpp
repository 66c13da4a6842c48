#include "objectsmodel.h"
#include "verticesmodel.h"
#include "workbenchtesting.h"

#include <QAbstractItemModelTester>
#include <QTest>

/// The lists of objects and vertices.
class tst_WorkbenchModels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void objectIsShown_data();
    void objectIsShown();
    void duplicatesAreColoured_data();
    void duplicatesAreColoured();
    void objectsAreSorted_data();
    void objectsAreSorted();
    void sortingKeepsTheOrderOfEqualObjects();
    void sortingMovesPersistentIndexes();
    void newResultIsSortedAndFiltered();
    void searchIgnoresCase_data();
    void searchIgnoresCase();

    void verticesAreRowsOfTheDocument_data();
    void verticesAreRowsOfTheDocument();
    void everyColumnOfTheHostIsShown();
    void headerNamesColumns_data();
    void headerNamesColumns();
};

namespace {

const QBrush colour(Qt::red);

/// A model under test that is also checked for consistency.
template <class Model>
struct Tested : Model
{
    using Model::Model;
    QAbstractItemModelTester tester{this, QAbstractItemModelTester::FailureReportingMode::QtTest};
};

QString rowText(const QAbstractItemModel &model, int row)
{
    QStringList texts;
    for (int column = 0; column < model.columnCount(); ++column)
        texts.append(model.index(row, column).data().toString());
    return texts.join(QLatin1Char('|'));
}

QStringList column(const QAbstractItemModel &model, int column)
{
    QStringList texts;
    for (int row = 0; row < model.rowCount(); ++row)
        texts.append(model.index(row, column).data().toString());
    return texts;
}

ImportResult objectsNamed(const QString &defs)
{
    ImportResult result;
    const QStringList names = defs.split(QLatin1Char(','));
    for (const QString &def : names)
        appendObject(result, def, {QStringLiteral("0 0, 1 1")});
    return result;
}

QString shownDefs(const ObjectsModel &model)
{
    return column(model, ObjectsModel::Def).join(QLatin1Char(','));
}

} // namespace

void tst_WorkbenchModels::objectIsShown_data()
{
    QTest::addColumn<QStringList>("contours");
    QTest::addColumn<QString>("text");

    QTest::newRow("nothing") << QStringList() << QStringLiteral("|0|0||0.00|");
    QTest::newRow("line") << QStringList{QStringLiteral("0 0, 3 4")} << QStringLiteral("|1|2|нет|5.00|");
    QTest::newRow("ring") << QStringList{square(0, 0, 100)} << QStringLiteral("|1|5|да|400.00|10\u00A0000.00");
    QTest::newRow("ring and line") << QStringList{square(0, 0, 1), QStringLiteral("0 0, 3 4")}
                                   << QStringLiteral("|2|7|частью|9.00|1.00");
}

void tst_WorkbenchModels::objectIsShown()
{
    QFETCH(QStringList, contours);
    QFETCH(QString, text);
    Tested<ObjectsModel> model;

    model.setResult(resultOf({{QStringLiteral("ЗУ1"), contours}}));

    QCOMPARE(rowText(model, 0), QStringLiteral("ЗУ1") + text);
}

void tst_WorkbenchModels::duplicatesAreColoured_data()
{
    QTest::addColumn<QString>("defs");
    QTest::addColumn<QString>("coloured");

    QTest::newRow("none") << QStringLiteral("a,b") << QString();
    QTest::newRow("two of three") << QStringLiteral("a,b,a") << QStringLiteral("a,a");
    QTest::newRow("other case") << QStringLiteral("зу1,б,ЗУ1") << QStringLiteral("зу1,ЗУ1");
    QTest::newRow("empty") << QStringLiteral("a,,b,") << QString();
    QTest::newRow("sharp s") << QStringLiteral("ß,ss") << QString();
}

void tst_WorkbenchModels::duplicatesAreColoured()
{
    QFETCH(QString, defs);
    QFETCH(QString, coloured);
    Tested<ObjectsModel> model;
    model.setDuplicateBrush(colour);

    model.setResult(objectsNamed(defs));

    QStringList found;
    for (int row = 0; row < model.rowCount(); ++row) {
        const QModelIndex cell = model.index(row, ObjectsModel::Def);
        if (cell.data(Qt::BackgroundRole).value<QBrush>() == colour)
            found.append(cell.data().toString());
        const bool isNamed = cell.data(Qt::ToolTipRole).toString().contains(QStringLiteral("больше одного раза"));
        QCOMPARE(isNamed, cell.data(Qt::BackgroundRole).isValid());
    }
    QCOMPARE(found.join(QLatin1Char(',')), coloured);
    QCOMPARE(model.duplicateCount(), found.size());
}

void tst_WorkbenchModels::objectsAreSorted_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<Qt::SortOrder>("order");
    QTest::addColumn<QString>("defs");

    QTest::newRow("result") << -1 << Qt::AscendingOrder << QStringLiteral("ЗУ10,зу2,ё,е,ж");
    QTest::newRow("designation") << int(ObjectsModel::Def) << Qt::AscendingOrder << QStringLiteral("е,ё,ж,зу2,ЗУ10");
    QTest::newRow("designation, descending")
        << int(ObjectsModel::Def) << Qt::DescendingOrder << QStringLiteral("ЗУ10,зу2,ж,ё,е");
    QTest::newRow("contours") << int(ObjectsModel::Contours) << Qt::AscendingOrder << QStringLiteral("е,ЗУ10,зу2,ж,ё");
    QTest::newRow("vertices") << int(ObjectsModel::Vertices) << Qt::AscendingOrder << QStringLiteral("е,зу2,ж,ЗУ10,ё");
    QTest::newRow("closed") << int(ObjectsModel::Closed) << Qt::AscendingOrder << QStringLiteral("е,зу2,ё,ЗУ10,ж");
    QTest::newRow("perimeter") << int(ObjectsModel::Perimeter) << Qt::AscendingOrder
                               << QStringLiteral("е,ж,зу2,ЗУ10,ё");
    QTest::newRow("area") << int(ObjectsModel::Area) << Qt::AscendingOrder << QStringLiteral("зу2,е,ж,ЗУ10,ё");
}

void tst_WorkbenchModels::objectsAreSorted()
{
    QFETCH(int, column);
    QFETCH(Qt::SortOrder, order);
    QFETCH(QString, defs);
    const ImportResult result = resultOf({
        {QStringLiteral("ЗУ10"), {square(0, 0, 10)}},                          // 40 m, 100 m²
        {QStringLiteral("зу2"), {QStringLiteral("0 0, 0 9")}},                 // 9 m
        {QStringLiteral("ё"), {square(0, 0, 11), QStringLiteral("0 0, 0 9")}}, // 53 m, 121 m²
        {QStringLiteral("е"), {}},                                             // 0 m
        {QStringLiteral("ж"), {QStringLiteral("0 0, 1 0, 0 0")}},              // 2 m, 0 m²
    });
    Tested<ObjectsModel> model;
    model.setResult(result);

    model.sort(column, order);

    QCOMPARE(shownDefs(model), defs);
}

void tst_WorkbenchModels::sortingKeepsTheOrderOfEqualObjects()
{
    Tested<ObjectsModel> model;
    model.setResult(objectsNamed(QStringLiteral("в,а,б")));

    model.sort(ObjectsModel::Vertices, Qt::DescendingOrder);

    QCOMPARE(shownDefs(model), QStringLiteral("в,а,б"));
}

void tst_WorkbenchModels::sortingMovesPersistentIndexes()
{
    Tested<ObjectsModel> model;
    model.setResult(objectsNamed(QStringLiteral("в,а,б")));
    const QPersistentModelIndex cell(model.index(0, ObjectsModel::Vertices));

    model.sort(ObjectsModel::Def, Qt::AscendingOrder);

    QCOMPARE(cell.row(), 2);
    QCOMPARE(cell.column(), int(ObjectsModel::Vertices));
    QCOMPARE(model.objectAt(2), 0);
    QCOMPARE(model.rowOf(0), 2);
}

void tst_WorkbenchModels::newResultIsSortedAndFiltered()
{
    Tested<ObjectsModel> model;
    model.sort(ObjectsModel::Def, Qt::AscendingOrder);
    model.setFilter(QStringLiteral("зу"));

    model.setResult(objectsNamed(QStringLiteral("зу2,б,зу1")));

    QCOMPARE(shownDefs(model), QStringLiteral("зу1,зу2"));
    QCOMPARE(model.rowOf(1), -1);
    QCOMPARE(model.objectAt(0), 2);
    QCOMPARE(model.objectAt(-1), -1);
}

void tst_WorkbenchModels::searchIgnoresCase_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("defs");

    QTest::newRow("empty") << QString() << QStringLiteral("ЗУ1,ЗУ12,озеро");
    QTest::newRow("other case") << QStringLiteral("зу1") << QStringLiteral("ЗУ1,ЗУ12");
    QTest::newRow("in the middle") << QStringLiteral("зер") << QStringLiteral("озеро");
    QTest::newRow("a pattern is a text") << QStringLiteral("З.1") << QString();
}

void tst_WorkbenchModels::searchIgnoresCase()
{
    QFETCH(QString, text);
    QFETCH(QString, defs);
    Tested<ObjectsModel> model;
    model.setResult(objectsNamed(QStringLiteral("ЗУ1,ЗУ12,озеро")));

    model.setFilter(text);

    QCOMPARE(shownDefs(model), defs);
}

void tst_WorkbenchModels::verticesAreRowsOfTheDocument_data()
{
    QTest::addColumn<QStringList>("contours");
    QTest::addColumn<QStringList>("rows");

    const QString line = QStringLiteral("0 0, 3 4");
    const QStringList lineRows{QStringLiteral("1|0.00|0.00"), QStringLiteral("2|3.00|4.00")};
    const QStringList nextRows{QStringLiteral("3|0.00|0.00"), QStringLiteral("4|3.00|4.00")};
    const QStringList empty{QStringLiteral("||")};
    QTest::newRow("nothing") << QStringList() << QStringList();
    QTest::newRow("contour") << QStringList{line} << lineRows;
    QTest::newRow("two contours") << QStringList{line, line} << lineRows + empty + nextRows;
    QTest::newRow("contour without vertices")
        << QStringList{line, QString(), line} << lineRows + empty + empty + nextRows;
    QTest::newRow("first contour without vertices") << QStringList{QString(), line} << empty + lineRows;
    QTest::newRow("last contour without vertices") << QStringList{line, QString()} << lineRows + empty;
}

void tst_WorkbenchModels::verticesAreRowsOfTheDocument()
{
    QFETCH(QStringList, contours);
    QFETCH(QStringList, rows);
    ImportResult result = objectsNamed(QStringLiteral("before"));
    appendObject(result, QStringLiteral("shown"), contours);
    appendObject(result, QStringLiteral("after"), {QStringLiteral("8 8, 9 9")});
    Tested<VerticesModel> model(GeometryInfo{0, 1, 2, 0});
    model.setResult(result);

    model.setObject(1);

    QStringList shown;
    for (int row = 0; row < model.rowCount(); ++row)
        shown.append(rowText(model, row));
    QCOMPARE(shown, rows);
}

void tst_WorkbenchModels::everyColumnOfTheHostIsShown()
{
    ImportResult result;
    result.objects.append({QStringLiteral("ЗУ1"), 0, 1, 0, 2});
    result.contours.append({0, 2, false});
    result.appendVertex(QPointF(), QByteArray("1\0a b\0\0", 7));
    result.appendVertex(QPointF(), QByteArray("2\0", 2));
    Tested<VerticesModel> model(GeometryInfo{0, 1, 2, 0});
    model.setResult(result);
    QCOMPARE(model.rowCount(), 0);

    model.setObject(0);

    QCOMPARE(rowText(model, 0), QStringLiteral("1|a b|"));
    QCOMPARE(rowText(model, 1), QStringLiteral("2||"));
    model.setObject(-1);
    QCOMPARE(model.rowCount(), 0);
}

void tst_WorkbenchModels::headerNamesColumns_data()
{
    QTest::addColumn<QVector<int>>("columns");
    QTest::addColumn<QString>("names");

    QTest::newRow("default") << QVector<int>{0, 1, 2} << QStringLiteral("Номер|X, м|Y, м");
    QTest::newRow("other order") << QVector<int>{2, 1, 0} << QStringLiteral("Y, м|X, м|Номер");
    QTest::newRow("other column") << QVector<int>{1, 2, 5} << QStringLiteral("Поле 1|Номер|X, м");
    QTest::newRow("equal columns") << QVector<int>{1, 1, 1} << QStringLiteral("Поле 1|Номер|Поле 3");
}

void tst_WorkbenchModels::headerNamesColumns()
{
    QFETCH(QVector<int>, columns);
    QFETCH(QString, names);
    Tested<VerticesModel> model(GeometryInfo{columns.at(0), columns.at(1), columns.at(2), 0});
    model.setResult(objectsNamed(QStringLiteral("ЗУ1")));

    QStringList shown;
    for (int column = 0; column < model.columnCount(); ++column)
        shown.append(model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString());

    QCOMPARE(shown.join(QLatin1Char('|')), names);
}

QTEST_GUILESS_MAIN(tst_WorkbenchModels)
#include "tst_workbench_models.moc"
