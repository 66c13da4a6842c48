#include "checkfile.h"

#include "checkgdal.h"
#include "checknumbers.h"
#include "checkscan.h"
#include "finding.h"
#include "reportpicture.h"

#include <QFileInfo>
#include <QTextCodec>

namespace {

FileReport emptyReport(const QString &fileName, const CheckOptions &options)
{
    FileReport report;
    report.fileName = fileName;
    report.format = formatOf(fileName);
    report.searchesPoints = options.searchPoints;
    report.searchesObjects = options.searchObjects;
    report.encoding = QString::fromLatin1(options.codec()->name());
    return report;
}

} // namespace

FileReport checkFile(const QString &fileName, const CheckOptions &options, bool withPicture)
{
    FileReport report = emptyReport(fileName, options);
    // GDAL would wait for a writer of a pipe.
    if (!QFileInfo(fileName).isFile())
        return reportWithFinding(fileName, options, QStringLiteral("unreadable"));
    const FoundContent found = findContent(fileName, withPicture);
    const FileFacts facts = scanFile(fileName, options, found.symbols, found.fillings);
    if (!facts.isReadable)
        return reportWithFinding(fileName, options, QStringLiteral("unreadable"));
    const ImportOutcome outcome = runImport(fileName, options, facts.lineCount);
    const ImportStatistics statistics = statisticsOf(outcome);
    report.isAccepted = outcome.isAccepted();
    report.messages = outcome.messages;
    report.imported = {outcome.objects.size(), statistics.contours, statistics.vertices, statistics.numbers,
                       outcome.knownPoints.size()};
    if (found.isOpened)
        report.found = FileReport::Found{found.areas, found.lines, found.points, found.texts};
    report.findings = findProblems({fileName, options, facts, outcome, statistics, found});
    if (withPicture)
        report.picture = lossPicture(found, outcome);
    return report;
}

FileReport reportWithFinding(const QString &fileName, const CheckOptions &options, const QString &id)
{
    FileReport report = emptyReport(fileName, options);
    report.findings = {findingWithoutEvidence(id)};
    return report;
}
