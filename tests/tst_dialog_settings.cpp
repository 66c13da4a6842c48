#include "dialogtesting.h"

#include <QLabel>
#include <QSpinBox>
#include <QSplitter>
#include <QTest>

Q_DECLARE_METATYPE(QDialog::DialogCode)

class tst_DialogSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void firstRunHasDefaults_data();
    void firstRunHasDefaults();
    void firstRunHasItsSizeAndNoFields();
    void choiceIsKept_data();
    void choiceIsKept();
    void choiceIsNotKept_data();
    void choiceIsNotKept();
    void sizeIsKept();
    void lastPathIsKept();
    void splitterIsKept();
    void everyDestructionSaves_data();
    void everyDestructionSaves();
    void settingsAreReadOncePerDialog();
    void nothingElseIsStored();
    void settingsOfTheHostAreLeftAlone();
    void pointFileRowFollowsTheStoredChoice_data();
    void pointFileRowFollowsTheStoredChoice();

private:
    SettingsSandbox settings;
};

namespace {

QByteArray splitterState(const Dialog &dialog)
{
    return child<QSplitter>(dialog, QStringLiteral("splitter"))->saveState();
}

} // namespace

void tst_DialogSettings::init()
{
    settings.clear();
}

void tst_DialogSettings::firstRunHasDefaults_data()
{
    QTest::addColumn<QVariant>("value");

    QTest::newRow("searchPointDefsCheck") << QVariant(true);
    QTest::newRow("pointPrefEdit") << QVariant(QStringLiteral("н"));
    QTest::newRow("pointStartNumSpin") << QVariant(1);
    QTest::newRow("searchObjectDefsCheck") << QVariant(true);
    QTest::newRow("objectPrefEdit") << QVariant(QStringLiteral(":ЗУ"));
    QTest::newRow("objectStartNumSpin") << QVariant(1);
    QTest::newRow("usePointFileCheck") << QVariant(false);
    QTest::newRow("updateCheck") << QVariant(false);
    QTest::newRow("objectFileNameEdit") << QVariant(QString());
    QTest::newRow("pointFileNameEdit") << QVariant(QString());
    QTest::newRow("encodingCombo") << QVariant(QStringLiteral("Default"));
    QTest::newRow("swapXYCheck") << QVariant(false);
    QTest::newRow("fieldSpin_0") << QVariant(4);
    QTest::newRow("fieldEdit_0") << QVariant(QString());
}

void tst_DialogSettings::firstRunHasDefaults()
{
    QFETCH(QVariant, value);
    const Dialog dialog;

    QCOMPARE(entered(dialog, QString::fromLatin1(QTest::currentDataTag())), value);
}

void tst_DialogSettings::firstRunHasItsSizeAndNoFields()
{
    const Dialog dialog;

    QCOMPARE(dialog.size(), QSize(400, 600));
    QVERIFY(dialog.fieldNumValueMap.isEmpty());
    QCOMPARE(dialog.fieldCount, 1);
    QVERIFY(dialog.findChild<QSpinBox *>(QStringLiteral("fieldSpin_1")) == nullptr);
}

void tst_DialogSettings::choiceIsKept_data()
{
    QTest::addColumn<QVariant>("value");

    QTest::newRow("searchPointDefsCheck") << QVariant(false);
    QTest::newRow("pointPrefEdit") << QVariant(QStringLiteral("т. \"1\", ё"));
    QTest::newRow("pointStartNumSpin") << QVariant(999999999);
    QTest::newRow("searchObjectDefsCheck") << QVariant(false);
    QTest::newRow("objectPrefEdit") << QVariant(QStringLiteral("50:01:0000000:ЗУ"));
    QTest::newRow("objectStartNumSpin") << QVariant(17);
    QTest::newRow("usePointFileCheck") << QVariant(true);
    QTest::newRow("updateCheck") << QVariant(true);
}

void tst_DialogSettings::choiceIsKept()
{
    QFETCH(QVariant, value);
    const QString name = QString::fromLatin1(QTest::currentDataTag());
    {
        const Dialog dialog;
        QVERIFY(entered(dialog, name) != value);
        enter(dialog, name, value);
    }

    const Dialog later;

    QCOMPARE(entered(later, name), value);
}

void tst_DialogSettings::choiceIsNotKept_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QVariant>("later");

    QTest::newRow("objectFileNameEdit") << QVariant(QStringLiteral("план.mif")) << QVariant(QString());
    QTest::newRow("pointFileNameEdit") << QVariant(QStringLiteral("точки.mif")) << QVariant(QString());
    QTest::newRow("encodingCombo") << QVariant(QStringLiteral("UTF-8")) << QVariant(QStringLiteral("Default"));
    QTest::newRow("swapXYCheck") << QVariant(true) << QVariant(false);
}

void tst_DialogSettings::choiceIsNotKept()
{
    QFETCH(QVariant, value);
    QFETCH(QVariant, later);
    const QString name = QString::fromLatin1(QTest::currentDataTag());
    {
        const Dialog dialog;
        enter(dialog, name, value);
    }

    const Dialog dialog;

    QCOMPARE(entered(dialog, name), later);
}

