#include "converttesting.h"
#include "preparetesting.h"

#include <QtEndian>

/// Files that end anywhere, for which no reader may wait.
class tst_PrepareTruncated : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cutFileIsReadToItsEnd_data();
    void cutFileIsReadToItsEnd();
    void cutBinaryDrawingIsRefused();
    void valueBeforeNulIsRead();
    void drawingWithCrOnlyIsConverted();
};

namespace {

const QByteArray entities = "0 LWPOLYLINE|8 0|90 3|70 1|10 0|20 0|10 9|20 0|10 9|20 9|0 TEXT|8 0|10 5|20 1|40 1|1 A";

QByteArray withLineEnds(const QString &text, const QByteArray &lineEnd)
{
    return text.toUtf8().replace('\n', lineEnd);
}

/// Each start of a process takes time: positions behind a CR, and some of the others.
bool isConverted(const QByteArray &bytes, int size)
{
    return size % 7 == 0 || (size > 0 && bytes.at(size - 1) == '\r');
}

QByteArray binaryDrawing()
{
    QByteArray bytes("AutoCAD Binary DXF\r\n\x1a\0", 22);
    const QStringList lines = pairs("0 SECTION|2 ENTITIES|0 TEXT|8 0|1 A\r|0 ENDSEC|0 EOF");
    for (int i = 0; i < lines.size(); i += 2) {
        const quint16 code = qToLittleEndian(lines.at(i).toUShort());
        bytes.append(reinterpret_cast<const char *>(&code), 2);
        bytes.append(lines.at(i + 1).toUtf8()).append('\0');
    }
    return bytes;
}

} // namespace

void tst_PrepareTruncated::cutFileIsReadToItsEnd_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");

    const QString plan = drawing(entities).join(QLatin1Char('\n')) + QLatin1Char('\n');
    const QString map = mifHeader + QStringLiteral("COLUMNS 1\n  Name Char(10)\nDATA\nPLINE 2\n0 0\n9 9\nREGION 1\n4\n"
                                                   "0 0\n90 0\n90 9\n0 0\n");
    QTest::newRow("drawing, LF") << QStringLiteral("a.dxf") << withLineEnds(plan, "\n");
    QTest::newRow("drawing, CRLF") << QStringLiteral("a.dxf") << withLineEnds(plan, "\r\n");
    QTest::newRow("drawing, CR") << QStringLiteral("a.dxf") << withLineEnds(plan, "\r");
    QTest::newRow("MIF, CRLF") << QStringLiteral("a.mif") << withLineEnds(map, "\r\n");
    QTest::newRow("MIF, CR") << QStringLiteral("a.mif") << withLineEnds(map, "\r");
    QTest::newRow("MID, CRLF") << QStringLiteral("a.mid") << QByteArray("\"A\",1\r\n\"B\",2\r\n");
    QTest::newRow("MID, CR") << QStringLiteral("a.mid") << QByteArray("\"A\",1\r\"B\",2\r");
}

// A reader that waits for more is the failure, which ends with the limit of the test.
void tst_PrepareTruncated::cutFileIsReadToItsEnd()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    const ConvertFixture fixture;
    CheckOptions options;
    options.encoding = QStringLiteral("UTF-8");
    if (name == QLatin1String("a.mid"))
        fixture.files.write(
            QStringLiteral("a.mif"),
            {mifHeader + QStringLiteral("COLUMNS 1\n  Name Char(10)\nDATA\nLINE 0 0 1 1\nLINE 1 1 2 2")});
    else
        fixture.files.write(QStringLiteral("a.mid"), {QStringLiteral("A\nB")});
    for (int size = 0; size < bytes.size() && !QTest::currentTestFailed(); ++size) {
        fixture.files.writeBytes(name, bytes.left(size));
        const QString input = name == QLatin1String("a.mid") ? QStringLiteral("a.mif") : name;
        const FileReport report = checkFile(fixture.path(input), options, size % 2 == 0);
        const bool isCut = name == QLatin1String("a.dxf") && size < bytes.size() - 2;
        QVERIFY2(!isCut || !report.isComplete(), qPrintable(QString::number(size)));
        if (isConverted(bytes, size))
            QVERIFY2(fixture.run({input, QStringLiteral("out.mif"), QStringLiteral("--force")}).status >= 0,
                     qPrintable(QString::number(size)));
    }
}

void tst_PrepareTruncated::cutBinaryDrawingIsRefused()
{
    const ConvertFixture fixture;
    const QByteArray bytes = binaryDrawing();
    for (int size = 22; size < bytes.size() && !QTest::currentTestFailed(); size += 3) {
        fixture.files.writeBytes(QStringLiteral("a.dxf"), bytes.left(size));
        const ConvertRun run = fixture.run(arguments("a.dxf out.mif"));
        QVERIFY2(run.status == 3, qPrintable(QStringLiteral("%1 %2").arg(size).arg(run.messages)));
    }
}

// A file system may fill the rest of a file with NUL.
void tst_PrepareTruncated::valueBeforeNulIsRead()
{
    const ConvertFixture fixture;
    const QString plan = openDrawing("0 LINE|10 0|20 0|11 1").join(QLatin1String("\r\n")) + QLatin1Char('\r');
    fixture.files.writeBytes(QStringLiteral("a.dxf"), plan.toUtf8() + QByteArray(2000, '\0'));

    const ConvertRun run = fixture.run(arguments("a.dxf out.mif"));

    QCOMPARE(run.status, 3);
    QCOMPARE(run.messages,
             QStringLiteral("importprepare: Cannot read \"a.dxf\" to its end: error at line 19 of a.dxf"));
}

void tst_PrepareTruncated::drawingWithCrOnlyIsConverted()
{
    ConvertFixture fixture;
    fixture.files.writeBytes(QStringLiteral("a.dxf"),
                             withLineEnds(drawing(entities).join(QLatin1Char('\n')) + QLatin1Char('\n'), "\r"));

    QVERIFY(fixture.convert(QStringLiteral("a.dxf")));

    QCOMPARE(fixture.imported(), QStringLiteral("A [н1 0 0, н2 9 0, н3 9 9, н1 0 0]"));
}

QTEST_GUILESS_MAIN(tst_PrepareTruncated)
#include "tst_prepare_truncated.moc"
