// The result that the host takes, as an XML reader finds it.

#include "dialogtesting.h"
#include "invariants.h"

#include <QApplication>
#include <QXmlStreamReader>

#include <algorithm>
#include <iterator>

namespace {

Dialog *dialog = nullptr;

int rowCountOf(const DefPolygon &object)
{
    int rows = qMax(0, object.contours.size() - 1);
    for (const QVector<DefPoint> &contour : object.contours)
        rows += contour.size();
    return rows;
}

bool isHeld(QChar c)
{
    return (c.unicode() >= 0x20 && c.unicode() < 0xFFFE) || c == QLatin1Char('\t') || c == QLatin1Char('\n') ||
           c == QLatin1Char('\r');
}

// The writer leaves out what XML cannot hold; a reader takes every line end for a line feed, and half a surrogate pair
// for a question mark.
QByteArray asRead(const QString &text)
{
    QString read;
    std::copy_if(text.begin(), text.end(), std::back_inserter(read), isHeld);
    read.replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return read.toUtf8();
}

// Reads from the first cell of a row of the table of objects to the row's end.
int readVertexRows(QXmlStreamReader &reader)
{
    int rows = 0;
    for (int depth = 1; depth > 0 && !reader.atEnd();) {
        reader.readNext();
        if (reader.isStartElement() && reader.name() == QLatin1String("Row"))
            ++rows;
        depth += reader.isStartElement() ? 1 : reader.isEndElement() ? -1 : 0;
    }
    return rows;
}

} // namespace

// The dialog lives as long as the process, and is never taken down: it would save its settings.
void prepareResults(int *argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static const QApplication application(*argc, argv);
    static const SettingsSandbox settings;
    dialog = new Dialog; // NOLINT(*-owning-memory)
    dialog->objectTableName = QStringLiteral("Участки");
}

void checkResult(const QVector<DefPolygon> &objects)
{
    dialog->objects = objects;
    const QString result = dialog->stringResult();
    require(result == dialog->stringResult(), "a second result is the first");
    dialog->objects.clear();

    QXmlStreamReader reader(result);
    reader.readNextStartElement();
    int row = 0;
    while (reader.readNextStartElement()) {
        require(reader.name() == QLatin1String("Row"), "the table of objects consists of rows");
        require(row < objects.size(), "the result has no more rows than there are objects");
        require(reader.readNextStartElement() && reader.readElementText().toUtf8() == asRead(objects.at(row).def),
                "an object's row begins with its designation");
        require(readVertexRows(reader) == rowCountOf(objects.at(row)), "an object's table has a row for each vertex");
        ++row;
    }
    require(row == objects.size(), "the result has a row for each object");
    while (!reader.atEnd())
        reader.readNext();
    require(!reader.hasError(), "the result is XML");
}
