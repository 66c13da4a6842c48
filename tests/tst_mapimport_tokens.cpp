#include "mapimport_lines.h"

#include "testing.h"

#include <QTest>

class tst_MapImportTokens : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wordsAreThoseOfSimplifiedLine();
    void wordsPastTheKeptAreCounted();
    void lineIsTrimmedLikeString();
    void upperCaseIsThatOfString();
};

void tst_MapImportTokens::wordsAreThoseOfSimplifiedLine()
{
    const QString alphabet = QStringLiteral("ab  \t\r\v\f") + QChar(0xA0) + QChar(0x85) + QChar(0x2003) +
                             QChar(0x3000) + QChar(0x200B) + QChar(0x1C) + QChar(0);
    QRandomGenerator random(2);
    for (int i = 0; i < 100000; ++i) {
        const QString line = randomText(random, alphabet, random.bounded(12));
        const QStringList expected = line.simplified().split(QLatin1Char(' '));
        Tokens words;
        words.split(trimmedLine(line));

        QCOMPARE(words.size(), expected.size());
        for (int word = 0; word < qMin(5, expected.size()); ++word)
            QVERIFY2(words[word] == expected.at(word), qPrintable(line));
    }
}

void tst_MapImportTokens::wordsPastTheKeptAreCounted()
{
    const QString line = QStringLiteral("1 2 3 4 5 6 7");
    Tokens words;
    words.split(line);

    QCOMPARE(words.size(), 7);
    QVERIFY(words[4] == QLatin1String("5"));
    QVERIFY(words[5].isNull());
    QVERIFY(words[7].isNull());
}

void tst_MapImportTokens::lineIsTrimmedLikeString()
{
    for (int code = 0; code <= 0xFFFF; ++code) {
        const QString line = QChar(code) + QStringLiteral(" a ") + QChar(code);

        QVERIFY2(trimmedLine(line) == line.trimmed(), qPrintable(QString::number(code, 16)));
    }
    QVERIFY(trimmedLine(QStringView(u" \t ")).isEmpty());
}

void tst_MapImportTokens::upperCaseIsThatOfString()
{
    QString upper;
    for (int code = 0; code <= 0xFFFF; ++code) {
        const QString word = QStringLiteral("a{z`") + QChar(code) + QLatin1Char('Z');
        toUpper(word, upper);

        QCOMPARE(upper, word.toUpper());
    }
    toUpper(QStringView(), upper);
    QCOMPARE(upper, QString());
    const QString russian = QStringLiteral("данные");
    toUpper(russian, upper);
    QCOMPARE(upper, russian.toUpper());
}

QTEST_GUILESS_MAIN(tst_MapImportTokens)
#include "tst_mapimport_tokens.moc"
