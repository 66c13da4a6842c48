#include "convertsource.h"

#include "binarydxf.h"
#include "convertdxf.h"
#include "convertprogress.h"
#include "encodingguess.h"
#include "gdalmessage.h"
#include "memoryfile.h"

#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QRegularExpression>
#include <QSet>

#include <cpl_conv.h>
#include <cpl_string.h>
#include <cpl_vsi.h>
#include <ogr_spatialref.h>
#include <ogrsf_frmts.h>

namespace {

// Names of GDAL's files in memory, which are global to the process.
const char *const strDxf = "/vsimem/importprepare/source.dxf";
const char *const strCorrected = "/vsimem/importprepare/corrected.dxf";
const char *const strHeader = "/vsimem/importprepare/header.dxf";
const char *const strWithHeader = "/vsimem/importprepare/withheader.dxf";

const char *const configurations[] = {"OGR_ARC_STEPSIZE", "OGR_ARC_MAX_GAP", "DXF_ENCODING"};

constexpr int maxShownBytes = 40; // of a faulty value

// A binary drawing becomes up to four times as long.
constexpr qint64 maxBinarySize = 500LL * 1024 * 1024;

QByteArray firstBytes(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.read(64) : QByteArray();
}

void addCount(ContentCounts &counts, const QString &kind, qint64 count)
{
    if (count > 0)
        counts[kind] += count;
}

void setArcSteps(const ArcSteps &steps)
{
    CPLSetThreadLocalConfigOption("OGR_ARC_STEPSIZE", QByteArray::number(steps.angle, 'g', 17).constData());
    CPLSetThreadLocalConfigOption("OGR_ARC_MAX_GAP", QByteArray::number(steps.gap, 'g', 17).constData());
}

bool isInDegrees(const QString &crs)
{
    OGRSpatialReference system;
    return system.SetFromUserInput(crs.toUtf8().constData()) == OGRERR_NONE && system.IsGeographic() != 0;
}

bool hasSuffix(const QString &fileName, QLatin1String suffix)
{
    return fileName.endsWith(suffix, Qt::CaseInsensitive);
}

} // namespace

ConvertSource::ConvertSource(const ConvertOptions &options, ConvertContent &content)
    : m_options(options),
      m_content(content),
      m_encoding{options.sourceEncoding.toLatin1(), false}
{
}

ConvertSource::~ConvertSource()
{
    m_dataset.reset();
    for (const char *const name : {strDxf, strCorrected, strHeader, strWithHeader})
        VSIUnlink(name);
    for (const char *const name : configurations)
        CPLSetThreadLocalConfigOption(name, nullptr);
}

bool ConvertSource::fail(const QString &text)
{
    m_error = text;
    return false;
}

bool ConvertSource::open()
{
    const QString &input = m_options.input;
    GDALAllRegister();
    const QFileInfo info(input);
    // Reading a pipe or device may block or never end.
    if (info.exists() && !info.isFile() && !info.isDir())
        return fail(QStringLiteral("\"%1\" is not a file.").arg(input));
    if (info.isDir())
        return openFolder();
    if (info.isFile()) {
        if (!info.isReadable())
            return fail(QStringLiteral("Cannot read \"%1\".").arg(input));
        if (isBinaryDxf(firstBytes(input)))
            return openBinaryDxf();
        if (hasSuffix(input, QLatin1String(".mif")))
            return openMif(input);
        if (hasSuffix(input, QLatin1String(".mid")))
            return openMif(fileBeside(input, QStringLiteral("mif")));
        if (hasSuffix(input, QLatin1String(".shp")) || hasSuffix(input, QLatin1String(".dbf")))
            return openShapefile();
    }
    const QByteArray name = input.toUtf8();
    const char *const dxf[] = {"DXF", nullptr};
    const bool isDrawing = GDALIdentifyDriverEx(name.constData(), GDAL_OF_VECTOR, dxf, nullptr) != nullptr;
    return isDrawing ? openDxf(name) : openDataset(name, nullptr);
}

