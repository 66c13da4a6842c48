#include "checkoutline.h"

#include <algorithm>
#include <cmath>

void BulgeCounter::addVertex(const BulgedVertex &vertex)
{
    if (m_vertexCount++ == 0)
        m_first = vertex;
    else
        addSegment(m_last, vertex);
    m_last = vertex;
}

void BulgeCounter::close()
{
    addSegment(m_last, m_first);
}

void BulgeCounter::addSegment(const BulgedVertex &begin, const BulgedVertex &end)
{
    const double chord = std::hypot(end.x - begin.x, end.y - begin.y);
    const double deviation = std::fabs(begin.bulge) * chord / 2;
    if (!(deviation > 0) || !std::isfinite(deviation))
        return;
    ++m_count;
    m_largestDeviation = std::max(m_largestDeviation, deviation);
}
