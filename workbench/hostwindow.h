#pragma once

#include "options.h"

#include <QWidget>

class QPlainTextEdit;

/// A window with a button for each operation, the messages of the plug-in and its last result.
class HostWindow : public QWidget
{
    Q_OBJECT

public:
    /// \a plugin and \a options must outlive the window.
    HostWindow(ImportGeometryInterface &plugin, const HostOptions &options);
    ~HostWindow() override;

private Q_SLOTS:
    void runRequestedOperation(); ///< the operation of the command line, if any

private:
    void runOperation(const QString &op);
    static void showStatus(const QString &text);

    QLayout *createButtons();

    ImportGeometryInterface &m_plugin;
    const HostOptions &m_options;
    QPlainTextEdit *const m_log;
    QPlainTextEdit *const m_result;
};
