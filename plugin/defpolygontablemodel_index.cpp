// What the models colour depends on all their rows. It is found out once for all rows, and not for each row that is
// painted by looking through the others.

#include "defpolygontablemodel_index.h"

#include <QHash>

#include <algorithm>
#include <cmath>

namespace {

bool isFinite(const DefPoint &vertex)
{
    return std::isfinite(vertex.x) && std::isfinite(vertex.y);
}

} // namespace

// A comparison folds each code unit by itself, ß never to two, and the second half of a surrogate pair as the character
// that the pair stands for.
quint32 CaseFoldHash::operator()(const QString &def) const
{
    // Nobody who writes a file knows the seed, by which he could give all designations one hash.
    static const auto seed = static_cast<quint32>(qGlobalQHashSeed());
    quint32 hash = 2166136261U ^ seed;
    QChar previous;
    for (const QChar unit : def) {
        const bool endsPair = previous.isHighSurrogate() && unit.isLowSurrogate();
        const uint code = endsPair ? QChar::surrogateToUcs4(previous, unit) : unit.unicode();
        hash = (hash ^ QChar::toCaseFolded(code)) * 16777619U;
        previous = unit;
    }
    return hash ^ (hash >> 16U); // the lowest bits, which choose a slot, have seen the lowest bits only
}

DuplicateIndex::DuplicateIndex(const QVector<DefPolygon> &objects)
    : m_first(objects.constData()),
      m_counts(objects.size())
{
    m_defs.reserve(objects.size());
    for (const DefPolygon &object : objects) {
        m_defs.append(object.def);
        ++m_counts[object.def];
    }
}

bool DuplicateIndex::isCurrent(const QVector<DefPolygon> &objects, int row) const
{
    if (objects.constData() != m_first || objects.size() != m_defs.size())
        return false;
    // A text that is shared with the one kept here has not been changed since.
    const auto isCounted = [](const DefPolygon &object, const QString &def) { return object.def.isSharedWith(def); };
    if (objects.size() > fullCheckSize)
        return isCounted(objects.at(row), m_defs.at(row));
    return std::equal(objects.begin(), objects.end(), m_defs.begin(), isCounted);
}

void DuplicateIndex::rename(int row, const QString &def)
{
    --m_counts[m_defs.at(row)];
    ++m_counts[def];
    m_defs[row] = def;
}

void ConflictIndex::add(const DefPoint &vertex)
{
    ++m_count;
    if (!isFinite(vertex)) {
        ++m_nonFiniteCount;
        return;
    }
    m_left = std::min(m_left, vertex.x);
    m_right = std::max(m_right, vertex.x);
    m_bottom = std::min(m_bottom, vertex.y);
    m_top = std::max(m_top, vertex.y);
}

// No vertex differs more from this one than a side of the box does, also as rounded. It does not conflict with itself.
bool ConflictIndex::isConflict(const DefPoint &vertex) const
{
    if (!isFinite(vertex))
        return m_count > 1;
    if (m_nonFiniteCount > 0)
        return true;
    const double dx = std::max(m_right - vertex.x, vertex.x - m_left);
    const double dy = std::max(m_top - vertex.y, vertex.y - m_bottom);
    return dx > DefPoint::epsilon || dy > DefPoint::epsilon;
}
