#pragma once

#include "defpolygon.h"

#include <QDir>
#include <QFile>
#include <QMap>
#include <QPointF>
#include <QStringList>
#include <QTextStream>
#include <QVector>

/// The format and the options of an importer, which have the same names there.
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

/// The state after a run.
struct ImportOutcome
{
    bool result = false;
    QVector<DefPolygon> objects;
    QVector<DefPoint> points;
    int pointStartNum = 0;
    int objectStartNum = 0;
    QStringList messages;

    /// True if different points or texts at exactly the same place were sorted. The sort of the importers is
    /// unstable, so more than one outcome is correct.
    bool orderIsUnspecified = false;
};

/// Reference implementation of the import: no index, no buffer, linear searches.
///
/// It shares only the record types with the importers, so a bug goes unnoticed only if both have it. Use one reader per
/// run.
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

    /// Index of the point nearest to (\a x, \a y), or -1. Bisects and walks in both directions, even in unsorted
    /// points.
    static int nearest(const QVector<DefPoint> &points, double x, double y);
    static bool isWithinTolerance(const DefPoint &a, const DefPoint &b);

    bool fail(const QString &message);
    bool failWithFileName(const QString &message, const QFile &file);
    void beginObject() { m_out.objects.append(DefPolygon()); }
    void beginContour() { m_out.objects.last().contours.append(QVector<DefPoint>()); }
    QVector<DefPoint> &lastContour() { return m_out.objects.last().contours.last(); }
    void appendVert(double x, double y, bool closing = false);
    void setLastPolygonDef(const QString &def);
    void sort(QVector<DefPoint> &points);

    ImportOptions m_options;
    ImportOutcome m_out;
    QTextCodec *m_codec;
    QFile m_file;
    QTextStream m_stream;
    int m_lineNum = 0;

private:
    bool open(const QString &name);
    void removeDuplicatePoints();
    QString vertexDef(double x, double y);
};

/// Reads a MIF file and its MID file.
class ReferenceMif : public ReferenceImport
{
public:
    using ReferenceImport::ReferenceImport;

protected:
    bool loadPoints() override { return load(m_options.searchPointDefs, true); }
    bool loadPolygons() override { return load(m_options.searchObjectDefs, false); }

private:
    bool load(bool useMid, bool points);
    bool readHeader();
    bool openMid();
    bool scan(bool points);
    bool readMifLine();
    bool readMidDef(QString &def);
    QString firstField(const QString &record) const;
    QVector<double> numbers(int first, int count) const;

    bool readPoint();
    bool readObject(const QString &keyword);
    bool readLine();
    bool readPline();
    bool readRegion();
    bool readSubs(int count, int minVertices, bool closeLast);
    bool readSub(int count, bool closeLast);

    QChar m_delimiter;
    QString m_line;
    QStringList m_tokens;
    QFile m_midFile;
    QTextStream m_midStream;
    int m_midLineNum = 0;
};

/// Reads a DXF drawing.
class ReferenceDxf : public ReferenceImport
{
public:
    using ReferenceImport::ReferenceImport;

protected:
    bool loadPoints() override;
    bool loadPolygons() override;

private:
    enum class Pass { Points, Texts, Polygons };
    using Coordinates = QMap<QString, double>;

    bool readPair();
    bool isPair(const char *code, const char *value) const;
    bool readHeader();
    QString decoded(QString text) const;

    bool readCoordinates(const QStringList &codes, Coordinates &values);
    bool readPoint();
    bool readVertex();
    bool readLine();
    bool readPolyline();
    bool readLwpolyline();
    bool finishContour(bool closed);
    bool readText();
    bool readTextGroups(QMap<QString, QString> &groups);

    bool load(Pass pass);
    bool scan(Pass pass);
    bool readEntity(Pass pass);
    bool readPolygon();
    void loadTexts();
    void removePointNumbers();
    void namePoints();
    QString nearestText() const;

    QString m_code;
    QString m_value;
    bool m_pushedBack = false;
    QVector<DefPoint> m_texts;
};
