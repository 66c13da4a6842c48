#pragma once

#include "imported.h"
#include "outputtesting.h"
#include "testing.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtEndian>

/// The result of one run of the sub-command convert.
struct ConvertRun
{
    int status; ///< exit status; -1 after a crash or a timeout
    QString output;
    QString messages;
};

/// Converts files in a temporary folder and imports the result.
struct ConvertFixture
{
    QString path(const QString &name) const { return files.path(name); }

    ConvertRun run(const QStringList &args) const
    {
        QProcess process;
        process.setWorkingDirectory(files.path(QString()));
        process.start(QStringLiteral(IMPORTPREPARE_PATH), QStringList{QStringLiteral("convert")} + args);
        process.closeWriteChannel();
        const bool ended = process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit;
        return {ended ? process.exitCode() : -1, QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError()).trimmed()};
    }

    /// Converts the file \a input to out.mif and keeps the report. Returns false after a failure or any message, which
    /// is printed.
    bool convert(const QString &input, const QStringList &args = {})
    {
        const ConvertRun run =
            this->run(QStringList{input, QStringLiteral("out.mif"), QStringLiteral("--json")} + args);
        report = QJsonDocument::fromJson(run.output.toUtf8()).object();
        if (run.status != 0 || !run.messages.isEmpty())
            qWarning("%d %s", run.status, qUtf8Printable(run.messages));
        return run.status == 0 && run.messages.isEmpty();
    }

    /// Describes the import of out.mif with both searches on. Generated numbers begin at «н1», designations at «ЗУ1».
    QString imported(const char *encoding = "windows-1251")
    {
        const StatusRecorder host;
        QVector<DefPolygon> objects;
        MifImport import;
        import.setEncoding(encoding);
        import.searchPointDefs = import.searchObjectDefs = true;
        import.pointPref = QStringLiteral("н");
        import.pointStartNum = 1;
        import.objectPref = QStringLiteral("ЗУ");
        import.objectStartNum = 1;
        import.objectFileName = path(QStringLiteral("out.mif"));
        import.objects = &objects;
        import.importMap();
        return (described(objects) + host.messages()).join(QLatin1String("; "));
    }

    /// "objects contours vertices points" of the report.
    QString counts() const
    {
        QStringList texts;
        for (const char *const key : {"objects", "contours", "vertices", "points"})
            texts.append(QString::number(report.value(QLatin1String(key)).toInt(-1)));
        return texts.join(QLatin1Char(' '));
    }

    /// "kind count, kind count" of the list \a key of the report, with the place of the first case if it has one.
    QString list(const char *key) const
    {
        QStringList texts;
        const QJsonArray array = report.value(QLatin1String(key)).toArray();
        for (const QJsonValue &value : array) {
            const QJsonObject entry = value.toObject();
            const QString place = entry.value(QStringLiteral("place")).toString();
            texts.append(QStringLiteral("%1 %2").arg(entry.value(QStringLiteral("kind")).toString(),
                                                     QString::number(entry.value(QStringLiteral("count")).toInt())) +
                         (place.isEmpty() ? QString() : QStringLiteral(" in ") + place));
        }
        return texts.join(QLatin1String(", "));
    }

    const TextFixture files{};
    QJsonObject report;
};

/// Splits \a text at its blanks.
inline QStringList arguments(const char *text)
{
    return QString::fromUtf8(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

/// A GeoJSON feature.
inline QString feature(const QString &geometry, const QString &properties = QStringLiteral("{}"))
{
    return QStringLiteral("{\"type\":\"Feature\",\"properties\":%1,\"geometry\":%2}").arg(properties, geometry);
}

/// A GeoJSON geometry.
inline QString geometry(const char *type, const char *coordinates)
{
    return QStringLiteral("{\"type\":\"%1\",\"coordinates\":%2}").arg(QLatin1String(type), QLatin1String(coordinates));
}

inline QStringList geoJson(const QStringList &features)
{
    return {QStringLiteral("{\"type\":\"FeatureCollection\",\"features\":[%1]}").arg(features.join(QLatin1Char(',')))};
}

/// The binary form of the lines of a drawing whose groups below 10 are texts and whose others are numbers.
inline QByteArray binaryDrawing(const QStringList &lines)
{
    QByteArray bytes("AutoCAD Binary DXF\r\n\x1a\0", 22);
    for (int i = 0; i < lines.size(); i += 2) {
        const qint16 code = lines.at(i).toShort();
        QByteArray start(2, '\0');
        qToLittleEndian(code, start.data());
        QByteArray number(8, '\0');
        qToLittleEndian(lines.at(i + 1).toDouble(), number.data());
        bytes += start + (code >= 10 ? number : lines.at(i + 1).toLatin1() + '\0');
    }
    return bytes;
}

/// A drawing of \a count lines.
inline QStringList longDrawing(int count)
{
    QStringList lines{QStringLiteral("0\nSECTION\n2\nENTITIES")};
    for (int i = 0; i < count; ++i)
        lines += QStringLiteral("0\nLINE\n8\n0\n10\n%1\n20\n0\n11\n%1\n21\n9").arg(i);
    return lines << QStringLiteral("0\nENDSEC\n0\nEOF");
}
