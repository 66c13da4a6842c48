#pragma once

#include <QCommandLineParser>
#include <QString>
#include <QStringList>

/// The parsed command line of the sub-command convert.
struct ConvertOptions
{
    QString input;
    QString output;
    QString designation; ///< field of the designations; empty: from texts
    QString number;      ///< field of the point numbers; empty: from texts
    double reach = 5;
    double deviation = 0.005;
    QString encoding = QStringLiteral("windows-1251");
    QString sourceEncoding; ///< empty: guessed
    QString crs;            ///< empty: the coordinates of the source
    QString sourceCrs;      ///< empty: the one that the source names
    bool swapXY = false;
    bool takesSymbols = true; ///< circles and insertions that mark a point of a drawing are points, not objects
    QStringList layers;       ///< empty: all
    QString where;
    bool force = false;
    bool json = false;
    QString help; ///< help text to print instead; empty: not requested
};

/// Reads the arguments of the sub-command convert. Requires an application object.
class ConvertCommandLine
{
public:
    ConvertCommandLine();

    /// Reads \a arguments, which follow the command. Returns false after an error, which error() describes.
    bool read(const QStringList &arguments);

    const ConvertOptions &options() const { return m_options; }
    const QString &error() const { return m_error; }

private:
    bool fail(const QString &text);
    bool readFiles();
    bool readLength(const QString &name, bool isZeroAllowed, double &length);
    bool readSymbols();
    bool readEncoding(const QString &name, QString &encoding);

    QCommandLineParser m_parser;
    ConvertOptions m_options;
    QString m_error;
};
