#pragma once

#include <QApplication>
#include <QFile>
#include <QStringList>
#include <QTest>
#include <QThread>

#include <csignal>
#include <cstdio>
#include <cstdlib>

/// A companion program that does what its environment says: the test itself, called again with a command.
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

/// Set by the signal that asks the program to end.
inline volatile std::sig_atomic_t interrupted = 0;

inline void log(const QByteArray &line)
{
    if (qEnvironmentVariableIsSet("FAKE_LOG"))
        append(qEnvironmentVariable("FAKE_LOG"), line + '\n');
}

/// Returns false if the program is asked to end.
inline bool sleep(int milliseconds)
{
    for (int slept = 0; slept < milliseconds && interrupted == 0; slept += 10)
        QThread::msleep(10);
    return interrupted == 0;
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
        std::abort();
    print(stderr, qgetenv("FAKE_ERRORS"));
    print(stdout, QByteArray(qEnvironmentVariableIntValue("FAKE_LONG_OUTPUT"), 'x'));
    print(stdout, qgetenv("FAKE_OUTPUT"));
    writeFiles(arguments);
    return qEnvironmentVariableIntValue("FAKE_STATUS");
}

/// Runs the test \a Test, or the companion if the arguments are its.
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
