#include "filegenerator.h"
#include "testing.h"

#include <QDir>
#include <QMap>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>

Q_DECLARE_METATYPE(RunKind)

namespace {

bool isSame(double a, double b)
{
    return (std::isnan(a) && std::isnan(b)) || std::memcmp(&a, &b, sizeof a) == 0;
}

bool isSame(const QVector<DefPoint> &a, const QVector<DefPoint> &b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const DefPoint &p, const DefPoint &q) {
        return p.def == q.def && isSame(p.x, q.x) && isSame(p.y, q.y);
    });
}

bool isSame(const DefPolygon &a, const DefPolygon &b)
{
    return a.def == b.def &&
           std::equal(a.contours.begin(), a.contours.end(), b.contours.begin(), b.contours.end(),
                      [](const QVector<DefPoint> &p, const QVector<DefPoint> &q) { return isSame(p, q); });
}

bool isSame(const QVector<DefPolygon> &a, const QVector<DefPolygon> &b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const DefPolygon &p, const DefPolygon &q) { return isSame(p, q); });
}

QString described(const QVector<DefPoint> &points)
{
    QStringList texts;
    for (const DefPoint &point : points)
        texts.append(QStringLiteral("%1 (%2 %3)")
                         .arg(point.def, QString::number(point.x, 'g', 17), QString::number(point.y, 'g', 17)));
    return texts.join(QStringLiteral(", "));
}

QString described(const DefPolygon &object)
{
    QString text = QStringLiteral("\"%1\"").arg(object.def);
    for (const QVector<DefPoint> &contour : object.contours)
        text += QStringLiteral(" [%1]").arg(described(contour));
    return text;
}

QString described(const char *what, const QString &given, const QString &expected)
{
    return QStringLiteral("%1\n   given: %2\nexpected: %3").arg(QLatin1String(what), given, expected);
}

QString objectDifference(const QVector<DefPolygon> &given, const QVector<DefPolygon> &expected)
{
    for (int i = 0; i < qMin(given.size(), expected.size()); ++i) {
        if (!isSame(given[i], expected[i]))
            return described("object", described(given[i]), described(expected[i]));
    }
    return described("objects", QString::number(given.size()), QString::number(expected.size()));
}

/// What differs first, in words; empty when nothing does.
QString difference(const ImportOutcome &given, const ImportOutcome &expected)
{
    if (given.messages != expected.messages)
        return described("messages", given.messages.join(QLatin1Char('|')), expected.messages.join(QLatin1Char('|')));
    if (given.result != expected.result)
        return described("result", QString::number(given.result), QString::number(expected.result));
    if (!isSame(given.objects, expected.objects))
        return objectDifference(given.objects, expected.objects);
    if (!isSame(given.points, expected.points))
        return described("points", described(given.points), described(expected.points));
    if (given.pointStartNum != expected.pointStartNum)
        return described("next point", QString::number(given.pointStartNum), QString::number(expected.pointStartNum));
    if (given.objectStartNum != expected.objectStartNum)
        return described("next object", QString::number(given.objectStartNum),
                         QString::number(expected.objectStartNum));
    return {};
}

void configure(MapImport &import, const ImportOptions &options)
{
    import.swapXY = options.swapXY;
    import.searchPointDefs = options.searchPointDefs;
    import.pointPref = options.pointPref;
    import.pointStartNum = options.pointStartNum;
    import.searchObjectDefs = options.searchObjectDefs;
    import.objectPref = options.objectPref;
    import.objectStartNum = options.objectStartNum;
    import.objectFileName = options.objectFileName;
    import.pointFileName = options.pointFileName;
    import.setEncoding(options.encoding);
}

ImportOutcome imported(const ImportOptions &options)
{
    const StatusRecorder host;
    const std::unique_ptr<MapImport> import =
        options.dxf ? std::unique_ptr<MapImport>(new DxfImport) : std::unique_ptr<MapImport>(new MifImport);
    ImportOutcome out;
    configure(*import, options);
    import->objects = &out.objects;
    out.result = import->importMap();
    out.points = knownPoints(*import);
    out.pointStartNum = import->pointStartNum;
    out.objectStartNum = import->objectStartNum;
    out.messages = host.messages();
    return out;
}

ImportOutcome referenceImported(const ImportOptions &options)
{
    ImportOutcome out = options.dxf ? ReferenceDxf(options).run() : ReferenceMif(options).run();
    out.points = sortedByDef(out.points);
    return out;
}

int numberFromEnvironment(const char *name, int byDefault)
{
    return qEnvironmentVariableIsSet(name) ? qEnvironmentVariableIntValue(name) : byDefault;
}

} // namespace

/// Both formats, read by the importers and by the naive reader, from a few thousand made files.
///
/// A failure names the number of the file. IMPORT_FIRST_NUMBER and IMPORT_FILE_COUNT in the environment run other
/// files, or that one alone; IMPORT_KEEP_FILES leaves the last files in their temporary folder and tells where.
class tst_MapImportDifferential : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsAsTheNaiveReader_data();
    void readsAsTheNaiveReader();
    void cleanupTestCase();

