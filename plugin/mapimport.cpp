#include "mapimport.h"

#include <QDir>
#include <QTextCodec>

#include <algorithm>

namespace {

void (*statusFunc)(const QString &) = nullptr;

QString numbered(const QString &prefix, int &num)
{
    return QStringLiteral("%1%2").arg(prefix).arg(num++); // NOLINT(*-multi-arg): a prefix may hold a place marker
}

} // namespace

void setStatusFunc(void (*func)(const QString &))
{
    statusFunc = func;
}

void showStatus(const QString &text)
{
    if (statusFunc != nullptr)
        statusFunc(text);
}

MapImport::MapImport() : codec(QTextCodec::codecForLocale()) {}

void MapImport::setEncoding(const QByteArray &name)
{
    encoding = name;
    QTextCodec *const found = QTextCodec::codecForName(name);
    if (found != nullptr)
        codec = found;
}

bool MapImport::failInFile(const QString &text) const
{
    showStatus(text.arg(QDir::toNativeSeparators(file.fileName())));
    return false;
}

// One pass over one file. A file that does not open is told, but is no failure: the run goes on without it.
bool MapImport::readFile(const QString &fileName, Pass pass)
{
    file.setFileName(fileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        failInFile(QStringLiteral("Ошибка открытия файла %1"));
        return true;
    }
    stream.setDevice(&file);
    stream.setCodec(codec); // only now: setDevice() forgets it
    lineNum = 0;
    const bool ok = (this->*pass)();
    file.close();
    return ok;
}

bool MapImport::importMap()
{
    points.clear();
    if (searchPointDefs && !readFile(pointFileName.isEmpty() ? objectFileName : pointFileName, &MapImport::loadPoints))
        return false;
    sortPoints(points);
    points.erase(std::unique(points.begin(), points.end()), points.end());
    return readFile(objectFileName, &MapImport::loadPolygons);
}

void MapImport::appendEmptyPolygon()
{
    objects->append(DefPolygon());
}

void MapImport::appendEmptyContour()
{
    objects->last().contours.append(QVector<DefPoint>());
}

QString MapImport::vertexDef(double x, double y)
{
    const DefPoint *const known = findNearestPoint(points, QPointF(x, y));
    const DefPoint point{QString(), x, y};
    if (known != nullptr && *known == point)
        return known->def;
    QString def = numbered(pointPref, pointStartNum);
    insertSorted(points, DefPoint{def, x, y});
    return def;
}

void MapImport::appendVert(double x, double y, bool closing)
{
    const QString def = closing ? lastContour().first().def : vertexDef(x, y);
    lastContour().append(swapXY ? DefPoint{def, y, x} : DefPoint{def, x, y});
}

void MapImport::setLastPolygonDef(const QString &def)
{
    objects->last().def = def.isEmpty() ? numbered(objectPref, objectStartNum) : def;
}

void MapImport::resetInFileStream()
{
    file.seek(0);
    stream.seek(0);
}
