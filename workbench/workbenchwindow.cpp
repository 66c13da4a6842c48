#include "workbenchwindow.h"

#include "messagelist.h"
#include "noticebar.h"
#include "objectspane.h"
#include "operationrun.h"
#include "pictureview.h"
#include "preparecontroller.h"
#include "preparepane.h"
#include "resultpane.h"
#include "runsummary.h"
#include "shorttext.h"
#include "statuslabel.h"
#include "tablerows.h"
#include "verticesmodel.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QFileInfo>
#include <QHeaderView>
#include <QMimeData>
#include <QScopedValueRollback>
#include <QStatusBar>
#include <QTableView>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace {

/// Shows a wait cursor for its lifetime.
class WaitCursor
{
public:
    WaitCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QApplication::restoreOverrideCursor(); }
    WaitCursor(const WaitCursor &) = delete;
    WaitCursor &operator=(const WaitCursor &) = delete;
};

} // namespace

WorkbenchWindow::WorkbenchWindow(ImportGeometryInterface &plugin, const HostOptions &options)
    : m_plugin(plugin),
      m_options(options),
      m_operations(plugin.operations()),
      m_picture(new PictureView(this)),
      m_objects(new ObjectsPane(this)),
      m_vertices(new VerticesModel(options.columns, this)),
      m_verticesView(new QTableView(this)),
      m_messages(new MessageList(this)),
      m_resultPane(new ResultPane(this)),
      m_status(new StatusLabel(this)),
      m_position(new QLabel(this))
{
    showFileName();
    setAcceptDrops(true);
    m_picture->setAcceptDrops(false); // files dropped there are for the window
    m_picture->setAccessibleName(QStringLiteral("Рисунок"));
    createPrepare();
    createCentralWidget();
    createDocks();
    createStatusBar();
    createActions();
    connectPanes();
    readSettings();
    enableExports();
}

WorkbenchWindow::~WorkbenchWindow()
{
    writeSettings();
}

void WorkbenchWindow::createPrepare()
{
    if (m_options.prepare.isEmpty())
        return;
    m_prepare = new PrepareController(m_options.prepare, this);
    connect(m_prepare, &PrepareController::started, this, [this] { raiseDock(m_prepare->pane()); });
    connect(m_prepare, &PrepareController::ended, this, &WorkbenchWindow::setStatus);
    connect(m_prepare, &PrepareController::importRequested, this, &WorkbenchWindow::importPrepared);
}

// The picture, below the notice.
void WorkbenchWindow::createCentralWidget()
{
    auto *const widget = new QWidget(this);
    auto *const layout = new QVBoxLayout(widget);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    if (m_prepare != nullptr)
        layout->addWidget(m_prepare->notice());
    layout->addWidget(m_picture, 1);
    setCentralWidget(widget);
}

void WorkbenchWindow::addDock(const char *name, const QString &title, QWidget *content, Qt::DockWidgetArea area)
{
    auto *const dock = new QDockWidget(title, this);
    dock->setObjectName(QLatin1String(name));
    dock->setWidget(content);
    addDockWidget(area, dock);
}

QDockWidget *WorkbenchWindow::dockOf(const QWidget *content)
{
    return qobject_cast<QDockWidget *>(content->parentWidget());
}

void WorkbenchWindow::createDocks()
{
    setUpVerticesView();
    addDock("objectsDock", QStringLiteral("Объекты"), m_objects, Qt::LeftDockWidgetArea);
    addDock("verticesDock", QStringLiteral("Вершины"), m_verticesView, Qt::LeftDockWidgetArea);
    addDock("messagesDock", QStringLiteral("Сообщения"), m_messages, Qt::BottomDockWidgetArea);
    addDock("resultDock", QStringLiteral("Результат"), m_resultPane, Qt::BottomDockWidgetArea);
    setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);
    setTabPosition(Qt::AllDockWidgetAreas, QTabWidget::North);
    tabifyDockWidget(dockOf(m_messages), dockOf(m_resultPane));
    if (m_prepare != nullptr) {
        addDock("prepareDock", QStringLiteral("Проверка"), m_prepare->pane(), Qt::BottomDockWidgetArea);
        tabifyDockWidget(dockOf(m_resultPane), dockOf(m_prepare->pane()));
    }
    dockOf(m_messages)->raise();
}

