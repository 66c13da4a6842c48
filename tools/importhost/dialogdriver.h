#pragma once

#include "options.h"

#include <QObject>
#include <QString>

class QWidget;

/// Uses the dialog of the plug-in in place of a person, through the names of its widgets.
///
/// Every choice is entered, also where it is the default, so that nothing remembered from another run counts.
class DialogDriver : public QObject
{
    Q_OBJECT

public:
    /// \a choices stay the caller's and outlive the driver.
    explicit DialogDriver(const DialogChoices &choices) : m_choices(choices) {}

    /// Uses the modal dialog that opens next, as soon as it runs its event loop, up to its Ok or Cancel button.
    void waitForDialog();

    /// What went wrong on the way, or empty. The dialog is then closed as with Cancel.
    const QString &error() const { return m_error; }

private Q_SLOTS:
    void useDialog();

private:
    bool enterChoices();
    bool enterFields();
    bool process();
    bool takePicture();
    bool finish();
    bool hasObjects() const;

    bool fail(const QString &text);
    template <typename Widget>
    Widget *find(const QString &name);
    bool setText(const QString &name, const QString &text);
    bool setNumber(const QString &name, int number);
    bool setChecked(const QString &name, bool checked);
    bool press(const QString &name);

    const DialogChoices &m_choices;
    QWidget *m_dialog = nullptr;
    QString m_error;
};
