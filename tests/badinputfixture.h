#pragma once

#include "facilities.h"
#include "imported.h"
#include "testing.h"

#include <QDir>

#include <memory>

/// Lines 1 to 4 of a MIF file.
const QByteArray mifHead("VERSION 300\nCHARSET \"Neutral\"\nDELIMITER \",\"\nDATA\n");

/// Lines 1 to 10 of a drawing.
const QByteArray dxfHead("0\nSECTION\n2\nHEADER\n0\nENDSEC\n0\nSECTION\n2\nENTITIES\n");

/// The same object in both formats.
const QByteArray mifLine("LINE 0 0 1 1\n");
const QByteArray dxfLine("0\nLINE\n10\n0\n20\n0\n11\n1\n21\n1\n");

const QString mifName = QStringLiteral("plan.mif");
const QString midName = QStringLiteral("plan.mid");
const QString dxfName = QStringLiteral("plan.dxf");

/// A size from /proc/self/status in bytes; 0 where the system has no such entry.
inline qint64 statusBytes(const QByteArray &key)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray text = status.readAll();
    const int begin = text.indexOf(key) + key.size();
    return text.mid(begin, text.indexOf("kB", begin) - begin).trimmed().toLongLong() * 1024;
}

inline Facility peakMemory()
{
    return {statusBytes("VmHWM:") > 0, "the peak memory of a process"};
}

/// Measures the peak growth of the process's memory since this object was constructed.
class PeakMemory
{
public:
    PeakMemory()
    {
        QFile references(QStringLiteral("/proc/self/clear_refs"));
        if (references.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
            references.write("5"); // resets the peak
        m_before = statusBytes("VmRSS:");
    }

    qint64 bytes() const { return statusBytes("VmHWM:") - m_before; }

private:
    qint64 m_before = 0;
};

/// An import of a file in a temporary folder. The suffix selects the format; numbering starts at «н1» and «ЗУ1».
struct BadInputFixture
{
    explicit BadInputFixture(const QString &objectFile)
    {
        if (objectFile.endsWith(QLatin1String(".dxf")))
            import = std::make_unique<DxfImport>();
        else
            import = std::make_unique<MifImport>();
        import->setEncoding("UTF-8");
        import->pointPref = QStringLiteral("н");
        import->pointStartNum = 1;
        import->objectPref = QStringLiteral("ЗУ");
        import->objectStartNum = 1;
        import->objectFileName = files.path(objectFile);
        import->objects = &objects;
    }

    QString objectText() const { return described(objects).join(QLatin1Char('\n')); }

    const StatusRecorder host;
    const TextFixture files;
    QVector<DefPolygon> objects;
    std::unique_ptr<MapImport> import;
};
