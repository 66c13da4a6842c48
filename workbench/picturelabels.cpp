#include "picturelabels.h"

#include "pictureoutline.h"

#include <QFontMetricsF>

#include <QtMath>

#include <array>

namespace {

constexpr int maxLabels = 3000;    // as many as a screen has room for
constexpr int maxPoints = 3000;    // with more contours in view, single vertices are not labelled
constexpr int maxTextLength = 500; // the rest of a designation is ignored

// Pixels.
constexpr double maxNameWidth = 260;
constexpr double minNameWidth = 110; // of an elided name
constexpr double maxNumberWidth = 90;
constexpr double minObjectSize = 24; // of a named object
constexpr double minSpacing = 18;    // between numbered vertices
constexpr double minCurrentSpacing = 10;
constexpr double minArea = 1800; // per vertex in view; with less, only the current object is numbered
constexpr double circleRoom = 8; // for the circle that marks a small current object
constexpr double gap = 4;        // between a vertex and its number

QString oneLine(const QString &text)
{
    return text.left(maxTextLength).simplified();
}

QPointF direction(const QPointF &from, const QPointF &to)
{
    const QPointF d = to - from;
    const double length = std::hypot(d.x(), d.y());
    return length > 0 ? d / length : QPointF();
}

/// A horizontal interval inside rings.
struct Interval
{
    QPointF middle;
    double width = 0;
};

QVector<Interval> intervalsAt(const PictureOutline &rings, double y)
{
    QVector<double> crossings;
    for (int line = 0; line < rings.lineCount(); ++line) {
        for (const QPointF *p = rings.begin(line); p + 1 < rings.end(line); ++p) {
            if ((p[0].y() > y) != (p[1].y() > y))
                crossings.append(p[0].x() + (p[1].x() - p[0].x()) * ((y - p[0].y()) / (p[1].y() - p[0].y())));
        }
    }
    std::sort(crossings.begin(), crossings.end());
    QVector<Interval> intervals;
    for (int i = 0; i + 1 < crossings.size(); i += 2) {
        const double width = crossings.at(i + 1) - crossings.at(i);
        intervals.append({QPointF(crossings.at(i) + width / 2, y), width});
    }
    return intervals;
}

QRectF boundsOf(const PictureOutline &outline)
{
    PictureBox box;
    std::for_each(outline.begin(0), outline.end(outline.lineCount() - 1), [&box](const QPointF &p) { box.add(p); });
    return box.isEmpty() ? QRectF() : QRectF(box.minX, box.minY, box.width(), box.height());
}

/// Places for a name inside \a rings, best first: those as wide as the name, then narrower ones; the middle before the
/// rest.
QVector<Interval> innerPlaces(const PictureOutline &rings, double nameWidth)
{
    const QRectF bounds = boundsOf(rings);
    QVector<Interval> places;
    for (const double part : {0.5, 0.35, 0.65, 0.2, 0.8})
        places += intervalsAt(rings, bounds.top() + part * bounds.height());
    std::stable_sort(places.begin(), places.end(), [nameWidth](const Interval &a, const Interval &b) {
        return a.width >= nameWidth && b.width < nameWidth;
    });
    return places;
}

/// The middle of the longest segment, or the only point, in pixels.
QPointF middleOfLongest(const PictureOutline &lines)
{
    QPointF middle;
    double longest = -1;
    for (int line = 0; line < lines.lineCount(); ++line) {
        for (const QPointF *p = lines.begin(line); p < lines.end(line); ++p) {
            const QPointF next = p + 1 < lines.end(line) ? p[1] : p[0];
            const double length = std::hypot(next.x() - p->x(), next.y() - p->y());
            if (length > longest)
                middle = (*p + next) / 2;
            longest = std::max(longest, length);
        }
    }
    return middle;
}

} // namespace

