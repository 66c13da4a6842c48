#include "resultreader.h"

#include <QTest>

class tst_WorkbenchResultReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tablesAreRead();
    void objectsAreRead();
    void emptyTableHasNoObjects_data();
    void emptyTableHasNoObjects();
    void cellsAreRead();
    void columnsAreThoseOfTheCall();
    void closedContourRepeatsItsFirstPosition_data();
    void closedContourRepeatsItsFirstPosition();
    void badCoordinateIsNotANumber_data();
    void badCoordinateIsNotANumber();
    void textIsReadInPieces();
    void xmlDeclarationIsSkipped();

    void badDocumentIsReported_data();
    void badDocumentIsReported();
    void nothingIsKeptAfterAnError();
};

namespace {

const GeometryInfo hostColumns{0, 1, 2, 0};

ImportResult readResult(const QString &text, const GeometryInfo &columns = hostColumns)
{
    ResultReader reader(columns);
    if (!reader.read(text))
        qFatal("%s", qUtf8Printable(reader.error()));
    return reader.result();
}

/// A row with a cell for each word of \a texts.
QString row(const char *texts)
{
    QString xml;
    const QStringList words = QString::fromUtf8(texts).split(QLatin1Char(' '));
    for (const QString &word : words)
        xml += QStringLiteral("<Cell>%1</Cell>").arg(word);
    return QStringLiteral("\n<Row>%1</Row>").arg(xml);
}

QStringList cellsOf(const ImportResult &result, int vertex)
{
    QStringList texts;
    for (int column = 0; column < result.columnCount; ++column)
        texts.append(result.cell(vertex, column));
    return texts;
}

QString object(const QString &def, const QString &rows)
{
    return QStringLiteral("\n<Row><Cell>%1</Cell><FormTable>%2</FormTable></Row>").arg(def, rows);
}

QString table(const QString &objects)
{
    return QStringLiteral("\n<FormTable>%1</FormTable>").arg(objects);
}

} // namespace

void tst_WorkbenchResultReader::tablesAreRead()
{
    const QString vertices = QStringLiteral("<Row><Cell/><FormTable Name=\"%1\"/></Row>");
    const ImportResult named = readResult(QStringLiteral("<FormTable Name=\"Участки\" Update=\"1\">%1</FormTable>")
                                              .arg(vertices.arg(QStringLiteral("Б"))));
    const ImportResult nameless = readResult(table(object(QString(), QString())));

    QCOMPARE(named.objectTable, QStringLiteral("Участки"));
    QCOMPARE(named.pointTable, QStringLiteral("Б"));
    QVERIFY(named.isUpdate);
    QCOMPARE(nameless.objectTable, QString());
    QCOMPARE(nameless.pointTable, QString());
    QVERIFY(!nameless.isUpdate);
}

void tst_WorkbenchResultReader::objectsAreRead()
{
    const QString separator = QStringLiteral("<Row/>");
    const ImportResult result =
        readResult(table(object(QStringLiteral("a"), row("1 10 20") + row("2 11 21")) + object(QString(), QString()) +
                         object(QStringLiteral("b"), row("3 12 22") + separator + row("4 13.5 -23") + row("5 14 24"))));

    QCOMPARE(result.objects.size(), 3);
    QCOMPARE(result.objects.at(0).def, QStringLiteral("a"));
    QCOMPARE(result.objects.at(0).contourCount, 1);
    QCOMPARE(result.objects.at(0).vertexCount, 2);
    QCOMPARE(result.objects.at(1).def, QString());
    QCOMPARE(result.objects.at(1).contourCount, 0);
    QCOMPARE(result.objects.at(1).vertexCount, 0);
    const ResultObject &last = result.objects.at(2);
    QCOMPARE(last.firstContour, 1);
    QCOMPARE(last.contourCount, 2);
    QCOMPARE(last.firstVertex, 2);
    QCOMPARE(last.vertexCount, 3);
    QCOMPARE(result.contours.size(), 3);
    QCOMPARE(result.contours.at(2).firstVertex, 3);
    QCOMPARE(result.contours.at(2).vertexCount, 2);
    QCOMPARE(result.vertices, (QVector<QPointF>{{10, 20}, {11, 21}, {12, 22}, {13.5, -23}, {14, 24}}));
}

