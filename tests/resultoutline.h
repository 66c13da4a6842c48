#pragma once

#include <QStringList>
#include <QXmlStreamReader>

/// Reduces a result document to one line per row, with cells separated by bars: «ЗУ1» for an object,
/// «  н1|10.00|20.00» for a vertex, «  -» for a row without cells.
class ResultOutline
{
public:
    static QStringList lines(const QString &document)
    {
        ResultOutline outline;
        QXmlStreamReader reader(document);
        while (!reader.atEnd())
            outline.readNext(reader);
        return reader.hasError() ? QStringList{reader.errorString()} : outline.m_lines;
    }

private:
    void readNext(QXmlStreamReader &reader)
    {
        reader.readNext();
        if (reader.isStartElement() && reader.name() == QLatin1String("FormTable")) {
            if (++m_depth == 2)
                endLine(QString());
        } else if (reader.isEndElement() && reader.name() == QLatin1String("FormTable")) {
            --m_depth;
        } else if (reader.isStartElement() && reader.name() == QLatin1String("Cell")) {
            m_cells.append(reader.readElementText());
        } else if (reader.isEndElement() && m_depth == 2) {
            endLine(QStringLiteral("  "));
        }
    }

    void endLine(const QString &indent)
    {
        m_lines.append(indent + (m_cells.isEmpty() ? QStringLiteral("-") : m_cells.join(QLatin1Char('|'))));
        m_cells.clear();
    }

    int m_depth = 0;
    QStringList m_cells;
    QStringList m_lines;
};
