#include "importfile.h"
#include "recentfiles.h"
#include "workbenchwindowtesting.h"

#include <QFileDialog>
#include <QHeaderView>
#include <QMenu>

/// Files in the window: dropped and recent ones, and its settings.
class tst_WorkbenchWindowFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void operationIsChosenBySuffix_data();
    void operationIsChosenBySuffix();
    void importFileIsFound_data();
    void importFileIsFound();
    void droppedFileStartsItsOperation();
    void nameWithBlanksAndCyrillicIsImported_data();
    void nameWithBlanksAndCyrillicIsImported();
    void unsuitableDropIsReported();
    void dropIsIgnoredDuringAnOperation();
    void dropIsIgnoredWhileAnotherDialogIsOpen();

    void importedFileIsRemembered();
    void cancelledFileIsNotRemembered();
    void recentFileIsImportedAgain();
    void recentFilesAreUniqueAndLimited();

    void windowStateIsKept_data();
    void windowStateIsKept();
    void sizesOfDocksAreKept_data();
    void sizesOfDocksAreKept();
    void settingsOfThePluginAreKept();
    void damagedSettingsAreIgnored();
};

namespace {

QList<QAction *> recentActions(const WindowFixture &fixture)
{
    return fixture.find<QMenu>("recentMenu")->actions();
}

} // namespace

void tst_WorkbenchWindowFiles::operationIsChosenBySuffix_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QString>("operation");

    QTest::newRow("mif") << QStringLiteral("a.mif") << fromMif;
    QTest::newRow("MIF") << QStringLiteral("a.MIF") << fromMif;
    QTest::newRow("mid") << QStringLiteral("a.Mid") << fromMif;
    QTest::newRow("dxf") << QStringLiteral("a.b.dxf") << fromDxf;
    QTest::newRow("other") << QStringLiteral("a.dwg") << QString();
    QTest::newRow("part of a format") << QStringLiteral("a.f") << QString();
    QTest::newRow("none") << QStringLiteral("mif") << QString();
}

void tst_WorkbenchWindowFiles::operationIsChosenBySuffix()
{
    QFETCH(QString, fileName);
    QFETCH(QString, operation);

    QCOMPARE(operationFor(fileName, {fromMif, fromDxf}), operation);
    QCOMPARE(operationFor(fileName, {}), QString());
}

void tst_WorkbenchWindowFiles::importFileIsFound_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QString>("found");
    QTest::addColumn<QString>("error");

    const QString noImport = QStringLiteral("Импортируются файлы MIF и DXF, а это другой файл: %1");
    QTest::newRow("DXF") << QStringList{QStringLiteral("план.dxf")} << QStringLiteral("план.dxf") << QString();
    QTest::newRow("MID beside MIF") << QStringList{QStringLiteral("a.mid")} << QStringLiteral("a.MIF") << QString();
    QTest::newRow("first that fits") << QStringList{QStringLiteral("b.txt"), QStringLiteral("folder.mif"),
                                                    QStringLiteral("план.dxf"), QStringLiteral("a.MIF")}
                                     << QStringLiteral("план.dxf") << QString();
    QTest::newRow("MID alone") << QStringList{QStringLiteral("b.mid")} << QString()
                               << QStringLiteral("Рядом с файлом MID нет файла MIF: %1");
    QTest::newRow("other file") << QStringList{QStringLiteral("b.txt")} << QString() << noImport;
    QTest::newRow("two other files") << QStringList{QStringLiteral("b.txt"), QStringLiteral("folder.mif")} << QString()
                                     << noImport;
    QTest::newRow("folder") << QStringList{QStringLiteral("folder.mif")} << QString()
                            << QStringLiteral("Это папка, а не файл: %1");
    QTest::newRow("absent") << QStringList{QStringLiteral("absent.mif")} << QString()
                            << QStringLiteral("Файла нет: %1");
}

void tst_WorkbenchWindowFiles::importFileIsFound()
{
    QFETCH(QStringList, names);
    QFETCH(QString, found);
    QFETCH(QString, error);
    const PluginHost files;
    for (const char *name : {"план.dxf", "a.MIF", "a.mid", "b.mid", "b.txt"})
        files.write(QString::fromUtf8(name), "x");
    QDir().mkdir(files.path(QStringLiteral("folder.mif")));
    QList<QUrl> urls;
    for (const QString &name : names)
        urls.append(QUrl::fromLocalFile(files.path(name)));
    ImportFile file;
    QString reason;

    QCOMPARE(findImportFile(urls, {fromMif, fromDxf}, file, reason), !found.isEmpty());

    if (!found.isEmpty())
        QCOMPARE(file.fileName, files.path(found));
    QCOMPARE(reason, error.isEmpty() ? error : error.arg(QDir::toNativeSeparators(files.path(names.first()))));
}

