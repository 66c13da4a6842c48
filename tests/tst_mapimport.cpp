#include "imported.h"
#include "testing.h"

#include <QDir>
#include <QTest>

#include <new>

namespace {

/// Stands for the reader of a format: reads one line in each pass and notes what it was given.
class LineImport : public MapImport
{
public:
    using MapImport::codec;
    using MapImport::file;
    using MapImport::points;

    QVector<DefPoint> found; ///< what the points pass finds
    bool pointsResult = true;
    bool polygonsResult = true;
    QString tooMuch; ///< the pass for which there is not enough memory

    QStringList passes;       ///< "pass, lineNum: first line"
    QStringList pointsBefore; ///< known when the objects pass begins
    QVector<QIODevice::OpenMode> modes;
    QVector<bool> streamSet; ///< the stream reads the file with the chosen codec

protected:
    bool loadPoints() override
    {
        note(QStringLiteral("points"));
        points += found;
        return pointsResult;
    }

    bool loadPolygons() override
    {
        pointsBefore = described(points);
        note(QStringLiteral("polygons"));
        appendEmptyPolygon();
        return polygonsResult;
    }

private:
    void note(const QString &pass)
    {
        modes.append(file.openMode());
        streamSet.append(stream.device() == &file && stream.codec() == codec);
        const QString text = stream.readLine();
        passes.append(QStringLiteral("%1, %2: %3").arg(pass, QString::number(lineNum), text));
        ++lineNum;
        if (pass == tooMuch)
            throw std::bad_alloc();
    }
};

/// An importer and what it builds.
struct LineRun
{
    LineRun() { import.objects = &objects; }

    QVector<DefPolygon> objects;
    LineImport import;
};

DefPoint pointAt(const QString &def, double x, double y)
{
    return DefPoint{def, x, y};
}

} // namespace

Q_DECLARE_METATYPE(DefPoint)

class tst_MapImport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void messageGoesToTheHostAsItStands_data();
    void messageGoesToTheHostAsItStands();
    void onlyTheLastCallbackIsCalled();
    void withoutCallbackTheRunGoesOn();

    void newImporterHasNoOptions();
    void passesReadFromTheStart_data();
    void passesReadFromTheStart();
    void fileIsOpenOnlyDuringAPass();
    void fileThatDoesNotOpenIsOnlyTold_data();
    void fileThatDoesNotOpenIsOnlyTold();
    void failedPassEndsTheRun_data();
    void failedPassEndsTheRun();
    void passWithoutMemoryFails_data();
    void passWithoutMemoryFails();
    void pointsOfAnEarlierRunAreForgotten();
    void knownPointsAreSortedAndThinned_data();
    void knownPointsAreSortedAndThinned();
    void oneOfEqualPointsStays();
};

void tst_MapImport::messageGoesToTheHostAsItStands_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("sentence") << QStringLiteral("Ошибка открытия файла /tmp/план.mif");
    QTest::newRow("place marker") << QStringLiteral("100%1");
    QTest::newRow("spaces around") << QStringLiteral("  текст\n");
    QTest::newRow("empty") << QStringLiteral("");
}

void tst_MapImport::messageGoesToTheHostAsItStands()
{
    QFETCH(QString, text);
    const StatusRecorder host;

    showStatus(text);

    QCOMPARE(host.messages(), QStringList{text});
}

void tst_MapImport::onlyTheLastCallbackIsCalled()
{
    static int calls = 0;
    calls = 0;
    setStatusFunc([](const QString &) { ++calls; });
    showStatus(QStringLiteral("первое"));
    {
        const StatusRecorder host;
        showStatus(QStringLiteral("второе"));
        showStatus(QStringLiteral("третье"));
        QCOMPARE(host.messages(), (QStringList{QStringLiteral("второе"), QStringLiteral("третье")}));
    }
    showStatus(QStringLiteral("четвёртое"));

    QCOMPARE(calls, 1);
}

