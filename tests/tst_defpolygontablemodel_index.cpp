#include "defpolygontablemodel_index.h"

#include <QSet>
#include <QTest>

#include <algorithm>
#include <random>

/// What the models know of designations: held against looking through all of them.
class tst_DefPolygonTableModelIndex : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sameDesignationsHaveOneHash_data();
    void sameDesignationsHaveOneHash();
    void pairsOfSurrogatesHaveHashesOfTheirOwn();
    void foldingIsThatOfTheComparison_data();
    void foldingIsThatOfTheComparison();
    void mapOutgrowsItsSize_data();
    void mapOutgrowsItsSize();
    void countsAreThoseOfAScan_data();
    void countsAreThoseOfAScan();
    void changedObjectsAreOthers_data();
    void changedObjectsAreOthers();
    void changedTextIsFoundInManyObjects();
    void textOfAnotherRowIsFoundInFewer();
    void placesAreThoseOfAScan_data();
    void placesAreThoseOfAScan();
};

namespace {

using Numbers = std::mt19937;
using Objects = QVector<DefPolygon>;
using Change = void (*)(Objects &objects);

constexpr double infinity = std::numeric_limits<double>::infinity();

bool isSame(const QString &a, const QString &b)
{
    return QString::compare(a, b, Qt::CaseInsensitive) == 0;
}

/// A text of one code point; a surrogate stands alone.
QString textOf(uint codePoint)
{
    if (QChar::requiresSurrogates(codePoint))
        return QString(QChar(QChar::highSurrogate(codePoint))) + QChar(QChar::lowSurrogate(codePoint));
    return QString(QChar(codePoint));
}

/// Up to three of the pieces that fold in all ways, so that many texts are alike.
QString anyDef(Numbers &numbers)
{
    static const QStringList pieces{
        QStringLiteral("н"),      QStringLiteral("Н"),    QStringLiteral("1"), QStringLiteral("s"),
        QStringLiteral("S"),      QStringLiteral("ſ"),    QStringLiteral("ß"), QStringLiteral("ẞ"),
        QStringLiteral("σ"),      QStringLiteral("ς"),    QStringLiteral("İ"), QStringLiteral("K"),
        QStringLiteral("\u212a"), textOf(0x10400),        textOf(0x10428),     QString(QChar(0xd801)),
        QString(QChar(0xdc00)),   QString(QChar(0xdc28)), QStringLiteral("ﬁ"), QString()};
    QString def;
    for (auto i = numbers() % 4; i > 0; --i)
        def += pieces.at(static_cast<int>(numbers() % static_cast<unsigned>(pieces.size())));
    return def;
}

Objects anyObjects(Numbers &numbers, int count)
{
    Objects objects;
    for (int i = 0; i < count; ++i)
        objects.append(DefPolygon{anyDef(numbers), {}});
    return objects;
}

bool isDuplicate(const Objects &objects, int row)
{
    const auto alike = [&](const DefPolygon &object) { return isSame(object.def, objects.at(row).def); };
    return std::count_if(objects.begin(), objects.end(), alike) > 1;
}

/// The rows of which counts and a scan say different things.
QVector<int> contested(const DuplicateIndex &counts, const Objects &objects)
{
    QVector<int> rows;
    for (int row = 0; row < objects.size(); ++row) {
        if (counts.isDuplicate(row) != isDuplicate(objects, row))
            rows.append(row);
    }
    return rows;
}

/// Coordinates that lie at one place, just the tolerance apart, far apart and nowhere.
double anyCoordinate(Numbers &numbers, const QVector<double> &values)
{
    const double value = values.at(static_cast<int>(numbers() % static_cast<unsigned>(values.size())));
    const double steps[] = {0, 0.01, -0.01, 0.005, 0.010000000000000002};
    return value + steps[numbers() % 5];
}

} // namespace

Q_DECLARE_METATYPE(Change)

void tst_DefPolygonTableModelIndex::sameDesignationsHaveOneHash_data()
{
    QTest::addColumn<uint>("first");
    QTest::addColumn<uint>("last");

    QTest::newRow("one code unit") << 0U << 0xffffU;
    QTest::newRow("pairs of surrogates") << 0x10000U << 0x10ffffU;
}

// Sorted, those that are alike stand side by side.
void tst_DefPolygonTableModelIndex::sameDesignationsHaveOneHash()
{
    QFETCH(uint, first);
    QFETCH(uint, last);
    QVector<QString> texts;
    for (uint codePoint = first; codePoint <= last; ++codePoint)
        texts.append(textOf(codePoint));
    std::sort(texts.begin(), texts.end(),
              [](const QString &a, const QString &b) { return QString::compare(a, b, Qt::CaseInsensitive) < 0; });

    const CaseFoldHash hash;
    int alike = 0;
    for (int i = 1; i < texts.size(); ++i) {
        if (!isSame(texts.at(i - 1), texts.at(i)))
            continue;
        ++alike;
        QCOMPARE(hash(texts.at(i)), hash(texts.at(i - 1)));
    }
    QVERIFY(alike > 100);
}

