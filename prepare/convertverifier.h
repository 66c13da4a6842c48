#pragma once

#include "convertcontent.h"

#include <QString>
#include <QStringList>

/// Imports a written MIF/MID pair with both searches on and compares the result with what was to be written.
class ConvertVerifier
{
public:
    /// Returns false if there is a difference, which error() describes.
    bool verify(const ConvertContent &content, const QString &mifFileName, const QString &encoding);

    const QString &error() const { return m_error; }

private:
    bool fail(const QString &text);

    QString m_error;
};
