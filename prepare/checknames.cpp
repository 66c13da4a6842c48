#include "checknames.h"

QStringList namesByNearestText(const QString &fileName, const CheckOptions &options, const FileFacts &facts)
{
    const bool usesTexts = options.searchPoints && options.searchObjects && options.pointFile.isEmpty();
    if (!usesTexts || formatOf(fileName) != Format::Dxf || facts.textCount < 2 || facts.pointCount > 0)
        return {};
    CheckOptions sorted = options;
    sorted.searchPoints = false;
    const ImportOutcome outcome = runImport(fileName, sorted, facts.lineCount);
    QStringList names;
    for (const DefPolygon &object : outcome.objects)
        names.append(object.def);
    return names;
}
