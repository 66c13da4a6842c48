#include "workbenchwindowtesting.h"

#include <QCheckBox>
#include <QHeaderView>
#include <QScrollBar>

/// Imports in the workbench's window with the built plug-in.
class tst_WorkbenchWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void operationsHaveButtons();
    void operationsHaveShortcuts();
    void requestedOperationIsRun();
    void resultIsShown();
    void pictureAndListAgreeOnTheCurrentObject();
    void clickedObjectIsFoundDespiteFilterAndOrder();
    void filteredObjectStaysCurrent();
    void newResultRemovesTheFilter();
    void searchFieldIsReachedByKeyboard();
    void orderOfTheResultIsRestored();
    void positionIsShown();

    void statusCountsTheResult_data();
    void statusCountsTheResult();
    void importWithoutObjectsIsReported_data();
    void importWithoutObjectsIsReported();
    void unprocessedFileIsReported();
    void cancelledImportKeepsTheResult();
    void partialImportShowsObjectsAndMessages();

    void operationsDoNotOverlap();
    void windowStaysOpenDuringAnOperation();
};

namespace {

const QString defs = QStringLiteral("ЗУ10 зу2 ЗУ2");

QStringList rows(const QTableView *view)
{
    return DialogDriver::shown(view);
}

void choose(const QTableView *view, int row)
{
    view->selectionModel()->setCurrentIndex(view->model()->index(row, 0),
                                            QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void search(const WindowFixture &fixture, const QString &text)
{
    fixture.find<QLineEdit>("searchEdit")->setText(text);
}

} // namespace

void tst_WorkbenchWindow::operationsHaveButtons()
{
    const WindowFixture fixture;
    const auto actions = fixture.find<QToolBar>("toolBar")->actions();

    QCOMPARE(actions.at(0)->text(), fromMif);
    QCOMPARE(actions.at(1)->text(), fromDxf);
    WindowFixture::whenDialogOpens(cancel);
    actions.at(1)->trigger();

    QVERIFY(fixture.messages().contains(QStringLiteral("Операция: Объекты из DXF")));
    QCOMPARE(fixture.status(), QStringLiteral("Импорт отменён"));
}

void tst_WorkbenchWindow::operationsHaveShortcuts()
{
    FakePlugin plugin;
    plugin.names = QStringList{fromMif, fromDxf, QStringLiteral("Other")};
    const WindowFixture fixture(&plugin);
    const auto actions = fixture.find<QToolBar>("toolBar")->actions();

    QCOMPARE(actions.at(0)->shortcut(), QKeySequence(QStringLiteral("Ctrl+M")));
    QCOMPARE(actions.at(1)->shortcut(), QKeySequence(QStringLiteral("Ctrl+D")));
    QCOMPARE(actions.at(2)->shortcut(), QKeySequence());
}

void tst_WorkbenchWindow::requestedOperationIsRun()
{
    WindowFixture fixture;
    WindowFixture::whenDialogOpens(cancel);

    fixture.options().operation = fromMif;
    QMetaObject::invokeMethod(&fixture.window(), "runRequestedOperation");

    QCOMPARE(fixture.status(), QStringLiteral("Импорт отменён"));
}

void tst_WorkbenchWindow::resultIsShown()
{
    const WindowFixture fixture;

    fixture.import(fixture.writePlan());

    QCOMPARE(rows(fixture.objects()),
             (QStringList{QStringLiteral("ЗУ10|1|4|да|34.14|50.00"), QStringLiteral("зу2|2|8|да|37.56|49.50"),
                          QStringLiteral("ЗУ2|1|2|нет|14.14|")}));
    choose(fixture.objects(), 1);
    QCOMPARE(rows(fixture.vertices()),
             (QStringList{QStringLiteral("н4|20.00|0.00"), QStringLiteral("н5|30.00|0.00"),
                          QStringLiteral("н6|30.00|10.00"), QStringLiteral("н4|20.00|0.00"), QStringLiteral("||"),
                          QStringLiteral("н7|28.00|4.00"), QStringLiteral("н8|29.00|4.00"),
                          QStringLiteral("н9|29.00|5.00"), QStringLiteral("н7|28.00|4.00")}));
    QVERIFY(fixture.find<QPlainTextEdit>("resultView")->toPlainText().startsWith(QStringLiteral("<FormTable Name=")));
    QCOMPARE(fixture.window().windowTitle(), QStringLiteral("plan.mif — Импорт объектов"));
}

void tst_WorkbenchWindow::pictureAndListAgreeOnTheCurrentObject()
{
    const WindowFixture fixture;
    fixture.import(fixture.writePlan());
    QCOMPARE(fixture.picture()->currentObject(), 0);
    QCOMPARE(fixture.shownObjects(), QStringLiteral("[ЗУ10] зу2 ЗУ2"));

    choose(fixture.objects(), 2);
    QCOMPARE(fixture.picture()->currentObject(), 2);

    Q_EMIT fixture.picture()->objectClicked(1);
    QCOMPARE(fixture.picture()->currentObject(), 1);
    QCOMPARE(fixture.shownObjects(), QStringLiteral("ЗУ10 [зу2] ЗУ2"));
    QCOMPARE(fixture.vertices()->model()->rowCount(), 9);

    Q_EMIT fixture.picture()->objectClicked(-1);
    QCOMPARE(fixture.picture()->currentObject(), -1);
    QCOMPARE(fixture.shownObjects(), defs);
    QCOMPARE(fixture.vertices()->model()->rowCount(), 0);
}

void tst_WorkbenchWindow::clickedObjectIsFoundDespiteFilterAndOrder()
{
    const WindowFixture fixture;
    fixture.import(fixture.writePlan());
    fixture.objects()->sortByColumn(0, Qt::DescendingOrder);
    search(fixture, QStringLiteral("10"));
    QCOMPARE(fixture.shownObjects(), QStringLiteral("[ЗУ10]"));

    Q_EMIT fixture.picture()->objectClicked(1);

    QCOMPARE(fixture.find<QLineEdit>("searchEdit")->text(), QString());
    QCOMPARE(fixture.shownObjects(), QStringLiteral("ЗУ10 [зу2] ЗУ2"));
    Q_EMIT fixture.picture()->objectClicked(0);
    QCOMPARE(fixture.shownObjects(), QStringLiteral("[ЗУ10] зу2 ЗУ2"));
}

void tst_WorkbenchWindow::filteredObjectStaysCurrent()
{
    const WindowFixture fixture;
    fixture.import(fixture.writePlan());
    choose(fixture.objects(), 1);

    search(fixture, QStringLiteral("10"));
    QCOMPARE(fixture.shownObjects(), QStringLiteral("ЗУ10"));
    QCOMPARE(fixture.picture()->currentObject(), 1);
    QCOMPARE(fixture.vertices()->model()->rowCount(), 9);

    search(fixture, QStringLiteral("зу"));
    QCOMPARE(fixture.shownObjects(), QStringLiteral("ЗУ10 [зу2] ЗУ2"));
}

void tst_WorkbenchWindow::newResultRemovesTheFilter()
{
    const WindowFixture fixture;
    fixture.import(fixture.writePlan());
    search(fixture, QStringLiteral("10"));

    fixture.import(fixture.writePlan());

    QCOMPARE(fixture.shownObjects(), QStringLiteral("[ЗУ10] зу2 ЗУ2"));
}

void tst_WorkbenchWindow::searchFieldIsReachedByKeyboard()
{
    const WindowFixture fixture;
    QVERIFY(QTest::qWaitForWindowActive(&fixture.window()));
    fixture.find<QDockWidget>("objectsDock")->hide();

    QTest::keyClick(&fixture.window(), Qt::Key_F, Qt::ControlModifier);

    QTRY_VERIFY(fixture.find<QLineEdit>("searchEdit")->hasFocus());
}

void tst_WorkbenchWindow::orderOfTheResultIsRestored()
{
    const WindowFixture fixture;
    fixture.import(fixture.writePlan());
    fixture.objects()->sortByColumn(0, Qt::AscendingOrder);
    QCOMPARE(fixture.shownObjects(), QStringLiteral("зу2 ЗУ2 [ЗУ10]"));

    fixture.find<QAction>("removeSortingAction")->trigger();

    QCOMPARE(fixture.shownObjects(), QStringLiteral("[ЗУ10] зу2 ЗУ2"));
}

void tst_WorkbenchWindow::positionIsShown()
{
    const WindowFixture fixture;
    const auto *const label = fixture.find<QLabel>("positionLabel");

    Q_EMIT fixture.picture()->pointerMoved(QPointF(1250.4, 830));
    QCOMPARE(label->text(), QStringLiteral("X 1250.40  Y 830.00"));
    Q_EMIT fixture.picture()->pointerMoved(QPointF(qQNaN(), 830));
    QCOMPARE(label->text(), QString());
    Q_EMIT fixture.picture()->pointerMoved(QPointF(1250.4, 830));
    Q_EMIT fixture.picture()->pointerLeft();
    QCOMPARE(label->text(), QString());
}

void tst_WorkbenchWindow::statusCountsTheResult_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QByteArray>("records");
    QTest::addColumn<QString>("status");

    const QByteArray line("LINE 0 0 1 1\n");
    QTest::newRow("one object") << line << QByteArray("a\n") << QStringLiteral("1 объект, 2 вершины");
    QTest::newRow("duplicates") << line.repeated(4) << QByteArray("a\nb\nA\nc\n")
                                << QStringLiteral("4 объекта, 8 вершин, 2 обозначения повторяются");
    QTest::newRow("thousands") << line.repeated(1100) << QByteArray("a\n").repeated(1100)
                               << QStringLiteral("1\u00A0100 объектов, 2\u00A0200 вершин, 1\u00A0100 обозначений "
                                                 "повторяются");
}

void tst_WorkbenchWindow::statusCountsTheResult()
{
    QFETCH(QByteArray, data);
    QFETCH(QByteArray, records);
    QFETCH(QString, status);
    const WindowFixture fixture;

    fixture.import(fixture.files().writeMif(QStringLiteral("counted"), data, records));

    QCOMPARE(fixture.status(), status);
    QVERIFY(!fixture.isError());
    QVERIFY(fixture.messages().endsWith(status));
}

void tst_WorkbenchWindow::importWithoutObjectsIsReported_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("status");

