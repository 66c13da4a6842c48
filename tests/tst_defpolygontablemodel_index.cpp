#include "modeltesting.h"

#include <QSet>
#include <QTest>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <new>
#include <random>

namespace {

int allocationCount = 0;

} // namespace

// Counts allocations: an index rebuilt for each query would allocate each time.
void *operator new(std::size_t size, const std::nothrow_t & /*tag*/) noexcept
{
    ++allocationCount;
    return std::malloc(size);
}

void *operator new(std::size_t size)
{
    void *const memory = operator new(size, std::nothrow);
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}

void operator delete(void *memory) noexcept
{
    std::free(memory);
}

void operator delete(void *memory, std::size_t /*size*/) noexcept
{
    std::free(memory);
}

namespace {

using Random = std::mt19937;
using Objects = QVector<DefPolygon>;

constexpr int queryCount = 1000;
constexpr int fewAllocations = 50;

bool isSame(const QString &a, const QString &b)
{
    return QString::compare(a, b, Qt::CaseInsensitive) == 0;
}

/// A text of one code point, which may be a lone surrogate.
QString textOf(uint codePoint)
{
    if (QChar::requiresSurrogates(codePoint))
        return QString(QChar(QChar::highSurrogate(codePoint))) + QChar(QChar::lowSurrogate(codePoint));
    return QString(QChar(codePoint));
}

template <typename Value>
Value oneOf(const QVector<Value> &values, Random &random)
{
    return values.at(static_cast<int>(random() % static_cast<unsigned>(values.size())));
}

/// A designation of up to three pieces, so few that many designations are equal. They cover all kinds of case folding.
QString anyDef(Random &random)
{
    static const QVector<QString> pieces{
        QStringLiteral("н"),      QStringLiteral("Н"),    QStringLiteral("1"), QStringLiteral("s"),
        QStringLiteral("S"),      QStringLiteral("ſ"),    QStringLiteral("ß"), QStringLiteral("ẞ"),
        QStringLiteral("σ"),      QStringLiteral("ς"),    QStringLiteral("İ"), QStringLiteral("K"),
        QStringLiteral("\u212a"), textOf(0x10400),        textOf(0x10428),     QString(QChar(0xd801)),
        QString(QChar(0xdc00)),   QString(QChar(0xdc28)), QStringLiteral("ﬁ"), QString()};
    QString def;
    for (auto i = random() % 4; i > 0; --i)
        def += oneOf(pieces, random);
    return def;
}

/// Objects of which about 40 % share their designation with another.
Objects manyObjects(Random &random)
{
    Objects objects;
    for (int i = 0; i < DuplicateIndex::fullCheckSize + 500; ++i)
        objects.append(DefPolygon{QStringLiteral("н%1").arg(random() % 3000), {}});
    return objects;
}

/// The reference implementation: "x" for each duplicate, "." for the others.
QString duplicatesByScan(const Objects &objects)
{
    QString marks;
    for (const DefPolygon &object : objects) {
        const auto hasSameDef = [&](const DefPolygon &other) { return isSame(object.def, other.def); };
        marks += QLatin1Char(std::count_if(objects.begin(), objects.end(), hasSameDef) > 1 ? 'x' : '.');
    }
    return marks;
}

QString duplicatesOf(const DuplicateIndex &index, int count)
{
    QString marks;
    for (int row = 0; row < count; ++row)
        marks += QLatin1Char(index.isDuplicate(row) ? 'x' : '.');
    return marks;
}

using Change = void (*)(Objects &objects);

} // namespace

Q_DECLARE_METATYPE(Change)

/// The indexes of both models, compared with reference implementations.
class tst_DefPolygonTableModelIndex : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void equalDesignationsHaveEqualHashes();
    void differentDesignationsHaveDifferentHashes();
    void duplicatesMatchALinearScan();
    void changedObjectsAreDetected_data();
    void changedObjectsAreDetected();
    void aboveTheFullCheckSizeOnlyTheQueriedRowIsCompared();
    void duplicatesOfManyObjectsFollowEveryChange();
    void indexOfManyObjectsIsDroppedWhenStale();
    void conflictsMatchALinearScan();
    void detachedObjectIsNotShared();
    void duplicateIndexIsBuiltOnce();
    void conflictIndexIsBuiltOnce();
};

