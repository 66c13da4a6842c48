#include "convertnames.h"

#include <QRegularExpression>

#include <cpl_conv.h>

#include <algorithm>
#include <cmath>

namespace {

// On a plan of a small scale the letters are large, and the texts are farther from what they name.
constexpr double reachInHeights = 2;

enum class TextKind { Name, Number, Height };

TextKind kindOf(const QString &text)
{
    static const QRegularExpression number(QStringLiteral("^[A-Za-zА-Яа-яЁё]?\\d+$"));
    static const QRegularExpression height(QStringLiteral("^[+-]?\\d*[.,]\\d+$"));
    if (number.match(text).hasMatch())
        return TextKind::Number;
    return height.match(text).hasMatch() || text.trimmed().isEmpty() ? TextKind::Height : TextKind::Name;
}

double median(std::vector<double> &numbers)
{
    if (numbers.empty())
        return 0;
    const auto middle = numbers.begin() + static_cast<std::ptrdiff_t>(numbers.size() / 2);
    std::nth_element(numbers.begin(), middle, numbers.end());
    return *middle;
}

void textBounds(const void *text, CPLRectObj *box)
{
    const ContentVertex &at = static_cast<const ContentText *>(text)->at;
    *box = {at.x, at.y, at.x, at.y};
}

double distanceToSegment(const ContentVertex &p, const ContentVertex &a, const ContentVertex &b)
{
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    const double length = dx * dx + dy * dy;
    const double along = length > 0 ? ((p.x - a.x) * dx + (p.y - a.y) * dy) / length : 0;
    const double t = std::min(1.0, std::max(0.0, along));
    return std::hypot(p.x - a.x - t * dx, p.y - a.y - t * dy);
}

void extend(CPLRectObj &box, const ContentVertex &at)
{
    box.minx = std::min(box.minx, at.x);
    box.miny = std::min(box.miny, at.y);
    box.maxx = std::max(box.maxx, at.x);
    box.maxy = std::max(box.maxy, at.y);
}

// Of nested outlines the inner one has the smaller box. Equal outlines share their texts.
double areaOf(const CPLRectObj &box)
{
    return (box.maxx - box.minx) * (box.maxy - box.miny);
}

} // namespace

TextNames::TextNames(ConvertContent &content, double reach) : m_content(content), m_reach(reach)
{
    const CPLRectObj box = boundsOfTexts();
    createIndex(m_numbers, box);
    createIndex(m_names, box);
    std::vector<double> heights;
    for (ContentText &text : m_content.texts) {
        const TextKind kind = kindOf(text.text);
        if (kind == TextKind::Height)
            continue;
        Index &index = kind == TextKind::Number ? m_numbers : m_names;
        CPLQuadTreeInsert(index.tree.get(), &text);
        index.isEmpty = false;
        heights.push_back(text.height);
    }
    if (m_reach > 0)
        m_reach = std::max(m_reach, reachInHeights * median(heights));
}

TextNames::~TextNames() = default;

CPLRectObj TextNames::boundsOfTexts() const
{
    if (m_content.texts.empty())
        return {0, 0, 0, 0};
    const ContentVertex &first = m_content.texts.front().at;
    CPLRectObj box{first.x, first.y, first.x, first.y};
    for (const ContentText &text : m_content.texts)
        extend(box, text.at);
    return box;
}

// Texts at one place would make the tree ever deeper.
void TextNames::createIndex(Index &index, const CPLRectObj &box)
{
    constexpr int maxDepth = 12;
    index.tree.reset(CPLQuadTreeCreate(&box, textBounds));
    CPLQuadTreeSetMaxDepth(index.tree.get(), maxDepth);
}

template <typename Visit>
void TextNames::forEachText(const Index &index, const CPLRectObj &box, const Visit &visit) const
{
    int count = 0;
    void **const found = CPLQuadTreeSearch(index.tree.get(), &box, &count);
    for (int i = 0; i < count; ++i)
        visit(*static_cast<ContentText *>(found[i]));
    CPLFree(found);
}

template <typename Visit>
void TextNames::forEachObjectText(const CPLRectObj &box, const Visit &visit) const
{
    forEachText(objectIndex(), box, [&visit](ContentText &text) {
        if (!text.isOfPoint)
            visit(text);
    });
}

CPLRectObj TextNames::boundsOf(std::size_t object) const
{
    const std::size_t first = m_content.vertexBegin(m_content.contourBegin(object));
    const std::size_t end = m_content.contourEnds[m_content.objects[object].contourEnd - 1];
    CPLRectObj box{m_content.vertices[first].x, m_content.vertices[first].y, m_content.vertices[first].x,
                   m_content.vertices[first].y};
    for (std::size_t i = first; i < end; ++i)
        extend(box, m_content.vertices[i]);
    return box;
}

// Casts a ray from each candidate that lies beside the edge from a to b; the candidates are sorted by y.
void TextNames::toggleInside(std::vector<Candidate> &candidates, const ContentVertex &a, const ContentVertex &b)
{
    const auto isBelow = [](const Candidate &candidate, double y) { return candidate.text->at.y < y; };
    const double low = std::min(a.y, b.y);
    const double high = std::max(a.y, b.y);
    auto it = std::lower_bound(candidates.begin(), candidates.end(), low, isBelow);
    for (; it != candidates.end() && it->text->at.y < high; ++it) {
        const ContentVertex &p = it->text->at;
        const double x = a.x + (p.y - a.y) / (b.y - a.y) * (b.x - a.x);
        it->isInside = it->isInside != (p.x < x);
    }
}

