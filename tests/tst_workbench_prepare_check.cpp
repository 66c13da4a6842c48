#include "facilities.h"
#include "preparewindowtesting.h"

#include <QDesktopServices>
#include <QUrl>

/// Checks of files in the window, and the notice after an import without objects.
class tst_WorkbenchPrepareCheck : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void openPage(const QUrl &url) { m_page = url; }

private Q_SLOTS:
    void withoutProgramNothingIsOffered();

    void reportIsShown_data();
    void reportIsShown();
    void failureIsShown_data();
    void failureIsShown();
    void missingProgramIsReported();
    void lastChoicesAreUsed();
    void pageIsOpened();
    void pageThatCannotBeOpenedIsReported();
    void pageThatWasNotWrittenIsNotOffered();
    void checkIsCancelled();
    void oneFileIsCheckedAtATime();
    void closingTheWindowEndsTheProgram_data();
    void closingTheWindowEndsTheProgram();

    void importWithoutObjectsIsNoticed_data();
    void importWithoutObjectsIsNoticed();
    void nextImportHidesTheNotice();
    void noticeIsForThePluginsFileOnly();
    void noticedFileIsChecked();

private:
    QUrl m_page;
};

namespace {

void processAndCancel(DialogDriver &driver)
{
    driver.press("startButton");
    driver.cancel();
}

} // namespace

void tst_WorkbenchPrepareCheck::withoutProgramNothingIsOffered()
{
    const PrepareFixture fixture(nullptr, QString());

    fixture.run(fromDxf, processAndCancel, fixture.writeRejected());

    for (const char *name : {"checkAction", "checkLastAction", "prepareAction", "prepareDock", "noticeBar"})
        QVERIFY2(fixture.window().findChild<QObject *>(QLatin1String(name)) == nullptr, name);
}

void tst_WorkbenchPrepareCheck::reportIsShown_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("note");
    QTest::addColumn<bool>("isError");
    QTest::addColumn<bool>("isPrepareOffered");

    QTest::newRow("complete") << 0 << QStringLiteral("Файл plan.dxf проверен: загрузится всё") << false << false;
    QTest::newRow("incomplete") << 1 << QStringLiteral("Файл plan.dxf проверен: есть замечания") << false << true;
    QTest::newRow("unreadable") << 3 << QStringLiteral("Файл plan.dxf не читается") << true << false;
}

void tst_WorkbenchPrepareCheck::reportIsShown()
{
    QFETCH(int, status);
    QFETCH(QString, note);
    QFETCH(bool, isError);
    QFETCH(bool, isPrepareOffered);
    const PrepareFixture fixture;
    qputenv("FAKE_STATUS", QByteArray::number(status));
    qputenv("FAKE_OUTPUT", "Отчёт о файле\n");

    fixture.choose("checkAction", fixture.writeRejected());

    QVERIFY(fixture.find<QPlainTextEdit>("prepareView")->isVisible());
    QVERIFY(fixture.find<QProgressBar>()->isVisible());
    QVERIFY(fixture.note().startsWith(QStringLiteral("Проверяется plan.dxf…")));
    QVERIFY(fixture.waitForEnd());
    QCOMPARE(fixture.log(), QStringLiteral("check --html PAGE plan.dxf"));
    QCOMPARE(fixture.report(), QStringLiteral("Отчёт о файле\n"));
    QCOMPARE(fixture.note(), note);
    QCOMPARE(fixture.status(), note);
    QCOMPARE(fixture.isError(), isError);
    QCOMPARE(fixture.find<QPushButton>("prepareButton")->isVisible(), isPrepareOffered);
    QVERIFY(!fixture.find<QProgressBar>()->isVisible());
}

void tst_WorkbenchPrepareCheck::failureIsShown_data()
{
    QTest::addColumn<QByteArray>("variable");
    QTest::addColumn<QString>("note");
    QTest::addColumn<QString>("report");

    QTest::newRow("wrong usage") << QByteArray("FAKE_STATUS") << QStringLiteral("Проверить файл plan.dxf не удалось")
                                 << QStringLiteral("reason\npart of the report");
    QTest::newRow("crash") << QByteArray("FAKE_CRASH")
                           << QStringLiteral("Программа importprepare аварийно завершилась на файле plan.dxf")
                           << QStringLiteral("Исходный файл не изменён. Возможно, он повреждён или не хватило памяти.");
}

void tst_WorkbenchPrepareCheck::failureIsShown()
{
    QFETCH(QByteArray, variable);
    QFETCH(QString, note);
    QFETCH(QString, report);
    const PrepareFixture fixture;
    qputenv(variable, "2");
    qputenv("FAKE_ERRORS", "reason");
    qputenv("FAKE_OUTPUT", "part of the report");

    fixture.choose("checkAction", fixture.writeRejected());

    QVERIFY(fixture.waitForEnd());
    QCOMPARE(fixture.note(), note);
    QCOMPARE(fixture.find<QLabel>("prepareNote")->palette().color(QPalette::WindowText), errorColor(QPalette()));
    QCOMPARE(fixture.report(), report);
    QCOMPARE(fixture.status(), note);
    QVERIFY(fixture.isError());
}

