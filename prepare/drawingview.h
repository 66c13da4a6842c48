#pragma once

#include "blockcopies.h"
#include "pointsymbols.h"

#include <QByteArray>

/// A drawing as GDAL is to read it: symbols of points are points, and the entities of a block are features of their
/// own, because each outline is an object. As long as the view exists, GDAL is set accordingly.
class DrawingView
{
public:
    DrawingView();
    ~DrawingView();
    DrawingView(const DrawingView &) = delete;
    DrawingView &operator=(const DrawingView &) = delete;

    /// Looks through the ASCII drawing \a fileName, a path of GDAL. Without \a takesSymbols they remain what they are.
    /// Returns false if it cannot be read. Do not open it if excessLine() is not 0.
    bool open(const QByteArray &fileName, bool takesSymbols = true);

    /// The path of GDAL to open: the file, or a copy in memory if it has symbols or ends in CR.
    const QByteArray &fileName() const { return m_fileName; }

    /// The line of the insertion that draws too many copies for GDAL, counted from 1; 0: none.
    qint64 excessLine() const { return m_copies.excessLine(); }

    const PointSymbols &symbols() const { return m_symbols; }

private:
    QByteArray m_fileName;
    PointSymbols m_symbols;
    BlockCopies m_copies;
};
