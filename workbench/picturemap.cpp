#include "picturemap.h"

void PictureMap::fit(const PictureBox &box, double part)
{
    constexpr double minExtent = 1e-3; // metres; a smaller box counts as a point
    constexpr double pointScale = 20;  // pixels per metre, since a point has no scale of its own
    if (box.isEmpty())
        return;
    center = box.center();
    const double right = hasSurveyAxes ? box.height() : box.width();
    const double up = hasSurveyAxes ? box.width() : box.height();
    scale = box.size() < minExtent ? pointScale
                                   : part * std::min(std::max(size.width(), 1.0) / std::max(right, minExtent),
                                                     std::max(size.height(), 1.0) / std::max(up, minExtent));
}

void PictureMap::fitAbove(double reserved, const PictureBox &box, double part)
{
    if (box.isEmpty())
        return;
    const QSizeF whole = size;
    size -= QSizeF(0, reserved);
    fit(box, part);
    const QPointF middle = rect().center();
    size = whole;
    moveTo(center, middle);
}
