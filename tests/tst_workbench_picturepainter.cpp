#include "picturepainter.h"

#include "picturelegend.h"
#include "picturetesting.h"

#include <QPainter>
#include <QTest>

class tst_WorkbenchPicturePainter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ringsAreFilledAndHolesAreNot();
    void openLinesAreNotFilled();
    void imageHasItsPixelRatio();
    void tinyContoursAreVisible();
    void verticesAreMarkedWhenThereIsRoom();
    void currentObjectIsHighlighted_data();
    void currentObjectIsHighlighted();
    void neighboursOfTheCurrentObjectStayVisible();
    void legendStaysInItsCorners();
    void contoursAreSeenBehindTheLegend();
    void labelsAreDrawn();
    void colorsFitThePalette_data();
    void colorsFitThePalette();
};

// 200 by 100 pixels, a pixel for each metre; the lower left corner is the origin.
const PictureMap map{QPointF(50, 100), 1, QSizeF(200, 100), true};
const PictureColors colors = PictureColors::ofPaper();

PictureMap moved(const QPointF &center, double scale)
{
    return {center, scale, map.size, true};
}

/// Paints a picture, layer by layer.
class Picture
{
public:
    explicit Picture(const QVector<TestObject> &objects, const PictureMap &m = map)
        : data(resultOf(objects)),
          painter(data, m, colors, QFont())
    {
    }

    QImage contours(double pixelRatio = 1) const { return painter.contourImage(pixelRatio); }

    QImage current(int object) const
    {
        QImage image = contours();
        QPainter p(&image);
        painter.drawCurrentObject(p, object);
        return image;
    }

    QImage labels() const
    {
        QImage image = contours();
        QPainter p(&image);
        painter.drawLabels(p, -1);
        return image;
    }

    PictureData data;
    PicturePainter painter;
};

QColor at(const QImage &image, double x, double y)
{
    const QPointF pixel = map.toPixels(QPointF(x, y)) * image.devicePixelRatioF();
    return image.pixelColor(pixel.toPoint());
}

/// The rectangle of all pixels that differ.
QRect difference(const QImage &a, const QImage &b)
{
    QRect rect;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            if (a.pixel(x, y) != b.pixel(x, y))
                rect |= QRect(x, y, 1, 1);
        }
    }
    return rect;
}

void tst_WorkbenchPicturePainter::ringsAreFilledAndHolesAreNot()
{
    const QImage image = Picture({{QString(), {square(10, 10, 80), square(30, 30, 20)}}}).contours();

    QCOMPARE(at(image, 5, 5), colors.paper);
    QVERIFY(at(image, 20, 60) != colors.paper);
    QVERIFY(at(image, 20, 60).lightness() > 200);
    QCOMPARE(at(image, 40, 40), colors.paper);
    QVERIFY(at(image, 60, 10).lightness() < 150);
}

void tst_WorkbenchPicturePainter::openLinesAreNotFilled()
{
    const QImage image = Picture({{QString(), {{{10, 10}, {90, 10}, {90, 90}, {10, 90}}}}}).contours();

    QCOMPARE(at(image, 50, 50), colors.paper);
    QCOMPARE(at(image, 10, 50), colors.paper);
    QVERIFY(at(image, 90, 50) != colors.paper);
}

void tst_WorkbenchPicturePainter::imageHasItsPixelRatio()
{
    const QImage image = Picture({{QString(), {square(10, 10, 80)}}}).contours(2);

    QCOMPARE(image.size(), QSize(400, 200));
    QCOMPARE(image.devicePixelRatioF(), 2.0);
    QVERIFY(at(image, 60, 10).lightness() < 150);
    QCOMPARE(at(image, 8, 50), colors.paper);
    // A line of one pixel takes two of the image.
    int count = 0;
    for (int y = 0; y < 30; ++y)
        count += image.pixelColor(100, y).lightness() < 150 ? 1 : 0;
    QCOMPARE(count, 2);
}

void tst_WorkbenchPicturePainter::tinyContoursAreVisible()
{
    const QVector<QPointF> ring = square(50.4, 100.4, 0.1);
    const QVector<QPointF> small = square(20.2, 20.2, 3);

    const QImage image = Picture({{QString(), {ring}}, {QString(), {{{70.5, 70.5}}}}, {QString(), {small}}}).contours();

    QVERIFY(at(image, 50.9, 100.1) != colors.paper);
    QVERIFY(difference(image.copy(60, 20, 20, 20), Picture({}).contours()).width() >= 1);
    QVERIFY(difference(image.copy(15, 70, 15, 20), Picture({}).contours()).width() >= 3);
}

void tst_WorkbenchPicturePainter::verticesAreMarkedWhenThereIsRoom()
{
    const TestObject line{QString(), {{{40, 60}, {40, 80}, {40, 100}, {40, 120}}}};
    const auto heightOfInk = [&](double scale) {
        const QImage image = Picture({line}, moved({40, 90}, scale)).contours();
        int height = 0;
        for (int y = 0; y < image.height(); ++y)
            height += image.pixelColor(qRound(100 + 10 * scale), y) != colors.paper ? 1 : 0;
        return height;
    };

    QVERIFY(heightOfInk(1) >= 4);
    QVERIFY(heightOfInk(0.3) <= 2);
}

