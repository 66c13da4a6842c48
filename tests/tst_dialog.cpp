#include "dialogtesting.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTimer>

/// The dialog before a file is processed, including the choice of files.
class tst_Dialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }
    void init() { settings.clear(); }

    void newDialogIsEmpty();
    void toolButtonFontsAreEnlarged_data();
    void toolButtonFontsAreEnlarged();
    void buttonBoxClosesDialog_data();
    void buttonBoxClosesDialog();
    void processButtonNeedsFileName();
    void pointFileRowFollowsCheckBox();
    void onlyChosenFileIsEntered_data();
    void onlyChosenFileIsEntered();

private:
    SettingsSandbox settings;
};

namespace {

/// Presses \a button and answers the file dialog with \a path, or cancels it if the path is empty. Returns the title,
/// the name filters and the selected files of the file dialog.
QStringList chooseFile(const Dialog &dialog, const WidgetName &button, const QString &path)
{
    QStringList properties;
    QTimer::singleShot(0, &dialog, [&] {
        auto *const fileDialog = dialog.findChild<QFileDialog *>();
        properties = QStringList{fileDialog->windowTitle()} + fileDialog->nameFilters() + fileDialog->selectedFiles();
        fileDialog->selectFile(path);
        static_cast<QDialog *>(fileDialog)->done(path.isEmpty() ? QDialog::Rejected : QDialog::Accepted);
    });
    press(dialog, button);
    return properties;
}

} // namespace

void tst_Dialog::newDialogIsEmpty()
{
    QWidget parent;
    const Dialog dialog(&parent);

    QCOMPARE(dialog.parentWidget(), &parent);
    QCOMPARE(dialog.windowFlags(), QDialog(&parent).windowFlags());
    QVERIFY(dialog.objects.isEmpty() && dialog.fieldNumValueMap.isEmpty() && !dialog.isDxf);
    QCOMPARE(dialog.nColNum, 0);
    QCOMPARE(dialog.xColNum, 2);
    QCOMPARE(dialog.yColNum, 1);
    QCOMPARE(dialog.defColNum, 0);
    QCOMPARE(dialog.fieldCount, 1);
    QVERIFY(child(dialog, "swapXYCheck")->isHidden());
    for (const char *name : {"listView", "tableView"})
        QVERIFY(child<QAbstractItemView>(dialog, name)->model() == nullptr);
}

void tst_Dialog::toolButtonFontsAreEnlarged_data()
{
    QTest::addColumn<bool>("inPixels");
    QTest::addColumn<int>("size");

    QTest::newRow("10 points") << false << 10;
    QTest::newRow("1 point") << false << 1;
    QTest::newRow("20 pixels") << true << 20;
}

void tst_Dialog::toolButtonFontsAreEnlarged()
{
    QFETCH(bool, inPixels);
    QFETCH(int, size);
    const QFont usual = QApplication::font();
    QFont font = usual;
    inPixels ? font.setPixelSize(size) : font.setPointSize(size);
    QApplication::setFont(font);
    const Dialog dialog;
    QApplication::setFont(usual);

    for (const char *name : {"plusToolButton", "minusToolButton"}) {
        const QFont enlarged = child(dialog, name)->font();
        QCOMPARE(inPixels ? enlarged.pixelSize() : enlarged.pointSize(), size + 1);
        QVERIFY(enlarged.bold());
    }
    const int width = child(dialog, "plusToolButton")->sizeHint().width();
    QCOMPARE(child(dialog, "minusToolButton")->minimumWidth(), width);
    QCOMPARE(child(dialog, "minusToolButton")->maximumWidth(), width);
}

void tst_Dialog::buttonBoxClosesDialog_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<int>("result");

    QTest::newRow("OK") << int(QDialogButtonBox::Ok) << int(QDialog::Accepted);
    QTest::newRow("Cancel") << int(QDialogButtonBox::Cancel) << int(QDialog::Rejected);
}