void tst_WorkbenchPrepareCheck::missingProgramIsReported()
{
    const PrepareFixture fixture(nullptr, QStringLiteral("/absent/importprepare"));

    fixture.choose("checkAction", fixture.writeRejected());

    QVERIFY(fixture.waitForEnd());
    QCOMPARE(fixture.note(), QStringLiteral("Не запускается программа %1")
                                 .arg(QDir::toNativeSeparators(QStringLiteral("/absent/importprepare"))));
    QVERIFY(fixture.isError());
    QVERIFY(fixture.find<QAction>("checkAction")->isEnabled());
}

void tst_WorkbenchPrepareCheck::lastChoicesAreUsed()
{
    const PrepareFixture fixture;
    QVERIFY(!fixture.find<QAction>("checkLastAction")->isEnabled());
    const QString points = fixture.files().write(QStringLiteral("points.dxf"), "0\nSECTION\n2\nENTITIES\n");
    const auto processWithPoints = [&points](DialogDriver &driver) {
        driver.chooseEncoding(QStringLiteral("IBM866"));
        driver.setChecked("usePointFileCheck", true);
        driver.type("pointFileNameEdit", points);
        driver.setChecked("searchObjectDefsCheck", false);
        driver.press("startButton");
        driver.cancel();
    };
    fixture.run(fromDxf, processWithPoints, fixture.writeRejected());

    fixture.find<QAction>("checkLastAction")->trigger();
    QVERIFY(fixture.waitForEnd());
    fixture.choose("checkAction", fixture.writePlan());
    QVERIFY(fixture.waitForEnd());
    QFile::remove(points);
    fixture.find<QAction>("checkLastAction")->trigger();
    QVERIFY(fixture.waitForEnd());

    QCOMPARE(fixture.log(), QStringLiteral("check --encoding IBM866 --points points.dxf --no-search-objects --html "
                                           "PAGE plan.dxf\n"
                                           "check --encoding IBM866 --no-search-objects --html PAGE plan.mif\n"
                                           "check --encoding IBM866 --no-search-objects --html PAGE plan.dxf"));
}

void tst_WorkbenchPrepareCheck::pageIsOpened()
{
    const PrepareFixture fixture;
    fixture.choose("checkAction", fixture.writeRejected());
    QVERIFY(fixture.waitForEnd());
    QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "openPage");

    fixture.press("pageButton");

    QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
    QFile page(m_page.toLocalFile());
    QVERIFY(page.open(QIODevice::ReadOnly));
    QCOMPARE(page.readAll(), QByteArray("<html></html>"));
}

void tst_WorkbenchPrepareCheck::pageThatCannotBeOpenedIsReported()
{
    const bool isOffscreen = QGuiApplication::platformName() == QLatin1String("offscreen");
    REQUIRE_FACILITY((Facility{isOffscreen, "a platform that opens no page"}));
    const PrepareFixture fixture;
    fixture.choose("checkAction", fixture.writeRejected());
    QVERIFY(fixture.waitForEnd());

    fixture.press("pageButton");

    QVERIFY2(fixture.status().startsWith(QStringLiteral("Не нашлось программы, чтобы открыть страницу ")),
             qPrintable(fixture.status()));
    QVERIFY(fixture.isError());
}

void tst_WorkbenchPrepareCheck::pageThatWasNotWrittenIsNotOffered()
{
    const PrepareFixture fixture;
    fixture.choose("checkAction", fixture.writeRejected());
    QVERIFY(fixture.waitForEnd());
    QVERIFY(fixture.find<QPushButton>("pageButton")->isVisible());

    qputenv("FAKE_NO_PAGE", "1");
    fixture.choose("checkAction", fixture.writeRejected());
    QVERIFY(fixture.waitForEnd());

    QVERIFY(!fixture.find<QPushButton>("pageButton")->isVisible());
}

void tst_WorkbenchPrepareCheck::checkIsCancelled()
{
    const PrepareFixture fixture;
    PrepareFixture::makeSlow();
    fixture.choose("checkAction", fixture.writeRejected());
    QVERIFY(fixture.waitForCall());

    fixture.press("prepareCancelButton");

    QVERIFY(fixture.waitForEnd());
    QCOMPARE(fixture.note(), QStringLiteral("Проверка прервана"));
    QVERIFY(!fixture.isError());
}

