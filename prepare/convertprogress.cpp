#include "convertprogress.h"

#include <QByteArray>
#include <QFile>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>

#ifdef Q_OS_WIN
#include <direct.h>
#include <io.h>
#else
#include <unistd.h>
#endif

namespace {

constexpr qint64 firstShown = 1000; // ms
constexpr qint64 interval = 200;

volatile std::sig_atomic_t interrupted = 0;

// Paths in memory that a signal handler may read.
constexpr int maxFiles = 4;
constexpr int maxPath = 4096;
std::array<std::array<char, maxPath>, maxFiles> temporaryFiles;
volatile std::sig_atomic_t temporaryCount = 0;
volatile std::sig_atomic_t isReplacing = 0;

// Calls only what a signal handler may call. Windows keeps files that are open.
void removeTemporaryFiles()
{
    const int count = temporaryCount;
    for (int i = 0; i < count; ++i) {
        const char *const path = temporaryFiles[static_cast<std::size_t>(i)].data();
#ifdef Q_OS_WIN
        i + 1 < count ? _unlink(path) : _rmdir(path);
#else
        i + 1 < count ? unlink(path) : rmdir(path);
#endif
    }
}

void interrupt(int signal)
{
    const bool isSecond = interrupted != 0;
    interrupted = 1;
    if (isSecond && isReplacing == 0) {
        removeTemporaryFiles();
        std::signal(signal, SIG_DFL);
        std::raise(signal);
    } else {
        std::signal(signal, interrupt);
    }
}

bool isErrorOutputTerminal()
{
#ifdef Q_OS_WIN
    return _isatty(_fileno(stderr)) != 0;
#else
    return isatty(STDERR_FILENO) != 0;
#endif
}

} // namespace

ConvertProgress::ConvertProgress() : m_isTerminal(isErrorOutputTerminal())
{
    interrupted = isReplacing = temporaryCount = 0;
    std::signal(SIGINT, interrupt);
    std::signal(SIGTERM, interrupt);
    m_timer.start();
}

ConvertProgress::~ConvertProgress()
{
    clear();
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
    temporaryCount = 0;
}

void ConvertProgress::setTemporaryFiles(const QStringList &files)
{
    temporaryCount = 0;
    int count = 0;
    for (const QString &file : files) {
        const QByteArray path = QFile::encodeName(file);
        if (count == maxFiles || path.size() >= maxPath)
            return;
        std::copy(path.constData(), path.constData() + path.size() + 1,
                  temporaryFiles[static_cast<std::size_t>(count)].begin());
        ++count;
    }
    temporaryCount = count;
}

void ConvertProgress::beginReplacing()
{
    isReplacing = 1;
}

bool ConvertProgress::isInterrupted()
{
    return interrupted != 0;
}

void ConvertProgress::begin(const QString &step, qint64 total)
{
    m_step = step;
    m_total = total;
    m_done = 0;
    show();
}

bool ConvertProgress::advance()
{
    ++m_done;
    show();
    return !isInterrupted();
}

void ConvertProgress::show()
{
    if (!m_isTerminal || m_timer.elapsed() < std::max(firstShown, m_lastShown + interval))
        return;
    m_lastShown = m_timer.elapsed();
    QString text = QStringLiteral("\r\x1b[K%1").arg(m_step);
    if (m_done > 0)
        text += m_total > 0 ? QStringLiteral(" %1 %").arg(100 * m_done / m_total) : QStringLiteral(" %1").arg(m_done);
    std::fputs(text.toUtf8().constData(), stderr);
    std::fflush(stderr);
    m_isShown = true;
}

void ConvertProgress::clear()
{
    if (m_isShown)
        std::fputs("\r\x1b[K", stderr);
}
