#pragma once

#include <QStringList>
#include <QXmlStreamReader>

/// Reads a result document into short lines: «ЗУ1» for an object, «  н1|10.00|20.00» for each of its vertices and
/// «  -» for a row without cells. The cells of a row stand with bars between them.
class ResultOutline
{
public:
    static QStringList lines(const QString &document)
    {
        ResultOutline outline;
        QXmlStreamReader reader(document);
        while (!reader.atEnd())
            outline.take(reader);
        return reader.hasError() ? QStringList{reader.errorString()} : outline.m_lines;
    }

private:
    void take(QXmlStreamReader &reader)
    {
        reader.readNext();
        if (reader.isStartElement() && reader.name() == QLatin1String("FormTable"))
            ++m_depth;
        else if (reader.isEndElement() && reader.name() == QLatin1String("FormTable"))
            --m_depth;
        if (reader.isStartElement() && reader.name() == QLatin1String("Cell"))
            m_cells.append(reader.readElementText());
        if (m_depth == 2 && reader.isStartElement() && reader.name() == QLatin1String("FormTable"))
            endLine(QString());
        else if (m_depth == 2 && reader.isEndElement() && reader.name() == QLatin1String("Row"))
            endLine(QStringLiteral("  "));
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
