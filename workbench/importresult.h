#pragma once

#include <QByteArray>
#include <QPointF>
#include <QString>
#include <QVector>

/// A contour of an object: \a vertexCount vertices, starting at \a firstVertex.
struct ResultContour
{
    int firstVertex = 0;
    int vertexCount = 0;
    bool isClosed = false; ///< the last vertex repeats the position of the first
};

/// An object: \a contourCount contours, starting at \a firstContour. Its vertices are contiguous, too.
struct ResultObject
{
    QString def; ///< designation; may be empty
    int firstContour = 0;
    int contourCount = 0;
    int firstVertex = 0;
    int vertexCount = 0;
};

/// The content of a result document: flat arrays, because a result may have a million vertices.
///
/// Vertices are positions in metres, X (north) and Y (east) as in the document. A coordinate that is not a
/// finite number is NaN.
class ImportResult
{
public:
    QString objectTable; ///< name of the table of objects; may be empty
    QString pointTable;  ///< name of the vertex tables; may be empty
    bool isUpdate = false;
    QVector<ResultObject> objects;
    QVector<ResultContour> contours;
    QVector<QPointF> vertices;
    int numberColumn = 0; ///< column of the point numbers, counted from 0
    int xColumn = 1;      ///< column of X
    int yColumn = 2;      ///< column of Y
    int columnCount = 0;  ///< cells of the longest vertex row

    /// The text of one cell as the host receives it; empty if the row is shorter.
    QString cell(int vertex, int column) const;

    /// The point number of a vertex.
    QString number(int vertex) const { return cell(vertex, numberColumn); }

    /// Appends a vertex. \a rowCells are the texts of its row in UTF-8, each followed by a NUL.
    void appendVertex(const QPointF &position, const QByteArray &rowCells);

private:
    QByteArray rowOf(int vertex) const;

    QByteArray m_cells;       ///< the cells of all rows in UTF-8; NUL, which XML cannot contain, ends each cell
    QVector<int> m_rowStarts; ///< where each vertex's cells begin
};
