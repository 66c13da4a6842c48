#include "picturedata.h"

PictureData::PictureData(const ImportResult &result) : m_result(result)
{
    m_contourBoxes.reserve(result.contours.size());
    for (const ResultContour &contour : result.contours) {
        PictureBox box;
        std::for_each(begin(contour), end(contour), [&box](const QPointF &xy) {
            if (isDrawable(xy))
                box.add(xy);
        });
        m_contourBoxes.append(box);
        m_box.add(box);
    }
    m_objects.fill(-1, result.contours.size());
    for (int i = 0; i < result.objects.size(); ++i) {
        const ResultObject &object = result.objects.at(i);
        std::fill_n(m_objects.begin() + object.firstContour, object.contourCount, i);
    }
    m_index = PictureIndex(m_contourBoxes);
}

PictureBox PictureData::objectBox(int object) const
{
    PictureBox box;
    const ResultObject &o = m_result.objects.at(object);
    for (int contour = o.firstContour; contour < o.firstContour + o.contourCount; ++contour)
        box.add(m_contourBoxes.at(contour));
    return box;
}
