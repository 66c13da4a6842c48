#pragma once

#include "checkimport.h"

#include <QCommandLineParser>
#include <QString>
#include <QStringList>

/// The parsed command line of the sub-command check.
struct CheckCommand
{
    QStringList files; ///< files to check, in order; folders are replaced by the files in them
    CheckOptions options;
    bool json = false;
    QString page;                    ///< file for the HTML page; empty: none
    QString picture;                 ///< file for the SVG picture of the only file; empty: none
    int jobs = 0;                    ///< number of child processes; 0: this process checks all files
    int timeoutMilliseconds = 60000; ///< of a child process
    bool help = false;
};

/// Reads the arguments of the sub-command check. Requires an application object.
class CheckCommandLine
{
public:
    CheckCommandLine();

    /// Returns false after an error, which error() describes.
    bool read(const QStringList &arguments);

    const CheckCommand &command() const { return m_command; }
    const QString &error() const { return m_error; }
    QString helpText() const;

private:
    bool fail(const QString &text);
    bool readOptions();
    bool readProcesses();
    bool addFiles(const QString &path);

    QCommandLineParser m_parser;
    CheckCommand m_command;
    QString m_error;
};

/// Runs the sub-command check with the \a arguments after its name. Returns the exit status.
int runCheck(const QStringList &arguments);
