#pragma once

#include "drawingpairs.h"
#include "pointsymbols.h"

#include <QHash>
#include <QVector>

/// A circle, ellipse or insertion in the drawing (container 0) or in a block.
struct SymbolCandidate
{
    int container = 0;
    double x = 0; ///< centre or place of insertion
    double y = 0;
    double reach = 0;  ///< distance from there to the farthest part; infinite if it cannot be a symbol
    int block = -1;    ///< the inserted one; -1: none
    double scale = 1;  ///< of the insertion
    qint64 copies = 1; ///< of the insertion
    bool isSymbol = false;
    QVector<PointSymbols::Edit> edits; ///< the keyword, and those of its attributes
};

/// A text that looks like the number of a point.
struct SymbolNumber
{
    int container = 0;
    double x = 0;
    double y = 0;
    double height = 0;
    int length = 0; ///< in bytes
};

/// What a block draws.
struct SymbolBlock
{
    double baseX = 0;
    double baseY = 0;
    double reach = 0;       ///< distance from the base point to the farthest part
    bool hasNumber = false; ///< has a text that looks like the number of a point
    qint64 outlineCount = 0;
    qint64 textCount = 0;
    QVector<int> insertions; ///< candidates that insert other blocks
};

/// Reads what may be a symbol, and the texts and blocks that decide about it.
class SymbolReader
{
public:
    /// Returns false if \a fileName, a path of GDAL, cannot be opened.
    bool read(const QByteArray &fileName);

    std::vector<SymbolCandidate> candidates;
    std::vector<SymbolNumber> numbers;
    QVector<SymbolBlock> blocks; ///< by container; the first is the drawing

    /// Returns the container of the block \a name, which may be defined later.
    int containerOf(const QByteArray &name);

private:
    /// The entity whose pairs are read.
    struct Entity
    {
        QByteArray type;
        PointSymbols::Edit keyword;
        QByteArray name;
        QByteArray text;
        double x[2] = {0, 0}; ///< groups 10 and 11
        double y[2] = {0, 0};
        double reach = 0; ///< from the base point of the block
        double size = 0;  ///< group 40: radius, height or ratio
        double scale = 1;
        qint64 copies = 1;
        bool isAligned = false;      ///< the second place of a text counts
        bool isInOtherPlane = false; ///< has an extrusion that is not the Z axis
        bool hasPlace = false;
        bool isWanted = false; ///< its pairs matter; those of the drawing's own outlines do not
    };

    void begin(const DrawingPairs &pairs);
    void readPair(const DrawingPairs &pairs);
    void readPlace(int code, double value);
    double distanceToBase(int place) const;
    void extend();
    void end();
    void endBlock(bool isBegun);
    void endBlockPart();
    void addCandidate();
    void addText();
    void finishReaches();
    double reachOf(int block, int depth);

    Entity m_entity;
    int m_container = 0;
    QHash<QByteArray, int> m_containers;
    bool m_takesAttributes = false; ///< the last candidate is an insertion whose attributes follow
    QVector<bool> m_isReached;
};
