#include "preparewindowtesting.h"

/// The window with the built companion program.
class tst_WorkbenchPrepareReal : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void builtProgramIsFound();
    void rejectedDrawingIsCheckedPreparedAndImported();
    void unreadableFileIsReported();
};

// The tests are in a folder beside that of the workbench.
void tst_WorkbenchPrepareReal::builtProgramIsFound()
{
    CommandLine commandLine;

    QVERIFY2(commandLine.read({QStringLiteral("importhost")}), qPrintable(commandLine.error()));

    QCOMPARE(commandLine.options().prepare, QStringLiteral(IMPORTPREPARE_PATH));
}

void tst_WorkbenchPrepareReal::rejectedDrawingIsCheckedPreparedAndImported()
{
    const PrepareFixture fixture(nullptr, QStringLiteral(IMPORTPREPARE_PATH));
    const QByteArray line("0\nLINE\n8\n0\n10\n0\n20\n0\n11\n10\n21\n5\n");
    const QByteArray text("0\nTEXT\n8\n0\n10\n50\n20\n50\n40\n1\n1\nfar away\n");
    const QString fileName = fixture.files().write(
        QStringLiteral("plan.dxf"), "999\ncomment\n0\nSECTION\n2\nENTITIES\n" + line + text + "0\nENDSEC\n0\nEOF\n");
    const auto processAndCancel = [](DialogDriver &driver) {
        driver.press("startButton");
        driver.cancel();
    };
    fixture.run(fromDxf, processAndCancel, fileName);

    fixture.press("noticeCheckButton");
    QVERIFY(fixture.waitForEnd());
    QVERIFY2(fixture.report().contains(QStringLiteral("[leading-comment]")), qPrintable(fixture.report()));
    QVERIFY(fixture.find<QPushButton>("pageButton")->isVisible());

    PrepareFixture::answerFileDialog();
    fixture.press("prepareButton");
    whenOpens<QMessageBox>([](QMessageBox *box) { box->buttons().first()->click(); });
    WindowFixture::whenDialogOpens([](DialogDriver &driver) {
        driver.press("startButton");
        driver.accept();
    });

    QTRY_COMPARE(fixture.window().result().objects.size(), 1);
    QCOMPARE(fixture.window().result().vertices.size(), 2);
    QVERIFY2(
        fixture.report().contains(QStringLiteral("надписи, которые не стали ни обозначением, ни номером точки: 1")),
        qPrintable(fixture.report()));
}

void tst_WorkbenchPrepareReal::unreadableFileIsReported()
{
    const PrepareFixture fixture(nullptr, QStringLiteral(IMPORTPREPARE_PATH));
    const QString fileName = fixture.files().write(QStringLiteral("plan.dxf"), "0\nSECTION\n0\nEOF\n");
    whenOpens<QFileDialog>([&fileName](QFileDialog *dialog) {
        QObject::connect(dialog, &QDialog::accepted, [&fileName] { QFile::remove(fileName); });
        dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(fileName);
        static_cast<QDialog *>(dialog)->accept();
    });

    fixture.find<QAction>("checkAction")->trigger();

    QVERIFY(fixture.waitForEnd());
    QCOMPARE(fixture.note(), QStringLiteral("Файл plan.dxf не читается"));
    QVERIFY(fixture.isError());
}

QTEST_MAIN(tst_WorkbenchPrepareReal)
#include "tst_workbench_prepare_real.moc"
