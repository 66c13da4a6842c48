#include "fieldtesting.h"
#include "resultoutline.h"

#include <QLocale>
#include <QSignalSpy>
#include <QTest>

/// The document that the host takes, in a process with commas in its numbers.
class tst_DialogResult : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void wholeDocument();
    void withoutObjectsTheRootIsEmpty_data();
    void withoutObjectsTheRootIsEmpty();
    void designationStandsInItsColumn_data();
    void designationStandsInItsColumn();
    void pointTableHasItsName_data();
    void pointTableHasItsName();
    void markupIsEscaped_data();
    void markupIsEscaped();
    void whatXmlCannotHoldIsLeftOut_data();
    void whatXmlCannotHoldIsLeftOut();
    void objectsStandInTheirPresentOrder();
    void dialogIsLeftAsItWas();

private:
    SettingsSandbox settings;
};

void tst_DialogResult::initTestCase()
{
    QLocale::setDefault(QLocale(QLocale::Russian, QLocale::Russia));
}

void tst_DialogResult::init()
{
    settings.clear();
}

void tst_DialogResult::wholeDocument()
{
    Dialog dialog;
    dialog.objectTableName = QStringLiteral("Участки");
    dialog.pointTableName = QStringLiteral("Координаты");
    setColumns(dialog, 0, 1, 2);
    dialog.defColNum = 1;
    dialog.fieldNumValueMap = {{4, QStringLiteral("1")}};
    enter(dialog, QStringLiteral("updateCheck"), true);
    dialog.objects = {object("ЗУ1", {{point("н1"), point("н2", 1010.5)}}),
                      object("ЗУ2", {{point("7", 500, 600)}, {point("8", 505.25, 605)}})};

    const QString expected = QStringLiteral(R"(
<FormTable Name="Участки" Update="1">
    <Row>
        <Cell/>
        <Cell>ЗУ1</Cell>
        <FormTable Name="Координаты">
            <Row>
                <Cell>н1</Cell>
                <Cell>1000.00</Cell>
                <Cell>2000.00</Cell>
                <Cell/>
                <Cell>1</Cell>
            </Row>
            <Row>
                <Cell>н2</Cell>
                <Cell>1010.50</Cell>
                <Cell>2000.00</Cell>
                <Cell/>
                <Cell>1</Cell>
            </Row>
        </FormTable>
    </Row>
    <Row>
        <Cell/>
        <Cell>ЗУ2</Cell>
        <FormTable Name="Координаты">
            <Row>
                <Cell>7</Cell>
                <Cell>500.00</Cell>
                <Cell>600.00</Cell>
                <Cell/>
                <Cell>1</Cell>
            </Row>
            <Row/>
            <Row>
                <Cell>8</Cell>
                <Cell>505.25</Cell>
                <Cell>605.00</Cell>
                <Cell/>
                <Cell>1</Cell>
            </Row>
        </FormTable>
    </Row>
</FormTable>)");
    QCOMPARE(dialog.stringResult(), expected);
}

void tst_DialogResult::withoutObjectsTheRootIsEmpty_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("update");
    QTest::addColumn<QString>("document");

    const QString name = QStringLiteral("Участки");
    QTest::newRow("plain") << QString() << false << QStringLiteral("\n<FormTable/>");
    QTest::newRow("empty name") << QStringLiteral("") << false << QStringLiteral("\n<FormTable/>");
    QTest::newRow("name") << name << false << QStringLiteral("\n<FormTable Name=\"Участки\"/>");
    QTest::newRow("update") << QString() << true << QStringLiteral("\n<FormTable Update=\"1\"/>");
    QTest::newRow("both") << name << true << QStringLiteral("\n<FormTable Name=\"Участки\" Update=\"1\"/>");
}

void tst_DialogResult::withoutObjectsTheRootIsEmpty()
{
    QFETCH(QString, name);
    QFETCH(bool, update);
    QFETCH(QString, document);
    Dialog dialog;
    dialog.objectTableName = name;
    dialog.pointTableName = QStringLiteral("Координаты");
    dialog.formName = QStringLiteral("Форма");
    dialog.defColNum = 2;
    enter(dialog, QStringLiteral("updateCheck"), update);

    QCOMPARE(dialog.stringResult(), document);
}

