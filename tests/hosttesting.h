#pragma once

#include "testing.h"

#include <QProcess>
#include <QRegularExpression>

const QString strMif = QStringLiteral("Объекты из MIF");

/// What came of one run of the program.
struct HostRun
{
    int status; ///< of the exit; -1 when the program did not end by itself
    QString output;
    QStringList messages;
};

/// Runs the program in a folder of its own, with its files, and with settings
/// of its own.
struct Host
{
    Host()
    {
        environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), settings.path());
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), settings.path());
    }

    void removeDisplay()
    {
        environment.remove(QStringLiteral("DISPLAY"));
        environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
        environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
    }

    void start(QProcess &process, const QStringList &args) const
    {
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(folder);
        process.start(QStringLiteral(IMPORTHOST_PATH), args);
        process.closeWriteChannel();
    }

    HostRun run(const QStringList &args) const
    {
        QProcess process;
        start(process, args);
        const bool ended = process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit;
        const QString messages = QString::fromUtf8(process.readAllStandardError());
        return {ended ? process.exitCode() : -1, QString::fromUtf8(process.readAllStandardOutput()),
                messages.split(QLatin1Char('\n'), Qt::SkipEmptyParts)};
    }

    HostRun importMif(const QString &fileName, const QStringList &args = {}) const
    {
        return run(QStringList{QStringLiteral("--operation"), strMif, QStringLiteral("--objects"), fileName} + args);
    }

    /// Writes a pair of files; \a data begins in line 5.
    void writeMif(const QString &name, const QString &data, const QString &records, const char *codec = "UTF-8") const
    {
        const QString header = QStringLiteral("VERSION 300\nCHARSET \"WindowsCyrillic\"\nDELIMITER \",\"\nDATA");
        files.write(name + QStringLiteral(".mif"), {header, data}, codec);
        files.write(name + QStringLiteral(".mid"), {records}, codec);
    }

    /// A point, a region that begins on it, and a polyline that begins on the
    /// region's third vertex.
    void writePlan() const
    {
        writeMif(QStringLiteral("plan"),
                 QStringLiteral("POINT 1000 2000\n"
                                "REGION 1\n4\n1000 2000\n1010.5 2000\n1010.5 2010\n1000 2000\n"
                                "PLINE 2\n1010.5 2010\n1020 2020"),
                 QStringLiteral("т1\nЗУ10\nЗУ2"));
    }

    void writeLine() const
    {
        writeMif(QStringLiteral("line"), QStringLiteral("LINE 1000 2000 1010.5 2000"), QStringLiteral("ЗУ1"));
    }

    const TextFixture files;
    const QTemporaryDir settings;
    QString folder = files.path(QString()); ///< that the program runs in
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
};

/// The text without the line breaks and indentation between its elements.
inline QString compact(const QString &xml)
{
    return xml.trimmed().replace(QRegularExpression(QStringLiteral(">\\s+<")), QStringLiteral("><"));
}

/// Cells from their texts, which are separated by commas.
inline QString cells(const QString &texts)
{
    QString xml;
    const QStringList parts = texts.split(QLatin1Char(','));
    for (const QString &part : parts)
        xml += part.isEmpty() ? QStringLiteral("<Cell/>") : QStringLiteral("<Cell>%1</Cell>").arg(part);
    return xml;
}

inline QString object(const QString &def, const QStringList &vertices,
                      const QString &table = QStringLiteral("Координаты"))
{
    QString xml = QStringLiteral("<Row>") + cells(def);
    xml += table.isEmpty() ? QStringLiteral("<FormTable>") : QStringLiteral("<FormTable Name=\"%1\">").arg(table);
    for (const QString &vertex : vertices)
        xml += QStringLiteral("<Row>%1</Row>").arg(cells(vertex));
    return xml + QStringLiteral("</FormTable></Row>");
}

inline QString document(const QString &objects, const QString &attributes = QStringLiteral(" Name=\"Участки\""))
{
    return QStringLiteral("<FormTable%1>%2</FormTable>").arg(attributes, objects);
}

/// The region of the plan with the numbers of its four vertices, which are
/// separated by blanks.
inline QString planRegion(const QString &def, const QString &numbers)
{
    const QStringList number = numbers.split(QLatin1Char(' '));
    return object(
        def, {number.at(0) + QStringLiteral(",1000.00,2000.00"), number.at(1) + QStringLiteral(",1010.50,2000.00"),
              number.at(2) + QStringLiteral(",1010.50,2010.00"), number.at(3) + QStringLiteral(",1000.00,2000.00")});
}

inline QString planLine(const QString &def, const QString &numbers)
{
    const QStringList number = numbers.split(QLatin1Char(' '));
    return object(
        def, {number.at(0) + QStringLiteral(",1010.50,2010.00"), number.at(1) + QStringLiteral(",1020.00,2020.00")});
}

/// What writePlan() and writeLine() give unless told otherwise.
const QString documentOfPlan = document(planRegion(QStringLiteral("ЗУ10"), QStringLiteral("т1 н1 н2 т1")) +
                                        planLine(QStringLiteral("ЗУ2"), QStringLiteral("н2 н3")));
const QString documentOfLine = document(
    object(QStringLiteral("ЗУ1"), {QStringLiteral("н1,1000.00,2000.00"), QStringLiteral("н2,1010.50,2000.00")}));

/// Has arguments and file names handed to the program in this encoding,
/// whatever the locale of the test.
inline void useUtf8()
{
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
}

/// Arguments from a text in which they are separated by blanks.
inline QStringList arguments(const char *text)
{
    return QString::fromUtf8(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}
