#include "facilities.h"
#include "pluginhost.h"

#include <QProcess>
#include <QStandardPaths>
#include <QTest>

namespace {

/// An object with a designation and two contours, one without vertices or designation, and one whose designation
/// contains markup.
const QByteArray objects("REGION 2\n3\n0 0\n0 9\n0 0\n3\n1 1\n1 5\n1 1\nREGION 0\nLINE 1 2 3 4\n");
const QByteArray records("ЗУ1\n,\n\"<Луг> & Co\x01\"\n");

/// Imports \a data, unless it is empty; \a prepare makes further choices in the dialog.
QString import(PluginHost &host, const QByteArray &data, const DialogAction &prepare = doNothing)
{
    return host.call(fromMif, [&](DialogDriver &driver) {
        driver.setChecked("searchPointDefsCheck", false);
        driver.type("objectPrefEdit", QString());
        prepare(driver);
        if (!data.isEmpty())
            driver.process(host.writeMif(QStringLiteral("plan"), data, records));
        driver.accept();
    });
}

/// Validates \a document against the schema. Returns the errors of xmllint; empty if the document is valid.
QString validate(const QString &xmllint, const QString &document)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(xmllint, {QStringLiteral("--nonet"), QStringLiteral("--noout"), QStringLiteral("--schema"),
                            QFINDTESTDATA("../docs/result.xsd"), QStringLiteral("-")});
    process.write(document.toUtf8());
    process.closeWriteChannel();
    const bool ended = process.waitForFinished() && process.exitStatus() == QProcess::NormalExit;
    return ended && process.exitCode() == 0 ? QString() : QString::fromUtf8(process.readAll()) + process.errorString();
}

} // namespace

/// Real results against docs/result.xsd.
class tst_ImportPluginSchema : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void resultIsValid_data();
    void resultIsValid();
    void brokenResultIsInvalid_data();
    void brokenResultIsInvalid();

private:
    QString m_xmllint;
};

void tst_ImportPluginSchema::initTestCase()
{
    m_xmllint = QStandardPaths::findExecutable(QStringLiteral("xmllint"));
    REQUIRE_FACILITY((Facility{!m_xmllint.isEmpty(), "the program xmllint"}));
}

void tst_ImportPluginSchema::resultIsValid_data()
{
    QTest::addColumn<QString>("document");
    PluginHost host;

    QTest::newRow("objects and separators") << import(host, objects);
    QTest::newRow("extra columns and update") << import(host, objects, [](DialogDriver &driver) {
        driver.type("fieldEdit_0", QStringLiteral("0.10"));
        driver.press("plusToolButton");
        driver.type("fieldEdit_1", QStringLiteral("межа"));
        driver.setNumber("fieldSpin_1", 20);
        driver.setChecked("updateCheck", true);
    });
    QTest::newRow("no objects") << import(host, QByteArray());
    host.columns = {7, 0, 3, 4};
    QTest::newRow("other columns") << import(host, objects);
    host.columns = {-1, -1, -1, -1};
    QTest::newRow("no columns") << import(host, objects);
    host.objectTable.clear();
    host.pointTable.clear();
    QTest::newRow("tables without names") << import(host, objects);
    QTest::newRow("no objects, no name") << import(host, QByteArray());
}

void tst_ImportPluginSchema::resultIsValid()
{
    QFETCH(QString, document);

    QVERIFY(document.startsWith(QLatin1String("\n<FormTable")));
    QCOMPARE(validate(m_xmllint, document), QString());
}

void tst_ImportPluginSchema::brokenResultIsInvalid_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");

    const auto row = [](const char *name, const char *before, const char *after) {
        QTest::newRow(name) << QString::fromUtf8(before) << QString::fromUtf8(after);
    };
    row("not well-formed", "</FormTable>", "");
    row("another root", "FormTable", "Table");
    row("another attribute", "Name=", "Title=");
    row("empty name", "\"Участки\"", "\"\"");
    row("another update", "Update=\"1\"", "Update=\"0\"");
    row("update of vertices", "Name=\"Координаты\"", "Update=\"1\"");
    row("object without a designation", "<Cell>ЗУ1</Cell>", "");
    row("vertex of two cells", "<Cell>0.00</Cell>", "");
    row("text between cells", "<Row/>", "<Row>-</Row>");
    row("table in a vertex", "<Row/>", "<Row><FormTable/></Row>");
}

void tst_ImportPluginSchema::brokenResultIsInvalid()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    PluginHost host;
    QString document = import(host, objects, [](DialogDriver &driver) { driver.setChecked("updateCheck", true); });
    QCOMPARE(validate(m_xmllint, document), QString());

    QVERIFY(document.contains(before));
    document.replace(before, after);

    QVERIFY(!validate(m_xmllint, document).isEmpty());
}

QTEST_MAIN(tst_ImportPluginSchema)
#include "tst_importplugin_schema.moc"
