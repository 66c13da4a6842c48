#pragma once

#include "options.h"

#include <QList>
#include <QObject>
#include <QUrl>

class NoticeBar;
class OperationRun;
class PreparePane;
class QAction;
class QWidget;

/// Checks and prepares files for the import: the actions, the notice about a file that is not imported, and the
/// questions to the user.
class PrepareController : public QObject
{
    Q_OBJECT

public:
    /// \a program is the path of the companion. \a window is the parent of all widgets.
    PrepareController(const QString &program, QWidget *window);

    PreparePane *pane() const { return m_pane; }
    NoticeBar *notice() const { return m_notice; }

    /// The actions for a menu.
    const QList<QAction *> &actions() const { return m_actions; }

    /// Hides the notice of the last import.
    void beginRun();

    /// Shows the notice if the import \a run gave no objects. \a hasResult is false if the host got none.
    void finishRun(const OperationRun &run, bool hasResult);

    /// Shows the notice for the first of \a urls that can be prepared although no operation imports it. Returns false
    /// if there is none.
    bool offerToPrepare(const QList<QUrl> &urls);

Q_SIGNALS:
    void started(); ///< the pane has something to show
    void ended(const QString &text, bool isError);
    void importRequested(const QString &fileName, const QString &encoding);

private:
    QAction *addAction(const char *name, const QString &text, void (PrepareController::*slot)());
    void enableActions();
    void chooseAndCheck();
    void checkLast();
    void check(const QString &fileName);
    void chooseAndPrepare();
    void prepare(const QString &fileName);
    QString chooseFile(const QString &title, const QString &filters) const;
    QString chooseOutput(const QString &input) const;
    bool mayWrite(const QString &output, const QString &input) const;
    bool refuse(const QString &text) const;
    bool confirm(const QString &question) const;
    void offerImport();
    void askToImport(const QString &loss);
    void importPrepared();

    QWidget *m_window;
    PreparePane *m_pane;
    NoticeBar *m_notice;
    QList<QAction *> m_actions;
    QAction *m_checkLastAction = nullptr;
    QString m_noticedFile;   ///< of the notice
    DialogChoices m_choices; ///< of the last import since the start
};
