#include "pictureraster.h"

#include "picturetesting.h"

#include <QTest>
#include <QtMath>

class tst_WorkbenchPictureRaster : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void holesAreNotFilled();
    void coverageOfLineIsItsArea_data();
    void coverageOfLineIsItsArea();
    void lineCoversItsPixels();
    void coarseLineHasNoGaps();
    void discIsRound();
    void colorIsBlended();
    void pixelsOutsideTheImageAreIgnored_data();
    void pixelsOutsideTheImageAreIgnored();
};

// 100 by 100 pixels, a pixel for each metre; X is up, so the map turns and flips the pixels.
const PictureMap map{QPointF(50, 50), 1, QSizeF(100, 100), true};

/// An image and an outline in its pixels.
class Canvas
{
public:
    explicit Canvas(const QVector<QVector<QPointF>> &contours)
        : m_data(resultOf({{QString(), metres(contours)}})),
          m_outline(m_data, map, QRectF(-50, -50, 200, 200))
    {
        m_outline.setTolerance(0);
        for (const ResultContour &contour : m_data.result().contours)
            m_outline.append(contour);
        image.fill(Qt::white);
    }

    const PictureOutline &outline() const { return m_outline; }

    /// 0 for paper, 1 for black.
    double ink(int x, int y) const { return 1 - qGray(image.pixel(x, y)) / 255.0; }

    double allInk() const
    {
        double sum = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                sum += ink(x, y);
        }
        return sum;
    }

    QImage image{100, 100, QImage::Format_RGB32};

private:
    static QVector<QVector<QPointF>> metres(QVector<QVector<QPointF>> contours)
    {
        for (QVector<QPointF> &contour : contours) {
            for (QPointF &point : contour)
                point = map.toMetres(point);
        }
        return contours;
    }

    PictureData m_data;
    PictureOutline m_outline;
};

void tst_WorkbenchPictureRaster::holesAreNotFilled()
{
    Canvas canvas({square(10, 20, 60), square(30, 40, 10)});

    PictureRaster(canvas.image).fill(canvas.outline(), Qt::black);

    QCOMPARE(canvas.allInk(), 60.0 * 60 - 10 * 10);
    QCOMPARE(canvas.ink(10, 20), 1.0);
    QCOMPARE(canvas.ink(69, 79), 1.0);
    QCOMPARE(canvas.ink(70, 79), 0.0);
    QCOMPARE(canvas.ink(35, 45), 0.0);
}

void tst_WorkbenchPictureRaster::coverageOfLineIsItsArea_data()
{
    QTest::addColumn<QPointF>("end");
    QTest::addColumn<double>("width");

    QTest::newRow("flat") << QPointF(80.5, 20.5) << 1.0;
    QTest::newRow("steep") << QPointF(20.5, 80.5) << 1.0;
    QTest::newRow("diagonal") << QPointF(70, 70) << 1.0;
    QTest::newRow("slanted") << QPointF(70, 37) << 1.0;
    QTest::newRow("backwards") << QPointF(3, 9) << 1.0;
    QTest::newRow("wide") << QPointF(70, 37) << 2.0;
    QTest::newRow("short") << QPointF(20.9, 20.7) << 1.0;
}

void tst_WorkbenchPictureRaster::coverageOfLineIsItsArea()
{
    QFETCH(QPointF, end);
    QFETCH(double, width);
    const QPointF begin(20.5, 20.5);
    Canvas canvas({{begin, end}});

    PictureRaster(canvas.image).stroke(canvas.outline(), width, Qt::black, 1);

    const double area = std::hypot(end.x() - begin.x(), end.y() - begin.y()) * width;
    QVERIFY2(std::abs(canvas.allInk() - area) < 0.04 * area + 0.05, qPrintable(QString::number(canvas.allInk())));
}

void tst_WorkbenchPictureRaster::lineCoversItsPixels()
{
    Canvas canvas({{QPointF(10, 20.5), QPointF(40, 20.5)}, {QPointF(60, 10), QPointF(60, 40)}});

    PictureRaster(canvas.image).stroke(canvas.outline(), 1, Qt::black, 1);

    QCOMPARE(canvas.ink(10, 20), 1.0);
    QCOMPARE(canvas.ink(39, 20), 1.0);
    QCOMPARE(canvas.ink(40, 20), 0.0);
    QCOMPARE(canvas.ink(25, 19), 0.0);
    QCOMPARE(qRound(canvas.ink(59, 25) * 10), 5);
    QCOMPARE(qRound(canvas.ink(60, 25) * 10), 5);
}

void tst_WorkbenchPictureRaster::coarseLineHasNoGaps()
{
    Canvas canvas({{QPointF(10.2, 20.2), QPointF(40.9, 31.7)}});

    PictureRaster(canvas.image).strokeCoarsely(canvas.outline(), Qt::black, 1);

    for (int x = 10; x <= 40; ++x) {
        double ink = 0;
        for (int y = 19; y <= 33; ++y)
            ink += canvas.ink(x, y);
        QVERIFY2(ink >= 1, qPrintable(QString::number(x)));
    }
    QVERIFY(canvas.allInk() < 34);
}

void tst_WorkbenchPictureRaster::discIsRound()
{
    Canvas canvas({});

    PictureRaster(canvas.image).disc(QPointF(50, 50), 10, Qt::black);

    QVERIFY(std::abs(canvas.allInk() - M_PI * 100) < 3);
    QCOMPARE(canvas.ink(41, 49), 1.0);
    QCOMPARE(canvas.ink(42, 42), canvas.ink(57, 57));
    QCOMPARE(canvas.ink(38, 50), 0.0);
}

void tst_WorkbenchPictureRaster::colorIsBlended()
{
    Canvas canvas({square(10, 10, 10)});

    PictureRaster(canvas.image).fill(canvas.outline(), QColor(200, 100, 0, 128));

    const QColor blended = canvas.image.pixelColor(15, 15);
    QVERIFY(std::abs(blended.red() - 227) <= 1);
    QVERIFY(std::abs(blended.green() - 177) <= 1);
    QVERIFY(std::abs(blended.blue() - 127) <= 1);
}

void tst_WorkbenchPictureRaster::pixelsOutsideTheImageAreIgnored_data()
{
    QTest::addColumn<QVector<QPointF>>("contour");

    QTest::newRow("left") << square(-40, 20, 30);
    QTest::newRow("right") << square(110, 20, 30);
    QTest::newRow("above") << square(20, -40, 30);
    QTest::newRow("below") << square(20, 110, 30);
}

void tst_WorkbenchPictureRaster::pixelsOutsideTheImageAreIgnored()
{
    QFETCH(QVector<QPointF>, contour);
    Canvas canvas({contour});
    PictureRaster raster(canvas.image);

    raster.fill(canvas.outline(), Qt::black);
    raster.stroke(canvas.outline(), 2, Qt::black, 1);
    raster.strokeCoarsely(canvas.outline(), Qt::black, 1);
    for (const QPointF &point : contour) {
        raster.disc(point, 3, Qt::black);
        raster.dot(point, Qt::black, 1);
    }

    QCOMPARE(canvas.allInk(), 0.0);
}

QTEST_GUILESS_MAIN(tst_WorkbenchPictureRaster)
#include "tst_workbench_pictureraster.moc"
