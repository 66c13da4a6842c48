#include "pictureindex.h"

#include <QRandomGenerator>
#include <QTest>

Q_DECLARE_METATYPE(PictureBox)

class tst_WorkbenchPictureIndex : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sameAsNaiveScan_data();
    void sameAsNaiveScan();
    void bordersTouch();
};

PictureBox randomBox(QRandomGenerator &random, double extent, double size)
{
    const double x = random.generateDouble() * extent;
    const double y = random.generateDouble() * extent;
    return {x, y, x + random.generateDouble() * size, y + random.generateDouble() * size};
}

QVector<int> naiveScan(const QVector<PictureBox> &boxes, const PictureBox &box)
{
    QVector<int> found;
    for (int i = 0; i < boxes.size(); ++i) {
        if (boxes.at(i).touches(box))
            found.append(i);
    }
    return found;
}

void tst_WorkbenchPictureIndex::sameAsNaiveScan_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<double>("size");
    QTest::addColumn<PictureBox>("extra");

    QTest::newRow("none") << 0 << 1.0 << PictureBox();
    QTest::newRow("one leaf") << 7 << 10.0 << PictureBox();
    QTest::newRow("many") << 3000 << 10.0 << PictureBox();
    QTest::newRow("points") << 3000 << 0.0 << PictureBox();
    QTest::newRow("overlapping") << 500 << 800.0 << PictureBox();
    QTest::newRow("a stray one") << 3000 << 10.0 << PictureBox{-1e15, -1e15, -1e15, -1e15};
    QTest::newRow("one around all") << 3000 << 10.0 << PictureBox{-1e9, -1e9, 1e9, 1e9};
}

void tst_WorkbenchPictureIndex::sameAsNaiveScan()
{
    QFETCH(int, count);
    QFETCH(double, size);
    QFETCH(PictureBox, extra);
    QRandomGenerator random(1);
    QVector<PictureBox> boxes{extra};
    for (int i = 0; i < count; ++i)
        boxes.append(i % 10 == 0 ? PictureBox() : randomBox(random, 1000, size));

    const PictureIndex index(boxes);

    for (int i = 0; i < 300; ++i) {
        const PictureBox box = randomBox(random, 1000, i % 3 == 0 ? 1000 : 30);
        QCOMPARE(index.find(box), naiveScan(boxes, box));
    }
    QCOMPARE(index.find({-1e18, -1e18, 1e18, 1e18}), naiveScan(boxes, {-1e18, -1e18, 1e18, 1e18}));
}

void tst_WorkbenchPictureIndex::bordersTouch()
{
    const PictureIndex index({PictureBox{0, 0, 1, 1}});

    QCOMPARE(index.find({1, 1, 2, 2}), QVector<int>{0});
    QCOMPARE(index.find({1, 1, 1, 1}), QVector<int>{0});
    QCOMPARE(index.find({-1, -1, 0, 0}), QVector<int>{0});
    QCOMPARE(index.find({1.001, 0, 2, 2}), QVector<int>());
}

QTEST_GUILESS_MAIN(tst_WorkbenchPictureIndex)
#include "tst_workbench_pictureindex.moc"
