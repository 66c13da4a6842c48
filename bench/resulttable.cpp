#include "resulttable.h"

#include "formatbounds.h"

#include <QStringList>

#include <cmath>

namespace {

constexpr double megabyte = 1e6;

struct Bounds
{
    QString format;
    double maxTimesLines;  ///< import of a mosaic relative to reading its lines
    double minTimesFaster; ///< GDAL relative to the import of a mosaic
};

const Bounds &boundsOf(const QString &format)
{
    static const Bounds mif{QStringLiteral("MIF"), 3, 4.5};
    static const Bounds dxf{QStringLiteral("DXF"), 1.6, 3.3};
    return format == mif.format ? mif : dxf;
}

// Bounds that apply to every layout.
constexpr double maxGrowth = 1.7; // of the time per vertex, from one file size to the next
constexpr double maxTimesMosaic = 3;
constexpr double maxTimesFileSize = 6;

QString cell(double value, int decimals)
{
    return std::isfinite(value) && value > 0 ? russianNumber(value, decimals) : QStringLiteral("—");
}

QString layoutName(Layout layout)
{
    switch (layout) {
    case Layout::Mosaic:
        break;
    case Layout::Disjoint:
        return QStringLiteral("участки порознь");
    case Layout::Grid:
        return QStringLiteral("сетка");
    case Layout::Column:
        return QStringLiteral("столбец");
    case Layout::JitteredColumn:
        return QStringLiteral("неровный столбец");
    case Layout::MosaicAndStray:
        return QStringLiteral("мозаика и точка вдали");
    }
    return QStringLiteral("мозаика");
}

QStringList heading(const QVector<int> &vertexCounts)
{
    QStringList cells{QStringLiteral("Формат"), QStringLiteral("Расположение"), QStringLiteral("Файл, МБ")};
    for (const int count : vertexCounts)
        cells << QStringLiteral("%1 тыс., мс").arg(count / 1000);
    cells << QStringLiteral("Строки, мс") << QStringLiteral("GDAL, мс") << QStringLiteral("К строкам")
          << QStringLiteral("GDAL к импорту");
    for (int i = 1; i < vertexCounts.size(); ++i)
        cells << QStringLiteral("Рост к %1 тыс.").arg(vertexCounts[i] / 1000);
    return cells << QStringLiteral("К мозаике") << QStringLiteral("Память к файлу");
}

QStringList cellsOf(const SpeedRow &row)
{
    const bool isMosaic = row.layout == Layout::Mosaic;
    const Bounds &bounds = boundsOf(row.format);
    QStringList cells{row.format, layoutName(row.layout), cell(row.fileSize / megabyte, 0)};
    for (const double seconds : row.imports)
        cells << cell(seconds * 1000, 0);
    cells << cell(row.lines * 1000, 0) << cell(row.gdal * 1000, 0);
    cells << (isMosaic ? atMost(row.toLines, bounds.maxTimesLines) : cell(row.toLines, 2));
    cells << atLeast(row.gdalToImport, bounds.minTimesFaster);
    for (int i = 1; i < row.growths.size(); ++i)
        cells << atMost(row.growths.at(i), maxGrowth);
    cells << (isMosaic ? cell(1, 0) : atMost(row.toMosaic, maxTimesMosaic));
    return cells << atMost(row.memory / row.fileSize, maxTimesFileSize);
}

QString tableLine(const QStringList &cells)
{
    return QStringLiteral("| %1 |\n").arg(cells.join(QStringLiteral(" | ")));
}

} // namespace

QString resultTable(const QVector<SpeedRow> &rows, const QVector<int> &vertexCounts)
{
    const QStringList head = heading(vertexCounts);
    QString rule = QStringLiteral("|---|---|");
    for (int i = 2; i < head.size(); ++i)
        rule += QStringLiteral("--:|");
    QString table = tableLine(head) + rule + QLatin1Char('\n');
    for (const SpeedRow &row : rows)
        table += tableLine(cellsOf(row));
    return table;
}
