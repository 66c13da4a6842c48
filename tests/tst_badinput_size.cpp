#include "badinputfixture.h"

#include <QTest>

namespace {

const QString plan = QStringLiteral("plan.mif");

/// The build watches every allocation, for which it needs memory of its own.
#ifdef __SANITIZE_ADDRESS__
constexpr bool isWatched = true;
#else
constexpr bool isWatched = false;
#endif

/// Gives some text and then nothing but errors, though it never comes to its end.
class BrokenDevice : public QIODevice
{
public:
    explicit BrokenDevice(QByteArray text) : m_text(std::move(text)) { open(QIODevice::ReadOnly | QIODevice::Text); }

    bool atEnd() const override { return false; }
    qint64 size() const override { return 1000000; }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        const QByteArray part = m_text.left(static_cast<int>(maxSize));
        m_text.remove(0, part.size());
        std::copy(part.begin(), part.end(), data);
        return part.isEmpty() ? -1 : part.size();
    }
    qint64 writeData(const char * /*data*/, qint64 /*size*/) override { return -1; }

private:
    QByteArray m_text;
};

/// The lines that are left, or one more than \a limit when there is no end.
int countLines(LineReader &reader, int limit)
{
    int count = 0;
    for (; count <= limit && !reader.atEnd(); ++count)
        reader.readLine();
    return count;
}

QString cutFile; // by the next message

void cutAtMessage(const QString & /*text*/)
{
    QFile::resize(cutFile, 0);
    setStatusFunc([](const QString &text) { cutFile = text; });
}

} // namespace

/// Files of unusual size, and such that change their size.
class tst_BadInputSize : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void memoryForAVertexIsBounded(); // first: later the process has memory to spare, which would hide some
    void memoryIsBounded_data();
    void memoryIsBounded();
    void veryLongLineIsRead_data();
    void veryLongLineIsRead();
    void manyTinyThingsAreRead_data();
    void manyTinyThingsAreRead();
    void placesWithoutNumbersAreAllDifferent_data();
    void placesWithoutNumbersAreAllDifferent();
    void shrunkFileEnds_data();
    void shrunkFileEnds();
    void brokenDeviceEnds();
    void brokenDeviceIsReadAgain();
    void fileIsCutBetweenThePasses_data();
    void fileIsCutBetweenThePasses();
    void drawingIsCutWithinThePass();
};

// What a vertex needs, however few bytes it has in the file: 48 for its number, 24 in its contour and 24 among the
// known points, as much in reserve for both, and up to four places of 24 in the search; the rest is needed while these
// grow.
void tst_BadInputSize::memoryForAVertexIsBounded()
{
    constexpr int count = 300000;
    QByteArray vertices;
    for (int i = 0; i < count; ++i)
        vertices += QByteArray::number(i % 1000) + ' ' + QByteArray::number(i / 1000) + '\n';
    BadInputFixture run(plan);
    run.files.writeBytes(plan, mifHead + "PLINE " + QByteArray::number(count) + '\n' + vertices);
    vertices.clear();
    forgetPeak();
    const int used = statusMegabytes("VmRSS:");

    QVERIFY(run.import->importMap());

    const int bytes = (statusMegabytes("VmHWM:") - used) * 1024 / (count / 1024);
    QVERIFY2(bytes <= (isWatched ? 700 : 350), qPrintable(QString::number(bytes)));
    QCOMPARE(run.import->pointStartNum, count + 1);
}

