#include "preparetesting.h"

#include <QDir>
#include <QRandomGenerator>

/// Checks of damaged files, and of paths that are not files.
class tst_PrepareCheckBadInput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nonFileIsUnreadable_data();
    void nonFileIsUnreadable();
    void truncatedFileIsNeverComplete_data();
    void truncatedFileIsNeverComplete();
    void damagedFileLosesNothingSilently_data();
    void damagedFileLosesNothingSilently();
    void deeplyNestedBlocksAreResolved();
    void hugeCountsAreHarmless_data();
    void hugeCountsAreHarmless();
    void specialNumbersAreDrawn();
    void controlCharactersAreNotPrinted();
    void placeholdersFromTheFileAreNotReplaced();

private:
    static void addFiles();
};

namespace {

/// Replaces, removes, repeats and exchanges bytes and lines of \a bytes.
QByteArray damaged(QByteArray bytes, QRandomGenerator &random)
{
    for (int count = 1 + random.bounded(4); count > 0; --count) {
        const int at = random.bounded(bytes.size());
        const int lineEnd = bytes.indexOf('\n', at) + 1;
        switch (random.bounded(5)) {
        case 0:
            bytes[at] = static_cast<char>(random.bounded(256));
            break;
        case 1:
            bytes.remove(at, 1 + random.bounded(20));
            break;
        case 2:
            bytes.insert(at, bytes.mid(random.bounded(bytes.size()), 40));
            break;
        case 3:
            bytes.remove(lineEnd, bytes.indexOf('\n', lineEnd) - lineEnd + 1);
            break;
        default:
            bytes.insert(lineEnd, QByteArray::number(random.bounded(100000)) + '\n');
        }
        if (bytes.isEmpty())
            bytes = "\n";
    }
    return bytes;
}

/// Fails the test if \a report is complete although objects are missing.
void verifyNoSilentLoss(const FileReport &report)
{
    if (!report.found || !report.isComplete())
        return;
    QVERIFY(report.imported.objects >= report.found->areas + report.found->lines);
}

} // namespace

void tst_PrepareCheckBadInput::addFiles()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");

    const QStringList lines =
        pairs("0 SECTION|2 HEADER|9 $DWGCODEPAGE|3 ANSI_1251|0 ENDSEC|0 SECTION|2 BLOCKS|0 BLOCK|8 0|2 A|10 0|20 0|0 "
              "LINE|8 0|10 0|20 0|11 9|21 9|0 INSERT|8 0|2 B|10 0|20 0|0 ENDBLK|0 ENDSEC|0 SECTION|2 ENTITIES|0 "
              "INSERT|8 0|2 A|10 0|20 0|0 POLYLINE|8 0|66 1|70 9|0 VERTEX|10 0|20 0|42 1|0 VERTEX|10 9|20 0|0 "
              "SEQEND|0 LWPOLYLINE|8 0|90 2|70 1|10 0|20 0|42 0.5|10 70|20 0|0 TEXT|8 0|10 5|20 0|40 1|1 "
              "26.5|0 SPLINE|8 0|70 8|71 1|72 4|73 2|40 0|40 0|40 1|40 1|10 0|20 0|10 5|20 5|0 HATCH|8 0|10 0|20 "
              "0|2 SOLID|70 1|71 0|91 1|92 3|72 0|73 1|93 3|10 0|20 0|10 9|20 0|10 9|20 9|97 0|75 0|76 1|98 0|0 "
              "LINE|8 0|10 0|20 0|11 9|21 0|0 ENDSEC|0 EOF");
    QTest::newRow("drawing") << QStringLiteral("plan.dxf") << lines.join(QLatin1Char('\n'));
    QTest::newRow("MIF file") << QStringLiteral("plan.mif")
                              << mifHeader +
                                     QStringLiteral("COLUMNS 1\n  Name Char(10)\nDATA\nPOINT 5 5\nLINE 0 0 9 0\n"
                                                    "PLINE 2\n0 0\n9 9\nPLINE MULTIPLE 2\n2\n0 0\n9 9\n2\n3 3\n4 5\n"
                                                    "REGION 1\n4\n0 0\n90 0\n90 9\n0 0\nTEXT\n\"a\"\n0 0 9 9\n"
                                                    "REGION 1\n3\n50 0\n59 0\n50 0\nARC 0 0 9 9\n0 90");
}

void tst_PrepareCheckBadInput::nonFileIsUnreadable_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("nothing") << QStringLiteral("none.dxf");
    QTest::newRow("folder") << QStringLiteral("folder.dxf");
    QTest::newRow("device") << QStringLiteral("device.mif");
}

void tst_PrepareCheckBadInput::nonFileIsUnreadable()
{
    QFETCH(QString, name);
    const CheckFixture check;
    QVERIFY(QDir(check.files.path(QString())).mkdir(QStringLiteral("folder.dxf")));
    QFile::link(QStringLiteral("/dev/zero"), check.files.path(QStringLiteral("device.mif")));

    const FileReport report = checkFile(check.files.path(name), check.options, true);

    QCOMPARE(described(report.findings), QStringLiteral("unreadable 1"));
    QVERIFY(!report.isComplete());
}

