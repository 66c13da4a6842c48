// A binary DXF file is a sentinel of 22 bytes and then pairs of a group code and a value:
//
//     code     two bytes, little-endian; in old files one byte, or 255 and two bytes
//     value    a text that ends in a zero byte, a little-endian number, or a length byte and as many bytes
//
// The code determines the type of the value.

#include "binarydxf.h"

#include <QtEndian>

#include <algorithm>
#include <cstring>
#include <iterator>

namespace {

const QByteArray sentinel("AutoCAD Binary DXF\r\n\x1a\0", 22);

enum class Type { Text, Double, Int8, Int16, Int32, Int64, Bytes, Unknown };

struct CodeRange
{
    int last; ///< the range begins after the last code of the previous one
    Type type;
};

constexpr uchar extendedCode = 255; ///< in old files, before a code of two bytes

constexpr CodeRange codeRanges[] = {
    {-1, Type::Unknown}, {9, Type::Text},      {59, Type::Double},   {79, Type::Int16},    {89, Type::Unknown},
    {99, Type::Int32},   {109, Type::Text},    {149, Type::Double},  {159, Type::Unknown}, {169, Type::Int64},
    {179, Type::Int16},  {209, Type::Unknown}, {239, Type::Double},  {269, Type::Unknown}, {289, Type::Int16},
    {299, Type::Int8},   {309, Type::Text},    {319, Type::Bytes},   {369, Type::Text},    {389, Type::Int16},
    {399, Type::Text},   {409, Type::Int16},   {419, Type::Text},    {429, Type::Int32},   {439, Type::Text},
    {459, Type::Int32},  {469, Type::Double},  {481, Type::Text},    {998, Type::Unknown}, {1003, Type::Text},
    {1004, Type::Bytes}, {1009, Type::Text},   {1059, Type::Double}, {1070, Type::Int16},  {1071, Type::Int32},
};

Type typeOf(int code)
{
    const auto *const range = std::lower_bound(std::begin(codeRanges), std::end(codeRanges), code,
                                               [](const CodeRange &r, int value) { return r.last < value; });
    return range == std::end(codeRanges) ? Type::Unknown : range->type;
}

/// True if the codes of a file have two bytes. \a start are its first bytes after the sentinel.
///
/// The first code is 0, or 999 for a comment. Its high byte is at most 3, but the letter of a text that follows a code
/// of one byte is printable.
bool hasWideCodes(const QByteArray &start)
{
    return start.size() == 2 && static_cast<uchar>(start.at(0)) != extendedCode &&
           static_cast<uchar>(start.at(1)) < ' ';
}

/// Reads the pairs of a binary file and appends them to a text.
class BinaryReader
{
public:
    BinaryReader(const QByteArray &bytes, QByteArray &ascii)
        : m_bytes(bytes),
          m_ascii(ascii),
          m_at(sentinel.size()),
          m_hasWideCodes(hasWideCodes(bytes.mid(m_at, 2)))
    {
    }

    int position() const { return m_at; }
    bool atEnd() const { return m_at >= m_bytes.size(); }

    bool readPair()
    {
        int code = 0;
        QByteArray value;
        if (!readCode(code) || !readValue(typeOf(code), value))
            return false;
        m_ascii += QByteArray::number(code).rightJustified(3) + '\n' + value + '\n';
        m_isComplete = code == 0 && value == "EOF";
        return true;
    }

    bool isComplete() const { return m_isComplete; }

private:
    template <typename Number>
    bool readNumber(Number &number)
    {
        if (m_bytes.size() - m_at < static_cast<int>(sizeof number))
            return false;
        number = qFromLittleEndian<Number>(m_bytes.constData() + m_at);
        m_at += static_cast<int>(sizeof number);
        return true;
    }

    template <typename Number>
    bool readInteger(QByteArray &value)
    {
        Number number = 0;
        const bool ok = readNumber(number);
        value = QByteArray::number(static_cast<qlonglong>(number));
        return ok;
    }

    bool readCode(int &code)
    {
        quint8 narrow = extendedCode;
        if (!m_hasWideCodes && !readNumber(narrow))
            return false;
        qint16 wide = narrow;
        const bool ok = narrow != extendedCode || readNumber(wide);
        code = wide;
        return ok;
    }

    // With 17 digits the text reads back as the same number.
    bool readDouble(QByteArray &value)
    {
        double number = 0;
        const bool ok = readNumber(number);
        value = QByteArray::number(number, 'g', 17);
        return ok;
    }

    // A line end within a text would shift all following pairs.
    bool readText(QByteArray &value)
    {
        const int end = m_bytes.indexOf('\0', m_at);
        if (end < 0)
            return false;
        value = m_bytes.mid(m_at, end - m_at);
        std::replace_if(
            value.begin(), value.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
        m_at = end + 1;
        return true;
    }

    bool readBytes(QByteArray &value)
    {
        quint8 count = 0;
        if (!readNumber(count) || m_bytes.size() - m_at < count)
            return false;
        value = m_bytes.mid(m_at, count).toHex().toUpper();
        m_at += count;
        return true;
    }

    bool readValue(Type type, QByteArray &value)
    {
        switch (type) {
        case Type::Text:
            return readText(value);
        case Type::Double:
            return readDouble(value);
        case Type::Int8:
            return readInteger<qint8>(value);
        case Type::Int16:
            return readInteger<qint16>(value);
        case Type::Int32:
            return readInteger<qint32>(value);
        case Type::Int64:
            return readInteger<qint64>(value);
        case Type::Bytes:
            return readBytes(value);
        case Type::Unknown:
            break;
        }
        return false;
    }

    const QByteArray &m_bytes;
    QByteArray &m_ascii;
    int m_at;
    bool m_hasWideCodes;
    bool m_isComplete = false;
};

} // namespace

bool isBinaryDxf(const QByteArray &start)
{
    return start.startsWith(sentinel);
}

bool binaryDxfToAscii(const QByteArray &bytes, QByteArray &ascii, QString &error)
{
    ascii.clear();
    BinaryReader reader(bytes, ascii);
    while (!reader.isComplete()) {
        const int before = reader.position();
        if (reader.atEnd() || !reader.readPair()) {
            error = QStringLiteral("The binary DXF file is damaged or ends early at byte %1.").arg(before);
            return false;
        }
    }
    return true;
}
