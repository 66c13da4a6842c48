#include "viewtesting.h"

#include <QSignalSpy>

#include <functional>

/// A user action on the views and the buttons.
using Action = void (*)(Dialog &dialog);
Q_DECLARE_METATYPE(Action)

/// The views while they are stale: during a run and after a run without objects.
class tst_DialogViewsStale : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }
    void init();
    void cleanupTestCase() { setStatusFunc(nullptr); }

    void actionAfterEmptyRunIsHarmless_data();
    void actionAfterEmptyRunIsHarmless();
    void actionDuringRunIsHarmless_data();
    void actionDuringRunIsHarmless();
    void staleRowIsIgnored();

private:
    /// Writes a file with two unsorted objects and an error in line 7.
    QString brokenFile() const;
    QString missingFile() const { return files.path(QStringLiteral("missing.mif")); }

    SettingsSandbox settings;
    TextFixture files;
};

namespace {

QStringList &messages()
{
    static QStringList texts;
    return texts;
}

/// The reaction of the host to a message; may be empty.
std::function<void()> &reaction()
{
    static std::function<void()> function;
    return function;
}

void handleMessage(const QString &text)
{
    messages().append(text);
    if (reaction())
        reaction()();
}

void clickIntoViews(Dialog &dialog)
{
    for (const QAbstractItemView *view : viewsOf(dialog)) {
        for (const QPoint &position : {QPoint(20, 8), QPoint(20, 30), QPoint(150, 50)}) {
            QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, position);
            QTest::mouseDClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, position);
            commit(view, QStringLiteral("щелчок"));
        }
    }
}

void pressKeysInViews(Dialog &dialog)
{
    for (QAbstractItemView *view : viewsOf(dialog)) {
        for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Up, Qt::Key_End, Qt::Key_Home, Qt::Key_PageDown})
            QTest::keyClick(view, key);
        QTest::keyClick(view, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(view, Qt::Key_F2);
        commit(view, QStringLiteral("клавиша"));
    }
}

void layOutViews(Dialog &dialog)
{
    dialog.resize(dialog.size() + QSize(40, 90));
    tableViewOf(dialog)->resizeColumnsToContents();
    tableViewOf(dialog)->resizeRowsToContents();
    for (QAbstractItemView *view : viewsOf(dialog)) {
        view->scrollToBottom();
        view->keyboardSearch(QStringLiteral("н"));
        view->reset();
    }
}

void commitEditors(Dialog &dialog)
{
    for (const QAbstractItemView *view : viewsOf(dialog))
        commit(view, QStringLiteral("правка"));
}

void addActions()
{
    QTest::addColumn<Action>("act");

    const auto row = [](const char *name, Action act) { QTest::newRow(name) << act; };
    row("click", clickIntoViews);
    row("keys", pressKeysInViews);
    row("layout", layOutViews);
    row("end of editing", commitEditors);
    row("last row", [](Dialog &dialog) { selectRow(dialog, 2); });
    row("sort", [](Dialog &dialog) { press(dialog, "sortButton"); });
    row("process", [](Dialog &dialog) { press(dialog, "startButton"); });
    row("extra field", [](Dialog &dialog) { press(dialog, "plusToolButton"); });
    row("OK", [](Dialog &dialog) { dialog.accept(); });
}

void actAndRepaint(Dialog &dialog, Action act)
{
    dialog.grab();
    act(dialog);
    QCoreApplication::processEvents();
    dialog.grab();
}

/// True when no cell of the models has a text.
bool isBlank(const Dialog &dialog)
{
    const QString texts = (shown(dialog.mapModel) + shown(dialog.polygonModel)).join(QString());
    return texts.count(QLatin1Char('-')) + texts.count(QLatin1Char('|')) == texts.size();
}

} // namespace

void tst_DialogViewsStale::init()
{
    settings.clear();
    messages().clear();
    reaction() = nullptr;
    setStatusFunc(handleMessage);
}

QString tst_DialogViewsStale::brokenFile() const
{
    files.write(QStringLiteral("broken.mid"), list("я, ю, э"));
    return files.write(QStringLiteral("broken.mif"), mifLines(list("LINE 1 1 2 2, LINE 3 3 4 4, LINE")));
}

void tst_DialogViewsStale::actionAfterEmptyRunIsHarmless_data()
{
    addActions();
}

void tst_DialogViewsStale::actionAfterEmptyRunIsHarmless()
{
    QFETCH(Action, act);
    Dialog dialog;
    showPlan(dialog, files);
    for (QAbstractItemView *view : viewsOf(dialog))
        QVERIFY(openEditor(view, QStringLiteral("правка")) != nullptr);
    const QSignalSpy listChanged(&dialog.mapModel, &QAbstractItemModel::dataChanged);
    const QSignalSpy tableChanged(&dialog.polygonModel, &QAbstractItemModel::dataChanged);

    process(dialog, missingFile());
    actAndRepaint(dialog, act);

    QVERIFY(isBlank(dialog));
    QCOMPARE(listChanged.count() + tableChanged.count(), 0);
    QVERIFY(dialog.objects.isEmpty());
    QCOMPARE(listOf(dialog)->model(), &dialog.mapModel);
    QCOMPARE(tableViewOf(dialog)->model(), &dialog.polygonModel);
}

void tst_DialogViewsStale::actionDuringRunIsHarmless_data()
{
    addActions();
}

void tst_DialogViewsStale::actionDuringRunIsHarmless()
{
    QFETCH(Action, act);
    Dialog dialog;
    showPlan(dialog, files);
    openEditor(listOf(dialog), QStringLiteral("правка"));
    bool wasBlank = false;
    reaction() = [&] {
        actAndRepaint(dialog, act);
        wasBlank = isBlank(dialog);
    };

    process(dialog, brokenFile());

    QVERIFY(wasBlank);
    QCOMPARE(messages(), QStringList{QStringLiteral("Ошибка чтения линии из строки: 7")});
    QCOMPARE(shown(dialog.mapModel), list("я, ю"));
    QCOMPARE(shown(dialog.polygonModel), list("н1|1.00|1.00, н2|2.00|2.00"));
}

// Reading further objects may move those that have already been read.
void tst_DialogViewsStale::staleRowIsIgnored()
{
    Dialog dialog;
    showPlan(dialog, files);
    const QModelIndex first = dialog.mapModel.index(0, 0);
    const QSignalSpy reset(&dialog.polygonModel, &QAbstractItemModel::modelReset);
    int resets = -1;
    reaction() = [&] {
        QVERIFY(QMetaObject::invokeMethod(&dialog, "procCurrentChanged", Q_ARG(QModelIndex, first),
                                          Q_ARG(QModelIndex, QModelIndex())));
        resets = reset.count();
    };

    process(dialog, brokenFile());

    QCOMPARE(resets, 0);
}

QTEST_MAIN(tst_DialogViewsStale)
#include "tst_dialog_views_stale.moc"
