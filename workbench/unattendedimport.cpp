#include "unattendedimport.h"

#include "dialogwidgets.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPixmap>
#include <QTimer>

namespace {

constexpr QSize pictureSize(1000, 650);

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

void UnattendedImport::waitForDialog()
{
    QTimer::singleShot(0, this, &UnattendedImport::operateDialog);
}

// After an error, leave all event loops: that closes any dialog, even one without the expected buttons.
void UnattendedImport::operateDialog()
{
    QWidget *const dialog = QApplication::activeModalWidget();
    const DialogWidgets widgets(dialog, [this](const QString &error) { fail(error); });
    const bool ok = dialog != nullptr || fail(QStringLiteral("The plug-in opened no dialog."));
    if (!ok || !enterChoices(widgets) || !process(widgets) || !takePicture(widgets) || !finish(widgets))
        QCoreApplication::exit();
}

bool UnattendedImport::fail(const QString &error)
{
    m_error = error;
    return false;
}

bool UnattendedImport::enterChoices(const DialogWidgets &widgets) const
{
    return setEncoding(widgets, m_choices.encoding) && setText(widgets, "objectFileNameEdit", m_choices.objectFile) &&
           widgets.setChecked("usePointFileCheck", !m_choices.pointFile.isEmpty()) &&
           setText(widgets, "pointFileNameEdit", m_choices.pointFile) &&
           widgets.setChecked("searchPointDefsCheck", m_choices.searchPoints) &&
           setText(widgets, "pointPrefEdit", m_choices.pointPrefix) &&
           widgets.setNumber("pointStartNumSpin", m_choices.pointStart) &&
           widgets.setChecked("searchObjectDefsCheck", m_choices.searchObjects) &&
           setText(widgets, "objectPrefEdit", m_choices.objectPrefix) &&
           widgets.setNumber("objectStartNumSpin", m_choices.objectStart) &&
           widgets.setChecked("updateCheck", m_choices.update) && enterFields(widgets);
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
    for (int row = 0; row < m_choices.fields.size(); ++row) {
        const auto &[column, text] = m_choices.fields.at(row);
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
    return widgets.press("startButton") && (!m_choices.sort || widgets.press("sortButton"));
}

bool UnattendedImport::takePicture(const DialogWidgets &widgets)
{
    if (m_choices.screenshot.isEmpty())
        return true;
    QAbstractItemView *const list = widgets.list();
    if (list == nullptr)
        return false;
    widgets.dialog()->resize(pictureSize);
    if (hasObjects(list))
        list->setCurrentIndex(list->model()->index(0, 0));
    QApplication::processEvents();
    return widgets.dialog()->grab().save(m_choices.screenshot) ||
           fail(QStringLiteral("Cannot save the picture \"%1\".").arg(m_choices.screenshot));
}
