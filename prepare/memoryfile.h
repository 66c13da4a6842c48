#pragma once

#include <QByteArray>

/// Makes \a bytes a file in GDAL's memory. GDAL keeps using the bytes, so they must stay until the file is removed with
/// VSIUnlink().
void addMemoryFile(const char *name, const QByteArray &bytes);
