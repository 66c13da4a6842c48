#pragma once

#include <QStringList>

/// While an object exists, the signals that ask the program to end are only recorded, so that the caller can clean up.
///
/// There is one object at a time.
class Interruption
{
public:
    Interruption();
    ~Interruption();
    Interruption(const Interruption &) = delete;
    Interruption &operator=(const Interruption &) = delete;

    /// True if a signal has arrived since the object was created.
    static bool isRequested();

    /// From now on a second signal, more than a second after the first, removes \a files and ends the program at once,
    /// even if a library hangs. The last one of them is a temporary folder that contains the others and nothing else.
    static void setTemporaryFiles(const QStringList &files);

    /// From now on a second signal is ignored: the temporary folder contains the files that are being replaced.
    static void beginReplacing();
};
