#pragma once

#include "dialogwidgets.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>

/// Operates the import dialog with simulated mouse and key events.
class DialogDriver : public DialogWidgets
{
public:
    /// How an editor in a view is opened.
    enum class Open { WithF2, WithDoubleClick };

    using DialogWidgets::DialogWidgets;

    QAbstractItemView *table() const { return find<QAbstractItemView>("tableView"); }

    /// Replaces the text of a line edit.
    void type(const char *edit, const QString &text) const { typeInto(find<QLineEdit>(edit), text); }

    /// Selects an encoding from the list.
    void chooseEncoding(const QString &name) const
    {
        auto *const combo = find<QComboBox>("encodingCombo");
        const int entry = combo->findText(name);
        if (entry < 0)
            qFatal("the dialog does not offer the encoding %s", qPrintable(name));
        combo->setCurrentIndex(entry);
    }

    /// Types the name of an encoding.
    void typeEncoding(const QString &name) const { typeInto(find<QComboBox>("encodingCombo")->lineEdit(), name); }

    void process(const QString &objectFile) const
    {
        type("objectFileNameEdit", objectFile);
        press("startButton");
    }

    /// Clicks a cell, which makes it current.
    void click(QAbstractItemView *view, int row, int column = 0) const
    {
        const QModelIndex cell = view->model()->index(row, column);
        view->scrollTo(cell);
        QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, view->visualRect(cell).center());
    }

    /// Replaces the text of a cell in its editor and presses Enter. Returns false if no editor opens.
    bool edit(QAbstractItemView *view, int row, int column, const QString &text, Open open = Open::WithF2) const
    {
        click(view, row, column);
        const QPoint cell = view->visualRect(view->model()->index(row, column)).center();
        if (open == Open::WithF2)
            QTest::keyClick(view, Qt::Key_F2);
        else
            QTest::mouseDClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, cell);
        QLineEdit *const editor = openEditor(view);
        if (editor == nullptr)
            return false;
        typeInto(editor, text);
        QTest::keyClick(editor, Qt::Key_Return);
        // The event loop commits the text and removes the editor.
        QCoreApplication::processEvents();
        return openEditor(view) == nullptr;
    }

    /// The texts of each row, joined with bars. Empty without a model.
    static QStringList shown(const QAbstractItemView *view)
    {
        QStringList rows;
        const QAbstractItemModel *const model = view->model();
        for (int row = 0; model != nullptr && row < model->rowCount(); ++row) {
            QStringList cells;
            for (int column = 0; column < model->columnCount(); ++column)
                cells.append(model->index(row, column).data().toString());
            rows.append(cells.join(QLatin1Char('|')));
        }
        return rows;
    }

    /// The rows whose cell in \a column has the background \a color.
    static QList<int> coloured(const QAbstractItemView *view, const QColor &color, int column = 0)
    {
        QList<int> rows;
        for (int row = 0; row < view->model()->rowCount(); ++row) {
            const QVariant brush = view->model()->index(row, column).data(Qt::BackgroundRole);
            if (brush.value<QBrush>() == QBrush(color))
                rows.append(row);
        }
        return rows;
    }

private:
    // QTest::keyClicks() does not support Cyrillic letters.
    static void typeInto(QLineEdit *edit, const QString &text)
    {
        edit->selectAll();
        QTest::keyClick(edit, Qt::Key_Delete);
        for (const QChar &letter : text)
            QTest::sendKeyEvent(QTest::Click, edit, Qt::Key_unknown, letter, Qt::NoModifier);
    }

    static QLineEdit *openEditor(const QAbstractItemView *view)
    {
        const auto editors = view->viewport()->findChildren<QLineEdit *>();
        for (QLineEdit *const editor : editors) {
            if (editor->isVisible())
                return editor;
        }
        return nullptr;
    }
};
