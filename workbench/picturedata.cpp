#include "picturedata.h"

PictureData::PictureData(const ImportResult &result) : m_result(result)
{
    m_contourBoxes.reserve(result.contours.size());
    for (const ResultContour &contour : result.contours) {
        m_contourBoxes.append(boxOf(contour.firstVertex, contour.vertexCount));
        m_box.add(m_contourBoxes.last());
    }
    for (int i = 0; i < result.vertices.size(); i += chunkSize)
        m_chunkBoxes.append(boxOf(i, std::min(chunkSize, result.vertices.size() - i)));
    m_objects.fill(-1, result.contours.size());
    for (int i = 0; i < result.objects.size(); ++i) {
        const ResultObject &object = result.objects.at(i);
        std::fill_n(m_objects.begin() + object.firstContour, object.contourCount, i);
    }
    m_index = PictureIndex(m_contourBoxes);
}

PictureBox PictureData::boxOf(int firstVertex, int vertexCount) const
{
    PictureBox box;
    const QPointF *const vertices = m_result.vertices.constData();
    std::for_each(vertices + firstVertex, vertices + firstVertex + vertexCount, [&box](const QPointF &xy) {
        if (isDrawable(xy))
            box.add(xy);
    });
    return box;
}

PictureBox PictureData::objectBox(int object) const
{
    PictureBox box;
    const ResultObject &o = m_result.objects.at(object);
    for (int contour = o.firstContour; contour < o.firstContour + o.contourCount; ++contour)
        box.add(m_contourBoxes.at(contour));
    return box;
}

int PictureData::vertexCount(const QVector<int> &contours, const PictureBox &view) const
{
    int count = 0;
    for (const int i : contours) {
        const ResultContour &contour = m_result.contours.at(i);
        const int end = contour.firstVertex + contour.vertexCount;
        for (int vertex = contour.firstVertex; vertex < end;) {
            const int chunk = vertex / chunkSize * chunkSize;
            const int next = std::min(end, chunk + chunkSize);
            count += chunkBox(chunk).touches(view) ? next - vertex : 0;
            vertex = next;
        }
    }
    return count;
}
