#include "checknames.h"

#include "defpolygon_index.h"
#include "digit.h"

#include <QMultiHash>

#include <algorithm>

namespace {

/// True for digits, with or without a letter before them: the import takes these for point numbers, not designations.
bool isPointNumber(const QString &name)
{
    const int begin = !name.isEmpty() && name.at(0).isLetter() ? 1 : 0;
    return begin < name.size() && std::all_of(name.begin() + begin, name.end(), isDigit);
}

QVector<DefPoint> namingTexts(QVector<DefPoint> texts)
{
    const auto isNumber = [](const DefPoint &text) { return isPointNumber(text.def); };
    if (!std::all_of(texts.begin(), texts.end(), isNumber))
        texts.erase(std::remove_if(texts.begin(), texts.end(), isNumber), texts.end());
    sortPoints(texts);
    return texts;
}

double squaredDistance(const DefPoint &text, const QPointF &p)
{
    return (text.x - p.x()) * (text.x - p.x()) + (text.y - p.y()) * (text.y - p.y());
}

/// Tests whether a name is farther from a position than the nearest text.
class NameSearch
{
public:
    explicit NameSearch(const QVector<DefPoint> &texts) : m_texts(texts), m_nearest(texts)
    {
        for (int i = 0; i < texts.size(); ++i)
            m_places.insert(texts.at(i).def, i);
    }

    bool isMisplaced(const QString &name, const QPointF &p);

private:
    QVector<DefPoint> m_texts;
    NearestPointIndex m_nearest;
    QMultiHash<QString, int> m_places;
};

// Bounds the work for a name that occurs very often. A name that does not occur contains an expanded special character.
bool NameSearch::isMisplaced(const QString &name, const QPointF &p)
{
    constexpr int maxPlaces = 100;
    const DefPoint *const nearest = m_nearest.find(p);
    auto place = m_places.constFind(name);
    if (nearest == nullptr || nearest->def == name || nearest->def.isEmpty() || place == m_places.constEnd())
        return false;
    const double distance = squaredDistance(*nearest, p);
    for (int i = 0; i < maxPlaces && place != m_places.constEnd() && place.key() == name; ++i, ++place) {
        if (squaredDistance(m_texts.at(*place), p) <= distance)
            return false;
    }
    return true;
}

} // namespace

MisplacedNames findMisplacedNames(const ImportOutcome &outcome, const QVector<DefPoint> &texts)
{
    MisplacedNames misplaced;
    if (texts.isEmpty())
        return misplaced;
    NameSearch search(namingTexts(texts));
    for (const DefPolygon &object : outcome.objects) {
        if (search.isMisplaced(object.def, object.centroid()) && misplaced.count++ == 0)
            misplaced.firstName = object.def;
    }
    return misplaced;
}
