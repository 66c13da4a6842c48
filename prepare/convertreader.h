#pragma once

#include "convertcontent.h"
#include "convertoptions.h"
#include "convertprogress.h"
#include "convertshapes.h"
#include "convertsource.h"
#include "gdalmessage.h"

#include <ogr_spatialref.h>

#include <memory>
#include <utility>

/// Why a source was not read.
enum class ReadFailure { None, Usage, Input, Interrupted };

/// Reads the features of a source into a content.
class ConvertReader
{
public:
    /// All references must outlive the reader.
    ConvertReader(const ConvertOptions &options, ConvertSource &source, ConvertContent &content, GdalMessages &messages,
                  ConvertProgress &progress);

    /// Returns why not all was read; error() then describes it.
    ReadFailure read();

    const QString &error() const { return m_error; }

    /// Returns the coordinate system of the output; null if it is unknown or the coordinates are exchanged.
    std::unique_ptr<OGRSpatialReference> takeSpatialReference() { return std::move(m_srs); }

private:
    struct Fields
    {
        int designation = -1;
        int number = -1;
        int layer = -1;  ///< of a drawing: the entity's layer
        int handle = -1; ///< of a drawing: the entity's id
        int text = -1;   ///< of a drawing
    };

    ReadFailure fail(ReadFailure failure, const QString &text);
    ReadFailure readSystem(const QString &option, const QString &name, std::unique_ptr<OGRSpatialReference> &system);
    ReadFailure readSystems();
    ReadFailure checkRequestedNames();
    ReadFailure readLayer(OGRLayer &layer);
    ReadFailure prepareLayer(OGRLayer &layer);
    const OGRSpatialReference *systemOf(OGRLayer &layer);
    ReadFailure prepareTransformation(OGRLayer &layer);
    ReadFailure checkCount(qint64 featureCount);
    ReadFailure readFeatures(OGRLayer &layer);
    bool isWanted(const OGRFeature &feature);
    void readFeature(OGRFeature &feature);
    bool readText(const OGRFeature &feature, const OGRGeometry &geometry);
    bool transform(OGRGeometry &geometry);
    int nameField(const OGRFeatureDefn &fields, const QString &name);

    const ConvertOptions &m_options;
    ConvertSource &m_source;
    ConvertContent &m_content;
    GdalMessages &m_messages;
    ConvertProgress &m_progress;
    ShapeCollector m_shapes;
    Fields m_fields;
    std::unique_ptr<OGRSpatialReference> m_sourceSrs; ///< null: the one that the layer names
    std::unique_ptr<OGRSpatialReference> m_srs;
    std::unique_ptr<OGRCoordinateTransformation> m_transformation;
    bool m_isSystemUnknown = false; ///< of the output, in part at least
    QStringList m_seenLayers;       ///< the requested ones, and all others that were read
    QStringList m_seenFields;
    QString m_error;
};