// Sorting makes equal designations adjacent.
void tst_DefPolygonTableModelIndex::equalDesignationsHaveEqualHashes()
{
    QVector<QString> texts;
    for (uint codePoint = 0; codePoint <= 0x10ffff; ++codePoint)
        texts.append(textOf(codePoint));
    std::sort(texts.begin(), texts.end(),
              [](const QString &a, const QString &b) { return QString::compare(a, b, Qt::CaseInsensitive) < 0; });

    const CaseFoldHash hash;
    int equalCount = 0;
    for (int i = 1; i < texts.size(); ++i) {
        if (!isSame(texts.at(i - 1), texts.at(i)))
            continue;
        ++equalCount;
        QCOMPARE(hash(texts.at(i)), hash(texts.at(i - 1)));
    }
    QVERIFY(equalCount > 1000);
}

void tst_DefPolygonTableModelIndex::differentDesignationsHaveDifferentHashes()
{
    QSet<std::size_t> hashes;
    for (uint codePoint = 0x20000; codePoint < 0x20400; ++codePoint)
        hashes.insert(CaseFoldHash()(textOf(codePoint)));

    QCOMPARE(hashes.size(), 0x400);
}

void tst_DefPolygonTableModelIndex::duplicatesMatchALinearScan()
{
    const int size = 200;
    Random random(1);
    Objects objects(size);
    for (DefPolygon &object : objects)
        object.def = anyDef(random);
    DuplicateIndex index(objects);

    for (int rename = 0; rename < 40; ++rename) {
        QVERIFY(index.isCurrent(objects, 0));
        QCOMPARE(duplicatesOf(index, size), duplicatesByScan(objects));
        const int row = static_cast<int>(random() % static_cast<unsigned>(size));
        objects[row].def = anyDef(random);
        index.rename(row, objects.at(row).def);
    }
}

void tst_DefPolygonTableModelIndex::changedObjectsAreDetected_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<bool>("isCurrent");
    const auto add = [](const char *name, bool isCurrent, Change change) {
        QTest::newRow(name) << change << isCurrent;
    };

    add("unchanged", true, [](Objects & /*objects*/) {});
    add("contours only", true, [](Objects &objects) { objects[2].contours.append(QVector<DefPoint>()); });
    add("character in another row", false, [](Objects &objects) { objects[2].def[0] = QLatin1Char('x'); });
    add("rows swapped", false, [](Objects &objects) { std::swap(objects[1], objects[2]); });
    add("last object removed", false, [](Objects &objects) { objects.removeLast(); });
    add("same texts at another address", false, [](Objects &objects) {
        const Objects old = objects;
        objects[0].contours.clear();
    });
}

void tst_DefPolygonTableModelIndex::changedObjectsAreDetected()
{
    QFETCH(Change, change);
    Objects objects = objectsOf(QStringLiteral("н1 н2 н3 н4"));
    const DuplicateIndex index(objects);

    change(objects);

    QTEST(index.isCurrent(objects, 0), "isCurrent");
}

void tst_DefPolygonTableModelIndex::aboveTheFullCheckSizeOnlyTheQueriedRowIsCompared()
{
    for (const int extra : {0, 1}) {
        Objects objects(DuplicateIndex::fullCheckSize + extra, DefPolygon{QStringLiteral("н1"), {}});
        const DuplicateIndex index(objects);

        objects[2].def = QStringLiteral("н%1").arg(1); // the same text, but not shared

        QVERIFY(!index.isCurrent(objects, 2));
        QCOMPARE(index.isCurrent(objects, 1), extra > 0);
        objects.removeLast();
        QVERIFY(!index.isCurrent(objects, 1));
    }
}

void tst_DefPolygonTableModelIndex::duplicatesOfManyObjectsFollowEveryChange()
{
    Random random(1);
    Objects objects = manyObjects(random);
    DefMapTableModel model;
    model.setMap(&objects);
    QCOMPARE(rowMarks(model), duplicatesByScan(objects));

    // Another import can reuse the memory of the previous one.
    const DefPolygon *const memory = objects.constData();
    objects.clear();
    for (const DefPolygon &object : manyObjects(random))
        objects.append(object);
    QCOMPARE(objects.constData(), memory);
    QCOMPARE(rowMarks(model), duplicatesByScan(objects));

    for (int i = 0; i < 300; ++i) {
        const int row = static_cast<int>(random() % static_cast<unsigned>(objects.size()));
        model.setData(model.index(row, 0), QStringLiteral("Н%1").arg(random() % 3000));
    }
    QCOMPARE(rowMarks(model), duplicatesByScan(objects));

    sortObjects(objects);
    QVERIFY(model.setData(model.index(0, 0), objects.at(1).def + QStringLiteral("я")));
    QVERIFY(model.setData(model.index(1, 0), objects.at(0).def.toLower()));
    QCOMPARE(rowMarks(model), duplicatesByScan(objects));
}

