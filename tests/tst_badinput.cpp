#include "badinputfixture.h"
#include "sanitizer.h"

#include <QTest>

namespace {

#ifdef HAS_ADDRESS_SANITIZER
constexpr bool hasSanitizer = true; // which adds memory to every allocation
#else
constexpr bool hasSanitizer = false;
#endif

constexpr int megabyte = 1024 * 1024;

/// Returns a text, then an error for every read; never reports its end.
class FailingDevice : public QIODevice
{
public:
    explicit FailingDevice(QByteArray text) : m_text(std::move(text)) { open(QIODevice::ReadOnly | QIODevice::Text); }

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

/// Reads the remaining lines and returns their number, or one more than \a limit when there are more.
int countLines(LineReader &reader, int limit)
{
    int count = 0;
    for (; count <= limit && !reader.atEnd(); ++count)
        reader.readLine();
    return count;
}

QString truncatedFile; // truncated at the first message; then holds the text of the second one

void truncateAtMessage(const QString & /*text*/)
{
    QFile::resize(truncatedFile, 0);
    setStatusFunc([](const QString &text) { truncatedFile = text; });
}

} // namespace

/// Input that must not crash or hang the importers or make them use unbounded memory.
class tst_BadInput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void memoryPerVertexIsBounded(); // runs first: memory freed by another test would hide some of the growth
    void memoryForALongLineIsBounded_data();
    void memoryForALongLineIsBounded();
    void onlyRegularFilesAreOpened_data();
    void onlyRegularFilesAreOpened();
    void malformedBytesAreHandled_data();
    void malformedBytesAreHandled();
    void manySmallObjectsAreRead_data();
    void manySmallObjectsAreRead();
    void nonFiniteVerticesAreAllDifferent_data();
    void nonFiniteVerticesAreAllDifferent();
    void readingEndsWhenTheFileIsTruncated_data();
    void readingEndsWhenTheFileIsTruncated();
    void readErrorEndsTheText();
    void mifFileMayBeTruncatedBetweenPasses_data();
    void mifFileMayBeTruncatedBetweenPasses();
    void dxfFileMayBeTruncatedDuringAPass();
};

// A vertex needs 48 bytes for its number, 24 in its contour, 24 among the known points, up to 48 as spare capacity
// of both vectors, and up to four slots of 24 in the index. The rest is for reallocation.
void tst_BadInput::memoryPerVertexIsBounded()
{
    REQUIRE_FACILITY(peakMemory());
    constexpr int count = 300000;
    QByteArray vertices;
    for (int i = 0; i < count; ++i)
        vertices += QByteArray::number(i % 1000) + ' ' + QByteArray::number(i / 1000) + '\n';
    BadInputFixture run(mifName);
    run.files.writeBytes(mifName, mifHead + "PLINE " + QByteArray::number(count) + '\n' + vertices);
    vertices.clear();
    const PeakMemory memory;

    QVERIFY(run.import->importMap());

    const qint64 bytes = memory.bytes() / count;
    QVERIFY2(bytes <= (hasSanitizer ? 700 : 350), qPrintable(QString::number(bytes)));
    QCOMPARE(run.import->pointStartNum, count + 1);
}

void tst_BadInput::memoryForALongLineIsBounded_data()
{
    QTest::addColumn<QString>("fileName"); // of the file with the long line
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("piece"); // of the long line

    const auto row = [](const char *name, const QString &fileName, const QByteArray &before, const char *piece) {
        QTest::newRow(name) << fileName << before << QByteArray(piece);
    };
    row("MIF without a line end", mifName, QByteArray(), "x");
    row("word in the data", mifName, mifHead, "x");
    row("blanks", mifName, mifHead, " ");
    row("tokens", mifName, mifHead, "P ");
    row("tokens of a vertex", mifName, mifHead + "REGION 1\n4\n", "1 ");
    row("digits", mifName, mifHead + "LINE 1 2 3 ", "1");
    row("field of a record", midName, QByteArray(), "x");
    row("quotes of a record", midName, QByteArray(), "\"");
    row("group code", dxfName, dxfHead, "1");
    row("value", dxfName, dxfHead + "999\n", "x");
    row("text of special characters", dxfName, dxfHead + dxfLine + "0\nTEXT\n10\n0\n20\n0\n1\n", "%%d");
    row("short lines after a huge count", dxfName, dxfHead + "0\nLWPOLYLINE\n90\n2147483647\n", "999\nx\n");
}

