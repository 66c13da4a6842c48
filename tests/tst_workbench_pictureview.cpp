#include "pictureview.h"

#include "picturelegend.h"
#include "picturetesting.h"
#include "pointertesting.h"

#include <QGraphicsScene>
#include <QSignalSpy>
#include <QTest>

#include <cmath>

class tst_WorkbenchPictureView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void clickSelectsTheObjectInThePicture_data();
    void clickSelectsTheObjectInThePicture();
    void pointerIsReportedInMetres();
    void outdatedPositionIsWithdrawn();
    void wheelKeepsThePointUnderThePointer_data();
    void wheelKeepsThePointUnderThePointer();
    void zoomIsLimited();
    void dragPansAndDoesNotSelect();
    void everyChangeIsPainted();
    void arrowKeysPan();
    void fitShowsAll_data();
    void fitShowsAll();
    void keysAndDoubleClickFit();
    void fittedPictureFollowsTheSize();
    void axesAreSwitched();
    void settingTheCurrentObjectEmitsNothing();
    void invisibleObjectIsMovedToTheMiddle_data();
    void invisibleObjectIsMovedToTheMiddle();
    void visibleObjectMovesNothing();
    void newResultHasNoCurrentObject();
    void oddCoordinatesArePainted_data();
    void oddCoordinatesArePainted();
    void centimetresAreExactAtLargeCoordinates();

private:
    QWidget *viewport() const { return m_view->viewport(); }
    QPoint pixel(const QPointF &xy) const { return m_view->map().toPixels(xy).toPoint(); }
    bool isInView(const QPointF &xy) const { return m_view->map().rect().contains(m_view->map().toPixels(xy)); }
    void wheel(const QPointF &position, int steps) const { turnWheel(viewport(), position, steps); }
    void drag(const QPoint &from, const QPoint &to) const { dragPointer(viewport(), from, to); }

    QScopedPointer<PictureView> m_view;
};

enum Object { Parcel, Road, Far };

const QVector<TestObject> plan{
    {QStringLiteral("участок"), {square(1000, 2000, 100), square(1060, 2060, 30)}},
    {QStringLiteral("дорога"), {{{1150, 2000}, {1150, 2300}}}},
    {QStringLiteral("далеко"), {square(1500, 2600, 100)}},
};

void tst_WorkbenchPictureView::init()
{
    m_view.reset(new PictureView);
    m_view->resize(900, 700);
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view.data()));
    m_view->setResult(resultOf(plan));
}

void tst_WorkbenchPictureView::cleanup()
{
    m_view.reset();
}

void tst_WorkbenchPictureView::clickSelectsTheObjectInThePicture_data()
{
    QTest::addColumn<QPointF>("xy");
    QTest::addColumn<int>("object");

    QTest::newRow("ring") << QPointF(1030, 2030) << int(Parcel);
    QTest::newRow("hole") << QPointF(1075, 2075) << -1;
    QTest::newRow("line") << QPointF(1150, 2200) << int(Road);
    QTest::newRow("nothing") << QPointF(1300, 2300) << -1;
}

void tst_WorkbenchPictureView::clickSelectsTheObjectInThePicture()
{
    QFETCH(QPointF, xy);
    QFETCH(int, object);
    m_view->setCurrentObject(Far);
    const QSignalSpy clicks(m_view.data(), &PictureView::objectClicked);

    QTest::mouseClick(viewport(), Qt::LeftButton, Qt::NoModifier, pixel(xy));

    QCOMPARE(clicks.count(), 1);
    QCOMPARE(clicks.first().first().toInt(), object);
    QCOMPARE(m_view->currentObject(), object);
}

