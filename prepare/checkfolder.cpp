#include "checkfolder.h"

#include "checkimport.h"

#include <QDir>
#include <QFile>

#include <filesystem>
#include <system_error>

// Qt's own iterators leave out names that cannot be decoded.
using std::filesystem::path;

namespace {

path toPath(const QString &name)
{
#ifdef Q_OS_WIN
    return name.toStdWString();
#else
    return QFile::encodeName(name).toStdString();
#endif
}

QString toName(const path &name)
{
#ifdef Q_OS_WIN
    return QString::fromStdWString(name.native());
#else
    return QFile::decodeName(name.c_str());
#endif
}

/// A folder by the path for the system and by the name for the user.
struct Folder
{
    path systemPath;
    QString name;
};

class Search
{
public:
    QStringList run(const QString &folder);

private:
    void searchFolder(const Folder &folder);
    void take(const Folder &folder, const std::filesystem::directory_entry &entry);

    QVector<Folder> m_waiting;
    QStringList m_files;
};

void Search::take(const Folder &folder, const std::filesystem::directory_entry &entry)
{
    std::error_code error;
    const QString name = QDir(folder.name).filePath(toName(entry.path().filename()));
    if (!entry.is_directory(error)) {
        if (formatOf(name) != Format::Unknown)
            m_files.append(name);
    } else if (!entry.is_symlink(error)) {
        m_waiting.append({entry.path(), name});
    }
}

void Search::searchFolder(const Folder &folder)
{
    std::error_code error;
    std::filesystem::directory_iterator it(folder.systemPath, error);
    for (; !error && it != std::filesystem::directory_iterator(); it.increment(error))
        take(folder, *it);
    if (error)
        m_files.append(folder.name);
}

QStringList Search::run(const QString &folder)
{
    m_waiting.append({toPath(folder), folder});
    while (!m_waiting.isEmpty())
        searchFolder(m_waiting.takeLast());
    m_files.sort();
    return m_files;
}

} // namespace

QStringList filesIn(const QString &folder)
{
    return Search().run(folder);
}
