#include "convertwriter.h"

#include <QFile>
#include <QHash>
#include <QTextCodec>

#include <cpl_error.h>
#include <ogrsf_frmts.h>

#include <memory>

namespace {

constexpr int maxFieldBytes = 254;

// The encodings that a MIF header can name, as GDAL calls them.
QByteArray gdalName(const QByteArray &codec)
{
    static const QHash<QByteArray, QByteArray> names{
        {"windows-1250", "CP1250"},   {"windows-1251", "CP1251"},   {"windows-1252", "CP1252"},
        {"windows-1253", "CP1253"},   {"windows-1254", "CP1254"},   {"windows-1257", "CP1257"},
        {"ISO-8859-1", "ISO-8859-1"}, {"ISO-8859-2", "ISO-8859-2"}, {"ISO-8859-5", "ISO-8859-5"}};
    return names.value(codec);
}

} // namespace

ConvertWriter::ConvertWriter(ConvertContent &content, const QString &encoding)
    : m_content(content),
      m_codec(QTextCodec::codecForName(encoding.toLatin1())),
      m_gdalEncoding(gdalName(m_codec->name()))
{
}

ConvertWriter::~ConvertWriter() = default;

bool ConvertWriter::fail()
{
    m_error = QString::fromUtf8(CPLGetLastErrorMsg());
    return false;
}

QByteArray ConvertWriter::encoded(const QString &text) const
{
    QTextCodec::ConverterState noHeader(QTextCodec::IgnoreHeader);
    return m_codec->fromUnicode(text.constData(), text.size(), &noHeader);
}

// The import ends a field at a quote and a record at a line end.
QChar ConvertWriter::fittingCharacter(QChar c) const
{
    if (c.category() == QChar::Other_Control || c == QChar::LineSeparator || c == QChar::ParagraphSeparator)
        return QLatin1Char(' ');
    if (c == QLatin1Char('"'))
        return QLatin1Char('\'');
    return c.isSurrogate() || m_codec->canEncode(c) ? c : QLatin1Char('?');
}

void ConvertWriter::replaceCharacters(QString &text)
{
    // Whether a surrogate can be encoded shows only together with its other half.
    const bool hasSurrogates = m_codec->canEncode(text);
    qint64 replaced = 0;
    for (QChar &c : text) {
        const QChar fitting = c.isSurrogate() && !hasSurrogates ? QLatin1Char('?') : fittingCharacter(c);
        replaced += fitting != c && fitting != QLatin1Char(' ') && !c.isLowSurrogate() ? 1 : 0;
        c = fitting;
    }
    if (replaced > 0)
        m_content.notes[QStringLiteral("replaced-character")] += replaced;
}

// The import trims fields.
void ConvertWriter::prepareText(QString &text)
{
    replaceCharacters(text);
    text = text.trimmed();
    if (encoded(text).size() <= maxFieldBytes)
        return;
    while (encoded(text).size() > maxFieldBytes)
        text.chop(1);
    text = text.trimmed();
    ++m_content.notes[QStringLiteral("long-text")];
}

void ConvertWriter::prepareTexts()
{
    for (ContentObject &object : m_content.objects) {
        prepareText(object.def);
        prepareText(object.id);
    }
    for (ContentPoint &point : m_content.points) {
        prepareText(point.def);
        prepareText(point.id);
    }
}

bool ConvertWriter::create(const QString &mifFileName, const OGRSpatialReference *srs)
{
    CPLErrorReset();
    GDALDriver *const driver = GetGDALDriverManager()->GetDriverByName("MapInfo File");
    const char *const mif[] = {"FORMAT=MIF", nullptr};
    if (driver == nullptr)
        return fail();
    m_dataset.reset(driver->Create(mifFileName.toUtf8().constData(), 0, 0, 0, GDT_Unknown, const_cast<char **>(mif)));
    if (m_dataset == nullptr)
        return fail();
    const QByteArray option = "ENCODING=" + m_gdalEncoding;
    const char *const encoding[] = {option.constData(), nullptr};
    m_layer = m_dataset->CreateLayer("objects", const_cast<OGRSpatialReference *>(srs), wkbUnknown,
                                     const_cast<char **>(m_gdalEncoding.isEmpty() ? nullptr : encoding));
    if (m_layer == nullptr)
        return fail();
    for (const char *const name : {"designation", "source_id"}) {
        OGRFieldDefn field(name, OFTString);
        field.SetWidth(maxFieldBytes);
        if (m_layer->CreateField(&field) != OGRERR_NONE)
            return fail();
    }
    return true;
}

