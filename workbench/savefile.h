#pragma once

#include <QByteArray>
#include <QString>

/// Writes \a bytes to a temporary file and renames it to \a fileName, so that a failure leaves an old file unchanged. A
/// device or a pipe is written directly.
///
/// Returns false after a failure; \a error is then the reason, without the file name.
bool saveFile(const QString &fileName, const QByteArray &bytes, QString &error);
