#pragma once

#include "convertcontent.h"

/// Returns for each object of a drawing whether it is an area all of whose contours are also drawn as lines.
std::vector<bool> findFillings(const ConvertContent &content);

/// Leaves the fillings of a drawing out: the import takes an outline and its hatch as one object, too.
void removeFillings(ConvertContent &content);