// Above the full check size, a change in another row is noticed only when the list is set or that row is edited.
void tst_DefPolygonTableModelIndex::indexOfManyObjectsIsDroppedWhenStale()
{
    Objects objects;
    for (int i = 0; i <= DuplicateIndex::fullCheckSize; ++i)
        objects.append(DefPolygon{QString::number(i), {}});
    DefMapTableModel model;
    model.setMap(&objects);
    QVERIFY(!model.isDuplicateDef(0));

    objects[5].def = QStringLiteral("0");
    model.setMap(&objects);
    QVERIFY(model.isDuplicateDef(0));

    objects[5].def = QStringLiteral("5");
    QVERIFY(model.setData(model.index(5, 0), QStringLiteral("6")));
    QVERIFY(!model.isDuplicateDef(0));
}

void tst_DefPolygonTableModelIndex::detachedObjectIsNotShared()
{
    DefPolygon object{QString(), {{DefPoint{QStringLiteral("1"), 0, 0}}}};
    DefPolygonTableModel model;
    model.setPolygon(&object);
    QVERIFY(!model.isConflictingPoint(0));
    QVERIFY(!object.contours.isDetached());

    model.detachPolygon();

    QVERIFY(object.contours.isDetached());
}

void tst_DefPolygonTableModelIndex::conflictsMatchALinearScan()
{
    const double infinity = std::numeric_limits<double>::infinity();
    const QVector<QVector<double>> places{{0.0, -0.0},        {1e6, 1e6 + 5},           {1e15, 1e15 + 1},
                                          {1e308, -1.7e308},  {infinity, -infinity, 0}, {qQNaN(), 0},
                                          {qQNaN(), infinity}};
    const QVector<double> steps{0, 0.01, -0.01, 0.005, 0.010000000000000002};
    Random random(1);

    for (int round = 0; round < 20000; ++round) {
        const QVector<double> &values = places.at(round % places.size());
        const auto any = [&] { return oneOf(values, random) + oneOf(steps, random); };
        QVector<DefPoint> vertices;
        ConflictIndex index;
        for (auto i = 1 + random() % 5; i > 0; --i) {
            vertices.append(DefPoint{QString(), any(), any()});
            index.add(vertices.last());
        }
        for (const DefPoint &vertex : qAsConst(vertices)) {
            const auto differs = [&](const DefPoint &other) { return &other != &vertex && !(other == vertex); };
            QCOMPARE(index.isConflict(vertex), std::any_of(vertices.cbegin(), vertices.cend(), differs));
        }
    }
}

void tst_DefPolygonTableModelIndex::duplicateIndexIsBuiltOnce()
{
    Random random(1);
    Objects objects = manyObjects(random);
    for (const int count : {objects.size(), DuplicateIndex::fullCheckSize}) {
        objects.resize(count);
        DefMapTableModel model;
        model.setMap(&objects);
        model.isDuplicateDef(0);

        const int before = allocationCount;
        for (int row = 0; row < queryCount; ++row)
            model.isDuplicateDef(row);
        QVERIFY(model.setData(model.index(5, 0), QStringLiteral("новый%1").arg(count)));
        QVERIFY(!model.isDuplicateDef(5));
        QVERIFY2(allocationCount - before < fewAllocations, qPrintable(QString::number(allocationCount - before)));
    }
}

void tst_DefPolygonTableModelIndex::conflictIndexIsBuiltOnce()
{
    DefPolygon object{QString(), {QVector<DefPoint>()}};
    for (int i = 0; i < queryCount; ++i)
        object.contours[0].append(DefPoint{QStringLiteral("н%1").arg(i % 400), 1.0 * i, 0});
    DefPolygonTableModel model;
    model.setPolygon(&object);
    QVERIFY(model.isConflictingPoint(0));

    const int before = allocationCount;
    for (int row = 0; row < queryCount; ++row)
        QVERIFY(model.isConflictingPoint(row));
    QVERIFY2(allocationCount - before < fewAllocations, qPrintable(QString::number(allocationCount - before)));
}

QTEST_GUILESS_MAIN(tst_DefPolygonTableModelIndex)
#include "tst_defpolygontablemodel_index.moc"