private:
    void write(GeneratedRun &run);
    void count(const ImportOutcome &out, int firstNumber);

    QTemporaryDir m_dir;
    QMap<QString, int> m_counts; ///< how many files came how far, over all rows
};

void tst_MapImportDifferential::readsAsTheNaiveReader_data()
{
    QTest::addColumn<RunKind>("kind");

    for (const bool dxf : {false, true}) {
        const QByteArray format = dxf ? "DXF" : "MIF";
        QTest::newRow(format + ", nothing looked for") << RunKind{dxf, false, false, false};
        QTest::newRow(format + ", objects") << RunKind{dxf, false, true, false};
        QTest::newRow(format + ", points") << RunKind{dxf, true, false, false};
        QTest::newRow(format + ", points and objects") << RunKind{dxf, true, true, false};
        QTest::newRow(format + ", nothing looked for, an idle file of points") << RunKind{dxf, false, false, true};
        QTest::newRow(format + ", objects, an idle file of points") << RunKind{dxf, false, true, true};
        QTest::newRow(format + ", points of another file") << RunKind{dxf, true, false, true};
        QTest::newRow(format + ", points of another file and objects") << RunKind{dxf, true, true, true};
    }
}

void tst_MapImportDifferential::readsAsTheNaiveReader()
{
    QFETCH(RunKind, kind);

    const int first = numberFromEnvironment("IMPORT_FIRST_NUMBER", 1);
    const int size = numberFromEnvironment("IMPORT_FILE_COUNT", 400);
    int open = 0;
    int filled = 0;
    for (int number = first; number < first + size; ++number) {
        GeneratedRun run = FileGenerator(static_cast<quint32>(number)).run(kind);
        write(run);
        const ImportOutcome expected = referenceImported(run.options);
        count(expected, run.options.pointStartNum);
        open += expected.orderIsOpen ? 1 : 0;
        filled += expected.objects.isEmpty() ? 0 : 1;
        if (expected.orderIsOpen)
            continue;
        const QString told = difference(imported(run.options), expected);
        QVERIFY2(told.isEmpty(), qPrintable(QStringLiteral("file %1: %2").arg(number).arg(told)));
    }
    qInfo("files drawn with %d to %d: %d with objects, %d not compared, as their points have no order", first,
          first + size - 1, filled, open);
    if (size >= 100) {
        QVERIFY2(open < size / 10, "too many files whose points have no order");
        QVERIFY2(filled > size / 2, "too few files with objects");
    }
}

void tst_MapImportDifferential::write(GeneratedRun &run)
{
    QDir dir(m_dir.path());
    const QStringList old = dir.entryList(QDir::Files);
    for (const QString &name : old)
        dir.remove(name);
    for (const GeneratedFile &generated : qAsConst(run.files)) {
        QFile file(dir.filePath(generated.name));
        if (!file.open(QIODevice::WriteOnly) || file.write(generated.bytes) != generated.bytes.size())
            qFatal("cannot write %s", qPrintable(file.fileName()));
    }
    run.options.objectFileName = dir.filePath(run.options.objectFileName);
    if (!run.options.pointFileName.isEmpty())
        run.options.pointFileName = dir.filePath(run.options.pointFileName);
}

void tst_MapImportDifferential::count(const ImportOutcome &out, int firstNumber)
{
    ++m_counts[QStringLiteral("files")];
    if (out.orderIsOpen)
        ++m_counts[QStringLiteral("files without a settled order")];
    if (!out.objects.isEmpty())
        ++m_counts[QStringLiteral("files with objects")];
    if (out.points.size() > 200)
        ++m_counts[QStringLiteral("files with more than 200 points")];
    const auto isNamed = [](const DefPoint &point) { return !point.def.isEmpty(); };
    const auto named = std::count_if(out.points.begin(), out.points.end(), isNamed);
    if (named > out.pointStartNum - firstNumber)
        ++m_counts[QStringLiteral("files with points named by the file")];
    for (QString message : out.messages) {
        message.replace(m_dir.path(), QString());
        while (!message.isEmpty() && message.back().isDigit())
            message.chop(1);
        message.replace(QRegExp(QStringLiteral("стоке \\d+")), QStringLiteral("стоке"));
        ++m_counts[message];
    }
}

void tst_MapImportDifferential::cleanupTestCase()
{
    if (qEnvironmentVariableIsSet("IMPORT_FIRST_NUMBER")) {
        for (auto it = m_counts.cbegin(); it != m_counts.cend(); ++it)
            qInfo("%7d %s", it.value(), qPrintable(it.key()));
    }
    if (qEnvironmentVariableIsSet("IMPORT_KEEP_FILES")) {
        m_dir.setAutoRemove(false);
        qInfo("%s", qPrintable(m_dir.path()));
    }
}

QTEST_GUILESS_MAIN(tst_MapImportDifferential)

#include "tst_mapimport_differential.moc"
