#pragma once

#include "referenceimport.h"

/// Runs the importer under test.
ImportOutcome runImporter(const ImportOptions &options);

/// Runs the reference implementation.
ImportOutcome runReference(const ImportOptions &options);

/// Compares all results of two runs, numbers exactly. Returns a text with the first difference; empty if there is none.
QString difference(const ImportOutcome &actual, const ImportOutcome &expected);
