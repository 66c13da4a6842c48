#pragma once

#include "facilities.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTest>
#include <QThread>

#include <csignal>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif
#ifdef Q_OS_LINUX
#include <sys/mount.h>
#endif

/// The names of all files in \a folder.
inline QStringList entries(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}

/// Waits until \a folder has more than \a count files, but not longer than 30 seconds.
inline void waitForMoreEntries(const QString &folder, int count)
{
    QElapsedTimer timer;
    timer.start();
    while (entries(folder).size() <= count && timer.elapsed() < 30000)
        QThread::msleep(1);
}

/// Creates a pipe. Requires namedPipes().
inline bool makePipe(const QString &path)
{
#ifdef Q_OS_UNIX
    return mkfifo(QFile::encodeName(path).constData(), 0600) == 0;
#else
    Q_UNUSED(path)
    return false;
#endif
}

/// A file system in the new folder \a path, for the lifetime of the object.
class SmallDisk
{
public:
    static constexpr int size = 65536; ///< in bytes

    explicit SmallDisk(const QString &path) : m_path(QFile::encodeName(path))
    {
#ifdef Q_OS_LINUX
        const QByteArray options = "size=" + QByteArray::number(size);
        m_isMounted = QDir().mkdir(path) && mount("tmpfs", m_path.constData(), "tmpfs", 0, options.constData()) == 0;
#endif
    }
    ~SmallDisk()
    {
#ifdef Q_OS_LINUX
        if (m_isMounted)
            umount(m_path.constData());
#endif
    }
    SmallDisk(const SmallDisk &) = delete;
    SmallDisk &operator=(const SmallDisk &) = delete;

    /// Only Linux has it, and usually only its superuser.
    Facility mounted() const
    {
        return {m_isMounted, "a right to mount a disk"};
    }

private:
    QByteArray m_path;
    bool m_isMounted = false;
};

/// Signals may be ignored where the tests run in the background, and child processes inherit that.
inline void stopIgnoringSignals()
{
    std::signal(SIGINT, SIG_DFL);
#ifdef SIGHUP
    std::signal(SIGHUP, SIG_DFL);
#endif
}

/// Adds the column "signal" with the signals that ask a program to end.
inline void addSignals()
{
    QTest::addColumn<int>("signal");

    QTest::newRow("interrupt") << SIGINT;
    QTest::newRow("terminate") << SIGTERM;
#ifdef SIGHUP
    QTest::newRow("hang up") << SIGHUP;
#endif
}

/// Requires terminationSignal().
inline bool sendSignal(const QProcess &process, int signal)
{
#ifdef Q_OS_UNIX
    return kill(static_cast<pid_t>(process.processId()), signal) == 0;
#else
    Q_UNUSED(process)
    Q_UNUSED(signal)
    return false;
#endif
}
