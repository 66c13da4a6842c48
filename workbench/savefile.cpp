#include "savefile.h"

#include <QFileInfo>
#include <QSaveFile>

namespace {

// A full disk accepts part of the data without an error; only the attempt to write the rest fails with a reason.
// Unbuffered, because a buffer would put off that attempt.
bool write(QFileDevice &file, const QByteArray &bytes)
{
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return false;
    qint64 written = 0;
    for (qint64 position = 0; position < bytes.size(); position += written) {
        written = file.write(bytes.constData() + position, bytes.size() - position);
        if (written <= 0)
            return false;
    }
    return true;
}

// Renaming would replace a device or a pipe by a file.
bool isSpecial(const QFileInfo &file)
{
    return file.exists() && !file.isFile() && !file.isDir();
}

} // namespace

bool saveFile(const QString &fileName, const QByteArray &bytes, QString &error)
{
    QFile special(fileName);
    QSaveFile regular(fileName);
    const bool isDirect = isSpecial(QFileInfo(fileName));
    const bool ok = isDirect ? write(special, bytes) : write(regular, bytes) && regular.commit();
    if (!ok)
        error = isDirect ? special.errorString() : regular.errorString();
    return ok;
}
