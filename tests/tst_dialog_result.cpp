#include "fieldtesting.h"

#include <QLocale>
#include <QSignalSpy>
#include <QTest>

/// The result document, in a locale with decimal commas.
class tst_DialogResult : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void documentHasExpectedText();
    void fieldsComeFromTheLastRun();
    void objectsAreInTheirCurrentOrder();
    void stringResultChangesNothing();

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

void tst_DialogResult::documentHasExpectedText()
{
    Dialog dialog;
    dialog.formName = QStringLiteral("Форма");
    dialog.objectTableName = QStringLiteral("Участки \"А\"");
    dialog.pointTableName = QStringLiteral("Координаты");
    setColumns(dialog, 0, 1, 2);
    dialog.defColNum = 1;
    dialog.fieldNumValueMap = {{4, QStringLiteral("<1>")}};
    enter(dialog, QStringLiteral("updateCheck"), true);
    dialog.objects = {object("ЗУ1", {{point("", 1010.5)}, {DefPoint{QString(), -5.25, 600}}}), object("")};

    const QString expected = QStringLiteral(R"(
<FormTable Name="Участки &quot;А&quot;" Update="1">
    <Row>
        <Cell/>
        <Cell>ЗУ1</Cell>
        <FormTable Name="Координаты">
            <Row>
                <Cell></Cell>
                <Cell>1010.50</Cell>
                <Cell>2000.00</Cell>
                <Cell/>
                <Cell>&lt;1&gt;</Cell>
            </Row>
            <Row/>
            <Row>
                <Cell/>
                <Cell>-5.25</Cell>
                <Cell>600.00</Cell>
                <Cell/>
                <Cell>&lt;1&gt;</Cell>
            </Row>
        </FormTable>
    </Row>
    <Row>
        <Cell/>
        <Cell></Cell>
        <FormTable Name="Координаты"/>
    </Row>
</FormTable>)");
    QCOMPARE(dialog.stringResult(), expected);
}

// The rows of extra fields on the form take effect only when a file is processed.
void tst_DialogResult::fieldsComeFromTheLastRun()
{
    Dialog dialog;
    dialog.objects = {object("ЗУ1", {{point("н1")}})};
    const QString document = dialog.stringResult();

    enterRows(dialog, list("4 поздно"));

    QCOMPARE(dialog.stringResult(), document);
}

void tst_DialogResult::objectsAreInTheirCurrentOrder()
{
    Dialog dialog;
    dialog.objects = {object("н10"), object("н2")};
    const QString unsorted = dialog.stringResult();
    QVERIFY(unsorted.indexOf(QStringLiteral("<Cell>н10</Cell>")) < unsorted.indexOf(QStringLiteral("<Cell>н2</Cell>")));

    press(dialog, QStringLiteral("sortButton"));

    const QString sorted = dialog.stringResult();
    QVERIFY(sorted.indexOf(QStringLiteral("<Cell>н2</Cell>")) < sorted.indexOf(QStringLiteral("<Cell>н10</Cell>")));
}

void tst_DialogResult::stringResultChangesNothing()
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
