// Functions are in data-flow order: text and geometry of a feature, feature, layer, source.

#include "convertreader.h"

#include "convertfillings.h"
#include "degreesides.h"

#include <cpl_error.h>
#include <ogrsf_frmts.h>

#include <QRegularExpression>

#include <cmath>
#include <cstring>
#include <typeinfo>

namespace {

QString fieldText(const OGRFeature &feature, int field)
{
    return field < 0 || !feature.IsFieldSetAndNotNull(field) ? QString()
                                                             : QString::fromUtf8(feature.GetFieldAsString(field));
}

// Drawings in an encoding without Cyrillic letters have them as "\U+0416". GDAL decodes that in paragraphs only.
QString decodedUnicode(const QString &text)
{
    static const QRegularExpression code(QStringLiteral("\\\\U\\+([0-9A-Fa-f]{4})"));
    QString result;
    int end = 0;
    for (auto it = code.globalMatch(text); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        result += text.midRef(end, match.capturedStart() - end);
        result += QChar(match.captured(1).toUShort(nullptr, 16));
        end = match.capturedEnd();
    }
    return result + text.midRef(end);
}

// The text of a label and its height; the text is null if the style is that of something else.
ContentText labelOf(const OGRFeature &feature)
{
    const char *const style = feature.GetStyleString();
    if (style == nullptr || !EQUALN(style, "LABEL(", 6))
        return {};
    OGRStyleMgr manager;
    manager.InitStyleString(style);
    const std::unique_ptr<OGRStyleTool> tool(manager.GetPart(0));
    auto *const label = dynamic_cast<OGRStyleLabel *>(tool.get());
    if (label == nullptr)
        return {};
    ContentText result;
    GBool isNull = TRUE;
    const char *const text = label->TextString(isNull);
    if (isNull == 0)
        result.text = QString::fromUtf8(text);
    label->SetUnit(OGRSTUGround);
    const double height = label->Size(isNull);
    if (isNull == 0)
        result.height = height;
    return result;
}

// The driver of TAB files splits curves into steps of a fixed angle. Only the class of the feature shows it.
bool isSplitCurve(const OGRFeature &feature, const OGRGeometry &geometry)
{
    const char *const name = typeid(feature).name();
    if (std::strstr(name, "TABArc") != nullptr || std::strstr(name, "TABEllipse") != nullptr)
        return true;
    if (std::strstr(name, "TABRectangle") == nullptr || wkbFlatten(geometry.getGeometryType()) != wkbPolygon)
        return false;
    constexpr int corners = 5; // more than those of a closed rectangle are of rounded corners
    const OGRLinearRing *const ring = geometry.toPolygon()->getExteriorRing();
    return ring != nullptr && ring->getNumPoints() > corners;
}

bool hasHeight(const OGRGeometry &geometry)
{
    if (geometry.Is3D() == 0)
        return false;
    OGREnvelope3D box;
    geometry.getEnvelope(&box);
    return box.MinZ < 0 || box.MaxZ > 0;
}

// True if the coordinates of all features can be longitude and latitude.
bool fitsDegrees(OGRLayer &layer)
{
    OGREnvelope box;
    layer.ResetReading();
    while (const OGRFeatureUniquePtr feature{layer.GetNextFeature()}) {
        const OGRGeometry *const geometry = feature->GetGeometryRef();
        if (geometry == nullptr || geometry->IsEmpty() != 0)
            continue;
        OGREnvelope own;
        geometry->getEnvelope(&own);
        box.Merge(own);
    }
    return box.IsInit() != 0 && box.MinX >= -180 && box.MaxX <= 180 && box.MinY >= -90 && box.MaxY <= 90;
}

bool looksGeographic(const ConvertContent &content)
{
    DegreeSides sides;
    for (std::size_t contour = 0; contour < content.contourEnds.size(); ++contour) {
        const std::size_t begin = content.vertexBegin(contour);
        for (std::size_t i = begin; i < content.contourEnds[contour]; ++i) {
            const ContentVertex &vertex = content.vertices[i];
            sides.addVertex(vertex.x, vertex.y);
            if (i > begin)
                sides.addSide(std::hypot(vertex.x - content.vertices[i - 1].x, vertex.y - content.vertices[i - 1].y));
        }
    }
    return sides.looksGeographic();
}

} // namespace

ConvertReader::ConvertReader(const ConvertOptions &options, ConvertSource &source, ConvertContent &content,
                             GdalMessages &messages, ConvertProgress &progress)
    : m_options(options),
      m_source(source),
      m_content(content),
      m_messages(messages),
      m_progress(progress),
      m_shapes(content, options.deviation, options.swapXY)
{
}

ReadFailure ConvertReader::fail(ReadFailure failure, const QString &text)
{
    m_error = text;
    return failure;
}

