#include "unattendedimport.h"

#include "console.h"
#include "dialogwidgets.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QTimer>

namespace {

constexpr QSize screenshotSize(1000, 650);

int printedMessages = 0; // the status callback of the interface has no context argument

void printMessage(const QString &text)
{
    printLine(stderr, text);
    ++printedMessages;
}

bool setText(const DialogWidgets &widgets, const char *name, const QString &text)
{
    auto *const edit = widgets.find<QLineEdit>(name);
    if (edit != nullptr)
        edit->setText(text);
    return edit != nullptr;
}

bool setEncoding(const DialogWidgets &widgets, const QString &name)
{
    auto *const combo = widgets.find<QComboBox>("encodingCombo");
    if (combo != nullptr)
        combo->setCurrentText(name);
    return combo != nullptr;
}

bool hasObjects(const QAbstractItemView *list)
{
    return list->model() != nullptr && list->model()->rowCount() > 0;
}

bool finish(const DialogWidgets &widgets)
{
    const QAbstractItemView *const list = widgets.list();
    return list != nullptr && (hasObjects(list) ? widgets.accept() : widgets.cancel());
}

} // namespace

bool UnattendedImport::run(ImportGeometryInterface &plugin)
{
    QTimer::singleShot(0, this, SLOT(operateDialog())); // as soon as the modal dialog runs its event loop
    printedMessages = 0;
    m_result = plugin.operation(m_options.operation, m_options.formName, m_options.objectTable, m_options.pointTable,
                                m_options.columns, printMessage);
    m_messageCount = printedMessages;
    return m_error.isEmpty();
}

// After an error, leave all event loops: that closes any dialog, even one without the expected buttons.
void UnattendedImport::operateDialog()
{
    QWidget *const dialog = QApplication::activeModalWidget();
    const DialogWidgets widgets(dialog, [this](const QString &error) { fail(error); });
    const bool ok = dialog != nullptr || fail(QStringLiteral("The plug-in opened no dialog."));
    if (!ok || !enterChoices(widgets) || !process(widgets) || !takeScreenshot(widgets) || !finish(widgets))
        QCoreApplication::exit();
}

bool UnattendedImport::fail(const QString &error)
{
    m_error = error;
    return false;
}

bool UnattendedImport::enterChoices(const DialogWidgets &widgets) const
{
    const DialogChoices &choices = *m_options.dialog;
    return setEncoding(widgets, choices.encoding) && setText(widgets, "objectFileNameEdit", choices.objectFile) &&
           widgets.setChecked("usePointFileCheck", !choices.pointFile.isEmpty()) &&
           setText(widgets, "pointFileNameEdit", choices.pointFile) &&
           widgets.setChecked("searchPointDefsCheck", choices.searchPoints) &&
           setText(widgets, "pointPrefEdit", choices.pointPrefix) &&
           widgets.setNumber("pointStartNumSpin", choices.pointStart) &&
           widgets.setChecked("searchObjectDefsCheck", choices.searchObjects) &&
           setText(widgets, "objectPrefEdit", choices.objectPrefix) &&
           widgets.setNumber("objectStartNumSpin", choices.objectStart) &&
           widgets.setChecked("updateCheck", choices.update) && enterFields(widgets);
}

// Removes all rows but the first, which cannot be removed, then adds a row for each further field.
bool UnattendedImport::enterFields(const DialogWidgets &widgets) const
{
    for (int row = 1; row < DialogChoices::maxFieldCount; ++row) {
        if (!widgets.press("minusToolButton"))
            return false;
    }
    if (!setText(widgets, "fieldEdit_0", QString()))
        return false;
    const QVector<QPair<int, QString>> &fields = m_options.dialog->fields;
    for (int row = 0; row < fields.size(); ++row) {
        const auto &[column, text] = fields.at(row);
        const QByteArray number = QByteArray::number(row);
        if ((row > 0 && !widgets.press("plusToolButton")) ||
            !widgets.setNumber(QByteArray("fieldSpin_") + number, column) ||
            !setText(widgets, QByteArray("fieldEdit_") + number, text))
            return false;
    }
    return true;
}

bool UnattendedImport::process(const DialogWidgets &widgets) const
{
    return widgets.press("startButton") && (!m_options.dialog->sort || widgets.press("sortButton"));
}

bool UnattendedImport::takeScreenshot(const DialogWidgets &widgets)
{
    if (m_options.dialog->screenshot.isEmpty())
        return true;
    QAbstractItemView *const list = widgets.list();
    if (list == nullptr)
        return false;
    widgets.dialog()->resize(screenshotSize);
    if (hasObjects(list))
        list->setCurrentIndex(list->model()->index(0, 0));
    QApplication::processEvents();
    m_screenshot = widgets.dialog()->grab();
    return true;
}
