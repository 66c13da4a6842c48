// Curves become polylines.
//
// Functions are in data-flow order: spline, circle and ellipse, text.

#include "drawingcorrections.h"

#include "drawingpairs.h"

#include <QSet>

#include <cmath>

namespace {

constexpr double pi = 3.14159265358979323846;

// Of every entity: handle, layer, style, visibility and space.
bool isCommon(int code)
{
    static const QSet<int> codes{5, 6, 8, 48, 60, 62, 67, 370, 410, 420};
    return codes.contains(code);
}

} // namespace

// The codes are those of a SPLINE and, where they differ, of an edge of a hatch.
void DrawingCorrections::readCurvePair(int code, const QByteArray &value)
{
    SplineCurve &curve = m_curve.spline;
    if (code == 40)
        curve.knots.push_back(drawingNumber(value));
    else if (code == 10)
        curve.points.push_back({drawingNumber(value), 0});
    else if (code == 20 && !curve.points.empty())
        curve.points.back().y = drawingNumber(value);
}

// A HELIX is a SPLINE and a description of the helix.
void DrawingCorrections::readSplinePair(const DrawingPair &pair)
{
    const QByteArray value = pair.value.trimmed();
    m_isCurveEnded = m_isCurveEnded || (pair.code == 100 && value == "AcDbHelix");
    if (m_isCurveEnded)
        return;
    if (isCommon(pair.code))
        m_head += pairText(pair.code, pair.value);
    else if (pair.code == 70)
        m_curve.isClosed = (value.toInt() & 3) != 0;
    else if (pair.code == 71)
        m_curve.spline.degree = value.toInt();
    else if (pair.code == 41)
        m_curve.spline.weights.push_back(drawingNumber(value));
    else if (pair.code == 30 && !(std::fabs(m_curve.height) > 0))
        m_curve.height = drawingNumber(value);
    else
        readCurvePair(pair.code, value);
}

// Its text follows when the scale of its block is known.
void DrawingCorrections::takeCurve(const Place &begin, const Place &end)
{
    m_curve.begin = begin;
    m_curve.end = end;
    m_curve.block = m_block;
    m_curve.head = m_head;
    m_curves.push_back(m_curve);
}

void DrawingCorrections::endSpline(const DrawingPair &next)
{
    const Place end{next.codePosition, next.line};
    if (m_curve.spline.isValid())
        return takeCurve(m_begin, end);
    ++m_brokenSplineCount;
    addEdit(m_begin, end, {});
}

void DrawingCorrections::readRoundPair(const DrawingPair &pair)
{
    // An ellipse is not in the plane that these three define.
    const bool isPlane = pair.code == 210 || pair.code == 220 || pair.code == 230;
    if (isCommon(pair.code) || (isPlane && m_type != "ELLIPSE"))
        m_head += pairText(pair.code, pair.value);
    if ((pair.code >= 10 && pair.code < 60) || pair.code == 230)
        m_numbers[pair.code] = drawingNumber(pair.value);
}

// GDAL does not apply the longest chord at the end of a whole turn. Of an ellipse only if it is not tilted.
void DrawingCorrections::endRound(const Place &end)
{
    constexpr double tolerance = 1e-6;
    const bool isEllipse = m_type == "ELLIPSE";
    const double begin = m_numbers.value(isEllipse ? 41 : 50);
    const double turn = isEllipse ? 2 * pi : 360;
    const double sweep = m_type == "CIRCLE" ? turn : m_numbers.value(isEllipse ? 42 : 51, turn) - begin;
    const bool isTilted = std::fabs(m_numbers.value(31)) > 0 || std::fabs(m_numbers.value(230, 1)) < 1;
    if (std::fabs(std::fabs(sweep) - turn) > tolerance || (isEllipse && isTilted))
        return;
    EllipseCurve &ellipse = m_curve.ellipse;
    ellipse.centre = {m_numbers.value(10), m_numbers.value(20)};
    ellipse.axis = {m_numbers.value(isEllipse ? 11 : 40), m_numbers.value(21)};
    ellipse.ratio = isEllipse ? m_numbers.value(40) : 1;
    m_curve.height = m_numbers.value(30);
    takeCurve(m_begin, end);
}

QByteArray DrawingCorrections::polylineText(const Curve &curve, const std::vector<ContentVertex> &vertices)
{
    QByteArray text = pairText(0, QByteArray("LWPOLYLINE")) + curve.head +
                      pairText(90, QByteArray::number(static_cast<int>(vertices.size()))) +
                      pairText(70, QByteArray("0"));
    if (std::fabs(curve.height) > 0)
        text += pairText(38, curve.height);
    for (const ContentVertex &vertex : vertices)
        text += pairText(10, vertex.x) + pairText(20, vertex.y);
    return text;
}
