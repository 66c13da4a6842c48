// A stand-in host for trying the plug-in: loads the library, calls an operation, shows the messages and the result.

#include "hostwindow.h"
#include "options.h"
#include "unattendedimport.h"

#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QPluginLoader>
#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>
#include <optional>

namespace {

enum ExitStatus { Imported = 0, NothingImported = 1, Failed = 2 };

// Flushed after each line, so that messages and result keep their order.
bool printLine(FILE *output, const QString &text)
{
    const QByteArray line = text.toUtf8() + '\n';
    QFile file;
    return file.open(output, QIODevice::WriteOnly) && file.write(line) == line.size() && file.flush();
}

void printStatus(const QString &text)
{
    printLine(stderr, text);
}

int fail(const QString &text)
{
    printLine(stderr, QStringLiteral("importhost: %1").arg(text));
    return Failed;
}

bool hasDisplay()
{
#if defined(Q_OS_UNIX) && !defined(Q_OS_MACOS)
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
           !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
#else
    return true;
#endif
}

// Qt warns about a missing XDG_RUNTIME_DIR and about windows that the offscreen platform cannot place. Without a window
// these warnings would mix with the messages of the plug-in.
void printErrorsOnly(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type == QtCriticalMsg || type == QtFatalMsg)
        printLine(stderr, qFormatLogMessage(type, context, text));
}

// Keeps the settings of the plug-in and of Qt in dir. The default format is INI because the native format of some
// systems is not a file.
void redirectSettings(const QTemporaryDir &dir)
{
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, dir.path());
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, dir.path());
}

bool save(const QString &fileName, const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    QFile file(fileName);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush();
}

int outputResult(const QString &result, const QString &fileName)
{
    if (result.isEmpty())
        return NothingImported;
    if (fileName.isEmpty())
        return printLine(stdout, result) ? Imported : fail(QStringLiteral("Cannot print the result."));
    return save(fileName, result) ? Imported : fail(QStringLiteral("Cannot save the result \"%1\".").arg(fileName));
}

int importUnattended(ImportGeometryInterface &plugin, const HostOptions &options)
{
    const QTemporaryDir settings;
    redirectSettings(settings);
    UnattendedImport import(*options.dialog);
    import.waitForDialog();
    const QString result = plugin.operation(options.operation, options.formName, options.objectTable,
                                            options.pointTable, options.columns, printStatus);
    return import.error().isEmpty() ? outputResult(result, options.output) : fail(import.error());
}

int showWindow(ImportGeometryInterface &plugin, const HostOptions &options)
{
    HostWindow window(plugin, options);
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

int run(const HostOptions &options)
{
    // An absolute path: Qt looks for a bare name in other folders too.
    QPluginLoader loader(QFileInfo(options.plugin).absoluteFilePath());
    QObject *const instance = loader.instance();
    if (instance == nullptr)
        return fail(QStringLiteral("Cannot load \"%1\": %2").arg(options.plugin, loader.errorString()));
    auto *const plugin = qobject_cast<ImportGeometryInterface *>(instance);
    if (plugin == nullptr)
        return fail(QStringLiteral("\"%1\" is not an import plug-in.").arg(options.plugin));
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
    const bool needsWindow = !options.dialog && !options.list;
    if (!needsWindow)
        qInstallMessageHandler(printErrorsOnly);
    if (!hasDisplay()) {
        if (needsWindow)
            return fail(QStringLiteral("No display for the window. Use --objects to import without one."));
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    int argc = 1; // the program name only
    const QApplication app(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("importhost"));
    QCoreApplication::setApplicationName(QStringLiteral("importhost"));
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
