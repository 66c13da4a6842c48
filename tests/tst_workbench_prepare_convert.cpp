#include "facilities.h"
#include "preparewindowtesting.h"

/// Files that the window prepares for the import.
class tst_WorkbenchPrepareConvert : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void preparedFileIsImported();
    void unlistedEncodingIsEntered();
    void checkedFileIsPrepared();
    void chosenFileIsPrepared();
    void cancelledChoicePreparesNothing();

    void lossIsShownBeforeTheImport_data();
    void lossIsShownBeforeTheImport();
    void existingFileIsReplacedOnlyOnRequest_data();
    void existingFileIsReplacedOnlyOnRequest();
    void sourceIsNeverReplaced_data();
    void sourceIsNeverReplaced();

    void failureIsShown_data();
    void failureIsShown();
    void conversionIsCancelled();
    void importWaitsForAnOpenDialog();
    void windowMayCloseDuringTheQuestion();
};

namespace {

const QByteArray complete(R"("leftOut":[],"notes":[])");
const QByteArray incomplete(R"("leftOut":[{"kind":"raster","count":2}],"notes":[])");

/// What the import dialog shows when it opens.
struct Entered
{
    QString fileName;
    QString encoding;
    bool searchesPoints = false;
    bool searchesObjects = false;
    bool usesPointFile = true;
};

/// Reads the next import dialog and imports its file.
void importAndRead(Entered &entered)
{
    WindowFixture::whenDialogOpens([&entered](DialogDriver &driver) {
        entered.fileName = QFileInfo(driver.find<QLineEdit>("objectFileNameEdit")->text()).fileName();
        entered.encoding = driver.find<QComboBox>("encodingCombo")->currentText();
        entered.searchesPoints = driver.find<QCheckBox>("searchPointDefsCheck")->isChecked();
        entered.searchesObjects = driver.find<QCheckBox>("searchObjectDefsCheck")->isChecked();
        entered.usesPointFile = driver.find<QCheckBox>("usePointFileCheck")->isChecked();
        driver.press("startButton");
        driver.accept();
    });
}

/// Makes the fake program write \a output and report \a counts.
void makeReport(const WindowFixture &fixture, const QString &output, const QByteArray &counts,
                const QByteArray &encoding = "windows-1251")
{
    qputenv("FAKE_OUTPUT", "{\"output\":\"" + fixture.files().path(output).toUtf8() + "\",\"encoding\":\"" + encoding +
                               "\",\"objects\":1," + counts + "}");
    qputenv("FAKE_MIF", mifHeader + "LINE 1 2 3 4\n");
    qputenv("FAKE_MID", "A1\n");
}

/// Chooses the encoding IBM866 and a file of points, turns the searches off, and processes a rejected file.
void processRejected(const PrepareFixture &fixture)
{
    const auto action = [](DialogDriver &driver) {
        driver.chooseEncoding(QStringLiteral("IBM866"));
        driver.setChecked("searchPointDefsCheck", false);
        driver.setChecked("searchObjectDefsCheck", false);
        driver.setChecked("usePointFileCheck", true);
        driver.press("startButton");
        driver.cancel();
    };
    fixture.run(fromDxf, action, fixture.writeRejected());
}

} // namespace

void tst_WorkbenchPrepareConvert::preparedFileIsImported()
{
    const PrepareFixture fixture;
    processRejected(fixture);
    makeReport(fixture, QStringLiteral("plan-import.mif"), complete);
    Entered entered;
    importAndRead(entered);
    PrepareFixture::answerFileDialog();

    fixture.press("noticePrepareButton");

    QVERIFY(fixture.note().startsWith(QStringLiteral("Подготавливается plan.dxf…")));
    QTRY_COMPARE(fixture.shownObjects(), QStringLiteral("[A1]"));
    QCOMPARE(fixture.log(), QStringLiteral("convert --json plan.dxf plan-import.mif"));
    QCOMPARE(entered.fileName, QStringLiteral("plan-import.mif"));
    QCOMPARE(entered.encoding, QStringLiteral("Windows-1251"));
    QVERIFY(entered.searchesPoints && entered.searchesObjects && !entered.usesPointFile);
    QVERIFY(fixture.report().contains(QStringLiteral("Записано: объектов 1")));
    QVERIFY(!fixture.hasNotice());
}

void tst_WorkbenchPrepareConvert::unlistedEncodingIsEntered()
{
    const PrepareFixture fixture;
    processRejected(fixture);
    makeReport(fixture, QStringLiteral("plan-import.mif"), complete, "windows-1250");
    Entered entered;
    importAndRead(entered);
    PrepareFixture::answerFileDialog();

    fixture.press("noticePrepareButton");

    QTRY_COMPARE(fixture.shownObjects(), QStringLiteral("[A1]"));
    QCOMPARE(entered.encoding, QStringLiteral("windows-1250"));
}

