#include "importfile.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace {

const QString strMif = QStringLiteral("mif");

bool isMid(const QFileInfo &info)
{
    return info.suffix().compare(QLatin1String("mid"), Qt::CaseInsensitive) == 0;
}

// The names of the pair may differ in case, except for the base name.
QString mifBeside(const QFileInfo &mid)
{
    const QFileInfoList files = mid.dir().entryInfoList(QDir::Files);
    const auto isMif = [&mid](const QFileInfo &file) {
        return file.completeBaseName() == mid.completeBaseName() &&
               file.suffix().compare(strMif, Qt::CaseInsensitive) == 0;
    };
    const auto found = std::find_if(files.begin(), files.end(), isMif);
    return found == files.end() ? QString() : found->absoluteFilePath();
}

QString withName(const QString &text, const QFileInfo &info)
{
    return text.arg(QDir::toNativeSeparators(info.filePath()));
}

QString errorOf(const QUrl &url, const QStringList &operations)
{
    const QFileInfo info(url.toLocalFile());
    if (!url.isLocalFile())
        return QStringLiteral("Не файл этого компьютера: %1").arg(url.toDisplayString());
    if (info.isDir())
        return withName(QStringLiteral("Это папка, а не файл: %1"), info);
    if (!info.exists())
        return withName(QStringLiteral("Файла нет: %1"), info);
    if (operationFor(info.fileName(), operations).isEmpty())
        return withName(QStringLiteral("Импортируются файлы MIF и DXF, а это другой файл: %1"), info);
    if (isMid(info) && mifBeside(info).isEmpty())
        return withName(QStringLiteral("Рядом с файлом MID нет файла MIF: %1"), info);
    return QString();
}

} // namespace

QString operationFor(const QString &fileName, const QStringList &operations)
{
    const QFileInfo info(fileName);
    const QString format = isMid(info) ? strMif : info.suffix();
    const auto imports = [&format](const QString &op) {
        return op.split(QLatin1Char(' ')).contains(format, Qt::CaseInsensitive);
    };
    const auto found = std::find_if(operations.begin(), operations.end(), imports);
    return format.isEmpty() || found == operations.end() ? QString() : *found;
}

bool findImportFile(const QList<QUrl> &urls, const QStringList &operations, ImportFile &file, QString &error)
{
    error.clear();
    for (const QUrl &url : urls) {
        const QString problem = errorOf(url, operations);
        if (problem.isEmpty()) {
            const QFileInfo info(url.toLocalFile());
            file = {isMid(info) ? mifBeside(info) : info.absoluteFilePath(), operationFor(info.fileName(), operations)};
            error.clear();
            return true;
        }
        if (error.isEmpty())
            error = problem;
    }
    return false;
}
