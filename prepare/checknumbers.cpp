#include "checknumbers.h"

#include "degreesides.h"

#include "digit.h"

#include <QHash>

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

namespace {

/// A vertex by its number. Sorted by hash first, so that few texts are compared.
struct Named
{
    const QString &name() const { return point->def; }

    const DefPoint *point;
    uint hash;
    int object; ///< index of the object
};

bool isSameName(const Named &a, const Named &b)
{
    return a.hash == b.hash && a.name() == b.name();
}

// Where an arc meets a line, the same position is often computed twice.
bool isSamePosition(const Named &a, const Named &b)
{
    constexpr double rounding = 1e-8;
    return std::fabs(a.point->x - b.point->x) <= rounding && std::fabs(a.point->y - b.point->y) <= rounding;
}

bool lessByName(const Named &a, const Named &b)
{
    return a.hash != b.hash ? a.hash < b.hash : a.name() < b.name();
}

bool lessByPosition(const Named &a, const Named &b)
{
    if (a.hash != b.hash || a.name() != b.name())
        return lessByName(a, b);
    return lessNanLast(*a.point, *b.point);
}

/// Calls \a use(begin, end) for each run of entries with the same name.
template <class Use>
void forEachName(const std::vector<Named> &entries, Use use)
{
    for (auto begin = entries.begin(); begin != entries.end();) {
        const auto end =
            std::find_if(begin, entries.end(), [&begin](const Named &entry) { return !isSameName(*begin, entry); });
        use(begin, end);
        begin = end;
    }
}

// A ring's closing vertex shares the number of the first one; that is no finding.
bool isClosed(const QVector<DefPoint> &contour)
{
    return contour.size() > 2 && contour.first().def == contour.last().def;
}

QString objectPlace(const DefPolygon &object)
{
    return QStringLiteral("объект «%1»").arg(object.def);
}

/// True for a number with decimals, such as a spot height.
bool isDecimal(const QString &name)
{
    const int point = std::max(name.indexOf(QLatin1Char('.')), name.indexOf(QLatin1Char(',')));
    const int sign = name.startsWith(QLatin1Char('-')) || name.startsWith(QLatin1Char('+')) ? 1 : 0;
    return point > sign && point < name.size() - 1 && std::all_of(name.begin() + sign, name.begin() + point, isDigit) &&
           std::all_of(name.begin() + point + 1, name.end(), isDigit);
}

/// True if \a name contains the code of a character, which drawings use for what their encoding lacks.
bool isEscaped(const QString &name)
{
    constexpr int digits = 4;
    const int begin = name.indexOf(QLatin1String("\\U+"), 0, Qt::CaseInsensitive) + 3;
    bool ok = false;
    if (begin > 2)
        name.midRef(begin, digits).toUShort(&ok, 16);
    return ok && begin + digits <= name.size();
}

std::vector<Named> numberedVertices(const QVector<DefPolygon> &objects, qint64 vertexCount)
{
    std::vector<Named> entries;
    // A vector that grows by doubling would take three times the memory.
    entries.reserve(static_cast<std::size_t>(vertexCount));
    for (int i = 0; i < objects.size(); ++i) {
        for (const QVector<DefPoint> &contour : objects.at(i).contours) {
            const int count = isClosed(contour) ? contour.size() - 1 : contour.size();
            for (int k = 0; k < count; ++k) {
                const DefPoint &vertex = contour.at(k);
                if (!vertex.def.isEmpty())
                    entries.push_back({&vertex, qHash(vertex.def), i});
            }
        }
    }
    return entries;
}

/// Finds the first occurrence, in the order of the file.
class FirstPlace
{
public:
    void add(const Named &number)
    {
        if (!m_first || number.object < m_first->object)
            m_first = number;
    }

