#pragma once

#include <QElapsedTimer>
#include <QString>
#include <QStringList>

/// Shows how far the work is, if the error output is a terminal and the work takes longer than a second, and learns of
/// an interruption by the user.
class ConvertProgress
{
public:
    /// From now on the signals of interruption are only remembered, so that nothing is left behind.
    ConvertProgress();
    ~ConvertProgress();
    ConvertProgress(const ConvertProgress &) = delete;
    ConvertProgress &operator=(const ConvertProgress &) = delete;

    /// Begins the next step with \a total pieces of work; 0 or less means unknown.
    void begin(const QString &step, qint64 total);

    /// Counts one piece. Returns false if the user has interrupted the work.
    bool advance();

    static bool isInterrupted();

    /// From now on a second signal removes \a files, which have no other content than a temporary folder, the last of
    /// them, and ends the program at once, even where GDAL hangs.
    static void setTemporaryFiles(const QStringList &files);

    /// From now on a second signal is ignored: the temporary folder has the files that are being replaced.
    static void beginReplacing();

private:
    void show();
    void clear();

    QString m_step;
    qint64 m_total = 0;
    qint64 m_done = 0;
    qint64 m_lastShown = 0;
    bool m_isTerminal;
    bool m_isShown = false;
    QElapsedTimer m_timer;
};
