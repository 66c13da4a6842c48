#pragma once

#include "converttesting.h"

/// Expands "code value|code value" to the lines of a drawing.
inline QStringList pairs(const QString &text)
{
    QStringList lines;
    const QStringList parts = text.split(QLatin1Char('|'), Qt::SkipEmptyParts);
    for (const QString &part : parts) {
        lines.append(part.section(QLatin1Char(' '), 0, 0));
        lines.append(part.section(QLatin1Char(' '), 1));
    }
    return lines;
}

inline QStringList drawing(const QString &entities, const QString &blocks = QString())
{
    const QString sections = QStringLiteral("0 SECTION|2 HEADER|0 ENDSEC|0 SECTION|2 BLOCKS|%1|0 ENDSEC|"
                                            "0 SECTION|2 ENTITIES|%2|0 ENDSEC|0 EOF");
    return pairs(sections.arg(blocks, entities));
}

/// A TEXT entity at x y.
inline QString text(const char *value, const char *x, const char *y)
{
    return QStringLiteral("|0 TEXT|8 0|10 %2|20 %3|40 1|1 %1")
        .arg(QString::fromUtf8(value), QLatin1String(x), QLatin1String(y));
}

const QString line = QStringLiteral("|0 LINE|5 2A|8 0|10 0|20 0|11 10|21 0");
const QString square = QStringLiteral("|0 LWPOLYLINE|5 2B|8 0|90 4|70 1|10 0|20 0|10 10|20 0|10 10|20 10|10 0|20 10");
constexpr auto squareVertices = " [н1 0 0, н2 10 0, н3 10 10, н4 0 10, н1 0 0]";
