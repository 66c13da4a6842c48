// A MIF file with its MID file, and another pair for the points:
//
//     000000000      options, a digit each, see Options
//     0              1: there is no MID file
//     ...            MIF, MID, MIF of the points, MID of the points; lines of === between them

#include "invariants.h"

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    prepareResults(argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Input input(data, size);
    Options options(input);
    const bool hasMid = !input.flag();
    const QList<QByteArray> contents = input.files(4);
    options.objectFileName = files().writeBytes(QStringLiteral("plan.mif"), contents.at(0));
    if (hasMid)
        files().writeBytes(QStringLiteral("plan.mid"), contents.at(1));
    else
        QFile::remove(files().path(QStringLiteral("plan.mid")));
    if (options.usePointFile) {
        options.pointFileName = files().writeBytes(QStringLiteral("points.mif"), contents.at(2));
        files().writeBytes(QStringLiteral("points.mid"), contents.at(3));
    }
    checkResult(checkedRun<MifImport>(options, Format::Mif).objects);
    return 0;
}
