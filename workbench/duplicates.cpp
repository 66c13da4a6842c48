#include "duplicates.h"

#include <QHash>

namespace {

// Folds each character alone, as a case-insensitive QString::compare() does: «ß» and «ss» differ.
QString folded(QString text)
{
    for (QChar &c : text)
        c = c.toCaseFolded();
    return text;
}

} // namespace

QVector<bool> duplicateDefs(const ImportResult &result)
{
    QHash<QString, int> firstObjects;
    firstObjects.reserve(result.objects.size());
    QVector<bool> isDuplicate(result.objects.size(), false);
    for (int object = 0; object < result.objects.size(); ++object) {
        const QString def = folded(result.objects.at(object).def);
        const auto first = firstObjects.constFind(def);
        if (first == firstObjects.constEnd()) {
            firstObjects.insert(def, object);
        } else if (!def.isEmpty()) {
            isDuplicate[*first] = true;
            isDuplicate[object] = true;
        }
    }
    return isDuplicate;
}
