#include "operationrun.h"

#include "dialogwidgets.h"
#include "messagewindow.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QFileInfo>
#include <QLineEdit>

namespace {

OperationRun *currentRun = nullptr; // the status callback of the interface has no context argument

// Another plug-in's dialog may have other widgets; that is no error here.
template <typename Widget>
Widget *optional(QWidget *dialog, const char *name)
{
    return DialogWidgets(dialog, [](const QString & /*error*/) {}).find<Widget>(name);
}

// The name in a line edit as an absolute path; empty without one.
QString fileIn(QWidget *dialog, const char *name)
{
    const auto *const edit = optional<QLineEdit>(dialog, name);
    if (edit == nullptr || edit->text().isEmpty())
        return QString();
    return QFileInfo(QDir::fromNativeSeparators(edit->text())).absoluteFilePath();
}

bool isChecked(QWidget *dialog, const char *name, bool byDefault)
{
    const auto *const check = optional<QCheckBox>(dialog, name);
    return check == nullptr ? byDefault : check->isChecked();
}

} // namespace

OperationRun::OperationRun()
{
    currentRun = this;
    m_observer.setSingleShot(true);
    connect(&m_observer, &QTimer::timeout, this, &OperationRun::observeDialog);
}

OperationRun::~OperationRun()
{
    currentRun = nullptr;
}

void OperationRun::showStatus(const QString &text)
{
    if (currentRun != nullptr)
        currentRun->receive(text);
}

void OperationRun::call(ImportGeometryInterface &plugin, const HostOptions &options, const QString &op,
                        const QString &fileName)
{
    m_requestedFile = fileName;
    m_observer.start(0); // runs in the event loop of the dialog
    m_result = plugin.operation(op, options.formName, options.objectTable, options.pointTable, options.columns,
                                &OperationRun::showStatus);
    m_observer.stop();
}

void OperationRun::receive(const QString &text)
{
    beginProcessing();
    ++m_messageCount;
    m_lastMessage = text;
    Q_EMIT message(text);
    if (!m_messageWindow.isNull() && m_dialog->isVisible())
        m_messageWindow->append(text);
}

void OperationRun::observeDialog()
{
    auto *const dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
    if (dialog == nullptr)
        return;
    m_dialog = dialog;
    m_messageWindow = new MessageWindow(dialog);
    m_outcome = Outcome::Cancelled;
    connect(dialog, &QDialog::finished, this, &OperationRun::closeDialog);
    observeProcessing(dialog);
    auto *const edit = optional<QLineEdit>(dialog, "objectFileNameEdit");
    if (edit != nullptr && !m_requestedFile.isEmpty())
        edit->setText(QDir::toNativeSeparators(m_requestedFile));
    if (!m_preparedEncoding.isEmpty())
        enterPrepared();
}

void OperationRun::enterPrepared()
{
    const DialogWidgets widgets(m_dialog, [](const QString & /*error*/) {});
    auto *const combo = widgets.find<QComboBox>("encodingCombo");
    const int entry = combo == nullptr ? -1 : combo->findText(m_preparedEncoding, Qt::MatchFixedString);
    if (entry >= 0)
        combo->setCurrentIndex(entry);
    else if (combo != nullptr)
        combo->setCurrentText(m_preparedEncoding);
    widgets.setChecked("searchPointDefsCheck", true);
    widgets.setChecked("searchObjectDefsCheck", true);
    widgets.setChecked("usePointFileCheck", false);
}

// The dialog is connected to clicked() first, so this object learns too late of a click. It is pressed() before, but
// the mouse can leave a pressed button without a click.
void OperationRun::observeProcessing(QWidget *dialog)
{
    auto *const button = optional<QAbstractButton>(dialog, "startButton");
    m_wasProcessed = button == nullptr;
    if (button == nullptr)
        return;
    connect(button, &QAbstractButton::pressed, this, [this] { m_isPressed = true; });
    connect(button, &QAbstractButton::clicked, this, &OperationRun::beginProcessing);
}

/// Forgets the messages of the processing before. Does nothing if this has been done since the button was pressed.
void OperationRun::beginProcessing()
{
    if (!m_isPressed)
        return;
    m_isPressed = false;
    m_wasProcessed = true;
    m_messageCount = 0;
    m_lastMessage.clear();
    m_messageWindow->clear();
    readChoices();
}

void OperationRun::readChoices()
{
    m_choices = DialogChoices();
    m_choices.objectFile = fileIn(m_dialog, "objectFileNameEdit");
    if (isChecked(m_dialog, "usePointFileCheck", false))
        m_choices.pointFile = fileIn(m_dialog, "pointFileNameEdit");
    const auto *const combo = optional<QComboBox>(m_dialog, "encodingCombo");
    if (combo != nullptr)
        m_choices.encoding = combo->currentText();
    m_choices.searchPoints = isChecked(m_dialog, "searchPointDefsCheck", true);
    m_choices.searchObjects = isChecked(m_dialog, "searchObjectDefsCheck", true);
}

void OperationRun::closeDialog(int code)
{
    m_isPressed = false; // later messages are about the result
    m_messageWindow->clear();
    const auto *const list = optional<QAbstractItemView>(m_dialog, "listView");
    m_hasObjects = list != nullptr && list->model() != nullptr && list->model()->rowCount() > 0;
    if (code != QDialog::Accepted)
        return;
    m_outcome = Outcome::Accepted;
    m_fileName = fileIn(m_dialog, "objectFileNameEdit");
}
