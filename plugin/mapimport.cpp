#include "mapimport.h"

#include <QDir>
#include <QFileInfo>
#include <QTextCodec>

#include <algorithm>
#include <new>
#include <utility>

namespace {

void (*statusFunc)(const QString &) = nullptr;

QString numbered(const QString &prefix, int &num)
{
    // Fast path: QString::arg() adds 10 % to the import of a drawing without known points.
    if (!prefix.contains(QLatin1Char('%')))
        return prefix + QString::number(num++);
    // A prefix may contain %1 itself. Chained arg() calls then put the number there; kept for compatibility.
    return QStringLiteral("%1%2").arg(prefix).arg(num++); // NOLINT(*-multi-arg)
}

} // namespace

void setStatusFunc(void (*func)(const QString &))
{
    statusFunc = func;
}

void showStatus(const QString &text)
{
    // A QStringLiteral points into the read-only data of this library, which the host may unload.
    if (statusFunc != nullptr)
        statusFunc(QString(text.constData(), text.size()));
}

MapImport::MapImport() : codec(QTextCodec::codecForLocale()) {}

void MapImport::setEncoding(const QByteArray &name)
{
    encoding = name;
    QTextCodec *const found = QTextCodec::codecForName(name);
    if (found != nullptr)
        codec = found;
}

bool MapImport::fail(const QString &message) const
{
    report(message);
    return false;
}

bool MapImport::failWithFileName(const QString &text) const
{
    return fail(text.arg(QDir::toNativeSeparators(file.fileName())));
}

bool MapImport::openText(QFile &file)
{
    return QFileInfo(file).isFile() && file.open(QIODevice::ReadOnly | QIODevice::Text);
}

// A file that cannot be opened is reported but is not a failure: the run continues without it.
bool MapImport::readFile(const QString &fileName, Pass pass)
{
    file.setFileName(fileName);
    if (!openText(file)) {
        failWithFileName(QStringLiteral("Ошибка открытия файла %1"));
        return true;
    }
    stream.setDevice(&file, codec);
    lineNum = 0;
    const bool ok = (this->*pass)();
    file.close();
    return ok;
}

bool MapImport::runPasses()
{
    points.clear();
    if (searchPointDefs && !readFile(pointFileName.isEmpty() ? objectFileName : pointFileName, &MapImport::loadPoints))
        return false;
    sortPoints(points);
    points.erase(std::unique(points.begin(), points.end()), points.end());
    return readFile(objectFileName, &MapImport::loadPolygons);
}

// Huge files can exhaust memory or Qt's 2 GB container limit.
bool MapImport::importMap()
{
    try {
        return runPasses();
    } catch (const std::bad_alloc &) {
        file.close();
        return failOutOfMemory();
    }
}

void MapImport::appendEmptyPolygon()
{
    objects->append(DefPolygon());
}

void MapImport::appendEmptyContour()
{
    QVector<QVector<DefPoint>> &contours = objects->last().contours;
    if (contours.isEmpty())
        contours.reserve(1); // most objects have one; the default capacity makes a MIF import 10 % slower
    contours.append(QVector<DefPoint>());
}

void MapImport::reserveVerts(int count)
{
    constexpr int maxReserved = 64;                           // without reserving, a MIF import is 4 % slower
    lastContour().reserve(qBound(0, count, maxReserved) + 1); // closing a ring may append its first vertex
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

bool MapImport::failOutOfMemory()
{
    const bool isFirst = !std::exchange(reportedOutOfMemory, true);
    return isFirst && failWithFileName(QStringLiteral("Недостаточно памяти для чтения файла %1"));
}

void MapImport::resetInFileStream()
{
    stream.rewind();
}
