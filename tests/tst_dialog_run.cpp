#include "dialogtesting.h"
#include "dxftesting.h"

#include <QDir>
#include <QSignalSpy>
#include <QTest>
#include <QTextCodec>

/// The processing of files: what reaches the importer, and what a run leaves behind.
class tst_DialogRun : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void optionReachesTheImporter_data();
    void optionReachesTheImporter();
    void encodingReachesTheImporter_data();
    void encodingReachesTheImporter();
    void formatIsThatOfTheOperation_data();
    void formatIsThatOfTheOperation();

    void runShowsTheObjects();
    void emptyRunShowsNothing_data();
    void emptyRunShowsNothing();
    void failedRunShowsWhatWasRead();
    void laterRunReplacesTheObjects();
    void laterRunNumbersAnew();
    void emptyRunForgetsTheFormerOne_data();
    void emptyRunForgetsTheFormerOne();
    void fullRunAfterAnEmptyOneShowsItsObjects();

    void fieldsAreReadByARun();
    void fieldsChangedLaterWaitForTheNextRun();

private:
    QString plan(const QStringList &data) const { return files.write(QStringLiteral("plan.mif"), mifLines(data)); }

    SettingsSandbox settings;
    TextFixture files;
};

namespace {

const QString list = QStringLiteral("listView");
const QString table = QStringLiteral("tableView");
const QString line = QStringLiteral("LINE 0 0 10 0");

/// No MID file is wanted: objects and points are numbered.
void searchNothing(const Dialog &dialog)
{
    enter(dialog, {{QStringLiteral("searchPointDefsCheck"), false}, {QStringLiteral("searchObjectDefsCheck"), false}});
}

QVariantMap options(const QString &name = QString(), const QVariant &value = QVariant())
{
    return name.isEmpty() ? QVariantMap() : QVariantMap{{name, value}};
}

} // namespace

void tst_DialogRun::initTestCase()
{
    QLocale::setDefault(QLocale::c());
    const QString known = QStringLiteral("POINT 0 0");
    files.write(QStringLiteral("objects.mif"), mifLines({known, line}));
    files.write(QStringLiteral("objects.mid"), {QStringLiteral("7,x"), QStringLiteral("ЗУ9,y")});
    files.write(QStringLiteral("points.mif"), mifLines({QStringLiteral("POINT 10 0")}));
    files.write(QStringLiteral("points.mid"), {QStringLiteral("Б2")});
    files.write(QStringLiteral("objects.dxf"),
                drawing("0 POINT|10 0|20 0|0 TEXT|10 0.5|20 0|1 7|0 TEXT|10 5|20 3|1 ЗУ9|" + lineEntity));
    files.write(QStringLiteral("points.dxf"), drawing("0 POINT|10 10|20 0|0 TEXT|10 10|20 1|1 Б2"));
}

void tst_DialogRun::init()
{
    settings.clear();
}

void tst_DialogRun::optionReachesTheImporter_data()
{
    QTest::addColumn<bool>("isDxf");
    QTest::addColumn<QVariantMap>("values");
    QTest::addColumn<QString>("object");

    for (const bool isDxf : {false, true}) {
        const auto row = [isDxf](const char *name, const QVariantMap &values, const char *object) {
            QTest::newRow((QByteArray(isDxf ? "DXF: " : "MIF: ") + name).constData())
                << isDxf << values << QString::fromUtf8(object);
        };
        const QString points = files.path(isDxf ? QStringLiteral("points.dxf") : QStringLiteral("points.mif"));
        const QString pointEdit = QStringLiteral("pointFileNameEdit");
        const QString usePoints = QStringLiteral("usePointFileCheck");
        QVariantMap named = options(QStringLiteral("searchObjectDefsCheck"), false);

        row("defaults", options(), "ЗУ9: 7(0 0) н1(10 0)");
        row("points are not searched", options(QStringLiteral("searchPointDefsCheck"), false), "ЗУ9: н1(0 0) н2(10 0)");
        row("prefix of points", options(QStringLiteral("pointPrefEdit"), QStringLiteral("т-")),
            "ЗУ9: 7(0 0) т-1(10 0)");
        row("no prefix of points", options(QStringLiteral("pointPrefEdit"), QString()), "ЗУ9: 7(0 0) 1(10 0)");
        row("number of points", options(QStringLiteral("pointStartNumSpin"), 40), "ЗУ9: 7(0 0) н40(10 0)");
        row("objects are not searched", named, ":ЗУ1: 7(0 0) н1(10 0)");
        named.insert(QStringLiteral("objectPrefEdit"), QStringLiteral("контур "));
        row("prefix of objects", named, "контур 1: 7(0 0) н1(10 0)");
        named.insert(QStringLiteral("objectStartNumSpin"), 30);
        row("number of objects", named, "контур 30: 7(0 0) н1(10 0)");
        row("file of points is named only", options(pointEdit, points), "ЗУ9: 7(0 0) н1(10 0)");
        row("file of points is not named", options(usePoints, true), "ЗУ9: 7(0 0) н1(10 0)");
        row("file of points", {{pointEdit, points}, {usePoints, true}}, "ЗУ9: н1(0 0) Б2(10 0)");
        row("exchange of coordinates is not offered", options(QStringLiteral("swapXYCheck"), true),
            "ЗУ9: 7(0 0) н1(10 0)");
    }
}

