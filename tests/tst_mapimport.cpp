#include "imported.h"
#include "testing.h"

#include <QDir>
#include <QTest>

#include <new>

namespace {

/// A reader that records the lines of each pass; the objects pass reads them twice.
class LineImport : public MapImport
{
public:
    using MapImport::codec;
    using MapImport::encoding;
    using MapImport::file;
    using MapImport::points;

    QVector<DefPoint> found;  ///< points that the points pass adds
    QString failingPass;      ///< the pass that returns false
    QString passOutOfMemory;  ///< the pass that throws std::bad_alloc
    QStringList passes;       ///< "pass first-last: lines" with lineNum before and after the lines
    QStringList pointsBefore; ///< the known points at the start of the objects pass

protected:
    bool loadPoints() override
    {
        points += found;
        return readLines(QStringLiteral("points"));
    }

    bool loadPolygons() override
    {
        pointsBefore = described(points);
        appendEmptyPolygon();
        const bool ok = readLines(QStringLiteral("objects"));
        resetInFileStream();
        return readLines(QStringLiteral("again")) && ok;
    }

private:
    bool readLines(const QString &pass)
    {
        if (file.openMode() != (QIODevice::ReadOnly | QIODevice::Text))
            qFatal("the file is not open in text mode");
        const int first = lineNum;
        QStringList lines;
        for (; !stream.atEnd(); ++lineNum)
            lines.append(stream.readLine());
        passes.append(QStringLiteral("%1 %2-%3: ").arg(pass).arg(first).arg(lineNum) + lines.join(QLatin1Char('|')));
        if (pass == passOutOfMemory)
            throw std::bad_alloc();
        return pass != failingPass;
    }
};

/// An import of plan.txt with a points pass.
struct LineFixture
{
    LineFixture()
    {
        import.setEncoding("UTF-8");
        import.searchPointDefs = true;
        import.objectFileName = files.write(QStringLiteral("plan.txt"), {QStringLiteral("a"), QStringLiteral("b")});
        import.objects = &objects;
    }

    const StatusRecorder host;
    const TextFixture files;
    QVector<DefPolygon> objects;
    LineImport import;
};

DefPoint pointAt(const char *def, double x, double y)
{
    return DefPoint{QString::fromLatin1(def), x, y};
}

} // namespace

Q_DECLARE_METATYPE(DefPoint)

class tst_MapImport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { QTextCodec::setCodecForLocale(nullptr); }

    void messageReachesTheLatestCallbackUnchanged();
    void newImporterHasDefaultOptions();
    void unknownEncodingIsIgnored_data();
    void unknownEncodingIsIgnored();
    void passesReadWholeFiles_data();
    void passesReadWholeFiles();
    void filesAreDecoded();
    void fileThatCannotBeOpenedIsSkipped_data();
    void fileThatCannotBeOpenedIsSkipped();
    void failedPassEndsTheRun_data();
    void failedPassEndsTheRun();
    void pointsOfAnEarlierRunAreDiscarded();
    void knownPointsAreSortedAndDeduplicated_data();
    void knownPointsAreSortedAndDeduplicated();
};

void tst_MapImport::messageReachesTheLatestCallbackUnchanged()
{
    const QString text = QStringLiteral(" 100%1\n");
    setStatusFunc([](const QString &) { QFAIL("an earlier callback is called"); });
    {
        const StatusRecorder host;
        showStatus(text);
        QCOMPARE(host.messages(), QStringList{text});
    }
    setStatusFunc(nullptr);
    showStatus(text);
}

void tst_MapImport::newImporterHasDefaultOptions()
{
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("ISO-8859-5"));
    const LineImport import;

    QVERIFY(!import.swapXY && !import.searchPointDefs && !import.searchObjectDefs);
    QVERIFY(import.pointPref.isEmpty() && import.objectPref.isEmpty());
    QVERIFY(import.objectFileName.isEmpty() && import.pointFileName.isEmpty());
    QCOMPARE(import.pointStartNum, 0);
    QCOMPARE(import.objectStartNum, 0);
    QVERIFY(import.objects == nullptr);
    QVERIFY(import.points.isEmpty());
    QCOMPARE(import.codec->name(), QByteArray("ISO-8859-5"));
    QVERIFY(import.encoding.isEmpty());
}

