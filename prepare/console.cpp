#include "console.h"

#include "printable.h"

#include <QFile>

#ifdef Q_OS_WIN
#include <io.h>
#else
#include <unistd.h>
#endif

bool printLine(FILE *output, const QString &text)
{
    const QByteArray line = text.toUtf8() + '\n';
    QFile file;
    return file.open(output, QIODevice::WriteOnly) && file.write(line) == line.size() && file.flush();
}

bool printResult(const QString &text)
{
    if (printLine(stdout, text))
        return true;
    fail(QStringLiteral("Cannot write to the standard output."));
    return false;
}

int printInformation(const QString &text)
{
    return printResult(text) ? Complete : WrongUsage;
}

int fail(const QString &text, ExitStatus status)
{
    printLine(stderr, QStringLiteral("importprepare: ") + printableLines(text));
    return status;
}

bool isErrorOutputTerminal()
{
#ifdef Q_OS_WIN
    return _isatty(_fileno(stderr)) != 0;
#else
    return isatty(STDERR_FILENO) != 0;
#endif
}

void replaceTerminalLine(const QString &text)
{
    QFile terminal;
    if (terminal.open(stderr, QIODevice::WriteOnly))
        terminal.write("\r\x1b[K" + text.toUtf8());
}
