#include "messagelist.h"

#include <QTime>

MessageList::MessageList(QWidget *parent) : QPlainTextEdit(parent)
{
    setObjectName(QStringLiteral("messages"));
    setReadOnly(true);
    setTabChangesFocus(true);
    setUndoRedoEnabled(false);
    setAcceptDrops(false);
    setMaximumBlockCount(maxMessages);
    setAccessibleName(QStringLiteral("Сообщения"));
}

void MessageList::append(const QString &text)
{
    QString line = text.left(maxLength);
    if (text.size() > maxLength)
        line += QChar(0x2026);
    for (const QChar lineEnd :
         {QChar(u'\n'), QChar(u'\r'), QChar(QChar::LineSeparator), QChar(QChar::ParagraphSeparator)})
        line.replace(lineEnd, QLatin1Char(' '));
    appendPlainText(QTime::currentTime().toString(QStringLiteral("HH:mm:ss  ")) + line);
}
