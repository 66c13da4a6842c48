#include "checkcommand.h"

#include "checkfile.h"
#include "checkpool.h"
#include "console.h"
#include "interruption.h"
#include "report.h"

#include <QCoreApplication>
#include <QSaveFile>

namespace {

// Unbuffered, because a buffer would put off a failure. A full disk accepts part of the data without an error; only the
// attempt to write the rest fails with a reason.
bool writeAll(QSaveFile &file, const QByteArray &bytes)
{
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return false;
    for (qint64 position = 0; position < bytes.size();) {
        const qint64 written = file.write(bytes.constData() + position, bytes.size() - position);
        if (written <= 0)
            return false;
        position += written;
    }
    return true;
}

/// Returns false after an error, which has been reported.
bool save(const QString &fileName, const QByteArray &bytes)
{
    QSaveFile file(fileName);
    if (writeAll(file, bytes) && file.commit())
        return true;
    fail(QStringLiteral("Cannot save \"%1\": %2").arg(fileName, file.errorString()));
    return false;
}

/// One run of the sub-command: checks the files, prints their reports and saves the page.
class CheckRun
{
public:
    explicit CheckRun(const CheckCommand &command) : m_command(command) {}

    int run();

private:
    void checkFiles();
    bool take(FileReport report);
    void print(const FileReport &report);
    void showProgress() const;
    bool finish();

    const CheckCommand &m_command;
    QVector<FileReport> m_reports;
    qint64 m_pictureBytes = 0; ///< of all files so far
    int m_completeCount = 0;
    int m_rejectedCount = 0;
    bool m_canPrint = true;
    bool m_isInterrupted = false;
    bool m_showsProgress = false;
};

void CheckRun::checkFiles()
{
    if (m_command.jobs > 0) {
        const Interruption interruption;
        CheckPool pool(m_command, QCoreApplication::applicationFilePath());
        pool.run([this](const FileReport &report) { return take(report); });
        m_isInterrupted = Interruption::isRequested();
        return;
    }
    const bool withPicture = !m_command.page.isEmpty() || !m_command.picture.isEmpty();
    for (const QString &fileName : m_command.files)
        take(checkFile(fileName, m_command.options, withPicture));
}

// All reports are kept for the totals and the page, so the size of their pictures is limited. Returns false if the
// report cannot be printed.
bool CheckRun::take(FileReport report)
{
    constexpr qint64 maxPictureBytes = 30000000;
    m_pictureBytes += report.picture.size();
    if (m_pictureBytes > maxPictureBytes) {
        report.isPictureOmitted = !report.picture.isEmpty();
        report.picture.clear();
    }
    m_completeCount += report.isComplete() ? 1 : 0;
    m_rejectedCount += report.isRejected() ? 1 : 0;
    m_reports.append(report);
    print(report);
    showProgress();
    return m_canPrint;
}

void CheckRun::print(const FileReport &report)
{
    if (m_showsProgress)
        replaceTerminalLine(QString());
    const QString text = m_command.json ? QString::fromUtf8(toJson(report)) : reportText(report);
    m_canPrint = printLine(stdout, text) && m_canPrint;
}

void CheckRun::showProgress() const
{
    if (!m_showsProgress || m_reports.size() == m_command.files.size())
        return;
    replaceTerminalLine(QStringLiteral("%1 of %2 files, %3 complete, %4 rejected")
                            .arg(m_reports.size())
                            .arg(m_command.files.size())
                            .arg(m_completeCount)
                            .arg(m_rejectedCount));
}

// Returns false after an error, which has been reported.
bool CheckRun::finish()
{
    if (m_reports.size() > 1 && !m_command.json)
        m_canPrint = printLine(stdout, totalsText(m_reports)) && m_canPrint;
    if (!m_canPrint) {
        fail(QStringLiteral("Cannot write to the standard output."));
        return false;
    }
    if (!m_command.picture.isEmpty() && !save(m_command.picture, m_reports.first().picture))
        return false;
    return m_command.page.isEmpty() || save(m_command.page, reportPage(m_reports));
}

int CheckRun::run()
{
    m_showsProgress = m_command.files.size() > 1 && isErrorOutputTerminal();
    checkFiles();
    if (m_isInterrupted && m_showsProgress)
        replaceTerminalLine(QString());
    if (m_isInterrupted)
        return fail(QStringLiteral("Interrupted."), Incomplete);
    return finish() ? exitStatus(m_reports) : WrongUsage;
}

} // namespace

int runCheck(const QStringList &arguments)
{
    CheckCommandLine commandLine;
    if (!commandLine.read(arguments))
        return fail(QStringLiteral("%1 See importprepare check --help.").arg(commandLine.error()));
    if (commandLine.command().help)
        return printInformation(commandLine.helpText());
    return CheckRun(commandLine.command()).run();
}
