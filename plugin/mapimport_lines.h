#pragma once

#include <QStringView>
#include <QTextCodec>
#include <QtAlgorithms>

#include <algorithm>
#include <cstring>
#include <memory>

class SingleByteDecoder;
class QIODevice;

/// As QChar::isSpace(); what ASCII prints is told with one comparison, European letters with one more.
inline bool isSpace(QChar c)
{
    const ushort u = c.unicode();
    const bool isPrinted = (u > 0x20 && u < 0x7F) || (u >= 0x100 && u < 0x1680);
    return !isPrinted && c.isSpace();
}

/// The first line feed from \a begin on, or \a end.
inline const QChar *findLineFeed(const QChar *begin, const QChar *end)
{
#if Q_BYTE_ORDER == Q_LITTLE_ENDIAN
    // Four characters at a time, in which the processor foresees better where a line ends.
    constexpr quint64 each = 0x0001000100010001;
    for (; end - begin >= 4; begin += 4) {
        quint64 block = 0;
        std::memcpy(&block, begin, sizeof block);
        block ^= each * '\n';
        const quint64 zeros = (block - each) & ~block & (each << 15U); // the lowest one is true
        if (zeros != 0)
            return begin + qCountTrailingZeroBits(zeros) / 16;
    }
#endif
    return std::find(begin, end, QLatin1Char('\n'));
}

/// Reads a text line by line, as QTextStream::readLine() does but without a string for each line.
///
/// Line ends, byte-order marks and encodings come out as with a QTextStream that has been given the codec after its
/// device, which has been opened in text mode.
class LineReader
{
public:
    LineReader();
    ~LineReader();

    /// Reads \a device, which stays the caller's, from where it stands.
    void setDevice(QIODevice *device, QTextCodec *codec);

    QIODevice *device() const { return m_device; }
    QTextCodec *codec() const { return m_codec; }

    /// Goes back to the start of the device.
    void rewind();

    bool atEnd() const;

    /// The next line without its end; null at the end of the text.
    QString readLine() { return readLineView().toString(); }

    /// The next line in place; null at the end of the text. It is valid until the next line but one is read.
    QStringView readLineView()
    {
        const QChar *const begin = m_next;
        const QChar *const end = findLineFeed(begin, m_end);
        if (end == m_end)
            return readLongLine();
        m_next = end + 1;
        return {begin, end};
    }

private:
    void forgetText();
    QStringView readLongLine();
    bool fill();

    QIODevice *m_device = nullptr;
    QTextCodec *m_codec = nullptr;
    bool m_detectUnicode = true; ///< the text may still begin with a byte-order mark
    bool m_exhausted = false;    ///< the device gives no more, be it at its end or broken
    std::unique_ptr<QTextCodec::ConverterState> m_state;
    std::unique_ptr<const SingleByteDecoder> m_decoder; ///< of the codec, from the first piece on
    QString m_buffer;         ///< what has been decoded, from the line that m_previousBuffer does not hold to its end
    QString m_previousBuffer; ///< the piece before, in which the line before may still be looked at
    const QChar *m_next = nullptr; ///< where the next line begins in m_buffer
    const QChar *m_end = nullptr;  ///< the end of m_buffer
};

/// The words of a line, which stand between white space. They point into the line.
class Tokens
{
public:
    /// Splits \a line; an empty line has one empty word.
    void split(QStringView line);

    int size() const { return m_size; }

    /// The word at \a i, from 0; null when the line has fewer, or when it is past those that any line needs.
    QStringView operator[](int i) const { return i < m_size && i < maxKept ? m_words[i] : QStringView(); }

private:
    static constexpr int maxKept = 5;

    int m_size = 0;
    QStringView m_words[maxKept];
};

/// \a line without white space at both ends.
inline QStringView trimmedLine(QStringView line)
{
    const QChar *begin = line.begin();
    const QChar *end = line.end();
    while (begin != end && isSpace(*begin))
        ++begin;
    while (begin != end && isSpace(end[-1]))
        --end;
    return {begin, end};
}

/// Makes \a upper the text of \a word as QString::toUpper() gives it.
void toUpper(QStringView word, QString &upper);

/// As QString::toDouble() with the text of \a word; plain decimal numbers are read without a detour.
double toDouble(QStringView word, bool &ok);

/// As QString::toInt() with the text of \a word.
int toInt(QStringView word, bool &ok);
