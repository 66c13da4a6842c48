#pragma once

#include "samplefiles.h"

#include <QVector>

/// The figures of one format and layout; 0 if not measured. Times and ratios are medians over all rounds. A ratio
/// compares times of the same round, so its median can differ from the quotient of the median times.
struct SpeedRow
{
    QString format;
    Layout layout = Layout::Mosaic;
    QVector<double> imports; ///< seconds of an import, by number of vertices
    QVector<double> growths; ///< time per vertex relative to the next smaller file; none for the first
    double lines = 0;        ///< seconds of reading the lines of the largest file
    double gdal = 0;         ///< seconds of GDAL for the largest file
    double toLines = 0;      ///< import of the largest file relative to reading its lines
    double gdalToImport = 0; ///< GDAL relative to the import of the largest file
    double toMosaic = 0;     ///< import of the largest file relative to that of the largest mosaic
    double fileSize = 0;     ///< bytes of the largest file, including its MID file
    double memory = 0;       ///< bytes that an import of the largest file needs
};

/// Returns a Markdown table of \a rows; \a vertexCounts are in ascending order. A figure with a bound shows the bound,
/// and is bold when it violates it.
QString resultTable(const QVector<SpeedRow> &rows, const QVector<int> &vertexCounts);