void tst_WorkbenchPrepareCheck::oneFileIsCheckedAtATime()
{
    const PrepareFixture fixture;
    PrepareFixture::makeSlow();
    fixture.run(fromDxf, processAndCancel, fixture.writeRejected());
    fixture.find<QAction>("checkLastAction")->trigger();
    QVERIFY(fixture.waitForCall());

    for (const char *name : {"checkAction", "checkLastAction", "prepareAction"})
        QVERIFY2(!fixture.find<QAction>(name)->isEnabled(), name);
    QVERIFY(!fixture.find<QPushButton>("noticeCheckButton")->isEnabled());

    fixture.press("prepareCancelButton");
    QVERIFY(fixture.waitForEnd());
    QVERIFY(fixture.find<QAction>("checkLastAction")->isEnabled());
    QVERIFY(fixture.find<QPushButton>("noticeCheckButton")->isEnabled());
}

void tst_WorkbenchPrepareCheck::closingTheWindowEndsTheProgram_data()
{
    QTest::addColumn<bool>("isDestroyed");

    QTest::newRow("closed") << false;
    QTest::newRow("destroyed") << true;
}

void tst_WorkbenchPrepareCheck::closingTheWindowEndsTheProgram()
{
    QFETCH(bool, isDestroyed);
    PrepareFixture fixture;
    PrepareFixture::makeSlow();
    fixture.choose("checkAction", fixture.writeRejected());
    QVERIFY(fixture.waitForCall());

    if (isDestroyed)
        fixture.close();
    else
        fixture.window().close();

    const QString end = terminationSignal().isAvailable ? QStringLiteral("interrupted") : QString();
    QCOMPARE(fixture.log().section(QLatin1Char('\n'), 1), end);
    if (isDestroyed)
        return;
    QVERIFY(fixture.find<QPushButton>("prepareCancelButton")->isHidden());
    fixture.window().show();
    QCOMPARE(fixture.note(), QStringLiteral("Проверка прервана"));
    QVERIFY(fixture.find<QAction>("checkAction")->isEnabled());
}

void tst_WorkbenchPrepareCheck::importWithoutObjectsIsNoticed_data()
{
    QTest::addColumn<bool>("isPlan");
    QTest::addColumn<bool>("isProcessed");
    QTest::addColumn<bool>("isAccepted");
    QTest::addColumn<bool>("isNoticed");

    QTest::newRow("rejected, cancelled") << false << true << false << true;
    QTest::newRow("rejected, accepted") << false << true << true << true;
    QTest::newRow("not processed, cancelled") << false << false << false << false;
    QTest::newRow("not processed, accepted") << false << false << true << false;
    QTest::newRow("objects, cancelled") << true << true << false << false;
    QTest::newRow("objects, accepted") << true << true << true << false;
}

void tst_WorkbenchPrepareCheck::importWithoutObjectsIsNoticed()
{
    QFETCH(bool, isPlan);
    QFETCH(bool, isProcessed);
    QFETCH(bool, isAccepted);
    QFETCH(bool, isNoticed);
    const PrepareFixture fixture;
    const auto action = [isProcessed, isAccepted](DialogDriver &driver) {
        if (isProcessed)
            driver.press("startButton");
        isAccepted ? driver.accept() : driver.cancel();
    };

    fixture.run(isPlan ? fromMif : fromDxf, action, isPlan ? fixture.writePlan() : fixture.writeRejected());

    QCOMPARE(fixture.hasNotice(), isNoticed);
    if (isNoticed)
        QCOMPARE(fixture.find<StatusLabel>("noticeLabel")->status(),
                 QStringLiteral("Из файла plan.dxf не пришло ни одного объекта. Проверьте, что в нём, или подготовьте "
                                "его к импорту."));
}

void tst_WorkbenchPrepareCheck::nextImportHidesTheNotice()
{
    const PrepareFixture fixture;
    fixture.run(fromDxf, processAndCancel, fixture.writeRejected());
    QVERIFY(fixture.hasNotice());

    fixture.import(fixture.writePlan());

    QVERIFY(!fixture.hasNotice());
}

void tst_WorkbenchPrepareCheck::noticeIsForThePluginsFileOnly()
{
    FakePlugin plugin;
    const PrepareFixture fixture(&plugin);

    fixture.window().runOperation(fromMif, fixture.writePlan());
    QVERIFY(!fixture.hasNotice());
    plugin.hasDialog = true;
    fixture.import(fixture.writePlan());

    QVERIFY(!fixture.hasNotice());
}

void tst_WorkbenchPrepareCheck::noticedFileIsChecked()
{
    const PrepareFixture fixture;
    fixture.run(fromDxf, processAndCancel, fixture.writeRejected());

    fixture.press("noticeCheckButton");

    QVERIFY(fixture.waitForEnd());
    QCOMPARE(fixture.log(), QStringLiteral("check --encoding Default --html PAGE plan.dxf"));
}

int main(int argc, char **argv)
{
    return FakePrepare::testMain<tst_WorkbenchPrepareCheck>(argc, argv);
}

#include "tst_workbench_prepare_check.moc"
