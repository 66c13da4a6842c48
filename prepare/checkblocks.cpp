#include "checkblocks.h"

#include <QStringList>

// Iterative, because blocks can be nested deeply or refer to each other in a circle.
bool BlockContents::draws(const QString &name) const
{
    QSet<QString> seen{name};
    QStringList waiting{name};
    while (!waiting.isEmpty()) {
        const auto block = m_blocks.constFind(waiting.takeLast());
        if (block == m_blocks.constEnd())
            continue;
        if (block->draws)
            return true;
        for (const QString &reference : block->references) {
            if (!seen.contains(reference))
                waiting.append(reference);
            seen.insert(reference);
        }
    }
    return false;
}

Tally BlockContents::drawingInsertions() const
{
    Tally all;
    for (auto it = m_insertions.begin(); it != m_insertions.end(); ++it) {
        if (!draws(it.key()))
            continue;
        const qint64 count = all.count + it->count;
        if (all.count == 0 || it->line < all.line)
            all = *it;
        all.count = count;
    }
    return all;
}
