#pragma once

#include <QDialogButtonBox>
#include <QLatin1String>
#include <QString>
#include <QWidget>

#include <functional>

class QAbstractItemView;

/// Finds and operates the widgets of the import dialog by their object names.
///
/// For a missing widget the error handler is called; find() and list() then return null, all other functions false.
class DialogWidgets
{
public:
    using ErrorHandler = std::function<void(const QString &error)>;

    /// Ends the program with \a error.
    static void abort(const QString &error);

    /// \a dialog must outlive this object.
    explicit DialogWidgets(QWidget *dialog, ErrorHandler onError = abort);

    QWidget *dialog() const { return m_dialog; }

    template <typename Widget>
    Widget *find(const char *name) const
    {
        auto *const widget = m_dialog->findChild<Widget *>(QLatin1String(name));
        if (widget == nullptr)
            fail(missingText(Widget::staticMetaObject.className(), name));
        return widget;
    }

    QAbstractItemView *list() const;

    bool setNumber(const char *spin, int number) const;
    bool setChecked(const char *check, bool checked) const;
    bool press(const char *button) const;
    bool accept() const { return pressInBox(QDialogButtonBox::Ok); }
    bool cancel() const { return pressInBox(QDialogButtonBox::Cancel); }

private:
    static QString missingText(const char *className, const char *name);
    bool fail(const QString &error) const;
    bool pressInBox(QDialogButtonBox::StandardButton button) const;

    QWidget *m_dialog;
    ErrorHandler m_onError;
};
