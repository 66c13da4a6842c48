#pragma once

#include "fakeprepare.h"
#include "workbenchwindowtesting.h"

#include <QAction>
#include <QFileDialog>
#include <QMessageBox>
#include <QProgressBar>
#include <QRegularExpression>

/// The workbench's window with a companion program, which is the fake one by default.
class PrepareFixture : public WindowFixture
{
public:
    explicit PrepareFixture(ImportGeometryInterface *plugin = nullptr,
                            const QString &program = QCoreApplication::applicationFilePath())
        : WindowFixture(plugin)
    {
        FakePrepare::reset();
        qputenv("FAKE_LOG", logName().toUtf8());
        options().prepare = program;
        open();
    }

    /// The arguments of all calls of the fake program, a line each. The folder of the files is left out, and the
    /// folder of the page.
    QString log() const
    {
        QFile file(logName());
        if (!file.open(QIODevice::ReadOnly))
            return QString();
        QString text = QString::fromUtf8(file.readAll()).trimmed();
        text.replace(QRegularExpression(QStringLiteral("--html\\|[^|]+")), QStringLiteral("--html PAGE"));
        return text.remove(files().path(QString()) + QLatin1Char('/')).replace(QLatin1Char('|'), QLatin1Char(' '));
    }

    /// Makes the fake program run until it is asked to end.
    static void makeSlow() { qputenv("FAKE_SLEEP", "60000"); }

    bool waitForCall() const
    {
        return QTest::qWaitFor([this] { return !log().isEmpty(); });
    }

    /// Waits until the program ends.
    bool waitForEnd() const
    {
        return QTest::qWaitFor([this] { return !find<QPushButton>("prepareCancelButton")->isVisible(); });
    }

    /// Triggers \a action and enters \a fileName in its file dialog.
    void choose(const char *action, const QString &fileName) const
    {
        answerFileDialog(fileName);
        find<QAction>(action)->trigger();
    }

    /// Accepts the next file dialog, with \a fileName unless empty.
    static void answerFileDialog(const QString &fileName = QString())
    {
        whenOpens<QFileDialog>([fileName](QFileDialog *dialog) {
            if (!fileName.isEmpty())
                dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(fileName);
            static_cast<QDialog *>(dialog)->accept();
        });
    }

    /// Writes a DXF file whose header is rejected.
    QString writeRejected() const
    {
        return files().write(QStringLiteral("plan.dxf"), "999\ncomment\n0\nSECTION\n0\nEOF\n");
    }

    void press(const char *button) const
    {
        auto *const widget = find<QPushButton>(button);
        if (!widget->isVisible())
            qFatal("%s is hidden", button);
        widget->click();
    }

    bool hasNotice() const { return find<QFrame>("noticeBar")->isVisible(); }
    QString note() const { return find<QLabel>("prepareNote")->text(); }
    QString report() const { return find<QPlainTextEdit>("prepareView")->toPlainText(); }

private:
    QString logName() const { return files().path(QStringLiteral("log")); }
};