bool ConvertReader::readText(const OGRFeature &feature, const OGRGeometry &geometry)
{
    if (wkbFlatten(geometry.getGeometryType()) != wkbPoint || geometry.IsEmpty() != 0)
        return false;
    ContentText text = labelOf(feature);
    if (text.text.isNull())
        return false;
    if (m_fields.text >= 0)
        text.text = fieldText(feature, m_fields.text);
    text.text = decodedUnicode(text.text);
    const OGRPoint &point = *geometry.toPoint();
    text.at = m_shapes.vertex(point.getX(), point.getY());
    m_content.texts.push_back(text);
    return true;
}

bool ConvertReader::transform(OGRGeometry &geometry)
{
    if (m_transformation == nullptr || geometry.transform(m_transformation.get()) == OGRERR_NONE)
        return true;
    ++m_content.leftOut[QStringLiteral("not-transformed")];
    return false;
}

void ConvertReader::readFeature(OGRFeature &feature)
{
    const std::unique_ptr<OGRGeometry> geometry(feature.StealGeometry());
    if (geometry == nullptr) {
        if (m_source.isMif() && m_source.mifCounts().placeholders.contains(feature.GetFID()))
            return;
        ++m_content.leftOut[QStringLiteral("no-geometry")];
        return;
    }
    if (hasHeight(*geometry))
        ++m_content.notes[QStringLiteral("height")];
    if (isSplitCurve(feature, *geometry))
        ++m_content.notes[QStringLiteral("uncontrolled-curve")];
    if (!transform(*geometry) || readText(feature, *geometry))
        return;
    const QString handle = fieldText(feature, m_fields.handle);
    m_shapes.add(*geometry, {handle.isEmpty() ? QString::number(feature.GetFID()) : handle,
                             fieldText(feature, m_fields.designation), fieldText(feature, m_fields.number)});
}

bool ConvertReader::isWanted(const OGRFeature &feature)
{
    if (m_fields.layer < 0 || m_options.layers.isEmpty())
        return true;
    const QString layer = fieldText(feature, m_fields.layer);
    if (!m_options.layers.contains(layer))
        return false;
    if (!m_seenLayers.contains(layer))
        m_seenLayers.append(layer);
    return true;
}

// An object of a MIF file that GDAL passes over would shift the records of all others.
ReadFailure ConvertReader::checkCount(qint64 featureCount)
{
    if (!m_source.isMif() || !m_options.where.isEmpty())
        return ReadFailure::None;
    const MifData::Counts &counts = m_source.mifCounts();
    if (featureCount != counts.objects)
        return fail(ReadFailure::Input, QStringLiteral("GDAL reads %1 of its %2 objects.")
                                            .arg(QString::number(featureCount), QString::number(counts.objects)));
    return ReadFailure::None;
}

// After an error GDAL may pass over entities without another one. It reads the blocks of a drawing when it opens it.
ReadFailure ConvertReader::readFeatures(OGRLayer &layer)
{
    m_progress.begin(QStringLiteral("Reading"), m_source.isDxf() ? 0 : layer.GetFeatureCount(FALSE));
    layer.ResetReading();
    layer.GetSpatialRef(); // whose errors do not matter
    if (!m_source.isDxf())
        m_messages.takeError();
    for (qint64 count = 0;; ++count) {
        const OGRFeatureUniquePtr feature(layer.GetNextFeature());
        const QString error = m_messages.takeError();
        if (!error.isNull())
            return fail(ReadFailure::Input, error);
        if (feature == nullptr)
            return checkCount(count);
        if (isWanted(*feature))
            readFeature(*feature);
        m_messages.takeError(); // of a transformation that fails
        if (!m_progress.advance())
            return ReadFailure::Interrupted;
    }
}

// Returns the field that the user names; without a name the first one of a MIF file, as in the import; otherwise -1.
int ConvertReader::nameField(const OGRFeatureDefn &fields, const QString &name)
{
    if (name.isEmpty())
        return m_source.isMif() && fields.GetFieldCount() > 0 ? 0 : -1;
    const int field = fields.GetFieldIndex(name.toUtf8().constData());
    if (field >= 0)
        m_seenFields.append(name);
    return field;
}

// Null if it is unknown: the coordinates of a drawing, and of a MIF file outside the earth, may be anything.
const OGRSpatialReference *ConvertReader::systemOf(OGRLayer &layer)
{
    const OGRSpatialReference *const own = m_sourceSrs != nullptr ? m_sourceSrs.get() : layer.GetSpatialRef();
    if (own != nullptr && own->IsLocal() == 0)
        return own;
    if (m_options.crs.isEmpty() || !fitsDegrees(layer))
        return nullptr;
    m_content.notes[QStringLiteral("assumed-degrees")] = 1;
    return OGRSpatialReference::GetWGS84SRS();
}

