#pragma once

#include <QtGlobal>

/// Recognises coordinates in degrees by the sides of contours.
class DegreeSides
{
public:
    void addVertex(double x, double y);
    void addSide(double length);

    /// All vertices are possible degrees.
    bool fitsDegrees() const { return m_areDegrees && m_sides > 0; }

    /// fitsDegrees(), and most sides are very short.
    bool looksGeographic() const { return fitsDegrees() && 2 * m_shortSides > m_sides; }

private:
    bool m_areDegrees = true;
    qint64 m_sides = 0;
    qint64 m_shortSides = 0;
};
