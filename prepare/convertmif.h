#pragma once

#include "convertmifdata.h"
#include "encodingguess.h"

#include <QByteArray>
#include <QList>
#include <QString>

/// The file beside \a fileName with the \a suffix in any case; empty if there is none.
QString fileBeside(const QString &fileName, const QString &suffix);

/// A MIF file and its MID file in memory, corrected so that GDAL reads all objects and texts.
///
/// Both become UTF-8. GDAL stops where the MID file has an empty line or too few records, so empty records are added.
class MifCopy
{
public:
    /// Reads \a fileName and the MID file beside it. An empty \a encoding is guessed. Returns false after an error,
    /// which error() describes.
    bool read(const QString &fileName, const QByteArray &encoding);
    /// Splits curves so that chords stay within \a deviation, or \a degrees if the coordinates may be in degrees.
    void splitCurves(double deviation, double degrees);

    const QByteArray &mif() const { return m_mif; }
    const QByteArray &mid() const { return m_mid; } ///< empty if there is none
    const QString &error() const { return m_error; }

    const SourceEncoding &encoding() const { return m_encoding; }
    /// What was found in the data section, whose text is in mif().
    const MifData::Counts &counts() const { return m_counts; }
    /// Number of objects whose record was missing or empty.
    int addedRecords() const { return m_addedRecords; }
    /// Number of records that no object has.
    int surplusRecords() const { return m_surplusRecords; }
    /// Number of curves that do not keep the deviation.
    int coarseCount() const { return m_coarseCount; }
    /// True if the header scales or moves the coordinates, as GDAL does.
    bool isTransformed() const { return m_isTransformed; }

private:
    bool readFile(const QString &fileName, QByteArray &bytes);
    void readHeader();
    void readHeaderLine(const QByteArray &line);
    void readTransform(const QByteArray &line);
    void decode(const QByteArray &encoding);
    void correct();
    QList<QByteArray> records() const;
    QByteArray completed(const QByteArray &record) const;
    void correctRecords();

    QByteArray m_mif;
    QByteArray m_mid;
    bool m_hasMid = false;
    QString m_error;
    QByteArray m_declared; ///< encoding that the header names
    SourceEncoding m_encoding;
    char m_delimiter = '\t';
    int m_columnCount = 0;
    bool m_hasSystem = false; ///< the header names a coordinate system that is not in degrees
    bool m_isTransformed = false;
    double m_scale = 1;  ///< from the numbers of the file to its coordinates
    int m_dataBegin = 0; ///< of the corrected file
    MifData::Counts m_counts;
    int m_addedRecords = 0;
    int m_surplusRecords = 0;
    int m_coarseCount = 0;
};
