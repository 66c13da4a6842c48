#pragma once

#include "importgeometryinterface.h"

#include <QCommandLineParser>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

/// The user's choices in the plug-in's dialog.
struct DialogChoices
{
    static constexpr int maxFieldCount = 5;

    QString objectFile;
    QString pointFile; ///< empty: the object file contains the points
    QString encoding;
    bool searchPoints = true;
    bool searchObjects = true;
    QString pointPrefix;
    QString objectPrefix;
    int pointStart = 1;
    int objectStart = 1;
    QVector<QPair<int, QString>> fields; ///< columns, counted from 1, and their texts
    bool sort = false;
    bool update = false;
    QString screenshot; ///< file for a picture of the dialog; empty: none
};

/// The parsed command line.
struct HostOptions
{
    QString plugin;  ///< path of the plug-in
    QString prepare; ///< path of the companion program; empty: none
    QString operation;
    QString formName;
    QString objectTable;
    QString pointTable;
    GeometryInfo columns{};
    std::optional<DialogChoices> dialog; ///< empty when a user operates the dialog
    QString output;                      ///< file for the result; empty: the standard output
    QString catalogue;                   ///< file for the catalogue of coordinates; empty: none
    QString picture;                     ///< file for the picture of the contours; empty: none
    bool list = false;                   ///< list the operations and exit
    QString information;                 ///< help or version to print before exiting; empty: not requested
};

/// Reads the arguments of the program. Requires an application object.
class CommandLine
{
public:
    CommandLine();

    /// Reads \a arguments, the first of which is the program. Returns false after an error, which error() describes.
    bool read(const QStringList &arguments);

    const HostOptions &options() const { return m_options; }
    const QString &error() const { return m_error; }

private:
    bool fail(const QString &text);
    QString help() const;
    bool readCall();
    bool readColumns();
    bool checkCombination();
    bool checkFileNames();
    bool readDialog();
    bool readStart(const QString &name, int &number);
    bool readFields(QVector<QPair<int, QString>> &fields);

    QCommandLineParser m_parser;
    HostOptions m_options;
    QString m_error;
};
