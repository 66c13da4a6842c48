#include "preparewindowtesting.h"

/// Files of other formats that are dropped on the window.
class tst_WorkbenchPrepareDrop : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void otherFormatIsOfferedForPreparation_data();
    void otherFormatIsOfferedForPreparation();
    void unsuitableDropIsReported_data();
    void unsuitableDropIsReported();
    void importableFileTakesPrecedence();
    void rejectedFileCanBeCheckedAfterADrop();
};

void tst_WorkbenchPrepareDrop::otherFormatIsOfferedForPreparation_data()
{
    QTest::addColumn<QString>("fileName");

    for (const char *const name :
         {"plan.tab", "plan.shp", "plan.gpkg", "plan.geojson", "plan.json", "plan.kml", "plan.gml", "plan.SHP"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void tst_WorkbenchPrepareDrop::otherFormatIsOfferedForPreparation()
{
    QFETCH(QString, fileName);
    const PrepareFixture fixture;
    qputenv("FAKE_STATUS", "1");
    const QString index = fixture.files().write(QStringLiteral("plan.shx"), "x");
    const QString file = fixture.files().write(fileName, "x");

    QVERIFY(fixture.drop({QUrl::fromLocalFile(index), QUrl::fromLocalFile(file)}));

    QVERIFY(fixture.hasNotice());
    QCOMPARE(fixture.find<StatusLabel>("noticeLabel")->status(),
             QStringLiteral("Файл %1 — не MIF и не DXF. Сначала подготовьте его.").arg(fileName));
    QVERIFY(!fixture.find<QPushButton>("noticeCheckButton")->isVisible());
    PrepareFixture::answerFileDialog();
    fixture.press("noticePrepareButton");
    QVERIFY(fixture.waitForEnd());
    QCOMPARE(fixture.log(), QStringLiteral("convert --json %1 plan-import.mif").arg(fileName));
}

void tst_WorkbenchPrepareDrop::unsuitableDropIsReported_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<bool>("exists");
    QTest::addColumn<QString>("message");

    QTest::newRow("unknown format") << QStringLiteral("photo.jpg") << true
                                    << QStringLiteral("Импортируются файлы MIF и DXF, а это другой файл: %1");
    QTest::newRow("missing file") << QStringLiteral("plan.shp") << false << QStringLiteral("Файла нет: %1");
}

void tst_WorkbenchPrepareDrop::unsuitableDropIsReported()
{
    QFETCH(QString, fileName);
    QFETCH(bool, exists);
    QFETCH(QString, message);
    const PrepareFixture fixture;
    const QString file = fixture.files().path(fileName);
    if (exists)
        fixture.files().write(fileName, "x");

    QVERIFY(fixture.drop({QUrl::fromLocalFile(file)}));

    QVERIFY(!fixture.hasNotice());
    QCOMPARE(fixture.window().statusBar()->currentMessage(), message.arg(QDir::toNativeSeparators(file)));
}

void tst_WorkbenchPrepareDrop::importableFileTakesPrecedence()
{
    const PrepareFixture fixture;
    const QString other = fixture.files().write(QStringLiteral("plan.shp"), "x");
    QString entered;
    WindowFixture::whenDialogOpens([&entered](DialogDriver &driver) {
        entered = driver.find<QLineEdit>("objectFileNameEdit")->text();
        driver.cancel();
    });
    const QString plan = fixture.writePlan();

    QVERIFY(fixture.drop({QUrl::fromLocalFile(other), QUrl::fromLocalFile(plan)}));

    QTRY_COMPARE(entered, QDir::toNativeSeparators(plan));
    QVERIFY(!fixture.hasNotice());
}

void tst_WorkbenchPrepareDrop::rejectedFileCanBeCheckedAfterADrop()
{
    const PrepareFixture fixture;
    const QString other = fixture.files().write(QStringLiteral("plan.shp"), "x");
    QVERIFY(fixture.drop({QUrl::fromLocalFile(other)}));
    const auto processAndCancel = [](DialogDriver &driver) {
        driver.press("startButton");
        driver.cancel();
    };

    fixture.run(fromDxf, processAndCancel, fixture.writeRejected());
    fixture.press("noticeCheckButton");

    QVERIFY(fixture.waitForEnd());
    QCOMPARE(fixture.log(), QStringLiteral("check --encoding Default --html PAGE plan.dxf"));
}

int main(int argc, char **argv)
{
    return FakePrepare::testMain<tst_WorkbenchPrepareDrop>(argc, argv);
}

#include "tst_workbench_prepare_drop.moc"
