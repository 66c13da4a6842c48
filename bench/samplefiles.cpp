// Plots are generated first; points and names are derived from their corners. Random numbers are the same with every
// compiler and library, so that results from different machines are comparable.

#include "samplefiles.h"

#include <QFile>
#include <QPointF>
#include <QTextCodec>
#include <QVector>

#include <cmath>
#include <random>

namespace {

// Local coordinates in metres, as in the plans of a district.
constexpr QPointF origin(13200, 48100);
constexpr double plotSize = 20;

struct Plot
{
    std::array<QPointF, 4> corners;
};

struct Named
{
    QPointF place;
    QByteArray name;
};

using Random = std::mt19937;

// Unlike std::uniform_real_distribution, returns the same numbers with every library.
double uniform(Random &random, double below)
{
    return below * static_cast<double>(random()) / 4294967296.0;
}

int sideOf(int plotCount)
{
    return static_cast<int>(std::ceil(std::sqrt(plotCount)));
}

QVector<QPointF> nodes(int side, double jitter)
{
    Random random(1); // NOLINT(cert-msc32-c,cert-msc51-cpp)
    QVector<QPointF> nodes;
    nodes.reserve((side + 1) * (side + 1));
    for (int row = 0; row <= side; ++row) {
        for (int column = 0; column <= side; ++column) {
            const double x = column * plotSize + uniform(random, jitter);
            nodes.append(origin + QPointF(x, row * plotSize + uniform(random, jitter)));
        }
    }
    return nodes;
}

QVector<Plot> mosaic(int plotCount, double jitter)
{
    const int side = sideOf(plotCount);
    const QVector<QPointF> node = nodes(side, jitter);
    QVector<Plot> plots;
    plots.reserve(plotCount);
    for (int i = 0; i < plotCount; ++i) {
        const int first = i / side * (side + 1) + i % side;
        plots.append(Plot{{node[first], node[first + 1], node[first + side + 2], node[first + side + 1]}});
    }
    return plots;
}

// Each plot has its own cell; their order in the file is random.
QVector<Plot> scattered(int plotCount)
{
    constexpr double cellSize = 2 * plotSize;
    Random random(2); // NOLINT(cert-msc32-c,cert-msc51-cpp)
    const int side = sideOf(plotCount);
    QVector<Plot> plots;
    plots.reserve(plotCount);
    for (int i = 0; i < plotCount; ++i) {
        const int row = i / side;
        const double x = i % side * cellSize + uniform(random, plotSize);
        const QPointF at = origin + QPointF(x, row * cellSize + uniform(random, plotSize));
        plots.append(Plot{{at, at + QPointF(17.31, 1.17), at + QPointF(18.05, 16.44), at + QPointF(0.56, 15.98)}});
    }
    for (int i = plotCount - 1; i > 0; --i)
        qSwap(plots[i], plots[static_cast<int>(random() % static_cast<unsigned>(i + 1))]);
    return plots;
}

// Narrow plots, one above the other, each sharing two corners with the previous one. The fractional parts of the
// multiples of the golden ratio fill the width evenly and never repeat.
QVector<Plot> column(int plotCount, double width)
{
    const auto node = [width](int i) {
        double whole = 0;
        const double x = width * std::modf(i * 0.6180339887498949, &whole);
        return origin + QPointF(x, i);
    };
    QVector<Plot> plots;
    plots.reserve(plotCount);
    for (int i = 0; i < 2 * plotCount; i += 2)
        plots.append(Plot{{node(i), node(i + 1), node(i + 3), node(i + 2)}});
    return plots;
}

QVector<Plot> plotsOf(Layout layout, int plotCount)
{
    switch (layout) {
    case Layout::Disjoint:
        return scattered(plotCount);
    case Layout::Grid:
        return mosaic(plotCount, 0);
    case Layout::Column:
        return column(plotCount, 0);
    case Layout::JitteredColumn:
        return column(plotCount, 0.1);
    case Layout::Mosaic:
    case Layout::MosaicAndStray:
        break;
    }
    return mosaic(plotCount, 6);
}

// Number of leading corners to count per plot, so that each shared corner counts once.
size_t ownCorners(Layout layout)
{
    switch (layout) {
    case Layout::Disjoint:
        return 4;
    case Layout::Column:
    case Layout::JitteredColumn:
        return 2;
    case Layout::Mosaic:
    case Layout::Grid:
    case Layout::MosaicAndStray:
        break;
    }
    return 1;
}

QPointF middle(const Plot &plot)
{
    QPointF sum;
    for (const QPointF &corner : plot.corners)
        sum += corner;
    return sum / 4;
}

QByteArray windows1251(const QString &text)
{
    return QTextCodec::codecForName("Windows-1251")->fromUnicode(text);
}

void openForWriting(QFile &file)
{
    if (!file.open(QIODevice::WriteOnly))
        qFatal("cannot write %s", qPrintable(file.fileName()));
}

} // namespace

struct SampleFiles::Drawing
{
    Drawing(Layout layout, int plotCount);

