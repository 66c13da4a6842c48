#pragma once

#include "defpolygon.h"

#include <QFile>
#include <QMap>
#include <QPointF>
#include <QSet>
#include <QStringList>
#include <QTextStream>
#include <QVector>

/// What a run is told; the options of an importer by their names, and the format.
struct ImportOptions
{
    bool dxf = false;
    bool swapXY = false;
    bool searchPointDefs = false;
    QString pointPref;
    int pointStartNum = 0;
    bool searchObjectDefs = false;
    QString objectPref;
    int objectStartNum = 0;
    QString objectFileName;
    QString pointFileName;
    QByteArray encoding;
};

/// What a run leaves.
struct ImportOutcome
{
    bool result = false;
    QVector<DefPolygon> objects;
    QVector<DefPoint> points;
    int pointStartNum = 0;
    int objectStartNum = 0;
    QStringList messages;

    /// Points that an unstable sort may leave in either order had to be sorted: the run has more than one right end.
    bool orderIsOpen = false;
};

/// Index of the point nearest to (\a x, \a y), -1 without one; bisects and walks, also in points without order.
int referenceNearest(const QVector<DefPoint> &points, double x, double y);

/// Area centroid of the first contour, or the mean of its vertices.
QPointF referenceCentroid(const DefPolygon &object);

/// The import in its plainest form: no index, no buffer, each list searched as it stands.
///
/// It shares nothing with the importers but the records, so that what both give is right or wrong for two reasons. One
/// reader serves one run.
class ReferenceImport
{
public:
    explicit ReferenceImport(const ImportOptions &options);
    virtual ~ReferenceImport() = default;
    ReferenceImport(const ReferenceImport &) = delete;
    ReferenceImport &operator=(const ReferenceImport &) = delete;

    ImportOutcome run();

protected:
    virtual bool loadPoints() = 0;
    virtual bool loadPolygons() = 0;

    bool fail(const QString &message);
    QString fileName() const;
    void appendEmptyPolygon();
    void appendEmptyContour();
    QVector<DefPoint> &lastContour();
    void appendVert(double x, double y, bool closing);
    void setLastPolygonDef(const QString &def);
    void sort(QVector<DefPoint> &points);
    void rewind();

    ImportOptions m_options;
    ImportOutcome m_out;
    QTextCodec *m_codec;
    QFile m_file;
    QTextStream m_stream;
    QString m_line;
    int m_lineNum = 0;

private:
    bool open(const QString &name);
    bool readPoints();
    bool readPolygons();
    QString vertexDef(double x, double y);
};

/// Reads a MIF and its MID.
class ReferenceMif : public ReferenceImport
{
public:
    using ReferenceImport::ReferenceImport;

protected:
    bool loadPoints() override;
    bool loadPolygons() override;

private:
    bool readMifLine(bool tokenize);
    bool checkFile();
    bool openMid();
    bool readMidLine();
    bool readMidDef(QString *def);
    QString extractDef(const QString &line) const;

    bool beginPass(bool useMid);
    bool scan(bool points);
    bool readPointObject();
    bool readPolygonObject(const QString &keyword);
    bool skipRecord();
    bool readPoint();
    bool readLine();
    bool readVert(bool closing);
    bool readSub(int count, bool closeLast);
    bool readPline();
    bool readPlineMultiple();
    bool readRegion();

    QChar m_delimiter = QLatin1Char(',');
    QStringList m_tokens;
    QFile m_midFile;
    QTextStream m_midStream;
    QString m_midLine;
    int m_midLineNum = 0;
};

/// Reads a DXF.
class ReferenceDxf : public ReferenceImport
{
public:
    using ReferenceImport::ReferenceImport;

protected:
    bool loadPoints() override;
    bool loadPolygons() override;

private:
    enum class Pass { Points, Texts, Polygons };

    bool readPair();
    bool checkFile();
    QString decodeText(const QString &text) const;

    bool readCoordinates(QSet<QString> required, QMap<QString, double> &values);
    bool readPoint();
    bool readVertex();
    bool readLine();
    bool readPolyline();
    bool readPolylineVertices(bool &closed);
    bool readLwpolyline();
    bool readLwpolylineVertices(bool &closed);
    bool finishContour(bool closed);
    bool readText();
    bool collectText(QMap<QString, QString> &groups);

    bool scan(Pass pass);
    bool readEntity(Pass pass);
    bool readPolygon();
    bool readError();
    bool loadTextsOnly();
    void filterObjectDefs();
    void updatePointsDefs();
    void updateLastPolygonDef();

    QString m_code;
    QString m_value;
    bool m_pushedBack = false;
    QVector<DefPoint> m_texts;
};
