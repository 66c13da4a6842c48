#pragma once

#include "checkscan.h"

#include <QHash>
#include <QSet>
#include <QString>

/// The blocks of a drawing and the references to them.
class BlockContents
{
public:
    /// Begins the block \a name, to which the next calls of addContent() and addReference() add.
    void begin(const QString &name) { m_current = name.toUpper(); }
    void addContent() { m_blocks[m_current].draws = true; }
    void addReference(const QString &name) { m_blocks[m_current].references.insert(name.toUpper()); }

    /// The tally of references to the block \a name from outside blocks.
    Tally &insertions(const QString &name) { return m_insertions[name.toUpper()]; }

    /// All references from outside blocks to blocks that draw something, directly or through other blocks.
    Tally drawingInsertions() const;

private:
    struct Block
    {
        bool draws = false; ///< has entities other than points
        QSet<QString> references;
    };

    bool draws(const QString &name) const;

    QString m_current;
    QHash<QString, Block> m_blocks;
    QHash<QString, Tally> m_insertions;
};
