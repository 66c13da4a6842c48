#include "dialogwidgets.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QPushButton>
#include <QSpinBox>

#include <utility>

namespace {

bool click(QAbstractButton *button)
{
    if (button != nullptr)
        button->click();
    return button != nullptr;
}

} // namespace

void DialogWidgets::abort(const QString &error)
{
    qFatal("%s", qUtf8Printable(error));
}

DialogWidgets::DialogWidgets(QWidget *dialog, ErrorHandler onError) : m_dialog(dialog), m_onError(std::move(onError)) {}

QString DialogWidgets::missingText(const char *className, const char *name)
{
    return QStringLiteral("The dialog of the plug-in has no %1 with the name %2.")
        .arg(QLatin1String(className), QLatin1String(name));
}

bool DialogWidgets::fail(const QString &error) const
{
    m_onError(error);
    return false;
}

QAbstractItemView *DialogWidgets::list() const
{
    return find<QAbstractItemView>("listView");
}

bool DialogWidgets::setNumber(const char *spin, int number) const
{
    auto *const box = find<QSpinBox>(spin);
    if (box != nullptr)
        box->setValue(number);
    return box != nullptr;
}

bool DialogWidgets::setChecked(const char *check, bool checked) const
{
    auto *const box = find<QCheckBox>(check);
    return box != nullptr && (box->isChecked() == checked || click(box));
}

bool DialogWidgets::press(const char *button) const
{
    return click(find<QAbstractButton>(button));
}

bool DialogWidgets::pressInBox(QDialogButtonBox::StandardButton button) const
{
    auto *const box = find<QDialogButtonBox>("buttonBox");
    return box != nullptr && (click(box->button(button)) ||
                              fail(QStringLiteral("The dialog of the plug-in has no Ok or Cancel button.")));
}
