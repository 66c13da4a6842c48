#pragma once

#include "defpolygon.h"

#include <QStringList>

/// "A1 10.5 20.25"; a point without designation is "- 10.5 20.25".
inline QString described(const DefPoint &point)
{
    const QString def = point.def.isEmpty() ? QStringLiteral("-") : point.def;
    return QStringList{def, QString::number(point.x, 'g', 12), QString::number(point.y, 'g', 12)}.join(
        QLatin1Char(' '));
}

inline QStringList described(const QVector<DefPoint> &points)
{
    QStringList texts;
    for (const DefPoint &point : points)
        texts.append(described(point));
    return texts;
}

/// "ЗУ1 [н1 0 0, н2 1 1] [...]" with brackets around each contour; an object without designation is "-".
inline QString described(const DefPolygon &object)
{
    QStringList texts{object.def.isEmpty() ? QStringLiteral("-") : object.def};
    for (const QVector<DefPoint> &contour : object.contours)
        texts.append(QLatin1Char('[') + described(contour).join(QLatin1String(", ")) + QLatin1Char(']'));
    return texts.join(QLatin1Char(' '));
}

/// One text for each object.
inline QStringList described(const QVector<DefPolygon> &objects)
{
    QStringList texts;
    for (const DefPolygon &object : objects)
        texts.append(described(object));
    return texts;
}