void tst_MapImport::withoutCallbackTheRunGoesOn()
{
    setStatusFunc(nullptr);
    const TextFixture files;
    LineRun run;
    run.import.searchPointDefs = true;
    run.import.pointFileName = files.path(QStringLiteral("missing.txt"));
    run.import.objectFileName = files.write(QStringLiteral("plan.txt"), {QStringLiteral("первая")});

    QVERIFY(run.import.importMap());

    QCOMPARE(run.import.passes, QStringList{QStringLiteral("polygons, 0: первая")});
}

void tst_MapImport::newImporterHasNoOptions()
{
    const LineImport import;

    QVERIFY(!import.swapXY && !import.searchPointDefs && !import.searchObjectDefs);
    QVERIFY(import.pointPref.isEmpty() && import.objectPref.isEmpty());
    QVERIFY(import.objectFileName.isEmpty() && import.pointFileName.isEmpty());
    QCOMPARE(import.pointStartNum, 0);
    QCOMPARE(import.objectStartNum, 0);
    QVERIFY(import.objects == nullptr);
    QVERIFY(knownPoints(import).isEmpty());
    QCOMPARE(import.codec, QTextCodec::codecForLocale());
}

void tst_MapImport::passesReadFromTheStart_data()
{
    QTest::addColumn<bool>("searchPointDefs");
    QTest::addColumn<QString>("pointFile");
    QTest::addColumn<QStringList>("passes");

    const QString objects = QStringLiteral("polygons, 0: of objects");
    QTest::newRow("objects only") << false << QString() << QStringList{objects};
    QTest::newRow("points are not looked up though there is a file of them")
        << false << QStringLiteral("points.txt") << QStringList{objects};
    QTest::newRow("points from their own file")
        << true << QStringLiteral("points.txt") << QStringList{QStringLiteral("points, 0: of points"), objects};
    QTest::newRow("points from the file of objects")
        << true << QString() << QStringList{QStringLiteral("points, 0: of objects"), objects};
}

void tst_MapImport::passesReadFromTheStart()
{
    QFETCH(bool, searchPointDefs);
    QFETCH(QString, pointFile);
    QFETCH(QStringList, passes);
    const StatusRecorder host;
    const TextFixture files;
    files.write(QStringLiteral("points.txt"), {QStringLiteral("of points"), QStringLiteral("second")});
    LineRun run;
    run.import.searchPointDefs = searchPointDefs;
    run.import.pointFileName = pointFile.isEmpty() ? QString() : files.path(pointFile);
    run.import.objectFileName = files.write(QStringLiteral("plan.txt"), {QStringLiteral("of objects"), QString()});

    QVERIFY(run.import.importMap());

    QCOMPARE(run.import.passes, passes);
    QCOMPARE(described(run.objects), QStringList{QStringLiteral("-")});
    QVERIFY(host.messages().isEmpty());
}

void tst_MapImport::fileIsOpenOnlyDuringAPass()
{
    const TextFixture files;
    LineRun run;
    run.import.searchPointDefs = true;
    run.import.objectFileName = files.write(QStringLiteral("plan.txt"), {});
    run.import.setEncoding("IBM866");

    QVERIFY(run.import.importMap());

    QCOMPARE(run.import.modes, QVector<QIODevice::OpenMode>(2, QIODevice::ReadOnly | QIODevice::Text));
    QCOMPARE(run.import.streamSet, QVector<bool>(2, true));
    QVERIFY(!run.import.file.isOpen());
}

