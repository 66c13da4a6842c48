#pragma once

#include <QByteArray>

/// Guesses the encoding of \a bytes, of which \a declared is the one that the file names (empty: none).
///
/// Returns the name of a codec of Qt; empty if the bytes are ASCII.
QByteArray guessEncoding(const QByteArray &bytes, const QByteArray &declared);

/// True if \a bytes are ASCII only.
bool isAscii(const QByteArray &bytes);

/// True if \a bytes are correct UTF-8.
bool isUtf8(const QByteArray &bytes);
