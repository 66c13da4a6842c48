#pragma once

#include <QByteArray>
#include <QFileDevice>
#include <QString>

#include <memory>

/// A reason that the system gives, as part of a sentence: without the period that some systems add.
QString systemReason(QString text);

/// Writes a temporary file in pieces and renames it to \a fileName, so that a failure leaves an old file unchanged. A
/// device or a pipe is written directly.
class FileSaver
{
public:
    explicit FileSaver(const QString &fileName);

    /// Does nothing after a failure.
    void write(const QByteArray &bytes);

    /// Returns false after a failure, also of write(); \a error is then the reason, without the file name.
    bool commit(QString &error);

private:
    std::unique_ptr<QFileDevice> m_file;
    bool m_ok;
};

/// Saves \a bytes by a FileSaver. Returns false after a failure; \a error is then the reason, without the file name.
bool saveFile(const QString &fileName, const QByteArray &bytes, QString &error);
