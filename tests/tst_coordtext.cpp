#include "coordtext.h"
#include "modeltesting.h"

#include <QLocale>
#include <QTest>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

/// Formatting of coordinates.
class tst_CoordText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textMatchesCLocale_data();
    void textMatchesCLocale();
    void randomTextMatchesCLocale_data();
    void randomTextMatchesCLocale();
    void firstUseFixesLocaleAndDecimals();
};

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

using Numbers = std::mt19937_64;

double anyBits(Numbers &numbers)
{
    const quint64 bits = numbers();
    double v = 0;
    std::memcpy(&v, &bits, sizeof v);
    return v;
}

double coordinate(Numbers &numbers)
{
    return std::uniform_real_distribution<double>(-1e7, 1e7)(numbers);
}

/// Multiples of 1/8, many of which are rounding ties, and their neighbouring doubles.
double nearBinaryTie(Numbers &numbers)
{
    const double tie = static_cast<double>(std::uniform_int_distribution<int>(-100000, 100000)(numbers)) / 8;
    const double choices[] = {tie, std::nextafter(tie, infinity), std::nextafter(tie, -infinity)};
    return choices[numbers() % 3];
}

/// The double nearest to a decimal rounding tie; it lies slightly above or below the tie.
double nearDecimalTie(Numbers &numbers)
{
    const auto n = static_cast<double>(std::uniform_int_distribution<qint64>(-10000000000, 10000000000)(numbers));
    return (n * 10 + 5) / std::pow(10.0, static_cast<double>(numbers() % 7));
}

/// Around the magnitude above which a double has no fractional part.
double large(Numbers &numbers)
{
    return std::ldexp(coordinate(numbers), static_cast<int>(numbers() % 40));
}

double small(Numbers &numbers)
{
    return std::ldexp(coordinate(numbers), -static_cast<int>(numbers() % 1100));
}

using Pick = double (*)(Numbers &numbers);

} // namespace

Q_DECLARE_METATYPE(Pick)

void tst_CoordText::textMatchesCLocale_data()
{
    QTest::addColumn<double>("v");
    QTest::addColumn<int>("decimals");
    QTest::addColumn<QString>("text");

    QTest::newRow("zero") << 0.0 << 2 << QStringLiteral("0.00");
    QTest::newRow("negative zero") << -0.0 << 2 << QLocale::c().toString(-0.0, 'f', 2);
    QTest::newRow("carry into the integer part") << -9.999 << 2 << QStringLiteral("-10.00");
    QTest::newRow("slightly above a tie") << 0.005 << 2 << QStringLiteral("0.01");
    QTest::newRow("slightly below a tie") << 1.005 << 2 << QStringLiteral("1.00");
    QTest::newRow("exact tie") << 0.125 << 2 << QStringLiteral("0.13");
    QTest::newRow("no decimals") << 1234.75 << 0 << QStringLiteral("1235");
    QTest::newRow("many decimals") << 0.5 << 12 << QStringLiteral("0.500000000000");
    QTest::newRow("infinite") << -infinity << 2 << QStringLiteral("-inf");
    QTest::newRow("not a number") << notANumber << 2 << QStringLiteral("nan");
}

void tst_CoordText::textMatchesCLocale()
{
    QFETCH(double, v);
    QFETCH(int, decimals);

    QTEST(coordText(v, decimals), "text");
}

void tst_CoordText::randomTextMatchesCLocale_data()
{
    QTest::addColumn<Pick>("pick");

    QTest::newRow("coordinates") << Pick(coordinate);
    QTest::newRow("any bits") << Pick(anyBits);
    QTest::newRow("near binary ties") << Pick(nearBinaryTie);
    QTest::newRow("near decimal ties") << Pick(nearDecimalTie);
    QTest::newRow("large") << Pick(large);
    QTest::newRow("small") << Pick(small);
}

void tst_CoordText::randomTextMatchesCLocale()
{
    QFETCH(Pick, pick);
    const QLocale c = QLocale::c();
    const int manyDecimals = 12;
    Numbers numbers(1);

    for (int i = 0; i < 20000; ++i) {
        const double v = pick(numbers);
        const int decimals = i % 2 == 0 ? 2 : i / 2 % manyDecimals;
        const QString text = coordText(v, decimals);
        const QString expected = c.toString(v, 'f', decimals);
        if (text != expected) // QCOMPARE formats both texts even when they are equal
            QCOMPARE(text, expected);
    }
}

// The order of the steps matters: for the whole process the first coordinate fixes the locale, and the first precision
// below 1 fixes the decimals.
void tst_CoordText::firstUseFixesLocaleAndDecimals()
{
    QLocale::setDefault(QLocale(QLocale::Russian, QLocale::Russia));
    Table table(QStringLiteral("н1 -1234567.75 1234.75"));
    const auto xAndY = [&table](int role) {
        return QStringList{table.cell(0, 1).data(role).toString(), table.cell(0, 2).data(role).toString()};
    };
    QCOMPARE(DefPolygonTableModel::coordPrecision(), 0.01);
    for (double refused : {0.0, -0.5, notANumber}) {
        DefPolygonTableModel::setCoordPrecision(refused);
        QCOMPARE(DefPolygonTableModel::coordPrecision(), 0.01);
    }
    for (double whole : {25.0, 1.0}) {
        DefPolygonTableModel::setCoordPrecision(whole);
        QCOMPARE(xAndY(Qt::EditRole), (QStringList{QStringLiteral("-1234568"), QStringLiteral("1235")}));
    }

    DefPolygonTableModel::setCoordPrecision(0.0095); // 0.95 after two multiplications by 10, above 1 after three
    const QStringList edited{QStringLiteral("-1234567.750"), QStringLiteral("1234.750")};
    const QStringList shown{QStringLiteral("-1\u00a0234\u00a0567,750"), QStringLiteral("1\u00a0234,750")};
    QCOMPARE(xAndY(Qt::EditRole), edited);
    QCOMPARE(xAndY(Qt::DisplayRole), shown);

    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    for (double later : {0.1, 1.0, 0.00001}) {
        DefPolygonTableModel::setCoordPrecision(later);
        QCOMPARE(DefPolygonTableModel::coordPrecision(), later);
        QCOMPARE(xAndY(Qt::EditRole), edited);
        QCOMPARE(xAndY(Qt::DisplayRole), shown);
    }
    QCOMPARE(DefPolygonTableModel().formatCoord(1234.75, true), shown.last());
}

QTEST_GUILESS_MAIN(tst_CoordText)
#include "tst_coordtext.moc"
