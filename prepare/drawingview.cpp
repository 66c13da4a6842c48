#include "drawingview.h"

#include <cpl_conv.h>
#include <cpl_vsi.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>

namespace {

// GDAL's files in memory belong to the process.
const char *const strCopy = "/vsimem/importprepare/symbols.dxf";

constexpr std::array<std::array<const char *, 2>, 2> settings{
    {{"DXF_MERGE_BLOCK_GEOMETRIES", "FALSE"},
     // A file that consists of nested blocks could otherwise hold any number of features.
     {"DXF_FEATURE_LIMIT_PER_BLOCK", "1000000"}}};

struct Closer
{
    void operator()(VSILFILE *file) const { VSIFCloseL(file); }
};

using File = std::unique_ptr<VSILFILE, Closer>;

// Copies \a count bytes, or all that remain if it is negative.
bool copyBytes(VSILFILE *from, VSILFILE *to, qint64 count)
{
    std::array<char, 1 << 16> buffer{};
    while (count != 0) {
        const auto room = static_cast<qint64>(buffer.size());
        const auto wanted = static_cast<std::size_t>(count < 0 ? room : std::min(count, room));
        const std::size_t size = VSIFReadL(buffer.data(), 1, wanted, from);
        if (VSIFWriteL(buffer.data(), 1, size, to) != size)
            return false;
        if (size < wanted)
            return count < 0;
        count -= count < 0 ? 0 : static_cast<qint64>(size);
    }
    return true;
}

} // namespace

DrawingView::DrawingView()
{
    for (const auto &setting : settings)
        CPLSetThreadLocalConfigOption(setting[0], setting[1]);
}

DrawingView::~DrawingView()
{
    for (const auto &setting : settings)
        CPLSetThreadLocalConfigOption(setting[0], nullptr);
    VSIUnlink(strCopy);
}

bool DrawingView::copy(const QByteArray &fileName)
{
    const File from(VSIFOpenL(fileName.constData(), "rb"));
    const File to(VSIFOpenL(strCopy, "wb"));
    if (!from || !to)
        return false;
    qint64 position = 0;
    for (const PointSymbols::Edit &edit : m_symbols.edits()) {
        if (!copyBytes(from.get(), to.get(), edit.position - position))
            return false;
        const std::size_t size = std::strlen(edit.keyword);
        if (VSIFWriteL(edit.keyword, 1, size, to.get()) != size)
            return false;
        position = edit.position + edit.length;
        VSIFSeekL(from.get(), static_cast<vsi_l_offset>(position), SEEK_SET);
    }
    return copyBytes(from.get(), to.get(), -1);
}

bool DrawingView::open(const QByteArray &fileName, bool takesSymbols)
{
    m_fileName = fileName;
    // The search also refuses drawings with too many insertions.
    if (!m_symbols.find(fileName))
        return false;
    if (!takesSymbols)
        m_symbols = {};
    if (m_symbols.edits().empty())
        return true;
    m_fileName = strCopy;
    return copy(fileName);
}
