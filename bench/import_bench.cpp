// Compares the import of synthetic map files with two other readers and prints the table of docs/performance.md:
//
//     lines    reading the lines only
//     import   the import, with two passes, point numbers and designations
//     gdal     GDAL, if available
//
// Processor speed varies over time. Measurements that are compared therefore run side by side in one round, and the
// table shows the medians of the ratios. Google Benchmark repeats the rounds of all files in random order. Memory is
// measured for the largest file of each layout, in a new process.

#include "gdalreader.h"
#include "machine.h"
#include "readers.h"
#include "resulttable.h"
#include "samplefiles.h"

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

struct SampleFile
{
    QString format;
    Layout layout;
    int vertexCount;
    QStringList paths; ///< the file, then the MID file of a MIF file

    QString name() const { return QFileInfo(paths.first()).fileName(); }
    double size() const
    {
        qint64 bytes = 0;
        for (const QString &path : paths)
            bytes += QFileInfo(path).size();
        return static_cast<double>(bytes);
    }
};

/// The files of one format and layout in ascending size.
struct Series
{
    QString name;
    QVector<SampleFile> files;
    SampleFile mosaic; ///< the largest mosaic of the same format
};

/// Prints and stores the medians.
class MedianReporter : public benchmark::ConsoleReporter
{
public:
    MedianReporter() : benchmark::ConsoleReporter(OO_Tabular) {}

    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs) {
            if (run.run_type != Run::RT_Aggregate || run.aggregate_name != "median")
                continue;
            m_medians[QString::fromStdString(run.run_name.function_name)] = run.counters;
            benchmark::ConsoleReporter::ReportRuns({run});
        }
    }

    /// The median of \a counter for \a series; 0 if not measured.
    double median(const Series &series, const std::string &counter) const
    {
        const benchmark::UserCounters counters = m_medians.value(series.name);
        const auto found = counters.find(counter);
        return found != counters.end() ? found->second.value : 0;
    }

private:
    QHash<QString, benchmark::UserCounters> m_medians;
};

void writeFile(const SampleFiles &files, const SampleFile &file)
{
    if (file.paths.size() == 2)
        files.writeMif(file.paths.first());
    else
        files.writeDxf(file.paths.first());
}

QVector<SampleFile> writeFiles(const QTemporaryDir &folder, const QVector<int> &vertexCounts)
{
    QVector<SampleFile> written;
    for (const int count : vertexCounts) {
        for (size_t i = 0; i < layouts.size(); ++i) {
            const QString base =
                folder.filePath(QStringLiteral("%1_%2").arg(QLatin1String(layoutNames.at(i))).arg(count));
            const SampleFiles files(layouts.at(i), count);
            written << SampleFile{
                formats[0], layouts.at(i), count, {base + QStringLiteral(".mif"), base + QStringLiteral(".mid")}};
            writeFile(files, written.last());
            written << SampleFile{formats[1], layouts.at(i), count, {base + QStringLiteral(".dxf")}};
            writeFile(files, written.last());
        }
    }
    return written;
}

QVector<Series> seriesOf(const QVector<SampleFile> &files)
{
    QVector<Series> all;
    for (const QString &format : formats) {
        for (size_t i = 0; i < layouts.size(); ++i) {
            Series series{format + QLatin1Char('/') + QLatin1String(layoutNames.at(i)), {}, {}};
            for (const SampleFile &file : files) {
                if (file.format == format && file.layout == layouts.at(i))
                    series.files << file;
            }
            series.mosaic = series.files.last().layout == Layout::Mosaic ? series.files.last() : all.last().mosaic;
            all << series;
        }
    }
    return all;
}

std::string nameOfImport(int vertexCount)
{
    return "import_" + std::to_string(vertexCount);
}

std::string nameOfGrowth(int vertexCount)
{
    return "growth_" + std::to_string(vertexCount);
}

/// Total seconds of several imports of one file.
struct Imports
{
    const SampleFile &file;
    double seconds = 0;
    int count = 0;

    void run(int times)
    {
        for (; times > 0; --times, ++count)
            seconds += secondsOfImport(file.paths.first());
    }
    double mean() const { return seconds / count; }
    double meanPerVertex() const { return mean() / file.vertexCount; }
};

