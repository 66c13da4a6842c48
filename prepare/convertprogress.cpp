#include "convertprogress.h"

#include "console.h"

#include <algorithm>

namespace {

constexpr qint64 firstShown = 1000; // ms
constexpr qint64 interval = 200;

} // namespace

ConvertProgress::ConvertProgress() : m_isTerminal(isErrorOutputTerminal())
{
    m_timer.start();
}

ConvertProgress::~ConvertProgress()
{
    if (m_isShown)
        replaceTerminalLine(QString());
}

bool ConvertProgress::isInterrupted()
{
    return Interruption::isRequested();
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
    QString text = m_step;
    if (m_done > 0)
        text += m_total > 0 ? QStringLiteral(" %1 %").arg(100 * m_done / m_total) : QStringLiteral(" %1").arg(m_done);
    replaceTerminalLine(text);
    m_isShown = true;
}
