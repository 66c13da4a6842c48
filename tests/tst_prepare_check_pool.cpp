#include "checkpool.h"
#include "facilities.h"
#include "interruption.h"
#include "preparetesting.h"

#include <QTimer>

#include <csignal>

/// Checks in child processes, which run a script in place of the program.
class tst_PrepareCheckPool : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void failureBecomesAFinding_data();
    void failureBecomesAFinding();
    void failureDoesNotAffectOtherFiles();
    void reportsKeepTheOrderOfTheFiles();
    void consumerEndsTheChecks();
    void interruptionEndsTheChildren();
};

namespace {

/// Runs a script for each file. In the script, $file is the file, and `report` prints a report without findings.
struct PoolFixture
{
    QString program(const QString &script) const
    {
        QString fileName = files.write(
            QStringLiteral("program.sh"),
            {QStringLiteral("#!/bin/sh\nfor file; do :; done"),
             QStringLiteral("report() { echo '{\"file\":\"'$file'\",\"accepted\":true,\"findings\":[]}'; }"), script});
        QFile::setPermissions(fileName, QFile::ReadOwner | QFile::ExeOwner);
        return fileName;
    }

    /// Checks all files. Returns "file: findings" for each, in the order of the reports.
    QStringList run(const QString &script)
    {
        QStringList texts;
        CheckPool pool(command, program(script));
        pool.run([this, &texts](const FileReport &report) {
            texts.append(report.fileName + QStringLiteral(": ") + described(report.findings));
            return texts.size() != maxReports;
        });
        return texts;
    }

    const TextFixture files{};
    CheckCommand command;
    int maxReports = 0; ///< the checks end after so many; 0: no limit
};

} // namespace

void tst_PrepareCheckPool::initTestCase()
{
    REQUIRE_FACILITY(shell());
}

void tst_PrepareCheckPool::failureBecomesAFinding_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("findings");

    const QString crash = QStringLiteral("crash 1");
    QTest::newRow("report") << QStringLiteral("report") << QString();
    QTest::newRow("killed by a signal") << QStringLiteral("kill -SEGV $$") << crash;
    QTest::newRow("no report") << QStringLiteral("exit 0") << crash;
    QTest::newRow("half a report") << QStringLiteral("echo '{\"file\":'") << crash;
    QTest::newRow("hangs") << QStringLiteral("exec sleep 1000") << QStringLiteral("timeout 1");
}

void tst_PrepareCheckPool::failureBecomesAFinding()
{
    QFETCH(QString, script);
    QFETCH(QString, findings);
    PoolFixture pool;
    pool.command.files = QStringList{QStringLiteral("a.dxf")};
    pool.command.jobs = 1;
    pool.command.timeoutMilliseconds = script.contains(QLatin1String("sleep")) ? 100 : 60000;

    QCOMPARE(pool.run(script), QStringList{QStringLiteral("a.dxf: ") + findings});
}

void tst_PrepareCheckPool::failureDoesNotAffectOtherFiles()
{
    PoolFixture pool;
    pool.command.files = QStringList{QStringLiteral("a.dxf"), QStringLiteral("b.dxf"), QStringLiteral("c.dxf")};
    pool.command.jobs = 2;

    QCOMPARE(pool.run(QStringLiteral("[ $file = b.dxf ] && kill -SEGV $$\nreport")),
             (QStringList{QStringLiteral("a.dxf: "), QStringLiteral("b.dxf: crash 1"), QStringLiteral("c.dxf: ")}));
}

// The check of the first file ends last: it waits for a file that the check of the last one creates.
void tst_PrepareCheckPool::reportsKeepTheOrderOfTheFiles()
{
    PoolFixture pool;
    pool.command.files = QStringList{QStringLiteral("a.dxf"), QStringLiteral("b.dxf"), QStringLiteral("c.dxf")};
    pool.command.jobs = 3;
    const QString mark = pool.files.path(QStringLiteral("mark"));

    const QStringList texts = pool.run(QStringLiteral("[ $file = c.dxf ] && touch %1\n"
                                                      "[ $file = a.dxf ] && while [ ! -e %1 ]; do sleep 0.01; done\n"
                                                      "report")
                                           .arg(mark));

    QCOMPARE(texts, (QStringList{QStringLiteral("a.dxf: "), QStringLiteral("b.dxf: "), QStringLiteral("c.dxf: ")}));
}

void tst_PrepareCheckPool::consumerEndsTheChecks()
{
    PoolFixture pool;
    pool.command.files = QStringList{QStringLiteral("a.dxf"), QStringLiteral("b.dxf"), QStringLiteral("c.dxf")};
    pool.command.jobs = 2;
    pool.maxReports = 1;

    QCOMPARE(pool.run(QStringLiteral("[ $file = b.dxf ] && exec sleep 1000\nreport")),
             QStringList{QStringLiteral("a.dxf: ")});
}

void tst_PrepareCheckPool::interruptionEndsTheChildren()
{
#ifdef Q_OS_UNIX
    PoolFixture pool;
    pool.command.files = QStringList{QStringLiteral("a.dxf")};
    pool.command.jobs = 1;
    const QString mark = pool.files.path(QStringLiteral("mark"));
    const Interruption interruption;
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&mark] {
        if (QFile::exists(mark))
            std::raise(SIGTERM);
    });
    timer.start(10);

    const QStringList texts = pool.run(QStringLiteral("echo $$ >%1.new\nmv %1.new %1\nexec sleep 1000").arg(mark));

    QFile file(mark);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const pid_t child = file.readAll().trimmed().toInt();
    QVERIFY(child > 0);
    QVERIFY(kill(child, 0) != 0);
    QCOMPARE(texts, QStringList());
#else
    REQUIRE_FACILITY(terminationSignal());
#endif
}

QTEST_GUILESS_MAIN(tst_PrepareCheckPool)
#include "tst_prepare_check_pool.moc"
