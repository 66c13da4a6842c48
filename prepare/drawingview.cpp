#include "drawingview.h"

#include "drawingcopy.h"
#include "drawingpairs.h"

#include <cpl_conv.h>
#include <cpl_vsi.h>

#include <array>

namespace {

// GDAL's files in memory belong to the process.
const char *const strCopy = "/vsimem/importprepare/symbols.dxf";

constexpr std::array<std::array<const char *, 2>, 2> settings{
    {{"DXF_MERGE_BLOCK_GEOMETRIES", "FALSE"},
     // A file that consists of nested blocks could otherwise hold any number of features.
     {"DXF_FEATURE_LIMIT_PER_BLOCK", "1000000"}}};

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
    if (!m_symbols.edits().empty()) {
        m_fileName = strCopy;
        std::vector<DrawingEdit> edits;
        for (const PointSymbols::Edit &edit : m_symbols.edits())
            edits.push_back({edit.position, edit.length, edit.keyword, edit.line, 0});
        if (!copyWithEdits(fileName, m_fileName, edits))
            return false;
    }
    return !mayHaveKeyword(m_fileName, {"INSERT", "DIMENSION"}) || m_copies.read(m_fileName);
}
