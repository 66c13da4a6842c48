#include "pluginhost.h"

#include <QTest>

namespace {

// One LINE without designations.
const QStringList lineMif{QStringLiteral("VERSION 300"), QStringLiteral("CHARSET \"WindowsCyrillic\""),
                          QStringLiteral("DELIMITER \",\""), QStringLiteral("DATA"), QStringLiteral("LINE 1 2 3 4")};

/// Loads the LINE, numbered and without a MID file.
void loadLine(const PluginHost &host, const DialogDriver &driver)
{
    driver.setChecked("searchPointDefsCheck", false);
    driver.setChecked("searchObjectDefsCheck", false);
    driver.process(host.write(QStringLiteral("line.mif"), lineMif));
}

using Leave = std::function<void(const DialogDriver &)>;

} // namespace

Q_DECLARE_METATYPE(Leave)

class tst_ImportPluginDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nobodyHasToListen_data();
    void nobodyHasToListen();
    void leftDialogGivesNothing_data();
    void leftDialogGivesNothing();
    void acceptedDialogWithoutObjectsGivesEmptyTable_data();
    void acceptedDialogWithoutObjectsGivesEmptyTable();
    void failedRunLeavesNoObjects();
    void callLeavesNothingButSettings();
    void operationDecidesOnTheFormat_data();
    void operationDecidesOnTheFormat();
};

void tst_ImportPluginDialog::nobodyHasToListen_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<bool>("isDialog");

    QTest::newRow("unknown operation") << QStringLiteral("?") << false;
    QTest::newRow("MIF file that is not there") << fromMif << true;
    QTest::newRow("DXF file that is not there") << fromDxf << true;
}

void tst_ImportPluginDialog::nobodyHasToListen()
{
    QFETCH(QString, operation);
    QFETCH(bool, isDialog);
    PluginHost host;
    host.call(QStringLiteral("A"), [](DialogDriver &) {});
    const QStringList heardBefore = host.messages();
    QCOMPARE(heardBefore.size(), 1);

    host.statusFunc = nullptr;
    const QString result = host.call(operation, [&host](DialogDriver &driver) {
        driver.process(host.path(QStringLiteral("nowhere")));
        driver.accept();
    });

    QCOMPARE(result.isNull(), !isDialog);
    QCOMPARE(host.messages(), heardBefore);
}

void tst_ImportPluginDialog::leftDialogGivesNothing_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<Leave>("leave");

    const Leave cancel = [](const DialogDriver &driver) { driver.cancel(); };
    QTest::newRow("Cancel") << fromMif << cancel;
    QTest::newRow("Cancel in a DXF dialog") << fromDxf << cancel;
    QTest::newRow("Escape") << fromMif << Leave([](const DialogDriver &driver) {
        QTest::keyClick(driver.dialog(), Qt::Key_Escape);
    });
    QTest::newRow("window closed") << fromMif << Leave([](const DialogDriver &driver) { driver.dialog()->close(); });
}

void tst_ImportPluginDialog::leftDialogGivesNothing()
{
    QFETCH(QString, operation);
    QFETCH(Leave, leave);
    PluginHost host;

    const QString result = host.call(operation, [&](DialogDriver &driver) {
        if (operation == fromMif)
            loadLine(host, driver);
        driver.type("objectPrefEdit", QStringLiteral("Лес"));
        QCOMPARE(DialogDriver::shown(driver.list()).size(), operation == fromMif ? 1 : 0);
        leave(driver);
        QVERIFY(!driver.dialog()->isVisible());
    });

    QVERIFY(result.isNull());
    QCOMPARE(host.dialogs(), 1);
    QCOMPARE(host.messages(), QStringList());
    QCOMPARE(QSettings().value(QStringLiteral("ImportObjects/objectPref")).toString(), QStringLiteral("Лес"));
}

void tst_ImportPluginDialog::acceptedDialogWithoutObjectsGivesEmptyTable_data()
{
    QTest::addColumn<QString>("objectTable");
    QTest::addColumn<bool>("update");
    QTest::addColumn<QString>("document");

    QTest::newRow("named") << QStringLiteral("Участки") << false << QStringLiteral("\n<FormTable Name=\"Участки\"/>");
    QTest::newRow("named, to be updated")
        << QStringLiteral("Участки") << true << QStringLiteral("\n<FormTable Name=\"Участки\" Update=\"1\"/>");
    QTest::newRow("without a name") << QString() << false << QStringLiteral("\n<FormTable/>");
    QTest::newRow("without a name, to be updated")
        << QString() << true << QStringLiteral("\n<FormTable Update=\"1\"/>");
}

void tst_ImportPluginDialog::acceptedDialogWithoutObjectsGivesEmptyTable()
{
    QFETCH(QString, objectTable);
    QFETCH(bool, update);
    QFETCH(QString, document);
    PluginHost host;
    host.objectTable = objectTable;
    host.pointTable.clear();

    const QString result = host.call(fromDxf, [&](DialogDriver &driver) {
        driver.setChecked("updateCheck", update);
        driver.accept();
    });

    QCOMPARE(result, document);
    QCOMPARE(host.messages(), QStringList());
}

void tst_ImportPluginDialog::failedRunLeavesNoObjects()
{
    PluginHost host;
    const QString nowhere = host.path(QStringLiteral("nowhere.mif"));

    const QString result = host.call(fromMif, [&](DialogDriver &driver) {
        loadLine(host, driver);
        driver.process(nowhere);
        driver.accept();
    });

    QCOMPARE(result, QStringLiteral("\n<FormTable Name=\"Участки\"/>"));
    QCOMPARE(host.messages(), QStringList{QStringLiteral("Ошибка открытия файла %1").arg(nowhere)});
}

void tst_ImportPluginDialog::callLeavesNothingButSettings()
{
    PluginHost host;
    host.call(fromMif, [&](DialogDriver &driver) {
        loadLine(host, driver);
        driver.setNumber("pointStartNumSpin", 15);
        driver.accept();
    });
    QCOMPARE(QApplication::topLevelWidgets(), QWidgetList());

    const QString result = host.call(fromMif, [&](DialogDriver &driver) {
        QCOMPARE(driver.find<QSpinBox>("pointStartNumSpin")->value(), 15);
        QCOMPARE(driver.find<QCheckBox>("searchPointDefsCheck")->isChecked(), false);
        QVERIFY(driver.list()->model() == nullptr);
        driver.accept();
    });

    QCOMPARE(result, QStringLiteral("\n<FormTable Name=\"Участки\"/>"));
    QCOMPARE(host.dialogs(), 2);
}

void tst_ImportPluginDialog::operationDecidesOnTheFormat_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QStringList>("messages");

    QTest::newRow("a MIF file as MIF") << fromMif << QStringList();
    QTest::newRow("a MIF file as DXF") << fromDxf
                                       << QStringList{QStringLiteral("Ошибка. Файл %1 не соответствует формату DXF")};
}

void tst_ImportPluginDialog::operationDecidesOnTheFormat()
{
    QFETCH(QString, operation);
    QFETCH(QStringList, messages);
    PluginHost host;
    messages.replaceInStrings(QStringLiteral("%1"), host.path(QStringLiteral("line.mif")));

    host.call(operation, [&host](DialogDriver &driver) { loadLine(host, driver); });

    QCOMPARE(host.messages(), messages);
}

QTEST_MAIN(tst_ImportPluginDialog)
#include "tst_importplugin_dialog.moc"
