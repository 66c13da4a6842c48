#pragma once

#include <QString>

#include <cstdio>

/// The exit status of the program.
enum ExitStatus { Imported = 0, NothingImported = 1, Failed = 2, ImportedWithMessages = 3 };

/// Prints \a text and a line feed in UTF-8. Returns false if \a output does not accept all of it.
bool printLine(FILE *output, const QString &text);

/// Prints \a error to the standard error output, after the name of the program.
ExitStatus fail(const QString &error);
