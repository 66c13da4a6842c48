#pragma once

#include "referenceimport.h"

/// Runs the importer under test.
ImportOutcome runImporter(const ImportOptions &options);

/// Runs the reference implementation.
ImportOutcome runReference(const ImportOptions &options);

/// Compares everything a run leaves, numbers exactly. Returns the first difference as text, empty without one.
QString difference(const ImportOutcome &actual, const ImportOutcome &expected);
