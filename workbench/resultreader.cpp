#include "resultreader.h"

#include <QIODevice>

#include <algorithm>
#include <cstring>

namespace {

const QString strTable = QStringLiteral("FormTable");
const QString strRow = QStringLiteral("Row");
const QString strCell = QStringLiteral("Cell");
const QString strName = QStringLiteral("Name");

/// Feeds a text to the parser in pieces of UTF-8. Given the whole text, the parser would hold two more copies, 430 MB
/// for a million vertices.
class TextDevice : public QIODevice
{
public:
    explicit TextDevice(const QString &text) : m_text(text), m_position(contentStart(text))
    {
        open(QIODevice::ReadOnly);
    }

    bool isSequential() const override { return true; }
    bool atEnd() const override { return m_position >= m_text.size() && m_bytes.isEmpty(); }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        if (m_bytes.isEmpty())
            encodeNext();
        const auto size = std::min<qint64>(maxSize, m_bytes.size());
        std::memcpy(data, m_bytes.constData(), static_cast<size_t>(size));
        m_bytes.remove(0, static_cast<int>(size));
        return size;
    }
    qint64 writeData(const char * /*data*/, qint64 /*maxSize*/) override { return -1; }

private:
    // Skips an XML declaration: the encoding that it may name is not that of the device.
    static int contentStart(const QString &text)
    {
        return text.startsWith(QLatin1String("<?xml ")) ? text.indexOf(QLatin1String("?>")) + 2 : 0;
    }

    void encodeNext()
    {
        constexpr int pieceSize = 4096;
        int end = std::min(m_position + pieceSize, m_text.size());
        if (end < m_text.size() && m_text.at(end - 1).isHighSurrogate())
            ++end;
        m_bytes = m_text.midRef(m_position, end - m_position).toUtf8();
        m_position = end;
    }

    const QString &m_text;
    int m_position;
    QByteArray m_bytes;
};

double coordinate(const char *text)
{
    bool ok = false;
    const double value = QByteArray::fromRawData(text, static_cast<int>(std::strlen(text))).toDouble(&ok);
    return ok && qIsFinite(value) ? value : qQNaN();
}

} // namespace

bool ResultReader::fail(const QString &what)
{
    if (!m_xml.hasError())
        m_xml.raiseError(what);
    return false;
}

bool ResultReader::failAtElement(const QString &what)
{
    return fail(what.arg(m_xml.name()));
}

bool ResultReader::read(const QString &text)
{
    TextDevice device(text);
    m_xml.setDevice(&device);
    const bool ok = readDocument();
    if (!ok) {
        m_error =
            QStringLiteral("Результат не прочитан, строка %1: %2").arg(m_xml.lineNumber()).arg(m_xml.errorString());
        m_result = ImportResult();
    }
    m_xml.clear();
    return ok;
}

/// Reads up to the next child of the current element. Returns false at the end of the current element and after an
/// error. Text is appended to \a text; without it, text is an error.
bool ResultReader::readChild(QByteArray *text)
{
    while (m_xml.readNext() != QXmlStreamReader::StartElement) {
        if (m_xml.isEndElement() || m_xml.atEnd())
            return false;
        // A document type may define entities that expand to any size.
        if (m_xml.isDTD())
            return fail(QStringLiteral("объявление DOCTYPE"));
        if (!m_xml.isCharacters())
            continue;
        if (text != nullptr)
            text->append(m_xml.text().toUtf8());
        else if (!m_xml.isWhitespace())
            return fail(QStringLiteral("текст вне ячейки"));
    }
    return true;
}

