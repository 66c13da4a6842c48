#include "dialogtesting.h"
#include "dxftesting.h"

#include <QAbstractItemView>
#include <QDir>
#include <QSignalSpy>
#include <QTest>
#include <QTextCodec>

#include <new>

/// Processing of files: the options of the importer and the state after a run.
class tst_DialogRun : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init() { settings.clear(); }

    void optionsReachImporter_data();
    void optionsReachImporter();
    void encodingReachesImporter_data();
    void encodingReachesImporter();
    void operationDeterminesFormat_data();
    void operationDeterminesFormat();
    void failedRunShowsObjectsReadBefore();
    void laterRunReplacesObjects();
    void emptyRunRemovesObjects_data();
    void emptyRunRemovesObjects();
    void fieldsAreReadByRun();
    void waitCursorIsShownBetweenMessages();
    void cursorOfTheHostOutlivesAnException();

private:
    QString plan(const char *data) const { return files.write(QStringLiteral("plan.mif"), mifLines(list(data))); }

    SettingsSandbox settings;
    TextFixture files;
};

namespace {

/// Turns the searches off: objects and points are numbered, and no MID file is needed.
void searchNothing(const Dialog &dialog)
{
    enter(dialog, "searchPointDefsCheck", false);
    enter(dialog, "searchObjectDefsCheck", false);
}

QAbstractItemModel *modelOf(const Dialog &dialog, const char *view)
{
    return child<QAbstractItemView>(dialog, view)->model();
}

} // namespace

void tst_DialogRun::initTestCase()
{
    QLocale::setDefault(QLocale::c());
    files.write(QStringLiteral("objects.mif"), mifLines(list("POINT 0 0, LINE 0 0 10 0")));
    files.write(QStringLiteral("objects.mid"), {QStringLiteral("7,x"), QStringLiteral("ЗУ9,y")});
    files.write(QStringLiteral("points.mif"), mifLines({QStringLiteral("POINT 10 0")}));
    files.write(QStringLiteral("points.mid"), {QStringLiteral("Б2")});
    files.write(QStringLiteral("objects.dxf"),
                drawing("0 POINT|10 0|20 0|0 TEXT|10 0.5|20 0|1 7|0 TEXT|10 5|20 3|1 ЗУ9|" + lineEntity));
}

void tst_DialogRun::optionsReachImporter_data()
{
    QTest::addColumn<QStringList>("options"); // "widget value"
    QTest::addColumn<QString>("object");

    const auto row = [](const char *name, const QStringList &options, const char *object) {
        QTest::newRow(name) << options << QString::fromUtf8(object);
    };
    const QString pointFile = QStringLiteral("pointFileNameEdit ") + files.path(QStringLiteral("points.mif"));
    row("defaults", {}, "ЗУ9 [7 0 0, н1 10 0]");
    row("no search for points", list("searchPointDefsCheck false"), "ЗУ9 [н1 0 0, н2 10 0]");
    row("point prefix", list("pointPrefEdit т-"), "ЗУ9 [7 0 0, т-1 10 0]");
    row("first point number", list("pointStartNumSpin 40"), "ЗУ9 [7 0 0, н40 10 0]");
    row("no search for objects", list("searchObjectDefsCheck false"), ":ЗУ1 [7 0 0, н1 10 0]");
    row("object prefix and first number",
        list("searchObjectDefsCheck false, objectPrefEdit контур , objectStartNumSpin 30"),
        "контур 30 [7 0 0, н1 10 0]");
    row("point file without its check box", {pointFile}, "ЗУ9 [7 0 0, н1 10 0]");
    row("point file", {pointFile, QStringLiteral("usePointFileCheck true")}, "ЗУ9 [н1 0 0, Б2 10 0]");
    row("X and Y are never swapped", list("swapXYCheck true"), "ЗУ9 [7 0 0, н1 10 0]");
}

void tst_DialogRun::optionsReachImporter()
{
    QFETCH(QStringList, options);
    QFETCH(QString, object);
    const Dialog dialog;
    enter(dialog, "encodingCombo", QStringLiteral("UTF-8"));
    for (const QString &option : options)
        enter(dialog, option.section(QLatin1Char(' '), 0, 0), option.section(QLatin1Char(' '), 1));

    process(dialog, files.path(QStringLiteral("objects.mif")));

    QCOMPARE(described(dialog.objects), QStringList{object});
}

