#include "pictureview.h"

#include "picturelegend.h"
#include "picturepainter.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

namespace {

constexpr double clickTolerance = 4;  // pixels
constexpr double fittedPart = 0.9;    // of the view
constexpr double maxLegendPart = 0.2; // of the height of the view, that is kept free of contours
constexpr double shownPart = 0.3;     // of the view, for an object that would be too small
constexpr double minShownSize = 12;   // pixels
constexpr double wheelStep = 120;     // eighths of a degree
constexpr double zoomStep = 1.25;
constexpr int arrowStep = 60;           // pixels
constexpr double maxScale = 1e5;        // pixels per metre: a millimetre is 100 pixels
constexpr double minFittedShare = 0.02; // zooming out stops at this share of the scale that fits

} // namespace

PictureView::PictureView(QWidget *parent) : QGraphicsView(parent)
{
    setScene(new QGraphicsScene(this));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setViewportUpdateMode(FullViewportUpdate);
    setMouseTracking(true);
    viewport()->setCursor(Qt::CrossCursor);
    m_map.size = viewport()->size();
}

void PictureView::setResult(const ImportResult &result)
{
    m_data = PictureData(result);
    m_currentObject = -1;
    m_isPressed = false;
    fit();
    Q_EMIT pointerLeft();
}

void PictureView::setCurrentObject(int object)
{
    if (object < 0 || object >= m_data.result().objects.size())
        object = -1;
    if (object == m_currentObject)
        return;
    m_currentObject = object;
    if (object >= 0)
        showObject(object);
    viewport()->update();
}

void PictureView::showObject(int object)
{
    const PictureBox box = m_data.objectBox(object);
    if (box.isEmpty() || box.touches(m_map.toMetres(m_map.rect())))
        return;
    const QRectF pixels = m_map.toPixels(box);
    const bool isSmall = std::max(pixels.width(), pixels.height()) < minShownSize;
    const bool isLarge = pixels.width() > m_map.size.width() || pixels.height() > m_map.size.height();
    m_isFitted = false;
    if (isSmall || isLarge)
        m_map.fit(box, isLarge ? fittedPart : shownPart);
    else
        m_map.center = box.center();
    repaintContours();
}

void PictureView::setHasSurveyAxes(bool hasSurveyAxes)
{
    if (hasSurveyAxes == m_map.hasSurveyAxes)
        return;
    m_map.hasSurveyAxes = hasSurveyAxes;
    if (m_isFitted)
        fit();
    else
        repaintContours();
}

void PictureView::fit()
{
    m_isFitted = true;
    m_map = fittedMap();
    repaintContours();
}

// Above the legend, which would cover vertices.
PictureMap PictureView::fittedMap() const
{
    PictureMap map = m_map;
    const double legendHeight = map.size.height() - PictureLegend(map, font()).axesRect().top();
    map.fitAbove(std::min(legendHeight, map.size.height() * maxLegendPart), m_data.box(), fittedPart);
    return map;
}

void PictureView::repaintContours()
{
    m_contours = QImage();
    viewport()->update();
}

void PictureView::pan(const QPointF &pixels)
{
    m_isFitted = false;
    m_map.moveTo(m_map.toMetres(QPointF(0, 0)), pixels);
    repaintContours();
}

void PictureView::zoom(double factor, const QPointF &pixels)
{
    const QPointF xy = m_map.toMetres(pixels);
    const double minScale = std::min({m_map.scale, fittedMap().scale * minFittedShare, maxScale});
    m_map.scale = std::clamp(m_map.scale * factor, minScale, std::max(maxScale, m_map.scale));
    m_map.moveTo(xy, pixels);
    m_isFitted = false;
    repaintContours();
}

void PictureView::click(const QPointF &pixels)
{
    const int object = m_data.objectAt(m_map.toMetres(pixels), clickTolerance / m_map.scale);
    m_currentObject = object;
    viewport()->update();
    Q_EMIT objectClicked(object);
}

void PictureView::emitPointerMoved(const QPointF &pixels)
{
    if (!m_data.box().isEmpty())
        Q_EMIT pointerMoved(m_map.toMetres(pixels));
}

void PictureView::drawBackground(QPainter *painter, const QRectF & /*rect*/)
{
    const PicturePainter picture(m_data, m_map, PictureColors::of(palette()), font());
    if (m_contours.isNull() || m_contours.devicePixelRatioF() != devicePixelRatioF())
        m_contours = picture.contourImage(devicePixelRatioF());
    painter->resetTransform();
    painter->drawImage(0, 0, m_contours);
    picture.drawCurrentObject(*painter, m_currentObject);
    picture.drawLabels(*painter, m_currentObject);
}

void PictureView::mousePressEvent(QMouseEvent *event)
{
    m_isPressed = event->button() == Qt::LeftButton;
    m_isDragged = false;
    m_pressed = event->pos();
}

void PictureView::mouseMoveEvent(QMouseEvent *event)
{
    const QPoint distance = event->pos() - m_pressed;
    if (m_isPressed && (m_isDragged || distance.manhattanLength() >= QApplication::startDragDistance())) {
        m_isDragged = true;
        m_pressed = event->pos();
        viewport()->setCursor(Qt::ClosedHandCursor);
        pan(distance);
    }
    emitPointerMoved(event->pos());
}

void PictureView::mouseReleaseEvent(QMouseEvent *event)
{
    const bool isClick = m_isPressed && !m_isDragged && event->button() == Qt::LeftButton;
    m_isPressed = false;
    viewport()->setCursor(Qt::CrossCursor);
    if (isClick)
        click(event->pos());
}

void PictureView::mouseDoubleClickEvent(QMouseEvent *event)
{
    m_isPressed = false;
    if (event->button() == Qt::LeftButton)
        fit();
}

void PictureView::wheelEvent(QWheelEvent *event)
{
    zoom(std::pow(zoomStep, event->angleDelta().y() / wheelStep), event->position());
    emitPointerMoved(event->position());
    event->accept();
}

void PictureView::leaveEvent(QEvent *event)
{
    QGraphicsView::leaveEvent(event);
    Q_EMIT pointerLeft();
}

void PictureView::keyPressEvent(QKeyEvent *event)
{
    const QPointF middle = m_map.rect().center();
    switch (event->key()) {
    case Qt::Key_Home:
    case Qt::Key_F:
        return fit();
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        return zoom(zoomStep, middle);
    case Qt::Key_Minus:
        return zoom(1 / zoomStep, middle);
    case Qt::Key_Left:
        return pan(QPointF(arrowStep, 0));
    case Qt::Key_Right:
        return pan(QPointF(-arrowStep, 0));
    case Qt::Key_Up:
        return pan(QPointF(0, arrowStep));
    case Qt::Key_Down:
        return pan(QPointF(0, -arrowStep));
    default:
        QGraphicsView::keyPressEvent(event);
    }
}

void PictureView::resizeEvent(QResizeEvent *event)
{
    QGraphicsView::resizeEvent(event);
    m_map.size = viewport()->size();
    setSceneRect(m_map.rect());
    if (m_isFitted)
        fit();
    else
        repaintContours();
}

void PictureView::changeEvent(QEvent *event)
{
    QGraphicsView::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange)
        repaintContours();
}
