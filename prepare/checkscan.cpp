#include "checkscan.h"

#include "checkcharset.h"
#include "checkscan_reader.h"
#include "digit.h"
#include "encodingguess.h"

#include <QFileInfo>
#include <QTextCodec>

#include <algorithm>

namespace {

bool hasByteOrderMark(QFile &file)
{
    const QByteArray head = file.peek(4);
    return head.startsWith("\xEF\xBB\xBF") || head.startsWith("\xFF\xFE") || head.startsWith("\xFE\xFF") ||
           head == QByteArray("\0\0\xFE\xFF", 4);
}

QByteArray bytesOf(QStringView text)
{
    return text.toLatin1();
}

} // namespace

bool ScanReader::open(const QString &fileName)
{
    m_file.setFileName(fileName);
    if (!QFileInfo(m_file).isFile() || !m_file.open(QIODevice::ReadOnly | QIODevice::Text))
        return false;
    m_isUnicode = hasByteOrderMark(m_file);
    m_stream.setDevice(&m_file, QTextCodec::codecForName("ISO-8859-1"));
    return true;
}

bool ScanReader::readLine()
{
    if (m_stream.atEnd())
        return false;
    m_line = trimmedLine(m_stream.readLineView());
    ++m_lineNumber;
    return true;
}

qint64 ScanReader::countLines()
{
    while (readLine()) {
    }
    return m_lineNumber;
}

QString ScanReader::decodedWhole(QStringView text, QTextCodec *codec) const
{
    return m_isUnicode ? text.toString() : codec->toUnicode(bytesOf(text));
}

QString ScanReader::shown(QStringView text, QTextCodec *chosen, QTextCodec *declared) const
{
    constexpr int maxShown = 60;
    constexpr int maxBytes = 4 * maxShown; // of one character, at most four
    const QStringView part = text.left(maxBytes);
    const QString whole = decodedWhole(part, readableCodec(bytesOf(text), chosen, declared));
    return whole.size() > maxShown ? whole.left(maxShown) + QChar(0x2026) : whole;
}

bool isNonAscii(QStringView text)
{
    return std::any_of(text.begin(), text.end(), [](QChar c) { return c.unicode() >= 0x80; });
}

bool hasDecimalComma(QStringView text)
{
    const bool hasSign = text.startsWith(QLatin1Char('-')) || text.startsWith(QLatin1Char('+'));
    const auto *const begin = text.begin() + (hasSign ? 1 : 0);
    const auto *const comma = std::find_if_not(begin, text.end(), isDigit);
    return comma != begin && text.end() - comma > 1 && *comma == QLatin1Char(',') &&
           std::all_of(comma + 1, text.end(), isDigit);
}

void addNonAsciiName(QStringView name, FileFacts &facts)
{
    constexpr int maxSize = 10000;
    const QByteArray bytes = bytesOf(name);
    facts.namesAreUtf8 = facts.namesAreUtf8 && isUtf8(bytes);
    if (facts.nonAsciiNames.size() + bytes.size() < maxSize)
        facts.nonAsciiNames += bytes + '\n';
}

QString midFileName(const QString &mifFile)
{
    return mifFile.left(mifFile.size() - 1) + QLatin1Char('d');
}

FileFacts scanFile(const QString &fileName, const CheckOptions &options, const PointSymbols &symbols,
                   const QSet<QString> &fillings)
{
    FileFacts facts;
    ScanReader reader;
    facts.isReadable = reader.open(fileName);
    if (!facts.isReadable)
        return facts;
    facts.isUnicode = reader.isUnicode();
    if (formatOf(fileName) == Format::Dxf)
        scanDxf(reader, options, symbols, fillings, facts);
    else
        scanMif(reader, fileName, options, facts);
    facts.lineCount = reader.countLines();
    return facts;
}
