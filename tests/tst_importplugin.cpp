#include "pluginhost.h"
#include "resultoutline.h"

#include <QTest>

namespace {

/// Calls a function once, when a window gets its title; the dialog gets its title while it is built.
class WindowTitleHook : public QObject
{
public:
    explicit WindowTitleHook(std::function<void()> action) : m_action(std::move(action))
    {
        qApp->installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::WindowTitleChange && m_action)
            std::exchange(m_action, nullptr)();
        return QObject::eventFilter(watched, event);
    }

private:
    std::function<void()> m_action;
};

const QString unknownOperation = QStringLiteral("Ошибка. Операция импорта \"%1\" планином не поддерживается."); // sic

} // namespace

Q_DECLARE_METATYPE(DialogAction)

/// The plug-in object: metadata, instance, operations, and the results of calls without an import.
class tst_ImportPlugin : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void metadataHasOnlyIdAndClass();
    void metacastAcceptsKnownNames_data();
    void metacastAcceptsKnownNames();
    void instanceHasNoParentAndNoMembers();
    void destroyedInstanceIsReplaced();
    void mifIsOfferedFirst();
    void unknownOperationIsReportedOnce_data();
    void unknownOperationIsReportedOnce();
    void unknownOperationKeepsTheSettings();
    void callbackIsSetBeforeTheDialogIsBuilt();
    void missingCallbackDropsMessages();
    void cancelledDialogReturnsNull_data();
    void cancelledDialogReturnsNull();
    void acceptedEmptyDialogReturnsEmptyTable();
    void nextCallKeepsOnlyTheSettings();
};

void tst_ImportPlugin::metadataHasOnlyIdAndClass()
{
    const QJsonObject metaData = PluginHost().metaData();

    QCOMPARE(metaData.keys(),
             (QStringList{QStringLiteral("IID"), QStringLiteral("archreq"), QStringLiteral("className"),
                          QStringLiteral("debug"), QStringLiteral("version")}));
    QCOMPARE(metaData.value(QStringLiteral("IID")).toString(),
             QStringLiteral("zelmarq.Orvindal.ImportGeometryInterface"));
    QCOMPARE(metaData.value(QStringLiteral("className")).toString(), QStringLiteral("ImportPlugin"));
    QCOMPARE(metaData.value(QStringLiteral("version")).toInt(), 0x050f00);
#ifdef QT_NO_DEBUG
    QCOMPARE(metaData.value(QStringLiteral("archreq")).toInt(-1), 0);
    QCOMPARE(metaData.value(QStringLiteral("debug")).toBool(true), false);
#endif
}

void tst_ImportPlugin::metacastAcceptsKnownNames_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<int>("offset"); // of the result from the instance; -1 for null

    const int interfaceOffset = sizeof(QObject);
    QTest::newRow("own class") << QByteArray("ImportPlugin") << 0;
    QTest::newRow("base class") << QByteArray("QObject") << 0;
    QTest::newRow("interface class") << QByteArray("ImportGeometryInterface") << interfaceOffset;
    QTest::newRow("interface identifier")
        << QByteArray("zelmarq.Orvindal.ImportGeometryInterface/1.0") << interfaceOffset;
    QTest::newRow("metadata identifier") << QByteArray("zelmarq.Orvindal.ImportGeometryInterface") << -1;
}

void tst_ImportPlugin::metacastAcceptsKnownNames()
{
    QFETCH(QByteArray, name);
    QFETCH(int, offset);
    PluginHost host;
    QObject *const instance = host.instance();
    QVERIFY(instance != nullptr);

    const char *const result = static_cast<const char *>(instance->qt_metacast(name));
    const char *const object = reinterpret_cast<const char *>(instance);

    QCOMPARE(result == nullptr ? -1 : int(result - object), offset);
}

void tst_ImportPlugin::instanceHasNoParentAndNoMembers()
{
    PluginHost host;
    const QMetaObject *const meta = host.instance()->metaObject();

    QVERIFY(host.instance()->parent() == nullptr);
    QCOMPARE(meta->superClass(), &QObject::staticMetaObject);
    QCOMPARE(meta->methodCount(), meta->methodOffset());
    QCOMPARE(meta->propertyCount(), meta->propertyOffset());
}

void tst_ImportPlugin::destroyedInstanceIsReplaced()
{
    PluginHost host;
    const QPointer<QObject> first = host.instance();
    QCOMPARE(host.instance(), first.data());

    delete first;

    QVERIFY(host.plugin() != nullptr);
    QCOMPARE(host.plugin()->operations().size(), 2);
}

void tst_ImportPlugin::mifIsOfferedFirst()
{
    QCOMPARE(QStringList(PluginHost().plugin()->operations()),
             (QStringList{QStringLiteral("Объекты из MIF"), QStringLiteral("Объекты из DXF")}));
}

