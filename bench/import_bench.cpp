// Measures the import of made-up map files beside two other readers of the same files, and prints the table of
// docs/performance.md:
//
//     lines    the bare reading of lines
//     import   the import, which reads each file twice and finds the numbers and the designations
//     gdal     GDAL, where the program is built with it
//
// Google Benchmark repeats them in a random order, so that what slows the machine for a while slows them all, and the
// table compares their medians. Memory is measured in a process of its own for each file.

#include "gdalreader.h"
#include "machine.h"
#include "mapfiles.h"
#include "readers.h"
#include "speedtable.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QHash>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextStream>

#include <benchmark/benchmark.h>

#include <functional>
#include <iostream>
#include <string>
#include <vector>

namespace {

constexpr int repetitions = 7;
constexpr std::array<const char *, layouts.size()> layoutNames{"mosaic", "disjoint", "grid",
                                                               "column", "jittered", "stray"};
const QStringList formats{QStringLiteral("MIF"), QStringLiteral("DXF")};

struct MapFile
{
    QString format;
    Layout layout;
    int vertexCount;
    QStringList paths; ///< of the file and of its MID file

    QString name() const { return QFileInfo(paths.first()).fileName(); }
    double size() const
    {
        qint64 bytes = 0;
        for (const QString &path : paths)
            bytes += QFileInfo(path).size();
        return static_cast<double>(bytes);
    }
};

/// Shows the medians as they come, and keeps them.
class MedianReporter : public benchmark::ConsoleReporter
{
public:
    MedianReporter() : benchmark::ConsoleReporter(OO_Tabular) {}

    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs) {
            if (run.run_type != Run::RT_Aggregate || run.aggregate_name != "median")
                continue;
            m_seconds[QString::fromStdString(run.run_name.function_name)] = run.GetAdjustedRealTime() / 1000;
            benchmark::ConsoleReporter::ReportRuns({run});
        }
    }

    /// The median of \a reader for \a file; 0 when it has not been measured.
    double seconds(const QString &reader, const MapFile &file) const
    {
        return m_seconds.value(reader + QLatin1Char('/') + file.name());
    }

private:
    QHash<QString, double> m_seconds;
};

void writeFile(const MapFiles &files, const MapFile &file)
{
    if (file.paths.size() == 2)
        files.writeMif(file.paths.first());
    else
        files.writeDxf(file.paths.first());
}

QVector<MapFile> writeFiles(const QTemporaryDir &folder, const QVector<int> &vertexCounts)
{
    QVector<MapFile> written;
    for (const int count : vertexCounts) {
        for (size_t i = 0; i < layouts.size(); ++i) {
            const QString base =
                folder.filePath(QStringLiteral("%1_%2").arg(QLatin1String(layoutNames.at(i))).arg(count));
            const MapFiles files(layouts.at(i), count);
            written << MapFile{
                formats[0], layouts.at(i), count, {base + QStringLiteral(".mif"), base + QStringLiteral(".mid")}};
            writeFile(files, written.last());
            written << MapFile{formats[1], layouts.at(i), count, {base + QStringLiteral(".dxf")}};
            writeFile(files, written.last());
        }
    }
    return written;
}

// A small file is over too soon for a single reading to tell much.
void measure(const QString &reader, const MapFile &file, const std::function<double()> &read)
{
    const auto run = [read](benchmark::State &state) {
        for (auto _ : state)
            state.SetIterationTime(read());
    };
    const QByteArray name = (reader + QLatin1Char('/') + file.name()).toUtf8();
    benchmark::RegisterBenchmark(name.constData(), run)
        ->UseManualTime()
        ->Iterations(qBound(1, 200000 / file.vertexCount, 10))
        ->Repetitions(repetitions)
        ->ReportAggregatesOnly(true)
        ->Unit(benchmark::kMillisecond);
}

void measureAll(const QVector<MapFile> &files, int largest)
{
    for (const MapFile &file : files) {
        const QString path = file.paths.first();
        measure(QStringLiteral("import"), file, [path] { return secondsOfImport(path); });
        if (file.vertexCount != largest)
            continue;
        measure(QStringLiteral("lines"), file, [paths = file.paths] { return secondsOfLines(paths); });
        if (hasGdal() && file.layout == Layout::Mosaic)
            measure(QStringLiteral("gdal"), file, [path] { return secondsOfGdal(path); });
    }
}

