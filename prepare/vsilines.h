#pragma once

#include <QByteArray>

#include <cpl_vsi.h>

/// Reads the lines of a file through GDAL's file layer, which also reads files in memory and in archives.
class VsiLines
{
public:
    VsiLines() = default;
    ~VsiLines();
    VsiLines(const VsiLines &) = delete;
    VsiLines &operator=(const VsiLines &) = delete;

    /// Must have succeeded before the first read().
    bool open(const QByteArray &fileName);

    /// Reads the next line without its line end, which is of one or two characters; a longer one in pieces of 64 KB.
    /// Returns false at the end.
    bool read(QByteArray &line);

    /// The position in the file, in bytes, at which the last line begins.
    qint64 lineBegin() const { return m_lineBegin; }

private:
    bool fill();
    int findEnd() const;

    VSILFILE *m_file = nullptr;
    QByteArray m_buffer;
    int m_next = 0;       ///< where the next line begins in m_buffer
    qint64 m_removed = 0; ///< bytes of the file before m_buffer
    qint64 m_lineBegin = 0;
};
