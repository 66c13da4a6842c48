#pragma once

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

/// A MIF/MID pair that is written to a temporary folder beside its final place and moved there at the end.
///
/// Unless commit() succeeds, nothing remains and existing files are as before.
class ConvertOutput
{
public:
    /// \a fileName is that of the MIF file.
    explicit ConvertOutput(const QString &fileName);

    /// True if one of the files is the source \a fileName itself or belongs to the same pair of MIF and MID.
    bool isSource(const QString &fileName) const;

    /// Returns false if a file exists and \a overwrite is false, or if the folder is missing or cannot be written to.
    bool prepare(bool overwrite);

    /// The MIF file to write; in the temporary folder.
    QString temporaryName() const;

    /// The paths of all temporary files, absolute; the last one is that of their folder.
    QStringList temporaryPaths() const;

    /// Moves both files to their final place. Returns false after an error.
    bool commit();

    const QString &error() const { return m_error; }
    /// True if prepare() failed because a file exists.
    bool exists() const { return m_exists; }

private:
    bool fail(const QString &text);
    bool replace(const QString &temporary, const QString &name, const QString &saved);

    QString m_mif;
    QString m_mid;
    QString m_error;
    bool m_exists = false;
    std::unique_ptr<QTemporaryDir> m_folder;
};
