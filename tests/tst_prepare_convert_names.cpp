#include "convertnames.h"

#include <QRandomGenerator>
#include <QTest>

#include <ogr_geometry.h>

#include <cmath>

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

QString expectedName(const ConvertContent &content, std::size_t object)
{
    const OGRPolygon polygon = toPolygon(content, object);
    OGREnvelope box;
    polygon.getEnvelope(&box);
    const OGRPoint centre((box.MinX + box.MaxX) / 2, (box.MinY + box.MaxY) / 2);
    QString inside;
    QString outside;
    double best = 1e300;
    double nearest = reach;
    for (const ContentText &text : content.texts) {
        const OGRPoint at(text.at.x, text.at.y);
        if (polygon.Contains(&at) != 0 && at.Distance(&centre) < best) {
            best = at.Distance(&centre);
            inside = text.text;
        } else if (polygon.Distance(&at) <= nearest) {
            nearest = polygon.Distance(&at);
            outside = text.text;
        }
    }
    return inside.isEmpty() ? outside : inside;
}

} // namespace

void tst_PrepareConvertNames::namesAreThoseOfGeos_data()
{
    QTest::addColumn<quint32>("start");
    QTest::addColumn<int>("textCount");

    for (quint32 start = 1; start <= 10; ++start)
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
    TextNames names(content, reach);
    int namedCount = 0;

    for (std::size_t i = 0; i < content.objects.size(); ++i) {
        names.nameObject(i);
        QCOMPARE(content.objects[i].def, expectedName(content, i));
        namedCount += content.objects[i].def.isEmpty() ? 0 : 1;
    }

    QVERIFY(namedCount > 0);
}

void tst_PrepareConvertNames::openLinesHaveNoInside()
{
    ConvertContent content;
    content.vertices = {{0, 0}, {20, 0}, {20, 20}, {0, 20}};
    content.contourEnds = {4};
    content.objects = {{false, 1, QString(), QString()}};
    content.texts = {{{10, 10}, QStringLiteral("far")}, {{10, 22}, QStringLiteral("near")}};
    TextNames names(content, reach);

    names.nameObject(0);

    QCOMPARE(content.objects[0].def, QStringLiteral("near"));
}

QTEST_APPLESS_MAIN(tst_PrepareConvertNames)
#include "tst_prepare_convert_names.moc"
