#pragma once

#include "defpolygon.h"
#include "defpolygon_index.h"
#include "mapimport_lines.h"

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QVector>

class QTextCodec;

/// Reads a file of objects, and the known points before it, into objects with numbered vertices.
///
/// One importer serves one run: fill in the options, call setEncoding() and then importMap() once. A reader of a format
/// derives from it, reads from `stream` and builds what it reads with the operations below. A pass that fails sends one
/// message itself; what was read before stays.
class MapImport
{
public:
    MapImport();
    virtual ~MapImport() = default;
    MapImport(const MapImport &) = delete;
    MapImport &operator=(const MapImport &) = delete;

    /// Runs the passes. False when a pass failed; a file that cannot be opened is only told to the host.
    bool importMap();

    /// Chooses the encoding of the files by its name; an unknown name leaves the one in force, at first the locale's.
    void setEncoding(const QByteArray &name);

    bool swapXY = false;           ///< exchange x and y of the vertices (never of known points and texts)
    bool searchPointDefs = false;  ///< read known points first
    QString pointPref;             ///< prefix of generated point numbers
    int pointStartNum = 0;         ///< next generated point number
    bool searchObjectDefs = false; ///< take designations of objects from the file
    QString objectPref;            ///< prefix of generated designations
    int objectStartNum = 0;        ///< next generated number of an object
    QString objectFileName;
    QString pointFileName; ///< empty: the known points are read from the file of objects

    QVector<DefPolygon> *objects = nullptr; ///< where the run appends its objects; the caller's

    /// The known points: those that were read, sorted, then those that appendVert() numbered, in that order. After a
    /// points pass that failed they are in file order.
    QVector<DefPoint> points;

protected:
    /// Reads known points from the start of `stream` into `points`, in any order.
    virtual bool loadPoints() = 0;
    /// Reads objects from the start of `stream`.
    virtual bool loadPolygons() = 0;

    /// Starts an object.
    void appendEmptyPolygon();
    /// Starts a contour of the last object.
    void appendEmptyContour();
    /// Makes room for the \a count vertices that a file announces for the last contour, as far as one may believe it.
    void reserveVerts(int count);
    /// Numbers a vertex and appends it to the last contour. \a closing repeats the number of the contour's first
    /// vertex.
    void appendVert(double x, double y, bool closing);
    /// Names the last object; an empty \a def means a generated designation.
    void setLastPolygonDef(const QString &def);
    /// Rewinds `stream` for another reading in the same pass; `lineNum` goes on counting.
    void resetInFileStream();

    /// Opens \a file for reading, if it is a file that has an end.
    static bool openText(QFile &file);
    /// Tells the host \a text with the name of the file being read as its %1; always false.
    bool failWithFileName(const QString &text) const;

    LineReader stream;   ///< reads `file`
    QStringView line;    ///< the last line read; valid until the next line but one is read
    int lineNum = 0;     ///< its number, from 1
    QTextCodec *codec;   ///< of the files; never null, not owned
    QByteArray encoding; ///< the name last given to setEncoding(), as it was given
    QFile file;

private:
    using Pass = bool (MapImport::*)();

    bool readFile(const QString &fileName, Pass pass);
    bool runPass(Pass pass);
    QString vertexDef(double x, double y);
    QVector<DefPoint> &lastContour() { return objects->last().contours.last(); }

    KnownPointIndex pointIndex; ///< of `points` while vertices are numbered
};
