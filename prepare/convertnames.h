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
    /// \a content must outlive this object; its texts must not be added to.
    TextNames(ConvertContent &content, double reach);
    ~TextNames();
    TextNames(const TextNames &) = delete;
    TextNames &operator=(const TextNames &) = delete;

    /// Sets the designation of \a object, which has none: the text inside its outline that is nearest to its centre, or
    /// else the nearest text within reach.
    void nameObject(std::size_t object);

    /// Sets the number of \a point, which has none: the nearest text within reach.
    void numberPoint(ContentPoint &point);

private:
    struct Candidate
    {
        ContentText *text = nullptr;
        double distance = 0;
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
    CPLRectObj boundsOfTexts() const;
    ContentText *textInside(std::size_t object) const;
    ContentText *textNear(std::size_t object) const;
    CPLRectObj boundsOf(std::size_t object) const;
    static void toggleInside(std::vector<Candidate> &candidates, const ContentVertex &a, const ContentVertex &b);

    ConvertContent &m_content;
    double m_reach;
    Index m_numbers;
    Index m_names;
};