void tst_Dialog::buttonBoxClosesDialog()
{
    QFETCH(int, button);
    QFETCH(int, result);
    Dialog dialog;
    dialog.show();
    dialog.setResult(-1);

    auto *const buttons = child<QDialogButtonBox>(dialog, "buttonBox");
    buttons->button(QDialogButtonBox::StandardButton(button))->click();

    QCOMPARE(dialog.result(), result);
    QVERIFY(dialog.isHidden());
}

void tst_Dialog::processButtonNeedsFileName()
{
    const Dialog dialog;
    const QWidget *const button = child(dialog, "startButton");

    enter(dialog, "pointFileNameEdit", QStringLiteral("точки.mif"));
    QVERIFY(!button->isEnabled());
    enter(dialog, "objectFileNameEdit", QStringLiteral(" "));
    QVERIFY(button->isEnabled());
    enter(dialog, "objectFileNameEdit", QString());
    QVERIFY(!button->isEnabled());
}

void tst_Dialog::pointFileRowFollowsCheckBox()
{
    for (const bool stored : {false, true}) {
        settings.store(QStringLiteral("usePointFile"), stored);
        const Dialog dialog;
        for (const bool checked : {stored, !stored}) {
            enter(dialog, "usePointFileCheck", checked);
            for (const char *name : {"pointFileLabel", "pointFileNameEdit", "pointFileButton"})
                QCOMPARE(child(dialog, name)->isVisibleTo(&dialog), checked);
            QCOMPARE(child<QLabel>(dialog, "objectFileLabel")->text(),
                     checked ? QStringLiteral("Файл объектов:") : QStringLiteral("Файл:"));
        }
    }
}

void tst_Dialog::onlyChosenFileIsEntered_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<bool>("isDxf");
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QStringList>("entries"); // of the object file and the point file

    const QString mif = QStringLiteral("Файлы mif (*.mif)");
    const QString dxf = QStringLiteral("Файлы dxf (*.dxf)");
    QTest::newRow("objects, MIF") << QStringLiteral("objectFileButton") << false << mif << list("новый, точки");
    QTest::newRow("points, MIF") << QStringLiteral("pointFileButton") << false << mif << list("план, новый");
    QTest::newRow("objects, DXF") << QStringLiteral("objectFileButton") << true << dxf << list("новый, точки");
    QTest::newRow("points, DXF") << QStringLiteral("pointFileButton") << true << dxf << list("план, новый");
}

void tst_Dialog::onlyChosenFileIsEntered()
{
    QFETCH(QString, button);
    QFETCH(bool, isDxf);
    QFETCH(QString, filter);
    QFETCH(QStringList, entries);
    const TextFixture files;
    QVERIFY(QDir().mkdir(files.path(QStringLiteral("Мои планы"))));
    const QString path = files.write(
        isDxf ? QStringLiteral("Мои планы/план участка.dxf") : QStringLiteral("Мои планы/план участка.mif"), {});
    const QStringList properties{QStringLiteral("Выбрать файл"), filter};
    {
        Dialog dialog;
        dialog.isDxf = isDxf;
        enter(dialog, "objectFileNameEdit", QStringLiteral("план"));
        enter(dialog, "pointFileNameEdit", QStringLiteral("точки"));

        QCOMPARE(chooseFile(dialog, button, path), properties);

        entries.replaceInStrings(QStringLiteral("новый"), QDir::toNativeSeparators(path));
        QCOMPARE(entered(dialog, "objectFileNameEdit").toString(), entries.first());
        QCOMPARE(entered(dialog, "pointFileNameEdit").toString(), entries.last());
    }
    {
        Dialog later;
        later.isDxf = isDxf;
        enter(later, "objectFileNameEdit", QStringLiteral("план"));
        QCOMPARE(chooseFile(later, "objectFileButton", QString()), properties + QStringList{path});
        QCOMPARE(entered(later, "objectFileNameEdit").toString(), QStringLiteral("план"));
    }
    QCOMPARE(settings.stored(QStringLiteral("lastPath")).toString(), path);
}

QTEST_MAIN(tst_Dialog)
#include "tst_dialog.moc"