void tst_MapImport::unknownEncodingIsIgnored_data()
{
    QTest::addColumn<QList<QByteArray>>("names");
    QTest::addColumn<QByteArray>("codec");

    QTest::newRow("unknown") << QList<QByteArray>{"no-such-encoding"} << QByteArray("ISO-8859-5");
    QTest::newRow("known, then empty") << QList<QByteArray>{"IBM866", ""} << QByteArray("IBM866");
    QTest::newRow("known, then another") << QList<QByteArray>{"IBM866", "KOI8-R"} << QByteArray("KOI8-R");
}

void tst_MapImport::unknownEncodingIsIgnored()
{
    QFETCH(QList<QByteArray>, names);
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("ISO-8859-5"));
    const StatusRecorder host;
    LineImport import;

    for (const QByteArray &name : qAsConst(names))
        import.setEncoding(name);

    QTEST(import.codec->name(), "codec");
    QCOMPARE(import.encoding, names.last());
    QVERIFY(host.messages().isEmpty());
}

void tst_MapImport::passesReadWholeFiles_data()
{
    QTest::addColumn<bool>("searchPointDefs");
    QTest::addColumn<QString>("pointFile");
    QTest::addColumn<QStringList>("passes");

    const QStringList objects{QStringLiteral("objects 0-2: a|b"), QStringLiteral("again 2-4: a|b")};
    const QString pointFile = QStringLiteral("points.txt");
    QTest::newRow("points are not looked up") << false << pointFile << objects;
    QTest::newRow("points from a separate file")
        << true << pointFile << QStringList{QStringLiteral("points 0-1: p")} + objects;
    QTest::newRow("points from the file of objects")
        << true << QString() << QStringList{QStringLiteral("points 0-2: a|b")} + objects;
}

void tst_MapImport::passesReadWholeFiles()
{
    QFETCH(bool, searchPointDefs);
    QFETCH(QString, pointFile);
    LineFixture f;
    f.files.write(QStringLiteral("points.txt"), {QStringLiteral("p")});
    f.import.searchPointDefs = searchPointDefs;
    f.import.pointFileName = pointFile.isEmpty() ? QString() : f.files.path(pointFile);

    QVERIFY(f.import.importMap());

    QTEST(f.import.passes, "passes");
    QCOMPARE(f.objects.size(), 1);
    QVERIFY(f.host.messages().isEmpty());
    QVERIFY(!f.import.file.isOpen());
}

void tst_MapImport::filesAreDecoded()
{
    LineFixture f;
    f.import.setEncoding("IBM866");
    f.files.writeBytes(QStringLiteral("plan.txt"), "\x8F\xAB\xA0\xAD");

    QVERIFY(f.import.importMap());

    const QString line = QStringLiteral(": План");
    QCOMPARE(f.import.passes, (QStringList{QStringLiteral("points 0-1") + line, QStringLiteral("objects 0-1") + line,
                                           QStringLiteral("again 1-2") + line}));
}

void tst_MapImport::fileThatCannotBeOpenedIsSkipped_data()
{
    QTest::addColumn<QString>("pointFile");
    QTest::addColumn<QString>("objectFile");
    QTest::addColumn<QStringList>("reported");
    QTest::addColumn<int>("passes");

    const QString plan = QStringLiteral("plan.txt");
    const QString missing = QStringLiteral("%1 %2.txt");
    QTest::newRow("file of points") << missing << plan << QStringList{missing} << 2;
    QTest::newRow("file of objects") << plan << missing << QStringList{missing} << 1;
    QTest::newRow("one file for both") << QString() << missing << QStringList{missing, missing} << 0;
}

