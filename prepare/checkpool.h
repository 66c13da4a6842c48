#pragma once

#include "checkcommand.h"
#include "report.h"

#include <QObject>
#include <QTemporaryDir>
#include <QVector>

#include <functional>
#include <optional>

class QEventLoop;
class QProcess;

/// Checks several files in parallel, each in its own process: a crash or hang of a library becomes a finding of that
/// file and does not affect the others.
class CheckPool : public QObject
{
    Q_OBJECT

public:
    /// Called for each report, in the order of the files. Returns false to end the checks.
    using Consumer = std::function<bool(const FileReport &report)>;

    /// \a command must outlive this object. \a program is this program itself, except in tests.
    CheckPool(const CheckCommand &command, QString program);

    /// Checks all files. Returns when all reports have been delivered, or at once when the consumer or an interruption
    /// ends the checks; no child process is then left.
    void run(const Consumer &consumer);

private:
    void startNext();
    void start(int index);
    void finish(int index, QProcess &process, bool isTimeout);
    void deliver();
    void end();
    QStringList argumentsFor(int index) const;
    QString pictureFile(int index) const;

    const CheckCommand &m_command;
    QString m_program;
    Consumer m_consumer;
    QEventLoop *m_loop = nullptr;
    QTemporaryDir m_pictures;
    QVector<std::optional<FileReport>> m_reports; ///< those that wait for the report of an earlier file
    int m_next = 0;                               ///< index of the next file to start
    int m_delivered = 0;                          ///< number of reports delivered
    bool m_isEnded = false;
};
