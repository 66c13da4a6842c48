// Compares LineReader with QTextStream. Input:
//
//     0              encoding
//     0              number of lines to read before rewinding
//     0              1: the text begins near the end of the first decoded chunk
//     00             distance from that end in bytes
//     ...            the text

#include "input.h"
#include "mapimport_lines.h"
#include "require.h"

#include <QBuffer>
#include <QStringList>
#include <QTextStream>

#include <limits>

namespace {

template <class Stream>
QStringList readLines(Stream &stream, int maxCount)
{
    QStringList lines;
    while (!stream.atEnd() && lines.size() < maxCount)
        lines.append(stream.readLine());
    return lines;
}

void compareReaders(const QByteArray &bytes, QTextCodec *codec, int linesBeforeRewind)
{
    QBuffer device;
    device.setData(bytes);
    device.open(QIODevice::ReadOnly | QIODevice::Text);
    QTextStream stream(&device);
    stream.setCodec(codec);
    const QStringList expectedBefore = readLines(stream, linesBeforeRewind);
    device.seek(0);
    stream.seek(0);
    const QStringList expected = readLines(stream, std::numeric_limits<int>::max());

    device.seek(0);
    LineReader reader;
    reader.setDevice(&device, codec);
    require(readLines(reader, linesBeforeRewind) == expectedBefore, "the first lines match QTextStream");
    reader.rewind();
    require(readLines(reader, std::numeric_limits<int>::max()) == expected,
            "the lines after a rewind match QTextStream");
    require(reader.atEnd() && reader.readLine().isNull(), "no line follows the last one");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    constexpr int chunkSize = 16384;
    static const char *const encodings[] = {"UTF-8",  "Windows-1251", "IBM866", "UTF-16LE",
                                            "KOI8-R", "UTF-16",       "UTF-32", "Shift_JIS"};
    Input input(data, size);
    QTextCodec *const codec = QTextCodec::codecForName(input.oneOf(encodings));
    const int linesBeforeRewind = input.option(10);
    const bool isAtChunkEnd = input.flag();
    const int offset = input.option(10) * 10 + input.option(10);
    QByteArray bytes;
    if (isAtChunkEnd) {
        QTextCodec::ConverterState noHeader(QTextCodec::IgnoreHeader);
        const QString padding = QString(chunkSize, QLatin1Char('x'));
        bytes = codec->fromUnicode(padding.constData(), padding.size(), &noHeader).left(chunkSize - offset);
    }
    compareReaders(bytes + input.files(1).first(), codec, linesBeforeRewind);
    return 0;
}
