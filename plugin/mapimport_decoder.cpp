#include "mapimport_decoder.h"

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

/// True of the control characters that some code pages, those of IBM, exchange with each other.
constexpr bool isExchangeable(int byte)
{
    return byte == 0x7F || (byte & 0xF8) == 0x18;
}

constexpr bool hasExchangeable(quint64 block)
{
    return (zeroByteIn(block ^ (eight * 0x7F)) | zeroByteIn((block & (eight * 0xF8)) ^ (eight * 0x18))) != 0;
}

/// True when no byte of \a block is above those of ASCII and none is a carriage return.
constexpr bool isAscii(quint64 block)
{
    return ((block & highBits) | zeroByteIn(block ^ (eight * '\r'))) == 0;
}

} // namespace

SingleByteDecoder::SingleByteDecoder(const QTextCodec *codec)
{
    for (int byte = 0; byte < 256 && m_isValid; ++byte) {
        const char c = static_cast<char>(byte);
        QTextCodec::ConverterState state;
        const QString text = codec->toUnicode(&c, 1, &state);
        const bool isItself = text.size() == 1 && text.at(0) == QChar(byte);
        m_isValid = text.size() == 1 && (isItself || byte >= 0x80 || isExchangeable(byte));
        m_permutesControls = m_permutesControls || (byte < 0x80 && !isItself);
        m_characters.at(static_cast<std::size_t>(byte)) = m_isValid ? text.at(0) : QChar();
    }
}

// True when the bytes of a block stand for themselves and none is a carriage return.
bool SingleByteDecoder::isPlain(const char *bytes) const
{
    quint64 block = 0;
    std::memcpy(&block, bytes, blockSize);
    return isAscii(block) && !(m_permutesControls && hasExchangeable(block));
}

void SingleByteDecoder::appendTo(QString &text, const char *bytes, int size) const
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
