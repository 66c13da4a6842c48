#include "allocationfailure.h"
#include "pluginhost.h"
#include "resultoutline.h"

#include <QFileInfo>
#include <QTest>

#include <optional>

#ifdef Q_OS_WIN
#include <qt_windows.h>
#endif

namespace {

#ifdef Q_OS_WIN
constexpr bool areLibrariesListed = true;
#else
const bool areLibrariesListed = QFile::exists(QStringLiteral("/proc/self/maps"));
#endif

/// False where the system does not list the libraries of a process.
bool isPluginMapped()
{
    const QString name = QFileInfo(QStringLiteral(PLUGIN_PATH)).fileName();
#ifdef Q_OS_WIN
    return GetModuleHandleW(reinterpret_cast<const wchar_t *>(name.utf16())) != nullptr;
#else
    QFile maps(QStringLiteral("/proc/self/maps"));
    return maps.open(QIODevice::ReadOnly) && maps.readAll().contains(QFile::encodeName(name));
#endif
}

} // namespace

/// A host that unloads the plug-in and then reads the texts it has received.
class tst_ImportPluginUnload : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textsOutliveTheLibrary();
};

// A QStringLiteral points into the read-only data of the library, which unload() unmaps.
void tst_ImportPluginUnload::textsOutliveTheLibrary()
{
    PluginHost host;
    const QString missing = host.path(QStringLiteral("missing.mif"));
    const QString other = host.write(QStringLiteral("other.mif"), "x\n");
    const QString single = host.writeMif(QStringLiteral("single"), QByteArray());
    const QStringList operations = host.plugin()->operations();
    host.call(QStringLiteral("?"), doNothing);
    const QString result = host.call(fromMif, [&](DialogDriver &driver) {
        driver.setChecked("searchPointDefsCheck", false);
        for (const QString &path : {missing, other, single})
            driver.process(path);
        processLines(host, driver);
        driver.accept();
    });
    std::optional<AllocationFailure> failure;
    host.call(fromMif, [&](DialogDriver &driver) {
        driver.process(host.writeMif(QStringLiteral("large"), QByteArray("LINE 1 2 3 4\n").repeated(1000)));
        failure.emplace(1);
        driver.accept();
    });
    failure.reset();
    QCOMPARE(isPluginMapped(), areLibrariesListed);

    QVERIFY(host.unload());

    QVERIFY(!isPluginMapped());
    const auto withPath = [](const char *text, const QString &path) {
        return QString::fromUtf8(text) + QDir::toNativeSeparators(path);
    };
    QStringList messages{QStringLiteral("Ошибка. Операция импорта \"?\" планином не поддерживается."), // sic
                         withPath("Ошибка открытия файла ", missing),
                         withPath("Ошибка. Файл ", other) + QStringLiteral(" не соответствует формату MIF"),
                         withPath("Ошибка открытия MID файла ", host.path(QStringLiteral("single.mid")))};
    if (AllocationFailure::isAvailable)
        messages.append(QStringLiteral("Недостаточно памяти для результата импорта"));
    QCOMPARE(host.messages(), messages);
    QCOMPARE(ResultOutline::lines(result).size(), 6);
    QCOMPARE(operations, (QStringList{fromMif, fromDxf}));
    QCOMPARE(QSettings().value(QStringLiteral("ImportObjects/pointPref")).toString(), QStringLiteral("н"));
}

QTEST_MAIN(tst_ImportPluginUnload)
#include "tst_importplugin_unload.moc"
