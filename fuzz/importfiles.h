#pragma once

#include "importcomparison.h"
#include "input.h"

/// Reads the options of a run from \a input. Its files have \a extension and lie in a temporary folder.
ImportOptions readOptions(Input &input, const QString &extension);

/// Writes \a bytes to \a fileName, or removes the file when it \a isMissing.
void writeFile(const QString &fileName, const QByteArray &bytes, bool isMissing = false);

/// Runs the importer and the reference implementation, and requires equal outcomes.
void compareImports(const ImportOptions &options);