void tst_MapImport::fileThatCannotBeOpenedIsSkipped()
{
    QFETCH(QString, pointFile);
    QFETCH(QString, objectFile);
    QFETCH(QStringList, reported);
    LineFixture f;
    QStringList messages;
    for (const QString &name : qAsConst(reported))
        messages.append(QStringLiteral("Ошибка открытия файла ") + QDir::toNativeSeparators(f.files.path(name)));
    f.import.pointFileName = pointFile.isEmpty() ? QString() : f.files.path(pointFile);
    f.import.objectFileName = f.files.path(objectFile);

    QVERIFY(f.import.importMap());

    QCOMPARE(f.host.messages(), messages);
    QTEST(f.import.passes.size(), "passes");
}

void tst_MapImport::failedPassEndsTheRun_data()
{
    QTest::addColumn<QString>("pass");
    QTest::addColumn<bool>("isOutOfMemory");
    QTest::addColumn<int>("passes");

    QTest::newRow("points") << QStringLiteral("points") << false << 1;
    QTest::newRow("objects") << QStringLiteral("objects") << false << 3;
    QTest::newRow("out of memory in points") << QStringLiteral("points") << true << 1;
    QTest::newRow("out of memory in objects") << QStringLiteral("objects") << true << 2;
}

// A reader reports its own failures; the base class reports only that memory ran out.
void tst_MapImport::failedPassEndsTheRun()
{
    QFETCH(QString, pass);
    QFETCH(bool, isOutOfMemory);
    QFETCH(int, passes);
    LineFixture f;
    f.import.found = {pointAt("A", 1, 2)};
    (isOutOfMemory ? f.import.passOutOfMemory : f.import.failingPass) = pass;
    const QString noMemory =
        QStringLiteral("Недостаточно памяти для чтения файла ") + QDir::toNativeSeparators(f.import.objectFileName);

    QVERIFY(!f.import.importMap());

    QCOMPARE(f.import.passes.size(), passes);
    QCOMPARE(f.host.messages(), isOutOfMemory ? QStringList{noMemory} : QStringList());
    QCOMPARE(f.objects.size(), passes == 1 ? 0 : 1);
    QCOMPARE(described(f.import.points), QStringList{QStringLiteral("A 1 2")});
    QVERIFY(!f.import.file.isOpen());
}

void tst_MapImport::pointsOfAnEarlierRunAreDiscarded()
{
    LineFixture f;
    f.import.searchPointDefs = false;
    f.import.points = {pointAt("old", 1, 2)};

    QVERIFY(f.import.importMap());

    QVERIFY(f.import.pointsBefore.isEmpty());
}

void tst_MapImport::knownPointsAreSortedAndDeduplicated_data()
{
    QTest::addColumn<QVector<DefPoint>>("found");
    QTest::addColumn<QStringList>("known");

    QTest::newRow("by x, then by y") << QVector<DefPoint>{pointAt("A", 2, 1), pointAt("B", 1, 9), pointAt("C", 1, 3)}
                                     << QStringList{QStringLiteral("C 1 3"), QStringLiteral("B 1 9"),
                                                    QStringLiteral("A 2 1")};
    QTest::newRow("compared with the last point kept, not the last read")
        << QVector<DefPoint>{pointAt("D", 0.024, 0), pointAt("C", 0.016, 0), pointAt("B", 0.008, 0), pointAt("", 0, 0)}
        << QStringList{QStringLiteral("- 0 0"), QStringLiteral("C 0.016 0")};
    QTest::newRow("only adjacent points are compared")
        << QVector<DefPoint>{pointAt("A", 0, 0), pointAt("B", 0, 5), pointAt("C", 0.005, 0)}
        << QStringList{QStringLiteral("A 0 0"), QStringLiteral("B 0 5"), QStringLiteral("C 0.005 0")};
}

void tst_MapImport::knownPointsAreSortedAndDeduplicated()
{
    QFETCH(QVector<DefPoint>, found);
    LineFixture f;
    f.import.found = found;

    QVERIFY(f.import.importMap());

    QTEST(f.import.pointsBefore, "known");
}

QTEST_GUILESS_MAIN(tst_MapImport)

#include "tst_mapimport.moc"
