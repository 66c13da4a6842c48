#include "preparetesting.h"

#include <QRandomGenerator>

/// Compares checks of random drawings and MIF files with what GDAL finds in them.
class tst_PrepareCheckRandom : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void completeDrawingHasNoFewerObjects();
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

    QStringList drawing();
    /// Lines behind DATA. \a records receives the MID records.
    QStringList mif(QStringList &records);

private:
    using Entity = QByteArray (Drawer::*)();

    int below(int limit) { return m_random.bounded(limit); }
    QByteArray coordinate() { return QByteArray::number(1000 + below(100000)) + '.' + QByteArray::number(below(10)); }
    QByteArray place(int code);
    QByteArray begin(const char *keyword);
    QByteArray oneOf(const QVector<Entity> &entities) { return (this->*entities.at(below(entities.size())))(); }
    QByteArray anyEntities(const QVector<Entity> &entities, int count);

    QByteArray line() { return begin("LINE") + place(10) + place(11); }
    QByteArray incompleteLine() { return begin("LINE") + place(10) + "|11 " + coordinate(); }
    QByteArray polyline();
    QByteArray lwPolyline();
    QByteArray point() { return begin("POINT") + place(10); }
    QByteArray text() { return begin("TEXT") + place(10) + "|40 1|1 " + QByteArray::number(below(50)) + "/a"; }
    QByteArray arc() { return begin("ARC") + place(10) + "|40 5|50 0|51 90"; }
    QByteArray circle() { return begin("CIRCLE") + place(10) + "|40 5"; }
    QByteArray ellipse() { return begin("ELLIPSE") + place(10) + "|11 5|21 0|40 0.5|41 0|42 6"; }
    QByteArray spline();
    QByteArray multiText() { return begin("MTEXT") + place(10) + "|40 1|1 b"; }
    QByteArray solid() { return begin("SOLID") + place(10) + place(11) + place(12) + place(13); }
    QByteArray face() { return begin("3DFACE") + place(10) + place(11) + place(12) + place(13); }
    QByteArray leader() { return begin("LEADER") + "|76 2" + place(10) + place(10); }
    QByteArray insert() { return begin("INSERT") + "|2 " + static_cast<char>('A' + below(4)) + place(10); }
    QByteArray dimension() { return begin("DIMENSION") + "|2 A|70 0" + place(10) + place(13) + place(14); }
    QByteArray hatch();
    QByteArray viewport() { return begin("VIEWPORT") + place(10) + "|40 5|41 5"; }

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
    const QVector<QByteArray> flags{"0", "1", "8", "9", "128", "129"};
    QByteArray pairs = begin("POLYLINE") + "|66 1|70 " + flags.at(below(flags.size()));
    for (int i = 2 + below(4); i > 0; --i)
        pairs += begin("VERTEX") + place(10) + (below(10) == 0 ? "|42 0.5" : "");
    return pairs + begin("SEQEND");
}

QByteArray Drawer::lwPolyline()
{
    const int count = 2 + below(4);
    QByteArray pairs = begin("LWPOLYLINE") + "|90 " + QByteArray::number(count) + "|70 " + QByteArray::number(below(2));
    for (int i = 0; i < count; ++i)
        pairs += place(10) + (below(10) == 0 ? "|42 0.5" : "");
    return pairs;
}

QByteArray Drawer::spline()
{
    QByteArray pairs = begin("SPLINE") + "|70 8|71 2|72 6|73 3|40 0|40 0|40 0|40 1|40 1|40 1";
    for (int i = 0; i < 3; ++i)
        pairs += place(10) + "|30 0";
    return pairs;
}

QByteArray Drawer::hatch()
{
    return begin("HATCH") + "|10 0|20 0|30 0|2 SOLID|70 1|71 0|91 1|92 3|72 0|73 1|93 3" + place(10) + place(10) +
           place(10) + "|97 0|75 0|76 1|98 0";
}

QByteArray Drawer::anyEntities(const QVector<Entity> &entities, int count)
{
    QByteArray pairs;
    for (; count > 0; --count)
        pairs += oneOf(entities);
    return pairs;
}

// A third of the drawings has only what the import reads, another third little else.
QStringList Drawer::drawing()
{
    const QVector<Entity> read{&Drawer::line,  &Drawer::lwPolyline, &Drawer::polyline,
                               &Drawer::point, &Drawer::text,       &Drawer::viewport};
    const QVector<Entity> unread{&Drawer::arc,       &Drawer::circle, &Drawer::ellipse, &Drawer::spline,
                                 &Drawer::multiText, &Drawer::solid,  &Drawer::face,    &Drawer::leader,
                                 &Drawer::dimension, &Drawer::hatch,  &Drawer::insert,  &Drawer::incompleteLine};
    QByteArray blocks;
    for (const char *name : {"A", "B", "C"}) {
        blocks += begin("BLOCK") + "|2 " + name + "|70 0|10 0|20 0";
        blocks += anyEntities(below(2) == 0 ? read : QVector<Entity>{&Drawer::point}, below(3));
        blocks += begin("ENDBLK");
    }
    const int lost = below(3);
    QByteArray entities =
        anyEntities(read, 1 + below(6)) + anyEntities(unread, lost < 2 ? lost : below(5)) + anyEntities(read, below(3));
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

/// Fails the test if \a report says that everything comes in when it does not. Adds to \a completeCount otherwise.
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
        compareWithGdal(check.checkDxf(Drawer(number).drawing()), number, completeCount);

    QVERIFY(completeCount > runCount / 20);
    QVERIFY(completeCount < runCount);
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