void tst_BadInputSize::memoryIsBounded_data()
{
    QTest::addColumn<QString>("objectFile");
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("piece"); // repeated to a line of 16 MB
    QTest::addColumn<QByteArray>("records");

    const QString drawing = QStringLiteral("plan.dxf");
    const QByteArray text = dxfHead + dxfLine + "0\nTEXT\n10\n0\n20\n0\n1\n";
    const QByteArray none;
    QTest::newRow("no line end") << plan << none << QByteArray("x") << none;
    QTest::newRow("word among the data") << plan << mifHead << QByteArray("x") << none;
    QTest::newRow("blanks") << plan << mifHead << QByteArray(" ") << none;
    QTest::newRow("words") << plan << mifHead << QByteArray("P ") << none;
    QTest::newRow("words of a vertex") << plan << mifHead + "REGION 1\n4\n" << QByteArray("1 ") << none;
    QTest::newRow("digits") << plan << mifHead + "LINE 1 2 3 " << QByteArray("1") << none;
    QTest::newRow("digits of a count") << plan << mifHead + "REGION " << QByteArray("1") << none;
    QTest::newRow("zeros") << plan << mifHead << QByteArray(1, '\0') << none;
    QTest::newRow("line ends") << plan << mifHead << QByteArray("\n") << none;
    QTest::newRow("quotes of a record") << plan << mifHead + mifLine << QByteArray() << QByteArray("\"");
    QTest::newRow("blanks of a record") << plan << mifHead + mifLine << QByteArray() << QByteArray(" ");
    QTest::newRow("field of a record") << plan << mifHead + mifLine << QByteArray() << QByteArray("x");
    QTest::newRow("drawing without a line end") << drawing << none << QByteArray("0") << none;
    QTest::newRow("group code") << drawing << dxfHead << QByteArray("1") << none;
    QTest::newRow("value") << drawing << dxfHead + "999\n" << QByteArray("x") << none;
    QTest::newRow("text") << drawing << text << QByteArray("x") << none;
    QTest::newRow("text of percent signs") << drawing << text << QByteArray("%") << none;
    QTest::newRow("text of codes of signs") << drawing << text << QByteArray("%%d") << none;
    QTest::newRow("polyline that has all to come") << drawing << dxfHead + "0\nLWPOLYLINE\n90\n2147483647\n"
                                                   << QByteArray("999\nx\n") << none;
}

// A character takes two bytes of memory, a line may be held with one copy, and a growing buffer has as much in reserve;
// the rest is for builds that watch every allocation.
void tst_BadInputSize::memoryIsBounded()
{
    QFETCH(QString, objectFile);
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, piece);
    QFETCH(QByteArray, records);
    constexpr int megabytes = 16;
    BadInputFixture run(objectFile);
    run.import->searchObjectDefs = true;
    const auto filled = [](const QByteArray &part) {
        return part.isEmpty() ? part : part.repeated(megabytes * 1024 * 1024 / part.size());
    };
    run.files.writeBytes(objectFile, before + filled(piece));
    run.files.writeBytes(QStringLiteral("plan.mid"), filled(records));
    forgetPeak();
    const int used = statusMegabytes("VmRSS:");

    run.import->importMap();

    const int more = statusMegabytes("VmHWM:") - used;
    QVERIFY2(more <= 12 * megabytes, qPrintable(QString::number(more)));
    QVERIFY(run.messages().size() <= 2);
}

void tst_BadInputSize::veryLongLineIsRead_data()
{
    QTest::addColumn<QString>("objectFile");
    QTest::addColumn<QByteArray>("begin");
    QTest::addColumn<QByteArray>("end");

    QTest::newRow("MIF") << plan << mifHead + mifLine << "\n" + mifLine;
    QTest::newRow("DXF") << QStringLiteral("plan.dxf") << dxfHead + dxfLine + "999\n"
                         << "\n" + dxfLine;
}

// The zeros of the line take no room on the disk. In memory a character takes two bytes, a line may be held with one
// copy, and a growing buffer has as much in reserve.
void tst_BadInputSize::veryLongLineIsRead()
{
    QFETCH(QString, objectFile);
    QFETCH(QByteArray, begin);
    QFETCH(QByteArray, end);
    constexpr int megabytes = 200;
    BadInputFixture run(objectFile);
    QFile file(run.files.writeBytes(objectFile, begin));
    QVERIFY(file.resize(megabytes * 1024 * 1024));
    QVERIFY(file.open(QIODevice::Append));
    QCOMPARE(file.write(end), end.size());
    file.close();
    forgetPeak();
    const int used = statusMegabytes("VmRSS:");

    QVERIFY(run.import->importMap());

    const int more = statusMegabytes("VmHWM:") - used;
    QVERIFY2(more <= 6 * megabytes, qPrintable(QString::number(more)));
    QCOMPARE(run.messages(), QStringList());
    QCOMPARE(run.objects.size(), 2);
}

