#include "dialog.h"

#include "mapimport_dxf.h"
#include "mapimport_mif.h"
#include "ui_dialog.h"

#include <QFileDialog>
#include <QScopedValueRollback>

#include <new>

namespace {

void enlargeFont(QFont &font)
{
    if (font.pointSize() > 0)
        font.setPointSize(font.pointSize() + 1);
    else if (font.pixelSize() > 0)
        font.setPixelSize(font.pixelSize() + 1);
}

/// Shows the wait cursor over all windows of the host.
class WaitCursor
{
public:
    WaitCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QGuiApplication::restoreOverrideCursor(); }
    Q_DISABLE_COPY(WaitCursor)
};

/// Removes the wait cursor for its lifetime: the host may open a box, which needs its own cursor.
class NoWaitCursor
{
public:
    NoWaitCursor() { QGuiApplication::restoreOverrideCursor(); }
    ~NoWaitCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    Q_DISABLE_COPY(NoWaitCursor)
};

void reportWithoutWaitCursor(const QString &message)
{
    const NoWaitCursor cursor;
    showStatus(message);
}

} // namespace

Dialog::Dialog(QWidget *parent) : QDialog(parent), ui(std::make_unique<Ui::Dialog>())
{
    ui->setupUi(this);

    QFont font = ui->plusToolButton->font();
    enlargeFont(font);
    ui->plusToolButton->setFont(font);
    ui->minusToolButton->setFont(font);
    ui->minusToolButton->setFixedWidth(ui->plusToolButton->sizeHint().width());

    ui->listView->setItemDelegate(&listDelegate);
    ui->tableView->setItemDelegate(&tableDelegate);
    polygonModel.setColumnLimit(DefPolygonTableModel::maxShownColumns);

    readSettings();

    // String-based, like the automatic connections of the form: the slots are looked up by name.
    connect(ui->buttonBox, SIGNAL(accepted()), this, SLOT(accept()));
    connect(ui->buttonBox, SIGNAL(rejected()), this, SLOT(reject()));

    // Swapping X and Y is not offered: the check box stays hidden, and its state is never passed to the importer.
    ui->swapXYCheck->hide();
}

Dialog::~Dialog()
{
    writeSettings();
}

void Dialog::setColumns(int n, int x, int y, int def)
{
    nColNum = n;
    xColNum = x;
    yColNum = y;
    defColNum = def;
    polygonModel.setNxyColNum(n, x, y);
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
    importer.report = reportWithoutWaitCursor;
}

void Dialog::clearObjects()
{
    polygonModel.setPolygon(nullptr);
    mapModel.setMap(nullptr);
    objects.clear();
}

void Dialog::runImport()
{
    const QScopedValueRollback<bool> processing(isProcessing, true);
    // Detach the models first: a status callback may repaint the views during the run.
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
}

void Dialog::on_startButton_clicked()
{
    if (isProcessing)
        return;
    const WaitCursor cursor;
    // Filling the models and views allocates as well, so memory may run out there, too.
    try {
        runImport();
        if (objects.isEmpty())
            return;
        showObjects();
    } catch (const std::bad_alloc &) {
        const QScopedValueRollback<bool> processing(isProcessing, true);
        clearObjects();
        if (importer)
            importer->failOutOfMemory();
    }
    importer.reset();
}

void Dialog::showObjects()
{
    readFields();
    polygonModel.setPolygon(&objects.first());
    polygonModel.setFieldNumValueMap(fieldNumValueMap);
    mapModel.setMap(&objects);
    ui->listView->setModel(&mapModel);
    ui->tableView->setModel(&polygonModel);
    connect(ui->listView->selectionModel(), &QItemSelectionModel::currentChanged, this, &Dialog::procCurrentChanged);
    // Allocate both indexes and the row layout here, where bad_alloc is caught, not while painting. The layout asks for
    // colours, so it comes last: an exception from an index would skip the clean-up of the view.
    mapModel.ensureDuplicateIndex();
    polygonModel.ensureConflictIndex();
    ui->listView->doItemsLayout();
}

// During a run the list view still has the rows of the previous run.
void Dialog::procCurrentChanged(const QModelIndex &current, const QModelIndex & /*previous*/)
{
    if (!current.isValid() || isProcessing || current.row() >= objects.size())
        return;
    polygonModel.setPolygon(&objects[current.row()]);
    polygonModel.setFieldNumValueMap(fieldNumValueMap);
}

// The vertex table keeps showing the same position in the list, where another object may be after sorting.
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
