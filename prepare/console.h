#pragma once

#include <QString>

#include <cstdio>

/// Exit status of the program.
enum ExitStatus {
    Complete = 0,   ///< everything comes in
    Incomplete = 1, ///< something would be lost or wrong
    WrongUsage = 2, ///< also if the report cannot be written
    Unreadable = 3, ///< a file could not be read at all
};

/// Prints a line in UTF-8. Returns false if \a output cannot take it.
bool printLine(FILE *output, const QString &text);

/// Prints a result to the standard output. Returns false after a failure, which has been reported.
bool printResult(const QString &text);

/// Prints the help or version \a text that the user asked for. Returns the exit status.
int printInformation(const QString &text);

/// Prints the English message \a text to the error output. Returns \a status.
int fail(const QString &text, ExitStatus status = WrongUsage);

bool isErrorOutputTerminal();

/// Replaces the last line of the terminal on the error output.
void replaceTerminalLine(const QString &text);
