// Compares the DXF importer with the reference implementation. Input:
//
//     000000000      options, a digit each, see readOptions()
//     0              1: the object file is missing; 2: the point file is missing
//     ...            both drawings, separated by a line of ===

#include "importfiles.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Input input(data, size);
    const ImportOptions options = readOptions(input, QStringLiteral(".dxf"));
    const int missing = input.option(8);
    const QList<QByteArray> contents = input.files(2);
    writeFile(options.objectFileName, contents.at(0), missing == 1);
    if (!options.pointFileName.isEmpty())
        writeFile(options.pointFileName, contents.at(1), missing == 2);
    compareImports(options);
    return 0;
}
