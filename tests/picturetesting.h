#pragma once

#include "importresult.h"

#include <QPointF>
#include <QVector>

/// An object of a generated result.
struct TestObject
{
    QString def;
    QVector<QVector<QPointF>> contours;
};

/// A ring whose lower left corner, as surveyors draw it, is at \a x, \a y.
inline QVector<QPointF> square(double x, double y, double size)
{
    return {{x, y}, {x + size, y}, {x + size, y + size}, {x, y + size}, {x, y}};
}

/// A result as the reader returns it. Vertices are numbered н1, н2 ...; the last of a ring has the number of the first.
inline ImportResult resultOf(const QVector<TestObject> &objects)
{
    ImportResult result;
    int number = 0;
    for (const TestObject &object : objects) {
        const int firstVertex = result.vertices.size();
        const int firstContour = result.contours.size();
        for (const QVector<QPointF> &contour : object.contours) {
            const int first = result.vertices.size();
            const bool isClosed = contour.size() > 1 && contour.first() == contour.last();
            for (int i = 0; i < contour.size(); ++i) {
                const bool isLast = isClosed && i + 1 == contour.size();
                const QString text = isLast ? result.number(first) : QStringLiteral("н%1").arg(++number);
                result.appendVertex(contour.at(i), text.toUtf8() + '\0');
            }
            ResultContour c;
            c.firstVertex = first;
            c.vertexCount = contour.size();
            c.isClosed = isClosed;
            result.contours.append(c);
        }
        ResultObject o;
        o.def = object.def;
        o.firstContour = firstContour;
        o.contourCount = object.contours.size();
        o.firstVertex = firstVertex;
        o.vertexCount = result.vertices.size() - firstVertex;
        result.objects.append(o);
    }
    return result;
}

/// Positions that a picture cannot show.
inline const QVector<QPointF> notDrawable{
    {qQNaN(), 0}, {0, qQNaN()}, {qInf(), 0}, {0, -qInf()}, {1e300, -1e300},
};
