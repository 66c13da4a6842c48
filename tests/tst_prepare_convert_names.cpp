#include "convertnames.h"

#include <QRandomGenerator>
#include <QSet>
#include <QTest>

#include <ogr_geometry.h>

#include <cmath>
#include <vector>

/// Compares the names of random objects with those that GEOS finds.
class tst_PrepareConvertNames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesAreThoseOfGeos_data();
    void namesAreThoseOfGeos();
    void openLinesHaveNoInside();
};

namespace {

constexpr double reach = 3;

double number(QRandomGenerator &random, double from, double to)
{
    return from + random.generateDouble() * (to - from);
}

/// Appends a ring around x y whose corners are at random distances.
void appendRing(ConvertContent &content, QRandomGenerator &random, double x, double y, double from, double to)
{
    const int count = 3 + random.bounded(20);
    const std::size_t first = content.vertices.size();
    for (int i = 0; i < count; ++i) {
        const double radius = number(random, from, to);
        const double angle = 2 * std::acos(-1) * i / count;
        content.vertices.push_back({x + radius * std::cos(angle), y + radius * std::sin(angle)});
    }
    content.vertices.push_back(ContentVertex(content.vertices[first]));
    content.contourEnds.push_back(content.vertices.size());
}

OGRPolygon toPolygon(const ConvertContent &content, std::size_t object)
{
    OGRPolygon polygon;
    for (std::size_t c = content.contourBegin(object); c < content.objects[object].contourEnd; ++c) {
        OGRLinearRing ring;
        for (std::size_t i = content.vertexBegin(c); i < content.contourEnds[c]; ++i)
            ring.addPoint(content.vertices[i].x, content.vertices[i].y);
        polygon.addRing(&ring);
    }
    return polygon;
}

/// The names that GEOS finds: a text belongs to the outline around it whose box is the smallest.
class ExpectedNames
{
public:
    explicit ExpectedNames(const ConvertContent &content);

    const QStringList &names() const { return m_names; }

private:
    bool contains(int object, const ContentText &text) const;
    double distance(int object, const ContentText &text) const;
    double boxArea(int object) const;
    int owner(const ContentText &text) const;
    void nameByOwnText(int object);
    bool nameByInnerText(int object, bool isUsed);
    bool nameByNearText(int object, bool isUsed);
    bool setName(int object, const ContentText *text);
    double centreDistance(int object, const ContentText &text) const;

