#pragma once

#include <QApplication>
#include <QFile>
#include <QStringList>
#include <QTest>
#include <QThread>

#include <csignal>
#include <cstdio>
#include <cstdlib>

#ifdef Q_OS_WIN
#include <qt_windows.h>
#endif

/// A stand-in for the companion program: the test itself, called again with a command. Its environment controls it:
///
///     FAKE_OUTPUT, FAKE_ERRORS    texts for the standard output and the error output
///     FAKE_LONG_OUTPUT            number of further characters on the standard output
///     FAKE_STATUS                 exit status
///     FAKE_SLEEP                  milliseconds before all this
///     FAKE_CRASH                  aborts
///     FAKE_STUBBORN               ignores the signal to terminate
///     FAKE_MIF, FAKE_MID          content of the files that a conversion writes
///     FAKE_NO_PAGE                a check writes no page
///     FAKE_LOG                    file to which each call appends its arguments
namespace FakePrepare {

/// All variables; each test starts without them.
inline const QList<QByteArray> &variables()
{
    static const QList<QByteArray> names{"FAKE_OUTPUT", "FAKE_ERRORS",      "FAKE_STATUS", "FAKE_SLEEP",
                                         "FAKE_CRASH",  "FAKE_STUBBORN",    "FAKE_LOG",    "FAKE_MIF",
                                         "FAKE_MID",    "FAKE_LONG_OUTPUT", "FAKE_NO_PAGE"};
    return names;
}

inline void reset()
{
    for (const QByteArray &name : variables())
        qunsetenv(name.constData());
}

inline void append(const QString &fileName, const QByteArray &bytes)
{
    QFile file(fileName);
    if (file.open(QIODevice::WriteOnly | QIODevice::Append))
        file.write(bytes);
}

inline void print(FILE *stream, const QByteArray &text)
{
    std::fwrite(text.constData(), 1, static_cast<std::size_t>(text.size()), stream);
    std::fflush(stream);
}

/// Writes the files that the arguments name: the page of a check or the pair of a conversion.
inline void writeFiles(const QStringList &arguments)
{
    const int page = arguments.indexOf(QStringLiteral("--html"));
    if (page >= 0 && !qEnvironmentVariableIsSet("FAKE_NO_PAGE"))
        append(arguments.at(page + 1), "<html></html>");
    const QString output = arguments.last();
    if (arguments.first() == QLatin1String("convert") && qEnvironmentVariableIsSet("FAKE_MIF")) {
        QFile::remove(output);
        append(output, qgetenv("FAKE_MIF"));
        append(output.chopped(1) + QLatin1Char('d'), qgetenv("FAKE_MID"));
    }
}

/// Set by the signal to terminate.
inline volatile std::sig_atomic_t interrupted = 0;

inline void log(const QByteArray &line)
{
    if (qEnvironmentVariableIsSet("FAKE_LOG"))
        append(qEnvironmentVariable("FAKE_LOG"), line + '\n');
}

/// Returns false after the signal to terminate.
inline bool sleep(int milliseconds)
{
    for (int slept = 0; slept < milliseconds && interrupted == 0; slept += 10)
        QThread::msleep(10);
    return interrupted == 0;
}

[[noreturn]] inline void crash()
{
#ifdef Q_OS_WIN // where abort() is an exit with status 3
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(EXCEPTION_ACCESS_VIOLATION));
#endif
    std::abort();
}

inline int run(const QStringList &arguments)
{
    if (qEnvironmentVariableIsSet("FAKE_STUBBORN"))
        std::signal(SIGTERM, SIG_IGN);
    else
        std::signal(SIGTERM, [](int) { interrupted = 1; });
    log(arguments.join(QLatin1Char('|')).toUtf8());
    if (!sleep(qEnvironmentVariableIntValue("FAKE_SLEEP"))) {
        log("interrupted");
        return 1;
    }
    if (qEnvironmentVariableIsSet("FAKE_CRASH"))
        crash();
    print(stderr, qgetenv("FAKE_ERRORS"));
    print(stdout, QByteArray(qEnvironmentVariableIntValue("FAKE_LONG_OUTPUT"), 'x'));
    print(stdout, qgetenv("FAKE_OUTPUT"));
    writeFiles(arguments);
    return qEnvironmentVariableIntValue("FAKE_STATUS");
}

/// Runs the test \a Test, or the stand-in if the arguments are those of the companion.
template <class Test>
int testMain(int argc, char **argv)
{
    const QByteArray command(argc > 1 ? argv[1] : "");
    if (command == "check" || command == "convert") {
        const QCoreApplication app(argc, argv);
        return run(QCoreApplication::arguments().mid(1));
    }
    const QApplication app(argc, argv);
    Test test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace FakePrepare
