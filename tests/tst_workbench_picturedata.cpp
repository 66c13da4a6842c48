#include "picturedata.h"

#include "picturetesting.h"

#include <QTest>

class tst_WorkbenchPictureData : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void boxesContainTheirVertices();
    void objectAtPosition_data();
    void objectAtPosition();
    void hugeCoordinatesAreExact();
    void verticesInViewAreCounted();
};

enum Object { Parcel, Building, InHole, Road, Picket, Sheet };

/// A parcel of 100 m with a hole; a building in it; another one in the hole; a road through it; a picket; a sheet
/// around.
const QVector<TestObject> plan{
    {QStringLiteral("участок"), {square(0, 0, 100), square(60, 60, 30)}},
    {QStringLiteral("дом"), {square(10, 10, 20)}},
    {QStringLiteral("в дыре"), {square(70, 70, 10)}},
    {QStringLiteral("дорога"), {{{-50, 50}, {150, 50}}}},
    {QStringLiteral("пикет"), {{{40, 20}}}},
    {QStringLiteral("лист"), {square(-500, -500, 1000)}},
};

void tst_WorkbenchPictureData::boxesContainTheirVertices()
{
    QVector<TestObject> objects = plan;
    objects.append({QStringLiteral("NaN"), {notDrawable}});
    objects.append({QStringLiteral("пусто"), {}});

    const PictureData data(resultOf(objects));

    QCOMPARE(data.box().minX, -500.0);
    QCOMPARE(data.box().maxY, 500.0);
    QCOMPARE(data.objectBox(Road).maxX, 150.0);
    QCOMPARE(data.objectBox(Road).height(), 0.0);
    QCOMPARE(data.contourBox(1).minX, 60.0);
    QCOMPARE(data.objectOfContour(1), int(Parcel));
    QCOMPARE(data.objectOfContour(2), int(Building));
    QVERIFY(data.objectBox(Sheet + 1).isEmpty());
    QVERIFY(data.objectBox(Sheet + 2).isEmpty());
    QVERIFY(PictureData().box().isEmpty());
}

void tst_WorkbenchPictureData::objectAtPosition_data()
{
    QTest::addColumn<QPointF>("xy");
    QTest::addColumn<int>("object");

    QTest::newRow("in a ring") << QPointF(80, 20) << int(Parcel);
    QTest::newRow("smaller ring in it") << QPointF(20, 20) << int(Building);
    QTest::newRow("in the hole") << QPointF(65, 65) << int(Sheet);
    QTest::newRow("in the hole's object") << QPointF(75, 75) << int(InHole);
    QTest::newRow("on a line in a ring") << QPointF(20, 50) << int(Road);
    QTest::newRow("near the line") << QPointF(20, 51.9) << int(Road);
    QTest::newRow("not so near") << QPointF(20, 52.1) << int(Parcel);
    QTest::newRow("beyond the line's end") << QPointF(152.1, 50) << int(Sheet);
    QTest::newRow("near a point") << QPointF(41, 21) << int(Picket);
    QTest::newRow("in the largest ring only") << QPointF(-100, 300) << int(Sheet);
    QTest::newRow("near a border, beside everything") << QPointF(-501.9, 0) << int(Sheet);
    QTest::newRow("beside everything") << QPointF(-502.1, 0) << -1;
    QTest::newRow("nowhere") << QPointF(qQNaN(), 0) << -1;
}

void tst_WorkbenchPictureData::objectAtPosition()
{
    QFETCH(QPointF, xy);
    const PictureData data(resultOf(plan));

    QTEST(data.objectAt(xy, 2), "object");
}

void tst_WorkbenchPictureData::hugeCoordinatesAreExact()
{
    const QVector<QPointF> triangle{{1e7, 2e7}, {1e7 + 0.02, 2e7}, {1e7 + 0.02, 2e7 + 0.02}, {1e7, 2e7}};
    const PictureData data(resultOf({{QString(), {triangle}}}));

    QCOMPARE(data.objectAt({1e7 + 0.015, 2e7 + 0.005}, 1e-4), 0);
    QCOMPARE(data.objectAt({1e7 + 0.005, 2e7 + 0.015}, 1e-4), -1);
}

void tst_WorkbenchPictureData::verticesInViewAreCounted()
{
    QVector<QPointF> line;
    for (int i = 0; i < 100 * PictureData::chunkSize; ++i)
        line.append({i / double(PictureData::chunkSize), 0});
    const PictureData data(resultOf({{QString(), {{{5, 0}}}}, {QString(), {line}}}));

    QCOMPARE(data.vertexCount({0, 1}, {-1, -1, 1000, 1}), 1 + line.size());
    // Chunks begin one vertex earlier than whole metres.
    QCOMPARE(data.vertexCount({1}, {10.2, -1, 19.7, 1}), 10 * PictureData::chunkSize);
    QCOMPARE(data.vertexCount({1}, {0, 1, 1000, 1}), 0);
}

QTEST_GUILESS_MAIN(tst_WorkbenchPictureData)
#include "tst_workbench_picturedata.moc"
