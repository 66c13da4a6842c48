#include "dialog.h"

#include "mapimport_dxf.h"
#include "mapimport_mif.h"
#include "ui_dialog.h"

#include <QFileDialog>
#include <QScopedValueRollback>

namespace {

void enlargeFont(QFont &font)
{
    if (font.pointSize() > 0)
        font.setPointSize(font.pointSize() + 1);
    else if (font.pixelSize() > 0)
        font.setPixelSize(font.pixelSize() + 1);
}

} // namespace

int ColumnLimitProxyModel::columnCount(const QModelIndex &parent) const
{
    return qMin(QIdentityProxyModel::columnCount(parent), maxCount);
}

Dialog::Dialog(QWidget *parent) : QDialog(parent), ui(new Ui::Dialog)
{
    ui->setupUi(this);

    QFont font = ui->plusToolButton->font();
    enlargeFont(font);
    ui->plusToolButton->setFont(font);
    ui->minusToolButton->setFont(font);
    ui->minusToolButton->setFixedWidth(ui->plusToolButton->sizeHint().width());

    ui->listView->setItemDelegate(&defDelegate);
    ui->tableView->setItemDelegate(&cellDelegate);

    readSettings();

    connect(ui->buttonBox, SIGNAL(accepted()), this, SLOT(accept()));
    connect(ui->buttonBox, SIGNAL(rejected()), this, SLOT(reject()));

    // The exchange of X and Y is not on offer; the importer is never told of this check box.
    ui->swapXYCheck->hide();
}

Dialog::~Dialog()
{
    writeSettings();
    delete ui;
}

void Dialog::chooseFile(QLineEdit *edit)
{
    const QString filter = isDxf ? QStringLiteral("Файлы dxf (*.dxf)") : QStringLiteral("Файлы mif (*.mif)");
    const QString path = QFileDialog::getOpenFileName(this, QStringLiteral("Выбрать файл"), lastPath, filter);
    if (path.isEmpty())
        return;
    lastPath = path;
    edit->setText(QDir::toNativeSeparators(path));
}

void Dialog::on_objectFileButton_clicked()
{
    chooseFile(ui->objectFileNameEdit);
}

void Dialog::on_pointFileButton_clicked()
{
    chooseFile(ui->pointFileNameEdit);
}

void Dialog::applyOptions(MapImport &importer)
{
    importer.objectFileName = ui->objectFileNameEdit->text();
    if (ui->usePointFileCheck->isChecked())
        importer.pointFileName = ui->pointFileNameEdit->text();
    importer.searchPointDefs = ui->searchPointDefsCheck->isChecked();
    importer.pointPref = ui->pointPrefEdit->text();
    importer.pointStartNum = ui->pointStartNumSpin->value();
    importer.searchObjectDefs = ui->searchObjectDefsCheck->isChecked();
    importer.objectPref = ui->objectPrefEdit->text();
    importer.objectStartNum = ui->objectStartNumSpin->value();
    importer.setEncoding(ui->encodingCombo->currentText().toLatin1());
    importer.objects = &objects;
}

// The models let go of the old objects first: their views may be painted while the run tells the host of a failure, and
// long after a run that brought nothing.
void Dialog::on_startButton_clicked()
{
    if (isProcessing)
        return;
    const QScopedValueRollback<bool> processing(isProcessing, true);
    polygonModel.detachPolygon();
    mapModel.detachMap();
    objects.clear();
    fieldNumValueMap.clear();

    if (isDxf)
        importer = std::make_unique<DxfImport>();
    else
        importer = std::make_unique<MifImport>();
    applyOptions(*importer);
    importer->importMap();
    if (objects.isEmpty())
        return;
    showObjects();
    importer.reset();
}

void Dialog::showObjects()
{
    readFields();
    polygonModel.setPolygon(&objects.first());
    polygonModel.setFieldNumValueMap(fieldNumValueMap);
    mapModel.setMap(&objects);
    ui->listView->setModel(&mapModel);
    ui->tableView->setModel(shownTable());
    connect(ui->listView->selectionModel(), &QItemSelectionModel::currentChanged, this, &Dialog::procCurrentChanged);
}

QAbstractItemModel *Dialog::shownTable()
{
    if (polygonModel.columnCount() <= ColumnLimitProxyModel::maxCount)
        return &polygonModel;
    columnLimit.setSourceModel(&polygonModel);
    return &columnLimit;
}

// A row of the list may be older than the objects, which grow while a run is on its way.
void Dialog::procCurrentChanged(const QModelIndex &current, const QModelIndex & /*previous*/)
{
    if (!current.isValid() || isProcessing || current.row() >= objects.size())
        return;
    polygonModel.setPolygon(&objects[current.row()]);
    polygonModel.setFieldNumValueMap(fieldNumValueMap);
}

// The table stays on its row, where another object may stand now.
void Dialog::on_sortButton_clicked()
{
    if (isProcessing)
        return;
    sortObjects(objects);
    mapModel.setMap(&objects);
    polygonModel.refresh();
}

void Dialog::on_usePointFileCheck_toggled(bool checked)
{
    ui->pointFileLabel->setVisible(checked);
    ui->pointFileNameEdit->setVisible(checked);
    ui->pointFileButton->setVisible(checked);
    ui->objectFileLabel->setText(checked ? QStringLiteral("Файл объектов:") : QStringLiteral("Файл:"));
}

void Dialog::on_objectFileNameEdit_textChanged(const QString &text)
{
    ui->startButton->setEnabled(!text.isEmpty());
}
