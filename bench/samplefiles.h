#pragma once

#include <QString>

#include <array>
#include <memory>

/// Arrangement of the plots of a synthetic drawing.
enum class Layout {
    Mosaic,         ///< neighbouring plots that share their vertices
    Disjoint,       ///< plots at random places that share no vertices
    Grid,           ///< a mosaic on a regular grid, so that whole columns of vertices share one X
    Column,         ///< all vertices, points and texts at one X; each plot shares two corners with the next
    JitteredColumn, ///< a column whose X values all differ, within 0.1
    MosaicAndStray, ///< the mosaic with a point, its text and a designation far away at the origin
};

constexpr std::array<Layout, 6> layouts{Layout::Mosaic, Layout::Disjoint,       Layout::Grid,
                                        Layout::Column, Layout::JitteredColumn, Layout::MosaicAndStray};

/// Writes a synthetic drawing as map files in Windows-1251. The same arguments always give the same files.
///
/// The drawing has \a vertexCount / 5 plots, rings of five vertices, designated ":ЗУ1" and so on. Nine of ten corners
/// lie on a point named "н1" and so on; a shared corner counts once. The outer border of a mosaic has points on two of
/// its sides only, a column at one of its ends.
class SampleFiles
{
public:
    SampleFiles(Layout layout, int vertexCount);
    ~SampleFiles();
    SampleFiles(const SampleFiles &) = delete;
    SampleFiles &operator=(const SampleFiles &) = delete;

    /// Writes a MIF file and its MID file; \a path ends in ".mif". A file that cannot be written ends the program.
    void writeMif(const QString &path) const;
    /// Writes a DXF file. A file that cannot be written ends the program.
    void writeDxf(const QString &path) const;

private:
    struct Drawing;
    const std::unique_ptr<const Drawing> m_drawing;
};
