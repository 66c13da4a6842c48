#include "pictureview.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainterPath>
#include <QWheelEvent>

#include <cmath>

PictureView::PictureView(QWidget *parent) : QGraphicsView(parent)
{
    setScene(new QGraphicsScene(this));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setViewportUpdateMode(FullViewportUpdate);
    setMouseTracking(true);
}

void PictureView::setResult(const ImportResult &result)
{
    m_result = result;
    m_currentObject = -1;
    fit();
}

void PictureView::setCurrentObject(int object)
{
    m_currentObject = object;
    viewport()->update();
}

void PictureView::setHasSurveyAxes(bool hasSurveyAxes)
{
    m_hasSurveyAxes = hasSurveyAxes;
    fit();
}

void PictureView::fit()
{
    QRectF box;
    const QRectF pixel(0, 0, 1e-9, 1e-9);
    for (const QPointF &vertex : qAsConst(m_result.vertices)) {
        if (std::isfinite(vertex.x()) && std::isfinite(vertex.y()))
            box |= pixel.translated(vertex);
    }
    m_center = box.center();
    const QSizeF size = m_hasSurveyAxes ? box.size().transposed() : box.size();
    m_scale = 0.9 * std::min(width() / std::max(size.width(), 1e-3), height() / std::max(size.height(), 1e-3));
    viewport()->update();
}

QPointF PictureView::toPixels(const QPointF &xy) const
{
    const QPointF d = (xy - m_center) * m_scale;
    const QPointF middle(viewport()->width() / 2.0, viewport()->height() / 2.0);
    return middle + (m_hasSurveyAxes ? QPointF(d.y(), -d.x()) : QPointF(d.x(), -d.y()));
}

QPointF PictureView::toMetres(const QPointF &pixels) const
{
    const QPointF d = (pixels - QPointF(viewport()->width() / 2.0, viewport()->height() / 2.0)) / m_scale;
    return m_center + (m_hasSurveyAxes ? QPointF(-d.y(), d.x()) : QPointF(d.x(), -d.y()));
}

void PictureView::drawBackground(QPainter *painter, const QRectF & /*rect*/)
{
    painter->resetTransform();
    painter->fillRect(viewport()->rect(), palette().base());
    painter->setRenderHint(QPainter::Antialiasing);
    for (int i = 0; i < m_result.objects.size(); ++i) {
        const ResultObject &object = m_result.objects.at(i);
        painter->setPen(QPen(i == m_currentObject ? Qt::red : palette().text().color(), 0));
        for (int c = object.firstContour; c < object.firstContour + object.contourCount; ++c) {
            const ResultContour &contour = m_result.contours.at(c);
            QPolygonF line;
            for (int v = contour.firstVertex; v < contour.firstVertex + contour.vertexCount; ++v)
                line.append(toPixels(m_result.vertices.at(v)));
            painter->drawPolyline(line);
        }
    }
}

void PictureView::mousePressEvent(QMouseEvent *event)
{
    m_pressed = event->pos();
    m_isDragged = false;
}

void PictureView::mouseMoveEvent(QMouseEvent *event)
{
    if ((event->buttons() & Qt::LeftButton) != 0) {
        m_center += toMetres(m_pressed) - toMetres(event->pos());
        m_pressed = event->pos();
        m_isDragged = true;
        viewport()->update();
    }
    Q_EMIT pointerMoved(toMetres(event->pos()));
}

void PictureView::mouseReleaseEvent(QMouseEvent *event)
{
    if (m_isDragged)
        return;
    int clicked = -1;
    for (int i = 0; i < m_result.objects.size(); ++i) {
        const ResultObject &object = m_result.objects.at(i);
        const QPolygonF vertices = m_result.vertices.mid(object.firstVertex, object.vertexCount);
        if (vertices.containsPoint(toMetres(event->pos()), Qt::OddEvenFill))
            clicked = i;
    }
    setCurrentObject(clicked);
    Q_EMIT objectClicked(clicked);
}

void PictureView::mouseDoubleClickEvent(QMouseEvent * /*event*/)
{
    fit();
}

void PictureView::wheelEvent(QWheelEvent *event)
{
    const QPointF before = toMetres(event->position());
    m_scale *= std::pow(1.25, event->angleDelta().y() / 120.0);
    m_center += before - toMetres(event->position());
    viewport()->update();
}

void PictureView::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Home || event->key() == Qt::Key_F)
        fit();
    else
        QGraphicsView::keyPressEvent(event);
}

void PictureView::resizeEvent(QResizeEvent *event)
{
    QGraphicsView::resizeEvent(event);
    fit();
}
