#pragma once

#include <QByteArray>

/// Returns the data section \a mif with each arc as a polyline and each ellipse and rounded rectangle as a region,
/// whose chords are within \a deviation of the curve.
///
/// GDAL splits these curves into steps of a fixed angle. Curves that cannot be read stay. \a coarseCount becomes the
/// number of curves that do not keep the deviation, because that would take too many vertices.
QByteArray withoutCurves(const QByteArray &mif, double deviation, int &coarseCount);