void tst_WorkbenchPicturePainter::currentObjectIsHighlighted_data()
{
    QTest::addColumn<QVector<QPointF>>("contour");
    QTest::addColumn<QRect>("where");

    QTest::newRow("ring") << square(10, 20, 50) << QRect(18, 38, 54, 54);
    QTest::newRow("line") << QVector<QPointF>{{10, 20}, {60, 20}} << QRect(18, 38, 5, 54);
    QTest::newRow("too small to be found") << QVector<QPointF>{{50, 100}} << QRect(88, 38, 25, 25);
    QTest::newRow("out of view") << square(500, 500, 10) << QRect();
    QTest::newRow("not drawable") << notDrawable << QRect();
}

void tst_WorkbenchPicturePainter::currentObjectIsHighlighted()
{
    QFETCH(QVector<QPointF>, contour);
    QFETCH(QRect, where);
    const Picture picture({{QString(), {contour}}});

    const QRect changed = difference(picture.current(-1), picture.current(0));

    QVERIFY(where.isNull() ? changed.isNull() : where.contains(changed));
    QVERIFY(changed.width() >= where.width() - 6);
    QVERIFY(changed.height() >= where.height() - 6);
}

void tst_WorkbenchPicturePainter::neighboursOfTheCurrentObjectStayVisible()
{
    const QVector<QPointF> building = square(20, 20, 20);
    const Picture alone({{QString(), {square(10, 10, 80)}}});
    const Picture both({{QString(), {square(10, 10, 80)}}, {QString(), {building}}});

    QVERIFY(!difference(alone.current(0), both.current(0)).isNull());
    QVERIFY(at(both.current(0), 20, 30) != at(both.current(0), 50, 50));
}

void tst_WorkbenchPicturePainter::legendStaysInItsCorners()
{
    const PictureMap large{QPointF(300, 300), 1, QSizeF(600, 600), true};
    const PictureMap panned{QPointF(900, 900), 1, QSizeF(600, 600), true};
    const TestObject frame{QString(), {{{-10000, -10000}, {10000, 10000}}}};

    const QRect drawn = difference(Picture({frame}, large).contours(), Picture({frame}, large).labels());
    const QRect later = difference(Picture({frame}, panned).contours(), Picture({frame}, panned).labels());

    QCOMPARE(drawn, later);
    QVERIFY(drawn.top() > 480);
    QVERIFY(drawn.left() < 40);
    QVERIFY(drawn.right() > 560);
    QVERIFY(difference(Picture({}, large).contours(), Picture({}, large).labels()).isNull());
}

void tst_WorkbenchPicturePainter::contoursAreSeenBehindTheLegend()
{
    const PictureMap large{QPointF(), 1, QSizeF(600, 300), true};
    const PictureLegend legend(large, QFont());
    const QRgb drawing = qRgb(10, 200, 30);
    QImage image(large.size.toSize(), QImage::Format_RGB32);
    image.fill(drawing);
    QPainter p(&image);

    legend.draw(p, colors);

    for (const QRectF &rect : {legend.axesRect(), legend.scaleBarRect()}) {
        const QImage part = image.copy(rect.toAlignedRect());
        int seen = 0;
        for (int y = 0; y < part.height(); ++y) {
            for (int x = 0; x < part.width(); ++x)
                seen += part.pixel(x, y) == drawing ? 1 : 0;
        }
        QVERIFY2(seen < part.width() * part.height(), "nothing is drawn");
        QVERIFY2(seen > part.width() * part.height() / 2, qPrintable(QString::number(seen)));
    }
}

void tst_WorkbenchPicturePainter::labelsAreDrawn()
{
    const PictureMap large{QPointF(300, 300), 1, QSizeF(600, 600), true};
    const Picture named({{QStringLiteral("ЗУ1"), {square(200, 200, 200)}}}, large);
    const Picture unnamed({{QString(), {square(200, 200, 200)}}}, large);

    const QRect name = difference(named.labels(), unnamed.labels());

    QVERIFY(QRect(270, 280, 60, 40).contains(name));
    QVERIFY(name.width() > 15);
    const QRect number = difference(unnamed.labels().copy(150, 150, 49, 49), unnamed.contours().copy(150, 150, 49, 49));
    QVERIFY(number.width() > 5);
}

void tst_WorkbenchPicturePainter::colorsFitThePalette_data()
{
    QTest::addColumn<QColor>("paper");
    QTest::addColumn<QColor>("ink");

    QTest::newRow("light") << QColor(Qt::white) << QColor(Qt::black);
    QTest::newRow("dark") << QColor(30, 30, 30) << QColor(230, 230, 230);
}

void tst_WorkbenchPicturePainter::colorsFitThePalette()
{
    QFETCH(QColor, paper);
    QFETCH(QColor, ink);
    QPalette palette;
    palette.setColor(QPalette::Base, paper);
    palette.setColor(QPalette::Text, ink);

    const PictureColors c = PictureColors::of(palette);

    QCOMPARE(c.paper, paper);
    QCOMPARE(c.name, ink);
    for (const QColor &color : {c.line, c.text, c.name, c.currentLine})
        QVERIFY(std::abs(color.lightness() - paper.lightness()) > 90);
}

QTEST_MAIN(tst_WorkbenchPicturePainter)
#include "tst_workbench_picturepainter.moc"
