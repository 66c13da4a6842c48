#include "filegenerator.h"
#include "importcomparison.h"

#include <QDir>
#include <QMap>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

Q_DECLARE_METATYPE(RunKind)

namespace {

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
        const ImportOutcome expected = runReference(run.options);
        count(expected, run.options.pointStartNum);
        open += expected.orderIsOpen ? 1 : 0;
        filled += expected.objects.isEmpty() ? 0 : 1;
        if (expected.orderIsOpen)
            continue;
        const QString told = difference(runImporter(run.options), expected);
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