// A single import of a smaller file is too short to compare, so it is repeated before and after the largest file.
std::vector<Imports> importAll(const QVector<SampleFile> &files, const std::function<void()> &importLargest)
{
    constexpr int maxTimes = 10;
    std::vector<Imports> smaller;
    for (int i = 0; i + 1 < files.size(); ++i)
        smaller.push_back(Imports{files.at(i)});
    const auto importSmaller = [&] {
        for (Imports &imports : smaller)
            imports.run(qMin(maxTimes, files.last().vertexCount / imports.file.vertexCount / 2));
    };
    importSmaller();
    importLargest();
    importSmaller();
    return smaller;
}

void measureRound(const Series &series, benchmark::UserCounters &counters)
{
    const SampleFile &largest = series.files.last();
    Imports imports{largest};
    Imports mosaic{series.mosaic};
    double lines = 0;
    std::vector<Imports> all = importAll(series.files, [&] {
        mosaic.run(1);
        lines = secondsOfLines(largest.paths) / 2;
        imports.run(1);
        lines += secondsOfLines(largest.paths) / 2;
        mosaic.run(1);
    });
    all.push_back(imports);
    for (size_t i = 0; i < all.size(); ++i) {
        counters[nameOfImport(all[i].file.vertexCount)] = all[i].mean();
        if (i > 0)
            counters[nameOfGrowth(all[i].file.vertexCount)] = all[i].meanPerVertex() / all[i - 1].meanPerVertex();
    }
    counters["lines"] = lines;
    counters["to_lines"] = imports.mean() / lines;
    if (largest.layout != Layout::Mosaic) {
        counters["to_mosaic"] = imports.mean() / mosaic.mean();
    } else if (hasGdal()) {
        counters["gdal"] = secondsOfGdal(largest.paths.first());
        counters["gdal_to_import"] = counters["gdal"] / imports.mean();
    }
}

void measureAll(const QVector<Series> &all)
{
    for (const Series &series : all) {
        const auto run = [series](benchmark::State &state) {
            for (auto _ : state)
                measureRound(series, state.counters);
        };
        benchmark::RegisterBenchmark(qPrintable(series.name), run)
            ->Iterations(1)
            ->Repetitions(repetitions)
            ->ReportAggregatesOnly(true);
    }
}

double memoryOfImport(const QString &path)
{
    const double before = peakMemory();
    secondsOfImport(path);
    return peakMemory() - before;
}

// Runs `import_bench --memory file`.
double memoryOf(const SampleFile &file)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--memory"), file.paths.first()});
    if (!process.waitForFinished(-1) || process.exitCode() != 0)
        qFatal("no memory measured for %s", qPrintable(file.name()));
    return process.readAllStandardOutput().trimmed().toDouble();
}

SpeedRow rowOf(const Series &series, const MedianReporter &measured)
{
    const SampleFile &largest = series.files.last();
    SpeedRow row;
    row.format = largest.format;
    row.layout = largest.layout;
    for (const SampleFile &file : series.files) {
        row.imports << measured.median(series, nameOfImport(file.vertexCount));
        row.growths << measured.median(series, nameOfGrowth(file.vertexCount));
    }
    row.lines = measured.median(series, "lines");
    row.gdal = measured.median(series, "gdal");
    row.toLines = measured.median(series, "to_lines");
    row.gdalToImport = measured.median(series, "gdal_to_import");
    row.toMosaic = measured.median(series, "to_mosaic");
    row.fileSize = largest.size();
    row.memory = memoryOf(largest);
    return row;
}

void printTable(const QVector<int> &vertexCounts, bool tableOnly)
{
    const QTemporaryDir folder;
    const QVector<Series> all = seriesOf(writeFiles(folder, vertexCounts));
    measureAll(all);
    MedianReporter measured;
    measured.SetOutputStream(tableOnly ? &std::cerr : &std::cout);
    benchmark::RunSpecifiedBenchmarks(&measured);
    if (!tableOnly)
        std::cout << '\n' << machineLine().toStdString() << "\n\n";
    QVector<SpeedRow> rows;
    for (const Series &series : all)
        rows << rowOf(series, measured);
    std::cout << resultTable(rows, vertexCounts).toStdString();
}

// Enables random interleaving, which can be set only by an option, and removes the options of Google Benchmark.
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
                 "  --quick     import only files of 100 000 vertices\n"
                 "  --markdown  print only the table to standard output\n"
                 "  --machine   print processor, system and build\n"
                 "  --memory    print the memory in bytes that an import of FILE needs\n";
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
