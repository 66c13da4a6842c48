#include "workbenchwindowtesting.h"

#include <QFileDialog>
#include <QMessageBox>

/// Files that the window saves.
class tst_WorkbenchWindowExports : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void exportsNeedAResult();
    void exportIsSaved_data();
    void exportIsSaved();
    void suffixOfTheFilterIsAppended();
    void failedExportIsReported();
};

namespace {

/// Enters \a fileName in the next file dialog and accepts it.
void saveAs(const QString &fileName, const QString &filter = QString())
{
    whenOpens<QFileDialog>([fileName, filter](QFileDialog *dialog) {
        if (!filter.isEmpty()) {
            dialog->selectNameFilter(filter);
            Q_EMIT dialog->filterSelected(filter);
        }
        dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(fileName);
        static_cast<QDialog *>(dialog)->accept();
    });
}

QByteArray contentOf(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

void tst_WorkbenchWindowExports::exportsNeedAResult()
{
    const WindowFixture fixture;
    const QVector<QAction *> actions{fixture.find<QAction>("saveResultAction"),
                                     fixture.find<QAction>("savePictureAction"),
                                     fixture.find<QAction>("saveCatalogueAction")};
    for (const QAction *const action : actions)
        QVERIFY(!action->isEnabled());

    fixture.import(fixture.writePlan());

    for (const QAction *const action : actions)
        QVERIFY(action->isEnabled());
}

void tst_WorkbenchWindowExports::exportIsSaved_data()
{
    QTest::addColumn<QByteArray>("action");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("start");

    QTest::newRow("result") << QByteArray("saveResultAction") << QStringLiteral("результат импорта.xml")
                            << QByteArray("\n<FormTable Name=\"Участки\">");
    QTest::newRow("catalogue") << QByteArray("saveCatalogueAction") << QStringLiteral("каталог участка.csv")
                               << QByteArray("\xEF\xBB\xBF");
    QTest::newRow("picture") << QByteArray("savePictureAction") << QStringLiteral("рисунок участка.png")
                             << QByteArray("\x89PNG");
}

void tst_WorkbenchWindowExports::exportIsSaved()
{
    QFETCH(QByteArray, action);
    QFETCH(QString, name);
    QFETCH(QByteArray, start);
    const WindowFixture fixture;
    fixture.import(fixture.writePlan());
    QVERIFY(QDir().mkdir(fixture.files().path(QStringLiteral("Мои планы"))));
    const QString fileName = fixture.files().path(QStringLiteral("Мои планы/") + name);
    saveAs(fileName);

    fixture.find<QAction>(action)->trigger();

    const QByteArray content = contentOf(fileName);
    QCOMPARE(content.left(start.size()), start);
    QCOMPARE(fixture.window().statusBar()->currentMessage(),
             QStringLiteral("Сохранено: %1").arg(QDir::toNativeSeparators(fileName)));
}

void tst_WorkbenchWindowExports::suffixOfTheFilterIsAppended()
{
    const WindowFixture fixture;
    fixture.import(fixture.writePlan());
    saveAs(fixture.files().path(QStringLiteral("a")), QStringLiteral("Рисунок SVG (*.svg)"));

    fixture.find<QAction>("savePictureAction")->trigger();

    QVERIFY(contentOf(fixture.files().path(QStringLiteral("a.svg"))).contains("<svg"));
}

void tst_WorkbenchWindowExports::failedExportIsReported()
{
    const WindowFixture fixture;
    fixture.import(fixture.writePlan());
    QString text;
    // The file dialog itself refuses a folder that does not exist, so the folder goes while the dialog is open.
    const QString folder = fixture.files().path(QStringLiteral("gone"));
    QDir().mkdir(folder);
    whenOpens<QFileDialog>([&folder, &text](QFileDialog *dialog) {
        dialog->setDirectory(folder);
        dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(QStringLiteral("a.xml"));
        whenOpens<QMessageBox>([&text](QMessageBox *box) {
            text = box->text();
            box->accept();
        });
        QObject::connect(dialog, &QDialog::accepted, [&folder] { QDir(folder).removeRecursively(); });
        static_cast<QDialog *>(dialog)->accept();
    });

    fixture.find<QAction>("saveResultAction")->trigger();

    QVERIFY2(text.contains(QStringLiteral("Не удалось сохранить файл")) && text.contains(QStringLiteral("a.xml")),
             qPrintable(text));
}

QTEST_MAIN(tst_WorkbenchWindowExports)
#include "tst_workbench_window_exports.moc"
