#pragma once

#include <QString>

/// \a text on one line, with control characters replaced: names and texts of files may contain them, and a terminal
/// would obey them.
QString printable(QString text);

/// The same for a text of several lines, which keep their ends.
QString printableLines(QString text);
