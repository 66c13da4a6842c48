#pragma once

#include <QPointF>
#include <QRectF>

#include <algorithm>
#include <cmath>
#include <limits>

/// A rectangle in metres that includes its border. Empty until a position is added.
struct PictureBox
{
    double minX = std::numeric_limits<double>::infinity();
    double minY = minX;
    double maxX = -minX;
    double maxY = -minX;

    bool isEmpty() const { return !(minX <= maxX); }
    QPointF center() const { return {minX + (maxX - minX) / 2, minY + (maxY - minY) / 2}; }
    double width() const { return isEmpty() ? 0 : maxX - minX; }
    double height() const { return isEmpty() ? 0 : maxY - minY; }
    double size() const { return std::max(width(), height()); }

    bool touches(const PictureBox &other) const
    {
        return minX <= other.maxX && other.minX <= maxX && minY <= other.maxY && other.minY <= maxY;
    }

    void add(const QPointF &xy) { add(PictureBox{xy.x(), xy.y(), xy.x(), xy.y()}); }

    void add(const PictureBox &other)
    {
        minX = std::min(minX, other.minX);
        minY = std::min(minY, other.minY);
        maxX = std::max(maxX, other.maxX);
        maxY = std::max(maxY, other.maxY);
    }
};

/// True unless a coordinate is NaN, infinite or so large that products of sizes could become infinite.
inline bool isDrawable(const QPointF &xy)
{
    constexpr double limit = 1e18;
    return std::abs(xy.x()) <= limit && std::abs(xy.y()) <= limit;
}

/// Maps positions in metres to pixels and back.
///
/// Distances from the centre are scaled, not coordinates, so that centimetres stay exact at coordinates of 1e7 m.
struct PictureMap
{
    QPointF center;   ///< metres; in the middle of the picture
    double scale = 1; ///< pixels per metre
    QSizeF size;      ///< of the picture, pixels
    bool hasSurveyAxes = true;

    QPointF toPixels(const QPointF &xy) const
    {
        const double dx = (xy.x() - center.x()) * scale;
        const double dy = (xy.y() - center.y()) * scale;
        const QPointF offset = hasSurveyAxes ? QPointF(dy, -dx) : QPointF(dx, -dy);
        return {size.width() / 2 + offset.x(), size.height() / 2 + offset.y()};
    }

    QPointF toMetres(const QPointF &pixels) const
    {
        const double right = (pixels.x() - size.width() / 2) / scale;
        const double up = (size.height() / 2 - pixels.y()) / scale;
        return center + (hasSurveyAxes ? QPointF(up, right) : QPointF(right, up));
    }

    QRectF toPixels(const PictureBox &box) const
    {
        return QRectF(toPixels(QPointF(box.minX, box.minY)), toPixels(QPointF(box.maxX, box.maxY))).normalized();
    }

    PictureBox toMetres(const QRectF &pixels) const
    {
        PictureBox box;
        box.add(toMetres(pixels.topLeft()));
        box.add(toMetres(pixels.bottomRight()));
        return box;
    }

    QRectF rect() const { return {QPointF(0, 0), size}; }

    /// Moves the centre so that \a xy appears at \a pixels.
    void moveTo(const QPointF &xy, const QPointF &pixels) { center += xy - toMetres(pixels); }

    /// Centres \a box and scales it to \a part, at most 1, of the picture's width or height.
    void fit(const PictureBox &box, double part);

    /// The same in the picture without its lowest \a reserved pixels.
    void fitAbove(double reserved, const PictureBox &box, double part);

    /// The same picture with \a factor times as many pixels.
    PictureMap magnified(double factor) const { return {center, scale * factor, size * factor, hasSurveyAxes}; }
};