    QString text(const QVector<DefPolygon> &objects) const
    {
        if (!m_first)
            return {};
        return QStringLiteral("%1, номер «%2»").arg(objectPlace(objects.at(m_first->object)), m_first->name());
    }

private:
    std::optional<Named> m_first;
};

void countNumbers(const QVector<DefPolygon> &objects, ImportStatistics &statistics)
{
    FirstPlace shared;
    FirstPlace decimal;
    FirstPlace escaped;
    std::vector<Named> entries = numberedVertices(objects, statistics.vertices);
    std::sort(entries.begin(), entries.end(), lessByPosition);
    forEachName(entries, [&](auto begin, auto end) {
        ++statistics.numbers;
        const auto first =
            *std::min_element(begin, end, [](const Named &a, const Named &b) { return a.object < b.object; });
        if (isDecimal(begin->name())) {
            ++statistics.decimalNames;
            decimal.add(first);
        }
        if (isEscaped(begin->name())) {
            ++statistics.escapedNames;
            escaped.add(first);
        }
        qint64 positions = 1;
        for (auto it = begin + 1; it != end; ++it)
            positions += isSamePosition(it[-1], *it) ? 0 : 1;
        if (positions > 1) {
            statistics.sharedPositions += positions;
            shared.add(first);
        }
    });
    statistics.sharedPlace = shared.text(objects);
    statistics.decimalNamePlace = decimal.text(objects);
    statistics.escapedNamePlace = escaped.text(objects);
}

/// Adds the vertices of \a object that \a test applies to; \a place receives the first object.
template <typename Test>
void countVertices(const DefPolygon &object, Test test, qint64 &count, QString &place)
{
    const qint64 before = count;
    for (const QVector<DefPoint> &contour : object.contours)
        count += std::count_if(contour.begin(), contour.end(), test);
    if (before == 0 && count > 0)
        place = objectPlace(object);
}

void countFaults(const QVector<DefPolygon> &objects, ImportStatistics &statistics)
{
    const auto isUnnumbered = [](const DefPoint &vertex) { return vertex.def.isEmpty(); };
    const auto isNotFinite = [](const DefPoint &vertex) {
        return !std::isfinite(vertex.x) || !std::isfinite(vertex.y);
    };
    for (const DefPolygon &object : objects) {
        for (const QVector<DefPoint> &contour : object.contours)
            statistics.vertices += contour.size();
        statistics.contours += object.contours.size();
        countVertices(object, isUnnumbered, statistics.unnumbered, statistics.unnumberedPlace);
        countVertices(object, isNotFinite, statistics.notFinite, statistics.notFinitePlace);
    }
}

void countNames(const QVector<DefPolygon> &objects, ImportStatistics &statistics)
{
    QHash<QString, int> firstObjects; // -1: counted
    bool hasDecimal = false;
    bool hasEscaped = false;
    for (int i = 0; i < objects.size(); ++i) {
        const QString name = objects.at(i).def.toCaseFolded();
        if (name.isEmpty())
            continue;
        if (isDecimal(name)) {
            ++statistics.decimalNames;
            if (!std::exchange(hasDecimal, true))
                statistics.decimalNamePlace = objectPlace(objects.at(i));
        }
        if (isEscaped(name)) {
            ++statistics.escapedNames;
            if (!std::exchange(hasEscaped, true))
                statistics.escapedNamePlace = objectPlace(objects.at(i));
        }
        const auto first = firstObjects.find(name);
        if (first == firstObjects.end()) {
            firstObjects.insert(name, i);
            continue;
        }
        if (statistics.sharedNames == 0)
            statistics.sharedNamePlace = objectPlace(objects.at(*first));
        statistics.sharedNames += *first >= 0 ? 2 : 1;
        *first = -1;
    }
}

void recogniseDegrees(const QVector<DefPolygon> &objects, ImportStatistics &statistics)
{
    DegreeSides sides;
    for (const DefPolygon &object : objects) {
        for (const QVector<DefPoint> &contour : object.contours) {
            for (int i = 0; i < contour.size(); ++i) {
                sides.addVertex(contour.at(i).x, contour.at(i).y);
                if (i > 0)
                    sides.addSide(
                        std::hypot(contour.at(i).x - contour.at(i - 1).x, contour.at(i).y - contour.at(i - 1).y));
            }
        }
    }
    statistics.fitsDegrees = sides.fitsDegrees();
    statistics.looksGeographic = sides.looksGeographic();
}

} // namespace

ImportStatistics statisticsOf(const ImportOutcome &outcome)
{
    ImportStatistics statistics;
    countFaults(outcome.objects, statistics);
    countNumbers(outcome.objects, statistics);
    countNames(outcome.objects, statistics);
    recogniseDegrees(outcome.objects, statistics);
    return statistics;
}
