#pragma once

#include <QString>
#include <QStringList>
#include <QUrl>

/// A file and the operation that imports it.
struct ImportFile
{
    QString fileName;
    QString operation;

    bool operator==(const ImportFile &other) const
    {
        return fileName == other.fileName && operation == other.operation;
    }
};

/// The one of \a operations whose name contains the format of \a fileName as a word, or an empty string. A MID file
/// belongs to the format MIF.
QString operationFor(const QString &fileName, const QStringList &operations);

/// Finds the first of \a urls that an operation imports. For a MID file it is the MIF file beside it. Returns false if
/// there is none; \a error is then the reason, for the user.
bool findImportFile(const QList<QUrl> &urls, const QStringList &operations, ImportFile &file, QString &error);
