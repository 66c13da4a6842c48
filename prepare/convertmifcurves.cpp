// Curves of a MIF file:
//
//     ARC x1 y1 x2 y2            the rectangle around the whole ellipse,
//     0 90                       and the angles in degrees, here or in the keyword line
//     ELLIPSE x1 y1 x2 y2        the rectangle around it
//     ROUNDRECT x1 y1 x2 y2      the rectangle,
//     5                          and the diameter of its corners, here or in the keyword line

#include "convertmifcurves.h"

#include "convertarcs.h"
#include "convertcontent.h"

#include <QHash>
#include <QList>

#include <cmath>
#include <vector>

namespace {

constexpr double pi = 3.14159265358979323846;

using Vertices = std::vector<ContentVertex>;

QList<QByteArray> words(const QByteArray &line)
{
    const QByteArray simplified = line.simplified();
    return simplified.isEmpty() ? QList<QByteArray>() : simplified.split(' ');
}

QByteArray verticesText(const Vertices &vertices)
{
    QByteArray text;
    for (const ContentVertex &vertex : vertices)
        text += QByteArray::number(vertex.x, 'g', 17) + ' ' + QByteArray::number(vertex.y, 'g', 17) + '\n';
    return QByteArray::number(static_cast<qulonglong>(vertices.size())) + '\n' + text;
}

// Reads the lines of a data section and writes them with the curves replaced.
class CurveReplacer
{
public:
    CurveReplacer(const QByteArray &mif, double deviation) : m_mif(mif), m_deviation(deviation) {}

    QByteArray replaced();
    int coarseCount() const { return m_coarseCount; }

private:
    QByteArray nextLine();
    bool readNumbers(const QList<QByteArray> &first, int count);
    void appendArc(Vertices &vertices, const ContentVertex &centre, const ContentVertex &axes, double from, double to);
    QByteArray curve(const QByteArray &keyword);

    const QByteArray &m_mif;
    double m_deviation;
    int m_next = 0;                ///< where the next line begins
    std::vector<double> m_numbers; ///< of the current curve
    double m_chordCount = 0;
    bool m_isCoarse = false; ///< the current curve
    int m_coarseCount = 0;
};

QByteArray CurveReplacer::nextLine()
{
    const int end = m_mif.indexOf('\n', m_next);
    QByteArray line = m_mif.mid(m_next, end < 0 ? -1 : end - m_next);
    m_next = end < 0 ? m_mif.size() : end + 1;
    return line;
}

// The numbers after the rectangle may be in the next line. After a failure that line is not consumed.
bool CurveReplacer::readNumbers(const QList<QByteArray> &first, int count)
{
    constexpr int rectangle = 4;
    const int second = m_next;
    QList<QByteArray> texts = first.mid(1);
    if (texts.size() == rectangle && count > rectangle)
        texts += words(nextLine());
    m_numbers.clear();
    for (const QByteArray &text : texts) {
        bool ok = false;
        m_numbers.push_back(text.toDouble(&ok));
        if (!ok || !std::isfinite(m_numbers.back()))
            break;
    }
    if (texts.size() == count && static_cast<int>(m_numbers.size()) == count && std::isfinite(m_numbers.back()))
        return true;
    m_next = second;
    return false;
}

// Appends the arc of an ellipse between two angles in radians. When there are too many chords in all, it gets few.
void CurveReplacer::appendArc(Vertices &vertices, const ContentVertex &centre, const ContentVertex &axes, double from,
                              double to)
{
    constexpr double few = 8;
    const double step = 2 * chordHalfAngle(std::max(axes.x, axes.y), m_deviation);
    const double needed = std::max(1.0, std::ceil((to - from) / step));
    const double most = std::ceil((to - from) / (2 * pi) * maxChordsOfArc);
    const double count = std::min(needed, m_chordCount < maxChordsOfDrawing ? most : few);
    m_isCoarse = m_isCoarse || count < needed;
    m_chordCount += count;
    for (int i = 0; i <= static_cast<int>(count); ++i) {
        const double angle = from + (to - from) * i / count;
        vertices.push_back({centre.x + axes.x * std::cos(angle), centre.y + axes.y * std::sin(angle)});
    }
}

QByteArray CurveReplacer::curve(const QByteArray &keyword)
{
    const ContentVertex centre{(m_numbers[0] + m_numbers[2]) / 2, (m_numbers[1] + m_numbers[3]) / 2};
    const ContentVertex half{std::fabs(m_numbers[2] - m_numbers[0]) / 2, std::fabs(m_numbers[3] - m_numbers[1]) / 2};
    Vertices vertices;
    m_isCoarse = false;
    if (keyword == "ARC") {
        const double from = m_numbers[4] * pi / 180;
        const double to = m_numbers[5] * pi / 180;
        appendArc(vertices, centre, half, from, to > from ? to : to + 2 * pi);
        return "Pline " + verticesText(vertices);
    }
    const double diameter = keyword == "ELLIPSE" ? 2 * std::max(half.x, half.y) : std::fabs(m_numbers[4]);
    const ContentVertex axes{std::min(diameter / 2, half.x), std::min(diameter / 2, half.y)};
    const ContentVertex inner{half.x - axes.x, half.y - axes.y};
    for (int corner = 0; corner < 4; ++corner) {
        const double signX = corner == 0 || corner == 3 ? 1 : -1;
        const double signY = corner < 2 ? 1 : -1;
        appendArc(vertices, {centre.x + signX * inner.x, centre.y + signY * inner.y}, axes, corner * pi / 2,
                  (corner + 1) * pi / 2);
        if (keyword == "ELLIPSE")
            vertices.pop_back(); // the next quarter begins there
    }
    vertices.emplace_back(vertices.front());
    return "Region 1\n" + verticesText(vertices);
}

QByteArray CurveReplacer::replaced()
{
    static const QHash<QByteArray, int> numberCounts{{"ARC", 6}, {"ELLIPSE", 4}, {"ROUNDRECT", 5}};
    QByteArray text;
    while (m_next < m_mif.size()) {
        const QByteArray line = nextLine();
        const QList<QByteArray> texts = line.isEmpty() || line.at(0) <= '9' ? QList<QByteArray>() : words(line);
        const QByteArray keyword = texts.value(0).toUpper();
        const int count = numberCounts.value(keyword);
        const bool isCurve = count > 0 && readNumbers(texts, count);
        text += isCurve ? curve(keyword) : line + '\n';
        m_coarseCount += isCurve && m_isCoarse ? 1 : 0;
    }
    return text;
}

} // namespace

QByteArray withoutCurves(const QByteArray &mif, double deviation, int &coarseCount)
{
    CurveReplacer replacer(mif, deviation);
    QByteArray replaced = replacer.replaced();
    coarseCount = replacer.coarseCount();
    return replaced;
}
