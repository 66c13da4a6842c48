#pragma once

#include "finding.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

/// What a check says about one file.
struct FileReport
{
    /// Numbers of what the import gives.
    struct Imported
    {
        qint64 objects = 0;
        qint64 contours = 0;
        qint64 vertices = 0;
        qint64 numbers = 0;
        qint64 knownPoints = 0;
    };

    /// Numbers of what GDAL finds.
    struct Found
    {
        qint64 areas = 0;
        qint64 lines = 0;
        qint64 points = 0;
        qint64 texts = 0;
    };

    /// True if nothing would be lost or wrong; notes do not count.
    bool isComplete() const;
    bool has(const QString &id) const;
    /// True if the file could not be read at all.
    bool isUnreadable() const { return has(QStringLiteral("unreadable")); }
    int countOf(Severity severity) const;

    QString fileName;
    Format format = Format::Unknown;
    bool isAccepted = false;
    QStringList messages;
    bool searchesPoints = true;
    bool searchesObjects = true;
    QString encoding;
    Imported imported;
    std::optional<Found> found; ///< empty if GDAL cannot open the file
    QVector<Finding> findings;
    QByteArray picture;            ///< SVG; empty unless requested, not part of the JSON
    bool isPictureOmitted = false; ///< there were too many before
};

/// One line of JSON without a line end.
QByteArray toJson(const FileReport &report);

/// Reads a line that toJson() has written. Empty if it is none.
std::optional<FileReport> reportFromJson(const QByteArray &line);

/// One sentence on the whole file.
QString verdictText(const FileReport &report);

/// What comes in, and what GDAL finds, in two lines.
QString numbersText(const FileReport &report);

/// The report of one file for a person.
QString reportText(const FileReport &report);

/// The table of totals of several files: a row for each file, then the findings with their numbers of files.
QString totalsText(const QVector<FileReport> &reports);

/// A self-contained page with all \a reports and their pictures.
QByteArray reportPage(const QVector<FileReport> &reports);

/// The command that prepares the file; empty if that does not help.
QString convertCommand(const FileReport &report);

/// "ОШИБКА" and so on.
QString severityName(Severity severity);

/// The exit status of a program that has made \a reports.
int exitStatus(const QVector<FileReport> &reports);
