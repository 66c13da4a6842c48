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

void appendContour(QByteArray &lines, const ImportResult &result, const ResultContour &contour, const QByteArray &start)
{
    for (int vertex = contour.firstVertex; vertex < contour.firstVertex + contour.vertexCount; ++vertex) {
        lines += start;
        for (const int column : {result.numberColumn, result.xColumn, result.yColumn})
            lines += separator + field(result.cell(vertex, column));
        lines += endOfLine;
    }
}

} // namespace

bool saveCatalogue(const ImportResult &result, const QString &fileName, QString &error)
{
    QByteArray lines = QByteArrayLiteral("\xEF\xBB\xBF");
    lines += QStringLiteral("Обозначение;Контур;Номер;X;Y").toUtf8() + endOfLine;
    for (const ResultObject &object : result.objects) {
        const QByteArray def = field(object.def);
        for (int i = 0; i < object.contourCount; ++i) {
            const ResultContour &contour = result.contours.at(object.firstContour + i);
            appendContour(lines, result, contour, def + separator + QByteArray::number(i + 1));
        }
    }
    return saveFile(fileName, lines, error);
}
