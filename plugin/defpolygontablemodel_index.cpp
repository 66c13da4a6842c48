// The colour of a row depends on all other rows. The indexes find it in O(1) on average; a scan for each painted row
// would be quadratic.

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

// FNV-1a over case-folded characters, with its 32-bit offset basis and prime. Folds like QString::compare(): one code
// unit at a time (ß never becomes ss), and a low surrogate as the code point of its pair.
std::size_t CaseFoldHash::operator()(const QString &def) const
{
    // Randomised per process, so that a crafted file cannot force collisions.
    static const auto start = static_cast<quint32>(qGlobalQHashSeed());
    quint32 hash = 2166136261U ^ start;
    QChar previous;
    for (const QChar unit : def) {
        const bool endsPair = previous.isHighSurrogate() && unit.isLowSurrogate();
        const uint code = endsPair ? QChar::surrogateToUcs4(previous, unit) : unit.unicode();
        hash = (hash ^ QChar::toCaseFolded(code)) * 16777619U;
        previous = unit;
    }
    return hash;
}

DuplicateIndex::DuplicateIndex(const QVector<DefPolygon> &objects) : m_first(objects.constData())
{
    m_defs.reserve(objects.size());
    m_counts.reserve(static_cast<std::size_t>(objects.size()));
    for (const DefPolygon &object : objects) {
        m_defs.append(object.def);
        ++m_counts[object.def];
    }
}

bool DuplicateIndex::isCurrent(const QVector<DefPolygon> &objects, int row) const
{
    if (objects.constData() != m_first || objects.size() != m_defs.size())
        return false;
    // A string that still shares its data with the counted one has not been changed.
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

// On each axis the farthest vertex lies on the bounding box, and rounding is monotonic, so the box decides exactly.
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
