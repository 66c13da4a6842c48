#include "pictureexport.h"

#include "picturepainter.h"
#include "savefile.h"

#include <QBuffer>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHash>
#include <QPainter>
#include <QPdfWriter>
#include <QSvgGenerator>

namespace {

constexpr int pngWidth = 2000;
constexpr double pngPixelRatio = 1.5; // of fonts and lines
constexpr double svgWidth = 1600;
constexpr double minAspect = 0.4; // height to width
constexpr double maxAspect = 1.4;
constexpr int fontHeight = 13; // pixels
constexpr double legendHeight = 60;
constexpr int dotsPerInch = 96;   // of SVG and PDF
constexpr double pageMargin = 10; // of a PDF, millimetres
constexpr double fittedPart = 0.92;

using Write = QByteArray (*)(const PictureData &data, PictureMap map);

QFont exportFont()
{
    QFont font = QGuiApplication::font();
    font.setPixelSize(fontHeight);
    return font;
}

QString titleOf(const PictureData &data)
{
    const QString &table = data.result().objectTable;
    return table.isEmpty() ? QStringLiteral("Объекты") : table;
}

/// A size of the given width for a picture of \a data with its legend.
QSizeF sizeFor(const PictureData &data, const PictureMap &map, double width)
{
    const double right = map.hasSurveyAxes ? data.box().height() : data.box().width();
    const double up = map.hasSurveyAxes ? data.box().width() : data.box().height();
    const double aspect = right > 0 ? up / right : maxAspect;
    return {width, std::round(width * std::clamp(aspect, minAspect, maxAspect)) + legendHeight};
}

/// Fits \a data above the legend, which would cover vertices.
PicturePainter painterFor(const PictureData &data, PictureMap &map, const QSizeF &size)
{
    map.size = size;
    map.fitAbove(legendHeight, data.box(), fittedPart);
    return {data, map, PictureColors::ofPaper(), exportFont()};
}

QByteArray pngOf(const PictureData &data, PictureMap map)
{
    const PicturePainter picture = painterFor(data, map, sizeFor(data, map, pngWidth / pngPixelRatio));
    QImage image = picture.contourImage(pngPixelRatio);
    QPainter painter(&image);
    picture.drawLabels(painter, -1);
    painter.end();
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return buffer.data();
}

QByteArray svgOf(const PictureData &data, PictureMap map)
{
    const PicturePainter picture = painterFor(data, map, sizeFor(data, map, svgWidth));
    QBuffer buffer;
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setTitle(titleOf(data).toHtmlEscaped()); // written literally
    generator.setResolution(dotsPerInch);
    generator.setSize(map.size.toSize());
    generator.setViewBox(map.rect());
    QPainter painter(&generator);
    painter.fillRect(map.rect(), PictureColors::ofPaper().paper);
    picture.drawContours(painter);
    picture.drawLabels(painter, -1);
    painter.end();
    return buffer.data();
}

QByteArray pdfOf(const PictureData &data, PictureMap map)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setTitle(titleOf(data));
    writer.setResolution(dotsPerInch);
    writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Landscape,
                                     QMarginsF(pageMargin, pageMargin, pageMargin, pageMargin)));
    const PicturePainter picture = painterFor(data, map, QSizeF(writer.width(), writer.height()));
    QPainter painter(&writer);
    picture.drawContours(painter);
    picture.drawLabels(painter, -1);
    painter.end();
    return buffer.data();
}

Write writerFor(const QString &fileName)
{
    static const QHash<QString, Write> writers{
        {QStringLiteral("png"), pngOf},
        {QStringLiteral("svg"), svgOf},
        {QStringLiteral("pdf"), pdfOf},
    };
    return writers.value(QFileInfo(fileName).suffix().toLower());
}

} // namespace

bool hasPictureSuffix(const QString &fileName)
{
    return writerFor(fileName) != nullptr;
}

bool savePicture(const ImportResult &result, bool hasSurveyAxes, const QString &fileName, QString &error)
{
    const Write write = writerFor(fileName);
    const PictureData data(result);
    if (write == nullptr)
        error = QStringLiteral("рисунок сохраняется только в файл .png, .svg или .pdf");
    else if (data.box().isEmpty())
        error = QStringLiteral("рисовать нечего: в результате нет вершин");
    if (write == nullptr || data.box().isEmpty())
        return false;
    PictureMap map;
    map.hasSurveyAxes = hasSurveyAxes;
    return saveFile(fileName, write(data, map), error);
}
