#pragma once

#include "encodingguess.h"

#include <QByteArray>
#include <QString>

/// A MIF file and its MID file in memory, corrected so that GDAL reads all objects and texts.
///
/// Both become UTF-8. GDAL stops where the MID file has an empty line or too few records, so empty records are added.
class MifCopy
{
public:
    /// Reads \a fileName and the MID file beside it, whatever the case of its suffix. An empty \a encoding is guessed.
    /// Chords of curves stay within \a deviation. Returns false after an error, which error() describes.
    bool read(const QString &fileName, const QByteArray &encoding, double deviation);

    const QByteArray &mif() const { return m_mif; }
    const QByteArray &mid() const { return m_mid; } ///< empty if there is none
    const QString &error() const { return m_error; }

    const SourceEncoding &encoding() const { return m_encoding; }
    /// Number of objects whose record was missing or empty.
    int addedRecords() const { return m_addedRecords; }
    /// Number of curves that do not keep the deviation.
    int coarseCount() const { return m_coarseCount; }

private:
    bool readFile(const QString &fileName, QByteArray &bytes);
    void readHeader();
    void countObjects(int dataBegin);
    void decode(const QByteArray &encoding);
    void correctHeader();
    void correctRecords();

    QByteArray m_mif;
    QByteArray m_mid;
    bool m_hasMid = false;
    QString m_error;
    QByteArray m_declared; ///< encoding that the header names
    SourceEncoding m_encoding;
    char m_delimiter = '\t';
    int m_columnCount = 0;
    int m_dataBegin = 0; ///< of the corrected file
    int m_objectCount = 0;
    bool m_hasCurves = false;
    int m_addedRecords = 0;
    int m_coarseCount = 0;
};