bool LabelSpace::take(const QRectF &rect)
{
    constexpr int cellSize = 64;
    QVector<qint64> cells;
    for (int x = qFloor(rect.left() / cellSize); x <= qFloor(rect.right() / cellSize); ++x) {
        for (int y = qFloor(rect.top() / cellSize); y <= qFloor(rect.bottom() / cellSize); ++y)
            cells.append(static_cast<qint64>(x) * std::numeric_limits<int>::max() + y);
    }
    const auto touches = [&](const QRectF &taken) { return taken.intersects(rect); };
    for (const qint64 cell : qAsConst(cells)) {
        const QVector<QRectF> taken = m_cells.value(cell);
        if (std::any_of(taken.begin(), taken.end(), touches))
            return false;
    }
    for (const qint64 cell : qAsConst(cells))
        m_cells[cell].append(rect);
    return true;
}

double vertexSpacing(const ResultContour &contour, const QRectF &pixels)
{
    const double extent =
        contour.isClosed ? 2 * (pixels.width() + pixels.height()) : std::hypot(pixels.width(), pixels.height());
    return contour.vertexCount > 1 ? extent / (contour.vertexCount - 1) : std::numeric_limits<double>::infinity();
}

QFont PictureLabels::numberFont(QFont font)
{
    constexpr double part = 0.85;
    if (font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() * part);
    else
        font.setPixelSize(std::max(1, qRound(font.pixelSize() * part)));
    return font;
}

PictureLabels::PictureLabels(const PictureData &data, const PictureMap &map, const QFont &font)
    : m_data(data),
      m_map(map),
      m_nameFont(font),
      m_numberFont(numberFont(font))
{
}

void PictureLabels::place(int currentObject)
{
    const PictureBox view = m_map.toMetres(m_map.rect());
    const QVector<int> contours = m_data.contoursIn(view);
    m_hasPoints = contours.size() <= maxPoints;
    QVector<Visible> objects = visibleObjects(contours, currentObject);
    const auto isCurrent = [currentObject](const Visible &visible) { return visible.object == currentObject; };
    auto *const current = std::find_if(objects.begin(), objects.end(), isCurrent);
    if (current != objects.end()) {
        placeName(*current, true);
        placeNumbers(*current, true);
        objects.erase(current);
    }
    for (const Visible &visible : qAsConst(objects))
        placeName(visible, false);
    const double area = m_map.size.width() * m_map.size.height() / std::max(1, m_data.vertexCount(contours, view));
    if (area < minArea)
        return;
    for (const Visible &visible : qAsConst(objects))
        placeNumbers(visible, false);
}

/// The objects of \a contours that may get labels. Where contours are many, small ones are left out.
QVector<PictureLabels::Visible> PictureLabels::visibleObjects(const QVector<int> &contours, int currentObject) const
{
    QVector<Visible> objects;
    for (const int contour : contours) {
        const int object = m_data.objectOfContour(contour);
        const bool isSmall = m_data.contourBox(contour).size() * m_map.scale < minObjectSize;
        if (isSmall && !m_hasPoints && object != currentObject)
            continue;
        if (objects.isEmpty() || objects.last().object != object)
            objects.append(Visible{object, {}});
        objects.last().contours.append(contour);
    }
    return objects;
}

void PictureLabels::placeName(const Visible &visible, bool isCurrent)
{
    const QRectF pixels = m_map.toPixels(m_data.objectBox(visible.object));
    const double size = std::max(pixels.width(), pixels.height());
    const bool isPoint = size == 0 && m_hasPoints;
    if ((size < minObjectSize && !isCurrent && !isPoint) || m_labels.size() >= maxLabels)
        return;
    const QPointF beside = isCurrent && size < minObjectSize ? QPointF(circleRoom, -circleRoom) : QPointF();
    const PictureLabel label{{}, oneLine(m_data.result().objects.at(visible.object).def), true, isCurrent};
    if (label.text.isEmpty())
        return;
    PictureOutline rings(m_data, m_map, m_map.rect());
    PictureOutline lines(m_data, m_map, m_map.rect());
    for (const int i : visible.contours) {
        const ResultContour &contour = m_data.result().contours.at(i);
        (contour.isClosed ? rings : lines).append(contour);
    }
    if (rings.pointCount() == 0 && lines.pointCount() > 0)
        placeBeside(middleOfLongest(lines) + beside, {1, -1}, label);
    else if (rings.pointCount() > 0 && !placeInside(rings, label) && isCurrent)
        placeBeside(boundsOf(rings).topRight() + beside, {1, -1}, label);
}