void tst_WorkbenchResultReader::emptyTableHasNoObjects_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("as the plug-in writes it") << QStringLiteral("\n<FormTable Name=\"Участки\"/>");
    QTest::newRow("start and end tag") << QStringLiteral("<FormTable>\n</FormTable>\n");
    QTest::newRow("comments") << QStringLiteral("<!-- <Row> --><FormTable><!-- <Row> --></FormTable><!-- -->");
}

void tst_WorkbenchResultReader::emptyTableHasNoObjects()
{
    QFETCH(QString, text);

    QVERIFY(readResult(text).objects.isEmpty());
}

void tst_WorkbenchResultReader::cellsAreRead()
{
    const QString texts = QStringLiteral("<Cell>&lt;&#13;<!-- no -->\n</Cell><Cell>1</Cell><Cell>2</Cell><Cell/>");
    const ImportResult result =
        readResult(table(object(QString(), row("н1 1.00 2.00") + QStringLiteral("<Row>%1</Row>").arg(texts))));

    QCOMPARE(result.columnCount, 4);
    QCOMPARE(cellsOf(result, 0),
             (QStringList{QStringLiteral("н1"), QStringLiteral("1.00"), QStringLiteral("2.00"), QString()}));
    QCOMPARE(cellsOf(result, 1),
             (QStringList{QStringLiteral("<\r\n"), QStringLiteral("1"), QStringLiteral("2"), QString()}));
    QCOMPARE(result.number(0), QStringLiteral("н1"));
}

void tst_WorkbenchResultReader::columnsAreThoseOfTheCall()
{
    const QString vertices = QStringLiteral("<FormTable>%1</FormTable>").arg(row("2.00 1.00 a н1"));
    const QString cells = QStringLiteral("<Cell>a</Cell><Cell>ЗУ1</Cell>");

    const ImportResult result = readResult(table(QStringLiteral("<Row>%1</Row>").arg(cells + vertices)), {3, 1, 0, 1});

    QCOMPARE(result.objects.at(0).def, QStringLiteral("ЗУ1"));
    QCOMPARE(result.vertices.at(0), QPointF(1, 2));
    QCOMPARE(result.number(0), QStringLiteral("н1"));
    QCOMPARE(result.xColumn, 1);
    QCOMPARE(result.yColumn, 0);
}

void tst_WorkbenchResultReader::closedContourRepeatsItsFirstPosition_data()
{
    QTest::addColumn<QString>("rows");
    QTest::addColumn<bool>("isClosed");

    const QString start = row("1 1.00 2.00") + row("2 1.00 3.00");
    QTest::newRow("ring") << start + row("3 2.00 3.00") + row("1 1.00 2.00") << true;
    QTest::newRow("other number") << start + row("3 2.00 3.00") + row("4 1.00 2.00") << true;
    QTest::newRow("other X") << start + row("3 2.00 3.00") + row("1 1.01 2.00") << false;
    QTest::newRow("other Y") << start + row("3 2.00 3.00") + row("1 1.00 2.01") << false;
    QTest::newRow("one vertex") << row("1 1.00 2.00") << false;
    QTest::newRow("not a number") << row("1 a 2.00") + row("2 1.00 3.00") + row("1 a 2.00") << false;
}

void tst_WorkbenchResultReader::closedContourRepeatsItsFirstPosition()
{
    QFETCH(QString, rows);

    const ImportResult result =
        readResult(table(object(QString(), row("0 0.00 0.00") + QStringLiteral("<Row/>") + rows)));

    QVERIFY(!result.contours.at(0).isClosed);
    QTEST(result.contours.at(1).isClosed, "isClosed");
}

void tst_WorkbenchResultReader::badCoordinateIsNotANumber_data()
{
    QTest::addColumn<QString>("text");
    for (const char *const text : {"", "a", "1,5", "1 5", "nan", "inf", "1e999"})
        QTest::newRow(text) << QString::fromLatin1(text);
}

void tst_WorkbenchResultReader::badCoordinateIsNotANumber()
{
    QFETCH(QString, text);
    const QString cells = QStringLiteral("<Row><Cell/><Cell>%1</Cell><Cell>%1</Cell></Row>").arg(text);

    const ImportResult result = readResult(table(object(QString(), cells)));

    QVERIFY(qIsNaN(result.vertices.at(0).x()));
    QVERIFY(qIsNaN(result.vertices.at(0).y()));
    QCOMPARE(result.cell(0, 1), text);
}