void tst_BadInputSize::manyTinyThingsAreRead_data()
{
    QTest::addColumn<QString>("objectFile");
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<QByteArray>("piece"); // 200 000 times
    QTest::addColumn<QByteArray>("tail");
    QTest::addColumn<int>("objects");
    QTest::addColumn<int>("contours"); // of the last object
    QTest::addColumn<int>("nextPoint");

    const QString drawing = QStringLiteral("plan.dxf");
    const QByteArray tail("PLINE 2\n5 5\n6 6\n");
    QTest::newRow("objects without contours")
        << plan << mifHead << QByteArray("REGION 0\n") << tail << 200001 << 1 << 3;
    QTest::newRow("lines at one place") << plan << mifHead << mifLine << tail << 200001 << 1 << 5;
    QTest::newRow("lines of a drawing at one place")
        << drawing << dxfHead << dxfLine << QByteArray() << 200000 << 1 << 3;
    QTest::newRow("rings of one object") << plan << mifHead + "REGION 200000\n"
                                         << QByteArray("3\n0 0\n1 1\n0 0\n") << tail << 2 << 1 << 5;
    QTest::newRow("sections of the last object") << plan << mifHead + "PLINE MULTIPLE 200000\n"
                                                 << QByteArray("2\n0 0\n1 1\n") << QByteArray() << 1 << 200000 << 3;
    QTest::newRow("objects that are not imported") << plan << mifHead << QByteArray("NONE\n") << tail << 1 << 1 << 3;
    QTest::newRow("lines that say nothing") << plan << mifHead << QByteArray(" \n") << tail << 1 << 1 << 3;
    QTest::newRow("vertices of a ring") << plan << mifHead + "REGION 1\n200000\n"
                                        << QByteArray("0 0\n") << tail << 2 << 1 << 4;
}

void tst_BadInputSize::manyTinyThingsAreRead()
{
    QFETCH(QString, objectFile);
    QFETCH(QByteArray, head);
    QFETCH(QByteArray, piece);
    QFETCH(QByteArray, tail);
    QFETCH(int, objects);
    QFETCH(int, contours);
    QFETCH(int, nextPoint);
    BadInputFixture run(objectFile);
    run.files.writeBytes(objectFile, head + piece.repeated(200000) + tail);

    QVERIFY(run.import->importMap());

    QCOMPARE(run.messages(), QStringList());
    QCOMPARE(run.objects.size(), objects);
    QCOMPARE(run.objects.last().def, QStringLiteral("ЗУ%1").arg(objects));
    QCOMPARE(run.objects.last().contours.size(), contours);
    QCOMPARE(run.import->pointStartNum, nextPoint);
}

void tst_BadInputSize::placesWithoutNumbersAreAllDifferent_data()
{
    QTest::addColumn<QByteArray>("vertex");

    QTest::newRow("nowhere") << QByteArray("nan nan\n");
    QTest::newRow("x is no number") << QByteArray("nan 1\n");
    QTest::newRow("y is no number") << QByteArray("1 nan\n");
    QTest::newRow("infinitely far") << QByteArray("inf 1\n");
    QTest::newRow("infinitely far in both") << QByteArray("-inf inf\n");
}

// Among a hundred thousand such vertices three lie at one place.
void tst_BadInputSize::placesWithoutNumbersAreAllDifferent()
{
    QFETCH(QByteArray, vertex);
    const QByteArray some = vertex.repeated(50000);
    BadInputFixture run(plan);
    run.files.writeBytes(plan, mifHead + "PLINE 100003\n1 1\n" + some + "1 1\n" + some + "1 1\n");

    QVERIFY(run.import->importMap());

    const QVector<DefPoint> vertices = run.objects.first().contours.first();
    QCOMPARE(vertices.at(0).def, QStringLiteral("н1"));
    QCOMPARE(vertices.at(1).def, QStringLiteral("н2"));
    QCOMPARE(vertices.at(50001).def, QStringLiteral("н1"));
    QCOMPARE(vertices.at(100001).def, QStringLiteral("н100001"));
    QCOMPARE(vertices.at(100002).def, QStringLiteral("н1"));
    QCOMPARE(knownPoints(*run.import).size(), 100001);
}

void tst_BadInputSize::shrunkFileEnds_data()
{
    QTest::addColumn<int>("size"); // of 200 000 bytes
    QTest::addColumn<int>("fewest");
    QTest::addColumn<int>("most");

    QTest::newRow("to nothing") << 0 << 1 << 10000;
    QTest::newRow("to less than has been read") << 1000 << 1 << 10000;
    QTest::newRow("to half") << 100000 << 9990 << 9991;
    QTest::newRow("not at all") << 200000 << 19990 << 19990;
}

