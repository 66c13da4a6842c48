#include "pluginhost.h"

#include <QCborMap>
#include <QCborStreamReader>
#include <QCborValue>
#include <QTest>

#include <functional>
#include <utility>

namespace {

/// Does something once, as soon as a window gets its title: the dialog does while it is built.
class OnTitle : public QObject
{
public:
    explicit OnTitle(std::function<void()> action) : m_action(std::move(action)) { qApp->installEventFilter(this); }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::WindowTitleChange && m_action)
            std::exchange(m_action, nullptr)();
        return QObject::eventFilter(watched, event);
    }

private:
    std::function<void()> m_action;
};

const QString refusal = QStringLiteral("Ошибка. Операция импорта \"%1\" планином не поддерживается.");

// All that the dialog remembers, as the settings list it.
const QStringList rememberedKeys{
    QStringLiteral("lastPath"),        QStringLiteral("objectPref"),    QStringLiteral("objectStartNum"),
    QStringLiteral("pointPref"),       QStringLiteral("pointStartNum"), QStringLiteral("searchObjectDefs"),
    QStringLiteral("searchPointDefs"), QStringLiteral("size"),          QStringLiteral("splitterSizes"),
    QStringLiteral("update"),          QStringLiteral("usePointFile"),
};

QVariant remembered(const QString &key)
{
    return QSettings().value(QStringLiteral("ImportObjects/") + key);
}

QStringList remembered()
{
    QSettings settings;
    settings.beginGroup(QStringLiteral("ImportObjects"));
    return settings.childKeys();
}

} // namespace

class tst_ImportPlugin : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void metadataNamesTheInterfaceAndTheClass();
    void metadataSaysNothingElse();
    void instanceAnswersToItsNames_data();
    void instanceAnswersToItsNames();
    void instanceIsAnInterface();
    void instanceHasNoMembersForOthers();
    void destroyedInstanceIsReplaced();
    void mifIsOfferedFirst();
    void otherOperationIsRefused_data();
    void otherOperationIsRefused();
    void refusalReadsAndSavesSettings();
    void refusedCallForgetsNothing();
    void listenerOfTheLastCallIsTheOnlyOne();
    void listenerIsKnownBeforeTheDialogIsBuilt();
};

void tst_ImportPlugin::metadataNamesTheInterfaceAndTheClass()
{
    const QJsonObject metaData = PluginHost().metaData();

    QCOMPARE(metaData.value(QStringLiteral("IID")).toString(),
             QStringLiteral("zelmarq.Orvindal.ImportGeometryInterface"));
    QCOMPARE(metaData.value(QStringLiteral("className")).toString(), QStringLiteral("ImportPlugin"));
    QCOMPARE(metaData.value(QStringLiteral("version")).toInt(), 0x050f00);
    QVERIFY(metaData.value(QStringLiteral("MetaData")).toObject().isEmpty());
#ifdef QT_NO_DEBUG
    QCOMPARE(metaData.value(QStringLiteral("debug")).toBool(true), false);
#endif
}

// The block as it lies in the file: a mark, four bytes and a map.
void tst_ImportPlugin::metadataSaysNothingElse()
{
    QFile file(QStringLiteral(PLUGIN_PATH));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray library = file.readAll();
    const int mark = library.indexOf("QTMETADATA !");
    QVERIFY(mark >= 0);

#ifdef QT_NO_DEBUG
    QCOMPARE(library.mid(mark + 12, 4).toHex(), QByteArray("00050f00"));
#endif
    QCborStreamReader reader(library.mid(mark + 16));
    const QCborMap map = QCborValue::fromCbor(reader).toMap();
    QCOMPARE(map.size(), 2);
    QCOMPARE(map.value(2).toString(), QStringLiteral("zelmarq.Orvindal.ImportGeometryInterface"));
    QCOMPARE(map.value(3).toString(), QStringLiteral("ImportPlugin"));
}

