#pragma once

#include "interruption.h"

#include <QElapsedTimer>
#include <QString>

/// Shows the progress on a terminal if the work takes longer than a second, and records an interruption by the user.
class ConvertProgress
{
public:
    ConvertProgress();
    ~ConvertProgress();
    ConvertProgress(const ConvertProgress &) = delete;
    ConvertProgress &operator=(const ConvertProgress &) = delete;

    /// Begins the next step with \a total pieces of work; 0 or less means unknown.
    void begin(const QString &step, qint64 total);

    /// Counts one piece. Returns false if the user has interrupted the work.
    bool advance();

    static bool isInterrupted();

private:
    void show();

    const Interruption m_interruption;
    QString m_step;
    qint64 m_total = 0;
    qint64 m_done = 0;
    qint64 m_lastShown = 0;
    bool m_isTerminal;
    bool m_isShown = false;
    QElapsedTimer m_timer;
};
