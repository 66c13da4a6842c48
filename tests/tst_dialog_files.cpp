#include "dialogtesting.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QTest>
#include <QTimer>

/// The choice of files.
class tst_DialogFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void fileIsAskedFor_data();
    void fileIsAskedFor();
    void chosenFileIsEntered_data();
    void chosenFileIsEntered();
    void cancelChangesNothing_data();
    void cancelChangesNothing();
    void nextFileDialogOpensOnTheLastFile();
    void lastFileIsRemembered();

private:
    SettingsSandbox settings;
    TextFixture files;
};

namespace {

/// What a file dialog has asked, and how the user answers it.
class FileDialogUser
{
public:
    /// Presses \a button and answers the file dialog with \a path; with an empty one by cancelling.
    FileDialogUser(const Dialog &dialog, const QString &button, const QString &path)
    {
        QTimer::singleShot(0, [this, &dialog, path] { answer(dialog, path); });
        press(dialog, button);
    }

    int asked = 0;
    bool isOfDialog = false;
    QString title;
    QStringList filters;
    QString directory;
    QStringList selected;
    QFileDialog::FileMode mode = QFileDialog::AnyFile;

private:
    void answer(const Dialog &dialog, const QString &path)
    {
        auto *const fileDialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        if (fileDialog == nullptr)
            return;
        ++asked;
        isOfDialog = fileDialog->parentWidget() == &dialog;
        title = fileDialog->windowTitle();
        filters = fileDialog->nameFilters();
        directory = fileDialog->directory().absolutePath();
        selected = fileDialog->selectedFiles();
        mode = fileDialog->fileMode();
        if (path.isEmpty()) {
            fileDialog->reject();
            return;
        }
        fileDialog->selectFile(path);
        static_cast<QDialog *>(fileDialog)->accept();
    }
};

const QString objectButton = QStringLiteral("objectFileButton");
const QString pointButton = QStringLiteral("pointFileButton");

} // namespace

void tst_DialogFiles::initTestCase()
{
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    files.write(QStringLiteral("plan.mif"), {});
    files.write(QStringLiteral("points.mif"), {});
    files.write(QStringLiteral("plan.dxf"), {});
}

void tst_DialogFiles::init()
{
    settings.clear();
}

void tst_DialogFiles::fileIsAskedFor_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<bool>("isDxf");
    QTest::addColumn<QString>("filter");

    const QString mif = QStringLiteral("Файлы mif (*.mif)");
    const QString dxf = QStringLiteral("Файлы dxf (*.dxf)");
    QTest::newRow("MIF objects") << objectButton << false << mif;
    QTest::newRow("MIF points") << pointButton << false << mif;
    QTest::newRow("DXF objects") << objectButton << true << dxf;
    QTest::newRow("DXF points") << pointButton << true << dxf;
}

void tst_DialogFiles::fileIsAskedFor()
{
    QFETCH(QString, button);
    QFETCH(bool, isDxf);
    QFETCH(QString, filter);
    Dialog dialog;
    dialog.isDxf = isDxf;

    const FileDialogUser user(dialog, button, QString());

    QCOMPARE(user.asked, 1);
    QVERIFY(user.isOfDialog);
    QCOMPARE(user.title, QStringLiteral("Выбрать файл"));
    QCOMPARE(user.filters, QStringList{filter});
    QCOMPARE(user.mode, QFileDialog::ExistingFile);
}

void tst_DialogFiles::chosenFileIsEntered_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<bool>("isDxf");
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QString>("edit");
    QTest::addColumn<QString>("otherEdit");

    const QString objectEdit = QStringLiteral("objectFileNameEdit");
    const QString pointEdit = QStringLiteral("pointFileNameEdit");
    QTest::newRow("MIF objects") << objectButton << false << QStringLiteral("plan.mif") << objectEdit << pointEdit;
    QTest::newRow("MIF points") << pointButton << false << QStringLiteral("points.mif") << pointEdit << objectEdit;
    QTest::newRow("DXF objects") << objectButton << true << QStringLiteral("plan.dxf") << objectEdit << pointEdit;
}

void tst_DialogFiles::chosenFileIsEntered()
{
    QFETCH(QString, button);
    QFETCH(bool, isDxf);
    QFETCH(QString, fileName);
    QFETCH(QString, edit);
    QFETCH(QString, otherEdit);
    const QString path = files.path(fileName);
    {
        Dialog dialog;
        dialog.isDxf = isDxf;
        enter(dialog, edit, QStringLiteral("прежний"));
        enter(dialog, otherEdit, QStringLiteral("другой"));

        const FileDialogUser user(dialog, button, path);

        QCOMPARE(user.asked, 1);
        QCOMPARE(entered(dialog, edit).toString(), QDir::toNativeSeparators(path));
        QCOMPARE(entered(dialog, otherEdit).toString(), QStringLiteral("другой"));
        QVERIFY(dialog.objects.isEmpty());
    }
    QCOMPARE(settings.stored(QStringLiteral("lastPath")).toString(), path);
}

void tst_DialogFiles::cancelChangesNothing_data()
{
    QTest::addColumn<QString>("button");

    QTest::newRow("objects") << objectButton;
    QTest::newRow("points") << pointButton;
}

void tst_DialogFiles::cancelChangesNothing()
{
    QFETCH(QString, button);
    settings.store(QStringLiteral("lastPath"), files.path(QStringLiteral("plan.mif")));
    {
        const Dialog dialog;
        enter(dialog, QStringLiteral("objectFileNameEdit"), QStringLiteral("объекты"));
        enter(dialog, QStringLiteral("pointFileNameEdit"), QStringLiteral("точки"));

        const FileDialogUser user(dialog, button, QString());

        QCOMPARE(user.asked, 1);
        QCOMPARE(entered(dialog, QStringLiteral("objectFileNameEdit")).toString(), QStringLiteral("объекты"));
        QCOMPARE(entered(dialog, QStringLiteral("pointFileNameEdit")).toString(), QStringLiteral("точки"));
    }
    QCOMPARE(settings.stored(QStringLiteral("lastPath")).toString(), files.path(QStringLiteral("plan.mif")));
}

void tst_DialogFiles::nextFileDialogOpensOnTheLastFile()
{
    const QString path = files.path(QStringLiteral("plan.mif"));
    const Dialog dialog;
    const FileDialogUser first(dialog, objectButton, path);

    const FileDialogUser second(dialog, pointButton, QString());

    QCOMPARE(second.directory, QFileInfo(path).absolutePath());
    QCOMPARE(second.selected, QStringList{path});
}

void tst_DialogFiles::lastFileIsRemembered()
{
    const QString path = files.path(QStringLiteral("plan.mif"));
    {
        const Dialog dialog;
        const FileDialogUser chosen(dialog, objectButton, path);
        QCOMPARE(chosen.asked, 1);
    }

    const Dialog later;
    const FileDialogUser user(later, objectButton, QString());

    QCOMPARE(user.selected, QStringList{path});
    QCOMPARE(entered(later, QStringLiteral("objectFileNameEdit")).toString(), QString());
}

QTEST_MAIN(tst_DialogFiles)
#include "tst_dialog_files.moc"