void tst_WorkbenchPrepareConvert::checkedFileIsPrepared()
{
    const PrepareFixture fixture;
    qputenv("FAKE_STATUS", "1");
    fixture.choose("checkAction", fixture.writeRejected());
    QVERIFY(fixture.waitForEnd());
    PrepareFixture::answerFileDialog(fixture.files().path(QStringLiteral("other.mif")));

    fixture.press("prepareButton");

    QVERIFY(fixture.waitForEnd());
    QCOMPARE(fixture.log().section(QLatin1Char('\n'), 1), QStringLiteral("convert --json plan.dxf other.mif"));
}

void tst_WorkbenchPrepareConvert::chosenFileIsPrepared()
{
    const PrepareFixture fixture;
    qputenv("FAKE_STATUS", "1");
    const QString input = fixture.files().write(QStringLiteral("plan.gpkg"), "x");
    const QString output = fixture.files().path(QStringLiteral("result.v2"));
    whenOpens<QFileDialog>([input, output](QFileDialog *dialog) {
        dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(input);
        QObject::connect(dialog, &QDialog::finished, [output] { PrepareFixture::answerFileDialog(output); });
        static_cast<QDialog *>(dialog)->accept();
    });

    fixture.find<QAction>("prepareAction")->trigger();

    QVERIFY(fixture.waitForEnd());
    QCOMPARE(fixture.log(), QStringLiteral("convert --json plan.gpkg result.v2.mif"));
}

void tst_WorkbenchPrepareConvert::cancelledChoicePreparesNothing()
{
    const PrepareFixture fixture;
    processRejected(fixture);
    whenOpens<QFileDialog>([](QFileDialog *dialog) { dialog->reject(); });

    fixture.press("noticePrepareButton");

    QVERIFY(fixture.find<QPushButton>("prepareCancelButton")->isHidden());
    QCOMPARE(fixture.log(), QString());
}

void tst_WorkbenchPrepareConvert::lossIsShownBeforeTheImport_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<bool>("isImported");

    QTest::newRow("import") << QStringLiteral("Импортировать") << true;
    QTest::newRow("do not import") << QStringLiteral("Не импортировать") << false;
}

void tst_WorkbenchPrepareConvert::lossIsShownBeforeTheImport()
{
    QFETCH(QString, answer);
    QFETCH(bool, isImported);
    const PrepareFixture fixture;
    processRejected(fixture);
    makeReport(fixture, QStringLiteral("plan-import.mif"), incomplete);
    PrepareFixture::answerFileDialog();
    QString question;
    whenOpens<QMessageBox>([&](QMessageBox *box) {
        question = box->text();
        for (QAbstractButton *const button : box->buttons()) {
            if (button->text() == answer)
                button->click();
        }
    });
    Entered entered;
    importAndRead(entered);

    fixture.press("noticePrepareButton");

    QTRY_COMPARE(question, QStringLiteral("Файл подготовлен, но обратите внимание:\n  растры: 2"));
    if (!isImported) {
        QTest::qWait(50);
        QCOMPARE(fixture.shownObjects(), QString());
        fixture.press("prepareImportButton");
    }
    QTRY_COMPARE(fixture.shownObjects(), QStringLiteral("[A1]"));
    QVERIFY(fixture.report().contains(QStringLiteral("Не перенесено:\n  растры: 2")));
}

void tst_WorkbenchPrepareConvert::existingFileIsReplacedOnlyOnRequest_data()
{
    QTest::addColumn<QString>("existing");
    QTest::addColumn<bool>("isReplaced");

    for (const char *name : {"plan-import.mif", "plan-import.mid"}) {
        QTest::addRow("%s, yes", name) << QString::fromLatin1(name) << true;
        QTest::addRow("%s, no", name) << QString::fromLatin1(name) << false;
    }
}

void tst_WorkbenchPrepareConvert::existingFileIsReplacedOnlyOnRequest()
{
    QFETCH(QString, existing);
    QFETCH(bool, isReplaced);
    const PrepareFixture fixture;
    processRejected(fixture);
    const QString path = fixture.files().write(existing, "x");
    qputenv("FAKE_STATUS", "1");
    QString question;
    PrepareFixture::answerFileDialog();
    whenOpens<QMessageBox>([&](QMessageBox *box) {
        question = box->text();
        if (!isReplaced) // the file dialog opens again
            QObject::connect(box, &QDialog::finished,
                             [] { whenOpens<QFileDialog>([](QFileDialog *dialog) { dialog->reject(); }); });
        box->button(isReplaced ? QMessageBox::Yes : QMessageBox::No)->click();
    });

    fixture.press("noticePrepareButton");

    QVERIFY(fixture.waitForEnd());
    QCOMPARE(question, QStringLiteral("Файл уже есть: %1\nЗаменить его и второй файл пары MIF и MID?")
                           .arg(QDir::toNativeSeparators(path)));
    QCOMPARE(fixture.log(), isReplaced ? QStringLiteral("convert --json --force plan.dxf plan-import.mif") : QString());
}

void tst_WorkbenchPrepareConvert::sourceIsNeverReplaced_data()
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<QString>("existing");

    QTest::newRow("MIF") << QStringLiteral("a.mif") << QStringLiteral("a.mif");
    QTest::newRow("its MID") << QStringLiteral("a.MIF") << QStringLiteral("a.mid");
}

