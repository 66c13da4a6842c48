#pragma once

#include "conversion.h"
#include "options.h"
#include "prepareprocess.h"

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTimer>
#include <QWidget>

class QLabel;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;

/// Checks and prepares files with the companion program, and shows its progress and its reports.
class PreparePane : public QWidget
{
    Q_OBJECT

public:
    /// \a program is the path of the companion.
    explicit PreparePane(QString program, QWidget *parent = nullptr);

    /// Reports what an import with \a choices would lose. Does nothing while the program runs.
    void check(const DialogChoices &choices);

    /// Writes the content of \a input to the MIF file \a output and its MID file. Does nothing while the program runs.
    void convert(const QString &input, const QString &output, bool overwrite);

    /// Ends the program and waits for it. The call has no result, so ended() is not emitted.
    void stop();

    bool isRunning() const { return m_process.isRunning(); }

    /// The file of the last call.
    const QString &fileName() const { return m_fileName; }

    /// The last conversion that succeeded.
    const Conversion &conversion() const { return m_conversion; }

Q_SIGNALS:
    void runningChanged();
    void converted();
    void ended(const QString &text, bool isError); ///< \a text is the result of a call, or of a button, in one line
    void prepareRequested();
    void importRequested();

private:
    enum class Task { Check, Convert };

    QPushButton *addButton(const char *name, const QString &text, const QString &toolTip);
    void start(Task task, const QString &fileName, const QStringList &arguments);
    QStringList pageArguments();
    QString cancelledText() const;
    void finishCall();
    void finishCheck();
    void finishConversion();
    void fail(const QString &text, const QString &details = QString());
    void showEnd(const QString &text, bool isError);
    void showRunning();
    void showTime();
    void openPage();

    const QString m_program;
    PrepareProcess m_process;
    Task m_task = Task::Check;
    QString m_fileName;
    QTemporaryDir m_pages;
    QString m_page; ///< HTML page of the last check; empty: none
    Conversion m_conversion;
    QElapsedTimer m_elapsed;
    QTimer m_clock;

    QLabel *m_note;
    QPushButton *m_cancelButton;
    QPushButton *m_pageButton;
    QPushButton *m_prepareButton;
    QPushButton *m_importButton;
    QProgressBar *m_progress;
    QPlainTextEdit *m_view;
};