void tst_DialogResult::designationStandsInItsColumn_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("def");
    QTest::addColumn<QStringList>("cells");

    const QString def = QStringLiteral("ЗУ1");
    const QString cell = QStringLiteral("        <Cell>ЗУ1</Cell>");
    const QString emptyCell = QStringLiteral("        <Cell></Cell>");
    const QString noCell = QStringLiteral("        <Cell/>");
    QTest::newRow("first") << 0 << def << QStringList{cell};
    QTest::newRow("second") << 1 << def << QStringList{noCell, cell};
    QTest::newRow("fourth") << 3 << def << QStringList{noCell, noCell, noCell, cell};
    QTest::newRow("negative") << -2 << def << QStringList{cell};
    QTest::newRow("empty designation") << 1 << QStringLiteral("") << QStringList{noCell, emptyCell};
    QTest::newRow("null designation") << 0 << QString() << QStringList{emptyCell};
}

void tst_DialogResult::designationStandsInItsColumn()
{
    QFETCH(int, column);
    QFETCH(QString, def);
    QFETCH(QStringList, cells);
    Dialog dialog;
    dialog.defColNum = column;
    dialog.objects = {DefPolygon{def, {}}};

    const QString head = QStringLiteral("\n<FormTable>\n    <Row>\n");
    const QString tail = QStringLiteral("\n        <FormTable/>\n    </Row>\n</FormTable>");
    QCOMPARE(dialog.stringResult(), head + cells.join(QLatin1Char('\n')) + tail);
}

void tst_DialogResult::pointTableHasItsName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("element");

    QTest::newRow("none") << QString() << QStringLiteral("<FormTable/>");
    QTest::newRow("some") << QStringLiteral("Координаты") << QStringLiteral("<FormTable Name=\"Координаты\"/>");
}

void tst_DialogResult::pointTableHasItsName()
{
    QFETCH(QString, name);
    QFETCH(QString, element);
    Dialog dialog;
    dialog.pointTableName = name;
    dialog.objects = {object("а"), object("б")};
    enter(dialog, QStringLiteral("updateCheck"), true);

    const QStringList lines = dialog.stringResult().split(QLatin1Char('\n'));
    QCOMPARE(lines.at(1), QStringLiteral("<FormTable Update=\"1\">"));
    QCOMPARE(lines.at(4), QStringLiteral("        ") + element);
    QCOMPARE(lines.at(8), QStringLiteral("        ") + element);
}

void tst_DialogResult::markupIsEscaped_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("escaped");

    QTest::newRow("less") << QStringLiteral("a<b") << QStringLiteral("a&lt;b");
    QTest::newRow("greater") << QStringLiteral("a>b") << QStringLiteral("a&gt;b");
    QTest::newRow("ampersand") << QStringLiteral("a&amp;b") << QStringLiteral("a&amp;amp;b");
    QTest::newRow("quotes") << QStringLiteral("«\"ё\"»") << QStringLiteral("«&quot;ё&quot;»");
    QTest::newRow("element") << QStringLiteral("</Cell><Row/>") << QStringLiteral("&lt;/Cell&gt;&lt;Row/&gt;");
    QTest::newRow("blanks") << QStringLiteral("  a  ") << QStringLiteral("  a  ");
}

void tst_DialogResult::markupIsEscaped()
{
    QFETCH(QString, text);
    QFETCH(QString, escaped);
    Dialog dialog;
    setColumns(dialog, 0, 1, 2);
    dialog.objectTableName = text;
    dialog.pointTableName = text;
    dialog.fieldNumValueMap = {{3, text}};
    dialog.objects = {DefPolygon{text, {{DefPoint{text, 0, 0}}}}};

    const QString document = dialog.stringResult();

    QCOMPARE(document.count(QStringLiteral("<FormTable Name=\"%1\">").arg(escaped)), 2);
    QCOMPARE(document.count(QStringLiteral("<Cell>%1</Cell>").arg(escaped)), 3);
}

