#pragma once

#include <QStringList>

/// The MIF and DXF files in \a folder and its subfolders, in alphabetical order.
///
/// Folders behind symbolic links are not searched. So that nothing is left out silently, all names with these suffixes
/// are included, even of broken links and pipes, and so are folders that cannot be read. Names that cannot be decoded
/// contain replacement characters.
QStringList filesIn(const QString &folder);
