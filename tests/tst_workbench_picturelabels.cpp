#include "picturelabels.h"

#include "picturetesting.h"

#include <QFontMetricsF>
#include <QRandomGenerator>
#include <QTest>

Q_DECLARE_METATYPE(TestObject)

class tst_WorkbenchPictureLabels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void spaceIsTakenOnce();
    void labelsDoNotOverlap_data();
    void labelsDoNotOverlap();
    void verticesAreNumberedAndObjectsNamed();
    void closingVertexIsNotNumberedTwice();
    void closingVertexWithAnotherNumberIsNumbered();
    void sharedCornerIsNumberedOnce();
    void nameIsInsideItsObject_data();
    void nameIsInsideItsObject();
    void numbersAreOutsideTheirRing();
    void crowdedVerticesAreNotNumbered();
    void smallObjectsHaveNoLabels();
    void currentObjectComesFirst();
    void longNameIsElided();
    void tooNarrowObjectIsNotNamed();
    void lineBreaksAreSpaces();
    void undrawableVertexHasNoLabel();
};

// A view of 800 by 600 pixels; its lower left corner is the origin.
const PictureMap map{QPointF(300, 400), 1, QSizeF(800, 600), true};

QVector<PictureLabel> placed(const QVector<TestObject> &objects, int currentObject = -1, const PictureMap &m = map)
{
    const PictureData data(resultOf(objects));
    PictureLabels labels(data, m, QFont());
    labels.place(currentObject);
    return labels.labels();
}

QStringList textsOf(const QVector<PictureLabel> &labels)
{
    QStringList texts;
    for (const PictureLabel &label : labels)
        texts.append(label.text);
    return texts;
}

/// Rows of square parcels. \a distance is between the corners of neighbours.
QVector<TestObject> mosaic(int rows, int columns, double size, double distance)
{
    QVector<TestObject> objects;
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column)
            objects.append({QStringLiteral("50:21:%1:%2").arg(row).arg(column),
                            {square(20 + row * distance, 20 + column * distance, size)}});
    }
    return objects;
}

void tst_WorkbenchPictureLabels::spaceIsTakenOnce()
{
    LabelSpace space;

    QVERIFY(space.take({10, 10, 200, 20}));
    QVERIFY(!space.take({150, 25, 10, 10}));
    QVERIFY(space.take({150, 31, 10, 10}));
    QVERIFY(space.take({-100, -100, 50, 50}));
    QVERIFY(!space.take({-60, -60, 50, 50}));
}

void tst_WorkbenchPictureLabels::labelsDoNotOverlap_data()
{
    QTest::addColumn<QVector<TestObject>>("objects");
    QTest::addColumn<int>("currentObject");

    QTest::newRow("roomy") << mosaic(4, 5, 120, 140) << -1;
    QTest::newRow("narrow") << mosaic(5, 7, 100, 100) << -1;
    QTest::newRow("narrow, with a current object") << mosaic(5, 7, 100, 100) << 17;
    QTest::newRow("on top of each other") << mosaic(3, 4, 300, 7) << 5;
    QVector<TestObject> points;
    QRandomGenerator random(3);
    for (int i = 0; i < 300; ++i)
        points.append({QStringLiteral("пикет %1").arg(i), {{{random.bounded(600.0), random.bounded(800.0)}}}});
    QTest::newRow("points") << points << 17;
}

void tst_WorkbenchPictureLabels::labelsDoNotOverlap()
{
    QFETCH(QVector<TestObject>, objects);
    QFETCH(int, currentObject);

    const QVector<PictureLabel> labels = placed(objects, currentObject);

    QVERIFY(labels.size() > 10);
    for (int i = 0; i < labels.size(); ++i) {
        QVERIFY(map.rect().contains(labels.at(i).rect));
        for (int k = 0; k < i; ++k)
            QVERIFY2(!labels.at(i).rect.intersects(labels.at(k).rect), qPrintable(labels.at(i).text));
    }
}

