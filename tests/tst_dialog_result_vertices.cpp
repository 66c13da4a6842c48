#include "fieldtesting.h"

#include <QLocale>
#include <QTest>

Q_DECLARE_METATYPE(Contours)
Q_DECLARE_METATYPE(DefPoint)

/// The vertex tables of the document, in a process with commas in its numbers.
class tst_DialogResultVertices : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void vertexFillsTheColumns_data();
    void vertexFillsTheColumns();
    void coordinatesHaveADecimalPoint_data();
    void coordinatesHaveADecimalPoint();
    void emptyRowSeparatesContours_data();
    void emptyRowSeparatesContours();
    void fieldsAreThoseOfTheLastRun();

private:
    SettingsSandbox settings;
};

namespace {

/// The rows of the vertex tables of \a document, without line breaks and indentation.
QStringList vertexRows(const QString &document)
{
    QStringList rows;
    const QStringList lines = document.split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        if (line.startsWith(QLatin1String("            <Row")))
            rows.append(line.trimmed());
        else if (line.startsWith(QLatin1String("            ")))
            rows.last().append(line.trimmed());
    }
    return rows;
}

QString row(const char *cells)
{
    return QStringLiteral("<Row>%1</Row>").arg(QString::fromUtf8(cells));
}

} // namespace

void tst_DialogResultVertices::initTestCase()
{
    QLocale::setDefault(QLocale(QLocale::Russian, QLocale::Russia));
}

void tst_DialogResultVertices::init()
{
    settings.clear();
}

void tst_DialogResultVertices::vertexFillsTheColumns_data()
{
    QTest::addColumn<QVector<int>>("columns");
    QTest::addColumn<FieldMap>("fields");
    QTest::addColumn<DefPoint>("vertex");
    QTest::addColumn<QString>("cells");

    const QString a = QStringLiteral("а");
    const DefPoint n1 = point("н1");
    const DefPoint null{QString(), 1000, 2000};
    const auto add = [](const char *name, const QVector<int> &columns, const FieldMap &fields, const DefPoint &vertex,
                        const QString &cells) { QTest::newRow(name) << columns << fields << vertex << cells; };
    add("in order", {0, 1, 2}, {}, n1, row("<Cell>н1</Cell><Cell>1000.00</Cell><Cell>2000.00</Cell>"));
    add("X after Y", {0, 2, 1}, {}, n1, row("<Cell>н1</Cell><Cell>2000.00</Cell><Cell>1000.00</Cell>"));
    add("gaps", {5, 1, 3}, {}, n1, row("<Cell/><Cell>1000.00</Cell><Cell/><Cell>2000.00</Cell><Cell/><Cell>н1</Cell>"));
    add("number and X in one column", {1, 1, 2}, {}, n1, row("<Cell/><Cell>н1</Cell><Cell>2000.00</Cell>"));
    add("X and Y in one column", {0, 1, 1}, {}, n1, row("<Cell>н1</Cell><Cell>1000.00</Cell><Cell/>"));
    add("field after a gap", {0, 1, 2}, {{4, a}}, n1,
        row("<Cell>н1</Cell><Cell>1000.00</Cell><Cell>2000.00</Cell><Cell/><Cell>а</Cell>"));
    add("field in a gap", {0, 3, 2}, {{1, a}}, n1,
        row("<Cell>н1</Cell><Cell>а</Cell><Cell>2000.00</Cell><Cell>1000.00</Cell>"));
    add("field in the column of X", {0, 1, 2}, {{1, a}}, n1,
        row("<Cell>н1</Cell><Cell>1000.00</Cell><Cell>2000.00</Cell>"));
    add("field in the column of Y", {0, 1, 2}, {{2, a}}, n1,
        row("<Cell>н1</Cell><Cell>1000.00</Cell><Cell>2000.00</Cell>"));
    add("field in the column of a null number", {0, 1, 2}, {{0, a}}, null,
        row("<Cell/><Cell>1000.00</Cell><Cell>2000.00</Cell>"));
    add("field in a negative column", {0, 1, 2}, {{-1, a}}, n1,
        row("<Cell>н1</Cell><Cell>1000.00</Cell><Cell>2000.00</Cell>"));
    add("field with an empty text", {0, 1, 2}, {{3, QStringLiteral("")}, {4, QString()}}, n1,
        row("<Cell>н1</Cell><Cell>1000.00</Cell><Cell>2000.00</Cell><Cell></Cell><Cell/>"));
    add("null number", {0, 1, 2}, {}, null, row("<Cell/><Cell>1000.00</Cell><Cell>2000.00</Cell>"));
    add("empty number", {0, 1, 2}, {}, point(""), row("<Cell></Cell><Cell>1000.00</Cell><Cell>2000.00</Cell>"));
    add("number in a negative column", {-1, 1, 2}, {}, n1, row("<Cell/><Cell>1000.00</Cell><Cell>2000.00</Cell>"));
    add("all columns negative", {-1, -1, -2}, {}, n1, QStringLiteral("<Row/>"));
    add("one column, null number", {0, 0, 0}, {}, null, QStringLiteral("<Row/>"));
    add("one column, empty number", {0, 0, 0}, {}, point(""), row("<Cell></Cell><Cell/><Cell/>"));
    add("one column, null number, field", {0, 0, 0}, {{2, a}}, null, row("<Cell/><Cell/><Cell>а</Cell>"));
}

