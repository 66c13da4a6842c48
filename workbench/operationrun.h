#pragma once

#include "options.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

class MessageWindow;

/// One call of an operation: fills in a file name, shows the messages beside the open dialog, and observes how the
/// dialog is closed.
///
/// Only one run may exist at a time, because the interface's status callback has no context argument.
class OperationRun : public QObject
{
    Q_OBJECT

public:
    enum class Outcome { NoDialog, Cancelled, Accepted };

    OperationRun();
    ~OperationRun() override;

    /// Calls \a op and returns after its dialog was closed. \a fileName, unless empty, is entered as the object file.
    void call(ImportGeometryInterface &plugin, const HostOptions &options, const QString &op, const QString &fileName);

    /// Makes call() select what a prepared file needs: its \a encoding, both searches and no file of points.
    void setPreparedEncoding(const QString &encoding) { m_preparedEncoding = encoding; }

    Outcome outcome() const { return m_outcome; }

    /// The result document; may be empty even if the dialog was accepted.
    const QString &result() const { return m_result; }

    /// The absolute name of the object file in the dialog when it was accepted; may be empty.
    const QString &fileName() const { return m_fileName; }

    /// False if the dialog was accepted before its file was processed.
    bool wasProcessed() const { return m_wasProcessed; }

    /// The files, the encoding and the searches of the last processing; no files if there was none.
    const DialogChoices &choices() const { return m_choices; }

    /// True if the dialog listed objects when it was closed.
    bool hasObjects() const { return m_hasObjects; }

    /// Number and last text of the messages since the dialog last started to process a file.
    int messageCount() const { return m_messageCount; }
    const QString &lastMessage() const { return m_lastMessage; }

Q_SIGNALS:
    void message(const QString &text);

private:
    static void showStatus(const QString &text);

    void receive(const QString &text);
    void observeDialog();
    void observeProcessing(QWidget *dialog);
    void enterPrepared();
    void beginProcessing();
    void readChoices();
    void closeDialog(int code);

    QTimer m_observer; ///< fires when the dialog has opened
    QString m_requestedFile;
    QString m_preparedEncoding;
    QPointer<QWidget> m_dialog;
    QPointer<MessageWindow> m_messageWindow; ///< owned by the dialog
    Outcome m_outcome = Outcome::NoDialog;
    QString m_result;
    QString m_fileName;
    bool m_wasProcessed = true; ///< until the dialog turns out to have a process button
    bool m_isPressed = false;   ///< the process button was pressed; its click may follow
    DialogChoices m_choices;
    bool m_hasObjects = false;
    int m_messageCount = 0;
    QString m_lastMessage;
};
