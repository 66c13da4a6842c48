#include "picturepainter.h"

#include "picturelabels.h"
#include "picturelegend.h"
#include "pictureoutline.h"
#include "pictureraster.h"

#include <QPainter>
#include <QPainterPath>

namespace {

// Logical pixels.
constexpr double clipMargin = 16;   // lines follow the border of the clip rectangle, which must not be seen
constexpr double dotSize = 1;       // smaller contours are drawn as a dot
constexpr double smallSize = 6;     // smaller objects are drawn coarsely
constexpr double coarseShare = 0.6; // of the opacity: coarse lines look heavier
constexpr double minMarkSpacing = 9;
constexpr double minMarkArea = 80; // per vertex in view; with less, no vertices are marked
constexpr double markRadius = 1.8;
constexpr double minCurrentSize = 10; // a smaller current object gets a circle of this radius
constexpr double currentWidth = 2.5;
constexpr double maxSmoothLength = 100000; // of the current object; smoothing a longer scribble takes minutes

/// Small contours are drawn lighter, so that an overview of many does not become black.
double lineOpacity(double size)
{
    constexpr double smallest = 2;
    constexpr double full = 16;
    constexpr double least = 0.35;
    return std::clamp(least + (1 - least) * (size - smallest) / (full - smallest), least, 1.0);
}

QRectF clipRect(const PictureMap &map, double margin)
{
    return map.rect().adjusted(-margin, -margin, margin, margin);
}

QPainterPath pathOf(const PictureOutline &outline)
{
    QPainterPath path;
    for (int line = 0; line < outline.lineCount(); ++line) {
        for (const QPointF *point = outline.begin(line); point != outline.end(line); ++point) {
            if (point == outline.begin(line))
                path.moveTo(*point);
            else
                path.lineTo(*point);
        }
    }
    return path;
}

void drawPolylines(QPainter &painter, const PictureOutline &outline)
{
    for (int line = 0; line < outline.lineCount(); ++line) {
        const auto count = static_cast<int>(outline.end(line) - outline.begin(line));
        const QPointF *const points = outline.begin(line);
        // QPainter ignores a polyline of one point.
        if (count == 1)
            painter.drawPolyline(QPolygonF(QVector<QPointF>{*points, *points}));
        else
            painter.drawPolyline(points, count);
    }
}

double lengthOf(const PictureOutline &outline)
{
    double length = 0;
    for (int line = 0; line < outline.lineCount(); ++line) {
        for (const QPointF *point = outline.begin(line); point + 1 < outline.end(line); ++point)
            length += std::hypot(point[1].x() - point[0].x(), point[1].y() - point[0].y());
    }
    return length;
}

/// Draws lines in short pieces. With a wide pen, one polyline of 20,000 segments that cross each other takes QPainter
/// minutes.
void drawInPieces(QPainter &painter, const PictureOutline &outline)
{
    constexpr int pieceSize = 32;
    for (int line = 0; line < outline.lineCount(); ++line) {
        const QPointF *const end = outline.end(line);
        for (const QPointF *piece = outline.begin(line); piece + 1 < end; piece += pieceSize)
            painter.drawPolyline(piece, static_cast<int>(std::min<std::ptrdiff_t>(pieceSize + 1, end - piece)));
    }
}

/// Paints the contours of a result that are in view.
class ContourRaster
{
public:
    ContourRaster(QImage &image, const PictureData &data, const PictureMap &map, const PictureColors &colors,
                  double pixelRatio)
        : m_data(data),
          m_map(map),
          m_colors(colors),
          m_pixelRatio(pixelRatio),
          m_raster(image),
          m_rings(data, map, clipRect(map, clipMargin * pixelRatio)),
          m_lines(m_rings)
    {
    }

    void paint();

private:
    void paintContour(int index);
    void paintObject();
    void paintVertices(int index);

    const PictureData &m_data;
    const PictureMap &m_map;
    const PictureColors &m_colors;
    double m_pixelRatio;
    PictureRaster m_raster;
    PictureOutline m_rings; ///< of the current object
    PictureOutline m_lines;
    double m_size = 0; ///< of the largest contour of the current object, logical pixels
};

void ContourRaster::paint()
{
    const PictureBox view = m_map.toMetres(clipRect(m_map, clipMargin * m_pixelRatio));
    const QVector<int> contours = m_data.contoursIn(view);
    for (int i = 0; i < contours.size(); ++i) {
        paintContour(contours.at(i));
        const bool isLast = i + 1 == contours.size();
        if (isLast || m_data.objectOfContour(contours.at(i)) != m_data.objectOfContour(contours.at(i + 1)))
            paintObject();
    }
    const double area = m_map.size.width() * m_map.size.height() / (m_pixelRatio * m_pixelRatio);
    if (area / std::max(1, m_data.vertexCount(contours, view)) < minMarkArea)
        return;
    for (const int contour : contours)
        paintVertices(contour);
}

void ContourRaster::paintContour(int index)
{
    const ResultContour &contour = m_data.result().contours.at(index);
    const PictureBox &box = m_data.contourBox(index);
    const double size = box.size() * m_map.scale / m_pixelRatio;
    if (size < dotSize) {
        m_raster.dot(m_map.toPixels(box.center()), m_colors.line, lineOpacity(size));
        return;
    }
    m_size = std::max(m_size, size);
    PictureOutline &outline = contour.isClosed ? m_rings : m_lines;
    outline.setTolerance(size < smallSize ? 1 : 0.5);
    outline.append(contour);
}

void ContourRaster::paintObject()
{
    m_raster.fill(m_rings, m_colors.fill);
    for (const PictureOutline *outline : {&m_rings, &m_lines}) {
        if (m_size < smallSize)
            m_raster.strokeCoarsely(*outline, m_colors.line, coarseShare * lineOpacity(m_size));
        else
            m_raster.stroke(*outline, m_pixelRatio, m_colors.line, lineOpacity(m_size));
    }
    m_rings.clear();
    m_lines.clear();
    m_size = 0;
}

void ContourRaster::paintVertices(int index)
{
    const ResultContour &contour = m_data.result().contours.at(index);
    const QRectF pixels = m_map.toPixels(m_data.contourBox(index));
    if (vertexSpacing(contour, pixels) < minMarkSpacing * m_pixelRatio)
        return;
    const QRectF visible = clipRect(m_map, clipMargin);
    for (const QPointF *xy = m_data.begin(contour); xy != m_data.end(contour); ++xy) {
        const QPointF point = m_map.toPixels(*xy);
        if (visible.contains(point))
            m_raster.disc(point, markRadius * m_pixelRatio, m_colors.line);
    }
}

} // namespace

