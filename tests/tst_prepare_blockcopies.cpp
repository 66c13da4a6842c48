#include "blockcopies.h"
#include "converttesting.h"

/// Blocks whose insertions draw more than GDAL can read.
class tst_PrepareBlockCopies : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void excessIsFound_data();
    void excessIsFound();
    void conversionRefusesIt();
};

namespace {

const QByteArray line("0|LINE|8|0|10|0|20|0|11|10|21|0|");

QByteArray block(const QByteArray &name, const QByteArray &entities)
{
    return "0|BLOCK|8|0|2|" + name + "|70|0|10|0|20|0|" + entities + "0|ENDBLK|8|0|";
}

QByteArray insert(const QByteArray &name, const QByteArray &more = {})
{
    return "0|INSERT|8|0|2|" + name + "|10|0|20|0|" + more;
}

QByteArray drawing(const QByteArray &blocks, const QByteArray &entities)
{
    QByteArray text("0|SECTION|2|HEADER|0|ENDSEC|0|SECTION|2|ENTITIES|");
    text += entities + "0|ENDSEC|0|SECTION|2|BLOCKS|" + blocks + "0|ENDSEC|0|EOF|";
    return text.replace('|', '\n');
}

/// Blocks "0" to "count - 1", each of which inserts the one before it \a times times.
QByteArray chain(int count, int times)
{
    QByteArray blocks = block("0", line);
    for (int i = 1; i < count; ++i)
        blocks += block(QByteArray::number(i), insert(QByteArray::number(i - 1)).repeated(times));
    return blocks;
}

} // namespace

void tst_PrepareBlockCopies::excessIsFound_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<qint64>("excessLine");
    const auto row = [](const char *name, const QByteArray &blocks, const QByteArray &entities, int excessLine) {
        QTest::newRow(name) << drawing(blocks, entities) << qint64{excessLine};
    };
    constexpr int first = 12; // line of the first entity's keyword

    const QByteArray filled = block("A", line);
    row("none", filled, line, 0);
    row("missing block", {}, insert("A", "70|9999|71|9999|"), 0);
    row("as many as allowed", filled, insert("A", "70|2000|71|1000|"), 0);
    row("one more", filled, insert("A", "70|2000|71|1000|") + insert("A"), first + 14);
    row("of a block with two entities", block("A", line + line), insert("A", "70|1001|71|1000|"), first);
    row("of an empty block", block("A", {}), insert("A", "70|2001|71|1000|"), first);
    row("in a block", filled + block("B", insert("A", "70|2000|71|1000|")), insert("B"), first);
    row("in a block that nobody inserts", filled + block("B", insert("A", "70|2000|71|2000|")), line, 0);
    row("dimension", filled + block("B", insert("A", "70|2000|71|1000|")), "0|DIMENSION|8|0|2|B|10|0|20|0|", first);
    row("nested blocks", chain(19, 2), insert("18"), 0);
    row("more nested blocks", chain(40, 2), insert("39"), first);
    row("deeply nested blocks", chain(100, 1), insert("99"), 0);
    row("more deeply nested blocks", chain(200000, 1), insert("199999"), first);
    row("block in itself", block("A", line + insert("A")), insert("A"), 0);
    // GDAL follows all orders of the blocks.
    QByteArray circle;
    for (int i = 0; i < 12; ++i) {
        QByteArray others;
        for (int k = 0; k < 12; ++k)
            others += insert(QByteArray::number(k));
        circle += block(QByteArray::number(i), others);
    }
    row("blocks that insert each other", circle, insert("0"), first);
}

void tst_PrepareBlockCopies::excessIsFound()
{
    QFETCH(QByteArray, bytes);
    const TextFixture files;
    files.writeBytes(QStringLiteral("a.dxf"), bytes);
    BlockCopies copies;

    QVERIFY(copies.read(files.path(QStringLiteral("a.dxf")).toUtf8()));

    QTEST(copies.excessLine(), "excessLine");
}

void tst_PrepareBlockCopies::conversionRefusesIt()
{
    const ConvertFixture fixture;
    fixture.files.writeBytes(QStringLiteral("a.dxf"), drawing(chain(40, 2), insert("39")));

    const ConvertRun run = fixture.run(arguments("a.dxf out.mif"));

    QCOMPARE(run.status, 3);
    QCOMPARE(run.messages,
             QStringLiteral("importprepare: Cannot read \"a.dxf\": with the insertion in line 12 its blocks are nested "
                            "too deeply or draw more than 2,000,000 entities."));
}

QTEST_GUILESS_MAIN(tst_PrepareBlockCopies)
#include "tst_prepare_blockcopies.moc"
