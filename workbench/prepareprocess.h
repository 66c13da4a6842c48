#pragma once

#include <QByteArray>
#include <QProcess>
#include <QStringList>
#include <QTimer>

/// Runs the companion program in the background, one call at a time.
///
/// The destructor ends a running program.
class PrepareProcess : public QObject
{
    Q_OBJECT

public:
    enum class End { Finished, Cancelled, Crashed, NotStarted };

    explicit PrepareProcess(QObject *parent = nullptr);
    ~PrepareProcess() override;

    /// Starts \a program, which ends with finished(). Does nothing while another one runs.
    void start(const QString &program, const QStringList &arguments);

    /// Asks the program to end, and kills it if it does not.
    void cancel();

    /// Ends the program and waits for it. finished() is not emitted.
    void stop();

    bool isRunning() const { return m_isRunning; }

    /// How the last call ended.
    End end() const { return m_end; }

    /// The exit status of the last call, if its end is Finished.
    int exitCode() const { return m_process.exitCode(); }

    /// The beginning of what the program wrote, as UTF-8.
    const QByteArray &output() const { return m_output; }
    const QByteArray &errors() const { return m_errors; }

    static constexpr int maxOutput = 1 << 22; ///< bytes that are kept of the output and of the errors

Q_SIGNALS:
    void finished();

private:
    static void receive(const QByteArray &bytes, QByteArray &kept);
    void handleError(QProcess::ProcessError error);
    void handleEnd(int exitCode, QProcess::ExitStatus status);
    void finish(End end);

    QProcess m_process;
    QTimer m_killTimer; ///< runs once the program was asked to end
    bool m_isRunning = false;
    bool m_isCancelled = false;
    End m_end = End::Finished;
    QByteArray m_output;
    QByteArray m_errors;
};
