#pragma once

#include "defpolygon.h"

#include <QString>
#include <QVector>

#include <limits>
#include <memory_resource>
#include <unordered_map>

/// True when the models take two designations for one.
struct SameDef
{
    bool operator()(const QString &a, const QString &b) const
    {
        return QString::compare(a, b, Qt::CaseInsensitive) == 0;
    }
};

/// A number that is the same for designations that are one.
struct DefHash
{
    std::size_t operator()(const QString &def) const;
};

/// A value for each designation, the first that came of those that are one.
///
/// The entries lie side by side and give their memory back together: one by one that takes as long as to fill it.
template <class Value>
class DefMap
{
public:
    explicit DefMap(int size) { m_values.reserve(static_cast<std::size_t>(size)); }

    /// The value of \a def, which is made when there is none.
    Value &operator[](const QString &def) { return m_values[def]; }
    /// The value of \a def, which was made.
    const Value &at(const QString &def) const { return m_values.at(def); }

private:
    std::pmr::monotonic_buffer_resource m_memory;
    std::pmr::unordered_map<QString, Value, DefHash, SameDef> m_values{&m_memory};
};

/// Which of many designations occur more than once. Empty ones are not counted.
class DefCounts
{
public:
    /// Counts the designations of \a objects.
    explicit DefCounts(const QVector<DefPolygon> &objects);

    /// False when the designations of \a objects are not those that were counted. What is asked next is \a row.
    ///
    /// Up to fullCheckSize objects are looked through, so that any change is found. Of more objects only their place in
    /// memory, their number and the \a row itself are looked at: another import and another order are found, but not
    /// a designation that was written into another row past rename().
    bool isOf(const QVector<DefPolygon> &objects, int row) const;

    /// True when the designation of \a row was counted more than once.
    bool isDuplicate(int row) const { return m_counts.at(m_defs.at(row)) > 1; }

    /// Counts \a def instead of the designation of \a row.
    void rename(int row, const QString &def);

    /// How many objects are looked through for each question.
    static constexpr int fullCheckSize = 1000;

private:
    const DefPolygon *m_first; ///< only to be compared
    QVector<QString> m_defs;   ///< as they were counted, by row; kept, so that no other text takes their memory
    DefMap<int> m_counts;
};

/// Where the vertices of one designation lie.
class DefPlaces
{
public:
    void add(const DefPoint &vertex);

    /// True when another of the vertices than \a vertex, which is one of them, is not equal to it.
    bool isConflict(const DefPoint &vertex) const;

private:
    static constexpr double infinity = std::numeric_limits<double>::infinity();

    // The box of the vertices on the map. One with a coordinate that is infinite or not a number is equal to none.
    double m_left = infinity;
    double m_right = -infinity;
    double m_bottom = infinity;
    double m_top = -infinity;
    int m_count = 0;
    int m_offMap = 0; ///< how many of them are not in the box
};
