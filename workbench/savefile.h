#pragma once

#include <QByteArray>
#include <QString>

/// Writes \a bytes to a new file and then gives it the name \a fileName, so that after a failure the old file, if any,
/// is unchanged. A device or a pipe is written directly.
///
/// Returns false after a failure; \a error is then the reason, without the file name.
bool saveFile(const QString &fileName, const QByteArray &bytes, QString &error);
