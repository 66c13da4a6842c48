#include "importfiles.h"

#include "require.h"

#include <QTemporaryDir>

ImportOptions readOptions(Input &input, const QString &extension)
{
    static const QTemporaryDir folder;
    static const char *const encodings[] = {"UTF-8", "Windows-1251", "IBM866", "UTF-16", "Default"};
    static const QString prefixes[] = {
        QString(),           QStringLiteral("н"),   QStringLiteral("%1"), QStringLiteral("%2"),
        QStringLiteral("%"), QStringLiteral("%1%2")};
    static const int numbers[] = {1, 0, 999, -2, 2000000000};
    ImportOptions options;
    options.dxf = extension == QLatin1String(".dxf");
    options.searchPointDefs = input.flag();
    options.searchObjectDefs = input.flag();
    options.swapXY = input.flag();
    options.objectFileName = folder.filePath(QStringLiteral("plan") + extension);
    if (input.flag())
        options.pointFileName = folder.filePath(QStringLiteral("points") + extension);
    options.encoding = input.oneOf(encodings);
    options.pointPref = input.oneOf(prefixes);
    options.objectPref = input.oneOf(prefixes);
    options.pointStartNum = input.oneOf(numbers);
    options.objectStartNum = input.oneOf(numbers);
    return options;
}

void writeFile(const QString &fileName, const QByteArray &bytes, bool isMissing)
{
    QFile file(fileName);
    if (isMissing)
        file.remove();
    else
        require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size(), "input files can be written");
}

void compareImports(const ImportOptions &options)
{
    const ImportOutcome actual = runImporter(options);
    const ImportOutcome expected = runReference(options);
    const QString found = expected.orderIsUnspecified ? QString() : difference(actual, expected);
    require(found.isEmpty(), qPrintable(found));
}
