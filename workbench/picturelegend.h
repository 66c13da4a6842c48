#pragma once

#include "picturecolors.h"
#include "picturemap.h"

#include <QFont>
#include <QString>

class QPainter;

/// The largest length of 1, 2 or 5 times a power of ten that is not above \a maxLength; 0 if there is none.
double roundLength(double maxLength);

/// A round length for people: "5 мм", "20 см", "100 м", "2 км".
QString lengthText(double metres);

/// The fixed parts of a picture: the directions of X and Y in the lower left corner, the scale bar in the lower right.
class PictureLegend
{
public:
    PictureLegend(const PictureMap &map, const QFont &font);

    QRectF axesRect() const;
    QRectF scaleBarRect() const;

    void draw(QPainter &painter, const PictureColors &colors) const;

private:
    void drawAxes(QPainter &painter, const PictureColors &colors) const;
    void drawScaleBar(QPainter &painter, const PictureColors &colors) const;
    void drawText(QPainter &painter, const PictureColors &colors, const QPointF &center, const QString &text) const;

    PictureMap m_map;
    QFont m_font;
    double m_unit; ///< height of the font, pixels
};
