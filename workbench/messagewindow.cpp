#include "messagewindow.h"

#include "messagelist.h"

#include <QCoreApplication>
#include <QEvent>
#include <QScreen>
#include <QThread>
#include <QVBoxLayout>
#include <QVector>
#include <QWindow>

#include <algorithm>

namespace {

constexpr QSize preferredSize(440, 240);
constexpr int minWidth = 240;
constexpr int minHeight = 120;
constexpr int gap = 8;
constexpr int maxExposeWait = 300; // ms; a window manager can refuse to show a window

int overlap(const QRect &a, const QRect &b)
{
    const QRect common = a & b;
    return common.width() * common.height();
}

/// A place at the border of \a screen that covers as little of \a dialog as possible. In the middle of the right side
/// rather than in a corner, since fields and buttons are usually at the top and at the bottom.
QRect placeAtBorder(const QRect &dialog, const QSize &size, const QRect &screen)
{
    const int right = screen.right() + 1 - size.width();
    const int bottom = screen.bottom() + 1 - size.height();
    const QVector<QRect> places{
        {QPoint(right, (screen.top() + bottom) / 2), size},
        {QPoint(right, screen.top()), size},
        {QPoint(right, bottom), size},
        {screen.topLeft(), size},
        {QPoint(screen.left(), bottom), size},
    };
    const auto coversLess = [&dialog](const QRect &a, const QRect &b) {
        return overlap(a, dialog) < overlap(b, dialog);
    };
    return *std::min_element(places.begin(), places.end(), coversLess);
}

} // namespace

QRect placeBeside(const QRect &dialog, const QSize &size, const QRect &screen)
{
    const QRect free = screen.adjusted(gap, gap, -gap, -gap);
    const int right = free.right() - dialog.right() - gap;
    const int left = dialog.left() - gap - free.left();
    const int below = free.bottom() - dialog.bottom() - gap;
    const int above = dialog.top() - gap - free.top();
    const QSize fitting = size.boundedTo(free.size());
    // Along a side the window is moved as far as the screen requires.
    const int x = std::max(std::min(dialog.left(), free.right() + 1 - fitting.width()), free.left());
    const int y = std::max(std::min(dialog.top(), free.bottom() + 1 - fitting.height()), free.top());
    const int rightWidth = std::min(fitting.width(), right);
    const int leftWidth = std::min(fitting.width(), left);
    const int belowHeight = std::min(fitting.height(), below);
    const int aboveHeight = std::min(fitting.height(), above);
    if (rightWidth >= std::min(minWidth, fitting.width()))
        return {dialog.right() + 1 + gap, y, rightWidth, fitting.height()};
    if (leftWidth >= std::min(minWidth, fitting.width()))
        return {dialog.left() - gap - leftWidth, y, leftWidth, fitting.height()};
    if (belowHeight >= std::min(minHeight, fitting.height()))
        return {x, dialog.bottom() + 1 + gap, fitting.width(), belowHeight};
    if (aboveHeight >= std::min(minHeight, fitting.height()))
        return {x, dialog.top() - gap - aboveHeight, fitting.width(), aboveHeight};
    return placeAtBorder(dialog, fitting, screen);
}

MessageWindow::MessageWindow(QWidget *dialog)
    : QWidget(dialog, Qt::Tool | Qt::WindowTitleHint | Qt::CustomizeWindowHint | Qt::WindowDoesNotAcceptFocus),
      m_dialog(dialog),
      m_list(new MessageList(this))
{
    setObjectName(QStringLiteral("messageWindow"));
    setWindowTitle(QStringLiteral("Сообщения импорта"));
    setAttribute(Qt::WA_ShowWithoutActivating);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_list);
    dialog->installEventFilter(this);
}

void MessageWindow::append(const QString &text)
{
    m_list->append(text);
    if (isVisible())
        paintNow();
    else
        showNow();
}

void MessageWindow::clear()
{
    hide();
    m_list->clear();
}

// Follows the dialog. The frame of this window is assumed to be like the dialog's: it is unknown before the window is
// shown.
void MessageWindow::place()
{
    const QRect dialog = m_dialog->frameGeometry();
    const QSize frame = dialog.size() - m_dialog->size();
    const QRect place = placeBeside(dialog, preferredSize + frame, m_dialog->screen()->availableGeometry());
    move(place.topLeft());
    resize(place.size() - frame);
}

// The window is painted when the window system has mapped and exposed it. User input stays queued.
void MessageWindow::showNow()
{
    place();
    show();
    QElapsedTimer waiting;
    waiting.start();
    while (!windowHandle()->isExposed() && !waiting.hasExpired(maxExposeWait)) {
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        QThread::msleep(1);
    }
    m_sincePaint.invalidate();
}

// Painting takes at most a tenth of the time: the plug-in can send thousands of messages.
void MessageWindow::paintNow()
{
    if (m_sincePaint.isValid() && m_sincePaint.nsecsElapsed() < 9 * m_paintTime)
        return;
    m_sincePaint.start();
    repaint();
    m_list->viewport()->repaint();
    m_paintTime = m_sincePaint.nsecsElapsed();
    m_sincePaint.start();
}

bool MessageWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_dialog && isVisible() && (event->type() == QEvent::Move || event->type() == QEvent::Resize))
        place();
    return QWidget::eventFilter(watched, event);
}