// By the even-odd rule over all closed contours, so that holes and several areas need no distinction.
template <typename Visit>
void TextNames::forEachInside(std::size_t object, const Visit &visit) const
{
    std::vector<Candidate> candidates;
    forEachObjectText(boundsOf(object), [&](ContentText &text) { candidates.push_back({&text, false}); });
    if (candidates.empty())
        return;
    std::sort(candidates.begin(), candidates.end(),
              [](const Candidate &a, const Candidate &b) { return a.text->at.y < b.text->at.y; });
    for (std::size_t c = m_content.contourBegin(object); c < m_content.objects[object].contourEnd; ++c) {
        const ContentVertex *const first = &m_content.vertices[m_content.vertexBegin(c)];
        const ContentVertex *const last = &m_content.vertices[m_content.contourEnds[c] - 1];
        if (std::hypot(last->x - first->x, last->y - first->y) > 0)
            continue;
        for (const ContentVertex *v = first; v != last; ++v)
            toggleInside(candidates, v[0], v[1]);
    }
    for (const Candidate &candidate : candidates) {
        if (candidate.isInside)
            visit(*candidate.text);
    }
}

// Returns the text nearest to the centre; null if there is none.
template <typename IsWanted>
ContentText *TextNames::textInside(std::size_t object, const IsWanted &isWanted) const
{
    const CPLRectObj box = boundsOf(object);
    const ContentVertex centre{(box.minx + box.maxx) / 2, (box.miny + box.maxy) / 2};
    ContentText *best = nullptr;
    double nearest = 0;
    forEachInside(object, [&](ContentText &text) {
        const double distance = std::hypot(text.at.x - centre.x, text.at.y - centre.y);
        if (!isWanted(text) || (best != nullptr && distance >= nearest))
            return;
        best = &text;
        nearest = distance;
    });
    return best;
}

ContentText *TextNames::textNear(std::size_t object, bool isUsed) const
{
    ContentText *best = nullptr;
    double reach = m_reach;
    for (std::size_t c = m_content.contourBegin(object); c < m_content.objects[object].contourEnd; ++c) {
        for (std::size_t i = m_content.vertexBegin(c) + 1; i < m_content.contourEnds[c]; ++i) {
            const ContentVertex &a = m_content.vertices[i - 1];
            const ContentVertex &b = m_content.vertices[i];
            const CPLRectObj box{std::min(a.x, b.x) - reach, std::min(a.y, b.y) - reach, std::max(a.x, b.x) + reach,
                                 std::max(a.y, b.y) + reach};
            forEachObjectText(box, [&](ContentText &text) {
                const double distance = distanceToSegment(text.at, a, b);
                if (text.isUsed != isUsed || distance > reach || (best != nullptr && distance >= reach))
                    return;
                best = &text;
                reach = distance;
            });
        }
    }
    return best;
}

// Most objects of a drawing have no text near them.
bool TextNames::hasTexts(std::size_t object) const
{
    if (m_names.isEmpty && m_numbers.isEmpty)
        return false;
    CPLRectObj box = boundsOf(object);
    box = {box.minx - m_reach, box.miny - m_reach, box.maxx + m_reach, box.maxy + m_reach};
    int count = 0;
    forEachObjectText(box, [&count](const ContentText &) { ++count; });
    return count > 0;
}

void TextNames::setName(std::size_t object, ContentText *text)
{
    if (text == nullptr)
        return;
    text->isUsed = true;
    m_content.objects[object].def = text->text;
}

void TextNames::claimTexts(std::size_t object)
{
    if (!hasTexts(object))
        return;
    const double area = areaOf(boundsOf(object));
    forEachInside(object, [area](ContentText &text) {
        if (text.outlineArea <= 0 || area < text.outlineArea)
            text.outlineArea = area;
    });
}

void TextNames::nameByOwnText(std::size_t object)
{
    if (!hasTexts(object))
        return;
    const double area = areaOf(boundsOf(object));
    setName(object, textInside(object, [area](const ContentText &text) { return !(text.outlineArea < area); }));
}

void TextNames::nameByOtherText(std::size_t object)
{
    if (!m_content.objects[object].def.trimmed().isEmpty() || !hasTexts(object))
        return;
    ContentText *text = textInside(object, [](const ContentText &inside) { return !inside.isUsed; });
    if (text == nullptr)
        text = textNear(object, false);
    if (text == nullptr)
        text = textInside(object, [](const ContentText &) { return true; });
    setName(object, text != nullptr ? text : textNear(object, true));
}

ContentText *TextNames::textFor(const ContentPoint &point) const
{
    const Index &index = pointIndex();
    const CPLRectObj box{point.at.x - m_reach, point.at.y - m_reach, point.at.x + m_reach, point.at.y + m_reach};
    ContentText *best = nullptr;
    double reach = m_reach;
    forEachText(index, box, [&](ContentText &text) {
        const double distance = std::hypot(text.at.x - point.at.x, text.at.y - point.at.y);
        if (distance > reach || (best != nullptr && distance >= reach))
            return;
        best = &text;
        reach = distance;
    });
    return best;
}

// Farther away, a number may name the object around it and the point may have none.
void TextNames::claimNumber(const ContentPoint &point)
{
    ContentText *const text = m_numbers.isEmpty ? nullptr : textFor(point);
    if (text == nullptr)
        return;
    const double distance = std::hypot(text->at.x - point.at.x, text->at.y - point.at.y);
    text->isOfPoint = text->isOfPoint || !(text->height > 0) || distance <= reachInHeights * text->height;
}

void TextNames::numberPoint(ContentPoint &point)
{
    ContentText *const text = textFor(point);
    if (text == nullptr)
        return;
    text->isUsed = true;
    point.def = text->text;
}
