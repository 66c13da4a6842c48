#include "checkgdal.h"

#include "checkfillings.h"
#include "drawingview.h"
#include "gdalmessage.h"
#include "mifview.h"

#include <QFile>

#include <ogrsf_frmts.h>

namespace {

constexpr qint64 maxDrawnVertices = 200000;

/// Kinds of geometry in one feature, as bits.
enum Kinds : unsigned { None = 0, Areas = 1U, Lines = 2U, Points = 4U };

/// Collects the geometry of features.
class ContentReader
{
public:
    ContentReader(FoundContent &content, bool isDrawing, bool forPicture)
        : m_content(content),
          m_isDrawing(isDrawing),
          m_forPicture(forPicture)
    {
    }

    void read(OGRFeature &feature);
    /// Takes the areas that fill outlines off.
    void removeFillings();
    /// True if all coordinates can be longitude and latitude.
    bool fitsDegrees() const;

private:
    unsigned kindsOf(const OGRGeometry &geometry);
    unsigned kindsOfParts(const OGRGeometryCollection &collection);
    void draw(const OGRGeometry &geometry);
    bool takeRoom(qint64 count);

    FoundContent &m_content;
    CheckFillings m_fillings;
    bool m_isDrawing;
    bool m_forPicture;
    qint64 m_drawnCount = 0;
    OGREnvelope m_box;
};

bool ContentReader::takeRoom(qint64 count)
{
    m_drawnCount += count;
    const bool ok = m_forPicture && m_drawnCount <= maxDrawnVertices;
    m_content.isDrawnWhole = m_content.isDrawnWhole && (ok || !m_forPicture);
    return ok;
}

// Curves and surfaces of all kinds are drawn as lines.
void ContentReader::draw(const OGRGeometry &geometry)
{
    if (!m_forPicture)
        return;
    const OGRGeometryUniquePtr linear(geometry.getLinearGeometry());
    if (!linear)
        return;
    const auto drawLine = [this](const OGRSimpleCurve &line) {
        if (!takeRoom(line.getNumPoints()))
            return;
        QVector<QPointF> outline;
        outline.reserve(line.getNumPoints());
        for (int i = 0; i < line.getNumPoints(); ++i)
            outline.append({line.getX(i), line.getY(i)});
        m_content.outlines.append(outline);
    };
    if (OGR_GT_IsSubClassOf(wkbFlatten(linear->getGeometryType()), wkbPolygon) != 0) {
        for (const OGRLinearRing *const ring : *linear->toPolygon())
            drawLine(*ring);
    } else if (wkbFlatten(linear->getGeometryType()) == wkbLineString) {
        drawLine(*linear->toLineString());
    }
}

unsigned ContentReader::kindsOfParts(const OGRGeometryCollection &collection)
{
    unsigned kinds = None;
    for (const OGRGeometry *const part : collection)
        kinds |= kindsOf(*part);
    return kinds;
}

unsigned ContentReader::kindsOf(const OGRGeometry &geometry)
{
    if (geometry.IsEmpty() != 0)
        return None;
    const OGRwkbGeometryType type = wkbFlatten(geometry.getGeometryType());
    if (type == wkbPoint)
        return Points;
    if (OGR_GT_IsSubClassOf(type, wkbGeometryCollection) != 0)
        return kindsOfParts(*geometry.toGeometryCollection());
    if (OGR_GT_IsSubClassOf(type, wkbPolyhedralSurface) != 0) {
        for (const OGRPolygon *const face : *geometry.toPolyhedralSurface())
            draw(*face);
        return Areas;
    }
    draw(geometry);
    return OGR_GT_IsSurface(type) != 0 ? Areas : Lines;
}

bool ContentReader::fitsDegrees() const
{
    return m_box.IsInit() != 0 && m_box.MinX >= -180 && m_box.MaxX <= 180 && m_box.MinY >= -90 && m_box.MaxY <= 90;
}

// Both drivers describe a text as a point with a label.
void ContentReader::read(OGRFeature &feature)
{
    const OGRGeometry *const geometry = feature.GetGeometryRef();
    if (geometry == nullptr)
        return;
    const unsigned kinds = kindsOf(*geometry);
    if (kinds != None) {
        OGREnvelope box;
        geometry->getEnvelope(&box);
        m_box.Merge(box);
    }
    m_content.areas += (kinds & Areas) != 0 ? 1 : 0;
    m_content.lines += (kinds & Lines) != 0 ? 1 : 0;
    if (m_isDrawing && (kinds & (Areas | Lines)) != 0)
        m_fillings.add(feature);
    if (kinds != Points)
        return;
    const char *const style = feature.GetStyleString();
    if (style != nullptr && QByteArray::fromRawData(style, static_cast<int>(qstrlen(style))).startsWith("LABEL")) {
        ++m_content.texts;
        return;
    }
    ++m_content.points;
    if (wkbFlatten(geometry->getGeometryType()) == wkbPoint && takeRoom(1))
        m_content.places.append({geometry->toPoint()->getX(), geometry->toPoint()->getY()});
}

void ContentReader::removeFillings()
{
    const QVector<QString> handles = m_fillings.handles();
    m_content.areas -= handles.size();
    for (const QString &handle : handles)
        m_content.fillings.insert(handle);
    m_content.fillings.remove(QString());
}

} // namespace

FoundContent findContent(const QString &fileName, bool forPicture)
{
    GDALAllRegister();
    GdalMessages messages;
    FoundContent content;
    const bool isDrawing = formatOf(fileName) == Format::Dxf;
    const char *const drivers[] = {isDrawing ? "DXF" : "MapInfo File", nullptr};
    QByteArray name = QFile::encodeName(fileName);
    DrawingView view;
    MifCopy copy;
    MifView map;
    if (isDrawing) {
        name = view.open(name) && view.excessLine() == 0 ? view.fileName() : QByteArray();
        content.excessLine = view.excessLine();
    } else if (copy.read(fileName, "UTF-8")) {
        map.show(copy);
        name = map.fileName();
    }
    const GDALDatasetUniquePtr dataset(GDALDataset::Open(name.constData(), GDAL_OF_VECTOR | GDAL_OF_READONLY, drivers));
    content.isOpened = dataset != nullptr;
    content.symbols = view.symbols();
    ContentReader reader(content, isDrawing, forPicture);
    content.isReadToEnd = content.isOpened && (isDrawing || copy.counts().isUsable());
    qint64 count = 0;
    for (int i = 0; dataset && i < dataset->GetLayerCount(); ++i) {
        OGRLayer &layer = *dataset->GetLayer(i);
        // Errors of a coordinate system do not matter. GDAL reads the blocks of a drawing when it opens it.
        if (layer.GetSpatialRef() != nullptr)
            messages.takeError();
        for (OGRFeatureUniquePtr feature{layer.GetNextFeature()}; feature; feature.reset(layer.GetNextFeature())) {
            reader.read(*feature);
            ++count;
        }
    }
    if (content.isOpened)
        content.readError = messages.takeError();
    if (!content.readError.isEmpty() || (!isDrawing && count != copy.counts().objects))
        content.isReadToEnd = false;
    content.fitsDegrees = reader.fitsDegrees();
    reader.removeFillings();
    return content;
}
