#pragma once

class QString;

/// Stores the host's callback for showStatus(); null means that messages are dropped.
void setStatusFunc(void (*func)(const QString &));

/// Passes \a text to the host's callback, unchanged; does nothing without one.
void showStatus(const QString &text);
