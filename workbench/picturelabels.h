#pragma once

#include "picturedata.h"

#include <QFont>
#include <QHash>
#include <QVector>

class PictureOutline;

/// Remembers which parts of a picture are taken, so that labels do not overlap.
class LabelSpace
{
public:
    /// Takes \a rect if all of it is free and returns true; otherwise changes nothing.
    bool take(const QRectF &rect);

private:
    QHash<qint64, QVector<QRectF>> m_cells; ///< by square of the picture: the rectangles that touch it
};

/// A text of the picture: the name of an object or the number of a vertex.
struct PictureLabel
{
    QRectF rect; ///< pixels
    QString text;
    bool isName = false;
    bool isCurrent = false;
};

/// Places the names of objects and the numbers of vertices that are large enough on screen.
///
/// A label overlaps neither another one nor an area that was passed to avoid(). The current object comes first.
class PictureLabels
{
public:
    /// \a data must outlive this object.
    PictureLabels(const PictureData &data, const PictureMap &map, const QFont &font);

    /// Keeps labels away from \a rect.
    void avoid(const QRectF &rect) { m_space.take(rect); }

    /// Places what fits; \a currentObject may be -1.
    void place(int currentObject);

    const QVector<PictureLabel> &labels() const { return m_labels; }

    static QFont numberFont(QFont font);

private:
    struct Visible
    {
        int object;
        QVector<int> contours;
    };

    QVector<Visible> visibleObjects(const QVector<int> &contours, int currentObject) const;
    void placeName(const Visible &visible, bool isCurrent);
    void placeNumbers(const Visible &visible, bool isCurrent);
    void placeNumbers(const ResultContour &contour, bool isCurrent);
    bool placeInside(const PictureOutline &rings, PictureLabel label);
    bool placeBeside(const QPointF &point, const QPointF &preferred, PictureLabel label);
    bool add(const PictureLabel &label);

    const PictureData &m_data;
    const PictureMap m_map;
    const QFont m_nameFont;
    const QFont m_numberFont;
    LabelSpace m_space;
    QHash<QPair<int, int>, QString> m_numberAt; ///< by position in half pixels; a shared corner is numbered once
    QVector<PictureLabel> m_labels;
    bool m_hasPoints = true; ///< whether contours of a single vertex are labelled
};

/// An estimate of the distance between neighbouring vertices of \a contour, whose box is \a pixels.
double vertexSpacing(const ResultContour &contour, const QRectF &pixels);
