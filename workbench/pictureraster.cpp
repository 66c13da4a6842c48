#include "pictureraster.h"

namespace {

constexpr int opaque = 256;
constexpr double subpixels = 256; // of a crossing's column

QRgb mixed(QRgb under, QRgb over, int alpha)
{
    constexpr QRgb redAndBlue = 0x00ff00ffU;
    constexpr QRgb green = 0x0000ff00U;
    const auto a = static_cast<QRgb>(alpha);
    const QRgb rb = ((over & redAndBlue) * a + (under & redAndBlue) * (opaque - a)) >> 8U;
    const QRgb g = ((over & green) * a + (under & green) * (opaque - a)) >> 8U;
    return 0xff000000U | (rb & redAndBlue) | (g & green);
}

} // namespace

PictureRaster::PictureRaster(QImage &image)
    : m_pixels(reinterpret_cast<QRgb *>(image.bits())),
      m_width(image.width()),
      m_height(image.height()),
      m_stride(image.bytesPerLine() / static_cast<int>(sizeof(QRgb)))
{
}

void PictureRaster::setColor(const QColor &color)
{
    m_color = color.rgb();
    m_alpha = qRound(color.alphaF() * opaque);
}

void PictureRaster::blend(int x, int y, int alpha)
{
    QRgb &pixel = m_pixels[y * m_stride + x];
    pixel = mixed(pixel, m_color, alpha);
}

void PictureRaster::dot(const QPointF &point, const QColor &color)
{
    const int x = static_cast<int>(std::floor(point.x()));
    const int y = static_cast<int>(std::floor(point.y()));
    setColor(color);
    if (x >= 0 && x < m_width && y >= 0 && y < m_height)
        blend(x, y, m_alpha);
}

void PictureRaster::fill(const PictureOutline &outline, const QColor &color)
{
    setColor(color);
    m_crossings.clear();
    for (int line = 0; line < outline.lineCount(); ++line) {
        const QPointF *const begin = outline.begin(line);
        const QPointF *const end = outline.end(line);
        if (begin == end)
            continue;
        for (const QPointF *point = begin; point + 1 < end; ++point)
            addCrossings(point[0], point[1]);
        addCrossings(end[-1], *begin);
    }
    std::sort(m_crossings.begin(), m_crossings.end());
    for (size_t i = 0; i + 1 < m_crossings.size(); i += 2) {
        const int y = static_cast<int>(m_crossings[i] >> 32U);
        const int first = static_cast<int>(m_crossings[i] & 0xffffffffU) >> 8;
        const int last = static_cast<int>(m_crossings[i + 1] & 0xffffffffU) >> 8;
        for (int x = first; x < last; ++x)
            blend(x, y, m_alpha);
    }
}

/// Notes where a line crosses the middles of the pixel rows.
void PictureRaster::addCrossings(const QPointF &a, const QPointF &b)
{
    const QPointF &top = a.y() < b.y() ? a : b;
    const QPointF &bottom = a.y() < b.y() ? b : a;
    const int first = std::max(0, static_cast<int>(std::ceil(top.y() - 0.5)));
    const int last = std::min(m_height - 1, static_cast<int>(std::ceil(bottom.y() - 0.5)) - 1);
    if (first > last)
        return;
    const double slope = (bottom.x() - top.x()) / (bottom.y() - top.y());
    double x = top.x() + (first + 0.5 - top.y()) * slope + 0.5;
    for (int y = first; y <= last; ++y, x += slope) {
        const auto column = static_cast<quint64>(std::clamp(x, 0.0, static_cast<double>(m_width)) * subpixels);
        m_crossings.push_back(static_cast<quint64>(y) << 32U | column);
    }
}

void PictureRaster::stroke(const PictureOutline &outline, double width, const QColor &color)
{
    setColor(color);
    for (int line = 0; line < outline.lineCount(); ++line) {
        for (const QPointF *point = outline.begin(line); point + 1 < outline.end(line); ++point)
            strokeSegment(point[0], point[1], width);
    }
}

// In each column of a flat segment, or row of a steep one, the segment covers an interval.
void PictureRaster::strokeSegment(QPointF a, QPointF b, double width)
{
    const bool isSteep = std::abs(b.y() - a.y()) > std::abs(b.x() - a.x());
    if (isSteep) {
        a = QPointF(a.y(), a.x());
        b = QPointF(b.y(), b.x());
    }
    if (a.x() > b.x())
        std::swap(a, b);
    const int majorStride = isSteep ? m_stride : 1;
    const int minorStride = isSteep ? 1 : m_stride;
    const int majorCount = isSteep ? m_height : m_width;
    const int minorCount = isSteep ? m_width : m_height;
    const double slope = b.x() > a.x() ? (b.y() - a.y()) / (b.x() - a.x()) : 0;
    const double half = width / 2 * std::sqrt(1 + slope * slope);
    if (b.x() <= 0 || a.x() >= majorCount)
        return;
    const int first = static_cast<int>(std::max(0.0, a.x()));
    const int last = std::min(majorCount - 1, static_cast<int>(b.x()));
    for (int major = first; major <= last; ++major) {
        const double begin = std::max<double>(a.x(), major);
        const double end = std::min<double>(b.x(), major + 1);
        const double middle = a.y() + ((begin + end) / 2 - a.x()) * slope;
        cover(major * majorStride, minorStride, minorCount, middle - half, middle + half, (end - begin) * m_alpha);
    }
}

/// Blends the pixels of a column or row between \a begin and \a end.
void PictureRaster::cover(int start, int stride, int count, double begin, double end, double alpha)
{
    if (end <= 0 || begin >= count)
        return;
    const int first = static_cast<int>(std::max(0.0, begin));
    const int last = std::min(count - 1, static_cast<int>(end));
    for (int i = first; i <= last; ++i) {
        const double covered = std::min<double>(end, i + 1) - std::max<double>(begin, i);
        QRgb &pixel = m_pixels[start + i * stride];
        pixel = mixed(pixel, m_color, static_cast<int>(covered * alpha));
    }
}

void PictureRaster::disc(const QPointF &center, double radius, const QColor &color)
{
    setColor(color);
    const int top = std::max(0, static_cast<int>(center.y() - radius - 1));
    const int left = std::max(0, static_cast<int>(center.x() - radius - 1));
    for (int y = top; y < std::min<double>(m_height, center.y() + radius + 1); ++y) {
        for (int x = left; x < std::min<double>(m_width, center.x() + radius + 1); ++x) {
            const double distance = std::hypot(x + 0.5 - center.x(), y + 0.5 - center.y());
            blend(x, y, static_cast<int>(std::clamp(radius + 0.5 - distance, 0.0, 1.0) * m_alpha));
        }
    }
}
