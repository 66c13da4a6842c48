#include "mapimport_lines.h"

#include "digit.h"
#include "mapimport_decoder.h"

#include <QIODevice>
#include <QString>

namespace {

/// Same chunk size as QTextStream: how a truncated character or a lone CR decodes depends on the chunk boundaries.
constexpr int chunkSize = 16384;

/// With at most 15 digits both the integer and the power of ten are exact, so a single division rounds correctly.
constexpr int maxDigits = 15;

constexpr double powersOfTen[maxDigits] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6, 1e7,
                                           1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14};

QString rawString(QStringView view)
{
    return QString::fromRawData(view.data(), static_cast<int>(view.size()));
}

/// Appends at most \a limit decimal digits at \a i to \a number and advances \a i. Returns how many were read.
int readDigits(QStringView word, int &i, int limit, qint64 &number)
{
    const int begin = i;
    for (; i < word.size() && i - begin < limit && isDigit(word[i]); ++i)
        number = number * 10 + (word[i].unicode() - u'0');
    return i - begin;
}

} // namespace

LineReader::LineReader() = default;

LineReader::~LineReader() = default;

void LineReader::setDevice(QIODevice *device, QTextCodec *codec)
{
    m_device = device;
    m_codec = codec;
    m_detectUnicode = true;
    m_exhausted = false;
    discardText();
}

void LineReader::rewind()
{
    m_device->seek(0);
    m_exhausted = false;
    discardText();
}

void LineReader::discardText()
{
    m_state = std::make_unique<QTextCodec::ConverterState>();
    m_next = nullptr;
    m_end = nullptr;
}

bool LineReader::atEnd() const
{
    return m_next == m_end && (m_exhausted || m_device->atEnd());
}

// Decodes the next chunk. Removes CRs after decoding: the device's text mode works on bytes and would corrupt UTF-16.
bool LineReader::fill()
{
    char bytes[chunkSize];
    m_device->setTextModeEnabled(false);
    const qint64 count = m_device->read(bytes, chunkSize);
    m_device->setTextModeEnabled(true);
    m_exhausted = count <= 0;
    if (m_exhausted)
        return false;
    const int size = static_cast<int>(count);
    if (m_detectUnicode) { // a byte-order mark overrides the chosen codec
        m_codec = QTextCodec::codecForUtfText(QByteArray::fromRawData(bytes, size), m_codec);
        m_decoder = std::make_unique<SingleByteDecoder>(m_codec);
    }
    m_detectUnicode = false;
    if (m_decoder->isValid())
        m_decoder->appendTo(m_buffer, bytes, size);
    else
        m_buffer += m_codec->toUnicode(bytes, size, m_state.get()).remove(QLatin1Char('\r'));
    return true;
}

// Slow path: the line continues beyond the buffer.
QStringView LineReader::readLongLine()
{
    m_previousBuffer.swap(m_buffer); // reuses the memory of both
    m_buffer.setUnicode(m_next, static_cast<int>(m_end - m_next));
    int searched = 0;
    int end = -1;
    do {
        end = m_buffer.indexOf(QLatin1Char('\n'), searched);
        searched = m_buffer.size();
    } while (end < 0 && fill());
    m_next = m_buffer.constData() + (end < 0 ? searched : end + 1);
    m_end = m_buffer.constData() + searched;
    return m_next == m_buffer.constData() ? QStringView() : QStringView(m_buffer).left(end < 0 ? searched : end);
}

void Tokens::split(QStringView line)
{
    const QChar *const end = line.end();
    m_size = 0;
    for (const QChar *c = line.begin(); c != end;) {
        const QChar *const begin = c;
        while (c != end && !isSpace(*c))
            ++c;
        if (c != begin && m_size < maxKept)
            m_tokens[m_size] = QStringView(begin, c);
        if (c != begin)
            ++m_size;
        while (c != end && isSpace(*c))
            ++c;
    }
    if (m_size == 0)
        m_tokens[m_size++] = line;
}

void toUpper(QStringView word, QString &upper)
{
    upper.resize(static_cast<int>(word.size()));
    QChar *to = upper.data();
    for (const QChar c : word) {
        if (c.unicode() >= 0x80) {
            upper = word.toString().toUpper();
            return;
        }
        *to++ = c >= QLatin1Char('a') && c <= QLatin1Char('z') ? QChar(c.unicode() - 0x20) : c;
    }
}

double toDouble(QStringView word, bool &ok)
{
    int i = 0;
    const bool negative = !word.isEmpty() && word[0] == QLatin1Char('-');
    if (negative)
        ++i;
    qint64 number = 0;
    const int whole = readDigits(word, i, maxDigits, number);
    int decimals = 0;
    if (whole > 0 && i < word.size() && word[i] == QLatin1Char('.')) {
        ++i;
        decimals = readDigits(word, i, maxDigits - whole, number);
    }
    if (whole == 0 || i != word.size())
        return rawString(word).toDouble(&ok);
    ok = true;
    const double value = static_cast<double>(number) / powersOfTen[decimals];
    return negative ? -value : value;
}

int toInt(QStringView word, bool &ok)
{
    return rawString(word).toInt(&ok);
}
