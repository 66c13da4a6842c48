#pragma once

#include "dialog.h"
#include "testing.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QCoreApplication>
#include <QLineEdit>
#include <QMetaProperty>
#include <QSettings>
#include <QVariant>

/// Keeps the settings of the process in a folder of its own; to be made before any dialog.
class SettingsSandbox
{
public:
    SettingsSandbox()
    {
        QCoreApplication::setOrganizationName(QStringLiteral("surveyor"));
        QCoreApplication::setApplicationName(QStringLiteral("plots"));
        QSettings::setDefaultFormat(QSettings::IniFormat);
        for (const QSettings::Format format : {QSettings::IniFormat, QSettings::NativeFormat}) {
            QSettings::setPath(format, QSettings::UserScope, m_dir.filePath(QStringLiteral("user")));
            QSettings::setPath(format, QSettings::SystemScope, m_dir.filePath(QStringLiteral("system")));
        }
    }

    /// The state of a first run.
    void clear() const { QSettings().clear(); }

    /// Stores \a value under \a key, as an earlier dialog would have done.
    void store(const QString &key, const QVariant &value) const
    {
        QSettings().setValue(QStringLiteral("ImportObjects/") + key, value);
    }

    QVariant stored(const QString &key) const { return QSettings().value(QStringLiteral("ImportObjects/") + key); }

private:
    QTemporaryDir m_dir;
};

/// The widget of a form by its object name.
template <typename W = QWidget>
W *child(const QWidget &form, const QString &name)
{
    W *const found = form.findChild<W *>(name);
    if (found == nullptr)
        qFatal("no widget %s", qPrintable(name));
    return found;
}

/// What the user has entered into the widget \a name: a text, a number or a tick.
inline QVariant entered(const QWidget &form, const QString &name)
{
    const QWidget *const widget = child(form, name);
    return widget->metaObject()->userProperty().read(widget);
}

inline void enter(const QWidget &form, const QString &name, const QVariant &value)
{
    QWidget *const widget = child(form, name);
    if (!widget->metaObject()->userProperty().write(widget, value))
        qFatal("cannot enter into %s", qPrintable(name));
}

/// Enters the values of a form by the names of the widgets.
inline void enter(const QWidget &form, const QVariantMap &values)
{
    for (auto value = values.cbegin(); value != values.cend(); ++value)
        enter(form, value.key(), *value);
}

inline void press(const QWidget &form, const QString &button)
{
    child<QAbstractButton>(form, button)->click();
}

/// Has the dialog process \a path as the file of objects.
inline void process(const Dialog &dialog, const QString &path)
{
    enter(dialog, QStringLiteral("objectFileNameEdit"), path);
    press(dialog, QStringLiteral("startButton"));
}

inline QAbstractItemView *view(const Dialog &dialog, const QString &name)
{
    return child<QAbstractItemView>(dialog, name);
}

/// What a model shows: a text for each row, the cells with bars between them; a cell without a value is "-".
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

/// A MIF file of \a data, which begins in line 5.
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
    dialog.nColNum = n;
    dialog.xColNum = x;
    dialog.yColNum = y;
}
