#include "checkpool.h"

#include "checkfile.h"
#include "interruption.h"

#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QTimer>

#include <utility>

namespace {

constexpr int interruptionInterval = 100; // ms

} // namespace

CheckPool::CheckPool(const CheckCommand &command, QString program)
    : m_command(command),
      m_program(std::move(program)),
      m_reports(command.files.size())
{
}

void CheckPool::run(const Consumer &consumer)
{
    QEventLoop loop;
    m_consumer = consumer;
    m_loop = &loop;
    for (int i = 0; i < m_command.jobs; ++i)
        startNext();
    QTimer interruption;
    connect(&interruption, &QTimer::timeout, this, [this] {
        if (Interruption::isRequested())
            end();
    });
    interruption.start(interruptionInterval);
    if (!m_isEnded)
        loop.exec();
}

// The children end before their folder is removed.
void CheckPool::end()
{
    m_isEnded = true;
    const QList<QProcess *> processes = findChildren<QProcess *>();
    for (QProcess *const process : processes) {
        process->disconnect(this);
        process->kill();
        process->waitForFinished();
    }
    m_loop->quit();
}

QString CheckPool::pictureFile(int index) const
{
    return m_pictures.filePath(QString::number(index));
}

QStringList CheckPool::argumentsFor(int index) const
{
    QStringList arguments{QStringLiteral("check"), QStringLiteral("--json"), QStringLiteral("--encoding"),
                          m_command.options.encoding};
    if (!m_command.options.pointFile.isEmpty())
        arguments += {QStringLiteral("--points"), m_command.options.pointFile};
    if (!m_command.options.searchPoints)
        arguments += QStringLiteral("--no-search-points");
    if (!m_command.options.searchObjects)
        arguments += QStringLiteral("--no-search-objects");
    if (!m_command.page.isEmpty())
        arguments += {QStringLiteral("--picture"), pictureFile(index)};
    return arguments + QStringList{QStringLiteral("--"), m_command.files.at(index)};
}

void CheckPool::startNext()
{
    if (m_next < m_reports.size() && !m_isEnded)
        start(m_next++);
}

// The timer kills a process that takes too long. The pool owns the process, which owns the timer.
void CheckPool::start(int index)
{
    auto *const process = new QProcess(this);
    auto *const timer = new QTimer(process);
    timer->setSingleShot(true);
    connect(timer, &QTimer::timeout, process, &QProcess::kill);
    const auto finishProcess = [this, index, process, timer] {
        finish(index, *process, !timer->isActive());
        process->deleteLater();
    };
    connect(process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this, finishProcess);
    connect(process, &QProcess::errorOccurred, this, [finishProcess](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            finishProcess();
    });
    process->setStandardInputFile(QProcess::nullDevice());
    process->setStandardErrorFile(QProcess::nullDevice());
    timer->start(m_command.timeoutMilliseconds);
    process->start(m_program, argumentsFor(index));
}

void CheckPool::finish(int index, QProcess &process, bool isTimeout)
{
    if (Interruption::isRequested())
        return end(); // the same signal may have ended the child
    std::optional<FileReport> &report = m_reports[index];
    report = reportFromJson(process.readAllStandardOutput());
    if (!report) {
        const QString id = isTimeout ? QStringLiteral("timeout") : QStringLiteral("crash");
        report = reportWithFinding(m_command.files.at(index), m_command.options, id);
    }
    QFile picture(pictureFile(index));
    if (picture.open(QIODevice::ReadOnly))
        report->picture = picture.readAll();
    picture.remove();
    deliver();
    startNext();
}

// Releases each report, whose picture may be large.
void CheckPool::deliver()
{
    while (m_delivered < m_reports.size() && m_reports.at(m_delivered)) {
        const std::optional<FileReport> report = std::exchange(m_reports[m_delivered++], std::nullopt);
        if (!m_consumer(*report))
            return end();
    }
    if (m_delivered == m_reports.size())
        end();
}
