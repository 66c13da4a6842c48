#pragma once

#include "convertcontent.h"

#include <cpl_quad_tree.h>

#include <memory>

/// Finds the names of objects and numbers of points among the texts of a drawing.
///
/// Texts such as "12" or "н12" are numbers of points; they name objects only if there are no others, and others number
/// points only if there are no such texts. Decimal numbers are heights and name nothing.
class TextNames
{
public:
    /// \a content must outlive this object; its texts must not be added to. On a plan with large letters, texts are
    /// looked for farther away than \a reach.
    TextNames(ConvertContent &content, double reach);
    ~TextNames();
    TextNames(const TextNames &) = delete;
    TextNames &operator=(const TextNames &) = delete;

    /// Claims the number beside \a point, so that it names no object. To be called for all points without a number
    /// before the first object is named.
    void claimNumber(const ContentPoint &point);

    /// Claims the texts inside the outline of \a object, which has no designation: a text belongs to the smallest of
    /// the outlines around it. To be called for all such objects before the first is named.
    void claimTexts(std::size_t object);

    /// Sets the designation of \a object to the text that belongs to it and is nearest to its centre, if any. To be
    /// called for all objects before the others are named.
    void nameByOwnText(std::size_t object);

    /// Sets the designation of \a object, if it still has none, to a text that names nothing yet: inside its outline,
    /// or else the nearest within reach. If there is none, it shares the text of another object.
    void nameByOtherText(std::size_t object);

    /// Sets the number of \a point, which has none: the nearest text within reach.
    void numberPoint(ContentPoint &point);

private:
    struct Candidate
    {
        ContentText *text = nullptr;
        bool isInside = false;
    };

    struct Index
    {
        std::unique_ptr<CPLQuadTree, decltype(&CPLQuadTreeDestroy)> tree{nullptr, &CPLQuadTreeDestroy};
        bool isEmpty = true;
    };

    template <typename Visit>
    void forEachText(const Index &index, const CPLRectObj &box, const Visit &visit) const;
    static void createIndex(Index &index, const CPLRectObj &box);
    const Index &objectIndex() const { return m_names.isEmpty ? m_numbers : m_names; }
    const Index &pointIndex() const { return m_numbers.isEmpty ? m_names : m_numbers; }
    CPLRectObj boundsOfTexts() const;
    ContentText *textFor(const ContentPoint &point) const;
    template <typename Visit>
    void forEachObjectText(const CPLRectObj &box, const Visit &visit) const;
    template <typename Visit>
    void forEachInside(std::size_t object, const Visit &visit) const;
    template <typename IsWanted>
    ContentText *textInside(std::size_t object, const IsWanted &isWanted) const;
    ContentText *textNear(std::size_t object, bool isUsed) const;
    bool hasTexts(std::size_t object) const;
    void setName(std::size_t object, ContentText *text);
    CPLRectObj boundsOf(std::size_t object) const;
    static void toggleInside(std::vector<Candidate> &candidates, const ContentVertex &a, const ContentVertex &b);

    ConvertContent &m_content;
    double m_reach;
    Index m_numbers;
    Index m_names;
};