// A character takes two bytes, a line may exist twice, and a growing buffer has as much spare capacity. The rest is for
// sanitizers.
void tst_BadInput::memoryForALongLineIsBounded()
{
    QFETCH(QString, fileName);
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, piece);
    REQUIRE_FACILITY(peakMemory());
    constexpr int size = 16 * megabyte;
    BadInputFixture run(fileName == midName ? mifName : fileName);
    run.import->searchObjectDefs = true;
    run.files.writeBytes(mifName, mifHead + mifLine);
    run.files.writeBytes(midName, QByteArray());
    run.files.writeBytes(fileName, before + piece.repeated(size / piece.size()));
    const PeakMemory memory;

    run.import->importMap();

    QVERIFY2(memory.bytes() <= qint64(12) * size, qPrintable(QString::number(memory.bytes())));
    QVERIFY(run.host.messages().size() <= 2);
}

void tst_BadInput::onlyRegularFilesAreOpened_data()
{
    QTest::addColumn<QString>("target"); // of the symbolic link
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QString>("message");
    QTest::addColumn<bool>("ok");

    const QString noFile = QStringLiteral("Ошибка открытия файла %1");
    const QString noMidFile = QStringLiteral("Ошибка открытия MID файла %1");
    QTest::newRow("missing target") << QStringLiteral("/missing/file") << mifName << noFile << true;
    const QString device = QStringLiteral("/dev/null");
    if (QFile::exists(device)) {
        QTest::newRow("device as MIF") << device << mifName << noFile << true;
        QTest::newRow("device as MID") << device << midName << noMidFile << false;
    }
}

// Reading a pipe without a writer would block, and some devices have no end.
void tst_BadInput::onlyRegularFilesAreOpened()
{
    QFETCH(QString, target);
    QFETCH(QString, fileName);
    QFETCH(QString, message);
    QFETCH(bool, ok);
    BadInputFixture run(mifName);
    run.import->searchObjectDefs = true;
    if (fileName == midName)
        run.files.writeBytes(mifName, mifHead + mifLine);
    const QString path = run.files.path(fileName);
    REQUIRE_FACILITY(symbolicLinks());
    QVERIFY(QFile::link(target, path));

    QCOMPARE(run.import->importMap(), ok);

    QCOMPARE(run.host.messages(), QStringList{message.arg(QDir::toNativeSeparators(path))});
}

void tst_BadInput::malformedBytesAreHandled_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("objects");

    const QString noDxf = QStringLiteral("Ошибка. Файл %1 не соответствует формату DXF");
    const QByteArray zero(1, '\0');
    const QByteArray text("0\nTEXT\n10\n0\n20\n0\n1\n");
    const QString vertices = QStringLiteral(" [н1 0 0, н2 1 1]");
    const auto row = [](const char *name, const QString &fileName, const QByteArray &bytes, const QString &message,
                        const QString &objects) { QTest::newRow(name) << fileName << bytes << message << objects; };
    row("one long line", dxfName, QByteArray(1000000, '0'), noDxf, QString());
    row("binary", dxfName, QByteArray("Binary drawing\r\n\x1A\0\0\0SECTION\0\x02\0HEADER\0", 37), noDxf, QString());
    row("NUL in a group code", dxfName, dxfHead + "0\nLINE\n1" + zero + "0\n7\n" + dxfLine.mid(7), QString(),
        QStringLiteral("ЗУ1") + vertices);
    // The line number includes the 16 lines that the texts pass has read.
    row("NUL in a coordinate", dxfName, dxfHead + "0\nLINE\n10\n0" + zero + "\n20\n0\n",
        QStringLiteral("Ошибка чтения DXF файла в строке: 30"), QString());
    row("NUL in a text", dxfName, dxfHead + dxfLine + text + "a" + zero + "b\n", QString(),
        QStringLiteral("a%1b").arg(QChar(QChar::Null)) + vertices);
    row("invalid UTF-8 in a drawing", dxfName, dxfHead + "999\n\xFF\xFE\x80 \xC3\n\xD0\n\n" + dxfLine, QString(),
        QStringLiteral("ЗУ1") + vertices);
    row("100000 special characters", dxfName,
        dxfHead + dxfLine + text + QByteArray("%%d%%065%").repeated(100000) + "\n", QString(),
        QStringLiteral("°A%").repeated(100000) + vertices);
    row("NULs in a record", midName, QByteArray(3, '\0'), QString(), QString(3, QChar(QChar::Null)) + vertices);
    row("invalid UTF-8 in a record", midName, "\xFF,x\n", QString(), QStringLiteral("\uFFFD") + vertices);
    row("a million quotes", midName, QByteArray(1000001, '"'), QString(), QStringLiteral("ЗУ1") + vertices);
    row("unclosed quote", midName, "\"Лес,x\nПоле\n", QString(), QStringLiteral("Лес,x") + vertices);
}

