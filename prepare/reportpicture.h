#pragma once

#include "checkgdal.h"
#include "checkimport.h"

#include <QByteArray>

/// An SVG picture of a file: what the import gives in a dark colour over what GDAL finds in red. Empty if there is
/// nothing to draw.
QByteArray lossPicture(const FoundContent &found, const ImportOutcome &outcome);
