#include "mifpairs.h"
#include "resultoutline.h"

#include <QTest>

class tst_ImportPluginFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void failureIsToldOnce_data();
    void failureIsToldOnce();
    void pointsComeFromTheirOwnFile_data();
    void pointsComeFromTheirOwnFile();
    void missingPointFileIsTold();
    void missingObjectFileIsToldForEachPass();
    void emptyNameCannotBeProcessed();
};

void tst_ImportPluginFiles::failureIsToldOnce_data()
{
    QTest::addColumn<QStringList>("data");
    QTest::addColumn<QStringList>("records");
    QTest::addColumn<QStringList>("messages"); // with %1 for the path without its ending
    QTest::addColumn<QStringList>("objects");

    QTest::addColumn<bool>("searchPoints");

    const QStringList line{QStringLiteral("LINE 1 2 3 4")};
    const QStringList lineObject{QStringLiteral("Лес"), QStringLiteral("  н1|1.00|2.00"),
                                 QStringLiteral("  н2|3.00|4.00")};
    const QStringList wood{QStringLiteral("Лес")};

    QTest::newRow("MID file missing") << line << QStringList()
                                      << QStringList{QStringLiteral("Ошибка открытия MID файла %1.mid")}
                                      << QStringList() << true;
    QTest::newRow("point without Y") << QStringList{QStringLiteral("POINT 5")} << wood
                                     << QStringList{QStringLiteral("Ошибка чтения координат точки из строки: 5")}
                                     << QStringList() << true;
    QTest::newRow("point without record")
        << QStringList{QStringLiteral("POINT 1 2"), QStringLiteral("POINT 3 4")} << wood
        << QStringList{QStringLiteral("Ошибка чтения обозначения точки из строки: 2")} << QStringList() << true;
    QTest::newRow("skipped object without record")
        << QStringList{line.first(), QStringLiteral("ARC 1 2 3 4")} << wood
        << QStringList{QStringLiteral("Ошибка чтения данных объекта из строки: 2")} << QStringList() << true;
    QTest::newRow("line with a comma") << QStringList{line.first(), QStringLiteral("LINE 1,5 2 3 4")}
                                       << QStringList{wood.first(), QStringLiteral("Поле")}
                                       << QStringList{QStringLiteral("Ошибка чтения линии из строки: 6")} << lineObject
                                       << true;
    QTest::newRow("polyline of one vertex")
        << QStringList{line.first(), QStringLiteral("PLINE 1"), QStringLiteral("5 6")}
        << QStringList{wood.first(), QStringLiteral("Поле")}
        << QStringList{QStringLiteral("Ошибка чтения полилинии из строки: 6")} << lineObject + QStringList{QString()}
        << true;
    QTest::newRow("region that breaks off")
        << QStringList{line.first(), QStringLiteral("REGION 1"), QStringLiteral("3"), QStringLiteral("3 4"),
                       QStringLiteral("5 6")}
        << QStringList{wood.first(), QStringLiteral("Поле")}
        << QStringList{QStringLiteral("Ошибка чтения области из строки: 9")}
        << lineObject + QStringList{QString(), QStringLiteral("  н2|3.00|4.00"), QStringLiteral("  н3|5.00|6.00")}
        << true;
    QTest::newRow("collection, told for each pass")
        << QStringList{line.first(), QStringLiteral("COLLECTION 2"), QStringLiteral("LINE 5 6 7 8")} << wood
        << QStringList{QStringLiteral("Ошибка в стоке 6. Коллекции в MIF файлах не поддерживаются."),
                       QStringLiteral("Ошибка в стоке 6. Коллекции в MIF файлах не поддерживаются.")}
        << lineObject << true;
    QTest::newRow("object without record")
        << QStringList{line.first(), QStringLiteral("LINE 5 6 7 8")} << wood
        << QStringList{QStringLiteral("Ошибка чтения обозначения объекта из строки: 2")}
        << lineObject + QStringList{QString(), QStringLiteral("  н3|5.00|6.00"), QStringLiteral("  н4|7.00|8.00")}
        << false;
}

void tst_ImportPluginFiles::failureIsToldOnce()
{
    QFETCH(QStringList, data);
    QFETCH(QStringList, records);
    QFETCH(QStringList, messages);
    QFETCH(QStringList, objects);
    QFETCH(bool, searchPoints);
    PluginHost host;
    messages.replaceInStrings(QStringLiteral("%1"), host.path(QStringLiteral("plan")));

    const QString result = host.call(fromMif, [&](DialogDriver &driver) {
        driver.setChecked("searchPointDefsCheck", searchPoints);
        driver.process(writePair(host, QStringLiteral("plan"), data, records));
        QCOMPARE(host.messages(), messages);
        driver.accept();
    });

    QCOMPARE(ResultOutline::lines(result), objects);
    QCOMPARE(host.messages(), messages);
}