void tst_BadInputSize::shrunkFileEnds()
{
    QFETCH(int, size);
    QFETCH(int, fewest);
    QFETCH(int, most);
    const TextFixture files;
    QFile file(files.writeBytes(plan, QByteArray("123456789\n").repeated(20000)));
    QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
    LineReader reader;
    reader.setDevice(&file, QTextCodec::codecForName("UTF-8"));
    for (int i = 0; i < 10; ++i)
        QCOMPARE(reader.readLine(), QStringLiteral("123456789"));

    QVERIFY(QFile::resize(file.fileName(), size));

    const int lines = countLines(reader, 20000);
    QVERIFY2(lines >= fewest && lines <= most, qPrintable(QString::number(lines)));
    QVERIFY(reader.atEnd());
    QVERIFY(reader.readLine().isEmpty());
}

void tst_BadInputSize::brokenDeviceEnds()
{
    BrokenDevice device("first\nsecond\nbroken o");
    LineReader reader;
    reader.setDevice(&device, QTextCodec::codecForName("UTF-8"));

    QCOMPARE(reader.readLine(), QStringLiteral("first"));
    QVERIFY(!reader.atEnd());
    QCOMPARE(reader.readLine(), QStringLiteral("second"));
    QCOMPARE(reader.readLine(), QStringLiteral("broken o"));
    QVERIFY(reader.atEnd());
    QVERIFY(reader.readLine().isEmpty());
}

void tst_BadInputSize::brokenDeviceIsReadAgain()
{
    BrokenDevice broken("first\n");
    BrokenDevice other("second\n");
    LineReader reader;
    reader.setDevice(&broken, QTextCodec::codecForName("UTF-8"));
    QCOMPARE(countLines(reader, 10), 2);

    reader.rewind();
    QVERIFY(!reader.atEnd());
    QCOMPARE(countLines(reader, 10), 1);

    reader.setDevice(&other, QTextCodec::codecForName("UTF-8"));
    QVERIFY(!reader.atEnd());
    QCOMPARE(reader.readLine(), QStringLiteral("second"));
}

void tst_BadInputSize::fileIsCutBetweenThePasses_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("message");

    QTest::newRow("MIF") << plan << QStringLiteral("Ошибка. Файл %1 не соответствует формату MIF");
    QTest::newRow("MID") << QStringLiteral("plan.mid")
                         << QStringLiteral("Ошибка чтения обозначения объекта из строки: 1");
}

// The pass over the points tells of the collection, and while it is told the file is emptied.
void tst_BadInputSize::fileIsCutBetweenThePasses()
{
    QFETCH(QString, name);
    QFETCH(QString, message);
    BadInputFixture run(plan);
    run.import->searchPointDefs = true;
    run.import->searchObjectDefs = true;
    run.files.writeBytes(plan, mifHead + mifLine + "COLLECTION 1\n");
    run.files.writeBytes(QStringLiteral("plan.mid"), "Лес\nПоле\n");
    cutFile = run.files.path(name);
    setStatusFunc(cutAtMessage);

    QVERIFY(!run.import->importMap());

    QCOMPARE(cutFile, message.replace(QStringLiteral("%1"), QDir::toNativeSeparators(run.files.path(plan))));
}

// A pass over the texts that fails hands the rest of the drawing to the pass over the objects.
void tst_BadInputSize::drawingIsCutWithinThePass()
{
    BadInputFixture run(QStringLiteral("plan.dxf"));
    run.import->searchObjectDefs = true;
    cutFile = run.files.writeBytes(QStringLiteral("plan.dxf"),
                                   dxfHead + "0\nTEXT\n10\n0\n0\nSECTION\n2\nENTITIES\n" + dxfLine.repeated(10000));
    setStatusFunc(cutAtMessage);

    run.import->importMap();

    QVERIFY(QFileInfo(run.import->objectFileName).size() == 0);
    QVERIFY2(run.objects.size() > 100 && run.objects.size() < 1000, qPrintable(QString::number(run.objects.size())));
}

QTEST_GUILESS_MAIN(tst_BadInputSize)

#include "tst_badinput_size.moc"
