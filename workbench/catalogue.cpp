#include "catalogue.h"

#include "savefile.h"

#include <algorithm>

namespace {

constexpr char separator = ';';
const QByteArray endOfLine = QByteArrayLiteral("\r\n");

bool needsQuotes(char c)
{
    return c == separator || c == '"' || c == '\r' || c == '\n';
}

QByteArray field(const QString &text)
{
    QByteArray bytes = text.toUtf8();
    if (std::any_of(bytes.cbegin(), bytes.cend(), needsQuotes))
        bytes = '"' + bytes.replace('"', "\"\"") + '"';
    return bytes;
}

/// Writes lines in pieces: together they can exceed the limit of QByteArray, because each repeats a designation.
class LineWriter
{
public:
    explicit LineWriter(const QString &fileName) : m_file(fileName) {}

    void write(const QByteArray &line)
    {
        constexpr int pieceSize = 1 << 16;
        m_lines += line + endOfLine;
        if (m_lines.size() >= pieceSize)
            flush();
    }

    bool commit(QString &error)
    {
        flush();
        return m_file.commit(error);
    }

private:
    void flush()
    {
        m_file.write(m_lines);
        m_lines.clear();
    }

    FileSaver m_file;
    QByteArray m_lines;
};

void writeContour(LineWriter &lines, const ImportResult &result, const ResultContour &contour, const QByteArray &start)
{
    for (int vertex = contour.firstVertex; vertex < contour.firstVertex + contour.vertexCount; ++vertex) {
        QByteArray line = start;
        for (const int column : {result.numberColumn, result.xColumn, result.yColumn})
            line += separator + field(result.cell(vertex, column));
        lines.write(line);
    }
}

} // namespace

bool saveCatalogue(const ImportResult &result, const QString &fileName, QString &error)
{
    LineWriter lines(fileName);
    lines.write(QByteArrayLiteral("\xEF\xBB\xBF") + QStringLiteral("Обозначение;Контур;Номер;X;Y").toUtf8());
    for (const ResultObject &object : result.objects) {
        const QByteArray def = field(object.def);
        for (int i = 0; i < object.contourCount; ++i) {
            const ResultContour &contour = result.contours.at(object.firstContour + i);
            writeContour(lines, result, contour, def + separator + QByteArray::number(i + 1));
        }
    }
    return lines.commit(error);
}