// Of separate files in a folder these drivers make the layers of one dataset, even if they have nothing in common.
bool ConvertSource::openFolder()
{
    static const QSet<QByteArray> driversOfFiles{"CSV", "ESRI Shapefile", "MapInfo File"};
    const bool isDataset = openDataset(m_options.input.toUtf8(), nullptr) &&
                           !driversOfFiles.contains(m_dataset->GetDriver()->GetDescription());
    return isDataset || fail(QStringLiteral("\"%1\" is a folder but not a dataset. Convert its files one by one.")
                                 .arg(m_options.input));
}

QString ConvertSource::openError(const QString &reason) const
{
    const QString &input = m_options.input;
    const QFileInfo info(input);
    // Of databases and of files in archives only GDAL knows whether they exist.
    const bool isPath = !input.startsWith(QLatin1String("/vsi")) && input.indexOf(QLatin1Char(':')) < 2;
    if (info.isFile() && info.size() == 0)
        return QStringLiteral("\"%1\" is empty.").arg(input);
    if (isPath && !info.exists())
        return QStringLiteral("\"%1\" does not exist.").arg(input);
    if (!reason.isEmpty())
        return QStringLiteral("Cannot read \"%1\": %2").arg(input, reason);
    return (info.exists() ? QStringLiteral("\"%1\" has no vector content that GDAL reads.")
                          : QStringLiteral("\"%1\" is missing or has no vector content that GDAL reads."))
        .arg(input);
}

bool ConvertSource::openDataset(const QByteArray &fileName, const char *const *openOptions)
{
    CPLErrorReset();
    m_dataset.reset(GDALDataset::Open(fileName.constData(), GDAL_OF_VECTOR | GDAL_OF_READONLY, nullptr, openOptions));
    if (m_dataset != nullptr) {
        addRasters(fileName);
        return true;
    }
    return fail(openError(withPlaceInInput(lastGdalMessage())));
}

// A dataset that is opened for its vectors does not show its rasters.
void ConvertSource::addRasters(const QByteArray &fileName)
{
    GDALDriver &driver = *m_dataset->GetDriver();
    if (driver.GetMetadataItem(GDAL_DCAP_RASTER) == nullptr)
        return;
    const char *const drivers[] = {driver.GetDescription(), nullptr};
    const GDALDatasetUniquePtr rasters(
        GDALDataset::Open(fileName.constData(), GDAL_OF_RASTER | GDAL_OF_READONLY, drivers));
    if (rasters == nullptr)
        return;
    const int count = rasters->GetRasterCount() > 0 ? 1 : CSLCount(rasters->GetMetadata("SUBDATASETS")) / 2;
    if (count > 0)
        m_content.leftOut[QStringLiteral("raster")] = count;
}

bool ConvertSource::openBinaryDxf()
{
    QFile file(m_options.input);
    if (!file.open(QIODevice::ReadOnly) || file.size() > maxBinarySize)
        return fail(QStringLiteral("Cannot read \"%1\": %2.")
                        .arg(m_options.input,
                             file.isOpen() ? QStringLiteral("The binary DXF file is too large") : file.errorString()));
    QString reason;
    if (!binaryDxfToAscii(file.readAll(), m_ascii, reason))
        return fail(QStringLiteral("Cannot read \"%1\": %2").arg(m_options.input, reason));
    addMemoryFile(strDxf, m_ascii);
    return openDxf(strDxf);
}

// GDAL decodes the texts of a drawing that begins with its entities in one way only, unless a header precedes them.
QByteArray ConvertSource::withHeader(const QByteArray &fileName)
{
    static const QByteArray header("0\nSECTION\n2\nHEADER\n0\nENDSEC\n");
    VSIStatBufL status;
    if (VSIStatL(fileName.constData(), &status) != 0)
        return fileName;
    addMemoryFile(strHeader, header);
    const auto region = [](const char *name, qint64 begin, qint64 size) {
        QByteArray text = "<SubfileRegion><Filename relative=\"0\">" +
                          QString::fromUtf8(name).toHtmlEscaped().toUtf8() + "</Filename><DestinationOffset>" +
                          QByteArray::number(begin) +
                          "</DestinationOffset><SourceOffset>0</SourceOffset><RegionLength>" +
                          QByteArray::number(size) + "</RegionLength></SubfileRegion>";
        return text;
    };
    const auto size = static_cast<qint64>(status.st_size);
    m_parts = "<VSISparseFile><Length>" + QByteArray::number(header.size() + size) + "</Length>" +
              region(strHeader, 0, header.size()) + region(fileName.constData(), header.size(), size) +
              "</VSISparseFile>";
    addMemoryFile(strWithHeader, m_parts);
    m_addedLines = header.count('\n');
    return QByteArray("/vsisparse/") + strWithHeader;
}