void tst_ImportPlugin::instanceAnswersToItsNames_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<int>("offset"); // of the answer in the instance, or -1 when there is none

    const int interfacePart = sizeof(QObject);
    QTest::newRow("own class") << QByteArray("ImportPlugin") << 0;
    QTest::newRow("base class") << QByteArray("QObject") << 0;
    QTest::newRow("interface by class") << QByteArray("ImportGeometryInterface") << interfacePart;
    QTest::newRow("interface by identifier")
        << QByteArray("zelmarq.Orvindal.ImportGeometryInterface/1.0") << interfacePart;
    QTest::newRow("identifier of the metadata") << QByteArray("zelmarq.Orvindal.ImportGeometryInterface") << -1;
    QTest::newRow("identifier of another version") << QByteArray("zelmarq.Orvindal.ImportGeometryInterface/1.1") << -1;
    QTest::newRow("in other letters") << QByteArray("importplugin") << -1;
    QTest::newRow("stranger") << QByteArray("QWidget") << -1;
}

void tst_ImportPlugin::instanceAnswersToItsNames()
{
    QFETCH(QByteArray, name);
    QFETCH(int, offset);
    PluginHost host;
    QObject *const instance = host.instance();
    QVERIFY(instance != nullptr);

    const char *const answer = static_cast<const char *>(instance->qt_metacast(name));
    const char *const object = reinterpret_cast<const char *>(instance);

    QCOMPARE(answer == nullptr ? -1 : int(answer - object), offset);
    QCOMPARE(instance->inherits(name), offset >= 0);
}

void tst_ImportPlugin::instanceIsAnInterface()
{
    PluginHost host;

    QVERIFY2(host.plugin() != nullptr, "the loaded object is no import plug-in");
    QVERIFY(host.instance()->parent() == nullptr);
}

void tst_ImportPlugin::instanceHasNoMembersForOthers()
{
    PluginHost host;
    const QMetaObject *const meta = host.instance()->metaObject();

    QCOMPARE(meta->className(), "ImportPlugin");
    QCOMPARE(meta->superClass(), &QObject::staticMetaObject);
    QCOMPARE(meta->methodCount(), meta->methodOffset());
    QCOMPARE(meta->propertyCount(), meta->propertyOffset());
    QCOMPARE(meta->enumeratorCount(), meta->enumeratorOffset());
    QCOMPARE(meta->classInfoCount(), meta->classInfoOffset());
    QCOMPARE(meta->constructorCount(), 0);
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
    PluginHost host;
    const QStringList offered{QStringLiteral("Объекты из MIF"), QStringLiteral("Объекты из DXF")};

    QStringList operations = host.plugin()->operations();
    QCOMPARE(operations, offered);

    operations.clear();
    QCOMPARE(QStringList(host.plugin()->operations()), offered);
}

void tst_ImportPlugin::otherOperationIsRefused_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QString>("message");

    QTest::newRow("MIF in lower case")
        << QStringLiteral("Объекты из mif")
        << QStringLiteral("Ошибка. Операция импорта \"Объекты из mif\" планином не поддерживается.");
    QTest::newRow("DXF in lower case")
        << QStringLiteral("Объекты из dxf")
        << QStringLiteral("Ошибка. Операция импорта \"Объекты из dxf\" планином не поддерживается.");
    QTest::newRow("all in lower case")
        << QStringLiteral("объекты из MIF")
        << QStringLiteral("Ошибка. Операция импорта \"объекты из MIF\" планином не поддерживается.");
    QTest::newRow("blank at the end")
        << QStringLiteral("Объекты из MIF ")
        << QStringLiteral("Ошибка. Операция импорта \"Объекты из MIF \" планином не поддерживается.");
    QTest::newRow("only the beginning") << QStringLiteral("Объекты из")
                                        << QStringLiteral(
                                               "Ошибка. Операция импорта \"Объекты из\" планином не поддерживается.");
    QTest::newRow("place marker") << QStringLiteral("%1")
                                  << QStringLiteral("Ошибка. Операция импорта \"%1\" планином не поддерживается.");
    QTest::newRow("no name") << QString()
                             << QStringLiteral("Ошибка. Операция импорта \"\" планином не поддерживается.");
}