// Names of such characters must not all be looked for in one place.
void tst_DefPolygonTableModelIndex::pairsOfSurrogatesHaveHashesOfTheirOwn()
{
    QSet<std::size_t> hashes;
    for (uint codePoint = 0x20000; codePoint < 0x20400; ++codePoint)
        hashes.insert(CaseFoldHash()(textOf(codePoint)));

    QCOMPARE(hashes.size(), 0x400);
}

void tst_DefPolygonTableModelIndex::foldingIsThatOfTheComparison_data()
{
    QTest::addColumn<QString>("a");
    QTest::addColumn<QString>("b");
    QTest::addColumn<bool>("same");

    QTest::newRow("Cyrillic") << QStringLiteral("ЗУ1") << QStringLiteral("зу1") << true;
    QTest::newRow("ё is not е") << QStringLiteral("ё") << QStringLiteral("е") << false;
    QTest::newRow("Kelvin sign") << QStringLiteral("\u212a1") << QStringLiteral("k1") << true;
    QTest::newRow("last sigma") << QStringLiteral("ς") << QStringLiteral("Σ") << true;
    QTest::newRow("Deseret letters") << textOf(0x10400) << textOf(0x10428) << true;
    QTest::newRow("halves of Deseret letters") << QString(QChar(0xdc00)) << QString(QChar(0xdc28)) << false;
    QTest::newRow("sharp s in full") << QStringLiteral("ß") << QStringLiteral("ss") << false;
    QTest::newRow("large sharp s") << QStringLiteral("ẞ") << QStringLiteral("ß") << true;
    QTest::newRow("large sharp s in full") << QStringLiteral("ẞ") << QStringLiteral("SS") << false;
    QTest::newRow("large dotted i in full") << QStringLiteral("İ") << QStringLiteral("i\u0307") << false;
    QTest::newRow("ligature in full") << QStringLiteral("ﬁ") << QStringLiteral("fi") << false;
    QTest::newRow("Armenian ligature in full") << QStringLiteral("և") << QStringLiteral("եւ") << false;
    QTest::newRow("Greek with iota in full") << QStringLiteral("ᾳ") << QStringLiteral("αι") << false;
}

void tst_DefPolygonTableModelIndex::foldingIsThatOfTheComparison()
{
    QFETCH(QString, a);
    QFETCH(QString, b);
    QFETCH(bool, same);

    const DuplicateIndex counts({DefPolygon{a, {}}, DefPolygon{b, {}}});

    QCOMPARE(counts.isDuplicate(0), same);
    QCOMPARE(counts.isDuplicate(1), same);
}

void tst_DefPolygonTableModelIndex::mapOutgrowsItsSize_data()
{
    QTest::addColumn<int>("size");

    QTest::newRow("none") << 0;
    QTest::newRow("one") << 1;
    QTest::newRow("a power of two") << 64;
    QTest::newRow("nearly enough") << 2999;
}

// Each name comes as it is and in capitals, and a value for either is the value of both.
void tst_DefPolygonTableModelIndex::mapOutgrowsItsSize()
{
    QFETCH(int, size);
    const int count = 3000;
    DefMap<int> map(size);

    for (int i = 0; i < count; ++i) {
        QCOMPARE(map[QStringLiteral("н%1").arg(i)], 0);
        map[QStringLiteral("Н%1").arg(i)] = i;
    }

    for (int i = 0; i < count; ++i)
        QCOMPARE(map.at(QStringLiteral("н%1").arg(i)), i);
}

void tst_DefPolygonTableModelIndex::countsAreThoseOfAScan_data()
{
    QTest::addColumn<int>("size");

    QTest::newRow("one object") << 1;
    QTest::newRow("few objects") << 12;
    QTest::newRow("many objects") << 1500;
}

void tst_DefPolygonTableModelIndex::countsAreThoseOfAScan()
{
    QFETCH(int, size);
    Numbers numbers(1);
    Objects objects = anyObjects(numbers, size);
    DuplicateIndex counts(objects);
    QCOMPARE(contested(counts, objects), QVector<int>());

    for (int renamed = 0; renamed < 40; ++renamed) {
        const int row = static_cast<int>(numbers() % static_cast<unsigned>(size));
        objects[row].def = anyDef(numbers);
        counts.rename(row, objects.at(row).def);
        QVERIFY(counts.isCurrent(objects, row));
        QCOMPARE(contested(counts, objects), QVector<int>());
    }
}

