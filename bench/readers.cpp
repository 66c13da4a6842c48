#include "readers.h"

#include "machine.h"
#include "mapimport_dxf.h"
#include "mapimport_mif.h"
#include "mapimport_status.h"

#include <QTextStream>

namespace {

std::unique_ptr<MapImport> importerOf(const QString &path)
{
    if (path.endsWith(QLatin1String(".mif")))
        return std::make_unique<MifImport>();
    return std::make_unique<DxfImport>();
}

} // namespace

double secondsOfLines(const QStringList &paths)
{
    const double begin = processorSeconds();
    qint64 size = 0;
    for (const QString &path : paths) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
            qFatal("cannot read %s", qPrintable(path));
        QTextStream stream(&file);
        stream.setCodec("Windows-1251");
        while (!stream.atEnd())
            size += stream.readLine().size();
    }
    const double seconds = processorSeconds() - begin;
    return size > 0 ? seconds : 0;
}

// The objects are destroyed after the measurement, as with the other readers.
double secondsOfImport(const QString &path)
{
    setStatusFunc([](const QString &text) { qFatal("%s", qPrintable(text)); });
    QVector<DefPolygon> objects;
    const std::unique_ptr<MapImport> import = importerOf(path);
    import->objects = &objects;
    import->objectFileName = path;
    import->searchPointDefs = true;
    import->searchObjectDefs = true;
    import->pointPref = QStringLiteral("т");
    import->pointStartNum = 1;
    import->setEncoding("Windows-1251");
    const double begin = processorSeconds();
    const bool ok = import->importMap();
    const double seconds = processorSeconds() - begin;
    if (!ok || objects.isEmpty())
        qFatal("no objects imported from %s", qPrintable(path));
    return seconds;
}
