#pragma once

#include "testing.h"

/// Lines of a drawing from pairs that are written "code value" with bars between them; what has no blank, or is empty,
/// is one line.
inline QStringList pairs(const QByteArray &text)
{
    QStringList lines;
    const QStringList parts = QString::fromUtf8(text).split(QLatin1Char('|'));
    for (const QString &part : parts) {
        const int blank = part.indexOf(QLatin1Char(' '));
        lines.append(part.left(blank));
        if (blank >= 0)
            lines.append(part.mid(blank + 1));
    }
    return lines;
}

/// A drawing that breaks off after \a entities; the pair n of these, from 1, ends on line 10 + 2n.
inline QStringList openDrawing(const QByteArray &entities)
{
    return pairs("0 SECTION|2 HEADER|0 ENDSEC|0 SECTION|2 ENTITIES") + pairs(entities);
}

/// A drawing of \a entities with its two closing pairs.
inline QStringList drawing(const QByteArray &entities)
{
    return openDrawing(entities) + pairs("0 ENDSEC|0 EOF");
}

/// A LINE from (0, 0) to (10, 0) in five pairs.
const QByteArray lineEntity = "0 LINE|10 0|20 0|11 10|21 0";

/// The object of lineEntity when it is the first that is read.
const QString lineObject = QStringLiteral("ЗУ1: н1(0 0) н2(10 0)");

inline QString readingError(int line)
{
    return QStringLiteral("Ошибка чтения DXF файла в строке: %1").arg(line);
}

/// A point as «н1(10 20)».
inline QString described(const DefPoint &point)
{
    return point.def + QLatin1Char('(') + QString::number(point.x, 'g', 12) + QLatin1Char(' ') +
           QString::number(point.y, 'g', 12) + QLatin1Char(')');
}

/// An object as «ЗУ1: н1(0 0) н2(10 0)», with a bar before each contour but the first.
inline QString described(const DefPolygon &object)
{
    QString text = object.def + QLatin1Char(':');
    for (int i = 0; i < object.contours.size(); ++i) {
        if (i > 0)
            text += QLatin1String(" |");
        for (const DefPoint &vertex : object.contours.at(i))
            text += QLatin1Char(' ') + described(vertex);
    }
    return text;
}

template <typename T>
QStringList described(const QVector<T> &records)
{
    QStringList texts;
    for (const T &record : records)
        texts.append(described(record));
    return texts;
}

/// One import of drawings that the test writes; vertices are numbered from «н1», objects from «ЗУ1».
class DxfRun
{
public:
    DxfRun()
    {
        import.pointPref = QStringLiteral("н");
        import.pointStartNum = 1;
        import.objectPref = QStringLiteral("ЗУ");
        import.objectStartNum = 1;
        import.objects = &polygons;
    }

    /// Imports \a lines as the file of objects.
    bool run(const QStringList &lines, const char *codec = "UTF-8")
    {
        import.setEncoding(codec);
        import.objectFileName = files.write(QStringLiteral("objects.dxf"), lines, codec);
        return import.importMap();
    }

    /// Makes \a lines the separate file of points.
    void setPointFile(const QStringList &lines)
    {
        import.pointFileName = files.write(QStringLiteral("points.dxf"), lines);
    }

    QStringList objects() const { return described(polygons); }
    QStringList points() const { return described(knownPoints(import)); }
    QStringList messages() const { return host.messages(); }

    DxfImport import;
    QVector<DefPolygon> polygons;
    TextFixture files;

private:
    StatusRecorder host;
};
