#pragma once

#include "colors.h"
#include "messagewindow.h"
#include "pictureview.h"
#include "pluginhost.h"
#include "statuslabel.h"
#include "workbenchwindow.h"

#include <QDialogButtonBox>
#include <QDockWidget>
#include <QDropEvent>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QStatusBar>
#include <QTableView>
#include <QTextDocument>
#include <QToolBar>
#include <QVBoxLayout>

#include <memory>

/// A plug-in whose operations return a given text, or open a dialog that sends given messages.
class FakePlugin : public ImportGeometryInterface
{
public:
    QList<QString> operations() const override { return names; }

    QString operation(const QString & /*op*/, const QString & /*formName*/, const QString & /*objectTableName*/,
                      const QString & /*pointTableName*/, const GeometryInfo & /*info*/,
                      void (*statusFunc)(const QString &)) override
    {
        const auto sendMessages = [this, statusFunc] {
            for (const QString &text : messages)
                statusFunc(text);
        };
        if (!hasDialog) {
            sendMessages();
            return text;
        }
        QDialog dialog;
        auto *const button = new QPushButton(QStringLiteral("start"), &dialog);
        button->setObjectName(QStringLiteral("startButton"));
        auto *const box = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
        box->setObjectName(QStringLiteral("buttonBox"));
        auto *const layout = new QVBoxLayout(&dialog);
        layout->addWidget(button);
        layout->addWidget(box);
        QObject::connect(button, &QPushButton::clicked, sendMessages);
        QObject::connect(box, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
        QObject::connect(box, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
        const bool isAccepted = dialog.exec() == QDialog::Accepted;
        if (!lastMessage.isEmpty())
            statusFunc(lastMessage);
        if (afterLastMessage)
            afterLastMessage();
        return isAccepted ? text : QString();
    }

    QList<QString> names{fromMif, fromDxf};
    bool hasDialog = false;
    QStringList messages;
    QString lastMessage; ///< sent after the dialog was closed; empty: none
    std::function<void()> afterLastMessage;
    QString text; ///< result of an accepted dialog, or of a call without one
};

inline void cancel(DialogDriver &driver)
{
    driver.cancel();
}

/// The workbench's window with the built plug-in or another one, in a sandbox of settings and files.
class WindowFixture
{
public:
    explicit WindowFixture(ImportGeometryInterface *plugin = nullptr)
        : m_plugin(plugin == nullptr ? m_host.plugin() : plugin)
    {
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs); // a test cannot operate the system's
        m_options.objectTable = QStringLiteral("Участки");
        m_options.pointTable = QStringLiteral("Координаты");
        m_options.columns = {0, 1, 2, 0};
        open();
    }

    /// Opens a new window, as after a restart.
    void open()
    {
        close();
        m_window = std::make_unique<WorkbenchWindow>(*m_plugin, m_options);
        m_window->resize(1000, 700);
        m_window->show();
    }

    void close() { m_window.reset(); }

    HostOptions &options() { return m_options; }
    const PluginHost &files() const { return m_host; }
    WorkbenchWindow &window() const { return *m_window; }

    template <class Widget>
    Widget *find(const char *name = nullptr) const
    {
        auto *const widget = m_window->findChild<Widget *>(QLatin1String(name));
        if (widget == nullptr)
            qFatal("the window has no %s", name == nullptr ? Widget::staticMetaObject.className() : name);
        return widget;
    }

    PictureView *picture() const { return find<PictureView>(); }
    QTableView *objects() const { return find<QTableView>("objectsView"); }
    QTableView *vertices() const { return find<QTableView>("verticesView"); }
    QString status() const { return find<StatusLabel>("statusLabel")->status(); }

    /// True if the status is an error and is red.
    bool isError() const
    {
        const auto *const label = find<StatusLabel>("statusLabel");
        const bool isRed = label->palette().color(QPalette::WindowText) == errorColor(QPalette());
        return label->isError() && isRed;
    }

    /// Performs \a action when the next modal dialog is open and observed by the window.
    static void whenDialogOpens(const DialogAction &action)
    {
        QTimer::singleShot(0, [action] {
            QWidget *const dialog = QApplication::activeModalWidget();
            if (dialog == nullptr || dialog->findChild<MessageWindow *>() == nullptr) {
                whenDialogOpens(action);
                return;
            }
            DialogDriver driver(dialog);
            action(driver);
        });
    }

    /// Runs \a op; \a action must close the dialog.
    void run(const QString &op, const DialogAction &action, const QString &fileName = QString()) const
    {
        whenDialogOpens(action);
        m_window->runOperation(op, fileName);
    }

    /// Imports \a fileName with numbered points and closes the dialog with OK.
    void import(const QString &fileName, const QString &op = fromMif) const
    {
        run(
            op,
            [](DialogDriver &driver) {
                driver.press("startButton");
                driver.accept();
            },
            fileName);
    }

    /// Drops \a urls on the window. Returns false if it refuses them.
    bool drop(const QList<QUrl> &urls) const
    {
        QMimeData data;
        data.setUrls(urls);
        const QPoint position(10, 10);
        QDragEnterEvent entering(position, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(m_window.get(), &entering);
        if (!entering.isAccepted())
            return false;
        QDropEvent dropped(position, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        return QCoreApplication::sendEvent(m_window.get(), &dropped);
    }

    /// Writes a MIF file of named shapes: two regions ЗУ10 and зу2, and a line ЗУ2.
    QString writePlan(const QString &name = QStringLiteral("plan")) const
    {
        return m_host.writeMif(name,
                               "REGION 1\n4\n0 0\n10 0\n10 10\n0 0\n"
                               "REGION 2\n4\n20 0\n30 0\n30 10\n20 0\n4\n28 4\n29 4\n29 5\n28 4\n"
                               "LINE 40 0 50 10\n",
                               "ЗУ10\nзу2\nЗУ2\n");
    }

    /// The designations that the list shows, and the current one in brackets.
    QString shownObjects() const
    {
        QStringList defs;
        for (int row = 0; row < objects()->model()->rowCount(); ++row) {
            const QString def = objects()->model()->index(row, 0).data().toString();
            const bool isCurrent = objects()->selectionModel()->isRowSelected(row, QModelIndex());
            defs.append(isCurrent ? QStringLiteral("[%1]").arg(def) : def);
        }
        return defs.join(QLatin1Char(' '));
    }

    /// All messages so far. Unlike toPlainText(), toRawText() keeps no-break spaces.
    QString messages() const { return find<QPlainTextEdit>("messages")->document()->toRawText(); }

private:
    PluginHost m_host;
    ImportGeometryInterface *m_plugin;
    HostOptions m_options;
    std::unique_ptr<WorkbenchWindow> m_window;
};

/// Performs \a action on the next modal widget of the type.
template <class Widget>
void whenOpens(const std::function<void(Widget *)> &action)
{
    QTimer::singleShot(0, [action] {
        auto *const widget = qobject_cast<Widget *>(QApplication::activeModalWidget());
        if (widget == nullptr)
            whenOpens(action);
        else
            action(widget);
    });
}
