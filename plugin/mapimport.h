#pragma once

#include "defpolygon.h"
#include "defpolygon_search.h"
#include "defpolygon_walk.h"
#include "mapimport_lines.h"

#include <QByteArray>
#include <QFile>
#include <QHash>
#include <QSet>
#include <QString>
#include <QVector>

#include <array>
#include <memory>

class QTextCodec;

/// Remembers the host's callback for showStatus(); null means that messages are dropped.
void setStatusFunc(void (*func)(const QString &));

/// Hands one message to the host, as it stands.
void showStatus(const QString &text);

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

    /// The known points: in order those that were read and all that were numbered since; in the order of the file
    /// after a points pass that failed.
    QVector<DefPoint> knownPoints() const;

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
    bool failInFile(const QString &text) const;

    QVector<DefPoint> points; ///< known points; sorted, but for those that appendVert() has put at the end since
    LineReader stream;        ///< reads `file`
    QStringView line;         ///< the last line read; valid until the next line but one is read
    int lineNum = 0;          ///< its number, from 1
    QTextCodec *codec;        ///< of the files; never null, not owned
    QByteArray encoding;      ///< the name last given to setEncoding(), as it was given
    QFile file;

private:
    using Pass = bool (MapImport::*)();

    bool readFile(const QString &fileName, Pass pass);
    bool runPass(Pass pass);
    QString vertexDef(double x, double y);
    QVector<DefPoint> &lastContour() { return objects->last().contours.last(); }

    CloseSearch closePoints; ///< finds among `points` while vertices are numbered
    int appendedCount = 0;   ///< how many of `points` appendVert() has put at the end
};

/// Reads a MIF file and the MID file of the same name.
class MifImport : public MapImport
{
public:
    MifImport();

protected:
    bool loadPoints() override;
    bool loadPolygons() override;

private:
    using Reader = bool (MifImport::*)();
    using Readers = QHash<QString, Reader>;

    bool readTokenizeMifLine(bool tokenize);
    bool checkMifFile();
    bool checkHeaderLine(const QString &keyword);

    bool openMidFile();
    bool readMidLine();
    bool readMidDef(QString *def);
    QString extractDef(QStringView record) const;
    bool hasToken(int i, double &number) const;
    bool hasToken(int i, int &number) const;

    bool readPoint();
    bool readLine();
    bool readVert(bool closing);
    bool readSub(int count, bool closeLast);
    bool readCountedSub(int minCount, bool closeLast);
    bool readPline();
    bool readPlineMultiple();
    bool readRegion();

    bool loadPoint();
    bool loadLine();
    bool loadPline();
    bool loadRegion();
    bool loadObjectDef();
    bool skipRecord();

    bool loadPass(bool searchDefs, const Readers &readers);
    void skipHeader();
    bool readData(const Readers &readers);

    QSet<QString> objectKeywords; ///< first words of lines that begin an object
    QChar delimiter;              ///< of the fields of a MID record; from the header
    QChar tokenSeparator;         ///< of the words of a MIF line
    Words tokens;                 ///< words of the last line that was split; valid as long as the line
    QString keyword;              ///< first word of such a line, in upper case
    QFile midFile;                ///< open while designations are looked up
    LineReader midStream;
    QStringView midLine; ///< the last record, trimmed; valid until the next but one is read
    int midLineNo = 0;   ///< its number, from 1
};

/// Reads an ASCII DXF drawing: designations are the texts that lie nearest.
class DxfImport : public MapImport
{
public:
    /// Adds every vertex of every object to the known points, without duplicates.
    void pointsFromPolygons();

protected:
    bool loadPoints() override;
    bool loadPolygons() override;

private:
    using Reader = bool (DxfImport::*)();
    struct Entity
    {
        QLatin1String name;
        Reader read;
    };
    using Entities = QVector<Entity>; ///< the few that a pass reads

    /// The group codes that mean something here; the coordinates come first, as they stand in Coordinates.
    enum Group { X, Y, X2, Y2, Begin, Text, Name, Flags, HorizontalAlignment, VerticalAlignment, Count, Other };
    using Coordinates = std::array<double, 4>;

    /// The groups of one TEXT; of a group that is repeated the last.
    struct TextGroups
    {
        unsigned present = 0; ///< which there are, a bit for each group
        unsigned numbers = 0; ///< of which coordinates the value is a number
        Coordinates at{};
        int alignment[2] = {0, 0};
        QString text;
    };

    static Group groupOf(unsigned tens, unsigned ones);
    bool readCode();
    bool readCodeValue();
    QStringView anyValue() const { return trimmedLine(value); } ///< of the current pair, whatever its code
    void pushBack();
    bool checkDxfFile();
    QString decodeText(const QString &s) const;

    bool readCoordinates(Coordinates &coordinates, int count);
    bool readPoint();
    bool readVertex();
    bool readVertices(bool &closed);
    bool readLine();
    bool readPolyline();
    bool readLwpolyline();
    bool readLwVertices(bool &closed);
    bool finishContour(bool closed);
    bool readText();
    bool readTextGroups(TextGroups &groups);
    void takeTextGroup(TextGroups &groups) const;

    bool loadPoint();
    bool loadLine();
    bool loadPolyline();
    bool loadLwpolyline();

    bool loadTextsOnly();
    bool loadEntities(const Entities &entities);
    bool scanSections(const Entities &entities);
    bool readEntity(const Entities &entities);
    void filterObjectDefs();
    void updatePointsDefs();
    void updateLastPolygonDef();

    const DefPoint *lastPolygonText();

    Group code = Other;      ///< of the current pair
    QStringView value;       ///< of the current pair; valid until the next is read; trimmed, unless the code is Other
    bool pushedBack = false; ///< the next readCodeValue() delivers the current pair again
    QString pushedBackValue; ///< what value points to then
    QVector<DefPoint> texts; ///< what the drawing says, and where
    std::unique_ptr<NearestSearch> textSearch; ///< over the texts, once they stay as they are, if they are sorted
    std::unique_ptr<WalkSearch> textWalk;      ///< if they are not
};
