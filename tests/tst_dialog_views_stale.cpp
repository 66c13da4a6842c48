#include "viewtesting.h"

#include <QDir>
#include <QSignalSpy>

#include <functional>

/// The views while they are older than the objects: after a run that brought none, and in the midst of a run.
class tst_DialogViewsStale : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void viewsOutliveAnEmptyRun_data();
    void viewsOutliveAnEmptyRun();
    void editorOutlivesAnEmptyRun();
    void formerRowIsPassedOver();
    void formerRowIsPassedOverInTheMidstOfARun();
    void sortingAfterAnEmptyRunLeavesTheTable();
    void fullRunShowsItsObjectsAgain();

    void hostActsInTheMidstOfARun_data();
    void hostActsInTheMidstOfARun();
    void hostActsInTheMidstOfTheFirstRun_data();
    void hostActsInTheMidstOfTheFirstRun();
    void hostActsInTheMidstOfAnEmptyRun_data();
    void hostActsInTheMidstOfAnEmptyRun();

private:
    QString brokenPlan() const;
    QString missingPlan() const { return files.path(QStringLiteral("missing.mif")); }

    SettingsSandbox settings;
    TextFixture files;
};

namespace {

QStringList &messages()
{
    static QStringList taken;
    return taken;
}

/// What the host does with a message, besides taking it.
std::function<void()> &reaction()
{
    static std::function<void()> function;
    return function;
}

void takeMessage(const QString &text)
{
    messages().append(text);
    if (reaction())
        reaction()();
}

void actAndRepaint(Dialog &dialog, Action act)
{
    dialog.grab();
    act(dialog);
    QCoreApplication::processEvents();
    dialog.grab();
}

/// Calls the slot as the view does.
void makeCurrent(Dialog &dialog, const QModelIndex &index)
{
    QVERIFY(QMetaObject::invokeMethod(&dialog, "procCurrentChanged", Q_ARG(QModelIndex, index),
                                      Q_ARG(QModelIndex, QModelIndex())));
}

} // namespace

void tst_DialogViewsStale::initTestCase()
{
    QLocale::setDefault(QLocale::c());
}

void tst_DialogViewsStale::init()
{
    settings.clear();
    messages().clear();
    setStatusFunc(takeMessage);
}

void tst_DialogViewsStale::cleanup()
{
    setStatusFunc(nullptr);
    reaction() = nullptr;
}

/// Two objects, not in the order of their designations, before an error in line 7.
QString tst_DialogViewsStale::brokenPlan() const
{
    files.write(QStringLiteral("broken.mid"), {QStringLiteral("я"), QStringLiteral("ю"), QStringLiteral("э")});
    return files.write(
        QStringLiteral("broken.mif"),
        mifLines({QStringLiteral("LINE 1 1 2 2"), QStringLiteral("LINE 3 3 4 4"), QStringLiteral("LINE")}));
}

void tst_DialogViewsStale::viewsOutliveAnEmptyRun_data()
{
    addActions();
}

void tst_DialogViewsStale::viewsOutliveAnEmptyRun()
{
    QFETCH(Action, act);
    Dialog dialog;
    showPlan(dialog, files);
    selectRow(dialog, 1);
    dialog.grab();
    const QStringList list = shown(dialog.mapModel);
    const QStringList table = shown(dialog.polygonModel);

    process(dialog, missingPlan());
    QVERIFY(isNothingOrOld(shown(dialog.mapModel), list));
    QVERIFY(isNothingOrOld(shown(dialog.polygonModel), table));
    actAndRepaint(dialog, act);

    QVERIFY(isNothingOrOld(shown(dialog.mapModel), list));
    QVERIFY(isNothingOrOld(shown(dialog.polygonModel), table));
    QCOMPARE(listOf(dialog)->model(), &dialog.mapModel);
    QCOMPARE(tableViewOf(dialog)->model(), &dialog.polygonModel);
    QVERIFY(dialog.objects.isEmpty());
    QCOMPARE(dialog.stringResult(), QStringLiteral("\n<FormTable/>"));
}

void tst_DialogViewsStale::editorOutlivesAnEmptyRun()
{
    Dialog dialog;
    showPlan(dialog, files);
    const QStringList table = shown(dialog.polygonModel);
    QVERIFY(openEditor(tableViewOf(dialog), QStringLiteral("правка")) != nullptr);
    QVERIFY(openEditor(listOf(dialog), QStringLiteral("правка")) != nullptr);
    const QSignalSpy listChanged(&dialog.mapModel, &QAbstractItemModel::dataChanged);
    const QSignalSpy tableChanged(&dialog.polygonModel, &QAbstractItemModel::dataChanged);

    process(dialog, missingPlan());
    actAndRepaint(dialog, endEditing);

    QCOMPARE(listChanged.count() + tableChanged.count(), 0);
    QVERIFY(dialog.objects.isEmpty());
    QVERIFY(isNothingOrOld(shown(dialog.polygonModel), table));
}