    QTest::newRow("message") << QByteArray("no map\n")
                             << QStringLiteral("Объектов нет. Ошибка. Файл %1 не соответствует формату MIF");
    QTest::newRow("no message") << mifHeader + "POINT 1 2\n"
                                << QStringLiteral(
                                       "Объектов нет — сообщений не было: в файле нет того, что импортируется");
}

void tst_WorkbenchWindow::importWithoutObjectsIsReported()
{
    QFETCH(QByteArray, file);
    QFETCH(QString, status);
    const WindowFixture fixture;
    fixture.import(fixture.writePlan());
    const QString fileName = fixture.files().write(QStringLiteral("empty.mif"), file);
    fixture.files().write(QStringLiteral("empty.mid"), "т1\n");

    fixture.import(fileName);

    QCOMPARE(fixture.status(), status.replace(QStringLiteral("%1"), QDir::toNativeSeparators(fileName)));
    QVERIFY(fixture.isError());
    QCOMPARE(fixture.shownObjects(), QString());
    QCOMPARE(fixture.picture()->currentObject(), -1);
    QCOMPARE(fixture.vertices()->model()->rowCount(), 0);
}

void tst_WorkbenchWindow::unprocessedFileIsReported()
{
    const WindowFixture fixture;

    fixture.run(
        fromMif, [](DialogDriver &driver) { driver.accept(); }, fixture.writePlan());

    QCOMPARE(fixture.status(), QStringLiteral("Объектов нет. Файл не обрабатывался"));
    QVERIFY(fixture.isError());
}

