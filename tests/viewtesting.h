#pragma once

#include "dialogtesting.h"

#include <QListView>
#include <QTableView>
#include <QTest>

/// What a user does with the dialog.
using Action = void (*)(Dialog &dialog);
Q_DECLARE_METATYPE(Action)

/// Three objects of different shapes: «в» of two contours, «б» of four vertices, «а» of two.
inline QString writePlan(const TextFixture &files)
{
    const QString lines =
        QStringLiteral("PLINE MULTIPLE 2/2/7 7/8 8/3/7 9/8 9/9 9/PLINE 4/0 0/1 0/2 0/3 0/LINE 5 5 6 6");
    files.write(QStringLiteral("plan.mid"), {QStringLiteral("в"), QStringLiteral("б"), QStringLiteral("а")});
    return files.write(QStringLiteral("plan.mif"), mifLines(lines.split(QLatin1Char('/'))));
}

/// What the table shows of an object of writePlan(); points are numbered in the order of the file.
inline QStringList tableOf(const QString &def)
{
    QString rows = QStringLiteral("н10|5.00|5.00/н11|6.00|6.00");
    if (def == QStringLiteral("в"))
        rows = QStringLiteral("н1|7.00|7.00/н2|8.00|8.00/-|-|-/н3|7.00|9.00/н4|8.00|9.00/н5|9.00|9.00");
    else if (def == QStringLiteral("б"))
        rows = QStringLiteral("н6|0.00|0.00/н7|1.00|0.00/н8|2.00|0.00/н9|3.00|0.00");
    return rows.split(QLatin1Char('/'));
}

inline QListView *listOf(const Dialog &dialog)
{
    return child<QListView>(dialog, QStringLiteral("listView"));
}

inline QTableView *tableViewOf(const Dialog &dialog)
{
    return child<QTableView>(dialog, QStringLiteral("tableView"));
}

inline QVector<QAbstractItemView *> viewsOf(const Dialog &dialog)
{
    return {listOf(dialog), tableViewOf(dialog)};
}

/// Has the shown \a dialog process the plan with numbered points.
inline void showPlan(Dialog &dialog, const TextFixture &files)
{
    enter(dialog, QStringLiteral("encodingCombo"), QStringLiteral("UTF-8"));
    enter(dialog, QStringLiteral("searchPointDefsCheck"), false);
    dialog.show();
    process(dialog, writePlan(files));
}

inline void selectRow(const Dialog &dialog, int row)
{
    QListView *const list = listOf(dialog);
    if (list->model() != nullptr)
        list->setCurrentIndex(list->model()->index(row, 0));
}

/// Types \a text into the editor that is open in \a view, if there is one; \a key ends the editing.
inline void type(const QAbstractItemView *view, const QString &text, Qt::Key key = Qt::Key_Enter)
{
    auto *const editor = view->viewport()->findChild<QLineEdit *>();
    if (editor == nullptr)
        return;
    editor->setText(text);
    QTest::keyClick(editor, key);
    QCoreApplication::processEvents(); // the view takes the text only now
}

/// Opens an editor in the first row of \a view and types \a text, without ending the editing.
inline QLineEdit *openEditor(QAbstractItemView *view, const QString &text)
{
    view->setCurrentIndex(view->model()->index(0, 0));
    QTest::keyClick(view, Qt::Key_F2);
    auto *const editor = view->viewport()->findChild<QLineEdit *>();
    if (editor != nullptr)
        editor->setText(text);
    return editor;
}

inline void clickIntoViews(Dialog &dialog)
{
    for (const QAbstractItemView *view : viewsOf(dialog)) {
        for (const QPoint &place : {QPoint(20, 8), QPoint(20, 30), QPoint(150, 50)}) {
            QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, place);
            QTest::mouseDClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, place);
            type(view, QStringLiteral("щелчок"));
        }
    }
}

inline void walkByKeys(Dialog &dialog)
{
    for (QAbstractItemView *view : viewsOf(dialog)) {
        for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Up, Qt::Key_End, Qt::Key_Home, Qt::Key_PageDown})
            QTest::keyClick(view, key);
        QTest::keyClick(view, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(view, Qt::Key_F2);
        type(view, QStringLiteral("клавиша"));
    }
}

inline void layOutViews(Dialog &dialog)
{
    dialog.resize(dialog.size() + QSize(40, 90));
    tableViewOf(dialog)->resizeColumnsToContents();
    tableViewOf(dialog)->resizeRowsToContents();
    for (QAbstractItemView *view : viewsOf(dialog)) {
        view->scrollToBottom();
        view->keyboardSearch(QStringLiteral("н"));
        view->reset();
    }
}

inline void endEditing(Dialog &dialog)
{
    for (const QAbstractItemView *view : viewsOf(dialog))
        type(view, QStringLiteral("правка"));
}

/// A row for each thing that the user may do with the views and the buttons.
inline void addActions()
{
    QTest::addColumn<Action>("act");

    const auto add = [](const char *name, Action act) { QTest::newRow(name) << act; };
    add("nothing", [](Dialog & /*dialog*/) {});
    add("repaint", [](Dialog &dialog) { dialog.repaint(); });
    add("click", clickIntoViews);
    add("keys", walkByKeys);
    add("layout", layOutViews);
    add("end of editing", endEditing);
    add("first row", [](Dialog &dialog) { selectRow(dialog, 0); });
    add("last row", [](Dialog &dialog) { selectRow(dialog, 2); });
    add("sort", [](Dialog &dialog) { press(dialog, QStringLiteral("sortButton")); });
    add("process", [](Dialog &dialog) { press(dialog, QStringLiteral("startButton")); });
    add("extra field", [](Dialog &dialog) { press(dialog, QStringLiteral("plusToolButton")); });
    add("OK", [](Dialog &dialog) { dialog.accept(); });
    add("Cancel", [](Dialog &dialog) { dialog.reject(); });
}

/// True when each cell of \a now is empty or has the text that it had \a before.
inline bool isNothingOrOld(const QStringList &now, const QStringList &before)
{
    const QLatin1Char bar('|');
    for (int row = 0; row < now.size(); ++row) {
        const QStringList cells = now.at(row).split(bar);
        for (int i = 0; i < cells.size(); ++i) {
            if (cells.at(i) != QLatin1String("-") && cells.at(i) != before.value(row).section(bar, i, i))
                return false;
        }
    }
    return true;
}
