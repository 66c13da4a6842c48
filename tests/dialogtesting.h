#pragma once

#include "dialog.h"
#include "settingsredirection.h"
#include "testing.h"

#include <QAbstractButton>
#include <QAbstractItemModel>
#include <QCoreApplication>
#include <QLineEdit>
#include <QMetaProperty>
#include <QSettings>
#include <QVariant>

#include <utility>

/// Redirects the settings of the process to a temporary folder. Create it before any dialog.
class SettingsSandbox
{
public:
    SettingsSandbox()
    {
        QCoreApplication::setOrganizationName(QStringLiteral("surveyor"));
        QCoreApplication::setApplicationName(QStringLiteral("plots"));
    }

    /// Restores the state of a first run.
    void clear() const { QSettings().clear(); }

    /// Stores \a value under \a key, as an earlier dialog would.
    void store(const QString &key, const QVariant &value) const
    {
        QSettings().setValue(QStringLiteral("ImportObjects/") + key, value);
    }

    QVariant stored(const QString &key) const { return QSettings().value(QStringLiteral("ImportObjects/") + key); }

private:
    const SettingsRedirection m_redirection;
};

/// The object name of a widget.
struct WidgetName
{
    WidgetName(const char *name) : text(QLatin1String(name)) {}
    WidgetName(QString name) : text(std::move(name)) {}

    const QString text;
};

/// The widget \a name of a form. Aborts the test program if it is missing.
template <typename W = QWidget>
W *child(const QWidget &form, const WidgetName &name)
{
    W *const found = form.findChild<W *>(name.text);
    if (found == nullptr)
        qFatal("no widget %s", qPrintable(name.text));
    return found;
}

/// The value of an input widget: its text, number or check state.
inline QVariant entered(const QWidget &form, const WidgetName &name)
{
    const QWidget *const widget = child(form, name);
    return widget->metaObject()->userProperty().read(widget);
}

/// Sets the value of an input widget.
inline void enter(const QWidget &form, const WidgetName &name, const QVariant &value)
{
    QWidget *const widget = child(form, name);
    if (!widget->metaObject()->userProperty().write(widget, value))
        qFatal("cannot set %s", qPrintable(name.text));
}

inline void press(const QWidget &form, const WidgetName &button)
{
    child<QAbstractButton>(form, button)->click();
}

/// Processes \a path as the object file.
inline void process(const Dialog &dialog, const QString &path)
{
    enter(dialog, "objectFileNameEdit", path);
    press(dialog, "startButton");
}

/// Splits \a rows at ", ".
inline QStringList list(const char *rows)
{
    return QString::fromUtf8(rows).split(QStringLiteral(", "), Qt::SkipEmptyParts);
}

/// The displayed rows of a model, such as "н1|0.00|-": cells are separated by bars, a cell without a value is "-".
inline QStringList shown(const QAbstractItemModel &model)
{
    QStringList rows;
    for (int row = 0; row < model.rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < model.columnCount(); ++column) {
            const QVariant value = model.index(row, column).data();
            cells.append(value.isNull() ? QStringLiteral("-") : value.toString());
        }
        rows.append(cells.join(QLatin1Char('|')));
    }
    return rows;
}

/// The lines of a MIF file; \a data starts at line 5.
inline QStringList mifLines(const QStringList &data)
{
    return QStringList{QStringLiteral("VERSION 300"), QStringLiteral("CHARSET \"Neutral\""),
                       QStringLiteral("DELIMITER \",\""), QStringLiteral("DATA")} +
           data;
}

using Contours = QVector<QVector<DefPoint>>;

inline DefPoint point(const char *def, double x = 1000, double y = 2000)
{
    return DefPoint{QString::fromUtf8(def), x, y};
}

inline DefPolygon object(const char *def, const Contours &contours = Contours())
{
    return DefPolygon{QString::fromUtf8(def), contours};
}

inline void setColumns(Dialog &dialog, int n, int x, int y)
{
    dialog.setColumns(n, x, y, dialog.defColNum);
}
