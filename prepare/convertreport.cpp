#include "convertreport.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

QString meaning(const QString &kind)
{
    static const QHash<QString, QString> texts{
        // Left out.
        {QStringLiteral("broken-spline"), QStringLiteral("splines without the control points or knots of a curve")},
        {QStringLiteral("empty-insert"), QStringLiteral("insertions of blocks that are missing or empty")},
        {QStringLiteral("filling"), QStringLiteral("hatches of outlines that are objects themselves")},
        {QStringLiteral("mesh"), QStringLiteral("polygon meshes, which GDAL does not read")},
        {QStringLiteral("merged-point"), QStringLiteral("points within 0.01 of another, which the import would merge")},
        {QStringLiteral("no-geometry"), QStringLiteral("features without a geometry")},
        {QStringLiteral("not-finite"), QStringLiteral("contours or points whose coordinates are not numbers")},
        {QStringLiteral("not-transformed"), QStringLiteral("features outside the coordinate system")},
        {QStringLiteral("point-without-number"),
         QStringLiteral("points without a number, which would blank the number of a vertex or point at their place")},
        {QStringLiteral("raster"), QStringLiteral("rasters")},
        {QStringLiteral("short-area"), QStringLiteral("contours of areas with fewer than three corners")},
        {QStringLiteral("short-line"), QStringLiteral("lines of fewer than two vertices")},
        {QStringLiteral("unknown-line"),
         QStringLiteral("lines that belong to no object, or to one of an unknown kind")},
        {QStringLiteral("unreadable-object"),
         QStringLiteral("objects, or parts of them, that are incomplete or wrong")},
        {QStringLiteral("unused-text"), QStringLiteral("texts that name neither an object nor a point")},
        // Notes.
        {QStringLiteral("assumed-degrees"),
         QStringLiteral("the input names no coordinate system; its coordinates are taken for longitude and latitude "
                        "(EPSG:4326)")},
        {QStringLiteral("coarse-curve"),
         QStringLiteral("curves are so large, or so many, that the deviation cannot be kept")},
        {QStringLiteral("decimal-comma"), QStringLiteral("numbers whose decimal comma was read as a point")},
        {QStringLiteral("degrees"), QStringLiteral("coordinates are in degrees; use --crs with a system in metres")},
        {QStringLiteral("gdal-warning"), QStringLiteral("warnings of GDAL")},
        {QStringLiteral("height"), QStringLiteral("features with heights, which the import does not take")},
        {QStringLiteral("long-text"), QStringLiteral("texts cut to 254 bytes")},
        {QStringLiteral("missing-record"), QStringLiteral("objects without a record in the MID file")},
        {QStringLiteral("no-end"), QStringLiteral("the drawing has no end mark, so it may be truncated")},
        {QStringLiteral("point-symbol"), QStringLiteral("circles and insertions of blocks taken as points")},
        {QStringLiteral("replaced-character"), QStringLiteral("characters replaced that the output cannot hold")},
        {QStringLiteral("symbol-outline"), QStringLiteral("areas and lines of which these symbols are drawn")},
        {QStringLiteral("surplus-record"),
         QStringLiteral("records in the MID file more than objects, so that the designations may be those of others")},
        {QStringLiteral("transform"),
         QStringLiteral("the coordinates are scaled and moved as the line Transform of the header demands")},
        {QStringLiteral("uncontrolled-curve"), QStringLiteral("curves that GDAL splits regardless of the deviation")},
    };
    const QString entity = QStringLiteral("entity ");
    if (kind.startsWith(entity))
        return QStringLiteral("entities %1, which GDAL does not read").arg(kind.mid(entity.size()));
    return texts.value(kind);
}

// Notes on the whole source have no meaningful count.
bool isCounted(const QString &kind)
{
    static const QStringList uncounted{QStringLiteral("assumed-degrees"), QStringLiteral("degrees"),
                                       QStringLiteral("no-end"), QStringLiteral("transform")};
    return !uncounted.contains(kind);
}

QString countsText(const QString &title, const ContentCounts &counts, const ConvertContent &content)
{
    QString text;
    for (auto it = counts.begin(); it != counts.end(); ++it) {
        text += QStringLiteral("\n%1: %2").arg(title, meaning(it.key()));
        if (isCounted(it.key()))
            text += QStringLiteral(": %1").arg(it.value());
        if (content.places.contains(it.key()))
            text += QStringLiteral(", the first in %1").arg(content.places.value(it.key()));
        text += QLatin1Char('.');
    }
    return text;
}

QJsonArray countsJson(const ContentCounts &counts, const ConvertContent &content)
{
    QJsonArray array;
    for (auto it = counts.begin(); it != counts.end(); ++it) {
        QJsonObject object{{QStringLiteral("kind"), it.key()}, {QStringLiteral("count"), it.value()}};
        if (content.places.contains(it.key()))
            object.insert(QStringLiteral("place"), content.places.value(it.key()));
        array.append(object);
    }
    return array;
}

qint64 number(std::size_t count)
{
    return static_cast<qint64>(count);
}

} // namespace

QString counted(qint64 count, const QString &singular)
{
    const QString noun = count == 1                            ? singular
                         : singular == QLatin1String("vertex") ? QStringLiteral("vertices")
                                                               : singular + QLatin1Char('s');
    return QStringLiteral("%1 %2").arg(QString::number(count), noun);
}

QString leftOutText(const ConvertContent &content)
{
    return countsText(QStringLiteral("Left out"), content.leftOut, content);
}

QString convertText(const ConvertOptions &options, const ConvertContent &content, const SourceEncoding &source)
{
    const QStringList counts{counted(number(content.objects.size()), QStringLiteral("object")),
                             counted(number(content.contourEnds.size()), QStringLiteral("contour")),
                             counted(number(content.vertices.size()), QStringLiteral("vertex")),
                             counted(number(content.points.size()), QStringLiteral("point"))};
    QString text = QStringLiteral("\"%1\": %2.").arg(options.output, counts.join(QLatin1String(", ")));
    if (!source.name.isEmpty())
        text += QStringLiteral("\nEncoding of the input: %1%2.")
                    .arg(QString::fromLatin1(source.name), source.isGuessed ? QStringLiteral(" (guessed)") : QString());
    text += QStringLiteral("\nEncoding of the output: %1.").arg(options.encoding);
    return text + leftOutText(content) + countsText(QStringLiteral("Note"), content.notes, content) +
           (content.firstWarning.isEmpty()
                ? QString()
                : QStringLiteral("\nThe first warning of GDAL: %1").arg(content.firstWarning));
}

QString convertJson(const ConvertOptions &options, const ConvertContent &content, const SourceEncoding &source)
{
    const QJsonObject object{
        {QStringLiteral("file"), options.input},
        {QStringLiteral("output"), options.output},
        {QStringLiteral("encoding"), options.encoding},
        {QStringLiteral("sourceEncoding"),
         source.name.isEmpty() ? QJsonValue() : QJsonValue(QString::fromLatin1(source.name))},
        {QStringLiteral("objects"), number(content.objects.size())},
        {QStringLiteral("contours"), number(content.contourEnds.size())},
        {QStringLiteral("vertices"), number(content.vertices.size())},
        {QStringLiteral("points"), number(content.points.size())},
        {QStringLiteral("leftOut"), countsJson(content.leftOut, content)},
        {QStringLiteral("notes"), countsJson(content.notes, content)},
        {QStringLiteral("warning"), content.firstWarning},
    };
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}
