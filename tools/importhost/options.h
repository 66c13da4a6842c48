#pragma once

#include "importgeometryinterface.h"

#include <QCommandLineParser>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

/// What a user would enter in the dialog of the plug-in.
struct DialogChoices
{
    QString objectFile;
    QString pointFile; ///< empty: the points are in the file of objects
    QString encoding;
    bool searchPoints = true;
    bool searchObjects = true;
    QString pointPrefix;
    QString objectPrefix;
    int pointStart = 1;
    int objectStart = 1;
    QVector<QPair<int, QString>> fields; ///< column, counted from 1 as on the form, and its text; five at most
    bool sort = false;
    bool update = false;
    QString screenshot; ///< picture of the dialog to save; empty: none
};

/// What the host is told at its start.
struct HostOptions
{
    QString plugin; ///< path of the plug-in
    QString operation;
    QString formName;
    QString objectTable;
    QString pointTable;
    GeometryInfo columns{};
    std::optional<DialogChoices> dialog; ///< nothing when a person is to use the dialog
    QString output;                      ///< file for the result; empty: the standard output
    bool list = false;
    QString help; ///< what to print instead of all that; empty: not asked for
};

/// Reads the arguments of the program; needs an application object to live.
class CommandLine
{
public:
    CommandLine();

    /// Reads \a arguments, the first of which is the program. False when they are wrong, which error() tells.
    bool read(const QStringList &arguments);

    const HostOptions &options() const { return m_options; }
    const QString &error() const { return m_error; }

private:
    bool fail(const QString &text);
    bool readColumns();
    bool checkUse();
    bool readDialog();
    bool readStart(const QString &name, int &number);
    bool readFields(QVector<QPair<int, QString>> &fields);

    QCommandLineParser m_parser;
    HostOptions m_options;
    QString m_error;
};
