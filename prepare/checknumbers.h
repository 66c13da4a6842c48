#pragma once

#include "checkimport.h"

/// Figures about imported objects. Places are for the user.
struct ImportStatistics
{
    qint64 contours = 0;
    qint64 vertices = 0; ///< closing vertices included
    qint64 numbers = 0;  ///< distinct numbers of vertices

    qint64 sharedPositions = 0; ///< positions whose number another position has as well
    QString sharedPlace;
    qint64 unnumbered = 0; ///< vertices without a number
    QString unnumberedPlace;

    qint64 notFinite = 0; ///< vertices with a coordinate that is infinite or not a number
    QString notFinitePlace;

    qint64 sharedNames = 0; ///< objects whose designation another object has as well
    QString sharedNamePlace;

    qint64 decimalNames = 0; ///< objects and distinct vertex numbers whose name is a number with decimals
    QString decimalNamePlace;

    qint64 escapedNames = 0; ///< objects and different vertex numbers with codes such as \U+0416
    QString escapedNamePlace;

    bool looksGeographic = false; ///< fitsDegrees, and most sides are very short
    bool fitsDegrees = false;     ///< all vertices are possible degrees
};

/// Counts in O(n log n).
ImportStatistics statisticsOf(const ImportOutcome &outcome);
