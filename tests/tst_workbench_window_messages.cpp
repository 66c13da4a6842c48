#include "workbenchwindowtesting.h"

/// Messages of imports in the workbench's window and beside the open dialog.
class tst_WorkbenchWindowMessages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void messagesAreShownBesideTheOpenDialog();
    void messagesAreClearedForEachRun();
    void messagesSurviveAPressWithoutAClick();
    void messagesAreKeptForTheSession();
};

void tst_WorkbenchWindowMessages::messagesAreShownBesideTheOpenDialog()
{
    const WindowFixture fixture;
    bool wasHidden = false;
    bool isVisible = false;
    QString shown;

    fixture.run(
        fromMif,
        [&](DialogDriver &driver) {
            auto *const window = driver.dialog()->findChild<MessageWindow *>();
            wasHidden = !window->isVisible();
            driver.press("startButton");
            isVisible = window->isVisible();
            shown = window->findChild<QPlainTextEdit *>()->toPlainText();
            driver.cancel();
        },
        QStringLiteral("absent.mif"));

    QVERIFY(wasHidden);
    QVERIFY(isVisible);
    QVERIFY2(shown.contains(QStringLiteral("Ошибка открытия файла absent.mif")), qPrintable(shown));
    QVERIFY(QApplication::topLevelWidgets().contains(&fixture.window()));
    QVERIFY(fixture.window().findChild<MessageWindow *>() == nullptr);
}

void tst_WorkbenchWindowMessages::messagesAreClearedForEachRun()
{
    const WindowFixture fixture;
    bool isVisible = true;
    const QString plan = fixture.writePlan();

    fixture.run(
        fromMif,
        [&](DialogDriver &driver) {
            driver.press("startButton");
            driver.find<QLineEdit>("objectFileNameEdit")->setText(plan);
            driver.press("startButton");
            isVisible = driver.dialog()->findChild<MessageWindow *>()->isVisible();
            driver.accept();
        },
        QStringLiteral("absent.mif"));

    QVERIFY(!isVisible);
    QCOMPARE(fixture.status(), QStringLiteral("3 объекта, 14 вершин, 2 обозначения повторяются"));
}

void tst_WorkbenchWindowMessages::messagesSurviveAPressWithoutAClick()
{
    const WindowFixture fixture;
    bool isVisible = false;

    fixture.run(
        fromMif,
        [&](DialogDriver &driver) {
            driver.press("startButton");
            auto *const button = driver.find<QPushButton>("startButton");
            QTest::mousePress(button, Qt::LeftButton);
            QMouseEvent leaving(QEvent::MouseMove, QPointF(-9, -9), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
            QCoreApplication::sendEvent(button, &leaving);
            QTest::mouseRelease(button, Qt::LeftButton, Qt::NoModifier, QPoint(-9, -9));
            isVisible = driver.dialog()->findChild<MessageWindow *>()->isVisible();
            driver.accept();
        },
        fixture.files().writeMif(QStringLiteral("broken"), "LINE 0 0 1 1\nLINE 0\n", "a\nb\n"));

    QVERIFY(isVisible);
    QCOMPARE(fixture.status(), QStringLiteral("1 объект, 2 вершины, 1 сообщение"));
}

void tst_WorkbenchWindowMessages::messagesAreKeptForTheSession()
{
    const WindowFixture fixture;

    fixture.import(QStringLiteral("first.mif"));
    fixture.import(QStringLiteral("second.mif"));

    QVERIFY(fixture.messages().contains(QStringLiteral("Ошибка открытия файла first.mif")));
    QVERIFY(fixture.messages().contains(QStringLiteral("Ошибка открытия файла second.mif")));
}

QTEST_MAIN(tst_WorkbenchWindowMessages)
#include "tst_workbench_window_messages.moc"
