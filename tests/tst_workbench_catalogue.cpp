#include "catalogue.h"

#include "resultreader.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class tst_WorkbenchCatalogue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachVertexHasALine();
    void specialCharactersAreQuoted_data();
    void specialCharactersAreQuoted();
    void linesMayBeLong();
    void emptyResultHasAHeading();
    void failureIsReported();

private:
    QByteArray savedLines(const QString &objects, const GeometryInfo &columns = {0, 1, 2, 0}) const;

    QTemporaryDir m_dir;
};

const QByteArray heading = QByteArrayLiteral("\xEF\xBB\xBFОбозначение;Контур;Номер;X;Y\r\n");

/// The catalogue of a result with \a objects.
QByteArray tst_WorkbenchCatalogue::savedLines(const QString &objects, const GeometryInfo &columns) const
{
    ResultReader reader(columns);
    if (!reader.read(QStringLiteral("<FormTable>%1</FormTable>").arg(objects)))
        qFatal("%s", qUtf8Printable(reader.error()));
    const QString path = m_dir.filePath(QStringLiteral("catalogue.csv"));
    QString error;
    QFile file(path);
    if (!saveCatalogue(reader.result(), path, error) || !file.open(QIODevice::ReadOnly))
        qFatal("%s", qUtf8Printable(error));
    return file.readAll();
}

/// A vertex in the columns Y, number, X.
QString vertex(const char *number, const char *x, const char *y)
{
    return QStringLiteral("<Row><Cell>%3</Cell><Cell>%1</Cell><Cell>%2</Cell></Row>")
        .arg(QString::fromUtf8(number), QLatin1String(x), QLatin1String(y));
}

void tst_WorkbenchCatalogue::eachVertexHasALine()
{
    const QString square = vertex("н1", "0.00", "0.10") + vertex("н2", "1e3", "-5.00") + vertex("н1", "0.00", "0.10");
    const QString objects = QStringLiteral("<Row><Cell>ЗУ1</Cell><FormTable>%1<Row/>%2</FormTable></Row>")
                                .arg(square, vertex("", "7", "")) +
                            QStringLiteral("<Row><Cell/><FormTable/></Row>") +
                            QStringLiteral("<Row><Cell/><FormTable>%1</FormTable></Row>").arg(vertex("н3", "nan", "8"));

    QCOMPARE(savedLines(objects, {1, 2, 0, 0}), heading + "ЗУ1;1;н1;0.00;0.10\r\n"
                                                          "ЗУ1;1;н2;1e3;-5.00\r\n"
                                                          "ЗУ1;1;н1;0.00;0.10\r\n"
                                                          "ЗУ1;2;;7;\r\n"
                                                          ";1;н3;nan;8\r\n");
}

void tst_WorkbenchCatalogue::specialCharactersAreQuoted_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("field");

    QTest::newRow("semicolon") << QStringLiteral("a;b") << QByteArray("\"a;b\"");
    QTest::newRow("quotes") << QStringLiteral("a\"\"b\"") << QByteArray("\"a\"\"\"\"b\"\"\"");
    QTest::newRow("line feed") << QStringLiteral("a\nb") << QByteArray("\"a\nb\"");
    QTest::newRow("carriage return") << QStringLiteral("a&#13;b") << QByteArray("\"a\rb\"");
    QTest::newRow("comma and blanks") << QStringLiteral(" a, b ") << QByteArray(" a, b ");
}

void tst_WorkbenchCatalogue::specialCharactersAreQuoted()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, field);
    const QString row = QStringLiteral("<Row><Cell>%1</Cell><Cell>1.00</Cell><Cell>2.00</Cell></Row>");

    const QByteArray lines =
        savedLines(QStringLiteral("<Row><Cell>%1</Cell><FormTable>%2</FormTable></Row>").arg(text, row.arg(text)));

    QCOMPARE(lines, heading + field + ";1;" + field + ";1.00;2.00\r\n");
}

void tst_WorkbenchCatalogue::linesMayBeLong()
{
    const QString def(100000, QLatin1Char('a'));

    const QByteArray lines = savedLines(QStringLiteral("<Row><Cell>%1</Cell><FormTable>%2</FormTable></Row>")
                                            .arg(def, vertex("1", "2", "3") + vertex("4", "5", "6")),
                                        {1, 2, 0, 0});

    QCOMPARE(lines, heading + def.toUtf8() + ";1;1;2;3\r\n" + def.toUtf8() + ";1;4;5;6\r\n");
}

void tst_WorkbenchCatalogue::emptyResultHasAHeading()
{
    QCOMPARE(savedLines(QString()), heading);
}

void tst_WorkbenchCatalogue::failureIsReported()
{
    QString error;

    QVERIFY(!saveCatalogue(ImportResult(), m_dir.path(), error));

    QVERIFY(!error.isEmpty());
}

QTEST_GUILESS_MAIN(tst_WorkbenchCatalogue)
#include "tst_workbench_catalogue.moc"
