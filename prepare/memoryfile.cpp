#include "memoryfile.h"

#include <cpl_vsi.h>

void addMemoryFile(const char *name, const QByteArray &bytes)
{
    // The file is never written to.
    auto *const data = reinterpret_cast<GByte *>(const_cast<char *>(bytes.constData()));
    VSILFILE *const file = VSIFileFromMemBuffer(name, data, static_cast<vsi_l_offset>(bytes.size()), FALSE);
    if (file != nullptr)
        VSIFCloseL(file);
}
