#pragma once

#include "finding.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

/// The result of checking one file.
struct FileReport
{
    /// Counts of the content that the import gives.
    struct Imported
    {
        qint64 objects = 0;
        qint64 contours = 0;
        qint64 vertices = 0;
        qint64 numbers = 0; ///< different numbers of vertices
        qint64 knownPoints = 0;
    };

    /// Counts of the features that GDAL reads.
    struct Found
    {
        qint64 areas = 0; ///< a feature with areas and lines counts as both
        qint64 lines = 0;
        qint64 points = 0;
        qint64 texts = 0;
    };

    /// True if nothing would be lost or wrong: there are no findings, or only notes.
    bool isComplete() const;
    bool has(const QString &id) const;
    bool isUnreadable() const { return has(QStringLiteral("unreadable")); }
    /// True if the check came to no end, so that nothing is known of the import.
    bool isUnfinished() const { return has(QStringLiteral("crash")) || has(QStringLiteral("timeout")); }
    bool isRejected() const { return !isAccepted && !isUnfinished(); }
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
    bool isPictureOmitted = false; ///< the pictures of other files have used up the space
};

/// One line of JSON without a line end.
QByteArray toJson(const FileReport &report);

/// Reads a line that toJson() has written. Returns no report if \a line is something else.
std::optional<FileReport> reportFromJson(const QByteArray &line);

/// The name of the file for the user, without control characters.
QString displayName(const FileReport &report);

/// The overall result in one sentence.
QString verdictText(const FileReport &report);

/// The counts of the import and of GDAL, a line each; empty if the file was not read to its end.
QString numbersText(const FileReport &report);

/// The encoding and the searches of the import, in one line; empty if the file was not read.
QString optionsText(const FileReport &report);

/// The report of one file for a person.
QString reportText(const FileReport &report);

/// The table of totals of several files: a row for each file, then the findings with their numbers of files.
QString totalsText(const QVector<FileReport> &reports);

/// A self-contained HTML page with all \a reports and their pictures.
QByteArray reportPage(const QVector<FileReport> &reports);

/// The command line that prepares the file; empty if that does not help.
QString convertCommand(const FileReport &report);

/// The severity for the user, such as "ОШИБКА".
QString severityName(Severity severity);

/// The exit status of the program after \a reports.
int exitStatus(const QVector<FileReport> &reports);