void tst_ImportPlugin::unknownOperationIsReportedOnce_data()
{
    QTest::addColumn<QString>("operation");

    QTest::newRow("lower case") << QStringLiteral("Объекты из mif");
    QTest::newRow("no name") << QString();
    QTest::newRow("place marker") << QStringLiteral("%1");
}

void tst_ImportPlugin::unknownOperationIsReportedOnce()
{
    QFETCH(QString, operation);
    PluginHost host;

    const QString result = host.call(operation, doNothing);

    QVERIFY(result.isNull());
    QCOMPARE(host.messages(), QStringList{unknownOperation.arg(operation)});
    QCOMPARE(host.dialogs(), 0);
}

void tst_ImportPlugin::unknownOperationKeepsTheSettings()
{
    PluginHost host;
    QSettings().setValue(QStringLiteral("ImportObjects/pointPref"), QStringLiteral("т"));

    host.call(QStringLiteral("?"), doNothing);

    QCOMPARE(QSettings().value(QStringLiteral("ImportObjects/pointPref")).toString(), QStringLiteral("т"));
    QCOMPARE(QSettings().value(QStringLiteral("ImportObjects/objectPref")).toString(), QStringLiteral(":ЗУ"));
}

// The nested call replaces the callback while the outer call builds its dialog. If the outer call set its own callback
// only after that, its message would reach its own callback.
void tst_ImportPlugin::callbackIsSetBeforeTheDialogIsBuilt()
{
    static QStringList received;
    received.clear();
    PluginHost host;
    const WindowTitleHook hook([&host] {
        host.statusFunc = [](const QString &text) { received.append(text); };
        host.call(QStringLiteral("B"), doNothing);
    });

    host.call(QStringLiteral("A"), doNothing);

    QCOMPARE(received,
             (QStringList{unknownOperation.arg(QStringLiteral("B")), unknownOperation.arg(QStringLiteral("A"))}));
    QCOMPARE(host.messages(), QStringList());
}

void tst_ImportPlugin::missingCallbackDropsMessages()
{
    PluginHost host;
    host.call(QStringLiteral("A"), doNothing);
    QCOMPARE(host.takeMessages().size(), 1);

    host.statusFunc = nullptr;
    const QString result = host.call(fromMif, [&host](DialogDriver &driver) {
        driver.process(host.path(QStringLiteral("missing.mif")));
        driver.accept();
    });

    QVERIFY(!result.isNull());
    QCOMPARE(host.messages(), QStringList());
}

void tst_ImportPlugin::cancelledDialogReturnsNull_data()
{
    QTest::addColumn<DialogAction>("leave");

    const auto row = [](const char *name, const DialogAction &leave) { QTest::newRow(name) << leave; };
    row("Cancel", [](DialogDriver &driver) { driver.cancel(); });
    row("Escape", [](DialogDriver &driver) { QTest::keyClick(driver.dialog(), Qt::Key_Escape); });
    row("window closed", [](DialogDriver &driver) { driver.dialog()->close(); });
}

// A cell editor is open when the dialog closes.
void tst_ImportPlugin::cancelledDialogReturnsNull()
{
    QFETCH(DialogAction, leave);
    PluginHost host;
    QPointer<QLineEdit> editor;

    const QString result = host.call(fromMif, [&](DialogDriver &driver) {
        processLines(host, driver);
        driver.click(driver.table(), 0);
        QTest::keyClick(driver.table(), Qt::Key_F2);
        editor = driver.table()->viewport()->findChild<QLineEdit *>();
        QVERIFY(!editor.isNull());
        leave(driver);
        QVERIFY(!driver.dialog()->isVisible());
    });

    QVERIFY(result.isNull());
    QVERIFY(editor.isNull());
    QCOMPARE(host.messages(), QStringList());
    QCOMPARE(QApplication::topLevelWidgets(), QWidgetList());
}

void tst_ImportPlugin::acceptedEmptyDialogReturnsEmptyTable()
{
    PluginHost host;

    const QString result = host.call(fromDxf, [](DialogDriver &driver) {
        driver.setChecked("updateCheck", true);
        driver.accept();
    });

    QCOMPARE(result, QStringLiteral("\n<FormTable Name=\"Участки\" Update=\"1\"/>"));
}

void tst_ImportPlugin::nextCallKeepsOnlyTheSettings()
{
    PluginHost host;
    QCOMPARE(ResultOutline::lines(importLines(host)).size(), 6);

    const QString result = host.call(fromMif, [](DialogDriver &driver) {
        QCOMPARE(driver.find<QCheckBox>("searchPointDefsCheck")->isChecked(), false);
        QVERIFY(driver.list()->model() == nullptr);
        driver.accept();
    });

    QCOMPARE(result, QStringLiteral("\n<FormTable Name=\"Участки\"/>"));
}

QTEST_MAIN(tst_ImportPlugin)
#include "tst_importplugin.moc"
