#include "picturelegend.h"

#include <QFontMetricsF>
#include <QLocale>
#include <QPainter>
#include <QPainterPath>

namespace {

// In heights of the font.
constexpr double margin = 0.6;
constexpr double arrowLength = 2.6;
constexpr double maxBarLength = 9;
constexpr double tickHeight = 0.45;

// In pixels.
constexpr double lineWidth = 1.2;
constexpr double haloWidth = 4;

/// A line with an arrow head; a path, so that only contours are polylines in a document.
QPainterPath arrow(const QPointF &from, const QPointF &to, double headSize)
{
    const QPointF along = (to - from) / std::hypot(to.x() - from.x(), to.y() - from.y()) * headSize;
    const QPointF across(-along.y() / 3, along.x() / 3);
    QPainterPath path(from);
    path.lineTo(to);
    path.moveTo(to - along + across);
    path.lineTo(to);
    path.lineTo(to - along - across);
    return path;
}

/// Behind lines and texts only, so that nearly all of the contours below the legend stays visible.
QColor backgroundOf(const PictureColors &colors)
{
    QColor color = colors.paper;
    color.setAlphaF(0.8);
    return color;
}

void drawPath(QPainter &painter, const PictureColors &colors, const QPainterPath &path)
{
    painter.strokePath(path, QPen(backgroundOf(colors), haloWidth));
    painter.strokePath(path, QPen(colors.name, lineWidth));
}

} // namespace

double roundLength(double maxLength)
{
    if (!(maxLength > 0) || !std::isfinite(maxLength))
        return 0;
    const double power = std::pow(10, std::floor(std::log10(maxLength)));
    constexpr double rounding = 1 + 1e-9; // so that 0.1 * 10 counts as 1
    for (const double digit : {10.0, 5.0, 2.0}) {
        if (digit * power <= maxLength * rounding)
            return digit * power;
    }
    return power;
}

QString lengthText(double metres)
{
    const QLocale locale(QLocale::Russian, QLocale::Russia);
    const auto text = [&locale](double value, const QString &unit) {
        // Six digits hide that 0.002 * 1000 is not exactly 2. Larger numbers would get an exponent.
        const QString number = value < 1e6 ? locale.toString(value, 'g', 6) : locale.toString(value, 'f', 0);
        return QStringLiteral("%1 %2").arg(number, unit);
    };
    constexpr double rounding = 1 - 1e-9;
    if (metres >= 1000)
        return text(metres / 1000, QStringLiteral("км"));
    if (metres >= 1)
        return text(metres, QStringLiteral("м"));
    if (metres >= 0.01 * rounding)
        return text(metres * 100, QStringLiteral("см"));
    return text(metres * 1000, QStringLiteral("мм"));
}

PictureLegend::PictureLegend(const PictureMap &map, const QFont &font)
    : m_map(map),
      m_font(font),
      m_unit(QFontMetricsF(font).height())
{
}

QRectF PictureLegend::axesRect() const
{
    const double size = (arrowLength + 1.3) * m_unit;
    return {margin * m_unit, m_map.size.height() - margin * m_unit - size, size, size};
}

QRectF PictureLegend::scaleBarRect() const
{
    const double width = (maxBarLength + 1) * m_unit;
    const double height = 2 * m_unit;
    const double right = m_map.size.width() - margin * m_unit;
    return {right - width, m_map.size.height() - margin * m_unit - height, width, height};
}

void PictureLegend::draw(QPainter &painter, const PictureColors &colors) const
{
    painter.save();
    painter.setFont(m_font);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    drawAxes(painter, colors);
    drawScaleBar(painter, colors);
    painter.restore();
}

void PictureLegend::drawText(QPainter &painter, const PictureColors &colors, const QPointF &center,
                             const QString &text) const
{
    QRectF rect(0, 0, QFontMetricsF(m_font).horizontalAdvance(text), m_unit);
    rect.moveCenter(center);
    painter.fillRect(rect, backgroundOf(colors));
    painter.setPen(colors.name);
    painter.drawText(rect, Qt::AlignCenter | Qt::TextDontClip, text);
}

void PictureLegend::drawAxes(QPainter &painter, const PictureColors &colors) const
{
    const QRectF rect = axesRect();
    const double length = arrowLength * m_unit;
    const QPointF origin(rect.left() + 0.6 * m_unit, rect.bottom() - 0.6 * m_unit);
    const QPointF top = origin - QPointF(0, length);
    const QPointF right = origin + QPointF(length, 0);
    QPainterPath arrows = arrow(origin, top, m_unit / 2);
    arrows.addPath(arrow(origin, right, m_unit / 2));
    drawPath(painter, colors, arrows);
    const QString x = QStringLiteral("X");
    const QString y = QStringLiteral("Y");
    const QPointF beyond(0.6 * m_unit, 0);
    drawText(painter, colors, top + beyond, m_map.hasSurveyAxes ? x : y);
    drawText(painter, colors, right + beyond, m_map.hasSurveyAxes ? y : x);
}

void PictureLegend::drawScaleBar(QPainter &painter, const PictureColors &colors) const
{
    const QRectF rect = scaleBarRect();
    const double length = roundLength(maxBarLength * m_unit / m_map.scale);
    if (length <= 0)
        return;
    const double right = rect.right() - 0.5 * m_unit;
    const double left = right - length * m_map.scale;
    const double bottom = rect.bottom() - 0.4 * m_unit;
    const double top = bottom - tickHeight * m_unit;
    QPainterPath bar(QPointF(left, top));
    bar.lineTo(left, bottom);
    bar.lineTo(right, bottom);
    bar.lineTo(right, top);
    drawPath(painter, colors, bar);
    drawText(painter, colors, QPointF((left + right) / 2, rect.top() + 0.6 * m_unit), lengthText(length));
}
