#include "dxftesting.h"

#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTest>

namespace {

/// Texts a drawing can hold: each character before, after and between digits, and strings of a few odd ones.
QStringList textsAroundNumbers()
{
    QStringList texts;
    for (int code = 1; code <= 0xFFFF; ++code) {
        const QChar c(code);
        if (!c.isSurrogate())
            texts << c + QStringLiteral("1") << QStringLiteral("1") + c << QStringLiteral("н1") + c + QLatin1Char('2');
    }
    const QString alphabet = QStringLiteral("019АяЁёZa%:\u0661");
    QRandomGenerator random(1);
    for (int i = 0; i < 20000; ++i) {
        QString text;
        for (int length = 1 + random.bounded(5); length > 0; --length)
            text.append(alphabet.at(random.bounded(alphabet.size())));
        texts.append(text);
    }
    const auto isChanged = [](const QString &text) {
        return text.trimmed() != text || text.contains(QRegularExpression(QStringLiteral("[\\r\\n]|%%")));
    };
    texts.erase(std::remove_if(texts.begin(), texts.end(), isChanged), texts.end());
    return texts;
}

/// A drawing with an object on each text.
QStringList drawingOf(const QStringList &texts)
{
    QStringList lines = pairs("0 SECTION|2 HEADER|0 ENDSEC|0 SECTION|2 ENTITIES");
    for (int i = 0; i < texts.size(); ++i) {
        const QByteArray x = QByteArray::number(10 * i);
        lines += pairs("0 LINE|10 " + x + "|20 0|11 " + x + "|21 0|0 TEXT|10 " + x + "|20 0");
        lines << QStringLiteral("1") << texts.at(i);
    }
    return lines + pairs("0 ENDSEC|0 EOF");
}

} // namespace

class tst_MapImport_DxfNumbers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textOfLetterAndDigitsNamesNoObject();
};

void tst_MapImport_DxfNumbers::textOfLetterAndDigitsNamesNoObject()
{
    const QRegularExpression pointNumber(QStringLiteral("^[A-Za-zА-Яа-яЁё]?\\d+$"));
    const QStringList texts = textsAroundNumbers();
    DxfRun map;
    map.import.searchObjectDefs = true;

    QVERIFY(map.run(drawingOf(texts)));

    QCOMPARE(map.polygons.size(), texts.size());
    for (int i = 0; i < texts.size(); ++i) {
        const bool named = map.polygons.at(i).def == texts.at(i);
        QVERIFY2(named != pointNumber.match(texts.at(i)).hasMatch(), qPrintable(texts.at(i)));
    }
    QCOMPARE(map.messages(), QStringList());
}

QTEST_GUILESS_MAIN(tst_MapImport_DxfNumbers)
#include "tst_mapimport_dxfnumbers.moc"
