#include "xmlhighlighter.h"

#include "colors.h"

namespace {

// Highlighting a line of a megabyte would take seconds.
constexpr int maxLineLength = 10000;

bool isNameEnd(QChar c)
{
    return c.isSpace() || c == QLatin1Char('/') || c == QLatin1Char('>') || c == QLatin1Char('=');
}

} // namespace

XmlHighlighter::XmlHighlighter(QTextDocument *document) : QSyntaxHighlighter(document) {}

void XmlHighlighter::setColors(const QPalette &palette)
{
    m_markup.setForeground(readable(QColor(0x80, 0x80, 0x80), palette));
    m_name.setForeground(readable(QColor(0x1f, 0x5f, 0xb0), palette));
    m_value.setForeground(readable(QColor(0x2e, 0x7d, 0x32), palette));
    rehighlight();
}

void XmlHighlighter::highlightBlock(const QString &text)
{
    if (text.size() > maxLineLength)
        return;
    for (int start = text.indexOf(QLatin1Char('<')); start >= 0;) {
        const int found = text.indexOf(QLatin1Char('>'), start);
        const int end = found < 0 ? text.size() : found + 1;
        highlightTag(text, start, end);
        start = text.indexOf(QLatin1Char('<'), end);
    }
}

void XmlHighlighter::highlightTag(const QString &text, int start, int end)
{
    setFormat(start, end - start, m_markup);
    for (int i = start + 1; i < end; ++i) {
        const int first = i;
        if (text.at(i) == QLatin1Char('"')) {
            const int quote = text.indexOf(QLatin1Char('"'), i + 1);
            i = quote < 0 || quote >= end ? end - 1 : quote;
            setFormat(first, i + 1 - first, m_value);
        } else if (!isNameEnd(text.at(i))) {
            while (i < end && !isNameEnd(text.at(i)))
                ++i;
            setFormat(first, i - first, m_name);
        }
    }
}
