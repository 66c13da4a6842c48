#pragma once

#include <QString>

#include <array>
#include <memory>

/// How the plots of a made-up drawing lie.
enum class Layout {
    Mosaic,         ///< neighbouring plots that share their vertices
    Disjoint,       ///< plots at random places that share nothing
    Grid,           ///< a mosaic whose vertices share their X in columns
    Column,         ///< all vertices, points and texts on one X, in plots that share two corners with the next
    JitteredColumn, ///< the same within 0.1 in X, every X different
    MosaicAndStray, ///< the mosaic with one more point and its text at the origin, and a designation
};

constexpr std::array<Layout, 6> layouts{Layout::Mosaic, Layout::Disjoint,       Layout::Grid,
                                        Layout::Column, Layout::JitteredColumn, Layout::MosaicAndStray};

/// Makes up a drawing and writes it as map files in Windows-1251, always the same for the same arguments.
///
/// A fifth of \a vertexCount is the number of plots, rings of five vertices; each has a designation, ":ЗУ1" and on.
/// Nine of ten corners lie on a point with a name, "н1" and on, where a corner that plots share counts once. The outer
/// border of a mosaic has points at two of its sides only, and a column at one of its ends.
class SampleFiles
{
public:
    SampleFiles(Layout layout, int vertexCount);
    ~SampleFiles();
    SampleFiles(const SampleFiles &) = delete;
    SampleFiles &operator=(const SampleFiles &) = delete;

    /// Writes a MIF file and the MID file beside it; \a path ends in ".mif". Like writeDxf() it ends the program when
    /// the file cannot be written.
    void writeMif(const QString &path) const;
    void writeDxf(const QString &path) const;

private:
    struct Drawing;
    const std::unique_ptr<const Drawing> m_drawing;
};
