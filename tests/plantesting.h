#pragma once

#include "converttesting.h"
#include "dxftesting.h"

/// A drawing of \a entities, each of which begins with "|".
inline QStringList drawingOf(const QByteArray &entities, const QByteArray &blocks = QByteArray())
{
    return pairs("0 SECTION|2 HEADER|9 $ACADVER|1 AC1015|9 $DWGCODEPAGE|3 ANSI_1251|0 ENDSEC|0 SECTION|2 BLOCKS" +
                 blocks + "|0 ENDSEC|0 SECTION|2 ENTITIES" + entities + "|0 ENDSEC|0 EOF");
}

inline QByteArray place(int code, double x, double y)
{
    return '|' + QByteArray::number(code) + ' ' + QByteArray::number(x, 'f', 2) + '|' + QByteArray::number(code + 10) +
           ' ' + QByteArray::number(y, 'f', 2);
}

inline QByteArray text(const char *value, double x, double y, double height = 1)
{
    return "|0 TEXT|8 0" + place(10, x, y) + "|40 " + QByteArray::number(height) + "|1 " + value;
}

inline QByteArray ring(const QVector<QPair<double, double>> &vertices)
{
    QByteArray entity = "|0 LWPOLYLINE|8 0|90 " + QByteArray::number(vertices.size()) + "|70 1";
    for (const auto &vertex : vertices)
        entity += place(10, vertex.first, vertex.second);
    return entity;
}

inline QByteArray square(double x, double y, double size)
{
    return ring({{x, y}, {x + size, y}, {x + size, y + size}, {x, y + size}});
}

inline QByteArray block(const char *name, const QByteArray &entities)
{
    return QByteArray("|0 BLOCK|8 0|2 ") + name + "|70 0|10 0|20 0" + entities + "|0 ENDBLK|8 0";
}

inline QByteArray insert(const char *name, double x, double y)
{
    return QByteArray("|0 INSERT|8 0|2 ") + name + place(10, x, y);
}

inline QByteArray circle(double x, double y, double radius)
{
    return "|0 CIRCLE|8 0" + place(10, x, y) + "|40 " + QByteArray::number(radius);
}

const QByteArray mark = block("M", circle(0, 0, 0.5) + "|0 LINE|8 0|10 -0.5|20 0|11 0.5|21 0");

/// Imports \a fileName with both searches on and describes its objects.
inline QStringList imported(const QString &fileName)
{
    const StatusRecorder host;
    QVector<DefPolygon> objects;
    const auto run = [&](MapImport &import) {
        import.setEncoding("windows-1251");
        import.searchPointDefs = import.searchObjectDefs = true;
        import.pointPref = QStringLiteral("н");
        import.pointStartNum = 1;
        import.objectPref = QStringLiteral("ЗУ");
        import.objectStartNum = 1;
        import.objectFileName = fileName;
        import.objects = &objects;
        import.importMap();
    };
    MifImport mif;
    DxfImport dxf;
    if (fileName.endsWith(QLatin1String(".mif")))
        run(mif);
    else
        run(dxf);
    return described(objects) + host.messages();
}