void tst_DialogResultVertices::vertexFillsTheColumns()
{
    QFETCH(QVector<int>, columns);
    QFETCH(FieldMap, fields);
    QFETCH(DefPoint, vertex);
    QFETCH(QString, cells);
    Dialog dialog;
    setColumns(dialog, columns.at(0), columns.at(1), columns.at(2));
    dialog.fieldNumValueMap = fields;
    dialog.objects = {object("ЗУ1", {{vertex}})};

    QCOMPARE(vertexRows(dialog.stringResult()), QStringList{cells});
}

void tst_DialogResultVertices::coordinatesHaveADecimalPoint_data()
{
    QTest::addColumn<double>("x");
    QTest::addColumn<QString>("shownText");
    QTest::addColumn<QString>("written");

    QTest::newRow("half") << 1000.5 << QStringLiteral("1\u00a0000,50") << QStringLiteral("1000.50");
    QTest::newRow("whole") << 7.0 << QStringLiteral("7,00") << QStringLiteral("7.00");
    QTest::newRow("rounded") << -12.346 << QStringLiteral("-12,35") << QStringLiteral("-12.35");
    QTest::newRow("large") << 1e15 << QStringLiteral("1\u00a0000\u00a0000\u00a0000\u00a0000\u00a0000,00")
                           << QStringLiteral("1000000000000000.00");
}

void tst_DialogResultVertices::coordinatesHaveADecimalPoint()
{
    QFETCH(double, x);
    QFETCH(QString, shownText);
    QFETCH(QString, written);
    Dialog dialog;
    setColumns(dialog, 0, 1, 2);
    dialog.objects = {object("ЗУ1", {{point("н1", x, 0)}})};
    dialog.polygonModel.setPolygon(dialog.objects.data());

    const QString document = dialog.stringResult();

    QCOMPARE(dialog.polygonModel.index(0, 1).data().toString(), shownText);
    QCOMPARE(vertexRows(document),
             QStringList{QStringLiteral("<Row><Cell>н1</Cell><Cell>%1</Cell><Cell>0.00</Cell></Row>").arg(written)});
}

void tst_DialogResultVertices::emptyRowSeparatesContours_data()
{
    QTest::addColumn<Contours>("contours");
    QTest::addColumn<QString>("rows"); // a letter for each vertex, a dash for each empty row

    const DefPoint a = point("a");
    const DefPoint b = point("b");
    QTest::newRow("no contour") << Contours() << QString();
    QTest::newRow("one contour") << Contours{{a, b, a}} << QStringLiteral("aba");
    QTest::newRow("two contours") << Contours{{a, a, a}, {b, b}} << QStringLiteral("aaa-bb");
    QTest::newRow("three contours") << Contours{{a}, {b}, {a}} << QStringLiteral("a-b-a");
    QTest::newRow("only contour empty") << Contours{{}} << QString();
    QTest::newRow("first contour empty") << Contours{{}, {a}} << QStringLiteral("-a");
    QTest::newRow("last contour empty") << Contours{{a}, {}} << QStringLiteral("a-");
    QTest::newRow("both contours empty") << Contours{{}, {}} << QStringLiteral("-");
}

void tst_DialogResultVertices::emptyRowSeparatesContours()
{
    QFETCH(Contours, contours);
    QFETCH(QString, rows);
    Dialog dialog;
    setColumns(dialog, 0, 1, 2);
    dialog.fieldNumValueMap = {{3, QStringLiteral("поле")}};
    dialog.objects = {object("ЗУ1", contours)};

    const QString document = dialog.stringResult();

    QString found;
    for (const QString &line : vertexRows(document))
        found += line == QLatin1String("<Row/>") ? QLatin1Char('-') : line.at(11);
    QCOMPARE(found, rows);
    QCOMPARE(document.contains(QLatin1String("        <FormTable/>")), rows.isEmpty());
}

// The rows of extra fields on the form count only when a file is processed.
void tst_DialogResultVertices::fieldsAreThoseOfTheLastRun()
{
    Dialog dialog;
    setColumns(dialog, 0, 1, 2);
    dialog.objects = {object("ЗУ1", {{point("н1")}})};
    enterRows(dialog, list("4 поздно"));

    QCOMPARE(vertexRows(dialog.stringResult()),
             QStringList{row("<Cell>н1</Cell><Cell>1000.00</Cell><Cell>2000.00</Cell>")});
}

QTEST_MAIN(tst_DialogResultVertices)
#include "tst_dialog_result_vertices.moc"
