#pragma once

#include "importresult.h"

/// «843 объекта, 5 120 вершин, 761 обозначение повторяется, 2 сообщения»; the last two only if there are any.
QString summaryText(const ImportResult &result, int duplicateCount, int messageCount);

/// «Объектов нет» and the reason: \a lastMessage or, if it is empty, what the lack of messages means.
QString nothingText(const QString &lastMessage, bool wasProcessed);
