#include "mapimport.h"

#include "mapimport_status.h"

#include <QDir>
#include <QFileInfo>
#include <QTextCodec>

#include <algorithm>
#include <new>

namespace {

void (*statusFunc)(const QString &) = nullptr;

QString numbered(const QString &prefix, int &num)
{
    if (!prefix.contains(QLatin1Char('%')))
        return prefix + QString::number(num++);
    // The number may land in a place marker of the prefix.
    return QStringLiteral("%1%2").arg(prefix).arg(num++); // NOLINT(*-multi-arg)
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

bool MapImport::failWithFileName(const QString &text) const
{
    showStatus(text.arg(QDir::toNativeSeparators(file.fileName())));
    return false;
}

// A pipe keeps its reader waiting for somebody to write, and a device may have no end.
bool MapImport::openText(QFile &file)
{
    return QFileInfo(file).isFile() && file.open(QIODevice::ReadOnly | QIODevice::Text);
}

// One pass over one file. A file that does not open is told, but is no failure: the run goes on without it.
bool MapImport::readFile(const QString &fileName, Pass pass)
{
    file.setFileName(fileName);
    if (!openText(file)) {
        failWithFileName(QStringLiteral("Ошибка открытия файла %1"));
        return true;
    }
    stream.setDevice(&file, codec);
    lineNum = 0;
    const bool ok = runPass(pass);
    file.close();
    return ok;
}

// A file may hold more than the memory does, or than a line or a list can.
bool MapImport::runPass(Pass pass)
{
    try {
        return (this->*pass)();
    } catch (const std::bad_alloc &) {
        return failWithFileName(QStringLiteral("Недостаточно памяти для чтения файла %1"));
    }
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
    QVector<QVector<DefPoint>> &contours = objects->last().contours;
    if (contours.isEmpty())
        contours.reserve(1); // most objects have one
    contours.append(QVector<DefPoint>());
}

void MapImport::reserveVerts(int count)
{
    constexpr int mostCredible = 64;
    lastContour().reserve(qBound(0, count, mostCredible) + 1); // a ring may need its first vertex again
}

QString MapImport::vertexDef(double x, double y)
{
    if (pointIndex.count() != points.size())
        pointIndex.reset(points);
    const DefPoint *const known = pointIndex.find(points, x, y);
    if (known != nullptr)
        return known->def;
    points.append(DefPoint{numbered(pointPref, pointStartNum), x, y});
    pointIndex.addLast(points);
    return points.last().def;
}

void MapImport::appendVert(double x, double y, bool closing)
{
    QString def = closing ? lastContour().first().def : vertexDef(x, y);
    lastContour().append(swapXY ? DefPoint{std::move(def), y, x} : DefPoint{std::move(def), x, y});
}

void MapImport::setLastPolygonDef(const QString &def)
{
    objects->last().def = def.isEmpty() ? numbered(objectPref, objectStartNum) : def;
}

void MapImport::resetInFileStream()
{
    stream.rewind();
}
