#pragma once

#include "dialogdriver.h"
#include "importgeometryinterface.h"

#include <QApplication>
#include <QDialog>
#include <QFile>
#include <QJsonObject>
#include <QPluginLoader>
#include <QPointer>
#include <QSettings>
#include <QStringList>
#include <QTemporaryDir>
#include <QTimer>

#include <functional>

const QString fromMif = QStringLiteral("Объекты из MIF");
const QString fromDxf = QStringLiteral("Объекты из DXF");

/// A host that knows nothing of the plug-in but its file: it loads it, calls it and takes its messages.
///
/// Each host has settings of its own, empty at first, and a folder for input files; one at a time.
class PluginHost
{
public:
    using Person = std::function<void(DialogDriver &)>;

    PluginHost()
    {
        QCoreApplication::setOrganizationName(QStringLiteral("Test Land Office"));
        QCoreApplication::setApplicationName(QStringLiteral("Plug-in Test"));
        QSettings::setDefaultFormat(QSettings::IniFormat);
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, m_dir.filePath(QStringLiteral("settings")));
        received().clear();
    }

    QObject *instance() { return m_loader.instance(); }
    QJsonObject metaData() const { return m_loader.metaData(); }
    ImportGeometryInterface *plugin() { return qobject_cast<ImportGeometryInterface *>(instance()); }

    /// Calls \a operation. Once its dialog is open, \a person uses it; a dialog that is then still open is cancelled.
    QString call(const QString &operation, const Person &person)
    {
        QTimer opened;
        opened.setSingleShot(true);
        QObject::connect(&opened, &QTimer::timeout, [&person, this] {
            const QPointer<QDialog> dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            if (dialog.isNull())
                qFatal("the plug-in opened no dialog");
            ++m_dialogs;
            DialogDriver driver(dialog);
            person(driver);
            if (!dialog.isNull() && dialog->isVisible())
                dialog->reject();
        });
        opened.start(0);
        return plugin()->operation(operation, QStringLiteral("Импорт"), objectTable, pointTable, columns, statusFunc);
    }

    int dialogs() const { return m_dialogs; }
    const QStringList &messages() const { return received(); }

    QString path(const QString &name) const { return m_dir.filePath(name); }

    /// Writes \a bytes as they are and gives the file's path.
    QString writeBytes(const QString &name, const QByteArray &bytes) const
    {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("cannot write %s", qPrintable(file.fileName()));
        return file.fileName();
    }

    /// Writes \a lines in UTF-8, each with a line feed, and gives the file's path.
    QString write(const QString &name, const QStringList &lines) const
    {
        return writeBytes(name, (lines.join(QLatin1Char('\n')) + QLatin1Char('\n')).toUtf8());
    }

    QString objectTable = QStringLiteral("Участки");
    QString pointTable = QStringLiteral("Координаты");
    GeometryInfo columns{0, 1, 2, 0};
    void (*statusFunc)(const QString &) = [](const QString &text) { received().append(text); };

private:
    static QStringList &received()
    {
        static QStringList texts;
        return texts;
    }

    QTemporaryDir m_dir;
    QPluginLoader m_loader{QStringLiteral(PLUGIN_PATH)};
    int m_dialogs = 0;
};
