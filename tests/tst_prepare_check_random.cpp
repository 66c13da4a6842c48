#include "preparetesting.h"

#include <QRandomGenerator>
#include <QSet>

/// Compares checks of random drawings and MIF files with what GDAL finds in them.
class tst_PrepareCheckRandom : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void completeDrawingHasNoFewerObjects();
    void everyKindIsDrawn();
    void completeMifFileHasNoFewerObjects();
};

namespace {

constexpr int runCount = 400;

const QString columns = QStringLiteral("COLUMNS 1\n  Name Char(10)\nDATA\n");

/// Draws random files. The same number gives the same file.
class Drawer
{
public:
    explicit Drawer(int number) : m_random(static_cast<quint32>(number)) {}

    /// A drawing. The first ones have two lines and one entity that the import does not read.
    static QStringList drawing(int number) { return Drawer(number).drawEntities(number); }
    /// The lines after DATA. \a records receives the MID records.
    QStringList mif(QStringList &records);

private:
    using Entity = QByteArray (Drawer::*)();

    static QVector<Entity> readEntities();
    static QVector<Entity> unreadEntities();

    QStringList drawEntities(int number);
    int below(int limit) { return m_random.bounded(limit); }
    QByteArray coordinate() { return QByteArray::number(1000 + below(100000)) + '.' + QByteArray::number(below(10)); }
    QByteArray place(int code);
    QByteArray begin(const char *keyword);
    QByteArray oneOf(const QVector<Entity> &entities) { return (this->*entities.at(below(entities.size())))(); }
    QByteArray anyEntities(const QVector<Entity> &entities, int count);

    QByteArray line() { return begin("LINE") + place(10) + place(11); }
    QByteArray incompleteLine() { return begin("LINE") + place(10) + "|11 " + coordinate() + line(); }
    QByteArray polyline();
    QByteArray lwPolyline();
    QByteArray point() { return begin("POINT") + place(10); }
    QByteArray text() { return begin("TEXT") + place(10) + "|40 1|1 " + QByteArray::number(below(50)) + "/a"; }
    QByteArray arc() { return begin("ARC") + place(10) + "|40 5|50 0|51 90"; }
    QByteArray circle() { return begin("CIRCLE") + place(10) + "|40 5"; }
    QByteArray ellipse() { return begin("ELLIPSE") + place(10) + "|11 5|21 0|40 0.5|41 0|42 6"; }
    QByteArray spline() { return curve("SPLINE"); }
    QByteArray helix() { return curve("HELIX"); }
    QByteArray curve(const char *keyword);
    QByteArray multiText() { return begin("MTEXT") + place(10) + "|40 1|1 b"; }
    QByteArray attributeDefinition() { return begin("ATTDEF") + place(10) + "|40 1|1 7|3 No|2 N"; }
    QByteArray solid() { return corners("SOLID"); }
    QByteArray trace() { return corners("TRACE"); }
    QByteArray face() { return corners("3DFACE"); }
    QByteArray corners(const char *keyword) { return begin(keyword) + place(10) + place(11) + place(12) + place(13); }
    QByteArray leader() { return begin("LEADER") + "|76 2" + place(10) + place(10); }
    QByteArray multiLeader();
    QByteArray multiLine();
    QByteArray insert() { return begin("INSERT") + "|2 " + static_cast<char>('A' + below(4)) + place(10); }
    QByteArray array() { return insert() + "|70 2|71 3|44 50|45 50"; }
    QByteArray attributes()
    {
        return insert() + "|66 1" + begin("ATTRIB") + place(10) + "|40 1|1 7|2 N" + begin("SEQEND");
    }
    QByteArray dimension() { return begin("DIMENSION") + "|2 A|70 0" + place(10) + place(13) + place(14); }
    QByteArray hatch();
    QByteArray filling();
    QByteArray symbol();
    QByteArray viewport() { return begin("VIEWPORT") + place(10) + "|40 5|41 5"; }
    QByteArray mesh();
    QByteArray polyhedron();
    QByteArray body() { return begin("3DSOLID") + "|70 1|1 abc"; }
    QByteArray region() { return begin("REGION") + "|70 1|1 abc"; }
    QByteArray ray() { return begin("RAY") + place(10) + "|11 1|21 0"; }
    QByteArray wipeout() { return begin("WIPEOUT") + place(10) + "|11 1|21 0|12 0|22 1|91 2|14 0|24 0|14 1|24 1"; }
    QByteArray image() { return begin("IMAGE") + place(10) + "|11 1|21 0|12 0|22 1"; }
    QByteArray invented() { return begin("INVENTED") + place(10); }

