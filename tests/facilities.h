#pragma once

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#ifdef Q_OS_WIN
#include <qt_windows.h>
#endif

/// Something that some systems lack.
struct Facility
{
    bool isAvailable;
    const char *name;
};

/// Skips the test function that contains it, or all test functions if that is initTestCase().
#define REQUIRE_FACILITY(facility)                                                                                     \
    do {                                                                                                               \
        const Facility required = facility;                                                                            \
        if (!required.isAvailable)                                                                                     \
            QSKIP(qPrintable(QStringLiteral("needs %1").arg(QLatin1String(required.name))));                           \
    } while (false)

#ifdef Q_OS_UNIX
constexpr bool isUnix = true;
#else
constexpr bool isUnix = false;
#endif

/// A path that a symbolic link or an output can name, and to which nothing can be written.
const QString fullDevicePath = QStringLiteral("/dev/full");

inline Facility fullDevice()
{
    return {QFile::exists(fullDevicePath), "a device that is always full"};
}

/// On Windows QFile::link() writes a shortcut, which only the shell follows.
inline Facility symbolicLinks()
{
    const QTemporaryDir dir;
    const QString link = dir.filePath(QStringLiteral("link"));
    return {QFile::link(dir.path(), link) && QFileInfo(link).isDir(), "symbolic links"};
}

inline Facility caseSensitiveNames()
{
    const QTemporaryDir dir;
    QFile file(dir.filePath(QStringLiteral("a")));
    return {file.open(QIODevice::WriteOnly) && !QFile::exists(dir.filePath(QStringLiteral("A"))),
            "file names that differ in case"};
}

/// Elsewhere names are Unicode.
inline Facility undecodableNames()
{
#ifdef Q_OS_LINUX
    return {true, ""};
#else
    return {false, "file names that are bytes"};
#endif
}

inline Facility namedPipes()
{
    return {isUnix, "named pipes"};
}

/// The superuser reads all folders.
inline Facility unreadableFolders()
{
    const QTemporaryDir dir;
    return {QFile::setPermissions(dir.path(), {}) && !QFileInfo(dir.path()).isReadable(),
            "folders that the user cannot read"};
}

inline Facility shell()
{
    return {QFile::exists(QStringLiteral("/bin/sh")), "a shell"};
}

/// Elsewhere the suffix decides.
inline Facility executePermission()
{
    return {isUnix, "a permission to execute a file"};
}

inline Facility fileSizeLimit()
{
    return {isUnix, "a limit of file sizes"};
}

/// Elsewhere a program that is asked to end, and has no window, is killed.
inline Facility terminationSignal()
{
    return {isUnix, "a signal to terminate"};
}

/// Elsewhere every session has a display.
inline Facility sessionsWithoutDisplay()
{
#if defined(Q_OS_UNIX) && !defined(Q_OS_MACOS)
    return {true, ""};
#else
    return {false, "a session without a display"};
#endif
}

/// Elsewhere the settings of a program that is started cannot be redirected.
inline Facility settingsInFiles()
{
#if defined(Q_OS_UNIX) && !defined(Q_OS_MACOS)
    return {true, ""};
#else
    return {false, "settings in a file"};
#endif
}

/// The reason that the system gives for a folder that is missing, or is a file if \a isFile is true.
inline QString noFolderReason(bool isFile = false)
{
#ifdef Q_OS_WIN
    Q_UNUSED(isFile)
    QString reason = qt_error_string(ERROR_PATH_NOT_FOUND); // in the user's language
    reason.chop(reason.endsWith(QLatin1Char('.')) ? 1 : 0);
    return reason;
#else
    return isFile ? QStringLiteral("Not a directory") : QStringLiteral("No such file or directory");
#endif
}
