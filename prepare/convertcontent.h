#pragma once

#include <QMap>
#include <QString>

#include <cstddef>
#include <vector>

/// Rounds \a coordinate to 15 digits, as GDAL's MIF writer does: 0.1 micrometres at 10,000 km.
double asWritten(double coordinate);

/// A position; the output has x first.
struct ContentVertex
{
    double x = 0;
    double y = 0;
};

/// An object: one or more contours that are either all areas or all lines.
struct ContentObject
{
    bool isArea = false;
    std::size_t contourEnd = 0; ///< end of its contours; they begin where those of the previous object end
    QString id;                 ///< of its feature in the source
    QString def;                ///< designation; empty: left to the import
};

struct ContentPoint
{
    ContentVertex at;
    QString id;  ///< of its feature in the source
    QString def; ///< number; empty: none
};

struct ContentText
{
    ContentVertex at;
    QString text;
    double height = 0;      ///< of the letters; 0: unknown
    bool isUsed = false;    ///< names an object or a point
    bool isOfPoint = false; ///< stands beside a point, whose number it is
    double outlineArea = 0; ///< of the box of the smallest outline around it that has no designation; 0: none
};

using ContentCounts = QMap<QString, qint64>;

/// The content of a source, in flat arrays: a map of a million vertices is common.
struct ConvertContent
{
    std::vector<ContentVertex> vertices;
    std::vector<std::size_t> contourEnds; ///< into vertices
    std::vector<ContentObject> objects;
    std::vector<ContentPoint> points;
    std::vector<ContentText> texts;
    bool hasPolylineArcs = false; ///< a polyline of the drawing has arcs

    ContentCounts leftOut;         ///< by kind: what cannot be taken
    ContentCounts notes;           ///< by kind: what is taken, but changed or not as exact as the rest
    QMap<QString, QString> places; ///< by kind: the first case, where it is known
    QString firstWarning;          ///< first warning of GDAL; empty: none

    std::size_t contourBegin(std::size_t object) const { return object == 0 ? 0 : objects[object - 1].contourEnd; }
    std::size_t vertexBegin(std::size_t contour) const { return contour == 0 ? 0 : contourEnds[contour - 1]; }
    std::size_t vertexCount(std::size_t contour) const { return contourEnds[contour] - vertexBegin(contour); }
};
