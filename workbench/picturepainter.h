#pragma once

#include "picturecolors.h"
#include "picturedata.h"

#include <QFont>
#include <QImage>

class QPainter;

/// Paints a result: on screen, into an image or into a document.
class PicturePainter
{
public:
    /// \a data must outlive this object. \a map counts in logical pixels.
    PicturePainter(const PictureData &data, const PictureMap &map, PictureColors colors, const QFont &font);

    /// An image of paper, contours and vertices. Details smaller than its pixels are left out.
    QImage contourImage(double devicePixelRatio) const;

    /// Draws every contour that has a position as one polyline with all its vertices.
    void drawContours(QPainter &painter) const;

    /// Highlights an object.
    void drawCurrentObject(QPainter &painter, int object) const;

    /// Draws labels, first those of \a currentObject, axes and scale bar.
    void drawLabels(QPainter &painter, int currentObject) const;

private:
    void drawVertices(QPainter &painter) const;

    const PictureData &m_data;
    const PictureMap m_map;
    const PictureColors m_colors;
    const QFont m_font;
};
