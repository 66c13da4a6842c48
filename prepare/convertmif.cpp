#include "convertmif.h"

#include "convertmifcurves.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QRegularExpression>
#include <QTextCodec>

#include <algorithm>
#include <cmath>

namespace {

// Both copies and their decoded texts must stay below the limit of Qt's containers.
constexpr qint64 maxSize = 500LL * 1024 * 1024;

// Calls visit with each line, without its line end, until it returns false. Returns the position after that line.
template <typename Visit>
int forEachLine(const QByteArray &text, int begin, const Visit &visit)
{
    while (begin < text.size()) {
        int end = text.indexOf('\n', begin);
        end = end < 0 ? text.size() : end;
        const int length = end - begin - (end > begin && text.at(end - 1) == '\r' ? 1 : 0);
        const QByteArray line = text.mid(begin, length);
        begin = end + 1;
        if (!visit(line))
            break;
    }
    return std::min(begin, text.size());
}

QByteArray firstWord(const QByteArray &line)
{
    const QByteArray trimmed = line.trimmed();
    int end = 0;
    while (end < trimmed.size() && trimmed.at(end) != ' ' && trimmed.at(end) != '\t')
        ++end;
    return trimmed.left(end).toUpper();
}

// Returns the number after the first word; 0 if there is none.
int numberOf(const QByteArray &line)
{
    return line.trimmed().mid(firstWord(line).size()).trimmed().toInt();
}

bool isData(const QByteArray &line)
{
    return line.trimmed().toUpper() == "DATA";
}

QByteArray quoted(const QByteArray &line)
{
    const int begin = line.indexOf('"');
    const int end = line.indexOf('"', begin + 1);
    return begin < 0 || end < 0 ? QByteArray() : line.mid(begin + 1, end - begin - 1);
}

QByteArray codecOfCharset(const QByteArray &charset)
{
    static const QHash<QByteArray, QByteArray> codecs{
        {"windowscyrillic", "windows-1251"}, {"windowslatin1", "windows-1252"}, {"windowslatin2", "windows-1250"},
        {"codepage866", "IBM866"},           {"codepage855", "IBM855"},         {"utf-8", "UTF-8"}};
    return codecs.value(charset.toLower());
}

void removeEmptyEnd(QList<QByteArray> &lines)
{
    while (!lines.isEmpty() && lines.last().trimmed().isEmpty())
        lines.removeLast();
}

// Most lines of some files end in a bare carriage return.
void unifyLineEnds(QByteArray &text)
{
    const int pairs = text.count("\r\n");
    if (text.count('\r') - pairs > text.count('\n'))
        text.replace("\r\n", "\n").replace('\r', '\n');
}

} // namespace

QString fileBeside(const QString &fileName, const QString &suffix)
{
    const QFileInfo info(fileName);
    const QFileInfoList files = info.absoluteDir().entryInfoList(QDir::Files, QDir::Name | QDir::Reversed);
    for (const QFileInfo &file : files) {
        if (file.completeBaseName() == info.completeBaseName() &&
            file.suffix().compare(suffix, Qt::CaseInsensitive) == 0)
            return file.filePath();
    }
    return {};
}

bool MifCopy::readFile(const QString &fileName, QByteArray &bytes)
{
    QFile file(fileName);
    // Opening a pipe may block.
    if (QFileInfo(file).isFile() && file.open(QIODevice::ReadOnly) && file.size() <= maxSize) {
        bytes = file.readAll();
        if (bytes.size() == file.size())
            return true;
    }
    m_error = QStringLiteral("Cannot read \"%1\": %2.")
                  .arg(fileName, file.size() > maxSize ? QStringLiteral("It is too large") : file.errorString());
    return false;
}

bool MifCopy::read(const QString &fileName, const QByteArray &encoding)
{
    const QString mid = fileBeside(fileName, QStringLiteral("mid"));
    m_hasMid = !mid.isEmpty();
    if (!readFile(fileName, m_mif) || (m_hasMid && !readFile(mid, m_mid)))
        return false;
    if (m_mif.startsWith("\xEF\xBB\xBF"))
        m_mif.remove(0, 3);
    unifyLineEnds(m_mif);
    unifyLineEnds(m_mid);
    readHeader();
    decode(encoding);
    correct();
    if (m_hasMid && m_columnCount > 0)
        correctRecords();
    else
        m_mid.clear();
    return true;
}

// A column may have the name of a keyword, so the header ends for us at COLUMNS.
void MifCopy::readHeader()
{
    forEachLine(m_mif, 0, [this](const QByteArray &line) {
        if (m_columnCount == 0)
            readHeaderLine(line);
        return !isData(line);
    });
}

void MifCopy::readHeaderLine(const QByteArray &line)
{
    static const QRegularExpression metric(QStringLiteral("^\\s*CoordSys\\s+Earth\\s+Projection\\s+(?!1\\b)\\d"),
                                           QRegularExpression::CaseInsensitiveOption);
    const QByteArray word = firstWord(line);
    if (word == "CHARSET")
        m_declared = codecOfCharset(quoted(line));
    else if (word == "DELIMITER" && !quoted(line).isEmpty())
        m_delimiter = quoted(line).at(0);
    else if (word == "COORDSYS")
        m_hasSystem = metric.match(QString::fromLatin1(line)).hasMatch();
    else if (word == "TRANSFORM")
        readTransform(line);
    else if (word == "COLUMNS")
        m_columnCount = numberOf(line);
}