void tst_DialogRun::encodingReachesImporter_data()
{
    QTest::addColumn<QByteArray>("codec"); // of the file
    QTest::addColumn<QString>("encoding");

    QTest::newRow("IBM866") << QByteArray("IBM866") << QStringLiteral("IBM866");
    QTest::newRow("typed name") << QByteArray("ISO-8859-5") << QStringLiteral("ISO-8859-5");
    QTest::newRow("system default") << QByteArray("KOI8-R") << QStringLiteral("Default");
}

void tst_DialogRun::encodingReachesImporter()
{
    QFETCH(QByteArray, codec);
    QFETCH(QString, encoding);
    const QString name = QStringLiteral("Луг у реки");
    files.write(QStringLiteral("plan.mid"), {name}, codec.constData());
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("KOI8-R"));
    const Dialog dialog;
    enter(dialog, "encodingCombo", encoding);
    enter(dialog, "searchPointDefsCheck", false);

    process(dialog, plan("LINE 0 0 10 0"));
    QTextCodec::setCodecForLocale(nullptr);

    QCOMPARE(shown(dialog.mapModel), QStringList{name});
}

void tst_DialogRun::operationDeterminesFormat_data()
{
    QTest::addColumn<bool>("isDxf");
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QString>("error");

    const QString mif = QStringLiteral("objects.mif");
    const QString dxf = QStringLiteral("objects.dxf");
    QTest::newRow("MIF") << false << mif << QString();
    QTest::newRow("DXF") << true << dxf << QString();
    QTest::newRow("DXF as MIF") << false << dxf << QStringLiteral("Ошибка. Файл %1 не соответствует формату MIF");
    QTest::newRow("MIF as DXF") << true << mif << QStringLiteral("Ошибка. Файл %1 не соответствует формату DXF");
}

void tst_DialogRun::operationDeterminesFormat()
{
    QFETCH(bool, isDxf);
    QFETCH(QString, fileName);
    QFETCH(QString, error);
    const StatusRecorder host;
    Dialog dialog;
    dialog.isDxf = isDxf;
    enter(dialog, "encodingCombo", QStringLiteral("UTF-8"));

    process(dialog, files.path(fileName));

    const bool isRead = error.isEmpty();
    QCOMPARE(described(dialog.objects), isRead ? QStringList{QStringLiteral("ЗУ9 [7 0 0, н1 10 0]")} : QStringList());
    QCOMPARE(host.messages(),
             isRead ? QStringList() : QStringList{error.arg(QDir::toNativeSeparators(files.path(fileName)))});
}

void tst_DialogRun::failedRunShowsObjectsReadBefore()
{
    const StatusRecorder host;
    const Dialog dialog;
    searchNothing(dialog);

    process(dialog, plan("LINE 0 0 10 0, LINE 5 5 6 6, LINE 1 2 3"));

    QCOMPARE(host.messages(), QStringList{QStringLiteral("Ошибка чтения линии из строки: 7")});
    QCOMPARE(modelOf(dialog, "listView"), &dialog.mapModel);
    QCOMPARE(modelOf(dialog, "tableView"), &dialog.polygonModel);
    QCOMPARE(shown(dialog.mapModel), list(":ЗУ1, :ЗУ2"));
    QCOMPARE(shown(dialog.polygonModel), list("н1|0.00|0.00, н2|10.00|0.00"));
}

void tst_DialogRun::laterRunReplacesObjects()
{
    const Dialog dialog;
    searchNothing(dialog);
    process(dialog, plan("LINE 0 0 10 0, LINE 5 5 6 6"));
    const QSignalSpy listReset(&dialog.mapModel, &QAbstractItemModel::modelReset);
    const QSignalSpy tableReset(&dialog.polygonModel, &QAbstractItemModel::modelReset);

    process(dialog, plan("PLINE 3, 1 1, 2 2, 3 3"));

    QCOMPARE(described(dialog.objects), QStringList{QStringLiteral(":ЗУ1 [н1 1 1, н2 2 2, н3 3 3]")});
    QCOMPARE(listReset.count(), 1);
    QCOMPARE(tableReset.count(), 1);
    QCOMPARE(entered(dialog, "pointStartNumSpin").toInt(), 1);
    QCOMPARE(entered(dialog, "objectStartNumSpin").toInt(), 1);
}

void tst_DialogRun::emptyRunRemovesObjects_data()
{
    QTest::addColumn<QString>("data");
    QTest::addColumn<int>("messages");

    QTest::newRow("no objects") << QString() << 0;
    QTest::newRow("error before the first object") << QStringLiteral("LINE 1") << 1;
}

