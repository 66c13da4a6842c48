#pragma once

#include "imported.h"
#include "testing.h"

#include <QTest>

/// Expands "code value|code value" to the lines of a drawing. A part without a blank becomes a single line.
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

/// A drawing without its two closing pairs. Pair n of \a entities, counted from 1, ends on line 10 + 2n.
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

/// The object of lineEntity when it is the first in the file.
constexpr auto lineObject = "ЗУ1 [н1 0 0, н2 10 0]";

inline QString readError(int line)
{
    return QStringLiteral("Ошибка чтения DXF файла в строке: %1").arg(line);
}

/// An import of drawings that the test writes; vertices are numbered from «н1», objects from «ЗУ1».
class DxfFixture
{
public:
    DxfFixture()
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

    QString objects() const { return described(polygons).join(QLatin1String("; ")); }
    QString points() const { return described(knownPoints(import)).join(QLatin1String("; ")); }
    QStringList messages() const { return host.messages(); }

    DxfImport import;
    QVector<DefPolygon> polygons;
    TextFixture files;

private:
    StatusRecorder host;
};

/// Adds the columns of addRun() and compareRun().
inline void addRunColumns()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QString>("records");
    QTest::addColumn<int>("errorLine");
}

/// Adds a row: a drawing, the objects or points expected from it, and the line of the read error; 0 for none.
inline void addRun(const char *name, const QStringList &lines, const char *records, int errorLine = 0)
{
    QTest::newRow(name) << lines << QString::fromUtf8(records) << errorLine;
}

/// Imports the lines of the row and compares its messages and \a records.
inline void compareRun(DxfFixture &dxf, QString (DxfFixture::*records)() const)
{
    QFETCH(QStringList, lines);
    QFETCH(int, errorLine);

    QCOMPARE(dxf.run(lines), errorLine == 0);

    QCOMPARE(dxf.messages(), errorLine == 0 ? QStringList() : QStringList{readError(errorLine)});
    QTEST((dxf.*records)(), "records");
}
