#pragma once

#include "convertcontent.h"
#include "convertmif.h"
#include "convertoptions.h"

#include <QByteArray>
#include <QString>

#include <gdal_priv.h>

class DxfInspection;

/// The input of a conversion, opened with GDAL.
///
/// Binary DXF and MIF files are corrected in memory first. As long as it exists, GDAL splits arcs for the deviation.
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
    /// The encoding that the texts of the input have; empty if GDAL knows it or they are ASCII.
    const QByteArray &encoding() const { return m_encoding; }

private:
    bool fail(const QString &text);
    bool openFolder();
    bool openDataset(const QByteArray &fileName, const char *const *openOptions);
    bool openBinaryDxf();
    bool openDxf(const QByteArray &fileName);
    bool openMif();
    bool openShapefile();
    void addNotes(const DxfInspection &scan);
    void addRasters(const QByteArray &fileName);

    const ConvertOptions &m_options;
    ConvertContent &m_content;
    QString m_error;
    QByteArray m_encoding;
    QByteArray m_ascii; ///< the ASCII form of a binary DXF file
    MifCopy m_mif;
    bool m_isDxf = false;
    bool m_isMif = false;
    GDALDatasetUniquePtr m_dataset; ///< closed before the memory of its files is released
};