void tst_ImportPluginFiles::pointsComeFromTheirOwnFile_data()
{
    QTest::addColumn<bool>("isSeparate");
    QTest::addColumn<bool>("isSearched");
    QTest::addColumn<QStringList>("objects");

    QTest::newRow("points of the other file")
        << true << true
        << QStringList{QStringLiteral("Лес"), QStringLiteral("  н1|1.00|2.00"), QStringLiteral("  ч7|3.00|4.00")};
    QTest::newRow("name typed, then not wanted")
        << false << true
        << QStringList{QStringLiteral("Лес"), QStringLiteral("  о1|1.00|2.00"), QStringLiteral("  н1|3.00|4.00")};
    QTest::newRow("no search for points")
        << true << false
        << QStringList{QStringLiteral("Лес"), QStringLiteral("  н1|1.00|2.00"), QStringLiteral("  н2|3.00|4.00")};
}

void tst_ImportPluginFiles::pointsComeFromTheirOwnFile()
{
    QFETCH(bool, isSeparate);
    QFETCH(bool, isSearched);
    QFETCH(QStringList, objects);
    PluginHost host;

    const QString result = host.call(fromMif, [&](DialogDriver &driver) {
        driver.setChecked("usePointFileCheck", true);
        driver.type("pointFileNameEdit",
                    writePair(host, QStringLiteral("points"), {QStringLiteral("POINT 3 4")}, {QStringLiteral("ч7")}));
        driver.setChecked("usePointFileCheck", isSeparate);
        driver.setChecked("searchPointDefsCheck", isSearched);
        driver.process(writePair(host, QStringLiteral("plan"),
                                 {QStringLiteral("POINT 1 2"), QStringLiteral("LINE 1 2 3 4")},
                                 {QStringLiteral("о1"), QStringLiteral("Лес")}));
        driver.accept();
    });

    QCOMPARE(ResultOutline::lines(result), objects);
    QCOMPARE(host.messages(), QStringList());
}

void tst_ImportPluginFiles::missingPointFileIsTold()
{
    PluginHost host;
    const QString nowhere = host.path(QStringLiteral("nowhere.mif"));

    const QString result = host.call(fromMif, [&](DialogDriver &driver) {
        driver.setChecked("usePointFileCheck", true);
        driver.type("pointFileNameEdit", nowhere);
        driver.process(
            writePair(host, QStringLiteral("plan"), {QStringLiteral("LINE 1 2 3 4")}, {QStringLiteral("Лес")}));
        driver.accept();
    });

    QCOMPARE(host.messages(), QStringList{QStringLiteral("Ошибка открытия файла %1").arg(nowhere)});
    QCOMPARE(ResultOutline::lines(result),
             (QStringList{QStringLiteral("Лес"), QStringLiteral("  н1|1.00|2.00"), QStringLiteral("  н2|3.00|4.00")}));
}

void tst_ImportPluginFiles::missingObjectFileIsToldForEachPass()
{
    PluginHost host;
    const QString nowhere = host.path(QStringLiteral("nowhere.mif"));
    const QString message = QStringLiteral("Ошибка открытия файла %1").arg(nowhere);

    host.call(fromMif, [&](DialogDriver &driver) {
        driver.process(nowhere);
        QVERIFY(driver.list()->model() == nullptr);
        QVERIFY(driver.table()->model() == nullptr);
    });

    QCOMPARE(host.messages(), (QStringList{message, message}));
}

void tst_ImportPluginFiles::emptyNameCannotBeProcessed()
{
    PluginHost host;

    host.call(fromMif, [](DialogDriver &driver) {
        QVERIFY(!driver.find<QPushButton>("startButton")->isEnabled());
        driver.process(QString());
        driver.type("objectFileNameEdit", QStringLiteral("x"));
        QVERIFY(driver.find<QPushButton>("startButton")->isEnabled());
        driver.process(QString());
        QVERIFY(!driver.find<QPushButton>("startButton")->isEnabled());
    });

    QCOMPARE(host.messages(), QStringList());
}

QTEST_MAIN(tst_ImportPluginFiles)
#include "tst_importplugin_files.moc"