void tst_ImportPlugin::otherOperationIsRefused()
{
    QFETCH(QString, operation);
    QFETCH(QString, message);
    PluginHost host;

    const QString result = host.call(operation, [](DialogDriver &) {});

    QVERIFY(result.isNull());
    QCOMPARE(host.messages(), QStringList{message});
    QCOMPARE(host.dialogs(), 0);
}

void tst_ImportPlugin::refusalReadsAndSavesSettings()
{
    PluginHost host;
    QCOMPARE(remembered(), QStringList());

    host.call(QStringLiteral("?"), [](DialogDriver &) {});

    QCOMPARE(remembered(), rememberedKeys);
    QCOMPARE(remembered(QStringLiteral("size")).toSize(), QSize(400, 600));
    QCOMPARE(remembered(QStringLiteral("pointPref")).toString(), QStringLiteral("н"));
    QCOMPARE(remembered(QStringLiteral("objectPref")).toString(), QStringLiteral(":ЗУ"));
    QCOMPARE(remembered(QStringLiteral("pointStartNum")).toInt(), 1);
    QCOMPARE(remembered(QStringLiteral("searchPointDefs")).toBool(), true);
    QCOMPARE(remembered(QStringLiteral("update")).toBool(), false);
}

void tst_ImportPlugin::refusedCallForgetsNothing()
{
    PluginHost host;
    QSettings().setValue(QStringLiteral("ImportObjects/pointPref"), QStringLiteral("т"));
    QSettings().setValue(QStringLiteral("ImportObjects/objectStartNum"), 70);
    QSettings().setValue(QStringLiteral("ImportObjects/FieldNumValueMap/6"), QStringLiteral("Метод"));

    host.call(QStringLiteral("?"), [](DialogDriver &) {});

    QCOMPARE(remembered(), rememberedKeys);
    QCOMPARE(remembered(QStringLiteral("pointPref")).toString(), QStringLiteral("т"));
    QCOMPARE(remembered(QStringLiteral("objectStartNum")).toInt(), 70);
    QCOMPARE(remembered(QStringLiteral("FieldNumValueMap/6")).toString(), QStringLiteral("Метод"));
}

void tst_ImportPlugin::listenerOfTheLastCallIsTheOnlyOne()
{
    static QStringList heard;
    heard.clear();
    PluginHost host;
    host.call(QStringLiteral("A"), [](DialogDriver &) {});

    host.statusFunc = [](const QString &text) { heard.append(text); };
    host.call(QStringLiteral("B"), [](DialogDriver &) {});

    QCOMPARE(host.messages(), QStringList{refusal.arg(QStringLiteral("A"))});
    QCOMPARE(heard, QStringList{refusal.arg(QStringLiteral("B"))});
}

// The listener of a call that is made while the dialog of another is built is the later one of the two.
void tst_ImportPlugin::listenerIsKnownBeforeTheDialogIsBuilt()
{
    static QStringList heard;
    heard.clear();
    PluginHost host;
    const OnTitle within([&host] {
        host.statusFunc = [](const QString &text) { heard.append(text); };
        host.call(QStringLiteral("B"), [](DialogDriver &) {});
    });

    host.call(QStringLiteral("A"), [](DialogDriver &) {});

    QCOMPARE(heard, (QStringList{refusal.arg(QStringLiteral("B")), refusal.arg(QStringLiteral("A"))}));
    QCOMPARE(host.messages(), QStringList());
}

QTEST_MAIN(tst_ImportPlugin)
#include "tst_importplugin.moc"
