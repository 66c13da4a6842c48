#include "messagelist.h"
#include "messagewindow.h"

#include <QApplication>
#include <QDialog>
#include <QPainter>
#include <QRegularExpression>
#include <QTest>
#include <QWindow>

/// The list of messages, and the window that shows them beside a modal dialog.
class tst_WorkbenchMessages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void windowIsPlacedBesideTheDialog_data();
    void windowIsPlacedBesideTheDialog();

    void messageIsOneLineWithItsTime_data();
    void messageIsOneLineWithItsTime();
    void oldMessagesAreRemoved();

    void messageIsShownAtOnce();
    void windowIsBesideItsDialog();
    void windowFollowsItsDialog();
    void windowIsNotBlockedByTheDialog();
    void windowTakesNoFocus();
    void clearedWindowIsHidden();
    void thousandsOfMessagesArePaintedRarely();
};

namespace {

const QString message = QStringLiteral("Ошибка чтения строки: 7");

/// A visible modal dialog with its message window.
struct Shown
{
    Shown()
    {
        dialog.setModal(true);
        dialog.resize(200, 150);
        dialog.show();
    }

    QDialog dialog;
    MessageWindow *window = new MessageWindow(&dialog);
};

/// Counts the paintings of a widget.
class PaintCounter : public QObject
{
public:
    explicit PaintCounter(QWidget *widget) { widget->installEventFilter(this); }
    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }

    int count = 0;
};

} // namespace

void tst_WorkbenchMessages::windowIsPlacedBesideTheDialog_data()
{
    QTest::addColumn<QRect>("dialog");
    QTest::addColumn<QRect>("place");

    // The screen is 1000 x 800, the window 400 x 200; 8 pixels stay free around it.
    QTest::newRow("right") << QRect(100, 100, 300, 400) << QRect(408, 100, 400, 200);
    QTest::newRow("right, narrower") << QRect(300, 100, 400, 400) << QRect(708, 100, 284, 200);
    QTest::newRow("right, moved up") << QRect(100, 700, 300, 90) << QRect(408, 592, 400, 200);
    QTest::newRow("right, moved down") << QRect(100, -50, 300, 90) << QRect(408, 8, 400, 200);
    QTest::newRow("left") << QRect(500, 100, 450, 400) << QRect(92, 100, 400, 200);
    QTest::newRow("left, narrower") << QRect(300, 100, 650, 400) << QRect(8, 100, 284, 200);
    QTest::newRow("below") << QRect(50, 50, 900, 400) << QRect(50, 458, 400, 200);
    QTest::newRow("below, lower") << QRect(50, 50, 900, 600) << QRect(50, 658, 400, 134);
    QTest::newRow("above") << QRect(50, 300, 900, 480) << QRect(50, 92, 400, 200);
    QTest::newRow("corner, covering nothing") << QRect(-100, -100, 1050, 600) << QRect(8, 508, 400, 200);
    QTest::newRow("corner at the right") << QRect(0, 0, 900, 760) << QRect(600, 600, 400, 200);
    QTest::newRow("full screen") << QRect(0, 0, 1000, 800) << QRect(600, 300, 400, 200);
}

void tst_WorkbenchMessages::windowIsPlacedBesideTheDialog()
{
    QFETCH(QRect, dialog);
    QFETCH(QRect, place);
    const QRect screen(0, 0, 1000, 800);

    QCOMPARE(placeBeside(dialog, QSize(400, 200), screen), place);
    QVERIFY(screen.contains(place));
}

void tst_WorkbenchMessages::messageIsOneLineWithItsTime_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("line");

    QTest::newRow("text") << message << message;
    QTest::newRow("lines") << QStringLiteral("a\nb\r\u2028\u2029c") << QStringLiteral("a b   c");
    QTest::newRow("markup") << QStringLiteral("<b>a</b>") << QStringLiteral("<b>a</b>");
    QTest::newRow("long") << QString(5000, QLatin1Char('a')) << QString(2000, QLatin1Char('a')) + QStringLiteral("…");
}

