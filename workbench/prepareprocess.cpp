#include "prepareprocess.h"

#include <QSignalBlocker>

namespace {

constexpr int gracePeriod = 2000; // ms

} // namespace

PrepareProcess::PrepareProcess(QObject *parent) : QObject(parent)
{
    m_process.setStandardInputFile(QProcess::nullDevice());
    m_killTimer.setSingleShot(true);
    m_killTimer.setInterval(gracePeriod);
    connect(&m_killTimer, &QTimer::timeout, &m_process, &QProcess::kill);
    connect(&m_process, &QProcess::readyReadStandardOutput, this,
            [this] { receive(m_process.readAllStandardOutput(), m_output); });
    connect(&m_process, &QProcess::readyReadStandardError, this,
            [this] { receive(m_process.readAllStandardError(), m_errors); });
    connect(&m_process, &QProcess::errorOccurred, this, &PrepareProcess::handleError);
    connect(&m_process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            &PrepareProcess::handleEnd);
}

PrepareProcess::~PrepareProcess()
{
    stop();
}

void PrepareProcess::start(const QString &program, const QStringList &arguments)
{
    if (m_isRunning)
        return;
    m_isRunning = true;
    m_isCancelled = false;
    m_output.clear();
    m_errors.clear();
    m_process.start(program, arguments);
}

void PrepareProcess::cancel()
{
    if (!m_isRunning || m_isCancelled)
        return;
    m_isCancelled = true;
    m_killTimer.start();
    m_process.terminate();
}

// A program that is asked to end removes its temporary files, which takes some time.
void PrepareProcess::stop()
{
    const QSignalBlocker blocker(m_process);
    m_killTimer.stop();
    if (m_process.state() != QProcess::NotRunning) {
        m_process.terminate();
        if (!m_process.waitForFinished(gracePeriod)) {
            m_process.kill();
            m_process.waitForFinished(gracePeriod);
        }
    }
    m_isRunning = false;
}

// Bytes beyond the limit are read too: a full pipe would block the program.
void PrepareProcess::receive(const QByteArray &bytes, QByteArray &kept)
{
    kept += bytes.left(maxOutput - kept.size());
}

// All other errors are followed by the end of the program.
void PrepareProcess::handleError(QProcess::ProcessError error)
{
    if (error == QProcess::FailedToStart)
        finish(End::NotStarted);
}

// A program that completed its work before it could be cancelled has finished.
void PrepareProcess::handleEnd(int exitCode, QProcess::ExitStatus status)
{
    const bool isDone = status == QProcess::NormalExit && exitCode == 0;
    if (m_isCancelled && !isDone)
        finish(End::Cancelled);
    else
        finish(status == QProcess::NormalExit ? End::Finished : End::Crashed);
}

void PrepareProcess::finish(End end)
{
    m_killTimer.stop();
    m_isRunning = false;
    m_end = end;
    Q_EMIT finished();
}
