// Linked into the example host. Imports the file that the environment variable IMPORT_FILE names as soon as the dialog
// of the plug-in opens, and closes the dialog with OK.

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

namespace {

void importFile()
{
    auto *const dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
    if (dialog == nullptr)
        qFatal("The plug-in opened no dialog.");
    dialog->findChild<QComboBox *>(QStringLiteral("encodingCombo"))->setCurrentText(QStringLiteral("Windows-1251"));
    dialog->findChild<QLineEdit *>(QStringLiteral("objectFileNameEdit"))->setText(qEnvironmentVariable("IMPORT_FILE"));
    dialog->findChild<QPushButton *>(QStringLiteral("startButton"))->click();
    dialog->accept();
}

// Runs in the event loop of the dialog, which is the first one.
void waitForDialog()
{
    QTimer::singleShot(0, importFile);
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(waitForDialog)
