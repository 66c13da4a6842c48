#include "modeltesting.h"

#include <QTest>

#include <random>

Q_DECLARE_METATYPE(QVector<DefPolygon>)

/// Duplicates and conflicts after a change that the models were not told of, and after many that they made.
class tst_DefPolygonTableModelStale : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void duplicatesAreThoseOfTheMoment_data();
    void duplicatesAreThoseOfTheMoment();
    void duplicatesOfManyFollowAnImport();
    void duplicatesOfManyFollowASort();
    void duplicatesOfManyFollowRenaming();
    void duplicatesFollowNamesThatWereNeverThere();
    void droppedObjectsMayGo();

    void conflictsAreThoseOfTheMoment_data();
    void conflictsAreThoseOfTheMoment();
    void conflictsFollowRenaming();
    void questionChangesNothing();
    void renamingMovesNoVertex();
    void vertexWithoutARowConflictsWithNone();
    void droppedObjectMayGo();
};

namespace {

using Objects = QVector<DefPolygon>;
using Numbers = std::mt19937;

const int many = 3000;

Objects objectsOf(const QString &defs)
{
    Objects objects;
    for (const QString &def : defs.split(QLatin1Char(' ')))
        objects.append(DefPolygon{def, {}});
    return objects;
}

/// A row for each: "x" for a duplicate.
QString duplicatesOf(const DefMapTableModel &model)
{
    QString marks;
    for (int row = 0; row < model.rowCount(); ++row)
        marks += QLatin1Char(model.isDuplicateDef(row) ? 'x' : '.');
    return marks;
}

QString duplicatesByScan(const Objects &objects)
{
    QString marks;
    for (const DefPolygon &object : objects) {
        int alike = 0;
        for (const DefPolygon &other : objects)
            alike += QString::compare(object.def, other.def, Qt::CaseInsensitive) == 0 ? 1 : 0;
        marks += QLatin1Char(alike > 1 && !object.def.isEmpty() ? 'x' : '.');
    }
    return marks;
}

QString conflictsOf(const DefPolygonTableModel &model)
{
    QString marks;
    for (int row = 0; row < model.rowCount(); ++row)
        marks += QLatin1Char(model.isConflictingPoint(row) ? 'x' : '.');
    return marks;
}

/// A designation that others have too, in either case, once in a while.
QString anyDef(Numbers &numbers)
{
    const QString def = QStringLiteral("н%1").arg(numbers() % (2 * many));
    return numbers() % 2 == 0 ? def : def.toUpper();
}

Objects manyObjects(Numbers &numbers)
{
    Objects objects;
    for (int i = 0; i < many; ++i)
        objects.append(DefPolygon{anyDef(numbers), {}});
    return objects;
}

using ListChange = void (*)(Objects &objects);
using TableChange = void (*)(DefPolygon &object);

} // namespace

Q_DECLARE_METATYPE(ListChange)
Q_DECLARE_METATYPE(TableChange)

void tst_DefPolygonTableModelStale::duplicatesAreThoseOfTheMoment_data()
{
    QTest::addColumn<ListChange>("change");
    QTest::addColumn<QString>("marks");

    const auto add = [](const char *name, ListChange change, const char *marks) {
        QTest::newRow(name) << change << QString::fromLatin1(marks);
    };
    add(
        "nothing", [](Objects & /*objects*/) {}, "xx.");
    add(
        "another becomes one", [](Objects &objects) { objects[2].def = QStringLiteral("н1"); }, "xxx");
    add(
        "one is none any more", [](Objects &objects) { objects[1].def = QStringLiteral("н2"); }, "...");
    add(
        "one letter", [](Objects &objects) { objects[1].def[1] = QLatin1Char('7'); }, "...");
    add(
        "one is removed", [](Objects &objects) { objects.removeFirst(); }, "..");
    add(
        "one is appended", [](Objects &objects) { objects += objectsOf(QStringLiteral("Н3")); }, "xxxx");
    add(
        "sorted", [](Objects &objects) { std::swap(objects[1], objects[2]); }, "x.x");
    add(
        "others in their place",
        [](Objects &objects) {
            objects.clear();
            objects += objectsOf(QStringLiteral("а б Б"));
        },
        ".xx");
}