void tst_WorkbenchPictureView::pointerIsReportedInMetres()
{
    const QSignalSpy moves(m_view.data(), &PictureView::pointerMoved);

    QMouseEvent event(QEvent::MouseMove, pixel({1100, 2000}), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(viewport(), &event);

    QCOMPARE(moves.count(), 1);
    const QPointF xy = moves.first().first().toPointF();
    QVERIFY(std::abs(xy.x() - 1100) < 1 / m_view->map().scale);
    QVERIFY(std::abs(xy.y() - 2000) < 1 / m_view->map().scale);
    m_view->setResult(ImportResult());
    QCoreApplication::sendEvent(viewport(), &event);
    QCOMPARE(moves.count(), 1);
}

void tst_WorkbenchPictureView::outdatedPositionIsWithdrawn()
{
    const QSignalSpy withdrawals(m_view.data(), &PictureView::pointerLeft);

    QEvent event(QEvent::Leave);
    QCoreApplication::sendEvent(m_view.data(), &event);
    QCOMPARE(withdrawals.count(), 1);
    m_view->setResult(ImportResult());
    QCOMPARE(withdrawals.count(), 2);
}

void tst_WorkbenchPictureView::wheelKeepsThePointUnderThePointer_data()
{
    QTest::addColumn<bool>("hasSurveyAxes");
    QTest::addColumn<int>("steps");

    QTest::newRow("in") << true << 3;
    QTest::newRow("out") << true << -3;
    QTest::newRow("in, X to the right") << false << 3;
}

void tst_WorkbenchPictureView::wheelKeepsThePointUnderThePointer()
{
    QFETCH(bool, hasSurveyAxes);
    QFETCH(int, steps);
    m_view->setHasSurveyAxes(hasSurveyAxes);
    const QPointF position(200, 150);
    const QPointF xy = m_view->map().toMetres(position);
    const double scale = m_view->map().scale;

    wheel(position, steps);

    QCOMPARE(m_view->map().scale > scale, steps > 0);
    QVERIFY(std::abs(m_view->map().scale / scale - std::pow(1.25, steps)) < 1e-9);
    const QPointF shift = m_view->map().toPixels(xy) - position;
    QVERIFY(std::abs(shift.x()) < 1e-6 && std::abs(shift.y()) < 1e-6);
}

void tst_WorkbenchPictureView::zoomIsLimited()
{
    for (int i = 0; i < 300; ++i)
        wheel({300, 300}, 1);
    QCOMPARE(m_view->map().scale, 1e5);
    m_view->grab();

    m_view->fit();
    const double fitted = m_view->map().scale;
    for (int i = 0; i < 300; ++i)
        wheel({300, 300}, -1);
    QCOMPARE(m_view->map().scale, fitted / 50);
    m_view->grab();
}

void tst_WorkbenchPictureView::dragPansAndDoesNotSelect()
{
    const QSignalSpy clicks(m_view.data(), &PictureView::objectClicked);
    const QPointF xy(1030, 2030);
    const QPoint begin = pixel(xy);
    const double scale = m_view->map().scale;

    drag(begin, begin + QPoint(120, -70));

    QCOMPARE(pixel(xy), begin + QPoint(120, -70));
    QCOMPARE(m_view->map().scale, scale);
    QCOMPARE(clicks.count(), 0);
    QCOMPARE(m_view->currentObject(), -1);
}

void tst_WorkbenchPictureView::everyChangeIsPainted()
{
    const auto colorAt = [this](const QPointF &xy) { return viewport()->grab().toImage().pixelColor(pixel(xy)); };
    const QPointF inside(1030, 2030);
    const QColor filled = colorAt(inside);
    const QPoint old = pixel(inside);
    QVERIFY(filled != colorAt({1300, 2300}));

    drag(old, old + QPoint(200, -100));
    QCOMPARE(colorAt(inside), filled);
    wheel(pixel(inside), 3);
    QCOMPARE(colorAt(inside), filled);
    m_view->fit();
    QCOMPARE(colorAt(inside), filled);
    m_view->setHasSurveyAxes(false);
    QCOMPARE(colorAt(inside), filled);
    m_view->setCurrentObject(Parcel);
    QVERIFY(colorAt(inside) != filled);
    QPalette dark = m_view->palette();
    dark.setColor(QPalette::Base, Qt::black);
    m_view->setPalette(dark);
    QVERIFY(colorAt({1300, 2300}) == QColor(Qt::black));
}

void tst_WorkbenchPictureView::arrowKeysPan()
{
    const QPointF xy(1030, 2030);
    const QPoint begin = pixel(xy);

    QTest::keyClick(m_view.data(), Qt::Key_Right);
    QTest::keyClick(m_view.data(), Qt::Key_Up);

    QVERIFY(pixel(xy).x() < begin.x());
    QVERIFY(pixel(xy).y() > begin.y());
}

void tst_WorkbenchPictureView::fitShowsAll_data()
{
    QTest::addColumn<bool>("hasSurveyAxes");
    QTest::addColumn<QVector<QPointF>>("contour");

    for (const bool hasSurveyAxes : {true, false}) {
        const char *const axes = hasSurveyAxes ? "X up" : "X right";
        QTest::addRow("long X, %s", axes) << hasSurveyAxes << QVector<QPointF>{{0, 0}, {1e6, 10}};
        QTest::addRow("long Y, %s", axes) << hasSurveyAxes << QVector<QPointF>{{0, 0}, {10, 1e6}};
        QTest::addRow("small, %s", axes) << hasSurveyAxes << QVector<QPointF>{{5, 5}, {5.02, 5.01}};
    }
}

void tst_WorkbenchPictureView::fitShowsAll()
{
    QFETCH(bool, hasSurveyAxes);
    QFETCH(QVector<QPointF>, contour);
    m_view->setHasSurveyAxes(hasSurveyAxes);

    m_view->setResult(resultOf({{QString(), {contour}}}));

    const QPointF extent = m_view->map().toPixels(contour.last()) - m_view->map().toPixels(contour.first());
    QVERIFY(isInView(contour.first()) && isInView(contour.last()));
    const double legendTop = PictureLegend(m_view->map(), m_view->font()).axesRect().top();
    QVERIFY(pixel(contour.first()).y() < legendTop && pixel(contour.last()).y() < legendTop);
    QVERIFY(std::abs(extent.x()) > viewport()->width() / 2.0 || std::abs(extent.y()) > viewport()->height() / 2.0);
}

void tst_WorkbenchPictureView::keysAndDoubleClickFit()
{
    const PictureMap fitted = m_view->map();
    const auto isFitted = [&] { return m_view->map().scale == fitted.scale && m_view->map().center == fitted.center; };

    for (const Qt::Key key : {Qt::Key_Home, Qt::Key_F}) {
        wheel({100, 100}, 5);
        QVERIFY(!isFitted());
        QTest::keyClick(m_view.data(), key);
        QVERIFY(isFitted());
    }
    wheel({100, 100}, 5);
    QTest::mouseDClick(viewport(), Qt::LeftButton);
    QVERIFY(isFitted());
}

void tst_WorkbenchPictureView::fittedPictureFollowsTheSize()
{
    const double scale = m_view->map().scale;
    m_view->resize(450, 350);
    QVERIFY(m_view->map().scale < scale * 0.6);

    wheel({100, 100}, 2);
    const double zoomed = m_view->map().scale;
    m_view->resize(900, 700);
    QCOMPARE(m_view->map().scale, zoomed);
}

void tst_WorkbenchPictureView::axesAreSwitched()
{
    const QPointF xy(1000, 2000);
    QVERIFY(m_view->hasSurveyAxes());
    QVERIFY(pixel({1100, 2000}).y() < pixel(xy).y());
    QCOMPARE(pixel({1100, 2000}).x(), pixel(xy).x());
    QVERIFY(pixel({1000, 2100}).x() > pixel(xy).x());

    m_view->setHasSurveyAxes(false);

    QVERIFY(pixel({1100, 2000}).x() > pixel(xy).x());
    QCOMPARE(pixel({1100, 2000}).y(), pixel(xy).y());
    QVERIFY(pixel({1000, 2100}).y() < pixel(xy).y());
    QVERIFY(isInView({1600, 2700}));
}

void tst_WorkbenchPictureView::settingTheCurrentObjectEmitsNothing()
{
    const QSignalSpy clicks(m_view.data(), &PictureView::objectClicked);

    m_view->setCurrentObject(Road);
    QCOMPARE(m_view->currentObject(), int(Road));
    m_view->setCurrentObject(3);
    QCOMPARE(m_view->currentObject(), -1);

    QCOMPARE(clicks.count(), 0);
}

void tst_WorkbenchPictureView::invisibleObjectIsMovedToTheMiddle_data()
{
    QTest::addColumn<int>("steps"); // of zooming in at a place where it is not
    QTest::addColumn<bool>("keepsScale");

    QTest::newRow("at the same scale") << 6 << true;
    QTest::newRow("too large") << 30 << false;
}

void tst_WorkbenchPictureView::invisibleObjectIsMovedToTheMiddle()
{
    QFETCH(int, steps);
    wheel(pixel({1000, 2000}), steps);
    QVERIFY(!isInView({1550, 2650}));
    const double scale = m_view->map().scale;

    m_view->setCurrentObject(Far);

    const QPointF middle = m_view->map().toPixels(QPointF(1550, 2650));
    QVERIFY((middle - m_view->map().rect().center()).manhattanLength() < 1e-6);
    QTEST(m_view->map().scale == scale, "keepsScale");
    QVERIFY(isInView({1500, 2600}) && isInView({1600, 2700}));
}

void tst_WorkbenchPictureView::visibleObjectMovesNothing()
{
    wheel({100, 100}, -5);
    const PictureMap before = m_view->map();

    m_view->setCurrentObject(Far);

    QCOMPARE(m_view->map().center, before.center);
    QCOMPARE(m_view->map().scale, before.scale);
}

void tst_WorkbenchPictureView::newResultHasNoCurrentObject()
{
    m_view->setCurrentObject(Far);

    m_view->setResult(resultOf({{QString(), {square(0, 0, 10)}}}));

    QCOMPARE(m_view->currentObject(), -1);
    QVERIFY(isInView({0, 0}));
    QVERIFY(isInView({10, 10}));
}

void tst_WorkbenchPictureView::oddCoordinatesArePainted_data()
{
    QTest::addColumn<QVector<QPointF>>("contour");

    QTest::newRow("nothing") << QVector<QPointF>();
    QTest::newRow("not drawable") << notDrawable;
    QTest::newRow("one vertex") << QVector<QPointF>{{7, 8}};
    QTest::newRow("equal vertices") << QVector<QPointF>(50, QPointF(7, 8));
    QTest::newRow("1e15") << square(1e15, -1e15, 1e3);
    QTest::newRow("as far as possible") << QVector<QPointF>{{-1e18, -1e18}, {1e18, 1e18}, {1e18, -1e18}};
    QTest::newRow("tiny and far") << square(1e7, 1e7, 1e-9);
    QTest::newRow("partly NaN") << (square(0, 0, 10) + notDrawable);
}

void tst_WorkbenchPictureView::oddCoordinatesArePainted()
{
    QFETCH(QVector<QPointF>, contour);
    m_view->setResult(resultOf({{QString(500, QLatin1Char('x')), {contour}}, {QString(), {}}}));

    for (const int steps : {0, 5, 60, 200, -400}) {
        wheel({450, 350}, steps);
        m_view->setCurrentObject(steps % 2 == 0 ? 0 : 1);
        QVERIFY(!m_view->grab().isNull());
        QTest::mouseClick(viewport(), Qt::LeftButton, Qt::NoModifier, {450, 350});
        QVERIFY(std::isfinite(m_view->map().scale) && m_view->map().scale > 0);
        QVERIFY(isDrawable(m_view->map().center));
    }
}

void tst_WorkbenchPictureView::centimetresAreExactAtLargeCoordinates()
{
    const QPointF a(1e7, 2e7);
    const QPointF b(1e7 + 0.01, 2e7 + 0.02);

    m_view->setResult(resultOf({{QString(), {{a, b}}}}));

    const QPointF extent = (m_view->map().toPixels(b) - m_view->map().toPixels(a)) / m_view->map().scale;
    QVERIFY(std::abs(extent.x() - 0.02) < 1e-8);
    QVERIFY(std::abs(extent.y() + 0.01) < 1e-8);
    QVERIFY(m_view->map().scale > 1e4);
}

QTEST_MAIN(tst_WorkbenchPictureView)
#include "tst_workbench_pictureview.moc"