void tst_DialogResult::whatXmlCannotHoldIsLeftOut_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("cell");

    const QString ab = QStringLiteral("аб");
    QTest::newRow("zero") << ab.at(0) + QString(QChar(QChar::Null)) + ab.at(1) << ab;
    QTest::newRow("U+0001") << QStringLiteral("а\u0001б") << ab;
    QTest::newRow("vertical tab") << QStringLiteral("а\u000Bб") << ab;
    QTest::newRow("form feed") << QStringLiteral("а\u000Cб") << ab;
    QTest::newRow("U+001F") << QStringLiteral("а\u001Fб") << ab;
    QTest::newRow("U+FFFE") << QStringLiteral("а\uFFFEб") << ab;
    QTest::newRow("U+FFFF") << QStringLiteral("а\uFFFFб") << ab;
    QTest::newRow("at both ends") << QStringLiteral("\u0001аб\uFFFE") << ab;
    QTest::newRow("nothing else") << QStringLiteral("\u0001\u000B\uFFFE") << QString();
    QTest::newRow("among markup") << QStringLiteral("<\u0001&\u0002>") << QStringLiteral("<&>");
    QTest::newRow("held: tab") << QStringLiteral("а\tб") << QStringLiteral("а\tб");
    QTest::newRow("held: line feed") << QStringLiteral("а\nб") << QStringLiteral("а\nб");
    QTest::newRow("held: delete") << QStringLiteral("а\u007Fб") << QStringLiteral("а\u007Fб");
    QTest::newRow("held: U+FFFD") << QStringLiteral("а\uFFFDб") << QStringLiteral("а\uFFFDб");
    QTest::newRow("held: outside the first plane") << QStringLiteral("а\U0001F5FAб") << QStringLiteral("а\U0001F5FAб");
}

void tst_DialogResult::whatXmlCannotHoldIsLeftOut()
{
    QFETCH(QString, text);
    QFETCH(QString, cell);
    Dialog dialog;
    setColumns(dialog, 0, 1, 2);
    dialog.fieldNumValueMap = {{3, text}};
    dialog.objects = {DefPolygon{text, {{DefPoint{text, 0, 0}}}}, object("после")};

    QCOMPARE(ResultOutline::lines(dialog.stringResult()),
             (QStringList{cell, QStringLiteral("  %1|0.00|0.00|%1").arg(cell), QStringLiteral("после")}));
}

void tst_DialogResult::objectsStandInTheirPresentOrder()
{
    Dialog dialog;
    dialog.objects = {object("н10"), object("н2")};
    const QString unsorted = dialog.stringResult();
    QVERIFY(unsorted.indexOf(QStringLiteral("<Cell>н10</Cell>")) < unsorted.indexOf(QStringLiteral("<Cell>н2</Cell>")));

    press(dialog, QStringLiteral("sortButton"));

    const QString sorted = dialog.stringResult();
    QVERIFY(sorted.indexOf(QStringLiteral("<Cell>н2</Cell>")) < sorted.indexOf(QStringLiteral("<Cell>н10</Cell>")));
}

void tst_DialogResult::dialogIsLeftAsItWas()
{
    Dialog dialog;
    dialog.objects = {object("ЗУ1", {{point("н1")}}), object("ЗУ2")};
    dialog.polygonModel.setPolygon(dialog.objects.data());
    dialog.mapModel.setMap(&dialog.objects);
    const QStringList before = shown(dialog.polygonModel);
    const QSignalSpy tableReset(&dialog.polygonModel, &QAbstractItemModel::modelReset);
    const QSignalSpy listReset(&dialog.mapModel, &QAbstractItemModel::modelReset);

    const QString document = dialog.stringResult();

    QCOMPARE(dialog.stringResult(), document);
    QCOMPARE(tableReset.count() + listReset.count(), 0);
    QCOMPARE(shown(dialog.polygonModel), before);
    QCOMPARE(shown(dialog.mapModel), list("ЗУ1, ЗУ2"));
}

QTEST_MAIN(tst_DialogResult)
#include "tst_dialog_result.moc"
