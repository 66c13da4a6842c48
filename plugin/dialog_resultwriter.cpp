#include "dialog_resultwriter.h"

#include "coordtext.h"

#include <algorithm>

namespace {

QString line(int depth, const char *text)
{
    return QLatin1Char('\n') + QString(4 * depth, QLatin1Char(' ')) + QLatin1String(text);
}

// QXmlStreamWriter escapes or drops these: control characters, U+FFFE, U+FFFF and markup.
bool needsEscaping(QChar c)
{
    return c < QLatin1Char(' ') || c > QChar(0xFFFD) || c == QLatin1Char('<') || c == QLatin1Char('>') ||
           c == QLatin1Char('&') || c == QLatin1Char('"');
}

} // namespace

ResultWriter::Lines::Lines(int depth)
    : table(line(depth, "")),
      startRow(line(depth + 1, "<Row>")),
      endRow(line(depth + 1, "</Row>")),
      emptyRow(line(depth + 1, "<Row/>")),
      startCell(line(depth + 2, "<Cell>")),
      emptyCell(line(depth + 2, "<Cell/>"))
{
}

QString ResultWriter::tableTag(const QString &name, bool isUpdate)
{
    QString tag;
    QXmlStreamWriter writer(&tag);
    writer.writeStartElement(QStringLiteral("FormTable"));
    if (!name.isEmpty())
        writer.writeAttribute(QStringLiteral("Name"), name);
    if (isUpdate)
        writer.writeAttribute(QStringLiteral("Update"), QStringLiteral("1"));
    return tag;
}

QString ResultWriter::endCell()
{
    return QStringLiteral("</Cell>");
}

QString ResultWriter::escaped(const QString &text)
{
    QString result;
    QXmlStreamWriter(&result).writeCharacters(text);
    return result;
}

void ResultWriter::startTable(const QString &tag)
{
    ++m_openTables;
    m_document += lines().table;
    m_document += tag;
    m_document += QLatin1Char('>');
}

void ResultWriter::endTable()
{
    m_document += lines().table;
    m_document += QLatin1String("</FormTable>");
    --m_openTables;
}

void ResultWriter::emptyTable(const QString &tag)
{
    m_document += m_lines.at(m_openTables).table;
    m_document += tag;
    m_document += QLatin1String("/>");
}

void ResultWriter::emptyCells(int count)
{
    for (int i = 0; i < count; ++i)
        m_document += lines().emptyCell;
}

void ResultWriter::characters(const QString &text)
{
    if (std::any_of(text.begin(), text.end(), needsEscaping))
        m_escaper.writeCharacters(text);
    else
        m_document += text;
}

void ResultWriter::coordinate(double v, int decimals)
{
    appendCoord(m_document, v, decimals);
}

void ResultWriter::textCell(const QString &text)
{
    fragment(lines().startCell);
    characters(text);
    fragment(endCell());
}