// An index of the list may be older than the objects.
void tst_DialogViewsStale::formerRowIsPassedOver()
{
    Dialog dialog;
    showPlan(dialog, files);
    const QModelIndex third = dialog.mapModel.index(2, 0);
    process(dialog, missingPlan());
    const QSignalSpy reset(&dialog.polygonModel, &QAbstractItemModel::modelReset);

    makeCurrent(dialog, third);

    QCOMPARE(reset.count(), 0);
    dialog.grab();
}

// The objects that are there already may move when more are read.
void tst_DialogViewsStale::formerRowIsPassedOverInTheMidstOfARun()
{
    Dialog dialog;
    showPlan(dialog, files);
    const QModelIndex first = dialog.mapModel.index(0, 0);
    const QSignalSpy reset(&dialog.polygonModel, &QAbstractItemModel::modelReset);
    int resets = -1;
    reaction() = [&] {
        makeCurrent(dialog, first);
        resets = reset.count();
    };

    process(dialog, brokenPlan());

    QCOMPARE(resets, 0);
    QCOMPARE(reset.count(), 1);
}

void tst_DialogViewsStale::sortingAfterAnEmptyRunLeavesTheTable()
{
    Dialog dialog;
    showPlan(dialog, files);
    process(dialog, missingPlan());
    const QSignalSpy listReset(&dialog.mapModel, &QAbstractItemModel::modelReset);
    const QSignalSpy tableReset(&dialog.polygonModel, &QAbstractItemModel::modelReset);

    press(dialog, QStringLiteral("sortButton"));

    QCOMPARE(listReset.count(), 1);
    QCOMPARE(dialog.mapModel.rowCount(), 0);
    QCOMPARE(tableReset.count(), 0);
    dialog.grab();
}

void tst_DialogViewsStale::fullRunShowsItsObjectsAgain()
{
    Dialog dialog;
    showPlan(dialog, files);
    process(dialog, missingPlan());
    actAndRepaint(dialog, walkByKeys);

    showPlan(dialog, files);
    selectRow(dialog, 1);

    QCOMPARE(shown(dialog.mapModel).join(QLatin1Char(' ')), QStringLiteral("в б а"));
    QCOMPARE(shown(dialog.polygonModel), tableOf(QStringLiteral("б")));
}

void tst_DialogViewsStale::hostActsInTheMidstOfARun_data()
{
    addActions();
}

void tst_DialogViewsStale::hostActsInTheMidstOfARun()
{
    QFETCH(Action, act);
    Dialog dialog;
    showPlan(dialog, files);
    openEditor(listOf(dialog), QStringLiteral("правка"));
    const QStringList list = shown(dialog.mapModel);
    const QStringList table = shown(dialog.polygonModel);
    bool isStale = false;
    reaction() = [&] {
        actAndRepaint(dialog, act);
        isStale = isNothingOrOld(shown(dialog.mapModel), list) && isNothingOrOld(shown(dialog.polygonModel), table);
    };

    process(dialog, brokenPlan());

    QVERIFY(isStale);
    QCOMPARE(messages(), QStringList{QStringLiteral("Ошибка чтения линии из строки: 7")});
    QCOMPARE(shown(dialog.mapModel).join(QLatin1Char(' ')), QStringLiteral("я ю"));
    QCOMPARE(shown(dialog.polygonModel).first(), QStringLiteral("н1|1.00|1.00"));
    dialog.grab();
}

void tst_DialogViewsStale::hostActsInTheMidstOfTheFirstRun_data()
{
    addActions();
}

void tst_DialogViewsStale::hostActsInTheMidstOfTheFirstRun()
{
    QFETCH(Action, act);
    Dialog dialog;
    enter(dialog, QStringLiteral("encodingCombo"), QStringLiteral("UTF-8"));
    enter(dialog, QStringLiteral("searchPointDefsCheck"), false);
    dialog.show();
    reaction() = [&] { actAndRepaint(dialog, act); };

    process(dialog, brokenPlan());

    QCOMPARE(messages().size(), 1);
    QCOMPARE(shown(dialog.mapModel).join(QLatin1Char(' ')), QStringLiteral("я ю"));
    QCOMPARE(shown(dialog.polygonModel).first(), QStringLiteral("н1|1.00|1.00"));
}

void tst_DialogViewsStale::hostActsInTheMidstOfAnEmptyRun_data()
{
    addActions();
}

void tst_DialogViewsStale::hostActsInTheMidstOfAnEmptyRun()
{
    QFETCH(Action, act);
    Dialog dialog;
    showPlan(dialog, files);
    selectRow(dialog, 2);
    const QStringList list = shown(dialog.mapModel);
    const QStringList table = shown(dialog.polygonModel);
    reaction() = [&] { actAndRepaint(dialog, act); };

    process(dialog, missingPlan());

    const QString message = QStringLiteral("Ошибка открытия файла %1").arg(QDir::toNativeSeparators(missingPlan()));
    QCOMPARE(messages(), QStringList{message});
    QVERIFY(dialog.objects.isEmpty());
    QVERIFY(isNothingOrOld(shown(dialog.mapModel), list));
    QVERIFY(isNothingOrOld(shown(dialog.polygonModel), table));
}

QTEST_MAIN(tst_DialogViewsStale)
#include "tst_dialog_views_stale.moc"
