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

/// A hash that is the same for designations that are equal by CaseInsensitiveEqual.
struct CaseFoldHash
{
    std::size_t operator()(const QString &def) const;
};

/// A value for each designation, ignoring case.
template <class Value>
using DefMap = std::unordered_map<QString, Value, CaseFoldHash, CaseInsensitiveEqual>;

/// Which designations of many objects occur more than once; empty ones are counted like any other.
class DuplicateIndex
{
public:
    explicit DuplicateIndex(const QVector<DefPolygon> &objects);

    /// False when the index is stale, that is, \a objects have other designations than those that were counted.
    ///
    /// Up to fullCheckSize objects are compared one by one, so that any change is noticed. With more objects only their
    /// place in memory, their number and the \a row that is asked for are compared: another import and another order
    /// are noticed, but not a designation of another row that was written without rename().
    bool isCurrent(const QVector<DefPolygon> &objects, int row) const;

    /// True when the designation of \a row was counted more than once.
    bool isDuplicate(int row) const { return m_counts.at(m_defs.at(row)) > 1; }

    /// Counts \a def instead of the designation of \a row.
    void rename(int row, const QString &def);

    /// The number of objects that are compared one by one for each question.
    static constexpr int fullCheckSize = 1000;

private:
    const DefPolygon *m_first; ///< start of the objects; only compared, never dereferenced
    QVector<QString> m_defs; ///< the counted designations by row; holding them keeps their addresses from being reused
    DefMap<int> m_counts;
};

/// Where the vertices of one designation lie.
class ConflictIndex
{
public:
    void add(const DefPoint &vertex);

    /// True when one of the added vertices, other than \a vertex itself, is not equal to \a vertex.
    bool isConflict(const DefPoint &vertex) const;

private:
    static constexpr double infinity = std::numeric_limits<double>::infinity();

    // Bounding box of the vertices with finite coordinates. The others are equal to none.
    double m_left = infinity;
    double m_right = -infinity;
    double m_bottom = infinity;
    double m_top = -infinity;
    int m_count = 0;
    int m_nonFiniteCount = 0;
};
