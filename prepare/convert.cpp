// A conversion reads the source, names its objects and points, writes them, imports the result for comparison, and only
// then puts it in its place.

#include "convert.h"

#include "console.h"
#include "convertnames.h"
#include "convertoutput.h"
#include "convertpoints.h"
#include "convertprogress.h"
#include "convertreader.h"
#include "convertreport.h"
#include "convertsource.h"
#include "convertverifier.h"
#include "convertwriter.h"

#include <QFileInfo>
#include <QStorageInfo>

#include <cpl_error.h>

#include <memory>
#include <new>

namespace {

// The messages of GDAL are part of ours where they matter.
class QuietGdal
{
public:
    QuietGdal() { CPLPushErrorHandler(CPLQuietErrorHandler); }
    ~QuietGdal() { CPLPopErrorHandler(); }
    QuietGdal(const QuietGdal &) = delete;
    QuietGdal &operator=(const QuietGdal &) = delete;
};

int failInterrupted()
{
    return fail(QStringLiteral("Interrupted. Nothing was written."), Incomplete);
}

int failRead(ReadFailure failure, const ConvertOptions &options, const QString &error)
{
    if (failure == ReadFailure::Interrupted)
        return failInterrupted();
    if (failure == ReadFailure::Usage)
        return fail(error);
    return fail(QStringLiteral("Cannot read \"%1\" to its end: %2").arg(options.input, error), Unreadable);
}

// Returns false if the user interrupts it.
bool nameContent(const ConvertOptions &options, ConvertContent &content, ConvertProgress &progress)
{
    TextNames names(content, options.reach);
    progress.begin(QStringLiteral("Naming"), static_cast<qint64>(content.objects.size() + content.points.size()));
    for (std::size_t i = 0; i < content.objects.size(); ++i) {
        if (options.designation.isEmpty() && content.objects[i].def.trimmed().isEmpty())
            names.nameObject(i);
        if (!progress.advance())
            return false;
    }
    for (ContentPoint &point : content.points) {
        if (options.number.isEmpty() && point.def.trimmed().isEmpty())
            names.numberPoint(point);
        if (!progress.advance())
            return false;
    }
    for (const ContentText &text : content.texts) {
        if (!text.isUsed)
            ++content.leftOut[QStringLiteral("unused-text")];
    }
    return true;
}

// What is known of the source after reading it.
struct SourceFacts
{
    QByteArray encoding;
    std::unique_ptr<OGRSpatialReference> srs;
};

// Closes the source at the end, which may hold a copy of the input in memory.
int readContent(const ConvertOptions &options, ConvertContent &content, SourceFacts &facts, ConvertProgress &progress)
{
    ConvertSource source(options, content);
    if (!source.open())
        return fail(source.error(), Unreadable);
    ConvertReader reader(options, source, content, progress);
    const ReadFailure failure = reader.read();
    facts.encoding = source.encoding();
    facts.srs = reader.takeSpatialReference();
    return failure == ReadFailure::None ? Complete : failRead(failure, options, reader.error());
}

// GDAL does not report every failure to write.
int failWrite(const ConvertOptions &options, const QString &error)
{
    constexpr qint64 block = 65536;
    const QStorageInfo disk(QFileInfo(options.output).absolutePath());
    const bool isFull = disk.isValid() && disk.bytesAvailable() < block;
    return fail(QStringLiteral("Cannot write \"%1\": %2")
                    .arg(options.output, isFull ? QStringLiteral("The disk is full.") : error),
                Incomplete);
}

int writeContent(const ConvertOptions &options, ConvertContent &content, const OGRSpatialReference *srs,
                 ConvertOutput &output, ConvertProgress &progress)
{
    ConvertWriter writer(content, options.encoding);
    if (!writer.write(output.temporaryName(), srs, progress))
        return ConvertProgress::isInterrupted() ? failInterrupted() : failWrite(options, writer.error());
    progress.begin(QStringLiteral("Verifying"), 0);
    ConvertVerifier verifier;
    if (!verifier.verify(content, output.temporaryName(), options.encoding))
        return failWrite(options, verifier.error());
    if (ConvertProgress::isInterrupted())
        return failInterrupted();
    return output.commit() ? Complete : fail(output.error(), Incomplete);
}

int convert(const ConvertOptions &options)
{
    ConvertOutput output(options.output);
    if (!output.prepare(options.force))
        return fail(output.exists() ? QStringLiteral("%1 Use --force to overwrite it.").arg(output.error())
                                    : output.error(),
                    output.exists() ? WrongUsage : Incomplete);
    const QuietGdal quiet;
    ConvertProgress progress;
    ConvertContent content;
    SourceFacts facts;
    int status = readContent(options, content, facts, progress);
    if (status != Complete)
        return status;
    if (!nameContent(options, content, progress))
        return failInterrupted();
    removeUnusablePoints(content);
    status = writeContent(options, content, facts.srs.get(), output, progress);
    if (status != Complete)
        return status;
    printLine(stdout, options.json ? convertJson(options, content, facts.encoding)
                                   : convertText(options, content, facts.encoding));
    return Complete;
}

} // namespace

int runConvert(const QStringList &arguments)
{
    ConvertCommandLine commandLine;
    if (!commandLine.read(arguments))
        return fail(QStringLiteral("%1 See importprepare convert --help.").arg(commandLine.error()));
    if (!commandLine.options().help.isEmpty())
        return printLine(stdout, commandLine.options().help) ? Complete : Incomplete;
    try {
        return convert(commandLine.options());
    } catch (const std::bad_alloc &) {
        return fail(QStringLiteral("There is not enough memory to convert \"%1\".").arg(commandLine.options().input),
                    Incomplete);
    }
}
