#include "convertprogress.h"

#include <QByteArray>

#include <csignal>
#include <cstdio>

#ifdef Q_OS_WIN
#include <io.h>
#else
#include <unistd.h>
#endif

namespace {

constexpr qint64 firstShown = 1000; // ms
constexpr qint64 interval = 200;

volatile std::sig_atomic_t interrupted = 0;

// A second signal ends the program even where GDAL hangs; then the temporary folder remains.
void interrupt(int signal)
{
    interrupted = 1;
    std::signal(signal, SIG_DFL);
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
    interrupted = 0;
    std::signal(SIGINT, interrupt);
    std::signal(SIGTERM, interrupt);
    m_timer.start();
}

ConvertProgress::~ConvertProgress()
{
    clear();
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
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