void tst_DefPolygonTableModelStale::duplicatesAreThoseOfTheMoment()
{
    QFETCH(ListChange, change);
    Objects objects = objectsOf(QStringLiteral("н1 Н1 н3"));
    DefMapTableModel model;
    model.setMap(&objects);
    QCOMPARE(duplicatesOf(model), QStringLiteral("xx."));

    change(objects);

    QTEST(duplicatesOf(model), "marks");
}

// The objects of the next run may come to lie where those of the last one lay.
void tst_DefPolygonTableModelStale::duplicatesOfManyFollowAnImport()
{
    Numbers numbers(1);
    Objects objects = manyObjects(numbers);
    DefMapTableModel model;
    model.setMap(&objects);
    QCOMPARE(duplicatesOf(model), duplicatesByScan(objects));
    const DefPolygon *const place = objects.constData();

    objects.clear();
    const Objects next = manyObjects(numbers);
    for (const DefPolygon &object : next)
        objects.append(object);

    QCOMPARE(objects.constData(), place);
    QCOMPARE(duplicatesOf(model), duplicatesByScan(objects));
}

void tst_DefPolygonTableModelStale::duplicatesOfManyFollowASort()
{
    Numbers numbers(1);
    Objects objects = manyObjects(numbers);
    DefMapTableModel model;
    model.setMap(&objects);
    const QString unsorted = duplicatesOf(model);

    sortObjects(objects);

    QVERIFY(duplicatesOf(model) != unsorted);
    QCOMPARE(duplicatesOf(model), duplicatesByScan(objects));
}

void tst_DefPolygonTableModelStale::duplicatesOfManyFollowRenaming()
{
    Numbers numbers(1);
    Objects objects = manyObjects(numbers);
    DefMapTableModel model;
    model.setMap(&objects);
    QVERIFY(duplicatesOf(model).contains(QLatin1Char('x')));

    for (int i = 0; i < 300; ++i)
        model.setData(model.index(static_cast<int>(numbers() % many), 0), anyDef(numbers));
    QCOMPARE(duplicatesOf(model), duplicatesByScan(objects));

    sortObjects(objects);
    QVERIFY(model.setData(model.index(0, 0), objects.at(1).def + QStringLiteral("я")));
    QVERIFY(model.setData(model.index(1, 0), objects.at(0).def.toUpper()));
    QCOMPARE(duplicatesOf(model), duplicatesByScan(objects));
}

// There come to be many more names than there are objects.
void tst_DefPolygonTableModelStale::duplicatesFollowNamesThatWereNeverThere()
{
    Objects objects = objectsOf(QStringLiteral("а б в г"));
    DefMapTableModel model;
    const QAbstractItemModelTester tester(&model, failTest);
    model.setMap(&objects);
    QCOMPARE(duplicatesOf(model), QStringLiteral("...."));

    for (int i = 0; i < 500; ++i) {
        QVERIFY(model.setData(model.index(i % 4, 0), QStringLiteral("н%1").arg(i)));
        QCOMPARE(duplicatesOf(model), QStringLiteral("...."));
        QVERIFY(model.setData(model.index((i + 1) % 4, 0), QStringLiteral("Н%1").arg(i)));
        QCOMPARE(duplicatesOf(model), duplicatesByScan(objects));
        QCOMPARE(duplicatesOf(model).count(QLatin1Char('x')), 2);
    }
}

void tst_DefPolygonTableModelStale::droppedObjectsMayGo()
{
    DefMapTableModel model;
    {
        Objects objects = objectsOf(QStringLiteral("н1 Н1 н3"));
        model.setMap(&objects);
        QVERIFY(model.isDuplicateDef(0));
        model.detachMap();
    }
    QVERIFY(!model.isDuplicateDef(0));

    Objects others = objectsOf(QStringLiteral("а б Б"));
    model.setMap(&others);
    QCOMPARE(duplicatesOf(model), QStringLiteral(".xx"));
}