    QRandomGenerator m_random;
};

QByteArray Drawer::place(int code)
{
    const QByteArray x = coordinate();
    return '|' + QByteArray::number(code) + ' ' + x + '|' + QByteArray::number(code + 10) + ' ' + coordinate();
}

QByteArray Drawer::begin(const char *keyword)
{
    return QByteArray("|0 ") + keyword + "|8 0";
}

QByteArray Drawer::polyline()
{
    const QVector<QByteArray> flags{"0", "1", "2", "3", "4", "5", "8", "9", "32", "128", "129"};
    QByteArray pairs = begin("POLYLINE") + "|66 1|70 " + flags.at(below(flags.size()));
    for (int i = 2 + below(4); i > 0; --i)
        pairs += begin("VERTEX") + place(10) + (below(10) == 0 ? "|42 0.5" : "");
    return pairs + begin("SEQEND");
}

QByteArray Drawer::lwPolyline()
{
    const int count = 2 + below(4);
    QByteArray pairs = begin("LWPOLYLINE") + "|90 " + QByteArray::number(count) + "|70 " +
                       QByteArray::number(128 * below(2) + below(2));
    for (int i = 0; i < count; ++i)
        pairs += place(10) + (below(10) == 0 ? "|42 0.5" : "");
    return pairs;
}

QByteArray Drawer::curve(const char *keyword)
{
    QByteArray pairs = begin(keyword) + "|100 AcDbSpline|70 8|71 2|72 6|73 3|40 0|40 0|40 0|40 1|40 1|40 1";
    for (int i = 0; i < 3; ++i)
        pairs += place(10) + "|30 0";
    return pairs;
}

QByteArray Drawer::multiLeader()
{
    return begin("MULTILEADER") + "|300 CONTEXT_DATA{" + place(10) + "|302 LEADER{|290 1|291 1" + place(10) +
           "|304 LEADER_LINE{" + place(10) + "|305 }|303 }|301 }";
}

QByteArray Drawer::multiLine()
{
    return begin("MLINE") + "|2 STANDARD|40 1|70 0|71 1|72 2|73 1" + place(10) + place(11) +
           "|12 1|22 0|13 0|23 1|74 1|41 0|75 0" + place(11) + "|12 1|22 0|13 0|23 1|74 1|41 0|75 0";
}

// A polygon mesh of two by two vertices.
QByteArray Drawer::mesh()
{
    QByteArray pairs = begin("POLYLINE") + "|66 1|70 " + (below(2) == 0 ? "16" : "17") + "|71 2|72 2";
    for (int i = 0; i < 4; ++i)
        pairs += begin("VERTEX") + place(10) + "|70 64";
    return pairs + begin("SEQEND");
}

QByteArray Drawer::polyhedron()
{
    QByteArray pairs = begin("POLYLINE") + "|66 1|70 64|71 4|72 1";
    for (int i = 0; i < 4; ++i)
        pairs += begin("VERTEX") + place(10) + "|70 192";
    return pairs + begin("VERTEX") + "|10 0|20 0|70 128|71 1|72 2|73 3|74 4" + begin("SEQEND");
}

QByteArray Drawer::hatch()
{
    return begin("HATCH") + "|10 0|20 0|30 0|2 SOLID|70 1|71 0|91 1|92 3|72 0|73 1|93 3" + place(10) + place(10) +
           place(10) + "|97 0|75 0|76 1|98 0";
}

// A hatch of the ring that it fills.
QByteArray Drawer::filling()
{
    QByteArray ring;
    for (int i = 0; i < 3; ++i)
        ring += place(10);
    return begin("LWPOLYLINE") + "|90 3|70 1" + ring + begin("HATCH") +
           "|10 0|20 0|30 0|2 SOLID|70 1|71 0|91 1|92 3|72 0|73 1|93 3" + ring + "|97 0|75 0|76 1|98 0";
}

// A ring with a circle that marks a vertex.
QByteArray Drawer::symbol()
{
    const QByteArray vertex = place(10);
    return begin("LWPOLYLINE") + "|90 3|70 1" + vertex + place(10) + place(10) + begin("CIRCLE") + vertex + "|40 0.5";
}

QByteArray Drawer::anyEntities(const QVector<Entity> &entities, int count)
{
    QByteArray pairs;
    for (; count > 0; --count)
        pairs += oneOf(entities);
    return pairs;
}

QVector<Drawer::Entity> Drawer::readEntities()
{
    return {&Drawer::line,   &Drawer::lwPolyline,          &Drawer::polyline, &Drawer::point, &Drawer::text,
            &Drawer::symbol, &Drawer::attributeDefinition, &Drawer::viewport};
}

QVector<Drawer::Entity> Drawer::unreadEntities()
{
    return {&Drawer::arc,      &Drawer::circle,        &Drawer::ellipse,    &Drawer::spline,    &Drawer::helix,
            &Drawer::solid,    &Drawer::trace,         &Drawer::face,       &Drawer::leader,    &Drawer::multiLeader,
            &Drawer::hatch,    &Drawer::filling,       &Drawer::dimension,  &Drawer::multiLine, &Drawer::multiText,
            &Drawer::insert,   &Drawer::array,         &Drawer::attributes, &Drawer::mesh,      &Drawer::polyhedron,
            &Drawer::body,     &Drawer::region,        &Drawer::ray,        &Drawer::wipeout,   &Drawer::image,
            &Drawer::invented, &Drawer::incompleteLine};
}

// A third of the drawings contains only entities that the import reads, another third one other entity.
QStringList Drawer::drawEntities(int number)
{
    const QVector<Entity> read = readEntities();
    const QVector<Entity> unread = unreadEntities();
    QByteArray blocks;
    for (const char *name : {"A", "B", "C"}) {
        blocks += begin("BLOCK") + "|2 " + name + "|70 0|10 0|20 0";
        const QVector<Entity> content = below(2) == 0 ? read + unread : QVector<Entity>{&Drawer::point};
        blocks += anyEntities(content, below(3));
        blocks += begin("ENDBLK");
    }
    const int lost = below(3);
    QByteArray entities;
    if (number < unread.size())
        entities = line() + oneOf({unread.at(number)}) + line();
    else
        entities = anyEntities(read, 1 + below(6)) + anyEntities(unread, lost < 2 ? lost : below(5)) +
                   anyEntities(read, below(3));
    return pairs("0 SECTION|2 HEADER|9 $ACADVER|1 AC1015|0 ENDSEC|0 SECTION|2 BLOCKS" + blocks +
                 "|0 ENDSEC|0 SECTION|2 ENTITIES" + entities + "|0 ENDSEC|0 EOF");
}

QStringList Drawer::mif(QStringList &records)
{
    const QVector<QByteArray> objects{"LINE 1000 0 1009 0",
                                      "PLINE 2\n2000 0\n2009 0",
                                      "PLINE MULTIPLE 2\n2\n3000 0\n3009 0\n2\n3000 9\n3009 9",
                                      "REGION 1\n4\n4000 0\n4009 0\n4009 9\n4000 0\nPEN (1,2,0)",
                                      "POINT 5000 0",
                                      "ARC 0 0 9 9\n0 90",
                                      "ELLIPSE 0 0 9 9",
                                      "RECT 0 0 9 9",
                                      "ROUNDRECT 0 0 9 9 1",
                                      "TEXT\n\"Line\"\n0 0 9 9",
                                      "MULTIPOINT 2\n0 0\n9 9",
                                      "COLLECTION 2\nREGION 1\n4\n0 0\n9 0\n9 9\n0 0\nPLINE 2\n0 0\n9 9",
                                      "NONE"};
    const int kinds = below(2) == 0 ? 5 : objects.size();
    QStringList lines;
    for (int count = 1 + below(5); count > 0; --count) {
        lines.append(QString::fromLatin1(objects.at(below(kinds))));
        records.append(QString::number(count));
    }
    return lines;
}

/// Fails the test if \a report is complete although objects are missing. Counts complete reports in \a completeCount.
void compareWithGdal(const FileReport &report, int number, int &completeCount)
{
    QVERIFY2(report.found.has_value(), qPrintable(QStringLiteral("file %1 is not opened").arg(number)));
    if (!report.isComplete())
        return;
    ++completeCount;
    const qint64 outlined = report.found->areas + report.found->lines;
    QVERIFY2(
        report.imported.objects >= outlined,
        qPrintable(QStringLiteral("file %1: %2 objects of %3").arg(number).arg(report.imported.objects).arg(outlined)));
}

} // namespace

