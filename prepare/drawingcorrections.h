#pragma once

#include "convertcontent.h"
#include "convertsplines.h"
#include "drawingcopy.h"

#include <QByteArray>
#include <QHash>
#include <QVector>

#include <functional>
#include <vector>

/// A pair of a drawing with its place in the file.
struct DrawingPair
{
    int code = -1;
    QByteArray value;        ///< as written, without the line end
    qint64 codePosition = 0; ///< in bytes
    qint64 valuePosition = 0;
    qint64 line = 0; ///< of the code, counted from 1
};

QByteArray pairText(int code, const QByteArray &value);
QByteArray pairText(int code, double value);

/// Replaces the value of \a pair.
DrawingEdit valueEdit(const DrawingPair &pair, const QByteArray &text = {});

/// How finely curves are to be split.
struct CurvePrecision
{
    double deviation = 0;
    double step = 0; ///< with which GDAL splits whole circles, in degrees
};

/// Finds what GDAL would read wrong or not at all, and corrects it in a copy: splines, whole circles
/// and whole ellipses become polylines, which keep the deviation; decimal commas become points; polylines get the
/// number of vertices that they have, and those without any are left out.
class DrawingCorrections
{
public:
    /// Reads the next pair of the sections with entities; its block is \a block, empty: the drawing. If the pair begins
    /// an entity that GDAL does not read, \a isRead is false.
    void readPair(const DrawingPair &pair, const QByteArray &block, bool isRead);

    /// The edits, in the order of the file. \a precisionOf returns the precision of the chords in a block.
    std::vector<DrawingEdit> takeEdits(const std::function<CurvePrecision(const QByteArray &block)> &precisionOf);

    /// The first line with a coordinate that is no number, counted from 1; 0: none.
    qint64 faultyLine() const { return m_faultyLine; }
    const QByteArray &faultyValue() const { return m_faultyValue; }

    qint64 commaCount() const { return m_commaCount; }
    qint64 emptyPolylineCount() const { return m_emptyPolylineCount; }
    /// Splines that have no curve, because control points or knots are missing.
    qint64 brokenSplineCount() const { return m_brokenSplineCount; }
    /// Splines that do not keep the deviation, because that would take too many chords. After takeEdits().
    qint64 coarseSplineCount() const { return m_coarseSplineCount; }

private:
    struct Place
    {
        qint64 position = 0;
        qint64 line = 0;
    };

    /// A curve that is an entity or an edge of a hatch.
    struct Curve
    {
        Place begin;
        Place end;
        QByteArray block;
        QByteArray head; ///< the pairs of the entity that are not the curve's
        SplineCurve spline;
        EllipseCurve ellipse; ///< if the spline has no points
        double height = 0;
        bool isClosed = false;
        int path = -1; ///< of a hatch; negative: an entity
    };

    /// A boundary of a hatch.
    struct Path
    {
        DrawingEdit count; ///< the number of edges
        int edges = 0;
        int added = 0;
    };

    using Reader = void (DrawingCorrections::*)(const DrawingPair &pair);

    void checkNumber(const DrawingPair &pair);
    void begin(const DrawingPair &pair, const QByteArray &block, bool isRead);

    void readPolylinePair(const DrawingPair &pair);
    void endPolyline(const DrawingPair &next);

    void readCurvePair(int code, const QByteArray &value);
    void readSplinePair(const DrawingPair &pair);
    void takeCurve(const Place &begin, const Place &end);
    void endSpline(const DrawingPair &next);
    void readRoundPair(const DrawingPair &pair);
    void endRound(const Place &end);

    void readHatchPair(const DrawingPair &pair);
    void readEdgePair(const DrawingPair &pair);
    void endEdge(const Place &end);
    void endWholeTurn(const Place &end);
    void takeEdge(const Place &end);

    void endEntity(const DrawingPair &next);
    void addCurveEdit(const Curve &curve, const std::vector<ContentVertex> &vertices);
    void dropInnerEdits();
    void addEdit(const Place &begin, const Place &end, const QByteArray &text);
    static QByteArray polylineText(const Curve &curve, const std::vector<ContentVertex> &vertices);
    static QByteArray edgesText(const std::vector<ContentVertex> &vertices);

    std::vector<DrawingEdit> m_edits;
    std::vector<Curve> m_curves;
    std::vector<Path> m_paths;

    QByteArray m_type; ///< of the entity
    Reader m_reader = nullptr;
    bool m_isRead = false;
    Place m_begin; ///< of the entity
    QByteArray m_block;
    QByteArray m_head;            ///< the pairs of a curve that are kept
    QHash<int, double> m_numbers; ///< of a circle or ellipse, by code

    DrawingEdit m_count; ///< the number of vertices of a polyline; line 0: missing
    Place m_firstVertex;
    int m_vertexCount = 0;

    Curve m_curve; ///< also the edge of a hatch
    bool m_isCurveEnded = false;

    bool m_hasEdges = false; ///< the current path of a hatch consists of edges
    Place m_edgeBegin;
    int m_edgeType = 0; ///< of a hatch; 0: none
    QVector<DrawingPair> m_edge;
    Place m_pathEnd; ///< line 0: not reached

    qint64 m_faultyLine = 0;
    QByteArray m_faultyValue;
    qint64 m_commaCount = 0;
    qint64 m_emptyPolylineCount = 0;
    qint64 m_brokenSplineCount = 0;
    qint64 m_coarseSplineCount = 0;
};
