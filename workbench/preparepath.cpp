#include "preparepath.h"

#include <QDir>
#include <QFileInfo>

// The search path of the system is ignored: a program found there may have another version.
QString findPrepareProgram(const QString &folder)
{
    for (const char *const name : {BUILT_PREPARE, INSTALLED_PREPARE}) {
        const QFileInfo program(QDir::cleanPath(QDir(folder).absoluteFilePath(QLatin1String(name))));
        if (program.isFile() && program.isExecutable())
            return program.filePath();
    }
    return QString();
}
