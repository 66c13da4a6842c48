#pragma once

#include <QByteArray>

/// The encoding of the texts of an input.
struct SourceEncoding
{
    QByteArray name;        ///< of a codec of Qt; empty if GDAL knows it or the texts are ASCII
    bool isGuessed = false; ///< neither the user nor the file names it
};

/// Guesses the encoding of \a bytes. \a declared is the encoding that the file names; empty: none.
///
/// Returns the name of a codec of Qt; empty if the bytes are ASCII.
QByteArray guessEncoding(const QByteArray &bytes, const QByteArray &declared);

/// Same, with the information whether the file names the encoding.
SourceEncoding sourceEncoding(const QByteArray &bytes, const QByteArray &declared);

/// True if \a bytes are ASCII only.
bool isAscii(const QByteArray &bytes);

/// True if \a bytes are correct UTF-8.
bool isUtf8(const QByteArray &bytes);
