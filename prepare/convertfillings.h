#pragma once

#include "convertcontent.h"

/// Leaves out the areas of a drawing all of whose contours are also drawn as lines: hatches within their outlines.
///
/// The import takes such an outline as one object, too.
void removeFillings(ConvertContent &content);
