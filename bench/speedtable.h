#pragma once

#include "mapfiles.h"

#include <QVector>

/// What is known of the files of one format and layout; what has not been measured is 0.
struct SpeedRow
{
    QString format;
    Layout layout = Layout::Mosaic;
    QVector<double> imports; ///< seconds of an import, for each number of vertices
    double lines = 0;        ///< seconds of reading the lines of the largest file
    double gdal = 0;         ///< seconds of GDAL for the largest file
    double fileSize = 0;     ///< bytes of the largest file, the MID file included
    double memory = 0;       ///< bytes that an import of the largest file takes
};

/// A table in Markdown of \a rows; \a vertexCounts are in ascending order, and a mosaic comes before the other layouts
/// of its format. A figure that has a bound shows it, and is bold when it is out of bounds.
QString speedTable(const QVector<SpeedRow> &rows, const QVector<int> &vertexCounts);
