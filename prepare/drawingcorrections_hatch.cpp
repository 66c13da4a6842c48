// Boundaries of hatches that consist of edges.
//
// Functions are in data-flow order: edge, path, text.

#include "drawingcorrections.h"

#include "drawingpairs.h"

#include <cmath>

namespace {

constexpr int arcEdge = 2;
constexpr int ellipseEdge = 3;
constexpr int splineEdge = 4;

} // namespace

void DrawingCorrections::readEdgePair(const DrawingPair &pair)
{
    const QByteArray value = pair.value.trimmed();
    if (m_edgeType == arcEdge || m_edgeType == ellipseEdge)
        m_edge.append(pair);
    if (m_edgeType != splineEdge)
        return;
    if (pair.code == 94)
        m_curve.spline.degree = value.toInt();
    else if (pair.code == 74)
        m_curve.isClosed = value.toInt() != 0;
    else if (pair.code == 42)
        m_curve.spline.weights.push_back(drawingNumber(value));
    else
        readCurvePair(pair.code, value);
}

void DrawingCorrections::takeEdge(const Place &end)
{
    m_curve.path = static_cast<int>(m_paths.size()) - 1;
    takeCurve(m_edgeBegin, end);
}

// GDAL does not apply the longest chord at the end of a whole circle or ellipse.
void DrawingCorrections::endWholeTurn(const Place &end)
{
    constexpr double almostWhole = 359.999;
    m_numbers.clear();
    for (const DrawingPair &pair : qAsConst(m_edge))
        m_numbers[pair.code] = drawingNumber(pair.value);
    const double from = m_numbers.value(50);
    const double to = m_numbers.value(51);
    if (!(std::fabs(to - from) > almostWhole))
        return;
    const bool isEllipse = m_edgeType == ellipseEdge;
    m_curve.ellipse.centre = {m_numbers.value(10), m_numbers.value(20)};
    m_curve.ellipse.axis = {m_numbers.value(isEllipse ? 11 : 40), m_numbers.value(21)};
    m_curve.ellipse.ratio = isEllipse ? m_numbers.value(40) : 1;
    takeEdge(end);
}

void DrawingCorrections::endEdge(const Place &end)
{
    if (m_edgeType == splineEdge && m_curve.spline.isValid()) {
        takeEdge(end);
    } else if (!m_edge.isEmpty()) {
        endWholeTurn(end);
    }
    m_edge.clear();
    m_edgeType = 0;
}

// A path is a polyline or a number of edges, each of which begins with its type. Code 97 ends a path, but newer
// drawings have it in splines, too.
void DrawingCorrections::readHatchPair(const DrawingPair &pair)
{
    constexpr int polylineFlag = 2;
    const Place place{pair.codePosition, pair.line};
    const int value = pair.value.trimmed().toInt();
    if (pair.code == 92 || pair.code == 75 || pair.code == 330 || (pair.code == 72 && m_hasEdges)) {
        if (m_edgeType != 0 && (m_pathEnd.line != 0 || pair.code == 72))
            endEdge(pair.code == 72 ? place : m_pathEnd);
        m_edgeType = 0;
        m_edge.clear();
        m_pathEnd = {};
    }
    if (pair.code == 92) {
        m_hasEdges = false;
        m_paths.push_back({});
        m_paths.back().edges = (value & polylineFlag) != 0 ? -1 : 0;
    } else if (pair.code == 93 && !m_paths.empty() && m_paths.back().edges == 0) {
        m_hasEdges = true;
        m_paths.back().edges = value;
        m_paths.back().count = valueEdit(pair);
    } else if (pair.code == 75 || pair.code == 330) {
        m_hasEdges = false;
    } else if (pair.code == 72 && m_hasEdges) {
        m_edgeType = value;
        m_curve = {};
        m_edgeBegin = place;
    } else if (pair.code == 97 && m_edgeType != 0) {
        m_pathEnd = place;
    } else if (m_edgeType != 0 && m_pathEnd.line == 0) {
        readEdgePair(pair);
    }
}

QByteArray DrawingCorrections::edgesText(const std::vector<ContentVertex> &vertices)
{
    QByteArray text;
    for (std::size_t i = 1; i < vertices.size(); ++i)
        text += pairText(72, QByteArray("1")) + pairText(10, vertices[i - 1].x) + pairText(20, vertices[i - 1].y) +
                pairText(11, vertices[i].x) + pairText(21, vertices[i].y);
    return text;
}
