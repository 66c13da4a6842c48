#pragma once

#include "samplefiles.h"

#include <QVector>

/// What is known of the files of one format and layout; what has not been measured is 0. A ratio is of times that were
/// measured side by side, which those of the whole table are not.
struct SpeedRow
{
    QString format;
    Layout layout = Layout::Mosaic;
    QVector<double> imports; ///< seconds of an import, for each number of vertices
    QVector<double> growths; ///< how much longer a vertex takes than with the number of vertices before
    double lines = 0;        ///< seconds of reading the lines of the largest file
    double gdal = 0;         ///< seconds of GDAL for the largest file
    double toLines = 0;      ///< import of the largest file to the reading of its lines
    double gdalToImport = 0; ///< GDAL to the import of the largest file
    double toMosaic = 0;     ///< import of the largest file to that of the largest mosaic
    double fileSize = 0;     ///< bytes of the largest file, the MID file included
    double memory = 0;       ///< bytes that an import of the largest file takes
};

/// A table in Markdown of \a rows; \a vertexCounts are in ascending order. A figure that has a bound shows it, and is
/// bold when it is out of bounds.
QString resultTable(const QVector<SpeedRow> &rows, const QVector<int> &vertexCounts);
