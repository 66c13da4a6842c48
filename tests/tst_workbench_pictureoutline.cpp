#include "pictureoutline.h"

#include "picturetesting.h"

#include <QPolygonF>
#include <QRandomGenerator>
#include <QTest>
#include <QtMath>

class tst_WorkbenchPictureOutline : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void verticesWithinTheToleranceAreSkipped();
    void lastVertexIsKept();
    void zeroToleranceKeepsAll();
    void undrawableVertexIsSkipped();
    void clippingKeepsTheInside_data();
    void clippingKeepsTheInside();
    void clippingKeepsTheLine();
    void chunksChangeNothingVisible();
};

// A view of 100 by 100 pixels, a pixel for each metre, whose lower left corner is the origin.
const PictureMap map{QPointF(50, 50), 1, QSizeF(100, 100), true};
const QRectF clip(-10, -10, 120, 120);

QPolygonF lineOf(const PictureOutline &outline, int line = 0)
{
    QPolygonF points;
    std::for_each(outline.begin(line), outline.end(line), [&points](const QPointF &point) { points.append(point); });
    return points;
}

QPolygonF traced(const QVector<QPointF> &contour, const PictureMap &m = map, double tolerance = 0.5)
{
    const PictureData data(resultOf({{QString(), {contour}}}));
    PictureOutline outline(data, m, clip);
    outline.setTolerance(tolerance);
    outline.append(data.result().contours.first());
    return lineOf(outline);
}

QPolygonF pixelsOf(const QVector<QPointF> &contour)
{
    QPolygonF pixels;
    for (const QPointF &xy : contour)
        pixels.append(map.toPixels(xy));
    return pixels;
}

void tst_WorkbenchPictureOutline::verticesWithinTheToleranceAreSkipped()
{
    const QVector<QPointF> contour{{10, 10}, {10.3, 10.3}, {10.4, 10.4}, {12, 10}};

    QCOMPARE(traced(contour), pixelsOf({{10, 10}, {12, 10}}));
}

void tst_WorkbenchPictureOutline::lastVertexIsKept()
{
    const QVector<QPointF> ring{{10, 10}, {20, 10}, {20, 20}, {10.2, 10.2}, {10, 10}};

    QCOMPARE(traced(ring), pixelsOf(ring));
    QCOMPARE(traced({{10, 10}, {10.1, 10}, {10.2, 10}}), pixelsOf({{10, 10}, {10.2, 10}}));
}

void tst_WorkbenchPictureOutline::zeroToleranceKeepsAll()
{
    const QVector<QPointF> contour(300, QPointF(10, 10));

    QCOMPARE(traced(contour, map, 0), pixelsOf(contour));
}

void tst_WorkbenchPictureOutline::undrawableVertexIsSkipped()
{
    QVector<QPointF> contour{{10, 10}};
    contour += notDrawable;
    contour.append({20, 20});

    QCOMPARE(traced(contour), pixelsOf({{10, 10}, {20, 20}}));
    QCOMPARE(traced(notDrawable), QPolygonF());
}

void tst_WorkbenchPictureOutline::clippingKeepsTheInside_data()
{
    QTest::addColumn<QVector<QPointF>>("ring");

    QTest::newRow("around the view") << square(-1e6, -1e6, 2e6);
    QTest::newRow("a corner") << square(-1000, -1000, 1050);
    QTest::newRow("starts beyond two sides") << QVector<QPointF>{{900, -900}, {50, 50}, {-900, 900}, {900, -900}};
    QTest::newRow("passes a corner") << QVector<QPointF>{{-300, 50}, {50, 400}, {400, 400}, {400, -300}, {-300, 50}};
    QRandomGenerator random(7);
    for (int i = 0; i < 200; ++i) {
        QVector<QPointF> ring;
        for (int k = 0; k < 3 + i % 9; ++k)
            ring.append({random.bounded(400.0) - 150, random.bounded(400.0) - 150});
        ring.append(ring.first());
        QTest::addRow("random %d", i) << ring;
    }
}

void tst_WorkbenchPictureOutline::clippingKeepsTheInside()
{
    QFETCH(QVector<QPointF>, ring);
    const QPolygonF whole = pixelsOf(ring);

    const QPolygonF clipped = traced(ring);

    for (int x = 0; x <= 100; x += 4) {
        for (int y = 0; y <= 100; y += 4) {
            const QPointF p(x + 0.123, y + 0.456);
            QCOMPARE(clipped.containsPoint(p, Qt::OddEvenFill), whole.containsPoint(p, Qt::OddEvenFill));
        }
    }
    for (const QPointF &point : clipped)
        QVERIFY(clip.adjusted(-1e-6, -1e-6, 1e-6, 1e-6).contains(point));
}

void tst_WorkbenchPictureOutline::clippingKeepsTheLine()
{
    // Up through the view and back far to the right of it.
    const QVector<QPointF> contour{{-1000, 50}, {1000, 50}, {1000, 5000}, {500, 4000}, {-1000, 5000}};

    const QPolygonF clipped = traced(contour);

    QCOMPARE(clipped.at(0), QPointF(50, 110));
    QCOMPARE(clipped.at(1), QPointF(50, -10));
    for (int i = 2; i < clipped.size(); ++i)
        QVERIFY(!QRectF(0, 0, 100, 100).contains(clipped.at(i)));
}

// A long contour is read in chunks, of which those beyond the clip rectangle are skipped.
void tst_WorkbenchPictureOutline::chunksChangeNothingVisible()
{
    QVector<QPointF> ring;
    constexpr int count = 5000;
    for (int i = 0; i < count; ++i) {
        const double angle = 2 * M_PI * i / count;
        const double radius = 1 + 0.2 * std::sin(9 * angle);
        ring.append({50 + 300 * radius * std::cos(angle), 90 + 60 * radius * std::sin(angle)});
    }
    ring.append(ring.first());
    const QPolygonF whole = pixelsOf(ring);

    const QPolygonF clipped = traced(ring);

    QVERIFY(clipped.size() < 400);
    for (int x = 1; x < 100; x += 2) {
        for (int y = 1; y < 100; y += 2)
            QCOMPARE(clipped.containsPoint(QPointF(x, y), Qt::OddEvenFill),
                     whole.containsPoint(QPointF(x, y), Qt::OddEvenFill));
    }
}

QTEST_GUILESS_MAIN(tst_WorkbenchPictureOutline)
#include "tst_workbench_pictureoutline.moc"
