#pragma once

#include <QCoreApplication>
#include <QTest>
#include <QWheelEvent>
#include <QWidget>

/// Turns the mouse wheel over \a viewport by \a steps.
inline void turnWheel(QWidget *viewport, const QPointF &position, int steps)
{
    QWheelEvent event(position, viewport->mapToGlobal(position.toPoint()), QPoint(), QPoint(0, 120 * steps),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(viewport, &event);
}

/// Drags the pointer over \a viewport.
inline void dragPointer(QWidget *viewport, const QPoint &from, const QPoint &to)
{
    QTest::mousePress(viewport, Qt::LeftButton, Qt::NoModifier, from);
    for (const QPoint &position : {(from + to) / 2, to}) {
        QMouseEvent event(QEvent::MouseMove, position, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(viewport, &event);
    }
    QTest::mouseRelease(viewport, Qt::LeftButton, Qt::NoModifier, to);
}
