#include "convertmif.h"

#include "convertmifcurves.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSet>
#include <QTextCodec>

#include <algorithm>

namespace {

// Both copies and their decoded texts must stay below the limit of Qt's containers.
constexpr qint64 maxSize = 500LL * 1024 * 1024;

// Calls visit with each line, without its line end, until it returns false. Returns the position behind that line.
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
    return begin;
}

QByteArray firstWord(const QByteArray &line)
{
    const QByteArray trimmed = line.trimmed();
    int end = 0;
    while (end < trimmed.size() && trimmed.at(end) != ' ' && trimmed.at(end) != '\t')
        ++end;
    return trimmed.left(end).toUpper();
}

// The number behind the first word.
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

// The MID file beside a MIF file; empty if there is none.
QString midFileName(const QString &mifFileName)
{
    const QFileInfo mif(mifFileName);
    const QFileInfoList files = mif.absoluteDir().entryInfoList(QDir::Files, QDir::Name | QDir::Reversed);
    for (const QFileInfo &file : files) {
        if (file.completeBaseName() == mif.completeBaseName() &&
            file.suffix().compare(QLatin1String("mid"), Qt::CaseInsensitive) == 0)
            return file.filePath();
    }
    return {};
}

} // namespace

bool MifCopy::readFile(const QString &fileName, QByteArray &bytes)
{
    QFile file(fileName);
    if (file.open(QIODevice::ReadOnly) && file.size() <= maxSize) {
        bytes = file.readAll();
        if (bytes.size() == file.size())
            return true;
    }
    m_error = QStringLiteral("Cannot read \"%1\": %2.")
                  .arg(fileName, file.size() > maxSize ? QStringLiteral("It is too large") : file.errorString());
    return false;
}

bool MifCopy::read(const QString &fileName, const QByteArray &encoding, double deviation)
{
    const QString mid = midFileName(fileName);
    m_hasMid = !mid.isEmpty();
    if (!readFile(fileName, m_mif) || (m_hasMid && !readFile(mid, m_mid)))
        return false;
    if (m_mif.startsWith("\xEF\xBB\xBF"))
        m_mif.remove(0, 3);
    readHeader();
    decode(encoding);
    correctHeader();
    if (m_hasCurves)
        m_mif = m_mif.left(m_dataBegin) + withoutCurves(m_mif.mid(m_dataBegin), deviation, m_coarseCount);
    if (m_hasMid && m_columnCount > 0)
        correctRecords();
    else
        m_mid.clear();
    return true;
}

// Columns may have the names of keywords.
void MifCopy::readHeader()
{
    const int dataBegin = forEachLine(m_mif, 0, [this](const QByteArray &line) {
        const QByteArray word = m_columnCount > 0 ? QByteArray() : firstWord(line);
        if (word == "CHARSET")
            m_declared = codecOfCharset(quoted(line));
        else if (word == "DELIMITER" && !quoted(line).isEmpty())
            m_delimiter = quoted(line).at(0);
        else if (word == "COLUMNS")
            m_columnCount = numberOf(line);
        return !isData(line);
    });
    countObjects(dataBegin);
}

// A collection has one record; the objects in it have none.
void MifCopy::countObjects(int dataBegin)
{
    static const QSet<QByteArray> keywords{"NONE", "POINT", "LINE",      "PLINE",   "REGION",     "ARC",
                                           "TEXT", "RECT",  "ROUNDRECT", "ELLIPSE", "MULTIPOINT", "COLLECTION"};
    static const QSet<QByteArray> curves{"ARC", "ELLIPSE", "ROUNDRECT"};
    int partCount = 0;
    forEachLine(m_mif, dataBegin, [this, &partCount](const QByteArray &line) {
        // Fast path: most lines are vertices.
        const QByteArray word =
            line.isEmpty() || (line.at(0) >= '-' && line.at(0) <= '9') ? QByteArray() : firstWord(line);
        if (!keywords.contains(word))
            return true;
        m_objectCount += partCount > 0 ? 0 : 1;
        m_hasCurves = m_hasCurves || curves.contains(word);
        partCount = word == "COLLECTION" ? numberOf(line) : std::max(0, partCount - 1);
        return true;
    });
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

// GDAL must not decode the texts once more, and expects the version in the first line.
void MifCopy::correctHeader()
{
    QByteArray header;
    bool hasColumns = false;
    const int dataBegin = forEachLine(m_mif, 0, [&header, &hasColumns](const QByteArray &line) {
        const QByteArray word = hasColumns ? QByteArray() : firstWord(line);
        hasColumns = hasColumns || word == "COLUMNS";
        if (!line.trimmed().isEmpty() && word != "CHARSET")
            header += line + '\n';
        if (word == "VERSION")
            header += "Charset \"Neutral\"\n";
        return !isData(line);
    });
    m_mif = header + m_mif.mid(dataBegin);
    m_dataBegin = header.size();
}

void MifCopy::correctRecords()
{
    const QByteArray empty = "\"\"" + QByteArray(m_columnCount - 1, m_delimiter);
    QByteArray records;
    int count = 0;
    forEachLine(m_mid, 0, [this, &empty, &records, &count](const QByteArray &line) {
        const bool isMissing = line.trimmed().isEmpty() && count < m_objectCount;
        m_addedRecords += isMissing ? 1 : 0;
        records += (isMissing ? empty : line) + '\n';
        ++count;
        return true;
    });
    for (; count < m_objectCount; ++count) {
        ++m_addedRecords;
        records += empty + '\n';
    }
    m_mid = records;
}