void tst_DialogRun::optionReachesTheImporter()
{
    QFETCH(bool, isDxf);
    QFETCH(QVariantMap, values);
    QFETCH(QString, object);
    const StatusRecorder host;
    Dialog dialog;
    dialog.isDxf = isDxf;
    enter(dialog, QStringLiteral("encodingCombo"), QStringLiteral("UTF-8"));
    enter(dialog, values);

    process(dialog, files.path(isDxf ? QStringLiteral("objects.dxf") : QStringLiteral("objects.mif")));

    QCOMPARE(described(dialog.objects), QStringList{object});
    QVERIFY(host.messages().isEmpty());
}

void tst_DialogRun::encodingReachesTheImporter_data()
{
    QTest::addColumn<QByteArray>("codec"); // of the file
    QTest::addColumn<QString>("choice");

    QTest::newRow("Windows-1251") << QByteArray("Windows-1251") << QStringLiteral("Windows-1251");
    QTest::newRow("IBM866") << QByteArray("IBM866") << QStringLiteral("IBM866");
    QTest::newRow("UTF-8") << QByteArray("UTF-8") << QStringLiteral("UTF-8");
    QTest::newRow("typed name") << QByteArray("ISO-8859-5") << QStringLiteral("ISO-8859-5");
    QTest::newRow("default is that of the system") << QByteArray("KOI8-R") << QStringLiteral("Default");
    QTest::newRow("unknown name") << QByteArray("KOI8-R") << QStringLiteral("КОИ-8");
    QTest::newRow("no name") << QByteArray("KOI8-R") << QString();
}

void tst_DialogRun::encodingReachesTheImporter()
{
    QFETCH(QByteArray, codec);
    QFETCH(QString, choice);
    const QString name = QStringLiteral("Луг у реки, ёлка");
    const QString mif = files.write(QStringLiteral("coded.mif"), mifLines({line}));
    files.write(QStringLiteral("coded.mid"), {QLatin1Char('"') + name + QLatin1Char('"')}, codec.constData());
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("KOI8-R"));
    const Dialog dialog;
    enter(dialog, QStringLiteral("encodingCombo"), choice);
    enter(dialog, QStringLiteral("searchPointDefsCheck"), false);

    process(dialog, mif);
    QTextCodec::setCodecForLocale(nullptr);

    QCOMPARE(shown(dialog.mapModel), QStringList{name});
}

void tst_DialogRun::formatIsThatOfTheOperation_data()
{
    QTest::addColumn<bool>("isDxf");
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QString>("message");

    QTest::newRow("drawing as MIF") << false << QStringLiteral("objects.dxf")
                                    << QStringLiteral("Ошибка. Файл %1 не соответствует формату MIF");
    QTest::newRow("MIF as drawing") << true << QStringLiteral("objects.mif")
                                    << QStringLiteral("Ошибка. Файл %1 не соответствует формату DXF");
}