void tst_WorkbenchPictureLabels::verticesAreNumberedAndObjectsNamed()
{
    const QVector<PictureLabel> labels =
        placed({{QStringLiteral("ЗУ1"), {square(100, 100, 200)}}, {QStringLiteral("ВЛ"), {{{100, 500}, {300, 600}}}}});

    QStringList texts = textsOf(labels);
    texts.sort();
    QCOMPARE(texts,
             (QStringList{QStringLiteral("ВЛ"), QStringLiteral("ЗУ1"), QStringLiteral("н1"), QStringLiteral("н2"),
                          QStringLiteral("н3"), QStringLiteral("н4"), QStringLiteral("н5"), QStringLiteral("н6")}));
}

void tst_WorkbenchPictureLabels::closingVertexIsNotNumberedTwice()
{
    QCOMPARE(textsOf(placed({{QString(), {square(100, 100, 200)}}})),
             (QStringList{QStringLiteral("н1"), QStringLiteral("н2"), QStringLiteral("н3"), QStringLiteral("н4")}));
}

void tst_WorkbenchPictureLabels::closingVertexWithAnotherNumberIsNumbered()
{
    ImportResult result;
    for (const QPointF &xy : square(100, 100, 200))
        result.appendVertex(xy, QByteArray::number(result.vertices.size() + 1) + '\0');
    result.contours.append({0, 5, true});
    result.objects.append({QString(), 0, 1, 0, 5});
    const PictureData data(result);
    PictureLabels labels(data, map, QFont());

    labels.place(-1);

    QCOMPARE(textsOf(labels.labels()).join(QLatin1Char(' ')), QStringLiteral("1 2 3 4 5"));
}

void tst_WorkbenchPictureLabels::sharedCornerIsNumberedOnce()
{
    const QPointF corner(300, 300);
    const QPointF ends[] = {{300, 500}, {500, 300}, {100, 100}};
    ImportResult result;
    for (const QPointF &end : ends) {
        ResultContour contour;
        contour.firstVertex = result.vertices.size();
        contour.vertexCount = 2;
        result.appendVertex(corner, QByteArray("5") + '\0');
        result.appendVertex(end, QByteArray("6") + '\0');
        result.contours.append(contour);
    }
    result.objects.append({QString(), 0, 3, 0, 6});
    const PictureData data(result);
    PictureLabels labels(data, map, QFont());

    labels.place(-1);

    QCOMPARE(textsOf(labels.labels()),
             (QStringList{QStringLiteral("5"), QStringLiteral("6"), QStringLiteral("6"), QStringLiteral("6")}));
}

void tst_WorkbenchPictureLabels::nameIsInsideItsObject_data()
{
    QTest::addColumn<QVector<QVector<QPointF>>>("rings");

    const QVector<QPointF> uShape{{100, 100}, {400, 100}, {400, 200}, {200, 200}, {200, 500},
                                  {400, 500}, {400, 600}, {100, 600}, {100, 100}};
    QTest::newRow("U") << QVector<QVector<QPointF>>{uShape};
    QTest::newRow("hole in the middle") << QVector<QVector<QPointF>>{square(100, 100, 400), square(200, 200, 200)};
    QTest::newRow("mostly out of view") << QVector<QVector<QPointF>>{square(450, 650, 3000)};
    QTest::newRow("around the view") << QVector<QVector<QPointF>>{square(-9000, -9000, 20000)};
}

void tst_WorkbenchPictureLabels::nameIsInsideItsObject()
{
    QFETCH(QVector<QVector<QPointF>>, rings);
    const PictureData data(resultOf({{QStringLiteral("ЗУ"), rings}}));

    const PictureLabel label = placed({{QStringLiteral("ЗУ"), rings}}).value(0);

    QCOMPARE(label.text, QStringLiteral("ЗУ"));
    QVERIFY(label.isName);
    for (const QPointF &corner : {label.rect.topLeft(), label.rect.bottomRight()})
        QCOMPARE(data.objectAt(map.toMetres(corner), 0), 0);
}

