#include "console.h"

#include <QFile>

// Flushed after each line, so that messages and result keep their order.
bool printLine(FILE *output, const QString &text)
{
    const QByteArray line = text.toUtf8() + '\n';
    QFile file;
    return file.open(output, QIODevice::WriteOnly) && file.write(line) == line.size() && file.flush();
}

ExitStatus fail(const QString &error)
{
    printLine(stderr, QStringLiteral("importhost: %1").arg(error));
    return Failed;
}
