#include "reportcommand.h"

#include "console.h"
#include "report.h"

#include <QCommandLineParser>
#include <QFile>
#include <QFileInfo>

namespace {

/// Appends the reports in \a fileName, one a line, to \a reports. Returns false after errors, which have been reported.
bool readReports(const QString &fileName, QVector<FileReport> &reports)
{
    QFile file(fileName);
    if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly)) {
        fail(QStringLiteral("Cannot read \"%1\".").arg(fileName));
        return false;
    }
    constexpr int maxShown = 3;
    int faulty = 0;
    for (qint64 number = 1; !file.atEnd(); ++number) {
        const QByteArray line = file.readLine().trimmed();
        if (line.isEmpty())
            continue;
        const std::optional<FileReport> report = reportFromJson(line);
        if (report)
            reports.append(*report);
        else if (++faulty <= maxShown)
            fail(QStringLiteral("\"%1\": line %2 is not a report.").arg(fileName).arg(number));
    }
    if (faulty > maxShown)
        fail(QStringLiteral("\"%1\": and %2 more lines are not reports.").arg(fileName).arg(faulty - maxShown));
    return faulty == 0;
}

} // namespace

int runReport(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Merges reports, as printed by importprepare check --json, into a table of totals.\n\n"
                       "Exit status: that of the checks; 3 if a file or a line cannot be read."));
    const QString help = QStringLiteral("help");
    parser.addOption({{QStringLiteral("h"), help}, QStringLiteral("Prints this help and exits.")});
    parser.addPositionalArgument(QStringLiteral("file"), QStringLiteral("Files with one JSON object per line."),
                                 QStringLiteral("file..."));
    if (!parser.parse(QStringList{QStringLiteral("importprepare")} + arguments))
        return fail(parser.errorText());
    if (parser.isSet(help))
        return printInformation(
            parser.helpText().replace(QLatin1String("[options]"), QLatin1String("report [options]")));
    if (parser.positionalArguments().isEmpty())
        return fail(QStringLiteral("No files to report. See importprepare report --help."));
    QVector<FileReport> reports;
    const QStringList files = parser.positionalArguments();
    bool isComplete = true;
    for (const QString &fileName : files)
        isComplete = readReports(fileName, reports) && isComplete;
    if (!printResult(totalsText(reports)))
        return WrongUsage;
    return isComplete ? exitStatus(reports) : Unreadable;
}
