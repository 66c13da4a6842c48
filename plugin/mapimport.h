#pragma once

#include "defpolygon.h"
#include "defpolygon_index.h"
#include "mapimport_lines.h"

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QVector>

class QTextCodec;

/// Base of the readers: turns a file of objects, and a file of known points before it, into objects with numbered
/// vertices.
///
/// Use one importer per run: set the options, call setEncoding(), then importMap() once. A reader of a format derives
/// from it, reads `stream` and calls the building operations below. A pass that fails reports one message; what was
/// read before stays.
class MapImport
{
public:
    MapImport();
    virtual ~MapImport() = default;
    MapImport(const MapImport &) = delete;
    MapImport &operator=(const MapImport &) = delete;

    /// Runs the passes. Returns false when one failed; a file that cannot be opened is reported but is not a failure.
    bool importMap();

    /// Reports, once, that there is not enough memory for the current file; always false.
    bool failOutOfMemory();

    /// Sets the encoding of the files by name. An unknown name keeps the current one, initially that of the locale.
    void setEncoding(const QByteArray &name);

    bool swapXY = false;           ///< exchange x and y of the vertices (never of known points and texts)
    bool searchPointDefs = false;  ///< read known points first
    QString pointPref;             ///< prefix of generated point numbers
    int pointStartNum = 0;         ///< next generated point number
    bool searchObjectDefs = false; ///< take designations of objects from the file
    QString objectPref;            ///< prefix of generated designations
    int objectStartNum = 0;        ///< next number of a generated designation
    QString objectFileName;
    QString pointFileName; ///< if empty, known points are read from the file of objects

    QVector<DefPolygon> *objects = nullptr; ///< the run appends its objects here; owned by the caller

    /// The known points: first those that were read, sorted, then those that appendVert() numbered, in that order.
    /// Inserting the latter at their sorted place would move half of the others each time. After a points pass that
    /// failed, the points are in file order.
    QVector<DefPoint> points;

protected:
    /// Reads known points from the start of `stream` into `points`, in any order.
    virtual bool loadPoints() = 0;
    /// Reads objects from the start of `stream`.
    virtual bool loadPolygons() = 0;

    void appendEmptyPolygon();
    /// Appends an empty contour to the last object.
    void appendEmptyContour();
    /// Reserves space for \a count vertices, capped because the count comes from the file.
    void reserveVerts(int count);
    /// Numbers a vertex and appends it to the last contour. With \a closing it takes the number of the contour's first
    /// vertex.
    void appendVert(double x, double y, bool closing);
    /// Sets the designation of the last object; an empty \a def stands for a generated one.
    void setLastPolygonDef(const QString &def);
    /// Rewinds `stream` within a pass; `lineNum` keeps counting.
    void resetInFileStream();

    /// Opens \a file for reading. Refuses pipes and devices: reading them may block or never end.
    static bool openText(QFile &file);
    /// Reports \a text with the name of the current file as its %1; always false.
    bool failWithFileName(const QString &text) const;

    LineReader stream;   ///< reads `file`
    QStringView line;    ///< the last line read; stays valid while one more is read
    int lineNum = 0;     ///< its number, counted from 1
    QTextCodec *codec;   ///< of the files; never null, not owned
    QByteArray encoding; ///< the name last passed to setEncoding(); published but unused here
    QFile file;

private:
    using Pass = bool (MapImport::*)();

    bool runPasses();
    bool readFile(const QString &fileName, Pass pass);
    QString vertexDef(double x, double y);
    QVector<DefPoint> &lastContour() { return objects->last().contours.last(); }

    bool reportedOutOfMemory = false;
    KnownPointIndex pointIndex; ///< of `points`; filled at the first vertex
};
