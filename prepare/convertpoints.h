#pragma once

#include "convertcontent.h"

/// Leaves out the points of \a content that the import would merge with another or that would blank a number.
///
/// The import keeps one of the points within 0.01 of each other, and a vertex takes even the empty number of a point.
void removeUnusablePoints(ConvertContent &content);
