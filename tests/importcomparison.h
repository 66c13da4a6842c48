#pragma once

#include "referenceimport.h"

/// Runs the importer under test.
ImportOutcome runImporter(const ImportOptions &options);

/// Runs the reference implementation.
ImportOutcome runReference(const ImportOptions &options);

/// Describes the first difference between two runs, comparing numbers exactly; empty if there is none.
QString difference(const ImportOutcome &actual, const ImportOutcome &expected);
