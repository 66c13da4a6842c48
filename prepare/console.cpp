#include "console.h"

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

int printInformation(const QString &text)
{
    return printLine(stdout, text) ? Complete : WrongUsage;
}

int fail(const QString &text, ExitStatus status)
{
    printLine(stderr, QStringLiteral("importprepare: %1").arg(text));
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
