#pragma once

#include "convertcontent.h"
#include "convertoptions.h"

#include <QByteArray>

/// Returns the report of a conversion of \a content for a person; lines without the last line end.
QString convertText(const ConvertOptions &options, const ConvertContent &content, const QByteArray &sourceEncoding);

/// Returns the same as a line of JSON.
QString convertJson(const ConvertOptions &options, const ConvertContent &content, const QByteArray &sourceEncoding);
