#include "workbenchwindow.h"

#include "objectspane.h"
#include "pictureview.h"
#include "preparecontroller.h"
#include "resultpane.h"

#include <QApplication>
#include <QDir>
#include <QDockWidget>
#include <QFileInfo>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QTextDocument>
#include <QToolBar>

namespace {

// The names come from the plug-in; a name without a known format gets no shortcut.
QKeySequence shortcutOf(const QString &operation)
{
    if (operation.contains(QLatin1String("MIF"), Qt::CaseInsensitive))
        return QKeySequence(QStringLiteral("Ctrl+M"));
    if (operation.contains(QLatin1String("DXF"), Qt::CaseInsensitive))
        return QKeySequence(QStringLiteral("Ctrl+D"));
    return QKeySequence();
}

QString escaped(QString text)
{
    return text.replace(QLatin1Char('&'), QLatin1String("&&"));
}

} // namespace

void WorkbenchWindow::createActions()
{
    addOperations();
    createFileMenu();
    createViewMenu();
    createHelpMenu();
    createToolBar();
}

void WorkbenchWindow::addOperations()
{
    for (const QString &op : m_operations) {
        auto *const action = new QAction(escaped(op), this);
        action->setShortcut(shortcutOf(op));
        action->setToolTip(QStringLiteral("Импорт: %1").arg(op));
        connect(action, &QAction::triggered, this, [this, op] { runOperation(op); });
        m_operationActions.append(action);
    }
}

void WorkbenchWindow::createFileMenu()
{
    QMenu *const menu = menuBar()->addMenu(QStringLiteral("&Файл"));
    for (QAction *const action : m_operationActions)
        menu->addAction(action);
    m_recentMenu = menu->addMenu(QStringLiteral("&Недавние файлы"));
    m_recentMenu->setObjectName(QStringLiteral("recentMenu"));
    m_recentMenu->setToolTipsVisible(true);
    menu->addSeparator();
    if (m_prepare != nullptr) {
        menu->addActions(m_prepare->actions());
        menu->addSeparator();
    }
    m_saveResultAction = menu->addAction(QStringLiteral("&Сохранить результат…"), this, &WorkbenchWindow::saveResultAs);
    m_saveResultAction->setObjectName(QStringLiteral("saveResultAction"));
    m_saveResultAction->setShortcut(QKeySequence::Save);
    m_exportActions = {
        menu->addAction(QStringLiteral("Сохранить &рисунок…"), this, &WorkbenchWindow::savePictureAs),
        menu->addAction(QStringLiteral("Сохранить &каталог координат…"), this, &WorkbenchWindow::saveCatalogueAs),
    };
    m_exportActions.at(0)->setObjectName(QStringLiteral("savePictureAction"));
    m_exportActions.at(1)->setObjectName(QStringLiteral("saveCatalogueAction"));
    menu->addSeparator();
    QAction *const quit = menu->addAction(QStringLiteral("В&ыход"), this, &QWidget::close);
    quit->setShortcut(QKeySequence(QStringLiteral("Ctrl+Q")));
}

void WorkbenchWindow::createViewMenu()
{
    QMenu *const menu = menuBar()->addMenu(QStringLiteral("&Вид"));
    m_fitAction = menu->addAction(QStringLiteral("&Показать всё"), m_picture, &PictureView::fit);
    m_fitAction->setShortcut(QKeySequence(QStringLiteral("Ctrl+0")));
    m_fitAction->setToolTip(QStringLiteral("Показать все объекты на рисунке"));
    m_axesAction = menu->addAction(QStringLiteral("Ось &X вверх"));
    m_axesAction->setObjectName(QStringLiteral("axesAction"));
    m_axesAction->setCheckable(true);
    m_axesAction->setChecked(true);
    m_axesAction->setToolTip(QStringLiteral("Оси как в геодезии: X вверх, Y вправо; иначе X вправо, Y вверх"));
    connect(m_axesAction, &QAction::toggled, m_picture, &PictureView::setHasSurveyAxes);
    menu->addSeparator();
    QAction *const search = menu->addAction(QStringLiteral("&Найти объект"), this, &WorkbenchWindow::find);
    search->setShortcut(QKeySequence::Find);
    QAction *const unsorted =
        menu->addAction(QStringLiteral("Порядок как в &результате"), m_objects, &ObjectsPane::removeSorting);
    unsorted->setObjectName(QStringLiteral("removeSortingAction"));
    unsorted->setToolTip(QStringLiteral("Показать список объектов в том порядке, в каком они пришли"));
    menu->addSeparator();
    const auto docks = findChildren<QDockWidget *>();
    for (QDockWidget *const dock : docks)
        menu->addAction(dock->toggleViewAction());
    menu->setToolTipsVisible(true);
}

void WorkbenchWindow::createHelpMenu()
{
    QMenu *const menu = menuBar()->addMenu(QStringLiteral("&Справка"));
    menu->addAction(QStringLiteral("&О программе"), this, &WorkbenchWindow::showAbout);
    menu->addAction(QStringLiteral("О библиотеке &Qt"), qApp, &QApplication::aboutQt);
}

void WorkbenchWindow::createToolBar()
{
    QToolBar *const bar = addToolBar(QStringLiteral("Панель инструментов"));
    bar->setObjectName(QStringLiteral("toolBar"));
    bar->setMovable(false);
    bar->toggleViewAction()->setEnabled(false); // the context menu hides docks only
    for (QAction *const action : m_operationActions)
        bar->addAction(action);
    bar->addSeparator();
    bar->addAction(m_fitAction);
    bar->addAction(m_axesAction);
}

void WorkbenchWindow::updateRecentMenu()
{
    m_recentMenu->clear();
    const QVector<ImportFile> &files = m_recentFiles.files();
    for (const ImportFile &file : files) {
        const QString path = QDir::toNativeSeparators(file.fileName);
        const QString name = escaped(fontMetrics().elidedText(path, Qt::ElideMiddle, 600));
        QAction *const action =
            m_recentMenu->addAction(name, this, [this, file] { runOperation(file.operation, file.fileName); });
        const QString toolTip = QStringLiteral("%1: %2").arg(file.operation, path);
        action->setToolTip(Qt::convertFromPlainText(toolTip, Qt::WhiteSpaceNormal));
        action->setEnabled(m_operations.contains(file.operation));
    }
    m_recentMenu->setEnabled(!files.isEmpty());
}

void WorkbenchWindow::rememberFile(const ImportFile &file)
{
    m_recentFiles.add(file);
    updateRecentMenu();
}

void WorkbenchWindow::enableExports()
{
    m_saveResultAction->setEnabled(!m_resultPane->text().isEmpty());
    for (QAction *const action : m_exportActions)
        action->setEnabled(!m_result.objects.isEmpty());
}

void WorkbenchWindow::find()
{
    raiseDock(m_objects);
    m_objects->searchEdit()->setFocus(Qt::ShortcutFocusReason);
    m_objects->searchEdit()->selectAll();
}

void WorkbenchWindow::showAbout()
{
    QMessageBox::about(
        this, QStringLiteral("О программе"),
        QStringLiteral("<h3>Импорт объектов %1</h3>"
                       "<p>Вызывает операции плагина импорта, как это делает основная программа, и "
                       "показывает сообщения и результат.</p><p>Плагин: %2</p>")
            .arg(QStringLiteral(IMPORT_VERSION), QDir::toNativeSeparators(m_options.plugin).toHtmlEscaped()));
}
