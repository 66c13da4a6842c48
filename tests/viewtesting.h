#pragma once

#include "dialogtesting.h"

#include <QListView>
#include <QTableView>
#include <QTest>

/// Writes three objects of different shapes: «в» has two contours, «б» four vertices, «а» two.
inline QString writePlan(const TextFixture &files)
{
    files.write(QStringLiteral("plan.mid"), list("в, б, а"));
    return files.write(QStringLiteral("plan.mif"),
                       mifLines(list("PLINE MULTIPLE 2, 2, 7 7, 8 8, 3, 7 9, 8 9, 9 9, PLINE 4, 0 0, 1 0, 2 0, 3 0, "
                                     "LINE 5 5 6 6")));
}

/// The vertex table of an object of writePlan(); points are numbered in file order.
inline QStringList tableOf(const QString &def)
{
    if (def == QStringLiteral("в"))
        return list("н1|7.00|7.00, н2|8.00|8.00, -|-|-, н3|7.00|9.00, н4|8.00|9.00, н5|9.00|9.00");
    if (def == QStringLiteral("б"))
        return list("н6|0.00|0.00, н7|1.00|0.00, н8|2.00|0.00, н9|3.00|0.00");
    return list("н10|5.00|5.00, н11|6.00|6.00");
}

inline QListView *listOf(const Dialog &dialog)
{
    return child<QListView>(dialog, "listView");
}

inline QTableView *tableViewOf(const Dialog &dialog)
{
    return child<QTableView>(dialog, "tableView");
}

inline QVector<QAbstractItemView *> viewsOf(const Dialog &dialog)
{
    return {listOf(dialog), tableViewOf(dialog)};
}

/// Processes the file of writePlan() with numbered points in the shown \a dialog.
inline void showPlan(Dialog &dialog, const TextFixture &files)
{
    enter(dialog, "encodingCombo", QStringLiteral("UTF-8"));
    enter(dialog, "searchPointDefsCheck", false);
    dialog.show();
    process(dialog, writePlan(files));
}

inline void selectRow(const Dialog &dialog, int row)
{
    QListView *const list = listOf(dialog);
    if (list->model() != nullptr)
        list->setCurrentIndex(list->model()->index(row, 0));
}

/// Opens an editor in the first row of \a view, sets its \a text and keeps it open. Returns null if none opens.
inline QLineEdit *openEditor(QAbstractItemView *view, const QString &text)
{
    view->setCurrentIndex(view->model()->index(0, 0));
    QTest::keyClick(view, Qt::Key_F2);
    auto *const editor = view->viewport()->findChild<QLineEdit *>();
    if (editor != nullptr)
        editor->setText(text);
    return editor;
}

/// Replaces and commits the text of the editor that is open in \a view, if there is one.
inline void commit(const QAbstractItemView *view, const QString &text)
{
    auto *const editor = view->viewport()->findChild<QLineEdit *>();
    if (editor == nullptr)
        return;
    editor->setText(text);
    QTest::keyClick(editor, Qt::Key_Enter);
    QCoreApplication::processEvents(); // the delegate commits through a queued call
}
