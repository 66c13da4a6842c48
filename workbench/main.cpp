// A stand-in host: loads the plug-in, calls an operation and shows the messages and the result, in a window or on the
// command line.

#include "console.h"
#include "options.h"
#include "savefile.h"
#include "unattendedimport.h"
#include "unattendedoutput.h"
#include "workbenchwindow.h"

#include <QApplication>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QMessageBox>
#include <QPluginLoader>
#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>
#include <QTranslator>

#include <optional>

namespace {

bool hasDisplay()
{
#if defined(Q_OS_UNIX) && !defined(Q_OS_MACOS)
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
           !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
#else
    return true;
#endif
}

// Qt warns about windows that the offscreen platform cannot place. Without a window these warnings would mix with the
// messages of the plug-in.
void printErrorsOnly(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type == QtCriticalMsg || type == QtFatalMsg)
        printLine(stderr, qFormatLogMessage(type, context, text));
}

QtMessageHandler printByDefault = nullptr;

// A session without a login manager lacks XDG_RUNTIME_DIR. Qt then chooses a folder and warns, which helps no user.
void printUseful(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (!text.startsWith(QLatin1String("QStandardPaths: XDG_RUNTIME_DIR not set")))
        printByDefault(type, context, text);
}

// Without a window, no display is needed, not even one that DISPLAY names.
void avoidDisplay()
{
    qInstallMessageHandler(printErrorsOnly);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
}

// Keeps the settings of the plug-in and of Qt in dir. The default format is INI because the native format of some
// systems is not a file.
void redirectSettings(const QTemporaryDir &dir)
{
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, dir.path());
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, dir.path());
}

int importUnattended(ImportGeometryInterface &plugin, const HostOptions &options)
{
    const QTemporaryDir settings;
    if (!settings.isValid())
        return fail(QStringLiteral("Cannot make a temporary folder: %1.").arg(systemReason(settings.errorString())));
    redirectSettings(settings);
    UnattendedImport import(options);
    return import.run(plugin) ? outputImport(import, options) : fail(import.error());
}

int showWindow(ImportGeometryInterface &plugin, const HostOptions &options)
{
    QTranslator translator; // the texts of Qt's own dialogs and buttons
    if (translator.load(QStringLiteral("qtbase_ru"), QLibraryInfo::location(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&translator);
    WorkbenchWindow window(plugin, options);
    window.show();
    QTimer::singleShot(0, &window, SLOT(runRequestedOperation()));
    return QApplication::exec();
}

int listOperations(const ImportGeometryInterface &plugin)
{
    const QList<QString> operations = plugin.operations();
    for (const QString &op : operations)
        printLine(stdout, op);
    return Imported;
}

bool needsWindow(const HostOptions &options)
{
    return !options.dialog && !options.list;
}

// A program that was started from a menu has no terminal.
int failToLoad(const HostOptions &options, const QString &error)
{
    const ExitStatus status = fail(error);
    if (needsWindow(options)) {
        QMessageBox::critical(nullptr, QStringLiteral("Импорт объектов"),
                              QStringLiteral("Плагин импорта не загружен.\n\n%1").arg(error));
    }
    return status;
}

int run(const HostOptions &options)
{
    const QFileInfo file(options.plugin);
    if (file.isDir())
        return failToLoad(options, QStringLiteral("Cannot load \"%1\": it is a folder.").arg(options.plugin));
    // An absolute path: Qt looks for a bare name in other folders too.
    QPluginLoader loader(file.absoluteFilePath());
    QObject *const instance = loader.instance();
    if (instance == nullptr)
        return failToLoad(options, QStringLiteral("Cannot load \"%1\": %2").arg(options.plugin, loader.errorString()));
    auto *const plugin = qobject_cast<ImportGeometryInterface *>(instance);
    if (plugin == nullptr)
        return failToLoad(options,
                          QStringLiteral("\"%1\" is not an import plug-in: it lacks the interface \"%2\".")
                              .arg(options.plugin, QLatin1String(qobject_interface_iid<ImportGeometryInterface *>())));
    if (options.list)
        return listOperations(*plugin);
    return options.dialog ? importUnattended(*plugin, options) : showWindow(*plugin, options);
}

// Uses its own QCoreApplication: QApplication would consume -plugin as an option of Qt.
std::optional<HostOptions> readArguments(int argc, char **argv)
{
    const QCoreApplication app(argc, argv);
    CommandLine commandLine;
    if (commandLine.read(QCoreApplication::arguments()))
        return commandLine.options();
    fail(QStringLiteral("%1 See importhost --help.").arg(commandLine.error()));
    return std::nullopt;
}

int runApplication(char **argv, const HostOptions &options)
{
    if (!needsWindow(options))
        avoidDisplay();
    else if (hasDisplay())
        printByDefault = qInstallMessageHandler(printUseful);
    else
        return fail(QStringLiteral("No display for the window. Use --objects to import without one."));
    int argc = 1; // the program name only
    const QApplication app(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Import Workbench"));
    QCoreApplication::setApplicationName(QStringLiteral("Import Workbench"));
    return run(options);
}

} // namespace

int main(int argc, char **argv)
{
    const std::optional<HostOptions> options = readArguments(argc, argv);
    if (!options)
        return Failed;
    if (options->information.isEmpty())
        return runApplication(argv, *options);
    printLine(stdout, options->information);
    return Imported;
}
