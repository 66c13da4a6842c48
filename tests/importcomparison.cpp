#include "importcomparison.h"

#include "testing.h"

#include <memory>

namespace {

// 17 significant digits distinguish any two doubles, and -0 from 0.
QString described(const DefPoint &point)
{
    return QString::number(point.x, 'g', 17) + QLatin1Char(' ') + QString::number(point.y, 'g', 17) + QLatin1Char(' ') +
           point.def;
}

QStringList described(const ImportOutcome &out)
{
    QStringList texts = out.messages;
    texts.append(QStringLiteral("result %1, next numbers %2 and %3, %4 objects")
                     .arg(out.result ? 1 : 0)
                     .arg(out.pointStartNum)
                     .arg(out.objectStartNum)
                     .arg(out.objects.size()));
    for (int i = 0; i < out.objects.size(); ++i) {
        texts.append(QStringLiteral("object %1: ").arg(i) + out.objects[i].def);
        for (int j = 0; j < out.objects[i].contours.size(); ++j) {
            const QString prefix = QStringLiteral("object %1, contour %2: ").arg(i).arg(j);
            texts.append(prefix);
            for (const DefPoint &vertex : out.objects[i].contours[j])
                texts.append(prefix + described(vertex));
        }
    }
    for (const DefPoint &point : out.points)
        texts.append(QStringLiteral("known point: ") + described(point));
    return texts;
}

} // namespace

ImportOutcome runImporter(const ImportOptions &options)
{
    const StatusRecorder host;
    std::unique_ptr<MapImport> import;
    if (options.dxf)
        import = std::make_unique<DxfImport>();
    else
        import = std::make_unique<MifImport>();
    import->swapXY = options.swapXY;
    import->searchPointDefs = options.searchPointDefs;
    import->pointPref = options.pointPref;
    import->pointStartNum = options.pointStartNum;
    import->searchObjectDefs = options.searchObjectDefs;
    import->objectPref = options.objectPref;
    import->objectStartNum = options.objectStartNum;
    import->objectFileName = options.objectFileName;
    import->pointFileName = options.pointFileName;
    import->setEncoding(options.encoding);

    ImportOutcome out;
    import->objects = &out.objects;
    out.result = import->importMap();
    out.points = knownPoints(*import);
    out.pointStartNum = import->pointStartNum;
    out.objectStartNum = import->objectStartNum;
    out.messages = host.messages();
    return out;
}

ImportOutcome runReference(const ImportOptions &options)
{
    ImportOutcome out = options.dxf ? ReferenceDxf(options).run() : ReferenceMif(options).run();
    out.points = sortedByDef(out.points);
    return out;
}

QString difference(const ImportOutcome &actual, const ImportOutcome &expected)
{
    const QStringList a = described(actual);
    const QStringList b = described(expected);
    for (int i = 0; i < qMax(a.size(), b.size()); ++i) {
        if (i >= a.size() || i >= b.size() || a[i] != b[i])
            return QStringLiteral("\n  actual: ") + a.value(i) + QStringLiteral("\nexpected: ") + b.value(i);
    }
    return {};
}
