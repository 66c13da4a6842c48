#include "picturemap.h"

void PictureMap::fit(const PictureBox &box, double part)
{
    constexpr double minExtent = 1e-3; // a single position: one millimetre fills the picture, so limit the scale
    constexpr double maxScaleOfPoint = 20;
    if (box.isEmpty())
        return;
    center = box.center();
    const double right = hasSurveyAxes ? box.height() : box.width();
    const double up = hasSurveyAxes ? box.width() : box.height();
    scale = box.size() < minExtent ? maxScaleOfPoint
                                   : part * std::min(std::max(size.width(), 1.0) / std::max(right, minExtent),
                                                     std::max(size.height(), 1.0) / std::max(up, minExtent));
}
