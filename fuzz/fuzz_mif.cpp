// Compares the MIF importer with the reference implementation. Input:
//
//     000000000      options, a digit each, see readOptions()
//     0              1: the MID file is missing
//     ...            MIF and MID of the objects, MIF and MID of the points, separated by lines of ===

#include "importfiles.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Input input(data, size);
    const ImportOptions options = readOptions(input, QStringLiteral(".mif"));
    const bool midIsMissing = input.flag();
    const QList<QByteArray> contents = input.files(4);
    const auto writePair = [&](const QString &mif, int first, bool isMissing) {
        writeFile(mif, contents.at(first));
        writeFile(mif.chopped(1) + QLatin1Char('d'), contents.at(first + 1), isMissing);
    };
    writePair(options.objectFileName, 0, midIsMissing);
    if (!options.pointFileName.isEmpty())
        writePair(options.pointFileName, 2, false);
    compareImports(options);
    return 0;
}
