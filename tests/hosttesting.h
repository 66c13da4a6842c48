#pragma once

#include "testing.h"

#include <QProcess>
#include <QRegularExpression>

/// Encodes arguments and file names as UTF-8 in any locale.
inline void useUtf8()
{
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
}

/// Splits \a text at its blanks.
inline QStringList arguments(const char *text)
{
    return QString::fromUtf8(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

/// The outcome of one run of the stand-in host.
struct HostRun
{
    int status; ///< exit status; -1 after a crash or a timeout
    QString output;
    QStringList messages;
    QString summary; ///< the closing line of an import; empty if there is none
};

/// Runs the stand-in host in a temporary folder with its own settings.
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
        return run(args, process);
    }

    HostRun run(const QStringList &args, QProcess &process) const
    {
        start(process, args);
        const bool ended = process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit;
        const QString messages = QString::fromUtf8(process.readAllStandardError());
        HostRun run{ended ? process.exitCode() : -1, QString::fromUtf8(process.readAllStandardOutput()),
                    messages.split(QLatin1Char('\n'), Qt::SkipEmptyParts), QString()};
        static const QRegularExpression summary(QStringLiteral("^\\d+ objects?, \\d+ vert(ex|ices), \\d+ messages?$"));
        if (!run.messages.isEmpty() && summary.match(run.messages.last()).hasMatch())
            run.summary = run.messages.takeLast();
        return run;
    }

    /// Imports a file in UTF-8.
    HostRun importMif(const QString &fileName, const QStringList &args = {}) const
    {
        return run(arguments("--operation mif --encoding UTF-8 --objects") + QStringList{fileName} + args);
    }

    /// Runs a plug-in that returns \a result. With --form-name in \a args, its message is that name.
    HostRun echo(const QString &result, const QStringList &args = {}) const
    {
        const QStringList call{QStringLiteral("--plugin"),     QStringLiteral(ECHOPLUGIN_PATH),
                               QStringLiteral("--objects"),    QStringLiteral("x"),
                               QStringLiteral("--form-name="), QStringLiteral("--operation=") + result};
        return run(call + args);
    }

    /// Writes a MIF file whose line 5 is the first of \a data, and its MID file.
    void writeMif(const QString &name, const QString &data, const QString &records, const char *codec = "UTF-8") const
    {
        const QString header = QStringLiteral("VERSION 300\nCHARSET \"WindowsCyrillic\"\nDELIMITER \",\"\nDATA");
        files.write(name + QStringLiteral(".mif"), {header, data}, codec);
        files.write(name + QStringLiteral(".mid"), {records}, codec);
    }

    /// Writes a point, a region that starts at it, and a polyline that starts at the region's third vertex.
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

    QByteArray content(const char *fileName) const
    {
        QFile file(files.path(QString::fromUtf8(fileName)));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("not opened");
    }

    const TextFixture files;
    const QTemporaryDir settings;
    QString folder = files.path(QString()); ///< working directory of the program
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
};

/// \a xml without white space between its elements.
inline QString compact(const QString &xml)
{
    return xml.trimmed().replace(QRegularExpression(QStringLiteral(">\\s+<")), QStringLiteral("><"));
}

/// A cell for each of \a texts, which are separated by commas.
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

/// The region of writePlan(). The \a numbers of its four vertices are separated by blanks.
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

/// The results of writePlan() and writeLine() with the default options.
const QString documentOfPlan = document(planRegion(QStringLiteral("ЗУ10"), QStringLiteral("т1 н1 н2 т1")) +
                                        planLine(QStringLiteral("ЗУ2"), QStringLiteral("н2 н3")));
const QString documentOfLine = document(
    object(QStringLiteral("ЗУ1"), {QStringLiteral("н1,1000.00,2000.00"), QStringLiteral("н2,1010.50,2000.00")}));