template <typename Line>
std::unique_ptr<Line> ConvertWriter::contour(std::size_t contour) const
{
    const std::size_t first = m_content.vertexBegin(contour);
    auto line = std::make_unique<Line>();
    line->setNumPoints(static_cast<int>(m_content.vertexCount(contour)), FALSE);
    for (std::size_t i = first; i < m_content.contourEnds[contour]; ++i)
        line->setPoint(static_cast<int>(i - first), m_content.vertices[i].x, m_content.vertices[i].y);
    return line;
}

// A MIF region does not distinguish outer rings from holes.
std::unique_ptr<OGRGeometry> ConvertWriter::areaGeometry(std::size_t object) const
{
    auto polygon = std::make_unique<OGRPolygon>();
    for (std::size_t c = m_content.contourBegin(object); c < m_content.objects[object].contourEnd; ++c)
        polygon->addRingDirectly(contour<OGRLinearRing>(c).release());
    return polygon;
}

std::unique_ptr<OGRGeometry> ConvertWriter::lineGeometry(std::size_t object) const
{
    const std::size_t first = m_content.contourBegin(object);
    const std::size_t end = m_content.objects[object].contourEnd;
    if (end - first == 1)
        return contour<OGRLineString>(first);
    auto lines = std::make_unique<OGRMultiLineString>();
    for (std::size_t c = first; c < end; ++c)
        lines->addGeometryDirectly(contour<OGRLineString>(c).release());
    return lines;
}

bool ConvertWriter::writeFeature(std::unique_ptr<OGRGeometry> geometry, const QString &def, const QString &id)
{
    const std::unique_ptr<OGRFeature> feature(OGRFeature::CreateFeature(m_layer->GetLayerDefn()));
    feature->SetGeometryDirectly(geometry.release());
    const bool recodes = !m_gdalEncoding.isEmpty();
    feature->SetField(0, (recodes ? def.toUtf8() : encoded(def)).constData());
    feature->SetField(1, (recodes ? id.toUtf8() : encoded(id)).constData());
    return m_layer->CreateFeature(feature.get()) == OGRERR_NONE || fail();
}

bool ConvertWriter::writeObjects(ConvertProgress &progress)
{
    for (std::size_t i = 0; i < m_content.objects.size(); ++i) {
        const ContentObject &object = m_content.objects[i];
        if (!writeFeature(object.isArea ? areaGeometry(i) : lineGeometry(i), object.def, object.id) ||
            !progress.advance())
            return false;
    }
    return true;
}

bool ConvertWriter::writePoints(ConvertProgress &progress)
{
    for (const ContentPoint &point : m_content.points) {
        if (!writeFeature(std::make_unique<OGRPoint>(point.at.x, point.at.y), point.def, point.id) ||
            !progress.advance())
            return false;
    }
    return true;
}

bool ConvertWriter::write(const QString &mifFileName, const OGRSpatialReference *srs, ConvertProgress &progress)
{
    prepareTexts();
    progress.begin(QStringLiteral("Writing"),
                   static_cast<qint64>(m_content.objects.size()) + static_cast<qint64>(m_content.points.size()));
    const bool ok = create(mifFileName, srs) && writeObjects(progress) && writePoints(progress);
    CPLErrorReset();
    m_dataset.reset(); // writes what is still buffered
    return ok && (CPLGetLastErrorType() < CE_Failure || fail());
}
