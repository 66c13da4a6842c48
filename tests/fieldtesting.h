#pragma once

#include "dialogtesting.h"

#include <QMap>

using FieldMap = QMap<int, QString>;
Q_DECLARE_METATYPE(FieldMap)

inline QString spinName(int row)
{
    return QStringLiteral("fieldSpin_%1").arg(row);
}

inline QString editName(int row)
{
    return QStringLiteral("fieldEdit_%1").arg(row);
}

/// The rows on the form, as "4 текст".
inline QStringList rowsOf(const Dialog &dialog)
{
    QStringList rows;
    for (int row = 0; row < dialog.fieldCount; ++row)
        rows.append(QStringLiteral("%1 %2")
                        .arg(entered(dialog, spinName(row)).toInt())
                        .arg(entered(dialog, editName(row)).toString()));
    return rows;
}

/// Enters rows that are written as rowsOf() gives them, and adds those that are missing.
inline void enterRows(const Dialog &dialog, const QStringList &rows)
{
    for (int row = 0; row < rows.size(); ++row) {
        if (row >= dialog.fieldCount)
            press(dialog, QStringLiteral("plusToolButton"));
        enter(dialog, spinName(row), rows.at(row).section(QLatin1Char(' '), 0, 0).toInt());
        enter(dialog, editName(row), rows.at(row).section(QLatin1Char(' '), 1));
    }
}

/// Texts that are written with a comma and a blank between them.
inline QStringList list(const char *rows)
{
    return QString::fromUtf8(rows).split(QStringLiteral(", "), Qt::SkipEmptyParts);
}