void tst_MapImport::fileThatDoesNotOpenIsOnlyTold_data()
{
    QTest::addColumn<QString>("pointFile");
    QTest::addColumn<QString>("objectFile");
    QTest::addColumn<QStringList>("told");
    QTest::addColumn<QStringList>("passes");

    const QString plan = QStringLiteral("plan.txt");
    const QString missing = QStringLiteral("missing.txt");
    const QString marked = QStringLiteral("%1 %2.txt");
    const QString folder = QStringLiteral("folder");
    const QStringList objects{QStringLiteral("polygons, 0: first")};
    QTest::newRow("points are missing") << missing << plan << QStringList{missing} << objects;
    QTest::newRow("points are a folder") << folder << plan << QStringList{folder} << objects;
    QTest::newRow("objects are missing") << plan << missing << QStringList{missing}
                                         << QStringList{QStringLiteral("points, 0: first")};
    QTest::newRow("objects are a folder")
        << plan << folder << QStringList{folder} << QStringList{QStringLiteral("points, 0: first")};
    QTest::newRow("both are missing") << missing << marked << QStringList{missing, marked} << QStringList{};
    QTest::newRow("one file for both is missing")
        << QString() << missing << QStringList{missing, missing} << QStringList{};
}

void tst_MapImport::fileThatDoesNotOpenIsOnlyTold()
{
    QFETCH(QString, pointFile);
    QFETCH(QString, objectFile);
    QFETCH(QStringList, told);
    QFETCH(QStringList, passes);
    const StatusRecorder host;
    const TextFixture files;
    files.write(QStringLiteral("plan.txt"), {QStringLiteral("first")});
    QVERIFY(QDir(files.path(QString())).mkdir(QStringLiteral("folder")));
    QStringList messages;
    for (const QString &name : qAsConst(told))
        messages.append(QStringLiteral("Ошибка открытия файла ") + QDir::toNativeSeparators(files.path(name)));
    LineRun run;
    run.import.searchPointDefs = true;
    run.import.pointFileName = pointFile.isEmpty() ? QString() : files.path(pointFile);
    run.import.objectFileName = files.path(objectFile);

    QVERIFY(run.import.importMap());

    QCOMPARE(host.messages(), messages);
    QCOMPARE(run.import.passes, passes);
    QCOMPARE(run.objects.isEmpty(), objectFile != QLatin1String("plan.txt"));
}

void tst_MapImport::failedPassEndsTheRun_data()
{
    QTest::addColumn<bool>("pointsResult");
    QTest::addColumn<bool>("polygonsResult");
    QTest::addColumn<int>("passes");
    QTest::addColumn<QStringList>("objects");

    QTest::newRow("points") << false << true << 1 << QStringList{};
    QTest::newRow("objects, what was read stays") << true << false << 2 << QStringList{QStringLiteral("-")};
    QTest::newRow("both, the objects are not tried") << false << false << 1 << QStringList{};
}

void tst_MapImport::failedPassEndsTheRun()
{
    QFETCH(bool, pointsResult);
    QFETCH(bool, polygonsResult);
    QFETCH(int, passes);
    QFETCH(QStringList, objects);
    const StatusRecorder host;
    const TextFixture files;
    LineRun run;
    run.import.searchPointDefs = true;
    run.import.objectFileName = files.write(QStringLiteral("plan.txt"), {});
    run.import.found = {pointAt(QStringLiteral("A"), 1, 2)};
    run.import.pointsResult = pointsResult;
    run.import.polygonsResult = polygonsResult;

    QVERIFY(!run.import.importMap());

    QCOMPARE(run.import.passes.size(), passes);
    QCOMPARE(described(run.objects), objects);
    QCOMPARE(described(knownPoints(run.import)), QStringList{QStringLiteral("A 1 2")});
    QVERIFY(!run.import.file.isOpen());
    QVERIFY2(host.messages().isEmpty(), "the pass tells its failure itself");
}

void tst_MapImport::passWithoutMemoryFails_data()
{
    QTest::addColumn<QString>("pass");
    QTest::addColumn<int>("passes");

    QTest::newRow("points") << QStringLiteral("points") << 1;
    QTest::newRow("objects") << QStringLiteral("polygons") << 2;
}

void tst_MapImport::passWithoutMemoryFails()
{
    QFETCH(QString, pass);
    const StatusRecorder host;
    const TextFixture files;
    LineRun run;
    run.import.searchPointDefs = true;
    run.import.objectFileName = files.write(QStringLiteral("plan.txt"), {});
    run.import.tooMuch = pass;
    QVERIFY(!run.import.importMap());
    QTEST(run.import.passes.size(), "passes");
    QCOMPARE(host.messages(), QStringList{QStringLiteral("Недостаточно памяти для чтения файла ") +
                                          QDir::toNativeSeparators(run.import.objectFileName)});
    QVERIFY(!run.import.file.isOpen());
}

