#include "gdalmessage.h"

#include <QRegularExpression>

#include <utility>

QString gdalMessage(const char *message)
{
    static const QRegularExpression place(QStringLiteral("^\\S+\\.cpp, \\d+: "));
    return QString::fromUtf8(message).remove(place).trimmed();
}

QString lastGdalMessage()
{
    return gdalMessage(CPLGetLastErrorMsg());
}

GdalMessages::GdalMessages()
{
    CPLPushErrorHandlerEx(receive, this);
}

GdalMessages::~GdalMessages()
{
    CPLPopErrorHandler();
}

void GdalMessages::receive(CPLErr type, CPLErrorNum /*number*/, const char *message)
{
    GdalMessages &messages = *static_cast<GdalMessages *>(CPLGetErrorHandlerUserData());
    if (type == CE_Warning && messages.m_warningCount++ == 0)
        messages.m_firstWarning = gdalMessage(message);
    if (type >= CE_Failure && messages.m_error.isNull())
        messages.m_error = gdalMessage(message);
}

QString GdalMessages::takeError()
{
    return std::exchange(m_error, QString());
}