// All columns of the objects are shown if at least 45 % of the window's width remain for the picture.
void WorkbenchWindow::arrangeDocks()
{
    resizeDocks({dockOf(m_objects)}, {std::min(m_objects->fullWidth(), width() * 11 / 20)}, Qt::Horizontal);
    resizeDocks({dockOf(m_objects), dockOf(m_verticesView)}, {height() * 3 / 5, height() * 2 / 5}, Qt::Vertical);
    resizeDocks({dockOf(m_messages)}, {height() / 4}, Qt::Vertical);
}

void WorkbenchWindow::setUpVerticesView()
{
    m_verticesView->setObjectName(QStringLiteral("verticesView"));
    m_verticesView->setAccessibleName(QStringLiteral("Вершины объекта"));
    m_verticesView->setModel(m_vertices);
    m_verticesView->setItemDelegate(new ShortTextDelegate(m_verticesView));
    setUpRows(m_verticesView);
    m_verticesView->horizontalHeader()->setDefaultSectionSize(
        fontMetrics().horizontalAdvance(QStringLiteral("00000000.00")) + 16);
}

void WorkbenchWindow::createStatusBar()
{
    m_status->setObjectName(QStringLiteral("statusLabel"));
    m_position->setObjectName(QStringLiteral("positionLabel"));
    m_position->setToolTip(QStringLiteral("Координаты под указателем мыши, м"));
    statusBar()->addWidget(m_status, 1);
    statusBar()->addPermanentWidget(m_position);
    m_status->setStatus(QStringLiteral("Выберите операцию или перетащите сюда файл MIF или DXF"));
}

void WorkbenchWindow::connectPanes()
{
    connect(m_objects, &ObjectsPane::currentObjectChanged, this, &WorkbenchWindow::setCurrentObject);
    connect(m_picture, &PictureView::objectClicked, m_objects, &ObjectsPane::setCurrentObject);
    connect(m_picture, &PictureView::pointerMoved, this, &WorkbenchWindow::showPosition);
    connect(m_picture, &PictureView::pointerLeft, m_position, &QLabel::clear);
    connect(m_resultPane, &ResultPane::saveRequested, this, &WorkbenchWindow::saveResultAs);
}

void WorkbenchWindow::runRequestedOperation()
{
    if (!m_options.operation.isEmpty())
        runOperation(m_options.operation);
}

void WorkbenchWindow::runOperation(const QString &op, const QString &fileName, const QString &preparedEncoding)
{
    if (m_isRunning)
        return;
    const QScopedValueRollback<bool> running(m_isRunning, true);
    statusBar()->clearMessage();
    m_messages->append(QStringLiteral("Операция: %1").arg(op));
    if (m_prepare != nullptr)
        m_prepare->beginRun();
    OperationRun run;
    run.setPreparedEncoding(preparedEncoding);
    connect(&run, &OperationRun::message, m_messages, &MessageList::append);
    run.call(m_plugin, m_options, op, fileName);
    finishRun(run);
    if (m_prepare != nullptr)
        m_prepare->finishRun(run, !m_result.objects.isEmpty());
    if (run.outcome() == OperationRun::Outcome::Accepted && !run.fileName().isEmpty())
        rememberFile({run.fileName(), op});
}

void WorkbenchWindow::finishRun(const OperationRun &run)
{
    if (run.outcome() == OperationRun::Outcome::Cancelled) {
        setStatus(QStringLiteral("Импорт отменён"), false);
        return;
    }
    m_importedFile = run.fileName();
    showFileName();
    showDocument(run);
    if (m_status->isError() || run.messageCount() > 0)
        raiseDock(m_messages);
    enableExports();
}

