#include "interruption.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <csignal>
#include <ctime>

#ifdef Q_OS_WIN
#include <direct.h>
#include <io.h>
#else
#include <unistd.h>
#endif

namespace {

constexpr int signals[] = {
    SIGINT,
    SIGTERM,
#ifdef SIGHUP
    SIGHUP,
#endif
};

// Some senders repeat a signal at once, when the program is already cleaning up.
constexpr std::time_t patience = 2; // the clock counts whole seconds

volatile std::sig_atomic_t interrupted = 0;
volatile std::time_t firstTime = 0;

// Paths in memory that a signal handler may read.
constexpr int maxFiles = 4;
constexpr int maxPath = 4096;
std::array<std::array<char, maxPath>, maxFiles> temporaryFiles;
volatile std::sig_atomic_t temporaryCount = 0;
volatile std::sig_atomic_t isReplacing = 0;

// Calls only what a signal handler may call. Windows keeps files that are open.
void removeTemporaryFiles()
{
    const int count = temporaryCount;
    for (int i = 0; i < count; ++i) {
        const char *const path = temporaryFiles[static_cast<std::size_t>(i)].data();
#ifdef Q_OS_WIN
        i + 1 < count ? _unlink(path) : _rmdir(path);
#else
        i + 1 < count ? unlink(path) : rmdir(path);
#endif
    }
}

void interrupt(int signal)
{
    const std::time_t now = std::time(nullptr);
    const bool endsAtOnce = interrupted != 0 && now - firstTime >= patience && isReplacing == 0;
    if (interrupted == 0)
        firstTime = now;
    interrupted = 1;
    if (endsAtOnce) {
        removeTemporaryFiles();
        std::signal(signal, SIG_DFL);
        std::raise(signal);
    } else {
        std::signal(signal, interrupt);
    }
}

} // namespace

// A signal that is ignored stays so: nohup has its reason.
Interruption::Interruption()
{
    interrupted = isReplacing = temporaryCount = 0;
    for (const int signal : signals) {
        if (std::signal(signal, interrupt) == SIG_IGN)
            std::signal(signal, SIG_IGN);
    }
}

Interruption::~Interruption()
{
    for (const int signal : signals) {
        if (std::signal(signal, SIG_DFL) == SIG_IGN)
            std::signal(signal, SIG_IGN);
    }
    temporaryCount = 0;
}

bool Interruption::isRequested()
{
    return interrupted != 0;
}

void Interruption::setTemporaryFiles(const QStringList &files)
{
    temporaryCount = 0;
    int count = 0;
    for (const QString &file : files) {
        const QByteArray path = QFile::encodeName(file);
        if (count == maxFiles || path.size() >= maxPath)
            return;
        std::copy(path.constData(), path.constData() + path.size() + 1,
                  temporaryFiles[static_cast<std::size_t>(count)].begin());
        ++count;
    }
    temporaryCount = count;
}

void Interruption::beginReplacing()
{
    isReplacing = 1;
}
