#include "referenceimport.h"

#include <QTextCodec>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <tuple>

namespace {

// NaN comes after all numbers: operator< alone is not a strict weak ordering for NaN.
bool isBefore(const DefPoint &a, const DefPoint &b)
{
    const auto key = [](const DefPoint &p) {
        return std::make_tuple(std::isnan(p.x), std::isnan(p.x) ? 0 : p.x, std::isnan(p.y), std::isnan(p.y) ? 0 : p.y);
    };
    return key(a) < key(b);
}

bool isSameNumber(double a, double b)
{
    return (std::isnan(a) && std::isnan(b)) || std::memcmp(&a, &b, sizeof a) == 0; // NOLINT: -0 differs from 0
}

double square(double a)
{
    return a * a;
}

} // namespace

int ReferenceImport::nearest(const QVector<DefPoint> &points, double x, double y)
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
    int found = -1;
    const auto examine = [&](int i) {
        const double distance = square(points[i].x - x) + square(points[i].y - y);
        if (distance < best) {
            best = distance;
            found = i;
        }
    };
    if (bound < points.size())
        examine(bound);
    if (bound > 0)
        examine(bound - 1);
    for (int i = bound + 1; i < points.size() && !(square(points[i].x - x) > best); ++i)
        examine(i);
    for (int i = bound - 2; i >= 0 && !(square(x - points[i].x) > best); --i)
        examine(i);
    return found;
}

bool ReferenceImport::isWithinTolerance(const DefPoint &a, const DefPoint &b)
{
    return std::fabs(a.x - b.x) <= 0.01 && std::fabs(a.y - b.y) <= 0.01;
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
    const bool ownFile = !m_options.pointFileName.isEmpty();
    m_out.result = !m_options.searchPointDefs || !open(ownFile ? m_options.pointFileName : m_options.objectFileName) ||
                   loadPoints();
    if (m_out.result) {
        removeDuplicatePoints();
        m_out.result = !open(m_options.objectFileName) || loadPolygons();
    }
    m_out.pointStartNum = m_options.pointStartNum;
    m_out.objectStartNum = m_options.objectStartNum;
    return m_out;
}

bool ReferenceImport::open(const QString &name)
{
    m_file.close();
    m_file.setFileName(name);
    if (!m_file.open(QIODevice::ReadOnly | QIODevice::Text))
        return failWithFileName(QStringLiteral("Ошибка открытия файла %1"), m_file);
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

bool ReferenceImport::failWithFileName(const QString &message, const QFile &file)
{
    return fail(message.arg(QDir::toNativeSeparators(file.fileName())));
}

void ReferenceImport::removeDuplicatePoints()
{
    sort(m_out.points);
    QVector<DefPoint> kept;
    for (const DefPoint &point : qAsConst(m_out.points)) {
        if (kept.isEmpty() || !isWithinTolerance(kept.last(), point))
            kept.append(point);
    }
    m_out.points = kept;
}

void ReferenceImport::appendVert(double x, double y, bool closing)
{
    const QString def = closing ? lastContour().first().def : vertexDef(x, y);
    lastContour().append(m_options.swapXY ? DefPoint{def, y, x} : DefPoint{def, x, y});
}

QString ReferenceImport::vertexDef(double x, double y)
{
    QVector<DefPoint> &points = m_out.points;
    DefPoint vertex{QString(), x, y};
    const int known = nearest(points, x, y);
    if (known >= 0 && isWithinTolerance(points[known], vertex))
        return points[known].def;

    vertex.def = QStringLiteral("%1%2").arg(m_options.pointPref).arg(m_options.pointStartNum++);
    int place = 0;
    while (place < points.size() && isBefore(points[place], vertex))
        ++place;
    points.insert(place, vertex);
    return vertex.def;
}

void ReferenceImport::setLastPolygonDef(const QString &def)
{
    m_out.objects.last().def =
        def.isEmpty() ? QStringLiteral("%1%2").arg(m_options.objectPref).arg(m_options.objectStartNum++) : def;
}

void ReferenceImport::sort(QVector<DefPoint> &points)
{
    std::stable_sort(points.begin(), points.end(), isBefore);
    for (int i = 1; i < points.size(); ++i) {
        const DefPoint &a = points[i - 1];
        const DefPoint &b = points[i];
        const bool same = a.def == b.def && isSameNumber(a.x, b.x) && isSameNumber(a.y, b.y);
        if (!isBefore(a, b) && !same)
            m_out.orderIsUnspecified = true;
    }
}