void tst_BadInput::malformedBytesAreHandled()
{
    QFETCH(QString, fileName);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, message);
    QFETCH(QString, objects);
    BadInputFixture run(fileName == midName ? mifName : fileName);
    run.import->searchObjectDefs = true;
    run.files.writeBytes(mifName, mifHead + mifLine);
    const QString path = run.files.writeBytes(fileName, bytes);

    run.import->importMap();

    message.replace(QStringLiteral("%1"), QDir::toNativeSeparators(path));
    QCOMPARE(run.host.messages().join(QLatin1Char('\n')), message);
    QVERIFY2(run.objectText() == objects, qPrintable(run.objectText().left(200)));
}

void tst_BadInput::manySmallObjectsAreRead_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<QByteArray>("piece"); // repeated 200000 times
    QTest::addColumn<int>("objects");
    QTest::addColumn<int>("contours"); // of the last object
    QTest::addColumn<int>("nextPoint");

    const auto row = [](const char *name, const QString &fileName, const QByteArray &head, const QByteArray &piece,
                        int objects, int contours, int nextPoint) {
        QTest::newRow(name) << fileName << head << piece << objects << contours << nextPoint;
    };
    row("regions without rings", mifName, mifHead, "REGION 0\n", 200000, 0, 1);
    row("coincident MIF lines", mifName, mifHead, mifLine, 200000, 1, 3);
    row("coincident DXF lines", dxfName, dxfHead, dxfLine, 200000, 1, 3);
    row("sections", mifName, mifHead + "PLINE MULTIPLE 200000\n", "2\n0 0\n1 1\n", 1, 200000, 3);
    row("vertices of a ring", mifName, mifHead + "REGION 1\n200000\n", "0 0\n", 1, 1, 2);
}

void tst_BadInput::manySmallObjectsAreRead()
{
    QFETCH(QString, fileName);
    QFETCH(QByteArray, head);
    QFETCH(QByteArray, piece);
    QFETCH(int, objects);
    QFETCH(int, contours);
    QFETCH(int, nextPoint);
    BadInputFixture run(fileName);
    run.files.writeBytes(fileName, head + piece.repeated(200000));

    QVERIFY(run.import->importMap());

    QCOMPARE(run.host.messages(), QStringList());
    QCOMPARE(run.objects.size(), objects);
    QCOMPARE(run.objects.last().contours.size(), contours);
    QCOMPARE(run.import->pointStartNum, nextPoint);
}

void tst_BadInput::nonFiniteVerticesAreAllDifferent_data()
{
    QTest::addColumn<QByteArray>("vertex");

    QTest::newRow("x is NaN") << QByteArray("nan 1\n");
    QTest::newRow("y is NaN") << QByteArray("1 nan\n");
    QTest::newRow("infinite") << QByteArray("-inf inf\n");
}

// Only three of the 100003 vertices are finite; they coincide.
void tst_BadInput::nonFiniteVerticesAreAllDifferent()
{
    QFETCH(QByteArray, vertex);
    const QByteArray some = vertex.repeated(50000);
    BadInputFixture run(mifName);
    run.files.writeBytes(mifName, mifHead + "PLINE 100003\n1 1\n" + some + "1 1\n" + some + "1 1\n");

    QVERIFY(run.import->importMap());

    const QVector<DefPoint> vertices = run.objects.first().contours.first();
    QCOMPARE(vertices.at(50001).def, QStringLiteral("н1"));
    QCOMPARE(vertices.at(100001).def, QStringLiteral("н100001"));
    QCOMPARE(vertices.at(100002).def, QStringLiteral("н1"));
}

