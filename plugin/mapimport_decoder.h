#pragma once

#include <QChar>

#include <array>

class QString;
class QTextCodec;

/// Decodes the text of a code page: each byte is one character, and what ASCII prints stands for itself.
///
/// Nearly all maps are written in one, and a codec takes its time.
class SingleByteDecoder
{
public:
    /// The code page of \a codec, if it has one.
    explicit SingleByteDecoder(const QTextCodec *codec);

    /// False when the codec is of another kind: then nothing can be decoded here.
    bool isValid() const { return m_isValid; }

    /// Appends to \a text what the \a size bytes from \a bytes on say, without the carriage returns.
    void appendTo(QString &text, const char *bytes, int size) const;

private:
    bool isPlain(const char *bytes) const;

    bool m_isValid = true;
    bool m_permutesControls = false; ///< some control characters do not stand for themselves
    std::array<QChar, 256> m_characters;
};
