#include "mapimport_decoder.h"

#include <QString>
#include <QTextCodec>

namespace {

QString decoded(const QTextCodec *codec, const char *bytes, int size)
{
    QTextCodec::ConverterState state;
    return codec->toUnicode(bytes, size, &state);
}

QChar firstOf(const QString &text)
{
    return text.isEmpty() ? QChar() : text.at(0);
}

} // namespace

SingleByteDecoder::SingleByteDecoder(const QTextCodec *codec)
{
    std::array<char, 256> bytes;
    QString table;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<char>(i);
        m_characters[i] = firstOf(decoded(codec, &bytes[i], 1));
        table += m_characters[i];
    }
    // A stateful or multi-byte codec decodes bytes differently after others; decoding all in one call detects it.
    m_isValid = decoded(codec, bytes.data(), static_cast<int>(bytes.size())) == table;
}

void SingleByteDecoder::appendTo(QString &text, const char *bytes, int size) const
{
    const int before = text.size();
    text.resize(before + size);
    QChar *to = text.data() + before;
    for (const char *byte = bytes; byte != bytes + size; ++byte) {
        const QChar c = m_characters[static_cast<uchar>(*byte)];
        if (c != QLatin1Char('\r'))
            *to++ = c;
    }
    text.resize(static_cast<int>(to - text.constData()));
}