void tst_BadInput::readingEndsWhenTheFileIsTruncated_data()
{
    QTest::addColumn<int>("size"); // after truncation; 200000 before
    QTest::addColumn<int>("minLines");
    QTest::addColumn<int>("maxLines");

    QTest::newRow("to less than was already read") << 1000 << 1 << 10000;
    QTest::newRow("to half of its size") << 100000 << 9990 << 9991;
}

void tst_BadInput::readingEndsWhenTheFileIsTruncated()
{
    QFETCH(int, size);
    QFETCH(int, minLines);
    QFETCH(int, maxLines);
    const TextFixture files;
    QFile file(files.writeBytes(mifName, QByteArray("123456789\n").repeated(20000)));
    QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
    LineReader reader;
    reader.setDevice(&file, QTextCodec::codecForName("UTF-8"));
    for (int i = 0; i < 10; ++i)
        QCOMPARE(reader.readLine(), QStringLiteral("123456789"));

    QVERIFY(QFile::resize(file.fileName(), size));

    const int lines = countLines(reader, 20000);
    QVERIFY2(lines >= minLines && lines <= maxLines, qPrintable(QString::number(lines)));
    QVERIFY(reader.readLine().isEmpty());
}

// After an error, rewind() and setDevice() try again.
void tst_BadInput::readErrorEndsTheText()
{
    FailingDevice broken("first\nbroken o");
    FailingDevice other("second\n");
    LineReader reader;
    reader.setDevice(&broken, QTextCodec::codecForName("UTF-8"));
    QCOMPARE(reader.readLine(), QStringLiteral("first"));
    QVERIFY(!reader.atEnd());
    QCOMPARE(reader.readLine(), QStringLiteral("broken o"));
    QVERIFY(reader.atEnd());

    reader.rewind();
    QVERIFY(!reader.atEnd());
    QCOMPARE(countLines(reader, 10), 1);

    reader.setDevice(&other, QTextCodec::codecForName("UTF-8"));
    QVERIFY(!reader.atEnd());
    QCOMPARE(reader.readLine(), QStringLiteral("second"));
}

void tst_BadInput::mifFileMayBeTruncatedBetweenPasses_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QString>("message");

    QTest::newRow("MIF") << mifName << QStringLiteral("Ошибка. Файл %1 не соответствует формату MIF");
    QTest::newRow("MID") << midName << QStringLiteral("Ошибка чтения обозначения объекта из строки: 1");
}

// The points pass reports the collection, and the message truncates the file.
void tst_BadInput::mifFileMayBeTruncatedBetweenPasses()
{
    QFETCH(QString, fileName);
    QFETCH(QString, message);
    BadInputFixture run(mifName);
    run.import->searchPointDefs = true;
    run.import->searchObjectDefs = true;
    run.files.writeBytes(mifName, mifHead + mifLine + "COLLECTION 1\n");
    run.files.writeBytes(midName, "Лес\nПоле\n");
    truncatedFile = run.files.path(fileName);
    setStatusFunc(truncateAtMessage);

    QVERIFY(!run.import->importMap());

    QCOMPARE(truncatedFile, message.replace(QStringLiteral("%1"), QDir::toNativeSeparators(run.files.path(mifName))));
}

// The objects pass continues where the failed texts pass stopped.
void tst_BadInput::dxfFileMayBeTruncatedDuringAPass()
{
    BadInputFixture run(dxfName);
    run.import->searchObjectDefs = true;
    truncatedFile =
        run.files.writeBytes(dxfName, dxfHead + "0\nTEXT\n10\n0\n0\nSECTION\n2\nENTITIES\n" + dxfLine.repeated(10000));
    setStatusFunc(truncateAtMessage);

    run.import->importMap();

    QVERIFY2(run.objects.size() > 100 && run.objects.size() < 1000, qPrintable(QString::number(run.objects.size())));
}

QTEST_GUILESS_MAIN(tst_BadInput)
#include "tst_badinput.moc"
