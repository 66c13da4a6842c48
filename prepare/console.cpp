#include "console.h"

#include <QFile>

bool printLine(FILE *output, const QString &text)
{
    const QByteArray line = text.toUtf8() + '\n';
    QFile file;
    return file.open(output, QIODevice::WriteOnly) && file.write(line) == line.size() && file.flush();
}

int fail(const QString &text, ExitStatus status)
{
    printLine(stderr, QStringLiteral("importprepare: %1").arg(text));
    return status;
}