void tst_DialogRun::formatIsThatOfTheOperation()
{
    QFETCH(bool, isDxf);
    QFETCH(QString, fileName);
    QFETCH(QString, message);
    const StatusRecorder host;
    Dialog dialog;
    dialog.isDxf = isDxf;

    process(dialog, files.path(fileName));

    QCOMPARE(host.messages(), QStringList{message.arg(QDir::toNativeSeparators(files.path(fileName)))});
    QVERIFY(dialog.objects.isEmpty());
}

void tst_DialogRun::runShowsTheObjects()
{
    const Dialog dialog;
    searchNothing(dialog);

    process(dialog, plan({line, QStringLiteral("LINE 5 5 6 6")}));

    QCOMPARE(view(dialog, list)->model(), &dialog.mapModel);
    QCOMPARE(view(dialog, table)->model(), &dialog.polygonModel);
    QCOMPARE(shown(dialog.mapModel), (QStringList{QStringLiteral(":ЗУ1"), QStringLiteral(":ЗУ2")}));
    QCOMPARE(shown(dialog.polygonModel),
             (QStringList{QStringLiteral("н1|0.00|0.00"), QStringLiteral("н2|10.00|0.00")}));
}

void tst_DialogRun::emptyRunShowsNothing_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<int>("messages");

    QTest::newRow("no objects") << mifLines({}) << 0;
    QTest::newRow("no data") << QStringList(mifLines({}).mid(0, 3)) << 0;
    QTest::newRow("not a MIF file") << QStringList{QStringLiteral("план")} << 1;
    QTest::newRow("error before the first object") << mifLines({QStringLiteral("LINE 1")}) << 1;
}

void tst_DialogRun::emptyRunShowsNothing()
{
    QFETCH(QStringList, lines);
    QFETCH(int, messages);
    const StatusRecorder host;
    Dialog dialog;
    dialog.fieldNumValueMap = {{3, QStringLiteral("прежнее")}};
    enter(dialog, QStringLiteral("fieldEdit_0"), QStringLiteral("поле"));
    searchNothing(dialog);

    process(dialog, files.write(QStringLiteral("empty.mif"), lines));

    QCOMPARE(host.messages().size(), messages);
    QVERIFY(dialog.objects.isEmpty());
    QVERIFY(view(dialog, list)->model() == nullptr && view(dialog, table)->model() == nullptr);
    QVERIFY(dialog.fieldNumValueMap.isEmpty());
}

void tst_DialogRun::failedRunShowsWhatWasRead()
{
    const StatusRecorder host;
    const Dialog dialog;
    searchNothing(dialog);
    enter(dialog, QStringLiteral("fieldEdit_0"), QStringLiteral("поле"));

    process(dialog, plan({line, QStringLiteral("LINE 1 2 3")}));

    QCOMPARE(host.messages(), QStringList{QStringLiteral("Ошибка чтения линии из строки: 6")});
    QCOMPARE(shown(dialog.mapModel), QStringList{QStringLiteral(":ЗУ1")});
    QCOMPARE(shown(dialog.polygonModel).first(), QStringLiteral("н1|0.00|0.00|поле"));
}

void tst_DialogRun::laterRunReplacesTheObjects()
{
    const Dialog dialog;
    searchNothing(dialog);
    process(dialog, plan({line, QStringLiteral("LINE 5 5 6 6")}));
    const QSignalSpy listReset(&dialog.mapModel, &QAbstractItemModel::modelReset);
    const QSignalSpy tableReset(&dialog.polygonModel, &QAbstractItemModel::modelReset);
    enter(dialog, QStringLiteral("objectPrefEdit"), QStringLiteral("К"));

    process(dialog,
            plan({QStringLiteral("PLINE 3"), QStringLiteral("1 1"), QStringLiteral("2 2"), QStringLiteral("3 3")}));

    QCOMPARE(described(dialog.objects), QStringList{QStringLiteral("К1: н1(1 1) н2(2 2) н3(3 3)")});
    QCOMPARE(listReset.count(), 1);
    QCOMPARE(tableReset.count(), 1);
    QCOMPARE(view(dialog, list)->model(), &dialog.mapModel);
    QCOMPARE(view(dialog, table)->model(), &dialog.polygonModel);
    QCOMPARE(shown(dialog.mapModel), QStringList{QStringLiteral("К1")});
    QCOMPARE(shown(dialog.polygonModel).size(), 3);
}