void tst_WorkbenchPrepareConvert::sourceIsNeverReplaced()
{
    QFETCH(QString, input);
    QFETCH(QString, existing);
    if (!input.endsWith(QLatin1String(".mif")))
        REQUIRE_FACILITY(caseSensitiveNames());
    const PrepareFixture fixture;
    const QString fileName = fixture.files().write(input, "x");
    const QString kept = fixture.files().write(existing, "x");
    qputenv("FAKE_STATUS", "1");
    fixture.choose("checkAction", fileName);
    QVERIFY(fixture.waitForEnd());
    QString warning;
    PrepareFixture::answerFileDialog(fixture.files().path(QStringLiteral("a.mif")));
    whenOpens<QMessageBox>([&](QMessageBox *box) {
        warning = box->text();
        QObject::connect(box, &QDialog::finished,
                         [] { whenOpens<QFileDialog>([](QFileDialog *dialog) { dialog->reject(); }); });
        box->accept();
    });

    fixture.press("prepareButton");

    QCOMPARE(warning,
             QStringLiteral("Это сам исходный файл: %1\nВыберите другое имя.").arg(QDir::toNativeSeparators(kept)));
    QVERIFY(fixture.find<QPushButton>("prepareCancelButton")->isHidden());
}

void tst_WorkbenchPrepareConvert::failureIsShown_data()
{
    QTest::addColumn<QByteArray>("variable");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QString>("note");
    QTest::addColumn<QString>("report");

    const QString failed = QStringLiteral("Подготовить файл plan.dxf не удалось");
    QTest::newRow("failed") << QByteArray("FAKE_STATUS") << QByteArray("3") << failed << QStringLiteral("reason");
    QTest::newRow("no report") << QByteArray("FAKE_OUTPUT") << QByteArray("done") << failed << QStringLiteral("reason");
    QTest::newRow("crash") << QByteArray("FAKE_CRASH") << QByteArray("1")
                           << QStringLiteral("Программа importprepare аварийно завершилась на файле plan.dxf")
                           << QStringLiteral("Исходный файл не изменён. Возможно, он повреждён или не хватило памяти.");
}

void tst_WorkbenchPrepareConvert::failureIsShown()
{
    QFETCH(QByteArray, variable);
    QFETCH(QByteArray, value);
    QFETCH(QString, note);
    QFETCH(QString, report);
    const PrepareFixture fixture;
    processRejected(fixture);
    makeReport(fixture, QStringLiteral("plan-import.mif"), complete);
    qputenv("FAKE_ERRORS", "reason");
    qputenv(variable, value);
    PrepareFixture::answerFileDialog();

    fixture.press("noticePrepareButton");

    QVERIFY(fixture.waitForEnd());
    QCOMPARE(fixture.note(), note);
    QCOMPARE(fixture.report(), report);
    QCOMPARE(fixture.status(), note);
    QVERIFY(fixture.isError());
    QVERIFY(fixture.find<QPushButton>("prepareImportButton")->isHidden());
}

void tst_WorkbenchPrepareConvert::conversionIsCancelled()
{
    const PrepareFixture fixture;
    processRejected(fixture);
    PrepareFixture::makeSlow();
    PrepareFixture::answerFileDialog();
    fixture.press("noticePrepareButton");
    QVERIFY(fixture.waitForCall());

    fixture.press("prepareCancelButton");

    QVERIFY(fixture.waitForEnd());
    QCOMPARE(fixture.note(), QStringLiteral("Подготовка прервана"));
    QVERIFY(fixture.hasNotice());
}

void tst_WorkbenchPrepareConvert::importWaitsForAnOpenDialog()
{
    const PrepareFixture fixture;
    processRejected(fixture);
    makeReport(fixture, QStringLiteral("plan-import.mif"), incomplete);
    qputenv("FAKE_SLEEP", "300");
    PrepareFixture::answerFileDialog();
    fixture.press("noticePrepareButton");
    bool hasEnded = false;

    fixture.run(fromMif, [&](DialogDriver &driver) {
        hasEnded = fixture.waitForEnd();
        QCoreApplication::processEvents(); // the window learns of the end
        driver.cancel();
    });

    QVERIFY(hasEnded);
    QVERIFY(QApplication::activeModalWidget() == nullptr);
    Entered entered;
    importAndRead(entered);
    fixture.press("prepareImportButton");
    QCOMPARE(entered.fileName, QStringLiteral("plan-import.mif"));
}

void tst_WorkbenchPrepareConvert::windowMayCloseDuringTheQuestion()
{
    PrepareFixture fixture;
    processRejected(fixture);
    makeReport(fixture, QStringLiteral("plan-import.mif"), incomplete);
    PrepareFixture::answerFileDialog();
    fixture.press("noticePrepareButton");
    QTRY_VERIFY(qobject_cast<QMessageBox *>(QApplication::activeModalWidget()) != nullptr);

    fixture.close();

    QVERIFY(QApplication::activeModalWidget() == nullptr);
}

int main(int argc, char **argv)
{
    return FakePrepare::testMain<tst_WorkbenchPrepareConvert>(argc, argv);
}

#include "tst_workbench_prepare_convert.moc"
