// Curves are in drawingcorrections_curves.cpp, hatches in drawingcorrections_hatch.cpp.
//
// Functions are in data-flow order: pairs, numbers, polyline, entity, edits.

#include "drawingcorrections.h"

#include "convertarcs.h"
#include "drawingpairs.h"

#include <QHash>

#include <algorithm>
#include <cmath>

namespace {

constexpr double pi = 3.14159265358979323846;

bool isCoordinate(int code)
{
    return (code >= 10 && code < 60) || (code >= 210 && code < 240);
}

} // namespace

QByteArray pairText(int code, const QByteArray &value)
{
    return QByteArray::number(code) + '\n' + value + '\n';
}

QByteArray pairText(int code, double value)
{
    return pairText(code, QByteArray::number(value, 'g', 17));
}

DrawingEdit valueEdit(const DrawingPair &pair, const QByteArray &text)
{
    return {pair.valuePosition, pair.value.size(), text, pair.line + 1, 0};
}

// GDAL reads such a number up to the comma.
void DrawingCorrections::checkNumber(const DrawingPair &pair)
{
    const int comma = isCoordinate(pair.code) ? pair.value.indexOf(',') : -1;
    if (comma < 0)
        return;
    QByteArray text = pair.value;
    text[comma] = '.';
    bool ok = false;
    text.trimmed().toDouble(&ok);
    if (ok) {
        ++m_commaCount;
        m_edits.push_back(valueEdit(pair, text));
    } else if (m_faultyLine == 0) {
        m_faultyLine = pair.line + 1;
        m_faultyValue = pair.value.trimmed();
    }
}

void DrawingCorrections::addEdit(const Place &begin, const Place &end, const QByteArray &text)
{
    m_edits.push_back({begin.position, end.position - begin.position, text, begin.line, end.line - begin.line});
}

void DrawingCorrections::readPolylinePair(const DrawingPair &pair)
{
    if (pair.code == 90) {
        m_count = valueEdit(pair, pair.value.trimmed());
    } else if (pair.code == 10 && m_vertexCount++ == 0) {
        m_firstVertex = {pair.codePosition, pair.line};
    }
}

// GDAL takes no polyline that has more vertices than it says.
void DrawingCorrections::endPolyline(const DrawingPair &next)
{
    const Place end{next.codePosition, next.line};
    if (m_vertexCount == 0) {
        ++m_emptyPolylineCount;
        addEdit(m_begin, end, {});
    } else if (m_count.line == 0) {
        m_edits.push_back(
            {m_firstVertex.position, 0, pairText(90, QByteArray::number(m_vertexCount)), m_firstVertex.line, 0});
    } else if (m_count.text.toInt() < m_vertexCount) {
        m_count.text = QByteArray::number(m_vertexCount);
        m_edits.push_back(m_count);
    }
}

void DrawingCorrections::begin(const DrawingPair &pair, const QByteArray &block, bool isRead)
{
    static const QHash<QByteArray, Reader> readers{
        {"ARC", &DrawingCorrections::readRoundPair},     {"CIRCLE", &DrawingCorrections::readRoundPair},
        {"ELLIPSE", &DrawingCorrections::readRoundPair}, {"HATCH", &DrawingCorrections::readHatchPair},
        {"HELIX", &DrawingCorrections::readSplinePair},  {"LWPOLYLINE", &DrawingCorrections::readPolylinePair},
        {"SPLINE", &DrawingCorrections::readSplinePair},
    };
    m_type = pair.value.trimmed();
    m_reader = readers.value(m_type);
    m_isRead = isRead;
    m_begin = {pair.codePosition, pair.line};
    m_block = block;
    if (m_reader == nullptr)
        return;
    m_head.clear();
    m_numbers.clear();
    m_curve = {};
    m_isCurveEnded = false;
    m_count = {};
    m_vertexCount = 0;
    m_hasEdges = false;
    m_edgeType = 0;
    m_edge.clear();
    m_pathEnd = {};
}

void DrawingCorrections::endEntity(const DrawingPair &next)
{
    if (m_reader == &DrawingCorrections::readPolylinePair)
        endPolyline(next);
    else if (m_reader == &DrawingCorrections::readSplinePair)
        endSpline(next);
    else if (m_reader == &DrawingCorrections::readRoundPair)
        endRound({next.codePosition, next.line});
    else if (m_reader == &DrawingCorrections::readHatchPair && m_edgeType != 0 && m_pathEnd.line != 0)
        endEdge(m_pathEnd);
    m_reader = nullptr;
}

void DrawingCorrections::readPair(const DrawingPair &pair, const QByteArray &block, bool isRead)
{
    if (pair.code == 0) {
        endEntity(pair);
        begin(pair, block, isRead);
        return;
    }
    if (m_isRead)
        checkNumber(pair);
    if (m_reader != nullptr)
        (this->*m_reader)(pair);
}

void DrawingCorrections::addCurveEdit(const Curve &curve, const std::vector<ContentVertex> &vertices)
{
    const bool isEdge = curve.path >= 0;
    if (isEdge)
        m_paths[static_cast<std::size_t>(curve.path)].added += static_cast<int>(vertices.size()) - 2;
    addEdit(curve.begin, curve.end, isEdge ? edgesText(vertices) : polylineText(curve, vertices));
}

// The numbers of what is replaced as a whole need no edits of their own.
void DrawingCorrections::dropInnerEdits()
{
    std::stable_sort(m_edits.begin(), m_edits.end(),
                     [](const DrawingEdit &a, const DrawingEdit &b) { return a.position < b.position; });
    qint64 end = 0;
    const auto isInner = [&end](const DrawingEdit &edit) {
        if (edit.position < end)
            return true;
        end = edit.position + edit.length;
        return false;
    };
    m_edits.erase(std::remove_if(m_edits.begin(), m_edits.end(), isInner), m_edits.end());
}

std::vector<DrawingEdit>
DrawingCorrections::takeEdits(const std::function<CurvePrecision(const QByteArray &block)> &precisionOf)
{
    CurveFlattener flattener;
    std::vector<ContentVertex> vertices;
    for (const Curve &curve : m_curves) {
        const CurvePrecision precision = precisionOf(curve.block);
        const double deviation = precision.deviation;
        if (!curve.spline.points.empty()) {
            m_coarseSplineCount += flattener.flatten(curve.spline, deviation, vertices) ? 0 : 1;
            const double gap =
                std::hypot(vertices.back().x - vertices.front().x, vertices.back().y - vertices.front().y);
            if (curve.isClosed && gap <= deviation)
                vertices.back() = vertices.front();
            if (vertices.size() == 1)
                vertices.push_back(vertices.front());
        } else {
            if (chordHalfAngle(curve.ellipse.radius(), deviation) >= precision.step * pi / 360)
                continue;
            flattener.flatten(curve.ellipse, deviation, vertices);
        }
        addCurveEdit(curve, vertices);
    }
    for (Path &path : m_paths) {
        if (path.added == 0)
            continue;
        path.count.text = QByteArray::number(path.edges + path.added);
        m_edits.push_back(path.count);
    }
    dropInnerEdits();
    return std::move(m_edits);
}
