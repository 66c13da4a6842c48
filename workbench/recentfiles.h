#pragma once

#include "importfile.h"

#include <QVector>

class QSettings;

/// The files that were imported last, newest first.
class RecentFiles
{
public:
    static constexpr int maxCount = 8;

    void add(const ImportFile &file);
    const QVector<ImportFile> &files() const { return m_files; }

    void read(QSettings &settings);
    void write(QSettings &settings) const;

private:
    QVector<ImportFile> m_files;
};
