#include "messagelist.h"

#include "shorttext.h"

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
    QString line = shortText(text, maxLength);
    for (const QChar lineEnd :
         {QChar(u'\n'), QChar(u'\r'), QChar(QChar::LineSeparator), QChar(QChar::ParagraphSeparator)})
        line.replace(lineEnd, QLatin1Char(' '));
    appendPlainText(QTime::currentTime().toString(QStringLiteral("HH:mm:ss  ")) + line);
}
