#include "reportpicture.h"

#include <QPoint>

#include <algorithm>
#include <cmath>

namespace {

constexpr double pictureSize = 800;
constexpr double margin = 10;
constexpr qint64 maxDrawnVertices = 200000;

constexpr auto dark = "#1b2a41";
constexpr auto red = "#d81e05";

/// True for positions whose differences are exact enough for a picture.
bool isDrawable(double x, double y)
{
    constexpr double limit = 1e15;
    return std::fabs(x) < limit && std::fabs(y) < limit;
}

/// The bounding box of the drawable positions.
class Bounds
{
public:
    void add(double x, double y)
    {
        if (!isDrawable(x, y))
            return;
        m_left = m_isEmpty ? x : std::min(m_left, x);
        m_right = m_isEmpty ? x : std::max(m_right, x);
        m_bottom = m_isEmpty ? y : std::min(m_bottom, y);
        m_top = m_isEmpty ? y : std::max(m_top, y);
        m_isEmpty = false;
    }

    bool isEmpty() const { return m_isEmpty; }
    double left() const { return m_left; }
    double top() const { return m_top; }
    double width() const { return m_right - m_left; }
    double height() const { return m_top - m_bottom; }

private:
    bool m_isEmpty = true;
    double m_left = 0;
    double m_right = 0;
    double m_bottom = 0;
    double m_top = 0;
};

/// Maps positions of the file, whose Y axis points up, to tenths of a pixel.
class Canvas
{
public:
    explicit Canvas(const Bounds &bounds)
        : m_bounds(bounds),
          m_scale(pictureSize / std::max({bounds.width(), bounds.height(), 1e-9}))
    {
    }

    QPoint at(double x, double y) const
    {
        return {inTenths(margin + (x - m_bounds.left()) * m_scale), inTenths(margin + (m_bounds.top() - y) * m_scale)};
    }

    // Known points are not in the bounds and may lie far outside, but must fit in an int.
    static int inTenths(double pixels)
    {
        constexpr double limit = 1e8;
        return qRound(10 * qBound(-limit, pixels, limit));
    }

    QByteArray size() const
    {
        const auto length = [this](double extent) { return QByteArray::number(qRound(2 * margin + extent * m_scale)); };
        return length(m_bounds.width()) + ' ' + length(m_bounds.height());
    }

private:
    const Bounds &m_bounds;
    double m_scale;
};

QByteArray tenths(int value)
{
    return QByteArray::number(value / 10.0, 'f', 1);
}

QByteArray positionText(const QPoint &at)
{
    return tenths(at.x()) + ' ' + tenths(at.y());
}

/// Appends lines to the data of a path. Leaves out vertices within a pixel of the last one drawn.
class PathWriter
{
public:
    explicit PathWriter(const Canvas &canvas) : m_canvas(canvas) {}

    void begin() { m_isFirst = true; }

    void add(double x, double y, bool isLast)
    {
        if (!isDrawable(x, y) || m_count >= maxDrawnVertices)
            return;
        const QPoint at = m_canvas.at(x, y);
        constexpr int pixel = 10;
        const QPoint step = at - m_last;
        if (!m_isFirst && !isLast && std::abs(step.x()) < pixel && std::abs(step.y()) < pixel)
            return;
        m_data += (m_isFirst ? 'M' : 'L') + positionText(at);
        m_isFirst = false;
        m_last = at;
        ++m_count;
    }

    const QByteArray &data() const { return m_data; }

private:
    const Canvas &m_canvas;
    QByteArray m_data;
    QPoint m_last;
    bool m_isFirst = true;
    qint64 m_count = 0;
};

Bounds boundsOf(const FoundContent &found, const ImportOutcome &outcome)
{
    Bounds bounds;
    for (const QVector<QPointF> &outline : found.outlines) {
        for (const QPointF &vertex : outline)
            bounds.add(vertex.x(), vertex.y());
    }
    for (const QPointF &place : found.places)
        bounds.add(place.x(), place.y());
    for (const DefPolygon &object : outcome.objects) {
        for (const QVector<DefPoint> &contour : object.contours) {
            for (const DefPoint &vertex : contour)
                bounds.add(vertex.x, vertex.y);
        }
    }
    return bounds;
}

QByteArray path(const QByteArray &data, const char *colour, const char *width)
{
    if (data.isEmpty())
        return {};
    return QByteArray(R"(<path fill="none" stroke=")") + colour + R"(" stroke-width=")" + width + R"(" d=")" + data +
           "\"/>\n";
}

QByteArray foundPath(const FoundContent &found, const Canvas &canvas)
{
    PathWriter writer(canvas);
    for (const QVector<QPointF> &outline : found.outlines) {
        writer.begin();
        for (int i = 0; i < outline.size(); ++i)
            writer.add(outline.at(i).x(), outline.at(i).y(), i == outline.size() - 1);
    }
    return path(writer.data(), red, "1.2");
}

QByteArray importedPath(const ImportOutcome &outcome, const Canvas &canvas)
{
    PathWriter writer(canvas);
    for (const DefPolygon &object : outcome.objects) {
        for (const QVector<DefPoint> &contour : object.contours) {
            writer.begin();
            for (int i = 0; i < contour.size(); ++i)
                writer.add(contour.at(i).x, contour.at(i).y, i == contour.size() - 1);
        }
    }
    return path(writer.data(), dark, "1.6");
}

/// Writes dots as lines of zero length with round caps.
class DotWriter
{
public:
    explicit DotWriter(const Canvas &canvas) : m_canvas(canvas) {}

    void add(double x, double y)
    {
        constexpr int maxDots = 20000;
        if (isDrawable(x, y) && m_count++ < maxDots)
            m_data += 'M' + positionText(m_canvas.at(x, y)) + "h0";
    }

    QByteArray svg(const char *colour) const
    {
        if (m_data.isEmpty())
            return {};
        return QByteArray(R"(<path stroke=")") + colour + R"(" stroke-width="5" stroke-linecap="round" d=")" + m_data +
               "\"/>\n";
    }

private:
    const Canvas &m_canvas;
    QByteArray m_data;
    int m_count = 0;
};

} // namespace

QByteArray lossPicture(const FoundContent &found, const ImportOutcome &outcome)
{
    const Bounds bounds = boundsOf(found, outcome);
    if (bounds.isEmpty())
        return {};
    const Canvas canvas(bounds);
    DotWriter lost(canvas);
    for (const QPointF &place : found.places)
        lost.add(place.x(), place.y());
    DotWriter known(canvas);
    for (const DefPoint &point : outcome.knownPoints)
        known.add(point.x, point.y);
    const QByteArray note = found.isDrawnWhole
                                ? QByteArray()
                                : QByteArray(R"(<text x="12" y="24">Показана часть: вершин слишком много.</text>)");
    return R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 )" + canvas.size() + "\">\n" +
           foundPath(found, canvas) + lost.svg(red) + importedPath(outcome, canvas) + known.svg(dark) + note +
           "</svg>\n";
}
