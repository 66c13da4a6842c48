#pragma once

#include "checkimport.h"
#include "pointsymbols.h"

#include <QPointF>
#include <QSet>
#include <QString>
#include <QVector>

/// What GDAL finds in a file.
struct FoundContent
{
    /// Objects that a complete import would give.
    qint64 outlined() const { return areas + lines; }

    bool isOpened = false;    ///< false: GDAL cannot open the file, and all counts are 0
    bool isReadToEnd = false; ///< GDAL reports no error while it reads the features
    QString readError;        ///< its first error; empty: none
    qint64 excessLine = 0;    ///< of an insertion that draws too many copies, so the drawing is not opened; 0: none
    qint64 areas = 0;         ///< features with areas; a collection with areas and lines counts in both
    qint64 lines = 0;
    qint64 points = 0;
    qint64 texts = 0;
    PointSymbols symbols;   ///< of a drawing; they count as points
    QSet<QString> fillings; ///< handles of the areas that fill outlines of a drawing; they do not count

    QVector<QVector<QPointF>> outlines; ///< for a picture; empty unless requested
    QVector<QPointF> places;            ///< positions of points other than texts
    bool fitsDegrees = false;           ///< all coordinates can be longitude and latitude
    bool isDrawnWhole = true;           ///< false: the file has more vertices than a picture takes
};

/// Counts the features of \a fileName by their geometry. With \a forPicture also collects their vertices, up to a
/// limit.
FoundContent findContent(const QString &fileName, bool forPicture);
