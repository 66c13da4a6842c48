#pragma once

#include <QByteArray>
#include <QString>

/// True if \a start, the first bytes of a file, begin a binary DXF file.
bool isBinaryDxf(const QByteArray &start);

/// Converts binary DXF to the pairs of lines of ASCII DXF.
///
/// Returns false if \a bytes end too early or are damaged; then \a ascii has the pairs before that place and \a error
/// says in English where it is.
bool binaryDxfToAscii(const QByteArray &bytes, QByteArray &ascii, QString &error);
