#include "filegenerator.h"
#include "importcomparison.h"

#include <QDir>
#include <QMap>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

Q_DECLARE_METATYPE(RunKind)

namespace {

int numberFromEnvironment(const char *name, int defaultValue)
{
    return qEnvironmentVariableIsSet(name) ? qEnvironmentVariableIntValue(name) : defaultValue;
}

} // namespace

/// Compares the importers with the reference implementation on a few thousand generated files.
///
/// A failure reports the number of the file. Environment variables: IMPORT_FIRST_NUMBER and IMPORT_FILE_COUNT select
/// other files, and the former also prints statistics; IMPORT_KEEP_FILES keeps the last files and prints their folder.
class tst_MapImportDifferential : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void importMatchesReference_data();
    void importMatchesReference();
    void cleanupTestCase();

private:
    void write(GeneratedRun &run);
    void count(const ImportOutcome &out, int firstNumber);

    QTemporaryDir m_dir;
    QMap<QString, int> m_counts; ///< number of files by outcome, over all rows
};

void tst_MapImportDifferential::importMatchesReference_data()
{
    QTest::addColumn<RunKind>("kind");

    for (int bits = 0; bits < 16; ++bits) {
        const RunKind kind{(bits & 8) != 0, (bits & 4) != 0, (bits & 2) != 0, (bits & 1) != 0};
        QTest::addRow("%s%s%s%s", kind.dxf ? "DXF" : "MIF", kind.searchPointDefs ? ", point numbers" : "",
                      kind.searchObjectDefs ? ", designations" : "", kind.ownPointFile ? ", point file" : "")
            << kind;
    }
}

void tst_MapImportDifferential::importMatchesReference()
{
    QFETCH(RunKind, kind);

    const int first = numberFromEnvironment("IMPORT_FIRST_NUMBER", 1);
    const int size = numberFromEnvironment("IMPORT_FILE_COUNT", 400);
    int skipped = 0;
    int withObjects = 0;
    for (int number = first; number < first + size; ++number) {
        GeneratedRun run = FileGenerator(static_cast<quint32>(number)).run(kind);
        write(run);
        const ImportOutcome expected = runReference(run.options);
        count(expected, run.options.pointStartNum);
        withObjects += expected.objects.isEmpty() ? 0 : 1;
        if (expected.orderIsUnspecified) {
            ++skipped;
            continue;
        }
        const QString found = difference(runImporter(run.options), expected);
        QVERIFY2(found.isEmpty(), qPrintable(QStringLiteral("file %1: %2").arg(number).arg(found)));
    }
    qInfo("files %d to %d: %d with objects, %d skipped because the order of their points is unspecified", first,
          first + size - 1, withObjects, skipped);
    if (size >= 100) {
        QVERIFY2(skipped < size / 10, "too many files whose order is unspecified");
        QVERIFY2(withObjects > size / 2, "too few files with objects");
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
    const auto isNamed = [](const DefPoint &point) { return !point.def.isEmpty(); };
    const auto named = std::count_if(out.points.begin(), out.points.end(), isNamed);
    m_counts[QStringLiteral("files")] += 1;
    m_counts[QStringLiteral("files whose order is unspecified")] += out.orderIsUnspecified ? 1 : 0;
    m_counts[QStringLiteral("files with objects")] += out.objects.isEmpty() ? 0 : 1;
    m_counts[QStringLiteral("files with more than 200 points")] += out.points.size() > 200 ? 1 : 0;
    m_counts[QStringLiteral("files that name points")] += named > out.pointStartNum - firstNumber ? 1 : 0;
    for (QString message : out.messages)
        ++m_counts[message.remove(m_dir.path()).remove(QRegularExpression(QStringLiteral("\\d+")))];
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
