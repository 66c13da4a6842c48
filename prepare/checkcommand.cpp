#include "checkcommand.h"

#include "checkfile.h"
#include "console.h"
#include "report.h"

#include <algorithm>

namespace {

bool printReport(const FileReport &report, const CheckCommand &command)
{
    const QString text = command.json ? QString::fromUtf8(toJson(report)) : reportText(report);
    return printLine(stdout, text);
}

} // namespace

int runCheck(const QStringList &arguments)
{
    CheckArguments reader;
    if (!reader.read(arguments))
        return fail(QStringLiteral("%1 See importprepare check --help.").arg(reader.error()));
    const CheckCommand &command = reader.command();
    if (command.help)
        return printLine(stdout, reader.helpText()) ? Complete : Unreadable;
    QVector<FileReport> reports;
    for (const QString &fileName : command.files) {
        reports.append(checkFile(fileName, command.options, false));
        if (!printReport(reports.last(), command))
            return fail(QStringLiteral("Cannot print the report."));
    }
    if (reports.size() > 1 && !command.json)
        printLine(stdout, totalsText(reports));
    return exitStatus(reports);
}