// No piece may end inside a surrogate pair.
void tst_WorkbenchResultReader::textIsReadInPieces()
{
    const uint symbol = 0x1F5FA;
    for (const int shift : {0, 1}) {
        const QString def = QString(shift, QLatin1Char('a')) + QString::fromUcs4(&symbol, 1).repeated(20000);

        QCOMPARE(readResult(table(object(def, QString()))).objects.at(0).def, def);
    }
}

void tst_WorkbenchResultReader::xmlDeclarationIsSkipped()
{
    const QString declaration = QStringLiteral("<?xml version=\"1.0\" encoding=\"KOI8-R\"?>");

    QCOMPARE(readResult(declaration + table(object(QStringLiteral("ЗУ1"), QString()))).objects.at(0).def,
             QStringLiteral("ЗУ1"));
}

void tst_WorkbenchResultReader::badDocumentIsReported_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("error");
    const auto addText = [](const char *name, const QString &text, int line, const char *error) {
        QTest::newRow(name)
            << text << QStringLiteral("Результат не прочитан, строка %1: %2").arg(line).arg(QString::fromUtf8(error));
    };
    const auto addRow = [addText](const char *name, const char *text, int line, const char *error) {
        addText(name, QString::fromUtf8(text), line, error);
    };

    addRow("nothing", "", 1, "Premature end of document.");
    addRow("no XML", "Нет\nобъектов", 1, "Start tag expected.");
    addRow("other XML", "\n<Table/>", 2, "это не таблица объектов");
    addRow("truncated", "<FormTable>\n<Row>\n<Cell>", 3, "Premature end of document.");
    addRow("two documents", "<FormTable/>\n<FormTable/>", 2, "Extra content at end of document.");
    addRow("entities", "<!DOCTYPE FormTable [<!ENTITY a \"aa\">]>\n<FormTable/>", 1, "объявление DOCTYPE");
    addRow("text between elements", "<FormTable>\n\nа</FormTable>", 3, "текст вне ячейки");
    addRow("no object", "<FormTable>\n<Cell/></FormTable>", 2, "вместо объекта стоит Cell");
    addRow("object without cells", "<FormTable>\n<Row>\n</Row></FormTable>", 3, "у объекта нет обозначения");
    addRow("object without designation", "<FormTable>\n<Row><FormTable/></Row></FormTable>", 2,
           "у объекта нет обозначения");
    addRow("object without vertices", "<FormTable>\n<Row><Cell/>\n</Row></FormTable>", 3,
           "у объекта нет таблицы вершин");
    addRow("object with two designations", "<FormTable>\n<Row><Cell/><Cell/></Row></FormTable>", 2,
           "у объекта нет таблицы вершин");
    addRow("object with two tables", "<FormTable><Row><Cell/><FormTable/>\n<FormTable/></Row></FormTable>", 2,
           "после таблицы вершин стоит FormTable");
    addText("no vertex", table(object(QString(), QStringLiteral("<Cell/>"))), 3, "вместо вершины стоит Cell");
    addText("vertex with an object", table(object(QString(), QStringLiteral("<Row><Row/></Row>"))), 3,
            "в строке вершины стоит Row");
    addText("vertex with two columns", table(object(QString(), row("1 2 3") + row("1 2"))), 5,
            "в строке вершины не хватает столбцов");
    addText("element in a cell", table(object(QString(), row("1 2 <b>3</b>"))), 4, "в ячейке стоит b");
    addText("element in a designation", table(object(QStringLiteral("<b/>"), QString())), 3, "в ячейке стоит b");
}

void tst_WorkbenchResultReader::badDocumentIsReported()
{
    QFETCH(QString, text);
    ResultReader reader(hostColumns);

    QVERIFY(!reader.read(text));

    QTEST(reader.error(), "error");
}

void tst_WorkbenchResultReader::nothingIsKeptAfterAnError()
{
    ResultReader reader(hostColumns);

    QVERIFY(!reader.read(table(object(QStringLiteral("a"), row("1 2 3")) + object(QStringLiteral("b"), row("4")))));

    QVERIFY(reader.result().objects.isEmpty());
    QVERIFY(reader.result().contours.isEmpty());
    QVERIFY(reader.result().vertices.isEmpty());
}

QTEST_GUILESS_MAIN(tst_WorkbenchResultReader)
#include "tst_workbench_resultreader.moc"
