#pragma once

#include <QByteArray>
#include <QString>

/// True if \a start, the first bytes of a file, begin a binary DXF file.
bool isBinaryDxf(const QByteArray &start);

/// Converts binary DXF to the pairs of lines of ASCII DXF.
///
/// Returns false if \a bytes are truncated or damaged. \a ascii then holds the pairs before that place, and \a error is
/// an English message that names it.
bool binaryDxfToAscii(const QByteArray &bytes, QByteArray &ascii, QString &error);