    const ConvertContent &m_content;
    std::vector<OGRPolygon> m_polygons;
    QStringList m_names;
    QSet<QString> m_used;
};

ExpectedNames::ExpectedNames(const ConvertContent &content) : m_content(content)
{
    const int count = static_cast<int>(content.objects.size());
    for (int i = 0; i < count; ++i) {
        m_polygons.push_back(toPolygon(content, static_cast<std::size_t>(i)));
        m_names.append(QString());
    }
    for (int i = 0; i < count; ++i)
        nameByOwnText(i);
    for (int i = 0; i < count; ++i) {
        if (m_names.at(i).isEmpty() && !nameByInnerText(i, false) && !nameByNearText(i, false) &&
            !nameByInnerText(i, true))
            nameByNearText(i, true);
    }
}

bool ExpectedNames::contains(int object, const ContentText &text) const
{
    const OGRPoint at(text.at.x, text.at.y);
    return m_polygons[static_cast<std::size_t>(object)].Contains(&at) != 0;
}

double ExpectedNames::distance(int object, const ContentText &text) const
{
    const OGRPoint at(text.at.x, text.at.y);
    return m_polygons[static_cast<std::size_t>(object)].Distance(&at);
}

double ExpectedNames::boxArea(int object) const
{
    OGREnvelope box;
    m_polygons[static_cast<std::size_t>(object)].getEnvelope(&box);
    return (box.MaxX - box.MinX) * (box.MaxY - box.MinY);
}

double ExpectedNames::centreDistance(int object, const ContentText &text) const
{
    OGREnvelope box;
    m_polygons[static_cast<std::size_t>(object)].getEnvelope(&box);
    return std::hypot(text.at.x - (box.MinX + box.MaxX) / 2, text.at.y - (box.MinY + box.MaxY) / 2);
}

int ExpectedNames::owner(const ContentText &text) const
{
    int best = -1;
    for (int i = 0; i < m_names.size(); ++i) {
        if (contains(i, text) && (best < 0 || boxArea(i) < boxArea(best)))
            best = i;
    }
    return best;
}

bool ExpectedNames::setName(int object, const ContentText *text)
{
    if (text == nullptr)
        return false;
    m_names[object] = text->text;
    m_used.insert(text->text);
    return true;
}

void ExpectedNames::nameByOwnText(int object)
{
    const ContentText *best = nullptr;
    for (const ContentText &text : m_content.texts) {
        if (owner(text) == object && (best == nullptr || centreDistance(object, text) < centreDistance(object, *best)))
            best = &text;
    }
    setName(object, best);
}

bool ExpectedNames::nameByInnerText(int object, bool isUsed)
{
    const ContentText *best = nullptr;
    for (const ContentText &text : m_content.texts) {
        if (contains(object, text) && (isUsed || !m_used.contains(text.text)) &&
            (best == nullptr || centreDistance(object, text) < centreDistance(object, *best)))
            best = &text;
    }
    return setName(object, best);
}

bool ExpectedNames::nameByNearText(int object, bool isUsed)
{
    const ContentText *best = nullptr;
    for (const ContentText &text : m_content.texts) {
        if (m_used.contains(text.text) == isUsed && !contains(object, text) && distance(object, text) <= reach &&
            (best == nullptr || distance(object, text) < distance(object, *best)))
            best = &text;
    }
    return setName(object, best);
}

/// Names all objects as a conversion does.
void nameObjects(ConvertContent &content)
{
    TextNames names(content, reach);
    for (const auto step : {&TextNames::claimTexts, &TextNames::nameByOwnText, &TextNames::nameByOtherText}) {
        for (std::size_t i = 0; i < content.objects.size(); ++i)
            (names.*step)(i);
    }
}

} // namespace

void tst_PrepareConvertNames::namesAreThoseOfGeos_data()
{
    QTest::addColumn<quint32>("start");
    QTest::addColumn<int>("textCount");

    for (quint32 start = 1; start <= 5; ++start)
        QTest::addRow("%u", start) << start << 20 * static_cast<int>(start);
}

void tst_PrepareConvertNames::namesAreThoseOfGeos()
{
    QFETCH(quint32, start);
    QFETCH(int, textCount);
    QRandomGenerator random(start);
    ConvertContent content;
    for (int i = 0; i < textCount; ++i)
        content.texts.push_back({{number(random, 0, 100), number(random, 0, 100)}, QStringLiteral("t-%1").arg(i)});
    for (int i = 0; i < 50; ++i) {
        const double x = number(random, 0, 100);
        const double y = number(random, 0, 100);
        appendRing(content, random, x, y, 5, 15);
        if (random.bounded(2) == 1)
            appendRing(content, random, x, y, 0.5, 2); // a hole
        content.objects.push_back({true, content.contourEnds.size(), QString(), QString()});
    }
    const QStringList expected = ExpectedNames(content).names();

    nameObjects(content);

    QStringList names;
    for (const ContentObject &object : content.objects)
        names.append(object.def);
    QCOMPARE(names, expected);
    QVERIFY(QSet<QString>(names.begin(), names.end()).size() > 5);
}

void tst_PrepareConvertNames::openLinesHaveNoInside()
{
    ConvertContent content;
    content.vertices = {{0, 0}, {20, 0}, {20, 20}, {0, 20}};
    content.contourEnds = {4};
    content.objects = {{false, 1, QString(), QString()}};
    content.texts = {{{10, 10}, QStringLiteral("far")}, {{10, 22}, QStringLiteral("near")}};

    nameObjects(content);

    QCOMPARE(content.objects[0].def, QStringLiteral("near"));
}

QTEST_APPLESS_MAIN(tst_PrepareConvertNames)
#include "tst_prepare_convert_names.moc"
