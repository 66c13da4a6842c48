#include "resultpane.h"
#include "workbenchwindowtesting.h"

#include <QSignalSpy>
#include <QStyledItemDelegate>
#include <QTextBlock>
#include <QTextLayout>

/// Results of a fake plug-in in the window: unreadable, empty and large ones.
class tst_WorkbenchWindowResult : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void unreadableResultIsReported_data();
    void unreadableResultIsReported();
    void emptyResultShowsTheLastMessage();
    void longMessageIsElided();
    void emptyTableIsReported();
    void messageAfterTheDialogIsNotShownInAWindow();

    void longTextsAreShortened();
    void longResultIsCut();
    void resultOfAMillionVerticesIsShown();

    void resultIsHighlighted_data();
    void resultIsHighlighted();
};

namespace {

QString objectXml(const QString &def, int vertexCount)
{
    QString xml = QStringLiteral("<Row><Cell>%1</Cell><FormTable>").arg(def);
    for (int i = 0; i < vertexCount; ++i)
        xml += QStringLiteral("<Row><Cell>%1</Cell><Cell>%2.00</Cell><Cell>%3.00</Cell></Row>")
                   .arg(i)
                   .arg(i % 1000)
                   .arg(i / 1000);
    return xml + QStringLiteral("</FormTable></Row>");
}

QString tableOf(const QString &objects)
{
    return QStringLiteral("\n<FormTable>") + objects + QStringLiteral("</FormTable>");
}

} // namespace

void tst_WorkbenchWindowResult::unreadableResultIsReported_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("no XML") << QStringLiteral("Segmentation fault");
    QTest::newRow("truncated") << tableOf(objectXml(QStringLiteral("a"), 3)).chopped(30);
    QTest::newRow("another document") << QStringLiteral("<html><body/></html>");
    QTest::newRow("object without vertices") << tableOf(QStringLiteral("<Row><Cell>a</Cell></Row>"));
    QTest::newRow("a megabyte in a line") << QString(1 << 21, QLatin1Char('<'));
    QTest::newRow("control characters") << QString(QChar(0)) + QChar(0xD800) + QChar(0xFFFF);
}

void tst_WorkbenchWindowResult::unreadableResultIsReported()
{
    QFETCH(QString, text);
    FakePlugin plugin;
    const WindowFixture fixture(&plugin);
    plugin.text = tableOf(objectXml(QStringLiteral("before"), 3));
    fixture.window().runOperation(fromMif);
    QCOMPARE(fixture.shownObjects(), QStringLiteral("[before]"));

    plugin.text = text;
    fixture.window().runOperation(fromMif);

    QVERIFY2(fixture.status().startsWith(QStringLiteral("Результат не прочитан")), qPrintable(fixture.status()));
    QVERIFY(fixture.isError());
    QCOMPARE(fixture.shownObjects(), QString());
    QCOMPARE(fixture.find<ResultPane>()->text(), text);
    QVERIFY(!fixture.find<QPlainTextEdit>("resultView")->toPlainText().isEmpty());
    QVERIFY(fixture.find<QAction>("saveResultAction")->isEnabled());
    QVERIFY(!fixture.find<QAction>("savePictureAction")->isEnabled());
    QVERIFY(!fixture.find<QAction>("saveCatalogueAction")->isEnabled());
}

void tst_WorkbenchWindowResult::emptyResultShowsTheLastMessage()
{
    FakePlugin plugin;
    plugin.messages = QStringList{QStringLiteral("первое"), QStringLiteral("второе")};
    const WindowFixture fixture(&plugin);

    fixture.window().runOperation(fromMif);

    QCOMPARE(fixture.status(), QStringLiteral("Объектов нет. второе"));
    QVERIFY(fixture.isError());
    QVERIFY(!fixture.find<QAction>("saveResultAction")->isEnabled());
}

