#pragma once

#include <QSettings>
#include <QTemporaryDir>
#include <QtGlobal>

#ifdef Q_OS_WIN
#include <qt_windows.h>
#endif

#ifdef Q_OS_WIN
/// In its lifetime, the process uses a key of its own instead of the user's registry.
class RegistryRedirection
{
public:
    RegistryRedirection() : m_name(QStringLiteral("Software\\importplugin-test-%1").arg(GetCurrentProcessId()))
    {
        HKEY key = nullptr;
        if (RegCreateKeyExW(HKEY_CURRENT_USER, path(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr) != 0 ||
            RegOverridePredefKey(HKEY_CURRENT_USER, key) != 0)
            qFatal("cannot redirect the registry");
        RegCloseKey(key);
    }
    ~RegistryRedirection()
    {
        RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
        RegDeleteTreeW(HKEY_CURRENT_USER, path());
    }
    Q_DISABLE_COPY(RegistryRedirection)

private:
    const wchar_t *path() const { return reinterpret_cast<const wchar_t *>(m_name.utf16()); }

    const QString m_name;
};
#endif

/// Redirects the settings of the process to stores that are empty at first. Without a choice, QSettings uses INI files.
///
/// The native format is redirected too: Qt's own file dialog uses it, whatever the default format is.
class SettingsRedirection
{
public:
    SettingsRedirection()
    {
        QSettings::setDefaultFormat(QSettings::IniFormat);
        for (const QSettings::Format format : {QSettings::IniFormat, QSettings::NativeFormat}) {
            QSettings::setPath(format, QSettings::UserScope, m_dir.filePath(QStringLiteral("user")));
            QSettings::setPath(format, QSettings::SystemScope, m_dir.filePath(QStringLiteral("system")));
        }
    }

private:
    const QTemporaryDir m_dir;
#ifdef Q_OS_WIN
    const RegistryRedirection m_registry;
#endif
};