void tst_WorkbenchWindowFiles::droppedFileStartsItsOperation()
{
    const WindowFixture fixture;
    const QString fileName = fixture.writePlan();
    QString entered;
    WindowFixture::whenDialogOpens([&entered](DialogDriver &driver) {
        entered = driver.find<QLineEdit>("objectFileNameEdit")->text();
        driver.cancel();
    });

    QVERIFY(fixture.drop({QUrl::fromLocalFile(fileName)}));
    QVERIFY(!fixture.picture()->viewport()->acceptDrops());

    QTRY_COMPARE(entered, QDir::toNativeSeparators(fileName));
    QTRY_VERIFY(QApplication::activeModalWidget() == nullptr);
}

void tst_WorkbenchWindowFiles::nameWithBlanksAndCyrillicIsImported_data()
{
    QTest::addColumn<bool>("isDropped"); // or chosen in the file dialog

    QTest::newRow("dropped") << true;
    QTest::newRow("chosen") << false;
}

void tst_WorkbenchWindowFiles::nameWithBlanksAndCyrillicIsImported()
{
    QFETCH(bool, isDropped);
    const WindowFixture fixture;
    const QString folder = fixture.files().path(QStringLiteral("Мои планы"));
    QVERIFY(QDir().mkdir(folder));
    const QString fileName = fixture.writePlan(QStringLiteral("Мои планы/план участка"));
    QString entered;
    const auto import = [&](DialogDriver &driver) {
        if (!isDropped) {
            whenOpens<QFileDialog>([&folder](QFileDialog *dialog) {
                dialog->setDirectory(folder);
                dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))
                    ->setText(QStringLiteral("план участка.mif"));
                static_cast<QDialog *>(dialog)->accept();
            });
            driver.press("objectFileButton");
        }
        entered = driver.find<QLineEdit>("objectFileNameEdit")->text();
        driver.press("startButton");
        driver.accept();
    };

    if (isDropped) {
        WindowFixture::whenDialogOpens(import);
        QVERIFY(fixture.drop({QUrl::fromLocalFile(fileName)}));
    } else {
        fixture.run(fromMif, import);
    }

    QTRY_COMPARE(fixture.shownObjects(), QStringLiteral("[ЗУ10] зу2 ЗУ2"));
    QCOMPARE(entered, QDir::toNativeSeparators(fileName));
}

void tst_WorkbenchWindowFiles::unsuitableDropIsReported()
{
    const WindowFixture fixture;

    QVERIFY(fixture.drop({QUrl(QStringLiteral("https://example.org/a.mif"))}));

    QCOMPARE(fixture.window().statusBar()->currentMessage(),
             QStringLiteral("Не файл этого компьютера: https://example.org/a.mif"));
    QVERIFY(!fixture.drop({}));
}

void tst_WorkbenchWindowFiles::dropIsIgnoredDuringAnOperation()
{
    const WindowFixture fixture;
    const QString fileName = fixture.writePlan();
    bool isAccepted = true;

    fixture.run(fromDxf, [&](DialogDriver &driver) {
        isAccepted = fixture.drop({QUrl::fromLocalFile(fileName)});
        driver.cancel();
    });

    QVERIFY(!isAccepted);
}

void tst_WorkbenchWindowFiles::dropIsIgnoredWhileAnotherDialogIsOpen()
{
    const WindowFixture fixture;
    QDialog question;
    question.setModal(true);
    question.show();

    QVERIFY(!fixture.drop({QUrl::fromLocalFile(fixture.writePlan())}));
}

void tst_WorkbenchWindowFiles::importedFileIsRemembered()
{
    WindowFixture fixture;
    QVERIFY(!fixture.find<QMenu>("recentMenu")->isEnabled());
    const QString fileName = fixture.writePlan();

    fixture.import(fileName);

    QVERIFY(fixture.find<QMenu>("recentMenu")->isEnabled());
    QCOMPARE(recentActions(fixture).size(), 1);
    const QString path = QDir::toNativeSeparators(fileName);
    QVERIFY(recentActions(fixture).first()->toolTip().contains(QStringLiteral("%1: %2").arg(fromMif, path)));
    fixture.open();
    QCOMPARE(recentActions(fixture).size(), 1);
}

void tst_WorkbenchWindowFiles::cancelledFileIsNotRemembered()
{
    const WindowFixture fixture;

    fixture.run(fromMif, cancel, fixture.writePlan());

    QVERIFY(recentActions(fixture).isEmpty());
}

void tst_WorkbenchWindowFiles::recentFileIsImportedAgain()
{
    const WindowFixture fixture;
    const QString fileName = fixture.writePlan();
    fixture.import(fileName);
    QString entered;
    WindowFixture::whenDialogOpens([&entered](DialogDriver &driver) {
        entered = driver.find<QLineEdit>("objectFileNameEdit")->text();
        driver.cancel();
    });

    recentActions(fixture).first()->trigger();

    QCOMPARE(entered, QDir::toNativeSeparators(fileName));
}

