#pragma once

#include "convertcontent.h"
#include "convertoptions.h"

#include "encodingguess.h"

/// Returns "1 vertex", "2 vertices": \a count and the noun \a singular in the right number.
QString counted(qint64 count, const QString &singular);

/// A line for each kind of content that the output lacks, each after a line end.
QString leftOutText(const ConvertContent &content);

/// Returns the report of a conversion of \a content for a person; lines without the last line end.
QString convertText(const ConvertOptions &options, const ConvertContent &content, const SourceEncoding &source);

/// Returns the same as a line of JSON.
QString convertJson(const ConvertOptions &options, const ConvertContent &content, const SourceEncoding &source);
