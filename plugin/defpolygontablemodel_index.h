#pragma once

#include "defpolygon.h"

#include <QString>
#include <QVector>

#include <limits>
#include <utility>
#include <vector>

/// True when the models take two designations for one.
struct CaseInsensitiveEqual
{
    bool operator()(const QString &a, const QString &b) const
    {
        return QString::compare(a, b, Qt::CaseInsensitive) == 0;
    }
};

/// A number that is the same for designations that are one.
struct CaseFoldHash
{
    quint32 operator()(const QString &def) const;
};

/// A value for each designation, the first that came of those that are one.
///
/// The entries lie side by side in the order in which they came. A table of slots, at least half of them free, tells
/// where; a designation is looked for from the slot of its hash onwards.
template <class Value>
class DefMap
{
public:
    /// Room for \a size designations; more make it grow.
    explicit DefMap(int size)
    {
        m_entries.reserve(static_cast<std::size_t>(size));
        std::size_t count = 2;
        while (count < 2 * m_entries.capacity())
            count *= 2;
        m_slots.resize(count);
    }

    /// The value of \a def, which is made when there is none. It moves when another is made.
    Value &operator[](const QString &def)
    {
        const quint32 hash = CaseFoldHash()(def);
        Slot &slot = m_slots[slotOf(def, hash)];
        if (slot.isFree()) {
            slot = {hash, static_cast<int>(m_entries.size())};
            m_entries.push_back({def, Value()});
            if (2 * m_entries.size() > m_slots.size())
                grow();
            return m_entries.back().value;
        }
        return m_entries[slot.place()].value;
    }

    /// The value of \a def, which was made.
    const Value &at(const QString &def) const
    {
        const quint32 hash = CaseFoldHash()(def);
        return m_entries.at(m_slots[slotOf(def, hash)].place()).value;
    }

private:
    struct Entry
    {
        QString def;
        Value value;
    };

    struct Slot
    {
        bool isFree() const { return entry < 0; }
        std::size_t place() const { return static_cast<std::size_t>(entry); }

        quint32 hash = 0;
        int entry = -1;
    };

    /// The slot of \a def, or the free one that it would take.
    std::size_t slotOf(const QString &def, quint32 hash) const
    {
        const std::size_t last = m_slots.size() - 1; // the size is a power of 2
        std::size_t i = hash & last;
        while (!m_slots[i].isFree() && !isSlotOf(m_slots[i], def, hash))
            i = (i + 1) & last;
        return i;
    }

    bool isSlotOf(const Slot &slot, const QString &def, quint32 hash) const
    {
        return slot.hash == hash && CaseInsensitiveEqual()(m_entries[slot.place()].def, def);
    }

    void grow()
    {
        const std::vector<Slot> old = std::exchange(m_slots, std::vector<Slot>(2 * m_slots.size()));
        for (const Slot &slot : old) {
            if (!slot.isFree())
                m_slots[slotOf(m_entries[slot.place()].def, slot.hash)] = slot;
        }
    }

    std::vector<Entry> m_entries;
    std::vector<Slot> m_slots;
};

/// Which of many designations occur more than once. Empty ones are counted like any other.
class DuplicateIndex
{
public:
    /// Counts the designations of \a objects.
    explicit DuplicateIndex(const QVector<DefPolygon> &objects);

    /// False when the designations of \a objects are not those that were counted. What is asked next is \a row.
    ///
    /// Up to fullCheckSize objects are looked through, so that any change is found. Of more objects only their place in
    /// memory, their number and the \a row itself are looked at: another import and another order are found, but not
    /// a designation that was written into another row past rename().
    bool isCurrent(const QVector<DefPolygon> &objects, int row) const;

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
class ConflictIndex
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
    int m_nonFiniteCount = 0; ///< how many of them are not in the box
};
