// A conversion reads the source, names its objects and points, writes them to temporary files, imports these for
// comparison, and only then moves them to their final place.

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
#include "gdalmessage.h"
#include "printable.h"

#include <QFileInfo>
#include <QStorageInfo>

#include <memory>
#include <new>
#include <vector>

namespace {

/// The result of a conversion, printed after the progress line has been cleared.
struct Outcome
{
    ExitStatus status = Complete;
    QString text; ///< the report or the error
};

Outcome interrupted()
{
    return {Incomplete, QStringLiteral("Interrupted. Nothing was written.")};
}

Outcome nothingToImport(const ConvertOptions &options, const ConvertContent &content)
{
    const QString text =
        QStringLiteral("There is nothing to import in \"%1\". Nothing was written.").arg(options.input);
    return {Incomplete, text + leftOutText(content)};
}

Outcome readFailed(ReadFailure failure, const ConvertOptions &options, const QString &error)
{
    if (failure == ReadFailure::Interrupted)
        return interrupted();
    if (failure == ReadFailure::Usage)
        return {WrongUsage, error};
    return {Unreadable, QStringLiteral("Cannot read \"%1\" to its end: %2").arg(options.input, error)};
}

// Returns false if the user interrupts it.
bool nameContent(const ConvertOptions &options, ConvertContent &content, ConvertProgress &progress)
{
    TextNames names(content, options.reach);
    std::vector<std::size_t> unnamed;
    for (std::size_t i = 0; i < content.objects.size() && options.designation.isEmpty(); ++i) {
        if (content.objects[i].def.trimmed().isEmpty())
            unnamed.push_back(i);
    }
    const auto isUnnumbered = [&options](const ContentPoint &point) {
        return options.number.isEmpty() && point.def.trimmed().isEmpty();
    };
    progress.begin(QStringLiteral("Naming"),
                   3 * static_cast<qint64>(unnamed.size()) + 2 * static_cast<qint64>(content.points.size()));
    for (const ContentPoint &point : content.points) {
        if (isUnnumbered(point))
            names.claimNumber(point);
        if (!progress.advance())
            return false;
    }
    for (const auto step : {&TextNames::claimTexts, &TextNames::nameByOwnText, &TextNames::nameByOtherText}) {
        for (const std::size_t object : unnamed) {
            (names.*step)(object);
            if (!progress.advance())
                return false;
        }
    }
    for (ContentPoint &point : content.points) {
        if (isUnnumbered(point))
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

/// Facts about the source that are needed after it has been closed.
struct SourceFacts
{
    SourceEncoding encoding;
    std::unique_ptr<OGRSpatialReference> srs;
};

// The source is closed on return, because it may hold a copy of the input in memory.
Outcome readContent(const ConvertOptions &options, ConvertContent &content, SourceFacts &facts, GdalMessages &messages,
                    ConvertProgress &progress)
{
    ConvertSource source(options, content);
    if (!source.open())
        return ConvertProgress::isInterrupted() ? interrupted() : Outcome{Unreadable, source.error()};
    ConvertReader reader(options, source, content, messages, progress);
    const ReadFailure failure = reader.read();
    facts.encoding = source.encoding();
    facts.srs = reader.takeSpatialReference();
    return failure == ReadFailure::None ? Outcome()
                                        : readFailed(failure, options, source.withPlaceInInput(reader.error()));
}

// GDAL does not report every failure to write, such as a full disk.
Outcome writeFailed(const ConvertOptions &options, const QString &error)
{
    constexpr qint64 block = 65536;
    const QStorageInfo disk(QFileInfo(options.output).absolutePath());
    const bool isFull = disk.isValid() && disk.bytesAvailable() < block;
    const QString reason = isFull ? QStringLiteral("The disk is full.") : error;
    return {Incomplete, QStringLiteral("Cannot write \"%1\": %2").arg(options.output, reason)};
}

Outcome writeContent(const ConvertOptions &options, ConvertContent &content, const OGRSpatialReference *srs,
                     ConvertOutput &output, ConvertProgress &progress)
{
    ConvertWriter writer(content, options.encoding);
    if (!writer.write(output.temporaryName(), srs, progress))
        return ConvertProgress::isInterrupted() ? interrupted() : writeFailed(options, writer.error());
    progress.begin(QStringLiteral("Verifying"), 0);
    ConvertVerifier verifier;
    if (!verifier.verify(content, output.temporaryName(), options.encoding))
        return writeFailed(options, verifier.error());
    if (ConvertProgress::isInterrupted())
        return interrupted();
    Interruption::beginReplacing();
    return output.commit() ? Outcome() : Outcome{Incomplete, output.error()};
}

void addWarnings(const GdalMessages &messages, ConvertContent &content)
{
    if (messages.warningCount() == 0)
        return;
    content.notes[QStringLiteral("gdal-warning")] = messages.warningCount();
    content.firstWarning = messages.firstWarning();
}

Outcome convert(const ConvertOptions &options)
{
    // The signals are watched before there is a temporary folder, and until it is removed.
    ConvertProgress progress;
    ConvertOutput output(options.output);
    if (output.isSource(options.input))
        return {WrongUsage, QStringLiteral("The output would overwrite the input \"%1\".").arg(options.input)};
    if (!output.prepare(options.force))
        return output.exists()
                   ? Outcome{WrongUsage, QStringLiteral("%1 Use --force to overwrite it.").arg(output.error())}
                   : Outcome{Incomplete, output.error()};
    Interruption::setTemporaryFiles(output.temporaryPaths());
    ConvertContent content;
    GdalMessages messages;
    SourceFacts facts;
    Outcome outcome = readContent(options, content, facts, messages, progress);
    if (outcome.status != Complete)
        return outcome;
    if (!nameContent(options, content, progress))
        return interrupted();
    removeUnusablePoints(content);
    if (content.objects.empty() && content.points.empty())
        return nothingToImport(options, content);
    outcome = writeContent(options, content, facts.srs.get(), output, progress);
    addWarnings(messages, content);
    if (outcome.status == Complete)
        outcome.text = options.json ? convertJson(options, content, facts.encoding)
                                    : convertText(options, content, facts.encoding);
    return outcome;
}

Outcome convertWithinMemory(const ConvertOptions &options)
{
    try {
        return convert(options);
    } catch (const std::bad_alloc &) {
        return {Incomplete, QStringLiteral("There is not enough memory to convert \"%1\".").arg(options.input)};
    }
}

} // namespace

int runConvert(const QStringList &arguments)
{
    ConvertCommandLine commandLine;
    if (!commandLine.read(arguments))
        return fail(QStringLiteral("%1 See importprepare convert --help.").arg(commandLine.error()));
    if (!commandLine.options().help.isEmpty())
        return printInformation(commandLine.options().help);
    const Outcome outcome = convertWithinMemory(commandLine.options());
    if (outcome.status != Complete)
        return fail(outcome.text, outcome.status);
    return printResult(printableLines(outcome.text)) ? Complete : WrongUsage;
}
