#include "convertoutput.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

ConvertOutput::ConvertOutput(const QString &fileName) : m_mif(fileName), m_mid(fileName.chopped(1) + QLatin1Char('d'))
{
}

bool ConvertOutput::fail(const QString &text)
{
    m_error = text;
    return false;
}

bool ConvertOutput::isSource(const QString &fileName) const
{
    const QString suffix = QFileInfo(fileName).suffix().toLower();
    const bool isPair = suffix == QLatin1String("mif") || suffix == QLatin1String("mid");
    QStringList sources{fileName};
    for (const char *const other : {"mif", "MIF", "mid", "MID"}) {
        if (isPair)
            sources.append(fileName.chopped(suffix.size()) + QLatin1String(other));
    }
    const auto isOutput = [this](const QString &name) {
        const QFileInfo file(name);
        return file.exists() && (file == QFileInfo(m_mif) || file == QFileInfo(m_mid));
    };
    return std::any_of(sources.begin(), sources.end(), isOutput);
}

bool ConvertOutput::prepare(bool overwrite)
{
    const QFileInfo mif(m_mif);
    for (const QString &name : {m_mif, m_mid}) {
        const QFileInfo file(name);
        if (file.isDir())
            return fail(QStringLiteral("\"%1\" is a folder.").arg(name));
        if (file.exists() && !file.isFile())
            return fail(QStringLiteral("\"%1\" is not a regular file.").arg(name));
        m_exists = !overwrite && (file.exists() || file.isSymLink());
        if (m_exists)
            return fail(QStringLiteral("\"%1\" exists.").arg(name));
    }
    if (!mif.absoluteDir().exists())
        return fail(QStringLiteral("The folder of \"%1\" is missing.").arg(m_mif));
    m_folder = std::make_unique<QTemporaryDir>(mif.absoluteDir().filePath(QStringLiteral(".importprepare-XXXXXX")));
    return m_folder->isValid() ||
           fail(QStringLiteral("Cannot write to the folder of \"%1\": %2.").arg(m_mif, m_folder->errorString()));
}

QString ConvertOutput::temporaryName() const
{
    return m_folder->filePath(QStringLiteral("new.mif"));
}

QStringList ConvertOutput::temporaryPaths() const
{
    return {temporaryName(), m_folder->filePath(QStringLiteral("new.mid")), m_folder->path()};
}

// Keeps the replaced file until both new files are in place.
bool ConvertOutput::replace(const QString &temporary, const QString &name, const QString &saved)
{
    const bool exists = QFileInfo::exists(name) || QFileInfo(name).isSymLink();
    if (exists && !QFile::rename(name, saved))
        return fail(QStringLiteral("Cannot replace \"%1\".").arg(name));
    QFile file(temporary);
    if (file.rename(name))
        return true;
    if (exists)
        QFile::rename(saved, name);
    return fail(QStringLiteral("Cannot save \"%1\": %2.").arg(name, file.errorString()));
}

bool ConvertOutput::commit()
{
    const QString savedMid = m_folder->filePath(QStringLiteral("old.mid"));
    const QString savedMif = m_folder->filePath(QStringLiteral("old.mif"));
    if (!replace(m_folder->filePath(QStringLiteral("new.mid")), m_mid, savedMid))
        return false;
    if (replace(temporaryName(), m_mif, savedMif))
        return true;
    QFile::remove(m_mid);
    if (QFileInfo::exists(savedMid))
        QFile::rename(savedMid, m_mid);
    return false;
}
