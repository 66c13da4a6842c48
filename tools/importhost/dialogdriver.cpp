#include "dialogdriver.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QListView>
#include <QPixmap>
#include <QPushButton>
#include <QSpinBox>
#include <QTimer>

namespace {

constexpr int maxFieldCount = 5;
constexpr QSize pictureSize(1000, 650);

} // namespace

void DialogDriver::waitForDialog()
{
    QTimer::singleShot(0, this, SLOT(useDialog()));
}

// Leaving the event loops closes whatever dialog is open, also one without the expected buttons.
void DialogDriver::useDialog()
{
    m_dialog = QApplication::activeModalWidget();
    const bool ok = m_dialog != nullptr || fail(QStringLiteral("The plug-in opened no dialog."));
    if (!ok || !enterChoices() || !process() || !takePicture() || !finish())
        QCoreApplication::exit();
}

bool DialogDriver::fail(const QString &text)
{
    m_error = text;
    return false;
}

template <typename Widget>
Widget *DialogDriver::find(const QString &name)
{
    auto *const widget = m_dialog->findChild<Widget *>(name);
    if (widget == nullptr)
        fail(QStringLiteral("The dialog of the plug-in has no %1 with the name %2.")
                 .arg(QString::fromLatin1(Widget::staticMetaObject.className()), name));
    return widget;
}

bool DialogDriver::setText(const QString &name, const QString &text)
{
    auto *const edit = find<QLineEdit>(name);
    if (edit != nullptr)
        edit->setText(text);
    return edit != nullptr;
}

bool DialogDriver::setNumber(const QString &name, int number)
{
    auto *const spin = find<QSpinBox>(name);
    if (spin != nullptr)
        spin->setValue(number);
    return spin != nullptr;
}

bool DialogDriver::setChecked(const QString &name, bool checked)
{
    auto *const check = find<QCheckBox>(name);
    if (check != nullptr)
        check->setChecked(checked);
    return check != nullptr;
}

bool DialogDriver::press(const QString &name)
{
    auto *const button = find<QAbstractButton>(name);
    if (button != nullptr)
        button->click();
    return button != nullptr;
}

bool DialogDriver::enterChoices()
{
    auto *const encoding = find<QComboBox>(QStringLiteral("encodingCombo"));
    if (encoding == nullptr)
        return false;
    encoding->setCurrentText(m_choices.encoding);
    return setText(QStringLiteral("objectFileNameEdit"), m_choices.objectFile) &&
           setChecked(QStringLiteral("usePointFileCheck"), !m_choices.pointFile.isEmpty()) &&
           setText(QStringLiteral("pointFileNameEdit"), m_choices.pointFile) &&
           setChecked(QStringLiteral("searchPointDefsCheck"), m_choices.searchPoints) &&
           setText(QStringLiteral("pointPrefEdit"), m_choices.pointPrefix) &&
           setNumber(QStringLiteral("pointStartNumSpin"), m_choices.pointStart) &&
           setChecked(QStringLiteral("searchObjectDefsCheck"), m_choices.searchObjects) &&
           setText(QStringLiteral("objectPrefEdit"), m_choices.objectPrefix) &&
           setNumber(QStringLiteral("objectStartNumSpin"), m_choices.objectStart) &&
           setChecked(QStringLiteral("updateCheck"), m_choices.update) && enterFields();
}

// Goes back to the one row that always stays, then adds the rows that it takes.
bool DialogDriver::enterFields()
{
    for (int row = 1; row < maxFieldCount; ++row) {
        if (!press(QStringLiteral("minusToolButton")))
            return false;
    }
    if (!setText(QStringLiteral("fieldEdit_0"), QString()))
        return false;
    for (int row = 0; row < m_choices.fields.size(); ++row) {
        const QPair<int, QString> &field = m_choices.fields.at(row);
        if ((row > 0 && !press(QStringLiteral("plusToolButton"))) ||
            !setNumber(QStringLiteral("fieldSpin_%1").arg(row), field.first) ||
            !setText(QStringLiteral("fieldEdit_%1").arg(row), field.second))
            return false;
    }
    return true;
}

bool DialogDriver::process()
{
    return press(QStringLiteral("startButton")) && (!m_choices.sort || press(QStringLiteral("sortButton")));
}

bool DialogDriver::hasObjects() const
{
    const auto *const list = m_dialog->findChild<QListView *>(QStringLiteral("listView"));
    return list != nullptr && list->model() != nullptr && list->model()->rowCount() > 0;
}

bool DialogDriver::takePicture()
{
    if (m_choices.screenshot.isEmpty())
        return true;
    auto *const list = find<QListView>(QStringLiteral("listView"));
    if (list == nullptr)
        return false;
    m_dialog->resize(pictureSize);
    if (hasObjects())
        list->setCurrentIndex(list->model()->index(0, 0));
    QApplication::processEvents();
    return m_dialog->grab().save(m_choices.screenshot) ||
           fail(QStringLiteral("Cannot save the picture \"%1\".").arg(m_choices.screenshot));
}

bool DialogDriver::finish()
{
    auto *const box = find<QDialogButtonBox>(QStringLiteral("buttonBox"));
    if (box == nullptr)
        return false;
    auto *const button = box->button(hasObjects() ? QDialogButtonBox::Ok : QDialogButtonBox::Cancel);
    if (button == nullptr)
        return fail(QStringLiteral("The dialog of the plug-in has no Ok and Cancel buttons."));
    button->click();
    return true;
}