void tst_DialogRun::emptyRunRemovesObjects()
{
    QFETCH(QString, data);
    QFETCH(int, messages);
    const StatusRecorder host;
    Dialog dialog;
    searchNothing(dialog);
    enter(dialog, "fieldEdit_0", QStringLiteral("поле"));
    const QString empty = files.write(QStringLiteral("empty.mif"), mifLines({data}));
    process(dialog, empty);
    QVERIFY(modelOf(dialog, "listView") == nullptr && modelOf(dialog, "tableView") == nullptr);
    process(dialog, plan("LINE 0 0 10 0"));
    const QSignalSpy listReset(&dialog.mapModel, &QAbstractItemModel::modelReset);

    process(dialog, empty);

    QCOMPARE(host.messages().size(), 2 * messages);
    QVERIFY(dialog.objects.isEmpty() && dialog.fieldNumValueMap.isEmpty());
    QCOMPARE(listReset.count(), 0);
    QCOMPARE(dialog.stringResult(), QStringLiteral("\n<FormTable/>"));
    process(dialog, plan("LINE 5 5 6 6"));
    QCOMPARE(shown(dialog.polygonModel), list("н1|5.00|5.00|поле, н2|6.00|6.00|поле"));
}

void tst_DialogRun::fieldsAreReadByRun()
{
    {
        Dialog dialog;
        dialog.fieldNumValueMap = {{9, QStringLiteral("прежнее")}};
        searchNothing(dialog);
        enter(dialog, "fieldEdit_0", QStringLiteral("626"));
        process(dialog, plan("LINE 0 0 10 0"));
        const QString document = dialog.stringResult();

        enter(dialog, "fieldEdit_0", QStringLiteral("627"));

        QCOMPARE(dialog.stringResult(), document);
        QCOMPARE(shown(dialog.polygonModel), list("н1|0.00|0.00|626, н2|10.00|0.00|626"));
        process(dialog, plan("LINE 0 0 10 0"));
        QCOMPARE(shown(dialog.polygonModel).first(), QStringLiteral("н1|0.00|0.00|627"));
        enter(dialog, "fieldEdit_0", QStringLiteral("628"));
    }
    QCOMPARE(settings.stored(QStringLiteral("FieldNumValueMap/3")).toString(), QStringLiteral("628"));
}

// The host's own cursor is visible while it handles a message and afterwards.
void tst_DialogRun::waitCursorIsShownBetweenMessages()
{
    const auto shape = [] { return QGuiApplication::overrideCursor()->shape(); };
    static QVector<Qt::CursorShape> inMessage;
    setStatusFunc([](const QString &) { inMessage.append(QGuiApplication::overrideCursor()->shape()); });
    QGuiApplication::setOverrideCursor(Qt::CrossCursor);
    const Dialog dialog;
    searchNothing(dialog);
    process(dialog, plan("LINE 0 0 1 1"));
    Qt::CursorShape whileShowing = Qt::ArrowCursor;
    connect(modelOf(dialog, "listView"), &QAbstractItemModel::modelReset, [&] { whileShowing = shape(); });

    process(dialog, plan("LINE 0 0 1 1, PLINE x"));

    QCOMPARE(inMessage, QVector<Qt::CursorShape>{Qt::CrossCursor});
    QCOMPARE(whileShowing, Qt::WaitCursor);
    QCOMPARE(shape(), Qt::CrossCursor);
    QGuiApplication::restoreOverrideCursor();
    QVERIFY(QGuiApplication::overrideCursor() == nullptr);
    setStatusFunc(nullptr);
}

// Memory can run out in the callback of the host.
void tst_DialogRun::cursorOfTheHostOutlivesAnException()
{
    static int count = 0;
    setStatusFunc([](const QString &) {
        if (count++ == 0)
            throw std::bad_alloc();
    });
    QGuiApplication::setOverrideCursor(Qt::CrossCursor);
    const Dialog dialog;
    searchNothing(dialog);

    process(dialog, plan("PLINE x"));

    QCOMPARE(count, 2);
    QVERIFY(QGuiApplication::overrideCursor() != nullptr);
    QCOMPARE(QGuiApplication::overrideCursor()->shape(), Qt::CrossCursor);
    QGuiApplication::restoreOverrideCursor();
    QVERIFY(QGuiApplication::overrideCursor() == nullptr);
    setStatusFunc(nullptr);
}

QTEST_MAIN(tst_DialogRun)
#include "tst_dialog_run.moc"
