#pragma once

#include "importresult.h"

#include <QPair>
#include <QStringList>

/// The vertices in a text such as "0 0, 10 0, 10 10, 0 0".
inline QVector<QPointF> contour(const QString &vertices)
{
    QVector<QPointF> points;
    const QStringList pairs = vertices.split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (const QString &pair : pairs) {
        const QStringList numbers = pair.simplified().split(QLatin1Char(' '));
        points.append(QPointF(numbers.at(0).toDouble(), numbers.at(1).toDouble()));
    }
    return points;
}

/// A closed square as a text for contour().
inline QString square(double x, double y, double size)
{
    const auto text = [](double v) { return QString::number(v, 'f', 3); };
    return QStringLiteral("%1 %2, %3 %2, %3 %4, %1 %4, %1 %2").arg(text(x), text(y), text(x + size), text(y + size));
}

/// Appends an object with the given contours. Its vertices are numbered from 1.
inline void appendObject(ImportResult &result, const QString &def, const QStringList &contours)
{
    ResultObject object{def, result.contours.size(), contours.size(), result.vertices.size(), 0};
    for (const QString &vertices : contours) {
        const QVector<QPointF> points = contour(vertices);
        result.contours.append(
            {result.vertices.size(), points.size(), points.size() > 1 && points.first() == points.last()});
        for (const QPointF &point : points) {
            const QStringList cells{QString::number(++object.vertexCount), QString::number(point.x(), 'f', 2),
                                    QString::number(point.y(), 'f', 2)};
            result.appendVertex(point, cells.join(QChar(0)).toUtf8() + '\0');
        }
    }
    result.objects.append(object);
}

/// A result of objects, each a designation and its contours.
inline ImportResult resultOf(const QVector<QPair<QString, QStringList>> &objects)
{
    ImportResult result;
    for (const auto &object : objects)
        appendObject(result, object.first, object.second);
    return result;
}
