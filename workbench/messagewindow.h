#pragma once

#include <QElapsedTimer>
#include <QWidget>

class MessageList;

/// A place for a window of \a size on \a screen beside \a dialog: right of it, else left, below or above, else in the
/// place at the border of the screen where it covers least of the dialog. All rectangles include the window frames.
QRect placeBeside(const QRect &dialog, const QSize &size, const QRect &screen);

/// The messages of a run, beside the modal dialog that the run belongs to.
///
/// It is a child of the dialog, so that the dialog's modality does not block it, and is destroyed with it. It is hidden
/// until the first message and never takes the focus.
class MessageWindow : public QWidget
{
    Q_OBJECT

public:
    explicit MessageWindow(QWidget *dialog);

    /// Appends a message and paints it at once: the plug-in may not return to the event loop for minutes.
    void append(const QString &text);

    /// Removes all messages and hides the window.
    void clear();

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void place();
    void showNow();
    void paintNow();

    QWidget *m_dialog;
    MessageList *m_list;
    QElapsedTimer m_sincePaint;
    qint64 m_paintTime = 0; ///< duration of the last painting in ns
};