void tst_DefPolygonTableModelStale::conflictsAreThoseOfTheMoment_data()
{
    QTest::addColumn<TableChange>("change");
    QTest::addColumn<QString>("marks");

    const auto add = [](const char *name, TableChange change, const char *marks) {
        QTest::newRow(name) << change << QString::fromLatin1(marks);
    };
    add(
        "nothing", [](DefPolygon & /*object*/) {}, "x..x");
    add(
        "number", [](DefPolygon &object) { object.contours[0][1].def = QStringLiteral("н1"); }, "xx.x");
    add(
        "place", [](DefPolygon &object) { object.contours[1][0].x = 0.01; }, "....");
    add(
        "place further off", [](DefPolygon &object) { object.contours[1][0].x = 0.02; }, "x..x");
    add(
        "not a number", [](DefPolygon &object) { object.contours[0][0].y = qQNaN(); }, "x..x");
    add(
        "vertex removed", [](DefPolygon &object) { object.contours[1].removeLast(); }, "....");
    add(
        "contours exchanged", [](DefPolygon &object) { std::swap(object.contours[0], object.contours[1]); }, "x..x");
    add(
        "another object", [](DefPolygon &object) { object = objectOf(QStringLiteral("а 0 0, А 1 1 | б 0 0")); },
        "xx..");
    add(
        "no object", [](DefPolygon &object) { object = DefPolygon(); }, "....");
}

void tst_DefPolygonTableModelStale::conflictsAreThoseOfTheMoment()
{
    QFETCH(TableChange, change);
    Table table(QStringLiteral("н1 0 0, н2 5 5 | Н1 9 0"));
    QCOMPARE(conflictsOf(table.model), QStringLiteral("x..x"));

    change(table.object);

    QTEST(conflictsOf(table.model), "marks");
}

void tst_DefPolygonTableModelStale::conflictsFollowRenaming()
{
    Table table(QStringLiteral("н1 0 0, н2 5 5 | Н1 9 0"));
    QCOMPARE(conflictsOf(table.model), QStringLiteral("x..x"));

    QVERIFY(table.model.setData(table.cell(1), QStringLiteral("н1")));
    QCOMPARE(conflictsOf(table.model), QStringLiteral("xx.x"));
    QVERIFY(table.model.setData(table.cell(0), QStringLiteral("н3")));
    QCOMPARE(conflictsOf(table.model), QStringLiteral(".x.x"));
    QVERIFY(table.model.setData(table.cell(3), QString()));
    QCOMPARE(conflictsOf(table.model), QStringLiteral("...."));
}

void tst_DefPolygonTableModelStale::questionChangesNothing()
{
    Table table(QStringLiteral("н1 0 0, н2 5 5 | Н1 9 0"));
    const DefPolygon copy = table.object;

    QCOMPARE(conflictsOf(table.model), QStringLiteral("x..x"));
    table.object.contours[0][0].def = QStringLiteral("н7");

    QCOMPARE(copy.contours.at(0).at(0).def, QStringLiteral("н1"));
    QCOMPARE(conflictsOf(table.model), QStringLiteral("...."));
}

// While the model shares the contours, an edit of its own must not copy the whole object.
void tst_DefPolygonTableModelStale::renamingMovesNoVertex()
{
    Table table(QStringLiteral("н1 0 0, н2 5 5 | Н1 9 0"));
    QCOMPARE(conflictsOf(table.model), QStringLiteral("x..x"));
    const DefPoint *const place = table.object.contours.at(0).constData();

    QVERIFY(table.model.setData(table.cell(0), QStringLiteral("н3")));

    QCOMPARE(table.object.contours.at(0).constData(), place);
}

// A vertex that has come since the rows were laid out is shown in none of them.
void tst_DefPolygonTableModelStale::vertexWithoutARowConflictsWithNone()
{
    Table table(QStringLiteral("н1 0 0, н2 5 5"));
    QCOMPARE(conflictsOf(table.model), QStringLiteral(".."));

    table.object.contours[0].append(DefPoint{QStringLiteral("н1"), 9, 9});
    QCOMPARE(conflictsOf(table.model), QStringLiteral(".."));
    table.model.rebuildRows();

    QCOMPARE(conflictsOf(table.model), QStringLiteral("x.x"));
}

void tst_DefPolygonTableModelStale::droppedObjectMayGo()
{
    DefPolygonTableModel model;
    {
        DefPolygon object = objectOf(QStringLiteral("н1 0 0, н1 5 5"));
        model.setPolygon(&object);
        QCOMPARE(conflictsOf(model), QStringLiteral("xx"));
        model.detachPolygon();
    }
    QCOMPARE(conflictsOf(model), QStringLiteral(".."));

    DefPolygon other = objectOf(QStringLiteral("н1 0 0, н2 5 5"));
    model.setPolygon(&other);
    QCOMPARE(conflictsOf(model), QStringLiteral(".."));
}

QTEST_GUILESS_MAIN(tst_DefPolygonTableModelStale)
#include "tst_defpolygontablemodel_stale.moc"
