#pragma once

#include <QPlainTextEdit>

/// Messages, one a line, each with the time it came. Only the newest are kept.
class MessageList : public QPlainTextEdit
{
    Q_OBJECT

public:
    explicit MessageList(QWidget *parent = nullptr);

    /// Appends \a text, with the current time, as one line. A very long text is shortened.
    void append(const QString &text);

    static constexpr int maxMessages = 10000;
    static constexpr int maxLength = 2000; ///< characters of a message
};