void tst_PrepareCheckRandom::completeDrawingHasNoFewerObjects()
{
    const CheckFixture check;
    int completeCount = 0;
    for (int number = 0; number < runCount && !QTest::currentTestFailed(); ++number)
        compareWithGdal(check.checkDxf(Drawer::drawing(number)), number, completeCount);

    QVERIFY(completeCount > runCount / 20);
    QVERIFY(completeCount < runCount);
}

// The entities that a drawing program writes, in the section of the entities and not only in blocks.
void tst_PrepareCheckRandom::everyKindIsDrawn()
{
    const QSet<QString> kinds{
        QStringLiteral("3DFACE"),    QStringLiteral("3DSOLID"),  QStringLiteral("ARC"),
        QStringLiteral("ATTDEF"),    QStringLiteral("ATTRIB"),   QStringLiteral("CIRCLE"),
        QStringLiteral("DIMENSION"), QStringLiteral("ELLIPSE"),  QStringLiteral("HATCH"),
        QStringLiteral("HELIX"),     QStringLiteral("IMAGE"),    QStringLiteral("INSERT"),
        QStringLiteral("LEADER"),    QStringLiteral("LINE"),     QStringLiteral("LWPOLYLINE"),
        QStringLiteral("MLINE"),     QStringLiteral("MTEXT"),    QStringLiteral("MULTILEADER"),
        QStringLiteral("POINT"),     QStringLiteral("POLYLINE"), QStringLiteral("RAY"),
        QStringLiteral("REGION"),    QStringLiteral("SOLID"),    QStringLiteral("SPLINE"),
        QStringLiteral("TEXT"),      QStringLiteral("TRACE"),    QStringLiteral("VIEWPORT"),
        QStringLiteral("WIPEOUT"),
    };
    QSet<QString> drawn;
    for (int number = 0; number < runCount; ++number) {
        const QStringList lines = Drawer::drawing(number);
        for (int i = lines.indexOf(QStringLiteral("ENTITIES")); i < lines.size(); ++i)
            drawn.insert(lines.at(i));
    }

    QCOMPARE((kinds - drawn).values(), QStringList());
}

void tst_PrepareCheckRandom::completeMifFileHasNoFewerObjects()
{
    const CheckFixture check;
    int completeCount = 0;
    for (int number = 0; number < runCount && !QTest::currentTestFailed(); ++number) {
        QStringList records;
        const QString text = mifHeader + columns + Drawer(number).mif(records).join(QLatin1Char('\n'));
        compareWithGdal(check.checkMifText(text, records.join(QLatin1Char('\n'))), number, completeCount);
    }

    QVERIFY(completeCount > runCount / 20);
    QVERIFY(completeCount < runCount);
}

QTEST_GUILESS_MAIN(tst_PrepareCheckRandom)
#include "tst_prepare_check_random.moc"
