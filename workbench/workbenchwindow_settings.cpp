#include "workbenchwindow.h"

#include "objectspane.h"

#include <QAction>
#include <QLayout>
#include <QScreen>
#include <QSettings>

namespace {

constexpr QSize preferredSize(1400, 860);

// The plug-in keeps its settings in other groups of the same store.
const QString strGroup = QStringLiteral("Window");
const QString strGeometry = QStringLiteral("geometry");
const QString strState = QStringLiteral("state");
const QString strObjects = QStringLiteral("objects");
const QString strSurveyAxes = QStringLiteral("surveyAxes");
const QString strSaveFolder = QStringLiteral("saveFolder");

} // namespace

void WorkbenchWindow::readSettings()
{
    QSettings settings;
    settings.beginGroup(strGroup);
    if (!restoreGeometry(settings.value(strGeometry).toByteArray()))
        resize(preferredSize.boundedTo(screen()->availableSize() * 0.9));
    layout()->activate(); // otherwise the docks are shown with their size hints instead of the restored sizes
    if (!restoreState(settings.value(strState).toByteArray()))
        arrangeDocks();
    m_objects->restoreState(settings.value(strObjects).toByteArray());
    m_axesAction->setChecked(settings.value(strSurveyAxes, true).toBool());
    m_saveFolder = settings.value(strSaveFolder).toString();
    m_recentFiles.read(settings);
    updateRecentMenu();
}

void WorkbenchWindow::writeSettings() const
{
    QSettings settings;
    settings.beginGroup(strGroup);
    settings.setValue(strGeometry, saveGeometry());
    settings.setValue(strState, saveState());
    settings.setValue(strObjects, m_objects->saveState());
    settings.setValue(strSurveyAxes, m_axesAction->isChecked());
    settings.setValue(strSaveFolder, m_saveFolder);
    m_recentFiles.write(settings);
}
