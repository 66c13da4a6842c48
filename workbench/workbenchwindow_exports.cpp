#include "workbenchwindow.h"

#include "catalogue.h"
#include "pictureexport.h"
#include "resultpane.h"
#include "savefile.h"

#include <QAction>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QTextDocument>

namespace {

// The suffix of a name filter such as «Рисунок PNG (*.png)».
QString suffixOf(const QString &filter)
{
    const int start = filter.lastIndexOf(QLatin1String("*.")) + 2;
    return filter.mid(start, filter.lastIndexOf(QLatin1Char(')')) - start);
}

} // namespace

void WorkbenchWindow::savePictureAs()
{
    const QStringList filters{QStringLiteral("Рисунок PNG (*.png)"), QStringLiteral("Рисунок SVG (*.svg)"),
                              QStringLiteral("Документ PDF (*.pdf)")};
    saveAs(QStringLiteral("Сохранить рисунок"), filters, [this](const QString &fileName, QString &error) {
        return savePicture(m_result, m_axesAction->isChecked(), fileName, error);
    });
}

void WorkbenchWindow::saveCatalogueAs()
{
    saveAs(QStringLiteral("Сохранить каталог координат"), {QStringLiteral("Таблица CSV (*.csv)")},
           [this](const QString &fileName, QString &error) { return saveCatalogue(m_result, fileName, error); });
}

void WorkbenchWindow::saveResultAs()
{
    saveAs(QStringLiteral("Сохранить результат"), {QStringLiteral("Документ XML (*.xml)")},
           [this](const QString &fileName, QString &error) {
               return saveFile(fileName, m_resultPane->text().toUtf8(), error);
           });
}

void WorkbenchWindow::saveAs(const QString &title, const QStringList &filters, const SaveFunction &save)
{
    const QString fileName = chooseSaveName(title, filters);
    if (fileName.isEmpty())
        return;
    QString error;
    const QString path = QDir::toNativeSeparators(fileName);
    if (save(fileName, error))
        showTemporarily(QStringLiteral("Сохранено: %1").arg(path));
    else
        QMessageBox::warning(
            this, title,
            Qt::convertFromPlainText(QStringLiteral("Не удалось сохранить файл %1\n\n%2").arg(path, error),
                                     Qt::WhiteSpaceNormal));
}

/// Asks for a file name, suggesting the imported file's. Returns an empty name after a cancel.
QString WorkbenchWindow::chooseSaveName(const QString &title, const QStringList &filters)
{
    const QFileInfo imported(m_importedFile);
    QFileDialog dialog(this, title, m_saveFolder.isEmpty() ? imported.absolutePath() : m_saveFolder);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilters(filters);
    dialog.setDefaultSuffix(suffixOf(filters.first()));
    connect(&dialog, &QFileDialog::filterSelected, &dialog,
            [&dialog](const QString &filter) { dialog.setDefaultSuffix(suffixOf(filter)); });
    dialog.selectFile(imported.completeBaseName());
    if (dialog.exec() != QDialog::Accepted)
        return QString();
    m_saveFolder = dialog.directory().absolutePath();
    return dialog.selectedFiles().value(0);
}