void tst_WorkbenchWindowFiles::recentFilesAreUniqueAndLimited()
{
    RecentFiles files;

    for (int i = 0; i < RecentFiles::maxCount; ++i)
        files.add({QString::number(i), fromMif});
    files.add({QStringLiteral("1"), fromMif});
    QCOMPARE(files.files().size(), RecentFiles::maxCount);
    QCOMPARE(files.files().first().fileName, QStringLiteral("1"));
    QCOMPARE(files.files().last().fileName, QStringLiteral("0"));
    files.add({QStringLiteral("1"), fromDxf});

    QCOMPARE(files.files().size(), RecentFiles::maxCount);
    QCOMPARE(files.files().first().operation, fromDxf);
    QCOMPARE(files.files().last().fileName, QStringLiteral("2"));
}

void tst_WorkbenchWindowFiles::windowStateIsKept_data()
{
    QTest::addColumn<int>("format");

    QTest::newRow("INI file") << static_cast<int>(QSettings::IniFormat);
    QTest::newRow("registry or native file") << static_cast<int>(QSettings::NativeFormat);
}

void tst_WorkbenchWindowFiles::windowStateIsKept()
{
    QFETCH(int, format);
    WindowFixture fixture;
    QSettings::setDefaultFormat(static_cast<QSettings::Format>(format)); // until the next fixture
    fixture.open();
    fixture.find<QDockWidget>("verticesDock")->hide();
    fixture.find<QAction>("axesAction")->trigger();
    fixture.objects()->horizontalHeader()->resizeSection(0, 222);
    fixture.objects()->sortByColumn(0, Qt::AscendingOrder);
    QVERIFY(!fixture.picture()->hasSurveyAxes());

    fixture.open();

    QVERIFY(fixture.find<QDockWidget>("verticesDock")->isHidden());
    QVERIFY(!fixture.find<QAction>("axesAction")->isChecked());
    QVERIFY(!fixture.picture()->hasSurveyAxes());
    QCOMPARE(fixture.objects()->columnWidth(0), 222);
    fixture.import(fixture.writePlan());
    QCOMPARE(fixture.shownObjects(), QStringLiteral("[зу2] ЗУ2 ЗУ10"));
}

void tst_WorkbenchWindowFiles::sizesOfDocksAreKept_data()
{
    QTest::addColumn<int>("width");

    QTest::newRow("narrow") << 300;
    QTest::newRow("wide") << 600;
}

void tst_WorkbenchWindowFiles::sizesOfDocksAreKept()
{
    QFETCH(int, width);
    WindowFixture fixture;
    QCoreApplication::processEvents();
    fixture.window().resizeDocks({fixture.find<QDockWidget>("objectsDock")}, {width}, Qt::Horizontal);
    fixture.window().resizeDocks({fixture.find<QDockWidget>("messagesDock")}, {150}, Qt::Vertical);
    QCoreApplication::processEvents();
    const QSize left = fixture.find<QDockWidget>("objectsDock")->size();
    const QSize bottom = fixture.find<QDockWidget>("messagesDock")->size();
    QCOMPARE(left.width(), width);

    fixture.open();
    QCoreApplication::processEvents();

    QCOMPARE(fixture.find<QDockWidget>("objectsDock")->size(), left);
    QCOMPARE(fixture.find<QDockWidget>("messagesDock")->size(), bottom);
}

void tst_WorkbenchWindowFiles::settingsOfThePluginAreKept()
{
    WindowFixture fixture;
    fixture.run(fromMif, [](DialogDriver &driver) {
        driver.setNumber("pointStartNumSpin", 77);
        driver.cancel();
    });

    fixture.open();
    int number = 0;
    fixture.run(fromMif, [&number](DialogDriver &driver) {
        number = driver.find<QSpinBox>("pointStartNumSpin")->value();
        driver.cancel();
    });

    QCOMPARE(number, 77);
}

void tst_WorkbenchWindowFiles::damagedSettingsAreIgnored()
{
    WindowFixture fixture;
    fixture.close();
    QSettings settings;
    settings.beginGroup(QStringLiteral("Window"));
    for (const char *key : {"geometry", "state", "objects", "surveyAxes", "saveFolder", "recentFiles/size"})
        settings.setValue(QLatin1String(key), QStringLiteral("damaged"));
    settings.sync();

    fixture.open();

    QVERIFY(fixture.find<QDockWidget>("objectsDock")->isVisible());
    QVERIFY(recentActions(fixture).isEmpty());
    fixture.import(fixture.writePlan());
    QCOMPARE(fixture.shownObjects(), QStringLiteral("[ЗУ10] зу2 ЗУ2"));
}

QTEST_MAIN(tst_WorkbenchWindowFiles)
#include "tst_workbench_window_files.moc"
