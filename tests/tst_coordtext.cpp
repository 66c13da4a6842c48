#include "coordtext.h"

#include <QLocale>
#include <QTest>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

/// Coordinates as they are written for the host and for editing.
class tst_CoordText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void coordinateIsWritten_data();
    void coordinateIsWritten();
    void textIsThatOfTheCLocale_data();
    void textIsThatOfTheCLocale();
};

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

using Numbers = std::mt19937_64;

/// Any bits at all.
double anyNumber(Numbers &numbers)
{
    const quint64 bits = numbers();
    double v = 0;
    std::memcpy(&v, &bits, sizeof v);
    return v;
}

/// As surveyors have them: up to ten million, on both sides of zero.
double coordinate(Numbers &numbers)
{
    return std::uniform_real_distribution<double>(-1e7, 1e7)(numbers);
}

/// Eighths and the numbers around them, where the half of the last decimal lies for many decimals.
double nearATie(Numbers &numbers)
{
    const double tie = static_cast<double>(std::uniform_int_distribution<int>(-100000, 100000)(numbers)) / 8;
    const double steps[] = {tie, std::nextafter(tie, infinity), std::nextafter(tie, -infinity)};
    return steps[numbers() % 3];
}

/// The double that is nearest to a half of the last decimal, which lies above or below it.
double nearDecimalTie(Numbers &numbers)
{
    const auto n = static_cast<double>(std::uniform_int_distribution<qint64>(-10000000000, 10000000000)(numbers));
    return (n * 10 + 5) / std::pow(10.0, static_cast<double>(numbers() % 7));
}

/// Where the digits of a double do not reach behind the point any more.
double large(Numbers &numbers)
{
    return std::ldexp(coordinate(numbers), static_cast<int>(numbers() % 40));
}

/// Too small to be seen.
double small(Numbers &numbers)
{
    return std::ldexp(coordinate(numbers), -static_cast<int>(numbers() % 1100));
}

using Pick = double (*)(Numbers &numbers);

} // namespace

Q_DECLARE_METATYPE(Pick)

void tst_CoordText::coordinateIsWritten_data()
{
    QTest::addColumn<double>("v");
    QTest::addColumn<int>("decimals");
    QTest::addColumn<QString>("text");

    QTest::newRow("zero") << 0.0 << 2 << QStringLiteral("0.00");
    QTest::newRow("whole") << 1000.0 << 2 << QStringLiteral("1000.00");
    QTest::newRow("half") << 1000.5 << 2 << QStringLiteral("1000.50");
    QTest::newRow("hundredth") << 0.01 << 2 << QStringLiteral("0.01");
    QTest::newRow("negative") << -12.346 << 2 << QStringLiteral("-12.35");
    QTest::newRow("rounded into the next whole") << 9.999 << 2 << QStringLiteral("10.00");
    QTest::newRow("a little more than the half") << 0.005 << 2 << QStringLiteral("0.01");
    QTest::newRow("a little less than the half") << 1.005 << 2 << QStringLiteral("1.00");
    QTest::newRow("just the half") << 0.125 << 2 << QStringLiteral("0.13");
    QTest::newRow("no decimals") << 1234.75 << 0 << QStringLiteral("1235");
    QTest::newRow("three decimals") << 1234.75 << 3 << QStringLiteral("1234.750");
    QTest::newRow("large") << 1e15 << 2 << QStringLiteral("1000000000000000.00");
    QTest::newRow("many decimals") << 0.5 << 12 << QStringLiteral("0.500000000000");
    QTest::newRow("infinite") << infinity << 2 << QStringLiteral("inf");
    QTest::newRow("infinite to the left") << -infinity << 2 << QStringLiteral("-inf");
    QTest::newRow("not a number") << std::numeric_limits<double>::quiet_NaN() << 2 << QStringLiteral("nan");
}

void tst_CoordText::coordinateIsWritten()
{
    QFETCH(double, v);
    QFETCH(int, decimals);

    QTEST(coordText(v, decimals), "text");
}

void tst_CoordText::textIsThatOfTheCLocale_data()
{
    QTest::addColumn<Pick>("pick");

    QTest::newRow("coordinates") << Pick(coordinate);
    QTest::newRow("any bits") << Pick(anyNumber);
    QTest::newRow("near eighths") << Pick(nearATie);
    QTest::newRow("near decimal halves") << Pick(nearDecimalTie);
    QTest::newRow("large") << Pick(large);
    QTest::newRow("small") << Pick(small);
    QTest::newRow("negative zero") << Pick([](Numbers & /*numbers*/) { return -0.0; });
}

void tst_CoordText::textIsThatOfTheCLocale()
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
        if (text != expected) // written out only then: it costs more than the comparison
            QCOMPARE(text, expected);
    }
}

QTEST_APPLESS_MAIN(tst_CoordText)
#include "tst_coordtext.moc"
