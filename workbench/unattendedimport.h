#pragma once

#include "options.h"

#include <QObject>
#include <QPixmap>
#include <QString>

class DialogWidgets;

/// Calls an operation of the plug-in, enters the choices of the command line in its dialog and closes it. The messages
/// are printed to the standard error output.
///
/// Every choice is entered, defaults included, so that saved settings have no effect.
class UnattendedImport : public QObject
{
    Q_OBJECT

public:
    /// \a options, whose choices are set, must outlive this object.
    explicit UnattendedImport(const HostOptions &options) : m_options(options) {}

    /// Returns false if the dialog cannot be operated, which error() describes. The dialog is then closed as by Cancel.
    bool run(ImportGeometryInterface &plugin);

    const QString &error() const { return m_error; }

    /// The text that the plug-in returned; empty if nothing was imported.
    const QString &result() const { return m_result; }

    int messageCount() const { return m_messageCount; }

    /// A picture of the dialog after the import; null if not requested or if the plug-in opened no dialog.
    const QPixmap &screenshot() const { return m_screenshot; }

private Q_SLOTS:
    void operateDialog();

private:
    bool fail(const QString &error);
    bool enterChoices(const DialogWidgets &widgets) const;
    bool enterFields(const DialogWidgets &widgets) const;
    bool process(const DialogWidgets &widgets) const;
    bool takeScreenshot(const DialogWidgets &widgets);

    const HostOptions &m_options;
    QString m_result;
    int m_messageCount = 0;
    QPixmap m_screenshot;
    QString m_error;
};
