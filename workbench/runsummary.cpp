#include "runsummary.h"

#include "numbertext.h"

#include <QStringList>

QString summaryText(const ImportResult &result, int duplicateCount, int messageCount)
{
    QStringList parts;
    parts << countText(result.objects.size(),
                       {QStringLiteral("объект"), QStringLiteral("объекта"), QStringLiteral("объектов")});
    parts << countText(result.vertices.size(),
                       {QStringLiteral("вершина"), QStringLiteral("вершины"), QStringLiteral("вершин")});
    if (duplicateCount > 0)
        parts << countText(duplicateCount,
                           {QStringLiteral("обозначение повторяется"), QStringLiteral("обозначения повторяются"),
                            QStringLiteral("обозначений повторяются")});
    if (messageCount > 0)
        parts << countText(messageCount,
                           {QStringLiteral("сообщение"), QStringLiteral("сообщения"), QStringLiteral("сообщений")});
    return parts.join(QStringLiteral(", "));
}

QString nothingText(const QString &lastMessage, bool wasProcessed)
{
    if (!wasProcessed)
        return QStringLiteral("Объектов нет. Файл не обрабатывался");
    if (lastMessage.isEmpty())
        return QStringLiteral("Объектов нет — сообщений не было: в файле нет того, что импортируется");
    return QStringLiteral("Объектов нет. %1").arg(lastMessage);
}