bool ResultReader::readDocument()
{
    m_result.numberColumn = m_columns.nColNum;
    m_result.xColumn = m_columns.xColNum;
    m_result.yColumn = m_columns.yColNum;
    if (!readChild() || m_xml.name() != strTable)
        return fail(QStringLiteral("это не таблица объектов"));
    m_result.objectTable = m_xml.attributes().value(strName).toString();
    m_result.isUpdate = m_xml.attributes().value(QStringLiteral("Update")) == QLatin1String("1");
    while (readChild()) {
        if (m_xml.name() != strRow)
            return failAtElement(QStringLiteral("вместо объекта стоит %1"));
        if (!readObject())
            return false;
    }
    while (!m_xml.atEnd())
        m_xml.readNext();
    return !m_xml.hasError();
}

bool ResultReader::readObject()
{
    ResultObject object;
    object.firstContour = m_result.contours.size();
    object.firstVertex = m_result.vertices.size();
    if (!readDef(object.def) || !readVertices())
        return false;
    object.contourCount = m_result.contours.size() - object.firstContour;
    object.vertexCount = m_result.vertices.size() - object.firstVertex;
    m_result.objects.append(object);
    return readChild() ? failAtElement(QStringLiteral("после таблицы вершин стоит %1")) : !m_xml.hasError();
}

/// Reads the cells of an object, the last of which is its designation.
bool ResultReader::readDef(QString &def)
{
    for (int column = 0; column <= m_columns.defColNum; ++column) {
        m_row.clear();
        if (!readChild() || m_xml.name() != strCell)
            return fail(QStringLiteral("у объекта нет обозначения"));
        if (!readCell())
            return false;
    }
    def = QString::fromUtf8(m_row.constData());
    return true;
}

bool ResultReader::readVertices()
{
    if (!readChild() || m_xml.name() != strTable)
        return fail(QStringLiteral("у объекта нет таблицы вершин"));
    m_result.pointTable = m_xml.attributes().value(strName).toString();
    const int firstContour = m_result.contours.size();
    while (readChild()) {
        if (m_xml.name() != strRow)
            return failAtElement(QStringLiteral("вместо вершины стоит %1"));
        if (m_result.contours.size() == firstContour)
            beginContour();
        if (!readVertex())
            return false;
    }
    std::for_each(m_result.contours.begin() + firstContour, m_result.contours.end(),
                  [this](ResultContour &contour) { contour.isClosed = isClosed(contour); });
    return !m_xml.hasError();
}

// A row without cells separates two contours.
bool ResultReader::readVertex()
{
    QPointF position(qQNaN(), qQNaN());
    int cellCount = 0;
    for (m_row.clear(); readChild(); ++cellCount) {
        const int start = m_row.size();
        if (m_xml.name() != strCell)
            return failAtElement(QStringLiteral("в строке вершины стоит %1"));
        if (!readCell())
            return false;
        if (cellCount == m_columns.xColNum)
            position.setX(coordinate(m_row.constData() + start));
        if (cellCount == m_columns.yColNum)
            position.setY(coordinate(m_row.constData() + start));
    }
    if (m_xml.hasError())
        return false;
    if (cellCount == 0) {
        beginContour();
        return true;
    }
    if (cellCount <= std::max({m_columns.nColNum, m_columns.xColNum, m_columns.yColNum}))
        return fail(QStringLiteral("в строке вершины не хватает столбцов"));
    m_result.appendVertex(position, m_row);
    ++m_result.contours.last().vertexCount;
    return true;
}

/// Appends the text of a cell and a NUL to the row.
bool ResultReader::readCell()
{
    if (readChild(&m_row))
        return failAtElement(QStringLiteral("в ячейке стоит %1"));
    m_row += '\0';
    return !m_xml.hasError();
}

void ResultReader::beginContour()
{
    ResultContour contour;
    contour.firstVertex = m_result.vertices.size();
    m_result.contours.append(contour);
}

bool ResultReader::isClosed(const ResultContour &contour) const
{
    const int last = contour.firstVertex + contour.vertexCount - 1;
    return contour.vertexCount > 1 && m_result.vertices.at(contour.firstVertex) == m_result.vertices.at(last);
}
