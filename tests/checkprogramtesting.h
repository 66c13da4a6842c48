#pragma once

#include "preparetesting.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

/// The result of one run of the program.
struct Run
{
    int status; ///< exit status; -1 after a crash or a timeout
    QString output;
    QString errors;
};

inline Run run(const QStringList &arguments, const QString &folder = QDir::tempPath())
{
    QProcess process;
    process.setWorkingDirectory(folder);
    process.start(QStringLiteral(IMPORTPREPARE_PATH), arguments);
    process.closeWriteChannel();
    const bool ended = process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit;
    return {ended ? process.exitCode() : -1, QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

/// Files for the program in a temporary folder.
struct ProgramFixture
{
    QString path(const QString &name) const { return files.path(name); }
    QString folder() const { return files.path(QString()); }

    QString writeComplete(const QString &name = QStringLiteral("good.dxf")) const
    {
        return files.write(name, drawing(lineEntity));
    }

    /// A drawing that loses an arc and the bulge of a polyline.
    QString writeLossy(const QString &name = QStringLiteral("lossy.dxf")) const
    {
        return files.write(name, drawing(lineEntity + "|0 ARC|8 0|10 0|20 0|40 5|50 0|51 90|0 LWPOLYLINE|8 0|90 2|" +
                                         "70 0|10 50|20 0|42 1|10 60|20 0"));
    }

    const TextFixture files{};
};

inline QJsonObject objectOf(const QString &line)
{
    return QJsonDocument::fromJson(line.toUtf8()).object();
}

inline QStringList linesOf(const QString &text)
{
    return text.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}
