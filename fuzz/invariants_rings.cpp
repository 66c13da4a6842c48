// Which rings of a MIF file have been read to the vertex that closes them, as its lines tell.

#include "invariants.h"

#include <QTextStream>

namespace {

QString keywordOf(const QString &line)
{
    return line.simplified().section(QLatin1Char(' '), 0, 0).toUpper();
}

bool beginsObject(const QString &line)
{
    static const QStringList keywords{QStringLiteral("LINE"), QStringLiteral("PLINE"), QStringLiteral("REGION")};
    return keywords.contains(keywordOf(line));
}

/// The object begins in line \a i. Of a region that could not be read the last ring may have fewer vertices than it
/// announces.
QVector<bool> closedContours(const QStringList &lines, int i, const DefPolygon &object)
{
    QVector<bool> closed(object.contours.size(), false);
    if (keywordOf(lines.at(i)) != QLatin1String("REGION"))
        return closed;
    for (int ring = 0; ring < closed.size(); ++ring) {
        const int size = object.contours.at(ring).size();
        closed[ring] = lines.value(i + 1).trimmed().toInt() == size;
        i += 1 + size;
    }
    return closed;
}

} // namespace

QStringList linesOf(const QString &fileName, const QByteArray &encoding)
{
    QFile file(fileName);
    require(file.open(QIODevice::ReadOnly | QIODevice::Text), "a file that has been written can be read");
    QTextStream stream(&file);
    stream.setCodec(encoding.constData());
    QStringList lines;
    while (!stream.atEnd())
        lines.append(stream.readLine());
    return lines;
}

QVector<QVector<bool>> closedRings(const Options &options, const QVector<DefPolygon> &objects)
{
    QVector<QVector<bool>> closed;
    const QStringList lines = objects.isEmpty() ? QStringList() : linesOf(options.objectFileName, options.encoding);
    int i = 3; // after the header
    while (i < lines.size() && lines.at(i).trimmed().compare(QLatin1String("DATA"), Qt::CaseInsensitive) != 0)
        ++i;
    for (const DefPolygon &object : objects) {
        do
            ++i;
        while (i < lines.size() && !beginsObject(lines.at(i)));
        require(i < lines.size(), "an object begins in a line of its own");
        closed.append(closedContours(lines, i, object));
    }
    return closed;
}