void tst_DialogRun::laterRunNumbersAnew()
{
    const Dialog dialog;
    searchNothing(dialog);
    process(dialog, plan({line}));

    process(dialog, plan({line}));

    QCOMPARE(described(dialog.objects), QStringList{QStringLiteral(":ЗУ1: н1(0 0) н2(10 0)")});
    QCOMPARE(entered(dialog, QStringLiteral("pointStartNumSpin")).toInt(), 1);
    QCOMPARE(entered(dialog, QStringLiteral("objectStartNumSpin")).toInt(), 1);
}

void tst_DialogRun::emptyRunForgetsTheFormerOne_data()
{
    emptyRunShowsNothing_data();
}

void tst_DialogRun::emptyRunForgetsTheFormerOne()
{
    QFETCH(QStringList, lines);
    QFETCH(int, messages);
    const StatusRecorder host;
    Dialog dialog;
    searchNothing(dialog);
    enter(dialog, QStringLiteral("fieldEdit_0"), QStringLiteral("поле"));
    process(dialog, plan({line}));
    const QSignalSpy listReset(&dialog.mapModel, &QAbstractItemModel::modelReset);

    process(dialog, files.write(QStringLiteral("empty.mif"), lines));
    process(dialog, files.write(QStringLiteral("empty.mif"), lines));

    QCOMPARE(host.messages().size(), 2 * messages);
    QVERIFY(dialog.objects.isEmpty());
    QVERIFY(dialog.fieldNumValueMap.isEmpty());
    QCOMPARE(listReset.count(), 0);
    QCOMPARE(view(dialog, list)->model(), &dialog.mapModel);
    QCOMPARE(view(dialog, table)->model(), &dialog.polygonModel);
    QCOMPARE(dialog.stringResult(), QStringLiteral("\n<FormTable/>"));
}

void tst_DialogRun::fullRunAfterAnEmptyOneShowsItsObjects()
{
    const Dialog dialog;
    searchNothing(dialog);
    process(dialog, plan({line, line}));
    process(dialog, plan({}));

    process(dialog, plan({QStringLiteral("LINE 5 5 6 6")}));

    QCOMPARE(shown(dialog.mapModel), QStringList{QStringLiteral(":ЗУ1")});
    QCOMPARE(shown(dialog.polygonModel), (QStringList{QStringLiteral("н1|5.00|5.00"), QStringLiteral("н2|6.00|6.00")}));
}

void tst_DialogRun::fieldsAreReadByARun()
{
    Dialog dialog;
    dialog.fieldNumValueMap = {{9, QStringLiteral("прежнее")}};
    enter(dialog, {{QStringLiteral("fieldSpin_0"), 5}, {QStringLiteral("fieldEdit_0"), QStringLiteral("626")}});
    searchNothing(dialog);

    process(dialog, plan({line}));

    QCOMPARE(dialog.fieldNumValueMap, (QMap<int, QString>{{4, QStringLiteral("626")}}));
    QCOMPARE(shown(dialog.polygonModel),
             (QStringList{QStringLiteral("н1|0.00|0.00|-|626"), QStringLiteral("н2|10.00|0.00|-|626")}));
}

void tst_DialogRun::fieldsChangedLaterWaitForTheNextRun()
{
    {
        Dialog dialog;
        searchNothing(dialog);
        enter(dialog, QStringLiteral("fieldEdit_0"), QStringLiteral("626"));
        process(dialog, plan({line}));
        const QString document = dialog.stringResult();

        enter(dialog, QStringLiteral("fieldEdit_0"), QStringLiteral("627"));

        QCOMPARE(dialog.stringResult(), document);
        QCOMPARE(shown(dialog.polygonModel).first(), QStringLiteral("н1|0.00|0.00|626"));
        process(dialog, plan({line}));
        QCOMPARE(shown(dialog.polygonModel).first(), QStringLiteral("н1|0.00|0.00|627"));
        enter(dialog, QStringLiteral("fieldEdit_0"), QStringLiteral("628"));
    }
    QCOMPARE(settings.stored(QStringLiteral("FieldNumValueMap/3")).toString(), QStringLiteral("628"));
}

QTEST_MAIN(tst_DialogRun)
#include "tst_dialog_run.moc"
