// A drawing, and another one with the points:
//
//     000000000      options, a digit each, see Options
//     0              1: the drawing is missing; 2: the drawing of the points is
//     ...            the drawings with a line of === between them

#include "invariants.h"

namespace {

QString write(const QString &name, const QByteArray &bytes, bool isMissing)
{
    if (!isMissing)
        return files().writeBytes(name, bytes);
    return files().path(QStringLiteral("missing.dxf"));
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    prepareResults(argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Input input(data, size);
    Options options(input);
    const int missing = input.option(8);
    const QList<QByteArray> contents = input.files(2);
    options.objectFileName = write(QStringLiteral("plan.dxf"), contents.at(0), missing == 1);
    if (options.usePointFile)
        options.pointFileName = write(QStringLiteral("points.dxf"), contents.at(1), missing == 2);
    checkResult(checkedRun<DxfImport>(options, Format::Dxf).objects);
    return 0;
}
