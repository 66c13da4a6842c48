#pragma once

#include "convertcontent.h"
#include "convertprogress.h"

#include <QString>

#include <gdal_priv.h>

#include <memory>

class OGRLayer;
class OGRSpatialReference;
class QTextCodec;

/// Writes a content as a MIF/MID pair.
class ConvertWriter
{
public:
    /// \a content must outlive the writer. write() adapts its designations and ids to the output. \a encoding is the
    /// name of a codec of Qt.
    ConvertWriter(ConvertContent &content, const QString &encoding);
    ~ConvertWriter();
    ConvertWriter(const ConvertWriter &) = delete;
    ConvertWriter &operator=(const ConvertWriter &) = delete;

    /// Writes \a mifFileName and the MID file beside it. A null \a srs is unknown. Returns false after an error, which
    /// error() describes, or an interruption, for which error() is empty.
    bool write(const QString &mifFileName, const OGRSpatialReference *srs, ConvertProgress &progress);

    const QString &error() const { return m_error; }

private:
    bool fail();
    QChar fittingCharacter(QChar c) const;
    void replaceCharacters(QString &text);
    void prepareText(QString &text);
    void prepareTexts();
    QByteArray encoded(const QString &text) const;
    bool create(const QString &mifFileName, const OGRSpatialReference *srs);
    bool writeObjects(ConvertProgress &progress);
    bool writePoints(ConvertProgress &progress);
    bool writeFeature(std::unique_ptr<OGRGeometry> geometry, const QString &def, const QString &id);
    std::unique_ptr<OGRGeometry> areaGeometry(std::size_t object) const;
    std::unique_ptr<OGRGeometry> lineGeometry(std::size_t object) const;
    template <typename Line>
    std::unique_ptr<Line> contour(std::size_t contour) const;

    ConvertContent &m_content;
    const QTextCodec *m_codec;
    QByteArray m_gdalEncoding; ///< empty: GDAL writes the bytes that it is given
    GDALDatasetUniquePtr m_dataset;
    OGRLayer *m_layer = nullptr; ///< owned by the dataset
    QString m_error;
};
