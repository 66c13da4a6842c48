#include "referenceimport.h"

#include <QDir>
#include <QTextCodec>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace {

const double tolerance = 0.01;

bool isWithinBox(const DefPoint &a, double x, double y)
{
    return std::fabs(a.x - x) <= tolerance && std::fabs(a.y - y) <= tolerance;
}

// What is not a number stands after all numbers; a plain comparison would leave such a list without any order.
bool isBefore(double a, double b)
{
    if (std::isnan(a) || std::isnan(b))
        return !std::isnan(a) && std::isnan(b);
    return a < b;
}

bool isBefore(const DefPoint &a, const DefPoint &b)
{
    if (isBefore(a.x, b.x))
        return true;
    return !isBefore(b.x, a.x) && isBefore(a.y, b.y);
}

bool isSameNumber(double a, double b)
{
    return (std::isnan(a) && std::isnan(b)) || std::memcmp(&a, &b, sizeof a) == 0;
}

double square(double a)
{
    return a * a;
}

} // namespace

int referenceNearest(const QVector<DefPoint> &points, double x, double y)
{
    int bound = 0;
    int high = points.size();
    while (bound < high) {
        const int middle = (bound + high) / 2;
        if (points[middle].x < x)
            bound = middle + 1;
        else
            high = middle;
    }

    double best = std::numeric_limits<double>::max();
    int taken = -1;
    const auto look = [&](int i) {
        const double distance = square(points[i].x - x) + square(points[i].y - y);
        if (distance < best) {
            best = distance;
            taken = i;
        }
    };
    if (bound < points.size())
        look(bound);
    if (bound > 0)
        look(bound - 1);
    for (int i = bound + 1; i < points.size() && !(square(points[i].x - x) > best); ++i)
        look(i);
    for (int i = bound - 2; i >= 0 && !(square(x - points[i].x) > best); --i)
        look(i);
    return taken;
}

QPointF referenceCentroid(const DefPolygon &object)
{
    if (object.contours.isEmpty() || object.contours[0].isEmpty())
        return {0, 0};
    const QVector<DefPoint> &ring = object.contours[0];
    const int n = ring.size();
    if (n == 1)
        return {ring[0].x, ring[0].y};

    double crosses = 0;
    double momentX = 0;
    double momentY = 0;
    double sumX = 0;
    double sumY = 0;
    for (int i = 0; i < n; ++i) {
        const DefPoint &a = ring[i];
        const DefPoint &b = ring[(i + 1) % n];
        const double cross = a.x * b.y - b.x * a.y;
        crosses += cross;
        momentX += (a.x + b.x) * cross;
        momentY += (a.y + b.y) * cross;
        sumX += a.x;
        sumY += a.y;
    }
    const double area = 0.5 * crosses;
    if (std::fabs(area) <= 1e-12)
        return {sumX / n, sumY / n};
    return {momentX / (6 * area), momentY / (6 * area)};
}

ReferenceImport::ReferenceImport(const ImportOptions &options)
    : m_options(options),
      m_codec(QTextCodec::codecForName(options.encoding))
{
    if (m_codec == nullptr)
        m_codec = QTextCodec::codecForLocale();
}

ImportOutcome ReferenceImport::run()
{
    m_out.result = readPoints() && readPolygons();
    m_out.pointStartNum = m_options.pointStartNum;
    m_out.objectStartNum = m_options.objectStartNum;
    return m_out;
}

bool ReferenceImport::readPoints()
{
    if (m_options.searchPointDefs) {
        const bool own = !m_options.pointFileName.isEmpty();
        if (open(own ? m_options.pointFileName : m_options.objectFileName)) {
            const bool ok = loadPoints();
            m_file.close();
            if (!ok)
                return false;
        }
    }

    sort(m_out.points);
    QVector<DefPoint> kept;
    for (const DefPoint &point : m_out.points) {
        if (kept.isEmpty() || !isWithinBox(kept.last(), point.x, point.y))
            kept.append(point);
    }
    m_out.points = kept;
    return true;
}

bool ReferenceImport::readPolygons()
{
    if (!open(m_options.objectFileName))
        return true;
    const bool ok = loadPolygons();
    m_file.close();
    return ok;
}

bool ReferenceImport::open(const QString &name)
{
    m_file.setFileName(name);
    if (!m_file.open(QIODevice::ReadOnly | QIODevice::Text))
        return fail(QStringLiteral("Ошибка открытия файла %1").arg(fileName()));
    m_stream.setDevice(&m_file);
    m_stream.setCodec(m_codec);
    m_lineNum = 0;
    return true;
}

bool ReferenceImport::fail(const QString &message)
{
    m_out.messages.append(message);
    return false;
}

QString ReferenceImport::fileName() const
{
    return QDir::toNativeSeparators(m_file.fileName());
}

void ReferenceImport::appendEmptyPolygon()
{
    m_out.objects.append(DefPolygon());
}

void ReferenceImport::appendEmptyContour()
{
    m_out.objects.last().contours.append(QVector<DefPoint>());
}

QVector<DefPoint> &ReferenceImport::lastContour()
{
    return m_out.objects.last().contours.last();
}

void ReferenceImport::appendVert(double x, double y, bool closing)
{
    DefPoint vertex;
    vertex.def = closing ? lastContour().first().def : vertexDef(x, y);
    vertex.x = m_options.swapXY ? y : x;
    vertex.y = m_options.swapXY ? x : y;
    lastContour().append(vertex);
}

QString ReferenceImport::vertexDef(double x, double y)
{
    QVector<DefPoint> &points = m_out.points;
    const int nearest = referenceNearest(points, x, y);
    if (nearest >= 0 && isWithinBox(points[nearest], x, y))
        return points[nearest].def;

    DefPoint added;
    added.def = QStringLiteral("%1%2").arg(m_options.pointPref).arg(m_options.pointStartNum);
    added.x = x;
    added.y = y;
    ++m_options.pointStartNum;
    int place = 0;
    while (place < points.size() && isBefore(points[place], added))
        ++place;
    points.insert(place, added);
    return added.def;
}

void ReferenceImport::setLastPolygonDef(const QString &def)
{
    QString name = def;
    if (name.isEmpty()) {
        name = QStringLiteral("%1%2").arg(m_options.objectPref).arg(m_options.objectStartNum);
        ++m_options.objectStartNum;
    }
    m_out.objects.last().def = name;
}

// The importers sort unstably: which of two points at exactly one place comes first is theirs to choose. That is told
// by orderIsOpen when the choice could be seen.
void ReferenceImport::sort(QVector<DefPoint> &points)
{
    std::stable_sort(points.begin(), points.end(), [](const DefPoint &a, const DefPoint &b) { return isBefore(a, b); });
    for (int i = 1; i < points.size(); ++i) {
        const DefPoint &a = points[i - 1];
        const DefPoint &b = points[i];
        const bool alike = a.def == b.def && isSameNumber(a.x, b.x) && isSameNumber(a.y, b.y);
        if (!isBefore(a, b) && !isBefore(b, a) && !alike)
            m_out.orderIsOpen = true;
    }
}

void ReferenceImport::rewind()
{
    m_file.seek(0);
    m_stream.seek(0);
}