void tst_WorkbenchPictureLabels::numbersAreOutsideTheirRing()
{
    const QRectF ring = QRectF(map.toPixels(QPointF(100, 100)), map.toPixels(QPointF(300, 300))).normalized();

    for (const PictureLabel &label : placed({{QString(), {square(100, 100, 200)}}})) {
        const QPointF distance = label.rect.center() - ring.center();
        QVERIFY2(std::abs(distance.x()) > 100 && std::abs(distance.y()) > 100, qUtf8Printable(label.text));
    }
}

void tst_WorkbenchPictureLabels::crowdedVerticesAreNotNumbered()
{
    const QVector<PictureLabel> labels = placed(mosaic(10, 13, 55, 55), 60);

    QCOMPARE(std::count_if(labels.begin(), labels.end(), [](const PictureLabel &label) { return label.isCurrent; }), 5);
    for (const PictureLabel &label : labels)
        QVERIFY(label.isName || label.isCurrent);
}

void tst_WorkbenchPictureLabels::smallObjectsHaveNoLabels()
{
    QCOMPARE(placed({{QStringLiteral("З"), {square(100, 100, 10)}}}).size(), 0);
    QVERIFY(placed({{QStringLiteral("З"), {square(100, 100, 10)}}}, 0).size() > 0);
}

void tst_WorkbenchPictureLabels::currentObjectComesFirst()
{
    const QVector<PictureLabel> labels = placed(mosaic(5, 7, 100, 100), 17);

    QVERIFY(labels.first().isName);
    QCOMPARE(labels.first().text, QStringLiteral("50:21:2:3"));
    int currentCount = 0;
    while (labels.at(currentCount).isCurrent)
        ++currentCount;
    QCOMPARE(currentCount, 5);
    for (int i = currentCount; i < labels.size(); ++i)
        QVERIFY(!labels.at(i).isCurrent);
}

void tst_WorkbenchPictureLabels::longNameIsElided()
{
    const QString name = QStringLiteral("50:21:0010203:") + QString(500, QLatin1Char('7'));

    const QVector<PictureLabel> labels = placed({{name, {square(10, 10, 500)}}});

    QVERIFY(labels.first().isName);
    QVERIFY(labels.first().text.startsWith(QStringLiteral("50:21")));
    QVERIFY(labels.first().text.contains(QChar(0x2026)));
    QVERIFY(labels.first().rect.width() <= 265);
    QVERIFY(labels.first().rect.width() > 200);
}

void tst_WorkbenchPictureLabels::tooNarrowObjectIsNotNamed()
{
    const QString name = QStringLiteral("50:21:0010203:1234567890");

    for (const PictureLabel &label : placed({{name, {square(100, 100, 60)}}}))
        QVERIFY(!label.isName);
}

void tst_WorkbenchPictureLabels::lineBreaksAreSpaces()
{
    QCOMPARE(placed({{QStringLiteral("ЗУ\n\t1"), {square(10, 10, 500)}}}).first().text, QStringLiteral("ЗУ 1"));
}

void tst_WorkbenchPictureLabels::undrawableVertexHasNoLabel()
{
    QVector<QPointF> contour{{100, 100}, {300, 100}};
    contour.insert(1, notDrawable.first());

    QStringList texts = textsOf(placed({{QStringLiteral("ВЛ"), {contour}}, {QStringLiteral("NaN"), {notDrawable}}}));

    texts.sort();
    QCOMPARE(texts, (QStringList{QStringLiteral("ВЛ"), QStringLiteral("н1"), QStringLiteral("н3")}));
}

QTEST_MAIN(tst_WorkbenchPictureLabels)
#include "tst_workbench_picturelabels.moc"
