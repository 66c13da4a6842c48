// Measures importprepare with a drawing of a million vertices. A check is compared with the import plus a read by GDAL,
// a conversion with that of GDAL itself.
//
//     prepare_bench [--quick] [--markdown] [--benchmark_filter=...]
//     prepare_bench --measure STEP FILE
//
// Each step runs in a new process, which reports its processor time and its memory. Steps that are compared run one
// after the other, and the table shows the medians of the ratios. --quick takes 100,000 vertices. --markdown has no
// effect; it is accepted because import_bench needs it.

#include "actiontable.h"
#include "checkcommand.h"
#include "convert.h"
#include "gdalreader.h"
#include "machine.h"
#include "readers.h"
#include "samplefiles.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QHash>
#include <QProcess>
#include <QTemporaryDir>

#include <gdal_utils.h>

#include <array>
#include <cstdio>

namespace {

// In the order of the table.
const QVector<Bound> bounds{
    {"check", "проверить чертёж (check), к импорту и чтению GDAL вместе", 1.3},
    {"convert", "преобразовать его (convert), к преобразованию самим GDAL", 3},
    {"check/memory", "память для проверки, к файлу", 8},
    {"convert/memory", "память для преобразования, к файлу", 8},
};

constexpr int repetitions = 5;

QString outputBeside(const QString &path)
{
    return path + QStringLiteral(".out.mif");
}

void import(const QString &path)
{
    secondsOfImport(path);
}

void readByGdal(const QString &path)
{
    secondsOfGdal(path);
}

void check(const QString &path)
{
    runCheck({QStringLiteral("--json"), path});
}

void convert(const QString &path)
{
    runConvert({QStringLiteral("--json"), QStringLiteral("--force"), path, outputBeside(path)});
}

/// Same as `ogr2ogr -f "MapInfo File" -dsco FORMAT=MIF`.
void convertByGdal(const QString &path)
{
    GDALAllRegister();
    const QByteArray output = QFile::encodeName(outputBeside(path));
    const std::array<const char *, 5> arguments{"-f", "MapInfo File", "-dsco", "FORMAT=MIF", nullptr};
    auto *const options = GDALVectorTranslateOptionsNew(const_cast<char **>(arguments.data()), nullptr);
    GDALDatasetH source = GDALOpenEx(QFile::encodeName(path).constData(), GDAL_OF_VECTOR, nullptr, nullptr, nullptr);
    GDALDatasetH target = GDALVectorTranslate(output.constData(), nullptr, 1, &source, options, nullptr);
    if (target == nullptr)
        qFatal("GDAL cannot convert %s", qPrintable(path));
    GDALClose(target);
    GDALClose(source);
    GDALVectorTranslateOptionsFree(options);
}

using Step = void (*)(const QString &path);

const QHash<QString, Step> &steps()
{
    static const QHash<QString, Step> rows{
        {QStringLiteral("import"), import},         {QStringLiteral("gdal"), readByGdal},
        {QStringLiteral("check"), check},           {QStringLiteral("convert"), convert},
        {QStringLiteral("ogr2ogr"), convertByGdal},
    };
    return rows;
}

/// Cost of one step.
struct Cost
{
    double seconds = 0; ///< of processor time
    double bytes = 0;   ///< growth of the peak memory of the process
};

// The steps print their reports to the standard output, so the cost goes to the error output.
int printCost(Step step, const QString &path)
{
    const double before = peakMemory();
    const double begin = processorSeconds();
    step(path);
    std::fprintf(stderr, "cost %f %f\n", processorSeconds() - begin, peakMemory() - before);
    return 0;
}

/// Runs `prepare_bench --measure step path`.
Cost costOf(const QString &step, const QString &path)
{
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--measure"), step, path});
    process.waitForFinished(-1);
    const QByteArray lastLine = process.readAllStandardError().trimmed().split('\n').last();
    const QList<QByteArray> words = lastLine.split(' ');
    if (words.size() != 3 || words.first() != "cost")
        qFatal("%s failed: %s", qPrintable(step), lastLine.constData());
    return {words.at(1).toDouble(), words.at(2).toDouble()};
}

/// The sample file and the costs of the last round.
class PrepareRounds
{
public:
    explicit PrepareRounds(int vertexCount) : m_path(m_folder.filePath(QStringLiteral("mosaic.dxf")))
    {
        SampleFiles(Layout::Mosaic, vertexCount).writeDxf(m_path);
    }

    double checkRatio()
    {
        const double others =
            costOf(QStringLiteral("import"), m_path).seconds + costOf(QStringLiteral("gdal"), m_path).seconds;
        m_check = costOf(QStringLiteral("check"), m_path);
        return m_check.seconds / others;
    }

    double convertRatio()
    {
        // The MIF driver does not overwrite.
        removeOutput();
        const double gdal = costOf(QStringLiteral("ogr2ogr"), m_path).seconds;
        m_convert = costOf(QStringLiteral("convert"), m_path);
        removeOutput();
        return m_convert.seconds / gdal;
    }

    double checkMemory() const { return m_check.bytes / fileSize(); }
    double convertMemory() const { return m_convert.bytes / fileSize(); }

private:
    double fileSize() const { return static_cast<double>(QFileInfo(m_path).size()); }

    void removeOutput() const
    {
        const QString output = outputBeside(m_path);
        QFile::remove(output);
        QFile::remove(output.left(output.size() - 1) + QLatin1Char('d'));
    }

    const QTemporaryDir m_folder;
    const QString m_path;
    Cost m_check;
    Cost m_convert;
};

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 4 && arguments.at(1) == QLatin1String("--measure")) {
        const Step step = steps().value(arguments.at(2));
        return step != nullptr ? printCost(step, arguments.at(3)) : 2;
    }
    benchmark::Initialize(&argc, argv);
    PrepareRounds rounds(arguments.contains(QStringLiteral("--quick")) ? 100000 : 1000000);
    addAction(
        "check", [&rounds] { return rounds.checkRatio(); }, repetitions);
    addAction(
        "convert", [&rounds] { return rounds.convertRatio(); }, repetitions);
    addAction(
        "check/memory", [&rounds] { return rounds.checkMemory(); }, repetitions);
    addAction(
        "convert/memory", [&rounds] { return rounds.convertMemory(); }, repetitions);
    ActionTable table(bounds);
    benchmark::RunSpecifiedBenchmarks(&table);
    return 0;
}
