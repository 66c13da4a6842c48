#include "importplugin.h"

#include "dialog.h"
#include "mapimport_status.h"

#include <new>

namespace {

// Deep copies: the host may keep these strings after unloading the library with its read-only data.
const QString strImportFromMif = QString::fromUtf8("Объекты из MIF");
const QString strImportFromDxf = QString::fromUtf8("Объекты из DXF");

// A long designation at many vertices, or many columns, can exceed memory or the size limit of QString.
QString resultOf(Dialog &dialog)
{
    try {
        return dialog.stringResult();
    } catch (const std::bad_alloc &) {
        showStatus(QString::fromUtf8("Недостаточно памяти для результата импорта"));
        return QString();
    }
}

} // namespace

QList<QString> ImportPlugin::operations() const
{
    return {strImportFromMif, strImportFromDxf};
}

QString ImportPlugin::operation(const QString &op, const QString &formName, const QString &objectTableName,
                                const QString &pointTableName, const GeometryInfo &info,
                                void (*statusFunc)(const QString &))
{
    setStatusFunc(statusFunc);
    // Built before the check: an unknown operation reads and writes the settings as well.
    Dialog dialog;
    if (op != strImportFromMif && op != strImportFromDxf) {
        showStatus(QStringLiteral("Ошибка. Операция импорта \"%1\" планином не поддерживается.").arg(op)); // sic
        return QString();
    }
    dialog.isDxf = op == strImportFromDxf;
    dialog.formName = formName;
    dialog.objectTableName = objectTableName;
    dialog.pointTableName = pointTableName;
    dialog.setColumns(info.nColNum, info.xColNum, info.yColNum, info.defColNum);
    return dialog.exec() == QDialog::Accepted ? resultOf(dialog) : QString();
}