void tst_WorkbenchMessages::messageIsOneLineWithItsTime()
{
    QFETCH(QString, text);
    QFETCH(QString, line);
    MessageList list;

    list.append(text);

    const QString shown = list.toPlainText();
    QVERIFY2(QRegularExpression(QStringLiteral("^\\d\\d:\\d\\d:\\d\\d  ")).match(shown).hasMatch(), qPrintable(shown));
    QCOMPARE(shown.mid(10), line);
}

void tst_WorkbenchMessages::oldMessagesAreRemoved()
{
    MessageList list;

    for (int i = 0; i < MessageList::maxMessages + 5; ++i)
        list.append(QString::number(i));

    QCOMPARE(list.blockCount(), MessageList::maxMessages);
    QVERIFY(list.toPlainText().endsWith(QStringLiteral("  10004")));
}

// No event loop runs after the message.
void tst_WorkbenchMessages::messageIsShownAtOnce()
{
    const Shown shown;
    const PaintCounter painted(shown.window->findChild<MessageList *>()->viewport());
    QVERIFY(!shown.window->isVisible());

    shown.window->append(message);

    QVERIFY(shown.window->isVisible());
    QVERIFY(shown.window->windowHandle()->isExposed());
    QVERIFY(painted.count > 0);
    QVERIFY(shown.window->findChild<MessageList *>()->toPlainText().contains(message));
}

void tst_WorkbenchMessages::windowIsBesideItsDialog()
{
    const Shown shown;

    shown.window->append(message);

    QVERIFY(!shown.window->frameGeometry().intersects(shown.dialog.frameGeometry()));
}

void tst_WorkbenchMessages::windowFollowsItsDialog()
{
    Shown shown;
    shown.window->append(message);
    const QPoint before = shown.window->pos();

    shown.dialog.move(shown.dialog.pos() + QPoint(10, 20));
    QCOMPARE(shown.window->pos(), before + QPoint(10, 20));
    shown.dialog.resize(shown.dialog.width() + 5, shown.dialog.height());
    QCOMPARE(shown.window->pos(), before + QPoint(15, 20));
}

// A double click selects a word. It is sent to the QWindow, because that is where a modal dialog blocks input.
void tst_WorkbenchMessages::windowIsNotBlockedByTheDialog()
{
    const Shown shown;
    shown.window->append(message);
    auto *const list = shown.window->findChild<MessageList *>();
    const QPoint inText = list->viewport()->mapTo(shown.window, list->cursorRect().center() - QPoint(20, 0));

    QTest::mouseDClick(shown.window->windowHandle(), Qt::LeftButton, Qt::NoModifier, inText);

    QCOMPARE(QApplication::activeModalWidget(), &shown.dialog);
    QTRY_VERIFY(list->textCursor().hasSelection());
}

void tst_WorkbenchMessages::windowTakesNoFocus()
{
    const Shown shown;

    QVERIFY(shown.window->testAttribute(Qt::WA_ShowWithoutActivating));
    QVERIFY(shown.window->windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus));
}

void tst_WorkbenchMessages::clearedWindowIsHidden()
{
    const Shown shown;
    shown.window->append(message);

    shown.window->clear();
    QVERIFY(!shown.window->isVisible());

    shown.window->append(QStringLiteral("next"));
    QVERIFY(shown.window->isVisible());
    QVERIFY(!shown.window->findChild<MessageList *>()->toPlainText().contains(message));
}

void tst_WorkbenchMessages::thousandsOfMessagesArePaintedRarely()
{
    const Shown shown;
    shown.window->append(message);
    const PaintCounter painted(shown.window->findChild<MessageList *>()->viewport());

    for (int i = 0; i < 5000; ++i)
        shown.window->append(message);

    QVERIFY2(painted.count < 2500, qPrintable(QString::number(painted.count)));
}

QTEST_MAIN(tst_WorkbenchMessages)
#include "tst_workbench_messages.moc"