ReadFailure ConvertReader::prepareTransformation(OGRLayer &layer)
{
    const OGRSpatialReference *const own = systemOf(layer);
    m_transformation.reset();
    if (m_options.crs.isEmpty() && m_srs == nullptr && own != nullptr && !m_options.swapXY)
        m_srs.reset(own->Clone());
    const OGRSpatialReference *const result = m_options.crs.isEmpty() ? own : m_srs.get();
    if (result != nullptr && result->IsGeographic() != 0)
        m_content.notes[QStringLiteral("degrees")] = 1;
    m_isSystemUnknown = m_isSystemUnknown || result == nullptr;
    if (m_options.crs.isEmpty())
        return ReadFailure::None;
    if (own == nullptr)
        return fail(ReadFailure::Usage,
                    QStringLiteral("--crs: the layer \"%1\" names no coordinate system. Name it with --source-crs.")
                        .arg(QString::fromUtf8(layer.GetName())));
    m_transformation.reset(OGRCreateCoordinateTransformation(own, m_srs.get()));
    return m_transformation != nullptr
               ? ReadFailure::None
               : fail(ReadFailure::Usage, QStringLiteral("--crs: there is no transformation from \"%1\" to \"%2\".")
                                              .arg(QString::fromUtf8(own->GetName()), m_options.crs));
}

ReadFailure ConvertReader::prepareLayer(OGRLayer &layer)
{
    OGRFeatureDefn &fields = *layer.GetLayerDefn();
    m_fields = Fields();
    m_fields.designation = nameField(fields, m_options.designation);
    m_fields.number = nameField(fields, m_options.number);
    if (m_source.isDxf()) {
        m_fields.layer = fields.GetFieldIndex("Layer");
        m_fields.handle = fields.GetFieldIndex("EntityHandle");
        m_fields.text = fields.GetFieldIndex("Text");
    }
    CPLErrorReset();
    if (!m_options.where.isEmpty() && layer.SetAttributeFilter(m_options.where.toUtf8().constData()) != OGRERR_NONE)
        return fail(ReadFailure::Usage, QStringLiteral("--where: %1").arg(lastGdalMessage()));
    return prepareTransformation(layer);
}

ReadFailure ConvertReader::readLayer(OGRLayer &layer)
{
    const ReadFailure failure = prepareLayer(layer);
    return failure != ReadFailure::None ? failure : readFeatures(layer);
}

ReadFailure ConvertReader::readSystem(const QString &option, const QString &name,
                                      std::unique_ptr<OGRSpatialReference> &system)
{
    if (name.isEmpty())
        return ReadFailure::None;
    system = std::make_unique<OGRSpatialReference>();
    system->SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    CPLErrorReset();
    if (system->SetFromUserInput(name.toUtf8().constData()) == OGRERR_NONE)
        return ReadFailure::None;
    static const QRegularExpression number(QStringLiteral("^\\d+$"));
    const QString hint = number.match(name).hasMatch() ? QStringLiteral(" Write EPSG:%1.").arg(name) : QString();
    return fail(ReadFailure::Usage, QStringLiteral("%1 does not know \"%2\".").arg(option, name) + hint);
}

ReadFailure ConvertReader::readSystems()
{
    const ReadFailure failure = readSystem(QStringLiteral("--crs"), m_options.crs, m_srs);
    return failure != ReadFailure::None ? failure
                                        : readSystem(QStringLiteral("--source-crs"), m_options.sourceCrs, m_sourceSrs);
}

ReadFailure ConvertReader::checkRequestedNames()
{
    for (const QString &name : m_options.layers) {
        if (!m_seenLayers.contains(name))
            return fail(ReadFailure::Usage, QStringLiteral("--layer: the input has no layer \"%1\".").arg(name));
    }
    for (const QString &name : {m_options.designation, m_options.number}) {
        if (!name.isEmpty() && !m_seenFields.contains(name))
            return fail(ReadFailure::Usage, QStringLiteral("The input has no field \"%1\".").arg(name));
    }
    return ReadFailure::None;
}

ReadFailure ConvertReader::read()
{
    ReadFailure failure = readSystems();
    for (int i = 0; failure == ReadFailure::None && i < m_source.dataset().GetLayerCount(); ++i) {
        OGRLayer &layer = *m_source.dataset().GetLayer(i);
        const QString name = QString::fromUtf8(layer.GetName());
        if (!m_source.isDxf() && !m_options.layers.isEmpty() && !m_options.layers.contains(name))
            continue;
        m_seenLayers.append(name);
        failure = readLayer(layer);
    }
    if (m_options.swapXY)
        m_srs.reset();
    // Only drawings have both the outline of an area and its hatch.
    if (m_source.isDxf())
        removeFillings(m_content);
    if (m_isSystemUnknown && looksGeographic(m_content))
        m_content.notes[QStringLiteral("degrees")] = 1;
    return failure != ReadFailure::None ? failure : checkRequestedNames();
}
