#pragma once

#include <QWidget>

class QLabel;
class QPlainTextEdit;
class QPushButton;
class XmlHighlighter;

/// The result document with highlighting. Of a long document only the beginning is shown.
class ResultPane : public QWidget
{
    Q_OBJECT

public:
    explicit ResultPane(QWidget *parent = nullptr);

    void setText(const QString &text);

    /// All of the document.
    const QString &text() const { return m_text; }

    static constexpr int maxShown = 1 << 20; ///< characters

Q_SIGNALS:
    void saveRequested();

protected:
    void changeEvent(QEvent *event) override;

private:
    QString m_text;
    QPlainTextEdit *m_view;
    XmlHighlighter *m_highlighter;
    QLabel *m_note;
    QPushButton *m_saveButton;
};
