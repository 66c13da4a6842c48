#pragma once

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
    /// Returns false if it cannot be read.
    bool open(const QByteArray &fileName, bool takesSymbols = true);

    /// The path of GDAL to open: the file, or a copy in memory if it has symbols.
    const QByteArray &fileName() const { return m_fileName; }

    const PointSymbols &symbols() const { return m_symbols; }

private:
    bool copy(const QByteArray &fileName);

    QByteArray m_fileName;
    PointSymbols m_symbols;
};