bool PictureLabels::placeInside(const PictureOutline &rings, PictureLabel label)
{
    const QFontMetricsF metrics(m_nameFont);
    const QString name = label.text;
    const double nameWidth = metrics.horizontalAdvance(name);
    for (const Interval &place : innerPlaces(rings, nameWidth)) {
        const double width = std::min({nameWidth, place.width, maxNameWidth});
        if (width < std::min(nameWidth, minNameWidth))
            continue;
        label.text = metrics.elidedText(name, Qt::ElideMiddle, std::ceil(width));
        const QSizeF size = metrics.size(Qt::TextSingleLine, label.text);
        label.rect = QRectF(place.middle - QPointF(size.width() / 2, size.height() / 2), size);
        if (add(label))
            return true;
    }
    return false;
}

void PictureLabels::placeNumbers(const Visible &visible, bool isCurrent)
{
    for (const int i : visible.contours) {
        const ResultContour &contour = m_data.result().contours.at(i);
        const double spacing = vertexSpacing(contour, m_map.toPixels(m_data.contourBox(i)));
        const bool isCrowded = spacing < (isCurrent ? minCurrentSpacing : minSpacing);
        if (!isCrowded && (contour.vertexCount > 1 || m_hasPoints))
            placeNumbers(contour, isCurrent);
    }
}

void PictureLabels::placeNumbers(const ResultContour &contour, bool isCurrent)
{
    // The last vertex of a ring repeats the position of the first, but can have another number.
    const int count = contour.vertexCount;
    const int period = count - (contour.isClosed ? 1 : 0);
    const QPointF *const vertices = m_data.begin(contour);
    const auto pixelsOf = [&](int i) { return m_map.toPixels(vertices[(i + period) % period]); };
    for (int i = 0; i < count && m_labels.size() < maxLabels; ++i) {
        const QPointF point = pixelsOf(i);
        if (!isDrawable(vertices[i]) || !m_map.rect().contains(point))
            continue;
        const QString number = oneLine(m_data.result().number(contour.firstVertex + i));
        QString &known = m_numberAt[{qRound(point.x() * 2), qRound(point.y() * 2)}];
        if (number.isEmpty() || number == known)
            continue;
        const QPointF outwards = -(direction(point, pixelsOf(i - 1)) + direction(point, pixelsOf(i + 1)));
        if (placeBeside(point, outwards, {{}, number, false, isCurrent}))
            known = number;
    }
}

/// Tries the four quadrants around \a point, starting with the one towards \a preferred.
bool PictureLabels::placeBeside(const QPointF &point, const QPointF &preferred, PictureLabel label)
{
    const QFontMetricsF metrics(label.isName ? m_nameFont : m_numberFont);
    label.text = metrics.elidedText(label.text, Qt::ElideMiddle, label.isName ? maxNameWidth : maxNumberWidth);
    const QSizeF size = metrics.size(Qt::TextSingleLine, label.text);
    std::array<QPointF, 4> quadrants{QPointF(1, -1), QPointF(1, 1), QPointF(-1, -1), QPointF(-1, 1)};
    std::stable_sort(quadrants.begin(), quadrants.end(), [&preferred](const QPointF &a, const QPointF &b) {
        return QPointF::dotProduct(a, preferred) > QPointF::dotProduct(b, preferred);
    });
    return std::any_of(quadrants.begin(), quadrants.end(), [&](const QPointF &quadrant) {
        const double x = quadrant.x() > 0 ? point.x() + gap : point.x() - gap - size.width();
        const double y = quadrant.y() > 0 ? point.y() + gap / 2 : point.y() - gap / 2 - size.height();
        label.rect = QRectF(QPointF(x, y), size);
        return add(label);
    });
}

bool PictureLabels::add(const PictureLabel &label)
{
    if (!m_map.rect().contains(label.rect) || !m_space.take(label.rect))
        return false;
    m_labels.append(label);
    return true;
}