void tst_WorkbenchWindowResult::longMessageIsElided()
{
    FakePlugin plugin;
    plugin.messages = QStringList{QStringLiteral("<b>") + QString(5000, QLatin1Char('a'))};
    const WindowFixture fixture(&plugin);
    const QSize before = fixture.window().minimumSizeHint();

    fixture.window().runOperation(fromMif);

    const auto *const label = fixture.find<StatusLabel>("statusLabel");
    QVERIFY(label->text().startsWith(QStringLiteral("Объектов нет. <b>a")));
    QVERIFY(label->text().endsWith(QStringLiteral("…")));
    QVERIFY(label->toolTip().contains(QStringLiteral("&lt;b&gt;") + QString(5000, QLatin1Char('a'))));
    QCOMPARE(fixture.window().minimumSizeHint(), before);
    const QString elided = label->text();
    fixture.window().resize(fixture.window().width() * 2, fixture.window().height());
    QTRY_VERIFY(label->text().size() > elided.size());
}

void tst_WorkbenchWindowResult::emptyTableIsReported()
{
    FakePlugin plugin;
    plugin.text = QStringLiteral("<FormTable/>");
    const WindowFixture fixture(&plugin);

    fixture.window().runOperation(fromMif);

    QCOMPARE(fixture.status(), QStringLiteral("Объектов нет — сообщений не было: в файле нет того, что импортируется"));
    QVERIFY(fixture.isError());
}

// Memory may run out when the result is written, after the dialog was closed.
void tst_WorkbenchWindowResult::messageAfterTheDialogIsNotShownInAWindow()
{
    FakePlugin plugin;
    plugin.hasDialog = true;
    plugin.messages = QStringList{QStringLiteral("первое")};
    plugin.lastMessage = QStringLiteral("не хватило памяти");
    const WindowFixture fixture(&plugin);
    QPointer<MessageWindow> window;
    bool isVisible = true;
    plugin.afterLastMessage = [&] { isVisible = !window.isNull() && window->isVisible(); };

    fixture.run(fromMif, [&window](DialogDriver &driver) {
        driver.press("startButton");
        window = driver.dialog()->findChild<MessageWindow *>();
        driver.accept();
    });

    QVERIFY(!isVisible);
    QCOMPARE(fixture.status(), QStringLiteral("Объектов нет. не хватило памяти"));
}

// Painting takes a second for each cell of four million characters.
void tst_WorkbenchWindowResult::longTextsAreShortened()
{
    FakePlugin plugin;
    const QString text(501, QLatin1Char('a'));
    const QString shown = QString(500, QLatin1Char('a')) + QStringLiteral("…");
    plugin.text =
        tableOf(objectXml(text, 1).replace(QStringLiteral(">0</Cell>"), QStringLiteral(">%1</Cell>").arg(text)));
    const WindowFixture fixture(&plugin);

    fixture.window().runOperation(fromMif);

    for (const QTableView *const view : {fixture.objects(), fixture.vertices()}) {
        const QModelIndex cell = view->model()->index(0, 0);
        QCOMPARE(cell.data().toString(), text);
        const auto *const delegate = qobject_cast<QStyledItemDelegate *>(view->itemDelegate());
        QVERIFY(delegate != nullptr);
        QCOMPARE(delegate->displayText(cell.data(), QLocale()), shown);
        QCOMPARE(delegate->displayText(text.left(500), QLocale()), text.left(500));
    }
    const QString toolTip = fixture.objects()->model()->index(0, 0).data(Qt::ToolTipRole).toString();
    QVERIFY(toolTip.contains(shown));
}

