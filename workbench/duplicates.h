#pragma once

#include "importresult.h"

/// For each object of \a result whether its designation occurs more than once, ignoring case. Empty designations are
/// not duplicates.
QVector<bool> duplicateDefs(const ImportResult &result);
