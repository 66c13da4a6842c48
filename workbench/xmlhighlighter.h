#pragma once

#include <QSyntaxHighlighter>

/// Colours the tags, names and attribute values of an XML text. A tag is recognised within one line, as in a result.
class XmlHighlighter : public QSyntaxHighlighter
{
    Q_OBJECT

public:
    explicit XmlHighlighter(QTextDocument *document);

    /// Chooses colours that are readable on the background of \a palette.
    void setColors(const QPalette &palette);

protected:
    void highlightBlock(const QString &text) override;

private:
    void highlightTag(const QString &text, int start, int end);

    QTextCharFormat m_markup;
    QTextCharFormat m_name;
    QTextCharFormat m_value;
};
