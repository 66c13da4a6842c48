#include "pluginpath.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

QString defaultPlugin()
{
    const QDir dir(QCoreApplication::applicationDirPath());
    const QString built = QDir::cleanPath(dir.absoluteFilePath(QStringLiteral(BUILT_PLUGIN)));
    return QFile::exists(built) ? built : QDir::cleanPath(dir.absoluteFilePath(QStringLiteral(INSTALLED_PLUGIN)));
}
