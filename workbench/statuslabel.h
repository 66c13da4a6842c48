#pragma once

#include <QLabel>

/// A line in the status bar. A long text is elided instead of widening the window; its tool tip is complete.
class StatusLabel : public QLabel
{
    Q_OBJECT

public:
    explicit StatusLabel(QWidget *parent = nullptr);

    /// An error is shown in red.
    void setStatus(const QString &status, bool isError = false);
    const QString &status() const { return m_status; }
    bool isError() const { return m_isError; }

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void elide();

    QString m_status;
    bool m_isError = false;
};
