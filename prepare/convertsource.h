#pragma once

#include "convertcontent.h"
#include "convertoptions.h"
#include "drawingcopy.h"
#include "drawingview.h"
#include "mifview.h"

#include <QByteArray>
#include <QString>

#include <gdal_priv.h>

#include <memory>
#include <vector>

class DxfInspection;

/// The input of a conversion, opened with GDAL.
///
/// Binary DXF and MIF files are corrected in memory first. While it exists, GDAL is configured to split arcs within the
/// deviation.
class ConvertSource
{
public:
    /// Both references must outlive the source; notes on the input are added to \a content.
    ConvertSource(const ConvertOptions &options, ConvertContent &content);
    ~ConvertSource();
    ConvertSource(const ConvertSource &) = delete;
    ConvertSource &operator=(const ConvertSource &) = delete;

    /// Returns false after an error, which error() describes.
    bool open();

    GDALDataset &dataset() { return *m_dataset; }
    const QString &error() const { return m_error; }

    bool isDxf() const { return m_isDxf; }
    bool isMif() const { return m_isMif; }
    const SourceEncoding &encoding() const { return m_encoding; }
    /// What a MIF file holds.
    const MifData::Counts &mifCounts() const { return m_mif.counts(); }
    /// Returns \a message of GDAL with the place in the input instead of that in its copy in memory.
    QString withPlaceInInput(const QString &message) const;

private:
    bool fail(const QString &text);
    bool openFolder();
    QString openError(const QString &reason) const;
    QByteArray withHeader(const QByteArray &fileName);
    bool openDataset(const QByteArray &fileName, const char *const *openOptions);
    bool openBinaryDxf();
    double deviation() const;
    bool openDxf(const QByteArray &fileName);
    bool openMif(const QString &fileName);
    bool openShapefile();
    bool correctDxf(DxfInspection &scan, QByteArray &fileName);
    void addNotes(const DxfInspection &scan);
    void add(ContentCounts &counts, const char *kind, const MifTally &tally);
    void addNotes(const MifCopy &mif);
    void addRasters(const QByteArray &fileName);

    const ConvertOptions &m_options;
    ConvertContent &m_content;
    QString m_error;
    SourceEncoding m_encoding;
    int m_addedLines = 0;                       ///< in front of the drawing
    std::vector<ReplacedLines> m_replacedLines; ///< of the corrected drawing
    QByteArray m_ascii;                         ///< the ASCII form of a binary DXF file
    QByteArray m_parts;                         ///< the description of a drawing with a header in front
    MifCopy m_mif;
    MifView m_mifView;
    std::unique_ptr<DrawingView> m_drawing;
    bool m_isDxf = false;
    bool m_isMif = false;
    GDALDatasetUniquePtr m_dataset; ///< closed before the memory of its files is released
};
