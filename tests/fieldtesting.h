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

/// The field rows on the form, each as "4 текст".
inline QStringList rowsOf(const Dialog &dialog)
{
    QStringList rows;
    for (int row = 0; row < dialog.fieldCount; ++row)
        rows.append(QStringLiteral("%1 %2")
                        .arg(entered(dialog, spinName(row)).toInt())
                        .arg(entered(dialog, editName(row)).toString()));
    return rows;
}

/// Enters \a rows in the format of rowsOf() and adds missing rows to the form.
inline void enterRows(const Dialog &dialog, const QStringList &rows)
{
    for (int row = 0; row < rows.size(); ++row) {
        if (row >= dialog.fieldCount)
            press(dialog, "plusToolButton");
        enter(dialog, spinName(row), rows.at(row).section(QLatin1Char(' '), 0, 0).toInt());
        enter(dialog, editName(row), rows.at(row).section(QLatin1Char(' '), 1));
    }
}
