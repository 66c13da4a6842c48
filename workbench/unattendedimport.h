#pragma once

#include "options.h"

#include <QObject>
#include <QString>

class DialogWidgets;

/// Enters the choices of the command line in the import dialog and closes it.
///
/// Every choice is entered, defaults included, so that saved settings have no effect.
class UnattendedImport : public QObject
{
    Q_OBJECT

public:
    /// \a choices must outlive this object.
    explicit UnattendedImport(const DialogChoices &choices) : m_choices(choices) {}

    /// Returns at once; the modal dialog that opens next is operated as soon as its event loop runs.
    void waitForDialog();

    /// The first error, or empty. An error closes the dialog as Cancel does.
    const QString &error() const { return m_error; }

private Q_SLOTS:
    void operateDialog();

private:
    bool fail(const QString &error);
    bool enterChoices(const DialogWidgets &widgets) const;
    bool enterFields(const DialogWidgets &widgets) const;
    bool process(const DialogWidgets &widgets) const;
    bool takePicture(const DialogWidgets &widgets);

    const DialogChoices &m_choices;
    QString m_error;
};