void tst_WorkbenchWindowResult::longResultIsCut()
{
    ResultPane pane;
    const auto *const view = pane.findChild<QPlainTextEdit *>(QStringLiteral("resultView"));
    const auto *const note = pane.findChild<QLabel *>(QStringLiteral("resultNote"));
    QSignalSpy saving(&pane, &ResultPane::saveRequested);

    const QString shown(ResultPane::maxShown, QLatin1Char('a'));
    pane.setText(shown);
    QCOMPARE(view->toPlainText(), shown);
    QCOMPARE(note->text(), QStringLiteral("1\u00A0048\u00A0576 знаков"));

    const QString text = shown + QStringLiteral("b");
    pane.setText(text);
    QCOMPARE(view->toPlainText(), shown);
    QCOMPARE(note->text(), QStringLiteral("1\u00A0048\u00A0577 знаков; показано начало: 1\u00A0048\u00A0576. "
                                          "Сохраняется весь результат."));
    QCOMPARE(pane.text(), text);
    pane.findChild<QPushButton *>(QStringLiteral("saveResultButton"))->click();
    QCOMPARE(saving.count(), 1);

    pane.setText(QString());
    QVERIFY(!pane.findChild<QPushButton *>(QStringLiteral("saveResultButton"))->isEnabled());
}

void tst_WorkbenchWindowResult::resultOfAMillionVerticesIsShown()
{
    FakePlugin plugin;
    QString objects;
    for (int i = 0; i < 1000; ++i)
        objects += objectXml(QString::number(i), 1000);
    plugin.text = tableOf(objects);
    const WindowFixture fixture(&plugin);

    fixture.window().runOperation(fromMif);

    QCOMPARE(fixture.status(), QStringLiteral("1\u00A0000 объектов, 1\u00A0000\u00A0000 вершин"));
    QCOMPARE(fixture.objects()->model()->rowCount(), 1000);
    Q_EMIT fixture.picture()->objectClicked(999);
    QCOMPARE(fixture.objects()->currentIndex().row(), 999);
    QVERIFY(fixture.objects()->visualRect(fixture.objects()->currentIndex()).isValid());
    QCOMPARE(fixture.vertices()->model()->rowCount(), 1000);
    fixture.window().grab();
}

void tst_WorkbenchWindowResult::resultIsHighlighted_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("formats"); // a letter for each character: its format, or a dot for none

    QTest::newRow("cell") << QStringLiteral("  <Cell>1</Cell>") << QStringLiteral("..mnnnnm.mmnnnnm");
    QTest::newRow("attribute") << QStringLiteral("<A B=\"c\"/>") << QStringLiteral("mnmnmvvvmm");
    QTest::newRow("empty") << QStringLiteral("<Row/>") << QStringLiteral("mnnnmm");
    QTest::newRow("no end") << QStringLiteral("a<B") << QStringLiteral(".mn");
    QTest::newRow("open quote") << QStringLiteral("<A b=\"c") << QStringLiteral("mnmnmvv");
    QTest::newRow("long line") << QStringLiteral("<A>") + QString(10000, QLatin1Char(' ')) << QStringLiteral("...");
}

void tst_WorkbenchWindowResult::resultIsHighlighted()
{
    QFETCH(QString, line);
    QFETCH(QString, formats);
    ResultPane pane;

    pane.setText(QStringLiteral("<n v=\"\">\n") + line);

    const QTextDocument *const document = pane.findChild<QPlainTextEdit *>()->document();
    const auto colourAt = [document](int block, int position) {
        const auto ranges = document->findBlockByNumber(block).layout()->formats();
        for (const QTextLayout::FormatRange &range : ranges) {
            if (position >= range.start && position < range.start + range.length)
                return range.format.foreground().color();
        }
        return QColor();
    };
    const QVector<QColor> colours{colourAt(0, 0), colourAt(0, 1), colourAt(0, 5)}; // markup, name, value
    QString found;
    for (int i = 0; i < formats.size(); ++i)
        found += QStringLiteral(".mnv").at(colours.indexOf(colourAt(1, i)) + 1);
    QCOMPARE(found, formats);
}

QTEST_MAIN(tst_WorkbenchWindowResult)
#include "tst_workbench_window_result.moc"
