#pragma once

#include <QByteArray>
#include <QHash>
#include <QVector>
#include <QtGlobal>

/// Counts what the insertions of blocks draw. A file of a few lines may draw any number of entities, because blocks
/// are nested and insertions have rows and columns.
class BlockCopies
{
public:
    /// More copies of entities than any plan has; GDAL takes a minute for them.
    static constexpr qint64 maxCount = 2000000;

    /// Reads the ASCII drawing \a fileName, a path of GDAL. Returns false if it cannot be opened.
    bool read(const QByteArray &fileName);

    /// The line of the first insertion with which there are more than maxCount copies or blocks are nested too deeply,
    /// counted from 1. 0: none.
    qint64 excessLine() const { return m_excessLine; }

private:
    struct Insertion
    {
        QByteArray block;
        double copies = 1;
        qint64 line = 0;
    };

    struct Block
    {
        qint64 entityCount = 0;
        QVector<Insertion> insertions;
        bool isOpen = false; ///< is being counted
    };

    void begin(const QByteArray &type, bool isContent, qint64 line);
    void readPair(int code, const QByteArray &value);
    void end();
    bool count(const Insertion &insertion, double times, int depth);

    QByteArray m_type;
    QByteArray m_block; ///< the block that is being defined; empty: the drawing
    Insertion m_insertion;
    double m_rows = 1;
    double m_columns = 1;
    QHash<QByteArray, Block> m_blocks;
    double m_count = 0;
    qint64 m_excessLine = 0;
};
