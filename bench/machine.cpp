#include "machine.h"

#include <QFile>
#include <QStringList>
#include <QSysInfo>
#include <QThread>

#include <ctime>

namespace {

// The value of the first "name : value" line; empty without such a file or line. Files in /proc report size 0, so
// QFile::atEnd() cannot be used.
QString lineOf(const QString &path, const QByteArray &name)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const QByteArray &line : lines) {
        const int colon = line.indexOf(':');
        if (colon >= 0 && line.left(colon).trimmed() == name)
            return QString::fromUtf8(line.mid(colon + 1)).simplified();
    }
    return QString();
}

// The entry is in kilobytes.
double bytesOf(const QByteArray &name)
{
    const QString kilobytes = lineOf(QStringLiteral("/proc/self/status"), name);
    return kilobytes.section(QLatin1Char(' '), 0, 0).toDouble() * 1024;
}

} // namespace

QString machineLine()
{
    QString processor = lineOf(QStringLiteral("/proc/cpuinfo"), "model name");
    if (processor.isEmpty())
        processor = QSysInfo::currentCpuArchitecture();
    return QStringList{QStringLiteral("%1 × %2").arg(processor).arg(QThread::idealThreadCount()),
                       QSysInfo::prettyProductName(), QStringLiteral("Qt %1").arg(QLatin1String(qVersion())),
                       QStringLiteral(BUILD_COMPILER), QStringLiteral(BUILD_KIND)}
        .join(QStringLiteral(", "));
}

double processorSeconds()
{
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

// Not getrusage(): its peak includes the memory of the parent process before exec().
double peakMemory()
{
    return bytesOf("VmHWM");
}

double residentMemory()
{
    return bytesOf("VmRSS");
}
