#include "mifpairs.h"
#include "resultoutline.h"

#include <QTest>

namespace {

using Leave = std::function<void(const DialogDriver &)>;

/// Opens the editor of the first cell of \a view and types «чужой» into it. Null when none opens.
QPointer<QLineEdit> openEditor(const DialogDriver &driver, const char *view)
{
    auto *const cells = driver.find<QAbstractItemView>(view);
    driver.click(cells, 0);
    QTest::keyClick(cells, Qt::Key_F2);
    auto *const editor = cells->viewport()->findChild<QLineEdit *>();
    if (editor != nullptr)
        editor->setText(QStringLiteral("чужой"));
    return editor;
}

QString firstText(const DialogDriver &driver, const char *view)
{
    return driver.find<QAbstractItemView>(view)->model()->index(0, 0).data().toString();
}

} // namespace

Q_DECLARE_METATYPE(Leave)

/// A dialog that is left while one of its cells is being edited.
class tst_HostAbuseDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void openEditorDoesNotKeepTheDialog_data();
    void openEditorDoesNotKeepTheDialog();
    void escapeLeavesTheEditorFirst_data();
    void escapeLeavesTheEditorFirst();
    void acceptTakesTheOpenEditor_data();
    void acceptTakesTheOpenEditor();
    void runEndsTheOpenEditor();
};

void tst_HostAbuseDialog::openEditorDoesNotKeepTheDialog_data()
{
    QTest::addColumn<QByteArray>("view");
    QTest::addColumn<Leave>("leave");

    for (const char *const view : {"listView", "tableView"}) {
        QTest::addRow("%s, window closed", view)
            << QByteArray(view) << Leave([](const DialogDriver &driver) { driver.dialog()->close(); });
        QTest::addRow("%s, Cancel", view)
            << QByteArray(view) << Leave([](const DialogDriver &driver) { driver.cancel(); });
        QTest::addRow("%s, Escape in the window", view)
            << QByteArray(view)
            << Leave([](const DialogDriver &driver) { QTest::keyClick(driver.dialog(), Qt::Key_Escape); });
    }
}

void tst_HostAbuseDialog::openEditorDoesNotKeepTheDialog()
{
    QFETCH(QByteArray, view);
    QFETCH(Leave, leave);
    PluginHost host;
    QPointer<QLineEdit> editor;

    const QString result = host.call(fromMif, [&](DialogDriver &driver) {
        searchNothing(driver);
        driver.process(writeLines(host));
        editor = openEditor(driver, view);
        QVERIFY(!editor.isNull());
        leave(driver);
        QVERIFY(!driver.dialog()->isVisible());
    });

    QVERIFY(result.isNull());
    QVERIFY(editor.isNull());
    QCOMPARE(host.dialogs(), 1);
    QCOMPARE(host.messages(), QStringList());
    QCOMPARE(QApplication::topLevelWidgets(), QWidgetList());
    QVERIFY(QSettings().contains(QStringLiteral("ImportObjects/size")));
}

void tst_HostAbuseDialog::escapeLeavesTheEditorFirst_data()
{
    QTest::addColumn<QByteArray>("view");
    QTest::addColumn<QString>("text");

    QTest::newRow("designation of an object") << QByteArray("listView") << QStringLiteral(":ЗУ1");
    QTest::newRow("designation of a vertex") << QByteArray("tableView") << QStringLiteral("н1");
}

void tst_HostAbuseDialog::escapeLeavesTheEditorFirst()
{
    QFETCH(QByteArray, view);
    QFETCH(QString, text);
    PluginHost host;

    const QString result = host.call(fromMif, [&](DialogDriver &driver) {
        searchNothing(driver);
        driver.process(writeLines(host));
        const QPointer<QLineEdit> editor = openEditor(driver, view);
        QVERIFY(!editor.isNull());
        QTest::keyClick(editor.data(), Qt::Key_Escape);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(editor.isNull() || !editor->isVisible());
        QVERIFY(driver.dialog()->isVisible());
        QCOMPARE(firstText(driver, view), text);
        QTest::keyClick(driver.find<QAbstractItemView>(view), Qt::Key_Escape);
        QVERIFY(!driver.dialog()->isVisible());
    });

    QVERIFY(result.isNull());
}

void tst_HostAbuseDialog::acceptTakesTheOpenEditor_data()
{
    QTest::addColumn<QByteArray>("view");
    QTest::addColumn<QStringList>("objects");

    QTest::newRow("designation of an object")
        << QByteArray("listView")
        << QStringList{QStringLiteral("чужой"), QStringLiteral("  н1|1.00|2.00"), QStringLiteral("  н2|3.00|4.00")};
    QTest::newRow("designation of a vertex")
        << QByteArray("tableView")
        << QStringList{QStringLiteral(":ЗУ1"), QStringLiteral("  чужой|1.00|2.00"), QStringLiteral("  н2|3.00|4.00")};
}

// A person who presses the button takes the focus from the editor, which then hands over its text.
void tst_HostAbuseDialog::acceptTakesTheOpenEditor()
{
    QFETCH(QByteArray, view);
    QFETCH(QStringList, objects);
    PluginHost host;

    const QString result = host.call(fromMif, [&](DialogDriver &driver) {
        searchNothing(driver);
        driver.process(writeLines(host));
        QVERIFY(QTest::qWaitForWindowActive(driver.dialog()));
        QVERIFY(!openEditor(driver, view).isNull());
        driver.find<QDialogButtonBox>("buttonBox")->button(QDialogButtonBox::Ok)->setFocus();
        driver.accept();
    });

    QCOMPARE(ResultOutline::lines(result).mid(0, 3), objects);
}

void tst_HostAbuseDialog::runEndsTheOpenEditor()
{
    PluginHost host;

    const QString result = host.call(fromMif, [&host](DialogDriver &driver) {
        searchNothing(driver);
        driver.process(writeLines(host));
        QVERIFY(!openEditor(driver, "tableView").isNull());
        QVERIFY(!openEditor(driver, "listView").isNull());
        driver.process(host.path(QStringLiteral("nowhere.mif")));
        driver.dialog()->close();
    });

    QVERIFY(result.isNull());
    QCOMPARE(host.messages().size(), 1);
}

QTEST_MAIN(tst_HostAbuseDialog)
#include "tst_hostabuse_dialog.moc"
