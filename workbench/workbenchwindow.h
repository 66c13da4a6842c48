#pragma once

#include "importfile.h"
#include "options.h"
#include "recentfiles.h"
#include "resultreader.h"

#include <QMainWindow>

#include <functional>

class MessageList;
class ObjectsPane;
class OperationRun;
class PictureView;
class PrepareController;
class QLabel;
class QTableView;
class ResultPane;
class StatusLabel;
class VerticesModel;

/// The main window: calls the operations of the plug-in and shows their messages and the last result.
class WorkbenchWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// \a plugin and \a options must outlive the window.
    WorkbenchWindow(ImportGeometryInterface &plugin, const HostOptions &options);
    ~WorkbenchWindow() override;

    /// Calls \a op. \a fileName, unless empty, is entered in its dialog, and \a preparedEncoding, unless empty, is the
    /// encoding of a file that was prepared for the import. Does nothing while another operation runs.
    void runOperation(const QString &op, const QString &fileName = QString(),
                      const QString &preparedEncoding = QString());

    const ImportResult &result() const { return m_result; }

private Q_SLOTS:
    void runRequestedOperation(); ///< the operation of the command line, if any

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    /// True while a dialog of the plug-in or of the window is open.
    bool isBusy() const;

    /// Saves to \a fileName. Returns false after a failure; \a error is then the reason.
    using SaveFunction = std::function<bool(const QString &fileName, QString &error)>;

    void addDock(const char *name, const QString &title, QWidget *content, Qt::DockWidgetArea area);
    static QDockWidget *dockOf(const QWidget *content);
    void createPrepare();
    void createCentralWidget();
    void createDocks();
    void arrangeDocks();
    void setUpVerticesView();
    void createStatusBar();
    void connectPanes();

    void createActions();
    void createFileMenu();
    void createViewMenu();
    void createHelpMenu();
    void createToolBar();
    void addOperations();
    void updateRecentMenu();
    void enableExports();
    void find();
    void showAbout();

    void finishRun(const OperationRun &run);
    void importPrepared(const QString &fileName, const QString &encoding);
    void showDocument(const OperationRun &run);
    void showResult(const ImportResult &result);
    void rememberFile(const ImportFile &file);
    void showFileName();
    void setStatus(const QString &text, bool isError);
    void showTemporarily(const QString &text);
    static void raiseDock(const QWidget *content);
    void setCurrentObject(int object);
    void showPosition(const QPointF &position);

    void savePictureAs();
    void saveCatalogueAs();
    void saveResultAs();
    void saveAs(const QString &title, const QStringList &filters, const SaveFunction &save);
    QString chooseSaveName(const QString &title, const QStringList &filters);

    void readSettings();
    void writeSettings() const;

    ImportGeometryInterface &m_plugin;
    const HostOptions &m_options;
    const QStringList m_operations;
    bool m_isRunning = false;
    ImportResult m_result;
    QString m_importedFile; ///< of the last result; suggests names for exports
    QString m_saveFolder;
    RecentFiles m_recentFiles;

    PrepareController *m_prepare = nullptr; ///< null without the companion program
    PictureView *m_picture;
    ObjectsPane *m_objects;
    VerticesModel *m_vertices;
    QTableView *m_verticesView;
    MessageList *m_messages;
    ResultPane *m_resultPane;
    StatusLabel *m_status;
    QLabel *m_position;

    QVector<QAction *> m_operationActions;
    QVector<QAction *> m_exportActions; ///< enabled while there are objects
    QAction *m_saveResultAction = nullptr;
    QAction *m_axesAction = nullptr;
    QAction *m_fitAction = nullptr;
    QMenu *m_recentMenu = nullptr;
};
