#include "savefile.h"

#include <QFileInfo>
#include <QSaveFile>

namespace {

// Renaming would replace a device or a pipe by a file.
bool isSpecial(const QFileInfo &file)
{
    return file.exists() && !file.isFile() && !file.isDir();
}

} // namespace

QString systemReason(QString text)
{
    if (text.endsWith(QLatin1Char('.')))
        text.chop(1);
    return text;
}

// Unbuffered, because a buffer would put off a failure.
FileSaver::FileSaver(const QString &fileName)
{
    if (isSpecial(QFileInfo(fileName)))
        m_file = std::make_unique<QFile>(fileName);
    else
        m_file = std::make_unique<QSaveFile>(fileName);
    m_ok = m_file->open(QIODevice::WriteOnly | QIODevice::Unbuffered);
}

// A full disk accepts part of the data without an error; only the attempt to write the rest fails with a reason.
void FileSaver::write(const QByteArray &bytes)
{
    qint64 written = 0;
    for (qint64 position = 0; m_ok && position < bytes.size(); position += written) {
        written = m_file->write(bytes.constData() + position, bytes.size() - position);
        m_ok = written > 0;
    }
}

bool FileSaver::commit(QString &error)
{
    auto *const regular = qobject_cast<QSaveFile *>(m_file.get());
    m_ok = m_ok && (regular == nullptr || regular->commit());
    if (!m_ok)
        error = systemReason(m_file->errorString());
    return m_ok;
}

bool saveFile(const QString &fileName, const QByteArray &bytes, QString &error)
{
    FileSaver file(fileName);
    file.write(bytes);
    return file.commit(error);
}
