#include "facilities.h"
#include "savefile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <clocale>

#ifdef Q_OS_UNIX
#include <csignal>
#include <sys/resource.h>
#endif

class tst_WorkbenchSaveFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void fileIsReplaced();
    void failureIsReported_data();
    void failureIsReported();
    void reasonIsPartOfASentence();
    void fullDiskLeavesTheOldFile();
    void deviceIsWrittenDirectly();

private:
    QString path(const char *name) const { return m_dir.filePath(QLatin1String(name)); }
    QByteArray contentOf(const char *name) const;
    QStringList names() const { return QDir(m_dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot); }

    QTemporaryDir m_dir;
};

QByteArray tst_WorkbenchSaveFile::contentOf(const char *name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("not opened");
}

// The system gives its reasons in the language of the locale.
void tst_WorkbenchSaveFile::initTestCase()
{
    std::setlocale(LC_ALL, "C");
}

void tst_WorkbenchSaveFile::fileIsReplaced()
{
    QString error;

    QVERIFY(saveFile(path("a"), "a longer text", error));
    QVERIFY(saveFile(path("a"), "text", error));

    QCOMPARE(contentOf("a"), QByteArray("text"));
    QCOMPARE(names(), QStringList{QStringLiteral("a")});
    QCOMPARE(error, QString());
}

void tst_WorkbenchSaveFile::failureIsReported_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QString>("reason");

    if (isUnix) // elsewhere the system gives no reason
        QTest::newRow("no name") << QString() << QStringLiteral("No such file or directory");
    QTest::newRow("folder") << m_dir.path() << QStringLiteral("Filename refers to a directory");
    QTest::newRow("missing folder") << path("missing/a") << noFolderReason();
}

void tst_WorkbenchSaveFile::failureIsReported()
{
    QFETCH(QString, fileName);
    QString error;

    QVERIFY(!saveFile(fileName, "text", error));

    QTEST(error, "reason");
}

void tst_WorkbenchSaveFile::reasonIsPartOfASentence()
{
    QCOMPARE(systemReason(QStringLiteral("Path not found.")), QStringLiteral("Path not found"));
    QCOMPARE(systemReason(QStringLiteral("No space left on device")), QStringLiteral("No space left on device"));
    QCOMPARE(systemReason(QString()), QString());
}

// The system refuses to write beyond the limit as it does when a disk is full.
void tst_WorkbenchSaveFile::fullDiskLeavesTheOldFile()
{
#ifdef Q_OS_UNIX
    QString error;
    QVERIFY(saveFile(path("a"), "old", error));
    rlimit unlimited{};
    QCOMPARE(getrlimit(RLIMIT_FSIZE, &unlimited), 0);
    const rlimit limit{1000, unlimited.rlim_max};
    std::signal(SIGXFSZ, SIG_IGN);
    QCOMPARE(setrlimit(RLIMIT_FSIZE, &limit), 0);

    const bool ok = saveFile(path("a"), QByteArray(1001, 'x'), error);

    QCOMPARE(setrlimit(RLIMIT_FSIZE, &unlimited), 0);
    QVERIFY(!ok);
    QCOMPARE(error, QStringLiteral("File too large"));
    QCOMPARE(contentOf("a"), QByteArray("old"));
    QCOMPARE(names(), QStringList{QStringLiteral("a")});
#else
    REQUIRE_FACILITY(fileSizeLimit());
#endif
}

void tst_WorkbenchSaveFile::deviceIsWrittenDirectly()
{
    REQUIRE_FACILITY(fullDevice());
    QVERIFY(QFile::link(fullDevicePath, path("full")));
    QString error;

    QVERIFY(!saveFile(path("full"), "text", error));

    QCOMPARE(error, QStringLiteral("No space left on device"));
    QCOMPARE(QFileInfo(fullDevicePath).size(), 0);
}

QTEST_GUILESS_MAIN(tst_WorkbenchSaveFile)
#include "tst_workbench_savefile.moc"
