#pragma once

#include "checkoutline.h"
#include "convertarcs.h"
#include "convertcontent.h"
#include "drawingcorrections.h"

#include <QByteArray>
#include <QHash>
#include <QSet>
#include <QVector>

/// Scans an ASCII DXF file for the settings that GDAL needs, and for content that GDAL ignores without a message.
class DxfInspection
{
public:
    /// Reads \a fileName, a path of GDAL. Returns false if it cannot be opened.
    bool scan(const QByteArray &fileName);

    /// Returns steps with which no chord of the drawing's own arcs is farther than \a deviation from its arc.
    ArcSteps arcSteps(double deviation) const;
    /// Same for the arcs in blocks, which an insertion may enlarge.
    ArcSteps blockArcSteps(double deviation) const;

    /// Number of entities of each kind that GDAL ignores: types that it does not know, meshes, and insertions of blocks
    /// that are missing or empty.
    ContentCounts ignoredEntities() const;
    const DrawingCorrections &corrections() const { return m_corrections; }
    /// Returns the edits for a copy that GDAL reads with chords within \a deviation.
    std::vector<DrawingEdit> takeEdits(double deviation);
    /// True if a polyline has arcs.
    bool hasPolylineArcs() const { return m_hasPolylineArcs; }
    /// False if the pair that ends a drawing is missing.
    bool hasEnd() const { return m_hasEnd; }
    bool beginsWithHeader() const { return m_beginsWithHeader; }
    /// Lines that are not ASCII, up to a limit.
    const QByteArray &sample() const { return m_sample; }
    /// The encoding that the header names; empty if none.
    const QByteArray &declaredEncoding() const { return m_codePage; }

private:
    struct Insertion
    {
        QByteArray parent; ///< the block that contains it; empty: the drawing
        double scale = 1;
    };

    void readPair(int code, const QByteArray &value);
    void readHeaderPair(int code, const QByteArray &value);
    void beginEntity(const QByteArray &type);
    void endEntity();
    void endPolyline();
    void readEntityPair(int code, const QByteArray &value);
    void readVertexPair(int code, const QByteArray &value);
    void readHatchPair(int code, const QByteArray &value);
    void readName(const QByteArray &name);
    ArcStatistics &arcs();
    double scaleOf(const QByteArray &block, QHash<QByteArray, double> &known, int depth) const;

    QByteArray m_section;
    bool m_isSectionName = false; ///< the next code 2 names the section
    QByteArray m_variable;        ///< of the header
    QByteArray m_entity;
    QByteArray m_block;                                 ///< the block that is being defined; empty: the drawing
    QByteArray m_inserted;                              ///< the block that the current entity inserts
    double m_scale = 1;                                 ///< of that insertion
    QHash<QByteArray, QVector<Insertion>> m_insertions; ///< by the inserted block
    QSet<QByteArray> m_filledBlocks;                    ///< those with entities
    QSet<QByteArray> m_curvedBlocks;                    ///< those with arcs
    QVector<BulgedVertex> m_polyline;                   ///< only while a bulge needs its neighbours
    int m_flags = 0;
    double m_radius = 0; ///< of an ellipse: ratio of the axes
    double m_axisX = 0;
    double m_axisY = 0;
    double m_axisZ = 0;
    double m_from = 0; ///< angles of an arc in degrees
    double m_to = 0;
    int m_edge = 0; ///< type of the current edge of a hatch

    ArcStatistics m_arcs;
    ArcStatistics m_blockArcs;
    bool m_hasPolylineArcs = false;
    ContentCounts m_ignored;
    DrawingCorrections m_corrections;
    bool m_hasEnd = false;
    bool m_beginsWithHeader = false;
    QByteArray m_sample;
    QByteArray m_codePage;
};
