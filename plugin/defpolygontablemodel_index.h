#pragma once

#include "defpolygon.h"

#include <QString>
#include <QVector>

#include <limits>
#include <unordered_map>

/// Equality of designations in the models.
struct CaseInsensitiveEqual
{
    bool operator()(const QString &a, const QString &b) const
    {
        return QString::compare(a, b, Qt::CaseInsensitive) == 0;
    }
};

/// A hash consistent with CaseInsensitiveEqual.
struct CaseFoldHash
{
    std::size_t operator()(const QString &def) const;
};

/// A value for each designation, ignoring case.
template <class Value>
using DefMap = std::unordered_map<QString, Value, CaseFoldHash, CaseInsensitiveEqual>;

/// Counts the designations of objects, so that duplicates are found in O(1). Empty ones count as well.
class DuplicateIndex
{
public:
    explicit DuplicateIndex(const QVector<DefPolygon> &objects);

    /// False if the index is stale.
    ///
    /// Up to fullCheckSize objects, every changed designation is detected. With more, only their address, their number
    /// and the designation of \a row are compared: another import and another order are detected, but not a change in
    /// another row that bypassed rename().
    bool isCurrent(const QVector<DefPolygon> &objects, int row) const;

    /// True if the designation of \a row occurs more than once. Requires isCurrent().
    bool isDuplicate(int row) const { return m_counts.at(m_defs.at(row)) > 1; }

    /// Counts \a def instead of the designation of \a row.
    void rename(int row, const QString &def);

    /// Up to this number, isCurrent() compares all objects.
    static constexpr int fullCheckSize = 1000;

private:
    const DefPolygon *m_first; ///< start of the objects; only compared, never dereferenced
    QVector<QString> m_defs; ///< the counted designations by row; holding them keeps their addresses from being reused
    DefMap<int> m_counts;
};

/// The bounding box of the vertices with one designation.
class ConflictIndex
{
public:
    void add(const DefPoint &vertex);

    /// True when one of the added vertices, other than \a vertex itself, is not equal to \a vertex.
    bool isConflict(const DefPoint &vertex) const;

private:
    static constexpr double infinity = std::numeric_limits<double>::infinity();

    // Bounding box of the finite vertices. A non-finite vertex equals no other.
    double m_left = infinity;
    double m_right = -infinity;
    double m_bottom = infinity;
    double m_top = -infinity;
    int m_count = 0;
    int m_nonFiniteCount = 0;
};