void tst_DialogSettings::sizeIsKept()
{
    {
        Dialog dialog;
        dialog.resize(1010, 707);
    }
    const Dialog later;

    QCOMPARE(later.size(), QSize(1010, 707));
}

void tst_DialogSettings::lastPathIsKept()
{
    settings.store(QStringLiteral("lastPath"), QStringLiteral("/съёмка/план 1.mif"));
    delete new Dialog;

    QCOMPARE(settings.stored(QStringLiteral("lastPath")).toString(), QStringLiteral("/съёмка/план 1.mif"));
}

void tst_DialogSettings::splitterIsKept()
{
    QByteArray state;
    {
        const Dialog dialog;
        auto *const splitter = child<QSplitter>(dialog, QStringLiteral("splitter"));
        splitter->setSizes({123, 77});
        splitter->setChildrenCollapsible(false);
        QVERIFY(splitter->saveState() != splitterState(Dialog()));
        state = splitter->saveState();
    }
    QCOMPARE(settings.stored(QStringLiteral("splitterSizes")).toByteArray(), state);

    const Dialog later;

    QCOMPARE(splitterState(later), state);
}

void tst_DialogSettings::everyDestructionSaves_data()
{
    QTest::addColumn<QDialog::DialogCode>("code");
    QTest::addColumn<bool>("isShown");

    QTest::newRow("accepted") << QDialog::Accepted << true;
    QTest::newRow("rejected") << QDialog::Rejected << true;
    QTest::newRow("never shown") << QDialog::Rejected << false;
}

void tst_DialogSettings::everyDestructionSaves()
{
    QFETCH(QDialog::DialogCode, code);
    QFETCH(bool, isShown);
    {
        Dialog dialog;
        enter(dialog, QStringLiteral("pointPrefEdit"), QStringLiteral("т"));
        if (isShown) {
            dialog.show();
            dialog.done(code);
        }
        QVERIFY(QSettings().allKeys().isEmpty());
    }
    QCOMPARE(settings.stored(QStringLiteral("pointPref")).toString(), QStringLiteral("т"));
}

void tst_DialogSettings::settingsAreReadOncePerDialog()
{
    Dialog dialog;
    settings.store(QStringLiteral("pointPref"), QStringLiteral("чужой"));
    dialog.show();
    QCOMPARE(entered(dialog, QStringLiteral("pointPrefEdit")).toString(), QStringLiteral("н"));

    dialog.readSettings();
    QCOMPARE(entered(dialog, QStringLiteral("pointPrefEdit")).toString(), QStringLiteral("чужой"));
}

void tst_DialogSettings::nothingElseIsStored()
{
    delete new Dialog;

    QSettings store;
    QStringList keys = store.allKeys();
    keys.sort();
    const QString names = QStringLiteral("lastPath objectPref objectStartNum pointPref pointStartNum searchObjectDefs "
                                         "searchPointDefs size splitterSizes update usePointFile");
    QStringList expected;
    for (const QString &name : names.split(QLatin1Char(' ')))
        expected.append(QStringLiteral("ImportObjects/") + name);
    QCOMPARE(keys, expected);
}

void tst_DialogSettings::settingsOfTheHostAreLeftAlone()
{
    QSettings().setValue(QStringLiteral("size"), QSize(11, 12));
    QSettings().setValue(QStringLiteral("FieldNumValueMap/3"), QStringLiteral("чужое"));
    settings.store(QStringLiteral("colour"), 7);
    delete new Dialog;

    QCOMPARE(QSettings().value(QStringLiteral("size")).toSize(), QSize(11, 12));
    QCOMPARE(QSettings().value(QStringLiteral("FieldNumValueMap/3")).toString(), QStringLiteral("чужое"));
    QCOMPARE(settings.stored(QStringLiteral("colour")).toInt(), 7);
}

void tst_DialogSettings::pointFileRowFollowsTheStoredChoice_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<bool>("isShown");
    QTest::addColumn<QString>("label");

    QTest::newRow("nothing stored") << QVariant() << false << QStringLiteral("Файл:");
    QTest::newRow("one file") << QVariant(false) << false << QStringLiteral("Файл:");
    QTest::newRow("two files") << QVariant(true) << true << QStringLiteral("Файл объектов:");
}

void tst_DialogSettings::pointFileRowFollowsTheStoredChoice()
{
    QFETCH(QVariant, stored);
    QFETCH(bool, isShown);
    QFETCH(QString, label);
    if (stored.isValid())
        settings.store(QStringLiteral("usePointFile"), stored);
    const Dialog dialog;

    for (const char *name : {"pointFileLabel", "pointFileNameEdit", "pointFileButton"})
        QCOMPARE(child(dialog, QLatin1String(name))->isVisibleTo(&dialog), isShown);
    QCOMPARE(child<QLabel>(dialog, QStringLiteral("objectFileLabel"))->text(), label);
}

QTEST_MAIN(tst_DialogSettings)
#include "tst_dialog_settings.moc"