QString ConvertSource::withPlaceInInput(const QString &message) const
{
    static const QRegularExpression place(QStringLiteral("line (\\d+) of /vsi\\S+"));
    const QRegularExpressionMatch match = place.match(message);
    if (!match.hasMatch())
        return message;
    const qint64 line = lineBeforeEdits(match.captured(1).toInt() - m_addedLines, m_replacedLines);
    return QString(message).replace(match.captured(0),
                                    QStringLiteral("line %1 of %2").arg(QString::number(line), m_options.input));
}

// The deviation in units of a source that names no coordinate system.
double ConvertSource::deviation() const
{
    constexpr double metresPerDegree = 111700; // at most
    const bool becomesMetres = !m_options.crs.isEmpty() && !isInDegrees(m_options.crs);
    const bool isDegrees = m_options.sourceCrs.isEmpty() || isInDegrees(m_options.sourceCrs);
    return becomesMetres && isDegrees ? m_options.deviation / metresPerDegree : m_options.deviation;
}

bool ConvertSource::openDxf(const QByteArray &fileName)
{
    m_isDxf = true;
    m_drawing = std::make_unique<DrawingView>();
    DxfInspection scan;
    if (!m_drawing->open(fileName, m_options.takesSymbols))
        return fail(QStringLiteral("Cannot read \"%1\".").arg(m_options.input));
    if (m_drawing->excessLine() > 0)
        return fail(QStringLiteral("Cannot read \"%1\": with the insertion in line %2 its blocks are nested too deeply "
                                   "or draw more than %3 entities.")
                        .arg(m_options.input, QString::number(m_drawing->excessLine()),
                             QLocale(QLocale::English).toString(BlockCopies::maxCount)));
    if (!scan.scan(m_drawing->fileName()))
        return fail(QStringLiteral("Cannot read \"%1\".").arg(m_options.input));
    if (ConvertProgress::isInterrupted())
        return false;
    QByteArray corrected = m_drawing->fileName();
    if (!correctDxf(scan, corrected))
        return false;
    if (m_encoding.name.isEmpty())
        m_encoding = sourceEncoding(scan.sample(), scan.declaredEncoding());
    const bool isHeaderMissing = !m_encoding.name.isEmpty() && !scan.beginsWithHeader();
    if (!m_encoding.name.isEmpty())
        CPLSetThreadLocalConfigOption("DXF_ENCODING", m_encoding.name.constData());
    addNotes(scan);
    m_content.hasPolylineArcs = scan.hasPolylineArcs();
    // GDAL reads the blocks when it opens the drawing, and the other entities later.
    setArcSteps(scan.blockArcSteps(deviation()));
    const bool ok = openDataset(isHeaderMissing ? withHeader(corrected) : corrected, nullptr);
    setArcSteps(scan.arcSteps(deviation()));
    return ok;
}

// Names the corrected copy instead of \a fileName if there is something to correct.
bool ConvertSource::correctDxf(DxfInspection &scan, QByteArray &fileName)
{
    const DrawingCorrections &corrections = scan.corrections();
    if (corrections.faultyLine() > 0)
        return fail(QStringLiteral("Cannot read \"%1\": \"%2\" in line %3 is no number.")
                        .arg(m_options.input, QString::fromLatin1(corrections.faultyValue().left(maxShownBytes)),
                             QString::number(corrections.faultyLine())));
    const std::vector<DrawingEdit> edits = scan.takeEdits(deviation());
    if (edits.empty())
        return true;
    if (!copyWithEdits(fileName, strCorrected, edits))
        return fail(QStringLiteral("There is not enough memory to convert \"%1\".").arg(m_options.input));
    m_replacedLines = replacedLines(edits);
    fileName = strCorrected;
    return true;
}