PicturePainter::PicturePainter(const PictureData &data, const PictureMap &map, PictureColors colors, const QFont &font)
    : m_data(data),
      m_map(map),
      m_colors(std::move(colors)),
      m_font(font)
{
}

QImage PicturePainter::contourImage(double devicePixelRatio) const
{
    const PictureMap map = m_map.magnified(devicePixelRatio);
    QImage image(map.size.toSize(), QImage::Format_RGB32);
    if (image.isNull())
        return image;
    image.fill(m_colors.paper);
    ContourRaster(image, m_data, map, m_colors, devicePixelRatio).paint();
    image.setDevicePixelRatio(devicePixelRatio);
    return image;
}

void PicturePainter::drawContours(QPainter &painter) const
{
    const ImportResult &result = m_data.result();
    PictureOutline rings(m_data, m_map, m_map.rect());
    PictureOutline all(m_data, m_map, m_map.rect());
    rings.setTolerance(0);
    all.setTolerance(0);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_colors.fill);
    for (const ResultObject &object : result.objects) {
        rings.clear();
        for (int i = object.firstContour; i < object.firstContour + object.contourCount; ++i) {
            const ResultContour &contour = result.contours.at(i);
            if (contour.isClosed)
                rings.append(contour);
        }
        if (rings.pointCount() > 0)
            painter.drawPath(pathOf(rings));
    }
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(m_colors.line, 0.7));
    for (const ResultContour &contour : result.contours) {
        all.clear();
        all.append(contour);
        drawPolylines(painter, all);
    }
    drawVertices(painter);
}

void PicturePainter::drawVertices(QPainter &painter) const
{
    const ImportResult &result = m_data.result();
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_colors.line);
    for (int i = 0; i < result.contours.size(); ++i) {
        const ResultContour &contour = result.contours.at(i);
        if (m_data.contourBox(i).isEmpty() ||
            vertexSpacing(contour, m_map.toPixels(m_data.contourBox(i))) < minMarkSpacing)
            continue;
        std::for_each(m_data.begin(contour), m_data.end(contour), [&](const QPointF &xy) {
            if (isDrawable(xy))
                painter.drawEllipse(m_map.toPixels(xy), markRadius, markRadius);
        });
    }
}

void PicturePainter::drawCurrentObject(QPainter &painter, int object) const
{
    const PictureBox box = object < 0 ? PictureBox() : m_data.objectBox(object);
    if (box.isEmpty() || !box.touches(m_map.toMetres(clipRect(m_map, clipMargin))))
        return;
    const QRectF clip = clipRect(m_map, clipMargin);
    PictureOutline rings(m_data, m_map, clip);
    PictureOutline lines(m_data, m_map, clip);
    const ResultObject &o = m_data.result().objects.at(object);
    for (int i = o.firstContour; i < o.firstContour + o.contourCount; ++i) {
        const ResultContour &contour = m_data.result().contours.at(i);
        (contour.isClosed ? rings : lines).append(contour);
    }
    painter.save();
    const bool isSmooth = lengthOf(rings) + lengthOf(lines) <= maxSmoothLength;
    painter.setRenderHint(QPainter::Antialiasing, isSmooth);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_colors.currentFill);
    if (isSmooth)
        painter.drawPath(pathOf(rings));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(m_colors.currentLine, isSmooth ? currentWidth : 0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    drawInPieces(painter, rings);
    drawInPieces(painter, lines);
    if (box.size() * m_map.scale < minCurrentSize)
        painter.drawEllipse(m_map.toPixels(box.center()), minCurrentSize, minCurrentSize);
    painter.restore();
}

void PicturePainter::drawLabels(QPainter &painter, int currentObject) const
{
    if (m_data.box().isEmpty())
        return;
    const PictureLegend legend(m_map, m_font);
    PictureLabels labels(m_data, m_map, m_font);
    labels.avoid(legend.axesRect());
    labels.avoid(legend.scaleBarRect());
    labels.place(currentObject);

    painter.save();
    QColor background = m_colors.paper;
    const QFont numberFont = PictureLabels::numberFont(m_font);
    QFont currentFont = m_font;
    currentFont.setBold(true);
    for (const PictureLabel &label : labels.labels()) {
        background.setAlphaF(label.isName ? 0.75 : 0.6);
        painter.fillRect(label.rect, background);
        painter.setFont(label.isName ? m_font : numberFont);
        const QColor color = label.isName ? m_colors.name : m_colors.text;
        painter.setPen(label.isCurrent ? m_colors.currentLine : color);
        painter.drawText(label.rect, Qt::AlignCenter | Qt::TextDontClip | Qt::TextSingleLine, label.text);
    }
    painter.restore();
    legend.draw(painter, m_colors);
}
