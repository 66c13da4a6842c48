#include "drawingview.h"

#include "drawingcopy.h"
#include "drawingpairs.h"

#include <cpl_conv.h>
#include <cpl_vsi.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

namespace {

// GDAL's files in memory belong to the process.
const char *const strCopy = "/vsimem/importprepare/symbols.dxf";

constexpr std::array<std::array<const char *, 2>, 2> settings{
    {{"DXF_MERGE_BLOCK_GEOMETRIES", "FALSE"},
     // A file that consists of nested blocks could otherwise hold any number of features.
     {"DXF_FEATURE_LIMIT_PER_BLOCK", "1000000"}}};

// GDAL's text ends at the first NUL. If a value before it ends in CR, GDAL waits for the next character for ever.
// Returns the position behind that CR in bytes, -1: there is none, or the file cannot be read.
qint64 endBehindCr(const QByteArray &fileName)
{
    VSILFILE *const file = VSIFOpenL(fileName.constData(), "rb");
    if (file == nullptr)
        return -1;
    std::vector<char> buffer(1 << 20);
    qint64 end = 0;
    char last = 0;
    bool isEnded = false;
    while (!isEnded) {
        const std::size_t size = VSIFReadL(buffer.data(), 1, buffer.size(), file);
        const void *const nul = std::memchr(buffer.data(), 0, size);
        const auto length =
            nul == nullptr ? static_cast<std::ptrdiff_t>(size) : static_cast<const char *>(nul) - buffer.data();
        isEnded = length == 0 || nul != nullptr;
        last = length == 0 ? last : buffer[static_cast<std::size_t>(length) - 1];
        end += length;
    }
    VSIFCloseL(file);
    return last == '\r' ? end : -1;
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

bool DrawingView::open(const QByteArray &fileName, bool takesSymbols)
{
    m_fileName = fileName;
    if (!m_symbols.find(fileName))
        return false;
    if (!takesSymbols)
        m_symbols = {};
    std::vector<DrawingEdit> edits;
    for (const PointSymbols::Edit &edit : m_symbols.edits())
        edits.push_back({edit.position, edit.length, edit.keyword, edit.line, 0});
    const qint64 end = endBehindCr(fileName);
    if (end >= 0) {
        const auto next =
            std::find_if(edits.begin(), edits.end(), [end](const DrawingEdit &edit) { return edit.position >= end; });
        edits.insert(next, {end, 0, "\n", 0, 0});
    }
    if (!edits.empty()) {
        m_fileName = strCopy;
        if (!copyWithEdits(fileName, m_fileName, edits))
            return false;
    }
    return !mayHaveKeyword(m_fileName, {"INSERT", "DIMENSION"}) || m_copies.read(m_fileName);
}
