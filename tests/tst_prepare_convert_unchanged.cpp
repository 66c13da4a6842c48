#include "plantesting.h"

#include <QRandomGenerator>

#include <cmath>

/// Converting what the import reads as it is meant changes nothing.
class tst_PrepareConvertUnchanged : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void goodFilesAreUnchanged_data();
    void goodFilesAreUnchanged();
    void goodDrawingsAreUnchanged_data();
    void goodDrawingsAreUnchanged();
};

namespace {

/// Draws plans that the import reads as they are meant: parcels between numbered corners, with houses and signs.
class PlanDrawer
{
public:
    explicit PlanDrawer(int number) : m_random(static_cast<quint32>(number))
    {
        constexpr double sizes[] = {0.1, 1, 10, 100};
        m_size = sizes[m_random.bounded(4)];
    }

    QStringList plan();

private:
    double about(double value, double deviation) { return value + deviation * (m_random.generateDouble() - 0.5); }
    QByteArray cornerMark(double x, double y);
    QByteArray outline(const QVector<QPair<double, double>> &vertices);
    QByteArray label(const QString &text, double x, double y);
    QByteArray parcel(int column, int row);
    QPair<double, double> corner(int column, int row) const { return m_corners.at(row * (columnCount + 1) + column); }

    static constexpr int columnCount = 4;
    static constexpr int rowCount = 3;

    QRandomGenerator m_random;
    double m_size = 1; ///< in metres per millimetre of the sheet
    int m_count = 0;
    QVector<QPair<double, double>> m_corners;
};

QByteArray PlanDrawer::cornerMark(double x, double y)
{
    QByteArray entities;
    switch (m_random.bounded(4)) {
    case 0:
        entities = "|0 POINT|8 0" + place(10, x, y);
        break;
    case 1:
        entities = circle(x, y, 0.75 * m_size);
        break;
    case 2:
        entities = insert("M", x, y) + "|41 " + QByteArray::number(m_size) + "|42 " + QByteArray::number(m_size);
        break;
    default:
        entities = "|0 POINT|8 0" + place(10, x, y) + circle(x, y, 0.75 * m_size);
    }
    const QByteArray number = (m_random.bounded(2) == 0 ? "" : "н") + QByteArray::number(++m_count);
    return entities + text(number.constData(), x + 0.9 * m_size, y + 0.9 * m_size, 1.5 * m_size);
}

QByteArray PlanDrawer::outline(const QVector<QPair<double, double>> &vertices)
{
    if (m_random.bounded(2) == 0)
        return ring(vertices);
    QByteArray entity = "|0 POLYLINE|8 0|66 1|70 1|10 0|20 0";
    for (const auto &vertex : vertices)
        entity += "|0 VERTEX|8 0" + place(10, vertex.first, vertex.second);
    return entity + "|0 SEQEND|8 0";
}

QByteArray PlanDrawer::label(const QString &name, double x, double y)
{
    return text(name.toUtf8().constData(), x, y, 2.5 * m_size);
}

QByteArray PlanDrawer::parcel(int column, int row)
{
    const QVector<QPair<double, double>> vertices{corner(column, row), corner(column + 1, row),
                                                  corner(column + 1, row + 1), corner(column, row + 1)};
    double x = 0;
    double y = 0;
    for (const auto &vertex : vertices) {
        x += vertex.first / 4;
        y += vertex.second / 4;
    }
    const int number = row * columnCount + column + 1;
    QByteArray entities = outline(vertices) + label(QStringLiteral(":ЗУ%1").arg(number), x, y);
    if (m_random.bounded(3) > 0)
        return entities;
    const double side = 4 * m_size;
    x -= 9 * m_size;
    y -= 9 * m_size;
    entities += outline({{x, y}, {x + side, y}, {x + side, y + side}, {x, y + side}});
    return entities + label(QStringLiteral("Дом %1").arg(number), x + side / 2, y + side / 2);
}

QStringList PlanDrawer::plan()
{
    QByteArray entities;
    for (int row = 0; row <= rowCount; ++row) {
        for (int column = 0; column <= columnCount; ++column) {
            const auto rounded = [](double value) { return std::round(value * 100) / 100; };
            const double x = rounded(5000 + m_size * about(40 * column, 6));
            const double y = rounded(8000 + m_size * about(40 * row, 6));
            m_corners.append({x, y});
            entities += cornerMark(x, y);
        }
    }
    for (int row = 0; row < rowCount; ++row) {
        for (int column = 0; column < columnCount; ++column)
            entities += parcel(column, row);
    }
    return drawingOf(entities, mark);
}

} // namespace

void tst_PrepareConvertUnchanged::goodFilesAreUnchanged_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("drawing") << QStringLiteral("plan.dxf");
    QTest::newRow("MIF file") << QStringLiteral("plan.mif");
}

void tst_PrepareConvertUnchanged::goodFilesAreUnchanged()
{
    QFETCH(QString, name);
    const QString file = QFINDTESTDATA(QStringLiteral("../examples/") + name);
    ConvertFixture fixture;

    QVERIFY(fixture.convert(file));

    QCOMPARE(imported(fixture.path(QStringLiteral("out.mif"))), imported(file));
}

void tst_PrepareConvertUnchanged::goodDrawingsAreUnchanged_data()
{
    QTest::addColumn<int>("number");

    for (int number = 1; number <= 40; ++number)
        QTest::addRow("%d", number) << number;
}

void tst_PrepareConvertUnchanged::goodDrawingsAreUnchanged()
{
    QFETCH(int, number);
    ConvertFixture fixture;
    const QString file = fixture.files.write(QStringLiteral("a.dxf"), PlanDrawer(number).plan(), "windows-1251");

    QVERIFY(fixture.convert(QStringLiteral("a.dxf")));

    const QStringList before = imported(file);
    QVERIFY(before.size() >= 12);
    QCOMPARE(imported(fixture.path(QStringLiteral("out.mif"))), before);
}

QTEST_GUILESS_MAIN(tst_PrepareConvertUnchanged)
#include "tst_prepare_convert_unchanged.moc"
