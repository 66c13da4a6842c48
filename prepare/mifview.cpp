#include "mifview.h"

#include "memoryfile.h"

#include <cpl_vsi.h>

namespace {

const char *const strMif = "/vsimem/importprepare/source.mif";
const char *const strMid = "/vsimem/importprepare/source.mid";

} // namespace

MifView::~MifView()
{
    VSIUnlink(strMif);
    VSIUnlink(strMid);
}

void MifView::show(const MifCopy &copy)
{
    addMemoryFile(strMif, copy.mif());
    if (!copy.mid().isEmpty())
        addMemoryFile(strMid, copy.mid());
}

const char *MifView::fileName() const
{
    return strMif;
}
