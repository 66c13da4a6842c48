// A complete small host: `host` lists the operations of the plug-in, `host 1` runs the first of them.

#include <importgeometryinterface.h>

#include <QApplication>
#include <QPlainTextEdit>
#include <QPluginLoader>
#include <QPointer>
#include <QTextStream>
#include <QXmlStreamReader>

// Messages come while the modal dialog of the plug-in is open, which covers and blocks the windows of the host. A
// window that belongs to the dialog stays above it, is not blocked, and is deleted with it.
static void showMessage(const QString &text)
{
    static QPointer<QPlainTextEdit> window;
    if (window.isNull()) {
        window = new QPlainTextEdit(QApplication::activeModalWidget());
        window->setWindowFlags(Qt::Tool);
        window->setReadOnly(true);
    }
    window->appendPlainText(text);
    window->show();
    QTextStream(stderr) << text << '\n';
}

// The rows of the outer table are the objects.
static int objectCount(const QString &result)
{
    QXmlStreamReader xml(result);
    int count = 0;
    for (xml.readNextStartElement(); xml.readNextStartElement(); ++count)
        xml.skipCurrentElement();
    return count;
}

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    app.setOrganizationName("Example"); // the plug-in keeps its settings under the names of the host
    app.setApplicationName("host");
    QTextStream out(stdout);

    QPluginLoader loader(PLUGIN_DIR "/importplugin");
    auto *const plugin = qobject_cast<ImportGeometryInterface *>(loader.instance());
    if (plugin == nullptr)
        qFatal("No import plug-in: %s", qUtf8Printable(loader.errorString()));

    const QStringList operations = plugin->operations();
    const int number = app.arguments().value(1).toInt();
    if (number < 1 || number > operations.size()) {
        out << operations.join('\n') << '\n';
        return 0;
    }
    const GeometryInfo columns{0, 1, 2, 0}; // point number, X, Y; designation
    const QString result =
        plugin->operation(operations.at(number - 1), "Form", "Plots", "Points", columns, showMessage);
    out << (result.isEmpty() ? "Cancelled" : QString("Objects: %1").arg(objectCount(result))) << '\n';
    return 0;
}
