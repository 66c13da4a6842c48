#pragma once

#include "input.h"
#include "mapimport_dxf.h"
#include "mapimport_mif.h"
#include "mapimport_status.h"
#include "testing.h"

#include <QStringList>
#include <QVector>

/// Ends the process, which the fuzzer takes for a find, unless the sentence \a what \a holds.
void require(bool holds, const char *what);

/// The files of the runs, in a folder of the process.
const TextFixture &files();

/// What a user enters before a run.
struct Options
{
    /// Takes all but the file names from \a input. Generated numbers and designations begin in a way that no file has.
    explicit Options(Input &input);

    bool searchPointDefs;
    bool searchObjectDefs;
    bool swapXY;
    bool usePointFile;
    QByteArray encoding;
    QString pointPref;
    QString objectPref;
    int pointStartNum;
    int objectStartNum;
    QString objectFileName;
    QString pointFileName;
};

/// How a format tells of itself.
enum class Format { Mif, Dxf };

/// One pass of a run.
struct Pass
{
    bool ran = false;
    bool ok = false;
    QStringList messages;
};

/// What one run has brought.
struct Run
{
    bool ok = false;
    QVector<DefPolygon> objects;
    QStringList messages;
    Pass pointPass;
    Pass objectPass;
    QVector<DefPoint> read;  ///< the known points in the order of the file
    QVector<DefPoint> start; ///< the known points as the first object finds them
    QVector<DefPoint> known; ///< the known points after the run
    int pointStartNum = 0;
    int objectStartNum = 0;
};

/// The lines of a file, read in the plainest way.
QStringList linesOf(const QString &fileName, const QByteArray &encoding);

/// For each contour of the objects of a MIF file, whether its last vertex closes a ring.
QVector<QVector<bool>> closedRings(const Options &options, const QVector<DefPolygon> &objects);

/// Every rule that a run keeps whatever the files hold.
void checkRun(const Options &options, const Run &run, Format format);

/// Two runs over the same files bring the same.
void checkSame(const Run &a, const Run &b);

/// The result is XML with a row for each object: its designation, and a row for each vertex and between two contours.
void checkResult(const QVector<DefPolygon> &objects);

/// Prepares the application and a dialog, which make the results.
void prepareResults(int *argc, char **argv);

/// An importer that notes what its passes do.
template <typename Import>
class Watched : public Import
{
public:
    /// Runs an import with \a options.
    static Run run(const Options &options)
    {
        Run run;
        const StatusRecorder host;
        Watched importer(host, run);
        importer.searchPointDefs = options.searchPointDefs;
        importer.searchObjectDefs = options.searchObjectDefs;
        importer.swapXY = options.swapXY;
        importer.setEncoding(options.encoding);
        importer.pointPref = options.pointPref;
        importer.objectPref = options.objectPref;
        importer.pointStartNum = options.pointStartNum;
        importer.objectStartNum = options.objectStartNum;
        importer.objectFileName = options.objectFileName;
        importer.pointFileName = options.pointFileName;
        importer.objects = &run.objects;
        run.ok = importer.importMap();
        run.messages = host.messages();
        run.known = knownPoints(importer);
        run.pointStartNum = importer.pointStartNum;
        run.objectStartNum = importer.objectStartNum;
        return run;
    }

protected:
    Watched(const StatusRecorder &host, Run &run) : m_host(host), m_run(run) {}

    bool loadPoints() override
    {
        const int before = m_host.messages().size();
        const bool ok = Import::loadPoints();
        m_run.pointPass = Pass{true, ok, m_host.messages().mid(before)};
        m_run.read = this->points;
        return ok;
    }

    bool loadPolygons() override
    {
        const int before = m_host.messages().size();
        m_run.start = this->points;
        const bool ok = Import::loadPolygons();
        m_run.objectPass = Pass{true, ok, m_host.messages().mid(before)};
        return ok;
    }

private:
    const StatusRecorder &m_host;
    Run &m_run;
};

/// Runs the files of \a options twice and checks all that can be told of the runs.
template <typename Import>
Run checkedRun(const Options &options, Format format)
{
    Run run = Watched<Import>::run(options);
    checkRun(options, run, format);
    checkSame(run, Watched<Import>::run(options));
    return run;
}