void tst_PrepareCheckBadInput::truncatedFileIsNeverComplete_data()
{
    addFiles();
}

void tst_PrepareCheckBadInput::truncatedFileIsNeverComplete()
{
    QFETCH(QString, name);
    QFETCH(QString, text);
    const CheckFixture check;
    check.files.write(QStringLiteral("plan.mid"), QString(QStringLiteral("1 2 3 4 5 6 7 8")).split(QLatin1Char(' ')));
    const QByteArray bytes = text.toUtf8();
    for (int size = 0; size < bytes.size() - 1; size += 3) {
        const FileReport report =
            checkFile(check.files.writeBytes(name, bytes.left(size)), check.options, size % 2 == 0);
        QVERIFY2(!report.isComplete(), qPrintable(QString::number(size)));
    }
}

void tst_PrepareCheckBadInput::damagedFileLosesNothingSilently_data()
{
    addFiles();
}

void tst_PrepareCheckBadInput::damagedFileLosesNothingSilently()
{
    QFETCH(QString, name);
    QFETCH(QString, text);
    const CheckFixture check;
    const QByteArray records("1\n2\n3\n4\n5\n6\n7\n8\n");
    QRandomGenerator random(1);
    for (int run = 0; run < 500 && !QTest::currentTestFailed(); ++run) {
        check.files.writeBytes(QStringLiteral("plan.mid"), run % 3 == 0 ? damaged(records, random) : records);
        const QString fileName = check.files.writeBytes(name, damaged(text.toUtf8(), random));
        verifyNoSilentLoss(checkFile(fileName, check.options, true));
    }
}

void tst_PrepareCheckBadInput::deeplyNestedBlocksAreResolved()
{
    constexpr int depth = 2000;
    const CheckFixture check;
    QByteArray blocks;
    for (int i = 0; i < depth; ++i) {
        const QByteArray content = i + 1 < depth ? "0 INSERT|8 0|2 B" + QByteArray::number(i + 1) + "|10 0|20 0"
                                                 : QByteArray("0 LINE|8 0|10 0|20 0|11 9|21 9");
        blocks += "0 BLOCK|8 0|2 B" + QByteArray::number(i) + "|10 0|20 0|" + content + "|0 ENDBLK|";
    }
    const FileReport report =
        check.checkDxf(pairs("0 SECTION|2 HEADER|0 ENDSEC|0 SECTION|2 BLOCKS|" + blocks + "0 ENDSEC|0 SECTION|2 " +
                             "ENTITIES|0 INSERT|8 0|2 B0|10 0|20 0|" + lineEntity + "|0 ENDSEC|0 EOF"));

    QVERIFY2(report.has(QStringLiteral("blocks")), qPrintable(described(report.findings)));
}

void tst_PrepareCheckBadInput::hugeCountsAreHarmless_data()
{
    QTest::addColumn<QString>("data");

    QTest::newRow("vertices") << QStringLiteral("PLINE 2147483647\n0 0");
    QTest::newRow("rings") << QStringLiteral("REGION 2147483647\n4");
    QTest::newRow("negative") << QStringLiteral("REGION -2147483648\n4");
    QTest::newRow("parts of a collection") << QStringLiteral("COLLECTION 2147483647\nREGION 1");
    QTest::newRow("too large") << QStringLiteral("PLINE MULTIPLE 99999999999999999999\n2");
}

void tst_PrepareCheckBadInput::hugeCountsAreHarmless()
{
    QFETCH(QString, data);
    const CheckFixture check;

    QVERIFY(!check.checkMif(data, QStringLiteral("1")).isComplete());
}

void tst_PrepareCheckBadInput::specialNumbersAreDrawn()
{
    const CheckFixture check;
    const QString fileName = check.files.write(QStringLiteral("plan.dxf"),
                                               drawing(lineEntity + "|0 LINE|8 0|10 nan|20 inf|11 1e308|21 -1e308"));

    const FileReport report = checkFile(fileName, check.options, true);

    QVERIFY2(report.picture.contains("d=\"M10.0 10.0L810.0 10.0\""), report.picture.constData());
}

void tst_PrepareCheckBadInput::controlCharactersAreNotPrinted()
{
    const CheckFixture check;

    const FileReport report = check.checkDxf(drawing(lineEntity + "|0 ARC|8 a\x1b[31mb|10 0|20 0|40 5|50 0|51 90"));

    QCOMPARE(described(report.findings), QStringLiteral("curves 1 @ строка 22, слой «a\uFFFD[31mb», ARC"));
}

void tst_PrepareCheckBadInput::placeholdersFromTheFileAreNotReplaced()
{
    const CheckFixture check;

    const FileReport report =
        check.checkMifText(mifHeader.left(12) + QStringLiteral("%2 %3 %1\nDATA\n"), QStringLiteral("1"));

    QVERIFY2(report.findings.first().text.endsWith(QStringLiteral("«%2 %3 %1».")),
             qPrintable(report.findings.first().text));
}

QTEST_GUILESS_MAIN(tst_PrepareCheckBadInput)
#include "tst_prepare_check_badinput.moc"
