#pragma once

class QString;

/// Stores the host's callback for showStatus(); null means that messages are dropped.
void setStatusFunc(void (*func)(const QString &));

/// Reports \a text to the host, unchanged; does nothing without a callback.
///
/// The host gets a deep copy, which it may keep after unloading the plug-in.
void showStatus(const QString &text);
