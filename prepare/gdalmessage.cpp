#include "gdalmessage.h"

#include <QRegularExpression>

#include <cpl_error.h>

QString gdalMessage(const char *message)
{
    static const QRegularExpression place(QStringLiteral("^\\S+\\.cpp, \\d+: "));
    return QString::fromUtf8(message).remove(place).trimmed();
}

QString lastGdalMessage()
{
    return gdalMessage(CPLGetLastErrorMsg());
}