void tst_DefPolygonTableModelIndex::changedObjectsAreOthers_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<bool>("same");

    const auto add = [](const char *name, Change change, bool same) { QTest::newRow(name) << change << same; };
    add(
        "nothing", [](Objects & /*objects*/) {}, true);
    add(
        "contours only", [](Objects &objects) { objects[2].contours.append(QVector<DefPoint>()); }, true);
    add(
        "another row", [](Objects &objects) { objects[2].def = QStringLiteral("н1"); }, false);
    add(
        "one letter", [](Objects &objects) { objects[2].def[0] = QLatin1Char('x'); }, false);
    add(
        "letters appended", [](Objects &objects) { objects[2].def += QLatin1Char('x'); }, false);
    add(
        "designation taken away", [](Objects &objects) { objects[2].def.clear(); }, false);
    add(
        "object appended", [](Objects &objects) { objects.append(DefPolygon()); }, false);
    add(
        "object removed", [](Objects &objects) { objects.removeLast(); }, false);
    add(
        "rows exchanged", [](Objects &objects) { std::swap(objects[1], objects[2]); }, false);
    add(
        "other objects", [](Objects &objects) { objects = Objects(4); }, false);
    add(
        "other objects of these names",
        [](Objects &objects) {
            const Objects old = objects;
            objects.clear();
            for (const DefPolygon &object : old)
                objects.append(object);
        },
        false);
}

void tst_DefPolygonTableModelIndex::changedObjectsAreOthers()
{
    QFETCH(Change, change);
    Objects objects;
    for (int i = 1; i <= 4; ++i)
        objects.append(DefPolygon{QStringLiteral("н%1").arg(i), {}});
    const DuplicateIndex counts(objects);
    QVERIFY(counts.isCurrent(objects, 0));

    change(objects);

    QTEST(counts.isCurrent(objects, 0), "same");
}

// Of many objects only the row that is asked for is looked at, which finds another order and another import.
void tst_DefPolygonTableModelIndex::changedTextIsFoundInManyObjects()
{
    Objects objects;
    for (int i = 0; i <= DuplicateIndex::fullCheckSize; ++i)
        objects.append(DefPolygon{QStringLiteral("н%1").arg(i), {}});
    const DuplicateIndex counts(objects);

    objects[2].def = QStringLiteral("н%1").arg(2); // as another import would write it

    QVERIFY(!counts.isCurrent(objects, 2));
    QVERIFY(counts.isCurrent(objects, 1));
    objects.removeLast();
    QVERIFY(!counts.isCurrent(objects, 1));
}

void tst_DefPolygonTableModelIndex::textOfAnotherRowIsFoundInFewer()
{
    Objects objects(DuplicateIndex::fullCheckSize, DefPolygon{QStringLiteral("н1"), {}});
    const DuplicateIndex counts(objects);

    objects[2].def = QStringLiteral("н2");

    QVERIFY(!counts.isCurrent(objects, 1));
}

void tst_DefPolygonTableModelIndex::placesAreThoseOfAScan_data()
{
    QTest::addColumn<QVector<double>>("values");

    QTest::newRow("one place") << QVector<double>{0};
    QTest::newRow("both signs of zero") << QVector<double>{0.0, -0.0};
    QTest::newRow("two places") << QVector<double>{1e6, 1e6 + 5};
    QTest::newRow("large") << QVector<double>{1e15, 1e15 + 1, 1e16};
    QTest::newRow("as large as can be") << QVector<double>{1e308, -1e308, 1.7e308};
    QTest::newRow("infinite") << QVector<double>{0, infinity};
    QTest::newRow("infinite on both sides") << QVector<double>{infinity, -infinity};
    QTest::newRow("not a number") << QVector<double>{qQNaN(), 0};
    QTest::newRow("nowhere at all") << QVector<double>{qQNaN(), infinity};
}

void tst_DefPolygonTableModelIndex::placesAreThoseOfAScan()
{
    QFETCH(QVector<double>, values);
    Numbers numbers(1);

    for (int round = 0; round < 2000; ++round) {
        QVector<DefPoint> vertices;
        ConflictIndex places;
        for (auto i = 1 + numbers() % 5; i > 0; --i) {
            vertices.append(DefPoint{QString(), anyCoordinate(numbers, values), anyCoordinate(numbers, values)});
            places.add(vertices.last());
        }
        for (const DefPoint &vertex : qAsConst(vertices)) {
            const auto differs = [&](const DefPoint &other) { return &other != &vertex && !(other == vertex); };
            const bool conflicts = std::any_of(vertices.cbegin(), vertices.cend(), differs);
            QCOMPARE(places.isConflict(vertex), conflicts);
        }
    }
}

QTEST_APPLESS_MAIN(tst_DefPolygonTableModelIndex)
#include "tst_defpolygontablemodel_index.moc"