void tst_MapImport::pointsOfAnEarlierRunAreForgotten()
{
    const TextFixture files;
    LineRun run;
    run.import.objectFileName = files.write(QStringLiteral("plan.txt"), {});
    run.import.points = {pointAt(QStringLiteral("old"), 1, 2)};

    QVERIFY(run.import.importMap());

    QVERIFY(run.import.pointsBefore.isEmpty());
    QVERIFY(knownPoints(run.import).isEmpty());
    QCOMPARE(run.import.pointStartNum, 0);
}

void tst_MapImport::knownPointsAreSortedAndThinned_data()
{
    QTest::addColumn<QVector<DefPoint>>("found");
    QTest::addColumn<QStringList>("known");

    const QString a = QStringLiteral("A");
    const QString b = QStringLiteral("B");
    const QString c = QStringLiteral("C");
    const QString d = QStringLiteral("D");
    QTest::newRow("none") << QVector<DefPoint>{} << QStringList{};
    QTest::newRow("by x, then by y") << QVector<DefPoint>{pointAt(a, 2, 1), pointAt(b, 1, 9), pointAt(c, 1, 3)}
                                     << QStringList{QStringLiteral("C 1 3"), QStringLiteral("B 1 9"),
                                                    QStringLiteral("A 2 1")};
    QTest::newRow("each is compared with the last one kept, not with the last one read")
        << QVector<DefPoint>{pointAt(d, 0.024, 0), pointAt(c, 0.016, 0), pointAt(b, 0.008, 0), pointAt(a, 0, 0)}
        << QStringList{QStringLiteral("A 0 0"), QStringLiteral("C 0.016 0")};
    QTest::newRow("only neighbours in the order are compared")
        << QVector<DefPoint>{pointAt(a, 0, 0), pointAt(b, 0, 5), pointAt(c, 0.005, 0)}
        << QStringList{QStringLiteral("A 0 0"), QStringLiteral("B 0 5"), QStringLiteral("C 0.005 0")};
    QTest::newRow("both axes count") << QVector<DefPoint>{pointAt(a, 0, 0), pointAt(b, 0.01, 0.01),
                                                          pointAt(c, 0.02, 0.5)}
                                     << QStringList{QStringLiteral("A 0 0"), QStringLiteral("C 0.02 0.5")};
    QTest::newRow("the one kept has no designation")
        << QVector<DefPoint>{pointAt(b, 0.005, 0), pointAt(QString(), 0, 0)} << QStringList{QStringLiteral("- 0 0")};
}

void tst_MapImport::knownPointsAreSortedAndThinned()
{
    QFETCH(QVector<DefPoint>, found);
    QFETCH(QStringList, known);
    const TextFixture files;
    LineRun run;
    run.import.searchPointDefs = true;
    run.import.objectFileName = files.write(QStringLiteral("plan.txt"), {});
    run.import.found = found;

    QVERIFY(run.import.importMap());

    QCOMPARE(run.import.pointsBefore, known);
}

void tst_MapImport::oneOfEqualPointsStays()
{
    const TextFixture files;
    LineRun run;
    run.import.searchPointDefs = true;
    run.import.objectFileName = files.write(QStringLiteral("plan.txt"), {});
    run.import.found = {pointAt(QStringLiteral("A"), 1, 2), pointAt(QStringLiteral("B"), 1, 2)};

    QVERIFY(run.import.importMap());

    QCOMPARE(knownPoints(run.import).size(), 1);
    const QString def = knownPoints(run.import).first().def;
    QVERIFY(def == QLatin1String("A") || def == QLatin1String("B"));
}

QTEST_GUILESS_MAIN(tst_MapImport)

#include "tst_mapimport.moc"