void tst_WorkbenchWindow::cancelledImportKeepsTheResult()
{
    const WindowFixture fixture;
    fixture.import(fixture.writePlan());

    fixture.run(fromMif, cancel);

    QCOMPARE(fixture.status(), QStringLiteral("Импорт отменён"));
    QVERIFY(!fixture.isError());
    QCOMPARE(fixture.shownObjects(), QStringLiteral("[ЗУ10] зу2 ЗУ2"));
    QVERIFY(!fixture.find<QPlainTextEdit>("resultView")->toPlainText().isEmpty());
}

void tst_WorkbenchWindow::partialImportShowsObjectsAndMessages()
{
    const WindowFixture fixture;
    fixture.find<QDockWidget>("resultDock")->raise();

    fixture.import(fixture.files().writeMif(QStringLiteral("broken"), "LINE 0 0 1 1\nLINE 0\n", "a\nb\n"));

    QCOMPARE(fixture.status(), QStringLiteral("1 объект, 2 вершины, 1 сообщение"));
    QCOMPARE(fixture.shownObjects(), QStringLiteral("[a]"));
    QVERIFY(fixture.messages().contains(QStringLiteral("6")));
    QVERIFY(fixture.find<QPlainTextEdit>("messages")->isVisible());
}

void tst_WorkbenchWindow::operationsDoNotOverlap()
{
    const WindowFixture fixture;

    fixture.run(fromMif, [&fixture](DialogDriver &driver) {
        fixture.window().runOperation(fromDxf);
        driver.cancel();
    });

    QVERIFY(!fixture.messages().contains(fromDxf));
}

void tst_WorkbenchWindow::windowStaysOpenDuringAnOperation()
{
    const WindowFixture fixture;
    bool isClosed = true;

    fixture.run(fromMif, [&](DialogDriver &driver) {
        isClosed = fixture.window().close();
        driver.cancel();
    });

    QVERIFY(!isClosed);
    QVERIFY(fixture.window().isVisible());
}

QTEST_MAIN(tst_WorkbenchWindow)
#include "tst_workbench_window.moc"
