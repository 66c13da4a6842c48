#include "recentfiles.h"

#include <QSettings>

#include <algorithm>

namespace {

const QString strRecentFiles = QStringLiteral("recentFiles");
const QString strFile = QStringLiteral("file");
const QString strOperation = QStringLiteral("operation");

} // namespace

void RecentFiles::add(const ImportFile &file)
{
    m_files.removeAll(file);
    m_files.prepend(file);
    m_files.resize(std::min(m_files.size(), maxCount));
}

void RecentFiles::read(QSettings &settings)
{
    m_files.clear();
    const int count = std::min(settings.beginReadArray(strRecentFiles), maxCount);
    for (int i = 0; i < count; ++i) {
        settings.setArrayIndex(i);
        m_files.append({settings.value(strFile).toString(), settings.value(strOperation).toString()});
    }
    settings.endArray();
}

void RecentFiles::write(QSettings &settings) const
{
    settings.remove(strRecentFiles);
    settings.beginWriteArray(strRecentFiles, m_files.size());
    for (int i = 0; i < m_files.size(); ++i) {
        settings.setArrayIndex(i);
        settings.setValue(strFile, m_files.at(i).fileName);
        settings.setValue(strOperation, m_files.at(i).operation);
    }
    settings.endArray();
}
