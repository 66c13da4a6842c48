#include "dialog.h"

#include "ui_dialog.h"

#include <QSettings>

#include <algorithm>
#include <limits>

namespace {

constexpr int maxFieldCount = 5;

// Deep copies: the process-wide cache of QSettings outlives the library, whose read-only data is unmapped on unload.
const QString defaultPointPref = QString::fromUtf8("н");
const QString defaultObjectPref = QString::fromUtf8(":ЗУ");

const QString settingsGroup = QStringLiteral("ImportObjects");
const QString fieldGroup = QStringLiteral("FieldNumValueMap");

QSpinBox *fieldSpin(const QWidget *form, int row)
{
    return form->findChild<QSpinBox *>(QStringLiteral("fieldSpin_%1").arg(row));
}

QLineEdit *fieldEdit(const QWidget *form, int row)
{
    return form->findChild<QLineEdit *>(QStringLiteral("fieldEdit_%1").arg(row));
}

} // namespace

void loadFieldMap(QSettings &settings, QMap<int, QString> &map)
{
    map.clear();
    settings.beginGroup(fieldGroup);
    const QStringList keys = settings.childKeys();
    for (const QString &key : keys)
        map.insert(key.toInt(), settings.value(key).toString());
    settings.endGroup();
}

void saveFieldMap(QSettings &settings, const QMap<int, QString> &map)
{
    settings.beginGroup(fieldGroup);
    settings.remove(QString());
    for (auto field = map.cbegin(); field != map.cend(); ++field) {
        if (!field->isEmpty())
            settings.setValue(QString::number(field.key()), *field);
    }
    settings.endGroup();
}

void Dialog::readSettings()
{
    QSettings settings;
    settings.beginGroup(settingsGroup);
    resize(settings.value(QStringLiteral("size"), QSize(400, 600)).toSize());
    ui->splitter->restoreState(settings.value(QStringLiteral("splitterSizes")).toByteArray());
    lastPath = settings.value(QStringLiteral("lastPath")).toString();
    ui->searchPointDefsCheck->setChecked(settings.value(QStringLiteral("searchPointDefs"), true).toBool());
    ui->pointPrefEdit->setText(settings.value(QStringLiteral("pointPref"), defaultPointPref).toString());
    ui->pointStartNumSpin->setValue(settings.value(QStringLiteral("pointStartNum"), 1).toInt());
    ui->searchObjectDefsCheck->setChecked(settings.value(QStringLiteral("searchObjectDefs"), true).toBool());
    ui->objectPrefEdit->setText(settings.value(QStringLiteral("objectPref"), defaultObjectPref).toString());
    ui->objectStartNumSpin->setValue(settings.value(QStringLiteral("objectStartNum"), 1).toInt());
    ui->usePointFileCheck->setChecked(settings.value(QStringLiteral("usePointFile"), false).toBool());
    ui->updateCheck->setChecked(settings.value(QStringLiteral("update"), false).toBool());
    loadFieldMap(settings, fieldNumValueMap);
    writeFields();
    settings.endGroup();
}

void Dialog::writeSettings()
{
    QSettings settings;
    settings.beginGroup(settingsGroup);
    settings.setValue(QStringLiteral("size"), size());
    settings.setValue(QStringLiteral("splitterSizes"), ui->splitter->saveState());
    settings.setValue(QStringLiteral("lastPath"), lastPath);
    settings.setValue(QStringLiteral("searchPointDefs"), ui->searchPointDefsCheck->isChecked());
    settings.setValue(QStringLiteral("pointPref"), ui->pointPrefEdit->text());
    settings.setValue(QStringLiteral("pointStartNum"), ui->pointStartNumSpin->value());
    settings.setValue(QStringLiteral("searchObjectDefs"), ui->searchObjectDefsCheck->isChecked());
    settings.setValue(QStringLiteral("objectPref"), ui->objectPrefEdit->text());
    settings.setValue(QStringLiteral("objectStartNum"), ui->objectStartNumSpin->value());
    settings.setValue(QStringLiteral("usePointFile"), ui->usePointFileCheck->isChecked());
    settings.setValue(QStringLiteral("update"), ui->updateCheck->isChecked());
    readFields();
    saveFieldMap(settings, fieldNumValueMap);
    settings.endGroup();
}

void Dialog::readFields()
{
    fieldNumValueMap.clear();
    for (int row = 0; row < maxFieldCount; ++row) {
        const QSpinBox *const spin = fieldSpin(this, row);
        const QLineEdit *const edit = fieldEdit(this, row);
        if (spin == nullptr || edit == nullptr)
            return;
        if (!edit->text().isEmpty())
            fieldNumValueMap.insert(spin->value() - 1, edit->text());
    }
}

void Dialog::writeFields()
{
    int row = 0;
    for (auto field = fieldNumValueMap.cbegin(); field != fieldNumValueMap.cend() && row < maxFieldCount; ++field) {
        if (fieldSpin(this, row) == nullptr || fieldEdit(this, row) == nullptr)
            on_plusToolButton_clicked();
        QSpinBox *const spin = fieldSpin(this, row);
        QLineEdit *const edit = fieldEdit(this, row);
        if (spin == nullptr || edit == nullptr)
            return;
        spin->setValue(std::min(field.key(), std::numeric_limits<int>::max() - 1) + 1);
        edit->setText(*field);
        ++row;
    }
}

void Dialog::on_plusToolButton_clicked()
{
    const QSpinBox *const last = fieldSpin(this, fieldCount - 1);
    if (fieldCount == maxFieldCount || last == nullptr)
        return;
    auto *const spin = new QSpinBox(this);
    spin->setObjectName(QStringLiteral("fieldSpin_%1").arg(fieldCount));
    spin->setRange(last->minimum(), last->maximum());
    spin->setValue(last->value() + 1);
    ui->horizontalLayout_7->addWidget(spin);

    auto *const edit = new QLineEdit(this);
    edit->setObjectName(QStringLiteral("fieldEdit_%1").arg(fieldCount));
    ui->horizontalLayout_7->addWidget(edit);
    ++fieldCount;
}

// Deletes the row immediately: with deleteLater() readFields() would still find it.
void Dialog::on_minusToolButton_clicked()
{
    if (fieldCount == 1)
        return;
    --fieldCount;
    delete fieldSpin(this, fieldCount);
    delete fieldEdit(this, fieldCount);
}
