#pragma once

#include "importresult.h"

#include <QGraphicsView>

/// The contours of a result, to be looked at, zoomed and clicked.
///
/// The wheel zooms at the pointer, dragging pans; a double click, Home or F fits. A click makes the object under the
/// pointer the current one.
class PictureView : public QGraphicsView
{
    Q_OBJECT

public:
    explicit PictureView(QWidget *parent = nullptr);

    /// Shows \a result, fitted, without a current object.
    void setResult(const ImportResult &result);

    /// The highlighted object, or -1.
    int currentObject() const { return m_currentObject; }

    /// Highlights an object, or none with -1, and scrolls to it if it is not in view.
    void setCurrentObject(int object);

    /// True, the default: X up and Y to the right, as surveyors draw. False: X to the right and Y up.
    void setHasSurveyAxes(bool hasSurveyAxes);
    bool hasSurveyAxes() const { return m_hasSurveyAxes; }

    /// Shows all contours.
    void fit();

Q_SIGNALS:
    void objectClicked(int object);       ///< -1: beside all objects
    void pointerMoved(const QPointF &xy); ///< X (north) and Y (east) at the pointer, metres

protected:
    void drawBackground(QPainter *painter, const QRectF &rect) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    QPointF toPixels(const QPointF &xy) const;
    QPointF toMetres(const QPointF &pixels) const;

    ImportResult m_result;
    int m_currentObject = -1;
    bool m_hasSurveyAxes = true;
    QPointF m_center;
    double m_scale = 1;
    QPoint m_pressed;
    bool m_isDragged = false;
};
