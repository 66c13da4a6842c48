#include "mapimport_codepage.h"

#include <QString>
#include <QTextCodec>

#include <algorithm>
#include <cstring>

namespace {

/// How many bytes are looked at together.
constexpr int blockSize = 8;

constexpr quint64 eight = 0x0101010101010101; ///< times a byte: a block of it
constexpr quint64 highBits = eight << 7U;

/// Not zero when one of the bytes of \a block is: to subtract one from it borrows into its highest bit.
constexpr quint64 zeroByteIn(quint64 block)
{
    return (block - eight) & ~block & highBits;
}

/// True of the bytes that mean the same in every code page. Those of IBM exchange some control characters.
constexpr bool isCommon(int byte)
{
    return byte < 0x7F && (byte & 0xF8) != 0x18;
}

/// True when all bytes of a block are common and none is a carriage return.
bool isPlain(const char *block)
{
    quint64 word = 0;
    std::memcpy(&word, block, blockSize);
    const quint64 exchanged = zeroByteIn(word ^ (eight * 0x7F)) | zeroByteIn((word & (eight * 0xF8)) ^ (eight * 0x18));
    return ((word & highBits) | exchanged | zeroByteIn(word ^ (eight * '\r'))) == 0;
}

} // namespace

CodePage::CodePage(const QTextCodec *codec)
{
    for (int byte = 0; byte < 256 && m_isValid; ++byte) {
        const char c = static_cast<char>(byte);
        QTextCodec::ConverterState state;
        const QString text = codec->toUnicode(&c, 1, &state);
        m_isValid = text.size() == 1 && (!isCommon(byte) || text.at(0) == QChar(byte));
        m_characters.at(static_cast<size_t>(byte)) = m_isValid ? text.at(0) : QChar();
    }
}

void CodePage::appendTo(QString &text, const char *bytes, int size) const
{
    const int before = text.size();
    text.resize(before + size);
    QChar *to = text.data() + before;
    while (size > 0) {
        const int count = std::min(size, blockSize);
        if (count == blockSize && isPlain(bytes)) {
            to = std::transform(bytes, bytes + blockSize, to, [](char c) { return QLatin1Char(c); });
        } else {
            for (int i = 0; i < count; ++i) {
                if (bytes[i] != '\r')
                    *to++ = m_characters[static_cast<uchar>(bytes[i])];
            }
        }
        bytes += count;
        size -= count;
    }
    text.resize(static_cast<int>(to - text.constData()));
}
