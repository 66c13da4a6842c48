#include "pictureraster.h"

namespace {

constexpr int opaque = 256;
constexpr int one = 256; // 1.0 in fixed point, which halves the time of floating point for short lines

// An outline with more crossings is not filled: it would take seconds, and gigabytes of memory.
constexpr size_t maxCrossings = 5000000;

int toFixed(double value)
{
    return static_cast<int>(value * one);
}

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

void PictureRaster::setColor(const QColor &color, double opacity)
{
    m_color = color.rgb();
    m_alpha = static_cast<int>(opacity * opaque);
}

void PictureRaster::blend(int x, int y, int alpha)
{
    QRgb &pixel = m_pixels[y * m_stride + x];
    pixel = mixed(pixel, m_color, alpha);
}

void PictureRaster::blendAt(const QPointF &point)
{
    if (point.x() >= 0 && point.x() < m_width && point.y() >= 0 && point.y() < m_height)
        blend(static_cast<int>(point.x()), static_cast<int>(point.y()), m_alpha);
}

void PictureRaster::dot(const QPointF &point, const QColor &color, double opacity)
{
    setColor(color, opacity);
    blendAt(point);
}

void PictureRaster::fill(const PictureOutline &outline, const QColor &color)
{
    setColor(color, color.alphaF());
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
    if (m_crossings.size() > maxCrossings)
        m_crossings.clear();
    std::sort(m_crossings.begin(), m_crossings.end());
    for (size_t i = 0; i + 1 < m_crossings.size(); i += 2) {
        const int y = static_cast<int>(m_crossings[i] >> 32U);
        const int first = static_cast<int>(m_crossings[i] & 0xffffffffU) >> 8;
        const int last = static_cast<int>(m_crossings[i + 1] & 0xffffffffU) >> 8;
        for (int x = first; x < last; ++x)
            blend(x, y, m_alpha);
    }
}

/// Records where a segment crosses the centre lines of the pixel rows.
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
    for (int y = first; y <= last && m_crossings.size() <= maxCrossings; ++y) {
        const auto column = static_cast<quint64>(std::clamp(x, 0.0, static_cast<double>(m_width)) * one);
        m_crossings.push_back(static_cast<quint64>(y) << 32U | column);
        x += slope;
    }
}

void PictureRaster::stroke(const PictureOutline &outline, double width, const QColor &color, double opacity)
{
    setColor(color, opacity);
    for (int line = 0; line < outline.lineCount(); ++line) {
        for (const QPointF *point = outline.begin(line); point + 1 < outline.end(line); ++point)
            strokeSegment(point[0], point[1], width);
    }
}

void PictureRaster::strokeCoarsely(const PictureOutline &outline, const QColor &color, double opacity)
{
    setColor(color, opacity);
    for (int line = 0; line < outline.lineCount(); ++line) {
        for (const QPointF *point = outline.begin(line); point + 1 < outline.end(line); ++point) {
            const QPointF whole = point[1] - point[0];
            const int steps = static_cast<int>(std::max(std::abs(whole.x()), std::abs(whole.y()))) + 1;
            const QPointF step = whole / steps;
            QPointF p = point[0] + step / 2;
            for (int i = 0; i < steps; ++i, p += step)
                blendAt(p);
        }
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
    const int minorCount = isSteep ? m_width : m_height;
    const double slope = b.x() > a.x() ? (b.y() - a.y()) / (b.x() - a.x()) : 0;
    // Approximates sqrt(1 + slope²) within 2 %; the square root takes longer than painting a short segment.
    const int half = toFixed(width / 2 * (1 + 0.4142 * slope * slope));
    const int left = std::max(0, toFixed(a.x()));
    const int right = std::min((isSteep ? m_height : m_width) * one, toFixed(b.x()));
    const double offset = a.y() - a.x() * slope;
    for (int begin = left; begin < right;) {
        const int major = begin / one;
        const int end = std::min(right, (major + 1) * one);
        const int middle = toFixed(offset + (begin + end) * (slope / (2 * one)));
        cover(major * majorStride, minorStride, minorCount, middle - half, middle + half,
              (end - begin) * m_alpha / one);
        begin = end;
    }
}

/// Blends the pixels of a column or row between \a begin and \a end, which are fixed-point numbers.
void PictureRaster::cover(int start, int stride, int count, int begin, int end, int alpha)
{
    begin = std::max(0, begin);
    end = std::min(count * one, end);
    while (begin < end) {
        const int i = begin / one;
        const int next = std::min(end, (i + 1) * one);
        QRgb &pixel = m_pixels[start + i * stride];
        pixel = mixed(pixel, m_color, (next - begin) * alpha / one);
        begin = next;
    }
}

void PictureRaster::disc(const QPointF &center, double radius, const QColor &color)
{
    setColor(color, 1);
    const int top = std::max(0, static_cast<int>(center.y() - radius - 1));
    const int left = std::max(0, static_cast<int>(center.x() - radius - 1));
    for (int y = top; y < std::min<double>(m_height, center.y() + radius + 1); ++y) {
        for (int x = left; x < std::min<double>(m_width, center.x() + radius + 1); ++x) {
            const double distance = std::hypot(x + 0.5 - center.x(), y + 0.5 - center.y());
            blend(x, y, static_cast<int>(std::clamp(radius + 0.5 - distance, 0.0, 1.0) * m_alpha));
        }
    }
}