void WorkbenchWindow::importPrepared(const QString &fileName, const QString &encoding)
{
    const QString op = operationFor(fileName, m_operations);
    if (!op.isEmpty())
        runOperation(op, fileName, encoding);
}

/// Shows the result document of \a run. A document that cannot be read is shown as text only.
void WorkbenchWindow::showDocument(const OperationRun &run)
{
    const WaitCursor waiting;
    const QString &text = run.result();
    ResultReader reader(m_options.columns);
    const bool ok = text.isEmpty() || reader.read(text);
    m_resultPane->setText(text);
    showResult(ok ? reader.result() : ImportResult());
    if (!ok)
        setStatus(reader.error(), true);
    else if (m_result.objects.isEmpty())
        setStatus(nothingText(run.lastMessage(), run.wasProcessed()), true);
    else
        setStatus(summaryText(m_result, m_objects->duplicateCount(), run.messageCount()), false);
}

void WorkbenchWindow::showResult(const ImportResult &result)
{
    m_result = result;
    m_picture->setResult(result);
    m_vertices->setResult(result);
    m_objects->setResult(result);
}

void WorkbenchWindow::setStatus(const QString &text, bool isError)
{
    m_status->setStatus(text, isError);
    m_messages->append(text);
}

void WorkbenchWindow::showTemporarily(const QString &text)
{
    constexpr int duration = 10000; // ms
    statusBar()->showMessage(text, duration);
}

void WorkbenchWindow::showFileName()
{
    const QString title = QStringLiteral("Импорт объектов");
    const QString name = QFileInfo(m_importedFile).fileName();
    setWindowTitle(name.isEmpty() ? title : QStringLiteral("%1 — %2").arg(name, title));
}

void WorkbenchWindow::raiseDock(const QWidget *content)
{
    dockOf(content)->show();
    dockOf(content)->raise();
}

void WorkbenchWindow::setCurrentObject(int object)
{
    m_vertices->setObject(object);
    m_verticesView->scrollToTop();
    if (m_picture->currentObject() != object)
        m_picture->setCurrentObject(object);
}

void WorkbenchWindow::showPosition(const QPointF &position)
{
    const bool isKnown = std::isfinite(position.x()) && std::isfinite(position.y());
    m_position->setText(isKnown ? QStringLiteral("X %1  Y %2").arg(position.x(), 0, 'f', 2).arg(position.y(), 0, 'f', 2)
                                : QString());
}

bool WorkbenchWindow::isBusy() const
{
    return m_isRunning || QApplication::activeModalWidget() != nullptr;
}

// Any file is accepted, because the reason for a refusal is shown after the drop.
void WorkbenchWindow::dragEnterEvent(QDragEnterEvent *event)
{
    if (!isBusy() && !event->mimeData()->urls().isEmpty())
        event->acceptProposedAction();
}

// The operation starts when the drop is over: its dialog would block the program that the file comes from.
void WorkbenchWindow::dropEvent(QDropEvent *event)
{
    if (isBusy())
        return;
    event->acceptProposedAction();
    const QList<QUrl> urls = event->mimeData()->urls();
    ImportFile file;
    QString error;
    if (findImportFile(urls, m_operations, file, error))
        QTimer::singleShot(0, this, [this, file] { runOperation(file.operation, file.fileName); });
    else if (m_prepare == nullptr || !m_prepare->offerToPrepare(urls))
        showTemporarily(error);
}

// The plug-in returns to this window, so it must stay while a dialog is open.
void WorkbenchWindow::closeEvent(QCloseEvent *event)
{
    if (m_isRunning) {
        event->ignore();
        return;
    }
    if (m_prepare != nullptr)
        m_prepare->pane()->stop();
    QMainWindow::closeEvent(event);
}