    void appendPoint(const QPointF &place);
    void appendName(const QPointF &place);
    QByteArray mifPlace(const QPointF &p) const;
    QByteArray dxfPlace(const QPointF &p) const;
    QByteArray dxfText(const Named &named, const QPointF &offset) const;

    QByteArray x(double value) const { return QByteArray::number(value, 'f', xDecimals); }
    static QByteArray y(double value) { return QByteArray::number(value, 'f', 2); }

    const QVector<Plot> plots;
    QVector<Named> points;
    QVector<Named> names;  ///< of the plots, in the same order
    QPointF pointTextSide; ///< from a point to its text
    int xDecimals = 2;
    QByteArray dxfLayer = "  8\n" + windows1251(QStringLiteral("Участки")) + '\n';
};

SampleFiles::Drawing::Drawing(Layout layout, int plotCount) : plots(plotsOf(layout, plotCount))
{
    int corners = 0;
    for (const Plot &plot : plots) {
        for (size_t i = 0; i < ownCorners(layout); ++i) {
            if (++corners % 10 != 0)
                appendPoint(plot.corners.at(i));
        }
        appendName(middle(plot));
    }
    if (layout == Layout::MosaicAndStray) {
        appendPoint(QPointF(0, 0));
        appendName(QPointF(0, 5));
    }
    const bool isColumn = layout == Layout::Column || layout == Layout::JitteredColumn;
    pointTextSide = isColumn ? QPointF(0, 0.25) : QPointF(1.5, 0.75);
    if (layout == Layout::JitteredColumn)
        xDecimals = 8;
}

void SampleFiles::Drawing::appendPoint(const QPointF &place)
{
    static const QByteArray prefix = windows1251(QStringLiteral("н"));
    points.append(Named{place, prefix + QByteArray::number(points.size() + 1)});
}

void SampleFiles::Drawing::appendName(const QPointF &place)
{
    static const QByteArray prefix = windows1251(QStringLiteral(":ЗУ"));
    names.append(Named{place, prefix + QByteArray::number(names.size() + 1)});
}

QByteArray SampleFiles::Drawing::mifPlace(const QPointF &p) const
{
    return x(p.x()) + ' ' + y(p.y()) + '\n';
}

QByteArray SampleFiles::Drawing::dxfPlace(const QPointF &p) const
{
    return " 10\n" + x(p.x()) + "\n 20\n" + y(p.y()) + '\n';
}

QByteArray SampleFiles::Drawing::dxfText(const Named &named, const QPointF &offset) const
{
    return "  0\nTEXT\n" + dxfLayer + dxfPlace(named.place + offset) + " 30\n0.0\n 40\n2.5\n  1\n" + named.name + '\n';
}

SampleFiles::SampleFiles(Layout layout, int vertexCount) : m_drawing(std::make_unique<Drawing>(layout, vertexCount / 5))
{
}

SampleFiles::~SampleFiles() = default;

// In a MID file a designation belongs to an object, so the stray one is omitted.
void SampleFiles::writeMif(const QString &path) const
{
    QFile mif(path);
    QFile mid(path.chopped(1) + QLatin1Char('d'));
    openForWriting(mif);
    openForWriting(mid);
    mif.write("Version 300\nCharset \"WindowsCyrillic\"\nDelimiter \",\"\nCoordSys NonEarth Units \"m\" "
              "Bounds (0, 0) (1000000, 1000000)\nColumns 1\n  Name Char(20)\nData\n\n");
    for (const Named &point : m_drawing->points) {
        mif.write("Point " + m_drawing->mifPlace(point.place));
        mid.write('"' + point.name + "\"\n");
    }
    for (int i = 0; i < m_drawing->plots.size(); ++i) {
        mif.write("Region 1\n  5\n");
        for (size_t corner = 0; corner < 5; ++corner)
            mif.write(m_drawing->mifPlace(m_drawing->plots.at(i).corners.at(corner % 4)));
        mif.write("    Pen (1,2,0)\n");
        mid.write('"' + m_drawing->names.at(i).name + "\"\n");
    }
}

void SampleFiles::writeDxf(const QString &path) const
{
    QFile dxf(path);
    openForWriting(dxf);
    dxf.write("  0\nSECTION\n  2\nHEADER\n  9\n$ACADVER\n  1\nAC1015\n  9\n$DWGCODEPAGE\n  3\nANSI_1251\n"
              "  0\nENDSEC\n  0\nSECTION\n  2\nENTITIES\n");
    for (const Named &point : m_drawing->points) {
        dxf.write("  0\nPOINT\n" + m_drawing->dxfLayer + m_drawing->dxfPlace(point.place) + " 30\n0.0\n");
        dxf.write(m_drawing->dxfText(point, m_drawing->pointTextSide));
    }
    for (const Plot &plot : m_drawing->plots) {
        dxf.write("  0\nLWPOLYLINE\n" + m_drawing->dxfLayer + " 90\n     4\n 70\n     1\n");
        for (const QPointF &corner : plot.corners)
            dxf.write(m_drawing->dxfPlace(corner));
    }
    for (const Named &name : m_drawing->names)
        dxf.write(m_drawing->dxfText(name, QPointF(0, 0)));
    dxf.write("  0\nENDSEC\n  0\nEOF\n");
}
