// The companion of the import plug-in: reports what an import of a file would lose, and prepares the file for it.

#include "checkcommand.h"
#include "console.h"
#include "convert.h"
#include "reportcommand.h"

#include <QCoreApplication>
#include <QHash>
#include <QStringList>

#include <csignal>

namespace {

/// Runs a sub-command with the arguments after its name. Returns the exit status.
using Command = int (*)(const QStringList &arguments);

const QHash<QString, Command> &commands()
{
    static const QHash<QString, Command> rows{
        {QStringLiteral("check"), runCheck},
        {QStringLiteral("convert"), runConvert},
        {QStringLiteral("report"), runReport},
    };
    return rows;
}

QString helpText()
{
    return QStringLiteral("Usage: importprepare command [arguments]\n\n"
                          "Companion of the import plug-in for MIF and DXF files.\n\n"
                          "  check    Reports what an import of files would lose or get wrong.\n"
                          "  convert  Converts a file to a MIF/MID pair that the import reads completely.\n"
                          "  report   Merges the output of check --json into a table of totals.\n\n"
                          "importprepare command --help describes a command, --version prints the version.");
}

int run(const QStringList &arguments)
{
    const QString name = arguments.value(0);
    if (name == QLatin1String("--help") || name == QLatin1String("-h"))
        return printInformation(helpText());
    if (name == QLatin1String("--version"))
        return printInformation(QStringLiteral("importprepare " PREPARE_VERSION));
    if (name.isEmpty())
        return fail(QStringLiteral("A command is missing. See importprepare --help."));
    const Command command = commands().value(name);
    if (command == nullptr)
        return fail(QStringLiteral("Unknown command \"%1\". See importprepare --help.").arg(name));
    return command(arguments.mid(1));
}

// So that a full disk or a closed pipe is reported like other failures, and temporary files are removed.
void ignoreWriteSignals()
{
#ifdef SIGXFSZ
    std::signal(SIGXFSZ, SIG_IGN);
#endif
#ifdef SIGPIPE
    std::signal(SIGPIPE, SIG_IGN);
#endif
}

} // namespace

int main(int argc, char **argv)
{
    ignoreWriteSignals();
    const QCoreApplication app(argc, argv);
    return run(QCoreApplication::arguments().mid(1));
}
