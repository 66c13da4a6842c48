#include "dialogtesting.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QLabel>
#include <QMetaMethod>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

/// The dialog before a file is processed.
class tst_Dialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void slotsAreTheNine();
    void membersHaveDefaults();
    void parentAndFlagsAreThoseOfADialog();
    void viewsHaveNoModels();
    void toolButtonsAreEnlarged_data();
    void toolButtonsAreEnlarged();
    void minusIsAsWideAsPlus();
    void exchangeOfCoordinatesIsHidden();

    void buttonBoxEndsTheDialog_data();
    void buttonBoxEndsTheDialog();
    void otherButtonsDoNotEndIt_data();
    void otherButtonsDoNotEndIt();

    void processButtonNeedsAFile_data();
    void processButtonNeedsAFile();
    void withoutAFileNothingIsProcessed();
    void pointFileRowIsShownOnDemand_data();
    void pointFileRowIsShownOnDemand();

private:
    SettingsSandbox settings;
    QFont font;
};

void tst_Dialog::init()
{
    settings.clear();
    font = QApplication::font();
}

void tst_Dialog::cleanup()
{
    QApplication::setFont(font);
}

void tst_Dialog::slotsAreTheNine()
{
    const QStringList expected{
        QStringLiteral("on_objectFileButton_clicked()"),
        QStringLiteral("on_pointFileButton_clicked()"),
        QStringLiteral("on_startButton_clicked()"),
        QStringLiteral("on_usePointFileCheck_toggled(bool)"),
        QStringLiteral("on_plusToolButton_clicked()"),
        QStringLiteral("on_minusToolButton_clicked()"),
        QStringLiteral("procCurrentChanged(QModelIndex,QModelIndex)"),
        QStringLiteral("on_sortButton_clicked()"),
        QStringLiteral("on_objectFileNameEdit_textChanged(QString)"),
    };
    const QMetaObject &meta = Dialog::staticMetaObject;

    QStringList found;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        QCOMPARE(meta.method(i).methodType(), QMetaMethod::Slot);
        found.append(QString::fromLatin1(meta.method(i).methodSignature()));
    }
    QCOMPARE(found, expected);
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    QCOMPARE(meta.enumeratorCount(), meta.enumeratorOffset());
    QCOMPARE(meta.constructorCount(), 0);
    QCOMPARE(meta.className(), "Dialog");
    QCOMPARE(meta.superClass(), &QDialog::staticMetaObject);
}

void tst_Dialog::membersHaveDefaults()
{
    const Dialog dialog;

    QVERIFY(dialog.objects.isEmpty());
    QVERIFY(!dialog.isDxf);
    QCOMPARE(dialog.nColNum, 0);
    QCOMPARE(dialog.xColNum, 2);
    QCOMPARE(dialog.yColNum, 1);
    QCOMPARE(dialog.defColNum, 0);
    QVERIFY(dialog.formName.isEmpty() && dialog.objectTableName.isEmpty() && dialog.pointTableName.isEmpty());
    QVERIFY(dialog.fieldNumValueMap.isEmpty());
    QCOMPARE(dialog.fieldCount, 1);
    QVERIFY(dialog.polygonModel.parent() == nullptr && dialog.mapModel.parent() == nullptr);
}

void tst_Dialog::parentAndFlagsAreThoseOfADialog()
{
    QWidget parent;
    const Dialog dialog(&parent);

    QCOMPARE(dialog.parentWidget(), &parent);
    QCOMPARE(dialog.windowFlags(), QDialog(&parent).windowFlags());
    QVERIFY(!dialog.isModal());
}

void tst_Dialog::viewsHaveNoModels()
{
    const Dialog dialog;

    QVERIFY(view(dialog, QStringLiteral("listView"))->model() == nullptr);
    QVERIFY(view(dialog, QStringLiteral("tableView"))->model() == nullptr);
    QCOMPARE(dialog.mapModel.rowCount(), 0);
    QCOMPARE(dialog.polygonModel.rowCount(), 0);
}

void tst_Dialog::toolButtonsAreEnlarged_data()
{
    QTest::addColumn<bool>("inPixels");
    QTest::addColumn<int>("size");

    QTest::newRow("points") << false << 10;
    QTest::newRow("one point") << false << 1;
    QTest::newRow("pixels") << true << 20;
}

void tst_Dialog::toolButtonsAreEnlarged()
{
    QFETCH(bool, inPixels);
    QFETCH(int, size);
    QFont base = font;
    inPixels ? base.setPixelSize(size) : base.setPointSize(size);
    QApplication::setFont(base);
    const Dialog dialog;

    for (const char *name : {"plusToolButton", "minusToolButton"}) {
        const QFont enlarged = child(dialog, QLatin1String(name))->font();
        QCOMPARE(enlarged.pixelSize(), inPixels ? size + 1 : -1);
        QCOMPARE(enlarged.pointSize(), inPixels ? -1 : size + 1);
        QVERIFY(enlarged.bold());
    }
    const QFont other = child(dialog, QStringLiteral("startButton"))->font();
    QCOMPARE(inPixels ? other.pixelSize() : other.pointSize(), size);
}