void ConvertSource::addNotes(const DxfInspection &scan)
{
    const ContentCounts ignored = scan.ignoredEntities();
    for (auto it = ignored.begin(); it != ignored.end(); ++it)
        m_content.leftOut[it.key()] += it.value();
    const DrawingCorrections &corrections = scan.corrections();
    addCount(m_content.leftOut, QStringLiteral("broken-spline"), corrections.brokenSplineCount());
    addCount(m_content.leftOut, QStringLiteral("no-geometry"), corrections.emptyPolylineCount());
    addCount(m_content.notes, QStringLiteral("decimal-comma"), corrections.commaCount());
    addCount(m_content.notes, QStringLiteral("coarse-curve"),
             scan.arcSteps(deviation()).coarseCount + scan.blockArcSteps(deviation()).coarseCount +
                 corrections.coarseSplineCount());
    const PointSymbols &symbols = m_drawing->symbols();
    addCount(m_content.notes, QStringLiteral("point-symbol"), symbols.count());
    addCount(m_content.notes, QStringLiteral("symbol-outline"), symbols.outlineCount());
    addCount(m_content.leftOut, QStringLiteral("unused-text"), symbols.textCount());
    if (!scan.hasEnd())
        m_content.notes[QStringLiteral("no-end")] = 1;
}

// Counts cases, and keeps the place of the first.
void ConvertSource::add(ContentCounts &counts, const char *kind, const MifTally &tally)
{
    const QString key = QLatin1String(kind);
    if (tally.count > 0)
        counts[key] += tally.count;
    if (tally.line > 0)
        m_content.places[key] = QStringLiteral("line %1").arg(tally.line);
}

void ConvertSource::addNotes(const MifCopy &mif)
{
    const MifData::Counts &counts = mif.counts();
    add(m_content.leftOut, "short-line", {counts.shortLines, 0});
    add(m_content.leftOut, "short-area", {counts.shortAreas, 0});
    add(m_content.leftOut, "unreadable-object", counts.unreadable);
    add(m_content.leftOut, "unknown-line", counts.unknown);
    add(m_content.notes, "decimal-comma", counts.commas);
    add(m_content.notes, "missing-record", {mif.addedRecords(), 0});
    add(m_content.notes, "surplus-record", {mif.surplusRecords(), 0});
    add(m_content.notes, "coarse-curve", {mif.coarseCount(), 0});
    if (mif.isTransformed())
        m_content.notes[QStringLiteral("transform")] = 1;
}

// The records may be named instead.
bool ConvertSource::openMif(const QString &fileName)
{
    m_isMif = true;
    if (fileName.isEmpty())
        return fail(QStringLiteral("There is no MIF file beside \"%1\".").arg(m_options.input));
    if (!m_mif.read(fileName, m_encoding.name))
        return fail(m_mif.error());
    const MifData::Counts &counts = m_mif.counts();
    if (!counts.isUsable())
        return fail(QStringLiteral("Cannot read \"%1\": it has no complete object. The first error is in line %2.")
                        .arg(fileName, QString::number(counts.unreadable.line)));
    m_mif.splitCurves(m_options.deviation, deviation());
    m_encoding = m_mif.encoding();
    addNotes(m_mif);
    m_mifView.show(m_mif);
    return openDataset(m_mifView.fileName(), nullptr);
}

// A DBF file often names no encoding or a wrong one: read the bytes, guess, and open it with the result.
bool ConvertSource::openShapefile()
{
    const QByteArray name = m_options.input.toUtf8();
    if (m_encoding.name.isEmpty()) {
        const char *const raw[] = {"ENCODING=", nullptr};
        if (!openDataset(name, raw))
            return false;
        constexpr int maxSample = 1 << 20;
        OGRLayer &layer = *m_dataset->GetLayer(0);
        const char *const declared = layer.GetMetadataItem("SOURCE_ENCODING", "SHAPEFILE");
        QByteArray sample;
        const char *const ignored[] = {"OGR_GEOMETRY", nullptr};
        layer.SetIgnoredFields(const_cast<const char **>(ignored));
        for (const OGRFeatureUniquePtr &feature : layer) {
            for (int i = 0; i < feature->GetFieldCount() && sample.size() < maxSample; ++i)
                sample += feature->GetFieldAsString(i);
        }
        m_encoding = sourceEncoding(sample, declared);
    }
    const QByteArray option = "ENCODING=" + m_encoding.name;
    const char *const decoded[] = {option.constData(), nullptr};
    return openDataset(name, m_encoding.name.isEmpty() ? nullptr : decoded);
}
