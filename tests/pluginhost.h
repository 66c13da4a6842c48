#pragma once

#include "dialogdriver.h"
#include "importgeometryinterface.h"
#include "settingsredirection.h"

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QJsonObject>
#include <QPluginLoader>
#include <QPointer>
#include <QSettings>
#include <QStringList>
#include <QTemporaryDir>
#include <QTextCodec>
#include <QTimer>

#include <functional>
#include <utility>

const QString fromMif = QStringLiteral("Объекты из MIF");
const QString fromDxf = QStringLiteral("Объекты из DXF");

/// Lines 1 to 4 of a MIF file.
const QByteArray mifHeader("VERSION 300\nCHARSET \"WindowsCyrillic\"\nDELIMITER \",\"\nDATA\n");

using DialogAction = std::function<void(DialogDriver &)>;

inline void doNothing(DialogDriver & /*driver*/) {}

/// Loads the built plug-in as a host does, calls its operations and records its messages.
///
/// Each PluginHost has its own settings, initially empty, and its own folder for input files. Use one at a time. It
/// makes UTF-8 the locale encoding, which "Default" selects.
class PluginHost
{
public:
    PluginHost()
    {
        QCoreApplication::setOrganizationName(QStringLiteral("Test Land Office"));
        QCoreApplication::setApplicationName(QStringLiteral("Plug-in Test"));
        QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
        m_loader.setLoadHints({}); // by default a loader keeps the library mapped after unload()
        received().clear();
        onMessage = nullptr;
    }

    QObject *instance() { return m_loader.instance(); }
    QJsonObject metaData() const { return m_loader.metaData(); }
    ImportGeometryInterface *plugin() { return qobject_cast<ImportGeometryInterface *>(instance()); }
    bool unload() { return m_loader.unload(); }

    /// Calls \a operation and runs \a action on its open dialog; cancels the dialog if \a action leaves it open.
    QString call(const QString &operation, const DialogAction &action)
    {
        QTimer opened;
        opened.setSingleShot(true);
        QObject::connect(&opened, &QTimer::timeout, [&action, this] {
            const QPointer<QDialog> dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            if (dialog.isNull())
                qFatal("the plug-in opened no dialog");
            ++m_dialogs;
            DialogDriver driver(dialog);
            action(driver);
            if (!dialog.isNull() && dialog->isVisible())
                dialog->reject();
        });
        opened.start(0);
        return plugin()->operation(operation, QStringLiteral("Импорт"), objectTable, pointTable, columns, statusFunc);
    }

    int dialogs() const { return m_dialogs; }
    const QStringList &messages() const { return received(); }
    QStringList takeMessages() { return std::exchange(received(), QStringList()); }

    QString path(const QString &name) const { return m_dir.filePath(name); }

    /// Writes \a bytes unchanged and returns the file's path.
    QString write(const QString &name, const QByteArray &bytes) const
    {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("cannot write %s", qPrintable(file.fileName()));
        return file.fileName();
    }

    /// Writes a MIF file whose line 5 is the first of \a data, and its MID file unless \a records is null. Returns the
    /// path of the MIF file.
    QString writeMif(const QString &name, const QByteArray &data, const QByteArray &records = QByteArray()) const
    {
        if (!records.isNull())
            write(name + QStringLiteral(".mid"), records);
        return write(name + QStringLiteral(".mif"), mifHeader + data);
    }

    QString objectTable = QStringLiteral("Участки");
    QString pointTable = QStringLiteral("Координаты");
    GeometryInfo columns{0, 1, 2, 0};
    void (*statusFunc)(const QString &) = [](const QString &text) {
        received().append(text);
        if (onMessage)
            onMessage();
    };
    static inline std::function<void()> onMessage; ///< called on each message; may be empty

private:
    static QStringList &received()
    {
        static QStringList texts;
        return texts;
    }

    const QTemporaryDir m_dir;
    const SettingsRedirection m_settings;
    QPluginLoader m_loader{QStringLiteral(PLUGIN_PATH)};
    int m_dialogs = 0;
};

/// Turns off the options that need known points or a MID file.
inline void searchNothing(const DialogDriver &driver)
{
    driver.setChecked("searchPointDefsCheck", false);
    driver.setChecked("searchObjectDefsCheck", false);
}

/// Processes a MIF file of two LINE objects that share a vertex; points and objects get generated numbers.
inline void processLines(const PluginHost &host, const DialogDriver &driver)
{
    searchNothing(driver);
    driver.process(host.writeMif(QStringLiteral("lines"), "LINE 1 2 3 4\nLINE 3 4 5 6\n"));
}

/// Imports the file of processLines() and returns the result.
inline QString importLines(PluginHost &host)
{
    return host.call(fromMif, [&host](DialogDriver &driver) {
        processLines(host, driver);
        driver.accept();
    });
}