void tst_Dialog::minusIsAsWideAsPlus()
{
    const Dialog dialog;
    const int width = child(dialog, QStringLiteral("plusToolButton"))->sizeHint().width();
    const QWidget *const minus = child(dialog, QStringLiteral("minusToolButton"));

    QCOMPARE(minus->minimumWidth(), width);
    QCOMPARE(minus->maximumWidth(), width);
    QVERIFY(minus->maximumHeight() > minus->minimumHeight());
    QVERIFY(child(dialog, QStringLiteral("plusToolButton"))->maximumWidth() > width);
}

void tst_Dialog::exchangeOfCoordinatesIsHidden()
{
    Dialog dialog;
    dialog.show();

    QVERIFY(child(dialog, QStringLiteral("swapXYCheck"))->isHidden());
    QVERIFY(child(dialog, QStringLiteral("usePointFileCheck"))->isVisible());
}

void tst_Dialog::buttonBoxEndsTheDialog_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<int>("result");

    QTest::newRow("OK") << int(QDialogButtonBox::Ok) << 1;
    QTest::newRow("Cancel") << int(QDialogButtonBox::Cancel) << 0;
}

void tst_Dialog::buttonBoxEndsTheDialog()
{
    QFETCH(int, button);
    QFETCH(int, result);
    Dialog dialog;
    dialog.show();
    const QSignalSpy finished(&dialog, &QDialog::finished);

    child<QDialogButtonBox>(dialog, QStringLiteral("buttonBox"))
        ->button(QDialogButtonBox::StandardButton(button))
        ->click();

    QCOMPARE(finished.count(), 1);
    QCOMPARE(finished.first().first().toInt(), result);
    QCOMPARE(dialog.result(), result);
    QVERIFY(dialog.isHidden());
}

void tst_Dialog::otherButtonsDoNotEndIt_data()
{
    QTest::addColumn<int>("rows"); // of extra fields, afterwards

    QTest::newRow("startButton") << 1;
    QTest::newRow("sortButton") << 1;
    QTest::newRow("plusToolButton") << 2;
    QTest::newRow("minusToolButton") << 1;
    QTest::newRow("updateCheck") << 1;
    QTest::newRow("usePointFileCheck") << 1;
}

void tst_Dialog::otherButtonsDoNotEndIt()
{
    QFETCH(int, rows);
    const StatusRecorder host;
    Dialog dialog;
    dialog.show();
    enter(dialog, QStringLiteral("objectFileNameEdit"), TextFixture().path(QStringLiteral("missing.mif")));
    const QSignalSpy finished(&dialog, &QDialog::finished);

    press(dialog, QString::fromLatin1(QTest::currentDataTag()));

    QCOMPARE(finished.count(), 0);
    QVERIFY(dialog.isVisible());
    QCOMPARE(dialog.fieldCount, rows);
}

void tst_Dialog::processButtonNeedsAFile_data()
{
    QTest::addColumn<QStringList>("texts");
    QTest::addColumn<bool>("isEnabled");

    const QString name = QStringLiteral("план.mif");
    QTest::newRow("nothing yet") << QStringList() << false;
    QTest::newRow("name") << QStringList{name} << true;
    QTest::newRow("blank") << QStringList{QStringLiteral(" ")} << true;
    QTest::newRow("name taken away") << QStringList{name, QString()} << false;
    QTest::newRow("name given again") << QStringList{name, QString(), name} << true;
}

void tst_Dialog::processButtonNeedsAFile()
{
    QFETCH(QStringList, texts);
    QFETCH(bool, isEnabled);
    const Dialog dialog;
    for (const QString &text : texts)
        enter(dialog, QStringLiteral("objectFileNameEdit"), text);
    enter(dialog, QStringLiteral("pointFileNameEdit"), QStringLiteral("точки.mif"));

    QCOMPARE(child(dialog, QStringLiteral("startButton"))->isEnabled(), isEnabled);
}

void tst_Dialog::withoutAFileNothingIsProcessed()
{
    const StatusRecorder host;
    Dialog dialog;
    dialog.objects = {object("ЗУ1")};

    press(dialog, QStringLiteral("startButton"));

    QCOMPARE(dialog.objects.size(), 1);
    QVERIFY(host.messages().isEmpty());
}

void tst_Dialog::pointFileRowIsShownOnDemand_data()
{
    QTest::addColumn<QVector<bool>>("ticks");
    QTest::addColumn<bool>("isShown");
    QTest::addColumn<QString>("label");

    QTest::newRow("on") << QVector<bool>{true} << true << QStringLiteral("Файл объектов:");
    QTest::newRow("off again") << QVector<bool>{true, false} << false << QStringLiteral("Файл:");
    QTest::newRow("on again") << QVector<bool>{true, false, true} << true << QStringLiteral("Файл объектов:");
}

void tst_Dialog::pointFileRowIsShownOnDemand()
{
    QFETCH(QVector<bool>, ticks);
    QFETCH(bool, isShown);
    QFETCH(QString, label);
    Dialog dialog;
    dialog.show();
    for (const bool tick : ticks)
        enter(dialog, QStringLiteral("usePointFileCheck"), tick);

    for (const char *name : {"pointFileLabel", "pointFileNameEdit", "pointFileButton"})
        QCOMPARE(child(dialog, QLatin1String(name))->isVisible(), isShown);
    QCOMPARE(child<QLabel>(dialog, QStringLiteral("objectFileLabel"))->text(), label);
    QVERIFY(child(dialog, QStringLiteral("objectFileNameEdit"))->isVisible());
}

QTEST_MAIN(tst_Dialog)
#include "tst_dialog.moc"