double memoryOfImport(const QString &path)
{
    const double before = peakMemory();
    secondsOfImport(path);
    return peakMemory() - before;
}

// The program itself, started anew: `import_bench --memory file`.
double memoryOf(const MapFile &file)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--memory"), file.paths.first()});
    if (!process.waitForFinished(-1) || process.exitCode() != 0)
        qFatal("no memory measured for %s", qPrintable(file.name()));
    return process.readAllStandardOutput().trimmed().toDouble();
}

SpeedRow rowOf(const QVector<MapFile> &filesOfRow, const MedianReporter &measured)
{
    const MapFile &largest = filesOfRow.last();
    SpeedRow row;
    row.format = largest.format;
    row.layout = largest.layout;
    for (const MapFile &file : filesOfRow)
        row.imports << measured.seconds(QStringLiteral("import"), file);
    row.lines = measured.seconds(QStringLiteral("lines"), largest);
    row.gdal = measured.seconds(QStringLiteral("gdal"), largest);
    row.fileSize = largest.size();
    row.memory = memoryOf(largest);
    return row;
}

QVector<SpeedRow> rowsOf(const QVector<MapFile> &files, const MedianReporter &measured)
{
    QVector<SpeedRow> rows;
    for (const QString &format : formats) {
        for (const Layout layout : layouts) {
            QVector<MapFile> filesOfRow;
            for (const MapFile &file : files) {
                if (file.format == format && file.layout == layout)
                    filesOfRow << file;
            }
            rows << rowOf(filesOfRow, measured);
        }
    }
    return rows;
}

void printTable(const QVector<int> &vertexCounts, bool tableOnly)
{
    const QTemporaryDir folder;
    const QVector<MapFile> files = writeFiles(folder, vertexCounts);
    measureAll(files, vertexCounts.last());
    MedianReporter measured;
    measured.SetOutputStream(tableOnly ? &std::cerr : &std::cout);
    benchmark::RunSpecifiedBenchmarks(&measured);
    if (!tableOnly)
        std::cout << '\n' << machineLine().toStdString() << "\n\n";
    std::cout << speedTable(rowsOf(files, measured), vertexCounts).toStdString();
}

// Google Benchmark takes its own options away, of which this one cannot be set otherwise.
QStringList ownArguments(int argc, char **argv)
{
    std::string interleave = "--benchmark_enable_random_interleaving=true";
    std::vector<char *> all(argv, argv + argc);
    all.insert(all.begin() + 1, interleave.data());
    int count = static_cast<int>(all.size());
    benchmark::Initialize(&count, all.data());
    QStringList own;
    for (int i = 1; i < count; ++i)
        own << QString::fromLocal8Bit(all.at(static_cast<size_t>(i)));
    return own;
}

int usage()
{
    std::cerr << "usage: import_bench [--quick] [--markdown] [--benchmark_...] | --machine | --memory FILE\n\n"
                 "  --quick     files of 100 000 vertices only\n"
                 "  --markdown  nothing but the table on the standard output\n"
                 "  --machine   print what the program runs on\n"
                 "  --memory    print how much memory, in bytes, the import of FILE takes\n";
    return 2;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QStringList arguments = ownArguments(argc, argv);
    if (arguments == QStringList{QStringLiteral("--machine")}) {
        std::cout << machineLine().toStdString() << '\n';
        return 0;
    }
    if (arguments.size() == 2 && arguments.first() == QStringLiteral("--memory")) {
        std::cout << std::fixed << memoryOfImport(arguments.last()) << '\n';
        return 0;
    }
    const bool quick = arguments.removeAll(QStringLiteral("--quick")) > 0;
    const bool tableOnly = arguments.removeAll(QStringLiteral("--markdown")) > 0;
    if (!arguments.isEmpty())
        return usage();
    printTable(quick ? QVector<int>{100000} : QVector<int>{10000, 100000, 1000000}, tableOnly);
    return 0;
}
