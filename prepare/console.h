#pragma once

#include <QString>

#include <cstdio>

/// Exit status of the program.
enum ExitStatus {
    Complete = 0,   ///< everything comes in
    Incomplete = 1, ///< something would be lost or wrong
    WrongUsage = 2,
    Unreadable = 3, ///< a file could not be read at all
};

/// Prints a line in UTF-8. Returns false if \a output cannot take it.
bool printLine(FILE *output, const QString &text);

/// Prints the English message \a text of the program to the error output. Returns \a status.
int fail(const QString &text, ExitStatus status = WrongUsage);
