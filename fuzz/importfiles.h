#pragma once

#include "importcomparison.h"
#include "input.h"

/// Takes the options of a run from \a input, for files with \a extension in a folder of the process.
ImportOptions readOptions(Input &input, const QString &extension);

/// Writes \a bytes to \a fileName, or removes the file when it \a isMissing.
void writeFile(const QString &fileName, const QByteArray &bytes, bool isMissing = false);

/// Runs the importer and the reference implementation, and requires equal outcomes.
void compareImports(const ImportOptions &options);
