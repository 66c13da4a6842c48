#pragma once

#include <QString>

#include <cpl_error.h>

/// A \a message of GDAL, or its last error, for the user: without the position in GDAL's sources with which some
/// drivers begin their messages, and without line ends around it.
QString gdalMessage(const char *message);
QString lastGdalMessage();

/// While it exists, GDAL prints nothing. Errors and warnings are kept instead: GDAL may report an error for one entity
/// and read on, after which its last error is another one.
class GdalMessages
{
public:
    GdalMessages();
    ~GdalMessages();
    GdalMessages(const GdalMessages &) = delete;
    GdalMessages &operator=(const GdalMessages &) = delete;

    /// Returns the first error since the last call, or null if there is none.
    QString takeError();

    int warningCount() const { return m_warningCount; }
    const QString &firstWarning() const { return m_firstWarning; }

private:
    static void CPL_STDCALL receive(CPLErr type, CPLErrorNum number, const char *message);

    QString m_error;
    QString m_firstWarning;
    int m_warningCount = 0;
};
