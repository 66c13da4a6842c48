#pragma once

#include "picturedata.h"

#include <QGraphicsView>
#include <QImage>

/// An interactive picture of the contours of a result.
///
/// The wheel zooms at the pointer, dragging pans; a double click, Home or F fits; plus, minus and the arrow keys work,
/// too. A click makes the object under the pointer the current one.
///
/// The scene is only as large as the viewport: in a scene of the whole map, scroll bars would count its pixels as int,
/// which a zoomed map of a country exceeds.
class PictureView : public QGraphicsView
{
    Q_OBJECT

public:
    explicit PictureView(QWidget *parent = nullptr);

    /// Shows \a result, fitted, without a current object.
    void setResult(const ImportResult &result);

    /// The highlighted object, or -1.
    int currentObject() const { return m_currentObject; }

    /// Highlights an object, or none with -1. An object out of view is moved to the middle, at the same scale unless it
    /// would be too small or too large. Emits nothing.
    void setCurrentObject(int object);

    /// True, the default: X up and Y to the right, as surveyors draw. False: X to the right and Y up.
    void setHasSurveyAxes(bool hasSurveyAxes);
    bool hasSurveyAxes() const { return m_map.hasSurveyAxes; }

    /// Shows all contours. They stay fitted when the size changes, until the user zooms or pans.
    void fit();

    /// Maps the viewport, in pixels, to metres.
    const PictureMap &map() const { return m_map; }

Q_SIGNALS:
    void objectClicked(int object);       ///< -1: no object was hit
    void pointerMoved(const QPointF &xy); ///< X (north) and Y (east), metres; not emitted without vertices
    void pointerLeft();                   ///< the position last reported is out of date: another result or no pointer

protected:
    void drawBackground(QPainter *painter, const QRectF &rect) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    PictureMap fittedMap() const;
    void pan(const QPointF &pixels);
    void zoom(double factor, const QPointF &pixels);
    void showObject(int object);
    void click(const QPointF &pixels);
    void emitPointerMoved(const QPointF &pixels);
    void repaintContours();

    PictureData m_data;
    PictureMap m_map;
    bool m_isFitted = true;
    int m_currentObject = -1;
    QImage m_contours; ///< cache: paper and contours; null if stale
    QPoint m_pressed;  ///< where the button was pressed; during a drag, the last position
    bool m_isPressed = false;
    bool m_isDragged = false;
};
