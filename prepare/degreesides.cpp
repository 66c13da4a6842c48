#include "degreesides.h"

#include <cmath>

void DegreeSides::addVertex(double x, double y)
{
    m_areDegrees = m_areDegrees && std::fabs(x) <= 180 && std::fabs(y) <= 90;
}

// Sides of plots are rarely shorter than a few centimetres, but in degrees nearly all are shorter than a thousandth.
void DegreeSides::addSide(double length)
{
    constexpr double shortSide = 0.02;
    m_sides += length > 0 ? 1 : 0;
    m_shortSides += length > 0 && length < shortSide ? 1 : 0;
}