// Two factors and two distances. A factor of 0 means 1.
void MifCopy::readTransform(const QByteArray &line)
{
    const QList<QByteArray> texts = line.simplified().mid(static_cast<int>(qstrlen("TRANSFORM"))).split(',');
    double numbers[] = {1, 1, 0, 0};
    for (int i = 0; i < 4 && i < texts.size(); ++i)
        numbers[i] = texts.at(i).trimmed().toDouble();
    for (int i = 0; i < 2; ++i)
        numbers[i] = numbers[i] == 0 ? 1 : numbers[i];
    m_isTransformed = numbers[0] != 1 || numbers[1] != 1 || numbers[2] != 0 || numbers[3] != 0;
    m_scale = std::max(std::fabs(numbers[0]), std::fabs(numbers[1]));
}

void MifCopy::decode(const QByteArray &encoding)
{
    const bool isPlain = isAscii(m_mif) && isAscii(m_mid);
    m_encoding =
        isPlain || !encoding.isEmpty() ? SourceEncoding{encoding, false} : sourceEncoding(m_mid + m_mif, m_declared);
    const QTextCodec *const codec = QTextCodec::codecForName(m_encoding.name);
    if (isPlain || codec == nullptr || codec->name() == "UTF-8")
        return;
    m_mif = codec->toUnicode(m_mif).toUtf8();
    m_mid = codec->toUnicode(m_mid).toUtf8();
}

// GDAL must not decode the texts once more, and expects the version in the first line and a number of columns. The
// first field of a record is the designation, even if no column is named.
void MifCopy::correct()
{
    QByteArray header;
    bool hasColumns = false;
    int lineCount = 0;
    const bool namesColumns = m_columnCount > 0;
    m_columnCount = namesColumns ? m_columnCount : m_mid.trimmed().isEmpty() ? 0 : 1;
    const int dataBegin = forEachLine(m_mif, 0, [&](const QByteArray &line) {
        const QByteArray word = hasColumns ? QByteArray() : firstWord(line);
        hasColumns = hasColumns || (word == "COLUMNS" && namesColumns);
        if (isData(line) && !namesColumns)
            header += m_columnCount > 0 ? "Columns 1\n  name Char(254)\n" : "Columns 0\n";
        if (!line.trimmed().isEmpty() && word != "CHARSET" && (word != "COLUMNS" || namesColumns))
            header += line + '\n';
        if (word == "VERSION")
            header += "Charset \"Neutral\"\n";
        ++lineCount;
        return !isData(line);
    });
    MifData data(m_mif, dataBegin, lineCount + 1);
    data.rewrite();
    m_counts = data.counts();
    m_mif = header + data.text();
    m_dataBegin = header.size();
}

void MifCopy::splitCurves(double deviation, double degrees)
{
    if (!m_counts.hasCurves)
        return;
    const double own = (m_hasSystem ? deviation : degrees) / m_scale;
    m_mif = m_mif.left(m_dataBegin) + withoutCurves(m_mif.mid(m_dataBegin), own, m_coarseCount);
}

// A field in quotes may hold line ends. Quotes in other fields mean nothing.
QList<QByteArray> MifCopy::records() const
{
    QList<QByteArray> lines;
    QList<QByteArray> joined;
    bool isOpen = false;
    forEachLine(m_mid, 0, [&lines, &joined, &isOpen](const QByteArray &line) {
        lines.append(line);
        if (isOpen)
            joined.last() += ' ' + line;
        else
            joined.append(line);
        isOpen = isOpen != (line.count('"') % 2 == 1);
        return true;
    });
    removeEmptyEnd(lines);
    removeEmptyEnd(joined);
    return joined.size() == m_counts.objects ? joined : lines;
}

// GDAL stops at a record with too few fields.
QByteArray MifCopy::completed(const QByteArray &record) const
{
    bool isQuoted = false;
    int missing = m_columnCount - 1;
    for (const char c : record) {
        isQuoted = isQuoted != (c == '"');
        missing -= c == m_delimiter && !isQuoted ? 1 : 0;
    }
    return missing > 0 ? record + QByteArray(missing, m_delimiter) : record;
}

// If there are just as many more records as objects of unknown kinds, these have records, too.
void MifCopy::correctRecords()
{
    QList<QByteArray> records = this->records();
    const QVector<int> &unknown = m_counts.unknownObjects;
    if (records.size() == m_counts.objects + unknown.size()) {
        for (int i = unknown.size() - 1; i >= 0; --i)
            records.removeAt(unknown.at(i) + i);
    }
    m_surplusRecords = std::max(0, records.size() - m_counts.objects);
    m_mid.clear();
    for (int i = 0; i < m_counts.objects; ++i) {
        const bool isMissing = i >= records.size() || records.at(i).trimmed().isEmpty();
        m_addedRecords += isMissing ? 1 : 0;
        m_mid += completed(isMissing ? QByteArray("\"\"") : records.at(i)) + '\n';
    }
}
